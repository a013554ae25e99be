// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/JsonCursor.h"

#include <QString>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
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
    explicit SharedStrings(qsizetype bodySize) {
        constexpr std::size_t bytesPerSlot = 512;
        const std::size_t wanted = static_cast<std::size_t>(bodySize) / bytesPerSlot;
        m_slots.resize(std::bit_ceil(std::clamp<std::size_t>(wanted, 256, 8'192)));
    }

    /// Reads the string that comes next.
    QString read(JsonCursor& cursor) {
        const JsonCursor::RawString raw = cursor.uncheckedString();
        if (cursor.failed() || raw.bytes.size() > longest) {
            return cursor.text(raw);
        }
        Slot& slot = m_slots[slotOf(raw.bytes)];
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

    /// From the ends of the spelling and its length, which tell the values of a catalogue apart well enough.
    std::size_t slotOf(std::string_view bytes) const {
        std::uint64_t head = 0;
        std::uint64_t tail = 0;
        if (bytes.size() >= sizeof head) {
            std::memcpy(&head, bytes.data(), sizeof head);
            std::memcpy(&tail, bytes.data() + bytes.size() - sizeof tail, sizeof tail);
        } else {
            for (const char c : bytes) {
                head = head << 8 | static_cast<unsigned char>(c);
            }
        }
        constexpr std::uint64_t odd = 0x9E37'79B9'7F4A'7C15;
        const std::uint64_t mixed = (head * odd + std::rotl(tail, 23) + bytes.size()) * odd;
        return (mixed >> 32) & (m_slots.size() - 1);
    }

    std::vector<Slot> m_slots; ///< a power of two
};

} // namespace dorvantel
