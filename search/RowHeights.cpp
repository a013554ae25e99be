// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/RowHeights.h"

#include <algorithm>

namespace dorvantel {

int RowHeights::height(qsizetype row) const {
    const auto other = m_others.find(row);
    return other == m_others.end() ? m_usual : other->second;
}

void RowHeights::setHeight(qsizetype row, int height) {
    if (height == m_usual) {
        m_others.erase(row);
    } else {
        m_others[row] = height;
    }
}

int RowHeights::top(qsizetype row) const {
    int top = static_cast<int>(row) * m_usual;
    for (auto other = m_others.begin(); other != m_others.end() && other->first < row; ++other) {
        top += other->second - m_usual;
    }
    return top;
}

qsizetype RowHeights::rowAt(int y) const {
    int surplus = 0; // of the rows above that are not of the usual height
    for (const auto& [row, height] : m_others) {
        const int top = static_cast<int>(row) * m_usual + surplus;
        if (y < top) {
            break;
        }
        if (y < top + height) {
            return row;
        }
        surplus += height - m_usual;
    }
    return std::clamp<qsizetype>((y - surplus) / m_usual, 0, m_count - 1);
}

} // namespace dorvantel
