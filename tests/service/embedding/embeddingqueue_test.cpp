// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/embedding/EmbeddingQueue.h"

#include "service/store/SqliteStore.h"
#include "tests/service/FakeModelServer.h"
#include "tests/service/ServiceSupport.h"
#include "tests/support/Wait.h"

#include <atomic>
#include <latch>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using namespace dorvantel::service;
using namespace dorvantel::test;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

class EmbeddingQueueTest : public testing::Test {
protected:
    std::unique_ptr<EmbeddingQueue> startQueue(const FakeModelServer& server,
                                               EmbeddingQueue::Pauses pauses = {1ms, 5ms}) {
        return std::make_unique<EmbeddingQueue>(store, ModelServerAddress{.host = "127.0.0.1", .port = server.port()},
                                                "m", pauses, [this](std::string_view line) {
                                                    const std::scoped_lock lock(mutex);
                                                    lines.emplace_back(line);
                                                });
    }

    bool isQueueEmpty() { return !*store.nextUnembedded(0); }
    std::vector<std::string> log() {
        const std::scoped_lock lock(mutex);
        return lines;
    }
    std::vector<std::string> ranking(std::vector<float> query) {
        return emailsOf(store, Plan{{}, std::move(query), 5});
    }

    StoreFolder folder;
    SqliteStore store{folder.store(), "m"};
    std::mutex mutex;
    std::vector<std::string> lines;
};

/// East for texts about "east", north for all others.
FakeModelServer::Answer compass(const std::string& body) {
    return FakeModelServer::vector(body.find("east") != std::string::npos ? std::vector<double>{2, 0}
                                                                          : std::vector<double>{0, 2});
}

/// A store that runs out of memory once when it is asked what waits, or whenever it is asked for `tooLarge`.
class ScarceStore final : public Store {
public:
    explicit ScarceStore(Store& store, std::optional<std::int64_t> tooLarge = {})
        : m_store(store)
        , m_tooLarge(tooLarge)
        , m_isScarce(!tooLarge) {}
    Stored<void> insert(const Record& record) override { return m_store.insert(record); }
    Stored<bool> remove(std::string_view email) override { return m_store.remove(email); }
    Stored<std::optional<StoredPDF>> pdf(std::string_view email) override { return m_store.pdf(email); }
    Stored<std::string> pdfPiece(std::int64_t version, std::size_t at, std::size_t size) override {
        return m_store.pdfPiece(version, at, size);
    }
    Stored<std::unique_ptr<Rows>> run(const Plan& plan) override { return m_store.run(plan); }
    Stored<StoreStatus> status() override { return m_store.status(); }
    Stored<std::optional<std::int64_t>> nextUnembedded(std::int64_t afterId) override {
        if (std::exchange(m_isScarce, false)) {
            throw std::bad_alloc();
        }
        return m_store.nextUnembedded(afterId);
    }
    Stored<std::optional<Unembedded>> unembedded(std::int64_t id) override {
        if (id == m_tooLarge) {
            throw std::bad_alloc();
        }
        return m_store.unembedded(id);
    }
    Stored<bool> putVector(std::int64_t id, const std::vector<float>& vector) override {
        return m_store.putVector(id, vector);
    }

private:
    Store& m_store;
    std::optional<std::int64_t> m_tooLarge;
    bool m_isScarce; // of the queue's thread
};

} // namespace

TEST_F(EmbeddingQueueTest, UnexpectedFailurePausesTheQueueAndDoesNotEndTheProgram) {
    const FakeModelServer server(compass);
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    ScarceStore scarce(store);
    EmbeddingQueue queue(scarce, {.host = "127.0.0.1", .port = server.port()}, "m", {1ms, 5ms},
                         [this](std::string_view line) {
                             const std::scoped_lock lock(mutex);
                             lines.emplace_back(line);
                         });
    EXPECT_TRUE(waitUntil([this] { return isQueueEmpty(); }));
    EXPECT_THAT(log(), ElementsAre("embedding: it failed unexpectedly; trying again in 1 ms"));
}

