// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFText.h"

#include "platform/PDFAccents.h"

#include <array>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

QChar at(QStringView text, qsizetype i) {
    return i < 0 || i >= text.size() ? QChar() : text[i];
}

/// LF where a line ends. A CR alone is no line end: it is the glyph that some fonts keep at that place.
QString withLineFeeds(const QString& raw) {
    QString text = raw;
    text.replace("\r\n"_L1, "\n"_L1);
    text.replace(QChar(QChar::LineSeparator), u'\n');
    text.replace(QChar(QChar::ParagraphSeparator), u'\n');
    return text;
}

/// Whether the hyphen of a line end before `next` only divides a word. Words are divided between letters of one case
/// (or after a capital at the start); "Anglo-Saxon", "SQL-databases" and "3-year" have a hyphen of their own.
bool dividesWord(QStringView before, QChar next) {
    const QChar last = at(before, before.size() - 1);
    if (!last.isLetter() || !next.isLetter()) {
        return false;
    }
    if (next.isUpper()) {
        return !last.isLower();
    }
    return !(next.isLower() && last.isUpper() && at(before, before.size() - 2).isUpper());
}

/// The library marks a hyphen at a line end with U+FFFE or U+0002 and drops the line end after it. A soft hyphen that
/// it leaves is one that is drawn: a hyphen, unless it stands at a line end that was kept.
QString withWholeWords(const QString& text) {
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar here = text[i];
        qsizetype next = i + 1;
        if (here == QChar::SoftHyphen || here == QChar(0x0002)) {
            while (at(text, next) == u' ') {
                ++next;
            }
            next = at(text, next) == u'\n' ? next + 1 : i + 1;
        }
        const bool atLineEnd = here == QChar(0xFFFE) || (here == QChar(0x0002) && at(text, i - 1).isLetter()) ||
                               (here == QChar::SoftHyphen && next > i + 1);
        if (atLineEnd && dividesWord(result, at(text, next))) {
            i = next - 1;
        } else if (atLineEnd || here == QChar::SoftHyphen) {
            result += u'-';
        } else {
            result += here;
        }
    }
    return result;
}

bool isLigature(char32_t c) {
    return (c >= 0xFB00 && c <= 0xFB06) || (c >= 0xFB13 && c <= 0xFB17) || c == 0x0132 || c == 0x0133 ||
           (c >= 0x01C4 && c <= 0x01CC) || (c >= 0x01F1 && c <= 0x01F3);
}

/// What the control character stands for in the two old TeX encodings, or nothing.
QLatin1StringView texLigature(QChar c) {
    static constexpr std::array letters = {"ff"_L1, "fi"_L1, "fl"_L1, "ffi"_L1, "ffl"_L1};
    for (const char16_t first : {u'\x0B', u'\x1B'}) {
        if (c.unicode() >= first && c.unicode() < first + letters.size()) {
            return letters[static_cast<std::size_t>(c.unicode() - first)];
        }
    }
    return {};
}

/// Icon fonts use the same codes, so a ligature is taken for one only inside a word, at the end of one in lower case,
/// or before two letters in lower case.
bool standsInWord(QStringView text, qsizetype i) {
    const QChar before = at(text, i - 1);
    const QChar after = at(text, i + 1);
    return (before.isLetter() && after.isLetter()) || before.isLower() ||
           (after.isLower() && at(text, i + 2).isLower());
}

QString withLigaturesAsLetters(const QString& text) {
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar here = text[i];
        if (isLigature(here.unicode())) {
            result += QString(here).normalized(QString::NormalizationForm_KC);
        } else if (const QLatin1StringView letters = texLigature(here); !letters.isEmpty() && standsInWord(text, i)) {
            result += letters;
        } else {
            result += here;
        }
    }
    return result;
}

bool isUnpairedSurrogate(QStringView text, qsizetype i) {
    return (text[i].isHighSurrogate() && !at(text, i + 1).isLowSurrogate()) ||
           (text[i].isLowSurrogate() && !at(text, i - 1).isHighSurrogate());
}

/// One kind of blank, one kind of line end, and nothing that cannot be seen but means nothing either.
QString withoutControls(const QString& text) {
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar here = text[i];
        if (here == u'\t' || here.category() == QChar::Separator_Space) {
            result += u' ';
        } else if (here == u'\n' || (here.category() != QChar::Other_Control && !isUnpairedSurrogate(text, i) &&
                                     here != QChar::ByteOrderMark && here != QChar(0xFFFF))) {
            result += here;
        }
    }
    return result;
}

} // namespace

QString ordinaryPageText(const QString& raw) {
    const QString words = withWholeWords(withLigaturesAsLetters(withLineFeeds(raw)));
    QString text = withAccentsOnLetters(withoutControls(words)).normalized(QString::NormalizationForm_C);
    if (text.trimmed().isEmpty()) {
        return {};
    }
    if (!text.endsWith(u'\n')) {
        text += u'\n';
    }
    return text;
}

} // namespace dorvantel
