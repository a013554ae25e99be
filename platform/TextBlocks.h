// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace dorvantel {

/// Makes many strings in few large blocks of memory. One thread; the strings are strings like any other and may go
/// anywhere.
///
/// A string made here has its text in a block that it shares with its neighbours, and counts as shared: whoever changes
/// it gets a copy first. A block is freed with the last string in it. That suits texts that are read together and kept
/// together, as those of a list answer are: for 100 000 of them, an allocation and a page fault a text would cost as
/// much as reading them.
class TextBlocks {
public:
    TextBlocks() = default;
    TextBlocks(const TextBlocks&) = delete;
    TextBlocks& operator=(const TextBlocks&) = delete;

    /// Room for `units` units in a row; the first `used` of the room given before are kept, the rest is lost.
    char16_t* room(qsizetype used, qsizetype units) {
        if (m_end - m_at <= units) {
            addBlock(used, units + 1);
        }
        return m_at;
    }

    /// Makes a string of the first `units` units of the room.
    QString take(qsizetype units);

private:
    void addBlock(qsizetype used, qsizetype units);

    QStringPrivate m_block;
    char16_t* m_at = nullptr; ///< where the room begins
    char16_t* m_end = nullptr;
    qsizetype m_blockUnits = 0;
};

} // namespace dorvantel
