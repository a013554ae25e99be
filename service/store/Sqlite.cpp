// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/Sqlite.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <mutex>

#include <sqlite3.h>

namespace dorvantel::service {

namespace {

SqliteError errorOf(sqlite3* handle, int result) {
    const int code = primaryCode(result);
    const bool isSqlitesOwn = handle != nullptr && code == (result & 0xFF);
    return {code, isSqlitesOwn ? sqlite3_errmsg(handle) : sqlite3_errstr(code)};
}

[[noreturn]] void fail(sqlite3* handle, int result) {
    throw errorOf(handle, result);
}

/// What does not fit SQLite's cache goes into temporary files, and those hold rows as well. They belong to where the
/// database is, not into a folder of all users, which may be on another disk. It is one setting for the process; where
/// several threads open databases, these are in one folder.
void keepTemporaryFilesBeside(const std::string& path) {
    const std::string folder = std::filesystem::absolute(path).parent_path().string();
    static std::mutex mutex;
    const std::scoped_lock lock(mutex);
    if (sqlite3_temp_directory == nullptr || folder != sqlite3_temp_directory) {
        sqlite3_free(sqlite3_temp_directory);
        sqlite3_temp_directory = sqlite3_mprintf("%s", folder.c_str());
    }
}

} // namespace

int primaryCode(int result) {
    const int code = result & 0xFF;
    const bool isOutOfRoom = code == SQLITE_IOERR && (errno == EDQUOT || errno == EFBIG || errno == ENOSPC);
    return isOutOfRoom ? SQLITE_FULL : code;
}

SqliteDatabase::SqliteDatabase(const std::string& path, Access access, int busyMs) {
    // One thread at a time uses a connection, so SQLite's own mutexes would only cost time.
    const int flags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE |
                      (access == Access::ReadOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    if (access == Access::ReadWriteCreate) {
        keepTemporaryFilesBeside(path);
    }
    sqlite3* handle = nullptr;
    errno = 0;
    const int result = sqlite3_open_v2(path.c_str(), &handle, flags, nullptr);
    m_handle.reset(handle);
    if (result != SQLITE_OK) {
        fail(handle, result);
    }
    sqlite3_busy_timeout(handle, busyMs);
    // A store file that somebody prepared must not be able to run anything when it is opened.
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    if (access == Access::ReadOnly) {
        execute("PRAGMA temp_store = MEMORY"); // its folder may be closed to us, and there is little to sort
    }
}

void SqliteDatabase::Close::operator()(sqlite3* handle) const {
    sqlite3_close_v2(handle);
}

void SqliteDatabase::execute(const char* sql) const {
    errno = 0;
    const int result = sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr);
    if (result != SQLITE_OK) {
        fail(handle(), result);
    }
}

std::int64_t SqliteDatabase::number(const std::string& sql) const {
    SqliteStatement statement(*this, sql);
    statement.step();
    return statement.number(0);
}

std::string SqliteDatabase::text(const std::string& sql) const {
    SqliteStatement statement(*this, sql);
    statement.step();
    return std::string(statement.text(0));
}

SqliteStatement::SqliteStatement(const SqliteDatabase& database, std::string_view sql) {
    sqlite3_stmt* statement = nullptr;
    errno = 0;
    const int result = sqlite3_prepare_v3(database.handle(), sql.data(), static_cast<int>(sql.size()),
                                          SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    m_statement.reset(statement);
    if (result != SQLITE_OK) {
        fail(database.handle(), result);
    }
}

void SqliteStatement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

void SqliteStatement::check(int result) const {
    if (result != SQLITE_OK) {
        fail(sqlite3_db_handle(m_statement.get()), result);
    }
}

void SqliteStatement::bind(int parameter, std::int64_t value) {
    check(sqlite3_bind_int64(m_statement.get(), parameter + 1, value));
}

void SqliteStatement::bind(int parameter, std::string_view text) {
    check(sqlite3_bind_text64(m_statement.get(), parameter + 1, text.empty() ? "" : text.data(), text.size(),
                              SQLITE_STATIC, SQLITE_UTF8));
}

void SqliteStatement::bindBlob(int parameter, std::string_view bytes) {
    check(sqlite3_bind_blob64(m_statement.get(), parameter + 1, bytes.empty() ? "" : bytes.data(), bytes.size(),
                              SQLITE_STATIC));
}

bool SqliteStatement::step() {
    errno = 0;
    const int result = sqlite3_step(m_statement.get());
    if (result == SQLITE_ROW || result == SQLITE_DONE) {
        return result == SQLITE_ROW;
    }
    const SqliteError error = errorOf(sqlite3_db_handle(m_statement.get()), result);
    reset();
    throw error;
}

void SqliteStatement::run() {
    while (step()) {
    }
    reset();
}

void SqliteStatement::reset() {
    // What went wrong was reported by the step; the bound texts belong to the caller and end with this use.
    sqlite3_reset(m_statement.get());
    sqlite3_clear_bindings(m_statement.get());
}

std::int64_t SqliteStatement::number(int column) const {
    return sqlite3_column_int64(m_statement.get(), column);
}

std::string_view SqliteStatement::text(int column) const {
    const auto* const bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_statement.get(), column));
    return {bytes != nullptr ? bytes : "", static_cast<std::size_t>(sqlite3_column_bytes(m_statement.get(), column))};
}

std::string_view SqliteStatement::blob(int column) const {
    const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(m_statement.get(), column));
    return {bytes != nullptr ? bytes : "", static_cast<std::size_t>(sqlite3_column_bytes(m_statement.get(), column))};
}

SqliteBlob::SqliteBlob(const SqliteDatabase& database, const char* table, const char* column, std::int64_t row)
    : m_database(database) {
    sqlite3_blob* blob = nullptr;
    errno = 0;
    const int result = sqlite3_blob_open(database.handle(), "main", table, column, row, 0, &blob);
    m_blob.reset(blob);
    if (result != SQLITE_OK) {
        fail(database.handle(), result);
    }
}

void SqliteBlob::Close::operator()(sqlite3_blob* blob) const {
    sqlite3_blob_close(blob);
}

std::string SqliteBlob::read(std::size_t at, std::size_t size) const {
    const auto whole = static_cast<std::size_t>(sqlite3_blob_bytes(m_blob.get()));
    std::string bytes(std::min(size, whole - std::min(at, whole)), '\0');
    errno = 0;
    const int result =
        sqlite3_blob_read(m_blob.get(), bytes.data(), static_cast<int>(bytes.size()), static_cast<int>(at));
    if (result != SQLITE_OK) {
        fail(m_database.handle(), result);
    }
    return bytes;
}

SqliteTransaction::SqliteTransaction(const SqliteDatabase& database)
    : m_database(database) {
    m_database.execute("BEGIN IMMEDIATE");
}

SqliteTransaction::~SqliteTransaction() {
    if (m_open) {
        // After some errors SQLite has rolled back by itself; then this one fails, and nothing is lost by it.
        sqlite3_exec(m_database.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

void SqliteTransaction::commit() {
    m_database.execute("COMMIT");
    m_open = false;
}

} // namespace dorvantel::service
