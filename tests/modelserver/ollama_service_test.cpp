// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/OllamaService.h"

#include "modelserver/AppSettings.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Wait.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>

#include <limits>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::CapturedOutput;
using test::ScriptedReply;
using test::ScriptedRequest;
using test::ScriptedServer;
using test::waitUntil;
using Way = ScriptedReply::Way;

const QString formatText = u"No se han podido leer los datos porque no tienen el formato correcto."_s;
const QString missingText = u"No se han podido leer los datos porque faltan."_s;

ScriptedReply reply(const QByteArray& body, int status = 200) {
    return {.status = status, .body = body};
}

ScriptedReply way(Way way) {
    return {.body = R"({"model":"m","message":{"role":"assistant","content":"hola"},"done":true})", .way = way};
}

QByteArray chatBody(const QByteArray& content) {
    return R"({"model":"m","message":{"role":"assistant","content":")" + content + R"("},"done":true})";
}

/// A service with both models chosen, and what tests of its three kinds of call share.
struct OllamaServiceTest : testing::Test {
    QTemporaryDir folder;
    AppSettings settings{std::make_unique<QSettings>(folder.filePath(u"Dorvantel.conf"_s), QSettings::IniFormat)};
    NetworkHttpSession session;
    std::unique_ptr<OllamaService> service;

    OllamaServiceTest() {
        settings.setSelectedLLMModel(u"elegido"_s);
        settings.setSelectedEmbeddingModel(u"incrustador"_s);
        makeService();
    }

    void makeService(std::chrono::milliseconds timeout = std::chrono::seconds(60)) {
        service = std::make_unique<OllamaService>(session, settings, timeout);
    }

    template <typename Result>
    static Result await(const QFuture<Result>& future) {
        EXPECT_TRUE(waitUntil([&] { return future.isFinished(); }));
        EXPECT_EQ(future.resultCount(), 1);
        return future.result();
    }

    ModelResult<QString> chat(const QString& url) {
        settings.setOllamaURL(url);
        return await(service->chat({{u"user"_s, u"hola"_s}}, std::nullopt, 0.3));
    }

    ModelResult<QList<double>> embed(const QString& url) {
        settings.setOllamaURL(url);
        return await(service->generateEmbedding(u"contable"_s, std::nullopt));
    }

    /// What the user reads when a chat ends without a reply.
    QString chatFailure(const QString& url) {
        const ModelResult<QString> result = chat(url);
        return result ? u"no failure: "_s + *result : localizedDescription(result.error());
    }

    void load(const QString& url) {
        settings.setOllamaURL(url);
        service->fetchAvailableModels();
        EXPECT_TRUE(service->isLoadingModels());
        EXPECT_TRUE(waitUntil([this] { return !service->isLoadingModels(); }));
    }

    QStringList modelNames() const {
        QStringList names;
        for (const OllamaModel& model : service->availableModels()) {
            names += model.name;
        }
        return names;
    }
};

// Chat

using Chat = OllamaServiceTest;

TEST_F(Chat, ReplyIsReturnedAsItCame) {
    ScriptedServer server(reply(chatBody(R"(  hola\n)")));
    EXPECT_EQ(chat(server.url()), u"  hola\n"_s);
}

TEST_F(Chat, RequestIsAPostOfTheWholeRecord) {
    ScriptedServer server(reply(chatBody("a")));
    settings.setOllamaURL(server.url());
    await(service->chat({{u"system"_s, u"eres"_s}, {u"user"_s, u"hola"_s}}, u"otro:7b"_s, 0.7));
    ASSERT_EQ(server.requests().size(), 1);
    const ScriptedRequest& request = server.requests()[0];
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/api/chat");
    EXPECT_EQ(request.headers["content-type"], "application/json");
    EXPECT_EQ(request.body, R"({"model":"otro:7b","messages":[{"role":"system","content":"eres"},)"
                            R"({"role":"user","content":"hola"}],"stream":false,"options":{"temperature":0.7}})");
}

TEST_F(Chat, WithoutModelAndTemperatureTheChosenModelAndEmptyOptionsAreSent) {
    ScriptedServer server(reply(chatBody("a")));
    settings.setOllamaURL(server.url());
    await(service->chat({}, std::nullopt, std::nullopt));
    EXPECT_EQ(server.requests()[0].body, R"({"model":"elegido","messages":[],"stream":false,"options":{}})");
}

