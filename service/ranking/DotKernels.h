// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace dorvantel::service {

/// Rows of codes are padded to a multiple of so many bytes and begin at a multiple of them.
constexpr std::size_t codeAlignment = 64;

/// The longest row whose dot product surely fits 32 bits: 65536 × 255 × 127 is below 2^31.
constexpr std::size_t maxCodes = 65'536;

/// A row's code as it is stored: -127 to 127, moved by this much so that it has no sign.
constexpr std::uint8_t codeZero = 128;

/// A query's codes, -127 to 127, padded with zeros to the length of the rows.
struct QueryCodes {
    std::span<const std::int8_t> codes; ///< aligned as rows are
    std::int32_t sum = 0;               ///< of `codes`
};

/// One way to multiply many rows of codes with a query. Whole numbers, so all ways agree exactly.
struct DotKernel {
    std::string_view name;
    /// Sets `dots[i]` to the sum of the products of `rows[i]` and the query.
    void (*dots)(std::span<const std::uint8_t* const> rows, const QueryCodes& query, std::int32_t* dots);
    bool isSupported; ///< by the processor that the program runs on
};

/// All kernels of this build, the fastest first; the last one runs everywhere.
std::span<const DotKernel> dotKernels();

/// The fastest that this processor supports.
const DotKernel& bestDotKernel();

} // namespace dorvantel::service
