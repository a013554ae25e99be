// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/ui/TokenEditorFixture.h"

#include <QClipboard>

namespace dorvantel {

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class EditorTokens : public test::EditorTest {};

// Selecting

TEST_F(EditorTokens, ArrowKeysGoFromTheTextThroughTheTokensAndBack) {
    hold({u"Go"_s, u"Java"_s});
    press(Qt::Key_Left);
    EXPECT_THAT(selected(), ElementsAre(u"Java"_s));
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    EXPECT_THAT(selected(), ElementsAre(u"Go"_s)) << "the first one is the end";
    press(Qt::Key_Right);
    EXPECT_THAT(selected(), ElementsAre(u"Java"_s));
    press(Qt::Key_Right);
    EXPECT_THAT(selected(), IsEmpty());
    EXPECT_TRUE(input()->hasFocus());
}

TEST_F(EditorTokens, ArrowKeysMoveInTheTextUntilItBegins) {
    hold({u"Go"_s});
    type(u"Ja"_s);
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    EXPECT_THAT(selected(), IsEmpty());
    press(Qt::Key_Left);
    EXPECT_THAT(selected(), ElementsAre(u"Go"_s));
}

TEST_F(EditorTokens, ShiftExtendsTheSelection) {
    hold({u"Go"_s, u"Java"_s, u"PHP"_s});
    press(Qt::Key_Left);
    press(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_THAT(selected(), ElementsAre(u"Java"_s, u"PHP"_s));
    press(Qt::Key_Home, Qt::ShiftModifier);
    EXPECT_THAT(selected(), ElementsAre(u"Go"_s, u"Java"_s, u"PHP"_s));
}

TEST_F(EditorTokens, HomeAndEndGoToTheFirstTokenAndToTheText) {
    hold({u"Go"_s, u"Java"_s, u"PHP"_s});
    press(Qt::Key_Left);
    press(Qt::Key_Home);
    EXPECT_THAT(selected(), ElementsAre(u"Go"_s));
    press(Qt::Key_End);
    EXPECT_TRUE(input()->hasFocus());
}

TEST_F(EditorTokens, UpAndDownGoToTheNearestTokenOfTheNextLine) {
    const QString wide = u"una habilidad de nombre bastante largo, y no solo por las dos que lleva delante"_s;
    hold({u"Go"_s, u"Java"_s, wide, u"C"_s, u"PHP"_s});
    ASSERT_EQ(chip(0)->y(), chip(1)->y());
    ASSERT_GT(chip(2)->y(), chip(1)->y());
    click(1);
    press(Qt::Key_Down);
    EXPECT_THAT(selected(), ElementsAre(wide));
    press(Qt::Key_Up);
    EXPECT_THAT(selected(), testing::SizeIs(1));
    EXPECT_EQ(chip(selected() == QStringList{u"Go"_s} ? 0 : 1)->y(), chip(0)->y());
    press(Qt::Key_Up);
    EXPECT_THAT(selected(), testing::SizeIs(1)) << "there is nothing above the first line";
    click(4);
    press(Qt::Key_Down);
    EXPECT_TRUE(input()->hasFocus());
}

TEST_F(EditorTokens, ControlASelectsTheTextAndThenAllTokens) {
    hold({u"Go"_s, u"Java"_s});
    type(u"x"_s);
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(input()->selectedText(), u"x"_s);
    EXPECT_THAT(selected(), IsEmpty());
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_THAT(selected(), ElementsAre(u"Go"_s, u"Java"_s));
}

TEST_F(EditorTokens, TheMouseSelectsOneATogglesAndExtends) {
    hold({u"Go"_s, u"Java"_s, u"PHP"_s, u"C"_s});
    click(1);
    EXPECT_THAT(selected(), ElementsAre(u"Java"_s));
    click(3, Qt::ShiftModifier);
    EXPECT_THAT(selected(), ElementsAre(u"Java"_s, u"PHP"_s, u"C"_s));
    click(2, Qt::ControlModifier);
    EXPECT_THAT(selected(), ElementsAre(u"Java"_s, u"C"_s));
    click(0);
    EXPECT_THAT(selected(), ElementsAre(u"Go"_s));
}

TEST_F(EditorTokens, AClickBesideTheTokensGoesToTheText) {
    hold({u"Go"_s});
    click(0);
    QTest::mouseClick(editor->viewport(), Qt::LeftButton, Qt::NoModifier, editor->viewport()->rect().bottomRight());
    EXPECT_TRUE(input()->hasFocus());
    EXPECT_THAT(selected(), IsEmpty());
}

TEST_F(EditorTokens, TypingWhileATokenIsSelectedGoesToTheTextAndLeavesTheToken) {
    hold({u"Go"_s});
    click(0);
    type(u"J"_s);
    EXPECT_EQ(editor->text(), u"J"_s);
    EXPECT_THAT(tokens(), ElementsAre(u"Go"_s));
    EXPECT_THAT(selected(), IsEmpty());
}

TEST_F(EditorTokens, TheSelectionGoesWithTheFocus) {
    hold({u"Go"_s});
    click(0);
    elsewhere->setFocus();
    EXPECT_THAT(selected(), IsEmpty());
    EXPECT_THAT(delegate.calls, ElementsAre(u"textDidEndEditing [Go]"_s));
}

TEST_F(EditorTokens, GoingFromTheTextToATokenDoesNotEndEditing) {
    hold({u"Go"_s});
    type(u"Jav"_s);
    delegate.calls.clear();
    click(0);
    EXPECT_EQ(editor->text(), u"Jav"_s);
    EXPECT_THAT(delegate.calls, IsEmpty());
}

TEST_F(EditorTokens, TabOnATokenLeavesTheField) {
    hold({u"Go"_s, u"Java"_s});
    click(0);
    press(Qt::Key_Tab);
    EXPECT_TRUE(elsewhere->hasFocus());
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(input()->hasFocus()) << "the tokens are no stops of their own";
}

TEST_F(EditorTokens, InAMirroredFieldTheArrowKeysAreMirrored) {
    window.setLayoutDirection(Qt::RightToLeft);
    hold({u"Go"_s, u"Java"_s});
    ASSERT_TRUE(test::waitUntil([this] { return chip(0)->x() > chip(1)->x(); }));
    press(Qt::Key_Right);
    EXPECT_THAT(selected(), ElementsAre(u"Java"_s));
    press(Qt::Key_Right);
    EXPECT_THAT(selected(), ElementsAre(u"Go"_s));
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    EXPECT_TRUE(input()->hasFocus());
}

// Menu

TEST_F(EditorTokens, TheMenuOfATokenHasTheDelegatesItemsWithoutShortcuts) {
    hold({u"Go"_s});
    openMenu(0);
    ASSERT_NE(menu(), nullptr);
    ASSERT_EQ(menu()->actions().size(), 1);
    EXPECT_EQ(menu()->actions().first()->text(), u"Eliminar token"_s);
    EXPECT_TRUE(menu()->actions().first()->shortcut().isEmpty());
    menu()->close();
}

TEST_F(EditorTokens, RemovingThroughTheMenuOfTheThirdTokenRemovesTheFirst) {
    hold({u"Go"_s, u"Java"_s, u"PHP"_s});
    openMenu(2);
    ASSERT_NE(menu(), nullptr);
    press(Qt::Key_Down);
    QTest::keyClick(menu(), Qt::Key_Down);
    QTest::keyClick(menu(), Qt::Key_Return);
    EXPECT_THAT(tokens(), ElementsAre(u"Java"_s, u"PHP"_s));
    EXPECT_THAT(delegate.calls, IsEmpty()) << "the delegate is not told";
}

TEST_F(EditorTokens, TheMenuKeyOpensTheMenuOfTheToken) {
    hold({u"Go"_s});
    press(Qt::Key_Left);
    TokenChip* target = chip(0);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QApplication::sendEvent(target, &event);
    ASSERT_NE(menu(), nullptr);
    menu()->close();
}

TEST_F(EditorTokens, ATokenWithoutMenuShowsNone) {
    hold({u"Go"_s});
    delegate.menu.clear();
    openMenu(0);
    EXPECT_EQ(menu(), nullptr);
}

TEST_F(EditorTokens, AnOpenMenuDoesNotEndEditing) {
    hold({u"Go"_s});
    type(u"Jav"_s);
    delegate.calls.clear();
    openMenu(0);
    ASSERT_NE(menu(), nullptr);
    EXPECT_THAT(delegate.calls, IsEmpty());
    menu()->close();
    EXPECT_EQ(editor->text(), u"Jav"_s);
}

TEST_F(EditorTokens, TheOtherMouseButtonKeepsASelectionItIsPressedOn) {
    hold({u"Go"_s, u"Java"_s, u"PHP"_s});
    delegate.menu.clear();
    click(0);
    click(1, Qt::ControlModifier);
    openMenu(1);
    EXPECT_THAT(selected(), ElementsAre(u"Go"_s, u"Java"_s));
    openMenu(2);
    EXPECT_THAT(selected(), ElementsAre(u"PHP"_s));
}

class EditorTokensDeathTest : public test::EditorTest {};

TEST_F(EditorTokensDeathTest, RemovingFromAFieldWithoutTokensStopsTheProgram) {
    EXPECT_DEATH(editor->removeToken(), "Fatal error: a token is to be removed from a field without tokens");
}

TEST_F(EditorTokensDeathTest, AValueThatIsNoListOfTextsStopsTheProgram) {
    EXPECT_DEATH(editor->setObjectValue({u"Go"_s, 7}),
                 "Fatal error: the value of a token field is not a list of strings");
}

// Clipboard

TEST_F(EditorTokens, CopiedTokensArePastedAsTokens) {
    hold({u"Word, Excel"_s, u"Java"_s, u"PHP"_s});
    click(0);
    click(2, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), u"Word, Excel, PHP"_s);
    hold({});
    type(u"Ru"_s);
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_THAT(tokens(), ElementsAre(u"Word, Excel"_s, u"PHP"_s));
    EXPECT_EQ(editor->text(), u"Ru"_s);
    EXPECT_THAT(delegate.calls, Contains(u"shouldAdd Word, Excel|PHP at 0"_s));
}

TEST_F(EditorTokens, CutTokensAreOnTheClipboardOnly) {
    hold({u"Go"_s, u"Java"_s});
    click(0);
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_THAT(tokens(), ElementsAre(u"Java"_s));
    EXPECT_EQ(QApplication::clipboard()->text(), u"Go"_s);
}

TEST_F(EditorTokens, APastedListBecomesTokensAndAPastedWordText) {
    QApplication::clipboard()->setText(u"Java, Go\nPHP"_s);
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_THAT(tokens(), ElementsAre(u"Java"_s, u"Go"_s, u"PHP"_s));
    QApplication::clipboard()->setText(u"Rust"_s);
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(editor->text(), u"Rust"_s);
    EXPECT_THAT(tokens(), testing::SizeIs(3));
}

TEST_F(EditorTokens, PastingOnATokenGoesToTheText) {
    hold({u"Go"_s});
    QApplication::clipboard()->setText(u"Rust"_s);
    click(0);
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(editor->text(), u"Rust"_s);
    EXPECT_THAT(tokens(), ElementsAre(u"Go"_s));
}

// Values

TEST_F(EditorTokens, TheValueThatIsShownAlreadyChangesNothing) {
    hold({u"Go"_s});
    type(u"Jav"_s);
    hold({u"Go"_s});
    EXPECT_EQ(editor->text(), u"Jav"_s);
    EXPECT_TRUE(input()->hasFocus());
}

TEST_F(EditorTokens, AnotherValueReplacesEverythingShownAndIsNotTold) {
    hold({u"Go"_s});
    type(u"Jav"_s);
    delegate.calls.clear();
    hold({u"PHP"_s, u"C"_s});
    EXPECT_THAT(tokens(), ElementsAre(u"PHP"_s, u"C"_s));
    EXPECT_THAT(chips(), testing::SizeIs(2));
    EXPECT_EQ(editor->text(), QString());
    EXPECT_THAT(delegate.calls, IsEmpty());
}

TEST_F(EditorTokens, AnotherValueLeavesTheFocusInTheField) {
    hold({u"Go"_s});
    click(0);
    hold({u"PHP"_s});
    EXPECT_TRUE(input()->hasFocus());
}

} // namespace dorvantel
