// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Store.h"
#include "service/ranking/VectorIndex.h"
#include "service/store/FairSharedMutex.h"
#include "service/store/GroupCommit.h"
#include "service/store/LogKeeper.h"
#include "service/store/SqliteReader.h"
#include "service/store/SqliteWriter.h"
#include "service/store/StoreFile.h"

#include <atomic>

namespace dorvantel::service {

/// The store that ships: one SQLite file with a write-ahead log, flushed to the disk before a write returns. One
/// connection writes, for many callers at once; each read has one of its own and sees the store as it was when it
/// began. The vectors of the embedding model are in memory as well, and ranked there. What is in the log is moved into
/// the file between the writes.
class SqliteStore final : public Store {
public:
    /// Opens or makes the store. `embeddingModel` is whose vectors are ranked and stored; empty: none, and a semantic
    /// plan gives no rows. `log` gets lines for the operator that hold nothing of any record, on a thread of the
    /// store's own. Throws StoreFileError, SchemaError and SqliteError.
    SqliteStore(
        const std::filesystem::path& path, std::string embeddingModel,
        LogKeeper::LogLine log = [](std::string_view) {});

    Stored<void> insert(const Record& record) override;
    Stored<bool> remove(std::string_view email) override;
    Stored<std::optional<StoredPDF>> pdf(std::string_view email) override;
    Stored<std::string> pdfPiece(std::int64_t version, std::size_t at, std::size_t size) override;
    Stored<std::unique_ptr<Rows>> run(const Plan& plan) override;
    Stored<StoreStatus> status() override;
    Stored<std::optional<std::int64_t>> nextUnembedded(std::int64_t afterId) override;
    Stored<std::optional<Unembedded>> unembedded(std::int64_t id) override;
    Stored<bool> putVector(std::int64_t id, const std::vector<float>& vector) override;

private:
    void loadVectors();
    void commit(SqliteTransaction& transaction, std::span<const GroupCommit::Change> changes);
    std::optional<std::vector<float>> putIntoIndex(std::int64_t id, std::span<const float> vector);
    Stored<std::unique_ptr<Rows>> runRanked(const Plan& plan, std::vector<Predicate> predicates);

    // In the order in which they must come to life and, backwards, end: the readers before the writer, whose end
    // moves the log into the file, and the file's lock last.
    StoreFile m_file;
    std::string m_model;
    SqliteWriter m_writer;
    GroupCommit m_writes;
    /// A retired version leaves the index before anybody can look at either again, so whoever holds this shared sees
    /// index and store agree.
    FairSharedMutex m_indexMutex;
    VectorIndex m_index;
    // As in the store; changed by whoever writes, once it is written.
    std::atomic<std::int64_t> m_candidates = 0;
    std::atomic<std::int64_t> m_waiting = 0; ///< for a vector
    SqliteReaderPool m_readers;
    LogKeeper m_logKeeper;
};

} // namespace dorvantel::service
