// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/embedding/CandidateName.h"

#include <algorithm>
#include <array>

namespace dorvantel::service {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<QStringView, 41> smallWords{
    u"of",  u"the", u"and", u"de",    u"del",   u"la",  u"las", u"los", u"el",  u"y",   u"e",   u"i",     u"da", u"das",
    u"do",  u"dos", u"di",  u"du",    u"des",   u"le",  u"van", u"von", u"der", u"den", u"ter", u"ten",   u"zu", u"bin",
    u"ibn", u"al",  u"san", u"santa", u"santo", u"mac", u"mc",  u"o",   u"d",   u"l",   u"st",  u"saint", u"af"};
constexpr std::array<QStringView, 68> titles{
    u"sr",     u"sra",     u"srta",      u"srto",      u"don",      u"dona",      u"dna",        u"d",
    u"da",     u"senor",   u"senora",    u"senorita",  u"senhor",   u"senhora",   u"dr",         u"dra",
    u"doctor", u"doctora", u"prof",      u"profa",     u"profesor", u"profesora", u"lic",        u"lica",
    u"licdo",  u"licda",   u"lcdo",      u"lcda",      u"ldo",      u"lda",       u"licenciado", u"licenciada",
    u"ing",    u"inga",    u"ingeniero", u"ingeniera", u"arq",      u"arqa",      u"arquitecto", u"arquitecta",
    u"abg",    u"abga",    u"abogado",   u"abogada",   u"mtro",     u"mtra",      u"maestro",    u"maestra",
    u"mr",     u"mrs",     u"ms",        u"miss",      u"mister",   u"mx",        u"sir",        u"madam",
    u"madame", u"mme",     u"mlle",      u"monsieur",  u"herr",     u"frau",      u"professor",  u"professora",
    u"fray",   u"sor",     u"rev",       u"reverend"};

/// Parts shorter than this stand in many words by chance.
constexpr qsizetype shortestPartInside = 3;

/// The same behind an initial, in a word that looks like any other ("agarcia").
constexpr qsizetype shortestPartOfAWord = 5;

/// Two initials at most go with a part.
constexpr qsizetype mostInitials = 2;

/// No name has more words or letters; what has more must not take the time of all others.
constexpr std::size_t mostNameWords = 20;
constexpr qsizetype longestName = 256;

/// The part of an e-mail address before the @ can be no longer.
constexpr qsizetype longestLocalPart = 64;

template <std::size_t count>
bool isOneOf(const std::array<QStringView, count>& words, QStringView word) {
    return std::ranges::find(words, word) != words.end();
}

bool isInWord(QChar character) {
    return character.isLetterOrNumber() || character.isMark() || character.isSurrogate();
}

bool isOrdinalSign(QChar character) {
    return character == u'ª' || character == u'º';
}

/// The runs of letters of an account or an address, also those that only a capital tells apart.
std::vector<QString> tokensOf(QStringView piece) {
    std::vector<QString> tokens;
    qsizetype begin = 0;
    for (qsizetype at = 0; at <= piece.size(); ++at) {
        const bool isLetter =
            at < piece.size() && (piece[at].isLetter() || piece[at].isMark() || piece[at].isSurrogate());
        const bool isCapital = isLetter && at > begin && piece[at].isUpper() && piece[at - 1].isLower();
        if (isLetter && !isCapital) {
            continue;
        }
        if (at > begin) {
            tokens.push_back(folded(piece.sliced(begin, at - begin)));
        }
        begin = isCapital ? at : at + 1;
    }
    return tokens;
}

/// Whether it is written as no ordinary word is: "@ana", "ana_gil", "ana92", "AnaGil", "gil.example", "x.example/ana".
/// A full stop without the blank behind it ("García.Después") makes no address.
bool looksLikeAnAccount(QStringView piece) {
    for (qsizetype at = 1; at < piece.size(); ++at) {
        const QChar left = piece[at - 1];
        const QChar right = piece[at];
        const bool isCapital = left.isLower() && right.isUpper();
        const bool isNumbered = (left.isLetter() && right.isDigit()) || (left.isDigit() && right.isLetter());
        const bool startsSentence = right.isUpper() && at + 1 < piece.size() && piece[at + 1].isLower();
        const bool isDotted =
            at > 1 && left == u'.' && right.isLetterOrNumber() && piece[at - 2].isLetterOrNumber() && !startsSentence;
        if (isCapital || isNumbered || isDotted) {
            return true;
        }
    }
    const qsizetype dot = piece.indexOf(u'.');
    return piece.startsWith(u'@') || piece.contains(u'_') || (dot >= 0 && piece.indexOf(u'/', dot) > 0);
}

/// Whether more than hyphens stand between its words; words with hyphens are read as words.
bool hasSeparators(QStringView piece) {
    return std::ranges::any_of(piece, [](QChar character) {
        return !isInWord(character) && character != u'-' && character != u'\u2011' && character != u'’';
    });
}

} // namespace

QString folded(QStringView word) {
    const QString lower = word.toString().toCaseFolded();
    if (lower == u"mª"_s || lower == u"m.ª"_s) {
        return u"maria"_s;
    }
    QString plain = lower.normalized(QString::NormalizationForm_KD);
    plain.removeIf([](QChar character) { return character.isMark(); });
    return plain.toCaseFolded();
}

