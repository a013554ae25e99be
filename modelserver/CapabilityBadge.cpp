// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/CapabilityBadge.h"

#include "ui/PaletteFollower.h"
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
    followPalette(*this, [this] {
        QPalette colours = palette();
        colours.setColor(QPalette::WindowText, readableColour(m_color, colours));
        setPalette(colours);
    });
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
