// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/Options.h"

#include "service/CommandLine.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <ranges>

namespace dorvantel::service {

namespace {

using Error = std::expected<void, std::string>;

constexpr std::size_t megabyte = std::size_t{1024} * 1024;
constexpr std::size_t largestBodyLimit = 1024;

constexpr std::array<OptionText, 8> allOptions{{
    {"--listen", "HOST:PORT", "the address to listen on (default 127.0.0.1:8765); port 0 takes a free one"},
    {"--allow", "CIDR",
     "a network whose clients may connect beside this machine's own; may be repeated, commas separate several"},
    {"--store", "PATH",
     "the file to keep the candidates in (default: dorvantel/records.sqlite in the user's data folder)"},
    {"--model-server", "URL", "the model server that computes vectors (default http://localhost:11434)"},
    {"--embedding-model", "NAME", "the model that computes them; without it no vectors are computed"},
    {"--body-limit", "MIB", "the largest body that is taken, 1 to 1024 mebibytes (default 64)"},
    {"--help", "", "show this and end"},
    {"--version", "", "show the version and end"},
}};

Error setListen(Options& options, std::string_view value) {
    const auto parsed = parseHostAndPort(value);
    if (!parsed || !parsed->port) {
        return std::unexpected("--listen takes HOST:PORT, for example 127.0.0.1:8765");
    }
    options.http.host = parsed->host;
    options.http.port = *parsed->port;
    return {};
}

Error addAllowed(Options& options, std::string_view value) {
    for (const auto part : std::views::split(value, ',')) {
        const auto network = parseClientNetwork(std::string_view(part));
        if (!network) {
            return std::unexpected("--allow takes networks such as 192.168.1.0/24 or fd00::/8: " + network.error());
        }
        options.http.allowed.push_back(*network);
    }
    return {};
}

Error setStore(Options& options, std::string_view value) {
    options.store = value;
    return {};
}

Error setModelServer(Options& options, std::string_view value) {
    const auto server = parseModelServer(value);
    if (!server) {
        return std::unexpected("--model-server takes a URL such as http://localhost:11434");
    }
    options.modelServer = *server;
    return {};
}

Error setEmbeddingModel(Options& options, std::string_view value) {
    options.embeddingModel = value;
    return {};
}

Error setBodyLimit(Options& options, std::string_view value) {
    std::size_t mebibytes = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), mebibytes);
    if (error != std::errc() || end != value.data() + value.size() || mebibytes < 1 || mebibytes > largestBodyLimit) {
        return std::unexpected("--body-limit takes a whole number from 1 to 1024");
    }
    options.http.bodyLimit = mebibytes * megabyte;
    return {};
}

/// Whoever lets other machines in says which ones.
Error checkReach(const Options& options) {
    if (isLoopback(options.http.host) || !options.http.allowed.empty()) {
        return {};
    }
    return std::unexpected("--listen " + options.http.host +
                           " is open to other machines: name the networks of the clients with --allow, for example "
                           "--allow 192.168.1.0/24");
}

Error set(Options& options, std::string_view name, std::string_view value) {
    if (value.empty()) {
        return std::unexpected(std::string(name) + " needs a value");
    }
    if (name == "--listen") {
        return setListen(options, value);
    }
    if (name == "--allow") {
        return addAllowed(options, value);
    }
    if (name == "--store") {
        return setStore(options, value);
    }
    if (name == "--model-server") {
        return setModelServer(options, value);
    }
    if (name == "--embedding-model") {
        return setEmbeddingModel(options, value);
    }
    return setBodyLimit(options, value);
}

} // namespace

std::span<const OptionText> optionTexts() {
    return allOptions;
}

std::string helpLine(const OptionText& option) {
    std::string left = "  " + std::string(option.name);
    if (!option.value.empty()) {
        left += " " + std::string(option.value);
    }
    left.resize(std::max<std::size_t>(left.size() + 2, 28), ' ');
    return left + std::string(option.meaning) + "\n";
}

std::string helpText() {
    std::string text = "dorvantel-records [OPTION]...\nKeeps candidates and answers searches over HTTP.\n\n";
    for (const OptionText& option : allOptions) {
        text += helpLine(option);
    }
    text += "\ndorvantel-records COMMAND ...\nLooks after the store. Each command has a --help of its own.\n\n";
    for (const CommandText& command : commandTexts()) {
        text += helpLine({command.name, command.argument, command.meaning});
    }
    return text;
}

std::expected<Options, std::string> parseOptions(std::span<const std::string_view> arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::size_t equals = arguments[i].find('=');
        const std::string_view name = arguments[i].substr(0, equals);
        const auto* const known = std::ranges::find(allOptions, name, &OptionText::name);
        if (known == allOptions.end() &&
            std::ranges::find(commandTexts(), name, &CommandText::name) != commandTexts().end()) {
            return std::unexpected("the command " + std::string(name) + " must come before all options");
        }
        if (known == allOptions.end()) {
            return std::unexpected("there is no option " + std::string(name) + "; --help shows all");
        }
        if (known->value.empty()) {
            if (equals != std::string_view::npos) {
                return std::unexpected(std::string(name) + " takes no value");
            }
            (name == "--help" ? options.showHelp : options.showVersion) = true;
            continue;
        }
        std::string_view value;
        if (equals != std::string_view::npos) {
            value = arguments[i].substr(equals + 1);
        } else if (i + 1 < arguments.size()) {
            value = arguments[++i];
        }
        if (const Error result = set(options, name, value); !result) {
            return std::unexpected(result.error());
        }
    }
    if (const Error result = checkReach(options); !result) {
        return std::unexpected(result.error());
    }
    return options;
}

} // namespace dorvantel::service
