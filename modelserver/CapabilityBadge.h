// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QLabel>

namespace dorvantel {

/// A word in its colour on a rounded patch of the same colour, paler.
class CapabilityBadge : public QLabel {
    Q_OBJECT

public:
    CapabilityBadge(const QString& text, const QColor& color, QWidget* parent = nullptr);

    const QColor& color() const { return m_color; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_color;
};

} // namespace dorvantel
