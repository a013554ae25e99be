// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/DBRecord.h"
#include "data/DBRecordRepresentation.h"
#include "data/SearchResults.h"
#include "platform/Decoding.h"

#include <QByteArray>
#include <QByteArrayView>

#include <expected>
#include <optional>
#include <vector>

namespace dorvantel {

// The JSON bodies of the records service. All functions are pure and may run on any thread. Lists, searches and PDF
// downloads carry `jsonCVData` as an object and PDFs as arrays of byte values; an insert and its answer carry them as a
// JSON text and as base64. Both come from the service's contract.

/// One record of a list answer. PDFs that the service sends along are checked and dropped: they are fetched on demand.
struct DBRecordResponse {
    QString name;
    QString profession;
    QString email;
    QString summarizedText;
    std::optional<QString> invitationMail;
    JSONCVData jsonCVData;
};

/// The candidate `id` that the rest of the program holds for a listed record, without a PDF.
DBRecordPointer makeRepresentation(DBRecordResponse record, const QUuid& id);

/// A list answer, `{"response": […]}`, as the candidates made of its records.
using QueryResponse = std::vector<DBRecordPointer>;

/// The answer of a PDF download.
struct FileResponse {
    std::optional<QByteArray> file;
};

/// The body of a search.
struct SearchRequest {
    QString sql; ///< the whole statement
};

/// Values that come back in many records (genders, professions, skills, languages) share their memory, and the other
/// texts stand in few large blocks.
std::expected<QueryResponse, DecodeError> decodeQueryResponse(QByteArrayView body);

std::expected<FileResponse, DecodeError> decodeFileResponse(QByteArrayView body);
std::expected<SearchResponse, DecodeError> decodeSearchResponse(QByteArrayView body);
std::expected<DBRecord, DecodeError> decodeDBRecord(QByteArrayView body);

/// The request bodies; none when a text has no UTF-8 form.
std::optional<QByteArray> encodeDBRecord(const DBRecord& record);
std::optional<QByteArray> encodeSearchRequest(const SearchRequest& request);
std::optional<QByteArray> encodeKey(const QString& key);

} // namespace dorvantel
