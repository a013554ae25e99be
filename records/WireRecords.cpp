// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "records/WireRecords.h"

#include "platform/JsonDecoding.h"
#include "platform/JsonWriting.h"
#include "records/SharedStrings.h"

#include <QRandomGenerator>

#include <array>
#include <functional>
#include <iterator>
#include <tuple>

namespace dorvantel {

namespace {

/// Reads strings that come back in many records.
class SharedReader {
public:
    JsonFailure operator()(JsonCursor& cursor, QString& out) {
        if (JsonFailure failure = expectKind(cursor, JsonCursor::Kind::String, "String")) {
            return failure;
        }
        out = m_strings.read(cursor);
        return std::nullopt;
    }
    JsonFailure operator()(JsonCursor& cursor, QStringList& out) {
        // Gathered first, so that a list is made once and as long as it has to be.
        JsonFailure failure = readArray(cursor, m_gathered, *this);
        out = QStringList(std::move_iterator(m_gathered.begin()), std::move_iterator(m_gathered.end()));
        return failure;
    }
    JsonFailure operator()(JsonCursor& cursor, JSONCVData& out) {
        const auto self = std::ref(*this);
        return readObject(cursor, required("gender", out.gender, self), required("softSkills", out.softSkills, self),
                          required("techSkills", out.techSkills, self), required("languages", out.languages, self));
    }

private:
    SharedStrings m_strings;
    std::vector<QString> m_gathered;
};

JsonFailure readListedRecord(JsonCursor& cursor, DBRecordResponse& out, SharedReader& shared) {
    std::optional<std::tuple<>> file; // checked, not kept
    return readObject(cursor, required("name", out.name), required("profession", out.profession, std::ref(shared)),
                      required("email", out.email), required("summarizedText", out.summarizedText),
                      optional("invitationMail", out.invitationMail),
                      required("jsonCVData", out.jsonCVData, std::ref(shared)),
                      optional("file", file, [](JsonCursor& bytes, auto&) { return readByteArray(bytes, nullptr); }));
}

JsonFailure readBytes(JsonCursor& cursor, QByteArray& out) {
    JsonFailure failure = readByteArray(cursor, &out);
    out.squeeze();
    return failure;
}

JsonFailure readQueryResult(JsonCursor& cursor, QueryResult& out, SharedReader& shared) {
    return readObject(cursor, required("name", out.name), required("profession", out.profession, std::ref(shared)),
                      required("email", out.email), required("summarizedText", out.summarizedText),
                      required("invitationMail", out.invitationMail),
                      required("jsonCVData", out.jsonCVData, std::ref(shared)), required("score", out.score),
                      optional("file", out.file, readBytes));
}

/// A random identity. The system's generator, which makes the seed, would take longer than decoding the record does.
QUuid randomId(QRandomGenerator& random) {
    std::array<quint32, 4> bits{};
    random.fillRange(bits.data(), bits.size());
    const auto word = [&bits](int index) { return static_cast<ushort>(bits[1] >> 16 * index); };
    const auto byte = [&bits](std::size_t index) { return static_cast<uchar>(bits[2 + index / 4] >> index % 4 * 8); };
    const auto version = static_cast<ushort>((word(1) & 0x0FFF) | 0x4000);
    const auto variant = static_cast<uchar>((byte(0) & 0x3F) | 0x80);
    return {bits[0], word(0), version, variant, byte(1), byte(2), byte(3), byte(4), byte(5), byte(6), byte(7)};
}

/// Writes an object member by member; what was written is lost as soon as one text cannot be.
class ObjectWriter {
public:
    ObjectWriter& add(const char* key, const QString& text) {
        begin(key);
        m_ok = appendJsonString(m_out, text) && m_ok;
        return *this;
    }
    ObjectWriter& add(const char* key, const QByteArray& base64) {
        begin(key);
        m_out += '"' + base64 + '"';
        return *this;
    }
    std::optional<QByteArray> take() {
        m_out += '}';
        return m_ok ? std::optional(std::move(m_out)) : std::nullopt;
    }

private:
    void begin(const char* key) {
        m_out += m_out.isEmpty() ? "{\"" : ",\"";
        m_out += key;
        m_out += "\":";
    }

    QByteArray m_out;
    bool m_ok = true;
};

} // namespace

DBRecordPointer makeRepresentation(DBRecordResponse record, const QUuid& id) {
    auto candidate = std::make_shared<DBRecordRepresentation>(id);
    candidate->name = std::move(record.name);
    candidate->profession = std::move(record.profession);
    candidate->email = std::move(record.email);
    candidate->summarizedText = std::move(record.summarizedText);
    candidate->invitationMail = std::move(record.invitationMail);
    candidate->jsonCVData = std::move(record.jsonCVData);
    return candidate;
}

std::expected<std::vector<DBRecordPointer>, DecodeError> decodeQueryResponse(QByteArrayView body) {
    using Candidates = std::vector<DBRecordPointer>;
    SharedReader shared;
    QRandomGenerator random = QRandomGenerator::securelySeeded();
    const auto readRecord = [&random, &shared](JsonCursor& cursor, DBRecordPointer& out) {
        DBRecordResponse record;
        JsonFailure failure = readListedRecord(cursor, record, shared);
        if (!failure) {
            out = makeRepresentation(std::move(record), randomId(random));
        }
        return failure;
    };
    return decodeJson<Candidates>(body, [&](JsonCursor& cursor, Candidates& out) {
        return readObject(cursor, required("response", out, [&](JsonCursor& list, Candidates& candidates) {
                              return readArray(list, candidates, readRecord);
                          }));
    });
}

std::expected<FileResponse, DecodeError> decodeFileResponse(QByteArrayView body) {
    return decodeJson<FileResponse>(body, [](JsonCursor& cursor, FileResponse& out) {
        return readObject(cursor, optional("file", out.file, readBytes));
    });
}

std::expected<SearchResponse, DecodeError> decodeSearchResponse(QByteArrayView body) {
    using Rows = std::vector<QueryResult>;
    SharedReader shared;
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
    ObjectWriter object;
    object.add("name", record.name)
        .add("profession", record.profession)
        .add("email", record.email)
        .add("summarizedText", record.summarizedText)
        .add("invitationMail", record.invitationMail)
        .add("jsonCVData", record.jsonCVData);
    if (record.file) {
        object.add("file", record.file->toBase64());
    }
    return object.take();
}

std::optional<QByteArray> encodeSearchRequest(const QString& sql) {
    return ObjectWriter().add("sql", sql).take();
}

std::optional<QByteArray> encodeKey(const QString& key) {
    QByteArray body;
    return appendJsonString(body, key) ? std::optional(std::move(body)) : std::nullopt;
}

} // namespace dorvantel
