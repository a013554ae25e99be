// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/JSONCVData.h"

#include "platform/ListLiteral.h"

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

QString genderText(const QString& gender) {
    return isMasculine(gender) ? u"Masculino"_s : u"Femenino"_s;
}

} // namespace

bool isMasculine(const QString& gender) {
    return gender == "Masculino"_L1;
}

QString JSONCVData::jsonString() const {
    return u"{\"gender\":\""_s + genderText(gender) + u"\",\"softSkills\":"_s + listLiteral(softSkills) +
           u",\"techSkills\":"_s + listLiteral(techSkills) + u",\"languages\":"_s + listLiteral(languages) + u"}"_s;
}

QString JSONCVData::description() const {
    QString out = genderText(gender);
    for (int pass = 0; pass < 2; ++pass) {
        for (const QString& skill : softSkills) {
            out += u' ' + skill;
        }
    }
    for (const QString& language : languages) {
        out += u' ' + language;
    }
    return out;
}

} // namespace dorvantel
