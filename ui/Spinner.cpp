// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/Spinner.h"

#include "ui/AccessibleRole.h"

#include <QPainter>

namespace dorvantel {

namespace {
constexpr int spokes = 12;
}

Spinner::Spinner(int size, const QColor& color, QWidget* parent)
    : QWidget(parent)
    , m_size(size, size)
    , m_color(color) {
    setFixedSize(m_size);
    setAccessibleRole(*this, QAccessible::Animation);
    setAccessibleName(QStringLiteral("En curso"));
    m_timer.setInterval(80);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_step = (m_step + 1) % spokes;
        update();
    });
}

void Spinner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect().center() + QPointF(0.5, 0.5));
    const double radius = m_size.width() / 2.0;
    for (int i = 0; i < spokes; ++i) {
        const int age = (m_step - i + spokes) % spokes;
        QColor color = m_color;
        color.setAlphaF(static_cast<float>(1.0 - age * 0.8 / spokes));
        painter.setPen(QPen(color, radius * 0.16, Qt::SolidLine, Qt::RoundCap));
        painter.save();
        painter.rotate(360.0 * i / spokes);
        painter.drawLine(QPointF(0, -radius * 0.5), QPointF(0, -radius * 0.88));
        painter.restore();
    }
}

void Spinner::showEvent(QShowEvent*) {
    m_timer.start();
}

void Spinner::hideEvent(QHideEvent*) {
    m_timer.stop();
}

} // namespace dorvantel
