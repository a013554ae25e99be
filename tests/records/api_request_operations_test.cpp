// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/RecordPDF.h"
#include "tests/records/APIRequestFixture.h"
#include "tests/records/SampleRecords.h"
#include "tests/support/FakePDFOpener.h"
#include "tests/support/Print.h"

#include <QThread>
#include <QThreadPool>

#include <gmock/gmock.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

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

TEST_F(APIRequestTest, PDFAnswerWithoutBytesReachesEveryWaitingCallerAndTheNextCallDownloadsAgain) {
    FakePDFOpener opener;
    const DBRecordPointer record = sampleRecord();
    int answers = 0;
    const auto received = [&answers](const std::shared_ptr<PDFDocument>& document) {
        EXPECT_FALSE(document);
        ++answers;
    };
    CapturedOutput output;
    loadPDF(record, *api, opener, received);
    loadPDF(record, *api, opener, received);
    session.answer(200, R"({"file":[]})");
    EXPECT_EQ(answers, 2);
    EXPECT_THAT(output.lines(), ElementsAre(u"ℹ️ No PDF data for ana@example.com"_s));
    EXPECT_EQ(session.requests().size(), 1);
    loadPDF(record, *api, opener, received);
    EXPECT_EQ(session.requests().size(), 2);
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

TEST_F(APIRequestTest, PDFAnswerThatIsAnArrayIsADecodingProblem) {
    const auto outcome = fetchPDF(u"a"_s, reply(200, "[]"));
    EXPECT_EQ(outcome.result->error(), APIError::decodingProblem);
    EXPECT_THAT(outcome.lines, ElementsAre(u"❌ Decoding Error loading PDF: typeMismatch Dictionary<String, Any> "
                                           "(Expected Dictionary<String, Any> but found an array. [])"_s));
}

TEST_F(APIRequestTest, PDFAnswerWithANumberOutOfAByteIsADecodingProblem) {
    for (const QString& number : {u"256"_s, u"-1"_s, u"0.5"_s}) {
        const auto outcome = fetchPDF(u"a"_s, reply(200, "{\"file\":[37," + number.toUtf8() + "]}"));
        EXPECT_EQ(outcome.result->error(), APIError::decodingProblem);
        EXPECT_THAT(outcome.lines, ElementsAre(u"❌ Decoding Error loading PDF: dataCorrupted (The number "_s + number +
                                               u" does not fit in UInt8. [\"file\", \"Index 1\"])"_s));
    }
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
    const CapturedOutput output;
    std::size_t records = 0;
    const QThread* completedOn = nullptr;
    api->fetchAll([&](const auto& result) {
        records = result ? result->size() : 0;
        completedOn = QThread::currentThread();
    });
    session.answer(200, largeList(5'000));
    EXPECT_EQ(completedOn, nullptr) << "decoded inside the answer";
    ASSERT_TRUE(waitUntil([&] { return completedOn != nullptr; }));
    EXPECT_EQ(completedOn, QThread::currentThread());
    EXPECT_EQ(records, 5'000U);
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

} // namespace dorvantel::test
