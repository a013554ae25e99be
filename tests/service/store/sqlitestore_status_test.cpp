// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/CandidateVersions.h"
#include "tests/service/FullDisk.h"
#include "tests/service/SqliteStoreFixture.h"

#include <random>
#include <thread>

using namespace dorvantel::service;
using namespace dorvantel::test;

namespace {

class StoreStatusTest : public SqliteStoreTest {
protected:
    /// What the store tells is what counting all rows would.
    void expectExact(SqliteStore& store) const {
        const auto status = store.status();
        ASSERT_TRUE(status);
        EXPECT_EQ(std::to_string(status->records), value("SELECT count(*) FROM record"));
        EXPECT_EQ(std::to_string(status->vectorsPending), value("SELECT count(*) FROM embedding_queue"));
    }

    static void changeSomething(SqliteStore& store, std::minstd_rand& random) {
        const std::string email = std::to_string(random() % 12) + "@x";
        switch (random() % 4) {
        case 0:
            EXPECT_TRUE(store.remove(email)) << "or there is nothing to remove";
            break;
        case 1:
            if (const std::int64_t id = queuedId(store, email); id != 0) {
                EXPECT_TRUE(store.putVector(id, {1, 0}));
                EXPECT_TRUE(store.putVector(id, {0, 1})) << "once more, when it waits no longer";
            }
            break;
        default:
            EXPECT_TRUE(store.insert(makeRecord(email)));
        }
    }

    std::minstd_rand random{7};
};

} // namespace

TEST_F(StoreStatusTest, CountsAreExactAfterEveryChange) {
    SqliteStore store(folder.store(), "m");
    expectExact(store);
    for (int i = 0; i < 150; ++i) {
        changeSomething(store, random);
        expectExact(store);
        ASSERT_FALSE(HasFailure()) << "after change " << i;
    }
}

TEST_F(StoreStatusTest, CountsAreExactAfterARestartWithWhateverModelAndAfterCommands) {
    for (const char* const model : {"m", "other", "", "m"}) {
        SqliteStore store(folder.store(), model);
        expectExact(store);
        for (int i = 0; i < 20; ++i) {
            changeSomething(store, random);
        }
        expectExact(store);
    }
    EXPECT_GT(eraseCandidate(folder.store(), "1@x"), 0);
    EXPECT_GT(forgetVectors(folder.store()), 0);
    SqliteStore store(folder.store(), "m");
    expectExact(store);
}

TEST_F(StoreStatusTest, CountsAreExactAfterWritesThatFailed) {
    SqliteStore store(folder.store(), "m");
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    {
        const FullDisk disk;
        EXPECT_FALSE(store.insert(makeRecord("a@x")));
        EXPECT_FALSE(store.insert(makeRecord("b@x")));
        EXPECT_FALSE(store.remove("a@x"));
        EXPECT_FALSE(store.putVector(queuedId(store, "a@x"), {1, 0}));
    }
    expectExact(store);
    EXPECT_EQ(store.remove("nobody@x"), false);
    EXPECT_EQ(store.putVector(77, {1, 0}), false);
    expectExact(store);
}

TEST_F(StoreStatusTest, CountsAreExactAfterManyWritersAtOnce) {
    SqliteStore store(folder.store(), "m");
    std::vector<std::jthread> threads;
    for (unsigned thread = 0; thread < 6; ++thread) {
        threads.emplace_back([&store, own = std::minstd_rand(thread + 1)]() mutable {
            for (int i = 0; i < 40; ++i) {
                changeSomething(store, own);
            }
        });
    }
    threads.clear();
    expectExact(store);
}
