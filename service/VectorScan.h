// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace dorvantel::service {

/// Vectors of one length, one behind the other, and whose they are.
struct VectorBlock {
    std::size_t dimension = 0;
    std::vector<float> values;     ///< `dimension` numbers a row
    std::vector<std::int64_t> ids; ///< one a row

    std::span<const float> row(std::size_t index) const {
        return std::span(values).subspan(index * dimension, dimension);
    }
};

struct RankedVector {
    std::int64_t id = 0;
    float score = 0; ///< 0 to 100

    bool operator==(const RankedVector&) const = default;
};

/// The sum of the products of two vectors of the same length. Always in the same order of additions, whatever the
/// machine, and finite for every finite input.
double dotProduct(std::span<const float> a, std::span<const float> b);

/// A dot product moved from -1..1 to 0..100 and clamped into it.
float scoreOf(double dotProduct);

/// The rows of `block` by their score against `query`, highest first, equal scores by rising id; only those in
/// `rows` when given, and no more than `limit` when given. Exact: every row is scored.
std::vector<RankedVector> rankRows(const VectorBlock& block, std::span<const float> query,
                                   const std::optional<std::vector<std::size_t>>& rows,
                                   std::optional<std::size_t> limit);

} // namespace dorvantel::service
