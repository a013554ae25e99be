// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/Backup.h"
#include "service/store/CandidateVersions.h"
#include "tests/service/MadeStore.h"

#include <mutex>

#include <fcntl.h>
#include <sqlite3.h>

using namespace dorvantel::service;
using namespace dorvantel::test;
using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

std::mutex openedMutex;
std::vector<std::string> opened;

int recordedOpen(const char* path, int flags, int mode) {
    {
        const std::scoped_lock lock(openedMutex);
        opened.emplace_back(path);
    }
    return open(path, flags, mode);
}

/// What SQLite opens while a store is used that is larger than its cache.
class TemporaryFiles : public MadeStoreTest {
protected:
    void SetUp() override {
        MadeStoreTest::SetUp();
        SqliteStore store(folder.store(), "");
        Record large = makeRecord("large@x");
        large.summarizedText = std::string(4'000'000, 's');
        for (int version = 0; version < 4; ++version) {
            large.file = std::string(3'000'000, static_cast<char>('a' + version));
            ASSERT_TRUE(store.insert(large));
        }
        sqlite3_vfs* const files = sqlite3_vfs_find(nullptr);
        ASSERT_EQ(files->xSetSystemCall(files, "open", reinterpret_cast<sqlite3_syscall_ptr>(recordedOpen)), SQLITE_OK);
        opened.clear();
    }
    void TearDown() override {
        sqlite3_vfs* const files = sqlite3_vfs_find(nullptr);
        files->xSetSystemCall(files, "open", nullptr);
    }
    void expectAllInTheFolder() const {
        for (const std::string& path : opened) {
            EXPECT_THAT(
                path, testing::AnyOf(StartsWith(folder.path().string() + "/"), "/dev/urandom", folder.path().string()));
        }
    }
};

} // namespace

TEST_F(TemporaryFiles, OfAnErasureAreBesideTheStore) {
    ASSERT_EQ(eraseCandidate(folder.store(), "ana@x"), 3);
    EXPECT_THAT(opened, Contains(HasSubstr("etilqs_"))) << "there was nothing to see";
    expectAllInTheFolder();
}

TEST_F(TemporaryFiles, OfAnErasureFromARelativePathAreBesideTheStore) {
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    EXPECT_EQ(eraseCandidate("records.sqlite", "ana@x"), 3);
    fs::current_path(before);
    EXPECT_THAT(opened, Contains(StartsWith(folder.path().string() + "/etilqs_")));
    expectAllInTheFolder();
}

TEST_F(TemporaryFiles, OfEverythingElseAreBesideTheStore) {
    {
        SqliteStore store(folder.store(), "m");
        Record large = makeRecord("large@x");
        large.summarizedText = std::string(4'000'000, 't');
        ASSERT_TRUE(store.insert(large));
        EXPECT_EQ(rowsOf(store).size(), 3U);
        ASSERT_TRUE(store.remove("large@x"));
    }
    EXPECT_EQ(exportCandidate(folder.store(), "large@x", folder.path() / "export"), 5);
    backUp(folder.store(), folder.path() / "backup", false);
    restore(folder.path() / "backup", folder.store());
    EXPECT_EQ(forgetVectors(folder.store()), 2);
    EXPECT_THAT(opened, Contains(folder.store().string()));
    expectAllInTheFolder();
}
