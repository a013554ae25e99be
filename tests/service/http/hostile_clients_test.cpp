// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/HttpServerFixture.h"
#include "tests/service/RawClient.h"
#include "tests/support/Wait.h"

#include <ifaddrs.h>
#include <net/if.h>

using namespace dorvantel::service;
using namespace dorvantel::test;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr std::size_t bodyLimit = 200'000;
const std::string postHead = "POST /curriculums HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/json\r\n";
const std::string getList = "GET /curriculums HTTP/1.1\r\nHost: localhost\r\n";
const std::string emptyList = R"({"response":[]})";

/// A server of which every test chooses the limits.
class Hostile : public testing::Test {
protected:
    void start(HttpServer::Settings settings) {
        settings.port = 0;
        settings.bodyLimit = bodyLimit;
        server = std::make_unique<HttpServer>(settings, [](std::string_view line) { ADD_FAILURE() << line; });
        const auto bound = server->bind();
        ASSERT_TRUE(bound) << bound.error();
        server->start(api);
    }
    void startImpatient() { start({.client = {.idle = 100ms, .patience = 300ms}}); }
    void startPatient() { start({.client = {.idle = 10min, .patience = 10min}}); }

    RawClient connect() const { return RawClient(server->port()); }
    std::string answerTo(const std::string& bytes) const {
        const RawClient client = connect();
        client.send(bytes);
        return client.receiveAll();
    }
    httplib::Client client() const {
        httplib::Client made("127.0.0.1", server->port());
        made.set_read_timeout(60);
        return made;
    }
    /// A client in the middle of an answer that it does not read.
    RawClient beginLargeAnswer() {
        Record record = makeRecord("large@x");
        record.file = std::string(8'000'000, 'x');
        EXPECT_TRUE(store.insert(record));
        RawClient client = connect();
        client.send("GET /curriculums/large@x/file HTTP/1.1\r\nHost: localhost\r\n\r\n");
        EXPECT_TRUE(waitUntil([&client] { return !client.isSilent(); }));
        return client;
    }
    void expectWell() const { EXPECT_EQ(client().Get("/health")->status, 200); }

    StoreFolder folder;
    SqliteStore store{folder.store(), "m"};
    RecordsApi api{store, [] {}};
    std::unique_ptr<HttpServer> server;
};

/// An address of this machine that is not loopback; empty when it has none.
std::string ownOuterAddress() {
    ifaddrs* all = nullptr;
    std::string found;
    if (getifaddrs(&all) != 0) {
        return found;
    }
    for (const ifaddrs* one = all; one != nullptr; one = one->ifa_next) {
        if (one->ifa_addr != nullptr && one->ifa_addr->sa_family == AF_INET && (one->ifa_flags & IFF_LOOPBACK) == 0) {
            char text[INET_ADDRSTRLEN] = {};
            inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in*>(one->ifa_addr)->sin_addr, text, sizeof text);
            found = text;
        }
    }
    freeifaddrs(all);
    return found;
}

} // namespace

TEST_F(Hostile, ConnectionThatSendsNothingIsClosed) {
    startImpatient();
    EXPECT_EQ(connect().receiveAll(), "");
}

TEST_F(Hostile, HeadThatStopsIsAnsweredAndClosed) {
    startImpatient();
    const std::string answer = answerTo("GET /curriculums HTTP/1.1\r\nHost:");
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 408 Request Timeout\r\nConnection: close\r\n"));
    EXPECT_THAT(answer, HasSubstr(R"({"error":"the request did not come in time"})"));
}

TEST_F(Hostile, HeadThatDripsIsNoBetterThanOneThatStops) {
    startImpatient();
    const RawClient client = connect();
    client.send("GET /curriculums HTTP/1.1\r\nX: ");
    EXPECT_THAT(client.receiveAllDripping("x"), StartsWith("HTTP/1.1 408 "));
}

TEST_F(Hostile, BodyThatStopsIsAnsweredAndClosed) {
    startImpatient();
    const std::string answer = answerTo(postHead + "Content-Length: 100\r\n\r\n{\"name\":");
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 400 "));
    EXPECT_THAT(answer, HasSubstr(R"({"error":"the body did not come whole"})"));
}

TEST_F(Hostile, BodyThatDripsIsNoBetterThanOneThatStops) {
    startImpatient();
    const RawClient client = connect();
    client.send(postHead + "Content-Length: 100000\r\n\r\n");
    EXPECT_THAT(client.receiveAllDripping(" "), StartsWith("HTTP/1.1 400 "));
}

TEST_F(Hostile, AnswerThatNobodyTakesIsGivenUp) {
    startImpatient();
    const RawClient client = beginLargeAnswer();
    server->stop(); // waits for running answers, and for this one no longer than the limits have it
    EXPECT_EQ(client.receiveAll().find("]}"), std::string::npos) << "half an answer must not look whole";
}

