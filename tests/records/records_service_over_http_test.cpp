// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Sanitizers.h"
#include "records/APIRequest.h"

#include "tests/records/SampleRecords.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeHttpSession.h"
#include "tests/support/Print.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Wait.h"

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::CapturedOutput;
using test::sampleRecord;
using test::ScriptedReply;
using test::ScriptedServer;
using test::waitUntil;
using testing::_;
using testing::ElementsAre;
using Way = ScriptedReply::Way;

using ListResult = std::expected<std::vector<DBRecordPointer>, APIError>;

auto startsWith(const QString& beginning) {
    return testing::Truly([beginning](const QString& text) { return text.startsWith(beginning); });
}

/// The records service as it behaves on a bad day, over a real connection.
struct RecordsServiceOverHttp : testing::Test {
    NetworkHttpSession session;

    std::optional<ListResult> fetchAll(const QString& base) {
        std::optional<ListResult> result;
        APIRequest api(session, base);
        CapturedOutput output;
        api.fetchAll([&result](ListResult received) { result = std::move(received); });
        EXPECT_TRUE(waitUntil([&] { return result.has_value(); }, patienceMs));
        lines = output.lines();
        return result;
    }
    std::optional<ListResult> fetchAll(const ScriptedReply& reply) {
        const ScriptedServer server(reply);
        return fetchAll(server.url() + u"/curriculums"_s);
    }

    static constexpr int patienceMs = isSanitized ? 100'000 : 10'000;
    QStringList lines;
};

TEST_F(RecordsServiceOverHttp, RefusedConnectionIsANetworkError) {
    QString base;
    {
        const ScriptedServer gone(ScriptedReply{});
        base = gone.url();
    }
    EXPECT_EQ(fetchAll(base)->error(), APIError::responseProblem);
    EXPECT_THAT(lines, ElementsAre(u"❌ Network Error: Connection refused"_s));
}

TEST_F(RecordsServiceOverHttp, CutConnectionsAreNetworkErrors) {
    for (const Way way : {Way::Cut, Way::CutInBody}) {
        EXPECT_EQ(fetchAll(ScriptedReply{.body = R"({"response":[]})", .way = way})->error(),
                  APIError::responseProblem);
        EXPECT_THAT(lines, ElementsAre(startsWith(u"❌ Network Error: "_s)));
    }
}

TEST_F(RecordsServiceOverHttp, AnswerInAnotherProtocolIsANetworkError) {
    EXPECT_EQ(fetchAll(ScriptedReply{.body = "220 mail.example.com ESMTP\r\n", .way = Way::NotHttp})->error(),
              APIError::responseProblem);
    EXPECT_THAT(lines, ElementsAre(startsWith(u"❌ Network Error: "_s)));
}

TEST_F(RecordsServiceOverHttp, ErrorBodiesOfEveryKindAreLoggedAsTheyCame) {
    for (const QByteArray& body : {R"({"error": "store is locked"})"_ba, "try later"_ba,
                                   "<html>\r\n<body>502 Bad Gateway</body>\r\n</html>"_ba}) {
        EXPECT_EQ(fetchAll(ScriptedReply{.status = 500, .body = body})->error(), APIError::responseProblem);
        EXPECT_EQ(lines.join(u'\n'),
                  u"ℹ️ HTTP Status Code: 500\n❌ HTTP Error: Expected 200, got 500\n❌ Response body: "_s +
                      QString::fromUtf8(body));
    }
    fetchAll(ScriptedReply{.status = 500, .body = {}});
    EXPECT_THAT(lines, ElementsAre(u"ℹ️ HTTP Status Code: 500"_s, u"❌ HTTP Error: Expected 200, got 500"_s));
}

TEST_F(RecordsServiceOverHttp, StatusWithoutABodyHasNoData) {
    EXPECT_EQ(fetchAll(ScriptedReply{.status = 200, .body = {}})->error(), APIError::responseProblem);
    EXPECT_THAT(lines, ElementsAre(u"ℹ️ HTTP Status Code: 200"_s, u"❌ No data received from server"_s));
}

TEST_F(RecordsServiceOverHttp, SlowAnswerIsWaitedFor) {
    ScriptedServer server(ScriptedReply{.body = R"({"response":[]})", .held = true});
    APIRequest api(session, server.url());
    const CapturedOutput output;
    std::optional<ListResult> result;
    api.fetchAll([&result](ListResult received) { result = std::move(received); });
    ASSERT_TRUE(waitUntil([&] { return server.heldCount() == 1; }));
    EXPECT_FALSE(result.has_value());
    server.release();
    ASSERT_TRUE(waitUntil([&] { return result.has_value(); }));
    EXPECT_TRUE(result->has_value());
}