TEST_F(EmbeddingQueueTest, CandidateThatFailsUnexpectedlyEachTimeHoldsNobodyUp) {
    const FakeModelServer server(compass);
    for (const char* const email : {"east@x", "large@x", "other@x"}) {
        ASSERT_TRUE(store.insert(makeRecord(email)));
    }
    ScarceStore scarce(store, queuedId(store, "large@x"));
    EmbeddingQueue queue(scarce, {.host = "127.0.0.1", .port = server.port()}, "m", {1ms, 5ms},
                         [this](std::string_view line) {
                             const std::scoped_lock lock(mutex);
                             lines.emplace_back(line);
                         });
    EXPECT_TRUE(waitUntil([this] { return queuedId(store, "other@x") == 0 && log().size() >= 4; }));
    queue.stop();
    EXPECT_THAT(ranking({1, 0}), ElementsAre("east@x", "other@x"));
    EXPECT_NE(queuedId(store, "large@x"), 0);
    const auto said = log();
    EXPECT_EQ(said[0], "embedding: it failed unexpectedly; trying again in 1 ms");
    EXPECT_EQ(said[3], "embedding: it failed unexpectedly; trying again in 5 ms");
}

TEST_F(EmbeddingQueueTest, LineThatCannotBeWrittenEndsNothing) {
    std::atomic<int> calls = 0;
    const FakeModelServer server(
        [&](const std::string& body) { return ++calls == 1 ? FakeModelServer::Answer{503, ""} : compass(body); });
    ASSERT_TRUE(store.insert(makeRecord("east@x")));
    const EmbeddingQueue queue(store, {.host = "127.0.0.1", .port = server.port()}, "m", {1ms, 5ms},
                               [](std::string_view) { throw std::bad_alloc(); });
    EXPECT_TRUE(waitUntil([this] { return isQueueEmpty(); }));
}

TEST_F(EmbeddingQueueTest, FillsWhatWaitsAtTheStartAndWhatComesLater) {
    const FakeModelServer server(compass);
    ASSERT_TRUE(store.insert(makeRecord("east@x")));
    const auto queue = startQueue(server);
    ASSERT_TRUE(waitUntil([&] { return isQueueEmpty(); }));
    ASSERT_TRUE(store.insert(makeRecord("other@x")));
    queue->wake();
    ASSERT_TRUE(waitUntil([&] { return isQueueEmpty(); }));
    queue->stop();
    EXPECT_THAT(ranking({1, 0}), ElementsAre("east@x", "other@x"));
    EXPECT_THAT(rowsOf(store, Plan{{}, std::vector<float>{1, 0}, 5})[0].score, 100) << "stored with unit length";
    EXPECT_EQ(server.requests().size(), 2U);
    EXPECT_TRUE(log().empty());
}

TEST_F(EmbeddingQueueTest, NameEmailGenderAndLanguagesNeverReachTheModelServer) {
    const FakeModelServer server(compass);
    Record record = makeRecord("ana@x", {"Femenino", {"Soft"}, {"Tech"}, {"Language"}});
    record.profession = "Contable";
    record.summarizedText = "Resumen";
    ASSERT_TRUE(store.insert(record));
    const auto queue = startQueue(server);
    ASSERT_TRUE(waitUntil([&] { return isQueueEmpty(); }));
    EXPECT_EQ(nlohmann::json::parse(server.requests().at(0)),
              (nlohmann::json{{"model", "m"}, {"input", "Contable\nResumen\nTech\nSoft"}}));
}

