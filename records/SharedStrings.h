// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/JsonCursor.h"

#include <QString>

#include <algorithm>
#include <array>
#include <functional>
#include <string_view>
#include <vector>

namespace dorvantel {

/// Gives equal strings of one body the same memory. Most values of a catalogue come back in thousands of records. A
/// plain value, for one body on one thread.
///
/// A cache and no set: it remembers a fixed number of strings, and one that it forgot is simply made again. So a body
/// whose strings never repeat costs no memory and hardly any time.
class SharedStrings {
public:
    /// Reads the string that comes next.
    QString read(JsonCursor& cursor) {
        const JsonCursor::RawString raw = cursor.uncheckedString();
        if (cursor.failed() || raw.bytes.size() > longest) {
            return cursor.text(raw);
        }
        const std::size_t hash = std::hash<std::string_view>{}(raw.bytes);
        Slot& slot = m_slots[hash % m_slots.size()];
        if (!slot.holds(raw.bytes)) {
            slot = Slot(raw.bytes, cursor.text(raw));
        }
        return slot.text;
    }

private:
    static constexpr std::size_t longest = 38;

    /// One line of the processor's cache: what is looked at most often must not be spread over the body.
    struct alignas(64) Slot {
        QString text;
        unsigned char length = 255; ///< longer than any that it may hold
        std::array<char, longest> spelling{};

        Slot() = default;
        Slot(std::string_view bytes, QString value)
            : text(std::move(value))
            , length(static_cast<unsigned char>(bytes.size())) {
            std::ranges::copy(bytes, spelling.begin());
        }
        bool holds(std::string_view bytes) const { return std::string_view(spelling.data(), length) == bytes; }
    };
    static_assert(sizeof(Slot) == 64);

    std::vector<Slot> m_slots = std::vector<Slot>(16'384);
};

} // namespace dorvantel
