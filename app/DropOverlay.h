// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QPropertyAnimation>
#include <QWidget>

class QGraphicsOpacityEffect;

namespace dorvantel {

/// What covers the window while a CV hovers over it. Fades in and out; takes no mouse events, so that the window under
/// it goes on receiving the drag.
class DropOverlay : public QWidget {
    Q_OBJECT

public:
    explicit DropOverlay(QWidget* parent);

    bool isTargeted() const { return m_targeted; }
    void setTargeted(bool targeted);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void makeContents();

    bool m_targeted = false;
    QGraphicsOpacityEffect* m_opacity;
    QPropertyAnimation m_fade;
};

} // namespace dorvantel
