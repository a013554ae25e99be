// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <cstdint>

namespace dorvantel::test {

/// While it lives, no file that SQLite writes in this process can grow beyond `limit` bytes: it is told what a disk
/// without room tells, or with EDQUOT and EFBIG a quota and a limit on the size of files. One at a time.
class FullDisk {
public:
    explicit FullDisk(std::int64_t limit = 0, int error = ENOSPC);
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk();

    /// How often something was refused so far. Any thread.
    int refusals() const;
};

} // namespace dorvantel::test