TEST_F(Chat, WithoutModelAndChosenModelFailsAtOnceAndSendsNothing) {
    ScriptedServer server(reply(chatBody("a")));
    settings.setOllamaURL(server.url());
    settings.setSelectedLLMModel(std::nullopt);
    const auto future = service->chat({{u"user"_s, u"hola"_s}}, std::nullopt, 0.3);
    ASSERT_TRUE(future.isFinished());
    EXPECT_EQ(localizedDescription(future.result().error()), u"Modelo LLM no configurado en Preferencias"_s);
    // A request that was sent would have arrived before this one.
    await(service->chat({}, u"otro"_s, std::nullopt));
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(Chat, MissingModelIsFoundBeforeTheAddressThatIsNoURL) {
    settings.setSelectedLLMModel(std::nullopt);
    EXPECT_EQ(chat(u"no es una url"_s), std::unexpected(OllamaError::modelNotConfigured()));
}

TEST_F(Chat, AddressThatIsNoURLFailsAtOnce) {
    for (const QString& url : {u"http://no es una url"_s, u"http://localhost:puerto"_s, u"http://[::1"_s}) {
        EXPECT_EQ(chatFailure(url), u"URL de Ollama inválida"_s);
    }
}

TEST_F(Chat, AddressThatIsNoURLIsFoundBeforeTheTemperatureThatCannotBeSent) {
    settings.setOllamaURL(u"http://no es una url"_s);
    EXPECT_EQ(await(service->chat({}, std::nullopt, std::numeric_limits<double>::infinity())),
              std::unexpected(OllamaError::invalidURL()));
}

TEST_F(Chat, TemperatureThatCannotBeSentIsANetworkError) {
    const auto future = service->chat({}, std::nullopt, std::numeric_limits<double>::quiet_NaN());
    ASSERT_TRUE(future.isFinished());
    EXPECT_EQ(localizedDescription(future.result().error()),
              u"Error de red: No se han podido escribir los datos porque no tienen el formato correcto."_s);
}

TEST_F(Chat, EmptyAddressFailsWithATransportError) {
    EXPECT_EQ(chatFailure(u""_s), u"Error de red: Protocol \"\" is unknown"_s);
}

TEST_F(Chat, AddressWithATrailingSlashGivesADoubleSlash) {
    ScriptedServer server(reply(chatBody("a")));
    EXPECT_TRUE(chat(server.url() + u'/'));
    EXPECT_EQ(server.requests()[0].target, "//api/chat");
}

TEST_F(Chat, SettingsAreReadAtEachCall) {
    ScriptedServer first(reply(chatBody("uno")));
    ScriptedServer second(reply(chatBody("dos")));
    EXPECT_EQ(chat(first.url()), u"uno"_s);
    settings.setSelectedLLMModel(u"nuevo"_s);
    EXPECT_EQ(chat(second.url()), u"dos"_s);
    EXPECT_TRUE(second.requests()[0].body.startsWith(R"({"model":"nuevo")"));
}

TEST_F(Chat, EmptyReplyFails) {
    ScriptedServer server(reply(chatBody("")));
    EXPECT_EQ(chatFailure(server.url()), u"Respuesta vacía del modelo"_s);
}

TEST_F(Chat, ReplyOfOneBlankIsReturned) {
    ScriptedServer server(reply(chatBody(" ")));
    EXPECT_EQ(chat(server.url()), u" "_s);
}

TEST_F(Chat, UnfinishedReplyIsReturned) {
    ScriptedServer server(reply(R"({"model":"m","message":{"role":"assistant","content":"a"},"done":false})"));
    EXPECT_EQ(chat(server.url()), u"a"_s);
}

TEST_F(Chat, StatusOtherThan200IsANetworkErrorWhateverTheBody) {
    const QByteArrayList bodies{R"({"error":"llama runner process has terminated"})", "404 page not found",
                                "<html><body>Bad Gateway</body></html>", "", chatBody("hola")};
    for (const int status : {201, 204, 400, 401, 403, 404, 405, 500, 502, 503}) {
        for (const QByteArray& body : bodies) {
            ScriptedServer server(reply(body, status));
            const OllamaError expected =
                OllamaError::networkError({u"OllamaService"_s, status, u"HTTP "_s + QString::number(status)});
            EXPECT_EQ(chat(server.url()), std::unexpected(expected)) << status << body.constData();
        }
    }
}

TEST_F(Chat, Status500ReadsAsNetworkError) {
    ScriptedServer server(reply(R"({"error":"out of memory"})", 500));
    EXPECT_EQ(chatFailure(server.url()), u"Error de red: HTTP 500"_s);
}

TEST_F(Chat, BodyThatDoesNotDecodeIsADecodingError) {
    ScriptedServer empty(reply(""));
    EXPECT_EQ(chatFailure(empty.url()), u"Error decodificando respuesta: "_s + formatText);
    ScriptedServer html(reply("<html></html>"));
    EXPECT_EQ(chatFailure(html.url()), u"Error decodificando respuesta: "_s + formatText);
    ScriptedServer incomplete(reply(R"({"model":"m","done":true})"));
    EXPECT_EQ(chatFailure(incomplete.url()), u"Error decodificando respuesta: "_s + missingText);
    ScriptedServer null(reply(R"({"model":"m","done":true,"message":null})"));
    EXPECT_EQ(chatFailure(null.url()), u"Error decodificando respuesta: "_s + missingText);
}

TEST_F(Chat, RefusedConnectionIsANetworkError) {
    QString url;
    {
        ScriptedServer server(reply(""));
        url = server.url();
    }
    EXPECT_EQ(chatFailure(url), u"Error de red: Connection refused"_s);
}

TEST_F(Chat, ConnectionThatIsCutIsANetworkError) {
    ScriptedServer cut(way(Way::Cut));
    EXPECT_EQ(chatFailure(cut.url()), u"Error de red: Connection closed"_s);
    ScriptedServer cutInBody(way(Way::CutInBody));
    EXPECT_EQ(chatFailure(cutInBody.url()), u"Error de red: Connection closed"_s);
}

TEST_F(Chat, AnswerThatIsNotHttpIsANetworkErrorOrADecodingError) {
    ScriptedServer server({.body = "SSH-2.0-OpenSSH_9.2p1\r\n", .way = Way::NotHttp});
    const ModelResult<QString> result = chat(server.url());
    ASSERT_FALSE(result);
    EXPECT_NE(result.error().which, OllamaError::Case::emptyResponse);
}

TEST_F(Chat, StallingServerEndsInATimeOut) {
    makeService(std::chrono::milliseconds(50));
    ScriptedServer server(way(Way::Stall));
    EXPECT_EQ(chatFailure(server.url()), u"Error de red: Se ha agotado el tiempo de espera."_s);
    EXPECT_TRUE(waitUntil([&] { return server.openConnections() == 0; }));
}

TEST_F(Chat, CancelledFutureAbortsTheConnectionAndHasNoResult) {
    ScriptedServer server(way(Way::Stall));
    settings.setOllamaURL(server.url());
    QFuture future = service->chat({{u"user"_s, u"hola"_s}}, std::nullopt, 0.3);
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 1; }));
    EXPECT_EQ(server.openConnections(), 1);
    future.cancel();
    EXPECT_TRUE(waitUntil([&] { return server.openConnections() == 0 && future.isFinished(); }));
    EXPECT_EQ(future.resultCount(), 0);
}

