// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/NewFile.h"

#include "tests/service/ServiceSupport.h"

#include <atomic>
#include <barrier>
#include <fstream>
#include <set>
#include <thread>

#include <gtest/gtest.h>

using namespace dorvantel::service;
using namespace dorvantel::test;

namespace fs = std::filesystem;

TEST(NewFile, WhatAKilledProcessLeftIsRemovedByTheNext) {
    const StoreFolder folder;
    const fs::path place = folder.path() / "backup.sqlite";
    const auto touch = [&](const char* name) { std::ofstream(folder.path() / name) << "bytes"; };
    for (const char* const name :
         {"backup.sqlite.part-aB3xYz", "backup.sqlite.part-aB3xYz-journal", "backup.sqlite.part-",
          "backup.sqlite.part-mine", "backup.sqlite.part-my.own", "other.sqlite.part-aB3xYz"}) {
        touch(name);
    }
    fs::create_directory(folder.path() / "backup.sqlite.part-folder");
    touch("backup.sqlite.part-folder/candidate.json");
    {
        const NewFile first(place, NewFile::Kind::File);
        const NewFile second(place, NewFile::Kind::File);
        EXPECT_TRUE(fs::exists(first.path())) << "it is being made";
        EXPECT_NE(first.path(), second.path());
    }
    std::set<std::string> left;
    for (const auto& entry : fs::directory_iterator(folder.path())) {
        left.insert(entry.path().filename());
    }
    EXPECT_EQ(left, (std::set<std::string>{"backup.sqlite.part-", "backup.sqlite.part-mine",
                                           "backup.sqlite.part-my.own", "other.sqlite.part-aB3xYz"}));
}

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
