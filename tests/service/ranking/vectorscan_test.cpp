// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/ranking/VectorIndex.h"

#include <algorithm>
#include <limits>
#include <random>

#include <gmock/gmock.h>

using namespace dorvantel::service;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr float largest = std::numeric_limits<float>::max();

std::vector<float> randomVector(std::mt19937& random, std::size_t length) {
    std::normal_distribution<float> normal;
    std::vector<float> vector(length);
    std::ranges::generate(vector, [&] { return normal(random); });
    return vector;
}

VectorRows rowsOf(const std::vector<std::vector<float>>& vectors, const std::vector<std::int64_t>& ids) {
    VectorRows rows;
    for (std::size_t i = 0; i < vectors.size(); ++i) {
        rows.append(ids[i], vectors[i]);
    }
    return rows;
}

double plainDotProduct(const std::vector<float>& a, const std::vector<float>& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        sum += static_cast<double>(a[i]) * static_cast<double>(b[i]);
    }
    return sum;
}

} // namespace

TEST(DotProduct, AgreesWithAPlainSumForEveryLength) {
    std::mt19937 random(3);
    for (std::size_t length = 0; length < 200; ++length) {
        const auto a = randomVector(random, length);
        const auto b = randomVector(random, length);
        EXPECT_NEAR(dotProduct(a, b), plainDotProduct(a, b), 1e-4) << length;
    }
}

TEST(DotProduct, StaysFiniteForTheLargestNumbers) {
    const std::vector<float> query{largest, -largest, largest, -largest};
    EXPECT_EQ(dotProduct(std::vector<float>{1, 1, 1, 1}, query), 0);
    EXPECT_EQ(scoreOf(dotProduct(std::vector<float>{1, 0, 1, 0}, query)), 100);
    EXPECT_EQ(scoreOf(dotProduct(std::vector<float>(100, largest), std::vector<float>(100, -largest))), 0);
}

TEST(DotProduct, IsRightWhereOnlyASumOnTheWayIsTooLarge) {
    // A sum of 32 bits becomes infinite on the way and stays so.
    std::vector<float> query(64);
    query[0] = query[16] = largest;
    query[32] = query[48] = -largest;
    EXPECT_EQ(dotProduct(std::vector<float>(64, 1), query), 0);
}

TEST(ScoreOf, MapsAndClamps) {
    EXPECT_EQ(scoreOf(-1), 0);
    EXPECT_EQ(scoreOf(0), 50);
    EXPECT_EQ(scoreOf(0.5), 75);
    EXPECT_EQ(scoreOf(1), 100);
    EXPECT_EQ(scoreOf(1.0000001), 100);
    EXPECT_EQ(scoreOf(-2), 0);
}

TEST(BestRows, TiesComeByRisingIdWhateverTheirPlace) {
    const VectorRows rows = rowsOf({{1}, {0}, {1}, {1}}, {9, 1, 4, 7});
    const std::vector<float> query{1};
    EXPECT_THAT(bestRows(rows, query, std::nullopt, 9),
                ElementsAre(RankedVector{4, 100}, RankedVector{7, 100}, RankedVector{9, 100}, RankedVector{1, 50}));
    EXPECT_THAT(bestRows(rows, query, std::nullopt, 2), ElementsAre(RankedVector{4, 100}, RankedVector{7, 100}));
    EXPECT_THAT(bestRows(rows, query, std::vector<std::size_t>{0, 1}, 5),
                ElementsAre(RankedVector{9, 100}, RankedVector{1, 50}));
    EXPECT_THAT(bestRows(rows, query, std::nullopt, 0), IsEmpty());
    EXPECT_THAT(bestRows(rows, query, std::vector<std::size_t>{}, 5), IsEmpty());
}

TEST(BestRows, ClampedScoresAreTies) {
    EXPECT_THAT(bestRows(rowsOf({{1}, {0.5F}}, {2, 1}), std::vector<float>{10}, std::nullopt, 5),
                ElementsAre(RankedVector{1, 100}, RankedVector{2, 100}));
}

TEST(BestRows, TieAtTheLimitGoesToTheLowerIdHoweverFarItsVectorLies) {
    EXPECT_THAT(bestRows(rowsOf({{1}, {0.5F}}, {2, 1}), std::vector<float>{10}, std::nullopt, 1),
                ElementsAre(RankedVector{1, 100}));
    EXPECT_THAT(bestRows(rowsOf({{-0.5F}, {-1}}, {2, 1}), std::vector<float>{10}, std::nullopt, 1),
                ElementsAre(RankedVector{1, 0}));
}

TEST(ScoreRows, ScoresComeInTheOrderOfTheRows) {
    const VectorRows rows = rowsOf({{1}, {0}, {-1}}, {9, 1, 4});
    EXPECT_THAT(scoreRows(rows, std::vector<float>{1}, std::nullopt),
                ElementsAre(RankedVector{9, 100}, RankedVector{1, 50}, RankedVector{4, 0}));
    EXPECT_THAT(scoreRows(rows, std::vector<float>{1}, std::vector<std::size_t>{2, 0}),
                ElementsAre(RankedVector{4, 0}, RankedVector{9, 100}));
}

TEST(VectorIndex, EmptyIndexRanksNothing) {
    EXPECT_THAT(VectorIndex().best(std::vector<float>{1, 2}, std::nullopt, 5), IsEmpty());
    EXPECT_THAT(VectorIndex().scores(std::vector<float>{1, 2}, std::nullopt), IsEmpty());
}

TEST(VectorIndex, AgreesWithAPlainMapWhileItChanges) {
    std::mt19937 random(5);
    VectorIndex index;
    std::map<std::int64_t, std::vector<float>> plain;
    for (int round = 0; round < 2'000; ++round) {
        const auto id = static_cast<std::int64_t>(random() % 60);
        if (random() % 3 == 0) {
            index.remove(id);
            plain.erase(id);
        } else {
            plain[id] = randomVector(random, 5);
            index.put(id, plain[id]);
        }
        ASSERT_EQ(index.size(), plain.size());
        ASSERT_EQ(index.dimension(), plain.empty() ? 0U : 5U);
        const auto query = randomVector(random, 5);
        std::vector<RankedVector> expected;
        std::vector<std::int64_t> evenIds;
        for (const auto& [key, vector] : plain) {
            expected.push_back({key, scoreOf(dotProduct(vector, query))});
        }
        ASSERT_EQ(index.scores(query, std::nullopt), expected);
        std::ranges::stable_sort(expected, std::ranges::greater(), &RankedVector::score);
        ASSERT_EQ(index.best(query, std::nullopt, 100), expected);

        for (std::int64_t even = 0; even < 60; even += 2) {
            evenIds.push_back(even);
        }
        std::erase_if(expected, [](const RankedVector& ranked) { return ranked.id % 2 != 0; });
        expected.resize(std::min<std::size_t>(expected.size(), 5));
        ASSERT_EQ(index.best(query, evenIds, 5), expected);
    }
}
