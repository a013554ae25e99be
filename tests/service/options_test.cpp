// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/Options.h"

#include <gmock/gmock.h>

using namespace dorvantel::service;
using testing::HasSubstr;

namespace {

std::expected<Options, std::string> parse(std::vector<std::string_view> arguments) {
    return parseOptions(arguments);
}

} // namespace

TEST(ParseOptions, Defaults) {
    const auto options = parse({});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->http.host, "127.0.0.1");
    EXPECT_EQ(options->http.port, 8765);
    EXPECT_EQ(options->http.bodyLimit, 64U * 1024 * 1024);
    EXPECT_EQ(options->store, std::nullopt);
    EXPECT_EQ(options->modelServer.host, "localhost");
    EXPECT_EQ(options->modelServer.port, 11434);
    EXPECT_EQ(options->embeddingModel, "");
    EXPECT_FALSE(options->showHelp || options->showVersion);
}

TEST(ParseOptions, EveryOptionInBothForms) {
    for (const auto& options : {parse({"--listen", "[::1]:0", "--store", "/a b", "--model-server", "http://m:1/p",
                                       "--embedding-model", "e=f", "--body-limit", "2"}),
                                parse({"--listen=[::1]:0", "--store=/a b", "--model-server=http://m:1/p",
                                       "--embedding-model=e=f", "--body-limit=2"})}) {
        ASSERT_TRUE(options) << options.error();
        EXPECT_EQ(options->http.host, "::1");
        EXPECT_EQ(options->http.port, 0);
        EXPECT_EQ(options->store, "/a b");
        EXPECT_EQ(options->modelServer.host, "m");
        EXPECT_EQ(options->modelServer.prefix, "/p");
        EXPECT_EQ(options->embeddingModel, "e=f");
        EXPECT_EQ(options->http.bodyLimit, 2U * 1024 * 1024);
    }
}

TEST(ParseOptions, HelpAndVersion) {
    EXPECT_TRUE(parse({"--help"})->showHelp);
    EXPECT_TRUE(parse({"--version"})->showVersion);
}

TEST(ParseOptions, BadArgumentsSayWhatIsWrong) {
    EXPECT_EQ(parse({"--nothing"}).error(), "there is no option --nothing; --help shows all");
    EXPECT_EQ(parse({"records.sqlite"}).error(), "there is no option records.sqlite; --help shows all");
    EXPECT_EQ(parse({"--store", "x", "check"}).error(), "the command check must come before all options");
    EXPECT_EQ(parse({"--store"}).error(), "--store needs a value");
    EXPECT_EQ(parse({"--store="}).error(), "--store needs a value");
    EXPECT_EQ(parse({"--help=yes"}).error(), "--help takes no value");
    for (const char* const value : {"8765", "localhost", "x:y", "127.0.0.1:70000", "::1:80"}) {
        EXPECT_EQ(parse({"--listen", value}).error(), "--listen takes HOST:PORT, for example 127.0.0.1:8765");
    }
    for (const char* const value : {"0", "1025", "1.5", "-1", "x", "64M"}) {
        EXPECT_EQ(parse({"--body-limit", value}).error(), "--body-limit takes a whole number from 1 to 1024");
    }
    EXPECT_EQ(parse({"--model-server", "ftp://x"}).error(),
              "--model-server takes a URL such as http://localhost:11434");
}

TEST(HelpText, ShowsEveryOption) {
    for (const OptionText& option : optionTexts()) {
        EXPECT_THAT(helpText(), HasSubstr(std::string(option.name) + (option.value.empty() ? "" : " ") +
                                          std::string(option.value)));
        EXPECT_THAT(helpText(), HasSubstr(std::string(option.meaning)));
    }
}
