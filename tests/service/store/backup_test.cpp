// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/Backup.h"

#include "service/store/Schema.h"
#include "service/store/StoreFile.h"
#include "tests/service/FullDisk.h"
#include "tests/service/MadeStore.h"

#include <atomic>
#include <fstream>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

using namespace dorvantel::service;
using namespace dorvantel::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

constexpr fs::perms ownerOnly = fs::perms::owner_read | fs::perms::owner_write;

class BackupTest : public MadeStoreTest {
protected:
    fs::path backup() const { return folder.path() / "backup.sqlite"; }

    static std::string at(const fs::path& path, const std::string& sql) {
        return SqliteDatabase(path.string(), SqliteDatabase::Access::ReadOnly).text(sql);
    }
    template <typename Error>
    static std::string messageOf(const std::function<void()>& work) {
        try {
            work();
        } catch (const Error& error) {
            return error.what();
        }
        return "nothing was thrown";
    }
};

} // namespace

TEST_F(BackupTest, IsTheWholeStoreInOneFileOfItsOwner) {
    EXPECT_EQ(backUp(folder.store(), backup(), false), 2);
    EXPECT_EQ(fs::status(backup()).permissions(), ownerOnly);
    EXPECT_EQ(at(backup(), "PRAGMA journal_mode"), "delete");
    const char* const everything =
        "SELECT group_concat(name || length(bytes), ',') FROM (SELECT * FROM (SELECT id, name "
        "FROM record UNION ALL SELECT id, name FROM history) JOIN pdf ON id = record "
        "ORDER BY id)";
    EXPECT_EQ(at(backup(), everything), at(folder.store(), everything));
    EXPECT_EQ(at(backup(), "SELECT count(*) FROM vector"), "2");
    for (const fs::path& file : files()) {
        EXPECT_THAT(file.filename().string(), testing::AnyOf(StartsWith("records.sqlite"), "backup.sqlite"));
    }
}

TEST_F(BackupTest, WhileAServiceWritesItIsOneMomentOfTheStore) {
    SqliteStore store(folder.store(), "m");
    std::atomic<bool> isDone = false;
    std::jthread writer([&] {
        // At every moment the PDF is that of the version that the name tells.
        for (int i = 0; !isDone; ++i) {
            Record record = makeRecord("new@x");
            record.name = "Name " + std::to_string(i);
            record.file = record.name;
            EXPECT_TRUE(store.insert(record));
        }
    });
    for (int i = 0; i < 10; ++i) {
        backUp(folder.store(), backup(), true);
        EXPECT_EQ(at(backup(), "PRAGMA integrity_check"), "ok");
        EXPECT_EQ(at(backup(), "SELECT count(*) FROM record JOIN pdf ON record = id WHERE email = 'new@x' AND "
                               "CAST(bytes AS TEXT) <> name"),
                  "0");
    }
    isDone = true;
}

TEST_F(BackupTest, NameThatIsTakenIsRefusedUnlessItMayBeReplaced) {
    std::ofstream(backup()) << "something else";
    EXPECT_EQ(messageOf<FileError>([this] { backUp(folder.store(), backup(), false); }),
              backup().string() + ": it exists already");
    EXPECT_EQ(messageOf<FileError>([this] { backUp(folder.store(), backup(), true); }),
              backup().string() + ": it is no backup, so it is not replaced");
    EXPECT_EQ(fileBytes(backup()), "something else");
    std::ofstream(backup(), std::ios::trunc).close(); // such as mktemp makes
    for (int i = 0; i < 2; ++i) {
        backUp(folder.store(), backup(), true);
        EXPECT_EQ(at(backup(), "SELECT count(*) FROM record"), "2");
    }
}

TEST_F(BackupTest, NamesOfWhatAStoreKeepsBesideItAreRefused) {
    SqliteStore used(folder.store(), "");
    ASSERT_TRUE(used.insert(makeRecord("late@x")));
    fs::create_directory_symlink(folder.path(), folder.path() / "link");
    for (const char* const suffix : {"-wal", "-shm", "-journal", ".lock"}) {
        for (const fs::path& store : {folder.store(), folder.path() / "link" / "records.sqlite"}) {
            const std::string name = store.string() + suffix;
            for (const bool isReplacing : {false, true}) {
                EXPECT_EQ(messageOf<FileError>([&] { backUp(folder.store(), name, isReplacing); }),
                          name + ": this is a name of what a store keeps beside it");
            }
        }
    }
    EXPECT_FALSE(fs::exists(folder.store().string() + "-journal"));
    EXPECT_EQ(backUp(folder.store(), backup(), false), 3);
    EXPECT_EQ(backUp(folder.store(), folder.path() / "other-wal", false), 3) << "no store is named other";
}

