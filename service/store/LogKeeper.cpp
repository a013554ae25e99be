// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/LogKeeper.h"

#include <cerrno>
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
                     SqliteReaderPool& readers, LogLine log)
    : m_writer(writer)
    , m_database(path, SqliteDatabase::Access::ReadWriteCreate)
    , m_writes(writes)
    , m_readers(readers)
    , m_log(std::move(log)) {
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
        const int result = beginAnew(isLong);
        tell(result);
        lock.lock();
        if (result != SQLITE_OK) {
            m_changed.wait_for(lock, pause, [this] { return m_isStopping; });
        }
    }
}

/// SQLITE_OK, or what was in the way. Then it is tried again, and until then everything is safe in the log.
int LogKeeper::beginAnew(bool isLong) {
    if (isLong) {
        m_readers.askToLetGo(true);
    }
    // Most of it while others write; for what they wrote meanwhile they have to wait.
    checkpoint(SQLITE_CHECKPOINT_PASSIVE, 0);
    const auto alone = m_writes.alone();
    const int result = checkpoint(SQLITE_CHECKPOINT_RESTART, isLong ? patienceMs : 0);
    if (result == SQLITE_OK) {
        const std::scoped_lock lock(m_mutex);
        m_pages = 0; // while nobody can commit, whose pages would be forgotten
        m_readers.askToLetGo(false);
    }
    return result;
}

int LogKeeper::checkpoint(int mode, int patience) {
    sqlite3_busy_timeout(m_database.handle(), patience);
    errno = 0;
    return primaryCode(sqlite3_wal_checkpoint_v2(m_database.handle(), nullptr, mode, nullptr, nullptr));
}

/// That others are in the way is no failure, and no sign that a failure is over.
void LogKeeper::tell(int result) noexcept {
    const bool isFailing = result != SQLITE_OK;
    if (result == SQLITE_BUSY || isFailing == m_isFailing) {
        return;
    }
    m_isFailing = isFailing;
    try {
        m_log(isFailing ? "the store's log cannot be moved into its file: " + std::string(sqlite3_errstr(result)) +
                              "; trying again"
                        : "the store's log is moved into its file again");
    } catch (const std::exception&) {
        // What there is no memory for is not said.
    }
}

} // namespace dorvantel::service