TEST_F(Hostile, ChunksWithoutEndAreCutOffAtTheLimit) {
    startPatient();
    const RawClient client = connect();
    client.send(postHead + "Transfer-Encoding: chunked\r\n\r\n");
    EXPECT_THAT(client.receiveAllFlooding("8\r\nxxxxxxxx\r\n"), StartsWith("HTTP/1.1 413 "));
    expectWell();
}

TEST_F(Hostile, ChunkLengthWithoutEndIsCutOff) {
    startPatient();
    const RawClient client = connect();
    client.send(postHead + "Transfer-Encoding: chunked\r\n\r\n");
    EXPECT_THAT(client.receiveAllFlooding(std::string(1000, '0')), StartsWith("HTTP/1.1 400 "));
    expectWell();
}

TEST_F(Hostile, ChunksThatAreNoneAreRefusedAndNothingBehindThemIsRead) {
    startPatient();
    const std::string answer =
        answerTo(postHead + "Transfer-Encoding: chunked\r\n\r\nnonsense\r\n\r\n" + getList + "\r\n");
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 400 "));
    EXPECT_THAT(answer, testing::Not(HasSubstr(emptyList)));
}

TEST_F(Hostile, BodyBeyondTheLimitIsNotEvenRead) {
    startPatient();
    const std::string answer = answerTo(postHead + "Content-Length: 1000000000000\r\n\r\n{");
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 413 "));
    EXPECT_THAT(answer, HasSubstr("Connection: close"));
    EXPECT_THAT(answer, HasSubstr(R"({"error":"the body is too large"})"));
}

TEST_F(Hostile, BodyLongerThanAnnouncedIsTakenForARequestAndRefused) {
    startPatient();
    const std::string answer = answerTo(postHead + "Content-Length: 2\r\n\r\n{}{\"name\":\"x\"}\r\n\r\n");
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 422 "));
    EXPECT_THAT(answer, HasSubstr("HTTP/1.1 400 Bad Request\r\nConnection: close\r\n"));
}

TEST_F(Hostile, RequestHiddenInTheBodyOfAGetIsNotAnswered) {
    startPatient();
    const std::string hidden = getList + "\r\n";
    const std::string answer = answerTo("GET /health HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/json\r\n"
                                        "Content-Length: " +
                                        std::to_string(hidden.size()) + "\r\n\r\n" + hidden);
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 400 "));
    EXPECT_THAT(answer, testing::Not(HasSubstr(emptyList)));
}