TEST_F(BackupTest, StoreBehindALinkIsReplacedWhereItIs) {
    backUp(folder.store(), backup(), false);
    const fs::path link = folder.path() / "link.sqlite";
    fs::create_symlink(folder.store(), link);
    {
        const SqliteStore used(folder.store(), "");
        EXPECT_THROW(restore(backup(), link), StoreInUse);
    }
    const Restored restored = restore(backup(), link);
    EXPECT_THAT(restored.keptAside->string(), StartsWith(folder.store().string() + ".before-restore-"));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(at(folder.store(), "SELECT count(*) FROM record"), "2");
}

TEST_F(BackupTest, NeitherTheStoreNorAFileThatIsInUseIsReplaced) {
    const std::string before = fileBytes(folder.store());
    fs::create_symlink(folder.store(), folder.path() / "link");
    for (const fs::path& same : {folder.store(), folder.path() / "link"}) {
        EXPECT_EQ(messageOf<FileError>([&] { backUp(folder.store(), same, true); }),
                  same.string() + ": it is the store itself");
    }
    EXPECT_EQ(fileBytes(folder.store()), before);
    backUp(folder.store(), backup(), false);
    SqliteStore used(backup(), "");
    ASSERT_TRUE(used.insert(makeRecord("late@x")));
    EXPECT_EQ(messageOf<FileError>([this] { backUp(folder.store(), backup(), true); }),
              backup().string() + ": it is in use as a store, or was not closed: " + backup().string() +
                  "-wal is beside it");
    EXPECT_EQ(rowsOf(used).size(), 3U);
}

