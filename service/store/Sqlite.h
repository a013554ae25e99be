// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_blob;
struct sqlite3_stmt;

namespace dorvantel::service {

/// What SQLite reported. Thrown inside the store only; its callers get a `StoreError`.
class SqliteError : public std::runtime_error {
public:
    SqliteError(int code, const std::string& message)
        : std::runtime_error(message)
        , m_code(code) {}
    int code() const { return m_code; } ///< the primary result code

private:
    int m_code;
};

/// The primary code of what a call of SQLite gave, before which errno was 0: a quota or a limit on the size of files is
/// SQLITE_FULL. SQLite knows only the full disk as that and takes the others for errors of the disk.
int primaryCode(int result);

/// An open connection. Used by one thread at a time. Nothing is written outside the file's folder: one that reads keeps
/// what is temporary in memory, one that writes keeps it in temporary files beside the database.
class SqliteDatabase {
public:
    enum class Access { ReadOnly, ReadWriteCreate };

    /// Waits up to `busyMs` for the locks of others before it reports SQLITE_BUSY.
    SqliteDatabase(const std::string& path, Access access, int busyMs = 5'000);

    sqlite3* handle() const { return m_handle.get(); }
    /// Runs statements that give no rows. For texts of this program only.
    void execute(const char* sql) const;
    /// The first column of the first row.
    std::int64_t number(const std::string& sql) const;
    std::string text(const std::string& sql) const;

private:
    struct Close {
        void operator()(sqlite3* handle) const;
    };
    std::unique_ptr<sqlite3, Close> m_handle;
};

/// A prepared statement that is used again and again. Columns and parameters count from 0.
class SqliteStatement {
public:
    SqliteStatement(const SqliteDatabase& database, std::string_view sql);

    void bind(int parameter, std::int64_t value);
    void bind(int parameter, std::string_view text);
    void bindBlob(int parameter, std::string_view bytes);

    /// True when there is a row.
    bool step();
    /// Steps to the end and makes the statement ready for the next use.
    void run();
    /// Ends the read, so that its rows no longer hold anything.
    void reset();

    std::int64_t number(int column) const;
    std::string_view text(int column) const; ///< holds until the next step
    std::string_view blob(int column) const; ///< holds until the next step

private:
    void check(int result) const;

    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

/// A blob that is read in pieces, so that it need not be in memory as a whole. Throws SqliteError, also when its row
/// has changed since it was opened. `database` must outlive it, and one thread at a time uses both.
class SqliteBlob {
public:
    SqliteBlob(const SqliteDatabase& database, const char* table, const char* column, std::int64_t row);
    /// Up to `size` bytes from `at` on, which is not behind the end.
    std::string read(std::size_t at, std::size_t size) const;

private:
    struct Close {
        void operator()(sqlite3_blob* blob) const;
    };
    const SqliteDatabase& m_database;
    std::unique_ptr<sqlite3_blob, Close> m_blob;
};

/// A transaction that is rolled back unless it was committed.
class SqliteTransaction {
public:
    explicit SqliteTransaction(const SqliteDatabase& database); ///< for writing; takes the write lock at once
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;
    ~SqliteTransaction();
    void commit();

private:
    const SqliteDatabase& m_database;
    bool m_open = true;
};

} // namespace dorvantel::service
