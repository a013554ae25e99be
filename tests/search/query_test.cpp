// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/Query.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <random>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

const QString everyone =
    u"select name,profession,email,summarizedText,invitationMail,jsonCVData,100.0 as score from curriculums"_s;

QString statement(const SearchCriteria& criteria) {
    return structuredStatement(clauseList(criteria));
}

/// Texts that a careless composer would trim, fold, escape or drop.
QStringList randomTokens(std::mt19937& random) {
    static const QStringList pieces = {u"Excel"_s, u"O'Reilly"_s,  u"\"C++\""_s,      u" "_s,     u"Inglés"_s,
                                       u"%"_s,     u"\\n"_s,       u"') OR ('1'='"_s, u" AND "_s, u"\U0001F600"_s,
                                       u"\n"_s,    u"%1 %2 %L1"_s, u"EXCEL"_s,        u""_s,      u"e\u0301"_s};
    QStringList tokens;
    for (auto count = random() % 9; count > 0; --count) {
        QString token;
        for (auto length = random() % 4; length > 0; --length) {
            token += pieces[static_cast<qsizetype>(random() % static_cast<unsigned>(pieces.size()))];
        }
        tokens.append(token);
    }
    return tokens;
}

TEST(Gender, CasesAreInTheirOrderAndAnyIsTheDefault) {
    EXPECT_EQ(static_cast<int>(Gender::male), 0);
    EXPECT_EQ(static_cast<int>(Gender::female), 1);
    EXPECT_EQ(static_cast<int>(Gender::any), 2);
    EXPECT_EQ(SearchCriteria().genderRequired, Gender::any);
}

TEST(Clauses, EachGenderHasItsOwnOrNone) {
    EXPECT_EQ(clauseList({.genderRequired = Gender::male}), QStringList{u"jsonCVData::gender = '\"Masculino\"'"_s});
    EXPECT_EQ(clauseList({.genderRequired = Gender::female}), QStringList{u"jsonCVData::gender = '\"Femenino\"'"_s});
    EXPECT_EQ(clauseList({.genderRequired = Gender::any}), QStringList());
    EXPECT_EQ(clauseList({.genderRequired = Gender::female})[0].size(), 33);
    EXPECT_EQ(clauseList({.genderRequired = Gender::male})[0].size(), 34);
}

TEST(Clauses, GenderThenTechnicalThenSoftSkillsThenLanguagesEachInItsOrder) {
    const SearchCriteria criteria{.genderRequired = Gender::male,
                                  .techSkillsRequiredTokens = {u"Zig"_s, u"Ada"_s},
                                  .softSkillsRequiredTokens = {u"Liderazgo"_s, u"Empatía"_s},
                                  .languagesRequiredTokens = {u"Inglés"_s, u"Alemán"_s},
                                  .freeTextSearchString = {}};
    EXPECT_EQ(clauseList(criteria), (QStringList{
                                        u"jsonCVData::gender = '\"Masculino\"'"_s,
                                        u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'Zig')"_s,
                                        u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'Ada')"_s,
                                        u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::softSkills,'Liderazgo')"_s,
                                        u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::softSkills,'Empatía')"_s,
                                        u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::languages,'Inglés')"_s,
                                        u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::languages,'Alemán')"_s,
                                    }));
}

TEST(Clauses, TheSameTokenTwiceGivesTheSameClauseTwice) {
    const QString clause = u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'Excel')"_s;
    EXPECT_EQ(clauseList({.techSkillsRequiredTokens = {u"Excel"_s, u"Excel"_s}}), (QStringList{clause, clause}));
}

TEST(Clauses, ATokenGoesInVerbatim) {
    for (const QString& token :
         {u"O'Reilly"_s, u" Excel "_s, u"\"C\""_s, u"100 %"_s, u"%1"_s, u"a\\b"_s, QString(10 * 1024, u'x')}) {
        EXPECT_EQ(clauseList({.softSkillsRequiredTokens = {token}}),
                  QStringList{u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::softSkills,'"_s + token + u"')"_s});
    }
}

TEST(Condition, IsEmptyWithoutClauses) {
    EXPECT_EQ(joinedCondition({}), QString());
}

TEST(Condition, BeginsWithABlankAndJoinsByAnd) {
    EXPECT_EQ(joinedCondition({u"A"_s}), u" A"_s);
    EXPECT_EQ(joinedCondition({u"A"_s, u"B"_s, u"C"_s}), u" A AND B AND C"_s);
}

TEST(StructuredStatement, NoCriterionSelectsEveryoneWithNothingAfterIt) {
    EXPECT_EQ(statement({}), everyone);
}

TEST(StructuredStatement, GenderOnly) {
    EXPECT_EQ(statement({.genderRequired = Gender::male}), everyone + u" where jsonCVData::gender = '\"Masculino\"'"_s);
}

TEST(StructuredStatement, GenderSkillsAndLanguage) {
    EXPECT_EQ(statement({.genderRequired = Gender::female,
                         .techSkillsRequiredTokens = {u"Excel"_s, u"Contabilidad"_s},
                         .softSkillsRequiredTokens = {},
                         .languagesRequiredTokens = {u"Inglés"_s},
                         .freeTextSearchString = {}}),
              everyone + u" where jsonCVData::gender = '\"Femenino\"'"
                         " AND JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'Excel')"
                         " AND JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'Contabilidad')"
                         " AND JSON_ARRAY_CONTAINS_STRING(jsonCVData::languages,'Inglés')"_s);
}

/// Written a second way, as one pass over the characters, so that a slip in either shows.
TEST(StructuredStatement, IsExactForRandomCriteria) {
    std::mt19937 random(20260611);
    for (int round = 0; round < 3000; ++round) {
        const auto gender = static_cast<Gender>(round % 3);
        const SearchCriteria criteria{gender, randomTokens(random), randomTokens(random), randomTokens(random), {}};
        QString expected = everyone;
        auto add = [&expected, joiner = u" where "_s](const QString& clause) mutable {
            expected += joiner;
            expected += clause;
            joiner = u" AND "_s;
        };
        if (gender != Gender::any) {
            add(gender == Gender::male ? u"jsonCVData::gender = '\"Masculino\"'"_s
                                       : u"jsonCVData::gender = '\"Femenino\"'"_s);
        }
        const std::pair<QString, QStringList> lists[] = {{u"techSkills"_s, criteria.techSkillsRequiredTokens},
                                                         {u"softSkills"_s, criteria.softSkillsRequiredTokens},
                                                         {u"languages"_s, criteria.languagesRequiredTokens}};
        for (const auto& [name, tokens] : lists) {
            for (const QString& token : tokens) {
                add(u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::"_s + name + u",'"_s + token + u"')"_s);
            }
        }
        ASSERT_EQ(statement(criteria), expected);
    }
}

} // namespace
} // namespace dorvantel
