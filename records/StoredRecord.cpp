// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "records/StoredRecord.h"

#include "platform/JsonDecoding.h"
#include "platform/JsonWriting.h"
#include "records/SharedReader.h"

#include <functional>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

JsonFailure readIdentity(JsonCursor& cursor, QUuid& out) {
    QString text;
    if (JsonFailure failure = readJson(cursor, text)) {
        return failure;
    }
    out = QUuid::fromString(text);
    // Qt also takes braces and no hyphens; a null identity is what it gives for nonsense.
    if (out.isNull() || out.toString(QUuid::WithoutBraces) != text.toLower()) {
        return corrupted(u"The string is not a UUID."_s);
    }
    return std::nullopt;
}

JsonFailure readRecord(JsonCursor& cursor, DBRecordRepresentation& out, SharedReader& readCVData) {
    return readObject(cursor, required("id", out.id, readIdentity), required("name", out.name),
                      required("profession", out.profession), required("email", out.email),
                      optional("summarizedText", out.summarizedText), optional("invitationMail", out.invitationMail),
                      required("jsonCVData", out.jsonCVData, std::ref(readCVData)),
                      optional("file", out.file, readBase64));
}

} // namespace

std::optional<QByteArray> encodeStored(const DBRecordRepresentation& record) {
    JsonObjectWriter cvData;
    cvData.add("gender", record.jsonCVData.gender)
        .add("softSkills", record.jsonCVData.softSkills)
        .add("techSkills", record.jsonCVData.techSkills)
        .add("languages", record.jsonCVData.languages);
    return JsonObjectWriter()
        .add("id", record.id.toString(QUuid::WithoutBraces).toUpper())
        .add("name", record.name)
        .add("profession", record.profession)
        .add("email", record.email)
        .add("summarizedText", record.summarizedText)
        .add("invitationMail", record.invitationMail)
        .add("jsonCVData", cvData)
        .add("file", record.file)
        .take();
}

std::expected<DBRecordPointer, DecodeError> decodeStored(QByteArrayView json) {
    SharedReader readCVData(json.size());
    return decodeJson<DBRecordPointer>(json, [&readCVData](JsonCursor& cursor, DBRecordPointer& out) {
        out = std::make_shared<DBRecordRepresentation>(QUuid());
        return readRecord(cursor, *out, readCVData);
    });
}

} // namespace dorvantel
