// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/CommandLine.h"
#include "service/Options.h"
#include "service/RecordsApi.h"
#include "service/Statement.h"

#include <fstream>
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

TEST(RecordsServiceDocumentation, NamesEveryStatusOfTheStore) {
    const std::string text = documentation();
    for (const auto kind :
         {StoreError::Kind::Busy, StoreError::Kind::Full, StoreError::Kind::VectorLength, StoreError::Kind::Failed}) {
        EXPECT_THAT(text, HasSubstr("\n| " + std::to_string(errorAnswer({kind, ""}).status) + " | "));
    }
}

TEST(RecordsServiceDocumentation, NamesTheLimitsOfStatementsAndBodies) {
    const std::string text = documentation();
    EXPECT_THAT(text, HasSubstr("| conditions in a statement | " + std::to_string(maxPredicates) + " |"));
    EXPECT_THAT(text, HasSubstr("| numbers in a query vector | " + std::to_string(maxQueryVectorLength) + " |"));
    EXPECT_THAT(text, HasSubstr("`--body-limit`, " + std::to_string(Options().http.bodyLimit / 1024 / 1024) + " MiB"));
}
