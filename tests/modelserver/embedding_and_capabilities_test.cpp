// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/modelserver/OllamaServiceFixture.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeHttpSession.h"
#include "tests/support/Print.h"

namespace dorvantel::test {

using namespace Qt::StringLiterals;

// Embeddings

using GenerateEmbedding = OllamaServiceTest;

TEST_F(GenerateEmbedding, FirstVectorIsReturnedAndFurtherOnesIgnored) {
    ScriptedServer server(reply(R"({"model":"m","embeddings":[[0.5,-1,1e-05],[9]]})"));
    EXPECT_EQ(embed(server.url()), (QList<double>{0.5, -1.0, 1e-05}));
}

TEST_F(GenerateEmbedding, TextIsSentUnchangedToTheChosenModel) {
    ScriptedServer server(reply(R"({"model":"m","embeddings":[[1]]})"));
    settings.setOllamaURL(server.url());
    await(service->generateEmbedding(u"  Analista Ñ\n"_s, std::nullopt));
    await(service->generateEmbedding(u""_s, u"otro"_s));
    EXPECT_EQ(server.requests()[0].method, "POST");
    EXPECT_EQ(server.requests()[0].target, "/api/embed");
    EXPECT_EQ(server.requests()[0].headers["content-type"], "application/json");
    EXPECT_EQ(server.requests()[0].body, R"({"model":"incrustador","input":"  Analista Ñ\n"})");
    EXPECT_EQ(server.requests()[1].body, R"({"model":"otro","input":""})");
}

TEST_F(GenerateEmbedding, WithoutModelAndChosenModelFailsWithTheTextOfTheLanguageModelAndSendsNothing) {
    FakeHttpSession unused;
    OllamaService unsent(unused, settings);
    settings.setSelectedEmbeddingModel(std::nullopt);
    const auto future = unsent.generateEmbedding(u"a"_s, std::nullopt);
    ASSERT_TRUE(future.isFinished());
    EXPECT_EQ(localizedDescription(future.result().error()), u"Modelo LLM no configurado en Preferencias"_s);
    EXPECT_TRUE(unused.requests().isEmpty());
}

TEST_F(GenerateEmbedding, ChosenLanguageModelIsNoSubstitute) {
    settings.setSelectedEmbeddingModel(std::nullopt);
    EXPECT_EQ(embed(u"http://127.0.0.1:1"_s), std::unexpected(OllamaError::modelNotConfigured()));
}

TEST_F(GenerateEmbedding, AddressThatIsNoURLFailsAtOnce) {
    EXPECT_EQ(embed(u"http://no es una url"_s), std::unexpected(OllamaError::invalidURL()));
}

TEST_F(GenerateEmbedding, NoVectorsFail) {
    ScriptedServer server(reply(R"({"model":"m","embeddings":[]})"));
    EXPECT_EQ(embed(server.url()), std::unexpected(OllamaError::emptyResponse()));
}

TEST_F(GenerateEmbedding, EmptyFirstVectorIsReturned) {
    ScriptedServer server(reply(R"({"model":"m","embeddings":[[],[1]]})"));
    EXPECT_EQ(embed(server.url()), QList<double>());
}

TEST_F(GenerateEmbedding, StatusOtherThan200IsANetworkError) {
    ScriptedServer server(reply(R"({"error":"this model does not support embeddings"})", 501));
    const auto result = embed(server.url());
    ASSERT_FALSE(result);
    EXPECT_EQ(localizedDescription(result.error()), u"Error de red: HTTP 501"_s);
}

TEST_F(GenerateEmbedding, AddressWithATrailingSlashGivesADoubleSlash) {
    ScriptedServer server(reply(R"({"model":"m","embeddings":[[1]]})"));
    EXPECT_TRUE(embed(server.url() + u'/'));
    EXPECT_EQ(server.requests()[0].target, "//api/embed");
}

TEST_F(GenerateEmbedding, TransportFailureIsANetworkError) {
    const auto textAt = [this](const QString& url) {
        const auto result = embed(url);
        return result ? QString() : localizedDescription(result.error());
    };
    EXPECT_EQ(textAt(u"http://127.0.0.1:1"_s), u"Error de red: Connection refused"_s);
    ScriptedServer cut(way(Way::Cut));
    EXPECT_EQ(textAt(cut.url()), u"Error de red: Connection closed"_s);
    EXPECT_EQ(cut.requests().size(), 1);
    makeService(std::chrono::milliseconds(50));
    ScriptedServer stalling(way(Way::Stall));
    EXPECT_EQ(textAt(stalling.url()), u"Error de red: Se ha agotado el tiempo de espera."_s);
}

TEST_F(GenerateEmbedding, BodyThatDoesNotDecodeIsADecodingError) {
    ScriptedServer html(reply("<html></html>"));
    const auto result = embed(html.url());
    ASSERT_FALSE(result);
    EXPECT_EQ(localizedDescription(result.error()), u"Error decodificando respuesta: "_s + formatText);
}

TEST_F(GenerateEmbedding, NullVectorIsADecodingError) {
    ScriptedServer server(reply(R"({"model":"m","embeddings":[null]})"));
    const auto result = embed(server.url());
    ASSERT_FALSE(result);
    EXPECT_EQ(localizedDescription(result.error()), u"Error decodificando respuesta: "_s + missingText);
}

TEST_F(GenerateEmbedding, CancelledFutureAbortsTheConnection) {
    ScriptedServer server(way(Way::Stall));
    settings.setOllamaURL(server.url());
    QFuture future = service->generateEmbedding(u"a"_s, std::nullopt);
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 1; }));
    future.cancel();
    EXPECT_TRUE(waitUntil([&] { return server.openConnections() == 0 && future.isFinished(); }));
    EXPECT_EQ(future.resultCount(), 0);
}

