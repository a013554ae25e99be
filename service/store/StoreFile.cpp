// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/StoreFile.h"

#include "service/store/NewFile.h"
#include "service/store/Schema.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvantel::service {

namespace {

[[noreturn]] void fail(const std::filesystem::path& path, const std::string& what) {
    throw StoreFileError(path.string() + ": " + what);
}

std::optional<std::filesystem::path> absolutePath(const char* variable) {
    const char* const value = std::getenv(variable);
    if (value == nullptr || !std::filesystem::path(value).is_absolute()) {
        return std::nullopt;
    }
    return value;
}

/// Only the folders that are made get the narrow rights: those that exist are somebody's choice.
void makeFolders(const std::filesystem::path& folder) {
    if (folder.empty() || std::filesystem::exists(folder)) {
        return;
    }
    makeFolders(folder.parent_path());
    if (mkdir(folder.c_str(), S_IRWXU) != 0) {
        if (errno != EEXIST) {
            fail(folder, std::string("the folder cannot be made: ") + std::strerror(errno));
        }
        return;
    }
    if (const int made = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); made >= 0) {
        giveToOwnerOf(folder.parent_path(), made);
        close(made);
    }
    syncFolder(folder.parent_path());
}

/// Whether the open file has content that this program did not make: it will be refused, and must stay as it is.
bool isForeign(int descriptor) {
    std::array<char, storeHeaderSize> header{};
    const ssize_t size = pread(descriptor, header.data(), header.size(), 0);
    return size != 0 && !isStoreHeader({header.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))});
}

/// Opens the file, making it when it is missing, and leaves it readable and writable by its owner alone, unless it is
/// a file of somebody else. What root makes belongs to whom the store belongs to.
int openOwnerOnly(const std::filesystem::path& path, const std::filesystem::path& store) {
    int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor >= 0) {
        giveToOwnerOf(path == store ? store.parent_path() : store, descriptor);
        syncFolder(path.parent_path()); // a power cut must not take the name of a file that holds candidates
    } else {
        descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    }
    if (descriptor < 0 || (!isForeign(descriptor) && fchmod(descriptor, S_IRUSR | S_IWUSR) != 0)) {
        const int error = errno;
        if (descriptor >= 0) {
            close(descriptor);
        }
        fail(path, std::string("the file cannot be written: ") + std::strerror(error));
    }
    return descriptor;
}

} // namespace

std::optional<std::filesystem::path> defaultStorePath() {
    if (const auto data = absolutePath("XDG_DATA_HOME")) {
        return *data / "dorvantel" / "records.sqlite";
    }
    return absolutePath("HOME").transform(
        [](const auto& home) { return home / ".local" / "share" / "dorvantel" / "records.sqlite"; });
}

std::filesystem::path onlyPathOf(const std::filesystem::path& store) {
    std::error_code error;
    const bool isLink = std::filesystem::is_symlink(store, error);
    const bool leadsNowhere = isLink && !std::filesystem::exists(store, error);
    if (leadsNowhere) {
        fail(store, "it is a link to a file that is not there");
    }
    std::filesystem::path path = std::filesystem::weakly_canonical(std::filesystem::absolute(store), error);
    if (error) {
        fail(store, error.message());
    }
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (std::filesystem::is_directory(status)) {
        fail(path, "it is a folder");
    }
    if (std::filesystem::is_regular_file(status) && std::filesystem::hard_link_count(path, error) > 1) {
        fail(path, "the file has several names (hard links); leave it one");
    }
    return path;
}

StoreLock::StoreLock(const std::filesystem::path& path)
    : m_path(onlyPathOf(path)) {
    try {
        makeFolders(m_path.parent_path());
    } catch (const std::filesystem::filesystem_error& error) {
        fail(m_path, error.code().message());
    }
    // A file of its own carries the lock: closing any descriptor of the store would drop SQLite's locks on it.
    std::filesystem::path lockPath = m_path;
    lockPath += ".lock";
    m_lock = openOwnerOnly(lockPath, m_path);
    if (flock(m_lock, LOCK_EX | LOCK_NB) != 0) {
        close(m_lock);
        throw StoreInUse(m_path.string() + ": another dorvantel-records uses this store");
    }
}

StoreLock::~StoreLock() {
    close(m_lock);
}

StoreFile::StoreFile(const std::filesystem::path& path)
    : m_lock(path) {
    close(openOwnerOnly(m_lock.path(), m_lock.path()));
}

} // namespace dorvantel::service
