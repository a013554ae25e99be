// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/ranking/VectorScan.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

#include <gtest/gtest.h>

using namespace dorvantel::service;

namespace {

using Vector = std::vector<float>;

constexpr float largest = std::numeric_limits<float>::max();
constexpr float smallest = std::numeric_limits<float>::denorm_min();

/// Vectors that are hard to tell apart, and the query that is asked of them.
struct Scene {
    std::string name;
    std::vector<Vector> vectors;
    Vector query;
};

class Scenes {
public:
    explicit Scenes(std::size_t dimension, std::size_t count)
        : m_dimension(dimension)
        , m_count(count)
        , m_random(static_cast<std::uint32_t>(dimension)) {}

    std::vector<Scene> all() {
        const Vector query = unit();
        const Vector center = unit();
        const Vector zero(m_dimension, 0);
        std::vector<Scene> scenes;
        const auto add = [&](const char* name, const Vector& asked, auto make) {
            Scene scene{name, {}, asked};
            for (std::size_t i = 0; i < m_count; ++i) {
                scene.vectors.push_back(make(i));
            }
            scenes.push_back(std::move(scene));
        };
        add("random", query, [&](std::size_t) { return unit(); });
        add("random, query not of unit length", scaled(query, 37), [&](std::size_t) { return unit(); });
        add("clustered", center, [&](std::size_t i) { return near(i % 2 == 0 ? center : query, 0.1F); });
        add("near-equal", query, [&](std::size_t) { return near(center, 1e-6F); });
        add("equal but for the last bit", query, [&](std::size_t i) {
            Vector vector = center;
            float& number = vector[i % m_dimension];
            number = std::nextafter(number, i % 3 == 0 ? 2.0F : -2.0F);
            return vector;
        });
        add("all equal", query, [&](std::size_t) { return center; });
        add("all equal to the query", query, [&](std::size_t) { return query; });
        add("duplicated", query, [&, few = std::vector{unit(), unit(), unit()}](std::size_t i) { return few[i % 3]; });
        add("zero", query, [&](std::size_t i) { return i % 5 == 0 ? unit() : zero; });
        add("zero query", zero, [&](std::size_t) { return unit(); });
        add("signs", query, [&](std::size_t i) { return scaled(query, i % 2 == 0 ? 1.0F : -1.0F); });
        add("one huge component", query, [&](std::size_t i) {
            Vector vector = unit();
            vector[i % m_dimension] = i % 2 == 0 ? 1e6F : 1;
            return vector;
        });
        add("one huge component in the query", withFirst(query, 1e6F), [&](std::size_t) { return unit(); });
        add("one component that all share", withFirst(query, 1), [&](std::size_t) { return withFirst(unit(), 1); });
        add("largest numbers", query, [&](std::size_t i) { return i % 4 == 0 ? unit() : signs(largest); });
        add("largest numbers in the query", signs(largest), [&](std::size_t) { return signs(largest / 3); });
        add("denormals", query, [&](std::size_t) { return scaled(unit(), 1e-42F); });
        add("denormals on both sides", scaled(query, 1e-42F), [&](std::size_t) { return scaled(unit(), 1e-42F); });
        add("smallest number", query, [&](std::size_t i) { return i % 2 == 0 ? signs(smallest) : zero; });
        add("large query against small rows", scaled(query, 1e30F),
            [&](std::size_t) { return scaled(unit(), 1e-31F); });
        add("whole numbers", signs(3), [&](std::size_t) { return wholeNumbers(); });
        add("between two codes", signs(1), [&](std::size_t) { return withFirst(halves(), 127); });
        return scenes;
    }

private:
    Vector normal() {
        std::normal_distribution<float> distribution;
        Vector vector(m_dimension);
        std::ranges::generate(vector, [&] { return distribution(m_random); });
        return vector;
    }
    Vector unit() {
        const Vector vector = normal();
        const float length = std::sqrt(std::inner_product(vector.begin(), vector.end(), vector.begin(), 0.0F));
        return scaled(vector, 1 / length);
    }
    static Vector scaled(Vector vector, float factor) {
        std::ranges::for_each(vector, [factor](float& number) { number *= factor; });
        return vector;
    }
    static Vector withFirst(Vector vector, float first) {
        vector[0] = first;
        return vector;
    }
    Vector near(const Vector& center, float distance) {
        const Vector step = scaled(unit(), distance);
        Vector vector = center;
        std::ranges::transform(center, step, vector.begin(), std::plus());
        return vector;
    }
    Vector signs(float number) {
        Vector vector(m_dimension);
        std::ranges::generate(vector, [&] { return m_random() % 2 == 0 ? number : -number; });
        return vector;
    }
    Vector wholeNumbers() {
        Vector vector(m_dimension);
        std::ranges::generate(vector, [&] { return static_cast<float>(m_random() % 5) - 2; });
        return vector;
    }
    Vector halves() {
        Vector vector(m_dimension);
        std::ranges::generate(vector, [&] { return static_cast<float>(m_random() % 20) - 9.5F; });
        return vector;
    }

