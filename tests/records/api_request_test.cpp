// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "records/APIRequest.h"

#include "tests/records/SampleRecords.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeHttpSession.h"
#include "tests/support/Print.h"
#include "tests/support/Wait.h"

#include <QThreadPool>

#include <memory>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::CapturedOutput;
using test::FakeHttpSession;
using test::sampleRecord;
using test::waitUntil;
using testing::ElementsAre;

const QString base = u"http://records.test/curriculums"_s;

/// What one call came to: its result and the lines it wrote.
template <typename Value>
struct Outcome {
    std::optional<std::expected<Value, APIError>> result;
    int completions = 0;
    QStringList lines;

    auto completion() {
        return [this](std::expected<Value, APIError> received) {
            result = std::move(received);
            ++completions;
        };
    }
};

const std::unexpected<TransportError> noNetwork{TransportError{u"Connection refused"_s}};

struct APIRequestTest : testing::Test {
    FakeHttpSession session;
    std::unique_ptr<APIRequest> api = std::make_unique<APIRequest>(session, base);

    template <typename Value, typename Call>
    Outcome<Value> run(Call call, HttpOutcome answer) {
        Outcome<Value> outcome;
        CapturedOutput output;
        call(outcome.completion());
        EXPECT_EQ(outcome.completions, 0) << "completed inside the call";
        session.answer(std::move(answer));
        EXPECT_TRUE(waitUntil([&] { return outcome.completions > 0; }));
        outcome.lines = output.lines();
        EXPECT_EQ(outcome.completions, 1);
        return outcome;
    }

    auto fetchAll(HttpOutcome answer) {
        return run<std::vector<DBRecordPointer>>([this](auto done) { api->fetchAll(done); }, std::move(answer));
    }
    auto fetchPDF(const QString& key, HttpOutcome answer) {
        return run<std::optional<QByteArray>>([&](auto done) { api->fetchPDF(key, done); }, std::move(answer));
    }
    auto insert(const DBRecordRepresentation& record, HttpOutcome answer) {
        return run<DBRecord>([&](auto done) { api->insertResume(record, done); }, std::move(answer));
    }
    auto search(const QString& sql, HttpOutcome answer) {
        return run<std::shared_ptr<IdentifiableSearchResponse>>([&](auto done) { api->search(sql, done); },
                                                                std::move(answer));
    }
    QStringList deleted(const QString& key, HttpOutcome answer) {
        CapturedOutput output;
        api->deleteResume(key);
        session.answer(std::move(answer));
        return output.lines();
    }
};

HttpOutcome reply(int status, const QByteArray& body) {
    return HttpResponse{status, body};
}

HttpOutcome notHttp() {
    return HttpResponse{std::nullopt, "text"};
}

const QByteArray listedRecord = R"({"name":"Ana","profession":"Contable","email":"ana@example.com",)"
                                R"("summarizedText":"Resumen","invitationMail":"Estimada Ana",)"
                                R"("jsonCVData":{"gender":"Femenino","softSkills":["A"],"techSkills":["X"],)"
                                R"("languages":["Español"]}})";

QByteArray listOf(const QByteArray& record) {
    return "{\"response\":[" + record + "]}";
}

QByteArray without(QByteArray record, const QByteArray& member) {
    EXPECT_TRUE(record.contains(member));
    return record.replace(member, "");
}

// What is sent

TEST_F(APIRequestTest, EveryRequestCarriesTheJsonContentTypeAndSixtySeconds) {
    const CapturedOutput output;
    api->fetchAll([](auto) {});
    api->fetchPDF(u"ana@example.com"_s, [](auto) {});
    api->insertResume(*sampleRecord(), [](auto) {});
    api->deleteResume(u"ana@example.com"_s);
    api->search(u"SELECT"_s, [](auto) {});
    ASSERT_EQ(session.requests().size(), 5);
    for (const HttpRequest& request : session.requests()) {
        EXPECT_EQ(request.contentType, "application/json");
        EXPECT_EQ(request.timeout, std::chrono::seconds(60));
    }
}

