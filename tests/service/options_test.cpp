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

TEST(ParseOptions, AllowedNetworksAddUp) {
    const auto options = parse({"--allow", "10.0.0.0/8,fd00::/8", "--allow=192.168.1.7", "--listen", "0.0.0.0:1"});
    ASSERT_TRUE(options) << options.error();
    EXPECT_EQ(options->http.allowed, (std::vector{*parseClientNetwork("10.0.0.0/8"), *parseClientNetwork("fd00::/8"),
                                                  *parseClientNetwork("192.168.1.7/32")}));
    EXPECT_TRUE(parse({"--allow", "10.0.0.0/8"})->http.allowed.size() == 1) << "loopback may name them in advance";
}

TEST(ParseOptions, ListeningBeyondLoopbackDemandsTheNetworksOfTheClients) {
    for (const std::string host : {"0.0.0.0", "192.168.1.5", "records.example"}) {
        EXPECT_EQ(parse({"--listen", host + ":8765"}).error(),
                  "--listen " + host +
                      " is open to other machines: name the networks of the clients with --allow, for example --allow "
                      "192.168.1.0/24");
    }
    EXPECT_FALSE(parse({"--listen", "[::]:8765"}));
    for (const char* const listen : {"127.9.9.9:1", "localhost:1", "[::1]:1"}) {
        EXPECT_TRUE(parse({"--listen", listen})) << listen;
    }
    EXPECT_TRUE(parse({"--listen", "[::]:8765", "--allow", "fd00::/8"}));
    EXPECT_TRUE(parse({"--allow", "fd00::/8", "--listen", "[::]:8765"})) << "in either order";
}

TEST(ParseOptions, BadNetworkSaysWhatIsWrongWithIt) {
    const std::string takes = "--allow takes networks such as 192.168.1.0/24 or fd00::/8: ";
    EXPECT_EQ(parse({"--allow", "office"}).error(), takes + "\"office\" is no address");
    EXPECT_EQ(parse({"--allow", "10.0.0.0/8,"}).error(), takes + "\"\" is no address");
    EXPECT_EQ(parse({"--allow", "10.0.0.0/8, fd00::/8"}).error(), takes + "\" fd00::\" is no address");
    EXPECT_EQ(parse({"--allow", "10.0.0.1/8"}).error(),
              takes + "\"10.0.0.1/8\" has bits behind its prefix; the network is 10.0.0.0/8");
    EXPECT_EQ(parse({"--allow"}).error(), "--allow needs a value");
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
