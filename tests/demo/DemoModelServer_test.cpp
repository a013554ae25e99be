// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/DemoModelServer.h"

#include "demo/DemoModel.h"

#include "tests/support/Print.h"

#include <gmock/gmock.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include <QElapsedTimer>

#include <atomic>
#include <thread>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using nlohmann::json;

// A started server and a client for it.
class Fixture {
public:
    explicit Fixture(const QByteArray& script = "{}")
        : server(std::move(*Script::parse(script, u"."_s)))
        , port(*server.start())
        , client("127.0.0.1", port) {
        client.set_read_timeout(10);
    }
    DemoModelServer server;
    std::uint16_t port;
    httplib::Client client;
};

json chatBody(const std::string& content) {
    return {{"model", "demo-texto"}, {"stream", false}, {"messages", {{{"role", "user"}, {"content", content}}}}};
}

TEST(DemoModelServer, AnswersOnAFreePort) {
    Fixture f;
    const httplib::Result root = f.client.Get("/");
    ASSERT_TRUE(root);
    EXPECT_EQ(root->body, demoNotice);
    EXPECT_EQ(root->get_header_value("Content-Type"), "text/plain; charset=utf-8");
    EXPECT_EQ(f.server.url(), u"http://127.0.0.1:%1"_s.arg(f.port));
}

TEST(DemoModelServer, TwoOfThemDoNotDisturbEachOther) {
    Fixture a;
    Fixture b;
    EXPECT_NE(a.port, b.port);
    EXPECT_TRUE(a.client.Get("/api/tags"));
    EXPECT_TRUE(b.client.Get("/api/tags"));
}

TEST(DemoModelServer, APortInUseIsToldAndNotShared) {
    Fixture f;
    DemoModelServer second;
    const auto started = second.start(u"127.0.0.1"_s, f.port);
    ASSERT_FALSE(started.has_value());
    EXPECT_EQ(started.error(), u"cannot listen on 127.0.0.1:%1: the port is in use"_s.arg(f.port));
}

TEST(DemoModelServer, ThePortIsFreeAgainAfterTheStop) {
    Fixture f;
    const std::uint16_t port = f.port;
    f.server.stop();
    f.server.stop();
    DemoModelServer second;
    EXPECT_TRUE(second.start(u"127.0.0.1"_s, port).has_value());
}

TEST(DemoModelServer, EmptyAnswersStayEmpty) {
    Fixture f;
    const httplib::Result refused = f.client.Get("/", {{"Host", "example.com"}});
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->status, 403);
    EXPECT_EQ(refused->body, "");
}

TEST(DemoModelServer, AStreamComesAsLines) {
    Fixture f;
    json body = chatBody("hola");
    body.erase("stream");
    const httplib::Result answer = f.client.Post("/api/chat", body.dump(), "application/json");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->get_header_value("Transfer-Encoding"), "chunked");
    EXPECT_EQ(answer->get_header_value("Content-Type"), "application/x-ndjson");
    EXPECT_THAT(answer->body, testing::HasSubstr("\"done\":true"));
}

TEST(DemoModelServer, ManyClientsAtOnceGetTheirOwnAnswers) {
    Fixture f;
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 16; ++t) {
        threads.emplace_back([&right, t, port = f.port] {
            httplib::Client client("127.0.0.1", port);
            const std::string mail = "persona" + std::to_string(t) + "@example.com";
            const std::string prompt = "recibir el siguiente curriculum:\nAna Ruiz\n" + mail +
                                       "\nNecesitas extraer la siguiente información del CV\n";
            for (int i = 0; i < 10; ++i) {
                const httplib::Result answer = client.Post("/api/chat", chatBody(prompt).dump(), "application/json");
                right += answer && answer->body.find(mail) != std::string::npos ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, 160);
}

TEST(DemoModelServer, MalformedRequestsDoNotStopIt) {
    Fixture f;
    f.client.Post("/api/chat", std::string(200'000, '{'), "application/json");
    f.client.Post("/api/chat", "a=b&c", "application/x-www-form-urlencoded");
    f.client.Post("/api/embed", std::string("\0\xff\xfe", 3), "application/octet-stream");
    f.client.Get("/" + std::string(9000, 'a'));
    f.client.Get("/%00%ff?x=%");
    EXPECT_TRUE(f.client.Get("/api/tags"));
}

TEST(DemoModelServerScript, StatusAndBodyReplaceTheAnswer) {
    Fixture f(R"({"POST /api/chat":[{"status":500,"body":{"error":"kaputt"}},{}]})");
    const httplib::Result failed = f.client.Post("/api/chat", chatBody("hola").dump(), "application/json");
    ASSERT_TRUE(failed);
    EXPECT_EQ(failed->status, 500);
    EXPECT_EQ(failed->body, "{\"error\":\"kaputt\"}");
    const httplib::Result normal = f.client.Post("/api/chat", chatBody("hola").dump(), "application/json");
    ASSERT_TRUE(normal);
    EXPECT_EQ(normal->status, 200);
}

TEST(DemoModelServerScript, AStatusAloneKeepsTheBody) {
    Fixture f(R"({"GET /api/tags":{"status":203,"contentType":"text/html"}})");
    const httplib::Result answer = f.client.Get("/api/tags");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 203);
    EXPECT_EQ(answer->get_header_value("Content-Type"), "text/html");
    EXPECT_THAT(answer->body, testing::HasSubstr("demo-texto"));
}

TEST(DemoModelServerScript, ADelayedAnswerIsNotEarlier) {
    Fixture f(R"({"GET /":{"delayMs":120}})");
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(f.client.Get("/"));
    EXPECT_GE(timer.elapsed(), 120);
}

TEST(DemoModelServerScript, ACutConnectionGivesNoAnswer) {
    Fixture f(R"({"GET /":[{"cut":"before"},{}]})");
    EXPECT_FALSE(f.client.Get("/"));
    EXPECT_TRUE(f.client.Get("/"));
}

TEST(DemoModelServerScript, ACutInTheBodyLosesItsEnd) {
    Fixture f(R"({"GET /":{"cut":"inBody","body":"0123456789"}})");
    std::string received;
    const httplib::Result answer = f.client.Get("/", [&received](const char* data, std::size_t size) {
        received.append(data, size);
        return true;
    });
    EXPECT_FALSE(answer);
    EXPECT_EQ(received, "01234");
}

TEST(DemoModelServerScript, ChunkedAnswersArriveWhole) {
    Fixture f(R"({"GET /":{"chunkBytes":3,"chunkDelayMs":1,"body":"0123456789"}})");
    const httplib::Result answer = f.client.Get("/");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->body, "0123456789");
    EXPECT_EQ(answer->get_header_value("Transfer-Encoding"), "chunked");
}

TEST(DemoModelServerScript, AStalledAnswerNeverComesAndDoesNotHoldUpTheStop) {
    Fixture f(R"({"GET /":{"stall":true}})");
    f.client.set_read_timeout(0, 150'000);
    EXPECT_FALSE(f.client.Get("/"));
    EXPECT_TRUE(f.client.Get("/api/tags")) << "other routes go on";

    std::thread waiting([port = f.port] {
        httplib::Client client("127.0.0.1", port);
        client.set_read_timeout(30);
        EXPECT_FALSE(client.Get("/"));
    });
    QElapsedTimer timer;
    timer.start();
    f.server.stop();
    waiting.join();
    EXPECT_LT(timer.elapsed(), 10'000);
}

} // namespace
} // namespace dorvantel
