// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/store/NewFile.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace dorvantel::service {

/// Copies a store as it is at one moment into `file`, which is one whole file with nothing beside it, its owner's
/// alone, checked before it gets its name. Works while a service writes to the store. An earlier backup of this name is
/// replaced only when told so, anything else never. Gives the number of candidates. Throws StoreFileError, SchemaError,
/// SqliteError and FileError.
std::int64_t backUp(const std::filesystem::path& store, const std::filesystem::path& file, bool isReplacing);

struct Restored {
    std::int64_t candidates = 0;
    std::optional<std::filesystem::path> keptAside; ///< the store that was there
};

/// Puts a copy of the backup in the store's place, brought to the newest schema and checked first. A store that was
/// there, sound or damaged, gets another name beside it; a database of another program is refused. Throws StoreInUse
/// and StoreFileError, SchemaError, SqliteError, and FileError for what is wrong with the backup.
Restored restore(const std::filesystem::path& file, const std::filesystem::path& store);

} // namespace dorvantel::service
