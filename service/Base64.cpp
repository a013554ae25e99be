// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/Base64.h"

#include <array>
#include <cstdint>

namespace dorvantel::service {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// A bit that no value of six bits has, so that the values of many letters can be judged at once.
constexpr std::uint32_t noLetter = 0x80;

constexpr std::array<std::uint8_t, 256> makeValues() {
    std::array<std::uint8_t, 256> values{};
    values.fill(noLetter);
    for (std::size_t i = 0; i < alphabet.size(); ++i) {
        values[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
    }
    return values;
}

/// The two letters of every twelve bits.
constexpr std::array<std::array<char, 2>, 4096> makePairs() {
    std::array<std::array<char, 2>, 4096> pairs{};
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        pairs[i] = {alphabet[i >> 6], alphabet[i & 63]};
    }
    return pairs;
}

constexpr auto values = makeValues();
constexpr auto pairs = makePairs();

std::uint32_t valueOf(char letter) {
    return values[static_cast<unsigned char>(letter)];
}

std::uint32_t byteOf(char byte) {
    return static_cast<unsigned char>(byte);
}

} // namespace

std::optional<std::string> decodedBase64(std::string_view text) {
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
    const std::size_t whole = padding == 0 ? text.size() : text.size() - 4;
    std::string out(whole / 4 * 3, '\0');
    std::uint32_t seen = 0;
    char* to = out.data();
    for (std::size_t i = 0; i < whole; i += 4) {
        const std::uint32_t a = valueOf(text[i]);
        const std::uint32_t b = valueOf(text[i + 1]);
        const std::uint32_t c = valueOf(text[i + 2]);
        const std::uint32_t d = valueOf(text[i + 3]);
        seen |= a | b | c | d;
        const std::uint32_t bits = (a << 18) | (b << 12) | (c << 6) | d;
        *to++ = static_cast<char>(bits >> 16);
        *to++ = static_cast<char>(bits >> 8);
        *to++ = static_cast<char>(bits);
    }
    if (padding > 0) {
        const std::uint32_t a = valueOf(text[whole]);
        const std::uint32_t b = valueOf(text[whole + 1]);
        const std::uint32_t c = padding == 1 ? valueOf(text[whole + 2]) : 0;
        seen |= a | b | c;
        out += static_cast<char>((a << 2) | (b >> 4));
        if (padding == 1) {
            out += static_cast<char>((b << 4) | (c >> 2));
        }
    }
    return (seen & noLetter) == 0 ? std::optional(std::move(out)) : std::nullopt;
}

void appendBase64(std::string& out, std::string_view bytes) {
    const std::size_t begin = out.size();
    const std::size_t rest = bytes.size() % 3;
    const std::size_t whole = bytes.size() - rest;
    out.resize(begin + (bytes.size() + 2) / 3 * 4, '=');
    char* to = out.data() + begin;
    const auto put = [&to](std::uint32_t twelveBits) {
        *to++ = pairs[twelveBits][0];
        *to++ = pairs[twelveBits][1];
    };
    for (std::size_t i = 0; i < whole; i += 3) {
        const std::uint32_t bits = (byteOf(bytes[i]) << 16) | (byteOf(bytes[i + 1]) << 8) | byteOf(bytes[i + 2]);
        put(bits >> 12);
        put(bits & 0xFFF);
    }
    if (rest == 1) {
        put(byteOf(bytes[whole]) << 4);
    } else if (rest == 2) {
        put((byteOf(bytes[whole]) << 4) | (byteOf(bytes[whole + 1]) >> 4));
        *to = alphabet[(byteOf(bytes[whole + 1]) & 0xF) << 2];
    }
}

} // namespace dorvantel::service
