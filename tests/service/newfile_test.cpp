// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/NewFile.h"

#include "tests/service/ServiceSupport.h"

#include <atomic>
#include <barrier>
#include <thread>

#include <gtest/gtest.h>

using namespace dorvantel::service;
using namespace dorvantel::test;

namespace fs = std::filesystem;

TEST(NewFile, OfTwoThatAreFinishedAtOnceOneGetsTheName) {
    const StoreFolder folder;
    for (int round = 0; round < 100; ++round) {
        const fs::path place = folder.path() / std::to_string(round);
        std::barrier together(2);
        std::atomic<int> refusals = 0;
        const auto make = [&] {
            NewFile made(place, NewFile::Kind::File);
            together.arrive_and_wait();
            try {
                made.putInPlace();
            } catch (const FileError&) {
                ++refusals;
            }
        };
        {
            const std::jthread one(make);
            const std::jthread other(make);
        }
        EXPECT_EQ(refusals, 1);
    }
}
