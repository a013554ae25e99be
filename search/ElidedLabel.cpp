// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/ElidedLabel.h"

#include "ui/AccessibleRole.h"

#include <QPainter>
#include <QtMath>

namespace dorvantel {

ElidedLabel::ElidedLabel(const QString& text, const QFont& font, QWidget* parent)
    : QWidget(parent)
    , m_text(text) {
    setFont(font);
    setAccessibleRole(*this, QAccessible::StaticText);
    setAccessibleName(text);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize ElidedLabel::sizeHint() const {
    // Rounded up: a text that is wider than its room by a fraction is elided.
    return {qCeil(QFontMetricsF(font()).horizontalAdvance(m_text)), fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
    return {0, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_text, Qt::ElideRight, width()));
}

void ElidedLabel::resizeEvent(QResizeEvent*) {
    setToolTip(width() < sizeHint().width() ? m_text : QString());
}

} // namespace dorvantel