TEST_F(APIRequestTest, MethodsPathsAndBodiesAreThoseOfTheService) {
    using Method = HttpRequest::Method;
    const CapturedOutput output;
    api->fetchAll([](auto) {});
    api->fetchPDF(u"ana@example.com"_s, [](auto) {});
    api->insertResume(*sampleRecord(), [](auto) {});
    api->deleteResume(u"ana@example.com"_s);
    api->search(u"SELECT \"a\""_s, [](auto) {});
    const QList<HttpRequest>& sent = session.requests();
    ASSERT_EQ(sent.size(), 5);
    EXPECT_EQ(sent[0].method, Method::Get);
    EXPECT_EQ(sent[0].url.toEncoded(), "http://records.test/curriculums");
    EXPECT_EQ(sent[0].body, QByteArray());
    EXPECT_EQ(sent[1].method, Method::Get);
    EXPECT_EQ(sent[1].url.toEncoded(), "http://records.test/curriculums/ana@example.com/file");
    EXPECT_EQ(sent[1].body, QByteArray());
    EXPECT_EQ(sent[2].method, Method::Post);
    EXPECT_EQ(sent[2].url.toEncoded(), "http://records.test/curriculums");
    EXPECT_EQ(sent[3].method, Method::Delete);
    EXPECT_EQ(sent[3].url.toEncoded(), "http://records.test/curriculums/ana@example.com");
    EXPECT_EQ(sent[3].body, "\"ana@example.com\"");
    EXPECT_EQ(sent[4].method, Method::Post);
    EXPECT_EQ(sent[4].url.toEncoded(), "http://records.test/curriculums/search");
    EXPECT_EQ(sent[4].body, R"({"sql":"SELECT \"a\""})");
}

TEST_F(APIRequestTest, InsertSendsTheRecordWithItsCVDataAsTextAndItsPDFAsBase64) {
    const CapturedOutput output;
    const DBRecordPointer record = sampleRecord();
    record->file = "%PDF";
    api->insertResume(*record, [](auto) {});
    EXPECT_EQ(session.requests().last().body,
              R"({"name":"Ana","profession":"Contable","email":"ana@example.com","summarizedText":"Resumen",)"
              R"("invitationMail":"Estimada Ana","jsonCVData":"{\"gender\":\"Femenino\",\"softSkills\":[\"A\"],)"
              R"(\"techSkills\":[\"X\"],\"languages\":[\"Español\"]}","file":"JVBERg=="})");
}

TEST_F(APIRequestTest, DefaultBaseUrlIsTheOneOfTheBuild) {
    EXPECT_TRUE(APIRequest::defaultBaseUrl().endsWith(u"/curriculums"_s));
    const APIRequest byDefault(session);
}

TEST_F(APIRequestTest, KeyIsPercentEncodedInTheDownloadPathButNotInTheDeletePath) {
    const CapturedOutput output;
    const QString key = u"ana maría/x?#%[]@example.com"_s;
    api->fetchPDF(key, [](auto) {});
    EXPECT_EQ(session.requests()[0].url.toEncoded(),
              "http://records.test/curriculums/ana%20mar%C3%ADa/x%3F%23%25%5B%5D@example.com/file");
    api->deleteResume(key);
    EXPECT_EQ(session.requests()[1].url.query(), u""_s);
    EXPECT_EQ(session.requests()[1].url.fragment(QUrl::FullyDecoded), u"%[]@example.com"_s);
    EXPECT_EQ(session.requests()[1].url.path(), u"/curriculums/ana maría/x"_s);
    EXPECT_EQ(session.requests()[1].body, "\"ana maría/x?#%[]@example.com\"");
}

TEST_F(APIRequestTest, CharactersOfAUrlPathStayAsTheyAreInTheDownloadPath) {
    const CapturedOutput output;
    api->fetchPDF(u"aZ09-._~!$&'()*+,;=:@/"_s, [](auto) {});
    EXPECT_EQ(session.requests()[0].url.toEncoded(), "http://records.test/curriculums/aZ09-._~!$&'()*+,;=:@//file");
}

TEST_F(APIRequestTest, DeleteBodyIsTheKeyWithJsonEscapes) {
    const CapturedOutput output;
    api->deleteResume(u"a\"b\\c\nñ"_s);
    EXPECT_EQ(session.requests()[0].body, "\"a\\\"b\\\\c\\nñ\"");
}

