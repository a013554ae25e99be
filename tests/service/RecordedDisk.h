// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <variant>
#include <vector>

struct sqlite3_vfs;

namespace dorvantel::test {

/// One thing that SQLite did to the disk. Files have numbers, because a name may have another file later.
struct DiskStep {
    struct Made {
        std::string name;
    };
    struct Written {
        std::size_t at;
        std::string bytes;
    };
    struct Resized {
        std::size_t size;
    };
    /// The file's content is certain from here on, and so is which file has which name when `withNames`.
    struct Synced {
        bool withNames;
    };
    struct Removed {
        std::string name;
        bool withNames;
    };
    int file = 0;
    std::variant<Made, Written, Resized, Synced, Removed> what;
};

/// While it lives, whatever SQLite does to named files in this process is done and recorded; only nothing is synced,
/// which takes long and is worth nothing as long as the power stays. Any thread. One at a time, and every database that
/// is opened meanwhile is closed before its end.
class RecordedDisk {
public:
    RecordedDisk();
    RecordedDisk(const RecordedDisk&) = delete;
    RecordedDisk& operator=(const RecordedDisk&) = delete;
    ~RecordedDisk();

    /// How many steps were done.
    std::size_t stepCount() const;
    /// All of them. No more are recorded.
    std::vector<DiskStep> end();

private:
    std::unique_ptr<sqlite3_vfs> m_files;
};

/// A disk after some steps: what is certain, and what a power cut may still take away.
class DiskBeforeCut {
public:
    void apply(const DiskStep& step);

    /// Makes the files in `folder` as they may be after the cut: of whatever is not certain, any part is done, in any
    /// order, down to the sectors of a single write; what a file grew by without being written is anything.
    void cut(const std::filesystem::path& folder, std::minstd_rand& random) const;

private:
    struct File {
        std::string certain;
        std::vector<DiskStep> uncertain;
    };
    static std::string afterCut(const File& file, std::minstd_rand& random);

    std::map<int, File> m_files;
    std::map<std::string, int> m_names;        ///< which file has a name
    std::map<std::string, int> m_certainNames; ///< and which had it for certain
};

} // namespace dorvantel::test
