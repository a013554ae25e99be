// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/records/APIRequestFixture.h"
#include "tests/records/SampleRecords.h"
#include "tests/support/Print.h"

#include <gmock/gmock.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

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
    const QUrl url(APIRequest::defaultBaseUrl());
    EXPECT_EQ(url.scheme(), u"http"_s);
    EXPECT_FALSE(url.host().isEmpty());
    EXPECT_EQ(url.path(), u"/curriculums"_s);
    EXPECT_FALSE(url.hasQuery());
    APIRequest byDefault(session);
    byDefault.fetchAll([](auto) {});
    EXPECT_EQ(session.requests().last().url, url);
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
    const auto outcome = fetchAll(reply(200, R"({"response": []})"));
    ASSERT_TRUE(outcome.result->has_value());
    EXPECT_TRUE((*outcome.result)->empty());
    EXPECT_THAT(outcome.lines, ElementsAre(u"ℹ️ HTTP Status Code: 200"_s, u"ℹ️ Received data: 16 bytes"_s));
}

TEST_F(APIRequestTest, LengthThatIsLoggedIsThatOfTheBytesAndNotOfTheCharacters) {
    const auto outcome = fetchAll(reply(200, R"({"response":[],"ñ":"€"})"));
    EXPECT_THAT(outcome.lines, ElementsAre(u"ℹ️ HTTP Status Code: 200"_s, u"ℹ️ Received data: 26 bytes"_s));
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

TEST_F(APIRequestTest, UnexpectedBodyIsLoggedUpToAMebibyteOfWholeCharacters) {
    const QByteArray body = 'x' + QByteArray("ñ").repeated(1024 * 1024);
    const QStringList lines = fetchAll(reply(500, body)).lines;
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[2] == u"❌ Response body: x"_s + QString(512 * 1024 - 1, u'ñ')) << lines[2].size();
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

TEST_F(APIRequestTest, TwoCallsCompleteInTheOrderOfTheirAnswersAndNotOfTheCalls) {
    const CapturedOutput output;
    QStringList order;
    api->fetchPDF(u"a"_s, [&](const auto&) { order.append(u"pdf"_s); });
    api->fetchAll([&](const auto&) { order.append(u"list"_s); });
    session.answerLatest(200, R"({"response":[]})");
    EXPECT_THAT(order, ElementsAre(u"list"_s));
    session.answer(200, "{}");
    EXPECT_THAT(order, ElementsAre(u"list"_s, u"pdf"_s));
}

} // namespace dorvantel::test
