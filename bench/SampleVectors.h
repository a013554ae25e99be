// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace dorvantel::bench {

/// Vectors of unit length, the same for the same seed.
class SampleVectors {
public:
    enum class Kind {
        Random,    ///< every direction alike
        Clustered, ///< as embedding models give them: all lean one way, and texts on one subject lie together
    };

    SampleVectors(Kind kind, std::size_t dimension, std::uint64_t seed);

    /// Fills `vector`, which has the dimension.
    void next(std::span<float> vector);
    std::vector<float> next();

private:
    float roughlyNormal();

    Kind m_kind;
    std::size_t m_dimension;
    std::uint64_t m_state;
    std::vector<std::vector<float>> m_centers;
};

} // namespace dorvantel::bench