TEST_F(APIRequestTest, ConstantUrlThatDoesNotParseStopsTheProgram) {
    APIRequest broken(session, u"http://[not-an-address/curriculums"_s);
    EXPECT_DEATH(broken.fetchAll([](auto) {}), "Fatal error");
    EXPECT_DEATH(broken.insertResume(*sampleRecord(), [](auto) {}), "Fatal error");
    EXPECT_DEATH(broken.deleteResume(u"a"_s), "Fatal error");
    EXPECT_DEATH(broken.search(u"a"_s, [](auto) {}), "Fatal error");
}

TEST_F(APIRequestTest, DownloadUrlThatDoesNotParseIsAResponseProblemAndNothingIsSent) {
    APIRequest broken(session, u"http://[not-an-address/curriculums"_s);
    std::optional<APIError> error;
    CapturedOutput output;
    broken.fetchPDF(u"ana@example.com"_s, [&error](const auto& result) { error = result.error(); });
    EXPECT_FALSE(error.has_value()) << "completed inside the call";
    EXPECT_TRUE(waitUntil([&] { return error.has_value(); }));
    EXPECT_EQ(error, APIError::responseProblem);
    EXPECT_TRUE(session.requests().isEmpty());
    EXPECT_EQ(output.lines(), QStringList());
}

// List

TEST_F(APIRequestTest, EmptyListCompletesAfterTheStatusAndTheLength) {
    const auto outcome = fetchAll(reply(200, R"({"response":[]})"));
    ASSERT_TRUE(outcome.result->has_value());
    EXPECT_TRUE((*outcome.result)->empty());
    EXPECT_THAT(outcome.lines, ElementsAre(u"ℹ️ HTTP Status Code: 200"_s, u"ℹ️ Received data: 15 bytes"_s));
}

TEST_F(APIRequestTest, LengthThatIsLoggedIsThatOfTheBytes) {
    const auto outcome = fetchAll(reply(200, R"({"response": []})"));
    EXPECT_THAT(outcome.lines, ElementsAre(u"ℹ️ HTTP Status Code: 200"_s, u"ℹ️ Received data: 16 bytes"_s));
}

TEST_F(APIRequestTest, ListedRecordsBecomeCandidatesInOrder) {
    const QByteArray second = QByteArray(listedRecord).replace("Ana", "Luis").replace("ana@", "luis@");
    const auto outcome = fetchAll(reply(200, listOf(listedRecord + "," + second)));
    ASSERT_TRUE(outcome.result->has_value());
    const std::vector<DBRecordPointer>& records = **outcome.result;
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0]->name, u"Ana"_s);
    EXPECT_EQ(records[0]->profession, u"Contable"_s);
    EXPECT_EQ(records[0]->email, u"ana@example.com"_s);
    EXPECT_EQ(records[0]->summarizedText, u"Resumen"_s);
    EXPECT_EQ(records[0]->invitationMail, u"Estimada Ana"_s);
    EXPECT_EQ(records[0]->jsonCVData, (JSONCVData{u"Femenino"_s, {u"A"_s}, {u"X"_s}, {u"Español"_s}}));
    EXPECT_EQ(records[0]->file, std::nullopt);
    EXPECT_TRUE(records[0]->pdfLoadCallbacks.empty());
    EXPECT_EQ(records[1]->name, u"Luis"_s);
    EXPECT_NE(records[0]->id, records[1]->id);
}

TEST_F(APIRequestTest, ListedRecordWithoutMailDecodes) {
    const auto outcome = fetchAll(reply(200, listOf(without(listedRecord, R"("invitationMail":"Estimada Ana",)"))));
    ASSERT_TRUE(outcome.result->has_value());
    EXPECT_EQ((**outcome.result)[0]->invitationMail, std::nullopt);
}

TEST_F(APIRequestTest, ListedRecordWithoutSummaryFailsTheWholeList) {
    const QByteArray body = listOf(listedRecord + "," + without(listedRecord, R"("summarizedText":"Resumen",)"));
    const auto outcome = fetchAll(reply(200, body));
    EXPECT_EQ(outcome.result->error(), APIError::decodingProblem);
    EXPECT_THAT(outcome.lines,
                ElementsAre(u"ℹ️ HTTP Status Code: 200"_s, u"ℹ️ Received data: %1 bytes"_s.arg(body.size()),
                            u"❌ Decoding Error: Key 'summarizedText' not found"_s,
                            u"   Context: The object has no key \"summarizedText\"."_s,
                            u"   Coding Path: [\"response\", \"Index 1\"]"_s,
                            u"   Raw JSON: "_s + QString::fromUtf8(body).left(500) + u"..."_s));
}

