// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/support/Wait.h"
#include "ui/ControlStyle.h"
#include "ui/Figures.h"
#include "ui/PaletteFollower.h"
#include "ui/Style.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetrics>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <gmock/gmock.h>

#include <cmath>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(static_cast<double>(colour.redF())) + 0.7152 * linear(static_cast<double>(colour.greenF())) +
           0.0722 * linear(static_cast<double>(colour.blueF()));
}

double contrast(const QColor& one, const QColor& other) {
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

QColor over(const QColor& colour, const QColor& ground) {
    const auto mix = [&](int top, int bottom) {
        return (top * colour.alpha() + bottom * (255 - colour.alpha())) / 255;
    };
    return {mix(colour.red(), ground.red()), mix(colour.green(), ground.green()), mix(colour.blue(), ground.blue())};
}

int colouredPixels(const QString& text, const QFont& font) {
    QImage image(120, 120, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(image.rect(), Qt::AlignCenter, text);
    painter.end();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += QColor(image.pixel(x, y)).saturation() > 60 ? 1 : 0;
        }
    }
    return count;
}

} // namespace

TEST(Style, OnePointIsOneLogicalPixel) {
    EXPECT_EQ(systemFont(18).pixelSize(), 18);
    EXPECT_EQ(systemFont(24).pixelSize(), 24);
    EXPECT_EQ(emojiFont(72).pixelSize(), 72);
}

TEST(Style, TheTypeScaleGoesDownFromTheLargeTitleToTheSmallCaption) {
    int last = 1000;
    for (const TextStyle style : {TextStyle::LargeTitle, TextStyle::Title, TextStyle::Headline, TextStyle::Body,
                                  TextStyle::Subheadline, TextStyle::Caption, TextStyle::Caption2}) {
        EXPECT_LT(textFont(style).pixelSize(), last);
        last = textFont(style).pixelSize();
    }
    EXPECT_GT(textFont(TextStyle::Headline).weight(), QFont::Normal);
}

TEST(Style, TheLookSetsTheBodyFontAndStaysLightOrDarkAsTheDesktopIs) {
    QApplication::setPalette(QPalette(QColor(230, 230, 230)));
    applyApplicationLook(*qApp);
    EXPECT_EQ(QApplication::font().pixelSize(), textFont(TextStyle::Body).pixelSize());
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), lightPalette().color(QPalette::Window));

    QApplication::setPalette(QPalette(QColor(40, 40, 40)));
    applyApplicationLook(*qApp);
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), darkPalette().color(QPalette::Window));
}

TEST(Style, TextsOfBothPalettesAreReadable) {
    for (const QPalette& palette : {lightPalette(), darkPalette()}) {
        for (const QPalette::ColorRole ground :
             {QPalette::Window, QPalette::Base, QPalette::AlternateBase, QPalette::Button}) {
            EXPECT_GE(contrast(palette.color(QPalette::Text), palette.color(ground)), 7.0);
        }
        EXPECT_GE(contrast(palette.color(QPalette::PlaceholderText), palette.color(QPalette::Base)), 4.5);
        EXPECT_GE(contrast(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)), 3.9);
        EXPECT_GE(contrast(palette.color(QPalette::ToolTipText), palette.color(QPalette::ToolTipBase)), 7.0);
        const QColor window = palette.color(QPalette::Window);
        EXPECT_GE(contrast(over(secondaryTextColour(palette), window), window), 4.5);
    }
}

TEST(Style, ColoursOfTextsAreReadableOnWhite) {
    for (const QRgb colour : {colours::accent, colours::text, colours::secondaryText, colours::blue, colours::green,
                              colours::orange, colours::purple, colours::red, colours::gray}) {
        EXPECT_GE(contrast(QColor(colour), Qt::white), 4.5) << std::hex << colour;
    }
}

TEST(Style, ReadableColoursAreReadableOnEitherPalette) {
    for (const QRgb colour : {colours::blue, colours::green, colours::orange, colours::purple, colours::red}) {
        EXPECT_EQ(readableColour(colour, lightPalette()), QColor(colour));
        const QColor onDark = readableColour(colour, darkPalette());
        EXPECT_GE(contrast(onDark, darkPalette().color(QPalette::Window)), 4.5) << std::hex << colour;
        EXPECT_GE(contrast(onDark, darkPalette().color(QPalette::Base)), 4.5) << std::hex << colour;
        EXPECT_NEAR(onDark.hslHue(), QColor(colour).hslHue(), 1) << std::hex << colour;
    }
}

