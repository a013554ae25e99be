// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/CandidateListModel.h"
#include "app/ContentView.h"
#include "app/DropOverlay.h"
#include "intake/CandidateDetailUIView.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeModelService.h"
#include "tests/support/FakePDFOpener.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/FakeURLOpener.h"
#include "tests/support/Wait.h"
#include "ui/SegmentedControl.h"

#include <QAction>
#include <QApplication>
#include <QDragEnterEvent>
#include <QFile>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <gtest/gtest.h>

using namespace dorvantel;
using namespace dorvantel::test;
using namespace Qt::StringLiterals;

namespace {

DBRecordPointer candidate(const QString& name, const QString& email) {
    auto record = std::make_shared<DBRecordRepresentation>();
    record->name = name;
    record->profession = u"Contable"_s;
    record->email = email;
    return record;
}

class ContentViewTest : public testing::Test {
protected:
    void SetUp() override {
        window.resize(900, 600);
        window.show();
        list = window.findChild<QListView*>(u"candidateList"_s);
    }

    void load(std::vector<DBRecordPointer> candidates) {
        const std::size_t count = candidates.size();
        records.answerFetchAll(std::move(candidates));
        ASSERT_TRUE(waitUntil([&] { return window.model().dbRecords().size() == count; }));
    }
    void loadThree() {
        load({candidate(u"Ana"_s, u"ana@example.com"_s), candidate(u"Blas"_s, u"blas@example.com"_s),
              candidate(u"Carla"_s, u"carla@example.com"_s)});
    }
    void click(int row) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualRect(list->model()->index(row, 0)).center());
    }
    /// The row of the n-th candidate: the search entry and the header come first.
    static int row(int candidate) { return 2 + candidate; }

    template <typename Dialog>
    Dialog* shown(const QString& name) {
        auto* dialog = window.findChild<Dialog*>(name);
        return dialog && dialog->isVisible() ? dialog : nullptr;
    }
    QMessageBox* deleteAlert() { return shown<QMessageBox>(u"deleteAlert"_s); }
    QMessageBox* errorAlert() { return shown<QMessageBox>(u"errorAlert"_s); }
    QWidget* sheet() { return shown<QDialog>(u"validationSheet"_s); }
    QWidget* detail() { return window.findChild<QStackedWidget*>(u"detail"_s)->currentWidget(); }

    QString file(const QString& name, const QByteArray& bytes) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }
    bool dragEnter(const QStringList& paths) {
        setUrls(paths);
        QDragEnterEvent event({10, 10}, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &event);
        return event.isAccepted();
    }
    /// As the platform does it: what is dropped has been dragged over the window before.
    bool drop(const QStringList& paths) {
        dragEnter(paths);
        QDropEvent event({10, 10}, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        QApplication::sendEvent(&window, &event);
        return event.isAccepted();
    }
    void setUrls(const QStringList& paths) {
        QList<QUrl> urls;
        for (const QString& path : paths) {
            urls.append(QUrl::fromLocalFile(path));
        }
        mime.setUrls(urls);
    }

    FakeRecordsService records;
    FakeModelService models;
    FakePDFOpener pdfs;
    FakeURLOpener urlOpener;
    QTemporaryDir folder;
    QMimeData mime;
    ContentView window{{records, models, pdfs, urlOpener}};
    QListView* list = nullptr;
};

} // namespace

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

