// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/NewFile.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <set>

#include <fcntl.h>
#include <sys/file.h>
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

constexpr const char* partMark = ".part-";
constexpr std::size_t partLetters = 6;

/// Both outlive the objects of the program, because a thread may abandon files while it ends.
std::recursive_mutex& newFilesMutex() {
    static auto* const mutex = new std::recursive_mutex;
    return *mutex;
}

std::set<std::filesystem::path>& unfinished() {
    static auto* const paths = new std::set<std::filesystem::path>;
    return *paths;
}

/// With what SQLite puts beside a file while it writes to it.
void removePart(const std::filesystem::path& path) {
    for (const char* const suffix : {"", "-journal", "-wal", "-shm"}) {
        std::error_code ignored;
        std::filesystem::remove_all(path.string() + suffix, ignored);
    }
}

struct Owner {
    uid_t user;
    gid_t group;
};

/// To whom root gives what it makes beside `neighbour`; nothing for everybody else, and where nobody is known.
std::optional<Owner> ownerBeside(const std::filesystem::path& neighbour) {
    struct stat status{};
    if (geteuid() == 0 && (stat(neighbour.c_str(), &status) == 0 || stat(folderOf(neighbour).c_str(), &status) == 0)) {
        return Owner{status.st_uid, status.st_gid};
    }
    return std::nullopt;
}

/// Whether nobody is making it, and it is ours or belongs to whom we would have given it.
bool isLeftover(const std::filesystem::path& part, const std::optional<Owner>& receiver) {
    const int descriptor = open(part.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    struct stat status{};
    const bool isKnown = descriptor >= 0 && fstat(descriptor, &status) == 0;
    const bool isOurs = isKnown && (status.st_uid == geteuid() || (receiver && status.st_uid == receiver->user));
    const bool isAbandoned = isOurs && flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    if (descriptor >= 0) {
        close(descriptor);
    }
    return isAbandoned;
}

} // namespace

NewFile::NewFile(const std::filesystem::path& place, Kind kind)
    : m_place(withoutLastSlash(place))
    , m_kind(kind) {
    refuseTaken(); // before the work that making it is
    const auto held = holdNewFiles();
    removeLeftovers(m_place, kind);
    std::string path = m_place.string() + partMark + "XXXXXX";
    if (kind == Kind::Folder) {
        m_lock = mkdtemp(path.data()) != nullptr ? open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC) : -1;
    } else {
        m_lock = mkostemp(path.data(), O_CLOEXEC);
    }
    if (m_lock < 0) {
        fail(m_place, "it cannot be made: ", errno);
    }
    flock(m_lock, LOCK_EX);
    if (kind == Kind::Store) {
        giveToOwnerOf(m_place, m_lock);
    }
    m_path = path;
    unfinished().insert(m_path);
}

NewFile::~NewFile() {
    const auto held = holdNewFiles();
    if (!m_path.empty()) {
        removePart(m_path);
        unfinished().erase(m_path);
    }
    close(m_lock);
}

void NewFile::isNamed() {
    unfinished().erase(m_path);
    m_path.clear();
    syncFolder(folderOf(m_place));
}

void NewFile::putInPlace() {
    const auto held = holdNewFiles();
    refuseTaken();
    const bool isDone =
        m_kind == Kind::File ? renameToFree(m_path, m_place) : rename(m_path.c_str(), m_place.c_str()) == 0;
    if (!isDone) {
        fail(m_place, "it cannot be put in place: ", errno);
    }
    isNamed();
}

void NewFile::putBeside(const std::filesystem::path& freeName) {
    const auto held = holdNewFiles();
    if (!renameToFree(m_path, freeName)) {
        fail(freeName, "it cannot be put in place: ", errno);
    }
    isNamed();
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

void removeLeftovers(const std::filesystem::path& place, NewFile::Kind kind) {
    const auto receiver = kind == NewFile::Kind::Store ? ownerBeside(place) : std::nullopt;
    const std::string start = place.filename().string() + partMark;
    std::error_code unreadable;
    for (const auto& entry : std::filesystem::directory_iterator(folderOf(place), unreadable)) {
        const std::string name = entry.path().filename().string();
        const bool isPart = name.starts_with(start) && name.size() == start.size() + partLetters &&
                            std::ranges::all_of(name.substr(start.size()),
                                                [](unsigned char letter) { return std::isalnum(letter) != 0; });
        if (isPart && isLeftover(entry.path(), receiver)) {
            removePart(entry.path());
        }
    }
}

void abandonNewFiles() {
    newFilesMutex().lock(); // until the process ends
    for (const std::filesystem::path& path : unfinished()) {
        removePart(path);
    }
}

std::unique_lock<std::recursive_mutex> holdNewFiles() {
    return std::unique_lock(newFilesMutex());
}

void giveToOwnerOf(const std::filesystem::path& neighbour, int made) {
    if (const auto owner = ownerBeside(neighbour); owner && fchown(made, owner->user, owner->group) != 0) {
        return; // where root may not do that, files are not told apart by their owners
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
