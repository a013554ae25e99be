// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/SqliteRows.h"

#include "service/store/Guarded.h"

#include <algorithm>
#include <array>
#include <limits>

#include <sqlite3.h>

namespace dorvantel::service {

namespace {

/// Ids in rising order. Most follow each other without a gap, so a whole store takes little room.
class RisingIds {
public:
    void add(std::int64_t id) {
        if (m_runs.empty() || m_runs.back().end != id) {
            m_runs.push_back({id, id});
        }
        ++m_runs.back().end;
    }
    std::optional<std::int64_t> next() {
        if (m_run == m_runs.size()) {
            return std::nullopt;
        }
        const std::int64_t id = m_runs[m_run].begin++;
        m_run += m_runs[m_run].begin == m_runs[m_run].end ? 1 : 0;
        return id;
    }

private:
    struct Run {
        std::int64_t begin;
        std::int64_t end;
    };
    std::vector<Run> m_runs;
    std::size_t m_run = 0;
};

/// A version that is still to be given.
struct Noted {
    std::int64_t id;
    float score;
};

/// Fills `row` with a version.
void readVersion(SqliteReader& reader, std::int64_t id, Row& row) {
    reader.byId().reset();
    reader.byId().bind(0, id);
    if (!reader.byId().step()) {
        throw SqliteError(SQLITE_CORRUPT, "an index names a record that is not there");
    }
    readRow(reader.byId(), row);
}

class SnapshotRows : public Rows {
public:
    SnapshotRows(SqliteReaderPool& readers, SqliteReaderPool::Lease reader)
        : m_readers(readers)
        , m_reader(std::move(reader)) {}

    Stored<bool> next(Row& row) final {
        return guarded([&] {
            if (m_reader && m_readers.isAskedToLetGo()) {
                noteRest(**m_reader);
                letGo();
            }
            const bool isFound = m_reader ? readNext(**m_reader, row) : readNoted(row);
            if (!isFound) {
                letGo(); // what was given may be on its way for long
            }
            return isFound;
        });
    }

protected:
    virtual bool readNext(SqliteReader& reader, Row& row) = 0;
    /// Notes what `readNext` would still give.
    virtual void noteRest(SqliteReader& reader) = 0;
    virtual std::optional<Noted> nextNoted() = 0;
    /// The reader is about to be given back.
    virtual void forgetReader() {}

private:
    void letGo() {
        forgetReader();
        m_reader.reset();
    }

    bool readNoted(Row& row) {
        const auto noted = nextNoted();
        if (!noted) {
            return false;
        }
        const auto reader = m_readers.take();
        readVersion(*reader, noted->id, row);
        row.score = noted->score;
        // The reader is given back before the row is used.
        auto text = m_texts.begin();
        for (std::string_view* const field :
             {&row.name, &row.profession, &row.email, &row.summarizedText, &row.invitationMail, &row.cvDataJSON}) {
            *field = text->assign(*field);
            ++text;
        }
        return true;
    }

    SqliteReaderPool& m_readers;
    std::optional<SqliteReaderPool::Lease> m_reader; ///< none: let go
    std::array<std::string, 6> m_texts;              ///< of the last row without a snapshot
};

/// Everybody in the answer has the score 100.
class UnrankedRows : public SnapshotRows {
public:
    UnrankedRows(SqliteReaderPool& readers, std::optional<std::size_t> limit)
        : SnapshotRows(readers, readers.take())
        , m_left(limit.value_or(std::numeric_limits<std::size_t>::max())) {}

protected:
    bool readNext(SqliteReader& reader, Row& row) final {
        if (m_left == 0 || !readUnlimited(reader, row)) {
            return false;
        }
        --m_left;
        row.score = all;
        return true;
    }
    std::optional<Noted> nextNoted() final {
        const auto id = m_left == 0 ? std::nullopt : m_rest.next();
        if (!id) {
            return std::nullopt;
        }
        --m_left;
        return Noted{*id, all};
    }

    virtual bool readUnlimited(SqliteReader& reader, Row& row) = 0;

    RisingIds m_rest;

private:
    static constexpr float all = 100;
    std::size_t m_left;
};

class AllRows final : public UnrankedRows {
public:
    using UnrankedRows::UnrankedRows;

protected:
    bool readUnlimited(SqliteReader& reader, Row& row) override {
        if (!reader.list().step()) {
            return false;
        }
        readRow(reader.list(), row);
        m_last = listedId(reader.list());
        return true;
    }
    void noteRest(SqliteReader& reader) override {
        std::vector<std::int64_t> ids;
        while (reader.ids().step()) {
            if (const std::int64_t id = reader.ids().number(0); id > m_last) {
                ids.push_back(id);
            }
        }
        std::ranges::sort(ids);
        std::ranges::for_each(ids, [this](std::int64_t id) { m_rest.add(id); });
    }

private:
    std::int64_t m_last = 0;
};

class MatchingRows final : public UnrankedRows {
public:
    MatchingRows(SqliteReaderPool& readers, std::vector<Predicate> predicates, std::optional<std::size_t> limit)
        : UnrankedRows(readers, limit)
        , m_predicates(std::move(predicates)) {}

protected:
    bool readUnlimited(SqliteReader& reader, Row& row) override {
        const auto id = matches(reader).next();
        if (id) {
            readVersion(reader, *id, row);
        }
        return id.has_value();
    }
    void noteRest(SqliteReader& reader) override {
        while (const auto id = matches(reader).next()) {
            m_rest.add(*id);
        }
    }
    void forgetReader() override { m_matches.reset(); }

private:
    Matches& matches(SqliteReader& reader) {
        return m_matches ? *m_matches : m_matches.emplace(reader, std::move(m_predicates));
    }

    std::vector<Predicate> m_predicates;
    std::optional<Matches> m_matches;
};

class RankedRows final : public SnapshotRows {
public:
    RankedRows(SqliteReaderPool& readers, SqliteReaderPool::Lease reader, std::vector<RankedVector> ranking)
        : SnapshotRows(readers, std::move(reader))
        , m_ranking(std::move(ranking)) {}

protected:
    bool readNext(SqliteReader& reader, Row& row) override {
        const auto ranked = nextNoted();
        if (ranked) {
            readVersion(reader, ranked->id, row);
            row.score = ranked->score;
        }
        return ranked.has_value();
    }
    void noteRest(SqliteReader&) override {}
    std::optional<Noted> nextNoted() override {
        if (m_next == m_ranking.size()) {
            return std::nullopt;
        }
        const RankedVector& ranked = m_ranking[m_next++];
        return Noted{ranked.id, ranked.score};
    }

private:
    std::vector<RankedVector> m_ranking;
    std::size_t m_next = 0;
};

} // namespace

std::unique_ptr<Rows> allRows(SqliteReaderPool& readers, std::optional<std::size_t> limit) {
    return std::make_unique<AllRows>(readers, limit);
}

std::unique_ptr<Rows> matchingRows(SqliteReaderPool& readers, std::vector<Predicate> predicates,
                                   std::optional<std::size_t> limit) {
    return std::make_unique<MatchingRows>(readers, std::move(predicates), limit);
}

std::unique_ptr<Rows> rankedRows(SqliteReaderPool& readers, SqliteReaderPool::Lease reader,
                                 std::vector<RankedVector> ranking) {
    return std::make_unique<RankedRows>(readers, std::move(reader), std::move(ranking));
}

} // namespace dorvantel::service
