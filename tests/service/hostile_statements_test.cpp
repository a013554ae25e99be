// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/api/Statement.h"
#include "service/embedding/Embedding.h"
#include "tests/service/HttpServerFixture.h"
#include "tests/service/StatementText.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <regex>

using namespace dorvantel::service;
using namespace dorvantel::test;
using nlohmann::json;

namespace {

const std::vector<std::string> tokens{"Excel", "O'Reilly", "')",  "x') OR 1=1 --", "\"q\"", "back\\slash", "\n",
                                      "😀",    "'",        "%_*", "/* */",         ";",     "') AND ",     "NULL"};

std::string contains(const std::string& list, const std::string& value) {
    return "JSON_ARRAY_CONTAINS_STRING(jsonCVData::" + list + ",'" + value + "')";
}

/// Statements that somebody could send who wants more than the searches give: statements of the client with pieces of
/// SQL, of quoting, of nothing and of far too much put in, taken out and moved about.
class HostileStatements {
public:
    std::string next() {
        std::string sql = decent();
        for (auto changes = m_random() % 4; changes > 0; --changes) {
            change(sql);
        }
        return sql;
    }

private:
    template <typename List>
    const std::string& pick(const List& list) {
        return list[m_random() % std::size(list)];
    }
    std::size_t place(const std::string& sql) { return m_random() % (sql.size() + 1); }

    std::string decent() {
        std::string sql = selectText;
        const bool isSemantic = m_random() % 3 == 0;
        sql += isSemantic ? "GREATEST(0, LEAST(100, (dot_product(vector, JSON_ARRAY_PACK('[" + pick(vectors) +
                                "]')) + 1) * 50)) AS score"
                          : "100.0 as score";
        sql += " from curriculums";
        std::string joint = " where ";
        for (auto count = m_random() % 4; count > 0; --count) {
            sql += joint + (m_random() % 4 == 0
                                ? "jsonCVData::gender = '\"" + pick(genders) + "\"'"
                                : contains(pick(lists), m_random() % 4 == 0 ? pick(attacks) : pick(tokens)));
            joint = " AND ";
        }
        return sql + (isSemantic || m_random() % 4 == 0 ? " ORDER BY score DESC LIMIT 5" : "");
    }

