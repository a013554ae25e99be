// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/VectorIndex.h"

#include <algorithm>

namespace dorvantel::service {

void VectorIndex::put(std::int64_t id, std::span<const float> vector) {
    const auto [entry, isNew] = m_rows.try_emplace(id, m_block.ids.size());
    if (isNew) {
        m_block.dimension = vector.size();
        m_block.ids.push_back(id);
        m_block.values.insert(m_block.values.end(), vector.begin(), vector.end());
        return;
    }
    std::ranges::copy(vector, m_block.values.begin() + static_cast<std::ptrdiff_t>(entry->second * vector.size()));
}

void VectorIndex::remove(std::int64_t id) {
    const auto entry = m_rows.find(id);
    if (entry == m_rows.end()) {
        return;
    }
    const std::size_t row = entry->second;
    const std::size_t last = m_block.ids.size() - 1;
    m_rows.erase(entry);
    if (row != last) {
        const auto lastValues = m_block.row(last);
        std::ranges::copy(lastValues, m_block.values.begin() + static_cast<std::ptrdiff_t>(row * m_block.dimension));
        m_block.ids[row] = m_block.ids[last];
        m_rows[m_block.ids[row]] = row;
    }
    m_block.ids.pop_back();
    m_block.values.resize(last * m_block.dimension);
    if (m_block.ids.empty()) {
        m_block.dimension = 0;
    }
}

std::vector<RankedVector> VectorIndex::rank(std::span<const float> query,
                                            const std::optional<std::vector<std::int64_t>>& ids,
                                            std::optional<std::size_t> limit) const {
    if (!ids) {
        return rankRows(m_block, query, std::nullopt, limit);
    }
    std::vector<std::size_t> rows;
    for (const std::int64_t id : *ids) {
        if (const auto entry = m_rows.find(id); entry != m_rows.end()) {
            rows.push_back(entry->second);
        }
    }
    return rankRows(m_block, query, rows, limit);
}

} // namespace dorvantel::service
