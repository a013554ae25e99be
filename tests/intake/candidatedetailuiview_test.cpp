// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/CandidateDetailUIView.h"

#include "intake/CVText.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakePDFOpener.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/Print.h"
#include "tests/support/SamplePDF.h"
#include "tests/support/Wait.h"
#include "ui/PDFKitView.h"
#include "ui/SegmentedControl.h"
#include "ui/Spinner.h"
#include "ui/Style.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using test::CapturedOutput;
using test::FakePDFOpener;
using test::FakeRecordsService;

class CandidateDetail : public testing::Test {
protected:
    CandidateDetail() {
        record->email = u"ana@example.org"_s;
        record->jsonCVData = {u"Femenino"_s, {u"Orden"_s}, {u"R"_s}, {u"Español"_s}};
        record->invitationMail = u"Estimada Sra. \"Ana\":"_s;
    }

    void show() {
        view = std::make_unique<CandidateDetailUIView>(record, records, opener);
        view->resize(700, 500);
        view->show();
    }
    /// The PDF has been fetched and opened before the view is made.
    void showLoaded(const QStringList& pageTexts) {
        record->file = test::textPDF(QByteArrayList(pageTexts.size(), "x"));
        record->pdfDocument = std::make_shared<PDFDocument>(*record->file, pageTexts);
        show();
    }
    void deliver(const QStringList& pageTexts) {
        records.answerFetchPDF(test::textPDF({"x"}));
        opener.succeed(0, pageTexts);
    }
    void choose(const QString& tags, int index) {
        auto* control = view->findChild<SegmentedControl*>(tags);
        QTest::mouseClick(control->findChildren<QAbstractButton*>()[index], Qt::LeftButton);
    }
    void chooseMain(mainTagTypes tag) { choose(u"mainTagType"_s, static_cast<int>(tag)); }

    template <typename Widget>
    Widget* visible() const {
        for (auto* widget : view->findChildren<Widget*>()) {
            if (widget->isVisible()) {
                return widget;
            }
        }
        return nullptr;
    }
    QPlainTextEdit* textView() const { return visible<QPlainTextEdit>(); }
    QString text() const { return textView() ? textView()->toPlainText() : QString(); }
    QString notice() const { return visible<QLabel>() ? visible<QLabel>()->text() : QString(); }
    static QStringList labels(const SegmentedControl* tags) {
        QStringList labels;
        for (const auto* button : tags->findChildren<QAbstractButton*>()) {
            labels.append(button->text());
        }
        return labels;
    }

    FakeRecordsService records;
    FakePDFOpener opener;
    DBRecordPointer record = std::make_shared<DBRecordRepresentation>();
    std::unique_ptr<CandidateDetailUIView> view;
};

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
    chooseMain(mainTagTypes::text);
    EXPECT_TRUE(visible<Spinner>());
    EXPECT_EQ(notice(), u"Cargando contenido..."_s);

    deliver({u"Ana, contable"_s});
    EXPECT_FALSE(view->isLoadingPDF());
    EXPECT_EQ(text(), u"Ana contable"_s);
    EXPECT_EQ(view->pdfText(), u"Ana contable"_s);
    chooseMain(mainTagTypes::pdf);
    ASSERT_TRUE(visible<PDFKitView>());
    EXPECT_EQ(visible<PDFKitView>()->pdfDocument(), record->pdfDocument);
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
    chooseMain(mainTagTypes::text);
    EXPECT_EQ(notice(), u"Contenido no disponible"_s);
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

TEST_F(CandidateDetail, OnlyThePromptsOwnWordsAreBold) {
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::correo);
    QTextCursor cursor = textView()->document()->find(u"Ana"_s);
    EXPECT_EQ(cursor.charFormat().fontWeight(), QFont::Normal);
    cursor = textView()->document()->find(u"Quiero"_s);
    EXPECT_EQ(cursor.charFormat().fontWeight(), QFont::Bold);
}

TEST_F(CandidateDetail, SwitchingTabsKeepsEachSubTab) {
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::extraer);
    choose(u"extractTagType"_s, 1);
    chooseMain(mainTagTypes::correo);
    EXPECT_EQ(view->correoTagType(), correoTagTypes::prompt);
    EXPECT_TRUE(text().contains(u"Quiero"_s));
    chooseMain(mainTagTypes::extraer);
    EXPECT_EQ(view->extractTagType(), extractTagTypes::json);
    EXPECT_TRUE(text().startsWith(u"{"_s));
}