TEST_F(ContentViewTest, SidebarIsAtLeast250Wide) {
    EXPECT_GE(list->minimumWidth(), 250);
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
    records.answerSearch(std::make_shared<IdentifiableSearchResponse>(SearchResponse{u"select"_s, {}}));
    EXPECT_NE(detail()->objectName(), u"search"_s);
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
    record->pdfDocument = std::make_shared<PDFDocument>(*record->file, QStringList{u"Ana"_s});
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
    QTest::mouseClick(deleteAlert()->defaultButton(), Qt::LeftButton);
    EXPECT_FALSE(deleteAlert());
    EXPECT_EQ(records.calls().last(), u"deleteResume blas@example.com"_s);
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

TEST_F(ContentViewTest, FemeninoInLowerCaseShowsTheWomanInItsRow) {
    auto record = candidate(u"Ana"_s, u"ana@example.com"_s);
    record->jsonCVData.gender = u"femenino"_s;
    load({record});
    EXPECT_EQ(list->model()->index(row(0), 0).data(CandidateListModel::GenderRole).toString(), u"femenino"_s);
}

TEST_F(ContentViewTest, HoveringPDFCoversTheWindowUntilItLeaves) {
    auto* overlay = window.findChild<DropOverlay*>(u"dropOverlay"_s);
    EXPECT_TRUE(dragEnter({file(u"cv.pdf"_s, "x")}));
    EXPECT_TRUE(overlay->isVisible());
    EXPECT_EQ(overlay->size(), window.size());
    QDragLeaveEvent leave;
    QApplication::sendEvent(&window, &leave);
    EXPECT_FALSE(overlay->isTargeted());
    EXPECT_TRUE(waitUntil([&] { return !overlay->isVisible(); }));
}

TEST_F(ContentViewTest, TextFileAndFolderAreRefused) {
    EXPECT_FALSE(dragEnter({file(u"cv.txt"_s, "x")}));
    EXPECT_FALSE(drop({file(u"cv.txt"_s, "x")}));
    EXPECT_FALSE(drop({folder.path()}));
    EXPECT_EQ(pdfs.openings(), 0);
}

TEST_F(ContentViewTest, DroppedPDFIsProcessedWithItsBytes) {
    EXPECT_TRUE(drop({file(u"cv.pdf"_s, "bytes")}));
    ASSERT_TRUE(waitUntil([&] { return pdfs.openings() == 1; }));
    EXPECT_EQ(pdfs.bytes(0), "bytes");
    EXPECT_TRUE(sheet());
}

TEST_F(ContentViewTest, OfSeveralDroppedPDFsOnlyTheFirstIsProcessed) {
    drop({file(u"one.pdf"_s, "1"), file(u"two.pdf"_s, "2")});
    ASSERT_TRUE(waitUntil([&] { return pdfs.openings() > 0; }));
    EXPECT_EQ(pdfs.openings(), 1);
    EXPECT_EQ(pdfs.bytes(0), "1");
}

TEST_F(ContentViewTest, ChosenFileIsProcessedExactlyAsADrop) {
    window.openCV(file(u"cv.pdf"_s, "bytes"));
    ASSERT_TRUE(waitUntil([&] { return pdfs.openings() == 1; }));
    EXPECT_EQ(pdfs.bytes(0), "bytes");
    EXPECT_TRUE(sheet());
}

TEST_F(ContentViewTest, MenuOffersTheFileDialogWithTheUsualKey) {
    auto* add = window.findChild<QAction*>(u"addCV"_s);
    EXPECT_EQ(add->text().remove(u'&'), u"Añadir currículum…"_s);
    EXPECT_EQ(add->shortcut(), QKeySequence(u"Ctrl+O"_s));
    add->trigger();
    auto* dialog = window.findChild<QDialog*>(u"chooseCV"_s);
    ASSERT_TRUE(dialog);
    dialog->reject();
}

TEST_F(ContentViewTest, ChosenFileThatIsNoPDFIsRefusedAsADropIs) {
    window.openCV(file(u"cv.txt"_s, "text"));
    window.openCV(file(u"cv.pdf"_s, "bytes"));
    ASSERT_TRUE(waitUntil([&] { return pdfs.openings() > 0; }));
    EXPECT_EQ(pdfs.bytes(0), "bytes");
}

TEST_F(ContentViewTest, CVThatIsLoadedLateNeverReachesTheSheetOfAnother) {
    const QString late = file(u"late.pdf"_s, "late");
    const QString other = file(u"other.pdf"_s, "other");
    window.openCV(late);
    window.openCV(other);
    QThreadPool::globalInstance()->waitForDone();
    ASSERT_TRUE(waitUntil([&] { return pdfs.openings() > 0; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(pdfs.openings(), 1);
}

TEST_F(ContentViewTest, PDFDroppedOnTheFreeTextIsTheWindows) {
    loadThree();
    click(0);
    auto* freeText = window.findChild<QWidget*>(u"freeText"_s);
    ASSERT_TRUE(freeText);
    EXPECT_FALSE(freeText->acceptDrops());
    for (const QWidget* part : freeText->findChildren<QWidget*>()) {
        EXPECT_FALSE(part->acceptDrops()) << qPrintable(part->objectName());
    }
    for (auto* line : detail()->findChildren<QLineEdit*>()) {
        EXPECT_FALSE(line->acceptDrops());
    }
}

TEST_F(ContentViewTest, NothingIsDroppedWhileTheSheetIsOpen) {
    drop({file(u"cv.pdf"_s, "bytes")});
    ASSERT_TRUE(waitUntil([&] { return sheet() != nullptr; }));
    EXPECT_FALSE(dragEnter({file(u"other.pdf"_s, "other")}));
    EXPECT_FALSE(drop({file(u"other.pdf"_s, "other")}));
    window.openCV(file(u"other.pdf"_s, "other"));
    EXPECT_EQ(pdfs.openings(), 1);
}

TEST_F(ContentViewTest, FailureShowsTheAlertOverTheSheetAndTheWindowIsUsableAfterIt) {
    drop({file(u"cv.pdf"_s, "bytes")});
    ASSERT_TRUE(waitUntil([&] { return pdfs.openings() == 1; }));
    pdfs.succeed(0, {u"x"_s});
    CapturedOutput output;
    models.answerChat(0, std::unexpected(OllamaError::networkError({{}, 0, u"Connection refused"_s})));
    ASSERT_TRUE(waitUntil([&] { return errorAlert() != nullptr; }));
    EXPECT_EQ(errorAlert()->windowTitle(), u"Error procesando currículum"_s);
    EXPECT_EQ(errorAlert()->text(), u"Error con Ollama: Error de red: Connection refused"_s);
    ASSERT_EQ(errorAlert()->buttons().size(), 1);
    EXPECT_EQ(errorAlert()->buttons()[0]->text(), u"OK"_s);
    EXPECT_TRUE(sheet());

    QTest::mouseClick(errorAlert()->buttons()[0], Qt::LeftButton);
    EXPECT_FALSE(errorAlert());
    EXPECT_FALSE(window.intake().processingError());
    EXPECT_TRUE(sheet());
    QTest::keyClick(sheet(), Qt::Key_Escape);
    EXPECT_FALSE(sheet());
    EXPECT_TRUE(drop({file(u"cv.pdf"_s, "bytes")}));
    EXPECT_TRUE(waitUntil([&] { return pdfs.openings() == 2; }));
}

TEST_F(ContentViewTest, SecondCVGetsANewSheetOnItsFirstPage) {
    drop({file(u"cv.pdf"_s, "bytes")});
    ASSERT_TRUE(waitUntil([&] { return sheet() != nullptr; }));
    QTest::keyClick(sheet(), Qt::Key_Escape);
    EXPECT_FALSE(sheet());
    drop({file(u"cv.pdf"_s, "bytes")});
    EXPECT_TRUE(waitUntil([&] { return sheet() != nullptr; }));
}

TEST_F(ContentViewTest, WindowMayCloseDuringARunningIntake) {
    auto other = std::make_unique<ContentView>(ContentView::Services{records, models, pdfs, urlOpener});
    other->openCV(file(u"cv.pdf"_s, "bytes"));
    ASSERT_TRUE(waitUntil([&] { return pdfs.openings() == 1; }));
    pdfs.succeed(0, {u"x"_s});
    other.reset();
    EXPECT_TRUE(models.isChatCancelled(0));
    // The list that was being loaded arrives after the window is gone.
    records.answerFetchAll(std::vector<DBRecordPointer>{});
    records.answerFetchAll(std::vector<DBRecordPointer>{candidate(u"Ana"_s, u"a@example.com"_s)});
}