TEST_F(EmbeddingQueueTest, WhoeverItIsTheModelServerReadsTheSame) {
    const FakeModelServer server(compass);
    const auto insert = [&](const char* name, const char* email, const char* gender, const char* summary) {
        Record record = makeRecord(email, {gender, {}, {"Excel"}, {"Inglés"}});
        record.name = name;
        record.profession = "Contable";
        record.summarizedText = summary;
        ASSERT_TRUE(store.insert(record));
    };
    insert("Ana García", "anita@x.example", "Femenino",
           "La Dra. Ana García (anagarcia.com, ana_garcia, AnaGarcia92) lleva cuentas con la Prof.ª Ana; ana.garcia");
    insert("Luis Sanz Peña", "lsp@y.example", "Masculino",
           "El Dr. Luis Sanz Peña (sanzpena.com, luis_sanz, LuisSanz7) lleva cuentas con el Prof. Sanz; luis.sanz");
    const auto queue = startQueue(server);
    ASSERT_TRUE(waitUntil([&] { return isQueueEmpty(); }));
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_EQ(nlohmann::json::parse(requests[0])["input"], "Contable\n(, , ) lleva cuentas con ; \nExcel");
    EXPECT_EQ(requests[0], requests[1]);
}

TEST_F(EmbeddingQueueTest, ReplacedRecordGetsANewVector) {
    const FakeModelServer server(compass);
    const auto queue = startQueue(server);
    Record record = makeRecord("a@x");
    record.summarizedText = "to the east";
    ASSERT_TRUE(store.insert(record));
    queue->wake();
    ASSERT_TRUE(waitUntil([&] { return isQueueEmpty(); }));
    record.summarizedText = "to the north";
    ASSERT_TRUE(store.insert(record));
    queue->wake();
    ASSERT_TRUE(waitUntil([&] { return isQueueEmpty(); }));
    queue->stop();
    const auto rows = rowsOf(store, Plan{{}, std::vector<float>{0, 1}, 5});
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].score, 100);
}

TEST_F(EmbeddingQueueTest, ServerInTroubleIsTriedAgainUntilItAnswers) {
    std::atomic<int> calls = 0;
    const FakeModelServer server(
        [&](const std::string& body) { return ++calls < 4 ? FakeModelServer::Answer{503, "secret"} : compass(body); });
    ASSERT_TRUE(store.insert(makeRecord("east@x")));
    const auto queue = startQueue(server);
    ASSERT_TRUE(waitUntil([&] { return isQueueEmpty(); }));
    EXPECT_THAT(log(), ElementsAre("embedding: the model server answers with status 503; trying again in 1 ms",
                                   "embedding: the model server answers with status 503; trying again in 2 ms",
                                   "embedding: the model server answers with status 503; trying again in 4 ms"));
}

TEST_F(EmbeddingQueueTest, PauseIsNeverLongerThanTheLongest) {
    std::atomic<int> calls = 0;
    const FakeModelServer server(
        [&](const std::string& body) { return ++calls < 6 ? FakeModelServer::Answer{500, ""} : compass(body); });
    ASSERT_TRUE(store.insert(makeRecord("east@x")));
    const auto queue = startQueue(server);
    ASSERT_TRUE(waitUntil([&] { return isQueueEmpty(); }));
    EXPECT_THAT(log().back(), HasSubstr("trying again in 5 ms"));
}

