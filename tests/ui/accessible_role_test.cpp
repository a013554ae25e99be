// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/AccessibleRole.h"

#include "ui/Symbols.h"

#include <QWidget>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

TEST(AccessibleRole, ADrawnWidgetIsWhatItSaysAndKeepsItsName) {
    QWidget drawn;
    setAccessibleRole(drawn, QAccessible::ListItem);
    drawn.setAccessibleName(u"Ana"_s);
    const QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&drawn);
    EXPECT_EQ(seen->role(), QAccessible::ListItem);
    EXPECT_EQ(seen->text(QAccessible::Name), u"Ana"_s);
}

TEST(AccessibleRole, AWidgetThatSaysNothingIsWhatTheToolkitMakesOfIt) {
    QWidget drawn;
    setAccessibleRole(drawn, QAccessible::ListItem);
    QWidget other;
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&other)->role(), QAccessible::Client);
}

TEST(AccessibleRole, AMarkThatIsNotShownIsNotThereForScreenReaders) {
    SymbolView mark(u"exclamationmark.triangle"_s, Qt::red, 20);
    mark.show();
    const QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&mark);
    EXPECT_EQ(seen->role(), QAccessible::Graphic);
    EXPECT_FALSE(seen->state().invisible);
    mark.setShown(false);
    EXPECT_TRUE(seen->state().invisible);
}

} // namespace
} // namespace dorvantel
