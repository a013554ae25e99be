// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/ResultCV.h"

#include "tests/support/CapturedOutput.h"
#include "tests/support/FakePDFOpener.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/Print.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::CapturedOutput;
using test::FakePDFOpener;
using test::FakeRecordsService;

class ResultCVTest : public testing::Test {
protected:
    ResultCVTest() { result->email = u"ana@example.org"_s; }

    void make() {
        cv = std::make_unique<ResultCV>(result, records, opener);
        previews = std::make_unique<QSignalSpy>(cv.get(), &ResultCV::previewRequested);
    }

    FakeRecordsService records;
    FakePDFOpener opener;
    std::shared_ptr<IdentifiableQueryResult> result = std::make_shared<IdentifiableQueryResult>();
    std::unique_ptr<ResultCV> cv;
    std::unique_ptr<QSignalSpy> previews;
};

TEST_F(ResultCVTest, IsFetchedWhenItIsAskedForAndShownWhenItIsOpen) {
    make();
    EXPECT_FALSE(cv->isLoadingPDF());
    cv->requestPreview();
    EXPECT_TRUE(cv->isLoadingPDF());
    EXPECT_EQ(records.calls(), QStringList{u"fetchPDF ana@example.org"_s});
    records.answerFetchPDF(QByteArray("%PDF"));
    EXPECT_TRUE(cv->isLoadingPDF());
    EXPECT_EQ(previews->size(), 0);
    EXPECT_EQ(opener.bytes(0), "%PDF");
    opener.succeed(0, {u"página"_s});
    EXPECT_FALSE(cv->isLoadingPDF());
    EXPECT_EQ(previews->size(), 1);
    ASSERT_TRUE(cv->loadedPDFDocument());
    EXPECT_EQ(cv->loadedPDFDocument()->dataRepresentation(), "%PDF");
}

TEST_F(ResultCVTest, IsShownAtOnceOnceItIsLoaded) {
    make();
    cv->requestPreview();
    records.answerFetchPDF(QByteArray("%PDF"));
    opener.succeed(0, {u"página"_s});
    cv->requestPreview();
    EXPECT_EQ(previews->size(), 2);
    EXPECT_FALSE(cv->isLoadingPDF());
    EXPECT_EQ(records.calls().size(), 1);
    EXPECT_EQ(opener.openings(), 1);
}

TEST_F(ResultCVTest, BytesThatCameWithTheResultNeedNoRequest) {
    result->file = QByteArray("%PDF");
    make();
    cv->requestPreview();
    opener.succeed(0, {u"página"_s});
    EXPECT_EQ(previews->size(), 1);
    EXPECT_TRUE(cv->loadedPDFDocument());
    EXPECT_EQ(records.calls(), QStringList());
}

TEST_F(ResultCVTest, AnEmptyBufferHoldsNoBytes) {
    result->file = QByteArray("");
    make();
    cv->requestPreview();
    EXPECT_EQ(records.calls(), QStringList{u"fetchPDF ana@example.org"_s});
}

TEST_F(ResultCVTest, AnswerWithoutASingleByteIsNoPDF) {
    make();
    cv->requestPreview();
    CapturedOutput output;
    records.answerFetchPDF(QByteArray(""));
    EXPECT_EQ(output.text(), u"⚠️ No PDF available for ana@example.org\n"_s);
    EXPECT_FALSE(cv->isLoadingPDF());
    EXPECT_EQ(previews->size(), 0);
    EXPECT_EQ(opener.openings(), 0);
}

TEST_F(ResultCVTest, FailedFetchIsLoggedAndTheNextPressTriesAgain) {
    make();
    cv->requestPreview();
    CapturedOutput output;
    records.answerFetchPDF(std::unexpected(APIError::decodingProblem));
    EXPECT_EQ(output.text(), u"❌ Error loading PDF: decodingProblem\n"_s);
    EXPECT_FALSE(cv->isLoadingPDF());
    EXPECT_EQ(previews->size(), 0);
    cv->requestPreview();
    EXPECT_EQ(records.calls().size(), 2);
    EXPECT_TRUE(cv->isLoadingPDF());
}

TEST_F(ResultCVTest, MissingPDFIsLogged) {
    make();
    cv->requestPreview();
    CapturedOutput output;
    records.answerFetchPDF(std::nullopt);
    EXPECT_EQ(output.text(), u"⚠️ No PDF available for ana@example.org\n"_s);
    EXPECT_FALSE(cv->isLoadingPDF());
    EXPECT_EQ(previews->size(), 0);
}

TEST_F(ResultCVTest, BrokenPDFIsAskedToBeShownWithoutADocument) {
    make();
    cv->requestPreview();
    records.answerFetchPDF(QByteArray("no es un PDF"));
    CapturedOutput output;
    opener.fail(0);
    EXPECT_EQ(output.text(), QString());
    EXPECT_FALSE(cv->isLoadingPDF());
    EXPECT_EQ(previews->size(), 1);
    EXPECT_FALSE(cv->loadedPDFDocument());
}

TEST_F(ResultCVTest, EveryPressBeforeTheDocumentIsThereAsksAgain) {
    make();
    cv->requestPreview();
    cv->requestPreview();
    EXPECT_EQ(records.calls().size(), 2);
    records.answerFetchPDF(QByteArray("%PDF"));
    records.answerFetchPDF(QByteArray("cut"));
    opener.succeed(0, {u"página"_s});
    opener.fail(1);
    EXPECT_TRUE(cv->loadedPDFDocument());
    EXPECT_FALSE(cv->isLoadingPDF());
}

TEST_F(ResultCVTest, AnswersThatComeAfterItIsGoneAreOnlyLogged) {
    make();
    for (int press = 0; press < 3; ++press) {
        cv->requestPreview();
    }
    cv.reset();
    CapturedOutput output;
    records.answerFetchPDF(QByteArray("%PDF"));
    records.answerFetchPDF(std::nullopt);
    records.answerFetchPDF(std::unexpected(APIError::responseProblem));
    EXPECT_EQ(output.text(), u"⚠️ No PDF available for ana@example.org\n❌ Error loading PDF: responseProblem\n"_s);
    EXPECT_EQ(opener.openings(), 0);
}

TEST_F(ResultCVTest, OpeningIsGivenUpWhenItIsGone) {
    make();
    cv->requestPreview();
    records.answerFetchPDF(QByteArray("%PDF"));
    cv.reset();
    EXPECT_TRUE(opener.isGivenUp(0));
}

} // namespace
} // namespace dorvantel
