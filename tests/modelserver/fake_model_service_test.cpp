// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/support/FakeModelService.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::FakeModelService;

TEST(FakeModelService, QueuedAnswersAreTakenInOrderAndCallsRecorded) {
    FakeModelService service;
    service.queueChat(u"uno"_s);
    service.queueChat(std::unexpected(OllamaError::emptyResponse()));
    const QFuture first = service.chat({{u"user"_s, u"hola"_s}}, std::nullopt, 0.3);
    const QFuture second = service.chat({}, u"llama3.2:3b"_s, std::nullopt);

    ASSERT_TRUE(first.isFinished());
    EXPECT_EQ(first.result(), u"uno"_s);
    EXPECT_EQ(second.result(), std::unexpected(OllamaError::emptyResponse()));
    ASSERT_EQ(service.chatCalls().size(), 2);
    EXPECT_EQ(service.chatCalls()[0].messages, (QList<OllamaChatMessage>{{u"user"_s, u"hola"_s}}));
    EXPECT_EQ(service.chatCalls()[0].temperature, 0.3);
    EXPECT_EQ(service.chatCalls()[1].model, u"llama3.2:3b"_s);
}

TEST(FakeModelService, CallWithoutQueuedAnswerStaysOpenUntilTheTestAnswersIt) {
    FakeModelService service;
    const QFuture future = service.generateEmbedding(u"contable"_s, std::nullopt);
    EXPECT_FALSE(future.isFinished());
    service.answerEmbedding(0, QList<double>{0.5, -0.5});
    EXPECT_EQ(future.result(), (QList<double>{0.5, -0.5}));
}

TEST(FakeModelService, CancelledCallIsSeenAndKeepsNoAnswer) {
    FakeModelService service;
    QFuture future = service.chat({}, std::nullopt, std::nullopt);
    EXPECT_FALSE(service.isChatCancelled(0));
    future.cancel();
    EXPECT_TRUE(service.isChatCancelled(0));
    service.answerChat(0, u"tarde"_s);
    EXPECT_TRUE(future.isFinished());
    EXPECT_EQ(future.resultCount(), 0);
}

} // namespace
} // namespace dorvantel