    std::size_t m_dimension;
    std::size_t m_count;
    std::mt19937 m_random;
};

/// Scores everything and sorts it.
std::vector<RankedVector> plainBest(const VectorRows& rows, const Vector& query, const SomeRows& among,
                                    std::size_t limit) {
    std::vector<RankedVector> ranking;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (!among || std::ranges::find(*among, row) != among->end()) {
            ranking.push_back({rows.id(row), scoreOf(dotProduct(rows.values(row), query))});
        }
    }
    std::ranges::sort(ranking, [](const RankedVector& left, const RankedVector& right) {
        return left.score != right.score ? left.score > right.score : left.id < right.id;
    });
    ranking.resize(std::min(ranking.size(), limit));
    return ranking;
}

/// Ids that do not rise with the rows.
VectorRows rowsOf(const std::vector<Vector>& vectors) {
    VectorRows rows;
    for (std::size_t i = 0; i < vectors.size(); ++i) {
        rows.append(static_cast<std::int64_t>(i * 7'919 % 10'007), vectors[i]);
    }
    return rows;
}

std::vector<std::size_t> dimensions() {
    std::vector<std::size_t> dimensions(130);
    std::iota(dimensions.begin(), dimensions.end(), 1);
    for (const std::size_t more : std::initializer_list<std::size_t>{
             191, 192,  193,  255,  256,  257,  383,  384,  385,  511,  512,  513,  767,  768,
             769, 1000, 1023, 1024, 1025, 1535, 1536, 2047, 2048, 3071, 3072, 3333, 4095, 4096}) {
        dimensions.push_back(more);
    }
    return dimensions;
}

/// Runs on the kernel of this name; skipped, saying so, where the processor does not have it.
class BestRowsOnEveryKernel : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        if (!kernel().isSupported) {
            GTEST_SKIP() << "this processor has no " << kernel().name;
        }
    }
    static const DotKernel& kernel() { return *std::ranges::find(dotKernels(), GetParam(), &DotKernel::name); }
};

std::vector<std::string> kernelNames() {
    std::vector<std::string> names;
    for (const DotKernel& kernel : dotKernels()) {
        names.emplace_back(kernel.name);
    }
    return names;
}

std::string asTestName(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param;
    std::erase_if(name, [](char character) { return std::isalnum(static_cast<unsigned char>(character)) == 0; });
    return name;
}

} // namespace

TEST_P(BestRowsOnEveryKernel, SameRowsAndScoresAsThePlainPass) {
    for (const std::size_t dimension : dimensions()) {
        for (const Scene& scene : Scenes(dimension, dimension < 200 ? 100 : 41).all()) {
            const VectorRows rows = rowsOf(scene.vectors);
            std::vector<RankedVector> expected = plainBest(rows, scene.query, std::nullopt, 40);
            for (const std::size_t limit : std::initializer_list<std::size_t>{40, 5, 1}) {
                expected.resize(std::min(expected.size(), limit));
                ASSERT_EQ(bestRows(rows, scene.query, std::nullopt, limit, kernel()), expected)
                    << scene.name << ", " << dimension << " numbers, the best " << limit;
            }
        }
    }
}

