// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "records/WireRecords.h"

#include "tests/support/Print.h"

#include <QSet>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using Kind = DecodeError::Kind;

const QByteArray cvData = R"({"gender":"Femenino","softSkills":["A","B"],"techSkills":["X"],"languages":["Español"]})";

/// A body with one record of the members given beside the usual ones, which come first.
QByteArray listWith(const QByteArray& members = {}) {
    return R"({"response":[{"name":"Ana","profession":"Contable","email":"a@b","summarizedText":"R",)"
           R"("invitationMail":"M","jsonCVData":)" +
           cvData + members + "}]}";
}

DecodeError listError(const QByteArray& body) {
    const auto decoded = decodeQueryResponse(body);
    EXPECT_FALSE(decoded.has_value()) << body.toStdString();
    return decoded ? DecodeError{} : decoded.error();
}

// CV data as an object

TEST(CVDataObject, HasItsFourMembers) {
    const auto records = decodeQueryResponse(listWith());
    ASSERT_TRUE(records.has_value());
    EXPECT_EQ((*records)[0]->jsonCVData, (JSONCVData{u"Femenino"_s, {u"A"_s, u"B"_s}, {u"X"_s}, {u"Español"_s}}));
}

TEST(CVDataObject, EachMissingMemberFailsTheWholeBody) {
    for (const QByteArray& key : {"gender"_ba, "softSkills"_ba, "techSkills"_ba, "languages"_ba}) {
        const DecodeError error = listError(listWith().replace('"' + key + '"', "\"other\""));
        EXPECT_EQ(error.kind, Kind::KeyNotFound);
        EXPECT_EQ(error.subject, QString::fromUtf8(key));
        EXPECT_THAT(error.path, ElementsAre(u"response"_s, u"Index 0"_s, u"jsonCVData"_s));
    }
}

TEST(CVDataObject, MemberOfAnotherTypeFailsTheWholeBody) {
    const DecodeError gender = listError(listWith().replace("\"Femenino\"", "1"));
    EXPECT_EQ(gender.kind, Kind::TypeMismatch);
    EXPECT_EQ(gender.subject, u"String"_s);
    const DecodeError skills = listError(listWith().replace(R"(["A","B"])", "\"A, B\""));
    EXPECT_EQ(skills.subject, u"Array<Any>"_s);
    const DecodeError skill = listError(listWith().replace(R"("B")", "{}"));
    EXPECT_THAT(skill.path, ElementsAre(u"response"_s, u"Index 0"_s, u"jsonCVData"_s, u"softSkills"_s, u"Index 1"_s));
}

TEST(CVDataObject, TextIsNoObject) {
    const DecodeError error = listError(listWith().replace(cvData, "\"{}\""));
    EXPECT_EQ(error.kind, Kind::TypeMismatch);
    EXPECT_EQ(error.subject, u"Dictionary<String, Any>"_s);
}

TEST(CVDataObject, AnyGenderIsAccepted) {
    EXPECT_EQ((*decodeQueryResponse(listWith().replace("Femenino", "")))[0]->jsonCVData.gender, u""_s);
}

// List answers

TEST(ListAnswer, NeedsItsResponse) {
    EXPECT_EQ(listError("{}"),
              (DecodeError{Kind::KeyNotFound, u"response"_s, u"The object has no key \"response\"."_s, {}}));
    EXPECT_EQ(listError("[]").subject, u"Dictionary<String, Any>"_s);
    EXPECT_EQ(listError(R"({"response":[null]})").kind, Kind::ValueNotFound);
}

TEST(ListAnswer, UnknownMembersAreIgnored) {
    EXPECT_TRUE(decodeQueryResponse(listWith(R"(,"vector":[0.5,1],"x":{"name":1})")).has_value());
    EXPECT_TRUE(decodeQueryResponse(R"({"page":1,"response":[],"next":null})").has_value());
}

TEST(ListAnswer, NullMailIsAnAbsentMail) {
    const auto records = decodeQueryResponse(listWith().replace("\"M\"", "null"));
    ASSERT_TRUE(records.has_value());
    EXPECT_EQ((*records)[0]->invitationMail, std::nullopt);
}