TEST_F(APIRequestTest, ListedPDFBytesAreNotKept) {
    QByteArray record = listedRecord;
    record.chop(1);
    const auto outcome = fetchAll(reply(200, listOf(record + R"(,"file":[37,80,68,70]})")));
    ASSERT_TRUE(outcome.result->has_value());
    EXPECT_EQ((**outcome.result)[0]->file, std::nullopt);
}

TEST_F(APIRequestTest, ListThatCannotBeReachedIsANetworkError) {
    const auto outcome = fetchAll(noNetwork);
    EXPECT_EQ(outcome.result->error(), APIError::responseProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(u"❌ Network Error: Connection refused"_s));
}

TEST_F(APIRequestTest, ListAnswerThatIsNotHttpIsAnInvalidType) {
    const auto outcome = fetchAll(notHttp());
    EXPECT_EQ(outcome.result->error(), APIError::responseProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(u"❌ Invalid response type"_s));
}

TEST_F(APIRequestTest, ListWithAnotherStatusShowsTheBodyWhenItIsText) {
    const auto json = fetchAll(reply(500, "{\"error\": \"¡no!\"}"));
    EXPECT_EQ(json.result->error(), APIError::responseProblem);
    EXPECT_THAT(json.lines, ElementsAre(u"ℹ️ HTTP Status Code: 500"_s, u"❌ HTTP Error: Expected 200, got 500"_s,
                                        u"❌ Response body: {\"error\": \"¡no!\"}"_s));
    const auto created = fetchAll(reply(201, listOf(listedRecord)));
    EXPECT_EQ(created.result->error(), APIError::responseProblem);
    EXPECT_THAT(created.lines, ElementsAre(u"ℹ️ HTTP Status Code: 201"_s, u"❌ HTTP Error: Expected 200, got 201"_s,
                                           u"❌ Response body: "_s + QString::fromUtf8(listOf(listedRecord))));
    const auto binary = fetchAll(reply(502, "\xFF\xFE"));
    EXPECT_THAT(binary.lines, ElementsAre(u"ℹ️ HTTP Status Code: 502"_s, u"❌ HTTP Error: Expected 200, got 502"_s));
    const auto empty = fetchAll(reply(503, {}));
    EXPECT_THAT(empty.lines, ElementsAre(u"ℹ️ HTTP Status Code: 503"_s, u"❌ HTTP Error: Expected 200, got 503"_s));
}

TEST_F(APIRequestTest, ListWithoutABodyIsAResponseProblem) {
    const auto outcome = fetchAll(reply(200, {}));
    EXPECT_EQ(outcome.result->error(), APIError::responseProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(u"ℹ️ HTTP Status Code: 200"_s, u"❌ No data received from server"_s));
}

TEST_F(APIRequestTest, ListOfAnotherTypeIsATypeMismatchWithoutTheRawText) {
    const auto outcome = fetchAll(reply(200, R"({"response":{}})"));
    EXPECT_EQ(outcome.result->error(), APIError::decodingProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(u"ℹ️ HTTP Status Code: 200"_s, u"ℹ️ Received data: 15 bytes"_s,
                                           u"❌ Decoding Error: Type mismatch for type Array<Any>"_s,
                                           u"   Context: Expected Array<Any> but found an object."_s,
                                           u"   Coding Path: [\"response\"]"_s));
}

TEST_F(APIRequestTest, NullInARequiredFieldIsAValueNotFoundWithoutTheRawText) {
    const QByteArray body = listOf(QByteArray(listedRecord).replace("\"Contable\"", "null"));
    const auto outcome = fetchAll(reply(200, body));
    EXPECT_EQ(outcome.result->error(), APIError::decodingProblem);
    EXPECT_THAT(outcome.lines,
                ElementsAre(u"ℹ️ HTTP Status Code: 200"_s, u"ℹ️ Received data: %1 bytes"_s.arg(body.size()),
                            u"❌ Decoding Error: Value of type String not found"_s,
                            u"   Context: Expected String but found null."_s,
                            u"   Coding Path: [\"response\", \"Index 0\", \"profession\"]"_s));
}

