// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/app/ContentViewFixture.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"

#include <QAction>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSet>

namespace dorvantel::test {

struct MenusTest : ContentViewTest {
    QAction* action(const QString& name) { return window.findChild<QAction*>(name); }

    /// Gives the window the focus, as the user does who works in it.
    void activate() {
        window.activateWindow();
        ASSERT_TRUE(waitUntil([this] { return window.isActiveWindow(); }));
    }
};

namespace {

/// The letter behind the ampersand; null when there is none.
QChar mnemonic(const QString& text) {
    const qsizetype mark = text.indexOf(u'&');
    return mark >= 0 ? text.at(mark + 1).toLower() : QChar();
}

} // namespace

TEST_F(MenusTest, SayInSpanishWhatTheyOffer) {
    QStringList entries;
    for (const QAction* top : window.menuBar()->actions()) {
        entries += top->text();
        for (const QAction* entry : top->menu()->actions()) {
            entries += entry->isSeparator() ? u"  -"_s : u"  "_s + entry->text();
        }
    }
    EXPECT_EQ(entries, (QStringList{u"&Archivo"_s, u"  &Añadir currículum…"_s, u"  -"_s, u"  &Preferencias…"_s,
                                    u"  -"_s, u"  &Salir"_s, u"&Edición"_s, u"  &Borrar"_s, u"&Ver"_s,
                                    u"  Act&ualizar"_s, u"A&yuda"_s, u"  &Acerca de Dorvantel..."_s}));
}

TEST_F(MenusTest, EveryEntryHasAMnemonicOfItsOwn) {
    QList<QList<QAction*>> levels{window.menuBar()->actions()};
    for (const QAction* top : window.menuBar()->actions()) {
        levels += top->menu()->actions();
    }
    for (const QList<QAction*>& level : levels) {
        QSet<QChar> taken;
        for (const QAction* entry : level) {
            if (!entry->isSeparator()) {
                const QChar letter = mnemonic(entry->text());
                EXPECT_FALSE(letter.isNull()) << qPrintable(entry->text());
                EXPECT_FALSE(taken.contains(letter)) << qPrintable(entry->text());
                taken.insert(letter);
            }
        }
    }
}

TEST_F(MenusTest, HaveTheUsualKeys) {
    EXPECT_EQ(action(u"addCV"_s)->shortcut(), QKeySequence(u"Ctrl+O"_s));
    EXPECT_EQ(action(u"settings"_s)->shortcut(), QKeySequence(u"Ctrl+,"_s));
    EXPECT_EQ(action(u"quit"_s)->shortcut(), QKeySequence(u"Ctrl+Q"_s));
    EXPECT_EQ(action(u"deleteCandidate"_s)->shortcut(), QKeySequence(u"Del"_s));
    EXPECT_TRUE(action(u"refresh"_s)->shortcuts().contains(QKeySequence(QKeySequence::Refresh)));
    EXPECT_TRUE(action(u"refresh"_s)->shortcuts().contains(QKeySequence(u"F5"_s)));
}

TEST_F(MenusTest, QuitClosesTheWindow) {
    activate();
    QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(MenusTest, QuitEntryClosesTheWindow) {
    action(u"quit"_s)->trigger();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(MenusTest, RefreshKeyOnlyLogs) {
    loadThree();
    activate();
    CapturedOutput output;
    QTest::keyClick(&window, Qt::Key_F5);
    EXPECT_EQ(output.text(), u"Refresh data\n"_s);
    EXPECT_EQ(records.calls(), QStringList{u"fetchAll"_s});
}

TEST_F(MenusTest, DeleteEntryAsksForTheSelectedCandidate) {
    loadThree();
    action(u"deleteCandidate"_s)->trigger();
    EXPECT_FALSE(deleteAlert());
    click(row(1));
    action(u"deleteCandidate"_s)->trigger();
    ASSERT_TRUE(deleteAlert());
    EXPECT_EQ(deleteAlert()->text(), u"¿Está seguro de querer borrar el currículum de Blas?"_s);
}

TEST_F(MenusTest, DeleteKeyInATextFieldDeletesText) {
    loadThree();
    activate();
    click(row(1));
    QLineEdit field(u"texto"_s, &window);
    field.show();
    field.setFocus();
    field.setCursorPosition(0);
    QTest::keyClick(&field, Qt::Key_Delete);
    EXPECT_EQ(field.text(), u"exto"_s);
    EXPECT_FALSE(deleteAlert());
    EXPECT_EQ(window.model().dbRecords().size(), 3U);
    // The same key asks when the list has the focus.
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Delete);
    EXPECT_TRUE(deleteAlert());
}

TEST_F(MenusTest, QuitKeyDoesNothingUnderTheSheetAndClosingEndsInOrder) {
    activate();
    window.intake().setSheetIsShowing(true);
    ASSERT_TRUE(sheet());
    QTest::keyClick(sheet(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(window.isVisible());
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(window.isVisible());
}

} // namespace dorvantel::test
