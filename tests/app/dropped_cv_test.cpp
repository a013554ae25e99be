// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/DropOverlay.h"
#include "tests/app/ContentViewFixture.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Drawn.h"

#include "ui/SegmentedControl.h"
#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace dorvantel::test {

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
    waitForLoads();
    EXPECT_EQ(pdfs.openings(), 0);
}

TEST_F(ContentViewTest, DroppedPDFIsProcessedWithItsBytes) {
    EXPECT_TRUE(drop({file(u"cv.pdf"_s, "bytes")}));
    ASSERT_TRUE(waitUntil([&] { return pdfs.openings() == 1; }));
    EXPECT_EQ(pdfs.bytes(0), "bytes");
    EXPECT_TRUE(sheet());
}

TEST_F(ContentViewTest, OfSeveralDroppedPDFsOnlyTheFirstIsProcessed) {
    // The second is looked at after the first, whose sheet would refuse it: so the sheet is left as soon as it comes.
    QObject::connect(
        &window.intake(), &IntakeState::sheetIsShowingChanged, &window,
        [this] {
            if (sheet()) {
                QTest::keyClick(sheet(), Qt::Key_Escape);
            }
        },
        Qt::QueuedConnection);
    drop({file(u"one.pdf"_s, "1"), file(u"two.pdf"_s, "2")});
    ASSERT_TRUE(waitUntil([&] { return pdfs.openings() > 0; }));
    ASSERT_TRUE(waitUntil([&] { return !sheet(); }));
    waitForLoads();
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
    waitForLoads();
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

TEST_F(ContentViewTest, PDFDroppedOnACandidatesTextIsTheWindows) {
    auto record = candidate(u"Ana"_s, u"ana@example.com"_s);
    record->keepDocument(std::make_shared<PDFDocument>(QByteArray("bytes"), QStringList{u"Ana"_s}));
    load({record});
    click(row(0));
    auto* tags = detail()->findChild<SegmentedControl*>(u"mainTagType"_s);
    for (int tab = 1; tab < 4; ++tab) {
        tags->setCurrentIndex(tab);
    }
    const auto texts = detail()->findChildren<QPlainTextEdit*>();
    EXPECT_EQ(texts.size(), 3);
    for (const QPlainTextEdit* text : texts) {
        EXPECT_FALSE(text->acceptDrops());
        EXPECT_FALSE(text->viewport()->acceptDrops());
    }
}

TEST_F(ContentViewTest, OverlayShowsThePlusAboveTheTextInWhiteOnDarkenedWindow) {
    auto* overlay = window.findChild<DropOverlay*>(u"dropOverlay"_s);
    dragEnter({file(u"cv.pdf"_s, "x")});
    const auto* text = overlay->findChild<QLabel*>();
    EXPECT_EQ(text->text(), u"Deposita el currículum aquí..."_s);
    EXPECT_EQ(text->font().pixelSize(), textFont(TextStyle::LargeTitle).pixelSize());
    EXPECT_EQ(text->font().weight(), QFont::Black);
    EXPECT_EQ(text->palette().color(QPalette::WindowText), QColor(Qt::white));
    EXPECT_LE(text->width(), 250);
    auto* symbol = overlay->findChild<SymbolView*>();
    EXPECT_EQ(symbol->size(), QSize(60, 60));
    ASSERT_TRUE(waitUntil([&] { return text->y() > 0; }));
    EXPECT_EQ(text->y() - symbol->geometry().bottom() - 1, 8);
    EXPECT_NEAR(symbol->geometry().center().x(), overlay->width() / 2, 1);
    EXPECT_NEAR((symbol->y() + text->geometry().bottom()) / 2, overlay->height() / 2, 1);
    SymbolView expected(u"plus.circle.fill"_s, Qt::white, 60);
    EXPECT_EQ(drawn(*symbol, {60, 60}, Qt::black), drawn(expected, {60, 60}, Qt::black));
}

TEST_F(ContentViewTest, OverlayDarkensTheWindowBySeventyPercent) {
    DropOverlay overlay(nullptr);
    overlay.resize(20, 20);
    QImage image(overlay.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    overlay.setGraphicsEffect(nullptr); // at the end of its fading in
    overlay.render(&image, {}, {}, {});
    EXPECT_EQ(image.pixelColor(1, 1), QColor(0, 0, 0, 179));
}

TEST_F(ContentViewTest, NothingIsDroppedWhileTheSheetIsOpen) {
    drop({file(u"cv.pdf"_s, "bytes")});
    ASSERT_TRUE(waitUntil([&] { return sheet() != nullptr; }));
    EXPECT_FALSE(dragEnter({file(u"other.pdf"_s, "other")}));
    EXPECT_FALSE(drop({file(u"other.pdf"_s, "other")}));
    window.openCV(file(u"other.pdf"_s, "other"));
    waitForLoads();
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
    const auto picker = [this] { return sheet()->findChild<SegmentedControl*>(u"valuetype"_s); };
    drop({file(u"cv.pdf"_s, "bytes")});
    ASSERT_TRUE(waitUntil([&] { return sheet() != nullptr; }));
    window.intake().setDataExtracted(true);
    picker()->setCurrentIndex(1);
    const QPointer<QWidget> first = sheet();
    QTest::keyClick(sheet(), Qt::Key_Escape);
    EXPECT_FALSE(sheet());
    drop({file(u"cv.pdf"_s, "bytes")});
    ASSERT_TRUE(waitUntil([&] { return sheet() != nullptr; }));
    EXPECT_NE(sheet(), first);
    EXPECT_FALSE(window.intake().dataExtracted());
    window.intake().setDataExtracted(true);
    EXPECT_EQ(picker()->currentIndex(), 0);
}

TEST_F(ContentViewTest, WindowMayCloseDuringARunningIntake) {
    auto other = std::make_unique<ContentView>(ContentView::Services{records, models, pdfs, urlOpener});
    other->show();
    other->openCV(file(u"cv.pdf"_s, "bytes"));
    ASSERT_TRUE(waitUntil([&] { return pdfs.openings() == 1; }));
    pdfs.succeed(0, {u"x"_s});
    other.reset();
    EXPECT_TRUE(models.isChatCancelled(0));
    // The list that was being loaded arrives after the window is gone.
    records.answerFetchAll(std::vector<DBRecordPointer>{});
    records.answerFetchAll(std::vector<DBRecordPointer>{candidate(u"Ana"_s, u"a@example.com"_s)});
}

} // namespace dorvantel::test
