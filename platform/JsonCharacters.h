// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>

namespace dorvantel {

/// One character of a JSON string and how many bytes spell it.
struct JsonCharacter {
    char32_t character;
    std::ptrdiff_t length;
};

/// Part of a character that has several bytes.
inline bool isMultibyte(char c) {
    return static_cast<unsigned char>(c) >= 0x80;
}

/// Stands for itself in a string.
inline bool isOrdinary(char c) {
    return static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\';
}

inline bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The escape at `at`, which is a backslash; none when JSON does not know it or it is half a surrogate pair.
std::optional<JsonCharacter> readEscape(const char* at, const char* end);

/// The character of several bytes at `at`, which is above 127; none when it is not UTF-8.
std::optional<JsonCharacter> readMultibyte(const char* at, const char* end);

} // namespace dorvantel
