// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/ranking/DotKernels.h"

#include <algorithm>
#include <array>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace dorvantel::service {

namespace {

using CodeRow = const std::uint8_t*;

void portableDots(std::span<const CodeRow> rows, const QueryCodes& query, std::int32_t* dots) {
    for (std::size_t row = 0; row < rows.size(); ++row) {
        std::int32_t sum = 0;
        for (std::size_t i = 0; i < query.codes.size(); ++i) {
            sum += (std::int32_t{rows[row][i]} - codeZero) * std::int32_t{query.codes[i]};
        }
        dots[row] = sum;
    }
}

#if defined(__x86_64__)

/// Rows that are multiplied at once, so that a piece of the query is loaded once for all of them.
constexpr std::size_t rowsAtOnce = 4;

#define DORVANTEL_AVX2 __attribute__((target("avx2")))
#define DORVANTEL_VNNI __attribute__((target("avx512f,avx512bw,avx512vnni")))

DORVANTEL_AVX2 inline std::int32_t sumOf(__m256i sums) {
    __m128i half = _mm_add_epi32(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1));
    half = _mm_add_epi32(half, _mm_shuffle_epi32(half, 0x4E));
    half = _mm_add_epi32(half, _mm_shuffle_epi32(half, 0xB1));
    return _mm_cvtsi128_si32(half);
}

/// The instruction that multiplies bytes takes one side without sign and adds neighbours in 16 bits. So the query's
/// sign is moved to the row; two products of at most 127 × 127 then fit.
template <std::size_t count>
DORVANTEL_AVX2 inline void avx2Dots(const CodeRow* rows, const QueryCodes& query, std::int32_t* dots) {
    const __m256i zero = _mm256_set1_epi8(static_cast<char>(codeZero));
    const __m256i ones = _mm256_set1_epi16(1);
    __m256i sums[count];
    for (std::size_t row = 0; row < count; ++row) {
        sums[row] = _mm256_setzero_si256();
    }
    for (std::size_t i = 0; i < query.codes.size(); i += sizeof(__m256i)) {
        const __m256i factors = _mm256_load_si256(reinterpret_cast<const __m256i*>(query.codes.data() + i));
        const __m256i magnitudes = _mm256_abs_epi8(factors);
        for (std::size_t row = 0; row < count; ++row) {
            const __m256i stored = _mm256_load_si256(reinterpret_cast<const __m256i*>(rows[row] + i));
            const __m256i turned = _mm256_sign_epi8(_mm256_xor_si256(stored, zero), factors);
            const __m256i pairs = _mm256_maddubs_epi16(magnitudes, turned);
            sums[row] = _mm256_add_epi32(sums[row], _mm256_madd_epi16(pairs, ones));
        }
    }
    for (std::size_t row = 0; row < count; ++row) {
        dots[row] = sumOf(sums[row]);
    }
}

/// The instruction takes rows without sign: what the moved codes add is the same for every row.
template <std::size_t count>
DORVANTEL_VNNI inline void vnniDots(const CodeRow* rows, const QueryCodes& query, std::int32_t* dots) {
    __m512i sums[count];
    for (std::size_t row = 0; row < count; ++row) {
        sums[row] = _mm512_setzero_si512();
    }
    for (std::size_t i = 0; i < query.codes.size(); i += sizeof(__m512i)) {
        const __m512i factors = _mm512_load_si512(query.codes.data() + i);
        for (std::size_t row = 0; row < count; ++row) {
            sums[row] = _mm512_dpbusd_epi32(sums[row], _mm512_load_si512(rows[row] + i), factors);
        }
    }
    for (std::size_t row = 0; row < count; ++row) {
        // The masked forms: gcc 12 warns of its own plain ones.
        const __m256i lower = _mm512_maskz_extracti64x4_epi64(0xFF, sums[row], 0);
        const __m256i upper = _mm512_maskz_extracti64x4_epi64(0xFF, sums[row], 1);
        dots[row] = sumOf(_mm256_add_epi32(lower, upper)) - codeZero * query.sum;
    }
}

DORVANTEL_AVX2 void allAvx2Dots(std::span<const CodeRow> rows, const QueryCodes& query, std::int32_t* dots) {
    std::size_t row = 0;
    for (; row + rowsAtOnce <= rows.size(); row += rowsAtOnce) {
        avx2Dots<rowsAtOnce>(rows.data() + row, query, dots + row);
    }
    for (; row < rows.size(); ++row) {
        avx2Dots<1>(rows.data() + row, query, dots + row);
    }
}

DORVANTEL_VNNI void allVnniDots(std::span<const CodeRow> rows, const QueryCodes& query, std::int32_t* dots) {
    std::size_t row = 0;
    for (; row + rowsAtOnce <= rows.size(); row += rowsAtOnce) {
        vnniDots<rowsAtOnce>(rows.data() + row, query, dots + row);
    }
    for (; row < rows.size(); ++row) {
        vnniDots<1>(rows.data() + row, query, dots + row);
    }
}

bool hasVnni() {
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
           __builtin_cpu_supports("avx512vnni");
}

std::span<const DotKernel> allKernels() {
    static const std::array kernels{DotKernel{"AVX-512 VNNI", allVnniDots, hasVnni()},
                                    DotKernel{"AVX2", allAvx2Dots, __builtin_cpu_supports("avx2") != 0},
                                    DotKernel{"portable", portableDots, true}};
    return kernels;
}

#else

std::span<const DotKernel> allKernels() {
    static const std::array kernels{DotKernel{"portable", portableDots, true}};
    return kernels;
}

#endif

} // namespace

std::span<const DotKernel> dotKernels() {
    return allKernels();
}

const DotKernel& bestDotKernel() {
    static const DotKernel& best = *std::ranges::find_if(dotKernels(), &DotKernel::isSupported);
    return best;
}

} // namespace dorvantel::service
