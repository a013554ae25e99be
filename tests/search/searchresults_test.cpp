// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/VectorText.h"
#include "tests/search/SearchUIViewFixture.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScrollBar>

#include <array>

namespace dorvantel::test {

TEST_F(SearchUIViewTest, FailedSearchLeavesTheListItShows) {
    showAnswer(2);
    search();
    const CapturedOutput output;
    records.answerSearch(std::unexpected(APIError::decodingProblem));
    EXPECT_EQ(list()->count(), 2);
    EXPECT_TRUE(list()->isVisible());
}

TEST_F(SearchUIViewTest, EmbeddingServerThatIsDownLeavesTheScreenAsItIs) {
    showAnswer(2);
    models.queueEmbedding(
        std::unexpected(OllamaError::networkError({.domain = {}, .code = 0, .description = u"Conexión rechazada"_s})));
    part<QPlainTextEdit>(u"freeText"_s)->setPlainText(u"x"_s);
    CapturedOutput output;
    press(u"searchButton"_s);
    bool done = false;
    QMetaObject::invokeMethod(qApp, [&done] { done = true; }, Qt::QueuedConnection);
    ASSERT_TRUE(waitUntil([&] { return done; }));
    EXPECT_EQ(output.text(), u"❌ Error generating embedding: Error de red: Conexión rechazada\n"_s);
    EXPECT_EQ(list()->count(), 2);
    EXPECT_TRUE(list()->isVisible());
}

TEST_F(SearchUIViewTest, NoResultAreaBeforeTheFirstAnswer) {
    EXPECT_FALSE(list()->isVisible());
    search();
    EXPECT_FALSE(list()->isVisible());
    CapturedOutput output;
    records.answerSearch(std::unexpected(APIError::responseProblem));
    EXPECT_EQ(output.text(), u"Failure! No records returned\n"_s);
    EXPECT_FALSE(list()->isVisible());
}

TEST_F(SearchUIViewTest, EmptyAnswerShowsAnEmptyArea) {
    showAnswer(100);
    showAnswer(0);
    EXPECT_TRUE(list()->isVisible());
    EXPECT_EQ(list()->count(), 0);
    EXPECT_EQ(list()->verticalScrollBar()->maximum(), 0);
}

TEST_F(SearchUIViewTest, MoreResultsThanThereIsRoomForAreScrolledWithABarThatIsSeen) {
    showAnswer(100);
    screen->grab();
    EXPECT_TRUE(list()->verticalScrollBar()->isVisible());
    EXPECT_GT(list()->verticalScrollBar()->maximum(), 0);
    EXPECT_FALSE(list()->horizontalScrollBar()->isVisible());
}

TEST_F(SearchUIViewTest, RowsStandInTheOrderReceivedAndAlternate) {
    showAnswer(5);
    for (qsizetype i = 0; i < 5; ++i) {
        list()->verticalScrollBar()->setValue(static_cast<int>(i) * SearchResultDetailUIView::closedHeight);
        ASSERT_TRUE(row(i));
        EXPECT_EQ(row(i)->result().name, u"Candidata %1"_s.arg(i));
        EXPECT_EQ(row(i)->lineColorIndex(), i % 2);
    }
}

TEST_F(SearchUIViewTest, AnswerReplacesTheOneBeforeAndItsRowsAreNew) {
    showAnswer(3);
    row(0)->setDisclosed(true);
    showAnswer(3);
    EXPECT_FALSE(row(0)->disclosed());
}

TEST_F(SearchUIViewTest, AnswerThatArrivesAfterClearingIsShown) {
    search();
    press(u"clearButton"_s);
    records.answerSearch(answerOf(2));
    EXPECT_TRUE(list()->isVisible());
    EXPECT_EQ(list()->count(), 2);
}

TEST_F(SearchUIViewTest, ScreenThatWasLeftSurvivesEveryAnswerAndItsSearchesComeToTheirEnd) {
    showAnswer(3);
    QTest::mouseClick(row(0)->findChild<QPushButton*>(u"cv"_s), Qt::LeftButton);
    search();
    part<QPlainTextEdit>(u"freeText"_s)->setPlainText(u"x"_s);
    press(u"searchButton"_s);
    screen.reset();
    records.answerSearch(answerOf(1));
    records.answerFetchPDF(QByteArray("%PDF"));
    models.answerEmbedding(0, QList<double>{1});
    ASSERT_TRUE(waitUntil([&] { return searches().size() == 3; }));
    EXPECT_EQ(searches().last(), semanticStatement(std::array{1.0}, {}));
    CapturedOutput output;
    records.answerSearch(std::unexpected(APIError::responseProblem));
    EXPECT_EQ(output.text(), u"Failure! No records returned\n"_s);
}

TEST_F(SearchUIViewTest, KeyboardAloneRunsAStructuredSearch) {
    loadCatalogues();
    const auto key = [](Qt::Key code) { QTest::keyClick(QApplication::focusWidget(), code); };
    part<QRadioButton>(u"any"_s)->setFocus();
    key(Qt::Key_Up);
    EXPECT_TRUE(part<QRadioButton>(u"male"_s)->isChecked());
    key(Qt::Key_Tab);
    typeText(*QApplication::focusWidget(), u"excel,"_s);
    key(Qt::Key_Tab);
    typeText(*QApplication::focusWidget(), u"liderazgo"_s);
    key(Qt::Key_Return);
    key(Qt::Key_Tab);
    EXPECT_TRUE(field(u"languages"_s)->isAncestorOf(QApplication::focusWidget()));
    key(Qt::Key_Tab);
    EXPECT_TRUE(part<QPlainTextEdit>(u"freeText"_s)->hasFocus());
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    EXPECT_TRUE(part<QPushButton>(u"searchButton"_s)->hasFocus());
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return !searches().isEmpty(); }));
    EXPECT_EQ(searches(),
              QStringList{structuredStatement({u"jsonCVData::gender = '\"Masculino\"'"_s,
                                               u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'Excel')"_s,
                                               u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::softSkills,'Liderazgo')"_s})});
}

TEST_F(SearchUIViewTest, KeyboardAloneRunsASemanticSearchAndOpensAResult) {
    models.queueEmbedding(QList<double>{1});
    const auto key = [](Qt::Key code) { QTest::keyClick(QApplication::focusWidget(), code); };
    part<QPlainTextEdit>(u"freeText"_s)->setFocus();
    typeText(*QApplication::focusWidget(), u"contable"_s);
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    key(Qt::Key_Space);
    ASSERT_TRUE(waitUntil([&] { return !searches().isEmpty(); }));
    records.answerSearch(answerOf(5));
    key(Qt::Key_Tab);
    EXPECT_TRUE(row(0)->hasFocus());
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_TRUE(row(1)->disclosed());
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    key(Qt::Key_Space);
    EXPECT_EQ(records.calls().last(), u"fetchPDF c1@example.org"_s);
    key(Qt::Key_Up);
    EXPECT_TRUE(row(0)->hasFocus());
}

TEST_F(SearchUIViewTest, LowWindowLeavesRoomForTheResults) {
    screen->resize(724, 560);
    for (int i = 0; i < 30; ++i) {
        enter(u"techSkills"_s, u"Habilidad %1"_s.arg(i));
        enter(u"softSkills"_s, u"Habilidad %1"_s.arg(i));
    }
    showAnswer(10);
    ASSERT_TRUE(waitUntil([&] { return list()->geometry().bottom() <= screen->height(); }));
    EXPECT_EQ(screen->height(), 560);
    EXPECT_GE(list()->height(), 2 * SearchResultDetailUIView::closedHeight);
}

TEST_F(SearchUIViewTest, TenThousandResultsCostOnlyWhatIsSeen) {
    showAnswer(10'000);
    screen->grab();
    EXPECT_EQ(list()->count(), 10'000);
    EXPECT_LE(list()->madeRows(), 12);
    list()->verticalScrollBar()->setValue(list()->verticalScrollBar()->maximum());
    EXPECT_EQ(row(9'999)->result().name, u"Candidata 9999"_s);
    EXPECT_EQ(row(9'999)->lineColorIndex(), 1);
    EXPECT_LE(list()->madeRows(), 12);
}

} // namespace dorvantel::test
