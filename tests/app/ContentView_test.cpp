// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/CandidateListModel.h"
#include "intake/CandidateDetailUIView.h"
#include "tests/app/ContentViewFixture.h"
#include "tests/support/CapturedOutput.h"
#include "ui/SegmentedControl.h"

#include <QAction>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace dorvantel::test {

TEST_F(ContentViewTest, StartsEmptyOnThePlaceholderAndLoadsAtOnce) {
    EXPECT_EQ(window.windowTitle(), u"Dorvantel"_s);
    EXPECT_EQ(records.calls(), (QStringList{u"fetchAll"_s}));
    EXPECT_EQ(detail()->objectName(), u"placeholder"_s);
    EXPECT_EQ(list->model()->rowCount(), 2);
}

TEST_F(ContentViewTest, ListsTheSearchEntryTheHeaderAndTheCandidatesInOrder) {
    loadThree();
    QStringList rows;
    for (int i = 0; i < list->model()->rowCount(); ++i) {
        rows.append(list->model()->index(i, 0).data().toString());
    }
    EXPECT_EQ(rows, (QStringList{u"Buscar"_s, u"Candidatos"_s, u"Ana"_s, u"Blas"_s, u"Carla"_s}));
}

TEST_F(ContentViewTest, SidebarIs300WideAtFirstAndAtLeast250) {
    EXPECT_EQ(list->minimumWidth(), 250);
    EXPECT_EQ(list->maximumWidth(), QWIDGETSIZE_MAX);
    EXPECT_NEAR(list->width(), 300, 10);
}

TEST_F(ContentViewTest, ClickSelectsTheCandidateInTheModel) {
    loadThree();
    click(row(1));
    ASSERT_TRUE(window.model().selectedDBRecord());
    EXPECT_EQ(window.model().selectedDBRecord()->name, u"Blas"_s);
}

TEST_F(ContentViewTest, HeaderCannotBeSelected) {
    loadThree();
    click(row(1));
    click(1);
    EXPECT_EQ(window.model().selectedDBRecord()->name, u"Blas"_s);
}

TEST_F(ContentViewTest, SearchEntryShowsTheSearchScreenAndSelectsNobody) {
    loadThree();
    click(row(0));
    click(0);
    EXPECT_FALSE(window.model().selectedDBRecord());
    EXPECT_EQ(detail()->objectName(), u"search"_s);
    click(row(0));
    EXPECT_NE(detail()->objectName(), u"search"_s);
}

TEST_F(ContentViewTest, SearchScreenFindsAndInvitesThroughTheWindowsServices) {
    loadThree();
    click(0);
    QTest::mouseClick(detail()->findChild<QPushButton*>(u"searchButton"_s), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return records.calls().last().startsWith(u"search select "_s); }));
    QueryResult found;
    found.email = u"ana@example.com"_s;
    records.answerSearch(std::make_shared<IdentifiableSearchResponse>(SearchResponse{u"select"_s, {found}}));
    QTest::mouseClick(detail()->findChild<QPushButton*>(u"invite"_s), Qt::LeftButton);
    ASSERT_EQ(urlOpener.opened().size(), 1);
    EXPECT_EQ(urlOpener.opened()[0].path(), u"ana@example.com"_s);
}

TEST_F(ContentViewTest, AnswerThatArrivesAfterTheSearchScreenWasLeftReachesNobody) {
    loadThree();
    click(0);
    QTest::mouseClick(detail()->findChild<QPushButton*>(u"searchButton"_s), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return records.calls().last().startsWith(u"search select "_s); }));
    const QPointer<QWidget> screen = detail();
    click(row(0));
    ASSERT_TRUE(waitUntil([&] { return !screen; }));
    const QPointer<QWidget> shown = detail();
    CapturedOutput output;
    records.answerSearch(std::make_shared<IdentifiableSearchResponse>(SearchResponse{u"select"_s, {QueryResult{}}}));
    QCoreApplication::processEvents();
    EXPECT_EQ(output.text(), QString());
    EXPECT_EQ(detail(), shown);
    EXPECT_FALSE(window.findChild<QWidget*>(u"results"_s));
}

TEST_F(ContentViewTest, SearchByDescriptionThatIsUnderWayWhenItsScreenIsLeftComesToItsEnd) {
    loadThree();
    click(0);
    detail()->findChild<QPlainTextEdit*>(u"freeText"_s)->setPlainText(u"contable"_s);
    for (int press = 0; press < 2; ++press) {
        QTest::mouseClick(detail()->findChild<QPushButton*>(u"searchButton"_s), Qt::LeftButton);
    }
    const QPointer<QWidget> screen = detail();
    click(row(0));
    ASSERT_TRUE(waitUntil([&] { return !screen; }));
    CapturedOutput output;
    models.answerEmbedding(0, std::unexpected(OllamaError::emptyResponse()));
    models.answerEmbedding(1, QList<double>{1});
    ASSERT_TRUE(waitUntil([&] { return records.calls().last().startsWith(u"search select "_s); }));
    records.answerSearch(std::unexpected(APIError::responseProblem));
    EXPECT_EQ(output.lines(), (QStringList{u"❌ Error generating embedding: Respuesta vacía del modelo"_s,
                                           u"Failure! No records returned"_s}));
}

