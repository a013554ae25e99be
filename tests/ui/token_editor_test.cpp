// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/ui/TokenEditorFixture.h"

#include <QAccessible>

namespace dorvantel {

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class Editor : public test::EditorTest {};

// Typing

TEST_F(Editor, ReturnMakesTheTextAToken) {
    typeToken(u"Java"_s);
    EXPECT_THAT(tokens(), ElementsAre(u"Java"_s));
    EXPECT_EQ(editor->text(), QString());
    EXPECT_THAT(chips(), testing::SizeIs(1));
}

TEST_F(Editor, ACommaMakesTheTextAToken) {
    type(u"Java,Go,"_s);
    EXPECT_THAT(tokens(), ElementsAre(u"Java"_s, u"Go"_s));
    EXPECT_EQ(editor->text(), QString());
}

TEST_F(Editor, WhatAScreenReaderWritesCountsAsTyped) {
    QAccessible::queryAccessibleInterface(input())->setText(QAccessible::Value, u"Go,Ja"_s);
    EXPECT_THAT(tokens(), ElementsAre(u"Go"_s));
    EXPECT_EQ(input()->text(), u"Ja"_s);
}

TEST_F(Editor, ACommaInTheMiddleOfTheTextLeavesTheRestToBeTyped) {
    type(u"JavaGo"_s);
    input()->setCursorPosition(4);
    type(u","_s);
    EXPECT_THAT(tokens(), ElementsAre(u"Java"_s));
    EXPECT_EQ(editor->text(), u"Go"_s);
    EXPECT_EQ(input()->cursorPosition(), 0);
}

TEST_F(Editor, TabMakesTheTextATokenAndGoesOn) {
    type(u"Java"_s);
    press(Qt::Key_Tab);
    EXPECT_THAT(tokens(), ElementsAre(u"Java"_s));
    EXPECT_TRUE(elsewhere->hasFocus());
}

TEST_F(Editor, TheLossOfTheFocusMakesTheTextAToken) {
    type(u"Java"_s);
    elsewhere->setFocus();
    EXPECT_THAT(tokens(), ElementsAre(u"Java"_s));
}

TEST_F(Editor, BlanksAroundTheTextAreNotPartOfTheToken) {
    type(u"Java, C++ , Trabajo en equipo "_s);
    press(Qt::Key_Return);
    EXPECT_THAT(tokens(), ElementsAre(u"Java"_s, u"C++"_s, u"Trabajo en equipo"_s));
}

TEST_F(Editor, ATextOfBlanksMakesNoToken) {
    typeToken(u"  "_s);
    type(u" ,"_s);
    EXPECT_THAT(tokens(), IsEmpty());
    EXPECT_THAT(delegate.calls, Not(Contains(testing::Property(&QString::toStdString, StartsWith("shouldAdd")))));
}

TEST_F(Editor, ReturnWithoutTextIsForTheWindow) {
    QPushButton ok(&window);
    ok.setDefault(true);
    ok.show();
    bool clicked = false;
    QObject::connect(&ok, &QPushButton::clicked, &ok, [&clicked] { clicked = true; });
    typeToken(u"Java"_s);
    EXPECT_FALSE(clicked);
    press(Qt::Key_Return);
    EXPECT_TRUE(clicked);
}

TEST_F(Editor, WhatTheDelegateDoesNotLetInVanishes) {
    delegate.answer = TokenObjects{};
    typeToken(u"Java"_s);
    EXPECT_THAT(tokens(), IsEmpty());
    EXPECT_EQ(editor->text(), QString());
}

TEST_F(Editor, WhatTheDelegateAnswersIsAdded) {
    delegate.answer = TokenObjects{u"Excel"_s, u"Word"_s};
    typeToken(u"office"_s);
    EXPECT_THAT(tokens(), ElementsAre(u"Excel"_s, u"Word"_s));
}

TEST_F(Editor, TheDelegateIsAskedFirstAndToldAfterwards) {
    hold({u"Go"_s});
    typeToken(u"J"_s);
    elsewhere->setFocus();
    EXPECT_THAT(delegate.calls, ElementsAre(u"textDidChange [Go]"_s, u"completions J"_s, u"shouldAdd J at 1"_s,
                                            u"textDidChange [Go|J]"_s, u"textDidEndEditing [Go|J]"_s));
}

TEST_F(Editor, EditingEndsAfterTheTextBecameAToken) {
    type(u"J"_s);
    delegate.calls.clear();
    elsewhere->setFocus();
    EXPECT_THAT(delegate.calls, ElementsAre(u"shouldAdd J at 0"_s, u"textDidChange [J]"_s, u"textDidEndEditing [J]"_s));
}

TEST_F(Editor, AnotherWindowInFrontDoesNotEndEditing) {
    type(u"Jav"_s);
    QWidget other;
    other.show();
    QApplication::setActiveWindow(&other);
    EXPECT_THAT(tokens(), IsEmpty());
    QApplication::setActiveWindow(&window);
    EXPECT_EQ(editor->text(), u"Jav"_s);
}

TEST_F(Editor, ACommandThatTheDelegateHandledDoesNothingMore) {
    hold({u"Go"_s});
    type(u"Java"_s);
    delegate.handled = TextCommand::DeleteBackward;
    press(Qt::Key_Backspace);
    EXPECT_EQ(editor->text(), u"Java"_s);
    delegate.handled = TextCommand::InsertNewline;
    press(Qt::Key_Return);
    EXPECT_EQ(editor->text(), u"Java"_s);
    delegate.handled = TextCommand::InsertTab;
    press(Qt::Key_Tab);
    EXPECT_TRUE(input()->hasFocus());
    input()->setCursorPosition(0);
    delegate.handled = TextCommand::DeleteForward;
    press(Qt::Key_Delete);
    EXPECT_EQ(editor->text(), u"Java"_s);
    click(0);
    press(Qt::Key_Delete);
    EXPECT_THAT(tokens(), ElementsAre(u"Go"_s));
}

TEST_F(Editor, AFieldThatIsDestroyedWhileItHasTheFocusTellsNothing) {
    type(u"Java"_s);
    delegate.calls.clear();
    delete editor;
    editor = nullptr;
    EXPECT_THAT(delegate.calls, IsEmpty());
}

// Completions

TEST_F(Editor, CompletionsAppearWhileTypingAndNoneIsHighlighted) {
    delegate.catalogue = {u"Java"_s, u"JavaScript"_s, u"Go"_s};
    type(u"ja"_s);
    EXPECT_THAT(offered(), ElementsAre(u"Java"_s, u"JavaScript"_s));
    EXPECT_FALSE(popup()->selectionModel()->hasSelection());
    EXPECT_TRUE(input()->hasFocus());
}

TEST_F(Editor, CompletionsGoWhenNothingMatchesOrNothingIsTyped) {
    delegate.catalogue = {u"Java"_s};
    type(u"ja"_s);
    type(u"x"_s);
    EXPECT_EQ(popup(), nullptr);
    press(Qt::Key_Backspace);
    EXPECT_NE(popup(), nullptr);
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    EXPECT_EQ(popup(), nullptr);
}

TEST_F(Editor, ReturnTakesTheHighlightedCompletion) {
    delegate.catalogue = {u"Java"_s, u"JavaScript"_s};
    type(u"ja"_s);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_THAT(tokens(), ElementsAre(u"JavaScript"_s));
    EXPECT_EQ(editor->text(), QString());
    EXPECT_EQ(popup(), nullptr);
}

TEST_F(Editor, ReturnWithNothingHighlightedTakesTheTextAsTyped) {
    delegate.catalogue = {u"Java"_s};
    typeToken(u"ja"_s);
    EXPECT_THAT(tokens(), ElementsAre(u"ja"_s));
}

TEST_F(Editor, ACommaTakesTheHighlightedCompletion) {
    delegate.catalogue = {u"Word, Excel"_s};
    type(u"wo"_s);
    press(Qt::Key_Down);
    type(u","_s);
    EXPECT_THAT(tokens(), ElementsAre(u"Word, Excel"_s)) << "a completion is one token, whatever it holds";
}

TEST_F(Editor, TabTakesTheHighlightedCompletionAndStays) {
    delegate.catalogue = {u"Java"_s, u"JavaScript"_s};
    type(u"ja"_s);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Tab);
    EXPECT_THAT(tokens(), ElementsAre(u"JavaScript"_s));
    EXPECT_TRUE(input()->hasFocus());
}