TEST(ListAnswer, EachRequiredTextMayNeitherBeMissingNorNull) {
    for (const QByteArray& member :
         {R"("name":"Ana")"_ba, R"("profession":"Contable")"_ba, R"("email":"a@b")"_ba, R"("summarizedText":"R")"_ba}) {
        const QByteArray key = member.left(member.indexOf(':'));
        EXPECT_EQ(listError(listWith().replace(member, "\"other\":1")).kind, Kind::KeyNotFound);
        EXPECT_EQ(listError(listWith().replace(member, key + ":null")).kind, Kind::ValueNotFound);
        EXPECT_EQ(listError(listWith().replace(member, key + ":1")).kind, Kind::TypeMismatch);
    }
}

TEST(ListAnswer, PDFBytesAreCheckedAndDropped) {
    EXPECT_EQ((*decodeQueryResponse(listWith(R"(,"file":[1,2])")))[0]->file, std::nullopt);
    EXPECT_TRUE(decodeQueryResponse(listWith(R"(,"file":null)")).has_value());
    const DecodeError error = listError(listWith(R"(,"file":[1,256])"));
    EXPECT_EQ(error.kind, Kind::DataCorrupted);
    EXPECT_THAT(error.path, ElementsAre(u"response"_s, u"Index 0"_s, u"file"_s, u"Index 1"_s));
    EXPECT_EQ(listError(listWith(R"(,"file":"JVBERg==")")).subject, u"Array<Any>"_s);
}

