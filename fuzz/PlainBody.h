// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace dorvantel::fuzz {

/// A body read the plain way. Where both readers may well differ there is none: on numbers that are too long for one of
/// them, on a mark of the encoding, and on a key that comes twice.
struct PlainBody {
    using json = nlohmann::json;

    json value;
    bool isComparable = true;

    explicit PlainBody(std::string_view body) {
        std::size_t keys = 0;
        const auto countKeys = [&keys](int depth, json::parse_event_t event, json&) {
            keys += depth == 1 && event == json::parse_event_t::key ? 1 : 0;
            return true;
        };
        // The library takes a NUL for the end of the text. JSON has none anywhere.
        value = body.find('\0') == body.npos ? json::parse(body, countKeys, false) : json(json::value_t::discarded);
        std::size_t digits = 0;
        std::size_t longest = 0;
        bool hasExponent = false;
        for (const char c : body) {
            hasExponent |= digits > 0 && (c == 'e' || c == 'E');
            digits = c >= '0' && c <= '9' ? digits + 1 : 0;
            longest = std::max(longest, digits);
        }
        isComparable = longest < 19 && !body.starts_with("\xEF\xBB\xBF") && !(value.is_discarded() && hasExponent) &&
                       !(value.is_object() && value.size() != keys);
    }

    /// A member's text, or none.
    std::optional<std::string> text(const char* key) const {
        const auto found = value.find(key);
        return found != value.end() && found->is_string() ? std::optional(found->get<std::string>()) : std::nullopt;
    }
};

} // namespace dorvantel::fuzz
