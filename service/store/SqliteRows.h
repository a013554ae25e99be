// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/ranking/VectorScan.h"
#include "service/store/SqliteReader.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace dorvantel::service {

// The answers of the store that ships. Each begins with a snapshot, which keeps the store's log from beginning anew. So
// an answer that is asked to let go of it notes which versions it still has to give and reads them one by one from then
// on: versions never change, and those that are no longer current are in the history. `readers` must outlive them, and
// one thread at a time uses each. Making one throws SqliteError; what fails later is the error of a row.

/// Every candidate, or as many as asked for.
std::unique_ptr<Rows> allRows(SqliteReaderPool& readers, std::optional<std::size_t> limit);

/// The candidates that conditions leave; of those, no two are equal and there is at least one.
std::unique_ptr<Rows> matchingRows(SqliteReaderPool& readers, std::vector<Predicate> predicates,
                                   std::optional<std::size_t> limit);

/// The candidates of a ranking that was made of the versions in the snapshot of `reader`.
std::unique_ptr<Rows> rankedRows(SqliteReaderPool& readers, SqliteReaderPool::Lease reader,
                                 std::vector<RankedVector> ranking);

} // namespace dorvantel::service
