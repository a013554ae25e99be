// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace dorvantel {

/// Stops the program for a state that the design rules out: prints "Fatal error: " and `violated` on standard error
/// and aborts. For programming errors only; what a user or a server can cause is returned as an error instead.
[[noreturn]] void fatalError(const QString& violated);

} // namespace dorvantel
