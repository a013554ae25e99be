// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/VectorText.h"

#include <QRegularExpression>

#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

std::string text(const std::vector<double>& vector) {
    return vectorText(vector).toStdString();
}

QString statement(const std::vector<double>& vector, const QStringList& clauses = {}) {
    return semanticStatement(vector, clauses);
}

constexpr double twoTo53 = 9007199254740992.0;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double smallest = std::numeric_limits<double>::denorm_min();
constexpr double smallestNormal = std::numeric_limits<double>::min();
constexpr double largest = std::numeric_limits<double>::max();

/// How many significant digits `value` needs, found without to_chars: the shortest of its neighbourhood that reads back
/// as the value. The nearest text of a length is not always the one: below a power of two the way down is shorter.
int fewestDigits(double value) {
    for (int digits = 1; digits < 17; ++digits) {
        char buffer[64];
        std::snprintf(buffer, sizeof buffer, "%.*e", digits - 1, value);
        std::string mantissa = buffer;
        const auto e = mantissa.find('e');
        const int exponent = std::stoi(mantissa.substr(e + 1)) - (digits - 1);
        mantissa.resize(e);
        std::erase(mantissa, '.');
        const long long nearest = std::stoll(mantissa);
        for (const long long candidate : {nearest - 1, nearest, nearest + 1}) {
            const std::string text = std::to_string(candidate) + "e" + std::to_string(exponent);
            if (std::strtod(text.c_str(), nullptr) == value) {
                return digits;
            }
        }
    }
    return 17;
}

/// The significant digits of a number's text, without sign, point, exponent and zeros at either end.
std::string significant(const std::string& number) {
    std::string digits;
    for (const char character : number) {
        if (character == 'e') {
            break;
        }
        if (character >= '0' && character <= '9') {
            digits += character;
        }
    }
    const auto first = digits.find_first_not_of('0');
    return first == std::string::npos ? "" : digits.substr(first, digits.find_last_not_of('0') - first + 1);
}

void expectRules(double value) {
    const std::string number = text({value});
    SCOPED_TRACE(number);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(std::strtod(number.c_str(), nullptr)), std::bit_cast<std::uint64_t>(value));
    EXPECT_EQ(significant(number).size(), value == 0 ? 0 : fewestDigits(value));
    const bool exponent = value != 0 && (std::abs(value) < 0.0001 || std::abs(value) > twoTo53);
    static const QRegularExpression plainForm(u"\\A-?(0|[1-9][0-9]*)\\.[0-9]+\\z"_s);
    static const QRegularExpression exponentForm(u"\\A-?[1-9](\\.[0-9]+)?e[+-][0-9]{2,3}\\z"_s);
    EXPECT_TRUE((exponent ? exponentForm : plainForm).match(QString::fromStdString(number)).hasMatch());
    if (!exponent) {
        const bool integral = std::trunc(value) == value;
        EXPECT_EQ(number.ends_with(".0"), integral);
        EXPECT_TRUE(integral || number.back() != '0');
    }
}

TEST(VectorText, IntegralValuesKeepATrailingZero) {
    EXPECT_EQ(text({1, 0, -1, 10, 100, 123456789}), "1.0,0.0,-1.0,10.0,100.0,123456789.0");
}

TEST(VectorText, NegativeZeroKeepsItsSign) {
    EXPECT_EQ(text({-0.0}), "-0.0");
}

TEST(VectorText, FractionsHaveTheFewestDigits) {
    EXPECT_EQ(text({0.25, -0.5, 0.1, 1.0 / 3, 0.1 + 0.2, 123.456}),
              "0.25,-0.5,0.1,0.3333333333333333,0.30000000000000004,123.456");
}

TEST(VectorText, VerySmallValuesHaveAnExponent) {
    EXPECT_EQ(text({1.5e-05, 1e-05, -1e-05, 1.25e-10, 1e-100}), "1.5e-05,1e-05,-1e-05,1.25e-10,1e-100");
}

TEST(VectorText, TheLowerLimitItselfIsPlain) {
    EXPECT_EQ(text({0.0001, -0.0001}), "0.0001,-0.0001");
    EXPECT_EQ(text({std::nextafter(0.0001, 0.0)}), "9.999999999999999e-05");
    EXPECT_EQ(text({std::nextafter(0.0001, 1.0)}), "0.00010000000000000002");
}

TEST(VectorText, TheUpperLimitItselfIsPlain) {
    EXPECT_EQ(text({twoTo53, -twoTo53}), "9007199254740992.0,-9007199254740992.0");
    EXPECT_EQ(text({twoTo53 - 1, twoTo53 - 2}), "9007199254740991.0,9007199254740990.0");
    EXPECT_EQ(text({twoTo53 + 2, -twoTo53 - 2}), "9.007199254740994e+15,-9.007199254740994e+15");
    EXPECT_EQ(text({std::nextafter(twoTo53, infinity)}), "9.007199254740994e+15");
}

TEST(VectorText, LargePlainValuesKeepTheirZeros) {
    EXPECT_EQ(text({1e15, 9e15, 2251799813685248.5}), "1000000000000000.0,9000000000000000.0,2251799813685248.5");
}

