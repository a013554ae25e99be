// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/api/Base64.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace dorvantel::service {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Outside the 24 bits of four letters, so that one look at the end judges all letters of a text.
constexpr std::uint32_t noLetter = 0x8000'0000;

/// What a letter contributes to the 24 bits of its group, by its place in the group.
using LetterValues = std::array<std::uint32_t, 256>;

constexpr std::array<LetterValues, 4> makeValues() {
    std::array<LetterValues, 4> values{};
    for (std::size_t place = 0; place < values.size(); ++place) {
        values[place].fill(noLetter);
        for (std::size_t i = 0; i < alphabet.size(); ++i) {
            values[place][static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint32_t>(i << (18 - 6 * place));
        }
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

/// The bits of a group, whose missing letters are "A".
std::uint32_t bitsOf(const char* letters) {
    const auto value = [letters](std::size_t place) {
        return values[place][static_cast<unsigned char>(letters[place])];
    };
    return value(0) | value(1) | value(2) | value(3);
}

void putThree(char* to, std::uint32_t bits) {
    const std::array<char, 3> bytes{static_cast<char>(bits >> 16), static_cast<char>(bits >> 8),
                                    static_cast<char>(bits)};
    std::memcpy(to, bytes.data(), bytes.size());
}

std::uint32_t byteOf(char byte) {
    return static_cast<unsigned char>(byte);
}

} // namespace

std::optional<std::string> decodedBase64(std::string_view text) {
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    if (text.empty()) {
        return std::string();
    }
    std::string out(text.size() / 4 * 3, '\0');
    std::uint32_t seen = 0;
    char* to = out.data();
    const char* const last = text.data() + text.size() - 4;
    for (const char* group = text.data(); group != last; group += 4, to += 3) {
        const std::uint32_t bits = bitsOf(group);
        seen |= bits;
        putThree(to, bits);
    }
    const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
    std::array<char, 4> letters{'A', 'A', 'A', 'A'};
    std::copy_n(last, letters.size() - padding, letters.begin());
    const std::uint32_t bits = bitsOf(letters.data());
    putThree(to, bits);
    out.resize(out.size() - padding);
    return ((seen | bits) & noLetter) == 0 ? std::optional(std::move(out)) : std::nullopt;
}

void appendBase64(std::string& out, std::string_view bytes) {
    const std::size_t begin = out.size();
    const std::size_t rest = bytes.size() % 3;
    const std::size_t whole = bytes.size() - rest;
    out.resize(begin + (bytes.size() + 2) / 3 * 4, '=');
    char* to = out.data() + begin;
    const auto put = [&to](std::uint32_t twelveBits) {
        std::memcpy(to, pairs[twelveBits].data(), 2); // as one piece: letter by letter takes twice as long
        to += 2;
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
