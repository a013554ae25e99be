// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/HttpSession.h"

#include "tests/platform/HttpSessionFixture.h"
#include "tests/support/Faults.h"
#include "tests/support/Print.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Wait.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <chrono>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::NetworkHttpSessionTest;
using test::requestTo;
using test::ScriptedReply;
using test::ScriptedServer;
using test::waitUntil;

TEST_F(NetworkHttpSessionTest, DataThatKeepsComingKeepsTheRequestAlive) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost, 0));
    QTimer drip;
    int drops = 0;
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
        QTcpSocket* socket = server.nextPendingConnection();
        socket->write("HTTP/1.1 200 OK\r\nContent-Length: 20\r\n\r\n");
        QObject::connect(&drip, &QTimer::timeout, socket, [socket, &drops, &drip] {
            socket->write("x");
            if (++drops == 20) {
                drip.stop();
            }
        });
        drip.start(50);
    });
    HttpRequest request;
    request.url = QUrl(u"http://127.0.0.1:%1/"_s.arg(server.serverPort()));
    request.timeout = std::chrono::milliseconds(500); // half of what the whole answer takes
    session.send(request, context.get(), [this](HttpOutcome received) { outcome = std::move(received); });
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    ASSERT_TRUE(outcome->has_value()) << qPrintable(outcome->error().description);
    EXPECT_EQ((*outcome)->body, QByteArray(20, 'x'));
}

TEST_F(NetworkHttpSessionTest, DataThatKeepsComingDoesNotKeepTheRequestAliveForEver) {
    ScriptedServer server(ScriptedReply{.way = ScriptedReply::Way::Played, .play = [](QTcpSocket& socket) {
                                            socket.write("HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n");
                                            auto* drip = new QTimer(&socket);
                                            QObject::connect(drip, &QTimer::timeout, &socket,
                                                             [&socket] { socket.write("x"); });
                                            drip->start(5);
                                        }});
    HttpRequest request = requestTo(server.url());
    request.mostTime = std::chrono::milliseconds(300);
    session.send(request, context.get(), [this](HttpOutcome received) { outcome = std::move(received); });
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    ASSERT_FALSE(outcome->has_value());
    EXPECT_EQ(outcome->error().description, u"Se ha agotado el tiempo de espera."_s);
    EXPECT_TRUE(waitUntil([&] { return server.openConnections() == 0; }));
}

TEST_F(NetworkHttpSessionTest, BodyThatIsTakenSlowlyHasItsTime) {
    constexpr qsizetype pieces = 64;
    constexpr qsizetype pieceBytes = qsizetype{256} * 1024;
    constexpr auto tick = std::chrono::milliseconds(50);
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost, 0));
    QTimer sip;
    qsizetype taken = 0;
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
        QTcpSocket* socket = server.nextPendingConnection();
        socket->setReadBufferSize(pieceBytes); // what is not read stays with the other side
        QObject::connect(&sip, &QTimer::timeout, socket, [&, socket] {
            taken += socket->read(pieceBytes).size();
            if (taken >= pieces * pieceBytes) {
                sip.stop();
                socket->write("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nhere");
            }
        });
        sip.start(tick);
    });
    HttpRequest request = requestTo(u"http://127.0.0.1:%1/"_s.arg(server.serverPort()));
    request.method = HttpRequest::Method::Post;
    request.body = QByteArray(pieces * pieceBytes, 'x');
    request.mostTime = pieces * tick / 2;
    session.send(request, context.get(), [this](HttpOutcome received) { outcome = std::move(received); });
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    ASSERT_TRUE(outcome->has_value()) << qPrintable(outcome->error().description);
    EXPECT_EQ((*outcome)->body, "here");
}

TEST_F(NetworkHttpSessionTest, BodyMayBeAsLongAsTheLimitAndNotLonger) {
    for (const bool isChunked : {false, true}) {
        for (const qsizetype size : {1000, 1001}) {
            const ScriptedReply plain{.body = QByteArray(size, 'x')};
            ScriptedServer server(isChunked ? test::inChunks(plain) : plain);
            HttpRequest request = requestTo(server.url());
            request.mostBytes = 1000;
            outcome.reset();
            session.send(request, context.get(), [this](HttpOutcome received) { outcome = std::move(received); });
            ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
            if (size == 1000) {
                ASSERT_TRUE(outcome->has_value());
                EXPECT_EQ((*outcome)->body, plain.body);
            } else {
                ASSERT_FALSE(outcome->has_value());
                EXPECT_EQ(outcome->error().description, u"La respuesta es demasiado larga."_s);
            }
        }
    }
}

TEST_F(NetworkHttpSessionTest, CompressedBodyCountsWithWhatItUnpacksTo) {
    const ScriptedReply plain{.body = QByteArray(100'000, 'x')};
    ScriptedServer server(test::compressed(plain));
    for (const qsizetype limit : {99'999, 100'000}) {
        HttpRequest request = requestTo(server.url());
        request.mostBytes = limit;
        outcome.reset();
        session.send(request, context.get(), [this](HttpOutcome received) { outcome = std::move(received); });
        ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
        ASSERT_EQ(outcome->has_value(), limit == 100'000);
    }
    EXPECT_EQ((*outcome)->body, plain.body);
}

TEST_F(NetworkHttpSessionTest, LargeCompressedBodyArrivesWhole) {
    QByteArray body;
    for (unsigned int i = 0; body.size() < 12'000'000; ++i) {
        body += QByteArray::number(i * 7919) + ',';
    }
    ScriptedServer server(test::compressed({.body = body}));
    get(server.url());
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    ASSERT_TRUE(outcome->has_value());
    EXPECT_TRUE((*outcome)->body == body);
}

TEST_F(NetworkHttpSessionTest, LargeBodyArrivesWhole) {
    QByteArray body(20 * 1024 * 1024, Qt::Uninitialized);
    for (qsizetype i = 0; i < body.size(); ++i) {
        body[i] = static_cast<char>(i * 31 >> 3);
    }
    ScriptedServer server(ScriptedReply{.body = body});
    get(server.url());
    ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
    ASSERT_TRUE(outcome->has_value());
    EXPECT_TRUE((*outcome)->body == body);
}

} // namespace
} // namespace dorvantel
