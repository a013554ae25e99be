// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/SqliteStore.h"

#include "service/candidates/CVText.h"
#include "service/store/Guarded.h"
#include "service/store/SqliteRows.h"

#include <algorithm>
#include <shared_mutex>

#include <sqlite3.h>

namespace dorvantel::service {

namespace {

std::vector<std::int64_t> allMatches(SqliteReader& reader, std::vector<Predicate> predicates) {
    Matches matches(reader, std::move(predicates));
    std::vector<std::int64_t> ids;
    while (const auto id = matches.next()) {
        ids.push_back(*id);
    }
    return ids;
}

std::unexpected<StoreError> lengthError(std::string_view whose, std::size_t length, std::size_t storedLength) {
    return std::unexpected(StoreError{StoreError::Kind::VectorLength,
                                      std::string(whose) + " has " + std::to_string(length) +
                                          " numbers, the stored vectors have " + std::to_string(storedLength)});
}

} // namespace

StoreError storeError(const SqliteError& error) {
    switch (error.code()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return {StoreError::Kind::Busy, "the store is busy; try again"};
    case SQLITE_FULL:
        return {StoreError::Kind::Full, "there is no room left for the store"};
    default:
        return {StoreError::Kind::Failed, std::string("the store failed: ") + error.what()};
    }
}

SqliteStore::SqliteStore(const std::filesystem::path& path, std::string embeddingModel, LogKeeper::LogLine log)
    : m_file(path)
    , m_model(std::move(embeddingModel))
    , m_writer(m_file.path())
    , m_writes(m_writer.database(), [this](auto& transaction, auto changes) { commit(transaction, changes); })
    , m_readers(m_file.path())
    , m_logKeeper(m_writer.database(), m_file.path(), m_writes, m_readers, std::move(log)) {
    if (!m_model.empty()) {
        loadVectors();
    }
    m_candidates = m_writer.database().number("SELECT count(*) FROM record");
    m_waiting = m_writer.database().number("SELECT count(*) FROM embedding_queue");
}

void SqliteStore::loadVectors() {
    SqliteTransaction transaction(m_writer.database());
    m_writer.queueUnembedded(m_model);
    transaction.commit();
    m_writer.readVectors(m_model, [this](std::int64_t id, std::span<const float> vector) {
        if (m_index.size() == 0 || m_index.dimension() == vector.size()) {
            m_index.put(id, vector);
        }
    });
}

void SqliteStore::commit(SqliteTransaction& transaction, std::span<const GroupCommit::Change> changes) {
    const bool areRetiring =
        std::ranges::any_of(changes, [](const auto& change) { return change.retired.has_value(); });
    std::unique_lock lock(m_indexMutex, std::defer_lock);
    if (areRetiring) {
        lock.lock();
    }
    transaction.commit();
    for (const GroupCommit::Change& change : changes) {
        if (change.retired) {
            m_index.remove(*change.retired);
        }
        m_candidates += change.candidates;
        m_waiting += change.waiting;
    }
}

Stored<void> SqliteStore::insert(const Record& record) {
    return guarded([&] {
        m_writes.run([&] {
            const auto earlier = m_writer.find(record.email);
            const bool wasWaiting = earlier && m_writer.retire(*earlier, "replaced");
            m_writer.add(record);
            return GroupCommit::Change{earlier, earlier ? 0 : 1, wasWaiting ? 0 : 1};
        });
    });
}

Stored<bool> SqliteStore::remove(std::string_view email) {
    return guarded([&] {
        bool isKnown = false;
        m_writes.run([&] {
            const auto id = m_writer.find(email);
            isKnown = id.has_value();
            const bool wasWaiting = id && m_writer.retire(*id, "deleted");
            return GroupCommit::Change{id, id ? -1 : 0, wasWaiting ? -1 : 0};
        });
        return isKnown;
    });
}

Stored<std::optional<StoredPDF>> SqliteStore::pdf(std::string_view email) {
    return guarded([&]() -> std::optional<StoredPDF> {
        const auto reader = m_readers.take();
        SqliteStatement& statement = reader->pdf();
        statement.bind(0, email);
        if (!statement.step()) {
            return std::nullopt;
        }
        StoredPDF pdf{.version = statement.number(0)};
        if (statement.number(1) != 0) {
            pdf.size = static_cast<std::size_t>(statement.number(2));
        }
        return pdf;
    });
}

Stored<std::string> SqliteStore::pdfPiece(std::int64_t version, std::size_t at, std::size_t size) {
    return guarded([&] { return m_readers.take()->pdfPiece(version, at, size); });
}

Stored<std::unique_ptr<Rows>> SqliteStore::run(const Plan& plan) {
    std::vector<Predicate> predicates = plan.predicates;
    std::ranges::sort(predicates);
    predicates.erase(std::ranges::unique(predicates).begin(), predicates.end());
    if (plan.similarTo) {
        return runRanked(plan, std::move(predicates));
    }
    return guarded([&]() -> std::unique_ptr<Rows> {
        if (predicates.empty()) {
            return allRows(m_readers, plan.best);
        }
        return matchingRows(m_readers, std::move(predicates), plan.best);
    });
}

Stored<std::unique_ptr<Rows>> SqliteStore::runRanked(const Plan& plan, std::vector<Predicate> predicates) {
    const std::shared_lock lock(m_indexMutex);
    if (m_index.size() > 0 && m_index.dimension() != plan.similarTo->size()) {
        return lengthError("the query vector", plan.similarTo->size(), m_index.dimension());
    }
    return guarded([&]() -> std::unique_ptr<Rows> {
        auto reader = m_readers.take();
        std::optional<std::vector<std::int64_t>> ids;
        if (!predicates.empty()) {
            ids = allMatches(*reader, std::move(predicates));
        }
        return rankedRows(m_readers, std::move(reader),
                          plan.best ? m_index.best(*plan.similarTo, ids, *plan.best)
                                    : m_index.scores(*plan.similarTo, ids));
    });
}

Stored<StoreStatus> SqliteStore::status() {
    return guarded([&] {
        m_readers.take(); // which reads a little, so that a store that cannot be read does not look well
        StoreStatus status{.records = m_candidates, .vectorsPending = m_waiting, .embeddingModel = m_model};
        for (const char* const suffix : {"", "-wal"}) {
            std::error_code missing;
            const auto size = std::filesystem::file_size(m_file.path().string() + suffix, missing);
            status.bytes += missing ? 0 : size;
        }
        return status;
    });
}

Stored<std::optional<std::int64_t>> SqliteStore::nextUnembedded(std::int64_t afterId) {
    return guarded([&]() -> std::optional<std::int64_t> {
        const auto reader = m_readers.take();
        SqliteStatement& statement = reader->queued();
        statement.bind(0, afterId);
        return statement.step() ? std::optional(statement.number(0)) : std::nullopt;
    });
}

Stored<std::optional<Unembedded>> SqliteStore::unembedded(std::int64_t id) {
    return guarded([&]() -> std::optional<Unembedded> {
        const auto reader = m_readers.take();
        SqliteStatement& statement = reader->unembedded();
        statement.bind(0, id);
        if (!statement.step()) {
            return std::nullopt;
        }
        const auto text = [&](int column) { return std::string(statement.text(column)); };
        const auto cvData = readCVText(statement.text(4));
        return Unembedded{id, text(0), text(1), text(2), text(3), cvData ? *cvData : CVData{}};
    });
}

Stored<bool> SqliteStore::putVector(std::int64_t id, const std::vector<float>& vector) {
    const auto lock = m_writes.alone();
    if (m_index.size() > 0 && m_index.dimension() != vector.size()) {
        return lengthError("the new vector", vector.size(), m_index.dimension());
    }
    return guarded([&] {
        SqliteTransaction transaction(m_writer.database());
        const auto embedded = m_writer.putVector(id, m_model, vector);
        if (!embedded.isKnown) {
            return false;
        }
        // First into the index, which may lack the memory: what is stored and not in it would be missing from searches
        // until a restart, and what is in it and not stored yet does no harm.
        const std::optional<std::vector<float>> earlier = putIntoIndex(id, vector);
        try {
            transaction.commit();
        } catch (...) {
            const std::unique_lock indexLock(m_indexMutex);
            if (earlier) {
                m_index.put(id, *earlier);
            } else {
                m_index.remove(id);
            }
            throw;
        }
        m_waiting -= embedded.wasQueued ? 1 : 0;
        return true;
    });
}

/// Returns the vector that was there before.
std::optional<std::vector<float>> SqliteStore::putIntoIndex(std::int64_t id, std::span<const float> vector) {
    const std::unique_lock lock(m_indexMutex);
    std::optional<std::vector<float>> earlier = m_index.vector(id);
    m_index.put(id, vector);
    return earlier;
}

} // namespace dorvantel::service