TEST(VectorText, VeryLargeValuesHaveAnExponentWithItsSign) {
    EXPECT_EQ(text({1e16, 1e22, 1.5e300, largest}), "1e+16,1e+22,1.5e+300,1.7976931348623157e+308");
}

TEST(VectorText, SubnormalsHaveTheFewestDigitsToo) {
    EXPECT_EQ(text({smallest, -smallest}), "5e-324,-5e-324");
    EXPECT_EQ(text({smallestNormal, std::nextafter(smallestNormal, 0.0)}),
              "2.2250738585072014e-308,2.225073858507201e-308");
}

TEST(VectorText, IsEmptyForAnEmptyVector) {
    EXPECT_EQ(text({}), "");
}

TEST(VectorText, RulesHoldForRandomBitPatterns) {
    std::mt19937_64 random(53);
    for (int round = 0; round < 20'000; ++round) {
        const auto value = std::bit_cast<double>(random());
        if (std::isfinite(value)) {
            expectRules(value);
        }
    }
}

TEST(VectorText, RulesHoldForRandomSubnormals) {
    std::mt19937_64 random(54);
    for (int round = 0; round < 3'000; ++round) {
        expectRules(std::bit_cast<double>(random() & 0x800fffffffffffffU));
    }
}

TEST(VectorText, RulesHoldWhereEmbeddingsLie) {
    std::mt19937_64 random(55);
    std::normal_distribution<double> normal(0, 0.05);
    std::uniform_real_distribution<double> exponent(-5.5, 17);
    for (int round = 0; round < 10'000; ++round) {
        expectRules(normal(random));
        expectRules(static_cast<double>(static_cast<float>(normal(random))));
        expectRules(std::pow(10, exponent(random)));
        expectRules(std::trunc(std::pow(10, exponent(random))));
    }
}

TEST(VectorText, RulesHoldOnEitherSideOfTheLimits) {
    for (const double limit : {0.0001, twoTo53, smallestNormal, 1.0}) {
        double below = limit;
        double above = limit;
        for (int step = 0; step < 1'000; ++step) {
            for (const double sign : {1.0, -1.0}) {
                expectRules(sign * below);
                expectRules(sign * above);
            }
            below = std::nextafter(below, 0.0);
            above = std::nextafter(above, infinity);
        }
    }
}

TEST(VectorText, RulesHoldForEveryPowerOfTwoAndTen) {
    for (int power = -1074; power < 1024; ++power) {
        expectRules(std::ldexp(1.0, power));
    }
    for (int power = -323; power < 309; ++power) {
        expectRules(std::strtod(("1e" + std::to_string(power)).c_str(), nullptr));
    }
}

TEST(SemanticStatement, WithoutCriteria) {
    EXPECT_EQ(statement({0.25, -0.5, 1.5e-05}),
              u"select name,profession,email,summarizedText,invitationMail,jsonCVData,GREATEST(0, LEAST(100, "
              "(dot_product(vector, JSON_ARRAY_PACK('[0.25,-0.5,1.5e-05]')) + 1) * 50)) AS score from curriculums"
              " ORDER BY score DESC LIMIT 5"_s);
}

TEST(SemanticStatement, WithOneCriterion) {
    EXPECT_EQ(statement({0.25, -0.5, 1.5e-05}, {u"jsonCVData::gender = '\"Masculino\"'"_s}),
              u"select name,profession,email,summarizedText,invitationMail,jsonCVData,GREATEST(0, LEAST(100, "
              "(dot_product(vector, JSON_ARRAY_PACK('[0.25,-0.5,1.5e-05]')) + 1) * 50)) AS score from curriculums"
              " where jsonCVData::gender = '\"Masculino\"' ORDER BY score DESC LIMIT 5"_s);
}

TEST(SemanticStatement, CriteriaStandBetweenTheTableAndTheOrder) {
    const QString composed = statement({1}, {u"A"_s, u"O'%1"_s, u"é"_s});
    EXPECT_TRUE(composed.endsWith(u"AS score from curriculums where A AND O'%1 AND é ORDER BY score DESC LIMIT 5"_s));
}

TEST(SemanticStatement, AnEmptyVectorLeavesNothingBetweenTheBrackets) {
    EXPECT_EQ(statement({}),
              u"select name,profession,email,summarizedText,invitationMail,jsonCVData,GREATEST(0, LEAST(100, "
              "(dot_product(vector, JSON_ARRAY_PACK('[]')) + 1) * 50)) AS score from curriculums"
              " ORDER BY score DESC LIMIT 5"_s);
}

TEST(SemanticStatement, HoldsEveryNumberOfALongVector) {
    std::vector<double> vector(4096);
    std::mt19937_64 random(4096);
    std::normal_distribution<double> normal(0, 0.02);
    for (double& value : vector) {
        value = normal(random);
    }
    const QStringList numbers = statement(vector).section(u"PACK('["_s, 1).section(u"]')"_s, 0, 0).split(u","_s);
    ASSERT_EQ(numbers.size(), 4096);
    for (std::size_t i = 0; i < vector.size(); ++i) {
        EXPECT_EQ(numbers[static_cast<qsizetype>(i)].toDouble(), vector[i]);
    }
}

} // namespace
} // namespace dorvantel
