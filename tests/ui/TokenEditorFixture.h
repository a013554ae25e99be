// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/Wait.h"
#include "ui/Style.h"
#include "ui/TokenChip.h"
#include "ui/TokenEditor.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include <gmock/gmock.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

/// Lets everything in unless told otherwise, and remembers what it was asked.
class RecordingDelegate final : public TokenEditorDelegate {
public:
    QStringList catalogue;              ///< offered when they contain the substring
    std::optional<TokenObjects> answer; ///< to shouldAdd, instead of what is proposed
    std::optional<TextCommand> handled; ///< the command it keeps for itself
    QList<TokenMenuItem> menu{{u"Eliminar token"_s, TokenAction::RemoveToken}};
    mutable QStringList calls;

    QStringList completionsForSubstring(const QString& substring, const TokenObjects&) const override {
        calls.append(u"completions "_s + substring);
        return catalogue.filter(substring, Qt::CaseInsensitive);
    }
    TokenObjects shouldAdd(const TokenObjects& proposed, qsizetype index, const TokenObjects&) override {
        calls.append(u"shouldAdd "_s + stringsAmong(proposed).join(u'|') + u" at "_s + QString::number(index));
        return answer.value_or(proposed);
    }
    bool hasMenuForToken(const QString&) const override { return !menu.isEmpty(); }
    QList<TokenMenuItem> menuForToken(const QString&) const override { return menu; }
    void textDidChange(const TokenObjects& field, FieldChange change) override {
        note(change == FieldChange::Deletion ? u"textDidChange by deletion"_s : u"textDidChange"_s, field);
    }
    void textDidEndEditing(const TokenObjects& field) override { note(u"textDidEndEditing"_s, field); }
    bool doCommand(TextCommand command) override {
        commands.append(command);
        return command == handled;
    }

    QList<TextCommand> commands;

private:
    void note(const QString& call, const TokenObjects& field) {
        calls.append(call + u" ["_s + stringsAmong(field).join(u'|') + u"]"_s);
    }
};

/// A token field in an active dialog, with a line to go to, driven by keys and the mouse as a user does.
class TokenWindow {
public:
    QDialog window;
    TokenEditor* editor = nullptr;
    QLineEdit* elsewhere = nullptr;

    /// Shows `field` and gives its editor the focus. The window owns it.
    void show(QWidget* field, TokenEditor* itsEditor) {
        applyApplicationLook(*qApp);
        QApplication::setPalette(lightPalette());
        editor = itsEditor;
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(field);
        elsewhere = new QLineEdit;
        layout->addWidget(elsewhere);
        layout->addStretch();
        window.resize(400, 300);
        window.show();
        QApplication::setActiveWindow(&window);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        editor->setFocus();
        ASSERT_TRUE(input()->hasFocus());
    }

    QLineEdit* input() const { return editor->findChild<QLineEdit*>(); }
    QStringList tokens() const { return stringsAmong(editor->objectValue()); }

    const std::vector<TokenChip*>& chips() const { return editor->chips(); }
    TokenChip* chip(std::size_t index) const { return editor->chips()[index]; }
    QStringList selected() const {
        QStringList tokens;
        for (const TokenChip* each : chips()) {
            if (each->isSelected()) {
                tokens.append(each->token());
            }
        }
        return tokens;
    }

    QListView* popup() const {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* view = qobject_cast<QListView*>(widget); view && view->isVisible()) {
                return view;
            }
        }
        return nullptr;
    }
    QStringList offered() const {
        QStringList texts;
        const QListView* view = popup();
        for (int row = 0; view && row < view->model()->rowCount(); ++row) {
            texts.append(view->model()->index(row, 0).data().toString());
        }
        return texts;
    }
    QMenu* menu() const { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }

    /// Where a key of the keyboard would go.
    QWidget* keyboard() const { return popup() ? popup() : QApplication::focusWidget(); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QTest::keyClick(keyboard(), key, modifiers);
    }
    void type(const QString& text) const {
        for (const QChar character : text) {
            if (character.unicode() < 128) {
                QTest::keyClick(keyboard(), character.toLatin1());
            } else {
                QTest::sendKeyEvent(QTest::Click, keyboard(), Qt::Key_unknown, QString(character), Qt::NoModifier);
            }
        }
    }
    void typeToken(const QString& text) const {
        type(text);
        press(Qt::Key_Return);
    }
    void click(std::size_t index, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QTest::mouseClick(chip(index), Qt::LeftButton, modifiers);
    }
    void openMenu(std::size_t index) const {
        TokenChip* target = chip(index);
        QTest::mouseClick(target, Qt::RightButton);
        QContextMenuEvent event(QContextMenuEvent::Mouse, target->rect().center(),
                                target->mapToGlobal(target->rect().center()));
        QApplication::sendEvent(target, &event);
    }
};

/// A token editor of its own, without a token field around it.
class EditorTest : public testing::Test, protected TokenWindow {
protected:
    void SetUp() override {
        auto* field = new TokenEditor(delegate);
        show(field, field);
        delegate.calls.clear();
    }

    ~EditorTest() override {
        delete editor; // before the delegate
    }

    void hold(const QStringList& tokens) { editor->setObjectValue(tokenObjects(tokens)); }

    RecordingDelegate delegate;
};

} // namespace dorvantel::test
