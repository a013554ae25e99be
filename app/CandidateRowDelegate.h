// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace dorvantel {

/// Draws the rows of the sidebar: the search entry, the header of the candidates, and for each candidate a figure with
/// name and profession beside it. Long texts are cut with an ellipsis. One delegate draws every row: a list of a
/// hundred thousand candidates costs no widget.
class CandidateRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace dorvantel