TEST_F(ContentViewTest, SelectedCandidateIsShownInDetail) {
    loadThree();
    click(row(1));
    auto* shownDetail = qobject_cast<CandidateDetailUIView*>(detail());
    ASSERT_TRUE(shownDetail);
    EXPECT_EQ(shownDetail->dbRecord()->name, u"Blas"_s);
    EXPECT_TRUE(shownDetail->isLoadingPDF());
    EXPECT_EQ(records.calls().last(), u"fetchPDF blas@example.com"_s);
}

TEST_F(ContentViewTest, DetailIsRebuiltFromScratchWhenAnotherCandidateIsSelected) {
    loadThree();
    click(row(1));
    const QPointer<QWidget> first = detail();
    detail()->findChild<SegmentedControl*>(u"mainTagType"_s)->setCurrentIndex(3);
    click(row(2));
    auto* second = qobject_cast<CandidateDetailUIView*>(detail());
    ASSERT_TRUE(second);
    EXPECT_NE(second, first);
    EXPECT_EQ(second->dbRecord()->name, u"Carla"_s);
    EXPECT_EQ(second->mainTagType(), mainTagTypes::pdf);
    EXPECT_TRUE(waitUntil([&] { return !first; }));
    EXPECT_EQ(window.findChild<QStackedWidget*>(u"detail"_s)->count(), 2);
}

TEST_F(ContentViewTest, DetailStaysWhileTheSameCandidateIsSelected) {
    loadThree();
    click(row(1));
    const QWidget* first = detail();
    detail()->findChild<SegmentedControl*>(u"mainTagType"_s)->setCurrentIndex(3);
    click(row(1));
    window.model().setSelectedDBRecord(window.model().dbRecords()[1]);
    EXPECT_EQ(detail(), first);
    EXPECT_EQ(qobject_cast<CandidateDetailUIView*>(detail())->mainTagType(), mainTagTypes::correo);
}

TEST_F(ContentViewTest, SelectionOfTheModelIsShownInDetailUntilThereIsNone) {
    loadThree();
    window.model().setSelectedDBRecord(window.model().dbRecords()[2]);
    ASSERT_TRUE(qobject_cast<CandidateDetailUIView*>(detail()));
    EXPECT_EQ(qobject_cast<CandidateDetailUIView*>(detail())->dbRecord()->name, u"Carla"_s);
    window.model().setSelectedDBRecord(nullptr);
    EXPECT_EQ(detail()->objectName(), u"placeholder"_s);
}

TEST_F(ContentViewTest, CandidateDeletedWhileItsPDFIsLoadedIsForgottenSilently) {
    loadThree();
    click(row(1));
    const QPointer<QWidget> shownDetail = detail();
    const std::weak_ptr<DBRecordRepresentation> record = window.model().dbRecords()[1];
    window.deleteCommand();
    QTest::mouseClick(deleteAlert()->defaultButton(), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return !shownDetail; }));
    EXPECT_TRUE(record.expired());
    CapturedOutput output;
    records.answerFetchPDF(std::unexpected(APIError::responseProblem));
    EXPECT_EQ(output.text(), QString());
}

TEST_F(ContentViewTest, CandidateThatWasJustStoredShowsItsCVWithoutNetwork) {
    auto record = candidate(u"Ana"_s, u"ana@example.com"_s);
    record->file = "bytes";
    record->keepDocument(std::make_shared<PDFDocument>(*record->file, QStringList{u"Ana"_s}));
    load({record});
    click(row(0));
    EXPECT_EQ(qobject_cast<CandidateDetailUIView*>(detail())->pdfText(), u"Ana"_s);
    EXPECT_EQ(records.calls(), (QStringList{u"fetchAll"_s}));
    EXPECT_EQ(pdfs.openings(), 0);
}

TEST_F(ContentViewTest, FocusInTheListSelectsNothingByItself) {
    loadThree();
    list->setFocus();
    EXPECT_FALSE(list->selectionModel()->hasSelection());
    EXPECT_EQ(detail()->objectName(), u"placeholder"_s);
}

TEST_F(ContentViewTest, SelectionOfTheModelReachesTheList) {
    loadThree();
    window.model().setSelectedDBRecord(window.model().dbRecords()[2]);
    EXPECT_EQ(list->selectionModel()->selectedIndexes().value(0).row(), row(2));
    window.model().setSelectedDBRecord(nullptr);
    EXPECT_FALSE(list->selectionModel()->hasSelection());
}

TEST_F(ContentViewTest, AnotherObjectOfTheSelectedIdentityChangesNeitherSelectionNorDetail) {
    loadThree();
    click(row(1));
    const QWidget* first = detail();
    const auto twin = std::make_shared<DBRecordRepresentation>(window.model().dbRecords()[1]->id);
    window.model().setSelectedDBRecord(twin);
    EXPECT_EQ(detail(), first);
    EXPECT_EQ(list->selectionModel()->selectedIndexes().value(0).row(), row(1));
    list->selectionModel()->clearSelection();
    window.model().setSelectedDBRecord(twin);
    list->setCurrentIndex(list->model()->index(row(1), 0));
    EXPECT_EQ(window.model().selectedDBRecord(), twin);
}