TEST_F(EmbeddingQueueTest, ServerInTroublePausesTheWholeQueue) {
    const FakeModelServer server([](const std::string&) { return FakeModelServer::Answer{404, ""}; });
    for (int i = 0; i < 5; ++i) {
        ASSERT_TRUE(store.insert(makeRecord(std::to_string(i))));
    }
    const auto queue = startQueue(server, {1h, 1h});
    ASSERT_TRUE(waitUntil([&] { return !log().empty(); }));
    queue->wake();
    queue->stop();
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(EmbeddingQueueTest, TextThatIsNotTakenHoldsNobodyUp) {
    const FakeModelServer server([](const std::string& body) {
        return body.find("Summary of bad") != std::string::npos ? FakeModelServer::Answer{400, ""} : compass(body);
    });
    ASSERT_TRUE(store.insert(makeRecord("bad")));
    ASSERT_TRUE(store.insert(makeRecord("east@x")));
    const auto queue = startQueue(server, {1h, 1h});
    ASSERT_TRUE(waitUntil([&] { return queuedId(store, "east@x") == 0; }));
    queue->stop();
    EXPECT_NE(queuedId(store, "bad"), 0);
    EXPECT_THAT(log(), ElementsAre(HasSubstr("status 400; trying again in 3600000 ms")));
    EXPECT_THAT(ranking({1, 0}), ElementsAre("east@x"));
}

TEST_F(EmbeddingQueueTest, TextThatIsNotTakenIsTriedAgain) {
    std::atomic<int> calls = 0;
    const FakeModelServer server([&](const std::string& body) {
        return ++calls < 3 ? FakeModelServer::Answer{200, "{\"embeddings\":[]}"} : compass(body);
    });
    ASSERT_TRUE(store.insert(makeRecord("east@x")));
    const auto queue = startQueue(server);
    ASSERT_TRUE(waitUntil([&] { return isQueueEmpty(); }));
    EXPECT_EQ(log().size(), 2U);
}

TEST_F(EmbeddingQueueTest, VectorWithoutDirectionOrOfAnotherLengthIsNotStored) {
    const FakeModelServer server([](const std::string& body) {
        if (body.find("Summary of zero") != std::string::npos) {
            return FakeModelServer::vector({0, 0});
        }
        return body.find("Summary of long") != std::string::npos ? FakeModelServer::vector({1, 0, 0}) : compass(body);
    });
    for (const char* const email : {"east@x", "zero", "long", "last@x"}) {
        ASSERT_TRUE(store.insert(makeRecord(email)));
    }
    const auto queue = startQueue(server, {1h, 1h});
    ASSERT_TRUE(waitUntil([&] { return queuedId(store, "last@x") == 0; }));
    queue->stop();
    EXPECT_THAT(ranking({1, 0}), ElementsAre("east@x", "last@x"));
    EXPECT_THAT(log(), Contains(HasSubstr("the model server's vector has no direction")));
    EXPECT_THAT(log(), Contains(HasSubstr("the new vector has 3 numbers, the stored vectors have 2")));
}

TEST_F(EmbeddingQueueTest, LogHoldsNothingOfACandidate) {
    const FakeModelServer server([](const std::string& body) { return FakeModelServer::Answer{400, body}; });
    ASSERT_TRUE(store.insert(makeRecord("ana@x")));
    const auto queue = startQueue(server);
    ASSERT_TRUE(waitUntil([&] { return log().size() >= 2; }));
    EXPECT_THAT(log(), Not(Contains(HasSubstr("ana"))));
}

TEST_F(EmbeddingQueueTest, StopGivesARunningCallUpAndLeavesItQueued) {
    std::latch arrived(1);
    std::latch released(1);
    const FakeModelServer server([&](const std::string& body) {
        arrived.count_down();
        released.wait();
        return compass(body);
    });
    ASSERT_TRUE(store.insert(makeRecord("east@x")));
    const auto queue = startQueue(server);
    arrived.wait();
    queue->stop();
    released.count_down();
    EXPECT_NE(queuedId(store, "east@x"), 0);
    EXPECT_TRUE(log().empty());
}

TEST_F(EmbeddingQueueTest, WhatWaitsSurvivesAQueue) {
    ASSERT_TRUE(store.insert(makeRecord("east@x")));
    {
        const FakeModelServer server([](const std::string&) { return FakeModelServer::Answer{503, ""}; });
        const auto queue = startQueue(server);
        ASSERT_TRUE(waitUntil([&] { return !log().empty(); }));
    }
    const FakeModelServer server(compass);
    const auto queue = startQueue(server);
    ASSERT_TRUE(waitUntil([&] { return isQueueEmpty(); }));
    queue->stop();
    EXPECT_THAT(ranking({1, 0}), ElementsAre("east@x"));
}
