// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QtEndian>
#include <QtGlobal>

#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// The bytes of a JSON string, several at a time. A plain byte stands for itself in the string and is one UTF-16 unit:
// ASCII without control characters, quotes and backslashes. Which block is used is the compiler's target's choice, not
// the running processor's; both are exact, and tests hold them against each other.

namespace dorvantel {

/// Eight bytes in an ordinary register.
class PortableBlock {
public:
    static constexpr qsizetype size = 8;

    explicit PortableBlock(const char* at)
        : m_bytes(qFromLittleEndian<std::uint64_t>(at)) {}

    /// How many bytes before the first that is not plain; `size` when all are.
    qsizetype plain() const {
        // For bytes below 128, `bytes - n` borrows into the high bit exactly when the byte is below n. A borrow can
        // only flag bytes behind the first one that is special, so the first flag is right.
        const std::uint64_t special = (m_bytes - 0x20 * everyByte) | ((m_bytes ^ ('"' * everyByte)) - everyByte) |
                                      ((m_bytes ^ ('\\' * everyByte)) - everyByte) | m_bytes;
        return std::countr_zero(special & (0x80 * everyByte)) / 8;
    }

    /// Writes all bytes as units, of which only the plain ones are right.
    void widen(char16_t* out) const {
        for (qsizetype i = 0; i < size; ++i) {
            out[i] = static_cast<char16_t>(m_bytes >> 8 * i & 0xFF);
        }
    }

private:
    static constexpr std::uint64_t everyByte = 0x0101'0101'0101'0101;
    std::uint64_t m_bytes;
};

#if defined(__SSE2__)
/// Sixteen bytes in a vector register, which every 64-bit x86 has.
class VectorBlock {
public:
    static constexpr qsizetype size = 16;

    explicit VectorBlock(const char* at) { std::memcpy(&m_bytes, at, sizeof m_bytes); }

    qsizetype plain() const {
        // The comparison is signed: bytes from 128 on count as negative, and so as special.
        const __m128i special = _mm_or_si128(
            _mm_cmplt_epi8(m_bytes, _mm_set1_epi8(0x20)),
            _mm_or_si128(_mm_cmpeq_epi8(m_bytes, _mm_set1_epi8('"')), _mm_cmpeq_epi8(m_bytes, _mm_set1_epi8('\\'))));
        return std::countr_zero(static_cast<unsigned>(_mm_movemask_epi8(special)) | 1U << size);
    }

    void widen(char16_t* out) const {
        const __m128i low = _mm_unpacklo_epi8(m_bytes, _mm_setzero_si128());
        const __m128i high = _mm_unpackhi_epi8(m_bytes, _mm_setzero_si128());
        std::memcpy(out, &low, sizeof low);
        std::memcpy(out + size / 2, &high, sizeof high);
    }

private:
    __m128i m_bytes;
};

using JsonBlock = VectorBlock;
#else
using JsonBlock = PortableBlock;
#endif

} // namespace dorvantel
