// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/api/Statement.h"

#include <charconv>
#include <random>

#include <gmock/gmock.h>

using namespace dorvantel::service;
using testing::ElementsAre;

namespace {

const std::string selectText = "select name,profession,email,summarizedText,invitationMail,jsonCVData,";
const std::string structured = selectText + "100.0 as score from curriculums";
const std::string tail = " ORDER BY score DESC LIMIT 5";
const std::string female = "jsonCVData::gender = '\"Femenino\"'";

std::string semantic(const std::string& numbers) {
    return selectText + "GREATEST(0, LEAST(100, (dot_product(vector, JSON_ARRAY_PACK('[" + numbers +
           "]')) + 1) * 50)) AS score from curriculums";
}

std::string contains(const std::string& list, const std::string& value) {
    return "JSON_ARRAY_CONTAINS_STRING(jsonCVData::" + list + ",'" + value + "')";
}

Plan plan(const std::string& sql) {
    auto parsed = parseStatement(sql);
    EXPECT_TRUE(parsed) << statementErrorText(parsed.error()) << "\n" << sql;
    return parsed.value_or(Plan{});
}

/// The text before the place where the statement is refused.
std::string acceptedPartOf(const std::string& sql) {
    const auto parsed = parseStatement(sql);
    EXPECT_FALSE(parsed) << sql;
    return parsed ? "accepted" : sql.substr(0, parsed.error().offset);
}

std::vector<std::string> values(const Plan& plan) {
    std::vector<std::string> all;
    for (const Predicate& predicate : plan.predicates) {
        all.push_back(predicate.value);
    }
    return all;
}

} // namespace

TEST(ParseStatement, NoCriterionAsksForEverybody) {
    EXPECT_EQ(plan(structured), Plan{});
}

TEST(ParseStatement, GenderAlone) {
    EXPECT_EQ(plan(structured + " where jsonCVData::gender = '\"Masculino\"'"),
              (Plan{{{Trait::Gender, "Masculino"}}, std::nullopt, std::nullopt}));
    EXPECT_EQ(plan(structured + " where " + female), (Plan{{{Trait::Gender, "Femenino"}}, std::nullopt, std::nullopt}));
}

TEST(ParseStatement, EveryListInTheClientsOrder) {
    const Plan parsed = plan(structured + " where " + female + " AND " + contains("techSkills", "Excel") + " AND " +
                             contains("techSkills", "Contabilidad") + " AND " + contains("softSkills", "Empatía") +
                             " AND " + contains("languages", "Inglés"));
    EXPECT_THAT(parsed.predicates,
                ElementsAre(Predicate{Trait::Gender, "Femenino"}, Predicate{Trait::TechSkill, "Excel"},
                            Predicate{Trait::TechSkill, "Contabilidad"}, Predicate{Trait::SoftSkill, "Empatía"},
                            Predicate{Trait::Language, "Inglés"}));
}

TEST(ParseStatement, TheSameTokenTwiceIsTwoConditions) {
    EXPECT_THAT(
        values(plan(structured + " where " + contains("languages", "A") + " AND " + contains("languages", "A"))),
        ElementsAre("A", "A"));
}

TEST(ParseStatement, VectorAsTheClientPrintsIt) {
    const Plan parsed = plan(semantic("0.25,-0.5,1.5e-05,1.0,-0.0,5e-324,1e+16") + tail);
    EXPECT_THAT(parsed.similarTo, testing::Optional(ElementsAre(0.25F, -0.5F, 1.5e-05F, 1.0F, 0.0F, 0.0F, 1e+16F)));
    EXPECT_TRUE(std::signbit(parsed.similarTo->at(4)));
    EXPECT_EQ(parsed.best, 5U);
}

TEST(ParseStatement, EmptyVectorIsAVector) {
    EXPECT_EQ(plan(semantic("") + tail), (Plan{{}, std::vector<float>{}, 5}));
}

TEST(ParseStatement, SemanticWithConditions) {
    const Plan parsed = plan(semantic("0.25,-0.5,1.5e-05") + " where jsonCVData::gender = '\"Masculino\"' AND " +
                             contains("techSkills", "C++") + tail);
    EXPECT_THAT(parsed.predicates,
                ElementsAre(Predicate{Trait::Gender, "Masculino"}, Predicate{Trait::TechSkill, "C++"}));
    EXPECT_EQ(parsed.best, 5U);
    EXPECT_EQ(parsed.similarTo->size(), 3U);
}

TEST(ParseStatement, OrderAndLimitAreOptional) {
    EXPECT_EQ(plan(semantic("1.0")).best, std::nullopt);
    EXPECT_EQ(plan(structured + tail).best, 5U);
    EXPECT_EQ(plan(structured + " where " + female + tail).best, 5U);
}