TEST_F(Chat, FutureCancelledBeforeAnythingWasSentHasNoResult) {
    ScriptedServer server(reply(chatBody("a")));
    settings.setOllamaURL(server.url());
    QFuture future = service->chat({}, std::nullopt, std::nullopt);
    future.cancel();
    EXPECT_TRUE(waitUntil([&] { return future.isFinished(); }));
    EXPECT_EQ(future.resultCount(), 0);
    EXPECT_EQ(chat(server.url()), u"a"_s);
}

TEST_F(Chat, CancellingOneCallLeavesTheOthersAlone) {
    ScriptedServer server([](const ScriptedRequest&) { return ScriptedReply{.body = chatBody("a"), .held = true}; });
    settings.setOllamaURL(server.url());
    QFuture first = service->chat({{u"user"_s, u"1"_s}}, std::nullopt, std::nullopt);
    const QFuture second = service->chat({{u"user"_s, u"2"_s}}, std::nullopt, std::nullopt);
    ASSERT_TRUE(waitUntil([&] { return server.heldCount() == 2; }));
    first.cancel();
    ASSERT_TRUE(waitUntil([&] { return server.heldCount() == 1; }));
    server.release();
    EXPECT_EQ(await(second), u"a"_s);
}

TEST_F(Chat, ServiceThatGoesFirstCancelsItsCalls) {
    ScriptedServer server(way(Way::Stall));
    settings.setOllamaURL(server.url());
    const QFuture chatting = service->chat({}, std::nullopt, std::nullopt);
    const QFuture embedding = service->generateEmbedding(u"a"_s, std::nullopt);
    service->fetchAvailableModels();
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 3; }));
    service.reset();
    EXPECT_TRUE(chatting.isFinished());
    EXPECT_TRUE(chatting.isCanceled());
    EXPECT_TRUE(embedding.isFinished());
    EXPECT_TRUE(embedding.isCanceled());
    EXPECT_TRUE(waitUntil([&] { return server.openConnections() == 0; }));
}

