// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/JsonBlocks.h"
#include "platform/JsonCharacters.h"

#include <bit>
#include <string_view>

namespace dorvantel {

/// What stands for a character that cannot stand for itself.
constexpr std::string_view jsonEscape(char character) {
    switch (character) {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        break;
    }
    constexpr std::string_view controls = "\\u0000\\u0001\\u0002\\u0003\\u0004\\u0005\\u0006\\u0007"
                                          "\\u0008\\u0009\\u000a\\u000b\\u000c\\u000d\\u000e\\u000f"
                                          "\\u0010\\u0011\\u0012\\u0013\\u0014\\u0015\\u0016\\u0017"
                                          "\\u0018\\u0019\\u001a\\u001b\\u001c\\u001d\\u001e\\u001f";
    return controls.substr(static_cast<std::size_t>(character) * 6, 6);
}

/// Where the first character that needs an escape stands at or behind `from`; the size when there is none.
inline std::size_t findJsonEscape(std::string_view utf8, std::size_t from) {
    constexpr auto blockSize = static_cast<std::size_t>(JsonBlock::size);
    for (; from + blockSize <= utf8.size(); from += blockSize) {
        if (const std::uint64_t special = JsonBlock(utf8.data() + from).special(); special != 0) {
            return from + static_cast<std::size_t>(std::countr_zero(special));
        }
    }
    while (from < utf8.size() && isOrdinary(utf8[from])) {
        ++from;
    }
    return from;
}

/// Appends `utf8` as a JSON string, quotes included, to a `std::string` or a `QByteArray`: only what JSON demands is
/// escaped, everything else is copied in runs. Any thread.
template <typename Bytes>
void appendJsonString(Bytes& out, std::string_view utf8) {
    const auto append = [&out](std::string_view piece) {
        out.append(piece.data(), static_cast<decltype(out.size())>(piece.size()));
    };
    append("\"");
    std::size_t plainFrom = 0;
    for (std::size_t i = findJsonEscape(utf8, 0); i < utf8.size(); i = findJsonEscape(utf8, plainFrom)) {
        append(utf8.substr(plainFrom, i - plainFrom));
        append(jsonEscape(utf8[i]));
        plainFrom = i + 1;
    }
    append(utf8.substr(plainFrom));
    append("\"");
}

} // namespace dorvantel
