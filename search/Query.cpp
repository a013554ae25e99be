// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/Query.h"

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

void appendContains(QStringList& clauses, const QString& list, const QStringList& tokens) {
    for (const QString& token : tokens) {
        clauses.append(u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::"_s + list + u",'"_s + token + u"')"_s);
    }
}

} // namespace

QStringList clauseList(const SearchCriteria& criteria) {
    QStringList clauses;
    switch (criteria.genderRequired) {
    case Gender::male:
        clauses.append(u"jsonCVData::gender = '\"Masculino\"'"_s);
        break;
    case Gender::female:
        clauses.append(u"jsonCVData::gender = '\"Femenino\"'"_s);
        break;
    case Gender::any:
        break;
    }
    appendContains(clauses, u"techSkills"_s, criteria.techSkillsRequiredTokens);
    appendContains(clauses, u"softSkills"_s, criteria.softSkillsRequiredTokens);
    appendContains(clauses, u"languages"_s, criteria.languagesRequiredTokens);
    return clauses;
}

QString joinedCondition(const QStringList& clauses) {
    return clauses.isEmpty() ? QString() : u" "_s + clauses.join(u" AND "_s);
}

QString structuredStatement(const QStringList& clauses) {
    const QString select =
        u"select name,profession,email,summarizedText,invitationMail,jsonCVData,100.0 as score from curriculums"_s;
    return clauses.isEmpty() ? select : select + u" where"_s + joinedCondition(clauses);
}

} // namespace dorvantel
