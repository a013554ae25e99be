// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

namespace dorvantel {

/// Lets screen readers meet a PDF view as a document. Safe to call again.
void installPDFAccessibility();

} // namespace dorvantel
