// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>

namespace dorvantel::service {

/// Why the store's file cannot be used; the message names the file and the reason.
class StoreFileError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// dorvantel/records.sqlite in the user's data folder (XDG_DATA_HOME, else ~/.local/share); nothing when neither
/// variable gives an absolute path.
std::optional<std::filesystem::path> defaultStorePath();

/// Another program of this kind has the store.
class StoreInUse : public StoreFileError {
    using StoreFileError::StoreFileError;
};

/// The one path of a store, whatever symbolic links lead to it: what lies beside it is named after that one. Refuses a
/// folder, a link that leads nowhere, and a file with several names (hard links), because each name would have a log of
/// its own. Throws StoreFileError.
std::filesystem::path onlyPathOf(const std::filesystem::path& store);

/// Keeps other services and the commands that change a store away from it while this object lives. Makes the missing
/// folders so that only their owner gets in; the store itself need not exist.
class StoreLock {
public:
    explicit StoreLock(const std::filesystem::path& path); ///< throws StoreFileError
    StoreLock(const StoreLock&) = delete;
    StoreLock& operator=(const StoreLock&) = delete;
    ~StoreLock();
    const std::filesystem::path& path() const { return m_path; } ///< of the store, its only one

private:
    std::filesystem::path m_path;
    int m_lock = -1;
};

/// A store's file for one program: locks it, and makes the file so that only its owner gets in, or takes that right
/// from everybody else where a store had it. A file that is no store of this program is left as it is.
class StoreFile {
public:
    explicit StoreFile(const std::filesystem::path& path);              ///< throws StoreFileError
    const std::filesystem::path& path() const { return m_lock.path(); } ///< its only one

private:
    StoreLock m_lock;
};

} // namespace dorvantel::service