TEST_F(Editor, TabWithNothingHighlightedTakesTheFirstCompletion) {
    delegate.catalogue = {u"JavaScript"_s, u"Java"_s};
    type(u"ja"_s);
    press(Qt::Key_Tab);
    EXPECT_THAT(tokens(), ElementsAre(u"JavaScript"_s));
}

TEST_F(Editor, TabLeavesATextThatWasTypedInFullAsItIs) {
    delegate.catalogue = {u"JavaScript"_s, u"Java"_s};
    type(u"java"_s);
    press(Qt::Key_Tab);
    EXPECT_THAT(tokens(), ElementsAre(u"java"_s));
}

TEST_F(Editor, AClickTakesACompletion) {
    delegate.catalogue = {u"Java"_s, u"JavaScript"_s};
    type(u"ja"_s);
    QListView* list = popup();
    const QPoint second = list->visualRect(list->model()->index(1, 0)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, second);
    EXPECT_THAT(tokens(), ElementsAre(u"JavaScript"_s));
    EXPECT_EQ(editor->text(), QString());
}

TEST_F(Editor, EscapeClosesTheCompletionsAndOnlyThenTheWindow) {
    delegate.catalogue = {u"Java"_s};
    type(u"ja"_s);
    press(Qt::Key_Escape);
    EXPECT_EQ(popup(), nullptr);
    EXPECT_EQ(editor->text(), u"ja"_s);
    EXPECT_TRUE(window.isVisible());
    press(Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(Editor, ATokenThatEndedTakesItsCompletionsWithIt) {
    delegate.catalogue = {u"Java"_s, u"JavaScript"_s};
    type(u"java,"_s);
    EXPECT_EQ(popup(), nullptr);
    type(u"ja"_s);
    elsewhere->setFocus();
    EXPECT_EQ(popup(), nullptr);
}

TEST_F(Editor, TypingOnForgetsWhatWasHighlighted) {
    delegate.catalogue = {u"Java"_s, u"JavaScript"_s};
    type(u"ja"_s);
    press(Qt::Key_Down);
    type(u"v"_s);
    press(Qt::Key_Return);
    EXPECT_THAT(tokens(), ElementsAre(u"jav"_s));
}

TEST_F(Editor, DownAsksForCompletionsWithoutText) {
    delegate.catalogue = {u"Java"_s, u"Go"_s};
    press(Qt::Key_Down);
    EXPECT_THAT(offered(), ElementsAre(u"Java"_s, u"Go"_s));
}

TEST_F(Editor, ALongListOfCompletionsIsCut) {
    for (int i = 0; i < 100'000; ++i) {
        delegate.catalogue.append(u"valor %1"_s.arg(i));
    }
    type(u"v"_s);
    EXPECT_EQ(offered().size(), 500);
}

// Deleting

TEST_F(Editor, BackspaceDeletesLettersFirst) {
    hold({u"Go"_s});
    type(u"Ja"_s);
    press(Qt::Key_Backspace);
    EXPECT_EQ(editor->text(), u"J"_s);
    EXPECT_THAT(selected(), IsEmpty());
    EXPECT_THAT(delegate.commands, ElementsAre(TextCommand::DeleteBackward));
}

TEST_F(Editor, BackspaceBeforeTheFirstLetterSelectsTheLastTokenAndThenDeletesIt) {
    hold({u"Go"_s, u"Java"_s});
    type(u"x"_s);
    press(Qt::Key_Home);
    press(Qt::Key_Backspace);
    EXPECT_THAT(selected(), ElementsAre(u"Java"_s));
    EXPECT_THAT(tokens(), ElementsAre(u"Go"_s, u"Java"_s));
    press(Qt::Key_Backspace);
    EXPECT_THAT(tokens(), ElementsAre(u"Go"_s));
    EXPECT_EQ(editor->text(), u"x"_s);
    EXPECT_TRUE(input()->hasFocus());
    EXPECT_EQ(delegate.calls.last(), u"textDidChange by deletion [Go]"_s);
}

TEST_F(Editor, AHeldBackspaceStopsBeforeTheTokens) {
    hold({u"Go"_s});
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier, QString(), true);
    QApplication::sendEvent(input(), &held);
    EXPECT_THAT(selected(), IsEmpty());
}

TEST_F(Editor, DeleteTakesTheSelectedTokenAndGoesToTheNext) {
    hold({u"Go"_s, u"Java"_s, u"PHP"_s});
    click(1);
    press(Qt::Key_Delete);
    EXPECT_THAT(tokens(), ElementsAre(u"Go"_s, u"PHP"_s));
    EXPECT_THAT(selected(), ElementsAre(u"PHP"_s));
    press(Qt::Key_Delete);
    EXPECT_THAT(tokens(), ElementsAre(u"Go"_s));
    EXPECT_TRUE(input()->hasFocus());
    EXPECT_THAT(delegate.commands, ElementsAre(TextCommand::DeleteForward, TextCommand::DeleteForward));
}

TEST_F(Editor, AllSelectedTokensAreDeletedInOneStep) {
    hold({u"Go"_s, u"Java"_s, u"PHP"_s, u"C"_s});
    click(0);
    click(2, Qt::ControlModifier);
    press(Qt::Key_Backspace);
    EXPECT_THAT(tokens(), ElementsAre(u"Java"_s, u"C"_s));
    EXPECT_THAT(delegate.calls, ElementsAre(u"textDidChange by deletion [Java|C]"_s));
}

} // namespace dorvantel
