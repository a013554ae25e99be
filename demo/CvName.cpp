// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/CvName.h"

#include "platform/Text.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <optional>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t linesLookedAt = 90;

const QSet<QString>& particles() {
    static const QSet<QString> words = {u"de"_s, u"del"_s, u"la"_s,  u"las"_s, u"los"_s, u"y"_s,   u"i"_s,
                                        u"da"_s, u"do"_s,  u"dos"_s, u"di"_s,  u"van"_s, u"von"_s, u"der"_s,
                                        u"el"_s, u"al"_s,  u"bin"_s, u"ben"_s, u"ibn"_s, u"e"_s};
    return words;
}

// Titles before and degrees behind a name, folded and without full stops and hyphens.
bool isTitle(const QString& word) {
    static const QSet<QString> titles = {u"dr"_s,  u"dra"_s,     u"lic"_s, u"ing"_s,  u"mtro"_s,   u"mtra"_s, u"sr"_s,
                                         u"sra"_s, u"srta"_s,    u"don"_s, u"dona"_s, u"dna"_s,    u"mr"_s,   u"mrs"_s,
                                         u"ms"_s,  u"prof"_s,    u"phd"_s, u"msc"_s,  u"bsc"_s,    u"mba"_s,  u"arq"_s,
                                         u"ma"_s,  u"dipling"_s, u"cpa"_s, u"pmp"_s,  u"captain"_s};
    QString key = foldedKey(word);
    key.remove(u'.').remove(u'-');
    return titles.contains(key);
}

bool isFirstName(const QString& word) {
    return vocabulary().firstNames.contains(foldedKey(word));
}

bool looksLikeNameWord(const QString& word) {
    if (particles().contains(word.toLower())) {
        return true;
    }
    if (!word.front().isUpper()) {
        return false;
    }
    return std::ranges::all_of(word,
                               [](QChar c) {
                                   return c.isLetter() || c.isMark() || c == u'-' || c == u'.' || c == u'\'' ||
                                          c == u'’';
                               }) &&
           (word.size() > 1 || word.front().isLetter());
}

QStringList nameWords(const QString& text) {
    QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    while (!words.isEmpty() && isTitle(words.first())) {
        words.removeFirst();
    }
    while (!words.isEmpty() && isTitle(words.last())) {
        words.removeLast();
    }
    return words;
}

// Letters of the address before the "@", folded: what a name's words are looked for in.
QString localPart(const QString& email) {
    return foldedKey(email.left(email.indexOf(u'@')));
}

int wordsInAddress(const QStringList& words, const QString& local) {
    return static_cast<int>(std::ranges::count_if(
        words, [&](const QString& word) { return word.size() >= 3 && local.contains(foldedKey(word)); }));
}

// How much a line loses for words that mean something else: much for a trade or a skill, less for words that may be
// surnames as well ("Valencia", "Piloto").
double otherMeaning(const QString& text) {
    constexpr double certain = 12;
    constexpr double possible = 5;
    const FoldedText words(text);
    const Vocabulary& all = vocabulary();
    if (all.headings.exact(words.words()) >= 0) {
        return certain;
    }
    double loss = all.languages.phrases.find(words.words()).empty() ? 0 : possible;
    for (const TermList* list : {&all.professions, &all.technical, &all.soft}) {
        for (const PhraseMatch& match : list->phrases.find(words.words())) {
            loss = std::max(loss, match.ambiguous ? possible : certain);
        }
    }
    return loss;
}

bool couldBeName(const QStringList& words) {
    const qsizetype weighty = std::ranges::count_if(
        words, [](const QString& word) { return !particles().contains(word.toLower()) && word.size() > 2; });
    if (words.size() < 2 || words.size() > 6 || weighty < 2 || !std::ranges::all_of(words, looksLikeNameWord) ||
        particles().contains(words.first().toLower())) {
        return false;
    }
    const QSet<QString>& others = vocabulary().notNames;
    const auto isOther = [&](const QString& word) {
        return others.contains(foldedKey(word)) && !particles().contains(word.toLower());
    };
    // "Lima" and "Valencia" are surnames behind a first name.
    return !isOther(words.first()) && (isFirstName(words.first()) || std::ranges::none_of(words, isOther));
}

struct Candidate {
    QStringList words;
    std::size_t firstLine = 0;
    std::size_t lines = 1;
    double score = 0;
};

