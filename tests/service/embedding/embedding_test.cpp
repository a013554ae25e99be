// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/embedding/Embedding.h"

#include "tests/service/FakeModelServer.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Wait.h"

#include <QTcpSocket>

#include <chrono>
#include <cmath>
#include <functional>
#include <future>
#include <latch>
#include <limits>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using namespace dorvantel::service;
using namespace dorvantel::test;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

ModelServerAddress addressOf(const FakeModelServer& server) {
    return {.host = "127.0.0.1", .port = server.port()};
}

EmbeddingError errorOf(const FakeModelServer::Answer& answer) {
    const FakeModelServer server([&](const std::string&) { return answer; });
    const auto vector = EmbeddingClient(addressOf(server), "m").embed("x");
    EXPECT_FALSE(vector);
    return vector ? EmbeddingError{} : vector.error();
}

/// Sends the beginning of a head, then `piece` again and again as fast as it is taken.
void flood(QTcpSocket& socket, const QByteArray& piece) {
    QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, [&socket, piece] {
        if (socket.bytesToWrite() == 0) {
            socket.write(piece);
        }
    });
    socket.write("HTTP/1.1 200 OK\r\n");
}

/// The same with a little time between the pieces.
void drip(QTcpSocket& socket, const QByteArray& piece) {
    constexpr int pauseMs = 5;
    auto* const timer = new QTimer(&socket);
    QObject::connect(timer, &QTimer::timeout, &socket, [&socket, piece] { socket.write(piece); });
    timer->start(pauseMs);
    socket.write("HTTP/1.1 200 OK\r\n");
}

} // namespace

TEST(EmbeddingText, IsMadeOfProfessionSummaryAndSkillsAlone) {
    EXPECT_EQ(embeddingText({7,
                             "Ana Gil",
                             "gil@x",
                             "Contable",
                             "Diez años de experiencia",
                             {"Femenino", {"S"}, {"A", "B"}, {"Inglés"}}}),
              "Contable\nDiez años de experiencia\nA\nB\nS");
}

TEST(EmbeddingText, NameAndEmailInTheSummaryDoNotShow) {
    EXPECT_EQ(embeddingText({7, "Ana Gil", "gil@x.example", "Contable", "Ana Gil (gil@x.example) lleva cuentas", {}}),
              "Contable\n() lleva cuentas");
}

TEST(EmbeddingText, GenderDoesNotShow) {
    EXPECT_EQ(embeddingText({7, "N", "E", "P", "R", {"Femenino", {}, {}, {}}}),
              embeddingText({7, "N", "E", "P", "R", {"Masculino", {}, {}, {}}}));
}

TEST(EmbeddingText, HugeSummaryIsReadUntilAWordEndsWithinTheLimit) {
    Unembedded candidate{7, "Ana Gil", "x@y", "P", "", {"", {}, {"Excel"}, {}}};
    candidate.summarizedText = std::string(longestEmbeddedSummary - 6, 'a') + " b Gil, Ana";
    EXPECT_EQ(embeddingText(candidate), "P\n" + std::string(longestEmbeddedSummary - 6, 'a') + " b\nExcel");
    candidate.summarizedText = std::string(longestEmbeddedSummary, 'a');
    EXPECT_EQ(embeddingText(candidate), "P\n" + candidate.summarizedText + "\nExcel");
}

TEST(EmbeddingText, HugeSummaryWithoutBlanksEndsWithAWholeCharacter) {
    Unembedded candidate{7, "Ana Gil", "x@y", "P", "", {}};
    for (std::size_t i = 0; i < longestEmbeddedSummary; ++i) {
        candidate.summarizedText += "語";
    }
    EXPECT_EQ(embeddingText(candidate), "P\n" + candidate.summarizedText.substr(0, longestEmbeddedSummary / 3 * 3));
}

TEST(EmbeddingText, TextsTogetherAreBounded) {
    const std::string huge(1'000'000, 'x');
    EXPECT_LE(embeddingText({7, "N", "E", huge, huge, {"", {huge}, {huge, huge}, {}}}).size(), longestEmbeddedText);
}

TEST(EmbeddingText, SummaryOfSixtyMegabytesFullOfTheNameTakesNoLongTime) {
    std::string name;
    for (char first = 'a'; first < 'h'; ++first) {
        for (char second = 'a'; second < 'h'; ++second) {
            name += std::string(3, first) + second + " ";
        }
    }
    Unembedded candidate{7, name, "x@y", "P", "X ", {}};
    while (candidate.summarizedText.size() < 60'000'000) {
        candidate.summarizedText += name;
    }
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_LT(embeddingText(candidate).size(), longestEmbeddedText);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10)) << "even under load";
}

