// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/CompletionPopup.h"

#include <QCompleter>
#include <QLineEdit>
#include <QListView>
#include <QScrollBar>
#include <QStringListModel>

#include <algorithm>

namespace dorvantel {

CompletionPopup::CompletionPopup(QLineEdit* input)
    : QObject(input)
    , m_input(input)
    , m_model(new QStringListModel(this))
    , m_view(new QListView)
    , m_completer(new QCompleter(m_model, this)) {
    m_view->setUniformItemSizes(true);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    m_completer->setPopup(m_view);
    m_completer->setWidget(input);
    m_completer->setMaxVisibleItems(8);
    QObject::connect(m_completer, qOverload<const QString&>(&QCompleter::activated), this, &CompletionPopup::chosen);
}

void CompletionPopup::show(const QStringList& completions) {
    if (completions.isEmpty()) {
        hide();
        return;
    }
    m_model->setStringList(completions.mid(0, mostShown));
    // Every colour as the field has it: a window inherits nothing, and a white page in a dark desktop has its own.
    QPalette palette = m_input->parentWidget()->palette();
    palette.setResolveMask(~QPalette::ResolveMask(0));
    m_view->setPalette(palette);
    m_view->setAccessibleName(m_input->accessibleName());
    m_view->clearSelection();
    constexpr int narrowest = 180;
    constexpr int widest = 420;
    const int wanted =
        m_view->sizeHintForColumn(0) + 2 * m_view->frameWidth() + m_view->verticalScrollBar()->sizeHint().width();
    m_completer->complete(QRect(0, 0, std::clamp(wanted, narrowest, widest), m_input->height() + 2));
}

void CompletionPopup::hide() {
    m_view->hide();
}

bool CompletionPopup::isVisible() const {
    return m_view->isVisible();
}

QStringList CompletionPopup::shown() const {
    return isVisible() ? m_model->stringList() : QStringList();
}

QString CompletionPopup::highlighted() const {
    // Not the current one: a list that gets the focus has one without the user having gone there.
    const QModelIndexList selected = m_view->selectionModel()->selectedIndexes();
    return isVisible() && !selected.isEmpty() ? selected.first().data().toString() : QString();
}

} // namespace dorvantel