double score(const Candidate& candidate, const QString& local, bool labelled) {
    // A name that is known for one may also stand far down, behind a column of skills.
    const bool known = isFirstName(candidate.words.first());
    const double perLine = known ? 0.1 : 0.4;
    double points = 10 - perLine * static_cast<double>(candidate.firstLine);
    points += known ? 6 : 0;
    points += 5 * std::min(2, wordsInAddress(candidate.words, local));
    points += labelled ? 12 : 0;
    points += candidate.lines > 1 ? -1 : 0;
    const QString joined = candidate.words.join(u' ');
    const bool likely = known && wordsInAddress(candidate.words, local) > 0;
    points -= likely ? std::min(2.0, otherMeaning(joined)) : otherMeaning(joined);
    return points;
}

// What follows "Nombre:" or "Name"; empty when the line is not labelled.
QString labelledName(const QString& line) {
    static const QRegularExpression label(
        u"^(?:nombre y apellidos?|nombre completo|apellidos? y nombres?|apellidos? nombres?|full name|surname s first "
        "name s|first name s surname s|first name|nombres?|name|nom|nome)\\s*[:/-]?\\s+(?=\\p{Lu})"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    const QRegularExpressionMatch match = label.match(line);
    return match.hasMatch() ? line.mid(match.capturedEnd()) : QString();
}

// "López García Ana", as forms write it.
QStringList surnamesLast(QStringList words) {
    if (words.size() > 2 && !isFirstName(words.first()) && isFirstName(words.last())) {
        words.prepend(words.takeLast());
    }
    return words;
}

void consider(std::optional<Candidate>& best, Candidate candidate, const QString& local, bool labelled) {
    if (!couldBeName(candidate.words)) {
        return;
    }
    candidate.score = score(candidate, local, labelled);
    if (!best || candidate.score > best->score) {
        best = std::move(candidate);
    }
}

QString nameFromAddress(const QString& email) {
    static const QRegularExpression separators(u"[._\\-0-9]+"_s);
    QStringList words;
    const QStringList parts = email.left(email.indexOf(u'@')).split(separators, Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        if (part.size() > 1) {
            words.append(vocabulary().firstNameForms.value(foldedKey(part), capitalized(part)));
        }
    }
    return words.size() >= 2 && words.size() <= 4 && isFirstName(words.first()) ? words.join(u' ') : QString();
}

} // namespace

QString emailIn(const QString& cvText) {
    static const QRegularExpression pattern(
        u"(?<![A-Za-z0-9._%+\\-])[A-Za-z0-9._%+\\-]{1,64}@[A-Za-z0-9\\-]+(?:\\.[A-Za-z0-9\\-]+)*\\.[A-Za-z]{2,24}"_s);
    QString address = pattern.match(cvText).captured().toLower();
    while (address.startsWith(u'.') || address.startsWith(u'-')) {
        address.remove(0, 1);
    }
    return address;
}

QString writtenAsName(const QString& text) {
    QStringList words = nameWords(text);
    const bool allCapitals = text == text.toUpper();
    for (QString& word : words) {
        if (allCapitals) {
            word = capitalized(word);
        }
        if (&word != &words.first() && particles().contains(word.toLower())) {
            word = word.toLower();
        }
    }
    return words.join(u' ');
}

FoundName nameIn(const CvText& cv, const QString& email) {
    constexpr double leastScore = 7;
    const QString local = localPart(email);
    const std::vector<CvLine>& lines = cv.lines();
    std::optional<Candidate> best;
    for (std::size_t i = 0; i < std::min(lines.size(), linesLookedAt); ++i) {
        const QString labelled = labelledName(lines[i].text);
        if (!labelled.isEmpty()) {
            consider(best, {surnamesLast(nameWords(labelled)), i, 1, 0}, local, true);
        }
        if (lines[i].heading) {
            continue;
        }
        consider(best, {nameWords(lines[i].text), i, 1, 0}, local, false);
        if (i + 1 < lines.size() && !lines[i + 1].heading && lines[i].wordCount <= 2 && lines[i + 1].wordCount <= 3) {
            const QStringList both = nameWords(lines[i].text + u' ' + lines[i + 1].text);
            if (!both.isEmpty() && (isFirstName(both.first()) || wordsInAddress(both, local) >= 2)) {
                consider(best, {both, i, 2, 0}, local, false);
            }
        }
    }
    if (!best || best->score < leastScore) {
        return {email.isEmpty() ? QString() : nameFromAddress(email), 0, 0};
    }
    return {writtenAsName(best->words.join(u' ')), best->lines, best->firstLine};
}

} // namespace dorvantel
