// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/intake/CandidateDetailFixture.h"

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::CapturedOutput;

class CandidateDetail : public test::CandidateDetailTest {};

TEST_F(CandidateDetail, StartsOnPDFAndPromptWithTheTabsInOrder) {
    show();
    EXPECT_EQ(view->mainTagType(), mainTagTypes::pdf);
    EXPECT_EQ(view->extractTagType(), extractTagTypes::prompt);
    EXPECT_EQ(view->correoTagType(), correoTagTypes::prompt);
    EXPECT_EQ(labels(view->findChild<SegmentedControl*>(u"mainTagType"_s)),
              (QStringList{u"PDF"_s, u"Texto"_s, u"Extraer"_s, u"Correo"_s}));
    EXPECT_EQ(labels(view->findChild<SegmentedControl*>(u"extractTagType"_s)), (QStringList{u"Prompt"_s, u"JSON"_s}));
    EXPECT_EQ(labels(view->findChild<SegmentedControl*>(u"correoTagType"_s)), (QStringList{u"Prompt"_s, u"JSON"_s}));
}

TEST_F(CandidateDetail, TabsStandInTheMiddleWithFourPointsAboveAndBelow) {
    showLoaded({u"Ana"_s});
    for (const auto& [name, tab] :
         std::initializer_list<std::pair<QString, mainTagTypes>>{{u"mainTagType"_s, mainTagTypes::pdf},
                                                                 {u"extractTagType"_s, mainTagTypes::extraer},
                                                                 {u"correoTagType"_s, mainTagTypes::correo}}) {
        chooseMain(tab);
        const auto* tags = view->findChild<SegmentedControl*>(name);
        const QWidget* page = tags->parentWidget()->findChild<QStackedWidget*>({}, Qt::FindDirectChildrenOnly);
        EXPECT_EQ(tags->y(), 4);
        EXPECT_EQ(page->y() - tags->geometry().bottom() - 1, 4);
        EXPECT_NEAR(tags->geometry().center().x(), view->width() / 2, 1);
        EXPECT_EQ(page->geometry().bottom(), tags->parentWidget()->rect().bottom());
    }
}

TEST_F(CandidateDetail, IsNotLoadedBeforeItIsShown) {
    view = std::make_unique<CandidateDetailUIView>(record, records, opener);
    EXPECT_EQ(records.calls(), QStringList());
    EXPECT_FALSE(view->isLoadingPDF());
}

TEST_F(CandidateDetail, ShowsProgressUntilThePDFIsThere) {
    show();
    EXPECT_EQ(records.calls(), QStringList{u"fetchPDF ana@example.org"_s});
    EXPECT_TRUE(view->isLoadingPDF());
    EXPECT_TRUE(visible<Spinner>());
    EXPECT_EQ(notice(), u"Cargando PDF..."_s);
    EXPECT_EQ(noticeColour(), QColor(colours::secondaryText));
    chooseMain(mainTagTypes::text);
    EXPECT_TRUE(visible<Spinner>());
    EXPECT_EQ(notice(), u"Cargando contenido..."_s);
    EXPECT_EQ(noticeColour(), QColor(colours::text));

    deliver({u"Ana, contable"_s});
    EXPECT_FALSE(view->isLoadingPDF());
    EXPECT_EQ(text(), u"Ana contable"_s);
    EXPECT_EQ(view->pdfText(), u"Ana contable"_s);
    chooseMain(mainTagTypes::pdf);
    ASSERT_TRUE(visible<PDFKitView>());
    EXPECT_EQ(visible<PDFKitView>()->pdfDocument(), record->pdfDocument());
    EXPECT_FALSE(visible<Spinner>());
}

TEST_F(CandidateDetail, PDFInMemoryIsShownAtOnceWithoutProgressAndWithoutNetwork) {
    showLoaded({u"Ana"_s});
    EXPECT_FALSE(view->isLoadingPDF());
    EXPECT_TRUE(visible<PDFKitView>());
    EXPECT_TRUE(view->findChildren<Spinner*>().isEmpty());
    EXPECT_EQ(view->pdfText(), u"Ana"_s);
    EXPECT_EQ(records.calls(), QStringList());
    EXPECT_EQ(opener.openings(), 0);
}

