// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/PDFAccessibility.h"

#include "ui/PDFView.h"

#include <QAccessibleWidget>

namespace dorvantel {

namespace {

QAccessibleInterface* accessibleDocument(const QString&, QObject* object) {
    auto* view = qobject_cast<PDFView*>(object);
    return view ? new QAccessibleWidget(view, QAccessible::Document) : nullptr;
}

} // namespace

void installPDFAccessibility() {
    QAccessible::installFactory(accessibleDocument);
}

} // namespace dorvantel
