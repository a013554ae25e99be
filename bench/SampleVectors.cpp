// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/SampleVectors.h"

#include <cmath>
#include <numeric>

namespace dorvantel::bench {

namespace {

constexpr std::size_t subjects = 400;
constexpr std::uint64_t subjectSeed = 0x5EED; ///< queries are about the same subjects as the rows
constexpr float leaning = 0.7F;               ///< how much of the common direction is in a subject
constexpr float spread = 0.8F;                ///< how far texts on one subject lie from it

std::uint64_t mixed(std::uint64_t& state) {
    state += 0x9E3779B97F4A7C15;
    std::uint64_t bits = state;
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EB;
    return bits ^ (bits >> 31);
}

void makeUnit(std::span<float> vector) {
    const float length = std::sqrt(std::inner_product(vector.begin(), vector.end(), vector.begin(), 0.0F));
    for (float& number : vector) {
        number /= length;
    }
}

} // namespace

SampleVectors::SampleVectors(Kind kind, std::size_t dimension, std::uint64_t seed)
    : m_kind(kind)
    , m_dimension(dimension)
    , m_state(subjectSeed) {
    if (kind == Kind::Clustered) {
        m_kind = Kind::Random; // what the centers are made of
        const std::vector<float> common = next();
        for (std::size_t i = 0; i < subjects; ++i) {
            std::vector<float> center = next();
            for (std::size_t j = 0; j < dimension; ++j) {
                center[j] += leaning * common[j];
            }
            makeUnit(center);
            m_centers.push_back(std::move(center));
        }
        m_kind = kind;
    }
    m_state = seed;
}

/// The sum of four numbers of 16 bits, from -1 to 1 each.
float SampleVectors::roughlyNormal() {
    const std::uint64_t bits = mixed(m_state);
    float sum = -4;
    for (int shift = 0; shift < 64; shift += 16) {
        sum += static_cast<float>((bits >> shift) & 0xFFFF) / 32'768.0F;
    }
    return sum;
}

void SampleVectors::next(std::span<float> vector) {
    for (float& number : vector) {
        number = roughlyNormal();
    }
    makeUnit(vector);
    if (m_kind == Kind::Clustered) {
        const std::vector<float>& center = m_centers[mixed(m_state) % m_centers.size()];
        for (std::size_t i = 0; i < vector.size(); ++i) {
            vector[i] = center[i] + spread * vector[i];
        }
        makeUnit(vector);
    }
}

std::vector<float> SampleVectors::next() {
    std::vector<float> vector(m_dimension);
    next(vector);
    return vector;
}

} // namespace dorvantel::bench
