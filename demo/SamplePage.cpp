// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/SamplePage.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextOption>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr double pointsPerInch = 72;

QFont fontOf(const SampleTextStyle& style) {
    QFont font(u"Inter"_s);
    font.setPointSizeF(style.size);
    font.setWeight(style.weight);
    font.setHintingPreference(QFont::PreferNoHinting);
    // Shaping would draw brackets and dashes beside capitals and digits with glyphs that no reader maps back to text.
    font.setStyleStrategy(QFont::PreferNoShaping);
    return font;
}

void fill(QTextDocument& document, QPaintDevice& device, const QString& text, const SampleTextStyle& style,
          double width) {
    document.documentLayout()->setPaintDevice(&device);
    document.setDocumentMargin(0);
    document.setDefaultFont(fontOf(style));
    QTextOption option;
    option.setAlignment(style.alignment);
    option.setWrapMode(QTextOption::WordWrap);
    document.setDefaultTextOption(option);
    document.setTextWidth(width);
    QTextBlockFormat block;
    block.setLineHeight(style.lineHeight * 100, QTextBlockFormat::ProportionalHeight);
    QTextCharFormat characters;
    characters.setForeground(style.color);
    QTextCursor cursor(&document);
    cursor.setBlockFormat(block);
    cursor.insertText(text, characters);
}

} // namespace

SampleColumn::SampleColumn(QPainter& painter, QPaintDevice& device, QRectF area, std::function<void()> nextPage)
    : m_painter(painter)
    , m_device(device)
    , m_area(area)
    , m_nextPage(std::move(nextPage))
    , m_y(area.top()) {}

double SampleColumn::units(double points) const {
    return points * m_device.logicalDpiY() / pointsPerInch;
}

void SampleColumn::need(double points) {
    if (m_y + points > m_area.bottom()) {
        m_nextPage();
        m_y = m_area.top();
    }
}

double SampleColumn::height(const QString& text, const SampleTextStyle& style, double width) const {
    QTextDocument document;
    fill(document, m_device, text, style, units(width));
    return document.size().height() / units(1);
}

void SampleColumn::draw(const QString& text, const SampleTextStyle& style, double x, double y, double width) {
    QTextDocument document;
    fill(document, m_device, text, style, units(width));
    m_painter.save();
    m_painter.translate(units(x), units(y));
    document.drawContents(&m_painter);
    m_painter.restore();
}

void SampleColumn::text(const QString& text, const SampleTextStyle& style, double indent) {
    const double width = m_area.width() - indent;
    const double tall = height(text, style, width);
    need(tall);
    draw(text, style, m_area.left() + indent, m_y, width);
    m_y += tall;
}

void SampleColumn::line(const QString& left, const SampleTextStyle& leftStyle, const QString& right,
                        const SampleTextStyle& rightStyle) {
    const double rightWidth = QFontMetricsF(fontOf(rightStyle), &m_device).horizontalAdvance(right) / units(1) + 2;
    const double leftWidth = m_area.width() - rightWidth - 8;
    const double tall = height(left, leftStyle, leftWidth);
    need(tall);
    draw(left, leftStyle, m_area.left(), m_y, leftWidth);
    SampleTextStyle atRight = rightStyle;
    atRight.alignment = Qt::AlignRight;
    const double baseline = (leftStyle.size - rightStyle.size) * 0.9;
    draw(right, atRight, m_area.right() - rightWidth, m_y + baseline, rightWidth);
    m_y += tall;
}

void SampleColumn::bullet(const QString& text, const SampleTextStyle& style, const QColor& dot) {
    constexpr double indent = 11;
    const double tall = height(text, style, m_area.width() - indent);
    need(tall);
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(dot);
    const double radius = 1.5;
    const double middle = m_y + style.size * 0.72;
    m_painter.drawEllipse(QPointF(units(m_area.left() + 3), units(middle)), units(radius), units(radius));
    draw(text, style, m_area.left() + indent, m_y, m_area.width() - indent);
    m_y += tall;
}

void SampleColumn::chips(const QStringList& texts, const SampleTextStyle& style, const QColor& outline) {
    const QFontMetricsF metrics(fontOf(style), &m_device);
    const double padding = 7;
    const double tall = style.size * 1.9;
    const double gap = 5;
    double x = m_area.left();
    need(tall);
    for (const QString& text : texts) {
        const double width = metrics.horizontalAdvance(text) / units(1) + 2 * padding;
        if (x + width > m_area.right()) {
            x = m_area.left();
            m_y += tall + gap;
            need(tall);
        }
        m_painter.setPen(QPen(outline, units(0.7)));
        m_painter.setBrush(Qt::NoBrush);
        m_painter.drawRoundedRect(QRectF(units(x), units(m_y), units(width), units(tall)), units(tall / 2),
                                  units(tall / 2));
        draw(text, style, x + padding, m_y + (tall - style.size * style.lineHeight) / 2, width);
        x += width + gap;
    }
    m_y += tall + gap;
}

void SampleColumn::rule(const QColor& color, double thickness) {
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(color);
    m_painter.drawRect(QRectF(units(m_area.left()), units(m_y), units(m_area.width()), units(thickness)));
    m_y += thickness;
}

} // namespace dorvantel
