// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/HttpSession.h"

#include "tests/platform/HttpSessionFixture.h"
#include "tests/support/Faults.h"
#include "tests/support/Print.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Wait.h"

#include <QTemporaryFile>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::NetworkHttpSessionTest;
using test::requestTo;
using test::ScriptedReply;
using test::ScriptedServer;
using test::waitUntil;

TEST_F(NetworkHttpSessionTest, PathThatBeginsWithTwoSlashesKeepsThem) {
    ScriptedServer server(ScriptedReply{});
    for (const QString& target : {u"//api/tags"_s, u"///api/tags"_s, u"/api//tags"_s, u"//a%20b?c=d//e"_s, u"/a"_s}) {
        outcome.reset();
        get(server.url() + target);
        ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
        EXPECT_EQ(QString::fromLatin1(server.requests().last().target), target);
    }
}

TEST_F(NetworkHttpSessionTest, CompletionIsNotCalledWhenTheContextGoesFirst) {
    ScriptedServer server(ScriptedReply{.body = {}, .way = ScriptedReply::Way::Stall});
    get(server.url());
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 1; }));
    context.reset();
    EXPECT_TRUE(waitUntil([&] { return server.openConnections() == 0; }));
    EXPECT_FALSE(outcome.has_value());
}

TEST_F(NetworkHttpSessionTest, ErrorStatusesAreResponsesWithTheirBodies) {
    for (const int status : {400, 401, 403, 404, 405, 407, 409, 410, 418, 422, 429, 500, 501, 502, 503, 599}) {
        ScriptedServer server(ScriptedReply{.status = status, .body = "{\"error\": \"no\"}"});
        outcome.reset();
        get(server.url());
        ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); })) << status;
        ASSERT_TRUE(outcome->has_value()) << status << " " << qPrintable(outcome->error().description);
        EXPECT_EQ((*outcome)->statusCode, status);
        EXPECT_EQ((*outcome)->body, "{\"error\": \"no\"}") << status;
    }
}

TEST_F(NetworkHttpSessionTest, StatusWithoutBodyIsAResponseWithAnEmptyBody) {
    for (const int status : {200, 201, 204, 404, 500}) {
        ScriptedServer server(ScriptedReply{.status = status, .body = {}});
        outcome.reset();
        get(server.url());
        ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); })) << status;
        ASSERT_TRUE(outcome->has_value()) << status;
        EXPECT_EQ((*outcome)->statusCode, status);
        EXPECT_EQ((*outcome)->body, QByteArray()) << status;
    }
}

TEST_F(NetworkHttpSessionTest, RefusedConnectionIsATransportErrorWithAText) {
    QString url;
    {
        const ScriptedServer gone(ScriptedReply{});
        url = gone.url();
    }
    get(url);
    EXPECT_FALSE(outcome.has_value());
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    ASSERT_FALSE(outcome->has_value());
    EXPECT_EQ(outcome->error().description, u"Connection refused"_s);
}

TEST_F(NetworkHttpSessionTest, SilenceBeyondTheTimeOutIsATransportError) {
    ScriptedServer server(ScriptedReply{.way = ScriptedReply::Way::Stall});
    HttpRequest request;
    request.url = QUrl(server.url());
    request.timeout = std::chrono::milliseconds(100);
    session.send(request, context.get(), [this](HttpOutcome received) { outcome = std::move(received); });
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    ASSERT_FALSE(outcome->has_value());
    EXPECT_EQ(outcome->error().description, u"Se ha agotado el tiempo de espera."_s);
}

TEST_F(NetworkHttpSessionTest, ConnectionCutWithoutAnAnswerIsATransportError) {
    ScriptedServer server(ScriptedReply{.way = ScriptedReply::Way::Cut});
    get(server.url());
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    EXPECT_FALSE(outcome->has_value());
}

TEST_F(NetworkHttpSessionTest, RequestWithoutABodySurvivesAConnectionThatClosesBeforeTheAnswer) {
    int received = 0;
    ScriptedServer server([&received](const test::ScriptedRequest&) {
        return ScriptedReply{.body = "here",
                             .way = ++received == 1 ? ScriptedReply::Way::Cut : ScriptedReply::Way::Whole};
    });
    get(server.url());
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    ASSERT_TRUE(outcome->has_value());
    EXPECT_EQ((*outcome)->body, "here");
    EXPECT_EQ(received, 2);
}

