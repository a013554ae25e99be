// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/support/Print.h"
#include "ui/PDFPageLayout.h"

#include <limits>

#include <gtest/gtest.h>

namespace dorvantel {

namespace {
constexpr int gap = PDFPageLayout::gap;
}

TEST(PDFPageLayout, WithoutPagesThereIsNothing) {
    const PDFPageLayout layout({}, 300);
    EXPECT_EQ(layout.pageCount(), 0);
    EXPECT_EQ(layout.height(), 0);
    EXPECT_EQ(layout.pagesWithin(0, 1000), (PDFPageLayout::Span{0, 0}));
    EXPECT_EQ(layout.positionOf(layout.placeAt(10)), 0);
}

TEST(PDFPageLayout, EveryPageIsAsWideAsTheViewAllowsAndKeepsItsProportion) {
    const PDFPageLayout layout({{100, 200}, {400, 100}}, 200 + 2 * gap);
    EXPECT_EQ(layout.page(0), QRect(gap, gap, 200, 400));
    EXPECT_EQ(layout.page(1), QRect(gap, gap + 400 + gap, 200, 50));
    EXPECT_EQ(layout.height(), gap + 400 + gap + 50 + gap);
}

TEST(PDFPageLayout, AViewTooNarrowForAnythingStillHasPages) {
    const PDFPageLayout layout({{100, 200}}, 0);
    EXPECT_EQ(layout.page(0).size(), QSize(1, 2));
}

TEST(PDFPageLayout, APageIsInSightFromItsFirstToItsLastPixel) {
    const PDFPageLayout layout({{100, 100}, {100, 100}, {100, 100}}, 100 + 2 * gap);
    const QRect second = layout.page(1);
    EXPECT_EQ(layout.pagesWithin(second.top(), second.top() + 1), (PDFPageLayout::Span{1, 2}));
    EXPECT_EQ(layout.pagesWithin(second.bottom(), second.bottom() + 1), (PDFPageLayout::Span{1, 2}));
    EXPECT_EQ(layout.pagesWithin(second.bottom() + 1, second.bottom() + 2), (PDFPageLayout::Span{2, 2}));
    EXPECT_EQ(layout.pagesWithin(0, layout.height()), (PDFPageLayout::Span{0, 3}));
    EXPECT_EQ(layout.pagesWithin(layout.height(), layout.height() + 100), (PDFPageLayout::Span{3, 3}));
}

TEST(PDFPageLayout, APlaceIsFoundAgainAtAnotherWidth) {
    const QList<QSizeF> sizes(5, usualPageSize);
    const PDFPageLayout narrow(sizes, 300);
    const PDFPageLayout wide(sizes, 900);
    const QRect page = narrow.page(3);
    const int y = page.top() + page.height() / 2;
    const PDFPageLayout::Place place = narrow.placeAt(y);
    EXPECT_EQ(place.page, 3);
    EXPECT_EQ(narrow.positionOf(place), y);
    const QRect same = wide.page(3);
    EXPECT_NEAR(wide.positionOf(place), same.top() + same.height() / 2, 2 * gap)
        << "the gap above does not grow with it";
    EXPECT_EQ(wide.positionOf(narrow.placeAt(0)), 0);
}

TEST(PDFPageLayout, ManyPagesAsLongAsCanBeDoNotOverflow) {
    const PDFPageLayout layout(QList<QSizeF>(20'000, QSizeF(1, 50)), 8'000);
    EXPECT_GT(layout.height(), 900'000'000);
    EXPECT_EQ(layout.pagesWithin(layout.height() - 2 * gap, layout.height()), (PDFPageLayout::Span{19'999, 20'000}));
}

TEST(PDFPageLayout, ASizeThatMakesNoSenseIsNotShowable) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    for (const QSizeF& size : {QSizeF(), QSizeF(0, 100), QSizeF(100, 0), QSizeF(-5, 100), QSizeF(infinite, infinite),
                               QSizeF(100, infinite), QSizeF(none, 100), QSizeF(100, 5001), QSizeF(5001, 100)}) {
        EXPECT_FALSE(isShowablePageSize(size)) << size.width() << " x " << size.height();
    }
    for (const QSizeF& size : {usualPageSize, QSizeF(100, 5000), QSizeF(5000, 100), QSizeF(35000, 35000)}) {
        EXPECT_TRUE(isShowablePageSize(size)) << size.width() << " x " << size.height();
    }
}

TEST(ImageSize, IsWhatTheScreenHasForThePage) {
    EXPECT_EQ(imageSize({300, 400}, 1, 1'000'000), QSize(300, 400));
    EXPECT_EQ(imageSize({300, 400}, 2, 1'000'000), QSize(600, 800));
    EXPECT_EQ(imageSize({301, 401}, 1.5, 1'000'000), QSize(452, 602));
}

TEST(ImageSize, IsNeverMoreThanTheMostPixels) {
    const QSize size = imageSize({3000, 4000}, 2, 12'000'000);
    EXPECT_LE(qint64(size.width()) * size.height(), 12'000'000);
    EXPECT_GT(qint64(size.width()) * size.height(), 11'900'000);
    EXPECT_NEAR(double(size.height()) / size.width(), 4.0 / 3, 0.01);
}

TEST(ImageSize, IsNeverEmpty) {
    EXPECT_EQ(imageSize({1, 1}, 0.25, 100), QSize(1, 1));
    EXPECT_EQ(imageSize({1, 1'000'000}, 1, 100), QSize(1, 10'000)) << "one pixel is the least width";
}

} // namespace dorvantel
