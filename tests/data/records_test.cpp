// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/DBRecordRepresentation.h"
#include "data/RecordsService.h"
#include "data/SearchResults.h"

#include "tests/support/Print.h"

#include <QSet>

#include <gmock/gmock.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

void fill(DBRecordRepresentation& record) {
    record.name = u"Lucía Ferrer"_s;
    record.profession = u"Diseñadora"_s;
    record.email = u"lucia@example.com"_s;
    record.summarizedText = u"Diez años de oficio"_s;
    record.invitationMail = u"Estimada Sra. Ferrer:"_s;
    record.jsonCVData = {.gender = u"Femenino"_s,
                         .softSkills = {u"A"_s, u"B"_s},
                         .techSkills = {u"Figma"_s},
                         .languages = {u"Español"_s}};
    record.file = "%PDF-1.4"_ba;
}

// ----- identity

TEST(DBRecordRepresentation, SameContentWithAnotherIdentityIsNotEqual) {
    DBRecordRepresentation first;
    DBRecordRepresentation second;
    fill(first);
    fill(second);
    EXPECT_FALSE(first == second);
    EXPECT_NE(first.id, second.id);
}

TEST(DBRecordRepresentation, EditedRecordIsStillEqualToItsEarlierSelf) {
    DBRecordRepresentation earlier;
    fill(earlier);
    DBRecordRepresentation edited;
    edited.id = earlier.id;
    edited.name = u"Otra"_s;
    EXPECT_TRUE(edited == earlier);
    EXPECT_EQ(qHash(edited), qHash(earlier));
}

TEST(DBRecordRepresentation, HashIsThatOfTheIdentityAlone) {
    DBRecordRepresentation record;
    const std::size_t before = qHash(record, 7);
    fill(record);
    EXPECT_EQ(qHash(record, 7), before);
    EXPECT_EQ(qHash(record, 7), qHash(record.id, 7));
}

TEST(DBRecordRepresentation, NewRecordHasNoOptionalFieldsAndNobodyWaiting) {
    const DBRecordRepresentation record;
    EXPECT_FALSE(record.id.isNull());
    EXPECT_FALSE(record.summarizedText.has_value());
    EXPECT_FALSE(record.invitationMail.has_value());
    EXPECT_FALSE(record.file.has_value());
    EXPECT_TRUE(record.pdfLoadCallbacks.empty());
}

// ----- toDBRecord

TEST(ToDBRecord, CopiesTheTextsAndWritesTheDataAsText) {
    DBRecordRepresentation record;
    fill(record);
    EXPECT_EQ(record.toDBRecord(), (DBRecord{.name = u"Lucía Ferrer"_s,
                                             .profession = u"Diseñadora"_s,
                                             .email = u"lucia@example.com"_s,
                                             .summarizedText = u"Diez años de oficio"_s,
                                             .invitationMail = u"Estimada Sra. Ferrer:"_s,
                                             .jsonCVData = uR"({"gender":"Femenino","softSkills":["A", "B"],)"
                                                           uR"("techSkills":["Figma"],"languages":["Español"]})"_s,
                                             .file = "%PDF-1.4"_ba}));
}

TEST(ToDBRecord, AbsentFileStaysAbsentAndAnEmptyOneStaysPresent) {
    DBRecordRepresentation record;
    fill(record);
    record.file.reset();
    EXPECT_FALSE(record.toDBRecord().file.has_value());
    record.file = QByteArray();
    EXPECT_TRUE(record.toDBRecord().file.has_value());
}

TEST(ToDBRecord, EmptySummaryAndMailAreAccepted) {
    DBRecordRepresentation record;
    fill(record);
    record.summarizedText = u""_s;
    record.invitationMail = u""_s;
    EXPECT_EQ(record.toDBRecord().summarizedText, u""_s);
    EXPECT_EQ(record.toDBRecord().invitationMail, u""_s);
}

TEST(ToDBRecordDeathTest, AbsentSummaryStopsTheProgram) {
    DBRecordRepresentation record;
    fill(record);
    record.summarizedText.reset();
    EXPECT_DEATH(record.toDBRecord(), "Fatal error: a record without summary or mail was to be inserted");
}

TEST(ToDBRecordDeathTest, AbsentMailStopsTheProgram) {
    DBRecordRepresentation record;
    fill(record);
    record.invitationMail.reset();
    EXPECT_DEATH(record.toDBRecord(), "Fatal error: a record without summary or mail was to be inserted");
}

// ----- search rows

QueryResult row() {
    return {.name = u"Lucía"_s,
            .profession = u"Diseñadora"_s,
            .email = u"lucia@example.com"_s,
            .summarizedText = u"Resumen"_s,
            .invitationMail = u"Estimada"_s,
            .jsonCVData = {.gender = u"Femenino"_s,
                           .softSkills = {u"Calma"_s},
                           .techSkills = {u"Figma"_s, u"Photoshop"_s},
                           .languages = {u"Español"_s}},
            .score = 87.5F,
            .file = {}};
}

