// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Record.h"
#include "service/store/Sqlite.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace dorvantel::service {

/// The one connection that writes to a store. Opening it makes or migrates the store. Every operation belongs into a
/// transaction of the caller, who also keeps threads apart. Throws SqliteError, the constructor SchemaError as well.
class SqliteWriter {
public:
    explicit SqliteWriter(const std::string& path);
    ~SqliteWriter(); ///< moves what is in the write-ahead log into the store's file

    const SqliteDatabase& database() const { return m_database; }

    /// The version of the candidate with this e-mail; nothing when there is none.
    std::optional<std::int64_t> find(std::string_view email);
    /// Stores a candidate whose e-mail is free and queues it for its vector.
    void add(const Record& record);
    /// Moves a version to the history; its PDF stays, its vector goes. Whether it was in the queue.
    bool retire(std::int64_t id, std::string_view endedBy);

    /// Replaces the vector and takes the candidate from the queue.
    struct Embedded {
        bool isKnown = false; ///< there is such a version
        bool wasQueued = false;
    };
    Embedded putVector(std::int64_t id, std::string_view model, std::span<const float> vector);
    /// Queues every candidate without a vector of `model`.
    void queueUnembedded(std::string_view model);
    /// Hands out every vector of `model`, by rising id.
    void readVectors(std::string_view model,
                     const std::function<void(std::int64_t id, std::span<const float> vector)>& take);

private:
    bool unqueue(std::int64_t id);

    SqliteDatabase m_database;
    SqliteStatement m_find;
    SqliteStatement m_add;
    SqliteStatement m_addPDF;
    SqliteStatement m_addTrait;
    SqliteStatement m_queue;
    SqliteStatement m_keep;
    SqliteStatement m_delete;
    SqliteStatement m_putVector;
    SqliteStatement m_unqueue;
};

} // namespace dorvantel::service
