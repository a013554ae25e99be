// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/api/Statement.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace dorvantel::service {

namespace {

constexpr std::string_view selectList = "select name,profession,email,summarizedText,invitationMail,jsonCVData,";
constexpr std::string_view constantScore = "100.0 as score";
constexpr std::string_view vectorScoreBegin = "GREATEST(0, LEAST(100, (dot_product(vector, JSON_ARRAY_PACK('[";
constexpr std::string_view vectorScoreEnd = "]')) + 1) * 50)) AS score";
constexpr std::string_view table = " from curriculums";
constexpr std::string_view where = " where ";
constexpr std::string_view conjunction = " AND ";
constexpr std::string_view bestFive = " ORDER BY score DESC LIMIT 5";
constexpr std::string_view valueEnd = "')";
constexpr double largestNumber{std::numeric_limits<float>::max()};

struct PredicateHead {
    std::string_view text;
    Trait trait;
    std::string_view wholeValue; ///< empty where the value follows and has to be closed
};

constexpr std::array<PredicateHead, 5> predicateHeads{{
    {"jsonCVData::gender = '\"Femenino\"'", Trait::Gender, "Femenino"},
    {"jsonCVData::gender = '\"Masculino\"'", Trait::Gender, "Masculino"},
    {"JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'", Trait::TechSkill, ""},
    {"JSON_ARRAY_CONTAINS_STRING(jsonCVData::softSkills,'", Trait::SoftSkill, ""},
    {"JSON_ARRAY_CONTAINS_STRING(jsonCVData::languages,'", Trait::Language, ""},
}};

const PredicateHead* predicateHeadOf(std::string_view text) {
    const auto* const head = std::ranges::find_if(
        predicateHeads, [text](const PredicateHead& candidate) { return text.starts_with(candidate.text); });
    return head == predicateHeads.end() ? nullptr : head;
}

/// Whether a statement can go on like this behind a condition. A condition with a value to close counts as one: the
/// statement's last `')` can always close it.
bool canFollowCondition(std::string_view rest) {
    while (!rest.empty() && rest != bestFive) {
        if (!rest.starts_with(conjunction)) {
            return false;
        }
        rest.remove_prefix(conjunction.size());
        const PredicateHead* const head = predicateHeadOf(rest);
        if (head == nullptr || head->wholeValue.empty()) {
            return head != nullptr;
        }
        rest.remove_prefix(head->text.size());
    }
    return true;
}

/// The length of the JSON number that `text` begins with; 0 when it begins with none.
std::size_t numberLength(std::string_view text) {
    std::size_t at = 0;
    const auto digits = [text, &at] {
        const std::size_t from = at;
        while (at < text.size() && text[at] >= '0' && text[at] <= '9') {
            ++at;
        }
        return at - from;
    };
    const auto accept = [text, &at](std::string_view characters) {
        const bool found = at < text.size() && characters.find(text[at]) != std::string_view::npos;
        at += found ? 1 : 0;
        return found;
    };
    accept("-");
    if (!accept("0") && digits() == 0) {
        return 0;
    }
    if (accept(".") && digits() == 0) {
        return 0;
    }
    if (accept("eE")) {
        accept("+-");
        if (digits() == 0) {
            return 0;
        }
    }
    return at;
}

class Parser {
public:
    explicit Parser(std::string_view sql)
        : m_sql(sql) {}

    std::expected<Plan, StatementError> parse() {
        const bool isWhole = expect(selectList) && score() && expect(table) && predicates() && end();
        if (!isWhole) {
            return std::unexpected(std::move(m_error));
        }
        return std::move(m_plan);
    }

private:
    std::string_view rest() const { return m_sql.substr(m_at); }

    bool fail(std::size_t offset, std::string expected) {
        m_error = {offset, std::move(expected)};
        return false;
    }

    bool accept(std::string_view text) {
        const bool found = rest().starts_with(text);
        m_at += found ? text.size() : 0;
        return found;
    }

    bool expect(std::string_view text) {
        if (accept(text)) {
            return true;
        }
        const auto [difference, _] = std::ranges::mismatch(rest(), text);
        const auto common = static_cast<std::size_t>(difference - rest().begin());
        return fail(m_at + common, "\"" + std::string(text.substr(common)) + "\"");
    }

    bool score() {
        if (accept(constantScore)) {
            return true;
        }
        if (!accept(vectorScoreBegin)) {
            return fail(m_at, "\"100.0 as score\" or the score of a vector");
        }
        return numbers() && expect(vectorScoreEnd);
    }

    bool numbers() {
        std::vector<float>& vector = m_plan.similarTo.emplace();
        if (rest().starts_with(']')) {
            return true;
        }
        do {
            if (vector.size() == maxQueryVectorLength) {
                return fail(m_at, "no more than " + std::to_string(maxQueryVectorLength) + " numbers");
            }
            const std::string_view text = rest().substr(0, numberLength(rest()));
            double value = 0;
            const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
            if (result.ec != std::errc() || std::abs(value) > largestNumber) {
                return fail(m_at, "a number that fits a 32-bit float");
            }
            vector.push_back(static_cast<float>(value));
            m_at += text.size();
        } while (accept(","));
        return true;
    }

    bool predicates() {
        if (!accept(where)) {
            return true;
        }
        do {
            const PredicateHead* const head = predicateHeadOf(rest());
            if (head == nullptr) {
                return fail(m_at, "a condition on the gender, the skills or the languages");
            }
            if (m_plan.predicates.size() == maxPredicates) {
                return fail(m_at, "no more than " + std::to_string(maxPredicates) + " conditions");
            }
            m_at += head->text.size();
            if (!head->wholeValue.empty()) {
                m_plan.predicates.push_back({head->trait, std::string(head->wholeValue)});
            } else if (!value(head->trait)) {
                return false;
            }
        } while (accept(conjunction));
        return true;
    }

    bool value(Trait trait) {
        const std::size_t begin = m_at;
        for (std::size_t close = m_sql.find(valueEnd, begin); close != std::string_view::npos;
             close = m_sql.find(valueEnd, close + 1)) {
            m_at = close + valueEnd.size();
            if (canFollowCondition(rest())) {
                m_plan.predicates.push_back({trait, std::string(m_sql.substr(begin, close - begin))});
                return true;
            }
        }
        if (m_at == begin) {
            return fail(begin, "a value that \"')\" closes");
        }
        const std::size_t firstClose = m_sql.find(valueEnd, begin);
        return fail(firstClose + valueEnd.size(), "another condition, the order or the end");
    }

    bool end() {
        if (accept(bestFive)) {
            m_plan.best = 5;
        }
        return rest().empty() || fail(m_at, m_plan.best ? "the end" : "the conditions, the order or the end");
    }

    std::string_view m_sql;
    std::size_t m_at = 0;
    Plan m_plan;
    StatementError m_error{};
};

} // namespace

std::string statementErrorText(const StatementError& error) {
    return "the statement cannot be run: expected " + error.expected + " at offset " + std::to_string(error.offset);
}

std::expected<Plan, StatementError> parseStatement(std::string_view sql) {
    return Parser(sql).parse();
}

} // namespace dorvantel::service
