// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/api/Statement.h"
#include "service/embedding/Embedding.h"
#include "service/store/SqliteStore.h"
#include "tests/service/ServiceSupport.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

using namespace dorvantel::service;
using namespace dorvantel::test;

namespace {

constexpr std::size_t dimension = 24;

struct Candidate {
    Record record;
    std::vector<float> vector; ///< empty: it has none
};

struct Criteria {
    std::string gender;
    std::vector<std::pair<std::string, std::string>> values; ///< list and token
};

/// 300 candidates with random skills, among them tokens with every character that could upset a statement, and the
/// searches of a random recruiter, answered by the store and by a plain loop.
class StoreAgainstPlainLoop : public testing::Test {
protected:
    void SetUp() override {
        for (int i = 0; i < 300; ++i) {
            Candidate candidate{
                makeRecord("c" + std::to_string(i), {pick(genders), someTokens(), someTokens(), someTokens()}), {}};
            ASSERT_TRUE(store.insert(candidate.record));
            if (random() % 10 != 0) {
                candidate.vector = *unitVector(randomVector());
                ASSERT_EQ(store.putVector(i + 1, candidate.vector), true);
            }
            candidates.push_back(std::move(candidate));
        }
        // Some leave and some come back, so that the order of the vectors in memory is not that of the insertions.
        for (std::size_t i = 0; i < 40; ++i) {
            const std::size_t index = random() % candidates.size();
            Candidate moved = candidates[index];
            moved.vector.clear();
            ASSERT_TRUE(store.insert(moved.record));
            candidates.erase(candidates.begin() + static_cast<std::ptrdiff_t>(index));
            candidates.push_back(std::move(moved));
        }
    }

    template <typename Value>
    Value pick(const std::vector<Value>& values) {
        return values[random() % values.size()];
    }
    std::vector<std::string> someTokens() {
        std::vector<std::string> some;
        for (auto count = random() % 9; count > 0; --count) {
            some.push_back(pick(tokens));
        }
        return some;
    }
    std::vector<double> randomVector() {
        std::normal_distribution<double> normal;
        std::vector<double> vector(dimension);
        std::ranges::generate(vector, [&] { return normal(random); });
        return vector;
    }
    Criteria randomCriteria() {
        Criteria criteria;
        criteria.gender = pick(std::vector<std::string>{"", "Femenino", "Masculino"});
        for (auto count = random() % 4; count > 0; --count) {
            criteria.values.emplace_back(pick(std::vector<std::string>{"techSkills", "softSkills", "languages"}),
                                         pick(tokens));
        }
        return criteria;
    }

    static std::string condition(const Criteria& criteria) {
        std::string text;
        const auto add = [&text](const std::string& clause) { text += (text.empty() ? " where " : " AND ") + clause; };
        if (!criteria.gender.empty()) {
            add("jsonCVData::gender = '\"" + criteria.gender + "\"'");
        }
        for (const auto& [list, token] : criteria.values) {
            add("JSON_ARRAY_CONTAINS_STRING(jsonCVData::" + list + ",'" + token + "')");
        }
        return text;
    }
    static bool fits(const CVData& data, const Criteria& criteria) {
        return (criteria.gender.empty() || data.gender == criteria.gender) &&
               std::ranges::all_of(criteria.values, [&data](const auto& value) {
                   const auto& list = value.first == "techSkills"   ? data.techSkills
                                      : value.first == "softSkills" ? data.softSkills
                                                                    : data.languages;
                   return std::ranges::find(list, value.second) != list.end();
               });
    }
    static std::string printed(const std::vector<double>& vector) {
        std::string text;
        for (const double number : vector) {
            std::array<char, 64> digits{};
            text += (text.empty() ? "" : ",") +
                    std::string(digits.data(), std::to_chars(digits.data(), digits.data() + 64, number).ptr);
        }
        return text;
    }
    std::vector<FoundRow> answer(const std::string& sql) {
        const auto plan = parseStatement(sql);
        EXPECT_TRUE(plan) << statementErrorText(plan.error()) << "\n" << sql;
        return plan ? rowsOf(store, *plan) : std::vector<FoundRow>();
    }

    const std::string select = "select name,profession,email,summarizedText,invitationMail,jsonCVData,";
    const std::vector<std::string> genders{"Femenino", "Masculino"};
    const std::vector<std::string> tokens{"Excel", "O'Reilly",    "'",      "')",  "x') OR 1=1",
                                          "\"q\"", "back\\slash", "a\nb",   "😀",  std::string("n\0l", 3),
                                          "é",     "e\u0301",     "Excel ", "C++", "') AND ",
                                          ""};
    std::mt19937 random{42};
    StoreFolder folder;
    SqliteStore store{folder.store(), "m"};
    std::vector<Candidate> candidates; ///< in the order of insertion
};

} // namespace

TEST_F(StoreAgainstPlainLoop, StructuredSearchesAgreeWithAPlainLoop) {
    std::size_t found = 0;
    for (int round = 0; round < 300; ++round) {
        const Criteria criteria = randomCriteria();
        const auto rows = answer(select + "100.0 as score from curriculums" + condition(criteria));
        std::vector<std::string> expected;
        for (const Candidate& candidate : candidates) {
            if (fits(candidate.record.cvData, criteria)) {
                expected.push_back(candidate.record.email);
            }
        }
        std::vector<std::string> emails;
        for (const FoundRow& row : rows) {
            emails.push_back(row.email);
            EXPECT_EQ(row.score, 100);
        }
        ASSERT_EQ(emails, expected) << condition(criteria);
        found += expected.size();
    }
    EXPECT_GT(found, 1'000U);
}

TEST_F(StoreAgainstPlainLoop, SemanticSearchesAgreeWithAPlainLoop) {
    std::size_t found = 0;
    for (int round = 0; round < 300; ++round) {
        const Criteria criteria = randomCriteria();
        const std::vector<double> query = *unitVector(randomVector()).transform([](const std::vector<float>& unit) {
            return std::vector<double>(unit.begin(), unit.end());
        });
        const auto rows =
            answer(select + "GREATEST(0, LEAST(100, (dot_product(vector, JSON_ARRAY_PACK('[" + printed(query) +
                   "]')) + 1) * 50)) AS score from curriculums" + condition(criteria) + " ORDER BY score DESC LIMIT 5");
        std::vector<std::pair<double, std::string>> expected;
        for (const Candidate& candidate : candidates) {
            if (!candidate.vector.empty() && fits(candidate.record.cvData, criteria)) {
                double dot = 0;
                for (std::size_t i = 0; i < dimension; ++i) {
                    dot += static_cast<double>(candidate.vector[i]) * query[i];
                }
                expected.emplace_back(std::clamp((dot + 1) * 50, 0.0, 100.0), candidate.record.email);
            }
        }
        std::ranges::stable_sort(expected, std::ranges::greater(), [](const auto& pair) { return pair.first; });
        expected.resize(std::min<std::size_t>(expected.size(), 5));
        ASSERT_EQ(rows.size(), expected.size()) << condition(criteria);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            EXPECT_EQ(rows[i].email, expected[i].second);
            EXPECT_NEAR(static_cast<double>(rows[i].score), expected[i].first, 1e-4);
        }
        found += rows.size();
    }
    EXPECT_GT(found, 300U);
}
