// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

class QPainter;

namespace dorvantel {

/// How the controls of the program are drawn: flat, rounded, with a focus ring that is seen. Colours come from the
/// palette of each widget, so that a white page in a dark desktop stays right.
class ControlStyle final : public QProxyStyle {
    Q_OBJECT

public:
    ControlStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap symbol, const QStyleOption* option = nullptr,
                       const QWidget* widget = nullptr) const override;
    using QProxyStyle::polish;
    void polish(QWidget* widget) override;
    /// Our palette in place of the desktop's. Called whenever the desktop's changes.
    void polish(QPalette& palette) override;
};

/// The rounded frame of a field that takes input: filled with the palette's base colour, ringed while it has the focus.
void drawFieldFrame(QPainter& painter, const QRect& rect, const QPalette& palette, bool focused);

} // namespace dorvantel
