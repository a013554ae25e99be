// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/candidates/CVText.h"

#include <charconv>
#include <optional>

#include <simdjson.h>

namespace dorvantel::service {

namespace {

/// A code point of `\u{…}` with the offset behind its closing brace; nothing when it is no such escape.
struct BracedCodePoint {
    char32_t value;
    std::size_t end;
};

std::optional<BracedCodePoint> bracedCodePoint(std::string_view text, std::size_t firstDigit) {
    unsigned int value = 0;
    const char* const begin = text.data() + firstDigit;
    const char* const limit = text.data() + text.size();
    const auto [end, error] = std::from_chars(begin, limit, value, 16);
    const bool isScalar = value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
    if (error != std::errc() || end == limit || *end != '}' || !isScalar) {
        return std::nullopt;
    }
    return BracedCodePoint{value, static_cast<std::size_t>(end - text.data()) + 1};
}

void appendCodePoint(std::string& out, char32_t codePoint) {
    const auto byte = [&out](char32_t value) { out += static_cast<char>(static_cast<unsigned char>(value)); };
    if (codePoint < 0x20 || codePoint == U'"' || codePoint == U'\\') {
        constexpr char digits[] = "0123456789abcdef";
        out += "\\u00";
        out += digits[codePoint >> 4];
        out += digits[codePoint & 0xF];
    } else if (codePoint < 0x80) {
        byte(codePoint);
    } else if (codePoint < 0x800) {
        byte(0xC0 | (codePoint >> 6));
        byte(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        byte(0xE0 | (codePoint >> 12));
        byte(0x80 | ((codePoint >> 6) & 0x3F));
        byte(0x80 | (codePoint & 0x3F));
    } else {
        byte(0xF0 | (codePoint >> 18));
        byte(0x80 | ((codePoint >> 12) & 0x3F));
        byte(0x80 | ((codePoint >> 6) & 0x3F));
        byte(0x80 | (codePoint & 0x3F));
    }
}

/// Appends what the escape at `at` (its backslash) means and gives the offset behind it; nothing when it is broken.
std::optional<std::size_t> appendEscape(std::string& out, std::string_view text, std::size_t at) {
    if (at + 1 == text.size()) {
        return std::nullopt;
    }
    switch (text[at + 1]) {
    case '\'':
        out += '\'';
        return at + 2;
    case '0':
        appendCodePoint(out, 0);
        return at + 2;
    case 'u':
        if (text.substr(at + 2).starts_with('{')) {
            const auto codePoint = bracedCodePoint(text, at + 3);
            if (codePoint) {
                appendCodePoint(out, codePoint->value);
            }
            return codePoint.transform([](const BracedCodePoint& found) { return found.end; });
        }
        break;
    default:
        break;
    }
    out += text.substr(at, 2);
    return at + 2;
}

std::expected<std::vector<std::string>, std::string> textList(simdjson::dom::object object, const char* key) {
    simdjson::dom::array array;
    if (object[key].get(array) != simdjson::SUCCESS) {
        return std::unexpected("\"" + std::string(key) + "\" is not a list");
    }
    std::vector<std::string> values;
    for (const simdjson::dom::element element : array) {
        std::string_view value;
        if (element.get(value) != simdjson::SUCCESS) {
            return std::unexpected("\"" + std::string(key) + "\" holds something that is not a text");
        }
        values.emplace_back(value);
    }
    return values;
}

} // namespace

std::expected<std::string, std::string> strictJSON(std::string_view text) {
    std::string out;
    out.reserve(text.size() + simdjson::SIMDJSON_PADDING);
    bool inString = false;
    for (std::size_t at = 0; at < text.size();) {
        if (inString && text[at] == '\\') {
            const auto next = appendEscape(out, text, at);
            if (!next) {
                return std::unexpected("there is a broken escape at offset " + std::to_string(at));
            }
            at = *next;
            continue;
        }
        inString ^= text[at] == '"';
        out += text[at++];
    }
    return out;
}

std::expected<CVData, std::string> readCVText(std::string_view text) {
    const auto json = strictJSON(text);
    if (!json) {
        return std::unexpected(json.error());
    }
    simdjson::dom::parser parser;
    simdjson::dom::object object;
    if (parser.parse(*json).get(object) != simdjson::SUCCESS) {
        return std::unexpected("it is not the text of a JSON object");
    }
    CVData data;
    std::string_view gender;
    if (object["gender"].get(gender) != simdjson::SUCCESS) {
        return std::unexpected("\"gender\" is not a text");
    }
    data.gender = gender;
    for (const auto& [key, list] :
         {std::pair{"softSkills", &CVData::softSkills}, std::pair{"techSkills", &CVData::techSkills},
          std::pair{"languages", &CVData::languages}}) {
        auto values = textList(object, key);
        if (!values) {
            return std::unexpected(values.error());
        }
        data.*list = std::move(*values);
    }
    return data;
}

} // namespace dorvantel::service