TEST_F(APIRequestTest, ListThatIsNotJsonIsDataCorruptedAndShowsItsBeginning) {
    const auto outcome = fetchAll(reply(200, "<html></html>"));
    EXPECT_EQ(outcome.result->error(), APIError::decodingProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(u"ℹ️ HTTP Status Code: 200"_s, u"ℹ️ Received data: 13 bytes"_s,
                                           u"❌ Decoding Error: Data corrupted"_s,
                                           u"   Context: The body is not valid JSON: error at byte 0."_s,
                                           u"   Raw JSON: <html></html>..."_s));
}

TEST_F(APIRequestTest, ListThatIsNotUtf8HasNoRawText) {
    const auto outcome = fetchAll(reply(200, "{\"a\":\"\xFF\"}"));
    EXPECT_EQ(outcome.result->error(), APIError::decodingProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(u"ℹ️ HTTP Status Code: 200"_s, u"ℹ️ Received data: 9 bytes"_s,
                                           u"❌ Decoding Error: Data corrupted"_s,
                                           u"   Context: The body is not valid JSON: error at byte 6."_s));
}

TEST_F(APIRequestTest, RawTextIsFiveHundredCharactersAsPeopleCountThem) {
    const QString family = u"👩‍👩‍👧"_s;
    const auto outcome = fetchAll(reply(200, (u"["_s + family.repeated(600)).toUtf8()));
    EXPECT_EQ(outcome.lines.last(), u"   Raw JSON: ["_s + family.repeated(499) + u"..."_s);
}

TEST_F(APIRequestTest, TwoCallsCompleteInTheOrderOfTheirAnswers) {
    const CapturedOutput output;
    QStringList order;
    api->fetchPDF(u"a"_s, [&](const auto&) { order.append(u"pdf"_s); });
    api->fetchAll([&](const auto&) { order.append(u"list"_s); });
    session.answer(200, "{}");
    session.answer(200, R"({"response":[]})");
    EXPECT_THAT(order, ElementsAre(u"pdf"_s, u"list"_s));
}

// PDF

TEST_F(APIRequestTest, PDFBytesArriveInOrder) {
    const auto outcome = fetchPDF(u"a@b"_s, reply(200, R"({"file":[37,80,68,70,0,255]})"));
    EXPECT_EQ(**outcome.result, QByteArray("%PDF\0\xFF", 6));
    EXPECT_EQ(outcome.lines, QStringList());
}

TEST_F(APIRequestTest, PDFAnswerWithoutBytesIsASuccessWithoutBytes) {
    for (const QByteArray& body : {R"({"file":[]})"_ba, "{}"_ba, R"({"file":null})"_ba}) {
        const auto outcome = fetchPDF(u"ana@example.com"_s, reply(200, body));
        ASSERT_TRUE(outcome.result->has_value());
        EXPECT_EQ(**outcome.result, std::nullopt);
        EXPECT_THAT(outcome.lines, ElementsAre(u"ℹ️ No PDF data for ana@example.com"_s));
    }
}

TEST_F(APIRequestTest, PDFThatCannotBeReachedNamesTheKey) {
    const auto outcome = fetchPDF(u"ana@example.com"_s, noNetwork);
    EXPECT_EQ(outcome.result->error(), APIError::responseProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(u"❌ Network Error loading PDF for ana@example.com: Connection refused"_s));
}

TEST_F(APIRequestTest, PDFAnswerThatIsNotHttpIsAnInvalidType) {
    const auto outcome = fetchPDF(u"a"_s, notHttp());
    EXPECT_EQ(outcome.result->error(), APIError::responseProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(u"❌ Invalid response type"_s));
}

