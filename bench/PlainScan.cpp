// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/PlainScan.h"

#include <limits>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace dorvantel::bench {

namespace {

float portableDot(const float* a, const float* b, std::size_t length) {
    constexpr std::size_t lanes = 16;
    std::array<float, lanes> sums{};
    std::size_t i = 0;
    for (; i + lanes <= length; i += lanes) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            sums[lane] += a[i + lane] * b[i + lane];
        }
    }
    for (; i < length; ++i) {
        sums[0] += a[i] * b[i];
    }
    float sum = 0;
    for (const float part : sums) {
        sum += part;
    }
    return sum;
}

#if defined(__x86_64__)

__attribute__((target("avx2,fma"))) float avx2Dot(const float* a, const float* b, std::size_t length) {
    __m256 sums[4] = {_mm256_setzero_ps(), _mm256_setzero_ps(), _mm256_setzero_ps(), _mm256_setzero_ps()};
    std::size_t i = 0;
    for (; i + 32 <= length; i += 32) {
        for (std::size_t part = 0; part < 4; ++part) {
            sums[part] =
                _mm256_fmadd_ps(_mm256_loadu_ps(a + i + 8 * part), _mm256_loadu_ps(b + i + 8 * part), sums[part]);
        }
    }
    float lanes[8];
    _mm256_storeu_ps(lanes, _mm256_add_ps(_mm256_add_ps(sums[0], sums[1]), _mm256_add_ps(sums[2], sums[3])));
    float sum = ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) + ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));
    for (; i < length; ++i) {
        sum += a[i] * b[i];
    }
    return sum;
}

__attribute__((target("avx512f"))) float avx512Dot(const float* a, const float* b, std::size_t length) {
    __m512 sums[4] = {_mm512_setzero_ps(), _mm512_setzero_ps(), _mm512_setzero_ps(), _mm512_setzero_ps()};
    std::size_t i = 0;
    for (; i + 64 <= length; i += 64) {
        for (std::size_t part = 0; part < 4; ++part) {
            sums[part] =
                _mm512_fmadd_ps(_mm512_loadu_ps(a + i + 16 * part), _mm512_loadu_ps(b + i + 16 * part), sums[part]);
        }
    }
    float lanes[16];
    _mm512_storeu_ps(lanes, _mm512_add_ps(_mm512_add_ps(sums[0], sums[1]), _mm512_add_ps(sums[2], sums[3])));
    for (std::size_t width = 8; width > 0; width /= 2) {
        for (std::size_t lane = 0; lane < width; ++lane) {
            lanes[lane] += lanes[lane + width];
        }
    }
    for (; i < length; ++i) {
        lanes[0] += a[i] * b[i];
    }
    return lanes[0];
}

bool hasAvx512() {
    return __builtin_cpu_supports("avx512f") != 0;
}

bool hasAvx2() {
    return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
}

#endif

} // namespace

PlainDot plainDot() {
#if defined(__x86_64__)
    if (hasAvx512()) {
        return avx512Dot;
    }
    if (hasAvx2()) {
        return avx2Dot;
    }
#endif
    return portableDot;
}

std::string_view plainDotName() {
    return plainDot() == portableDot ? "portable"
#if defined(__x86_64__)
           : plainDot() == avx2Dot ? "AVX2"
                                   : "AVX-512"
#else
                                     : ""
#endif
        ;
}

BestFive plainBestFive(const service::VectorRows& rows, std::span<const float> query) {
    const PlainDot dot = plainDot();
    BestFive best;
    best.fill({-std::numeric_limits<float>::infinity(), 0});
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const float similarity = dot(rows.values(row).data(), query.data(), query.size());
        if (similarity > best.back().first) {
            best.back() = {similarity, rows.id(row)};
            for (std::size_t place = best.size() - 1; place > 0 && best[place].first > best[place - 1].first; --place) {
                std::swap(best[place], best[place - 1]);
            }
        }
    }
    return best;
}

} // namespace dorvantel::bench
