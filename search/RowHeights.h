// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <map>

namespace dorvantel {

/// How high the rows of a long list are and so where they lie, in logical pixels from the top of the list. Nearly all
/// rows have the usual height, so only the others are kept. A plain value.
class RowHeights {
public:
    RowHeights() = default;
    RowHeights(qsizetype count, int usualHeight)
        : m_count(count)
        , m_usual(usualHeight) {}

    qsizetype count() const { return m_count; }
    int height(qsizetype row) const;
    void setHeight(qsizetype row, int height);

    int top(qsizetype row) const;
    int total() const { return top(m_count); }
    /// The row that covers `y`; the nearest one when `y` is above or below the list. Only with rows.
    qsizetype rowAt(int y) const;

private:
    qsizetype m_count = 0;
    int m_usual = 0;
    std::map<qsizetype, int> m_others;
};

} // namespace dorvantel
