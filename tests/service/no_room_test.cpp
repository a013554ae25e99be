// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/Backup.h"
#include "service/store/CandidateVersions.h"
#include "tests/service/FullDisk.h"
#include "tests/service/MadeStore.h"
#include "tests/service/RecordsProcess.h"

#include <cstring>
#include <thread>

#include <sqlite3.h>
#include <sys/resource.h>

using namespace dorvantel::service;
using namespace dorvantel::test;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace fs = std::filesystem;

namespace {

std::string nameOf(const testing::TestParamInfo<int>& info) {
    return strerrorname_np(info.param);
}

/// A full disk, a quota, and a limit on the size of files.
const auto reasons = testing::Values(ENOSPC, EDQUOT, EFBIG);

class StoreWithoutRoom : public SqliteStoreTest, public testing::WithParamInterface<int> {};
class CommandWithoutRoom : public MadeStoreTest, public testing::WithParamInterface<int> {};

} // namespace

INSTANTIATE_TEST_SUITE_P(Because, StoreWithoutRoom, reasons, nameOf);
INSTANTIATE_TEST_SUITE_P(Because, CommandWithoutRoom, reasons, nameOf);

TEST_P(StoreWithoutRoom, LosesNothingAndGoesOnWhenThereIsRoomAgain) {
    Record large = makeRecord("b@x");
    large.file = std::string(1'000'000, 'x');
    {
        SqliteStore store(folder.store(), "m");
        Record first = makeRecord("a@x");
        first.file = "bytes";
        ASSERT_TRUE(store.insert(first));
        {
            const FullDisk disk(0, GetParam());
            for (const Record& record : {large, makeRecord("c@x"), makeRecord("a@x")}) {
                const auto stored = store.insert(record);
                ASSERT_FALSE(stored);
                EXPECT_EQ(stored.error().kind, StoreError::Kind::Full);
                EXPECT_EQ(stored.error().message, "there is no room left for the store");
            }
            EXPECT_EQ(store.remove("a@x").error().kind, StoreError::Kind::Full);
            EXPECT_EQ(store.putVector(queuedId(store, "a@x"), {1, 0}).error().kind, StoreError::Kind::Full);
            EXPECT_THAT(emailsOf(store), ElementsAre("a@x")) << "reading goes on";
            EXPECT_EQ(pdfOf(store, "a@x"), "bytes");
        }
        EXPECT_TRUE(store.insert(large));
        EXPECT_THAT(emailsOf(store), ElementsAre("a@x", "b@x"));
    }
    SqliteStore store(folder.store(), "m");
    EXPECT_THAT(emailsOf(store), ElementsAre("a@x", "b@x"));
    EXPECT_EQ(pdfOf(store, "a@x"), "bytes");
    EXPECT_EQ(pdfOf(store, "b@x"), large.file);
    EXPECT_EQ(value("PRAGMA integrity_check"), "ok");
}

