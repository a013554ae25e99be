// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/CandidateDetailUIView.h"
#include "records/APIRequest.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeHttpSession.h"
#include "tests/support/FakePDFOpener.h"
#include "tests/support/Print.h"
#include "tests/support/Wait.h"

#include <QLabel>

#include <gmock/gmock.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

/// A candidate's view over the records service's answers themselves.
class CandidatePDF : public testing::Test {
protected:
    /// What is logged between that answer and the end of loading.
    QStringList linesOf(const QByteArray& body) {
        record->email = u"ana@example.org"_s;
        view.show();
        CapturedOutput output;
        http.answer(200, body);
        EXPECT_TRUE(waitUntil([&] { return !view.isLoadingPDF(); }));
        return output.lines();
    }
    QStringList shown() const {
        QStringList texts;
        for (const QLabel* label : view.findChildren<QLabel*>()) {
            if (label->isVisible()) {
                texts.append(label->text());
            }
        }
        return texts;
    }

    FakeHttpSession http;
    APIRequest records{http, u"http://records.test/curriculums"_s};
    FakePDFOpener pdfs;
    DBRecordPointer record = std::make_shared<DBRecordRepresentation>();
    CandidateDetailUIView view{record, records, pdfs};
};

} // namespace

TEST_F(CandidatePDF, AnswerThatDoesNotDecodeIsLoggedByEveryoneOnItsWay) {
    EXPECT_THAT(linesOf("[]"), ElementsAre(u"❌ Decoding Error loading PDF: typeMismatch Dictionary<String, Any> "
                                           "(Expected Dictionary<String, Any> but found an array. [])"_s,
                                           u"❌ Failed to load PDF for ana@example.org: decodingProblem"_s,
                                           u"⚠️ No PDF available for ana@example.org"_s));
    EXPECT_EQ(shown(), QStringList{u"PDF no disponible"_s});
}

TEST_F(CandidatePDF, AnswerWithoutBytesIsLoggedAndNotAvailable) {
    EXPECT_THAT(linesOf("{}"),
                ElementsAre(u"ℹ️ No PDF data for ana@example.org"_s, u"⚠️ No PDF available for ana@example.org"_s));
    EXPECT_EQ(shown(), QStringList{u"PDF no disponible"_s});
}

} // namespace dorvantel::test
