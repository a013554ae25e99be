// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/ranking/VectorScan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <queue>

namespace dorvantel::service {

namespace {

constexpr std::size_t lanes = 16;

/// Sixteen sums side by side, which the compiler keeps in vector registers.
float quickDotProduct(const float* a, const float* b, std::size_t length) {
    std::array<float, lanes> sums{};
    std::size_t i = 0;
    for (; i + lanes <= length; i += lanes) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            sums[lane] += a[i + lane] * b[i + lane];
        }
    }
    for (std::size_t lane = 0; i < length; ++i, ++lane) {
        sums[lane] += a[i] * b[i];
    }
    for (std::size_t width = lanes / 2; width > 0; width /= 2) {
        for (std::size_t lane = 0; lane < width; ++lane) {
            sums[lane] += sums[lane + width];
        }
    }
    return sums[0];
}

constexpr double infinity = std::numeric_limits<double>::infinity();

/// Rows whose codes are multiplied in one call: few enough for their dot products to stay near, many enough for the
/// call not to count.
constexpr std::size_t batch = 128;

bool isBetter(const RankedVector& left, const RankedVector& right) {
    return left.score != right.score ? left.score > right.score : left.id < right.id;
}

/// A dot product that surely scores less than `dot` does: the next lower score lies far more than a rounding below.
double scoringLess(double dot) {
    const float score = scoreOf(dot);
    if (!(score > 0)) {
        return -infinity;
    }
    double less = static_cast<double>(std::nextafter(score, 0.0F)) / 50 - 1;
    while (scoreOf(less) >= score) {
        less = std::nextafter(less, -infinity);
    }
    return less;
}

/// The rows that may be among the best, as far as bounds of their dot products tell.
class Candidates {
public:
    struct Candidate {
        double upper; ///< of its dot product
        std::size_t row;
    };

    explicit Candidates(std::size_t limit)
        : m_limit(limit) {}

    /// False for a row that has `limit` rows with a higher score. Bounds that are no numbers are never too low.
    bool mayBeBest(const DotBounds& bounds) const { return !(bounds.upper <= m_tooLow); }

    void take(std::size_t row, const DotBounds& bounds) {
        m_candidates.push_back({std::isnan(bounds.upper) ? infinity : bounds.upper, row});
        const double lower = std::isnan(bounds.lower) ? -infinity : bounds.lower;
        if (m_lowerBounds.size() < m_limit) {
            m_lowerBounds.push(lower);
        } else if (lower > m_lowerBounds.top()) {
            m_lowerBounds.pop();
            m_lowerBounds.push(lower);
        } else {
            return;
        }
        if (m_lowerBounds.size() == m_limit) {
            m_tooLow = scoringLess(m_lowerBounds.top());
        }
    }

    /// Those that are still left, as a heap with the highest bound on top.
    std::vector<Candidate> takeHeap() {
        std::erase_if(m_candidates, [this](const Candidate& candidate) { return candidate.upper <= m_tooLow; });
        std::ranges::make_heap(m_candidates, {}, &Candidate::upper);
        return std::move(m_candidates);
    }

private:
    std::size_t m_limit;
    std::vector<Candidate> m_candidates;
    std::priority_queue<double, std::vector<double>, std::greater<>> m_lowerBounds; ///< the `limit` highest
    double m_tooLow = -infinity; ///< scores less than `limit` rows do
};

std::vector<Candidates::Candidate> candidatesFor(const VectorRows& rows, std::span<const float> query,
                                                 const SomeRows& among, std::size_t limit, const DotKernel& kernel) {
    const CodedQuery codedQuery(query);
    Candidates candidates(limit);
    std::array<std::size_t, batch> numbers{};
    std::array<const std::uint8_t*, batch> codes{};
    std::array<std::int32_t, batch> dots{};
    const std::size_t total = among ? among->size() : rows.size();
    for (std::size_t start = 0; start < total; start += batch) {
        const std::size_t count = std::min(batch, total - start);
        for (std::size_t i = 0; i < count; ++i) {
            numbers[i] = among ? (*among)[start + i] : start + i;
            codes[i] = rows.codes(numbers[i]);
        }
        kernel.dots({codes.data(), count}, codedQuery.codes(), dots.data());
        for (std::size_t i = 0; i < count; ++i) {
            const DotBounds bounds = codedQuery.bounds(rows.coded(numbers[i]), dots[i]);
            if (candidates.mayBeBest(bounds)) {
                candidates.take(numbers[i], bounds);
            }
        }
    }
    return candidates.takeHeap();
}

/// Everything scored, the first `limit` sorted: for what the codes are no help with.
std::vector<RankedVector> bestOfAll(const VectorRows& rows, std::span<const float> query, const SomeRows& among,
                                    std::size_t limit) {
    std::vector<RankedVector> ranking = scoreRows(rows, query, among);
    const auto kept = ranking.begin() + static_cast<std::ptrdiff_t>(std::min(limit, ranking.size()));
    std::ranges::partial_sort(ranking, kept, isBetter);
    ranking.erase(kept, ranking.end());
    return ranking;
}

} // namespace

double dotProduct(std::span<const float> a, std::span<const float> b) {
    const float quick = quickDotProduct(a.data(), b.data(), a.size());
    if (std::isfinite(quick)) {
        return static_cast<double>(quick);
    }
    // A query is not normalised, so its products may leave the range of a 32-bit float; those of a double they cannot.
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        sum += static_cast<double>(a[i]) * static_cast<double>(b[i]);
    }
    return sum;
}

float scoreOf(double dotProduct) {
    return static_cast<float>(std::clamp((dotProduct + 1) * 50, 0.0, 100.0));
}

std::vector<RankedVector> scoreRows(const VectorRows& rows, std::span<const float> query, const SomeRows& among) {
    const std::size_t count = among ? among->size() : rows.size();
    std::vector<RankedVector> scores;
    scores.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t row = among ? (*among)[i] : i;
        scores.push_back({rows.id(row), scoreOf(dotProduct(rows.values(row), query))});
    }
    return scores;
}

std::vector<RankedVector> bestRows(const VectorRows& rows, std::span<const float> query, const SomeRows& among,
                                   std::size_t limit, const DotKernel& kernel) {
    if (limit == 0 || query.size() > maxCodes) {
        return bestOfAll(rows, query, among, limit);
    }
    auto candidates = candidatesFor(rows, query, among, limit, kernel);
    std::priority_queue<RankedVector, std::vector<RankedVector>, decltype(&isBetter)> best(&isBetter); // worst on top
    while (!candidates.empty()) {
        std::ranges::pop_heap(candidates, {}, &Candidates::Candidate::upper);
        const auto [upper, row] = candidates.back();
        candidates.pop_back();
        if (best.size() == limit && scoreOf(upper) < best.top().score) {
            break; // and so do all that are left
        }
        best.push({rows.id(row), scoreOf(dotProduct(rows.values(row), query))});
        if (best.size() > limit) {
            best.pop();
        }
    }
    std::vector<RankedVector> ranking(best.size());
    for (auto place = ranking.rbegin(); place != ranking.rend(); ++place) {
        *place = best.top();
        best.pop();
    }
    return ranking;
}

} // namespace dorvantel::service