TEST_F(APIRequestTest, PDFWithAnotherStatusShowsTheBodyWhenItIsText) {
    const auto outcome = fetchPDF(u"a"_s, reply(404, "<h1>no</h1>"));
    EXPECT_EQ(outcome.result->error(), APIError::responseProblem);
    EXPECT_THAT(outcome.lines,
                ElementsAre(u"❌ HTTP Error loading PDF: Expected 200, got 404"_s, u"❌ Response body: <h1>no</h1>"_s));
    EXPECT_THAT(fetchPDF(u"a"_s, reply(404, "\xC3")).lines,
                ElementsAre(u"❌ HTTP Error loading PDF: Expected 200, got 404"_s));
}

TEST_F(APIRequestTest, PDFWithoutABodyIsAResponseProblem) {
    const auto outcome = fetchPDF(u"a"_s, reply(200, {}));
    EXPECT_EQ(outcome.result->error(), APIError::responseProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(u"❌ No data received"_s));
}

TEST_F(APIRequestTest, PDFThatDoesNotDecodeIsADecodingProblemOnOneLine) {
    const auto outcome = fetchPDF(u"a"_s, reply(200, R"({"file":"JVBERg=="})"));
    EXPECT_EQ(outcome.result->error(), APIError::decodingProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(u"❌ Decoding Error loading PDF: typeMismatch Array<Any> "
                                           "(Expected Array<Any> but found a string. [\"file\"])"_s));
}

// Insert

TEST_F(APIRequestTest, InsertCompletesWithWhatTheServiceStored) {
    const QByteArray stored =
        R"({"name":"Ana","profession":"Contable","email":"otra@example.com","summarizedText":"R",)"
        R"("invitationMail":"M","jsonCVData":"{}","file":"JVBERg==","extra":1})";
    const auto outcome = insert(*sampleRecord(), reply(201, stored));
    ASSERT_TRUE(outcome.result->has_value());
    EXPECT_EQ(**outcome.result,
              (DBRecord{u"Ana"_s, u"Contable"_s, u"otra@example.com"_s, u"R"_s, u"M"_s, u"{}"_s, "%PDF"_ba}));
    EXPECT_THAT(outcome.lines, ElementsAre(u"📤 Attempting to insert resume for ana@example.com to "_s + base,
                                           u"✅ Successfully inserted resume for ana@example.com"_s));
}

TEST_F(APIRequestTest, InsertAnsweredWith200IsAResponseProblem) {
    const auto outcome = insert(*sampleRecord(), reply(200, "{}"));
    EXPECT_EQ(outcome.result->error(), APIError::responseProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(u"📤 Attempting to insert resume for ana@example.com to "_s + base,
                                           u"❌ Expected statusCode: 201, got 200"_s, u"❌ Server response: {}"_s));
}

TEST_F(APIRequestTest, InsertRefusedWithoutTextShowsOnlyTheStatus) {
    EXPECT_THAT(insert(*sampleRecord(), reply(500, {})).lines,
                ElementsAre(testing::_, u"❌ Expected statusCode: 201, got 500"_s));
    EXPECT_THAT(insert(*sampleRecord(), reply(500, "\xFF")).lines,
                ElementsAre(testing::_, u"❌ Expected statusCode: 201, got 500"_s));
}

TEST_F(APIRequestTest, InsertThatCannotBeSentIsANetworkError) {
    const auto outcome = insert(*sampleRecord(), noNetwork);
    EXPECT_EQ(outcome.result->error(), APIError::responseProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(testing::_, u"❌ Network Error in insertResume: Connection refused"_s));
}

TEST_F(APIRequestTest, InsertAnswerThatIsNotHttpIsAnInvalidType) {
    const auto outcome = insert(*sampleRecord(), notHttp());
    EXPECT_EQ(outcome.result->error(), APIError::responseProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(testing::_, u"❌ Invalid response type in insertResume"_s));
}

TEST_F(APIRequestTest, InsertWithoutABodyIsAResponseProblem) {
    const auto outcome = insert(*sampleRecord(), reply(201, {}));
    EXPECT_EQ(outcome.result->error(), APIError::responseProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(testing::_, u"❌ Empty response data == nil"_s));
}

TEST_F(APIRequestTest, InsertAnswerThatDoesNotDecodeIsADecodingProblemOnOneLine) {
    const auto outcome = insert(*sampleRecord(), reply(201, "{}"));
    EXPECT_EQ(outcome.result->error(), APIError::decodingProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(testing::_, u"❌ Failed to decode response: keyNotFound \"name\" "
                                                       "(The object has no key \"name\". [])"_s));
}

