// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace dorvantel {

/// Which gender a candidate must have to be found.
enum class Gender { male, female, any };

/// What a search asks for: the search screen's choices at one moment. All of them must hold. A plain value.
struct SearchCriteria {
    Gender genderRequired = Gender::any;
    QStringList techSkillsRequiredTokens{};
    QStringList softSkillsRequiredTokens{};
    QStringList languagesRequiredTokens{};
    QString freeTextSearchString{}; ///< not empty: candidates are ranked by their likeness to it

    bool operator==(const SearchCriteria&) const = default;
};

// The statements are read by the records service, which knows exactly these forms. Values are put in verbatim, quotes
// and all: the service tells a quote that belongs to a value from one that ends it.

/// One predicate per criterion: the gender first, then technical skills, soft skills and languages in their own order.
QStringList clauseList(const SearchCriteria& criteria);

/// The clauses joined for a "where", with the blank that separates them from it; empty without clauses.
QString joinedCondition(const QStringList& clauses);

/// Selects the candidates for whom all clauses hold, every one with the score 100.
QString structuredStatement(const QStringList& clauses);

} // namespace dorvantel
