// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonCharacters.h"
#include "platform/JsonCursor.h"

#include <QtEndian>

#include <array>
#include <bit>
#include <cstdint>
#include <optional>

namespace dorvantel {

namespace {

struct PlainByte {
    char value;
    std::ptrdiff_t length; ///< with the comma
};

/// The number from 0 to 255 at `at` when a comma and another digit follow it. Four bytes hold its digits and the comma;
/// all is worked out without a branch on them, which a file's bytes would make unpredictable.
inline std::optional<PlainByte> plainByte(const char* at, const char* end) {
    if (end - at <= 4) {
        return std::nullopt;
    }
    const std::uint32_t digits =
        qFromLittleEndian<std::uint32_t>(at) ^ 0x3030'3030; // 0 to 9 where there is a digit, more elsewhere
    const std::uint32_t others = (((digits & 0x7F7F'7F7F) + 0x7676'7676) | digits) & 0x8080'8080;
    const int length = std::countr_zero(others) / 8;
    if (length == 0 || length > 3 || at[length] != ',' || !isDigit(at[length + 1])) {
        return std::nullopt;
    }
    const std::uint32_t aligned = digits << 8 * (4 - length);
    const std::uint32_t value = (aligned >> 8 & 0xF) * 100 + (aligned >> 16 & 0xF) * 10 + (aligned >> 24);
    const bool hasLeadingZero = (digits & 0xF) == 0 && length > 1;
    if (value > 255 || hasLeadingZero) {
        return std::nullopt;
    }
    return PlainByte{static_cast<char>(static_cast<unsigned char>(value)), length + 1};
}

} // namespace

qsizetype JsonCursor::takeBytes(QByteArray* out) {
    skipBlanks();
    std::array<char, 4096> chunk;
    qsizetype count = 0;
    std::size_t filled = 0;
    do {
        for (filled = 0; filled < chunk.size(); ++filled) {
            const std::optional<PlainByte> byte = plainByte(m_at, m_end);
            if (!byte) {
                break;
            }
            chunk[filled] = byte->value;
            m_at += byte->length;
        }
        count += static_cast<qsizetype>(filled);
        if (out != nullptr) {
            out->append(chunk.data(), static_cast<qsizetype>(filled));
        }
    } while (filled == chunk.size());
    return count;
}

} // namespace dorvantel
