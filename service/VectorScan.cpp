// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/VectorScan.h"

#include <algorithm>
#include <array>
#include <cmath>

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

std::vector<RankedVector> rankRows(const VectorBlock& block, std::span<const float> query,
                                   const std::optional<std::vector<std::size_t>>& rows,
                                   std::optional<std::size_t> limit) {
    std::vector<RankedVector> ranking;
    const auto score = [&](std::size_t row) {
        ranking.push_back({block.ids[row], scoreOf(dotProduct(block.row(row), query))});
    };
    if (rows) {
        ranking.reserve(rows->size());
        std::ranges::for_each(*rows, score);
    } else {
        ranking.reserve(block.ids.size());
        for (std::size_t row = 0; row < block.ids.size(); ++row) {
            score(row);
        }
    }
    const auto kept =
        ranking.begin() + static_cast<std::ptrdiff_t>(std::min(limit.value_or(ranking.size()), ranking.size()));
    std::ranges::partial_sort(ranking, kept, [](const RankedVector& left, const RankedVector& right) {
        return left.score != right.score ? left.score > right.score : left.id < right.id;
    });
    ranking.erase(kept, ranking.end());
    return ranking;
}

} // namespace dorvantel::service
