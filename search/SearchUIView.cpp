// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/SearchUIView.h"

#include "ui/Style.h"

#include <QLabel>
#include <QVBoxLayout>

namespace dorvantel {

using namespace Qt::StringLiterals;

SearchUIView::SearchUIView(QWidget* parent)
    : QWidget(parent) {
    setObjectName(u"search"_s);
    auto* title = new QLabel(u"Búsqueda"_s);
    title->setFont(textFont(TextStyle::Title));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(spacing::standard, spacing::standard, spacing::standard, spacing::standard);
    column->addWidget(title, 0, Qt::AlignHCenter);
    column->addStretch();
}

} // namespace dorvantel
