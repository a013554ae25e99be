// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/Style.h"

#include "ui/ControlStyle.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include <memory>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

struct Step {
    qreal points;
    QFont::Weight weight;
};

Step stepOf(TextStyle style) {
    switch (style) {
    case TextStyle::LargeTitle:
        return {26, QFont::Normal};
    case TextStyle::Title:
        return {22, QFont::DemiBold};
    case TextStyle::Headline:
        return {14, QFont::DemiBold};
    case TextStyle::Subheadline:
        return {12, QFont::Normal};
    case TextStyle::Body:
        return {13, QFont::Normal};
    case TextStyle::Caption:
        return {11, QFont::Normal};
    case TextStyle::Caption2:
        return {10, QFont::Medium};
    }
    Q_UNREACHABLE();
}

/// What of a palette differs between light and dark; everything else follows from it.
struct Tones {
    QColor window, base, alternateBase, text, button, border, accent, placeholder, disabledText, tip, tipText;
};

QPalette paletteOf(const Tones& tones) {
    QPalette palette;
    palette.setColor(QPalette::Window, tones.window);
    palette.setColor(QPalette::WindowText, tones.text);
    palette.setColor(QPalette::Base, tones.base);
    palette.setColor(QPalette::AlternateBase, tones.alternateBase);
    palette.setColor(QPalette::Text, tones.text);
    palette.setColor(QPalette::Button, tones.button);
    palette.setColor(QPalette::ButtonText, tones.text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Highlight, tones.accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, tones.accent);
    palette.setColor(QPalette::LinkVisited, tones.accent);
    palette.setColor(QPalette::PlaceholderText, tones.placeholder);
    palette.setColor(QPalette::ToolTipBase, tones.tip);
    palette.setColor(QPalette::ToolTipText, tones.tipText);
    palette.setColor(QPalette::Light, tones.button.lighter(110));
    palette.setColor(QPalette::Midlight, tones.button);
    palette.setColor(QPalette::Mid, tones.border);
    palette.setColor(QPalette::Dark, tones.border.darker(130));
    palette.setColor(QPalette::Shadow, tones.border.darker(200));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText}) {
        palette.setColor(QPalette::Disabled, role, tones.disabledText);
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, tones.border);
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, tones.text);
    return palette;
}

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < 128;
}

/// The style turns the palette of the desktop into ours. One that somebody set for the whole application, as tools that
/// set up the look of Qt programs do, passes it by.
void keepPalette() {
    const QPalette present = QApplication::palette();
    const QPalette ours = lookFor(present);
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base, QPalette::Text, QPalette::Highlight}) {
        if (present.color(role) != ours.color(role)) {
            QApplication::setPalette(ours);
            return;
        }
    }
}

class PaletteKeeper final : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::ApplicationPaletteChange && watched == qApp) {
            keepPalette();
        }
        return false;
    }
};

} // namespace

QFont systemFont(qreal points) {
    QFont font = QApplication::font();
    font.setPixelSize(qRound(points));
    font.setWeight(QFont::Normal);
    return font;
}

QFont textFont(TextStyle style) {
    const Step step = stepOf(style);
    QFont font = systemFont(step.points);
    font.setWeight(step.weight);
    return font;
}

QFont emojiFont(qreal points) {
    QFont font(QStringList{u"Noto Color Emoji"_s, u"Twitter Color Emoji"_s, u"JoyPixels"_s, u"emoji"_s});
    font.setPixelSize(qRound(points));
    return font;
}

QColor secondaryTextColour(const QPalette& palette) {
    return isDark(palette) ? QColor(0xff, 0xff, 0xff, 170) : QColor(colours::secondaryText);
}

QColor readableColour(const QColor& colour, const QPalette& palette) {
    constexpr int light = 190;
    return isDark(palette) ? QColor::fromHsl(colour.hslHue(), colour.hslSaturation(), light) : colour;
}

QColor withOpacity(QColor colour, qreal opacity) {
    colour.setAlphaF(static_cast<float>(static_cast<qreal>(colour.alphaF()) * opacity));
    return colour;
}

QPalette lightPalette() {
    return paletteOf({.window = 0xfff5f6f8,
                      .base = 0xffffffff,
                      .alternateBase = 0xfff3f5f8,
                      .text = colours::text,
                      .button = 0xffffffff,
                      .border = colours::border,
                      .accent = colours::accent,
                      .placeholder = 0xff6b7280,
                      .disabledText = 0xff949aa5,
                      .tip = 0xff2b2f36,
                      .tipText = 0xffffffff});
}

QPalette darkPalette() {
    return paletteOf({.window = 0xff202226,
                      .base = 0xff292c31,
                      .alternateBase = 0xff2f3238,
                      .text = 0xffe9ebee,
                      .button = 0xff3a3e45,
                      .border = 0xff565c66,
                      .accent = 0xff3b7de9,
                      .placeholder = 0xffa0a7b2,
                      .disabledText = 0xff7b828d,
                      .tip = 0xffe9ebee,
                      .tipText = colours::text});
}

QPalette lookFor(const QPalette& desktop) {
    return isDark(desktop) ? darkPalette() : lightPalette();
}

void applyApplicationLook(QApplication& application) {
    QApplication::setStyle(std::make_unique<ControlStyle>().release());
    keepPalette();
    application.installEventFilter(new PaletteKeeper(&application));

    QFont font = QApplication::font();
    font.setFamilies({u"Inter"_s, font.family()}); // where Inter is missing, the desktop's own font takes its place
    font.setPixelSize(qRound(stepOf(TextStyle::Body).points));
    QApplication::setFont(font);
}

void setWhiteBackground(QWidget& widget) {
    QPalette palette = lightPalette();
    palette.setColor(QPalette::Window, Qt::white);
    widget.setPalette(palette);
    widget.setAutoFillBackground(true);
}

} // namespace dorvantel
