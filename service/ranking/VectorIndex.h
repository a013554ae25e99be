// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/ranking/VectorScan.h"

#include <unordered_map>

namespace dorvantel::service {

/// Rising ids of candidates; absent: all of them.
using SomeIds = std::optional<std::vector<std::int64_t>>;

/// All vectors of one model in memory, found by the id of their candidate. Its owner keeps writers and readers apart.
class VectorIndex {
public:
    /// The length of its vectors; 0 while there are none.
    std::size_t dimension() const { return m_rows.dimension(); }
    std::size_t size() const { return m_rows.size(); }
    const VectorRows& rows() const { return m_rows; }

    /// Nothing when it has none of this id.
    std::optional<std::vector<float>> vector(std::int64_t id) const;

    /// Takes or replaces a vector, which has the length of the others. Without the memory for it, nothing is changed;
    /// replacing needs none.
    void put(std::int64_t id, std::span<const float> vector);
    /// Forgets a vector; an unknown id is nothing to forget.
    void remove(std::int64_t id);

    /// The `limit` best of `ids` as `bestRows` finds them; ids without a vector do not take part.
    std::vector<RankedVector> best(std::span<const float> query, const SomeIds& ids, std::size_t limit) const;
    /// The scores of all of `ids` that have a vector, by rising id.
    std::vector<RankedVector> scores(std::span<const float> query, const SomeIds& ids) const;

private:
    SomeRows rowsOf(const SomeIds& ids) const;

    VectorRows m_rows;
    std::unordered_map<std::int64_t, std::size_t> m_rowOfId;
};

} // namespace dorvantel::service