TEST(ParseStatement, ApostropheInsideAValueBelongsToIt) {
    for (const std::string value :
         {"O'Reilly", "'", "''", "'x", "x'", "x')", "')", "(')", "x') OR 1=1", "') AND x",
          "') ORDER BY score DESC LIMIT 5", "x'); DROP TABLE record; --", "') AND '", " AND ",
          "') and JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'", "\\", "\\'", "%", ""}) {
        EXPECT_THAT(values(plan(structured + " where " + contains("techSkills", value))), ElementsAre(value));
        EXPECT_THAT(values(plan(structured + " where " + contains("techSkills", value) + tail)), ElementsAre(value));
        EXPECT_THAT(values(plan(structured + " where " + contains("techSkills", value) + " AND " +
                                contains("languages", value))),
                    ElementsAre(value, value));
    }
}

TEST(ParseStatement, ValueThatHoldsTheBeginningOfAConditionIsReadAsTwo) {
    EXPECT_THAT(values(plan(structured + " where " +
                            contains("techSkills", "a') AND JSON_ARRAY_CONTAINS_STRING(jsonCVData::languages,'b"))),
                ElementsAre("a", "b"));
}

TEST(ParseStatement, ConditionBehindWhichNothingCanFollowBelongsToTheValue) {
    const std::string value = "a') AND " + female;
    EXPECT_THAT(values(plan(structured + " where " + contains("techSkills", value))), ElementsAre(value));
    EXPECT_THAT(values(plan(structured + " where " + contains("techSkills", "a") + " AND " + female)),
                ElementsAre("a", "Femenino"));
    EXPECT_THAT(values(plan(structured + " where " + contains("techSkills", "a") + " AND " + female + " AND " + female +
                            " AND " + contains("languages", "b") + tail)),
                ElementsAre("a", "Femenino", "Femenino", "b"));
}

TEST(ParseStatement, NulAndLineBreaksAreOrdinary) {
    const std::string value("a\0\n\r\tb", 6);
    EXPECT_THAT(values(plan(structured + " where " + contains("softSkills", value))), ElementsAre(value));
}

TEST(ParseStatement, RefusalsSayWhere) {
    EXPECT_EQ(acceptedPartOf(""), "");
    EXPECT_EQ(acceptedPartOf("select * from curriculums"), "select ");
    EXPECT_EQ(acceptedPartOf(selectText + "1 as score from curriculums"), selectText);
    EXPECT_EQ(acceptedPartOf(structured + " "), structured);
    EXPECT_EQ(acceptedPartOf(structured + ";"), structured);
    EXPECT_EQ(acceptedPartOf(structured + " where"), structured);
    EXPECT_EQ(acceptedPartOf(structured + " where "), structured + " where ");
    EXPECT_EQ(acceptedPartOf(structured + " where 1=1"), structured + " where ");
    EXPECT_EQ(acceptedPartOf(structured + " where " + female + " OR 1=1"), structured + " where " + female);
    EXPECT_EQ(acceptedPartOf(structured + " where " + female + " AND 1=1"), structured + " where " + female + " AND ");
    EXPECT_EQ(acceptedPartOf(structured + " where jsonCVData::gender = '\"Otro\"'"), structured + " where ");
    EXPECT_EQ(acceptedPartOf(structured + " where " + contains("techSkills", "x") + " OR 1=1"),
              structured + " where " + contains("techSkills", "x"));
    EXPECT_EQ(acceptedPartOf(structured + " where " + contains("skills", "x")), structured + " where ");
    EXPECT_EQ(acceptedPartOf(structured + tail + " UNION select 1"), structured + tail);
    EXPECT_EQ(acceptedPartOf(structured + " ORDER BY score DESC LIMIT 6"), structured);
    EXPECT_EQ(acceptedPartOf(selectText + "100.0 as score from record"), selectText + "100.0 as score from ");
    EXPECT_EQ(acceptedPartOf("S" + structured.substr(1)), "");
}

TEST(ParseStatement, ValueThatIsNeverClosedIsRefusedWhereItBegins) {
    const std::string begin = structured + " where JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'";
    EXPECT_EQ(acceptedPartOf(begin + "Excel"), begin);
    EXPECT_EQ(acceptedPartOf(begin + "Excel'"), begin);
}

TEST(ParseStatement, WhatIsNoNumberIsRefused) {
    const std::string begin = selectText + "GREATEST(0, LEAST(100, (dot_product(vector, JSON_ARRAY_PACK('[";
    for (const char* const text : {"nan", "inf", "-", ".5", "1.", "+1.0", "01.0x", "1e", "1e+", " 1.0", "1e400", "1e39",
                                   "-1e39", "0x10", "'", ",1.0", "1.0e5.0"}) {
        const std::string accepted = acceptedPartOf(semantic(text));
        EXPECT_TRUE(accepted.starts_with(begin)) << accepted;
        EXPECT_LE(accepted.size(), begin.size() + 5) << text;
    }
    for (const char* const text : {"01.0", "00", "01"}) {
        EXPECT_EQ(acceptedPartOf(semantic(text)), begin + "0") << "no number begins with a zero that says nothing";
    }
    EXPECT_EQ(acceptedPartOf(semantic("1.0,")), begin + "1.0,");
    EXPECT_EQ(acceptedPartOf(semantic("1.0, 2.0")), begin + "1.0,");
}

