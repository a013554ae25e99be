// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/FormGrid.h"

#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QLabel>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

Qt::Alignment vertical(bool alignedToTop) {
    return alignedToTop ? Qt::AlignTop : Qt::AlignVCenter;
}

} // namespace

FormGrid::FormGrid(QWidget* parent)
    : QGridLayout(parent) {
    setHorizontalSpacing(spacing::gridColumn);
    setVerticalSpacing(spacing::gridRow);
    setContentsMargins(spacing::standard, 0, spacing::standard, 0);
    setColumnStretch(1, 1);
}

void FormGrid::addRow(const QString& label, QWidget* input, bool alignedToTop) {
    auto* text = new QLabel(label);
    QFont bold = textFont(TextStyle::Body);
    bold.setBold(true);
    text->setFont(bold);
    text->setBuddy(input);
    input->setAccessibleName(label);
    const int row = rowCount();
    addWidget(text, row, 0, Qt::AlignLeft | vertical(alignedToTop));
    addWidget(input, row, 1);
}

SymbolView* FormGrid::addWarning(const QString& objectName, bool alignedToTop) {
    constexpr int size = 16;
    auto* mark = new SymbolView(u"exclamationmark.triangle"_s, QColor(colours::orange), size);
    mark->setObjectName(objectName);
    mark->setAccessibleName(u"Este campo no puede quedar vacío"_s);
    mark->setShown(false);
    addWidget(mark, rowCount() - 1, 2, vertical(alignedToTop));
    return mark;
}

} // namespace dorvantel
