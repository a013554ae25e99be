// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QPainter>

#include <gmock/gmock.h>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

/// How much of an image is drawn (in pixels; a pale one counts in part) and whether what is has the one colour.
struct Ink {
    double amount = 0;
    bool oneColour = true;
};

Ink inkOf(const QImage& image, const QColor& colour) {
    const QImage plain = image.convertToFormat(QImage::Format_ARGB32);
    Ink ink;
    for (int y = 0; y < plain.height(); ++y) {
        for (int x = 0; x < plain.width(); ++x) {
            const QRgb pixel = plain.pixel(x, y);
            ink.amount += qAlpha(pixel) / 255.0;
            if (qAlpha(pixel) == 255) {
                ink.oneColour = ink.oneColour && QColor(pixel).rgb() == colour.rgb();
            }
        }
    }
    return ink;
}

QImage grabbed(QWidget& view) {
    QImage image(view.sizeHint(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.resize(view.sizeHint());
    view.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

} // namespace

TEST(Symbols, EveryNameThatTheScreensAskForIsThere) {
    EXPECT_THAT(symbolNames(), testing::UnorderedElementsAre(
                                   u"arrow.clockwise"_s, u"checkmark.circle.fill"_s, u"doc.text.fill"_s,
                                   u"exclamationmark.triangle"_s, u"exclamationmark.triangle.fill"_s, u"gear"_s,
                                   u"info.circle"_s, u"magnifyingglass"_s, u"plus.circle.fill"_s, u"server.rack"_s));
}

TEST(Symbols, EverySymbolIsDrawnInTheAskedColourAtEverySize) {
    for (const QString& name : symbolNames()) {
        for (const QColor& colour : {QColor(colours::orange), QColor(Qt::white)}) {
            for (const int size : {16, 60}) {
                const Ink ink = inkOf(symbolIcon(name, colour).pixmap(size, size).toImage(), colour);
                EXPECT_GT(ink.amount, size * size / 16) << qPrintable(name) << " at " << size;
                EXPECT_TRUE(ink.oneColour) << qPrintable(name) << " at " << size;
            }
        }
    }
}

TEST(Symbols, AnIconIsDrawnAfreshAtTwiceTheScaleInsteadOfStretched) {
    const QPixmap pixmap = symbolIcon(u"gear"_s, Qt::black).pixmap(QSize(16, 16), 2.0);
    EXPECT_EQ(pixmap.size(), QSize(32, 32));
    EXPECT_EQ(pixmap.devicePixelRatio(), 2.0);
    EXPECT_EQ(pixmap.toImage(), symbolIcon(u"gear"_s, Qt::black).pixmap(32, 32).toImage());
}

TEST(Symbols, ADisabledIconIsPaler) {
    const QIcon icon = symbolIcon(u"gear"_s, Qt::black);
    const QImage disabled = icon.pixmap(QSize(16, 16), QIcon::Disabled).toImage();
    const double plain = inkOf(icon.pixmap(QSize(16, 16)).toImage(), Qt::black).amount;
    EXPECT_NEAR(inkOf(disabled, Qt::black).amount, plain * 0.4, plain * 0.05);
}

TEST(Symbols, AViewHasTheSizeInPointsAndTheColour) {
    SymbolView view(u"plus.circle.fill"_s, Qt::red, 60);
    EXPECT_EQ(view.sizeHint(), QSize(60, 60));
    const Ink ink = inkOf(grabbed(view), Qt::red);
    EXPECT_GT(ink.amount, 1500);
    EXPECT_TRUE(ink.oneColour);
}

TEST(Symbols, AMarkThatIsNotShownIsTransparentAndKeepsItsPlace) {
    SymbolView view(u"exclamationmark.triangle"_s, Qt::red, 20);
    view.setShown(false);
    EXPECT_FALSE(view.isShown());
    EXPECT_EQ(view.sizeHint(), QSize(20, 20));
    EXPECT_EQ(inkOf(grabbed(view), Qt::red).amount, 0);
    view.setShown(true);
    EXPECT_GT(inkOf(grabbed(view), Qt::red).amount, 0);
}

TEST(Symbols, ATurnedSymbolIsDrawnTurned) {
    SymbolView view(u"exclamationmark.triangle.fill"_s, Qt::red, 40);
    const QImage upright = grabbed(view);
    view.setRotation(180);
    const QImage turned = grabbed(view);
    EXPECT_NE(turned, upright);
    EXPECT_GT(qAlpha(turned.pixel(4, 6)), 200) << "the broad side is on top now";
    EXPECT_EQ(qAlpha(upright.pixel(4, 6)), 0);
}

TEST(Symbols, TheLogoIsSquareAndTinted) {
    const std::unique_ptr<SymbolView> logo(SymbolView::ostrelLogo(QColor(colours::accent), 150));
    EXPECT_EQ(logo->sizeHint(), QSize(150, 150));
    const Ink ink = inkOf(grabbed(*logo), QColor(colours::accent));
    EXPECT_GT(ink.amount, 2000);
    EXPECT_TRUE(ink.oneColour);
}

TEST(Symbols, TheApplicationIconIsDrawnForEverySizeThatDesktopsAskFor) {
    const QIcon icon = applicationIcon();
    EXPECT_THAT(icon.availableSizes(), testing::SizeIs(6));
    for (const QSize size : icon.availableSizes()) {
        EXPECT_EQ(icon.pixmap(size, 1.0).size(), size);
    }
    EXPECT_EQ(icon.pixmap(QSize(64, 64), 2.0).size(), QSize(128, 128));
    EXPECT_EQ(qAlpha(icon.pixmap(256, 256).toImage().pixel(128, 20)), 255);
    EXPECT_EQ(qAlpha(icon.pixmap(256, 256).toImage().pixel(0, 0)), 0);
}

TEST(Symbols, SmallSizesOfTheApplicationIconHaveADrawingOfTheirOwn) {
    const auto reachesTheEdge = [](int size) { return qAlpha(applicationImage(size).pixel(0, size / 2)) == 255; };
    EXPECT_TRUE(reachesTheEdge(16));
    EXPECT_TRUE(reachesTheEdge(24));
    EXPECT_FALSE(reachesTheEdge(32));
    EXPECT_FALSE(reachesTheEdge(512));
}

TEST(SymbolsDeathTest, AnUnknownNameStopsTheProgram) {
    EXPECT_DEATH(symbolIcon(u"no.such.symbol"_s, Qt::black), "Fatal error: there is no symbol named no.such.symbol");
}

} // namespace dorvantel