TEST_F(RecordsServiceOverHttp, KeysReachTheServiceAsTheirPathsSay) {
    ScriptedServer server(ScriptedReply{.status = 204});
    APIRequest api(session, server.url() + u"/curriculums"_s);
    CapturedOutput output;
    const QString key = u"o'neil maría+x@example.com"_s;
    api.deleteResume(key);
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 1; }));
    EXPECT_EQ(server.requests()[0].method, "DELETE");
    EXPECT_EQ(server.requests()[0].target, "/curriculums/o'neil%20mar%C3%ADa+x@example.com");
    EXPECT_EQ(server.requests()[0].body, "\"o'neil maría+x@example.com\"");
    EXPECT_EQ(server.requests()[0].headers["content-type"], "application/json");
    bool done = false;
    api.fetchPDF(key, [&done](const auto&) { done = true; });
    ASSERT_TRUE(waitUntil([&] { return done; }));
    EXPECT_EQ(server.requests()[1].method, "GET");
    EXPECT_EQ(server.requests()[1].target, "/curriculums/o'neil%20mar%C3%ADa+x@example.com/file");
    EXPECT_EQ(server.requests()[1].headers["content-type"], "application/json");
    EXPECT_THAT(output.lines(), ElementsAre(u"Resume deleted successfully from database"_s,
                                            u"❌ HTTP Error loading PDF: Expected 200, got 204"_s));
}

TEST_F(RecordsServiceOverHttp, InsertIsSentOnceEvenWhenTheConnectionIsCut) {
    ScriptedServer server(ScriptedReply{.way = Way::Cut});
    APIRequest api(session, server.url());
    CapturedOutput output;
    std::optional<APIError> error;
    api.insertResume(*sampleRecord(), [&error](const auto& result) { error = result.error(); });
    ASSERT_TRUE(waitUntil([&] { return error.has_value(); }));
    EXPECT_EQ(error, APIError::responseProblem);
    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_THAT(output.lines(), ElementsAre(_, startsWith(u"❌ Network Error in insertResume: "_s)));
}

TEST_F(RecordsServiceOverHttp, InsertWithALargePDFArrivesWholeAndComesBack) {
    ScriptedServer server(
        [](const test::ScriptedRequest& request) { return ScriptedReply{.status = 201, .body = request.body}; });
    APIRequest api(session, server.url());
    CapturedOutput output;
    const DBRecordPointer record = sampleRecord();
    record->file = QByteArray(10 * 1024 * 1024, '\xA5');
    std::optional<std::expected<DBRecord, APIError>> result;
    api.insertResume(*record, [&result](auto received) { result = std::move(received); });
    ASSERT_TRUE(waitUntil([&] { return result.has_value(); }));
    ASSERT_TRUE(result->has_value());
    EXPECT_TRUE((**result == record->toDBRecord()));
    EXPECT_THAT(output.lines(), ElementsAre(u"📤 Attempting to insert resume for ana@example.com to "_s + server.url(),
                                            u"✅ Successfully inserted resume for ana@example.com"_s));
}

TEST_F(RecordsServiceOverHttp, DestructionGivesUpTheRequest) {
    ScriptedServer server(ScriptedReply{.way = Way::Stall});
    auto api = std::make_unique<APIRequest>(session, server.url());
    bool completed = false;
    api->fetchAll([&completed](const auto&) { completed = true; });
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 1; }));
    api.reset();
    EXPECT_TRUE(waitUntil([&] { return server.openConnections() == 0; }));
    EXPECT_FALSE(completed);
}

QByteArray longList(qsizetype bytes) {
    const QByteArray record = R"({"name":"Ana","profession":"Contable","email":"ana@example.com","summarizedText":")" +
                              QByteArray("Gestión de equipos. ").repeated(40) +
                              R"(","jsonCVData":{"gender":"Femenino","softSkills":["A"],"techSkills":["X"],)"
                              R"("languages":["Español"]}})";
    QByteArray body = "{\"response\":[" + record;
    body.reserve(bytes + record.size() + 16);
    while (body.size() < bytes) {
        body += ',';
        body += record;
    }
    return body += "]}";
}

TEST_F(RecordsServiceOverHttp, ListOfAHundredMegabytesArrivesWhole) {
    const QByteArray body = longList(100'000'000);
    const auto result = fetchAll(ScriptedReply{.body = body});
    ASSERT_TRUE(result->has_value());
    EXPECT_EQ(static_cast<qsizetype>((*result)->size()), body.count("\"name\""));
    EXPECT_THAT(lines, ElementsAre(u"ℹ️ HTTP Status Code: 200"_s, u"ℹ️ Received data: %1 bytes"_s.arg(body.size())));
}

TEST(RecordsServiceAnswers, WindowStaysAliveWhileAHundredMegabytesAreDecoded) {
    test::FakeHttpSession session;
    APIRequest api(session, u"http://records.test/curriculums"_s);
    const CapturedOutput output;
    const QByteArray body = longList(100'000'000);
    std::optional<ListResult> result;
    api.fetchAll([&](ListResult received) { result = std::move(received); });

    QElapsedTimer sinceAnswer;
    sinceAnswer.start();
    session.answer(200, body);
    EXPECT_FALSE(result.has_value()) << "decoded before the event loop had its turn";

    // What a window does meanwhile: it takes every turn that it is given.
    qint64 longestPause = sinceAnswer.elapsed();
    int turns = 0;
    QElapsedTimer sinceTurn;
    sinceTurn.start();
    QTimer window;
    QObject::connect(&window, &QTimer::timeout, &window, [&] {
        ++turns;
        longestPause = std::max(longestPause, sinceTurn.restart());
    });
    window.start(1);
    ASSERT_TRUE(waitUntil([&] { return result.has_value(); }, 60'000));
    EXPECT_TRUE(result->has_value());
    // However busy the machine is, decoding in one piece on this thread would be one pause as long as all of it.
    EXPECT_GT(turns, 10);
    EXPECT_LT(longestPause, sinceAnswer.elapsed() / 2);
}

} // namespace
} // namespace dorvantel
