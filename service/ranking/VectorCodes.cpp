// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/ranking/VectorCodes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

// Why the bounds hold. Write q for the query, r for a row, q' and r' for what their codes stand for (scale × codes),
// and e = q - q', f = r - r' for the errors of rounding. Then
//
//     q·r = q'·r' + e·r + q'·f,    so    |q·r - q'·r'| ≤ ‖e‖‖r‖ + ‖q'‖‖f‖
//
// since no dot product is larger than the product of the lengths. q'·r' is the two scales times the dot product of the
// codes, which is a whole number that every kernel finds exactly. What is left is arithmetic:
//
// - `dotProduct` adds n products in 16 lanes, so each goes through at most n/16 + 6 roundings of a 32-bit float, and
//   the result is off by no more than (n/16 + 6) × 2^-24 (a little more, for roundings of roundings) times the sum
//   of |qi ri|, which is at most ‖q‖‖r‖. Twice (n/16 + 8) × 2^-24 covers that, and what the few operations of a double
//   in `bounds` add many times over. Products too small for a 32-bit float lose at most 2^-150 each.
// - Lengths are sums of squares in doubles and then made larger by far more than the roundings on the way.
//
// Whatever the vectors are: a bound can be useless (not a number, when lengths leave the range of a float), never
// wrong.

namespace dorvantel::service {

namespace {

constexpr double largestCode = 127;
constexpr double upwards = 1 + 1e-6; ///< far more than the roundings of a length

float largerFloat(double length) {
    using Limits = std::numeric_limits<float>;
    const double larger = length * upwards;
    return larger > double{Limits::max()} ? Limits::infinity()
                                          : std::nextafter(static_cast<float>(larger), Limits::infinity());
}

float scaleOf(std::span<const float> vector) {
    float largest = 0;
    for (const float number : vector) {
        largest = std::max(largest, std::abs(number));
    }
    return largest / static_cast<float>(largestCode);
}

/// Writes the codes, moved by `zero`, and measures what they leave out. Nothing depends on how a code is rounded.
template <typename Code>
CodedVector encode(std::span<const float> vector, std::span<Code> codes, int zero) {
    CodedVector coded{.scale = scaleOf(vector)};
    const double scale{coded.scale};
    const double inverse = scale > 0 ? 1 / scale : 0;
    double squares = 0;
    double errorSquares = 0;
    for (std::size_t i = 0; i < vector.size(); ++i) {
        const double number{vector[i]};
        const double steps = std::clamp(number * inverse, -largestCode, largestCode);
        const int code = static_cast<int>(steps + (steps < 0 ? -0.5 : 0.5));
        const double error = number - scale * code;
        squares += number * number;
        errorSquares += error * error;
        codes[i] = static_cast<Code>(code + zero);
    }
    std::ranges::fill(codes.subspan(vector.size()), static_cast<Code>(zero));
    coded.norm = largerFloat(std::sqrt(squares));
    coded.error = largerFloat(std::sqrt(errorSquares));
    return coded;
}

} // namespace

CodedVector encodeRow(std::span<const float> vector, std::span<std::uint8_t> codes) {
    return encode(vector, codes, codeZero);
}

CodedQuery::CodedQuery(std::span<const float> query)
    : m_storage(paddedCodes(query.size())) {
    const std::span codes(m_storage.data(), paddedCodes(query.size()));
    const CodedVector coded = encode(query, codes, 0);
    m_codes = {codes, std::accumulate(codes.begin(), codes.end(), 0)};
    m_scale = coded.scale;

    const auto count = static_cast<double>(query.size());
    const double norm{coded.norm};
    const double error{coded.error};
    const double rounding = 2 * (count / 16 + 8) * 0x1p-24;
    m_perNorm = (error + rounding * norm) * upwards;
    m_perError = (norm + error) * upwards; // no smaller than the length of what the codes stand for
    m_underflow = count * 0x1p-148;
}

} // namespace dorvantel::service
