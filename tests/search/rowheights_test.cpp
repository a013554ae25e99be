// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/RowHeights.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace dorvantel {
namespace {

TEST(RowHeights, RowsOfTheUsualHeightLieOneBelowTheOther) {
    const RowHeights heights(10'000, 60);
    EXPECT_EQ(heights.top(0), 0);
    EXPECT_EQ(heights.top(9'999), 599'940);
    EXPECT_EQ(heights.total(), 600'000);
    EXPECT_EQ(heights.rowAt(59), 0);
    EXPECT_EQ(heights.rowAt(60), 1);
}

TEST(RowHeights, AHigherRowMovesTheRowsBelowIt) {
    RowHeights heights(3, 60);
    heights.setHeight(1, 200);
    EXPECT_EQ(heights.height(1), 200);
    EXPECT_EQ(heights.top(1), 60);
    EXPECT_EQ(heights.top(2), 260);
    EXPECT_EQ(heights.total(), 320);
    EXPECT_EQ(heights.rowAt(259), 1);
    EXPECT_EQ(heights.rowAt(260), 2);
}

TEST(RowHeights, ARowThatIsUsualAgainMovesNothing) {
    RowHeights heights(3, 60);
    heights.setHeight(1, 200);
    heights.setHeight(1, 60);
    EXPECT_EQ(heights.total(), 180);
}

TEST(RowHeights, OutsideTheListTheNearestRowCounts) {
    RowHeights heights(3, 60);
    heights.setHeight(2, 100);
    EXPECT_EQ(heights.rowAt(-1), 0);
    EXPECT_EQ(heights.rowAt(100'000), 2);
}

TEST(RowHeights, WithoutRowsThereIsNoHeight) {
    EXPECT_EQ(RowHeights(0, 60).total(), 0);
    EXPECT_EQ(RowHeights().count(), 0);
}

TEST(RowHeights, AgreesWithAddingUpEveryRow) {
    std::mt19937 random(60);
    RowHeights heights(50, 60);
    std::vector<int> plain(50, 60);
    for (int round = 0; round < 500; ++round) {
        const auto row = static_cast<qsizetype>(random() % 50);
        const int height = random() % 3 == 0 ? 60 : 20 + static_cast<int>(random() % 300);
        heights.setHeight(row, height);
        plain[static_cast<std::size_t>(row)] = height;
        int top = 0;
        for (qsizetype i = 0; i < 50; ++i) {
            ASSERT_EQ(heights.top(i), top);
            const int bottom = top + plain[static_cast<std::size_t>(i)];
            ASSERT_EQ(heights.rowAt(top), i);
            ASSERT_EQ(heights.rowAt(bottom - 1), i);
            top = bottom;
        }
        ASSERT_EQ(heights.total(), top);
    }
}

} // namespace
} // namespace dorvantel
