// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "records/StoredRecord.h"

#include "tests/records/SampleRecords.h"
#include "tests/support/Print.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using Kind = DecodeError::Kind;
using test::sampleRecord;

const QString identity = u"e621e1f8-c36c-495a-93fc-0c247a3e6e5f"_s;

const QByteArray stored = R"({"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","name":"Ana","profession":"Contable",)"
                          R"("email":"ana@example.com","summarizedText":"Resumen","invitationMail":"Estimada Ana",)"
                          R"("jsonCVData":{"gender":"Femenino","softSkills":["A"],"techSkills":["X"],)"
                          R"("languages":["Español"]},"file":"JVBERg=="})";

DBRecordPointer identified() {
    auto record = std::make_shared<DBRecordRepresentation>(QUuid::fromString(identity));
    const DBRecordPointer sample = sampleRecord();
    record->name = sample->name;
    record->profession = sample->profession;
    record->email = sample->email;
    record->summarizedText = sample->summarizedText;
    record->invitationMail = sample->invitationMail;
    record->jsonCVData = sample->jsonCVData;
    record->file = "%PDF";
    return record;
}

QByteArray without(const QByteArray& member) {
    EXPECT_TRUE(stored.contains(member));
    return QByteArray(stored).replace(member, "");
}

TEST(StoredRecord, HasAllItsMembers) {
    EXPECT_EQ(encodeStored(*identified()), stored);
}

TEST(StoredRecord, LeavesAbsentMembersOut) {
    const DBRecordPointer record = identified();
    record->summarizedText.reset();
    record->invitationMail.reset();
    record->file.reset();
    EXPECT_EQ(encodeStored(*record),
              R"({"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","name":"Ana","profession":"Contable",)"
              R"("email":"ana@example.com","jsonCVData":{"gender":"Femenino","softSkills":["A"],)"
              R"("techSkills":["X"],"languages":["Español"]}})"_ba);
}

TEST(StoredRecord, ComesBackAsTheSameCandidateWithTheSameFields) {
    const auto decoded = decodeStored(stored);
    ASSERT_TRUE(decoded.has_value());
    const DBRecordPointer expected = identified();
    EXPECT_EQ(**decoded, *expected);
    EXPECT_EQ((*decoded)->name, expected->name);
    EXPECT_EQ((*decoded)->profession, expected->profession);
    EXPECT_EQ((*decoded)->email, expected->email);
    EXPECT_EQ((*decoded)->summarizedText, expected->summarizedText);
    EXPECT_EQ((*decoded)->invitationMail, expected->invitationMail);
    EXPECT_EQ((*decoded)->jsonCVData, expected->jsonCVData);
    EXPECT_EQ((*decoded)->file, expected->file);
    EXPECT_TRUE((*decoded)->pdfLoadCallbacks.empty());
}

TEST(StoredRecord, TextsAndPDFMayBeMissingOrNull) {
    for (const QByteArray& json :
         {without(R"("summarizedText":"Resumen",)"), QByteArray(stored).replace("\"Resumen\"", "null")}) {
        EXPECT_EQ((*decodeStored(json))->summarizedText, std::nullopt);
    }
    EXPECT_EQ((*decodeStored(without(R"("invitationMail":"Estimada Ana",)")))->invitationMail, std::nullopt);
    EXPECT_EQ((*decodeStored(without(R"(,"file":"JVBERg==")")))->file, std::nullopt);
}

TEST(StoredRecord, NeedsItsIdentityAndItsOtherMembers) {
    for (const QByteArray& key : {"id"_ba, "name"_ba, "profession"_ba, "email"_ba, "jsonCVData"_ba}) {
        const auto decoded = decodeStored(QByteArray(stored).replace('"' + key + "\":", "\"other\":"));
        ASSERT_FALSE(decoded.has_value());
        EXPECT_EQ(decoded.error().kind, Kind::KeyNotFound);
        EXPECT_EQ(decoded.error().subject, QString::fromUtf8(key));
    }
}

TEST(StoredRecord, NeedsEveryMemberOfItsCVData) {
    for (const QByteArray& key : {"gender"_ba, "softSkills"_ba, "techSkills"_ba, "languages"_ba}) {
        const auto decoded = decodeStored(QByteArray(stored).replace('"' + key + "\":", "\"other\":"));
        ASSERT_FALSE(decoded.has_value());
        EXPECT_EQ(decoded.error().kind, Kind::KeyNotFound);
        EXPECT_EQ(decoded.error().subject, QString::fromUtf8(key));
        EXPECT_THAT(decoded.error().path, testing::ElementsAre(u"jsonCVData"_s));
    }
}

TEST(StoredRecord, CVDataIsAnObjectAndThePDFAText) {
    const QByteArray cvData = R"({"gender":"Femenino","softSkills":["A"],"techSkills":["X"],"languages":["Español"]})";
    ASSERT_TRUE(stored.contains(cvData));
    EXPECT_EQ(decodeStored(QByteArray(stored).replace(cvData, "\"{}\"")).error().kind, Kind::TypeMismatch);
    EXPECT_EQ(decodeStored(QByteArray(stored).replace("\"JVBERg==\"", "[37,80]")).error().kind, Kind::TypeMismatch);
}

TEST(StoredRecord, IdentityThatIsNoUuidIsDataCorrupted) {
    const QByteArray id = "E621E1F8-C36C-495A-93FC-0C247A3E6E5F";
    for (const QByteArray& wrong : {""_ba, "x"_ba, "{" + id + "}", id.chopped(1), id + "0"}) {
        const auto decoded = decodeStored(QByteArray(stored).replace(id, wrong));
        ASSERT_FALSE(decoded.has_value()) << wrong.toStdString();
        EXPECT_EQ(decoded.error().kind, Kind::DataCorrupted);
        EXPECT_THAT(decoded.error().path, testing::ElementsAre(u"id"_s));
    }
    EXPECT_EQ((*decodeStored(QByteArray(stored).replace(id, id.toLower())))->id, QUuid::fromString(identity));
}

TEST(StoredRecord, TextThatUtf8CannotHoldIsNotEncoded) {
    const DBRecordPointer record = identified();
    record->jsonCVData.languages.append(QString(QChar(0xDC00)));
    EXPECT_EQ(encodeStored(*record), std::nullopt);
}

} // namespace
} // namespace dorvantel
