// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/Options.h"

#include <expected>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace dorvantel::service {

/// What the program can do beside serving.
enum class Command { Backup, Restore, Check, Export, Erase, Reembed };

/// One command as the help shows it.
struct CommandText {
    Command command;
    std::string_view name;
    std::string_view argument; ///< what its argument stands for; empty for a command without one
    std::string_view meaning;
    std::span<const OptionText> options;
    std::string_view details; ///< the rest of what its --help says
};

std::span<const CommandText> commandTexts();

/// What `COMMAND --help` prints.
std::string commandHelpText(const CommandText& command);

/// A command with what belongs to it.
struct CommandLine {
    const CommandText* text = nullptr;
    std::string argument;                       ///< the file or the e-mail
    std::optional<std::filesystem::path> store; ///< absent: the user's own
    std::optional<std::filesystem::path> to;    ///< of an export: the folder
    bool isReplacing = false;                   ///< a backup may replace its file
    bool showHelp = false;
};

/// Reads a command line whose first argument is no option: the command's name, then options in both forms and the
/// argument in any order; behind `--` nothing is an option. The error is a sentence.
std::expected<CommandLine, std::string> parseCommandLine(std::span<const std::string_view> arguments);

} // namespace dorvantel::service