TEST(IdentifiableSearchResponse, AnswerWithoutRowsGivesAnEmptyResult) {
    const IdentifiableSearchResponse response(SearchResponse{.sql = u"SELECT 1"_s, .result = {}});
    EXPECT_EQ(response.sql, u"SELECT 1"_s);
    EXPECT_TRUE(response.result.empty());
}

TEST(IdentifiableSearchResponse, RowsKeepTheirOrderAndContent) {
    QueryResult second = row();
    second.name = u"Ana"_s;
    second.score = 50.0F;
    const IdentifiableSearchResponse response(SearchResponse{.sql = u"SELECT 1"_s, .result = {row(), second}});

    ASSERT_EQ(response.result.size(), 2U);
    const IdentifiableQueryResult& first = *response.result[0];
    EXPECT_EQ(first.name, u"Lucía"_s);
    EXPECT_EQ(first.profession, u"Diseñadora"_s);
    EXPECT_EQ(first.email, u"lucia@example.com"_s);
    EXPECT_EQ(first.summarizedText, u"Resumen"_s);
    EXPECT_EQ(first.invitationMail, u"Estimada"_s);
    EXPECT_EQ(first.jsonCVData, row().jsonCVData);
    EXPECT_EQ(first.score, 87.5F);
    EXPECT_EQ(response.result[1]->name, u"Ana"_s);
    EXPECT_EQ(response.result[1]->score, 50.0F);
}

TEST(IdentifiableSearchResponse, EqualRowsHaveIdentitiesOfTheirOwnInEveryAnswer) {
    const SearchResponse answer{.sql = u"SELECT 1"_s, .result = {row(), row()}};
    const IdentifiableSearchResponse once(answer);
    const IdentifiableSearchResponse again(answer);
    const QSet<QUuid> ids{once.result[0]->id, once.result[1]->id, again.result[0]->id, again.result[1]->id};
    EXPECT_EQ(ids.size(), 4);
    EXPECT_FALSE(ids.contains(QUuid()));
}

TEST(IdentifiableSearchResponse, EmptyFileStaysPresentAndAMissingOneAbsent) {
    QueryResult withEmpty = row();
    withEmpty.file = QByteArray();
    QueryResult withBytes = row();
    withBytes.file = QByteArray("\0\xFF", 2);
    const IdentifiableSearchResponse response(SearchResponse{.sql = {}, .result = {row(), withEmpty, withBytes}});
    EXPECT_EQ(response.result[0]->file, std::nullopt);
    EXPECT_EQ(response.result[1]->file, std::optional(QByteArray()));
    EXPECT_EQ(response.result[2]->file, std::optional(QByteArray("\0\xFF", 2)));
}

TEST(IdentifiableQueryResult, TagItemsFollowTheListsAndAreNotSelected) {
    const IdentifiableSearchResponse response(SearchResponse{.sql = {}, .result = {row()}});
    const IdentifiableQueryResult& item = *response.result[0];
    EXPECT_THAT(item.techSkillTags(), ElementsAre(TagViewItem{u"Figma"_s, false}, TagViewItem{u"Photoshop"_s, false}));
    EXPECT_THAT(item.softSkillTags(), ElementsAre(TagViewItem{u"Calma"_s, false}));
    EXPECT_THAT(item.languageTags(), ElementsAre(TagViewItem{u"Español"_s, false}));
}

TEST(TagViewItem, IsComparedAndHashedByItsFields) {
    const TagViewItem item{u"Figma"_s, false};
    EXPECT_EQ(item, (TagViewItem{u"Figma"_s, false}));
    EXPECT_EQ(qHash(item), qHash(TagViewItem{u"Figma"_s, false}));
    EXPECT_NE(item, (TagViewItem{u"Figma"_s, true}));
    EXPECT_NE(item, (TagViewItem{u"figma"_s, false}));
}

// ----- errors

TEST(APIError, CasesAreInTheirOrder) {
    EXPECT_EQ(static_cast<int>(APIError::responseProblem), 0);
    EXPECT_EQ(static_cast<int>(APIError::decodingProblem), 1);
    EXPECT_EQ(static_cast<int>(APIError::encodingProblem), 2);
}

TEST(APIError, CaseNamesAreThoseOfTheCases) {
    EXPECT_EQ(caseName(APIError::responseProblem), u"responseProblem"_s);
    EXPECT_EQ(caseName(APIError::decodingProblem), u"decodingProblem"_s);
    EXPECT_EQ(caseName(APIError::encodingProblem), u"encodingProblem"_s);
}

} // namespace
} // namespace dorvantel
