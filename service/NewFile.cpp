// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/NewFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvantel::service {

namespace {

[[noreturn]] void fail(const std::filesystem::path& path, const char* what, int error) {
    throw FileError(path.string() + ": " + what + std::strerror(error));
}

/// "folder/" and "folder" are the same place.
std::filesystem::path withoutLastSlash(const std::filesystem::path& path) {
    return path.has_filename() ? path : path.parent_path();
}

std::filesystem::path folderOf(const std::filesystem::path& path) {
    return path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
}

/// Leaves a file alone that has got the name meanwhile, unless the file system cannot tell; then whoever asked has
/// looked just before.
bool renameToFree(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    return (errno == EINVAL || errno == ENOSYS) && rename(from.c_str(), to.c_str()) == 0;
}

} // namespace

NewFile::NewFile(const std::filesystem::path& place, Kind kind)
    : m_place(withoutLastSlash(place))
    , m_kind(kind) {
    refuseTaken(); // before the work that making it is
    std::string path = m_place.string() + ".part-XXXXXX";
    const int file = kind == Kind::Folder ? -1 : mkostemp(path.data(), O_CLOEXEC);
    if (kind == Kind::Folder ? mkdtemp(path.data()) == nullptr : file < 0) {
        fail(m_place, "it cannot be made: ", errno);
    }
    if (file >= 0) {
        close(file);
    }
    m_path = path;
}

NewFile::~NewFile() {
    if (!m_path.empty()) {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
}

void NewFile::putInPlace() {
    refuseTaken();
    const bool isDone =
        m_kind == Kind::File ? renameToFree(m_path, m_place) : rename(m_path.c_str(), m_place.c_str()) == 0;
    if (!isDone) {
        fail(m_place, "it cannot be put in place: ", errno);
    }
    m_path.clear();
    syncFolder(folderOf(m_place));
}

void NewFile::putBeside(const std::filesystem::path& freeName) {
    if (!renameToFree(m_path, freeName)) {
        fail(freeName, "it cannot be put in place: ", errno);
    }
    m_path.clear();
    syncFolder(folderOf(m_place));
}

void NewFile::refuseTaken() const {
    std::error_code unknown;
    const bool isTaken = std::filesystem::exists(std::filesystem::symlink_status(m_place, unknown));
    const bool isEmptyFolder =
        std::filesystem::is_directory(m_place, unknown) && std::filesystem::is_empty(m_place, unknown);
    if (isTaken && (m_kind == Kind::File || (m_kind == Kind::Folder && !isEmptyFolder))) {
        throw FileError(m_place.string() + ": it exists already");
    }
}

void writeNewFile(const std::filesystem::path& path, std::string_view bytes) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0) {
        fail(path, "it cannot be made: ", errno);
    }
    int error = 0;
    while (!bytes.empty() && error == 0) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        error = written < 0 ? errno : 0;
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    if (error == 0 && fsync(file) != 0) {
        error = errno;
    }
    close(file);
    if (error != 0) {
        fail(path, "it cannot be written: ", error);
    }
}

void syncFolder(const std::filesystem::path& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        fsync(descriptor);
        close(descriptor);
    }
}

} // namespace dorvantel::service