TEST_F(Chat, ServiceMayGoWhileALargeAnswerIsRead) {
    ScriptedServer server(reply(chatBody(QByteArray(8'000'000, 'a'))));
    settings.setOllamaURL(server.url());
    QFuture future = service->chat({}, std::nullopt, std::nullopt);
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 1; }));
    service.reset();
    EXPECT_TRUE(future.isFinished());
    EXPECT_EQ(future.resultCount(), 0);
}

TEST_F(Chat, WhoeverWaitsMayDestroyTheService) {
    ScriptedServer server(reply(chatBody("a")));
    settings.setOllamaURL(server.url());
    bool received = false;
    const QFuture continued = service->chat({}, std::nullopt, std::nullopt).then([&](const ModelResult<QString>&) {
        service.reset();
        received = true;
    });
    EXPECT_TRUE(waitUntil([&] { return received && continued.isFinished(); }));
}

TEST_F(Chat, LargeReplyArrivesWhole) {
    const QByteArray content = QByteArray("ñ ").repeated(100'000);
    ScriptedServer server(reply(chatBody(content)));
    EXPECT_EQ(chat(server.url()), QString::fromUtf8(content));
}

TEST_F(Chat, CallsAndALoadRunSideBySide) {
    ScriptedServer server([](const ScriptedRequest& request) {
        if (request.target == "/api/tags") {
            return reply(R"({"models":[]})");
        }
        return ScriptedReply{.body = chatBody(request.body.contains("primero") ? "1" : "2"), .held = true};
    });
    settings.setOllamaURL(server.url());
    const QFuture first = service->chat({{u"user"_s, u"primero"_s}}, std::nullopt, std::nullopt);
    const QFuture second = service->chat({{u"user"_s, u"segundo"_s}}, std::nullopt, std::nullopt);
    ASSERT_TRUE(waitUntil([&] { return server.heldCount() == 2; }));
    load(server.url());
    EXPECT_FALSE(first.isFinished() || second.isFinished());
    server.release();
    server.release();
    EXPECT_EQ(await(first), u"1"_s);
    EXPECT_EQ(await(second), u"2"_s);
    EXPECT_EQ(service->modelError(), std::nullopt);
}

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

TEST_F(GenerateEmbedding, WithoutModelAndChosenModelFailsWithTheTextOfTheLanguageModel) {
    settings.setSelectedEmbeddingModel(std::nullopt);
    const auto future = service->generateEmbedding(u"a"_s, std::nullopt);
    ASSERT_TRUE(future.isFinished());
    EXPECT_EQ(localizedDescription(future.result().error()), u"Modelo LLM no configurado en Preferencias"_s);
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

// The list of models

struct FetchAvailableModels : OllamaServiceTest {
    QByteArray tags = R"({"models":[{"name":"a"},{"name":"b"},{"name":"c"}]})";
    ScriptedReply tagsReply = reply(tags);

    /// Answers the list with `tagsReply` and the question about model X with what `show` makes of X.
    ScriptedServer::Handler listing(std::function<ScriptedReply(const QByteArray&)> show) {
        return [this, show](const ScriptedRequest& request) {
            if (request.target.endsWith("/api/tags")) {
                return tagsReply;
            }
            return show(request.body.mid(9).chopped(2));
        };
    }
};

TEST_F(FetchAvailableModels, NothingIsKnownBeforeTheFirstLoad) {
    EXPECT_TRUE(service->availableModels().isEmpty());
    EXPECT_FALSE(service->isLoadingModels());
    EXPECT_EQ(service->modelError(), std::nullopt);
}

TEST_F(FetchAvailableModels, ListIsAPlainGetAndEachModelOneQuestion) {
    ScriptedServer server(listing([](const QByteArray&) { return reply(R"({"capabilities":["tools"]})"); }));
    load(server.url());
    ASSERT_EQ(server.requests().size(), 4);
    EXPECT_EQ(server.requests()[0].method, "GET");
    EXPECT_EQ(server.requests()[0].target, "/api/tags");
    EXPECT_TRUE(server.requests()[0].body.isEmpty());
    EXPECT_FALSE(server.requests()[0].headers.contains("content-type"));
    QStringList names = modelNames();
    names.sort();
    EXPECT_EQ(names, (QStringList{u"a"_s, u"b"_s, u"c"_s}));
    for (const OllamaModel& model : service->availableModels()) {
        EXPECT_EQ(model.capabilities, (ModelCapabilities{.supportsTools = true}));
    }
}

TEST_F(FetchAvailableModels, AddressWithATrailingSlashGivesADoubleSlash) {
    ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
    load(server.url() + u'/');
    EXPECT_EQ(server.requests()[0].target, "//api/tags");
    EXPECT_EQ(server.requests()[1].target, "//api/show");
    EXPECT_EQ(service->availableModels().size(), 3);
}

TEST_F(FetchAvailableModels, AllModelsAreAskedAboutAtOnce) {
    ScriptedServer server(listing([](const QByteArray&) { return ScriptedReply{.body = "{}", .held = true}; }));
    settings.setOllamaURL(server.url());
    service->fetchAvailableModels();
    ASSERT_TRUE(waitUntil([&] { return server.heldCount() == 3; }));
    EXPECT_TRUE(service->isLoadingModels());
    EXPECT_TRUE(service->availableModels().isEmpty());
    while (server.release()) {
    }
    ASSERT_TRUE(waitUntil([&] { return !service->isLoadingModels(); }));
    EXPECT_EQ(service->availableModels().size(), 3);
}

TEST_F(FetchAvailableModels, QuestionThatFailsLeavesItsModelWithoutCapabilities) {
    for (const ScriptedReply& failure : {reply("", 500), reply("model not found", 404), way(Way::Cut)}) {
        ScriptedServer server(listing([&](const QByteArray& name) {
            return name == "b" ? failure : reply(R"({"capabilities":["embedding"]})");
        }));
        load(server.url());
        ASSERT_EQ(service->availableModels().size(), 3);
        for (const OllamaModel& model : service->availableModels()) {
            EXPECT_EQ(model.capabilities.supportsEmbedding, model.name != u"b") << qPrintable(model.name);
        }
        EXPECT_EQ(service->modelError(), std::nullopt);
    }
}

TEST_F(FetchAvailableModels, EmptyListIsASuccess) {
    tagsReply = reply(R"({"models":[]})");
    ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
    load(server.url());
    EXPECT_TRUE(service->availableModels().isEmpty());
    EXPECT_EQ(service->modelError(), std::nullopt);
}

TEST_F(FetchAvailableModels, StatusIsNotLookedAt) {
    tagsReply = reply(tags, 503);
    ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
    load(server.url());
    EXPECT_EQ(service->availableModels().size(), 3);
    EXPECT_EQ(service->modelError(), std::nullopt);
}

TEST_F(FetchAvailableModels, ErrorPageIsADecodingFailure) {
    for (const ScriptedReply& page : {reply("<html></html>", 502), reply("404 page not found", 404), reply("", 403)}) {
        tagsReply = page;
        ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
        load(server.url());
        EXPECT_EQ(service->modelError(), u"Failed to fetch models: "_s + formatText);
    }
    tagsReply = reply(R"({"error":"unauthorized"})", 401);
    ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
    load(server.url());
    EXPECT_EQ(service->modelError(), u"Failed to fetch models: "_s + missingText);
}

TEST_F(FetchAvailableModels, TransportFailureIsToldWithItsDescription) {
    makeService(std::chrono::milliseconds(50));
    load(u"http://127.0.0.1:1"_s);
    EXPECT_EQ(service->modelError(), u"Failed to fetch models: Connection refused"_s);
    ScriptedServer cut(way(Way::Cut));
    load(cut.url());
    EXPECT_EQ(service->modelError(), u"Failed to fetch models: Connection closed"_s);
    ScriptedServer stalling(way(Way::Stall));
    load(stalling.url());
    EXPECT_EQ(service->modelError(), u"Failed to fetch models: Se ha agotado el tiempo de espera."_s);
}

TEST_F(FetchAvailableModels, AddressThatIsNoURLFailsAtOnce) {
    settings.setOllamaURL(u"http://no es una url"_s);
    service->fetchAvailableModels();
    EXPECT_EQ(service->modelError(), u"Invalid URL"_s);
    EXPECT_FALSE(service->isLoadingModels());
}

TEST_F(FetchAvailableModels, FailureKeepsTheListAndSuccessClearsTheError) {
    ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
    load(server.url());
    EXPECT_EQ(service->availableModels().size(), 3);

    tagsReply = reply("<html></html>");
    load(server.url());
    EXPECT_EQ(service->availableModels().size(), 3);
    EXPECT_EQ(service->modelError(), u"Failed to fetch models: "_s + formatText);

    settings.setOllamaURL(u"http://no es una url"_s);
    service->fetchAvailableModels();
    EXPECT_EQ(service->availableModels().size(), 3);
    EXPECT_EQ(service->modelError(), u"Invalid URL"_s);

    tagsReply = reply(R"({"models":[{"name":"d"}]})");
    load(server.url());
    EXPECT_EQ(modelNames(), QStringList{u"d"_s});
    EXPECT_EQ(service->modelError(), std::nullopt);
}

TEST_F(FetchAvailableModels, ErrorStaysVisibleWhileTheNextLoadRuns) {
    settings.setOllamaURL(u"http://no es una url"_s);
    service->fetchAvailableModels();
    ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
    settings.setOllamaURL(server.url());
    service->fetchAvailableModels();
    EXPECT_TRUE(service->isLoadingModels());
    EXPECT_EQ(service->modelError(), u"Invalid URL"_s);
    ASSERT_TRUE(waitUntil([this] { return !service->isLoadingModels(); }));
}

TEST_F(FetchAvailableModels, ChangesAreSignalledWhenAllOfThemAreMade) {
    ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
    settings.setOllamaURL(u"http://no es una url"_s);
    service->fetchAvailableModels();
    QStringList seen;
    const auto note = [&](const QString& signal) {
        seen += u"%1: %2 models, %3, %4"_s.arg(signal)
                    .arg(service->availableModels().size())
                    .arg(service->isLoadingModels() ? u"loading"_s : u"idle"_s,
                         service->modelError().value_or(u"no error"_s));
    };
    QObject::connect(service.get(), &OllamaService::availableModelsChanged, [&] { note(u"models"_s); });
    QObject::connect(service.get(), &OllamaService::isLoadingModelsChanged, [&] { note(u"loading"_s); });
    QObject::connect(service.get(), &OllamaService::modelErrorChanged, [&] { note(u"error"_s); });
    load(server.url());
    EXPECT_EQ(seen, (QStringList{u"loading: 0 models, loading, Invalid URL"_s, u"models: 3 models, idle, no error"_s,
                                 u"error: 3 models, idle, no error"_s, u"loading: 3 models, idle, no error"_s}));
}

TEST_F(FetchAvailableModels, LargeAnswerAboutAModelIsReadAndDropped) {
    QByteArray tokens = "\"t\"";
    tokens = (tokens + ',').repeated(50'000) + tokens;
    tagsReply = reply(R"({"models":[{"name":"a"}]})");
    ScriptedServer server(listing([&](const QByteArray&) {
        return reply(R"({"model_info":{"tokens":[)" + tokens + R"(]},"capabilities":["thinking"]})");
    }));
    load(server.url());
    ASSERT_EQ(service->availableModels().size(), 1);
    EXPECT_EQ(service->availableModels()[0].capabilities, (ModelCapabilities{.supportsThinking = true}));
}

/// A session whose answers the test gives one by one, in the order it chooses.
class HeldSession final : public HttpSession {
public:
    void send(const HttpRequest& request, QObject*, std::function<void(HttpOutcome)> completion) override {
        requests.append(request);
        completions.append(std::move(completion));
    }
    void answer(qsizetype index, const QByteArray& body) { completions[index](HttpResponse{200, body}); }

    QList<HttpRequest> requests;
    QList<std::function<void(HttpOutcome)>> completions;
};

struct FetchAvailableModelsInOrder : testing::Test {
    QTemporaryDir folder;
    AppSettings settings{std::make_unique<QSettings>(folder.filePath(u"Dorvantel.conf"_s), QSettings::IniFormat)};
    HeldSession session;
    OllamaService service{session, settings};

    void startLoad(const QByteArray& tags) {
        const qsizetype index = session.requests.size();
        service.fetchAvailableModels();
        session.answer(index, tags);
    }
    bool waitForRequests(qsizetype count) {
        return waitUntil([this, count] { return session.requests.size() == count; });
    }
    QStringList names() const {
        QStringList result;
        for (const OllamaModel& model : service.availableModels()) {
            result += model.name;
        }
        return result;
    }
};

TEST_F(FetchAvailableModelsInOrder, AnswersInReverseOrderGiveAReversedList) {
    startLoad(R"({"models":[{"name":"a"},{"name":"b"},{"name":"c"}]})");
    ASSERT_TRUE(waitForRequests(4));
    session.answer(3, "{}");
    session.answer(2, "{}");
    session.answer(1, "{}");
    ASSERT_TRUE(waitUntil([this] { return !service.isLoadingModels(); }));
    EXPECT_EQ(names(), (QStringList{u"c"_s, u"b"_s, u"a"_s}));
}

TEST_F(FetchAvailableModelsInOrder, NothingIsPublishedBeforeTheLastAnswer) {
    startLoad(R"({"models":[{"name":"a"},{"name":"b"}]})");
    ASSERT_TRUE(waitForRequests(3));
    session.answer(2, "{}");
    QCoreApplication::processEvents();
    EXPECT_EQ(names(), QStringList());
    EXPECT_TRUE(service.isLoadingModels());
    session.answer(1, "{}");
    ASSERT_TRUE(waitUntil([this] { return !service.isLoadingModels(); }));
    EXPECT_EQ(names(), (QStringList{u"b"_s, u"a"_s}));
}

TEST_F(FetchAvailableModelsInOrder, OfLoadsThatOverlapTheLastToEndWins) {
    startLoad(R"({"models":[{"name":"primero"}]})");
    ASSERT_TRUE(waitForRequests(2));
    startLoad(R"({"models":[{"name":"segundo"}]})");
    ASSERT_TRUE(waitForRequests(4));
    session.answer(3, "{}");
    ASSERT_TRUE(waitUntil([this] { return !service.isLoadingModels(); }));
    EXPECT_EQ(names(), QStringList{u"segundo"_s});
    session.answer(1, "{}");
    ASSERT_TRUE(waitUntil([this] { return names() == QStringList{u"primero"_s}; }));
    EXPECT_FALSE(service.isLoadingModels());
}

TEST_F(FetchAvailableModelsInOrder, EveryRequestWaitsAMinute) {
    settings.setSelectedLLMModel(u"m"_s);
    startLoad(R"({"models":[{"name":"a"}]})");
    service.chat({}, std::nullopt, std::nullopt);
    ASSERT_TRUE(waitForRequests(3));
    for (const HttpRequest& request : session.requests) {
        EXPECT_EQ(request.timeout, std::chrono::seconds(60));
    }
}

} // namespace
} // namespace dorvantel