TEST_F(Hostile, FloodsOfHeadersAreRefused) {
    startPatient();
    std::string many;
    for (int i = 0; i < 101; ++i) {
        many += "X-" + std::to_string(i) + ": y\r\n";
    }
    EXPECT_THAT(answerTo(getList + many + "\r\n"), StartsWith("HTTP/1.1 431 "));
    EXPECT_THAT(answerTo(getList + "X: " + std::string(9'000, 'y') + "\r\n\r\n"), StartsWith("HTTP/1.1 431 "));
    const RawClient headers = connect();
    headers.send(getList);
    EXPECT_THAT(headers.receiveAllFlooding("X: y\r\n"), StartsWith("HTTP/1.1 431 "));
    const RawClient line = connect();
    line.send(getList + "X: ");
    EXPECT_THAT(line.receiveAllFlooding("yyyyyyyy"), StartsWith("HTTP/1.1 431 "));
    const RawClient address = connect();
    address.send("GET /");
    EXPECT_THAT(address.receiveAllFlooding("xxxxxxxx"), StartsWith("HTTP/1.1 414 "));
    expectWell();
}

TEST_F(Hostile, PipelinedRequestsAreAnsweredUpToTheFirstThatIsNone) {
    startPatient();
    const std::string answer = answerTo(getList + "\r\n" + getList + "\r\nnonsense\r\n\r\n" + getList + "\r\n");
    std::size_t lists = 0;
    for (std::size_t at = answer.find(emptyList); at != std::string::npos; at = answer.find(emptyList, at + 1)) {
        ++lists;
    }
    EXPECT_EQ(lists, 2U) << answer;
    EXPECT_THAT(answer, HasSubstr("HTTP/1.1 400 "));
}

TEST_F(Hostile, TwoHundredSlowConnectionsKeepNobodyWaiting) {
    startPatient();
    Record large = makeRecord("large@x");
    large.file = std::string(2'000'000, 'x');
    ASSERT_TRUE(store.insert(large));
    std::vector<RawClient> silent;
    std::vector<RawClient> notReading;
    for (int i = 0; i < 50; ++i) {
        silent.push_back(connect());
        silent.push_back(connect());
        silent.back().send("GET /curriculums HTTP/1.1\r\nHost: loc");
        silent.push_back(connect());
        silent.back().send(postHead + "Content-Length: 1000\r\n\r\n{\"name\"");
        notReading.push_back(connect());
        notReading.back().send(
            "GET /curriculums/large@x/file HTTP/1.1\r\nConnection: close\r\nHost: localhost\r\n\r\n");
    }
    for (int i = 0; i < 20; ++i) {
        const std::string email = std::to_string(i) + "@x";
        EXPECT_EQ(client().Post("/curriculums", insertBody(makeRecord(email)), jsonType)->status, 201);
        EXPECT_EQ(client().Get("/curriculums")->status, 200);
        const std::string search = nlohmann::json{{"sql", everybody}}.dump();
        EXPECT_EQ(client().Post("/curriculums/search", search, jsonType)->status, 200);
        EXPECT_EQ(client().Get("/curriculums/" + email + "/file")->body, "{}");
        EXPECT_EQ(client().Delete("/curriculums/" + email)->status, 204);
    }
    EXPECT_TRUE(std::ranges::all_of(silent, &RawClient::isSilent)) << "they were there all the time";
    silent.clear();
    for (const RawClient& one : notReading) {
        const std::string answer = one.receiveAll();
        EXPECT_THAT(answer.substr(0, 12), "HTTP/1.1 200");
        EXPECT_TRUE(answer.ends_with("\r\n0\r\n\r\n")) << "it comes whole once it is read";
    }
}

TEST_F(Hostile, BodiesThatNeverEndDoNotFillTheMemory) {
    startPatient();
    const std::string almost =
        postHead + "Content-Length: " + std::to_string(bodyLimit) + "\r\n\r\n" + std::string(bodyLimit - 10, ' ');
    std::vector<RawClient> waiting;
    for (std::size_t i = 0; i <= bodiesInMemory; ++i) {
        waiting.push_back(connect());
        EXPECT_TRUE(waiting.back().send(almost));
    }
    const auto refused = [&] {
        return std::ranges::find_if(waiting, [](const RawClient& one) { return !one.isSilent(); });
    };
    ASSERT_TRUE(waitUntil([&] { return refused() != waiting.end(); })) << "one is too many";
    EXPECT_THAT(refused()->receiveAll(), StartsWith("HTTP/1.1 503 "));
    EXPECT_EQ(client().Get("/curriculums")->status, 200);
    EXPECT_EQ(client().Delete("/curriculums/nobody@x")->status, 404);
    waiting.clear();
    const std::string large = insertBody(makeRecord("a@x")) + std::string(bodyLimit / 2, ' ');
    EXPECT_TRUE(waitUntil([&] { return client().Post("/curriculums", large, jsonType)->status == 201; }));
}

TEST_F(Hostile, ConnectionsBeyondTheLimitAreClosedUntilOneIsFree) {
    start({.connections = {.open = 2}, .client = {.idle = 10min, .patience = 10min}});
    std::optional<RawClient> first;
    first.emplace(connect());
    const RawClient second = connect();
    EXPECT_EQ(connect().receiveAll(), "");
    EXPECT_TRUE(first->isSilent());
    EXPECT_TRUE(second.isSilent());
    first.reset();
    EXPECT_TRUE(waitUntil([this] { return static_cast<bool>(client().Get("/health")); }));
}

TEST_F(Hostile, StopCutsWhoIsSilent) {
    startPatient();
    const RawClient silent = connect();
    const RawClient half = connect();
    half.send("GET /");
    expectWell();
    server->stop();
    EXPECT_EQ(silent.receiveAll(), "");
    EXPECT_EQ(half.receiveAll(), "");
}

TEST_F(Hostile, StopCutsWhoReadsTooSlowly) {
    start({.client = {.idle = 10min, .patience = 10min}, .stopPatience = 100ms});
    const RawClient slow = beginLargeAnswer();
    server->stop();
    EXPECT_EQ(slow.receiveAll().find("]}"), std::string::npos) << "half an answer must not look whole";
}

TEST_F(Hostile, HurriedStopWaitsForNobody) {
    start({.client = {.idle = 10min, .patience = 10min}, .stopPatience = 10min});
    const RawClient slow = beginLargeAnswer();
    std::thread stopping([this] { server->stop(); });
    EXPECT_TRUE(waitUntil([this] { return client().Get("/health")->status == 503; }));
    server->hurry();
    stopping.join();
    EXPECT_EQ(slow.receiveAll().find("]}"), std::string::npos);
}

TEST_F(Hostile, ClientThatNoNetworkHoldsFindsItsConnectionClosed) {
    const std::string outer = ownOuterAddress();
    if (outer.empty()) {
        GTEST_SKIP() << "this machine has no address but loopback";
    }
    const std::string request = "GET /health HTTP/1.1\r\nConnection: close\r\nHost: " + outer + "\r\n\r\n";
    const auto healthFromOuter = [&] {
        const RawClient client(server->port(), outer); // whose own address is this one too
        client.send(request);
        return client.receiveAll();
    };
    start({.host = "0.0.0.0", .allowed = {*parseClientNetwork("240.0.0.1")}});
    EXPECT_EQ(healthFromOuter(), "");
    expectWell();
    start({.host = "0.0.0.0", .allowed = {*parseClientNetwork("240.0.0.1"), *parseClientNetwork(outer)}});
    EXPECT_THAT(healthFromOuter(), StartsWith("HTTP/1.1 200 "));
}
