// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/AccessibleRole.h"

#include "ui/Symbols.h"

#include <QAccessibleWidget>

namespace dorvantel {

namespace {

constexpr const char* roleProperty = "accessibleRole";

class Drawn final : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        const auto* symbol = qobject_cast<const SymbolView*>(widget());
        if (symbol && !symbol->isShown()) {
            state.invisible = true; // only its place is there
        }
        return state;
    }
};

QAccessibleInterface* accessibleWithRole(const QString&, QObject* object) {
    const QVariant role = object ? object->property(roleProperty) : QVariant();
    if (!role.isValid()) {
        return nullptr;
    }
    return new Drawn(static_cast<QWidget*>(object), static_cast<QAccessible::Role>(role.toInt()));
}

} // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
    QAccessible::installFactory(accessibleWithRole); // nothing when it is known already
    widget.setProperty(roleProperty, static_cast<int>(role));
}

} // namespace dorvantel
