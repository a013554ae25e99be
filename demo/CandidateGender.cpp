// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/CandidateGender.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

NameGender listedGender(const QString& name) {
    const QStringList words = name.split(u' ', Qt::SkipEmptyParts);
    // The last word of a longer name is a surname, whatever it looks like ("Ana Martín").
    const qsizetype given = std::max<qsizetype>(1, std::min<qsizetype>(2, words.size() - 1));
    for (const QString& word : words.mid(0, given)) {
        const NameGender gender = vocabulary().firstNames.value(foldedKey(word.section(u'-', 0, 0)));
        if (gender != NameGender::Unknown) {
            return gender;
        }
    }
    return NameGender::Unknown;
}

NameGender genderByEnding(const QString& name) {
    const QString first = foldedKey(name.section(u' ', 0, 0));
    if (first.isEmpty()) {
        return NameGender::Unknown;
    }
    static const std::array<QString, 10> feminine = {u"a"_s,    u"is"_s,  u"triz"_s, u"dad"_s, u"cion"_s,
                                                     u"ette"_s, u"ine"_s, u"elle"_s, u"ith"_s, u"lyn"_s};
    static const std::array<QString, 5> masculineA = {u"luca"_s, u"ilya"_s, u"nikita"_s, u"sasha"_s, u"joshua"_s};
    if (std::ranges::find(masculineA, first) != masculineA.end()) {
        return NameGender::Masculine;
    }
    const bool ends = std::ranges::any_of(feminine, [&](const QString& ending) { return first.endsWith(ending); });
    return ends ? NameGender::Feminine : NameGender::Masculine;
}

NameGender genderByWords(const FoldedText& text) {
    static const std::array<std::u16string_view, 8> feminine = {u"mujer",  u"casada", u"soltera",  u"divorciada",
                                                                u"nacida", u"female", u"femenino", u"viuda"};
    static const std::array<std::u16string_view, 8> masculine = {u"hombre", u"casado", u"soltero",   u"divorciado",
                                                                 u"nacido", u"male",   u"masculino", u"viudo"};
    for (const Word& word : text.words()) {
        if (std::ranges::find(feminine, word.folded) != feminine.end()) {
            return NameGender::Feminine;
        }
        if (std::ranges::find(masculine, word.folded) != masculine.end()) {
            return NameGender::Masculine;
        }
    }
    return NameGender::Unknown;
}

// The first profession that the text writes in the form of one gender.
NameGender genderByProfession(const FoldedText& text) {
    const TermList& list = vocabulary().professions;
    for (const PhraseMatch& match : list.phrases.find(text.words())) {
        const Term& term = list.terms[static_cast<std::size_t>(match.id)];
        const Word& head = text.words()[match.firstWord];
        if (term.feminine.isEmpty()) {
            continue;
        }
        const std::u16string firstWord = foldedText(term.feminine.section(u' ', 0, 0));
        const std::u16string masculineWord = foldedText(term.display.section(u' ', 0, 0));
        if (firstWord != masculineWord && head.folded == firstWord) {
            return NameGender::Feminine;
        }
        if (firstWord != masculineWord && head.folded == masculineWord) {
            return NameGender::Masculine;
        }
    }
    return NameGender::Unknown;
}

} // namespace

NameGender genderOfCandidate(const QString& name, const FoldedText& cvText) {
    for (const NameGender gender : {listedGender(name), genderByWords(cvText), genderByProfession(cvText)}) {
        if (gender != NameGender::Unknown) {
            return gender;
        }
    }
    return genderByEnding(name);
}

} // namespace dorvantel
