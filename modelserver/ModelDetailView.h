// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "modelserver/WireTypes.h"

#include <QFrame>

namespace dorvantel {

/// What the server says about one model: its details as far as they are known, and a badge for each capability.
class ModelDetailView : public QFrame {
    Q_OBJECT

public:
    explicit ModelDetailView(const OllamaModel& model, QWidget* parent = nullptr);

    const OllamaModel& model() const { return m_model; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    OllamaModel m_model;
};

} // namespace dorvantel
