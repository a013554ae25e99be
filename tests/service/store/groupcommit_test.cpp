// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/GroupCommit.h"

#include "tests/service/ServiceSupport.h"
#include "tests/support/Wait.h"

#include <thread>

#include <gmock/gmock.h>

using namespace dorvantel::service;
using namespace dorvantel::test;

namespace {

/// Writes into a table `t (x)`; every group but the first is made of all writes that the test has prepared.
class GroupCommitTest : public testing::Test {
protected:
    GroupCommitTest() { database.execute("PRAGMA journal_mode = WAL; CREATE TABLE t (x UNIQUE)"); }

    void insert(int value) { database.execute(("INSERT INTO t VALUES (" + std::to_string(value) + ")").c_str()); }
    std::string stored() {
        return SqliteDatabase(folder.store().string(), SqliteDatabase::Access::ReadOnly)
            .text("SELECT coalesce(group_concat(x), '') FROM (SELECT x FROM t ORDER BY x)");
    }
    /// Runs a write in a thread of its own; what it threw is in `errors` at its number.
    void start(int number, GroupCommit::Write write) {
        threads.emplace_back([this, number, write = std::move(write)] {
            std::string error;
            try {
                commits.run(write);
            } catch (const std::exception& thrown) {
                error = thrown.what();
            }
            const std::scoped_lock lock(mutex);
            errors[number] = error;
        });
    }
    /// Holds the first write until `prepare` has started `count` others, which then form one group.
    void runAsOneGroup(std::size_t count, const std::function<void()>& prepare) {
        auto hold = std::make_optional(commits.alone());
        start(0, [this] {
            insert(0);
            return GroupCommit::Change{};
        });
        ASSERT_TRUE(waitUntil([this] { return commits.isRunning(); }));
        prepare();
        ASSERT_TRUE(waitUntil([&] { return commits.waiting() == count; }));
        hold.reset();
        for (std::thread& thread : threads) {
            thread.join();
        }
        threads.clear();
    }

    StoreFolder folder;
    SqliteDatabase database{folder.store().string(), SqliteDatabase::Access::ReadWriteCreate, 20};
    int commitCount = 0;
    bool isCommitFailing = false;
    std::vector<std::vector<std::int64_t>> retired;
    GroupCommit commits{database, [this](SqliteTransaction& transaction, std::span<const GroupCommit::Change> changes) {
                            if (isCommitFailing) {
                                throw SqliteError(13, "no room");
                            }
                            transaction.commit();
                            ++commitCount;
                            retired.emplace_back();
                            for (const GroupCommit::Change& change : changes) {
                                if (change.retired) {
                                    retired.back().push_back(*change.retired);
                                }
                            }
                        }};
    std::mutex mutex;
    std::map<int, std::string> errors;
    std::vector<std::thread> threads;
};

} // namespace

TEST_F(GroupCommitTest, WriteIsInTheDatabaseWhenItReturns) {
    commits.run([this] {
        insert(1);
        return GroupCommit::Change{};
    });
    EXPECT_EQ(stored(), "1");
    EXPECT_EQ(commitCount, 1);
}

TEST_F(GroupCommitTest, WritesThatWaitShareOneCommit) {
    runAsOneGroup(20, [this] {
        for (int i = 1; i <= 20; ++i) {
            start(i, [this, i]() -> GroupCommit::Change {
                insert(i);
                return {.retired = i % 10 == 0 ? std::optional<std::int64_t>(i) : std::nullopt};
            });
        }
    });
    EXPECT_EQ(stored(), "0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20");
    EXPECT_EQ(commitCount, 2);
    EXPECT_THAT(retired, testing::ElementsAre(testing::IsEmpty(), testing::UnorderedElementsAre(10, 20)));
}

TEST_F(GroupCommitTest, WriteThatFailsTakesOnlyItselfBack) {
    runAsOneGroup(3, [this] {
        start(1, [this] {
            insert(1);
            return GroupCommit::Change{};
        });
        start(2, [this]() -> GroupCommit::Change {
            insert(2);
            insert(0); // is there already
            return {.retired = 7};
        });
        start(3, [this] {
            insert(3);
            return GroupCommit::Change{};
        });
    });
    EXPECT_EQ(stored(), "0,1,3");
    EXPECT_EQ(commitCount, 2);
    EXPECT_EQ(errors[1], "");
    EXPECT_EQ(errors[2], "UNIQUE constraint failed: t.x");
    EXPECT_EQ(errors[3], "");
    EXPECT_THAT(retired, testing::Each(testing::IsEmpty()));
}

TEST_F(GroupCommitTest, WriteThatEndsTheTransactionOfAllFailsAlone) {
    runAsOneGroup(3, [this] {
        start(1, [this] {
            insert(1);
            return GroupCommit::Change{};
        });
        start(2, [this]() -> GroupCommit::Change {
            database.execute("ROLLBACK"); // as SQLite does by itself when there is no room left
            throw SqliteError(13, "no room");
        });
        start(3, [this] {
            insert(3);
            return GroupCommit::Change{};
        });
    });
    EXPECT_EQ(stored(), "0,1,3");
    EXPECT_EQ(commitCount, 3);
    EXPECT_EQ(errors[1], "");
    EXPECT_EQ(errors[2], "no room");
    EXPECT_EQ(errors[3], "");
}

TEST_F(GroupCommitTest, CommitThatFailsIsReportedToEveryWriteAndLeavesNothing) {
    isCommitFailing = true;
    runAsOneGroup(2, [this] {
        for (const int i : {1, 2}) {
            start(i, [this, i] {
                insert(i);
                return GroupCommit::Change{};
            });
        }
    });
    EXPECT_EQ(stored(), "");
    EXPECT_THAT(errors, testing::Each(testing::Field(&std::pair<const int, std::string>::second, "no room")));
    isCommitFailing = false;
    commits.run([this] {
        insert(4);
        return GroupCommit::Change{};
    });
    EXPECT_EQ(stored(), "4");
}

TEST_F(GroupCommitTest, LockOfAnotherProgramIsWaitedForOncePerGroup) {
    const SqliteDatabase other(folder.store().string(), SqliteDatabase::Access::ReadWriteCreate);
    other.execute("BEGIN IMMEDIATE");
    int attempts = 0;
    runAsOneGroup(2, [&] {
        for (const int i : {1, 2}) {
            start(i, [&attempts] {
                ++attempts;
                return GroupCommit::Change{};
            });
        }
    });
    EXPECT_EQ(attempts, 0);
    EXPECT_THAT(errors,
                testing::Each(testing::Field(&std::pair<const int, std::string>::second, "database is locked")));
}

TEST_F(GroupCommitTest, ManyThreadsLoseNothing) {
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([this, thread] {
            for (int i = 0; i < 50; ++i) {
                commits.run([&] {
                    insert(thread * 50 + i);
                    return GroupCommit::Change{};
                });
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(database.number("SELECT count(*) FROM t"), 400);
    EXPECT_LE(commitCount, 400);
}
