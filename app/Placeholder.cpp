// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/Placeholder.h"

#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QVBoxLayout>

namespace dorvantel {

using namespace Qt::StringLiterals;

Placeholder::Placeholder(QWidget* parent)
    : QWidget(parent) {
    constexpr int logoSize = 150;
    setObjectName(u"placeholder"_s);
    auto* logo = SymbolView::ostrelLogo(QColor(colours::accent), logoSize);
    logo->setAccessibleName(u"Ostrel"_s);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(spacing::standard, spacing::standard, spacing::standard, spacing::standard);
    column->addWidget(logo, 0, Qt::AlignCenter);
}

} // namespace dorvantel