TEST_F(BackupTest, FailureLeavesNoFileAndTheEarlierBackupAsItWas) {
    backUp(folder.store(), backup(), false);
    const std::string earlier = fileBytes(backup());
    EXPECT_THAT(messageOf<FileError>([this] { backUp(folder.store(), folder.path() / "no" / "folder", false); }),
                HasSubstr("it cannot be made: No such file or directory"));
    {
        const FullDisk disk(40'000);
        EXPECT_EQ(messageOf<FileError>([this] { backUp(folder.store(), backup(), true); }),
                  backup().string() + ": there is no room left for it");
    }
    EXPECT_EQ(messageOf<StoreFileError>([this] { backUp(folder.path() / "none", backup(), true); }),
              (folder.path() / "none").string() + ": there is no store");
    EXPECT_EQ(fileBytes(backup()), earlier);
    EXPECT_FALSE(fs::exists(folder.path() / "none"));
    for (const fs::path& file : files()) {
        EXPECT_THAT(file.string(), testing::Not(HasSubstr(".part-")));
    }
}

TEST_F(BackupTest, DamagedStoreGivesNoBackup) {
    change("DELETE FROM pdf WHERE record = (SELECT id FROM record WHERE email = 'ana@x'); "
           "INSERT INTO pdf VALUES (77, x'00')");
    EXPECT_EQ(messageOf<SqliteError>([this] { backUp(folder.store(), backup(), false); }),
              "1 PDFs belong to no candidate");
    EXPECT_FALSE(fs::exists(backup()));
}

TEST_F(BackupTest, RestoredStoreIsTheBackupAndTheOtherIsKept) {
    backUp(folder.store(), backup(), false);
    {
        SqliteStore store(folder.store(), "m");
        ASSERT_TRUE(store.insert(makeRecord("late@x")));
    }
    const Restored restored = restore(backup(), folder.store());
    EXPECT_EQ(restored.candidates, 2);
    ASSERT_TRUE(restored.keptAside);
    EXPECT_THAT(restored.keptAside->string(), StartsWith(folder.store().string() + ".before-restore-2"));
    {
        SqliteStore store(folder.store(), "m");
        EXPECT_THAT(emailsOf(store), ElementsAre("ana@x", "bea@x"));
        EXPECT_EQ(pdfOf(store, "ana@x"), pdfText("ana-3"));
        EXPECT_THAT(emailsOf(store, similarTo({1, 0})), ElementsAre("bea@x", "ana@x"));
    }
    SqliteStore kept(*restored.keptAside, "m");
    EXPECT_THAT(emailsOf(kept), ElementsAre("ana@x", "bea@x", "late@x"));
    EXPECT_EQ(fs::status(folder.store()).permissions(), ownerOnly);
    EXPECT_TRUE(fs::exists(backup()));
}

TEST_F(BackupTest, RestoresWhereThereIsNoStoreAndTwiceInASecond) {
    backUp(folder.store(), backup(), false);
    const fs::path other = folder.path() / "new" / "records.sqlite";
    EXPECT_EQ(restore(backup(), other).keptAside, std::nullopt);
    const auto first = restore(backup(), other).keptAside;
    const auto second = restore(backup(), other).keptAside;
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    EXPECT_EQ(at(other, "SELECT count(*) FROM record"), "2");
}

TEST_F(BackupTest, BackupOfAnEarlierVersionIsRestoredAsAStoreOfThisVersion) {
    {
        const SqliteDatabase old(backup().string(), SqliteDatabase::Access::ReadWriteCreate);
        migrate(old, migrations().first(1));
    }
    EXPECT_EQ(restore(backup(), folder.store()).candidates, 0);
    EXPECT_EQ(at(folder.store(), "PRAGMA user_version"), std::to_string(migrations().size()));
    EXPECT_EQ(at(backup(), "PRAGMA user_version"), "1") << "the backup stays as it is";
}

TEST_F(BackupTest, StoreThatAProgramUsesIsNotRestoredOver) {
    backUp(folder.store(), backup(), false);
    {
        const SqliteStore store(folder.store(), "m");
        EXPECT_EQ(messageOf<StoreInUse>([this] { restore(backup(), folder.store()); }),
                  folder.store().string() + ": another dorvantel-records uses this store");
    }
    change("PRAGMA journal_mode = WAL");
    const SqliteDatabase reader(folder.store().string(), SqliteDatabase::Access::ReadOnly);
    reader.execute("BEGIN");
    EXPECT_EQ(reader.number("SELECT count(*) FROM record"), 2);
    EXPECT_EQ(messageOf<StoreInUse>([this] { restore(backup(), folder.store()); }),
              folder.store().string() + ": another program reads this store");
    EXPECT_EQ(reader.number("SELECT count(*) FROM record"), 2);
}

TEST_F(BackupTest, DamagedStoreIsKeptAsItIsWhenABackupTakesItsPlace) {
    backUp(folder.store(), backup(), false);
    const std::string damaged(8'192, 'x');
    std::ofstream(folder.store(), std::ios::trunc) << damaged;
    std::ofstream(folder.store().string() + "-wal") << "its log";
    const Restored restored = restore(backup(), folder.store());
    EXPECT_EQ(fileBytes(*restored.keptAside), damaged);
    EXPECT_EQ(fileBytes(restored.keptAside->string() + "-wal"), "its log");
    SqliteStore store(folder.store(), "m");
    EXPECT_THAT(emailsOf(store), ElementsAre("ana@x", "bea@x"));
}

TEST_F(BackupTest, SoundStoreThatCannotBeClosedInOrderStaysWithItsLog) {
    backUp(folder.store(), backup(), false);
    // A copy of the files under a running service is what a killed one leaves.
    const fs::path killed = folder.path() / "killed" / "records.sqlite";
    fs::create_directory(killed.parent_path());
    {
        SqliteStore store(folder.store(), "m");
        Record late = makeRecord("late@x");
        late.file = std::string(2'000'000, 'x');
        ASSERT_TRUE(store.insert(late));
        for (const char* const suffix : {"", "-wal"}) {
            fs::copy_file(folder.store().string() + suffix, killed.string() + suffix);
        }
    }
    {
        const FullDisk disk(1'000'000); // enough for the backup, too little for the log
        EXPECT_THAT(messageOf<StoreFileError>([&] { restore(backup(), killed); }),
                    StartsWith(killed.string() + ": it cannot be closed in order, so nothing was changed: "));
    }
    for (const fs::path& file : files()) {
        EXPECT_THAT(file.string(), testing::Not(testing::AnyOf(HasSubstr(".part-"), HasSubstr("before-restore"))));
    }
    {
        SqliteStore store(killed, "m");
        EXPECT_THAT(emailsOf(store), ElementsAre("ana@x", "bea@x", "late@x"));
    }
    EXPECT_EQ(restore(backup(), killed).candidates, 2);
}

TEST_F(BackupTest, WhatRootMakesBelongsToWhomTheStoreBelongsTo) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root makes files for others";
    }
    constexpr uid_t somebody = 12'345;
    const auto ownerOf = [](const fs::path& file) {
        struct stat status{};
        EXPECT_EQ(stat(file.c_str(), &status), 0) << file;
        return status.st_uid;
    };
    backUp(folder.store(), backup(), false);
    EXPECT_EQ(ownerOf(backup()), 0U);
    ASSERT_EQ(chown(folder.store().c_str(), somebody, somebody), 0);
    fs::remove(folder.store().string() + ".lock");
    const auto kept = restore(backup(), folder.store()).keptAside;
    for (const fs::path& file : {folder.store(), fs::path(folder.store().string() + ".lock"), *kept}) {
        EXPECT_EQ(ownerOf(file), somebody) << file;
    }
    const fs::path home = folder.path() / "home";
    fs::create_directory(home);
    ASSERT_EQ(chown(home.c_str(), somebody, somebody), 0);
    restore(backup(), home / "new" / "records.sqlite");
    for (const char* const name : {"new", "new/records.sqlite", "new/records.sqlite.lock"}) {
        EXPECT_EQ(ownerOf(home / name), somebody) << name;
    }
    for (const bool isReplacing : {false, true}) {
        backUp(folder.store(), home / "backup.sqlite", isReplacing);
        EXPECT_EQ(ownerOf(home / "backup.sqlite"), 0U) << "a backup is no store of the folder's owner";
        EXPECT_EQ(fs::status(home / "backup.sqlite").permissions(), ownerOnly);
    }
    {
        SqliteStore store(home / "served" / "records.sqlite", "");
        ASSERT_TRUE(store.insert(makeRecord("a@x")));
        for (const char* const name : {"served", "served/records.sqlite", "served/records.sqlite.lock",
                                       "served/records.sqlite-wal", "served/records.sqlite-shm"}) {
            EXPECT_EQ(ownerOf(home / name), somebody) << name;
        }
    }
}