TEST_F(NetworkHttpSessionTest, RequestWithABodyIsSentOnceEvenWhenTheConnectionIsCut) {
    ScriptedServer server(ScriptedReply{.way = ScriptedReply::Way::Cut});
    HttpRequest request;
    request.method = HttpRequest::Method::Post;
    request.url = QUrl(server.url());
    request.contentType = "application/json";
    request.body = "{}";
    session.send(request, context.get(), [this](HttpOutcome received) { outcome = std::move(received); });
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    EXPECT_FALSE(outcome->has_value());
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(NetworkHttpSessionTest, BodyCutHalfWayIsATransportErrorWhateverTheStatus) {
    for (const int status : {200, 404, 500}) {
        ScriptedServer server(
            ScriptedReply{.status = status, .body = QByteArray(10'000, 'x'), .way = ScriptedReply::Way::CutInBody});
        outcome.reset();
        get(server.url());
        ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); })) << status;
        EXPECT_FALSE(outcome->has_value()) << status;
    }
}

TEST_F(NetworkHttpSessionTest, AnswerThatIsNotHttpIsATransportError) {
    ScriptedServer server(ScriptedReply{.body = "SSH-2.0-OpenSSH_9.2\r\n", .way = ScriptedReply::Way::NotHttp});
    get(server.url());
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    EXPECT_FALSE(outcome->has_value());
}

TEST_F(NetworkHttpSessionTest, LocalFileHasABodyAndNoStatus) {
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write("text");
    file.close();
    get(QUrl::fromLocalFile(file.fileName()).toString());
    EXPECT_FALSE(outcome.has_value());
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    ASSERT_TRUE(outcome->has_value());
    EXPECT_EQ((*outcome)->statusCode, std::nullopt);
    EXPECT_EQ((*outcome)->body, "text");
}

TEST_F(NetworkHttpSessionTest, CompletionIsNeverCalledInsideTheCallAndOnlyOnce) {
    for (const QString& url : {u"http://"_s, u"nonsense:x"_s, u"file:///no/such/file"_s, u"http://127.0.0.1:1/"_s}) {
        int calls = 0;
        HttpRequest request;
        request.url = QUrl(url);
        session.send(request, context.get(), [&calls](const HttpOutcome&) { ++calls; });
        EXPECT_EQ(calls, 0) << qPrintable(url);
        EXPECT_TRUE(waitUntil([&] { return calls > 0; })) << qPrintable(url);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        EXPECT_EQ(calls, 1) << qPrintable(url);
    }
}

TEST_F(NetworkHttpSessionTest, RedirectsAreFollowed) {
    ScriptedServer server([](const test::ScriptedRequest& request) {
        if (request.target == "/old") {
            return ScriptedReply{.status = 302, .body = "moved", .headers = "Location: /new\r\n"};
        }
        return ScriptedReply{.body = "here"};
    });
    get(server.url() + u"/old"_s);
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    ASSERT_TRUE(outcome->has_value());
    EXPECT_EQ((*outcome)->statusCode, 200);
    EXPECT_EQ((*outcome)->body, "here");
}

TEST_F(NetworkHttpSessionTest, RedirectOfABodyIsAResponseAndNobodyIsAskedAgain) {
    for (const int status : {301, 302, 303, 307, 308}) {
        ScriptedServer server(test::redirected(status, "/new"));
        post(server.url());
        ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); })) << status;
        ASSERT_TRUE(outcome->has_value()) << qPrintable(outcome->error().description);
        EXPECT_EQ((*outcome)->statusCode, status);
        EXPECT_EQ(server.requests().size(), 1);
    }
}

TEST_F(NetworkHttpSessionTest, RedirectToAnotherHostIsNotFollowed) {
    ScriptedServer elsewhere(ScriptedReply{});
    for (const int status : {301, 302, 303, 307, 308}) {
        ScriptedServer server(test::redirected(status, elsewhere.url().toLatin1() + "/"));
        outcome.reset();
        get(server.url());
        ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); })) << status;
        ASSERT_FALSE(outcome->has_value()) << status;
        EXPECT_EQ(outcome->error().description, u"El servidor remite a otra dirección."_s);
    }
    EXPECT_EQ(elsewhere.requests().size(), 0);
}

TEST_F(NetworkHttpSessionTest, DemandForAPasswordIsAResponse) {
    ScriptedServer server(
        ScriptedReply{.status = 401, .body = "who?", .headers = "WWW-Authenticate: Basic realm=\"x\"\r\n"});
    get(server.url());
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    ASSERT_TRUE(outcome->has_value());
    EXPECT_EQ((*outcome)->statusCode, 401);
    EXPECT_EQ((*outcome)->body, "who?");
}

TEST_F(NetworkHttpSessionTest, RedirectsInACircleAreATransportError) {
    ScriptedServer server(ScriptedReply{.status = 302, .body = {}, .headers = "Location: /again\r\n"});
    get(server.url());
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    EXPECT_FALSE(outcome->has_value());
}

