// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/ranking/VectorIndex.h"

#include <algorithm>

namespace dorvantel::service {

std::optional<std::vector<float>> VectorIndex::vector(std::int64_t id) const {
    const auto entry = m_rowOfId.find(id);
    if (entry == m_rowOfId.end()) {
        return std::nullopt;
    }
    const auto values = m_rows.values(entry->second);
    return std::vector<float>(values.begin(), values.end());
}

void VectorIndex::put(std::int64_t id, std::span<const float> vector) {
    const auto [entry, isNew] = m_rowOfId.try_emplace(id, m_rows.size());
    if (!isNew) {
        m_rows.replace(entry->second, vector);
        return;
    }
    try {
        m_rows.append(id, vector);
    } catch (...) {
        m_rowOfId.erase(entry); // or it would name a row that is not there
        throw;
    }
}

void VectorIndex::remove(std::int64_t id) {
    const auto entry = m_rowOfId.find(id);
    if (entry == m_rowOfId.end()) {
        return;
    }
    const std::size_t row = entry->second;
    m_rowOfId[m_rows.id(m_rows.size() - 1)] = row;
    m_rowOfId.erase(id);
    m_rows.remove(row);
}

SomeRows VectorIndex::rowsOf(const SomeIds& ids) const {
    return ids.transform([this](const std::vector<std::int64_t>& some) {
        std::vector<std::size_t> rows;
        rows.reserve(some.size());
        for (const std::int64_t id : some) {
            if (const auto entry = m_rowOfId.find(id); entry != m_rowOfId.end()) {
                rows.push_back(entry->second);
            }
        }
        return rows;
    });
}

std::vector<RankedVector> VectorIndex::best(std::span<const float> query, const SomeIds& ids, std::size_t limit) const {
    return bestRows(m_rows, query, rowsOf(ids), limit);
}

std::vector<RankedVector> VectorIndex::scores(std::span<const float> query, const SomeIds& ids) const {
    std::vector<RankedVector> scores = scoreRows(m_rows, query, rowsOf(ids));
    std::ranges::sort(scores, {}, &RankedVector::id);
    return scores;
}

} // namespace dorvantel::service
