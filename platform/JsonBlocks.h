// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QtEndian>
#include <QtGlobal>

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// The bytes of a JSON string, several at a time. What is found out about them comes as a mask with one bit a byte, the
// first byte lowest. Which block is used is the compiler's target's choice, not the running processor's; both are
// exact, and tests hold them against each other.

namespace dorvantel {

/// Eight bytes in an ordinary register.
class PortableBlock {
public:
    static constexpr qsizetype size = 8;

    explicit PortableBlock(const char* at)
        : m_bytes(qFromLittleEndian<std::uint64_t>(at)) {}

    /// Quotes, backslashes and control characters: what does not stand for itself in a string.
    std::uint64_t special() const {
        const std::uint64_t printable = (m_bytes & everyLowBits) + 0x60 * everyByte;
        return mask((~printable & ~m_bytes) | equal('"') | equal('\\'));
    }
    /// The bytes of characters that have several.
    std::uint64_t multibyte() const { return mask(m_bytes); }

    /// Writes each byte as the UTF-16 unit of the same number, which is right for ASCII.
    void widen(char16_t* out) const {
        for (qsizetype i = 0; i < size; ++i) {
            out[i] = static_cast<char16_t>(m_bytes >> 8 * i & 0xFF);
        }
    }

private:
    static constexpr std::uint64_t everyByte = 0x0101'0101'0101'0101;
    static constexpr std::uint64_t everyLowBits = 0x7F7F'7F7F'7F7F'7F7F;

    /// Sets the high bit of the bytes that are `c`.
    std::uint64_t equal(char c) const {
        const std::uint64_t difference = m_bytes ^ static_cast<unsigned char>(c) * everyByte;
        return ~(((difference & everyLowBits) + everyLowBits) | difference);
    }
    /// The high bits of the bytes, gathered by a multiplication that moves each to a place of its own.
    static std::uint64_t mask(std::uint64_t flags) { return ((flags >> 7 & everyByte) * 0x0102'0408'1020'4080) >> 56; }

    std::uint64_t m_bytes;
};

#if defined(__SSE2__)
/// Sixteen bytes in a vector register, which every 64-bit x86 has.
class VectorBlock {
public:
    static constexpr qsizetype size = 16;

    explicit VectorBlock(const char* at) { std::memcpy(&m_bytes, at, sizeof m_bytes); }

    std::uint64_t special() const {
        const __m128i control = _mm_cmpeq_epi8(m_bytes, _mm_min_epu8(m_bytes, _mm_set1_epi8(0x1F)));
        const __m128i quote = _mm_cmpeq_epi8(m_bytes, _mm_set1_epi8('"'));
        const __m128i backslash = _mm_cmpeq_epi8(m_bytes, _mm_set1_epi8('\\'));
        return mask(_mm_or_si128(control, _mm_or_si128(quote, backslash)));
    }
    std::uint64_t multibyte() const { return mask(m_bytes); }

    void widen(char16_t* out) const {
        const __m128i low = _mm_unpacklo_epi8(m_bytes, _mm_setzero_si128());
        const __m128i high = _mm_unpackhi_epi8(m_bytes, _mm_setzero_si128());
        std::memcpy(out, &low, sizeof low);
        std::memcpy(out + size / 2, &high, sizeof high);
    }

private:
    static std::uint64_t mask(__m128i flags) { return static_cast<unsigned>(_mm_movemask_epi8(flags)); }

    __m128i m_bytes;
};

using JsonBlock = VectorBlock;
#else
using JsonBlock = PortableBlock;
#endif

} // namespace dorvantel
