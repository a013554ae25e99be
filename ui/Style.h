// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

class QApplication;
class QWidget;

namespace dorvantel {

/// The steps of the type scale. One point is one logical pixel everywhere in the program, whatever the desktop says
/// about dots per inch, so that texts and the spacings around them keep their proportion.
enum class TextStyle { LargeTitle, Title, Headline, Subheadline, Body, Caption, Caption2 };

QFont textFont(TextStyle style);
QFont systemFont(qreal points);

/// For texts that are nothing but emoji: takes the colour font directly, so that a sequence joined by U+200D stays one
/// figure. In any other font the joiner may be found before the figures are, and the sequence falls apart.
QFont emojiFont(qreal points);

/// Colours that keep their meaning. Each is readable on a white background (contrast 4.5 or more), except the light
/// greys that say so.
namespace colours {
inline constexpr QRgb accent = 0xff1d5fd1;
inline constexpr QRgb text = 0xff1c1e21;
inline constexpr QRgb secondaryText = 0xff5f6672;
inline constexpr QRgb blue = 0xff1d5fd1;
inline constexpr QRgb green = 0xff1f7a3a;
inline constexpr QRgb orange = 0xffb45309;
inline constexpr QRgb purple = 0xff7c3aed;
inline constexpr QRgb red = 0xffc62828;
inline constexpr QRgb gray = 0xff6b7280;
inline constexpr QRgb border = 0xffc9ced6; ///< light: frames of controls
} // namespace colours

/// The secondary text colour that is readable on the background of this palette.
QColor secondaryTextColour(const QPalette& palette);

/// One of `colours`, or on a dark palette the light colour of the same hue: readable on either.
QColor readableColour(const QColor& colour, const QPalette& palette);

/// `colour` with the given share of its opacity, from 0 to 1.
QColor withOpacity(QColor colour, qreal opacity);

/// Distances between things, in points.
namespace spacing {
inline constexpr int tight = 4;
inline constexpr int small = 8;
inline constexpr int gridRow = 12;
inline constexpr int standard = 16; ///< what "default padding" is
inline constexpr int gridColumn = 20;
inline constexpr int cornerRadius = 6;
} // namespace spacing

/// Gives the whole program its look: fonts, the style of the controls, and a light or dark palette after the
/// desktop's own, also when that changes later. Called once, after the application object is made and before the first
/// window.
void applyApplicationLook(QApplication& application);

/// The palettes that the look is made of.
QPalette lightPalette();
QPalette darkPalette();

/// The one of them that is as light or dark as `desktop`.
QPalette lookFor(const QPalette& desktop);

/// Makes `widget` white and everything in it dark on white, also when the desktop is dark.
void setWhiteBackground(QWidget& widget);

} // namespace dorvantel
