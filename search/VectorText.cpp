// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/VectorText.h"

#include "search/Query.h"

#include <QStringBuilder>

#include <charconv>
#include <cmath>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr double smallestPlain = 0.0001;
constexpr double largestPlain = 0x1p53;
/// "-1.7976931348623157e+308" with the comma before it.
constexpr qsizetype longestNumber = 25;

/// Writes one number to `at` and returns the end of it.
char* writeNumber(char* at, double value) {
    const double magnitude = std::abs(value);
    const bool plain = magnitude == 0 || (magnitude >= smallestPlain && magnitude <= largestPlain);
    char* end = std::to_chars(at, at + longestNumber - 1, value,
                              plain ? std::chars_format::fixed : std::chars_format::scientific)
                    .ptr;
    if (plain && std::trunc(value) == value) {
        *end++ = '.';
        *end++ = '0';
    }
    return end;
}

} // namespace

QByteArray vectorText(std::span<const double> vector) {
    QByteArray text(static_cast<qsizetype>(vector.size()) * longestNumber, Qt::Uninitialized);
    char* const begin = text.data();
    char* end = begin;
    for (const double value : vector) {
        if (end != begin) {
            *end++ = ',';
        }
        end = writeNumber(end, value);
    }
    text.truncate(end - begin);
    return text;
}

QString semanticStatement(std::span<const double> vector, const QStringList& clauses) {
    const QByteArray numbers = vectorText(vector);
    const QString where = clauses.isEmpty() ? QString() : u" where"_s + joinedCondition(clauses);
    return u"select name,profession,email,summarizedText,invitationMail,jsonCVData,"
           "GREATEST(0, LEAST(100, (dot_product(vector, JSON_ARRAY_PACK('["_s %
           QLatin1StringView(numbers) % u"]')) + 1) * 50)) AS score from curriculums"_s % where %
           u" ORDER BY score DESC LIMIT 5"_s;
}

} // namespace dorvantel