TEST_F(APIRequestTest, InsertOfATextThatUtf8CannotHoldIsAnEncodingProblemAndNothingIsSent) {
    const DBRecordPointer record = sampleRecord();
    record->name = QString(QChar(0xD800));
    std::optional<APIError> error;
    CapturedOutput output;
    api->insertResume(*record, [&error](const auto& result) { error = result.error(); });
    EXPECT_FALSE(error.has_value()) << "completed inside the call";
    EXPECT_TRUE(waitUntil([&] { return error.has_value(); }));
    EXPECT_EQ(error, APIError::encodingProblem);
    EXPECT_TRUE(session.requests().isEmpty());
    EXPECT_THAT(output.lines(), ElementsAre(u"📤 Attempting to insert resume for ana@example.com to "_s + base));
}

TEST_F(APIRequestTest, InsertWithoutSummaryStopsTheProgram) {
    const DBRecordPointer record = sampleRecord();
    record->summarizedText.reset();
    EXPECT_DEATH(api->insertResume(*record, [](auto) {}), "Fatal error");
}

TEST_F(APIRequestTest, LargePDFIsEncodedLaterAndSentWhole) {
    const DBRecordPointer record = sampleRecord();
    record->file = QByteArray(1'000'000, '\xA5');
    const CapturedOutput output;
    api->insertResume(*record, [](auto) {});
    record->name = u"edited since"_s;
    EXPECT_TRUE(session.requests().isEmpty()) << "encoded inside the call";
    ASSERT_TRUE(waitUntil([&] { return !session.requests().isEmpty(); }));
    EXPECT_TRUE(session.requests()[0].body.contains(record->file->toBase64()));
    EXPECT_TRUE(session.requests()[0].body.startsWith("{\"name\":\"Ana\""));
}

// Delete

TEST_F(APIRequestTest, DeleteIsASuccessWith204Only) {
    const QString success = u"Resume deleted successfully from database"_s;
    const QString failure = u"Failure! Record could not be deleted"_s;
    EXPECT_THAT(deleted(u"a@b"_s, reply(204, {})), ElementsAre(success));
    EXPECT_THAT(deleted(u"a@b"_s, reply(200, "{}")), ElementsAre(failure));
    EXPECT_THAT(deleted(u"a@b"_s, reply(404, "{}")), ElementsAre(failure));
    EXPECT_THAT(deleted(u"a@b"_s, notHttp()), ElementsAre(failure));
    EXPECT_THAT(deleted(u"a@b"_s, noNetwork), ElementsAre(failure));
}

TEST_F(APIRequestTest, DeleteOfAKeyThatUtf8CannotHoldSendsNothing) {
    CapturedOutput output;
    api->deleteResume(QString(QChar(0xDC00)));
    EXPECT_TRUE(session.requests().isEmpty());
    EXPECT_THAT(output.lines(), ElementsAre(u"Failure! Record could not be deleted"_s));
}

// Search

const QByteArray row = R"({"name":"Ana","profession":"Contable","email":"ana@example.com","summarizedText":"R",)"
                       R"("invitationMail":"M","jsonCVData":{"gender":"Femenino","softSkills":[],"techSkills":[],)"
                       R"("languages":[]},"score":50})";

TEST_F(APIRequestTest, SearchWithoutRowsHasAnEmptyResult) {
    const auto outcome = search(u"SELECT"_s, reply(200, R"({"sql":"SELECT 1","result":[]})"));
    ASSERT_TRUE(outcome.result->has_value());
    EXPECT_EQ((**outcome.result)->sql, u"SELECT 1"_s);
    EXPECT_TRUE((**outcome.result)->result.empty());
    EXPECT_EQ(outcome.lines, QStringList());
}

TEST_F(APIRequestTest, SearchRowsHaveIdentitiesOfTheirOwnInEveryAnswer) {
    const QByteArray body = R"({"sql":"s","result":[)" + row + "," + row + "]}";
    const auto first = search(u"s"_s, reply(200, body));
    const auto second = search(u"s"_s, reply(200, body));
    QSet<QUuid> ids;
    for (const auto& outcome : {first, second}) {
        for (const auto& item : (**outcome.result)->result) {
            EXPECT_EQ(item->name, u"Ana"_s);
            EXPECT_EQ(item->score, 50.0F);
            ids.insert(item->id);
        }
    }
    EXPECT_EQ(ids.size(), 4);
}

