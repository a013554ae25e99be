// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/StoredRecord.h"

#include "tests/support/Print.h"

#include <gmock/gmock.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using Kind = DecodeError::Kind;

const QByteArray shortest = R"({"id":"7D444840-9DC0-11D1-B245-5FFDCE74FAD2","name":"Ana","profession":"Contable",)"
                            R"("email":"ana@example.com","jsonCVData":{"gender":"Femenino","softSkills":[],)"
                            R"("techSkills":[],"languages":[]}})";

DBRecordRepresentation& filled(DBRecordRepresentation& record) {
    record.name = u"Ana \"Nita\" Ruiz"_s;
    record.profession = u"Contable"_s;
    record.email = u"ana@example.com"_s;
    record.summarizedText = u"Dos\nlíneas"_s;
    record.invitationMail = u"Estimada Sra. Ruiz:"_s;
    record.jsonCVData = {.gender = u"otro"_s,
                         .softSkills = {u"Rigor"_s, u"O'Reilly"_s},
                         .techSkills = {u"SAP"_s},
                         .languages = {u"Español"_s}};
    record.file = QByteArray("%PDF\0\xFF", 6);
    return record;
}

/// The failure of decoding `shortest` with `before` replaced by `after`.
DecodeError failureWith(const QByteArray& before, const QByteArray& after) {
    QByteArray body = shortest;
    EXPECT_TRUE(body.contains(before)) << before.toStdString();
    const auto decoded = decodeStoredRecord(body.replace(before, after));
    EXPECT_FALSE(decoded.has_value()) << body.toStdString();
    return decoded.has_value() ? DecodeError() : decoded.error();
}

TEST(StoredRecord, ComesBackWithItsIdentityAndEveryField) {
    DBRecordRepresentation record;
    const auto decoded = decodeStoredRecord(encodeStoredRecord(filled(record)).value());
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ((*decoded)->id, record.id);
    EXPECT_EQ((*decoded)->name, record.name);
    EXPECT_EQ((*decoded)->profession, record.profession);
    EXPECT_EQ((*decoded)->email, record.email);
    EXPECT_EQ((*decoded)->summarizedText, record.summarizedText);
    EXPECT_EQ((*decoded)->invitationMail, record.invitationMail);
    EXPECT_EQ((*decoded)->jsonCVData, record.jsonCVData);
    EXPECT_EQ((*decoded)->file, record.file);
}

TEST(StoredRecord, IsWrittenWithTheDataAsAnObjectAndThePDFAsBase64) {
    DBRecordRepresentation record(QUuid(u"7d444840-9dc0-11d1-b245-5ffdce74fad2"_s));
    EXPECT_EQ(encodeStoredRecord(filled(record)),
              R"({"id":"7D444840-9DC0-11D1-B245-5FFDCE74FAD2","name":"Ana \"Nita\" Ruiz","profession":"Contable",)"
              R"("email":"ana@example.com","summarizedText":"Dos\nlíneas","invitationMail":"Estimada Sra. Ruiz:",)"
              R"("jsonCVData":{"gender":"otro","softSkills":["Rigor","O'Reilly"],"techSkills":["SAP"],)"
              R"("languages":["Español"]},"file":"JVBERgD/"})"_ba);
}

TEST(StoredRecord, AbsentFieldsHaveNoKey) {
    DBRecordRepresentation record;
    const QByteArray body = encodeStoredRecord(record).value();
    EXPECT_FALSE(body.contains("summarizedText"));
    EXPECT_FALSE(body.contains("invitationMail"));
    EXPECT_FALSE(body.contains("file"));
    EXPECT_FALSE(body.contains("null"));
}

TEST(StoredRecord, SummaryMailAndFileMayBeMissingOrNull) {
    for (const QByteArray& end : {"}}"_ba, "},\"summarizedText\":null,\"invitationMail\":null,\"file\":null}"_ba}) {
        QByteArray body = shortest;
        const auto decoded = decodeStoredRecord(body.replace("}}", end));
        ASSERT_TRUE(decoded.has_value());
        EXPECT_EQ((*decoded)->summarizedText, std::nullopt);
        EXPECT_EQ((*decoded)->invitationMail, std::nullopt);
        EXPECT_EQ((*decoded)->file, std::nullopt);
    }
}

TEST(StoredRecord, NobodyWaitsForThePDFOfADecodedOne) {
    EXPECT_TRUE(decodeStoredRecord(shortest).value()->pdfLoadCallbacks.empty());
}

TEST(StoredRecord, EveryOtherKeyIsRequired) {
    for (const char* key :
         {"id", "name", "profession", "email", "jsonCVData", "gender", "softSkills", "techSkills", "languages"}) {
        const DecodeError failure = failureWith('"' + QByteArray(key) + "\":", "\"other\":");
        EXPECT_EQ(failure.kind, Kind::KeyNotFound) << key;
        EXPECT_EQ(failure.subject, QString::fromLatin1(key));
    }
}

TEST(StoredRecord, WrongTypesFailWithThePathToThem) {
    EXPECT_EQ(failureWith("\"Ana\"", "7").kind, Kind::TypeMismatch);
    EXPECT_EQ(failureWith("\"Ana\"", "null").kind, Kind::ValueNotFound);
    const DecodeError failure = failureWith("\"languages\":[]", "\"languages\":[\"Español\",1]");
    EXPECT_EQ(failure.kind, Kind::TypeMismatch);
    EXPECT_EQ(failure.path, (QStringList{u"jsonCVData"_s, u"languages"_s, u"Index 1"_s}));
}

TEST(StoredRecord, IdentityThatIsNoneAndWhatIsNotJSONAreCorrupted) {
    EXPECT_EQ(failureWith("7D444840", "7D44484").kind, Kind::DataCorrupted);
    EXPECT_EQ(failureWith("}}", "}").kind, Kind::DataCorrupted);
    EXPECT_EQ(failureWith("}}", "},\"file\":\"%%%\"}").kind, Kind::DataCorrupted);
}

TEST(StoredRecord, TextWithoutAUTF8FormCannotBeEncoded) {
    DBRecordRepresentation record;
    record.jsonCVData.languages = {QString(QChar(0xD83D))};
    EXPECT_EQ(encodeStoredRecord(record), std::nullopt);
}

} // namespace
} // namespace dorvantel
