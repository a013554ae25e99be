// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/RecordedDisk.h"

#include <algorithm>
#include <fstream>
#include <mutex>
#include <new>
#include <optional>
#include <set>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace dorvantel::test {

namespace {

sqlite3_vfs* system = nullptr; ///< what really has the files

std::mutex mutex; ///< held while a step is done, so that steps are recorded in the order of their effects
std::vector<DiskStep> recorded;
bool isRecording = false;
std::map<std::string, int> fileOfName;
std::set<int> newLogs; ///< whose first sync is one of the names as well
int fileCount = 0;

void record(int file, decltype(DiskStep::what) what) {
    if (isRecording) {
        recorded.push_back({file, std::move(what)});
    }
}

/// SQLite reserves room for it and for the system's own object behind it.
struct RecordedFile {
    sqlite3_file base;
    int number;

    sqlite3_file* inner() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

RecordedFile& self(sqlite3_file* file) {
    return *reinterpret_cast<RecordedFile*>(file);
}

sqlite3_file* inner(sqlite3_file* file) {
    return self(file).inner();
}

const sqlite3_io_methods* methods(sqlite3_file* file) {
    return inner(file)->pMethods;
}

int closeFile(sqlite3_file* file) {
    return methods(file)->xClose(inner(file));
}

int readFile(sqlite3_file* file, void* bytes, int size, sqlite3_int64 at) {
    return methods(file)->xRead(inner(file), bytes, size, at);
}

int writeFile(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 at) {
    const std::scoped_lock lock(mutex);
    const int result = methods(file)->xWrite(inner(file), bytes, size, at);
    const std::string_view written(static_cast<const char*>(bytes), static_cast<std::size_t>(size));
    record(self(file).number, DiskStep::Written{static_cast<std::size_t>(at), std::string(written)});
    return result;
}

int truncateFile(sqlite3_file* file, sqlite3_int64 size) {
    const std::scoped_lock lock(mutex);
    const int result = methods(file)->xTruncate(inner(file), size);
    record(self(file).number, DiskStep::Resized{static_cast<std::size_t>(size)});
    return result;
}

int syncFile(sqlite3_file* file, int) {
    const std::scoped_lock lock(mutex);
    record(self(file).number, DiskStep::Synced{newLogs.erase(self(file).number) > 0});
    return SQLITE_OK;
}

int sizeOfFile(sqlite3_file* file, sqlite3_int64* size) {
    return methods(file)->xFileSize(inner(file), size);
}

int lockFile(sqlite3_file* file, int level) {
    return methods(file)->xLock(inner(file), level);
}

int unlockFile(sqlite3_file* file, int level) {
    return methods(file)->xUnlock(inner(file), level);
}

int checkReservedLock(sqlite3_file* file, int* isReserved) {
    return methods(file)->xCheckReservedLock(inner(file), isReserved);
}

int controlFile(sqlite3_file* file, int operation, void* argument) {
    return methods(file)->xFileControl(inner(file), operation, argument);
}

int sectorSize(sqlite3_file* file) {
    return methods(file)->xSectorSize(inner(file));
}

int characteristics(sqlite3_file* file) {
    return methods(file)->xDeviceCharacteristics(inner(file));
}

int mapShared(sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
    return methods(file)->xShmMap(inner(file), page, size, extend, memory);
}

int lockShared(sqlite3_file* file, int offset, int count, int flags) {
    return methods(file)->xShmLock(inner(file), offset, count, flags);
}

void shareBarrier(sqlite3_file* file) {
    methods(file)->xShmBarrier(inner(file));
}

int unmapShared(sqlite3_file* file, int remove) {
    return methods(file)->xShmUnmap(inner(file), remove);
}

constexpr sqlite3_io_methods recordingMethods{
    .iVersion = 2, // without mapping of the file, which would be writing that nobody sees
    .xClose = closeFile,
    .xRead = readFile,
    .xWrite = writeFile,
    .xTruncate = truncateFile,
    .xSync = syncFile,
    .xFileSize = sizeOfFile,
    .xLock = lockFile,
    .xUnlock = unlockFile,
    .xCheckReservedLock = checkReservedLock,
    .xFileControl = controlFile,
    .xSectorSize = sectorSize,
    .xDeviceCharacteristics = characteristics,
    .xShmMap = mapShared,
    .xShmLock = lockShared,
    .xShmBarrier = shareBarrier,
    .xShmUnmap = unmapShared,
    .xFetch = nullptr,
    .xUnfetch = nullptr,
};

std::string nameOf(const char* path) {
    return std::filesystem::path(path).filename().string();
}

int openFile(sqlite3_vfs*, const char* path, sqlite3_file* file, int flags, int* flagsOut) {
    const std::scoped_lock lock(mutex);
    if (path == nullptr || (flags & SQLITE_OPEN_DELETEONCLOSE) != 0) {
        return system->xOpen(system, path, file, flags, flagsOut); // nobody will ever look for it
    }
    RecordedFile& made = self(file);
    made.base.pMethods = nullptr;
    const int result = system->xOpen(system, path, made.inner(), flags, flagsOut);
    if (made.inner()->pMethods == nullptr) {
        return result;
    }
    const auto [entry, isNew] = fileOfName.try_emplace(nameOf(path), fileCount);
    if (isNew) {
        ++fileCount;
        record(entry->second, DiskStep::Made{entry->first});
        if ((flags & (SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_WAL)) != 0) {
            newLogs.insert(entry->second);
        } else {
            // The store makes its file itself and syncs the folder.
            record(entry->second, DiskStep::Synced{true});
        }
    }
    made.number = entry->second;
    made.base.pMethods = &recordingMethods;
    return result;
}

int removeFile(sqlite3_vfs*, const char* path, int isSyncingFolder) {
    const std::scoped_lock lock(mutex);
    const int result = system->xDelete(system, path, 0);
    const auto entry = fileOfName.find(nameOf(path));
    if (result == SQLITE_OK && entry != fileOfName.end()) {
        record(entry->second, DiskStep::Removed{entry->first, isSyncingFolder != 0});
        fileOfName.erase(entry);
    }
    return result;
}

/// What was there before grows to `size`: with zeros, or with what the disk had in those places.
void grow(std::string& content, std::size_t size, std::minstd_rand& random) {
    const bool isGarbage = random() % 2 == 0;
    while (content.size() < size) {
        content += isGarbage ? static_cast<char>(random()) : '\0';
    }
}

} // namespace

RecordedDisk::RecordedDisk()
    : m_files(std::make_unique<sqlite3_vfs>(*sqlite3_vfs_find(nullptr))) {
    isRecording = true;
    system = sqlite3_vfs_find(nullptr);
    m_files->zName = "recorded";
    m_files->szOsFile += static_cast<int>(sizeof(RecordedFile));
    m_files->xOpen = openFile;
    m_files->xDelete = removeFile;
    EXPECT_EQ(sqlite3_vfs_register(m_files.get(), 1), SQLITE_OK);
}

RecordedDisk::~RecordedDisk() {
    sqlite3_vfs_unregister(m_files.get());
    EXPECT_EQ(sqlite3_vfs_register(system, 1), SQLITE_OK);
}

std::size_t RecordedDisk::stepCount() const {
    const std::scoped_lock lock(mutex);
    return recorded.size();
}

std::vector<DiskStep> RecordedDisk::end() {
    const std::scoped_lock lock(mutex);
    isRecording = false;
    return std::move(recorded);
}

void DiskBeforeCut::apply(const DiskStep& step) {
    File& file = m_files[step.file];
    bool namesAreCertain = false;
    if (const auto* const made = std::get_if<DiskStep::Made>(&step.what)) {
        m_names[made->name] = step.file;
    } else if (const auto* const removed = std::get_if<DiskStep::Removed>(&step.what)) {
        m_names.erase(removed->name);
        namesAreCertain = removed->withNames;
    } else if (const auto* const synced = std::get_if<DiskStep::Synced>(&step.what)) {
        for (const DiskStep& done : file.uncertain) {
            if (const auto* const written = std::get_if<DiskStep::Written>(&done.what)) {
                file.certain.resize(std::max(file.certain.size(), written->at + written->bytes.size()));
                file.certain.replace(written->at, written->bytes.size(), written->bytes);
            } else {
                file.certain.resize(std::get<DiskStep::Resized>(done.what).size);
            }
        }
        file.uncertain.clear();
        namesAreCertain = synced->withNames;
    } else {
        file.uncertain.push_back(step);
    }
    if (namesAreCertain) {
        m_certainNames = m_names;
    }
}

std::string DiskBeforeCut::afterCut(const File& file, std::minstd_rand& random) {
    constexpr std::size_t sector = 512;
    constexpr std::minstd_rand::result_type inAll = 8;
    const auto kept = random() % (inAll + 1); // from nothing at all to everything
    const auto isKept = [&] { return random() % inAll < kept; };
    std::string content = file.certain;
    for (const DiskStep& done : file.uncertain) {
        if (const auto* const resized = std::get_if<DiskStep::Resized>(&done.what)) {
            if (isKept()) {
                content.resize(resized->size);
            }
            continue;
        }
        const auto& written = std::get<DiskStep::Written>(done.what);
        const std::size_t end = written.at + written.bytes.size();
        const bool isTorn = random() % 4 == 0;
        const bool isKeptWhole = !isTorn && isKept();
        if (isKept()) {
            grow(content, end, random); // the length may be on the disk before the bytes are
        }
        for (std::size_t at = written.at; at < end;) {
            const std::size_t next = std::min((at / sector + 1) * sector, end);
            if (isTorn ? isKept() : isKeptWhole) {
                grow(content, next, random);
                content.replace(at, next - at, written.bytes, at - written.at, next - at);
            }
            at = next;
        }
    }
    return content;
}

void DiskBeforeCut::cut(const std::filesystem::path& folder, std::minstd_rand& random) const {
    std::map<std::string, int> names = m_certainNames;
    std::map<std::string, int> changed = m_names;
    for (const auto& [name, file] : m_certainNames) {
        changed.try_emplace(name, -1);
    }
    for (const auto& [name, file] : changed) {
        if (random() % 2 == 0) {
            names[name] = file;
        }
    }
    for (const auto& [name, file] : names) {
        if (file >= 0) {
            std::ofstream(folder / name, std::ios::binary) << afterCut(m_files.at(file), random);
        }
    }
}

} // namespace dorvantel::test