TEST_F(ContentViewTest, SelectionOfTheModelThatIsNotListedIsShownInDetailAndStays) {
    loadThree();
    click(row(1));
    const auto stranger = candidate(u"Diana"_s, u"diana@example.com"_s);
    window.model().setSelectedDBRecord(stranger);
    EXPECT_EQ(window.model().selectedDBRecord(), stranger);
    EXPECT_FALSE(list->selectionModel()->hasSelection());
    ASSERT_TRUE(qobject_cast<CandidateDetailUIView*>(detail()));
    EXPECT_EQ(qobject_cast<CandidateDetailUIView*>(detail())->dbRecord(), stranger);
}

TEST_F(ContentViewTest, DeleteCommandWithoutSelectionDoesNothing) {
    loadThree();
    window.deleteCommand();
    EXPECT_FALSE(deleteAlert());
}

TEST_F(ContentViewTest, DeleteKeyAsksByName) {
    loadThree();
    click(row(1));
    QTest::keyClick(list, Qt::Key_Delete);
    ASSERT_TRUE(deleteAlert());
    EXPECT_EQ(deleteAlert()->windowTitle(), u"Borrar currículum"_s);
    EXPECT_EQ(deleteAlert()->text(), u"¿Está seguro de querer borrar el currículum de Blas?"_s);
    EXPECT_EQ(deleteAlert()->defaultButton()->text(), u"OK"_s);
}

TEST_F(ContentViewTest, TwoQuickDeleteCommandsOpenAndCloseTheQuestion) {
    loadThree();
    click(row(1));
    window.deleteCommand();
    EXPECT_TRUE(deleteAlert());
    window.deleteCommand();
    EXPECT_FALSE(deleteAlert());
    EXPECT_EQ(window.model().dbRecords().size(), 3U);
    window.deleteCommand();
    EXPECT_TRUE(waitUntil([&] { return deleteAlert() != nullptr; }));
}

TEST_F(ContentViewTest, OKDeletesWithoutWaitingForTheService) {
    loadThree();
    click(row(1));
    window.deleteCommand();
    QString lastCallBeforeTheRemoval;
    QObject::connect(&window.model(), &Model::recordRemoved, &window,
                     [&] { lastCallBeforeTheRemoval = records.calls().last(); });
    QTest::mouseClick(deleteAlert()->defaultButton(), Qt::LeftButton);
    EXPECT_FALSE(deleteAlert());
    EXPECT_EQ(lastCallBeforeTheRemoval, u"deleteResume blas@example.com"_s);
    ASSERT_EQ(window.model().dbRecords().size(), 2U);
    EXPECT_EQ(window.model().dbRecords()[1]->name, u"Carla"_s);
    EXPECT_FALSE(window.model().selectedDBRecord());
    EXPECT_FALSE(list->selectionModel()->hasSelection());
    EXPECT_EQ(detail()->objectName(), u"placeholder"_s);
    EXPECT_EQ(list->model()->rowCount(), 4);
}

TEST_F(ContentViewTest, DeletingTheLastCandidateLeavesAnEmptyList) {
    load({candidate(u"Ana"_s, u"ana@example.com"_s)});
    click(row(0));
    window.deleteCommand();
    QTest::mouseClick(deleteAlert()->defaultButton(), Qt::LeftButton);
    EXPECT_TRUE(window.model().dbRecords().empty());
    EXPECT_FALSE(list->selectionModel()->hasSelection());
}

TEST_F(ContentViewTest, CancelAndEscapeDeleteNobody) {
    loadThree();
    click(row(1));
    window.deleteCommand();
    QTest::mouseClick(deleteAlert()->escapeButton(), Qt::LeftButton);
    EXPECT_FALSE(deleteAlert());
    window.deleteCommand();
    QTest::keyClick(deleteAlert(), Qt::Key_Escape);
    EXPECT_FALSE(deleteAlert());
    EXPECT_EQ(window.model().dbRecords().size(), 3U);
    EXPECT_EQ(window.model().selectedDBRecord()->name, u"Blas"_s);
}

TEST_F(ContentViewTest, NameThatLooksLikeMarkupIsShownAsItIs) {
    load({candidate(u"<b>Ana</b>"_s, u"ana@example.com"_s)});
    click(row(0));
    window.deleteCommand();
    EXPECT_EQ(deleteAlert()->textFormat(), Qt::PlainText);
}

TEST_F(ContentViewTest, RefreshOnlyLogs) {
    CapturedOutput output;
    window.findChild<QAction*>(u"refresh"_s)->trigger();
    EXPECT_EQ(output.text(), u"Refresh data\n"_s);
    EXPECT_EQ(records.calls(), (QStringList{u"fetchAll"_s}));
}

} // namespace dorvantel::test
