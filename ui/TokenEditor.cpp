// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TokenEditor.h"

#include "platform/Fatal.h"
#include "ui/CompletionPopup.h"
#include "ui/Flow.h"
#include "ui/TokenAccessibility.h"
#include "ui/TokenChip.h"
#include "ui/TokenClipboard.h"

#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyleOption>

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr int space = 4;
constexpr int sideMargin = 2;

} // namespace

struct TokenEditor::Arrangement {
    Flow flow;
    bool scrolls;
};

TokenEditor::TokenEditor(TokenEditorDelegate& delegate, QWidget* parent)
    : QScrollArea(parent)
    , m_delegate(delegate)
    , m_content(new QWidget)
    , m_input(new QLineEdit(m_content)) {
    m_input->setAcceptDrops(false); // what is dropped on a window is for the window
    installTokenAccessibility();

    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidget(m_content);
    viewport()->setAutoFillBackground(false);
    viewport()->setCursor(Qt::IBeamCursor);
    m_content->setAutoFillBackground(false);

    m_input->setFrame(false);
    QPalette clear;
    clear.setColor(QPalette::Base, Qt::transparent);
    m_input->setPalette(clear);
    m_input->setTextMargins(0, 0, 0, 0);
    setFocusProxy(m_input);

    m_completion = new CompletionPopup(m_input);
    // After the completer's own, so that the keys come here first.
    m_input->installEventFilter(this);
    m_completion->view()->installEventFilter(this);
    QObject::connect(m_completion, &CompletionPopup::chosen, this,
                     [this](const QString& completion) { propose({completion}); });
    // Not textEdited: what a screen reader or a speech program writes is no key press.
    QObject::connect(m_input, &QLineEdit::textChanged, this, &TokenEditor::onTextEdited);
}

TokenEditor::~TokenEditor() {
    // Losing the focus by being destroyed is no editing.
    m_input->removeEventFilter(this);
    m_completion->view()->removeEventFilter(this);
    for (TokenChip* chip : m_chips) {
        chip->removeEventFilter(this);
    }
}

TokenObjects TokenEditor::objectValue() const {
    TokenObjects value;
    value.reserve(count());
    for (const TokenChip* chip : m_chips) {
        value.append(chip->token());
    }
    return value;
}

void TokenEditor::setObjectValue(const TokenObjects& value) {
    if (value != objectValue()) {
        m_completion->hide();
        showText({});
        showTokens(requiredStrings(value));
    }
}

void TokenEditor::setTokens(const TokenObjects& value) {
    if (value != objectValue()) {
        showTokens(requiredStrings(value));
    }
}

void TokenEditor::removeToken() {
    TokenObjects value = objectValue();
    if (value.isEmpty()) {
        fatalError(u"a token is to be removed from a field without tokens"_s);
    }
    value.removeFirst();
    setTokens(value);
}

QString TokenEditor::text() const {
    return m_input->text();
}

void TokenEditor::setText(const QString& text) {
    showText(text);
    relayout();
}

void TokenEditor::setFieldName(const QString& name) {
    setAccessibleName(name);
    m_input->setAccessibleName(name);
}

void TokenEditor::setMaximumLines(int lines) {
    m_maximumLines = lines;
    relayout();
}

void TokenEditor::showText(const QString& text) {
    const QSignalBlocker blocker(m_input); // nobody wrote it
    m_input->setText(text);
}

void TokenEditor::showTokens(const QStringList& tokens) {
    while (!m_chips.empty()) {
        dropChip(count() - 1);
    }
    for (const QString& token : tokens) {
        addChip(token);
    }
    tokensChanged();
}

void TokenEditor::addChip(const QString& token) {
    auto* chip = new TokenChip(token, m_content);
    chip->installEventFilter(this);
    chip->show();
    m_chips.push_back(chip);
}

void TokenEditor::dropChip(qsizetype index) {
    const auto place = m_chips.begin() + index;
    TokenChip* chip = *place;
    m_chips.erase(place);
    m_selection.clear();
    if (chip->hasFocus()) {
        m_input->setFocus();
    }
    // Not at once: it may be the one whose key press this is.
    chip->removeEventFilter(this);
    chip->hide();
    chip->deleteLater();
}

void TokenEditor::tokensChanged() {
    const QString all = requiredStrings(objectValue()).join(u", "_s);
    setAccessibleDescription(all);
    m_input->setAccessibleDescription(all);
    relayout();
}

void TokenEditor::tellChange(FieldChange change) {
    m_delegate.textDidChange(objectValue(), change);
    Q_EMIT edited();
}

void TokenEditor::onTextEdited(const QString& text) {
    const qsizetype rest = lastTokenEnd(text) + 1;
    if (rest > 0) {
        const int caret = m_input->cursorPosition() - static_cast<int>(rest);
        propose(tokenTexts(text.left(rest)), text.mid(rest));
        m_input->setCursorPosition(std::max(caret, 0));
    } else {
        relayout();
        reveal(m_input);
        tellChange(FieldChange::Typing);
    }
    if (m_input->text().trimmed().isEmpty()) {
        m_completion->hide();
    } else {
        offerCompletions();
    }
}

void TokenEditor::offerCompletions() {
    m_completion->show(m_delegate.completionsForSubstring(m_input->text().trimmed(), objectValue()));
}

