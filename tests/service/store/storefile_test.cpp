// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/SqliteStoreFixture.h"

#include "service/store/Schema.h"

#include <fstream>
#include <thread>

using namespace dorvantel::service;
using namespace dorvantel::test;
using testing::ElementsAre;

namespace fs = std::filesystem;

namespace {

constexpr fs::perms readableByAll =
    fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::others_read;

} // namespace

TEST_F(SqliteStoreTest, FilesAreTheirOwnersAlone) {
    std::ofstream(folder.store()).close();
    const fs::path nested = folder.path() / "new" / "folders" / "records.sqlite";
    for (const fs::path& path : {folder.store(), nested, folder.store()}) {
        if (fs::exists(path)) {
            fs::permissions(path, fs::perms::all); // whether it is still empty or has been used
        }
        SqliteStore store(path, "");
        ASSERT_TRUE(store.insert(makeRecord("a@x")));
        for (const char* const suffix : {"", "-wal", "-shm", ".lock"}) {
            EXPECT_EQ(fs::status(path.string() + suffix).permissions(), fs::perms::owner_read | fs::perms::owner_write)
                << path << suffix;
        }
    }
    EXPECT_EQ(fs::status(folder.path() / "new").permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(folder.path() / "new" / "folders").permissions(), fs::perms::owner_all);
}

TEST_F(SqliteStoreTest, SecondServiceOnTheSameFileIsRefused) {
    const SqliteStore store(folder.store(), "");
    try {
        const SqliteStore second(folder.store(), "");
        FAIL();
    } catch (const StoreFileError& error) {
        EXPECT_EQ(std::string(error.what()), folder.store().string() + ": another dorvantel-records uses this store");
    }
}

TEST_F(SqliteStoreTest, LinksLeadToTheOneStore) {
    fs::create_directory(folder.path() / "real");
    const fs::path real = folder.path() / "real" / "records.sqlite";
    fs::create_directory_symlink("real", folder.path() / "linked");
    const fs::path link = folder.path() / "link.sqlite";
    {
        SqliteStore store(folder.path() / "linked" / "records.sqlite", "");
        ASSERT_TRUE(store.insert(makeRecord("a@x")));
        fs::create_symlink("real/records.sqlite", link);
        for (const fs::path& same : {real, link, folder.path() / "real" / ".." / "linked" / "records.sqlite"}) {
            EXPECT_THROW(SqliteStore(same, ""), StoreInUse) << same;
        }
    }
    SqliteStore store(link, "");
    EXPECT_THAT(emailsOf(store), ElementsAre("a@x"));
    EXPECT_THROW(SqliteStore(real, ""), StoreInUse);
    EXPECT_FALSE(fs::exists(link.string() + ".lock"));
}

TEST_F(SqliteStoreTest, LinkThatLeadsNowhereIsRefused) {
    const fs::path link = folder.path() / "link.sqlite";
    fs::create_symlink("unmounted/records.sqlite", link);
    EXPECT_THROW(SqliteStore(link, ""), StoreFileError);
    fs::create_symlink("around", folder.path() / "around");
    EXPECT_THROW(SqliteStore(folder.path() / "around", ""), StoreFileError);
    EXPECT_THROW(SqliteStore(folder.path() / "around" / "records.sqlite", ""), StoreFileError);
}

TEST_F(SqliteStoreTest, FileWithTwoNamesIsRefusedUnderBoth) {
    {
        const SqliteStore store(folder.store(), "");
    }
    const fs::path second = folder.path() / "second.sqlite";
    fs::create_hard_link(folder.store(), second);
    for (const fs::path& name : {folder.store(), second}) {
        try {
            const SqliteStore store(name, "");
            ADD_FAILURE() << name;
        } catch (const StoreFileError& error) {
            EXPECT_EQ(std::string(error.what()),
                      name.string() + ": the file has several names (hard links); leave it one");
        }
    }
    fs::remove(second);
    EXPECT_NO_THROW(SqliteStore(folder.store(), ""));
}

