// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/ranking/AlignedArray.h"
#include "service/ranking/DotKernels.h"

#include <span>

namespace dorvantel::service {

/// What is known of a vector beside its codes: it is `scale` times its codes plus an error of known length.
struct CodedVector {
    float scale = 0;
    float norm = 0;  ///< the vector's length, never too small
    float error = 0; ///< the length of vector - scale × codes, never too small
};

/// The bytes that the codes of a vector of this length take.
constexpr std::size_t paddedCodes(std::size_t dimension) {
    return (dimension + codeAlignment - 1) / codeAlignment * codeAlignment;
}

/// Writes the vector's codes, padding included.
CodedVector encodeRow(std::span<const float> vector, std::span<std::uint8_t> codes);

/// Between what numbers the dot product of a row and the query lies, as `dotProduct` computes it.
struct DotBounds {
    double lower;
    double upper;
};

/// A query as codes, with what it takes to bound a dot product from the dot product of the codes. No more than
/// `maxCodes` numbers.
class CodedQuery {
public:
    explicit CodedQuery(std::span<const float> query);

    const QueryCodes& codes() const { return m_codes; }

    /// `codeDot` is the dot product of the codes. Bounds that cannot be told are infinite or not a number.
    DotBounds bounds(const CodedVector& row, std::int32_t codeDot) const {
        const double middle = m_scale * static_cast<double>(row.scale) * codeDot;
        const double radius =
            m_perNorm * static_cast<double>(row.norm) + m_perError * static_cast<double>(row.error) + m_underflow;
        return {middle - radius, middle + radius};
    }

private:
    AlignedArray<std::int8_t> m_storage;
    QueryCodes m_codes;
    double m_scale = 0;
    double m_perNorm = 0;
    double m_perError = 0;
    double m_underflow = 0;
};

} // namespace dorvantel::service
