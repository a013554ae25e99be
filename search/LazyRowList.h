// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "search/RowHeights.h"

#include <QAbstractScrollArea>

#include <functional>
#include <map>

namespace dorvantel {

/// A row of a LazyRowList. Its height follows from its width by QWidget::heightForWidth.
class LazyRow : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Whether it has something to lose when it is destroyed because it scrolled away.
    virtual bool holdsState() const = 0;

Q_SIGNALS:
    void heightChanged();
};

/// A vertical list of rows that are made when they scroll into view and destroyed when they scroll away, unless they
/// hold state or the keyboard focus. A row that was not made yet has the usual height. Lives on the UI thread.
///
/// The list is one stop for the Tab key: from there Tab walks through the controls of the current row and leaves the
/// list after the last one. The arrow keys, Page Up and Down, Home and End make another row the current one.
class LazyRowList : public QAbstractScrollArea {
    Q_OBJECT

public:
    using MakeRow = std::function<LazyRow*(qsizetype index, QWidget* parent)>;

    explicit LazyRowList(QWidget* parent = nullptr);

    /// Replaces all rows and scrolls to the top.
    void setRows(qsizetype count, int usualHeight, MakeRow makeRow);

    qsizetype count() const { return m_heights.count(); }
    /// The row when it is made at present, else null.
    LazyRow* row(qsizetype index) const;
    qsizetype madeRows() const { return static_cast<qsizetype>(m_rows.size()); }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void layOutRows();
    void updateScrollBar();
    void measure(qsizetype index);
    LazyRow* make(qsizetype index);
    qsizetype currentRow() const;
    void focusRow(qsizetype index, Qt::FocusReason reason);
    void makeVisible(qsizetype index);

    RowHeights m_heights;
    MakeRow m_makeRow;
    std::map<qsizetype, LazyRow*> m_rows; ///< those that are made at present, owned by the viewport
    bool m_isLayingOut = false;
};

} // namespace dorvantel
