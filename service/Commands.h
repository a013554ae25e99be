// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/CommandLine.h"

#include <filesystem>
#include <functional>
#include <string_view>

namespace dorvantel::service {

/// Where a command puts its lines.
struct CommandOutput {
    std::function<void(std::string_view)> result;  ///< what was done
    std::function<void(std::string_view)> problem; ///< why it was not
};

/// Runs a command on `store` and says what came of it, without anything of a candidate but the e-mail that the command
/// named. Throws what the store throws: StoreFileError, SchemaError and SqliteError.
ExitCode runCommand(const CommandLine& line, const std::filesystem::path& store, const CommandOutput& output);

} // namespace dorvantel::service