TEST_F(CandidateDetail, BytesInMemoryThatWereNotOpenedYetNeedNoNetwork) {
    record->file = test::textPDF({"x"});
    show();
    opener.succeed(0, {u"Ana"_s});
    EXPECT_TRUE(visible<PDFKitView>());
    EXPECT_EQ(records.calls(), QStringList());
}

TEST_F(CandidateDetail, PDFThatCannotBeHadIsSaidOnEveryTabAndLogged) {
    show();
    CapturedOutput output;
    records.answerFetchPDF(std::nullopt);
    EXPECT_EQ(output.text(), u"⚠️ No PDF available for ana@example.org\n"_s);
    EXPECT_FALSE(view->isLoadingPDF());
    EXPECT_FALSE(view->pdfText());
    EXPECT_EQ(notice(), u"PDF no disponible"_s);
    EXPECT_EQ(visible<QLabel>()->font(), textFont(TextStyle::Headline));
    EXPECT_EQ(noticeColour(), QColor(colours::secondaryText));
    ASSERT_TRUE(visible<SymbolView>());
    EXPECT_TRUE(looksLike(*visible<SymbolView>(), u"doc.text.fill"_s, 60));
    chooseMain(mainTagTypes::text);
    EXPECT_EQ(notice(), u"Contenido no disponible"_s);
    EXPECT_EQ(noticeColour(), QColor(colours::text));
    EXPECT_FALSE(visible<SymbolView>());
    chooseMain(mainTagTypes::extraer);
    EXPECT_TRUE(text().contains(u":\n\nContenido no disponible\n\nNecesitas"_s));
    chooseMain(mainTagTypes::correo);
    EXPECT_TRUE(text().contains(u":\n\nContenido no disponible\nQuiero"_s));
}

TEST_F(CandidateDetail, FailedRequestLeavesBothLogLines) {
    show();
    CapturedOutput output;
    records.answerFetchPDF(std::unexpected(APIError::responseProblem));
    EXPECT_EQ(output.lines(), (QStringList{u"❌ Failed to load PDF for ana@example.org: responseProblem"_s,
                                           u"⚠️ No PDF available for ana@example.org"_s}));
    EXPECT_EQ(notice(), u"PDF no disponible"_s);
}

TEST_F(CandidateDetail, BrokenPDFIsNotAvailable) {
    show();
    records.answerFetchPDF(QByteArray("no PDF"));
    CapturedOutput output;
    opener.fail(0);
    EXPECT_EQ(output.text(), u"⚠️ No PDF available for ana@example.org\n"_s);
    EXPECT_EQ(notice(), u"PDF no disponible"_s);
    EXPECT_FALSE(visible<Spinner>());
}

TEST_F(CandidateDetail, BrokenPDFIsSaidAtOnceWhenTheCandidateIsLookedAtAgain) {
    show();
    records.answerFetchPDF(QByteArray("no PDF"));
    CapturedOutput output;
    opener.fail(0);
    show();
    EXPECT_FALSE(view->isLoadingPDF());
    EXPECT_EQ(notice(), u"PDF no disponible"_s);
    EXPECT_EQ(output.lines(),
              (QStringList{u"⚠️ No PDF available for ana@example.org"_s, u"⚠️ No PDF available for ana@example.org"_s}));
    EXPECT_EQ(opener.openings(), 1);
    EXPECT_EQ(records.calls().size(), 1);
}

TEST_F(CandidateDetail, PDFWithoutTextIsShownWithAnEmptyText) {
    showLoaded({u""_s});
    chooseMain(mainTagTypes::text);
    ASSERT_TRUE(textView());
    EXPECT_EQ(text(), QString());
}

