// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace dorvantel::service {

/// Raises the number of files that this process may have open as far as it is allowed to, and gives what it is then.
std::size_t raiseOpenFileLimit();

/// How many connections have room within a limit of open files, when each reads from the store at the same time. At
/// least one.
std::size_t connectionsWithin(std::size_t openFiles);

} // namespace dorvantel::service
