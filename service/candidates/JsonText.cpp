// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/candidates/JsonText.h"

#include "platform/JsonEscaping.h"

#include <array>
#include <charconv>

namespace dorvantel::service {

namespace {

/// "0" to "255", each with the comma before it.
std::array<std::string, 256> makeNumberTexts() {
    std::array<std::string, 256> texts;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        texts[i] = "," + std::to_string(i);
    }
    return texts;
}

void appendList(std::string& out, const std::vector<std::string>& values) {
    out += '[';
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i > 0) {
            out += ',';
        }
        appendJsonString(out, values[i]);
    }
    out += ']';
}

} // namespace

void appendJSONField(std::string& out, std::string_view key, std::string_view utf8) {
    appendJsonString(out, key);
    out += ':';
    appendJsonString(out, utf8);
}

void appendByteNumbers(std::string& out, std::string_view bytes) {
    static const std::array<std::string, 256> texts = makeNumberTexts();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::string& text = texts[static_cast<unsigned char>(bytes[i])];
        out += i == 0 ? std::string_view(text).substr(1) : std::string_view(text);
    }
}

void appendNumber(std::string& out, float value) {
    std::array<char, 32> text{};
    out.append(text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr);
}

std::string cvDataJSON(const CVData& data) {
    std::string out = "{";
    appendJSONField(out, "gender", data.gender);
    out += ",\"softSkills\":";
    appendList(out, data.softSkills);
    out += ",\"techSkills\":";
    appendList(out, data.techSkills);
    out += ",\"languages\":";
    appendList(out, data.languages);
    return out + "}";
}

std::string errorJSON(std::string_view message) {
    std::string out = "{";
    appendJSONField(out, "error", message);
    return out + "}";
}

} // namespace dorvantel::service
