// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Sanitizers.h"
#include "tests/intake/CandidateDetailFixture.h"

#include <QClipboard>

#include <chrono>
#include <ctime>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using test::CapturedOutput;

class CandidateDetailTexts : public test::CandidateDetailTest {};

TEST_F(CandidateDetailTexts, OnlyThePromptsOwnWordsAreBold) {
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::correo);
    QTextCursor cursor = textView()->document()->find(u"Ana"_s);
    EXPECT_EQ(cursor.charFormat().fontWeight(), QFont::Normal);
    cursor = textView()->document()->find(u"Quiero"_s);
    EXPECT_EQ(cursor.charFormat().fontWeight(), QFont::Bold);
}

TEST_F(CandidateDetailTexts, TextsCanBeSelectedAndCopiedButNotEdited) {
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::text);
    textView()->setFocus();
    QTest::keyClick(textView(), Qt::Key_X);
    QTest::keyClick(textView(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(textView(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), u"Ana"_s);
    EXPECT_TRUE(textView()->textInteractionFlags() & Qt::TextSelectableByMouse);
}

TEST_F(CandidateDetailTexts, StoredDataCanBeSelectedAndCopied) {
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::extraer);
    choose(u"extractTagType"_s, 1);
    textView()->setFocus();
    QTest::keyClick(textView(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(textView(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), text());
    EXPECT_TRUE(text().contains(u"\"gender\": \"Femenino\""_s));
}

TEST_F(CandidateDetailTexts, KeyboardReadsATextFromItsBeginning) {
    showLoaded({u"línea\n"_s.repeated(500)});
    chooseMain(mainTagTypes::text);
    textView()->setFocus();
    const QScrollBar* bar = textView()->verticalScrollBar();
    EXPECT_EQ(bar->value(), 0);
    EXPECT_EQ(textView()->textCursor().position(), 0);
    QTest::keyClick(textView(), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_TRUE(textView()->textCursor().hasSelection());
    QTest::keyClick(textView(), Qt::Key_PageDown);
    EXPECT_GT(bar->value(), 0);
    EXPECT_LT(bar->value(), bar->maximum());
}

TEST_F(CandidateDetailTexts, ScreenReadersHearWhichTextItIs) {
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::text);
    EXPECT_EQ(textView()->accessibleName(), u"Texto"_s);
    chooseMain(mainTagTypes::extraer);
    EXPECT_EQ(textView()->accessibleName(), u"Prompt"_s);
    choose(u"extractTagType"_s, 1);
    EXPECT_EQ(textView()->accessibleName(), u"JSON"_s);
    chooseMain(mainTagTypes::correo);
    EXPECT_EQ(textView()->accessibleName(), u"Prompt"_s);
    choose(u"correoTagType"_s, 1);
    EXPECT_EQ(textView()->accessibleName(), u"JSON"_s);
}

TEST_F(CandidateDetailTexts, MissingTextIsPaintedPalerThanThePrompt) {
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::extraer);
    EXPECT_EQ(pixels(QColor(colours::secondaryText)), 0);
    record = std::make_shared<DBRecordRepresentation>();
    show();
    {
        const CapturedOutput output;
        records.answerFetchPDF(std::nullopt);
    }
    chooseMain(mainTagTypes::extraer);
    QTextCursor cursor = textView()->document()->find(u"Contenido no disponible"_s);
    EXPECT_EQ(cursor.charFormat().foreground().color(), QColor(colours::secondaryText));
    EXPECT_GT(pixels(QColor(colours::secondaryText)), 0);
}

TEST_F(CandidateDetailTexts, IsDarkOnWhiteAlsoOnADarkDesktop) {
    const QPalette before = QApplication::palette();
    QApplication::setPalette(darkPalette());
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::text);
    EXPECT_EQ(view->palette().color(QPalette::Window), QColor(Qt::white));
    EXPECT_EQ(textView()->palette().color(QPalette::Base), QColor(Qt::white));
    EXPECT_LT(textView()->palette().color(QPalette::Text).lightness(), 60);
    QApplication::setPalette(before);
}

TEST_F(CandidateDetailTexts, PageIsFilledWhenItIsFirstLookedAt) {
    showLoaded({u"Ana"_s});
    EXPECT_TRUE(view->findChildren<QPlainTextEdit*>().isEmpty());
    chooseMain(mainTagTypes::text);
    EXPECT_EQ(view->findChildren<QPlainTextEdit*>().size(), 1);
}

TEST_F(CandidateDetailTexts, PageFillsTheViewAtOnce) {
    showLoaded({u"Ana"_s});
    chooseMain(mainTagTypes::text);
    EXPECT_EQ(textView()->width(), view->width());
    chooseMain(mainTagTypes::extraer);
    EXPECT_EQ(textView()->width(), view->width());
    choose(u"extractTagType"_s, 1);
    EXPECT_EQ(textView()->width(), view->width());
}

TEST_F(CandidateDetailTexts, PageKeepsItsPlaceWhileAnotherIsLookedAt) {
    showLoaded({u"línea\n"_s.repeated(500)});
    chooseMain(mainTagTypes::text);
    textView()->verticalScrollBar()->setValue(200);
    chooseMain(mainTagTypes::correo);
    chooseMain(mainTagTypes::text);
    EXPECT_EQ(textView()->verticalScrollBar()->value(), 200);
}

// What the tests' own instrumentation costs.
constexpr int slowness = isSanitized ? 10 : 1;

/// Every step of looking at a large CV is one that nobody notices as a pause. What counts is the time that the window's
/// thread computes, so that other tests running at the same time do not matter.
class LargeCV : public test::CandidateDetailTest {
protected:
    void lookAt(const QStringList& pageTexts, std::chrono::milliseconds limit) {
        m_limit = limit * slowness;
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
    const QString page = (u"Contable con experiencia en impuestos. "_s.repeated(3) + u'\n').repeated(25);
    lookAt(QStringList(300, page), 100ms);
}

TEST_F(LargeCV, OfOneSingleParagraphDoesNotFreezeTheWindow) {
    lookAt({u"Contable con experiencia en impuestos. "_s.repeated(5500)}, 400ms);
}

} // namespace
} // namespace dorvantel
