// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/store/Sqlite.h"

#include <span>
#include <string>

namespace dorvantel::service {

/// One step from a schema version to the next: the statements that change the tables.
using Migration = const char*;

/// All steps since the empty file; their count is the newest version. Steps that were released never change.
std::span<const Migration> migrations();

/// How many bytes at the start of a file tell whose it is.
constexpr std::size_t storeHeaderSize = 100;

/// Whether a file that begins like this is a store of this program, of whatever version.
bool isStoreHeader(std::string_view header);

/// Why a file is no store that this program can use.
class SchemaError : public std::runtime_error {
public:
    enum class Kind {
        Foreign, ///< a database of another program
        Newer,   ///< made by a newer version of this program
        Damaged, ///< breaks its own rules, before or after a migration
    };
    SchemaError(Kind kind, const std::string& message)
        : std::runtime_error(message)
        , m_kind(kind) {}
    Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

/// The schema version of an open store. Throws SchemaError when it is a database of another program, an empty one
/// included, or newer than `newest`, and SqliteError.
std::int64_t schemaVersion(const SqliteDatabase& database, std::int64_t newest);

/// Brings the open file to the newest of `steps`, in one transaction: it is the old version or the new one, never
/// something between. A file with records is checked before it is changed. Throws SchemaError and SqliteError.
void migrate(const SqliteDatabase& database, std::span<const Migration> steps);

} // namespace dorvantel::service
