// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/RecordPDF.h"

#include "tests/support/CapturedOutput.h"
#include "tests/support/FakePDFOpener.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::CapturedOutput;
using test::FakePDFOpener;
using test::FakeRecordsService;

class LoadPDF : public testing::Test {
protected:
    LoadPDF() { record->email = u"ana@example.org"_s; }

    /// The document that it will get is appended to `answers`, and `name` to `order`.
    void load(const QString& name = {}) {
        loadPDF(record, records, opener, [this, name](const std::shared_ptr<PDFDocument>& document) {
            order.append(name);
            answers.push_back(document);
        });
    }
    qsizetype requests() const { return records.calls().size(); }

    FakeRecordsService records;
    FakePDFOpener opener;
    DBRecordPointer record = std::make_shared<DBRecordRepresentation>();
    QStringList order;
    std::vector<std::shared_ptr<PDFDocument>> answers;
};

TEST_F(LoadPDF, FetchesByTheEMailAndKeepsBytesAndDocumentInTheRecord) {
    load();
    EXPECT_EQ(records.calls(), QStringList{u"fetchPDF ana@example.org"_s});
    EXPECT_EQ(record->pdfLoadCallbacks.size(), 1U);
    records.answerFetchPDF(QByteArray("%PDF"));
    EXPECT_EQ(record->file, QByteArray("%PDF"));
    EXPECT_TRUE(answers.empty());
    EXPECT_EQ(opener.bytes(0), "%PDF");
    opener.succeed(0, {u"página"_s});
    ASSERT_EQ(answers.size(), 1U);
    ASSERT_TRUE(answers[0]);
    EXPECT_EQ(answers[0]->pageText(0), u"página"_s);
    EXPECT_EQ(record->pdfDocument(), answers[0]);
    EXPECT_TRUE(record->pdfLoadCallbacks.empty());
}

TEST_F(LoadPDF, ThreeCallsBeforeTheAnswerAreOneRequestAndThreeCallbacksInOrderWithTheSameDocument) {
    load(u"1"_s);
    load(u"2"_s);
    load(u"3"_s);
    EXPECT_EQ(requests(), 1);
    records.answerFetchPDF(QByteArray("%PDF"));
    opener.succeed(0, {u"página"_s});
    EXPECT_EQ(order, (QStringList{u"1"_s, u"2"_s, u"3"_s}));
    ASSERT_TRUE(answers[0]);
    EXPECT_EQ(answers[1], answers[0]);
    EXPECT_EQ(answers[2], answers[0]);
}

TEST_F(LoadPDF, CallWhileTheBytesAreBeingOpenedWaitsForTheSameOpening) {
    load();
    records.answerFetchPDF(QByteArray("%PDF"));
    load();
    EXPECT_TRUE(answers.empty());
    EXPECT_EQ(opener.openings(), 1);
    opener.succeed(0, {u"página"_s});
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_EQ(answers[1], answers[0]);
    EXPECT_EQ(requests(), 1);
}

TEST_F(LoadPDF, AnswersAtOnceWithoutNetworkAfterASuccessfulDownload) {
    load();
    records.answerFetchPDF(QByteArray("%PDF"));
    opener.succeed(0, {u"página"_s});
    load();
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_EQ(answers[1], answers[0]);
    EXPECT_EQ(requests(), 1);
    EXPECT_EQ(opener.openings(), 1);
}

TEST_F(LoadPDF, BytesOfIntakeAreOpenedWithoutNetwork) {
    record->file = QByteArray("%PDF");
    load();
    EXPECT_EQ(requests(), 0);
    EXPECT_EQ(opener.bytes(0), "%PDF");
    opener.succeed(0, {u"página"_s});
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_TRUE(answers[0]);
}

TEST_F(LoadPDF, RecordReleasedBeforeTheDownloadCompletesCausesNoCallbackAndNoLogLine) {
    load();
    record.reset();
    CapturedOutput output;
    records.answerFetchPDF(std::unexpected(APIError::responseProblem));
    EXPECT_EQ(output.text(), QString());
    EXPECT_TRUE(answers.empty());
}

