// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/ModelCandidates.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

OllamaModel model(const QString& name, const ModelCapabilities& capabilities) {
    return {name, {}, {}, {}, capabilities};
}

QStringList names(const QList<OllamaModel>& models) {
    QStringList result;
    for (const OllamaModel& each : models) {
        result += each.name;
    }
    return result;
}

TEST(ModelCandidates, VisionModelIsOfferedNowhere) {
    const QList<OllamaModel> models{model(u"gemma"_s, {.supportsVision = true})};
    EXPECT_EQ(names(languageModelCandidates(models)), QStringList());
    EXPECT_EQ(names(embeddingCandidates(models)), QStringList());
}

TEST(ModelCandidates, ToolsAndThinkingMakeNoDifference) {
    const QList<OllamaModel> models{model(u"a"_s, {.supportsTools = true}), model(u"b"_s, {.supportsThinking = true}),
                                    model(u"c"_s, {.supportsTools = true, .supportsEmbedding = true})};
    EXPECT_EQ(names(languageModelCandidates(models)), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(names(embeddingCandidates(models)), QStringList{u"c"_s});
}

TEST(ModelCandidates, EmbeddingModelIsOfferedUnderEmbeddingsOnly) {
    const QList<OllamaModel> models{model(u"nomic"_s, {.supportsEmbedding = true})};
    EXPECT_EQ(names(embeddingCandidates(models)), QStringList{u"nomic"_s});
    EXPECT_EQ(names(languageModelCandidates(models)), QStringList());
}

TEST(ModelCandidates, ModelOfWhichNothingIsKnownCountsAsALanguageModel) {
    const QList<OllamaModel> models{model(u"importado"_s, {})};
    EXPECT_EQ(names(languageModelCandidates(models)), QStringList{u"importado"_s});
    EXPECT_EQ(names(embeddingCandidates(models)), QStringList());
}

TEST(ModelCandidates, OrderOfTheListIsKept) {
    const QList<OllamaModel> models{model(u"z"_s, {}), model(u"e2"_s, {.supportsEmbedding = true}), model(u"a"_s, {}),
                                    model(u"e1"_s, {.supportsEmbedding = true})};
    EXPECT_EQ(names(languageModelCandidates(models)), (QStringList{u"z"_s, u"a"_s}));
    EXPECT_EQ(names(embeddingCandidates(models)), (QStringList{u"e2"_s, u"e1"_s}));
}

} // namespace
} // namespace dorvantel
