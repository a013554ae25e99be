// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/SqliteWriter.h"

#include "service/candidates/JsonText.h"
#include "service/candidates/Plan.h"
#include "service/store/Schema.h"

#include <bit>
#include <cstring>

#include <sqlite3.h>

namespace dorvantel::service {

namespace {

static_assert(std::endian::native == std::endian::little, "stored vectors are little-endian");

SqliteDatabase openForWriting(const std::string& path) {
    SqliteDatabase database(path, SqliteDatabase::Access::ReadWriteCreate);
    if (sqlite3_db_readonly(database.handle(), "main") != 0) {
        throw SqliteError(SQLITE_READONLY, "the file cannot be written");
    }
    database.execute("PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON;");
    // Before the journal mode, which is kept in the file: a file that is refused must stay as it is.
    migrate(database, migrations());
    if (database.text("PRAGMA journal_mode = WAL") != "wal") {
        throw SqliteError(SQLITE_CANTOPEN, "the file's disk does not allow a write-ahead log");
    }
    // What the log grew to beside a slow reader is given back once it begins anew.
    database.execute("PRAGMA journal_size_limit = 16777216");
    return database;
}

std::string_view bytesOf(std::span<const float> vector) {
    return {reinterpret_cast<const char*>(vector.data()), vector.size_bytes()};
}

} // namespace

SqliteWriter::SqliteWriter(const std::string& path)
    : m_database(openForWriting(path))
    , m_find(m_database, "SELECT id FROM record WHERE email = ?")
    , m_add(m_database, "INSERT INTO record (email, name, profession, summary, mail, cv_text, cv_json, stored_at) "
                        "VALUES (?, ?, ?, ?, ?, ?, ?, unixepoch())")
    , m_addPDF(m_database, "INSERT INTO pdf (record, bytes) VALUES (?, ?)")
    , m_addTrait(m_database, "INSERT OR IGNORE INTO trait (kind, value, record) VALUES (?, ?, ?)")
    , m_queue(m_database, "INSERT INTO embedding_queue (record) VALUES (?)")
    , m_keep(m_database,
             "INSERT INTO history (id, email, name, profession, summary, mail, cv_text, cv_json, stored_at, ended_at, "
             "ended_by) SELECT id, email, name, profession, summary, mail, cv_text, cv_json, stored_at, unixepoch(), ? "
             "FROM record WHERE id = ?")
    , m_delete(m_database, "DELETE FROM record WHERE id = ?")
    , m_putVector(m_database, "INSERT OR REPLACE INTO vector (record, model, floats) "
                              "SELECT id, ?, ? FROM record WHERE id = ?")
    , m_unqueue(m_database, "DELETE FROM embedding_queue WHERE record = ?") {}

SqliteWriter::~SqliteWriter() {
    // Whatever stays in the log is still safe there, so a failure is nothing to report.
    sqlite3_wal_checkpoint_v2(m_database.handle(), nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
}

std::optional<std::int64_t> SqliteWriter::find(std::string_view email) {
    m_find.bind(0, email);
    std::optional<std::int64_t> id;
    if (m_find.step()) {
        id = m_find.number(0);
    }
    m_find.reset();
    return id;
}

void SqliteWriter::add(const Record& record) {
    const std::string cvJSON = cvDataJSON(record.cvData);
    int parameter = 0;
    for (const std::string& text : {std::cref(record.email), std::cref(record.name), std::cref(record.profession),
                                    std::cref(record.summarizedText), std::cref(record.invitationMail),
                                    std::cref(record.jsonCVData), std::cref(cvJSON)}) {
        m_add.bind(parameter++, std::string_view(text));
    }
    m_add.run();
    const std::int64_t id = sqlite3_last_insert_rowid(m_database.handle());

    if (record.file) {
        m_addPDF.bind(0, id);
        m_addPDF.bindBlob(1, *record.file);
        m_addPDF.run();
    }
    const auto addTrait = [this, id](Trait trait, const std::string& value) {
        m_addTrait.bind(0, static_cast<std::int64_t>(trait));
        m_addTrait.bind(1, std::string_view(value));
        m_addTrait.bind(2, id);
        m_addTrait.run();
    };
    addTrait(Trait::Gender, record.cvData.gender);
    for (const auto& [trait, values] : {std::pair{Trait::TechSkill, &record.cvData.techSkills},
                                        std::pair{Trait::SoftSkill, &record.cvData.softSkills},
                                        std::pair{Trait::Language, &record.cvData.languages}}) {
        for (const std::string& value : *values) {
            addTrait(trait, value);
        }
    }
    m_queue.bind(0, id);
    m_queue.run();
}

bool SqliteWriter::unqueue(std::int64_t id) {
    m_unqueue.bind(0, id);
    m_unqueue.run();
    return sqlite3_changes(m_database.handle()) > 0;
}

bool SqliteWriter::retire(std::int64_t id, std::string_view endedBy) {
    const bool wasQueued = unqueue(id);
    m_keep.bind(0, endedBy);
    m_keep.bind(1, id);
    m_keep.run();
    m_delete.bind(0, id);
    m_delete.run();
    return wasQueued;
}

SqliteWriter::Embedded SqliteWriter::putVector(std::int64_t id, std::string_view model, std::span<const float> vector) {
    m_putVector.bind(0, model);
    m_putVector.bindBlob(1, bytesOf(vector));
    m_putVector.bind(2, id);
    m_putVector.run();
    const bool isKnown = sqlite3_changes(m_database.handle()) > 0;
    return {.isKnown = isKnown, .wasQueued = unqueue(id)};
}

void SqliteWriter::queueUnembedded(std::string_view model) {
    SqliteStatement fill(m_database, "INSERT OR IGNORE INTO embedding_queue (record) SELECT id FROM record WHERE NOT "
                                     "EXISTS (SELECT 1 FROM vector WHERE record = id AND model = ?)");
    fill.bind(0, model);
    fill.run();
}

void SqliteWriter::readVectors(std::string_view model,
                               const std::function<void(std::int64_t, std::span<const float>)>& take) {
    SqliteStatement read(m_database, "SELECT record, floats FROM vector WHERE model = ? ORDER BY record");
    read.bind(0, model);
    std::vector<float> vector;
    while (read.step()) {
        const std::string_view bytes = read.blob(1);
        vector.resize(bytes.size() / sizeof(float));
        std::memcpy(vector.data(), bytes.data(), vector.size() * sizeof(float));
        take(read.number(0), vector);
    }
}

} // namespace dorvantel::service