TEST(Style, TheStyleTurnsTheDesktopsPaletteIntoOurs) {
    ControlStyle style;
    QPalette light(QColor(0xee, 0xee, 0xe0));
    style.polish(light);
    EXPECT_EQ(light.color(QPalette::Window), lightPalette().color(QPalette::Window));
    QPalette dark(QColor(0x10, 0x10, 0x20));
    style.polish(dark);
    EXPECT_EQ(dark.color(QPalette::Window), darkPalette().color(QPalette::Window));
    EXPECT_EQ(dark.color(QPalette::Disabled, QPalette::Text), darkPalette().color(QPalette::Disabled, QPalette::Text));
}

TEST(Style, APaletteThatSomebodySetsWhileTheProgramRunsBecomesOurs) {
    applyApplicationLook(*qApp);
    QApplication::setPalette(QPalette(QColor(0x10, 0x10, 0x20)));
    EXPECT_EQ(QApplication::palette().color(QPalette::Base), darkPalette().color(QPalette::Base));
    EXPECT_EQ(QWidget().palette().color(QPalette::Text), darkPalette().color(QPalette::Text));
    QApplication::setPalette(QPalette(QColor(0xee, 0xee, 0xe0)));
    EXPECT_EQ(QApplication::palette().color(QPalette::Base), lightPalette().color(QPalette::Base));
    EXPECT_EQ(QWidget().palette().color(QPalette::Text), lightPalette().color(QPalette::Text));
}

TEST(Style, WhatKeepsAColourTakesItAgainWhenThePaletteChanges) {
    QApplication::setPalette(lightPalette());
    QWidget window;
    QWidget widget(&window);
    window.show();
    QList<QColor> taken;
    followPalette(widget, [&] {
        QPalette palette = widget.palette();
        taken.append(secondaryTextColour(palette));
        palette.setColor(QPalette::WindowText, taken.last());
        widget.setPalette(palette);
    });
    QApplication::setPalette(darkPalette());
    EXPECT_TRUE(test::waitUntil([&] { return taken.size() > 1; })); // windows hear of it in their own time
    EXPECT_EQ(taken, (QList<QColor>{secondaryTextColour(lightPalette()), secondaryTextColour(darkPalette())}));
    QApplication::setPalette(lightPalette());
}

TEST(Style, AWhitePageKeepsDarkTextInADarkDesktop) {
    QApplication::setPalette(darkPalette());
    QWidget page;
    auto* layout = new QVBoxLayout(&page);
    auto* label = new QLabel(u"Nombre"_s);
    setWhiteBackground(page);
    layout->addWidget(label);
    EXPECT_EQ(page.palette().color(QPalette::Window), QColor(Qt::white));
    EXPECT_EQ(label->palette().color(QPalette::WindowText), QColor(colours::text));
    EXPECT_EQ(page.grab().toImage().pixelColor(1, 1), QColor(Qt::white));
}

TEST(Style, OpacityIsAShareOfTheColoursOwn) {
    EXPECT_EQ(withOpacity(Qt::black, 0.6).alpha(), 153);
    EXPECT_EQ(withOpacity(QColor(0, 0, 0, 128), 0.5).alpha(), 64);
}

TEST(Figures, AreJoinedSequencesOfTheirCodePoints) {
    EXPECT_EQ(manFigure.toString().toUcs4(), (QList<uint>{0x1F468, 0x200D, 0x1F4BB}));
    EXPECT_EQ(womanFigure.toString().toUcs4(), (QList<uint>{0x1F469, 0x200D, 0x1F4BB}));
    EXPECT_EQ(pairFigure.toString().toUcs4(), (QList<uint>{0x1F46B}));
}

TEST(Figures, OnlyTheExactWordMasculinoShowsTheMan) {
    EXPECT_EQ(candidateFigure(u"Masculino"), manFigure);
    for (const QString& other : {u"Femenino"_s, u"masculino"_s, u"femenino"_s, u"Masculino "_s, QString()}) {
        EXPECT_EQ(candidateFigure(other), womanFigure) << qPrintable(other);
    }
}

TEST(Figures, AreDrawnInColourAsOneFigure) {
    if (!QFontInfo(emojiFont(72)).family().contains(u"Emoji"_s)) {
        GTEST_SKIP() << "no colour emoji font is installed";
    }
    for (const qreal points : {36.0, 72.0}) {
        for (const QStringView figure : {manFigure, womanFigure, pairFigure}) {
            EXPECT_GT(colouredPixels(figure.toString(), emojiFont(points)), points * points / 8);
        }
        const int one = QFontMetrics(emojiFont(points)).horizontalAdvance(pairFigure.toString());
        const int joined = QFontMetrics(emojiFont(points)).horizontalAdvance(manFigure.toString());
        EXPECT_LT(joined, one * 1.2) << "a sequence that fell apart is as wide as its parts";
    }
}

} // namespace dorvantel
