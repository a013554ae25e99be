// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/embedding/Embedding.h"
#include "service/http/HttpServer.h"

#include <expected>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace dorvantel::service {

/// How the program ends.
enum class ExitCode {
    Stopped = 0,         ///< by SIGTERM or SIGINT, with everything in order; also --help and --version
    Failed = 1,          ///< something that no other code covers
    BadArguments = 2,    ///< the command line is not understood
    AddressUnusable = 3, ///< the port is in use, or the address is not this machine's
    StoreUnusable = 4,   ///< the store cannot be made, read or written, is damaged, or another service uses it
    StoreNewer = 5,      ///< a newer version of the program made the store
    NoCandidate = 6,     ///< nobody in the store has the e-mail that a command names
    FileUnusable = 7,    ///< the file or folder that a command names cannot be read or made, or is no sound backup
};

/// What the command line asks for.
struct Options {
    HttpServer::Settings http;
    std::optional<std::filesystem::path> store; ///< absent: the user's own
    ModelServerAddress modelServer{.host = "localhost", .port = 11434};
    std::string embeddingModel; ///< empty: no vectors
    bool showHelp = false;
    bool showVersion = false;
};

/// One option as the help shows it.
struct OptionText {
    std::string_view name;
    std::string_view value; ///< what its value stands for; empty for an option without one
    std::string_view meaning;
};

std::span<const OptionText> optionTexts();

/// The line of a help text for an option.
std::string helpLine(const OptionText& option);

/// What --help prints.
std::string helpText();

/// Reads `--name value` and `--name=value`; the error is a sentence.
std::expected<Options, std::string> parseOptions(std::span<const std::string_view> arguments);

} // namespace dorvantel::service
