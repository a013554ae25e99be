// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/Spinner.h"

#include "ui/AccessibleRole.h"
#include "ui/Style.h"

#include <QPainter>

namespace dorvantel {

namespace {
constexpr int spokes = 12;
constexpr int momentMs = 200; ///< nobody should wait for more than 300 ms without a sign of life
} // namespace

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
    m_moment.setSingleShot(true);
    m_moment.setInterval(momentMs);
    connect(&m_moment, &QTimer::timeout, this, &QWidget::show);
}

void Spinner::setBusy(bool busy) {
    if (!busy) {
        m_moment.stop();
        hide();
    } else if (isHidden() && !m_moment.isActive()) {
        m_moment.start();
    }
}

void Spinner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect().center() + QPointF(0.5, 0.5));
    const double radius = m_size.width() / 2.0;
    for (int i = 0; i < spokes; ++i) {
        const int age = (m_step - i + spokes) % spokes;
        QColor color = m_color.isValid() ? m_color : secondaryTextColour(palette());
        color = withOpacity(color, 1.0 - age * 0.8 / spokes);
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