TEST_F(CandidateDetail, ExtractionShowsThePromptAndTheIndentedData) {
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::extraer);
    EXPECT_TRUE(text().contains(u"curriculum:\n\nAna\n\nNecesitas extraer"_s));
    choose(u"extractTagType"_s, 1);
    EXPECT_EQ(text(), u"{\n  \"gender\": \"Femenino\",\n  \"softSkills\": [\n    \"Orden\"\n  ],\n  \"techSkills\": [\n"
                      "    \"R\"\n  ],\n  \"languages\": [\n    \"Español\"\n  ]\n}"_s);
}

TEST_F(CandidateDetail, MailIsShownUnescapedWithTheInferredGender) {
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::correo);
    EXPECT_TRUE(text().endsWith(u"Ostrel de México\"."_s));
    choose(u"correoTagType"_s, 1);
    EXPECT_EQ(text(), u"{\"correo\":\"Estimada Sra. \"Ana\":\"}\n\nValor inferido {\"genero\":\"femenino\"}"_s);
}

TEST_F(CandidateDetail, SwitchingTabsKeepsEachSubTab) {
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::extraer);
    choose(u"extractTagType"_s, 1);
    chooseMain(mainTagTypes::correo);
    EXPECT_EQ(view->correoTagType(), correoTagTypes::prompt);
    EXPECT_TRUE(text().contains(u"Quiero"_s));
    choose(u"correoTagType"_s, 1);
    for (int round = 0; round < 2; ++round) {
        chooseMain(mainTagTypes::extraer);
        EXPECT_EQ(view->extractTagType(), extractTagTypes::json);
        EXPECT_TRUE(text().startsWith(u"{\n  \"gender\""_s));
        chooseMain(mainTagTypes::correo);
        EXPECT_EQ(view->correoTagType(), correoTagTypes::json);
        EXPECT_TRUE(text().startsWith(u"{\"correo\""_s));
    }
    choose(u"correoTagType"_s, 0);
    chooseMain(mainTagTypes::extraer);
    EXPECT_EQ(view->extractTagType(), extractTagTypes::json);
    chooseMain(mainTagTypes::correo);
    EXPECT_EQ(view->correoTagType(), correoTagTypes::prompt);
}

TEST_F(CandidateDetail, MayGoWhileThePDFIsBeingLoaded) {
    show();
    view.reset();
    CapturedOutput output;
    deliver({u"Ana"_s});
    EXPECT_EQ(output.text(), QString());
    EXPECT_TRUE(record->pdfDocument()); // for the next time
}

TEST_F(CandidateDetail, ViewThatHasGoneStillLogsThatThereIsNoPDF) {
    show();
    view.reset();
    CapturedOutput output;
    records.answerFetchPDF(std::unexpected(APIError::responseProblem));
    EXPECT_EQ(output.lines(), (QStringList{u"❌ Failed to load PDF for ana@example.org: responseProblem"_s,
                                           u"⚠️ No PDF available for ana@example.org"_s}));
}

TEST_F(CandidateDetail, RecordThatHasGoneWithItsViewLogsNothing) {
    show();
    view.reset();
    record.reset();
    CapturedOutput output;
    records.answerFetchPDF(std::nullopt);
    EXPECT_EQ(output.text(), QString());
}

TEST_F(CandidateDetail, SecondViewOfARecordThatIsBeingLoadedWaitsForTheSameRequest) {
    show();
    const auto first = std::move(view);
    show();
    EXPECT_EQ(records.calls().size(), 1);
    deliver({u"Ana"_s});
    EXPECT_EQ(first->pdfText(), u"Ana"_s);
    EXPECT_EQ(view->pdfText(), u"Ana"_s);
}

TEST_F(CandidateDetail, IsLoadedOnceThoughShownTwice) {
    show();
    const CapturedOutput output;
    records.answerFetchPDF(std::nullopt);
    view->hide();
    view->show();
    EXPECT_EQ(records.calls().size(), 1);
}

} // namespace
} // namespace dorvantel
