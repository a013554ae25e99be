// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/LogKeeper.h"

#include <chrono>

#include <sqlite3.h>

namespace dorvantel::service {

namespace {

// Of 4 KiB each. A log of the first length begins anew; beyond the second, readers are in its way.
constexpr int pagesToMove = 1'000;
constexpr int pagesToAskReaders = 16'000;

/// When something was in the way. A write that comes meanwhile waits no longer than the patience.
constexpr std::chrono::milliseconds pause{200};
constexpr int patienceMs = 20;

} // namespace

LogKeeper::LogKeeper(const SqliteDatabase& writer, const std::string& path, GroupCommit& writes,
                     SqliteReaderPool& readers)
    : m_writer(writer)
    , m_database(path, SqliteDatabase::Access::ReadWriteCreate)
    , m_writes(writes)
    , m_readers(readers) {
    m_database.execute("PRAGMA synchronous = FULL; SELECT 1 FROM sqlite_schema"); // only a read makes it find the log
    // Takes the place of the checkpoint that SQLite itself would make within a commit.
    const auto setLengthOf = [](void* self, sqlite3*, const char*, int pages) {
        static_cast<LogKeeper*>(self)->setLength(pages);
        return SQLITE_OK;
    };
    sqlite3_wal_hook(m_writer.handle(), setLengthOf, this);
    m_thread = std::thread([this] { work(); });
}

LogKeeper::~LogKeeper() {
    sqlite3_wal_hook(m_writer.handle(), nullptr, nullptr);
    {
        const std::scoped_lock lock(m_mutex);
        m_isStopping = true;
        m_changed.notify_all();
    }
    m_thread.join();
}

void LogKeeper::setLength(int pages) {
    const std::scoped_lock lock(m_mutex);
    const bool wasShort = m_pages < pagesToMove;
    m_pages = pages;
    if (wasShort && m_pages >= pagesToMove) {
        m_changed.notify_all();
    }
}

void LogKeeper::work() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_isStopping || m_pages >= pagesToMove; });
        if (m_isStopping) {
            return;
        }
        const bool isLong = m_pages >= pagesToAskReaders;
        lock.unlock();
        const bool isDone = beginAnew(isLong);
        lock.lock();
        if (isDone) {
            m_pages = 0;
        } else {
            m_changed.wait_for(lock, pause, [this] { return m_isStopping; });
        }
    }
}

/// False when something was in the way.
bool LogKeeper::beginAnew(bool isLong) {
    if (isLong) {
        m_readers.askToLetGo(true);
    }
    // Most of it while others write; for what they wrote meanwhile they have to wait.
    checkpoint(SQLITE_CHECKPOINT_PASSIVE, 0);
    const auto alone = m_writes.alone();
    if (!checkpoint(SQLITE_CHECKPOINT_RESTART, isLong ? patienceMs : 0)) {
        return false;
    }
    m_readers.askToLetGo(false);
    return true;
}

/// What fails is tried again, and until then everything is safe in the log.
bool LogKeeper::checkpoint(int mode, int patience) {
    sqlite3_busy_timeout(m_database.handle(), patience);
    return sqlite3_wal_checkpoint_v2(m_database.handle(), nullptr, mode, nullptr, nullptr) == SQLITE_OK;
}

} // namespace dorvantel::service