TEST_F(BackupTest, KeptStoreIsTheOnlyNameOfItsFile) {
    backUp(folder.store(), backup(), false);
    const auto kept = restore(backup(), folder.store()).keptAside;
    ASSERT_TRUE(kept);
    EXPECT_EQ(fs::hard_link_count(*kept), 1U);
    EXPECT_EQ(fs::hard_link_count(folder.store()), 1U);
}

TEST_F(BackupTest, LogOfAStoreThatIsGoneNeverGetsIntoTheRestoredOne) {
    backUp(folder.store(), backup(), false);
    std::string log;
    {
        SqliteStore store(folder.store(), "m");
        ASSERT_TRUE(store.insert(makeRecord("late@x")));
        log = fileBytes(folder.store().string() + "-wal");
    }
    fs::remove(folder.store());
    std::ofstream(folder.store().string() + "-wal") << log;
    EXPECT_EQ(restore(backup(), folder.store()).keptAside, std::nullopt);
    SqliteStore store(folder.store(), "m");
    EXPECT_THAT(emailsOf(store), ElementsAre("ana@x", "bea@x"));
    EXPECT_EQ(value("PRAGMA integrity_check"), "ok");
}

TEST_F(BackupTest, WhatIsNoSoundBackupIsRefusedAndTheStoreStays) {
    const std::string before = fileBytes(folder.store());
    const auto refusal = [this] { return messageOf<FileError>([this] { restore(backup(), folder.store()); }); };
    EXPECT_EQ(refusal(), backup().string() + ": there is no such file");
    std::ofstream(backup()) << std::string(4'096, 'x');
    EXPECT_EQ(refusal(), backup().string() + ": it cannot be restored: file is not a database");
    fs::remove(backup());
    SqliteDatabase(backup().string(), SqliteDatabase::Access::ReadWriteCreate).execute("CREATE TABLE mine (x)");
    EXPECT_EQ(refusal(), backup().string() + ": the file is a database of another program");
    fs::remove(backup());
    backUp(folder.store(), backup(), false);
    SqliteDatabase(backup().string(), SqliteDatabase::Access::ReadWriteCreate)
        .execute("UPDATE record SET cv_json = '{'");
    EXPECT_THAT(refusal(), StartsWith(backup().string() + ": the CV data of version "));
    SqliteDatabase(backup().string(), SqliteDatabase::Access::ReadWriteCreate).execute("PRAGMA user_version = 99");
    EXPECT_THROW(restore(backup(), folder.store()), SchemaError);
    EXPECT_EQ(messageOf<FileError>([this] { restore(folder.store(), folder.store()); }),
              folder.store().string() + ": it is the store itself");
    EXPECT_EQ(fileBytes(folder.store()), before);
    for (const fs::path& file : files()) {
        EXPECT_THAT(file.string(), testing::Not(testing::AnyOf(HasSubstr(".part-"), HasSubstr("before-restore"))));
    }
}

TEST_F(BackupTest, DatabaseOfAnotherProgramIsNotMovedAway) {
    backUp(folder.store(), backup(), false);
    const fs::path foreign = folder.path() / "foreign.sqlite";
    SqliteDatabase(foreign.string(), SqliteDatabase::Access::ReadWriteCreate).execute("CREATE TABLE mine (x)");
    EXPECT_THROW(restore(backup(), foreign), SchemaError);
    EXPECT_EQ(at(foreign, "SELECT count(*) FROM mine"), "0");
}
