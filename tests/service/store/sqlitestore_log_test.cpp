// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/FullDisk.h"
#include "tests/service/SqliteStoreFixture.h"
#include "tests/support/Wait.h"

#include <mutex>
#include <thread>

using namespace dorvantel::service;
using namespace dorvantel::test;

namespace {

constexpr std::uintmax_t mebibyte = std::uintmax_t{1024} * 1024;

class StoreLog : public SqliteStoreTest {
protected:
    std::uintmax_t size() const { return std::filesystem::file_size(folder.store().string() + "-wal"); }
    /// What a log is cut down to that was longer.
    static constexpr std::uintmax_t kept = 16 * mebibyte;

    void insert(const std::string& email, std::size_t bytes) {
        Record record = makeRecord(email);
        record.file = std::string(bytes, 'x');
        ASSERT_TRUE(store.insert(record)) << email;
    }
    /// Writes a little again and again until the log has begun anew and is short.
    bool becomesShort() {
        return waitUntil([this] {
            insert("little@x", 10);
            return size() <= kept;
        });
    }

    SqliteStore store{folder.store(), "m"};
};

/// What is left of an answer.
std::vector<std::string> restOf(Rows& rows) {
    std::vector<std::string> emails;
    for (Row row; rows.next(row).value();) {
        emails.emplace_back(row.email);
        EXPECT_EQ(row.name, "Name of " + emails.back());
    }
    return emails;
}

} // namespace

TEST_F(StoreLog, IsShortAgainOnceAReaderHasEnded) {
    insert("first@x", 10);
    {
        const auto reader = store.run({});
        insert("large@x", 24 * mebibyte);
        insert("second@x", 10);
        EXPECT_GT(size(), 24 * mebibyte);
    }
    EXPECT_TRUE(becomesShort());
}

TEST_F(StoreLog, IsMovedIntoTheFileWhileNobodyAsksForAnything) {
    insert("large@x", 6 * mebibyte);
    EXPECT_TRUE(waitUntil([this] { return std::filesystem::file_size(folder.store()) > 6 * mebibyte; }));
}

TEST_F(SqliteStoreTest, LogThatCannotBeMovedIntoTheFileIsReportedOnceAndOnceWhenItCan) {
    const auto insert = [](SqliteStore& store, const std::string& email, std::size_t bytes) {
        Record record = makeRecord(email);
        record.file = std::string(bytes, 'x');
        ASSERT_TRUE(store.insert(record));
    };
    {
        SqliteStore closed(folder.store(), "");
        insert(closed, "first@x", 10 * mebibyte);
    }
    std::mutex mutex;
    std::vector<std::string> lines;
    const auto log = [&] {
        const std::scoped_lock lock(mutex);
        return lines;
    };
    SqliteStore store(folder.store(), "", [&](std::string_view line) {
        const std::scoped_lock lock(mutex);
        lines.emplace_back(line);
    });
    {
        const FullDisk disk(8 * mebibyte, EDQUOT); // enough for the log, too little for what the file has to grow to
        insert(store, "second@x", 6 * mebibyte);
        EXPECT_TRUE(waitUntil([&] { return disk.refusals() >= 5; }));
    }
    EXPECT_TRUE(waitUntil([&] { return log().size() >= 2; }));
    EXPECT_THAT(log(), testing::ElementsAre(
                           "the store's log cannot be moved into its file: database or disk is full; trying again",
                           "the store's log is moved into its file again"));
}

TEST_F(StoreLog, OfManyWritersStaysShort) {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([this, thread] {
            for (int i = 0; i < 80; ++i) {
                insert(std::to_string(thread), 100'000);
            }
        });
    }
    threads.clear();
    EXPECT_LT(size(), 48 * mebibyte) << "they wrote more than 64 MiB";
}

TEST_F(StoreLog, BeginsAnewBesideAnswersThatAreNotAtTheirEnd) {
    constexpr std::size_t candidates = 300;
    constexpr std::size_t limit = 280;
    std::vector<std::string> emails;
    for (std::size_t i = 0; i < candidates; ++i) {
        emails.push_back(std::to_string(i) + "@x");
        insert(emails.back(), 10);
    }
    for (std::int64_t id = 0; const auto waiting = *store.nextUnembedded(id);) {
        id = *waiting;
        ASSERT_TRUE(store.putVector(id, {0.6F, 0.8F}));
    }
    std::vector<std::unique_ptr<Rows>> answers;
    for (const Plan& plan : {Plan{}, having({{Trait::Gender, "Femenino"}}), Plan{{}, std::vector<float>{1, 0}, {}},
                             Plan{{}, std::nullopt, limit}}) {
        answers.push_back(*store.run(plan));
    }
    std::vector<std::vector<std::string>> given(answers.size());
    const auto giveOneOfEach = [&] {
        Row row;
        for (std::size_t i = 0; i < answers.size(); ++i) {
            if (answers[i]->next(row).value()) {
                given[i].emplace_back(row.email);
            }
        }
    };
    giveOneOfEach();
    const auto untouched = *store.run({});
    // Of those that are still to come some change and one goes, and others come.
    ASSERT_EQ(store.remove(emails[candidates - 4]), true);
    insert(emails[candidates - 5], 20);
    for (int i = 0; i < 4; ++i) {
        insert("large@x", 24 * mebibyte);
    }
    EXPECT_GT(size(), 90 * mebibyte);
    EXPECT_EQ(restOf(*untouched), emails);
    EXPECT_TRUE(waitUntil([&] {
        giveOneOfEach();
        insert("little@x", 10);
        return size() <= kept;
    }));
    EXPECT_LT(given[0].size(), candidates) << "the answers have ended, and so has what is to be seen";
    for (std::size_t i = 0; i < answers.size(); ++i) {
        std::ranges::copy(restOf(*answers[i]), std::back_inserter(given[i]));
    }
    EXPECT_THAT(given,
                testing::ElementsAre(emails, emails, emails, std::vector(emails.begin(), emails.begin() + limit)));
}