void TokenEditor::commitText() {
    const QString completion = m_completion->highlighted();
    propose(completion.isEmpty() ? tokenTexts(m_input->text()) : QStringList{completion});
}

void TokenEditor::commitByTab() {
    const QStringList offered = m_completion->shown();
    const bool chosen = !m_completion->highlighted().isEmpty();
    // What was typed in full is meant as typed; otherwise the first completion is taken for it.
    const bool complete = offered.contains(m_input->text().trimmed(), Qt::CaseInsensitive);
    if (chosen || complete) {
        commitText();
    } else {
        propose({offered.first()});
    }
}

void TokenEditor::propose(const QStringList& texts, const QString& unfinished) {
    m_completion->hide();
    showText(unfinished);
    if (!texts.isEmpty()) {
        const TokenObjects added = m_delegate.shouldAdd(tokenObjects(texts), count(), objectValue());
        for (const QString& token : requiredStrings(added)) {
            addChip(token);
        }
    }
    tokensChanged();
    reveal(m_input);
    tellChange(FieldChange::Typing);
}

void TokenEditor::endEditing() {
    m_completion->hide();
    select({});
    if (const QStringList texts = tokenTexts(m_input->text()); !texts.isEmpty()) {
        propose(texts);
    }
    m_delegate.textDidEndEditing(objectValue());
    Q_EMIT edited();
}

void TokenEditor::select(const TokenSelection& selection) {
    m_selection = selection;
    for (qsizetype i = 0; i < count(); ++i) {
        m_chips[static_cast<std::size_t>(i)]->setSelected(selection.contains(i));
    }
    if (selection.current()) {
        m_completion->hide();
        TokenChip* chip = m_chips[static_cast<std::size_t>(*selection.current())];
        chip->setFocus();
        reveal(chip);
    }
}

void TokenEditor::selectOnly(qsizetype index) {
    TokenSelection selection;
    selection.selectOnly(index);
    select(selection);
}

void TokenEditor::focusText() {
    select({});
    m_input->setFocus();
    reveal(m_input);
}

void TokenEditor::deleteSelected(bool staysAmongChips) {
    if (m_selection.isEmpty()) {
        return;
    }
    const std::set<qsizetype> doomed = m_selection.indices();
    for (auto index = doomed.rbegin(); index != doomed.rend(); ++index) {
        dropChip(*index);
    }
    tokensChanged();
    if (staysAmongChips && *doomed.begin() < count()) {
        selectOnly(*doomed.begin());
    } else {
        focusText();
    }
    tellChange(FieldChange::Deletion);
}

TokenEditor::Arrangement TokenEditor::arrange(int width) const {
    QList<int> widths;
    widths.reserve(count() + 1);
    for (const TokenChip* chip : m_chips) {
        widths.append(chip->sizeHint().width());
    }
    constexpr int caretAndMargins = 12;
    constexpr int narrowest = 48;
    widths.append(std::max(m_input->fontMetrics().horizontalAdvance(m_input->text()) + caretAndMargins, narrowest));

    const int line = TokenChip::heightFor(fontMetrics());
    const int inner = std::max(width - 2 * (frameWidth() + sideMargin), 1);
    Flow whole = flow(widths, inner, line, space);
    if (whole.lines <= m_maximumLines) {
        return {std::move(whole), false};
    }
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    return {flow(widths, std::max(inner - bar, 1), line, space), true};
}

int TokenEditor::heightForWidth(int width) const {
    const int line = TokenChip::heightFor(fontMetrics());
    const int lines = std::min(arrange(width).flow.lines, m_maximumLines);
    return lines * line + (lines - 1) * space + 2 * frameWidth();
}

QSize TokenEditor::sizeHint() const {
    constexpr int usualWidth = 240;
    return {usualWidth, heightForWidth(testAttribute(Qt::WA_Resized) ? width() : usualWidth)};
}

QSize TokenEditor::minimumSizeHint() const {
    constexpr int narrowest = 80;
    return {narrowest, TokenChip::heightFor(fontMetrics()) + 2 * frameWidth()};
}

void TokenEditor::relayout() {
    const Arrangement arrangement = arrange(width());
    setVerticalScrollBarPolicy(arrangement.scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    m_content->resize(viewport()->width(), std::max(arrangement.flow.height, viewport()->height()));
    const auto place = [this, &arrangement](QWidget* piece, qsizetype index) {
        const QRect rect = arrangement.flow.places[index].translated(sideMargin, 0);
        piece->setGeometry(QStyle::visualRect(layoutDirection(), m_content->rect(), rect));
    };
    for (qsizetype i = 0; i < count(); ++i) {
        place(m_chips[static_cast<std::size_t>(i)], i);
    }
    place(m_input, count());
    updateGeometry();
}

void TokenEditor::reveal(QWidget* piece) {
    const int top = piece->y();
    const int lowest = top + piece->height() - viewport()->height();
    verticalScrollBar()->setValue(std::clamp(verticalScrollBar()->value(), std::min(lowest, top), top));
}

void TokenEditor::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    relayout();
}

void TokenEditor::changeEvent(QEvent* event) {
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange) {
        relayout();
    }
}

void TokenEditor::initStyleOption(QStyleOptionFrame* option) const {
    QScrollArea::initStyleOption(option);
    option->state.setFlag(QStyle::State_HasFocus, isAncestorOf(QApplication::focusWidget()));
}

} // namespace dorvantel
