// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>

namespace dorvantel::service {

/// Why a file or folder that somebody named cannot be used; the message names it and the reason.
class FileError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A file or folder that is made under another name beside its place, readable by its owner alone, so that under its
/// own name it is there whole or not at all. What was not put in place is removed with this object; what a process left
/// that was killed, by the next object of this kind for the same place. Throws FileError.
class NewFile {
public:
    enum class Kind {
        File,        ///< refused when the name is taken
        Replacement, ///< a file that takes the place of one that has the name
        Store,       ///< the same for a store; what root makes belongs to the store's owner
        Folder,      ///< refused when the name is taken, but by an empty folder
    };
    NewFile(const std::filesystem::path& place, Kind kind);
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    /// Where it is made.
    const std::filesystem::path& path() const { return m_path; }

    /// Gives it its name, or another one in the same folder that nothing has yet.
    void putInPlace();
    void putBeside(const std::filesystem::path& freeName);

private:
    void refuseTaken() const;
    void isNamed();

    std::filesystem::path m_place;
    std::filesystem::path m_path;
    Kind m_kind;
    int m_lock = -1; ///< tells other processes that it is being made
};

/// Removes what processes of the same account left that were killed while they made a NewFile for this place; for root,
/// also what belongs to the account that root gives a new one to.
void removeLeftovers(const std::filesystem::path& place, NewFile::Kind kind);

/// Removes whatever this process has not put in place, and keeps its threads from putting anything there or beginning
/// anew. For a process that is about to end.
void abandonNewFiles();

/// Lets `abandonNewFiles` wait for steps that belong together.
std::unique_lock<std::recursive_mutex> holdNewFiles();

/// Gives a file or folder that was just made for root to the owner of `neighbour`, or of the folder of that when it
/// does not exist: root must not lock out the account that the service runs under. For everybody else it does nothing.
void giveToOwnerOf(const std::filesystem::path& neighbour, int made);

/// Makes a file that must not exist yet, its owner's alone, and writes it to the disk. Throws FileError.
void writeNewFile(const std::filesystem::path& path, std::string_view bytes);

/// Writes the names in a folder to the disk, as far as the file system can.
void syncFolder(const std::filesystem::path& folder);

} // namespace dorvantel::service
