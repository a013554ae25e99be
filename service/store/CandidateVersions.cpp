// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/CandidateVersions.h"

#include "service/candidates/JsonText.h"
#include "service/store/NewFile.h"
#include "service/store/SqliteWriter.h"
#include "service/store/StoreCheck.h"
#include "service/store/StoreFile.h"

#include <cstring>

#include <sqlite3.h>

namespace dorvantel::service {

namespace {

namespace fs = std::filesystem;

constexpr const char* versionsText =
    "SELECT id, name, profession, email, summary, mail, cv_json, cv_text, state, "
    "strftime('%Y-%m-%dT%H:%M:%SZ', stored_at, 'unixepoch'), "
    "coalesce(strftime('%Y-%m-%dT%H:%M:%SZ', ended_at, 'unixepoch'), '') "
    "FROM (SELECT id, name, profession, email, summary, mail, cv_json, cv_text, ended_by AS state, stored_at, ended_at "
    "FROM history WHERE email = ?1 UNION ALL "
    "SELECT id, name, profession, email, summary, mail, cv_json, cv_text, 'current', stored_at, NULL "
    "FROM record WHERE email = ?1) ORDER BY id";

void appendVector(std::string& out, SqliteStatement& vector, std::int64_t version) {
    vector.bind(0, version);
    if (vector.step()) {
        out += ',';
        appendJSONField(out, "vectorModel", vector.text(0));
        out += ",\"vector\":[";
        const std::string_view bytes = vector.blob(1);
        for (std::size_t at = 0; at + sizeof(float) <= bytes.size(); at += sizeof(float)) {
            float number = 0;
            std::memcpy(&number, bytes.data() + at, sizeof number);
            out += at == 0 ? "" : ",";
            appendNumber(out, number);
        }
        out += ']';
    }
    vector.reset();
}

void appendVersion(std::string& out, const SqliteStatement& version, SqliteStatement& vector, const std::string& file) {
    out += "{\"version\":" + std::to_string(version.number(0)) + ',';
    int column = 1;
    for (const char* const key : {"name", "profession", "email", "summarizedText", "invitationMail"}) {
        appendJSONField(out, key, version.text(column++));
        out += ',';
    }
    out += "\"jsonCVData\":";
    out += version.text(column++);
    out += ',';
    appendJSONField(out, "jsonCVDataText", version.text(column++));
    for (const char* const key : {"state", "storedAt", "endedAt"}) {
        if (const std::string_view text = version.text(column++); !text.empty()) {
            out += ',';
            appendJSONField(out, key, text);
        }
    }
    appendVector(out, vector, version.number(0));
    if (!file.empty()) {
        out += ',';
        appendJSONField(out, "file", file);
    }
    out += '}';
}

/// A store that is not there must not be made by a command, nor out of an empty file.
const fs::path& existing(const fs::path& store) {
    std::error_code unknown;
    if (!fs::exists(store, unknown)) {
        throw StoreFileError(store.string() + ": there is no store");
    }
    if (fs::is_regular_file(store, unknown) && fs::file_size(store, unknown) == 0) {
        throw StoreFileError(store.string() + ": the file is empty");
    }
    return store;
}

/// An existing store that nobody else changes.
struct OwnStore {
    explicit OwnStore(const fs::path& store)
        : file(existing(store))
        , writer(file.path().string()) {}

    StoreFile file;
    SqliteWriter writer;
};

std::int64_t removeVersions(const SqliteDatabase& database, std::string_view email) {
    SqliteTransaction transaction(database);
    std::int64_t versions = 0;
    for (const char* const text : {"DELETE FROM pdf WHERE record IN (SELECT id FROM record WHERE email = ?1 UNION ALL "
                                   "SELECT id FROM history WHERE email = ?1)",
                                   "DELETE FROM history WHERE email = ?1", "DELETE FROM record WHERE email = ?1"}) {
        SqliteStatement remove(database, text);
        remove.bind(0, email);
        remove.run();
        const bool hasVersions = std::string_view(text).find("FROM pdf") == std::string_view::npos;
        versions += hasVersions ? sqlite3_changes64(database.handle()) : 0;
    }
    transaction.commit();
    return versions;
}

/// Nothing may be left in the log; somebody who still reads an older state keeps it there.
void emptyLog(const SqliteDatabase& database) {
    if (database.number("PRAGMA wal_checkpoint(TRUNCATE)") != 0) {
        throw SqliteError(SQLITE_BUSY, "another program reads the store, so that its log cannot be emptied; try again "
                                       "when it has ended");
    }
}

} // namespace

std::int64_t exportCandidate(const fs::path& store, std::string_view email, const fs::path& folder) {
    const SqliteDatabase database = openForReading(store.string());
    database.execute("BEGIN"); // all of it is of one moment
    SqliteStatement version(database, versionsText);
    version.bind(0, email);
    if (!version.step()) {
        return 0;
    }
    SqliteStatement pdf(database, "SELECT bytes FROM pdf WHERE record = ?");
    SqliteStatement vector(database, "SELECT model, floats FROM vector WHERE record = ?");
    NewFile made(folder, NewFile::Kind::Folder);
    std::string json = "{\"versions\":[";
    std::int64_t count = 0;
    do {
        pdf.bind(0, version.number(0));
        const bool hasPDF = pdf.step();
        const std::string file = hasPDF ? "version-" + std::to_string(version.number(0)) + ".pdf" : "";
        if (hasPDF) {
            writeNewFile(made.path() / file, pdf.blob(0));
        }
        pdf.reset();
        json += count++ == 0 ? "\n" : ",\n";
        appendVersion(json, version, vector, file);
    } while (version.step());
    writeNewFile(made.path() / "candidate.json", json + "\n]}\n");
    syncFolder(made.path());
    made.putInPlace();
    return count;
}

std::int64_t eraseCandidate(const fs::path& store, std::string_view email) {
    const OwnStore own(store);
    removeLeftovers(own.file.path(), NewFile::Kind::Store); // of a restoration that was killed: a whole copy, perhaps
    const SqliteDatabase& database = own.writer.database();
    database.execute("PRAGMA secure_delete = ON");
    const std::int64_t versions = removeVersions(database, email);
    emptyLog(database); // the emptied pages go over those in the file
    // What was moved within the file over the years left copies of its bytes in pages that are in use.
    database.execute("VACUUM");
    emptyLog(database);
    return versions;
}

std::int64_t forgetVectors(const fs::path& store) {
    const OwnStore own(store);
    const SqliteDatabase& database = own.writer.database();
    SqliteTransaction transaction(database);
    database.execute("DELETE FROM vector; INSERT OR IGNORE INTO embedding_queue (record) SELECT id FROM record");
    const std::int64_t candidates = database.number("SELECT count(*) FROM record");
    transaction.commit();
    return candidates;
}

} // namespace dorvantel::service