TEST(UnitVector, HasLengthOneAndTheSameDirection) {
    EXPECT_THAT(unitVector({3, 4}), testing::Optional(ElementsAre(0.6F, 0.8F)));
    EXPECT_THAT(unitVector({-2}), testing::Optional(ElementsAre(-1.0F)));
    EXPECT_THAT(unitVector({1e-300, 0}), testing::Optional(ElementsAre(1.0F, 0.0F)));
    EXPECT_THAT(unitVector({3e307, 4e307}), testing::Optional(ElementsAre(testing::FloatEq(0.6F), 0.8F)));
}

TEST(UnitVector, NothingForAVectorWithoutDirection) {
    EXPECT_EQ(unitVector({}), std::nullopt);
    EXPECT_EQ(unitVector({0, -0.0}), std::nullopt);
    EXPECT_EQ(unitVector({1, std::numeric_limits<double>::infinity()}), std::nullopt);
    EXPECT_EQ(unitVector({1, std::nan("")}), std::nullopt);
}

TEST(ParseModelServer, TakesHostPortAndPrefix) {
    const auto plain = parseModelServer("http://localhost:11434");
    EXPECT_EQ(plain->host, "localhost");
    EXPECT_EQ(plain->port, 11434);
    EXPECT_EQ(plain->prefix, "");
    EXPECT_EQ(parseModelServer("http://localhost:11434/")->prefix, "");
    EXPECT_EQ(parseModelServer("http://models.example/a/b/")->prefix, "/a/b");
    EXPECT_EQ(parseModelServer("http://models.example")->port, 80);
    EXPECT_EQ(parseModelServer("http://[::1]:5")->host, "::1");
}

TEST(ParseModelServer, KnowsHttps) {
    EXPECT_TRUE(parseModelServer("https://models.example/x")->isSecure);
    EXPECT_EQ(parseModelServer("https://models.example")->port, 443);
    EXPECT_EQ(parseModelServer("https://models.example:8443")->port, 8443);
    EXPECT_FALSE(parseModelServer("http://models.example")->isSecure);
}

TEST(ParseModelServer, RefusesOtherTexts) {
    for (const char* const url : {"", "localhost:11434", "https://", "http://", "http://:80", "http://a:x", "ftp://a",
                                  "http://user@host", "http://a b"}) {
        EXPECT_FALSE(parseModelServer(url)) << url;
    }
}

TEST(EmbeddingClient, SendsModelAndInputAndReadsTheFirstVector) {
    const FakeModelServer server([](const std::string&) {
        return FakeModelServer::Answer{200, R"({"model":"m","embeddings":[[1,-0.5,2e-3]],"total_duration":5})"};
    });
    EmbeddingClient client(addressOf(server), "nomic \"x\"");
    EXPECT_EQ(client.embed("Años\n'\"\\"), (std::vector<double>{1, -0.5, 0.002}));
    ASSERT_EQ(server.requests().size(), 1U);
    EXPECT_EQ(nlohmann::json::parse(server.requests()[0]),
              (nlohmann::json{{"model", "nomic \"x\""}, {"input", "Años\n'\"\\"}}));
}

TEST(EmbeddingClient, PrefixComesBeforeThePath) {
    const FakeModelServer server([](const std::string&) { return FakeModelServer::vector({1}); });
    ModelServerAddress address = addressOf(server);
    address.prefix = "/elsewhere";
    EXPECT_EQ(EmbeddingClient(address, "m").embed("x").error().message, "the model server answers with status 404");
}

TEST(EmbeddingClient, RefusedTextsAreToldFromAServerInTrouble) {
    for (const int status : {400, 413, 422}) {
        EXPECT_TRUE(errorOf({status, R"({"error":"input length"})"}).concernsText) << status;
    }
    for (const int status : {401, 403, 404, 500, 501, 502, 503}) {
        EXPECT_FALSE(errorOf({status, "<html>"}).concernsText) << status;
    }
}

TEST(EmbeddingClient, AnswersWithoutAVectorConcernTheText) {
    for (const char* const body : {"", "{}", "[]", R"({"embeddings":[]})", R"({"embeddings":[null]})",
                                   R"({"embeddings":[["x"]]})", R"({"embeddings":[[1,null]]})", "{\"embeddings\":[["}) {
        const EmbeddingError error = errorOf({200, body});
        EXPECT_TRUE(error.concernsText) << body;
        EXPECT_EQ(error.message, "the model server's answer holds no vector");
    }
}