    void change(std::string& sql) {
        const std::size_t at = place(sql);
        switch (m_random() % 8) {
        case 0:
            sql.insert(at, pick(attacks));
            break;
        case 1:
            sql += pick(attacks);
            break;
        case 2:
            sql.erase(at, m_random() % 20);
            break;
        case 3:
            sql.resize(at);
            break;
        case 4:
            sql.insert(at, 1, static_cast<char>(m_random() % 128));
            break;
        case 5:
            sql.insert(at, std::string(m_random() % 3'000, "('[ a"[m_random() % 5]));
            break;
        case 6:
            sql.insert(at, sql.substr(place(sql), m_random() % 200));
            break;
        default:
            std::ranges::transform(sql, sql.begin(), [](unsigned char c) { return static_cast<char>(toupper(c)); });
        }
    }

    const std::vector<std::string> genders{"Femenino", "Masculino", "' OR '1'='1", "Otro", "\" OR 1=1"};
    const std::vector<std::string> lists{"techSkills", "softSkills", "languages", "languages", "gender", "*"};
    const std::vector<std::string> vectors{"1,0",    "0.6,0.8", "-1,1e-3", "0,0",          "1",    "",
                                           "1e39,0", "nan,0",   "0x1,0",   "1,(select 1)", "[1,0]"};
    const std::vector<std::string> attacks{
        "; drop table current",
        "; delete from history; --",
        " union select name,profession,email,pdf,mail,cv_json,1 from history",
        " UNION ALL SELECT * FROM sqlite_master",
        "/**/",
        "-- ",
        "#",
        " or 1=1",
        "' or ''='",
        "') or ('1'='1",
        "'')",
        "\";",
        "\\'",
        "\\",
        std::string(1, '\0'),
        std::string("') \0 AND ", 9),
        "attach database '/etc/passwd' as p;",
        "pragma writable_schema=1;",
        "load_extension('x')",
        "randomblob(1000000000)",
        " where 1",
        " limit 1000000",
        " LIMIT 6",
        " ORDER BY name",
        "(select email from current)",
        "?1",
        ":x",
        "$x",
        "%27%29",
        "\xc2\xa0",
        "\xe2\x80\x99",
        "jsonCVData::gender = '\"Femenino\"'",
        " AND jsonCVData::gender = '\"Masculino\"'",
    };
    std::mt19937 m_random{20'261'121};
};

/// A real store behind a real server, and what it must answer, found by a plain loop.
class HostileStatementsTest : public HttpServerTest {
protected:
    void SetUp() override {
        HttpServerTest::SetUp();
        std::mt19937 random{7};
        const auto someTokens = [&random] {
            std::vector<std::string> some;
            for (auto count = random() % 5; count > 0; --count) {
                some.push_back(tokens[random() % tokens.size()]);
            }
            return some;
        };
        for (int i = 0; i < 40; ++i) {
            records.push_back(makeRecord("c" + std::to_string(i), {i % 2 == 0 ? "Femenino" : "Masculino", someTokens(),
                                                                   someTokens(), someTokens()}));
            ASSERT_TRUE(store.insert(records.back()));
            vectors.push_back(
                *unitVector({static_cast<double>(random() % 100), static_cast<double>(random() % 100) - 50}));
            ASSERT_EQ(store.putVector(i + 1, vectors.back()), true);
        }
    }

    /// All there is of the store: an answer must not change a byte of it.
    std::string storedBytes() const { return fileBytes(folder.store()) + fileBytes(folder.store().string() + "-wal"); }

    static bool fits(const CVData& data, const Predicate& predicate) {
        const auto& list = predicate.trait == Trait::TechSkill   ? data.techSkills
                           : predicate.trait == Trait::SoftSkill ? data.softSkills
                                                                 : data.languages;
        return predicate.trait == Trait::Gender ? data.gender == predicate.value
                                                : std::ranges::find(list, predicate.value) != list.end();
    }

    float scoreOf(const Plan& plan, std::size_t index) const {
        if (!plan.similarTo) {
            return 100;
        }
        const double dot =
            std::inner_product(plan.similarTo->begin(), plan.similarTo->end(), vectors[index].begin(), 0.0);
        return static_cast<float>(std::clamp((dot + 1) * 50, 0.0, 100.0));
    }

    /// The rows that the plan asks for, by their e-mails, with the scores.
    std::vector<std::pair<std::string, float>> expectedRows(const Plan& plan) const {
        std::vector<std::pair<std::string, float>> rows;
        for (std::size_t i = 0; i < records.size(); ++i) {
            if (std::ranges::all_of(plan.predicates, [&](const auto& one) { return fits(records[i].cvData, one); })) {
                rows.emplace_back(records[i].email, scoreOf(plan, i));
            }
        }
        if (plan.best) {
            std::ranges::stable_sort(rows, std::ranges::greater(), [](const auto& row) { return row.second; });
            rows.resize(std::min(rows.size(), *plan.best));
        }
        return rows;
    }

    void expectRows(const json& answer, const Plan& plan, const std::string& sql) const {
        const auto expected = expectedRows(plan);
        const json& rows = answer["result"];
        ASSERT_EQ(rows.size(), expected.size()) << sql;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const json& row = rows[i];
            // Close scores may come in either order: the loop adds up in another one.
            EXPECT_NEAR(row["score"].get<double>(), double{expected[i].second}, 1e-4) << sql;
            if (!plan.similarTo) {
                EXPECT_EQ(row["email"], expected[i].first) << sql;
            }
            EXPECT_EQ(row.size(), 7U) << "no column but those of a search";
        }
    }

    std::vector<Record> records;
    std::vector<std::vector<float>> vectors;
};

} // namespace

TEST_F(HostileStatementsTest, TenThousandReadAndChangeNothingButWhatASearchMay) {
    const std::string before = storedBytes();
    const std::regex refusal("the statement cannot be run: expected [^]+ at offset ([0-9]+)");
    HostileStatements statements;
    httplib::Client kept = client();
    kept.set_keep_alive(true);
    kept.set_tcp_nodelay(true);
    int answered = 0;
    int refused = 0;
    for (int i = 0; i < 10'000; ++i) {
        // Characters that a change has cut in two are replaced: what is no UTF-8 does not get as far as the grammar.
        const std::string request =
            json{{"sql", statements.next()}}.dump(-1, ' ', false, json::error_handler_t::replace);
        const std::string sql = json::parse(request)["sql"];
        const auto answer = kept.Post("/curriculums/search", request, jsonType);
        ASSERT_TRUE(answer) << sql;
        const json body = json::parse(answer->body);
        const auto plan = parseStatement(sql);
        if (answer->status == 400) {
            ++refused;
            EXPECT_FALSE(plan) << sql;
            const std::string message = body["error"];
            std::smatch parts;
            ASSERT_TRUE(std::regex_match(message, parts, refusal)) << message;
            EXPECT_LE(std::stoul(parts[1]), sql.size()) << message;
            continue;
        }
        ASSERT_TRUE(plan) << sql;
        if (answer->status == 422) {
            EXPECT_NE(plan->similarTo->size(), vectors.front().size()) << sql;
            continue;
        }
        ++answered;
        ASSERT_EQ(answer->status, 200) << sql;
        EXPECT_TRUE(plan->similarTo || statementText(*plan) == sql) << sql;
        EXPECT_EQ(body["sql"], sql);
        expectRows(body, *plan, sql);
    }
    EXPECT_GT(answered, 1'000);
    EXPECT_GT(refused, 5'000);
    EXPECT_EQ(storedBytes(), before) << "not a byte of the store has changed";
}

TEST_F(HostileStatementsTest, HugeAndDeepOnesAreRefusedAndHurtNobody) {
    const std::string before = storedBytes();
    const auto repeated = [](const std::string& text, int count) {
        std::string all;
        while (count-- > 0) {
            all += text;
        }
        return all;
    };
    for (const std::string& sql :
         {std::string(150'000, '('), std::string(150'000, '\''), repeated("')", 70'000), std::string(150'000, ' '),
          everybody + " where " + repeated(contains("techSkills", "x") + " AND ", 2'000) + contains("techSkills", "x"),
          everybody + " where " + repeated("jsonCVData::gender = '\"Femenino\"' AND ", 3'000),
          everybody + " where JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'" + repeated("') AND ", 20'000),
          selectText + "GREATEST(0, LEAST(100, (dot_product(vector, JSON_ARRAY_PACK('[" + repeated("1,", 70'000)}) {
        EXPECT_EQ(search(sql)->status, 400) << sql.substr(0, 200);
    }
    EXPECT_EQ(get("/health")->status, 200);
    EXPECT_EQ(storedBytes(), before);
}
