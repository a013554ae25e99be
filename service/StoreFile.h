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

/// A store's file for one program: makes the missing folders and the file so that only their owner gets in, takes that
/// right from everybody else where a store had it, and keeps other services away from it while this object lives. A
/// file that is no store of this program is left as it is.
class StoreFile {
public:
    explicit StoreFile(std::filesystem::path path); ///< throws StoreFileError
    StoreFile(const StoreFile&) = delete;
    StoreFile& operator=(const StoreFile&) = delete;
    ~StoreFile();

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
    int m_lock = -1;
};

} // namespace dorvantel::service
