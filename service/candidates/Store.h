// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Plan.h"
#include "service/candidates/Record.h"

#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvantel::service {

/// Why a store did not do what it was asked. `message` is a sentence for people that holds nothing of any record.
struct StoreError {
    enum class Kind {
        Busy,         ///< another program kept the store locked for too long; worth trying again
        Full,         ///< no room left; nothing was changed
        VectorLength, ///< the plan's vector cannot be compared with the stored ones
        Failed,       ///< everything else: broken file, broken disk
    };
    Kind kind = Kind::Failed;
    std::string message;
};

template <typename Value>
using Stored = std::expected<Value, StoreError>;

/// One candidate of an answer. The views hold until the next row is asked for.
struct Row {
    std::string_view name;
    std::string_view profession;
    std::string_view email;
    std::string_view summarizedText;
    std::string_view invitationMail;
    std::string_view cvDataJSON; ///< the object form, ready to be put into an answer
    float score = 0;             ///< 0 to 100
};

/// An answer, row by row, as the store was when the plan began to run; later writes do not show. Used by one thread at
/// a time. Must not outlive its store.
class Rows {
public:
    Rows() = default;
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;
    virtual ~Rows() = default;

    /// Fills `row`; false at the end of the answer.
    virtual Stored<bool> next(Row& row) = 0;
};

/// A stored candidate's PDF, when there is one. A version never changes, so its pieces belong together.
struct StoredPDF {
    std::int64_t version = 0;
    std::optional<std::size_t> size = {}; ///< in bytes
};

/// What an operator wants to know of a store.
struct StoreStatus {
    std::int64_t records = 0;        ///< candidates, without their earlier versions
    std::int64_t vectorsPending = 0; ///< candidates that wait for a vector
    std::string embeddingModel;      ///< whose vectors are ranked; empty: none
    std::uintmax_t bytes = 0;        ///< what the store takes on the disk
};

/// A candidate that waits for its vector: what the vector is made of.
struct Unembedded {
    std::int64_t id = 0; ///< this version of the candidate; another insert of it has another one
    std::string name;    ///< with the e-mail, to be found in the summary and left out
    std::string email;
    std::string profession;
    std::string summarizedText;
    CVData cvData;
};

/// Keeps the candidates and runs plans over them. Any thread may call; what returned without an error is durable.
class Store {
public:
    Store() = default;
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    virtual ~Store() = default;

    /// Stores `record`; one with the same e-mail is replaced, and its earlier version kept aside.
    virtual Stored<void> insert(const Record& record) = 0;

    /// Removes the candidate and keeps it aside; false when there was none.
    virtual Stored<bool> remove(std::string_view email) = 0;

    /// Nothing when there is no such candidate.
    virtual Stored<std::optional<StoredPDF>> pdf(std::string_view email) = 0;

    /// Up to `size` bytes of a version's PDF from `at` on, which is not behind its end.
    virtual Stored<std::string> pdfPiece(std::int64_t version, std::size_t at, std::size_t size) = 0;

    virtual Stored<std::unique_ptr<Rows>> run(const Plan& plan) = 0;

    virtual Stored<StoreStatus> status() = 0;

    /// The id of the next candidate behind `afterId` that waits for a vector, in the order of insertion.
    virtual Stored<std::optional<std::int64_t>> nextUnembedded(std::int64_t afterId) = 0;

    /// Nothing when that version of a candidate does not wait for a vector.
    virtual Stored<std::optional<Unembedded>> unembedded(std::int64_t id) = 0;

    /// Gives that version of a candidate its vector, which has unit length; false when the version is gone by now.
    virtual Stored<bool> putVector(std::int64_t id, const std::vector<float>& vector) = 0;
};

} // namespace dorvantel::service
