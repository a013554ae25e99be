// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT

// What keys, the mouse and the clipboard do to a token editor.
#include "ui/TokenEditor.h"

#include "ui/CompletionPopup.h"
#include "ui/TokenChip.h"
#include "ui/TokenClipboard.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMimeData>

#include <cstdlib>

namespace dorvantel {

namespace {

/// The focus only rests elsewhere for a while: it comes back here by itself.
bool comesBack(Qt::FocusReason reason) {
    return reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason || reason == Qt::MenuBarFocusReason;
}

} // namespace

bool TokenEditor::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && (watched == m_input || watched == m_completion->view())) {
        return textKey(*static_cast<QKeyEvent*>(event));
    }
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        update();
    }
    if (watched == m_input && event->type() == QEvent::FocusIn) {
        select({});
    }
    if (event->type() == QEvent::FocusOut && watched != m_completion->view() &&
        !comesBack(static_cast<QFocusEvent*>(event)->reason()) && !isAncestorOf(QApplication::focusWidget())) {
        endEditing();
    }
    auto* chip = qobject_cast<TokenChip*>(watched);
    if (chip && isEnabled()) {
        return chipEvent(chip, event);
    }
    return QScrollArea::eventFilter(watched, event);
}

void TokenEditor::mousePressEvent(QMouseEvent*) {
    focusText();
}

bool TokenEditor::textKey(QKeyEvent& event) {
    const bool atStart = m_input->cursorPosition() == 0 && !m_input->hasSelectedText();
    if (event.matches(QKeySequence::Paste)) {
        return pasteTokens();
    }
    if (event.matches(QKeySequence::SelectAll) && m_input->selectedText() == m_input->text() && count() > 0) {
        TokenSelection all;
        all.selectAll(count());
        select(all);
        return true;
    }
    switch (event.key()) {
    case Qt::Key_Comma:
        if (m_completion->highlighted().isEmpty()) {
            return false; // it arrives as edited text
        }
        commitText();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return insertNewline();
    case Qt::Key_Tab:
        return insertTab();
    case Qt::Key_Backspace:
        return deleteBackward(event);
    case Qt::Key_Delete:
        return m_delegate.doCommand(TextCommand::DeleteForward);
    case Qt::Key_Down:
        if (m_completion->isVisible()) {
            return false; // moves in the list
        }
        offerCompletions();
        return true;
    case Qt::Key_Escape:
        if (!m_completion->isVisible()) {
            return false; // for the window
        }
        m_completion->hide();
        return true;
    default:
        break;
    }
    const int back = isRightToLeft() ? Qt::Key_Right : Qt::Key_Left;
    if (event.key() == back && atStart && count() > 0) {
        selectOnly(count() - 1);
        return true;
    }
    return false;
}

bool TokenEditor::insertNewline() {
    if (m_delegate.doCommand(TextCommand::InsertNewline)) {
        return true;
    }
    if (m_input->text().isEmpty() && m_completion->highlighted().isEmpty()) {
        return false; // for the window's default button
    }
    commitText();
    return true;
}

bool TokenEditor::insertTab() {
    if (m_delegate.doCommand(TextCommand::InsertTab)) {
        return true;
    }
    if (!m_completion->isVisible()) {
        return false; // moves the focus, and that ends editing
    }
    commitByTab();
    return true;
}

bool TokenEditor::deleteBackward(const QKeyEvent& event) {
    if (m_delegate.doCommand(TextCommand::DeleteBackward)) {
        return true;
    }
    if (m_input->cursorPosition() != 0 || m_input->hasSelectedText() || count() == 0) {
        return false;
    }
    // A key that is held to clear the text must not go on into the tokens.
    if (!event.isAutoRepeat()) {
        selectOnly(count() - 1);
    }
    return true;
}

bool TokenEditor::chipEvent(TokenChip* chip, QEvent* event) {
    const auto index = std::find(m_chips.begin(), m_chips.end(), chip) - m_chips.begin();
    switch (event->type()) {
    case QEvent::KeyPress:
        return chipKey(*static_cast<QKeyEvent*>(event));
    case QEvent::MouseButtonPress: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        TokenSelection selection = m_selection;
        if (mouse->modifiers() & Qt::ControlModifier) {
            selection.toggle(index);
        } else if (mouse->modifiers() & Qt::ShiftModifier) {
            selection.extendTo(index);
        } else if (mouse->button() == Qt::LeftButton || !selection.contains(index)) {
            selection.selectOnly(index);
        }
        select(selection);
        return true;
    }
    case QEvent::ContextMenu: {
        const auto* menu = static_cast<QContextMenuEvent*>(event);
        const bool byKey = menu->reason() == QContextMenuEvent::Keyboard;
        showMenu(chip, byKey ? chip->mapToGlobal(chip->rect().center()) : menu->globalPos());
        return true;
    }
    default:
        return false;
    }
}