// Capabilities of one model

using FetchCapabilities = OllamaServiceTest;

TEST_F(FetchCapabilities, AsksAboutTheModelAndLogsWhatItLists) {
    ScriptedServer server(reply(R"({"capabilities":["completion","tools"]})"));
    settings.setOllamaURL(server.url());
    CapturedOutput output;
    EXPECT_EQ(await(service->fetchCapabilities(u"qwen3:8b"_s)), (ModelCapabilities{.supportsTools = true}));
    EXPECT_EQ(output.text(), u"Capabilities from API: [\"completion\", \"tools\"]\n"_s);
    EXPECT_EQ(server.requests()[0].method, "POST");
    EXPECT_EQ(server.requests()[0].target, "/api/show");
    EXPECT_EQ(server.requests()[0].headers["content-type"], "application/json");
    EXPECT_EQ(server.requests()[0].body, R"({"name":"qwen3:8b"})");
}

TEST_F(FetchCapabilities, AnswerWithoutAListIsPresentAndAllFalseAndNotLogged) {
    ScriptedServer server(reply(R"({"modelfile":"FROM x"})"));
    settings.setOllamaURL(server.url());
    CapturedOutput output;
    EXPECT_EQ(await(service->fetchCapabilities(u"a"_s)), ModelCapabilities{});
    EXPECT_EQ(output.text(), QString());
}

TEST_F(FetchCapabilities, StatusIsNotLookedAt) {
    ScriptedServer server(reply(R"({"capabilities":["embedding"]})", 500));
    settings.setOllamaURL(server.url());
    EXPECT_EQ(await(service->fetchCapabilities(u"a"_s)), (ModelCapabilities{.supportsEmbedding = true}));
}

TEST_F(FetchCapabilities, EveryFailureIsSilentAndAbsent) {
    makeService(std::chrono::milliseconds(50));
    CapturedOutput output;
    const auto outcomeAt = [this](const QString& url) {
        settings.setOllamaURL(url);
        return await(service->fetchCapabilities(u"a"_s));
    };
    EXPECT_EQ(outcomeAt(u"http://no es una url"_s), std::nullopt);
    EXPECT_EQ(outcomeAt(u"http://127.0.0.1:1"_s), std::nullopt);
    for (const ScriptedReply& answer :
         {reply(""), reply("<html>"), reply("[]"), reply(R"({"capabilities":"x"})"),
          reply(R"({"capabilities":["tools"],"model_info":1})"), way(Way::Cut), way(Way::CutInBody), way(Way::Stall)}) {
        ScriptedServer server(answer);
        EXPECT_EQ(outcomeAt(server.url()), std::nullopt) << answer.body.constData();
    }
    EXPECT_EQ(output.text(), QString());
    EXPECT_EQ(service->modelError(), std::nullopt);
}

} // namespace dorvantel::test
