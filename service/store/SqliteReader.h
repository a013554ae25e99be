// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Plan.h"
#include "service/candidates/Store.h"
#include "service/store/Sqlite.h"

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

namespace dorvantel::service {

/// A connection that only reads, with its prepared statements. One thread at a time. Throws SqliteError.
class SqliteReader {
public:
    explicit SqliteReader(const std::string& path);

    /// From here to `endSnapshot` every read sees the store as it is now.
    void beginSnapshot();
    void endSnapshot() noexcept;

    SqliteStatement& list() { return m_list; }     ///< every candidate, in the order of insertion
    SqliteStatement& ids() { return m_ids; }       ///< of every candidate, in any order
    SqliteStatement& byId() { return m_byId; }     ///< the same columns of one version, current or not
    SqliteStatement& pdf() { return m_pdf; }       ///< of an e-mail: the version, whether it has a PDF, and its length
    SqliteStatement& queued() { return m_queued; } ///< the next id in the queue for vectors behind an id
    SqliteStatement& unembedded() { return m_unembedded; } ///< of an id in that queue: what its vector is made of
    /// The versions that have a value, by rising id; one statement for each condition of a plan.
    SqliteStatement& trait(std::size_t index);
    /// Up to `size` bytes of a version's PDF from `at` on.
    std::string pdfPiece(std::int64_t version, std::size_t at, std::size_t size) const;

private:
    SqliteDatabase m_database;
    SqliteStatement m_begin;
    SqliteStatement m_touch;
    SqliteStatement m_end;
    SqliteStatement m_list;
    SqliteStatement m_ids;
    SqliteStatement m_byId;
    SqliteStatement m_pdf;
    SqliteStatement m_queued;
    SqliteStatement m_unembedded;
    std::deque<SqliteStatement> m_traits; ///< a deque: the statements must not move
};

/// Fills the texts of `row` from a statement that stands on a row of `list` or `byId`.
void readRow(const SqliteStatement& statement, Row& row);

/// Which version it is that a statement stands on that is `list`.
std::int64_t listedId(const SqliteStatement& list);

/// The idle readers of a store. As many are made as are used at once. Any thread.
class SqliteReaderPool {
public:
    /// A reader on loan with a snapshot of the store; both end with this object.
    class Lease {
    public:
        Lease(SqliteReaderPool& pool, std::unique_ptr<SqliteReader> reader);
        Lease(Lease&&) = default;
        ~Lease();
        SqliteReader* operator->() const { return m_reader.get(); }
        SqliteReader& operator*() const { return *m_reader; }

    private:
        SqliteReaderPool* m_pool;
        std::unique_ptr<SqliteReader> m_reader;
    };

    explicit SqliteReaderPool(std::string path)
        : m_path(std::move(path)) {}
    Lease take();

    /// Whether whoever could do without a snapshot should end it, because the store's log cannot begin anew beside it.
    bool isAskedToLetGo() const { return m_isAskedToLetGo; }
    void askToLetGo(bool isAsked) { m_isAskedToLetGo = isAsked; }

private:
    std::string m_path;
    std::atomic<bool> m_isAskedToLetGo = false;
    std::mutex m_mutex;
    std::vector<std::unique_ptr<SqliteReader>> m_idle;
};

/// The versions for which every condition holds, by rising id, found through the index on (kind, value) alone: each
/// condition has a cursor, and whichever is behind leaps to where the others are.
class Matches {
public:
    /// `predicates` has no duplicates and at least one condition.
    Matches(SqliteReader& reader, std::vector<Predicate> predicates);
    ~Matches();
    Matches(const Matches&) = delete;
    Matches& operator=(const Matches&) = delete;

    /// The next version; nothing behind the last.
    std::optional<std::int64_t> next();

private:
    struct Cursor {
        const Predicate* predicate;
        SqliteStatement* statement;
        std::optional<std::int64_t> current;
    };
    static bool seek(Cursor& cursor, std::int64_t atLeast);

    std::vector<Predicate> m_predicates;
    std::vector<Cursor> m_cursors;
    std::int64_t m_next = 0;
};

} // namespace dorvantel::service
