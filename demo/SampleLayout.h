// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/SampleCv.h"

#include <QPaintDevice>
#include <QPainter>

#include <functional>

namespace dorvantel {

inline constexpr double pageWidth = 595; ///< points, A4
inline constexpr double pageHeight = 842;

/// Draws the CV in its layout on pages of `device`, each of which but the first `newPage` begins.
void drawSample(const SampleCv& cv, QPainter& painter, QPaintDevice& device, const std::function<void()>& newPage);

} // namespace dorvantel