TEST_F(LoadPDF, RecordReleasedBeforeItsBytesArriveOpensNothing) {
    load();
    record.reset();
    records.answerFetchPDF(QByteArray("%PDF"));
    EXPECT_EQ(opener.openings(), 0);
    EXPECT_TRUE(answers.empty());
}

TEST_F(LoadPDF, RecordReleasedWhileItsBytesAreOpenedGivesTheOpeningUp) {
    load();
    records.answerFetchPDF(QByteArray("%PDF"));
    record.reset();
    EXPECT_TRUE(opener.isGivenUp(0));
    EXPECT_TRUE(answers.empty());
}

TEST_F(LoadPDF, AnswerWithoutBytesGivesEveryCallerNoDocumentAndTheNextCallDownloadsAgain) {
    load();
    load();
    CapturedOutput output;
    records.answerFetchPDF(std::nullopt);
    EXPECT_EQ(output.text(), QString()); // the records client has logged it
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_FALSE(answers[0]);
    EXPECT_FALSE(answers[1]);
    EXPECT_FALSE(record->file);
    EXPECT_EQ(opener.openings(), 0);
    load();
    EXPECT_EQ(requests(), 2);
}

TEST_F(LoadPDF, FailureIsLoggedToldToEveryCallerInOrderAndTheNextCallTriesAgain) {
    load(u"1"_s);
    load(u"2"_s);
    CapturedOutput output;
    records.answerFetchPDF(std::unexpected(APIError::decodingProblem));
    EXPECT_EQ(output.text(), u"❌ Failed to load PDF for ana@example.org: decodingProblem\n"_s);
    EXPECT_EQ(order, (QStringList{u"1"_s, u"2"_s}));
    EXPECT_FALSE(answers[0]);
    EXPECT_FALSE(record->file);
    load(u"3"_s);
    EXPECT_EQ(requests(), 2);
    records.answerFetchPDF(QByteArray("%PDF"));
    opener.succeed(0, {u"página"_s});
    EXPECT_TRUE(answers[2]);
}

TEST_F(LoadPDF, EveryRequestGoesByTheEMailOfItsMoment) {
    load();
    record->email = u"ana.ruiz@example.org"_s;
    CapturedOutput output;
    records.answerFetchPDF(std::unexpected(APIError::responseProblem));
    EXPECT_EQ(output.text(), u"❌ Failed to load PDF for ana.ruiz@example.org: responseProblem\n"_s);
    load();
    EXPECT_EQ(records.calls(), (QStringList{u"fetchPDF ana@example.org"_s, u"fetchPDF ana.ruiz@example.org"_s}));
}

TEST_F(LoadPDF, DocumentThatIntakeBroughtAlongIsGivenAtOnce) {
    record->file = QByteArray("%PDF");
    const auto document = std::make_shared<PDFDocument>(*record->file, QStringList{u"página"_s});
    record->keepDocument(document);
    load();
    EXPECT_EQ(answers, std::vector{document});
    EXPECT_EQ(requests(), 0);
    EXPECT_EQ(opener.openings(), 0);
}

TEST_F(LoadPDF, BytesThatDoNotOpenAreKeptAndAnswerAtOnceWithNoDocument) {
    load();
    EXPECT_FALSE(record->isPDFOpened());
    records.answerFetchPDF(QByteArray("no PDF"));
    opener.fail(0);
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_FALSE(answers[0]);
    EXPECT_EQ(record->file, QByteArray("no PDF"));
    EXPECT_TRUE(record->isPDFOpened());
    EXPECT_FALSE(record->pdfDocument());
    load();
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_FALSE(answers[1]);
    EXPECT_TRUE(record->pdfLoadCallbacks.empty());
    EXPECT_EQ(opener.openings(), 1);
    EXPECT_EQ(requests(), 1);
}

