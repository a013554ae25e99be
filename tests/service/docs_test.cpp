// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/CommandLine.h"
#include "service/Options.h"
#include "service/api/RecordsApi.h"
#include "service/api/Statement.h"
#include "service/http/RequestHead.h"

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include <gmock/gmock.h>

using namespace dorvantel::service;
using testing::HasSubstr;

namespace {

std::string documentation() {
    std::ifstream file(DORVANTEL_SOURCE_DIR "/docs/records-service.md");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// What the service answers with, by its sources: numbers where they speak of a status. A client's code speaks of those
/// of another server.
std::set<int> statusesOfTheSources() {
    const std::regex speaksOfStatus("errorAnswer\\(|status|case ", std::regex::icase);
    const std::regex number("(^|[^\\w.'])([2-5]\\d\\d)(?![\\w.'])");
    std::set<int> statuses;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(DORVANTEL_SOURCE_DIR "/service")) {
        if (entry.path().stem() == "Embedding") {
            continue;
        }
        std::ifstream file(entry.path());
        for (std::string line; std::getline(file, line);) {
            if (std::regex_search(line, speaksOfStatus)) {
                for (std::sregex_iterator match(line.begin(), line.end(), number), end; match != end; ++match) {
                    statuses.insert(std::stoi((*match)[2]));
                }
            }
        }
    }
    return statuses;
}

/// Those of the routes, at the start of a sentence, and those of the table of errors.
std::set<int> statusesOfTheDocumentation() {
    const std::string text = documentation();
    const std::regex status("\n(\\| )?([2-5]\\d\\d) (\\| |and |without )");
    std::set<int> statuses;
    for (std::sregex_iterator match(text.begin(), text.end(), status), end; match != end; ++match) {
        statuses.insert(std::stoi((*match)[2]));
    }
    return statuses;
}

} // namespace

TEST(RecordsServiceDocumentation, NamesEveryOption) {
    const std::string text = documentation();
    for (const OptionText& option : optionTexts()) {
        const std::string value = option.value.empty() ? "" : " " + std::string(option.value);
        EXPECT_THAT(text, HasSubstr("\n| `" + std::string(option.name) + value + "` | "));
    }
}

TEST(RecordsServiceDocumentation, NamesEveryCommandWithItsOptions) {
    const std::string text = documentation();
    for (const CommandText& command : commandTexts()) {
        const std::string argument = command.argument.empty() ? "" : " " + std::string(command.argument);
        const std::size_t begin = text.find("\n### `" + std::string(command.name) + argument + "`\n");
        ASSERT_NE(begin, std::string::npos) << command.name;
        const std::string section = text.substr(begin, text.find("\n##", begin + 4) - begin);
        for (const OptionText& option : command.options) {
            const std::string value = option.value.empty() ? "" : " " + std::string(option.value);
            EXPECT_THAT(section, HasSubstr("\n| `" + std::string(option.name) + value + "` | ")) << command.name;
        }
    }
}

TEST(RecordsServiceDocumentation, NamesEveryRoute) {
    const std::string text = documentation();
    for (const Route& route : routes()) {
        EXPECT_THAT(text, HasSubstr("\n### `" + std::string(route.method) + " " + std::string(route.pattern) + "`\n"));
    }
}

TEST(RecordsServiceDocumentation, NamesEveryExitCode) {
    const std::string text = documentation();
    for (int code = 0; code <= static_cast<int>(ExitCode::FileUnusable); ++code) {
        EXPECT_THAT(text, HasSubstr("\n| `" + std::to_string(code) + "` | "));
    }
}

TEST(RecordsServiceDocumentation, NamesEveryStatusThatTheServiceGivesAndNoOther) {
    const std::set<int> given = statusesOfTheSources();
    EXPECT_THAT(given,
                testing::IsSupersetOf({200, 201, 204, 400, 403, 404, 405, 408, 413, 414, 415, 422, 431, 500, 503, 507}))
        << "the sources are no longer read as they should be";
    EXPECT_THAT(statusesOfTheDocumentation(), testing::ContainerEq(given));
}

TEST(RecordsServiceDocumentation, NamesTheLimitsOfStatementsAndBodies) {
    const std::string text = documentation();
    EXPECT_THAT(text, HasSubstr("| conditions in a statement | " + std::to_string(maxPredicates) + " |"));
    EXPECT_THAT(text, HasSubstr("| numbers in a query vector | " + std::to_string(maxQueryVectorLength) + " |"));
    EXPECT_THAT(text, HasSubstr("`--body-limit`, " + std::to_string(Options().http.bodyLimit / 1024 / 1024) + " MiB"));
}

TEST(RecordsServiceDocumentation, NamesTheLimitsOfRequestsAndConnections) {
    const std::string text = documentation();
    const HttpServer::Settings settings;
    const auto seconds = [](std::chrono::milliseconds time) {
        return std::to_string(time / std::chrono::seconds(1)) + " s";
    };
    EXPECT_THAT(text, HasSubstr("| request line | " + std::to_string(maxRequestLine) + " bytes |"));
    EXPECT_THAT(text, HasSubstr("| headers | " + std::to_string(maxHeaderLines) + ", of " +
                                std::to_string(maxRequestLine) + " bytes each, and " +
                                std::to_string(maxRequestHead / 1024) + " KiB with the request line |"));
    EXPECT_THAT(text,
                HasSubstr("| bodies in memory at once, of all clients | " + std::to_string(bodiesInMemory) + " times"));
    EXPECT_THAT(text, HasSubstr("| connections served at once | " + std::to_string(settings.connections.open) + ";"));
    EXPECT_THAT(text, HasSubstr("| " + std::to_string(settings.connections.openPerClient) + "; more are closed |"));
    EXPECT_THAT(text, HasSubstr("| idle connection | " + seconds(settings.client.idle) + " |"));
    EXPECT_THAT(text, HasSubstr("| the whole head of a request | " + seconds(settings.client.patience) + " |"));
    EXPECT_THAT(text, HasSubstr("one more for each " + std::to_string(Patience::bytesPerSecond / 1024) + " KiB"));
}
