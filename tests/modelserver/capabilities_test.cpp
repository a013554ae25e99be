// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/Capabilities.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

OllamaShowResponse listing(const QStringList& capabilities) {
    OllamaShowResponse response;
    response.capabilities = capabilities;
    return response;
}

TEST(DeriveCapabilities, ToolsAndVisionTogetherGiveVisionOnly) {
    EXPECT_EQ(deriveCapabilities(listing({u"tools"_s, u"vision"_s})), (ModelCapabilities{.supportsVision = true}));
    EXPECT_EQ(deriveCapabilities(listing({u"vision"_s, u"tools"_s})), (ModelCapabilities{.supportsVision = true}));
}

TEST(DeriveCapabilities, CompletionAndToolsGiveTools) {
    EXPECT_EQ(deriveCapabilities(listing({u"completion"_s, u"tools"_s})), (ModelCapabilities{.supportsTools = true}));
}

TEST(DeriveCapabilities, EmbeddingAloneGivesEmbedding) {
    EXPECT_EQ(deriveCapabilities(listing({u"embedding"_s})), (ModelCapabilities{.supportsEmbedding = true}));
}

TEST(DeriveCapabilities, ThinkingGivesThinking) {
    EXPECT_EQ(deriveCapabilities(listing({u"thinking"_s})), (ModelCapabilities{.supportsThinking = true}));
}

TEST(DeriveCapabilities, OtherWordsSetNothing) {
    EXPECT_EQ(deriveCapabilities(listing({u"completion"_s, u"insert"_s, u"audio"_s, u""_s})), ModelCapabilities{});
}

TEST(DeriveCapabilities, WordsAreComparedExactly) {
    EXPECT_EQ(deriveCapabilities(listing({u"Tools"_s, u"VISION"_s, u" embedding"_s, u"thinkin"_s})),
              ModelCapabilities{});
}

TEST(DeriveCapabilities, WithoutAListNothingIsSupportedAndNothingLogged) {
    EXPECT_EQ(deriveCapabilities({}), ModelCapabilities{});
    EXPECT_EQ(capabilitiesLogLine({}), std::nullopt);
}

TEST(CapabilitiesLogLine, PrintsTheListAsALiteral) {
    EXPECT_EQ(capabilitiesLogLine(listing({u"completion"_s, u"tools"_s})),
              u"Capabilities from API: [\"completion\", \"tools\"]"_s);
    EXPECT_EQ(capabilitiesLogLine(listing({u"embedding"_s})), u"Capabilities from API: [\"embedding\"]"_s);
}

TEST(CapabilitiesLogLine, EmptyListIsStillPrinted) {
    EXPECT_EQ(capabilitiesLogLine(listing({})), u"Capabilities from API: []"_s);
}

TEST(CapabilitiesLogLine, StaysOneLineWhateverTheServerLists) {
    EXPECT_EQ(capabilitiesLogLine(listing({u"a\nb\r\t\"\\\x01\x85"_s})),
              u"Capabilities from API: [\"a\\nb\\r\\t\\\"\\\\\\u{1}\\u{85}\"]"_s);
}

} // namespace
} // namespace dorvantel
