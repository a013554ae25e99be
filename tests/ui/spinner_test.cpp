// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/Spinner.h"

#include "tests/support/Wait.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

class SpinnerTest : public testing::Test {
protected:
    SpinnerTest() {
        spinner.hide();
        window.show();
    }

    QWidget window;
    Spinner spinner{20, {}, &window};
};

TEST_F(SpinnerTest, WhatGoesOnForAMomentIsShown) {
    spinner.setBusy(true);
    EXPECT_FALSE(spinner.isVisible());
    ASSERT_TRUE(test::waitUntil([&] { return spinner.isVisible(); }));
    spinner.setBusy(false);
    EXPECT_FALSE(spinner.isVisible());
}

TEST_F(SpinnerTest, WhatIsQuickShowsNothing) {
    spinner.setBusy(true);
    spinner.setBusy(false);
    bool later = false;
    QTimer::singleShot(300, &window, [&] { later = true; }); // longer than the moment
    ASSERT_TRUE(test::waitUntil([&] { return later || spinner.isVisible(); }));
    EXPECT_FALSE(spinner.isVisible());
}

} // namespace
} // namespace dorvantel
