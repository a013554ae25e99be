// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/StoreCheck.h"

#include "service/candidates/CVText.h"
#include "service/candidates/Plan.h"
#include "service/store/Schema.h"
#include "service/store/StoreFile.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <map>
#include <set>

#include <sqlite3.h>

namespace dorvantel::service {

namespace {

/// How far a vector's length may be from one: its numbers were rounded to 32 bits one by one.
constexpr double lengthTolerance = 1e-3;

std::string ofVersion(std::string_view what, std::int64_t id) {
    return std::string(what) + " of version " + std::to_string(id) + " ";
}

void checkStructure(const SqliteDatabase& database, StoreReport& report) {
    SqliteStatement check(database, "PRAGMA integrity_check(20)");
    while (check.step()) {
        if (check.text(0) != "ok") {
            report.problems.push_back("the file is damaged: " + std::string(check.text(0)));
        }
    }
}

void checkReferences(const SqliteDatabase& database, StoreReport& report) {
    const auto missing = database.number("SELECT count(*) FROM pragma_foreign_key_check");
    if (missing > 0) {
        report.problems.push_back(std::to_string(missing) + " rows refer to missing ones");
    }
    const auto orphans = database.number("SELECT count(*) FROM pdf WHERE record NOT IN "
                                         "(SELECT id FROM record UNION ALL SELECT id FROM history)");
    if (orphans > 0) {
        report.problems.push_back(std::to_string(orphans) + " PDFs belong to no candidate");
    }
}

using Terms = std::set<std::pair<Trait, std::string>>;

/// By which a candidate with this CV data must be found.
Terms termsOf(const CVData& data) {
    Terms terms{{Trait::Gender, data.gender}};
    for (const auto& [trait, values] :
         {std::pair{Trait::TechSkill, &data.techSkills}, std::pair{Trait::SoftSkill, &data.softSkills},
          std::pair{Trait::Language, &data.languages}}) {
        for (const std::string& value : *values) {
            terms.emplace(trait, value);
        }
    }
    return terms;
}

Terms storedTerms(SqliteStatement& read, std::int64_t version) {
    Terms terms;
    read.bind(0, version);
    while (read.step()) {
        terms.emplace(static_cast<Trait>(read.number(0)), read.text(1));
    }
    read.reset();
    return terms;
}

void checkCVData(const SqliteDatabase& database, StoreReport& report) {
    SqliteStatement read(database, "SELECT id, cv_json, 1 FROM record UNION ALL SELECT id, cv_json, 0 FROM history");
    SqliteStatement readTerms(database, "SELECT kind, value FROM trait WHERE record = ?");
    while (read.step()) {
        const auto data = readCVText(read.text(1));
        const bool isCurrent = read.number(2) != 0;
        if (!data) {
            report.problems.push_back(ofVersion("the CV data", read.number(0)) + "cannot be read: " + data.error());
        } else if (isCurrent && termsOf(*data) != storedTerms(readTerms, read.number(0))) {
            report.problems.push_back(ofVersion("the search terms", read.number(0)) + "are not those of its CV data");
        }
    }
}

void checkVectors(const SqliteDatabase& database, StoreReport& report) {
    const auto forgotten =
        database.number("SELECT count(*) FROM record WHERE id NOT IN (SELECT record FROM vector) AND "
                        "id NOT IN (SELECT record FROM embedding_queue)");
    if (forgotten > 0) {
        report.problems.push_back(std::to_string(forgotten) + " candidates neither have a vector nor wait for one");
    }
    SqliteStatement read(database, "SELECT record, model, floats FROM vector ORDER BY record");
    std::map<std::string, std::size_t, std::less<>> sizes; ///< of the first vector of each model, in bytes
    while (read.step()) {
        const std::string_view bytes = read.blob(2);
        const auto& [model, size] = *sizes.try_emplace(std::string(read.text(1)), bytes.size()).first;
        if (bytes.empty() || bytes.size() % sizeof(float) != 0 || bytes.size() != size) {
            report.problems.push_back(ofVersion("the vector", read.number(0)) + "has " + std::to_string(bytes.size()) +
                                      " bytes, the first of its model has " + std::to_string(size));
            continue;
        }
        double square = 0;
        for (std::size_t at = 0; at < bytes.size(); at += sizeof(float)) {
            float number = 0;
            std::memcpy(&number, bytes.data() + at, sizeof number);
            square += static_cast<double>(number) * static_cast<double>(number);
        }
        if (!(std::abs(std::sqrt(square) - 1) < lengthTolerance)) { // also when it is no number
            report.problems.push_back(ofVersion("the vector", read.number(0)) + "has not the length one");
        }
    }
}

} // namespace

SqliteDatabase openForReading(const std::string& path) {
    std::error_code unknown;
    if (!std::filesystem::exists(path, unknown)) {
        throw StoreFileError(path + ": there is no store");
    }
    SqliteDatabase database(path, SqliteDatabase::Access::ReadOnly);
    schemaVersion(database, std::ssize(migrations()));
    return database;
}

StoreReport checkStore(const SqliteDatabase& database) {
    StoreReport report;
    database.execute("BEGIN");
    try {
        checkStructure(database, report);
        if (report.problems.empty()) { // what is read from a damaged file means nothing
            report.version = schemaVersion(database, std::ssize(migrations()));
            report.candidates = database.number("SELECT count(*) FROM record");
            report.earlier = database.number("SELECT count(*) FROM history");
            report.pdfs = database.number("SELECT count(*) FROM pdf");
            report.vectors = database.number("SELECT count(*) FROM vector");
            checkReferences(database, report);
            checkCVData(database, report);
            checkVectors(database, report);
        }
    } catch (const SqliteError& error) {
        if (error.code() != SQLITE_CORRUPT) {
            throw;
        }
        report.problems.push_back(std::string("the file is damaged: ") + error.what());
    }
    database.execute("ROLLBACK");
    return report;
}

} // namespace dorvantel::service
