// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/ranking/VectorCodes.h"

#include <cstdint>
#include <span>
#include <vector>

namespace dorvantel::service {

/// Vectors of one length and whose they are, each as 32-bit floats and as 8-bit codes. The numbers stand in blocks of
/// many rows that never move, so one more row never copies the others; only ids and lengths, a few bytes a row, do.
/// Rows have no holes. Its owner keeps writers and readers apart.
class VectorRows {
public:
    /// The length of its vectors; 0 while there are none.
    std::size_t dimension() const { return m_dimension; }
    std::size_t size() const { return m_ids.size(); }

    std::int64_t id(std::size_t row) const { return m_ids[row]; }
    std::span<const float> values(std::size_t row) const {
        return {m_blocks[row >> m_blockShift].values.data() + placeOf(row) * m_dimension, m_dimension};
    }
    const std::uint8_t* codes(std::size_t row) const {
        return m_blocks[row >> m_blockShift].codes.data() + placeOf(row) * paddedCodes(m_dimension);
    }
    const CodedVector& coded(std::size_t row) const { return m_coded[row]; }

    /// Adds a row, which has the length of the others. Without the memory for it, nothing is changed.
    void append(std::int64_t id, std::span<const float> vector);
    void replace(std::size_t row, std::span<const float> vector);
    /// Removes a row; the last one takes its place.
    void remove(std::size_t row);

private:
    struct Block {
        AlignedArray<float> values;
        AlignedArray<std::uint8_t> codes;
    };

    std::size_t blockRows() const { return std::size_t{1} << m_blockShift; }
    std::size_t placeOf(std::size_t row) const { return row & (blockRows() - 1); }

    std::size_t m_dimension = 0;
    int m_blockShift = 0; ///< blocks have 2 to this power rows
    std::vector<Block> m_blocks;
    std::vector<CodedVector> m_coded;
    std::vector<std::int64_t> m_ids;
};

} // namespace dorvantel::service
