// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/LazyRowList.h"

#include "ui/AccessibleRole.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

namespace dorvantel {

namespace {

constexpr int lineStep = 20;

bool hasFocusInside(const QWidget& row) {
    const QWidget* focused = QApplication::focusWidget();
    return &row == focused || row.isAncestorOf(focused);
}

bool takesTab(const QWidget& widget) {
    return (widget.focusPolicy() & Qt::TabFocus) == Qt::TabFocus && widget.isVisible() && widget.isEnabled() &&
           !widget.isWindow();
}

/// The first stop behind (or before) `from` in the window's order that fits, looked for up to `end`.
template <typename Fits>
QWidget* nextStop(QWidget& from, bool next, const QWidget* end, const Fits& fits) {
    QWidget* widget = &from;
    do {
        widget = next ? widget->nextInFocusChain() : widget->previousInFocusChain();
        if (widget != end && fits(*widget) && takesTab(*widget)) {
            return widget;
        }
    } while (widget != end);
    return nullptr;
}

} // namespace

LazyRowList::LazyRowList(QWidget* parent)
    : QAbstractScrollArea(parent) {
    setAccessibleRole(*this, QAccessible::List);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::StrongFocus);
    verticalScrollBar()->setSingleStep(lineStep);
}

void LazyRowList::setRows(qsizetype count, int usualHeight, MakeRow makeRow) {
    for (const auto& [index, row] : m_rows) {
        row->hide();
        row->deleteLater();
    }
    m_rows.clear();
    m_heights = RowHeights(count, usualHeight);
    m_makeRow = std::move(makeRow);
    verticalScrollBar()->setValue(0);
    layOutRows();
}

LazyRow* LazyRowList::row(qsizetype index) const {
    const auto found = m_rows.find(index);
    return found == m_rows.end() ? nullptr : found->second;
}

// Geometry

void LazyRowList::layOutRows() {
    if (m_isLayingOut) {
        return;
    }
    const QScopedValueRollback layingOut(m_isLayingOut, true);
    updateScrollBar();
    if (count() == 0) {
        return;
    }
    const int scrolled = verticalScrollBar()->value();
    const int bottom = scrolled + viewport()->height();
    const qsizetype first = m_heights.rowAt(scrolled);
    qsizetype last = first;
    for (int top = m_heights.top(first); last < count() && top < bottom; ++last) {
        LazyRow* row = make(last);
        row->setGeometry(0, top - scrolled, viewport()->width(), m_heights.height(last));
        row->show();
        top += m_heights.height(last);
    }
    for (auto it = m_rows.begin(); it != m_rows.end();) {
        const auto [index, row] = *it;
        const bool isSeen = index >= first && index < last;
        if (!isSeen && !row->holdsState() && !hasFocusInside(*row)) {
            row->hide();
            row->deleteLater();
            it = m_rows.erase(it);
            continue;
        }
        if (!isSeen) {
            // Not hidden while it has the focus, which would go elsewhere.
            row->move(0, m_heights.top(index) - scrolled);
            row->setVisible(hasFocusInside(*row));
        }
        ++it;
    }
}

LazyRow* LazyRowList::make(qsizetype index) {
    LazyRow*& row = m_rows[index];
    if (!row) {
        row = m_makeRow(index, viewport());
        connect(row, &LazyRow::heightChanged, this, [this, index] {
            measure(index);
            layOutRows();
            makeVisible(index);
        });
    }
    return row;
}

void LazyRowList::measure(qsizetype index) {
    m_heights.setHeight(index, m_rows.at(index)->heightForWidth(viewport()->width()));
}

void LazyRowList::updateScrollBar() {
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, std::max(0, m_heights.total() - viewport()->height()));
}

void LazyRowList::resizeEvent(QResizeEvent*) {
    if (count() == 0) {
        return;
    }
    // Rows above the view may wrap differently now; what is being read stays where it is.
    const qsizetype first = m_heights.rowAt(verticalScrollBar()->value());
    const int offset = verticalScrollBar()->value() - m_heights.top(first);
    for (const auto& [index, row] : m_rows) {
        measure(index);
    }
    updateScrollBar();
    verticalScrollBar()->setValue(m_heights.top(first) + std::min(offset, m_heights.height(first)));
    layOutRows();
}

void LazyRowList::scrollContentsBy(int, int) {
    layOutRows();
}

// Keyboard

qsizetype LazyRowList::currentRow() const {
    const auto current = std::ranges::find_if(m_rows, [](const auto& made) { return hasFocusInside(*made.second); });
    return current == m_rows.end() ? -1 : current->first;
}

void LazyRowList::keyPressEvent(QKeyEvent* event) {
    if (count() == 0) {
        event->ignore();
        return;
    }
    const qsizetype current = currentRow();
    qsizetype wanted = current;
    switch (event->key()) {
    case Qt::Key_Up:
        wanted = current - 1;
        break;
    case Qt::Key_Down:
        wanted = current + 1;
        break;
    case Qt::Key_PageUp:
        wanted = m_heights.rowAt(m_heights.top(current) - viewport()->height());
        break;
    case Qt::Key_PageDown:
        wanted = m_heights.rowAt(m_heights.top(current) + viewport()->height());
        break;
    case Qt::Key_Home:
        wanted = 0;
        break;
    case Qt::Key_End:
        wanted = count() - 1;
        break;
    default:
        event->ignore();
        return;
    }
    focusRow(std::clamp<qsizetype>(wanted, 0, count() - 1), Qt::OtherFocusReason);
}

void LazyRowList::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    if (count() > 0 && event->reason() != Qt::MouseFocusReason) {
        focusRow(m_heights.rowAt(verticalScrollBar()->value() + m_heights.height(0) / 2), event->reason());
    }
}

void LazyRowList::focusRow(qsizetype index, Qt::FocusReason reason) {
    makeVisible(index);
    row(index)->setFocus(reason);
    layOutRows();
}

void LazyRowList::makeVisible(qsizetype index) {
    const int top = m_heights.top(index);
    const int bottom = top + m_heights.height(index);
    QScrollBar& bar = *verticalScrollBar();
    if (top < bar.value()) {
        bar.setValue(top);
    } else if (bottom > bar.value() + viewport()->height()) {
        bar.setValue(std::min(top, bottom - viewport()->height()));
    }
}

bool LazyRowList::focusNextPrevChild(bool next) {
    const Qt::FocusReason reason = next ? Qt::TabFocusReason : Qt::BacktabFocusReason;
    // Rows are younger than everything around the list, so they come last in the window's order of Tab stops. That
    // order is followed within the row; from the row's end it goes on at the list's own place.
    if (QWidget* current = row(currentRow())) {
        QWidget* const from = QApplication::focusWidget();
        const auto isInside = [&](const QWidget& stop) { return &stop == current || current->isAncestorOf(&stop); };
        QWidget* const end = next ? current : current->previousInFocusChain();
        if (QWidget* to = nextStop(*from, next, end, isInside)) {
            to->setFocus(reason);
            return true;
        }
    }
    if (QWidget* to = nextStop(*this, next, this, [this](const QWidget& stop) { return !isAncestorOf(&stop); })) {
        to->setFocus(reason);
        return true;
    }
    return false;
}

} // namespace dorvantel