TEST_F(APIRequestTest, SearchRowWithoutMailFailsTheWholeAnswerSilently) {
    const QByteArray body = R"({"sql":"s","result":[)" + without(row, R"("invitationMail":"M",)") + "]}";
    const auto outcome = search(u"s"_s, reply(200, body));
    EXPECT_EQ(outcome.result->error(), APIError::decodingProblem);
    EXPECT_EQ(outcome.lines, QStringList());
}

TEST_F(APIRequestTest, SearchWithoutAUsableResponseIsASilentResponseProblem) {
    for (const HttpOutcome& answer :
         {HttpOutcome(noNetwork), notHttp(), reply(400, "{}"), reply(201, "{}"), reply(200, {})}) {
        const auto outcome = search(u"s"_s, answer);
        EXPECT_EQ(outcome.result->error(), APIError::responseProblem);
        EXPECT_EQ(outcome.lines, QStringList());
    }
}

TEST_F(APIRequestTest, SearchForATextThatUtf8CannotHoldIsNeverCompleted) {
    CapturedOutput output;
    bool completed = false;
    api->search(QString(QChar(0xD800)), [&completed](const auto&) { completed = true; });
    QCoreApplication::processEvents();
    EXPECT_FALSE(completed);
    EXPECT_TRUE(session.requests().isEmpty());
    EXPECT_THAT(output.lines(), ElementsAre(u"Failure! No records returned"_s));
}

// Life

QByteArray largeList(int records) {
    QByteArray body = "{\"response\":[" + listedRecord;
    for (int i = 1; i < records; ++i) {
        body += ',' + listedRecord;
    }
    return body + "]}";
}

TEST_F(APIRequestTest, LargeBodyIsDecodedOffTheThreadAndCompletesOnIt) {
    const auto outcome = fetchAll(reply(200, largeList(5'000)));
    ASSERT_TRUE(outcome.result->has_value());
    EXPECT_EQ((*outcome.result)->size(), 5'000U);
}

TEST_F(APIRequestTest, LargeBodyThatDoesNotDecodeIsLoggedInOrder) {
    QByteArray body = largeList(5'000);
    body.chop(1);
    const auto outcome = fetchAll(reply(200, body));
    EXPECT_EQ(outcome.result->error(), APIError::decodingProblem);
    EXPECT_THAT(outcome.lines,
                ElementsAre(u"ℹ️ HTTP Status Code: 200"_s, u"ℹ️ Received data: %1 bytes"_s.arg(body.size()),
                            u"❌ Decoding Error: Data corrupted"_s,
                            u"   Context: The body is not valid JSON: error at byte %1."_s.arg(body.size()),
                            u"   Raw JSON: "_s + QString::fromUtf8(body.left(600)).left(500) + u"..."_s));
}

TEST_F(APIRequestTest, NothingIsCompletedAfterDestructionWhileARequestRuns) {
    CapturedOutput output;
    bool completed = false;
    api->fetchAll([&completed](const auto&) { completed = true; });
    api.reset();
    session.answer(200, R"({"response":[]})");
    QCoreApplication::processEvents();
    EXPECT_FALSE(completed);
    EXPECT_EQ(output.lines(), QStringList());
}

TEST_F(APIRequestTest, NothingIsCompletedAfterDestructionWhileABodyIsDecoded) {
    const CapturedOutput output;
    bool completed = false;
    api->fetchAll([&completed](const auto&) { completed = true; });
    session.answer(200, largeList(5'000));
    api.reset();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    EXPECT_FALSE(completed);
}

TEST_F(APIRequestTest, NothingIsSentAfterDestructionWhileABodyIsEncoded) {
    const CapturedOutput output;
    const DBRecordPointer record = sampleRecord();
    record->file = QByteArray(1'000'000, 'x');
    api->insertResume(*record, [](auto) {});
    api.reset();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    EXPECT_TRUE(session.requests().isEmpty());
}

} // namespace
} // namespace dorvantel