TEST_F(CandidateDetail, TextsCanBeSelectedAndCopiedButNotEdited) {
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::text);
    textView()->setFocus();
    QTest::keyClick(textView(), Qt::Key_X);
    QTest::keyClick(textView(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(textView(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), u"Ana"_s);
    EXPECT_TRUE(textView()->textInteractionFlags() & Qt::TextSelectableByMouse);
}

TEST_F(CandidateDetail, IsDarkOnWhiteAlsoOnADarkDesktop) {
    const QPalette before = QApplication::palette();
    QApplication::setPalette(darkPalette());
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::text);
    EXPECT_EQ(view->palette().color(QPalette::Window), QColor(Qt::white));
    EXPECT_EQ(textView()->palette().color(QPalette::Base), QColor(Qt::white));
    EXPECT_LT(textView()->palette().color(QPalette::Text).lightness(), 60);
    QApplication::setPalette(before);
}

TEST_F(CandidateDetail, MayGoWhileThePDFIsBeingLoaded) {
    show();
    view.reset();
    CapturedOutput output;
    deliver({u"Ana"_s});
    EXPECT_EQ(output.text(), QString());
    EXPECT_TRUE(record->pdfDocument); // for the next time
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

TEST_F(CandidateDetail, PageIsFilledWhenItIsFirstLookedAt) {
    showLoaded({u"Ana"_s});
    EXPECT_TRUE(view->findChildren<QPlainTextEdit*>().isEmpty());
    chooseMain(mainTagTypes::text);
    EXPECT_EQ(view->findChildren<QPlainTextEdit*>().size(), 1);
}

TEST_F(CandidateDetail, PageFillsTheViewAtOnce) {
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::text);
    EXPECT_EQ(textView()->width(), view->width());
    chooseMain(mainTagTypes::extraer);
    EXPECT_EQ(textView()->width(), view->width());
    choose(u"extractTagType"_s, 1);
    EXPECT_EQ(textView()->width(), view->width());
}

TEST_F(CandidateDetail, PageKeepsItsPlaceWhileAnotherIsLookedAt) {
    showLoaded({u"línea\n"_s.repeated(500)});
    chooseMain(mainTagTypes::text);
    textView()->verticalScrollBar()->setValue(200);
    chooseMain(mainTagTypes::correo);
    chooseMain(mainTagTypes::text);
    EXPECT_EQ(textView()->verticalScrollBar()->value(), 200);
}

/// Every step of looking at a large CV is one that nobody notices as a pause. What counts is the time that the window's
/// thread computes, so that other tests running at the same time do not matter.
class LargeCV : public CandidateDetail {
protected:
    void lookAt(const QStringList& pageTexts, std::chrono::milliseconds limit) {
        m_limit = limit;
        step(u"show"_s, [&] { showLoaded(pageTexts); });
        step(u"text"_s, [&] { chooseMain(mainTagTypes::text); });
        EXPECT_GT(text().size(), 200'000);
        step(u"end"_s, [&] { textView()->moveCursor(QTextCursor::End); });
        step(u"extraer"_s, [&] { chooseMain(mainTagTypes::extraer); });
        step(u"correo"_s, [&] { chooseMain(mainTagTypes::correo); });
        step(u"resize"_s, [&] { view->resize(500, 700); });
        step(u"back"_s, [&] { chooseMain(mainTagTypes::pdf); });
    }

private:
    static std::chrono::milliseconds computed() {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return std::chrono::milliseconds(time.tv_sec * 1000 + time.tv_nsec / 1'000'000);
    }
    void step(const QString& name, const std::function<void()>& action) {
        const auto before = computed();
        action();
        QApplication::processEvents();
        const auto taken = computed() - before;
        RecordProperty(name.toStdString(), std::to_string(taken.count()) + " ms");
        EXPECT_LT(taken, m_limit) << name.toStdString();
    }

    std::chrono::milliseconds m_limit{};
};

TEST_F(LargeCV, Of300PagesDoesNotFreezeTheWindow) {
    const QString page = (u"Contable con experiencia en impuestos. "_s.repeated(3) + u'\n').repeated(6);
    lookAt(QStringList(300, page), 500ms);
}

TEST_F(LargeCV, OfOneSingleParagraphDoesNotFreezeTheWindow) {
    lookAt({u"Contable con experiencia en impuestos. "_s.repeated(5500)}, 2s);
}

} // namespace
} // namespace dorvantel
