// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/store/Sqlite.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace dorvantel::service {

/// Flushing to the disk takes most of the time of a write, and one flush does for many. Writes that come while another
/// is being flushed form a group and share the next transaction, each in a savepoint of its own, so that one that fails
/// takes only itself back. Any thread; a write returns when it is durable.
class GroupCommit {
public:
    /// What a write did.
    struct Change {
        std::optional<std::int64_t> retired = {}; ///< the version that it took out of the current candidates
        int candidates = 0;                       ///< how many more there are
        int waiting = 0;                          ///< how many more wait for a vector
    };
    /// Changes the database; may be called again when its transaction had to be given up.
    using Write = std::function<Change()>;
    /// Commits, so that nobody sees the retired versions afterwards.
    using Commit = std::function<void(SqliteTransaction& transaction, std::span<const Change> changes)>;

    /// `database` must outlive this object and is used by nobody else while a write runs.
    GroupCommit(const SqliteDatabase& database, Commit commit);

    /// Throws what `write` threw, or why the commit failed; then nothing of this write is in the database.
    void run(const Write& write);

    /// How many writes wait for the group that runs.
    std::size_t waiting();
    /// Whether a thread runs a group.
    bool isRunning();

    /// Keeps writes away while the lock lives, for what must not share a transaction.
    std::unique_lock<std::mutex> alone() { return std::unique_lock(m_writing); }

private:
    struct Entry {
        const Write& write;
        std::exception_ptr failure = nullptr;
        bool isDone = false;
    };

    void runGroup(std::span<Entry* const> group);
    bool runTogether(std::span<Entry* const> group);
    std::optional<Change> runInSavepoint(Entry& entry);

    const SqliteDatabase& m_database;
    Commit m_commit;
    SqliteStatement m_save;
    SqliteStatement m_release;
    SqliteStatement m_rollBack;
    std::mutex m_writing; ///< whoever holds it uses the database

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Entry*> m_waiting;
    bool m_isRunning = false; ///< one of the threads runs a group
};

} // namespace dorvantel::service
