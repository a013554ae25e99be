// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QPaintDevice>
#include <QPainter>
#include <QRectF>
#include <QString>

#include <functional>

namespace dorvantel {

struct SampleTextStyle {
    double size = 9.5; ///< points
    QFont::Weight weight = QFont::Normal;
    QColor color = QColor(0x1f, 0x29, 0x37);
    Qt::Alignment alignment = Qt::AlignLeft;
    double lineHeight = 1.35; ///< of the font's own
};

/// A column of text on A4 pages that moves on to the next page when it is full. All measures are points from the
/// page's top left corner, whatever the device. Draws with `painter`, which must outlive it.
class SampleColumn {
public:
    /// `nextPage` starts a page and draws what every page has; the column goes on at its top.
    SampleColumn(QPainter& painter, QPaintDevice& device, QRectF area, std::function<void()> nextPage);

    double y() const { return m_y; }
    void space(double points) { m_y += points; }
    /// Goes on on the next page unless this much is left.
    void need(double points);

    /// Wrapped at the column's width, `indent` from its left.
    void text(const QString& text, const SampleTextStyle& style, double indent = 0);
    /// Two texts on one line, the second at the right edge.
    void line(const QString& left, const SampleTextStyle& leftStyle, const QString& right,
              const SampleTextStyle& rightStyle);
    void bullet(const QString& text, const SampleTextStyle& style, const QColor& dot);
    /// Rounded labels, as many on a line as fit.
    void chips(const QStringList& texts, const SampleTextStyle& style, const QColor& outline);
    void rule(const QColor& color, double thickness);

private:
    double units(double points) const; ///< of the device
    double height(const QString& text, const SampleTextStyle& style, double width) const;
    void draw(const QString& text, const SampleTextStyle& style, double x, double y, double width);

    QPainter& m_painter;
    QPaintDevice& m_device;
    QRectF m_area;
    std::function<void()> m_nextPage;
    double m_y;
};

} // namespace dorvantel
