// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/ScoreBar.h"

#include "ui/AccessibleRole.h"
#include "ui/Style.h"

#include <QLocale>
#include <QPainter>

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr int barWidth = 100;
constexpr int barHeight = 20;
constexpr QRgb greenBar = 0xff34a853;
constexpr QRgb whiteBar = 0xffffffff;

} // namespace

ScoreBarParts scoreBarParts(float score) {
    // The comparison sends what is no number to the white side.
    const qreal green = score > 0 ? std::min(static_cast<qreal>(score), qreal(barWidth)) : 0;
    return {green, barWidth - green};
}

ScoreBar::ScoreBar(float score, QWidget* parent)
    : QWidget(parent)
    , m_parts(scoreBarParts(score)) {
    setFixedSize(barWidth, barHeight);
    setAccessibleRole(*this, QAccessible::Graphic);
    setAccessibleName(u"Puntuación: "_s + QLocale().toString(m_parts.green, 'f', 1));
    setToolTip(accessibleName());
}

QSize ScoreBar::sizeHint() const {
    return {barWidth, barHeight};
}

void ScoreBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(whiteBar));
    painter.fillRect(QRectF(0, 0, m_parts.green, barHeight), QColor(greenBar));
    // White on a white page has no end that could be seen.
    painter.setPen(QColor(colours::border));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

} // namespace dorvantel
