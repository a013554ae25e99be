// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/ranking/VectorRows.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

namespace dorvantel::bench {

/// The yardstick of a ranking: the dot product of 32-bit floats by fused multiply-add in the widest registers of this
/// processor, with enough sums side by side for no addition to wait for the one before.
using PlainDot = float (*)(const float* a, const float* b, std::size_t length);
PlainDot plainDot();

/// Which instructions `plainDot` uses.
std::string_view plainDotName();

using BestFive = std::array<std::pair<float, std::int64_t>, 5>;

/// One plain pass over all rows: the five largest dot products and whose they are, the largest first.
BestFive plainBestFive(const service::VectorRows& rows, std::span<const float> query);

} // namespace dorvantel::bench
