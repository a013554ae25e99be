// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/CommandLine.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace dorvantel::service {

namespace {

constexpr OptionText storeOption{"--store", "PATH",
                                 "the store (default: dorvantel/records.sqlite in the user's data folder)"};
constexpr OptionText helpOption{"--help", "", "show this and end"};

constexpr std::array commonOptions{storeOption, helpOption};
constexpr std::array backupOptions{OptionText{"--replace", "", "let the backup take the place of a file of this name"},
                                   storeOption, helpOption};
constexpr std::array exportOptions{OptionText{"--to", "DIR", "the folder to make; it may exist when it is empty"},
                                   storeOption, helpOption};

constexpr std::array<CommandText, 6> allCommands{{
    {Command::Backup, "backup", "FILE", "write a copy of the store, also while the service runs", backupOptions,
     "The copy is the store as it is at one moment, checked before it gets its name, and its owner's alone."},
    {Command::Restore, "restore", "FILE", "put a backup in the store's place", commonOptions,
     "The service must be stopped. The backup is checked first; the store that was there is kept beside it."},
    {Command::Check, "check", "", "look for damage in the store, also while the service runs", commonOptions,
     "Reads everything: the file's structure, references, the CV data of every version and all vectors."},
    {Command::Export, "export", "EMAIL", "write all versions of a candidate with their PDFs into a folder",
     exportOptions, "Works while the service runs. The e-mail is compared byte for byte."},
    {Command::Erase, "erase", "EMAIL", "remove a candidate with all earlier versions for good", commonOptions,
     "The service must be stopped. The store is rewritten, so that nothing of the candidate stays in its free space.\n"
     "Backups and stores that a restore kept aside are files of their own: name each with --store. The e-mail is\n"
     "compared byte for byte."},
    {Command::Reembed, "reembed", "", "let every vector be computed anew when the service runs again", commonOptions,
     "The service must be stopped. Until their turn comes, candidates are missing from semantic searches."},
}};

std::string missingArgument(const CommandText& command) {
    return std::string(command.name) + " needs " + (command.argument == "EMAIL" ? "an " : "a ") +
           std::string(command.argument) + "; " + std::string(command.name) + " --help says more";
}

void setFlag(CommandLine& line, std::string_view name) {
    (name == "--help" ? line.showHelp : line.isReplacing) = true;
}

void setValue(CommandLine& line, std::string_view name, std::string_view value) {
    (name == "--store" ? line.store : line.to) = value;
}

std::expected<void, std::string> addArgument(CommandLine& line, std::string_view argument) {
    if (line.text->argument.empty() || !line.argument.empty()) {
        return std::unexpected(std::string(line.text->name) + " takes " +
                               (line.text->argument.empty() ? "no argument" : "one argument") + "; " +
                               std::string(line.text->name) + " --help says more");
    }
    if (argument.empty()) {
        return std::unexpected(missingArgument(*line.text));
    }
    line.argument = argument;
    return {};
}

/// Reads the option at the front of `rest` and takes it off, with its value.
std::expected<void, std::string> readOption(CommandLine& line, std::span<const std::string_view>& rest) {
    const std::size_t equals = rest.front().find('=');
    const std::string name(rest.front().substr(0, equals));
    const auto known = std::ranges::find(line.text->options, name, &OptionText::name);
    if (known == line.text->options.end()) {
        return std::unexpected(std::string(line.text->name) + " has no option " + name + "; " +
                               std::string(line.text->name) + " --help shows all");
    }
    std::string_view value = equals == std::string_view::npos ? std::string_view() : rest.front().substr(equals + 1);
    rest = rest.subspan(1);
    if (known->value.empty()) {
        if (equals != std::string_view::npos) {
            return std::unexpected(name + " takes no value");
        }
        setFlag(line, name);
        return {};
    }
    if (equals == std::string_view::npos && !rest.empty()) {
        value = rest.front();
        rest = rest.subspan(1);
    }
    if (value.empty()) {
        return std::unexpected(name + " needs a value");
    }
    setValue(line, name, value);
    return {};
}

} // namespace

std::span<const CommandText> commandTexts() {
    return allCommands;
}

std::string commandHelpText(const CommandText& command) {
    std::string text = "dorvantel-records " + std::string(command.name);
    if (!command.argument.empty()) {
        text += " " + std::string(command.argument);
    }
    std::string meaning(command.meaning);
    meaning.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(meaning.front())));
    text += " [OPTION]...\n" + meaning + ".\n\n" + std::string(command.details) + "\n\n";
    for (const OptionText& option : command.options) {
        text += helpLine(option);
    }
    return text;
}

std::expected<CommandLine, std::string> parseCommandLine(std::span<const std::string_view> arguments) {
    CommandLine line;
    const auto* const known = std::ranges::find(allCommands, arguments.front(), &CommandText::name);
    if (known == allCommands.end()) {
        return std::unexpected("there is no command " + std::string(arguments.front()) + "; --help shows all");
    }
    line.text = known;
    bool hasOptions = true;
    for (auto rest = arguments.subspan(1); !rest.empty();) {
        std::expected<void, std::string> read;
        if (hasOptions && rest.front() == "--") {
            hasOptions = false;
            rest = rest.subspan(1);
        } else if (hasOptions && rest.front().starts_with("-")) {
            read = readOption(line, rest);
        } else {
            read = addArgument(line, rest.front());
            rest = rest.subspan(1);
        }
        if (!read) {
            return std::unexpected(read.error());
        }
    }
    if (line.showHelp) {
        return line;
    }
    if (!known->argument.empty() && line.argument.empty()) {
        return std::unexpected(missingArgument(*known));
    }
    if (known->command == Command::Export && !line.to) {
        return std::unexpected("export needs --to with the folder to make");
    }
    return line;
}

} // namespace dorvantel::service
