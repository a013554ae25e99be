// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/ui/TokenEditorFixture.h"

#include <QAccessible>
#include <QScrollBar>

namespace dorvantel {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

class EditorView : public test::EditorTest {
protected:
    static QStringList numbered(int count) {
        QStringList tokens;
        for (int i = 0; i < count; ++i) {
            tokens.append(u"Habilidad %1"_s.arg(i));
        }
        return tokens;
    }

    bool isInSight(const QWidget* piece) const {
        const QRect place(piece->mapTo(editor->viewport(), QPoint(0, 0)), piece->size());
        return editor->viewport()->rect().contains(place);
    }
};

TEST_F(EditorView, TheFieldGrowsWithItsLines) {
    const int one = editor->height();
    hold(numbered(8));
    ASSERT_TRUE(test::waitUntil([&] { return editor->height() > one; }));
    EXPECT_EQ(editor->height(), editor->heightForWidth(editor->width()));
    EXPECT_FALSE(editor->verticalScrollBar()->isVisible());
    for (const TokenChip* each : chips()) {
        EXPECT_TRUE(isInSight(each)) << qPrintable(each->token());
    }
    hold({u"Go"_s});
    EXPECT_TRUE(test::waitUntil([&] { return editor->height() == one; }));
}

TEST_F(EditorView, ATextThatDoesNotFitBesideTheTokensBeginsALine) {
    hold({u"Habilidad de nombre bastante largo"_s});
    const int one = editor->height();
    type(u"otra habilidad de nombre largo"_s);
    EXPECT_GT(input()->y(), chip(0)->y());
    EXPECT_TRUE(test::waitUntil([&] { return editor->height() > one; }));
}

TEST_F(EditorView, FromTheMaximumOnTheFieldScrolls) {
    editor->setMaximumLines(2);
    hold({u"Go"_s});
    const int one = editor->heightForWidth(editor->width());
    hold(numbered(60));
    ASSERT_TRUE(test::waitUntil([&] { return editor->height() > one; }));
    EXPECT_LT(editor->height(), 2 * one);
    EXPECT_TRUE(editor->verticalScrollBar()->isVisible());
    EXPECT_GT(editor->verticalScrollBar()->maximum(), 0);
}

TEST_F(EditorView, WhatTheUserIsAtIsScrolledIntoSight) {
    editor->setMaximumLines(2);
    hold(numbered(60));
    type(u"x"_s);
    EXPECT_TRUE(isInSight(input()));
    press(Qt::Key_Home);
    press(Qt::Key_Left);
    press(Qt::Key_Home);
    EXPECT_TRUE(isInSight(chip(0)));
    EXPECT_FALSE(isInSight(chip(59)));
}

TEST_F(EditorView, ATokenWiderThanTheFieldIsCutAndTellsItselfInATooltip) {
    const QString wide = u"<b>habilidad</b> "_s.repeated(20);
    hold({u"Go"_s, wide});
    EXPECT_EQ(chip(0)->toolTip(), QString());
    EXPECT_LE(chip(1)->width(), editor->viewport()->width());
    EXPECT_TRUE(chip(1)->toolTip().contains(u"&lt;b&gt;habilidad"_s)) << "as text, not as markup";
}

TEST_F(EditorView, ATokenWithLineBreaksStaysOnOneLine) {
    hold({u"dos\nlíneas"_s});
    EXPECT_EQ(chip(0)->height(), TokenChip::heightFor(editor->fontMetrics()));
    EXPECT_THAT(tokens(), ElementsAre(u"dos\nlíneas"_s));
}

TEST_F(EditorView, ADisabledFieldTakesNothing) {
    hold({u"Go"_s});
    editor->setEnabled(false);
    click(0);
    EXPECT_FALSE(chip(0)->isSelected());
    EXPECT_FALSE(input()->isEnabled());
}

TEST_F(EditorView, TheFocusIsSeen) {
    elsewhere->setFocus();
    const QImage without = editor->grab().toImage();
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    ASSERT_TRUE(input()->hasFocus());
    EXPECT_NE(editor->grab().toImage().pixelColor(0, editor->height() / 2),
              without.pixelColor(0, editor->height() / 2));
    hold({u"Go"_s});
    const QImage unselected = chip(0)->grab().toImage();
    press(Qt::Key_Left);
    EXPECT_NE(chip(0)->grab().toImage(), unselected);
}

TEST_F(EditorView, OnAWhitePageInADarkDesktopTheCompletionsAreLightToo) {
    QApplication::setPalette(darkPalette());
    setWhiteBackground(window);
    delegate.catalogue = {u"Java"_s};
    type(u"ja"_s);
    ASSERT_NE(popup(), nullptr);
    EXPECT_EQ(popup()->palette().color(QPalette::Base), lightPalette().color(QPalette::Base));
    EXPECT_EQ(popup()->palette().color(QPalette::Text), lightPalette().color(QPalette::Text));
}

TEST_F(EditorView, ScreenReadersHearTheNameAndTheTokens) {
    editor->setFieldName(u"Idiomas"_s);
    hold({u"Inglés"_s, u"Alemán"_s});
    QAccessibleInterface* text = QAccessible::queryAccessibleInterface(input());
    EXPECT_EQ(text->text(QAccessible::Name), u"Idiomas"_s);
    EXPECT_EQ(text->text(QAccessible::Description), u"Inglés, Alemán"_s);
    EXPECT_EQ(text->role(), QAccessible::EditableText);
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(editor);
    EXPECT_EQ(list->text(QAccessible::Name), u"Idiomas"_s);
    EXPECT_EQ(list->role(), QAccessible::List);
}

TEST_F(EditorView, ScreenReadersMeetEachTokenAsAnItemOfTheList) {
    hold({u"Inglés"_s, u"Alemán"_s});
    press(Qt::Key_Left);
    QAccessibleInterface* selectedItem = QAccessible::queryAccessibleInterface(chip(1));
    EXPECT_EQ(selectedItem->role(), QAccessible::ListItem);
    EXPECT_EQ(selectedItem->text(QAccessible::Name), u"Alemán"_s);
    EXPECT_TRUE(selectedItem->state().selected);
    EXPECT_TRUE(selectedItem->state().focused);
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(chip(0))->state().selected);

    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(editor);
    ASSERT_EQ(list->childCount(), 3) << "the tokens and the text";
    EXPECT_EQ(list->child(0)->text(QAccessible::Name), u"Inglés"_s);
    EXPECT_EQ(list->child(1)->object(), chip(1));
    EXPECT_EQ(list->child(2)->object(), input());
    EXPECT_EQ(list->indexOfChild(selectedItem), 1);
    EXPECT_EQ(list->focusChild(), selectedItem);
    EXPECT_EQ(selectedItem->parent(), list);
}

} // namespace dorvantel
