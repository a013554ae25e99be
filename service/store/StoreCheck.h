// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/store/Sqlite.h"

#include <string>
#include <vector>

namespace dorvantel::service {

/// What a store holds and what is wrong with it.
struct StoreReport {
    std::int64_t version = 0;    ///< of the schema
    std::int64_t candidates = 0; ///< current ones
    std::int64_t earlier = 0;    ///< replaced and deleted versions
    std::int64_t pdfs = 0;
    std::int64_t vectors = 0;
    std::vector<std::string> problems; ///< sentences that quote nothing of any candidate; empty: in order
};

/// Opens a store that exists, to read it, and judges whose it is. Works while a service writes to it. Throws
/// StoreFileError when there is none, SchemaError and SqliteError.
SqliteDatabase openForReading(const std::string& path);

/// Reads the whole store, as it is at one moment. Throws SqliteError when that is not even possible.
StoreReport checkStore(const SqliteDatabase& database);

} // namespace dorvantel::service
