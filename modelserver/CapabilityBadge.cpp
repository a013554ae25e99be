// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/CapabilityBadge.h"

#include "ui/Style.h"

#include <QPainter>

namespace dorvantel {

CapabilityBadge::CapabilityBadge(const QString& text, const QColor& color, QWidget* parent)
    : QLabel(text, parent)
    , m_color(color) {
    setTextFormat(Qt::PlainText);
    setFont(textFont(TextStyle::Caption2));
    setContentsMargins(6, 2, 6, 2);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    QPalette colours = palette();
    // The colours are made for light backgrounds; on a dark one a word needs more light in the same hue.
    const bool onDark = colours.color(QPalette::Window).lightness() < 128;
    colours.setColor(QPalette::WindowText,
                     onDark ? QColor::fromHsl(color.hslHue(), color.hslSaturation(), 190) : color);
    setPalette(colours);
}

void CapabilityBadge::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(withOpacity(m_color, 0.2));
        painter.drawRoundedRect(rect(), 4, 4);
    }
    QLabel::paintEvent(event);
}

} // namespace dorvantel
