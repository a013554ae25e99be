// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "modelserver/WireTypes.h"

#include <QComboBox>

#include <optional>

namespace dorvantel {

/// A menu of models by name, each with its size when that is known, after an entry that stands for none. A selection
/// that is not among the models is shown by its name and stays until the user chooses.
class ModelPicker : public QComboBox {
    Q_OBJECT

public:
    explicit ModelPicker(const QString& title, QWidget* parent = nullptr);

    void setModels(const QList<OllamaModel>& models);
    void setSelection(const std::optional<QString>& name);
    const std::optional<QString>& selection() const { return m_selection; }

Q_SIGNALS:
    /// Only the user's own choice; `selection` has it.
    void chosen();

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void showSelection();

    QList<OllamaModel> m_models;
    std::optional<QString> m_selection;
};

} // namespace dorvantel