TEST(ParseStatement, ErrorTextSaysWhatAndWhere) {
    EXPECT_EQ(statementErrorText(parseStatement("select 1").error()),
              "the statement cannot be run: expected "
              "\"name,profession,email,summarizedText,invitationMail,jsonCVData,\" at offset 7");
}

TEST(ParseStatement, TooManyConditionsOrNumbersAreRefused) {
    std::string sql = structured + " where " + female;
    for (std::size_t i = 1; i < maxPredicates; ++i) {
        sql += " AND " + contains("techSkills", std::to_string(i));
    }
    EXPECT_EQ(plan(sql).predicates.size(), maxPredicates);
    EXPECT_EQ(acceptedPartOf(sql + " AND " + female), sql + " AND ");

    std::string numbers = "1.0";
    for (std::size_t i = 1; i < maxQueryVectorLength; ++i) {
        numbers += ",1.0";
    }
    EXPECT_EQ(plan(semantic(numbers)).similarTo->size(), maxQueryVectorLength);
    EXPECT_FALSE(parseStatement(semantic(numbers + ",1.0")));
}

TEST(ParseStatement, NothingSinglyChangedIsAccepted) {
    // Every statement is a constant text around values and numbers: no byte of that text may be missing or doubled.
    const std::string whole = semantic("1.0") + " where " + female + tail;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        const bool isNumber = whole.substr(i, 1).find_first_of("1.0") == 0 && i > 100 && i < 150;
        if (isNumber) {
            continue;
        }
        std::string missing = whole;
        missing.erase(i, 1);
        std::string doubled = whole;
        doubled.insert(i, 1, whole[i]);
        EXPECT_FALSE(parseStatement(missing)) << missing;
        EXPECT_FALSE(parseStatement(doubled)) << doubled;
    }
}

TEST(ParseStatement, PlansHoldWhatWasPutIn) {
    std::mt19937 random(7);
    const std::vector<std::string> pieces{"'",
                                          ")",
                                          "')",
                                          "(",
                                          "\"",
                                          "\\",
                                          " AND ",
                                          " ORDER BY score DESC LIMIT 5",
                                          " ",
                                          ",'",
                                          "Excel",
                                          "ñ",
                                          "😀",
                                          "\n",
                                          std::string(1, '\0'),
                                          "--",
                                          ";",
                                          "OR 1=1",
                                          "%",
                                          "jsonCVData::gender = '\"",
                                          "JSON_ARRAY_CONTAINS_STRING("};
    const std::vector<std::pair<std::string, Trait>> lists{
        {"techSkills", Trait::TechSkill}, {"softSkills", Trait::SoftSkill}, {"languages", Trait::Language}};
    int compared = 0;
    for (int round = 0; round < 20'000; ++round) {
        Plan expected;
        std::string condition;
        bool isAmbiguous = false;
        for (auto count = random() % 4; count > 0; --count) {
            const auto& [list, trait] = lists[random() % lists.size()];
            std::string value;
            for (auto length = random() % 7; length > 0; --length) {
                value += pieces[random() % pieces.size()];
            }
            isAmbiguous = isAmbiguous || value.find("') AND " + female) != std::string::npos ||
                          value.find("') AND JSON_ARRAY_CONTAINS_STRING(jsonCVData::languages,'") != std::string::npos;
            condition += (condition.empty() ? " where " : " AND ") + contains(list, value);
            expected.predicates.push_back({trait, value});
        }
        if (random() % 2 == 0) {
            expected.best = 5;
        }
        const Plan parsed = plan(structured + condition + (expected.best ? tail : ""));
        if (!isAmbiguous) {
            ++compared;
            ASSERT_EQ(parsed, expected);
        }
    }
    EXPECT_GT(compared, 19'000);
}

TEST(ParseStatement, EveryPrintedNumberComesBack) {
    std::mt19937_64 random(11);
    std::string numbers;
    std::vector<float> expected;
    while (expected.size() < 4'096) {
        const double value =
            std::ldexp(static_cast<double>(static_cast<std::int64_t>(random())), -63 - static_cast<int>(random() % 40));
        char text[64];
        const auto end = std::to_chars(text, text + sizeof text, value).ptr;
        numbers += (expected.empty() ? "" : ",") + std::string(text, end);
        expected.push_back(static_cast<float>(value));
    }
    EXPECT_EQ(plan(semantic(numbers) + tail).similarTo, expected);
}
