// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/ControlStyle.h"
#include "ui/DeferredIcon.h"
#include "ui/Symbols.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

TEST(DeferredIcon, IsMadeOnceAndOnlyWhenItIsDrawn) {
    int made = 0;
    const QIcon icon = deferredIcon([&made] {
        ++made;
        return applicationIcon();
    });
    EXPECT_FALSE(icon.isNull());
    EXPECT_EQ(made, 0);
    EXPECT_EQ(icon.pixmap(QSize(32, 32), 1.0).toImage(), applicationIcon().pixmap(QSize(32, 32), 1.0).toImage());
    EXPECT_EQ(icon.pixmap(QSize(32, 32), 2.0).size(), QSize(64, 64));
    EXPECT_EQ(icon.availableSizes(), applicationIcon().availableSizes());
    EXPECT_EQ(made, 1);
}

TEST(DeferredIcon, TheMenuBarsButtonForMoreLooksAsTheToolkitDrawsIt) {
    const ControlStyle style;
    const QIcon deferred = style.standardIcon(QStyle::SP_ToolBarHorizontalExtensionButton);
    const QIcon own = style.baseStyle()->standardIcon(QStyle::SP_ToolBarHorizontalExtensionButton);
    EXPECT_EQ(deferred.actualSize(QSize(16, 16)), own.actualSize(QSize(16, 16)));
    EXPECT_EQ(deferred.pixmap(QSize(16, 16), 1.0).toImage(), own.pixmap(QSize(16, 16), 1.0).toImage());
}

} // namespace dorvantel::test