TEST(ListAnswer, EveryCandidateHasAnIdentityOfItsOwn) {
    QByteArray body = R"({"response":[)";
    for (int i = 0; i < 5'000; ++i) {
        body += (i == 0 ? "" : ",") + listWith().mid(13).chopped(2);
    }
    const auto records = decodeQueryResponse(body + "]}");
    ASSERT_TRUE(records.has_value());
    QSet<QUuid> ids;
    for (const DBRecordPointer& record : *records) {
        EXPECT_EQ(record->id.version(), QUuid::Random);
        EXPECT_EQ(record->id.variant(), QUuid::DCE);
        ids.insert(record->id);
    }
    EXPECT_EQ(ids.size(), 5'000);
}

TEST(ListAnswer, CatalogueValuesOfDifferentRecordsShareTheirMemory) {
    const QByteArray record = listWith().mid(13).chopped(2);
    const auto records = decodeQueryResponse(R"({"response":[)" + record + "," + record + "]}");
    ASSERT_TRUE(records.has_value());
    const JSONCVData& first = (*records)[0]->jsonCVData;
    const JSONCVData& second = (*records)[1]->jsonCVData;
    EXPECT_EQ(first.gender.constData(), second.gender.constData());
    EXPECT_EQ(first.softSkills[1].constData(), second.softSkills[1].constData());
    EXPECT_EQ(first.techSkills[0].constData(), second.techSkills[0].constData());
    EXPECT_EQ(first.languages[0].constData(), second.languages[0].constData());
}

TEST(ListAnswer, ManyDifferentValuesAreAllReadRight) {
    // More than are remembered for sharing, some of them alike at both ends, some long, some with escapes.
    QByteArray skills;
    QStringList expected;
    for (int i = 0; i < 30'000; ++i) {
        const QString middle = QString::number(i % 20'000);
        const QString value =
            i % 3 == 0 ? u"Técnica "_s + middle : u"prefixed-"_s + middle + u"-as long as can be-suffix"_s;
        skills += (i == 0 ? "\"" : ",\"") + value.toUtf8() + "\\n\"";
        expected.append(value + u'\n');
    }
    const auto records = decodeQueryResponse(listWith().replace(R"("A","B")", skills));
    ASSERT_TRUE(records.has_value());
    EXPECT_TRUE((*records)[0]->jsonCVData.softSkills == expected);
}

// PDF answers

TEST(PDFAnswer, BytesMayBeMissingNullOrEmpty) {
    EXPECT_EQ(decodeFileResponse("{}")->file, std::nullopt);
    EXPECT_EQ(decodeFileResponse(R"({"file":null})")->file, std::nullopt);
    EXPECT_EQ(decodeFileResponse(R"({"file":[]})")->file, QByteArray());
    EXPECT_EQ(decodeFileResponse(R"({"name":1,"file":[37,80]})")->file, "%P");
}

TEST(PDFAnswer, NumberOutOfAByteIsDataCorrupted) {
    for (const QByteArray& number : {"256"_ba, "-1"_ba, "0.5"_ba}) {
        const auto decoded = decodeFileResponse("{\"file\":[1," + number + "]}");
        ASSERT_FALSE(decoded.has_value());
        EXPECT_EQ(decoded.error().kind, Kind::DataCorrupted);
        EXPECT_THAT(decoded.error().path, ElementsAre(u"file"_s, u"Index 1"_s));
    }
}

// Search answers

QByteArray searchWith(const QByteArray& score, const QByteArray& more = {}) {
    return R"({"sql":"SELECT","result":[{"name":"Ana","profession":"P","email":"e","summarizedText":"s",)"
           R"("invitationMail":"m","jsonCVData":)" +
           cvData + ",\"score\":" + score + more + "}]}";
}

TEST(SearchAnswer, RowHasItsMembers) {
    const auto response = decodeSearchResponse(searchWith("87.5", R"(,"file":[1,2])"));
    ASSERT_TRUE(response.has_value());
    EXPECT_EQ(response->sql, u"SELECT"_s);
    ASSERT_EQ(response->result.size(), 1U);
    const QueryResult& row = response->result[0];
    EXPECT_EQ(row.name, u"Ana"_s);
    EXPECT_EQ(row.profession, u"P"_s);
    EXPECT_EQ(row.email, u"e"_s);
    EXPECT_EQ(row.summarizedText, u"s"_s);
    EXPECT_EQ(row.invitationMail, u"m"_s);
    EXPECT_EQ(row.jsonCVData.techSkills, QStringList{u"X"_s});
    EXPECT_EQ(row.score, 87.5F);
    EXPECT_EQ(row.file, "\1\2");
}

TEST(SearchAnswer, IntegerScoreIsTheFloatOfTheSameValue) {
    EXPECT_EQ(decodeSearchResponse(searchWith("50"))->result[0].score, 50.0F);
    EXPECT_EQ(decodeSearchResponse(searchWith("100"))->result[0].score, 100.0F);
    EXPECT_EQ(decodeSearchResponse(searchWith("0"))->result[0].score, 0.0F);
}

TEST(SearchAnswer, ScoreThatIsNoNumberIsATypeMismatch) {
    const auto decoded = decodeSearchResponse(searchWith("\"50\""));
    ASSERT_FALSE(decoded.has_value());
    EXPECT_EQ(decoded.error().subject, u"Float"_s);
}

TEST(SearchAnswer, EmptyFileIsPresentAndMissingOneIsAbsent) {
    EXPECT_EQ(decodeSearchResponse(searchWith("1", R"(,"file":[])"))->result[0].file, QByteArray());
    EXPECT_EQ(decodeSearchResponse(searchWith("1", R"(,"file":null)"))->result[0].file, std::nullopt);
    EXPECT_EQ(decodeSearchResponse(searchWith("1"))->result[0].file, std::nullopt);
}

TEST(SearchAnswer, RowWithoutMailFailsTheWholeAnswer) {
    const auto decoded = decodeSearchResponse(searchWith("1").replace(R"("invitationMail":"m",)", ""));
    ASSERT_FALSE(decoded.has_value());
    EXPECT_EQ(decoded.error().kind, Kind::KeyNotFound);
    EXPECT_EQ(decoded.error().subject, u"invitationMail"_s);
}

TEST(SearchAnswer, EachRequiredMemberMayNeitherBeMissingNorNullNorOfAnotherType) {
    const nlohmann::json whole = nlohmann::json::parse(searchWith("50").toStdString());
    const auto kindOf = [&](const std::string& key, const std::optional<nlohmann::json>& value) {
        nlohmann::json body = whole;
        body["result"][0].erase(key);
        if (value) {
            body["result"][0][key] = *value;
        }
        const auto decoded = decodeSearchResponse(QByteArray::fromStdString(body.dump()));
        return decoded ? std::nullopt : std::optional(decoded.error().kind);
    };
    for (const std::string key :
         {"name", "profession", "email", "summarizedText", "invitationMail", "jsonCVData", "score"}) {
        EXPECT_EQ(kindOf(key, std::nullopt), Kind::KeyNotFound) << key;
        EXPECT_EQ(kindOf(key, nlohmann::json(nullptr)), Kind::ValueNotFound) << key;
        EXPECT_EQ(kindOf(key, nlohmann::json(true)), Kind::TypeMismatch) << key;
    }
}

TEST(SearchAnswer, RowsMayNeitherBeNullNorAnythingButObjects) {
    EXPECT_FALSE(decodeSearchResponse(R"({"sql":"","result":[null]})").has_value());
    EXPECT_FALSE(decodeSearchResponse(R"({"sql":"","result":["x"]})").has_value());
    EXPECT_FALSE(decodeSearchResponse(R"({"sql":"","result":{}})").has_value());
}

TEST(SearchAnswer, BytesOfAFileAreWholeNumbersFromZeroTo255) {
    EXPECT_EQ(decodeSearchResponse(searchWith("1", R"(,"file":[0,255])"))->result[0].file, QByteArray("\0\xff", 2));
    for (const QByteArray bytes : {"[256]", "[-1]", "[0.5]", "\"JVBERi0=\""}) {
        EXPECT_FALSE(decodeSearchResponse(searchWith("1", ",\"file\":" + bytes)).has_value()) << bytes.constData();
    }
}

TEST(SearchAnswer, UnknownMembersAreIgnored) {
    EXPECT_TRUE(decodeSearchResponse(searchWith("1", R"(,"vector":[0.5],"x":{"name":1})")).has_value());
    EXPECT_TRUE(decodeSearchResponse(R"({"took":3,"sql":"","result":[],"next":null})").has_value());
}

TEST(SearchAnswer, EachMissingMemberOfTheCVDataFailsTheWholeAnswer) {
    for (const QByteArray& key : {"gender"_ba, "softSkills"_ba, "techSkills"_ba, "languages"_ba}) {
        const auto decoded = decodeSearchResponse(searchWith("1").replace('"' + key + '"', "\"other\""));
        ASSERT_FALSE(decoded.has_value());
        EXPECT_EQ(decoded.error().kind, Kind::KeyNotFound);
        EXPECT_EQ(decoded.error().subject, QString::fromUtf8(key));
        EXPECT_THAT(decoded.error().path, ElementsAre(u"result"_s, u"Index 0"_s, u"jsonCVData"_s));
    }
}

TEST(SearchAnswer, StatementIsAText) {
    EXPECT_EQ(decodeSearchResponse(R"({"sql":1,"result":[]})").error().kind, Kind::TypeMismatch);
    EXPECT_EQ(decodeSearchResponse(R"({"sql":null,"result":[]})").error().kind, Kind::ValueNotFound);
}

TEST(SearchAnswer, NeedsItsStatementAndItsRows) {
    EXPECT_EQ(decodeSearchResponse(R"({"result":[]})").error().subject, u"sql"_s);
    EXPECT_EQ(decodeSearchResponse(R"({"sql":""})").error().subject, u"result"_s);
    EXPECT_TRUE(decodeSearchResponse(R"({"sql":"","result":[]})")->result.empty());
}

// Insert

TEST(InsertRecord, WithoutPDFHasNoFileKeyAtAll) {
    const DBRecord record{u"n"_s, u"p"_s, u"e"_s, u"s"_s, u"m"_s, u"{\"gender\":\"\\'\"}"_s, std::nullopt};
    EXPECT_EQ(encodeDBRecord(record),
              R"({"name":"n","profession":"p","email":"e","summarizedText":"s","invitationMail":"m",)"
              R"("jsonCVData":"{\"gender\":\"\\'\"}"})"_ba);
}

TEST(InsertRecord, PDFIsPaddedBase64OfTheStandardAlphabetOnOneLine) {
    DBRecord record;
    record.file = "\xFB\xEF\xBE\xFF\xFF\xFF\xFE";
    EXPECT_TRUE(encodeDBRecord(record)->endsWith(R"(,"file":"++++/////g=="})"));
    record.file = QByteArray(300, '\xFF');
    EXPECT_TRUE(encodeDBRecord(record)->endsWith(",\"file\":\"" + QByteArray(400, '/') + "\"}"));
}

TEST(InsertRecord, EmptyPDFIsPresent) {
    DBRecord record;
    record.file = QByteArray();
    EXPECT_TRUE(encodeDBRecord(record)->endsWith(R"(,"file":""})"));
}

TEST(InsertRecord, ComesBackAsItWas) {
    DBRecord record{u"Ñoño \"x\""_s, u"a\nb"_s, u"o'neil@example.com"_s, u"😀"_s, QString(), u"{\\}"_s, std::nullopt};
    EXPECT_EQ(decodeDBRecord(*encodeDBRecord(record)), record);
    record.file = QByteArray("\0%PDF\xFF", 6);
    EXPECT_EQ(decodeDBRecord(*encodeDBRecord(record)), record);
}

TEST(InsertRecord, AnswerNeedsItsSixTexts) {
    const QByteArray body = *encodeDBRecord(DBRecord{});
    for (const QByteArray& key :
         {"name"_ba, "profession"_ba, "email"_ba, "summarizedText"_ba, "invitationMail"_ba, "jsonCVData"_ba}) {
        const auto decoded = decodeDBRecord(QByteArray(body).replace('"' + key + "\":", "\"other\":"));
        ASSERT_FALSE(decoded.has_value());
        EXPECT_EQ(decoded.error().kind, Kind::KeyNotFound);
        EXPECT_EQ(decoded.error().subject, QString::fromUtf8(key));
    }
}

TEST(InsertRecord, AnswersTextsMayNeitherBeNullNorOfAnotherType) {
    const QByteArray body = *encodeDBRecord(DBRecord{});
    for (const QByteArray& key :
         {"name"_ba, "profession"_ba, "email"_ba, "summarizedText"_ba, "invitationMail"_ba, "jsonCVData"_ba}) {
        const QByteArray member = '"' + key + "\":";
        EXPECT_EQ(decodeDBRecord(QByteArray(body).replace(member + "\"\"", member + "null")).error().kind,
                  Kind::ValueNotFound);
        EXPECT_EQ(decodeDBRecord(QByteArray(body).replace(member + "\"\"", member + "1")).error().kind,
                  Kind::TypeMismatch);
    }
}

TEST(InsertRecord, AnswersFileMayBeNull) {
    DBRecord record;
    record.file = "%PDF";
    const auto decoded = decodeDBRecord(encodeDBRecord(record)->replace("\"JVBERg==\"", "null"));
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(decoded->file, std::nullopt);
}

TEST(InsertRecord, AnswerWithCVDataAsAnObjectIsATypeMismatch) {
    const auto decoded =
        decodeDBRecord(encodeDBRecord(DBRecord{})->replace("\"jsonCVData\":\"\"", "\"jsonCVData\":{}"));
    ASSERT_FALSE(decoded.has_value());
    EXPECT_EQ(decoded.error().subject, u"String"_s);
}

TEST(InsertRecord, AnswerWithAFileThatIsNotBase64IsDataCorrupted) {
    DBRecord record;
    record.file = "%PDF";
    const auto decoded = decodeDBRecord(encodeDBRecord(record)->replace("JVBERg==", "JVBERg"));
    ASSERT_FALSE(decoded.has_value());
    EXPECT_EQ(decoded.error().kind, Kind::DataCorrupted);
    EXPECT_THAT(decoded.error().path, ElementsAre(u"file"_s));
}

// Small request bodies

TEST(RequestBodies, SearchRequestHasTheStatement) {
    EXPECT_EQ(encodeSearchRequest({u"SELECT 'ñ' \"x\"\n"_s}), R"({"sql":"SELECT 'ñ' \"x\"\n"})"_ba);
}

TEST(RequestBodies, KeyIsAString) {
    EXPECT_EQ(encodeKey(u"o'neil+\"x\"@example.com"_s), R"("o'neil+\"x\"@example.com")"_ba);
}

} // namespace
} // namespace dorvantel
