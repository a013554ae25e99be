// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/Schema.h"

#include <array>

namespace dorvantel::service {

namespace {

/// Marks the file as this program's, so that no other database is ever migrated by mistake ("Dorv" in ASCII).
constexpr std::int64_t applicationId = 0x446F7276;

// A row of `record` is one version of a candidate: its id is never used again, so that whatever is computed from a
// version (its vector) can be told from what belongs to the next one. The id stays when a version moves to `history`,
// and the PDF stays where it is.
constexpr Migration version1 = R"(
CREATE TABLE record (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    email TEXT NOT NULL UNIQUE,
    name TEXT NOT NULL,
    profession TEXT NOT NULL,
    summary TEXT NOT NULL,
    mail TEXT NOT NULL,
    cv_text TEXT NOT NULL,
    cv_json TEXT NOT NULL,
    stored_at INTEGER NOT NULL
) STRICT;
CREATE TABLE history (
    id INTEGER PRIMARY KEY,
    email TEXT NOT NULL,
    name TEXT NOT NULL,
    profession TEXT NOT NULL,
    summary TEXT NOT NULL,
    mail TEXT NOT NULL,
    cv_text TEXT NOT NULL,
    cv_json TEXT NOT NULL,
    stored_at INTEGER NOT NULL,
    ended_at INTEGER NOT NULL,
    ended_by TEXT NOT NULL CHECK (ended_by IN ('replaced', 'deleted'))
) STRICT;
CREATE INDEX history_email ON history (email);
CREATE TABLE pdf (
    record INTEGER PRIMARY KEY,
    bytes BLOB NOT NULL
) STRICT;
CREATE TABLE trait (
    kind INTEGER NOT NULL,
    value TEXT NOT NULL,
    record INTEGER NOT NULL REFERENCES record (id) ON DELETE CASCADE,
    PRIMARY KEY (kind, value, record)
) STRICT, WITHOUT ROWID;
CREATE INDEX trait_record ON trait (record);
CREATE TABLE vector (
    record INTEGER PRIMARY KEY REFERENCES record (id) ON DELETE CASCADE,
    model TEXT NOT NULL,
    floats BLOB NOT NULL
) STRICT;
CREATE TABLE embedding_queue (
    record INTEGER PRIMARY KEY REFERENCES record (id) ON DELETE CASCADE
) STRICT;
)";

// All vectors are computed again, because they were made of texts that vectors are no longer made of: before version 2
// the languages and the name as the summary mentions it, before version 3 accounts and titles.
constexpr Migration forgetVectors = R"(
DELETE FROM vector;
INSERT OR IGNORE INTO embedding_queue (record) SELECT id FROM record;
)";

constexpr std::array allMigrations{version1, forgetVectors, forgetVectors};

void checkIntegrity(const SqliteDatabase& database) {
    const std::string found = database.text("PRAGMA quick_check(1)");
    if (found != "ok") {
        throw SchemaError(SchemaError::Kind::Damaged, "the store is damaged: " + found);
    }
}

void checkReferences(const SqliteDatabase& database) {
    SqliteStatement violations(database, "PRAGMA foreign_key_check");
    if (violations.step()) {
        throw SchemaError(SchemaError::Kind::Damaged, "the store has rows that refer to missing ones");
    }
}

} // namespace

bool isStoreHeader(std::string_view header) {
    // Both are part of SQLite's file format, so the file need not be opened as a database to look.
    constexpr std::string_view magic("SQLite format 3\0", 16);
    constexpr std::size_t applicationIdOffset = 68;
    constexpr std::string_view idBytes = "Dorv";
    return header.size() == storeHeaderSize && header.starts_with(magic) &&
           header.substr(applicationIdOffset, idBytes.size()) == idBytes;
}

std::span<const Migration> migrations() {
    return allMigrations;
}

std::int64_t schemaVersion(const SqliteDatabase& database, std::int64_t newest) {
    const std::int64_t version = database.number("PRAGMA user_version");
    if (database.number("PRAGMA application_id") != applicationId) {
        throw SchemaError(SchemaError::Kind::Foreign, "the file is a database of another program");
    }
    if (version < 0) {
        throw SchemaError(SchemaError::Kind::Damaged,
                          "the store has the impossible schema version " + std::to_string(version));
    }
    if (version > newest) {
        throw SchemaError(SchemaError::Kind::Newer, "the store has schema version " + std::to_string(version) +
                                                        ", this program knows versions up to " +
                                                        std::to_string(newest) + "; a newer program made it");
    }
    return version;
}

void migrate(const SqliteDatabase& database, std::span<const Migration> steps) {
    // The version is read under the write lock, so that of two programs that start at once only one migrates.
    SqliteTransaction transaction(database);
    const auto newest = static_cast<std::int64_t>(steps.size());
    const bool isEmpty =
        database.number("PRAGMA user_version") == 0 && database.number("SELECT count(*) FROM sqlite_schema") == 0;
    const std::int64_t version = isEmpty ? 0 : schemaVersion(database, newest);
    if (version == newest) {
        return;
    }
    if (!isEmpty) {
        checkIntegrity(database);
    }
    for (const Migration step : steps.subspan(static_cast<std::size_t>(version))) {
        database.execute(step);
    }
    checkReferences(database);
    database.execute(("PRAGMA application_id = " + std::to_string(applicationId)).c_str());
    database.execute(("PRAGMA user_version = " + std::to_string(newest)).c_str());
    transaction.commit();
}

} // namespace dorvantel::service