std::vector<Word> wordsOf(QStringView text) {
    std::vector<Word> words;
    const auto goesOn = [&](qsizetype at) {
        return isInWord(text[at]) || (text[at] == u'.' && at + 1 < text.size() && isOrdinalSign(text[at + 1]));
    };
    for (qsizetype at = 0; at < text.size();) {
        if (!isInWord(text[at])) {
            ++at;
            continue;
        }
        const qsizetype begin = at;
        while (at < text.size() && goesOn(at)) {
            ++at;
        }
        QString plain = folded(text.sliced(begin, at - begin));
        plain.remove(u'.');
        if (!plain.isEmpty()) { // marks alone
            words.push_back({begin, at, std::move(plain), text[begin].isLower()});
        }
    }
    return words;
}

bool isTitle(QStringView word) {
    return isOneOf(titles, word);
}

CandidateName::CandidateName(const QString& name, const QString& email) {
    std::vector<Word> words = wordsOf(QStringView(name).first(std::min(name.size(), longestName)));
    words.resize(std::min(words.size(), mostNameWords));
    QString smallBefore;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const QString& word = words[i].text;
        m_initials += word.front();
        m_words.insert(word);
        if (i > 0) {
            m_neighbours.insert(words[i - 1].text + u' ' + word);
        }
        if (!isPart(word)) {
            smallBefore += word;
            continue;
        }
        if (word.size() >= shortestPartInside) {
            m_longParts.push_back(word);
            if (!smallBefore.isEmpty()) {
                m_together.push_back(smallBefore + word);
            }
        }
        smallBefore.clear();
    }
    for (std::size_t i = 0; i < m_longParts.size(); ++i) {
        for (std::size_t j = 0; j < m_longParts.size(); ++j) {
            if (i != j) {
                m_together.push_back(m_longParts[i] + m_longParts[j]);
            }
        }
    }

    const QString local = email.section(u'@', 0, 0);
    if (local.size() > longestLocalPart) {
        return;
    }
    const QString plain = folded(local);
    QString letters = plain;
    letters.removeIf([](QChar character) { return !character.isLetter(); });
    const bool holdsPart =
        std::ranges::any_of(m_longParts, [&](const QString& part) { return letters.contains(part); });
    // One that is a word of the name is found as that word.
    if (!m_words.contains(plain) && (holdsPart || (m_initials.size() > 1 && letters == m_initials))) {
        m_handle = plain;
    }
}

bool CandidateName::isPart(const QString& word) const {
    return word.size() > 1 && m_words.contains(word) && !isOneOf(smallWords, word);
}

/// Parts may follow each other in any order, small words only where they stand in the name.
bool CandidateName::follows(const QString& left, const QString& right) const {
    return (isPart(left) && isPart(right)) || m_neighbours.contains(left + u' ' + right);
}

bool CandidateName::hasInitial(const Word& word) const {
    return word.text.size() == 1 && !word.isLower && m_initials.contains(word.text);
}

bool CandidateName::holdsTwoParts(const QString& letters) const {
    return std::ranges::any_of(m_together, [&](const QString& together) { return letters.contains(together); });
}

bool CandidateName::isPartWithMore(const QString& token, bool isAccount) const {
    const auto areInitials = [&](QStringView letters, const QString& part) {
        return letters.size() <= mostInitials &&
               part.size() >= (isAccount ? shortestPartInside : shortestPartOfAWord) &&
               std::ranges::all_of(letters, [this](QChar letter) { return m_initials.contains(letter); });
    };
    return std::ranges::any_of(m_longParts, [&](const QString& part) {
        const qsizetype more = token.size() - part.size();
        return more > 0 && ((token.endsWith(part) &&
                             (areInitials(token.first(more), part) || m_words.contains(token.first(more)))) ||
                            (token.startsWith(part) && m_words.contains(token.last(more))));
    });
}

bool CandidateName::areAllOfTheName(const std::vector<QString>& tokens) const {
    return tokens.size() > 1 && std::ranges::any_of(tokens, [this](const QString& token) { return isPart(token); }) &&
           std::ranges::all_of(tokens, [this](const QString& token) {
               return m_words.contains(token) || (token.size() == 1 && m_initials.contains(token));
           });
}

bool CandidateName::isIn(QStringView piece) const {
    const std::vector<QString> tokens = tokensOf(piece);
    const bool isAccount = looksLikeAnAccount(piece);
    if (std::ranges::any_of(tokens, [&](const QString& token) {
            return holdsTwoParts(token) || (isAccount && isPart(token)) || isPartWithMore(token, isAccount);
        })) {
        return true;
    }
    if (!isAccount) {
        return hasSeparators(piece) && areAllOfTheName(tokens);
    }
    const QString plain = folded(piece);
    if (!m_handle.isEmpty() && plain.contains(m_handle)) {
        return true;
    }
    QString letters = plain;
    letters.removeIf([](QChar character) { return !character.isLetter(); });
    return holdsTwoParts(letters);
}

} // namespace dorvantel::service
