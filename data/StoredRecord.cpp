// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/StoredRecord.h"

#include "platform/JsonDecoding.h"
#include "platform/JsonWriting.h"

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

/// Writes a JSON object member by member; `ok` turns false for good with the first text that cannot be written.
struct ObjectText {
    QByteArray bytes;
    bool ok = true;

    void add(const char* key, const QString& text) {
        begin(key);
        ok = appendJsonString(bytes, text) && ok;
    }
    void add(const char* key, const QStringList& texts) {
        begin(key);
        bytes += '[';
        for (const QString& text : texts) {
            bytes += bytes.endsWith('[') ? "" : ",";
            ok = appendJsonString(bytes, text) && ok;
        }
        bytes += ']';
    }
    void add(const char* key, const ObjectText& object) {
        begin(key);
        bytes += object.bytes + '}';
        ok = object.ok && ok;
    }
    template <typename Value>
    void add(const char* key, const std::optional<Value>& value) {
        if (value) {
            add(key, *value);
        }
    }

private:
    void begin(const char* key) {
        bytes += bytes.isEmpty() ? "{\"" : ",\"";
        bytes += key;
        bytes += "\":";
    }
};

ObjectText objectText(const JSONCVData& data) {
    ObjectText object;
    object.add("gender", data.gender);
    object.add("softSkills", data.softSkills);
    object.add("techSkills", data.techSkills);
    object.add("languages", data.languages);
    return object;
}

JsonFailure readIdentity(JsonCursor& cursor, QUuid& out) {
    QString text;
    if (JsonFailure failure = readJson(cursor, text)) {
        return failure;
    }
    out = QUuid::fromString(text);
    return out.isNull() ? JsonFailure(corrupted(u"The text is no UUID."_s)) : std::nullopt;
}

JsonFailure readCVData(JsonCursor& cursor, JSONCVData& out) {
    return readObject(cursor, required("gender", out.gender), required("softSkills", out.softSkills),
                      required("techSkills", out.techSkills), required("languages", out.languages));
}

} // namespace

std::optional<QByteArray> encodeStoredRecord(const DBRecordRepresentation& record) {
    ObjectText object;
    object.add("id", record.id.toString(QUuid::WithoutBraces).toUpper());
    object.add("name", record.name);
    object.add("profession", record.profession);
    object.add("email", record.email);
    object.add("summarizedText", record.summarizedText);
    object.add("invitationMail", record.invitationMail);
    object.add("jsonCVData", objectText(record.jsonCVData));
    if (record.file) {
        object.add("file", QString::fromLatin1(record.file->toBase64()));
    }
    return object.ok ? std::optional(object.bytes + '}') : std::nullopt;
}

std::expected<DBRecordPointer, DecodeError> decodeStoredRecord(QByteArrayView body) {
    return decodeJson<DBRecordPointer>(body, [](JsonCursor& cursor, DBRecordPointer& out) {
        out = std::make_shared<DBRecordRepresentation>(QUuid());
        return readObject(cursor, required("id", out->id, readIdentity), required("name", out->name),
                          required("profession", out->profession), required("email", out->email),
                          optional("summarizedText", out->summarizedText),
                          optional("invitationMail", out->invitationMail),
                          required("jsonCVData", out->jsonCVData, readCVData), optional("file", out->file, readBase64));
    });
}

} // namespace dorvantel