TEST_F(NetworkHttpSessionTest, ContentTypeIsSentWithEveryMethodAndBodiesWithPostAndDelete) {
    using Method = HttpRequest::Method;
    ScriptedServer server(ScriptedReply{});
    for (const Method method : {Method::Get, Method::Post, Method::Delete}) {
        outcome.reset();
        HttpRequest request;
        request.method = method;
        request.url = QUrl(server.url());
        request.contentType = "application/json";
        request.body = "\"key\"";
        session.send(request, context.get(), [this](HttpOutcome received) { outcome = std::move(received); });
        ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
        EXPECT_EQ(server.requests().last().headers["content-type"], "application/json");
        EXPECT_EQ(server.requests().last().body, method == Method::Get ? "" : "\"key\"");
    }
    EXPECT_EQ(server.requests()[0].method, "GET");
    EXPECT_EQ(server.requests()[1].method, "POST");
    EXPECT_EQ(server.requests()[2].method, "DELETE");
}

TEST_F(NetworkHttpSessionTest, MoreThanSixRequestsToOneHostAreUnderWayAtOnce) {
    ScriptedServer server(ScriptedReply{.body = "x", .held = true});
    constexpr int requests = 60;
    int answered = 0;
    for (int i = 0; i < requests; ++i) {
        session.send(requestTo(server.url()), context.get(), [&](const HttpOutcome& received) {
            EXPECT_TRUE(received);
            ++answered;
        });
    }
    ASSERT_TRUE(waitUntil([&] { return server.heldCount() == requests; })) << server.heldCount();
    while (server.release()) {
    }
    EXPECT_TRUE(waitUntil([&] { return answered == requests; }));
    // Of the managers that this took, one stays, with its connections.
    EXPECT_TRUE(waitUntil([&] { return server.openConnections() <= 6; })) << server.openConnections();
}

TEST_F(NetworkHttpSessionTest, RequestIsNotHeldUpByOthersThatStall) {
    ScriptedServer server([](const test::ScriptedRequest& request) {
        return ScriptedReply{.body = "x",
                             .way = request.target == "/stall" ? ScriptedReply::Way::Stall : ScriptedReply::Way::Whole};
    });
    for (int i = 0; i < 20; ++i) {
        get(server.url() + u"/stall"_s);
    }
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 20; }));
    get(server.url());
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    EXPECT_TRUE(outcome->has_value());
    context.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(waitUntil([&] { return server.openConnections() <= 1; }));
}

TEST_F(NetworkHttpSessionTest, ServerThatKeepsTheConnectionAllTheSameIsAskedThere) {
    ScriptedServer server(ScriptedReply{.body = "x"});
    for (int i = 0; i < 3; ++i) {
        outcome.reset();
        get(server.url());
        ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    }
    EXPECT_EQ(server.requests().size(), 3);
    EXPECT_EQ(server.openConnections(), 1);
}

TEST_F(NetworkHttpSessionTest, EveryRequestAsksForItsConnectionToBeClosed) {
    ScriptedServer server(ScriptedReply{.status = 201, .body = "{}", .headers = "Connection: close\r\n"});
    for (const bool hasBody : {false, true, true, false, true}) {
        outcome.reset();
        hasBody ? post(server.url()) : get(server.url());
        ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
        ASSERT_TRUE(outcome->has_value()) << qPrintable(outcome->error().description);
        EXPECT_EQ(server.requests().last().headers.value("connection"), "close");
        EXPECT_TRUE(waitUntil([&] { return server.openConnections() == 0; }));
    }
}

TEST_F(NetworkHttpSessionTest, ThousandRequestsAtOnceAllGetTheirAnswer) {
    ScriptedServer server(ScriptedReply{.body = "x"});
    int answered = 0;
    for (int i = 0; i < 1000; ++i) {
        session.send(requestTo(server.url()), context.get(), [&](const HttpOutcome& received) {
            EXPECT_TRUE(received) << qPrintable(received.error().description);
            ++answered;
        });
    }
    EXPECT_TRUE(waitUntil([&] { return answered == 1000; })) << answered;
}

TEST(NetworkHttpSession, MayGoWithRequestsUnderWay) {
    ScriptedServer server(ScriptedReply{.way = ScriptedReply::Way::Stall});
    QObject context;
    {
        NetworkHttpSession session;
        for (int i = 0; i < 20; ++i) {
            session.send(requestTo(server.url()), &context, [](const HttpOutcome&) { ADD_FAILURE(); });
        }
        ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 20; }));
    }
    EXPECT_TRUE(waitUntil([&] { return server.openConnections() == 0; }));
}

} // namespace
} // namespace dorvantel