TEST_F(SqliteStoreTest, StoreThatIsNoDatabaseIsRefusedAndLeftAlone) {
    std::ofstream(folder.store()) << std::string(4'096, 'x');
    fs::permissions(folder.store(), readableByAll);
    EXPECT_THROW(SqliteStore(folder.store(), ""), SqliteError);
    EXPECT_EQ(fileBytes(folder.store()), std::string(4'096, 'x'));
    EXPECT_EQ(fs::status(folder.store()).permissions(), readableByAll);
}

TEST_F(SqliteStoreTest, DatabaseOfAnotherProgramIsRefusedAndLeftAlone) {
    SqliteDatabase(folder.store().string(), SqliteDatabase::Access::ReadWriteCreate).execute("CREATE TABLE mine (x)");
    fs::permissions(folder.store(), readableByAll);
    const std::string before = fileBytes(folder.store());
    EXPECT_THROW(SqliteStore(folder.store(), ""), SchemaError);
    EXPECT_EQ(fileBytes(folder.store()), before);
    EXPECT_EQ(fs::status(folder.store()).permissions(), readableByAll);
}

TEST_F(SqliteStoreTest, FolderOrFileInTheWayIsRefused) {
    const fs::path inTheWay = folder.path() / "folder";
    fs::create_directory(inTheWay);
    try {
        const SqliteStore store(inTheWay, "");
        ADD_FAILURE();
    } catch (const StoreFileError& error) {
        EXPECT_EQ(std::string(error.what()), inTheWay.string() + ": it is a folder");
    }
    EXPECT_FALSE(fs::exists(inTheWay.string() + ".lock")) << "nothing is made beside what is refused";
    std::ofstream(folder.path() / "file").close();
    EXPECT_THROW(SqliteStore(folder.path() / "file" / "records.sqlite", ""), StoreFileError);
}

TEST_F(SqliteStoreTest, LockOfAnotherProgramIsReportedAsBusyAndChangesNothing) {
    SqliteStore store(folder.store(), "");
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    const SqliteDatabase other(folder.store().string(), SqliteDatabase::Access::ReadWriteCreate);
    other.execute("BEGIN IMMEDIATE");
    const auto stored = store.insert(makeRecord("b@x"));
    ASSERT_FALSE(stored);
    EXPECT_EQ(stored.error().kind, StoreError::Kind::Busy);
    other.execute("ROLLBACK");
    EXPECT_TRUE(store.insert(makeRecord("c@x")));
    EXPECT_THAT(emailsOf(store), ElementsAre("a@x", "c@x"));
}

TEST_F(SqliteStoreTest, ShortLockOfAnotherProgramIsWaitedFor) {
    SqliteStore store(folder.store(), "");
    const SqliteDatabase other(folder.store().string(), SqliteDatabase::Access::ReadWriteCreate);
    other.execute("BEGIN IMMEDIATE");
    std::thread insert([&] { EXPECT_TRUE(store.insert(makeRecord("a@x"))); });
    other.execute("COMMIT");
    insert.join();
    EXPECT_THAT(emailsOf(store), ElementsAre("a@x"));
}

TEST(DefaultStorePath, IsInTheUsersDataFolder) {
    const QByteArray data = qgetenv("XDG_DATA_HOME");
    const QByteArray home = qgetenv("HOME");
    qputenv("XDG_DATA_HOME", "/data");
    EXPECT_EQ(defaultStorePath(), "/data/dorvantel/records.sqlite");
    qputenv("XDG_DATA_HOME", "relative");
    qputenv("HOME", "/home/ana");
    EXPECT_EQ(defaultStorePath(), "/home/ana/.local/share/dorvantel/records.sqlite");
    qunsetenv("XDG_DATA_HOME");
    EXPECT_EQ(defaultStorePath(), "/home/ana/.local/share/dorvantel/records.sqlite");
    qputenv("HOME", "");
    EXPECT_EQ(defaultStorePath(), std::nullopt);
    qputenv("HOME", home);
    qputenv("XDG_DATA_HOME", data);
}
