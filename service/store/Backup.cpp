// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/Backup.h"

#include "service/store/Schema.h"
#include "service/store/StoreCheck.h"
#include "service/store/StoreFile.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fstream>

#include <fcntl.h>
#include <sqlite3.h>

namespace dorvantel::service {

namespace {

namespace fs = std::filesystem;

/// What SQLite keeps beside a file that is not closed.
constexpr std::array logSuffixes{"-wal", "-shm", "-journal"};

void refuseStore(const fs::path& file, const fs::path& store) {
    std::error_code missing;
    if (fs::equivalent(file, store, missing)) {
        throw FileError(file.string() + ": it is the store itself");
    }
}

std::string headerOf(const fs::path& file) {
    std::string header(storeHeaderSize, '\0');
    std::ifstream input(file, std::ios::binary);
    input.read(header.data(), std::ssize(header));
    header.resize(static_cast<std::size_t>(input.gcount()));
    return header;
}

/// Whoever opens the store the next time would take it for what it is named.
void refuseNameBesideAStore(const fs::path& file) {
    const std::string name = file.string();
    for (const std::string_view suffix : {"-wal", "-shm", "-journal", ".lock"}) {
        if (name.ends_with(suffix) && fs::exists(name.substr(0, name.size() - suffix.size()))) {
            throw FileError(name + ": this is a name of what a store keeps beside it");
        }
    }
}

/// Only an earlier backup is replaced: a slip of the keyboard must not cost somebody another file.
void refuseOtherContent(const fs::path& file) {
    std::error_code unknown;
    if (!fs::exists(file, unknown)) {
        return;
    }
    const bool isEmpty = fs::is_regular_file(file, unknown) && fs::file_size(file, unknown) == 0;
    if (!isEmpty && !isStoreHeader(headerOf(file))) {
        throw FileError(file.string() + ": it is no backup, so it is not replaced");
    }
}

/// A new file beside an old log would be taken for the one that the log belongs to.
void refuseOpenFile(const fs::path& file) {
    for (const char* const suffix : logSuffixes) {
        if (fs::exists(file.string() + suffix)) {
            throw FileError(file.string() + ": it is in use as a store, or was not closed: " + file.string() + suffix +
                            " is beside it");
        }
    }
}

/// In one step, so that a service that writes all the time cannot make the copy begin again and again; in a write-ahead
/// log the copy's reading holds nobody up.
void copyDatabase(const SqliteDatabase& from, const SqliteDatabase& to) {
    sqlite3_backup* const backup = sqlite3_backup_init(to.handle(), "main", from.handle(), "main");
    errno = 0;
    const int copied = backup != nullptr ? sqlite3_backup_step(backup, -1) : sqlite3_errcode(to.handle());
    const int finished = sqlite3_backup_finish(backup);
    if (copied != SQLITE_DONE || finished != SQLITE_OK) {
        const int error = primaryCode(copied != SQLITE_DONE ? copied : finished);
        throw SqliteError(error, "the copy failed: " + std::string(sqlite3_errstr(error)));
    }
}

/// From here on, everything is in the one file.
void leaveLog(const SqliteDatabase& database) {
    if (database.text("PRAGMA journal_mode = DELETE") != "delete") {
        throw SqliteError(SQLITE_BUSY, "another program reads the file");
    }
}

/// The name that a store gets when another takes its place; nothing has it yet.
fs::path asideName(const fs::path& store) {
    std::array<char, 32> time{};
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    std::strftime(time.data(), time.size(), "%Y%m%dT%H%M%SZ", gmtime_r(&now, &utc));
    const std::string name = store.string() + ".before-restore-" + time.data();
    fs::path free = name;
    for (int i = 2; fs::exists(free); ++i) {
        free = name + "-" + std::to_string(i);
    }
    return free;
}

/// Moves what is in the log of a store into its file and makes sure that nobody else has it open, so that the file
/// alone is the store. One that is too damaged for that stays as it is, with its log.
void closeInOrder(const fs::path& store) {
    const std::string header = headerOf(store);
    if (!isStoreHeader(header)) {
        if (header.starts_with("SQLite format 3")) {
            throw SchemaError(SchemaError::Kind::Foreign, "the file is a database of another program");
        }
        return;
    }
    try {
        leaveLog(SqliteDatabase(store.string(), SqliteDatabase::Access::ReadWriteCreate));
    } catch (const SqliteError& error) {
        if (error.code() == SQLITE_BUSY) {
            throw StoreInUse(store.string() + ": another program reads this store");
        }
        if (error.code() != SQLITE_CORRUPT && error.code() != SQLITE_NOTADB) {
            throw StoreFileError(store.string() +
                                 ": it cannot be closed in order, so nothing was changed: " + error.what());
        }
    }
}

void moveLog(const fs::path& from, const fs::path& to) {
    for (const char* const suffix : logSuffixes) {
        if (fs::exists(from.string() + suffix)) {
            fs::rename(from.string() + suffix, to.string() + suffix);
        }
    }
}

/// In one step where the file system can, so that at no moment the store is missing. Gives the name that the store has
/// then.
fs::path exchange(const fs::path& made, const fs::path& store) {
    if (renameat2(AT_FDCWD, made.c_str(), AT_FDCWD, store.c_str(), RENAME_EXCHANGE) == 0) {
        return made;
    }
    fs::path aside = asideName(store);
    std::error_code failed;
    fs::rename(store, aside, failed);
    if (!failed) {
        fs::rename(made, store, failed);
        if (failed) {
            fs::rename(aside, store);
        }
    }
    if (failed) {
        fs::remove(made);
        throw FileError(store.string() + ": it cannot be put in place: " + failed.message());
    }
    return aside;
}

/// Puts the new file in the store's place and keeps the store under another name. What is left of the log of one that
/// is damaged or gone goes first: beside another file, SQLite would put it into that. A sound one has none by then.
std::optional<fs::path> takePlaceOf(const fs::path& store, NewFile& made) {
    closeInOrder(store);
    const auto held = holdNewFiles();
    const fs::path free = asideName(store);
    moveLog(store, free);
    std::optional<fs::path> aside;
    try {
        if (fs::exists(store)) {
            made.putBeside(free);
            aside = exchange(free, store);
        } else {
            made.putInPlace();
        }
    } catch (...) {
        moveLog(free, store);
        throw;
    }
    if (aside && *aside != free) {
        moveLog(free, *aside);
    }
    syncFolder(store.parent_path());
    return aside;
}

} // namespace

std::int64_t backUp(const fs::path& store, const fs::path& file, bool isReplacing) {
    const SqliteDatabase from = openForReading(onlyPathOf(store).string());
    refuseStore(file, store);
    refuseNameBesideAStore(file);
    refuseOpenFile(file);
    if (isReplacing) {
        refuseOtherContent(file);
    }
    NewFile made(file, isReplacing ? NewFile::Kind::Replacement : NewFile::Kind::File);
    StoreReport report;
    try {
        const SqliteDatabase copy(made.path().string(), SqliteDatabase::Access::ReadWriteCreate);
        copyDatabase(from, copy);
        leaveLog(copy);
        report = checkStore(copy);
    } catch (const SqliteError& error) {
        if (error.code() == SQLITE_FULL) {
            throw FileError(file.string() + ": there is no room left for it");
        }
        throw;
    }
    if (!report.problems.empty()) {
        throw SqliteError(SQLITE_CORRUPT, report.problems.front());
    }
    made.putInPlace();
    return report.candidates;
}

Restored restore(const fs::path& file, const fs::path& named) {
    const StoreLock lock(named);
    const fs::path& store = lock.path();
    refuseStore(file, store);
    NewFile made(store, NewFile::Kind::Store);
    StoreReport report;
    try {
        const SqliteDatabase from = openForReading(file.string());
        const SqliteDatabase copy(made.path().string(), SqliteDatabase::Access::ReadWriteCreate);
        copyDatabase(from, copy);
        leaveLog(copy);
        migrate(copy, migrations());
        report = checkStore(copy);
    } catch (const StoreFileError&) {
        throw FileError(file.string() + ": there is no such file");
    } catch (const SqliteError& error) {
        throw FileError(file.string() + ": it cannot be restored: " + error.what());
    } catch (const SchemaError& error) {
        if (error.kind() == SchemaError::Kind::Newer) {
            throw;
        }
        throw FileError(file.string() + ": " + error.what());
    }
    if (!report.problems.empty()) {
        throw FileError(file.string() + ": " + report.problems.front());
    }
    return {.candidates = report.candidates, .keptAside = takePlaceOf(store, made)};
}

} // namespace dorvantel::service
