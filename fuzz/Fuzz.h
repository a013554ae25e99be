// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

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

} // namespace dorvantel::fuzz