TEST_F(LoadPDF, AskingForTheDocumentNeverLoadsIt) {
    record->file = QByteArray("%PDF");
    EXPECT_FALSE(record->pdfDocument());
    EXPECT_EQ(requests(), 0);
    EXPECT_EQ(opener.openings(), 0);
}

TEST_F(LoadPDF, CallersGetTheDocumentThatWasOpenedWhateverOneOfThemDoesToTheRecord) {
    loadPDF(record, records, opener, [this](const auto&) { record->keepDocument(nullptr); });
    load();
    records.answerFetchPDF(QByteArray("%PDF"));
    opener.succeed(0, {u"página"_s});
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_TRUE(answers[0]);
}

TEST_F(LoadPDF, CallbackThatAsksAgainStartsFromACleanState) {
    loadPDF(record, records, opener, [this](const std::shared_ptr<PDFDocument>& document) {
        order.append(document ? u"document"_s : u"none"_s);
        EXPECT_TRUE(record->pdfLoadCallbacks.empty());
        load(u"again"_s);
    });
    load(u"waiting"_s);
    CapturedOutput output;
    records.answerFetchPDF(std::unexpected(APIError::responseProblem));
    EXPECT_EQ(order, (QStringList{u"none"_s, u"waiting"_s}));
    EXPECT_EQ(requests(), 2);
    records.answerFetchPDF(QByteArray("%PDF"));
    opener.succeed(0, {u"página"_s});
    EXPECT_EQ(order.last(), u"again"_s);
    EXPECT_TRUE(answers.back());
}

TEST_F(LoadPDF, CallbackThatAsksAgainAfterAnAnswerWithoutBytesFetchesAgain) {
    loadPDF(record, records, opener, [this](const auto&) {
        EXPECT_TRUE(record->pdfLoadCallbacks.empty());
        load(u"again"_s);
    });
    load(u"waiting"_s);
    records.answerFetchPDF(std::nullopt);
    EXPECT_EQ(order, QStringList{u"waiting"_s});
    EXPECT_EQ(requests(), 2);
    records.answerFetchPDF(QByteArray("%PDF"));
    opener.succeed(0, {u"página"_s});
    EXPECT_EQ(order.last(), u"again"_s);
    EXPECT_TRUE(answers.back());
}

TEST_F(LoadPDF, CallbackThatAsksAgainAfterBytesThatDoNotOpenIsAnsweredInsideItsCall) {
    loadPDF(record, records, opener, [this](const auto&) { load(u"again"_s); });
    load(u"waiting"_s);
    records.answerFetchPDF(QByteArray("no PDF"));
    opener.fail(0);
    EXPECT_EQ(order, (QStringList{u"again"_s, u"waiting"_s}));
    EXPECT_EQ(answers, (std::vector<std::shared_ptr<PDFDocument>>{nullptr, nullptr}));
    EXPECT_EQ(opener.openings(), 1);
    EXPECT_EQ(requests(), 1);
}

TEST_F(LoadPDF, CallbackMayReleaseTheRecord) {
    loadPDF(record, records, opener, [this](const auto&) { record.reset(); });
    load(u"waiting"_s);
    records.answerFetchPDF(QByteArray("%PDF"));
    opener.succeed(0, {u"página"_s});
    EXPECT_EQ(order, QStringList{u"waiting"_s});
    EXPECT_TRUE(answers[0]);
}

TEST_F(LoadPDF, RecordsLoadIndependently) {
    const auto other = std::make_shared<DBRecordRepresentation>();
    other->email = u"blas@example.org"_s;
    load();
    loadPDF(other, records, opener, [this](const auto&) { order.append(u"other"_s); });
    EXPECT_EQ(records.calls(), (QStringList{u"fetchPDF ana@example.org"_s, u"fetchPDF blas@example.org"_s}));
    records.answerFetchPDF(std::nullopt);
    EXPECT_EQ(answers.size(), 1U);
    EXPECT_FALSE(order.contains(u"other"_s));
}

} // namespace
} // namespace dorvantel
