// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

namespace dorvantel {

/// Lets screen readers meet a token editor as a list whose items are its tokens, followed by the text being typed.
/// Safe to call again.
void installTokenAccessibility();

} // namespace dorvantel
