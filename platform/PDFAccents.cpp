// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFAccents.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>

namespace dorvantel {

namespace {

constexpr char16_t acute = u'\u00B4';
constexpr char16_t grave = u'`';
constexpr char16_t diaeresis = u'\u00A8';
constexpr char16_t tilde = u'\u02DC';
constexpr char16_t cedilla = u'\u00B8';
constexpr char16_t ogonek = u'\u02DB';

struct Accent {
    char16_t spacing;
    char16_t combining;
};

// The circumflex and tilde of ASCII are missing: fonts call the accents by other names, and people type them.
constexpr std::array accents = {
    Accent{grave, 0x0300},     Accent{acute, 0x0301},     Accent{u'\u0384', 0x0301}, Accent{u'\u02C6', 0x0302},
    Accent{tilde, 0x0303},     Accent{u'\u00AF', 0x0304}, Accent{u'\u02C9', 0x0304}, Accent{u'\u02D8', 0x0306},
    Accent{u'\u02D9', 0x0307}, Accent{diaeresis, 0x0308}, Accent{u'\u02DA', 0x030A}, Accent{u'\u02DD', 0x030B},
    Accent{u'\u02C7', 0x030C}, Accent{cedilla, 0x0327},   Accent{ogonek, 0x0328},
};

QChar combiningOf(QChar spacing) {
    const auto* found = std::ranges::find(accents, spacing.unicode(), &Accent::spacing);
    return found == accents.end() ? QChar() : QChar(found->combining);
}

bool isDotless(QChar letter) {
    return letter == u'\u0131' || letter == u'\u0237';
}

bool isUnder(QChar accent) {
    return accent == cedilla || accent == ogonek;
}

bool hasAcute(QChar letter) {
    return letter.unicode() > 0x7F && letter.isLetter() && letter.decomposition().endsWith(QChar(0x0301));
}

/// One text being put right. Positions are UTF-16 units.
class Composer {
public:
    explicit Composer(const QString& text)
        : m_text(text) {
        // A page that builds its accented letters has none ready-made; where those are the more, ´ is an apostrophe.
        m_acuteIsApostrophe = std::ranges::count_if(text, hasAcute) > text.count(QChar(acute));
        findQuotationMarks();
    }

    QString composed() const {
        QString result;
        result.reserve(m_text.size());
        for (qsizetype i = 0; i < m_text.size(); ++i) {
            const QChar here = m_text[i];
            const bool isAccent = isSpacingAccent(here) && !m_quotationMarks.contains(i);
            if (isAccent && at(i - 1) == u'/') {
                result += here == tilde ? QChar(u'~') : here;
            } else if (isAccent && isAccentOfLast(here, result)) {
                result.back() = accented(result.back(), here);
            } else if (isAccent && isAccentOfNext(i)) {
                result += accented(at(i + 1), here);
                ++i;
            } else {
                result += here;
            }
        }
        return result;
    }

private:
    QChar at(qsizetype i) const { return i < 0 || i >= m_text.size() ? QChar() : m_text[i]; }

    static bool isAccentOfLast(QChar accent, const QString& result) {
        return isUnder(accent) && !result.isEmpty() && !accented(result.back(), accent).isNull();
    }

    bool isAccentOfNext(qsizetype i) const {
        const QChar accent = m_text[i];
        const QChar letter = at(i + 1);
        if (accented(letter, accent).isNull()) {
            return false;
        }
        const bool insideWord = at(i - 1).isLetter();
        if (isDotless(letter)) {
            return true;
        }
        if (accent == grave) {
            return insideWord && QStringView(u"aeiouAEIOU").contains(letter);
        }
        if (accent == diaeresis) {
            return QStringView(u"aeiouyAEIOUY").contains(letter);
        }
        return accent != acute || isAcuteOfNext(letter, insideWord, at(i + 2));
    }

    bool isAcuteOfNext(QChar letter, bool insideWord, QChar afterLetter) const {
        if (m_acuteIsApostrophe || !QStringView(u"aeioucnszyAEIOUCNSZY").contains(letter)) {
            return false;
        }
        const bool possessive = insideWord && letter.toLower() == u's' && !afterLetter.isLetter(); // "Ana´s"
        const bool elision = insideWord && letter.isUpper() && afterLetter.isLower();              // "D´Angelo"
        return !possessive && !elision;
    }

    /// Marks the accents that stand before a word and after a later one of the same line: typed as quotation marks.
    void findQuotationMarks() {
        QHash<QChar, qsizetype> opening;
        for (qsizetype i = 0; i < m_text.size(); ++i) {
            const QChar here = m_text[i];
            if (here == u'\n') {
                opening.clear();
            }
            if (!isSpacingAccent(here)) {
                continue;
            }
            const QChar before = at(i - 1);
            const bool closes = !before.isNull() && !before.isSpace() && !at(i + 1).isLetter();
            if (closes && opening.contains(here)) {
                m_quotationMarks.insert(opening.take(here));
                m_quotationMarks.insert(i);
            } else if (!before.isLetter()) {
                opening.insert(here, i);
            }
        }
    }

    const QString& m_text;
    QSet<qsizetype> m_quotationMarks;
    bool m_acuteIsApostrophe = false;
};

} // namespace

bool isSpacingAccent(QChar character) {
    return !combiningOf(character).isNull();
}

QChar accented(QChar base, QChar accent) {
    const QChar combining = combiningOf(accent);
    if (combining.isNull() || !base.isLetter()) {
        return {};
    }
    const QChar letter = base == u'\u0131' ? QChar(u'i') : base == u'\u0237' ? QChar(u'j') : base;
    const QString composed = (QString(letter) + combining).normalized(QString::NormalizationForm_C);
    return composed.size() == 1 ? composed[0] : QChar();
}

QString withAccentsOnLetters(const QString& text) {
    return std::ranges::any_of(text, isSpacingAccent) ? Composer(text).composed() : text;
}

} // namespace dorvantel
