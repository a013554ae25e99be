// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/modelserver/OllamaServiceFixture.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeHttpSession.h"
#include "tests/support/Print.h"

#include <QCoreApplication>
#include <QSignalSpy>

#include <limits>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

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

TEST_F(Chat, AnswerInAnotherProtocolIsANetworkError) {
    ScriptedServer server({.body = "SSH-2.0-OpenSSH_9.2p1\r\n", .way = Way::NotHttp});
    const ModelResult<QString> result = chat(server.url());
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().which, OllamaError::Case::networkError);
}

TEST_F(Chat, ResponseThatHasNoStatusIsReadLikeOneWithStatus200) {
    FakeHttpSession withoutStatus;
    OllamaService local(withoutStatus, settings);
    const QFuture reply = local.chat({}, std::nullopt, std::nullopt);
    withoutStatus.answer(HttpResponse{std::nullopt, chatBody("hola")});
    EXPECT_EQ(await(reply), u"hola"_s);
}

TEST_F(Chat, FailureTouchesNoPublishedState) {
    const QSignalSpy models(service.get(), &OllamaService::availableModelsChanged);
    const QSignalSpy loading(service.get(), &OllamaService::isLoadingModelsChanged);
    const QSignalSpy error(service.get(), &OllamaService::modelErrorChanged);
    EXPECT_FALSE(chat(u"http://127.0.0.1:1"_s));
    EXPECT_FALSE(embed(u"http://127.0.0.1:1"_s));
    EXPECT_EQ(models.count() + loading.count() + error.count(), 0);
}

TEST_F(Chat, RequestIsSentOnceEvenWhenTheConnectionIsCut) {
    ScriptedServer server(way(Way::Cut));
    EXPECT_FALSE(chat(server.url()));
    EXPECT_EQ(server.requests().size(), 1);
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

} // namespace dorvantel::test
