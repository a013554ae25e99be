// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonDecoding.h"
#include "records/SharedReader.h"
#include "records/WireRecords.h"

#include <QRandomGenerator>

#include <array>
#include <functional>
#include <tuple>

namespace dorvantel {

namespace {

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

/// Reads the records of one body.
class ListReader {
public:
    explicit ListReader(qsizetype bodySize)
        : m_shared(bodySize) {}

    JsonFailure operator()(JsonCursor& cursor, QueryResponse& out) {
        return readArray(cursor, out, [this](JsonCursor& element, DBRecordPointer& candidate) {
            DBRecordResponse record;
            JsonFailure failure = readRecord(element, record);
            if (!failure) {
                candidate = makeRepresentation(std::move(record), randomId(m_random));
            }
            return failure;
        });
    }

private:
    JsonFailure readRecord(JsonCursor& cursor, DBRecordResponse& out) {
        const auto shared = std::ref(m_shared);
        const auto text = [this](JsonCursor& value, QString& to) { return m_shared.text(value, to); };
        const auto checked = [](JsonCursor& value, auto&) { return readByteArray(value, nullptr); };
        std::optional<std::tuple<>> file;
        return readObject(cursor, required("name", out.name, text), required("profession", out.profession, shared),
                          required("email", out.email, text), required("summarizedText", out.summarizedText, text),
                          optional("invitationMail", out.invitationMail, text),
                          required("jsonCVData", out.jsonCVData, shared), optional("file", file, checked));
    }

    SharedReader m_shared;
    QRandomGenerator m_random = QRandomGenerator::securelySeeded();
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

std::expected<QueryResponse, DecodeError> decodeQueryResponse(QByteArrayView body) {
    ListReader readList(body.size());
    return decodeJson<QueryResponse>(body, [&readList](JsonCursor& cursor, QueryResponse& out) {
        return readObject(cursor, required("response", out, std::ref(readList)));
    });
}

} // namespace dorvantel
