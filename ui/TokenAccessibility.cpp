// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TokenAccessibility.h"

#include "ui/TokenChip.h"
#include "ui/TokenEditor.h"

#include <QAccessibleWidget>

namespace dorvantel {

namespace {

class AccessibleChip final : public QAccessibleWidget {
public:
    explicit AccessibleChip(TokenChip* chip)
        : QAccessibleWidget(chip, QAccessible::ListItem, chip->token()) {}

    QAccessibleInterface* parent() const override {
        QWidget* ancestor = widget()->parentWidget();
        while (ancestor && !qobject_cast<TokenEditor*>(ancestor)) {
            ancestor = ancestor->parentWidget();
        }
        return QAccessible::queryAccessibleInterface(ancestor);
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = true;
        state.multiSelectable = true;
        state.focusable = true;
        state.selected = static_cast<TokenChip*>(widget())->isSelected();
        return state;
    }
};

/// What lies between the editor and its tokens serves the scrolling and means nothing to anyone.
class AccessibleEditor final : public QAccessibleWidget {
public:
    explicit AccessibleEditor(TokenEditor* editor)
        : QAccessibleWidget(editor, QAccessible::List) {}

    int childCount() const override { return static_cast<int>(editor().chips().size()) + 1; }

    QAccessibleInterface* child(int index) const override {
        const std::vector<TokenChip*>& chips = editor().chips();
        const auto place = static_cast<std::size_t>(index);
        if (index < 0 || place > chips.size()) {
            return nullptr;
        }
        return QAccessible::queryAccessibleInterface(place < chips.size() ? chips[place] : editor().focusProxy());
    }

    int indexOfChild(const QAccessibleInterface* wanted) const override {
        for (int i = 0; i < childCount(); ++i) {
            if (child(i)->object() == wanted->object()) {
                return i;
            }
        }
        return -1;
    }

    QAccessibleInterface* childAt(int x, int y) const override {
        for (int i = 0; i < childCount(); ++i) {
            if (child(i)->rect().contains(x, y)) {
                return child(i);
            }
        }
        return nullptr;
    }

private:
    const TokenEditor& editor() const { return *static_cast<TokenEditor*>(widget()); }
};

QAccessibleInterface* accessibleToken(const QString&, QObject* object) {
    if (auto* editor = qobject_cast<TokenEditor*>(object)) {
        return new AccessibleEditor(editor);
    }
    auto* chip = qobject_cast<TokenChip*>(object);
    return chip ? new AccessibleChip(chip) : nullptr;
}

} // namespace

void installTokenAccessibility() {
    QAccessible::installFactory(accessibleToken);
}

} // namespace dorvantel