bool TokenEditor::chipKey(QKeyEvent& event) {
    if (event.matches(QKeySequence::Copy)) {
        copySelected();
    } else if (event.matches(QKeySequence::Cut)) {
        copySelected();
        deleteSelected(false);
    } else if (event.matches(QKeySequence::Paste)) {
        focusText();
        if (!pasteTokens()) {
            m_input->paste();
        }
    } else if (event.matches(QKeySequence::SelectAll)) {
        TokenSelection all;
        all.selectAll(count());
        select(all);
    } else if (event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete) {
        const bool backward = event.key() == Qt::Key_Backspace;
        if (!m_delegate.doCommand(backward ? TextCommand::DeleteBackward : TextCommand::DeleteForward)) {
            deleteSelected(!backward);
        }
    } else if (event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab) {
        // The chips are no stops of their own: from any of them the focus goes on as from the text.
        focusText();
        focusNextPrevChild(event.key() == Qt::Key_Tab);
    } else if (!moveKey(event)) {
        const QString text = event.text();
        if (text.isEmpty() || !text.at(0).isPrint() || text.at(0).isSpace()) {
            return false;
        }
        focusText();
        QApplication::sendEvent(m_input, &event);
    }
    return true;
}

bool TokenEditor::moveKey(const QKeyEvent& event) {
    const qsizetype at = m_selection.current().value_or(0);
    const bool mirrored = isRightToLeft();
    std::optional<qsizetype> target;
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right: {
        const bool forward = (event.key() == Qt::Key_Right) != mirrored;
        target = forward ? at + 1 : std::max<qsizetype>(at - 1, 0);
        break;
    }
    case Qt::Key_Home:
        target = 0;
        break;
    case Qt::Key_End:
        target = count();
        break;
    case Qt::Key_Up:
        target = chipOnLine(at, -1).value_or(at);
        break;
    case Qt::Key_Down:
        target = chipOnLine(at, 1).value_or(count());
        break;
    default:
        return false;
    }
    if (*target >= count()) {
        focusText();
        return true;
    }
    TokenSelection selection = m_selection;
    if (event.modifiers() & Qt::ShiftModifier) {
        selection.extendTo(*target);
    } else {
        selection.selectOnly(*target);
    }
    select(selection);
    return true;
}

std::optional<qsizetype> TokenEditor::chipOnLine(qsizetype from, int direction) const {
    const QRect start = m_chips[static_cast<std::size_t>(from)]->geometry();
    std::optional<qsizetype> nearest;
    int nearestDistance = 0;
    int line = start.y();
    for (qsizetype i = from; i >= 0 && i < count(); i += direction) {
        const QRect place = m_chips[static_cast<std::size_t>(i)]->geometry();
        if (place.y() != line && nearest) {
            break;
        }
        line = place.y();
        const int distance = std::abs(place.center().x() - start.center().x());
        if (line != start.y() && (!nearest || distance < nearestDistance)) {
            nearest = i;
            nearestDistance = distance;
        }
    }
    return nearest;
}

void TokenEditor::copySelected() const {
    QStringList tokens;
    for (const qsizetype index : m_selection.indices()) {
        tokens.append(m_chips[static_cast<std::size_t>(index)]->token());
    }
    if (!tokens.isEmpty()) {
        QApplication::clipboard()->setMimeData(mimeDataOfTokens(tokens).release());
    }
}

bool TokenEditor::pasteTokens() {
    const QMimeData* clip = QApplication::clipboard()->mimeData();
    const QStringList tokens = clip ? tokensInMimeData(*clip) : QStringList();
    if (tokens.isEmpty()) {
        return false; // plain text goes where the caret is
    }
    propose(tokens, m_input->text());
    return true;
}

void TokenEditor::showMenu(TokenChip* chip, const QPoint& globalPosition) {
    if (!m_delegate.hasMenuForToken(chip->token())) {
        return;
    }
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const TokenMenuItem& item : m_delegate.menuForToken(chip->token())) {
        QAction* action = menu->addAction(item.title);
        switch (item.action) {
        case TokenAction::RemoveToken:
            QObject::connect(action, &QAction::triggered, this, &TokenEditor::removeToken);
            break;
        }
    }
    menu->popup(globalPosition);
}

} // namespace dorvantel
