// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QGridLayout>

namespace dorvantel {

class SymbolView;

/// The grid of a page of the validation sheet: bold labels, inputs and warning marks in three columns.
class FormGrid : public QGridLayout {
    Q_OBJECT

public:
    explicit FormGrid(QWidget* parent);

    /// Appends a row. The label names `input` for screen readers.
    void addRow(const QString& label, QWidget* input, bool alignedToTop);

    /// Puts a mark into the last row, not shown yet.
    SymbolView* addWarning(const QString& objectName, bool alignedToTop);
};

} // namespace dorvantel
