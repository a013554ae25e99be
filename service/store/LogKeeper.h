// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/store/GroupCommit.h"
#include "service/store/SqliteReader.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace dorvantel::service {

/// Moves what the write-ahead log holds into the store's file and lets the log begin anew, in a thread of its own, so
/// that no write has to wait until all of it was moved. A reader keeps the log from beginning anew as long as it has a
/// snapshot; when the log gets long beside readers, they are asked to let go. Works from its construction to its end,
/// which must come before those of all it is given. Nothing of it is to be called in between: it hears of each commit
/// of the writer, on the thread that commits.
class LogKeeper {
public:
    using LogLine = std::function<void(std::string_view)>;

    /// `writer` is what `writes` write with, `path` is its file. `log` is called on the thread of this object, when
    /// moving the log begins to fail and when it works again. Throws SqliteError.
    LogKeeper(const SqliteDatabase& writer, const std::string& path, GroupCommit& writes, SqliteReaderPool& readers,
              LogLine log);
    LogKeeper(const LogKeeper&) = delete;
    LogKeeper& operator=(const LogKeeper&) = delete;
    ~LogKeeper();

private:
    void setLength(int pages);
    void work();
    int beginAnew(bool isLong);
    int checkpoint(int mode, int patience);
    void tell(int result) noexcept;

    const SqliteDatabase& m_writer;
    SqliteDatabase m_database;
    GroupCommit& m_writes;
    SqliteReaderPool& m_readers;
    LogLine m_log;
    bool m_isFailing = false; ///< of the thread alone

    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_pages = 0; ///< in the log after the last write
    bool m_isStopping = false;
    std::thread m_thread;
};

} // namespace dorvantel::service
