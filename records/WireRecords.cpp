// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "records/WireRecords.h"

#include "platform/JsonDecoding.h"
#include "platform/JsonWriting.h"
#include "records/SharedReader.h"

#include <functional>

namespace dorvantel {

namespace {

JsonFailure readBytes(JsonCursor& cursor, QByteArray& out) {
    JsonFailure failure = readByteArray(cursor, &out);
    out.squeeze();
    return failure;
}

JsonFailure readQueryResult(JsonCursor& cursor, QueryResult& out, SharedReader& shared) {
    const auto text = [&shared](JsonCursor& value, QString& to) { return shared.text(value, to); };
    return readObject(
        cursor, required("name", out.name, text), required("profession", out.profession, std::ref(shared)),
        required("email", out.email, text), required("summarizedText", out.summarizedText, text),
        required("invitationMail", out.invitationMail, text), required("jsonCVData", out.jsonCVData, std::ref(shared)),
        required("score", out.score), optional("file", out.file, readBytes));
}

} // namespace

std::expected<FileResponse, DecodeError> decodeFileResponse(QByteArrayView body) {
    return decodeJson<FileResponse>(body, [](JsonCursor& cursor, FileResponse& out) {
        return readObject(cursor, optional("file", out.file, readBytes));
    });
}

std::expected<SearchResponse, DecodeError> decodeSearchResponse(QByteArrayView body) {
    using Rows = std::vector<QueryResult>;
    SharedReader shared(body.size());
    const auto readRow = [&shared](JsonCursor& cursor, QueryResult& out) {
        return readQueryResult(cursor, out, shared);
    };
    return decodeJson<SearchResponse>(body, [&](JsonCursor& cursor, SearchResponse& out) {
        return readObject(cursor, required("sql", out.sql),
                          required("result", out.result,
                                   [&](JsonCursor& list, Rows& rows) { return readArray(list, rows, readRow); }));
    });
}

std::expected<DBRecord, DecodeError> decodeDBRecord(QByteArrayView body) {
    return decodeJson<DBRecord>(body, [](JsonCursor& cursor, DBRecord& out) {
        return readObject(cursor, required("name", out.name), required("profession", out.profession),
                          required("email", out.email), required("summarizedText", out.summarizedText),
                          required("invitationMail", out.invitationMail), required("jsonCVData", out.jsonCVData),
                          optional("file", out.file, readBase64));
    });
}

std::optional<QByteArray> encodeDBRecord(const DBRecord& record) {
    return JsonObjectWriter()
        .add("name", record.name)
        .add("profession", record.profession)
        .add("email", record.email)
        .add("summarizedText", record.summarizedText)
        .add("invitationMail", record.invitationMail)
        .add("jsonCVData", record.jsonCVData)
        .add("file", record.file)
        .take();
}

std::optional<QByteArray> encodeSearchRequest(const SearchRequest& request) {
    return JsonObjectWriter().add("sql", request.sql).take();
}

std::optional<QByteArray> encodeKey(const QString& key) {
    QByteArray body;
    return appendJsonString(body, key) ? std::optional(std::move(body)) : std::nullopt;
}

} // namespace dorvantel
