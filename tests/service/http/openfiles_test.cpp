// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/http/HttpServer.h"
#include "service/http/OpenFiles.h"

#include <gtest/gtest.h>

using namespace dorvantel::service;

TEST(ConnectionsWithin, EachNeedsThreeFilesAndTheServiceSome) {
    EXPECT_EQ(connectionsWithin(64 + 3 * 100), 100U);
    EXPECT_EQ(connectionsWithin(64 + 3 * 100 - 1), 99U);
}

TEST(ConnectionsWithin, IsNeverNone) {
    EXPECT_EQ(connectionsWithin(0), 1U);
    EXPECT_EQ(connectionsWithin(67), 1U);
}

TEST(ConnectionsWithin, DocumentedLimitHasRoomForAll) {
    EXPECT_GE(connectionsWithin(1600), HttpServer::Settings().connections.open);
}
