// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/JSONCVData.h"

#include <unicode/uchar.h>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

bool isPrintable(char32_t codePoint) {
    switch (u_charType(static_cast<UChar32>(codePoint))) {
    case U_CONTROL_CHAR:
    case U_FORMAT_CHAR:
    case U_SURROGATE:
    case U_PRIVATE_USE_CHAR:
    case U_UNASSIGNED:
    case U_LINE_SEPARATOR:
    case U_PARAGRAPH_SEPARATOR:
        return false;
    default:
        return true;
    }
}

void appendEscaped(QString& out, char32_t codePoint) {
    switch (codePoint) {
    case U'\\':
        out += u"\\\\"_s;
        return;
    case U'"':
        out += u"\\\""_s;
        return;
    case U'\'':
        out += u"\\'"_s;
        return;
    case U'\n':
        out += u"\\n"_s;
        return;
    case U'\r':
        out += u"\\r"_s;
        return;
    case U'\t':
        out += u"\\t"_s;
        return;
    case U'\0':
        out += u"\\0"_s;
        return;
    default:
        break;
    }
    if (isPrintable(codePoint)) {
        out += QString::fromUcs4(&codePoint, 1);
    } else {
        out += u"\\u{"_s + QString::number(static_cast<uint>(codePoint), 16).toUpper() + u"}"_s;
    }
}

QString listText(const QStringList& values) {
    QString out = u"["_s;
    for (qsizetype i = 0; i < values.size(); ++i) {
        out += i == 0 ? u"\""_s : u", \""_s;
        for (const char32_t codePoint : values[i].toUcs4()) {
            appendEscaped(out, codePoint);
        }
        out += u'"';
    }
    return out + u"]"_s;
}

QString genderText(const QString& gender) {
    return isMasculine(gender) ? u"Masculino"_s : u"Femenino"_s;
}

} // namespace

bool isMasculine(const QString& gender) {
    return gender == "Masculino"_L1;
}

QString JSONCVData::jsonString() const {
    return u"{\"gender\":\""_s + genderText(gender) + u"\",\"softSkills\":"_s + listText(softSkills) +
           u",\"techSkills\":"_s + listText(techSkills) + u",\"languages\":"_s + listText(languages) + u"}"_s;
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
