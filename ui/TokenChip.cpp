// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TokenChip.h"

#include "ui/Style.h"

#include <QAccessible>
#include <QFontMetrics>
#include <QPainter>
#include <QtMath>

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr int textMargin = 8;
constexpr qreal corner = 5;

} // namespace

TokenChip::TokenChip(const QString& token, QWidget* parent)
    : QWidget(parent)
    , m_token(token) {
    setCursor(Qt::ArrowCursor);
    setFocusPolicy(Qt::ClickFocus);
}

int TokenChip::heightFor(const QFontMetrics& metrics) {
    constexpr int lowest = 22;
    return std::max(lowest, metrics.height() + 6);
}

void TokenChip::setSelected(bool selected) {
    if (m_selected == selected) {
        return;
    }
    m_selected = selected;
    update();
    QAccessible::State changed;
    changed.selected = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

QSize TokenChip::sizeHint() const {
    const int text = qCeil(QFontMetricsF(font()).horizontalAdvance(shownText()));
    return {text + 2 * textMargin, heightFor(fontMetrics())};
}

bool TokenChip::isElided() const {
    return width() < sizeHint().width();
}

QString TokenChip::shownText() const {
    QString text = m_token;
    for (QChar& character : text) {
        if (character == u'\n' || character == u'\r' || character == u'\t') {
            character = u' ';
        }
    }
    return text;
}

void TokenChip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = palette().color(QPalette::Highlight);
    constexpr qreal tint = 0.16;
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_selected ? accent : withOpacity(accent, tint));
    painter.drawRoundedRect(rect(), corner, corner);
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Text), 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
    }
    painter.setPen(palette().color(m_selected ? QPalette::HighlightedText : QPalette::Text));
    const QRect textRect = rect().adjusted(textMargin, 0, -textMargin, 0);
    const QString text =
        isElided() ? fontMetrics().elidedText(shownText(), Qt::ElideRight, textRect.width()) : shownText();
    painter.drawText(textRect, Qt::AlignVCenter | Qt::AlignHCenter | Qt::TextSingleLine | Qt::TextDontClip, text);
}

void TokenChip::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    // Rich text wraps; escaped, so that a token is never taken for markup.
    constexpr qsizetype longest = 1000;
    setToolTip(isElided() ? u"<p>"_s + m_token.left(longest).toHtmlEscaped() + u"</p>"_s : QString());
}

void TokenChip::focusInEvent(QFocusEvent*) {
    update();
}

void TokenChip::focusOutEvent(QFocusEvent*) {
    update();
}

} // namespace dorvantel
