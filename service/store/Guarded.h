// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Store.h"
#include "service/store/Sqlite.h"

#include <type_traits>

namespace dorvantel::service {

/// What the callers of a store are told of what SQLite reported.
StoreError storeError(const SqliteError& error);

/// Runs `work`; a SqliteError in it becomes the error of a `Stored`. Everything else goes through, the want of memory
/// (std::bad_alloc) above all, which is no trouble of the store.
template <typename Work>
auto guarded(Work&& work) -> Stored<decltype(work())> {
    try {
        if constexpr (std::is_void_v<decltype(work())>) {
            work();
            return {};
        } else {
            return work();
        }
    } catch (const SqliteError& error) {
        return std::unexpected(storeError(error));
    }
}

} // namespace dorvantel::service
