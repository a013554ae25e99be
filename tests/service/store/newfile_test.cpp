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
#include <unistd.h>

using namespace dorvantel::service;
using namespace dorvantel::test;

namespace fs = std::filesystem;

namespace {

std::set<std::string> namesIn(const fs::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.insert(entry.path().filename());
    }
    return names;
}

} // namespace

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
    EXPECT_EQ(namesIn(folder.path()), (std::set<std::string>{"backup.sqlite.part-", "backup.sqlite.part-mine",
                                                             "backup.sqlite.part-my.own", "other.sqlite.part-aB3xYz"}));
}

TEST(NewFile, RootRemovesWhatWasLeftToTheStoresOwnerWhereItMakesAStore) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root makes files for others";
    }
    constexpr uid_t owner = 12'345;
    constexpr uid_t another = 12'346;
    const auto left = [](NewFile::Kind kind, bool isStoreThere) {
        const StoreFolder folder;
        const auto touch = [&](const char* name, uid_t user) {
            std::ofstream(folder.path() / name) << "bytes";
            EXPECT_EQ(chown((folder.path() / name).c_str(), user, user), 0);
        };
        EXPECT_EQ(chown(folder.path().c_str(), owner, owner), 0);
        if (isStoreThere) {
            touch("records.sqlite", owner);
        }
        touch("records.sqlite.part-roots1", 0);
        touch("records.sqlite.part-owners", owner);
        touch("records.sqlite.part-others", another);
        {
            const NewFile made(folder.store(), kind);
        }
        std::set<std::string> names = namesIn(folder.path());
        names.erase("records.sqlite");
        return names;
    };
    for (const bool isStoreThere : {true, false}) {
        EXPECT_EQ(left(NewFile::Kind::Store, isStoreThere), (std::set<std::string>{"records.sqlite.part-others"}));
        EXPECT_EQ(left(NewFile::Kind::Replacement, isStoreThere),
                  (std::set<std::string>{"records.sqlite.part-owners", "records.sqlite.part-others"}))
            << "what becomes no store is given to nobody";
    }
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
