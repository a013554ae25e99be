// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TokenSelection.h"

#include <algorithm>

namespace dorvantel {

void TokenSelection::clear() {
    *this = TokenSelection();
}

void TokenSelection::selectOnly(qsizetype index) {
    m_selected = {index};
    m_current = index;
    m_anchor = index;
}

void TokenSelection::toggle(qsizetype index) {
    if (m_selected.erase(index) == 0) {
        m_selected.insert(index);
    }
    m_current = index;
    m_anchor = index;
}

void TokenSelection::extendTo(qsizetype index) {
    if (!m_current) {
        selectOnly(index);
        return;
    }
    m_selected.clear();
    const auto [first, last] = std::minmax(m_anchor, index);
    for (qsizetype i = first; i <= last; ++i) {
        m_selected.insert(i);
    }
    m_current = index;
}

void TokenSelection::selectAll(qsizetype count) {
    clear();
    if (count > 0) {
        selectOnly(0);
        extendTo(count - 1);
    }
}

} // namespace dorvantel
