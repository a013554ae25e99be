// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/http/Patience.h"

#include <gtest/gtest.h>

using namespace dorvantel::service;
using namespace std::chrono_literals;

TEST(Patience, WaitingUsesItUp) {
    Patience patience(10s);
    patience.waited(4s);
    EXPECT_EQ(patience.left(), 6s);
    patience.waited(7s);
    EXPECT_EQ(patience.left(), 0s);
}

TEST(Patience, WhatMovesGivesItBackButNeverMoreThanThereWas) {
    Patience patience(10s);
    patience.waited(4s);
    patience.moved(Patience::bytesPerSecond);
    EXPECT_EQ(patience.left(), 7s);
    patience.moved(1'000'000'000);
    EXPECT_EQ(patience.left(), 10s);
}

TEST(Patience, DrippingIsNoWayToStay) {
    Patience patience(10s);
    int drops = 0;
    for (; patience.left() >= 100ms; ++drops) {
        patience.waited(100ms);
        patience.moved(100);
    }
    EXPECT_EQ(drops, 106);
}
