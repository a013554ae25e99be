// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/ranking/VectorRows.h"

#include <algorithm>
#include <bit>

namespace dorvantel::service {

namespace {

/// Large enough for large pages, small beside all that a block is one of.
constexpr std::size_t blockBytes = std::size_t{32} << 20;
constexpr std::size_t mostRowsInBlock = 8'192;

int blockShift(std::size_t dimension) {
    const std::size_t rows = blockBytes / std::max(dimension * sizeof(float), std::size_t{1});
    return std::countr_zero(std::bit_floor(std::clamp(rows, std::size_t{1}, mostRowsInBlock)));
}

} // namespace

void VectorRows::append(std::int64_t id, std::span<const float> vector) {
    const std::size_t before = size();
    if (before == 0) {
        m_dimension = vector.size();
        m_blockShift = blockShift(m_dimension);
    }
    try {
        m_ids.push_back(id);
        m_coded.emplace_back();
        if (size() > m_blocks.size() * blockRows()) {
            m_blocks.push_back({AlignedArray<float>(blockRows() * m_dimension),
                                AlignedArray<std::uint8_t>(blockRows() * paddedCodes(m_dimension))});
        }
    } catch (...) {
        m_ids.resize(before);
        m_coded.resize(before);
        m_dimension = before == 0 ? 0 : m_dimension;
        throw;
    }
    replace(before, vector);
}

void VectorRows::replace(std::size_t row, std::span<const float> vector) {
    Block& block = m_blocks[row >> m_blockShift];
    const std::size_t place = placeOf(row);
    const std::size_t codes = paddedCodes(m_dimension);
    std::ranges::copy(vector, block.values.data() + place * m_dimension);
    m_coded[row] = encodeRow(vector, {block.codes.data() + place * codes, codes});
}

void VectorRows::remove(std::size_t row) {
    const std::size_t last = size() - 1;
    if (row != last) {
        replace(row, values(last));
        m_ids[row] = m_ids[last];
    }
    m_ids.pop_back();
    m_coded.pop_back();
    if (last == (m_blocks.size() - 1) * blockRows()) {
        m_blocks.pop_back();
    }
    if (m_ids.empty()) {
        m_dimension = 0;
    }
}

} // namespace dorvantel::service
