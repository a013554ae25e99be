// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/GroupCommit.h"

#include <utility>

#include <sqlite3.h>

namespace dorvantel::service {

GroupCommit::GroupCommit(const SqliteDatabase& database, Commit commit)
    : m_database(database)
    , m_commit(std::move(commit))
    , m_save(database, "SAVEPOINT one")
    , m_release(database, "RELEASE one")
    , m_rollBack(database, "ROLLBACK TO one") {}

void GroupCommit::run(const Write& write) {
    Entry entry{write};
    std::unique_lock lock(m_mutex);
    m_waiting.push_back(&entry);
    m_changed.wait(lock, [&] { return entry.isDone || !m_isRunning; });
    if (!entry.isDone) {
        // Nobody runs a group, so this thread does it for all who wait by now.
        const auto group = std::exchange(m_waiting, {});
        m_isRunning = true;
        lock.unlock();
        runGroup(group);
        lock.lock();
        m_isRunning = false;
        for (Entry* const member : group) {
            member->isDone = true;
        }
        m_changed.notify_all();
    }
    lock.unlock();
    if (entry.failure) {
        std::rethrow_exception(entry.failure);
    }
}

std::size_t GroupCommit::waiting() {
    const std::scoped_lock lock(m_mutex);
    return m_waiting.size();
}

bool GroupCommit::isRunning() {
    const std::scoped_lock lock(m_mutex);
    return m_isRunning;
}

void GroupCommit::runGroup(std::span<Entry* const> group) {
    const std::scoped_lock lock(m_writing);
    if (runTogether(group) || group.size() == 1) {
        return;
    }
    // What one of them asks for (more room than is left, say) may have ended the transaction of all.
    for (Entry* const& entry : group) {
        runTogether(std::span(&entry, 1));
    }
}

/// False when the transaction was lost and none of the group is in the database; another attempt makes sense.
bool GroupCommit::runTogether(std::span<Entry* const> group) {
    bool hasBegun = false;
    try {
        SqliteTransaction transaction(m_database);
        hasBegun = true;
        std::vector<Change> changes;
        for (Entry* const entry : group) {
            if (const auto change = runInSavepoint(*entry)) {
                changes.push_back(*change);
            }
        }
        m_commit(transaction, changes);
        return true;
    } catch (...) {
        for (Entry* const entry : group) {
            entry->failure = std::current_exception();
        }
        return !hasBegun; // it has waited for the lock of another program long enough
    }
}

/// A failure that leaves the transaction alive is the entry's own; others are thrown.
std::optional<GroupCommit::Change> GroupCommit::runInSavepoint(Entry& entry) {
    entry.failure = nullptr;
    m_save.run();
    try {
        const Change change = entry.write();
        m_release.run();
        return change;
    } catch (...) {
        if (sqlite3_get_autocommit(m_database.handle()) != 0) {
            throw;
        }
        m_rollBack.run();
        m_release.run();
        entry.failure = std::current_exception();
        return std::nullopt;
    }
}

} // namespace dorvantel::service
