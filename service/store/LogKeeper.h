// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/store/GroupCommit.h"
#include "service/store/SqliteReader.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace dorvantel::service {

/// Moves what the write-ahead log holds into the store's file and lets the log begin anew, in a thread of its own, so
/// that no write has to wait until all of it was moved. A reader keeps the log from beginning anew as long as it has a
/// snapshot; when the log gets long beside readers, they are asked to let go. Lives from its construction to its end,
/// which must come before those of all it is given.
class LogKeeper {
public:
    /// `writer` is what `writes` write with, `path` is its file.
    LogKeeper(const SqliteDatabase& writer, const std::string& path, GroupCommit& writes, SqliteReaderPool& readers);
    LogKeeper(const LogKeeper&) = delete;
    LogKeeper& operator=(const LogKeeper&) = delete;
    ~LogKeeper();

private:
    void setLength(int pages);
    void work();
    bool beginAnew(bool isLong);
    bool checkpoint(int mode, int patience);

    const SqliteDatabase& m_writer;
    SqliteDatabase m_database;
    GroupCommit& m_writes;
    SqliteReaderPool& m_readers;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_pages = 0; ///< in the log after the last write
    bool m_isStopping = false;
    std::thread m_thread;
};

} // namespace dorvantel::service
