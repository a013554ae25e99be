// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/ListLiteral.h"

#include <unicode/uchar.h>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

/// Controls, format characters (so also the joiners of an emoji), private use, unassigned, and the two separators that
/// break a line. Everything else is shown as it is; a combining mark too, or a decomposed "ñ" would fall apart.
bool isPrintable(char32_t codePoint) {
    constexpr uint32_t hidden = U_GC_C_MASK | U_GC_ZL_MASK | U_GC_ZP_MASK;
    return (U_GET_GC_MASK(static_cast<UChar32>(codePoint)) & hidden) == 0;
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
        out += QStringView(QChar::fromUcs4(codePoint));
    } else {
        out += u"\\u{"_s + QString::number(static_cast<uint>(codePoint), 16).toUpper() + u"}"_s;
    }
}

} // namespace

QString listLiteral(const QStringList& texts) {
    QString out = u"["_s;
    for (qsizetype i = 0; i < texts.size(); ++i) {
        out += i == 0 ? u"\""_s : u", \""_s;
        for (const char32_t codePoint : texts[i].toUcs4()) {
            appendEscaped(out, codePoint);
        }
        out += u'"';
    }
    return out + u"]"_s;
}

} // namespace dorvantel
