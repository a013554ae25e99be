// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/CommandLine.h"

#include <gmock/gmock.h>

using namespace dorvantel::service;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

std::expected<CommandLine, std::string> parse(std::vector<std::string_view> arguments) {
    return parseCommandLine(arguments);
}

} // namespace

TEST(ParseCommandLine, EveryCommandWithItsArgument) {
    for (const CommandText& text : commandTexts()) {
        std::vector<std::string_view> arguments{text.name};
        if (!text.argument.empty()) {
            arguments.emplace_back("value");
        }
        if (text.command == Command::Export) {
            arguments.emplace_back("--to=x");
        }
        const auto line = parse(arguments);
        ASSERT_TRUE(line) << line.error();
        EXPECT_EQ(line->text->command, text.command);
        EXPECT_EQ(line->argument, text.argument.empty() ? "" : "value");
        EXPECT_EQ(line->store, std::nullopt);
        EXPECT_FALSE(line->showHelp);
    }
}

TEST(ParseCommandLine, OptionsStandAnywhereInBothForms) {
    for (const auto& line : {parse({"export", "--to", "/d", "ana@x", "--store=/a b"}),
                             parse({"export", "ana@x", "--store", "/a b", "--to=/d"})}) {
        ASSERT_TRUE(line) << line.error();
        EXPECT_EQ(line->argument, "ana@x");
        EXPECT_EQ(line->to, "/d");
        EXPECT_EQ(line->store, "/a b");
    }
    EXPECT_FALSE(parse({"backup", "f"})->isReplacing);
    EXPECT_TRUE(parse({"backup", "--replace", "f"})->isReplacing);
}

TEST(ParseCommandLine, BehindTwoDashesNothingIsAnOption) {
    EXPECT_EQ(parse({"erase", "--store=/s", "--", "--help"})->argument, "--help");
    EXPECT_EQ(parse({"erase", "--", "--"})->argument, "--");
}

TEST(ParseCommandLine, HelpNeedsNothingElse) {
    for (const CommandText& text : commandTexts()) {
        EXPECT_TRUE(parse({text.name, "--help"})->showHelp);
    }
}

TEST(ParseCommandLine, BadLinesSayWhatIsWrong) {
    EXPECT_EQ(parse({"records.sqlite"}).error(), "there is no command records.sqlite; --help shows all");
    EXPECT_EQ(parse({"backup"}).error(), "backup needs a FILE; backup --help says more");
    EXPECT_EQ(parse({"backup", ""}).error(), "backup needs a FILE; backup --help says more");
    EXPECT_EQ(parse({"erase"}).error(), "erase needs an EMAIL; erase --help says more");
    EXPECT_EQ(parse({"erase", "a", "b"}).error(), "erase takes one argument; erase --help says more");
    EXPECT_EQ(parse({"check", "x"}).error(), "check takes no argument; check --help says more");
    EXPECT_EQ(parse({"check", "--replace"}).error(), "check has no option --replace; check --help shows all");
    EXPECT_EQ(parse({"check", "--store"}).error(), "--store needs a value");
    EXPECT_EQ(parse({"check", "--store="}).error(), "--store needs a value");
    EXPECT_EQ(parse({"backup", "--replace=yes", "f"}).error(), "--replace takes no value");
    EXPECT_EQ(parse({"export", "ana@x"}).error(), "export needs --to with the folder to make");
}

TEST(CommandHelpText, ShowsArgumentAndOptions) {
    for (const CommandText& command : commandTexts()) {
        const std::string text = commandHelpText(command);
        const std::string argument = command.argument.empty() ? "" : " " + std::string(command.argument);
        EXPECT_THAT(text, StartsWith("dorvantel-records " + std::string(command.name) + argument + " [OPTION]...\n"));
        for (const OptionText& option : command.options) {
            EXPECT_THAT(text, HasSubstr(helpLine(option)));
        }
    }
}