TEST_P(StoreWithoutRoom, RecordThatDoesNotFitDoesNotFailOthersThatDo) {
    SqliteStore store(folder.store(), "");
    const FullDisk disk(12'000'000, GetParam());
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 6; ++thread) {
        threads.emplace_back([&store, thread] {
            for (int i = 0; i < 8; ++i) {
                Record record = makeRecord(std::to_string(thread) + "-" + std::to_string(i));
                record.file = std::string(thread == 0 ? 20'000'000 : 1'000, 'x');
                const auto stored = store.insert(record);
                if (thread == 0) {
                    ASSERT_FALSE(stored);
                    EXPECT_EQ(stored.error().kind, StoreError::Kind::Full);
                } else {
                    EXPECT_TRUE(stored) << stored.error().message;
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(rowsOf(store).size(), 40U);
    EXPECT_EQ(value("PRAGMA integrity_check"), "ok");
}

TEST_P(StoreWithoutRoom, SaysSoWhereverTheRoomEnds) {
    // A record that SQLite writes before the commit, because it does not fit its cache, beside one that it writes then.
    SqliteStore store(folder.store(), "m");
    for (const std::size_t size : {10'000U, 6'000'000U}) {
        for (const std::int64_t room : {5'000, 50'000, 2'500'000}) {
            const FullDisk disk(room, GetParam());
            Record record = makeRecord("a@x");
            record.file = std::string(size, 'x');
            const auto stored = store.insert(record);
            if (!stored) {
                EXPECT_EQ(stored.error().kind, StoreError::Kind::Full) << size << " bytes, room for " << room;
            }
            EXPECT_EQ(stored.has_value(), !emailsOf(store).empty());
            EXPECT_FALSE(stored && size > static_cast<std::size_t>(room));
        }
        store.remove("a@x");
    }
}

TEST_P(CommandWithoutRoom, BackupSaysSoAndLeavesNothing) {
    const fs::path backup = folder.path() / "backup.sqlite";
    const FullDisk disk(40'000, GetParam());
    try {
        backUp(folder.store(), backup, false);
        ADD_FAILURE();
    } catch (const FileError& error) {
        EXPECT_EQ(std::string(error.what()), backup.string() + ": there is no room left for it");
    }
    EXPECT_THAT(files(), testing::Each(testing::ResultOf([](const fs::path& file) { return file.filename().string(); },
                                                         testing::StartsWith("records.sqlite"))));
}

TEST_P(CommandWithoutRoom, RestorationSaysSoAndChangesNothing) {
    const fs::path backup = folder.path() / "backup.sqlite";
    backUp(folder.store(), backup, false);
    const std::string store = fileBytes(folder.store());
    const auto before = files();
    const FullDisk disk(40'000, GetParam());
    try {
        restore(backup, folder.store());
        ADD_FAILURE();
    } catch (const FileError& error) {
        EXPECT_EQ(std::string(error.what()),
                  backup.string() + ": it cannot be restored: the copy failed: database or disk is full");
    }
    EXPECT_EQ(files(), before);
    EXPECT_EQ(fileBytes(folder.store()), store);
}

TEST_P(CommandWithoutRoom, ErasureSaysSoAndIsFinishedLater) {
    const auto erase = [this] { return eraseCandidate(folder.store(), "ana@x"); };
    {
        const FullDisk disk(20'000, GetParam());
        try {
            erase();
            ADD_FAILURE();
        } catch (const SqliteError& error) {
            EXPECT_EQ(error.code(), SQLITE_FULL);
            EXPECT_EQ(std::string(error.what()), "database or disk is full");
        }
    }
    erase();
    EXPECT_EQ(fileBytes(folder.store()).find("ana@x"), std::string::npos);
}

TEST(ProcessWithoutRoom, AnswersWithTheStatusForItAndGoesOn) {
    const StoreFolder folder;
    const auto limitFiles = [] {
        const rlimit limit{.rlim_cur = 2'000'000, .rlim_max = RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &limit);
    };
    RecordsProcess process(
        {u"--listen"_s, u"127.0.0.1:0"_s, u"--store"_s, QString::fromStdString(folder.store().string())}, limitFiles);
    ASSERT_TRUE(process.waitUntilReady());
    Record large = makeRecord("large@x");
    large.file = std::string(3'000'000, 'x');
    const auto insert = [&](const Record& record) {
        const auto answer = process.client().Post("/curriculums", insertBody(record), "application/json");
        return answer ? answer->status : 0;
    };
    EXPECT_EQ(insert(large), 507);
    EXPECT_EQ(insert(makeRecord("small@x")), 201);
    EXPECT_EQ(insert(large), 507);
    process.sendSignal(SIGTERM);
    EXPECT_EQ(process.exitCode(), 0);
    SqliteStore store(folder.store(), "");
    EXPECT_THAT(emailsOf(store), ElementsAre("small@x"));
}
