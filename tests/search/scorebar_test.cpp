// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/ScoreBar.h"

#include <QImage>

#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <limits>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

TEST(ScoreBar, AHundredAndMoreIsOneGreenBar) {
    EXPECT_EQ(scoreBarParts(100), (ScoreBarParts{100, 0}));
    EXPECT_EQ(scoreBarParts(100.5F), (ScoreBarParts{100, 0}));
    EXPECT_EQ(scoreBarParts(std::numeric_limits<float>::infinity()), (ScoreBarParts{100, 0}));
}

TEST(ScoreBar, ZeroIsAllWhite) {
    EXPECT_EQ(scoreBarParts(0), (ScoreBarParts{0, 100}));
}

TEST(ScoreBar, InBetweenAPointIsAPoint) {
    EXPECT_EQ(scoreBarParts(1), (ScoreBarParts{1, 99}));
    EXPECT_EQ(scoreBarParts(62.5F), (ScoreBarParts{62.5, 37.5}));
}

TEST(ScoreBar, WhatIsNoScoreIsAllWhite) {
    EXPECT_EQ(scoreBarParts(-3), (ScoreBarParts{0, 100}));
    EXPECT_EQ(scoreBarParts(std::numeric_limits<float>::quiet_NaN()), (ScoreBarParts{0, 100}));
}

TEST(ScoreBar, IsDrawnHundredByTwenty) {
    for (const int score : {0, 30, 100, 250}) {
        ScoreBar bar(static_cast<float>(score));
        EXPECT_EQ(bar.size(), QSize(100, 20));
        const QImage image = bar.grab().toImage();
        for (int x = 2; x < 98; ++x) {
            const QColor colour = image.pixelColor(x, 10);
            if (x < score) {
                EXPECT_GT(colour.green(), colour.red() + 50) << x;
                EXPECT_GT(colour.green(), colour.blue() + 50) << x;
            } else {
                EXPECT_EQ(colour, QColor(Qt::white)) << x;
            }
        }
    }
}

TEST(ScoreBar, ScreenReadersHearTheScore) {
    EXPECT_TRUE(ScoreBar(100).accessibleName().startsWith(u"Puntuación: 100"_s));
}

} // namespace
} // namespace dorvantel
