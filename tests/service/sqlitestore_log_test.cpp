// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/SqliteStoreFixture.h"

using namespace dorvantel::service;
using namespace dorvantel::test;

TEST_F(SqliteStoreTest, LogThatGrewBesideAReaderShrinksOnceTheReaderHasEnded) {
    constexpr std::uintmax_t mebibyte = std::uintmax_t{1024} * 1024;
    SqliteStore store(folder.store(), "");
    const auto logSize = [this] { return std::filesystem::file_size(folder.store().string() + "-wal"); };
    ASSERT_TRUE(store.insert(makeRecord("first@x")));
    {
        const auto reader = store.run({});
        Record large = makeRecord("large@x");
        large.file = std::string(24 * mebibyte, 'x');
        ASSERT_TRUE(store.insert(large));
        ASSERT_TRUE(store.insert(makeRecord("second@x")));
        EXPECT_GT(logSize(), 24 * mebibyte);
    }
    ASSERT_TRUE(store.insert(makeRecord("third@x")));  // moves the log into the file
    ASSERT_TRUE(store.insert(makeRecord("fourth@x"))); // begins it anew
    EXPECT_LE(logSize(), 16 * mebibyte);
}
