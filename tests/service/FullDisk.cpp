// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/FullDisk.h"

#include <array>
#include <atomic>
#include <limits>

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

namespace dorvantel::test {

namespace {

std::atomic<std::int64_t> limitOfFiles = std::numeric_limits<std::int64_t>::max();
std::atomic<int> errorOfFiles = 0;
std::atomic<int> refused = 0;

bool fits(std::int64_t end) {
    if (end <= limitOfFiles) {
        return true;
    }
    ++refused;
    errno = errorOfFiles;
    return false;
}

ssize_t limitedWrite(int file, const void* bytes, std::size_t size) {
    return fits(lseek(file, 0, SEEK_CUR) + static_cast<std::int64_t>(size)) ? write(file, bytes, size) : -1;
}

ssize_t limitedPwrite(int file, const void* bytes, std::size_t size, off_t offset) {
    return fits(offset + static_cast<std::int64_t>(size)) ? pwrite(file, bytes, size, offset) : -1;
}

void setCalls(sqlite3_syscall_ptr writing, sqlite3_syscall_ptr positioned) {
    sqlite3_vfs* const files = sqlite3_vfs_find(nullptr);
    EXPECT_EQ(files->xSetSystemCall(files, "write", writing), SQLITE_OK);
    EXPECT_EQ(files->xSetSystemCall(files, "pwrite", positioned), SQLITE_OK);
    EXPECT_EQ(files->xSetSystemCall(files, "pwrite64", positioned), SQLITE_OK);
}

} // namespace

FullDisk::FullDisk(std::int64_t limit, int error) {
    refused = 0;
    errorOfFiles = error;
    limitOfFiles = limit;
    setCalls(reinterpret_cast<sqlite3_syscall_ptr>(limitedWrite), reinterpret_cast<sqlite3_syscall_ptr>(limitedPwrite));
}

FullDisk::~FullDisk() {
    limitOfFiles = std::numeric_limits<std::int64_t>::max();
}

int FullDisk::refusals() const {
    return refused;
}

} // namespace dorvantel::test
