// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <optional>
#include <set>

namespace dorvantel {

/// Which tokens of a field are selected, and which of them the keyboard is at. Indices into the field's tokens; the
/// owner starts a new selection when the tokens change.
class TokenSelection {
public:
    bool isEmpty() const { return m_selected.empty(); }
    bool contains(qsizetype index) const { return m_selected.contains(index); }
    const std::set<qsizetype>& indices() const { return m_selected; }
    std::optional<qsizetype> current() const { return m_current; }

    void clear();
    void selectOnly(qsizetype index);
    void toggle(qsizetype index);
    /// Everything between where the selection began and `index`; only `index` when nothing was selected.
    void extendTo(qsizetype index);
    void selectAll(qsizetype count);

private:
    std::set<qsizetype> m_selected;
    std::optional<qsizetype> m_current;
    qsizetype m_anchor = 0;
};

} // namespace dorvantel
