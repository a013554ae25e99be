// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/DBRecordRepresentation.h"
#include "data/SearchResults.h"

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace dorvantel {

/// What went wrong in a call of the records service.
enum class APIError {
    responseProblem, ///< transport error, no HTTP response, unexpected status code, or no body
    decodingProblem, ///< the body did not decode into the expected record
    encodingProblem, ///< the request body could not be encoded
};

/// The case's name, as log lines show it.
QString caseName(APIError error);

/// The store of candidates, as the rest of the program is written against it. Lives on the UI thread; every call
/// returns at once, and every completion is called once, on the UI thread, never from inside the call. Only a statement
/// that has no UTF-8 form is never answered. Calls run independently: answers may come in any order.
class RecordsService {
public:
    template <typename Value>
    using Completion = std::function<void(std::expected<Value, APIError>)>;

    virtual ~RecordsService() = default;

    /// All stored candidates, without their PDFs.
    virtual void fetchAll(Completion<std::vector<DBRecordPointer>> completion) = 0;

    /// One candidate's PDF by its e-mail; no bytes when the service has none, which is not an error.
    virtual void fetchPDF(const QString& key, Completion<std::optional<QByteArray>> completion) = 0;

    /// Stores `record` and gives back what the service says it stored.
    virtual void insertResume(const DBRecordRepresentation& record, Completion<DBRecord> completion) = 0;

    /// Deletes by e-mail. The outcome is only logged: the caller does not wait for it.
    virtual void deleteResume(const QString& key) = 0;

    /// Runs a search statement.
    virtual void search(const QString& sql, Completion<std::shared_ptr<IdentifiableSearchResponse>> completion) = 0;
};

} // namespace dorvantel
