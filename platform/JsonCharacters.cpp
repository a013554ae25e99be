// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonCharacters.h"

#include <QChar>

#include <array>

namespace dorvantel {

namespace {

/// The four hexadecimal digits at `at`.
std::optional<char32_t> hexUnit(const char* at, const char* end) {
    if (end - at < 4) {
        return std::nullopt;
    }
    char32_t unit = 0;
    for (int i = 0; i < 4; ++i) {
        const char c = at[i];
        const char lower = static_cast<char>(c | 0x20);
        if (!isDigit(c) && (lower < 'a' || lower > 'f')) {
            return std::nullopt;
        }
        unit = unit * 16 + static_cast<char32_t>(isDigit(c) ? c - '0' : lower - 'a' + 10);
    }
    return unit;
}

std::optional<JsonCharacter> readUnicodeEscape(const char* at, const char* end) {
    const std::optional<char32_t> unit = hexUnit(at + 2, end);
    if (!unit || QChar::isLowSurrogate(*unit)) {
        return std::nullopt;
    }
    if (!QChar::isHighSurrogate(*unit)) {
        return JsonCharacter{*unit, 6};
    }
    if (end - at < 12 || at[6] != '\\' || at[7] != 'u') {
        return std::nullopt;
    }
    const std::optional<char32_t> low = hexUnit(at + 8, end);
    if (!low || !QChar::isLowSurrogate(*low)) {
        return std::nullopt;
    }
    return JsonCharacter{QChar::surrogateToUcs4(static_cast<char16_t>(*unit), static_cast<char16_t>(*low)), 12};
}

} // namespace

std::optional<JsonCharacter> readEscape(const char* at, const char* end) {
    if (end - at < 2) {
        return std::nullopt;
    }
    switch (at[1]) {
    case '"':
    case '\\':
    case '/':
        return JsonCharacter{static_cast<char32_t>(at[1]), 2};
    case 'b':
        return JsonCharacter{U'\b', 2};
    case 'f':
        return JsonCharacter{U'\f', 2};
    case 'n':
        return JsonCharacter{U'\n', 2};
    case 'r':
        return JsonCharacter{U'\r', 2};
    case 't':
        return JsonCharacter{U'\t', 2};
    case 'u':
        return readUnicodeEscape(at, end);
    default:
        return std::nullopt;
    }
}

std::optional<JsonCharacter> readMultibyte(const char* at, const char* end) {
    const auto byte = [at](std::ptrdiff_t index) { return static_cast<unsigned char>(at[index]); };
    constexpr std::array<char32_t, 5> least = {0, 0, 0x80, 0x800, 0x10000};
    const char32_t lead = byte(0);
    if (lead < 0xC2 || lead > 0xF4) {
        return std::nullopt;
    }
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (end - at < static_cast<std::ptrdiff_t>(length)) {
        return std::nullopt;
    }
    char32_t character = lead & 0x7FU >> length;
    for (std::size_t i = 1; i < length; ++i) {
        const char32_t tail = byte(static_cast<std::ptrdiff_t>(i));
        if ((tail & 0xC0) != 0x80) {
            return std::nullopt;
        }
        character = character << 6 | (tail & 0x3F);
    }
    if (character < least[length] || character > QChar::LastValidCodePoint || QChar::isSurrogate(character)) {
        return std::nullopt;
    }
    return JsonCharacter{character, static_cast<std::ptrdiff_t>(length)};
}

} // namespace dorvantel
