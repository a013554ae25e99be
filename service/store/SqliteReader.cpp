// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/SqliteReader.h"

#include <algorithm>

namespace dorvantel::service {

namespace {

#define DORVANTEL_ROW_COLUMNS "name, profession, email, summary, mail, cv_json"
constexpr const char* listText = "SELECT " DORVANTEL_ROW_COLUMNS ", id FROM record ORDER BY id";
constexpr const char* byIdText = "SELECT " DORVANTEL_ROW_COLUMNS " FROM record WHERE id = ?1 UNION ALL "
                                 "SELECT " DORVANTEL_ROW_COLUMNS " FROM history WHERE id = ?1";
#undef DORVANTEL_ROW_COLUMNS

/// How many rows a cursor walks over before it looks its place up anew: about where both cost the same.
constexpr int stepsBeforeSeek = 16;

/// More conditions than searches usually have; what a longer one needed is given back.
constexpr std::size_t keptTraitStatements = 16;

/// Each holds a cache of pages. A moment of many readers must not cost memory ever after.
constexpr std::size_t mostIdleReaders = 16;

} // namespace

SqliteReader::SqliteReader(const std::string& path)
    : m_database(path, SqliteDatabase::Access::ReadOnly)
    , m_begin(m_database, "BEGIN")
    , m_touch(m_database, "SELECT 1 FROM record LIMIT 1")
    , m_end(m_database, "COMMIT")
    , m_list(m_database, listText)
    , m_ids(m_database, "SELECT id FROM record")
    , m_byId(m_database, byIdText)
    , m_pdf(m_database, "SELECT record.id, pdf.record IS NOT NULL, length(pdf.bytes) FROM record "
                        "LEFT JOIN pdf ON pdf.record = record.id WHERE record.email = ?")
    , m_queued(m_database, "SELECT record FROM embedding_queue WHERE record > ? ORDER BY record LIMIT 1")
    , m_unembedded(m_database, "SELECT name, email, profession, summary, cv_json FROM embedding_queue "
                               "JOIN record ON id = record WHERE record = ?") {}

void SqliteReader::beginSnapshot() {
    m_begin.run();
    m_touch.run(); // a transaction sees the store as of its first read, not of its BEGIN
}

void SqliteReader::endSnapshot() noexcept {
    for (SqliteStatement* const statement : {&m_list, &m_ids, &m_byId, &m_pdf, &m_queued, &m_unembedded}) {
        statement->reset();
    }
    while (m_traits.size() > keptTraitStatements) {
        m_traits.pop_back();
    }
    try {
        m_end.run();
    } catch (const SqliteError&) {
        // An error may have ended the transaction before; a reader has nothing to lose by it.
        m_end.reset();
    }
}

SqliteStatement& SqliteReader::trait(std::size_t index) {
    while (m_traits.size() <= index) {
        m_traits.emplace_back(m_database,
                              "SELECT record FROM trait WHERE kind = ? AND value = ? AND record >= ? ORDER BY record");
    }
    return m_traits[index];
}

std::string SqliteReader::pdfPiece(std::int64_t version, std::size_t at, std::size_t size) const {
    const SqliteBlob pdf(m_database, "pdf", "bytes", version);
    return pdf.read(at, size);
}

void readRow(const SqliteStatement& statement, Row& row) {
    row.name = statement.text(0);
    row.profession = statement.text(1);
    row.email = statement.text(2);
    row.summarizedText = statement.text(3);
    row.invitationMail = statement.text(4);
    row.cvDataJSON = statement.text(5);
}

std::int64_t listedId(const SqliteStatement& list) {
    return list.number(6);
}

SqliteReaderPool::Lease::Lease(SqliteReaderPool& pool, std::unique_ptr<SqliteReader> reader)
    : m_pool(&pool)
    , m_reader(std::move(reader)) {
    m_reader->beginSnapshot();
}

SqliteReaderPool::Lease::~Lease() {
    if (m_reader) {
        m_reader->endSnapshot();
        const std::scoped_lock lock(m_pool->m_mutex);
        if (m_pool->m_idle.size() < mostIdleReaders) {
            m_pool->m_idle.push_back(std::move(m_reader));
        }
    }
}

SqliteReaderPool::Lease SqliteReaderPool::take() {
    std::unique_ptr<SqliteReader> reader;
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_idle.empty()) {
            reader = std::move(m_idle.back());
            m_idle.pop_back();
        }
    }
    return {*this, reader ? std::move(reader) : std::make_unique<SqliteReader>(m_path)};
}

Matches::Matches(SqliteReader& reader, std::vector<Predicate> predicates)
    : m_predicates(std::move(predicates)) {
    for (std::size_t i = 0; i < m_predicates.size(); ++i) {
        m_cursors.push_back({&m_predicates[i], &reader.trait(i), std::nullopt});
    }
}

Matches::~Matches() {
    for (const Cursor& cursor : m_cursors) {
        cursor.statement->reset();
    }
}

bool Matches::seek(Cursor& cursor, std::int64_t atLeast) {
    for (int steps = 0; cursor.current && *cursor.current < atLeast && steps < stepsBeforeSeek; ++steps) {
        if (!cursor.statement->step()) {
            return false;
        }
        cursor.current = cursor.statement->number(0);
    }
    if (!cursor.current || *cursor.current < atLeast) {
        cursor.statement->reset();
        cursor.statement->bind(0, static_cast<std::int64_t>(cursor.predicate->trait));
        cursor.statement->bind(1, std::string_view(cursor.predicate->value));
        cursor.statement->bind(2, atLeast);
        if (!cursor.statement->step()) {
            return false;
        }
        cursor.current = cursor.statement->number(0);
    }
    return true;
}

std::optional<std::int64_t> Matches::next() {
    std::int64_t candidate = m_next;
    for (std::size_t agreeing = 0; agreeing < m_cursors.size();) {
        Cursor& cursor = m_cursors[agreeing];
        if (!seek(cursor, candidate)) {
            return std::nullopt;
        }
        if (*cursor.current == candidate) {
            ++agreeing;
            continue;
        }
        // Whoever leaps ahead is asked first from here on. So the rare conditions come to the front, and those that
        // hold for many are only asked where the rare ones agree.
        candidate = *cursor.current;
        std::rotate(m_cursors.begin(), m_cursors.begin() + static_cast<std::ptrdiff_t>(agreeing),
                    m_cursors.begin() + static_cast<std::ptrdiff_t>(agreeing) + 1);
        agreeing = 1;
    }
    m_next = candidate + 1;
    return candidate;
}

} // namespace dorvantel::service
