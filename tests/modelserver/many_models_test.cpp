// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/modelserver/OllamaServiceFixture.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"

namespace dorvantel::test {

/// A server that lists fifty models, named 0 to 49.
struct FiftyModels : OllamaServiceTest {
    static constexpr qsizetype count = 50;
    CapturedOutput output; // what the models can do is logged

    static QByteArray tags() {
        QByteArrayList models;
        for (int i = 0; i < count; ++i) {
            models += R"({"name":")" + QByteArray::number(i) + R"("})";
        }
        return R"({"models":[)" + models.join(',') + "]}";
    }
    static int number(const ScriptedRequest& request) { return request.body.mid(9).chopped(2).toInt(); }

    /// Answers the list, a chat, and the question about a model with what `show` makes of its number.
    static ScriptedServer::Handler listing(std::function<ScriptedReply(int)> show) {
        return [show](const ScriptedRequest& request) {
            if (request.target == "/api/tags") {
                return reply(tags());
            }
            return request.target == "/api/chat" ? reply(chatBody("hola")) : show(number(request));
        };
    }
    /// So that who got this can be told by the connections that are still open, they close behind it.
    static ScriptedReply embedding() {
        return {.body = R"({"capabilities":["embedding"]})", .headers = "Connection: close\r\n"};
    }
};

TEST_F(FiftyModels, AreAskedAboutAtOnce) {
    ScriptedServer server(listing([](int) {
        ScriptedReply held = embedding();
        held.held = true;
        return held;
    }));
    settings.setOllamaURL(server.url());
    service->fetchAvailableModels();
    ASSERT_TRUE(waitUntil([&] { return server.heldCount() == count; })) << server.heldCount();
    EXPECT_TRUE(service->availableModels().isEmpty());
    while (server.release()) {
    }
    ASSERT_TRUE(waitUntil([&] { return !service->isLoadingModels(); }));
    ASSERT_EQ(service->availableModels().size(), count);
    for (const OllamaModel& model : service->availableModels()) {
        EXPECT_TRUE(model.capabilities.supportsEmbedding) << qPrintable(model.name);
    }
}

TEST_F(FiftyModels, QuestionsThatAreNeverAnsweredLeaveTheOtherModelsTheirCapabilities) {
    constexpr int silent = 12;
    ScriptedServer server(listing([](int model) { return model < silent ? way(Way::Stall) : embedding(); }));
    settings.setOllamaURL(server.url());
    service->fetchAvailableModels();
    const auto isWaitingForTheSilent = [&] {
        return server.requests().size() == count + 1 && server.openConnections() == silent;
    };
    ASSERT_TRUE(waitUntil(isWaitingForTheSilent)) << server.requests().size();
    server.hangUp();
    ASSERT_TRUE(waitUntil([&] { return !service->isLoadingModels(); }));
    ASSERT_EQ(service->availableModels().size(), count);
    for (const OllamaModel& model : service->availableModels()) {
        EXPECT_EQ(model.capabilities.supportsEmbedding, model.name.toInt() >= silent) << qPrintable(model.name);
    }
    EXPECT_EQ(service->modelError(), std::nullopt);
}

TEST_F(FiftyModels, ChatIsNotHeldUpByQuestionsThatStall) {
    ScriptedServer server(listing([](int) { return way(Way::Stall); }));
    settings.setOllamaURL(server.url());
    service->fetchAvailableModels();
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == count + 1; }));
    const ModelResult<QString> answer = chat(server.url());
    EXPECT_EQ(answer, ModelResult<QString>(u"hola"_s));
    EXPECT_TRUE(service->isLoadingModels());
}

} // namespace dorvantel::test
