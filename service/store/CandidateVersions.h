// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace dorvantel::service {

/// Writes everything stored of all versions of a candidate into `folder`, oldest first in `candidate.json`, their PDFs
/// as `version-NUMBER.pdf`. The folder must not exist or be empty; it is there with everything in it or not at all.
/// Works while a service writes to the store. Gives the number of versions; nothing is written for 0. Throws
/// StoreFileError, SchemaError, SqliteError and FileError.
std::int64_t exportCandidate(const std::filesystem::path& store, std::string_view email,
                             const std::filesystem::path& folder);

/// Removes all versions of a candidate with their PDFs and vectors and rewrites the store, so that no byte of them
/// stays in its free space or its log. The free space is cleared when there is no such candidate as well, which
/// finishes an erasure that was cut off. Gives the number of versions. Throws StoreInUse while a service has the store,
/// StoreFileError, SchemaError and SqliteError.
std::int64_t eraseCandidate(const std::filesystem::path& store, std::string_view email);

/// Forgets every vector and queues every candidate for a new one. Gives the number of candidates. Throws as
/// `eraseCandidate`.
std::int64_t forgetVectors(const std::filesystem::path& store);

} // namespace dorvantel::service
