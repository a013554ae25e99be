// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/VectorScan.h"

#include <unordered_map>

namespace dorvantel::service {

/// All vectors of one model in memory. Rows move when others go, so that the block has no holes. Its owner keeps
/// writers and readers apart.
class VectorIndex {
public:
    /// The length of its vectors; 0 while there are none.
    std::size_t dimension() const { return m_block.dimension; }
    std::size_t size() const { return m_block.ids.size(); }

    /// Takes or replaces a vector, which has the length of the others.
    void put(std::int64_t id, std::span<const float> vector);
    /// Forgets a vector; an unknown id is nothing to forget.
    void remove(std::int64_t id);

    /// As `rankRows`, with ids (rising) in place of rows; ids without a vector do not take part.
    std::vector<RankedVector> rank(std::span<const float> query, const std::optional<std::vector<std::int64_t>>& ids,
                                   std::optional<std::size_t> limit) const;

private:
    VectorBlock m_block;
    std::unordered_map<std::int64_t, std::size_t> m_rows;
};

} // namespace dorvantel::service