TEST(EmbeddingClient, ErrorsHoldNothingOfTheAnswer) {
    EXPECT_EQ(errorOf({500, R"({"error":"secret"})"}).message, "the model server answers with status 500");
}

TEST(EmbeddingClient, AnswerWithoutEndIsGivenUpAndConcernsTheText) {
    const FakeModelServer server([](const std::string&) {
        return FakeModelServer::Answer{200, R"({"embeddings":[[1]]})" + std::string(100'000, ' ')};
    });
    EmbeddingClient client({.host = "127.0.0.1", .port = server.port()}, "m", {.bytes = 100'000});
    for (int i = 0; i < 2; ++i) { // and the connection is not used with the rest of it
        const auto answer = client.embed("text");
        ASSERT_FALSE(answer);
        EXPECT_TRUE(answer.error().concernsText);
        EXPECT_EQ(answer.error().message, "the model server's answer is too large");
    }
}

TEST(EmbeddingClient, AnswerThatTakesTooLongIsTheServersTrouble) {
    const FakeModelServer server([](const std::string&) { return FakeModelServer::vector({1}); });
    EmbeddingClient client({.host = "127.0.0.1", .port = server.port()}, "m", {.time = std::chrono::milliseconds(0)});
    const auto answer = client.embed("text");
    ASSERT_FALSE(answer);
    EXPECT_FALSE(answer.error().concernsText);
}

TEST(EmbeddingClient, HeadWithoutEndIsGivenUpWhenTheTimeIsOver) {
    using Play = std::function<void(QTcpSocket&)>;
    const Play lines = [](QTcpSocket& socket) { flood(socket, QByteArray("X-Line: x\r\n").repeated(1'000)); };
    const Play linesNowAndThen = [](QTcpSocket& socket) { drip(socket, "X-Line: x\r\n"); };
    const Play byteByByte = [](QTcpSocket& socket) { drip(socket, "x"); };
    for (const Play& play : {lines, linesNowAndThen, byteByByte}) {
        ScriptedServer server(ScriptedReply{.way = ScriptedReply::Way::Played, .play = play});
        EmbeddingClient client({.host = "127.0.0.1", .port = QUrl(server.url()).port()}, "m",
                               {.time = std::chrono::milliseconds(100)});
        auto answer = std::async(std::launch::async, [&client] { return client.embed("text"); });
        EXPECT_TRUE(waitUntil([&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
        server.hangUp(); // ends a call that was not given up
        const auto vector = answer.get();
        ASSERT_FALSE(vector);
        EXPECT_FALSE(vector.error().concernsText);
        EXPECT_EQ(vector.error().message, "the model server's answer takes too long");
    }
}

TEST(EmbeddingClient, ServerThatIsNotThereIsInTrouble) {
    int port = 0;
    {
        const FakeModelServer server([](const std::string&) { return FakeModelServer::Answer{}; });
        port = server.port();
    }
    const auto vector = EmbeddingClient({.host = "127.0.0.1", .port = port}, "m").embed("x");
    ASSERT_FALSE(vector);
    EXPECT_FALSE(vector.error().concernsText);
    EXPECT_THAT(vector.error().message, HasSubstr("does not answer"));
}

TEST(EmbeddingClient, SecureAddressIsNeverSpokenToInPlainText) {
    const FakeModelServer server([](const std::string&) { return FakeModelServer::vector({1}); });
    ModelServerAddress address = addressOf(server);
    address.isSecure = true;
    const auto vector = EmbeddingClient(address, "m").embed("x");
    ASSERT_FALSE(vector);
    EXPECT_FALSE(vector.error().concernsText);
    EXPECT_TRUE(server.requests().empty());
}

TEST(EmbeddingClient, CancelEndsACallThatRunsAndEveryLaterOne) {
    std::latch arrived(1);
    std::latch released(1);
    const FakeModelServer server([&](const std::string&) {
        arrived.count_down();
        released.wait();
        return FakeModelServer::vector({1});
    });
    EmbeddingClient client(addressOf(server), "m");
    std::thread call([&] { EXPECT_FALSE(client.embed("x")); });
    arrived.wait();
    client.cancel();
    call.join();
    EXPECT_FALSE(client.embed("x"));
    released.count_down();
    EXPECT_EQ(server.requests().size(), 1U);
}
