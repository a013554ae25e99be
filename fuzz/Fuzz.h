// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace dorvantel::fuzz {

/// What must hold for every input, in every build. The fuzzer keeps the input for which it does not.
inline void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "it does not hold: %s\n", what);
        std::abort();
    }
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// The input as it stands, whatever it begins with, as the code units of a text.
inline QString unitsOf(const std::uint8_t* data, std::size_t size) {
    QString text(static_cast<qsizetype>(size / sizeof(QChar)), Qt::Uninitialized);
    std::copy_n(data, static_cast<std::size_t>(text.size()) * sizeof(QChar),
                reinterpret_cast<std::uint8_t*>(text.data()));
    return text;
}

/// The input taken apart where a byte stands that UTF-8 does not have.
inline std::vector<std::string_view> partsOf(std::string_view input) {
    std::vector<std::string_view> parts;
    for (std::size_t end = input.find('\xFF'); end != input.npos; end = input.find('\xFF')) {
        parts.push_back(input.substr(0, end));
        input.remove_prefix(end + 1);
    }
    parts.push_back(input);
    return parts;
}

} // namespace dorvantel::fuzz