TEST_P(BestRowsOnEveryKernel, SameRowsAndScoresAmongSomeRows) {
    for (const std::size_t dimension : std::initializer_list<std::size_t>{1, 7, 64, 100, 768}) {
        for (const Scene& scene : Scenes(dimension, 300).all()) {
            const VectorRows rows = rowsOf(scene.vectors);
            for (const std::size_t step : std::initializer_list<std::size_t>{2, 9, 100, 400}) {
                std::vector<std::size_t> among;
                for (std::size_t row = step / 2; row < rows.size(); row += step) {
                    among.push_back(row);
                }
                ASSERT_EQ(bestRows(rows, scene.query, among, 5, kernel()), plainBest(rows, scene.query, among, 5))
                    << scene.name << ", " << dimension << " numbers, every " << step << "th";
            }
        }
    }
}

TEST_P(BestRowsOnEveryKernel, CodeProductsAgreeWithAPlainSumForTheLargestCodes) {
    std::mt19937 random(11);
    for (const std::size_t length : {64UZ, 128UZ, 4'096UZ, maxCodes}) {
        AlignedArray<std::int8_t> factors(length);
        constexpr std::size_t rowCount = 7;
        AlignedArray<std::uint8_t> codes(length * rowCount);
        QueryCodes query{{factors.data(), length}, 0};
        for (std::size_t i = 0; i < length; ++i) {
            factors.data()[i] = static_cast<std::int8_t>(length == maxCodes ? 127 : random() % 255 - 127);
            query.sum += factors.data()[i];
        }
        std::vector<const std::uint8_t*> rows;
        std::vector<std::int32_t> expected;
        for (std::size_t row = 0; row < rowCount; ++row) {
            std::uint8_t* const begin = codes.data() + row * length;
            rows.push_back(begin);
            std::int32_t sum = 0;
            for (std::size_t i = 0; i < length; ++i) {
                begin[i] = static_cast<std::uint8_t>(row == 0 ? 255 : row == 1 ? 1 : 1 + random() % 255);
                sum += (begin[i] - codeZero) * factors.data()[i];
            }
            expected.push_back(sum);
        }
        std::vector<std::int32_t> dots(rowCount);
        kernel().dots(rows, query, dots.data());
        ASSERT_EQ(dots, expected) << length;
    }
}

INSTANTIATE_TEST_SUITE_P(Kernels, BestRowsOnEveryKernel, testing::ValuesIn(kernelNames()), asTestName);

TEST(CodedQuery, BoundsHoldTheDotProductAndAreNarrow) {
    for (const std::size_t dimension : dimensions()) {
        for (const Scene& scene : Scenes(dimension, 20).all()) {
            const VectorRows rows = rowsOf(scene.vectors);
            const CodedQuery query(scene.query);
            for (std::size_t row = 0; row < rows.size(); ++row) {
                const std::uint8_t* const codes = rows.codes(row);
                std::int32_t dot = 0;
                bestDotKernel().dots({&codes, 1}, query.codes(), &dot);
                const DotBounds bounds = query.bounds(rows.coded(row), dot);
                const double exact = dotProduct(rows.values(row), scene.query);
                ASSERT_FALSE(bounds.lower > exact) << scene.name << ", " << dimension;
                ASSERT_FALSE(bounds.upper < exact) << scene.name << ", " << dimension;
                if (scene.name == "random") {
                    ASSERT_LT(bounds.upper - bounds.lower, 0.05) << dimension;
                }
            }
        }
    }
}

TEST(VectorRows, RowsStayWhereTheyAreWhileOthersCome) {
    VectorRows rows;
    const Vector first(1'000, 0.5F);
    rows.append(1, first);
    const float* const place = rows.values(0).data();
    for (std::int64_t id = 2; id < 20'000; ++id) {
        rows.append(id, first);
    }
    EXPECT_EQ(rows.values(0).data(), place);
    while (rows.size() > 1) {
        rows.remove(rows.size() - 1);
    }
    EXPECT_EQ(rows.values(0).data(), place);
    rows.remove(0);
    EXPECT_EQ(rows.dimension(), 0U);
    rows.append(1, Vector{1, 2});
    EXPECT_EQ(rows.dimension(), 2U);
    EXPECT_EQ(rows.values(0)[1], 2);
}
