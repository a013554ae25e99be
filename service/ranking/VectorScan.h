// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/ranking/VectorRows.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace dorvantel::service {

struct RankedVector {
    std::int64_t id = 0;
    float score = 0; ///< 0 to 100

    bool operator==(const RankedVector&) const = default;
};

/// Numbers of rows; absent: all of them.
using SomeRows = std::optional<std::vector<std::size_t>>;

/// The sum of the products of two vectors of the same length. Always in the same order of additions, whatever the
/// machine, and finite for every finite input.
double dotProduct(std::span<const float> a, std::span<const float> b);

/// A dot product moved from -1..1 to 0..100 and clamped into it. Never falls when the dot product rises.
float scoreOf(double dotProduct);

/// The scores of `among` against `query`, in the order in which they come.
std::vector<RankedVector> scoreRows(const VectorRows& rows, std::span<const float> query, const SomeRows& among);

/// The `limit` rows of `among` with the highest scores against `query`, highest first, equal scores by rising id. One
/// pass over the rows' codes bounds every score; only rows that may be among the best are scored from their numbers.
/// Exactly what scoring and sorting them all gives, whichever the kernel.
std::vector<RankedVector> bestRows(const VectorRows& rows, std::span<const float> query, const SomeRows& among,
                                   std::size_t limit, const DotKernel& kernel = bestDotKernel());

} // namespace dorvantel::service
