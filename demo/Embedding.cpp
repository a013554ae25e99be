// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/Embedding.h"

#include "demo/FoldedText.h"
#include "demo/Vocabulary.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr double wordWeight = 1.0;
constexpr double pieceWeight = 0.3;
constexpr double termWeight = 1.6;
constexpr double fieldWeight = 1.6;
constexpr std::size_t pieceLength = 4;
constexpr std::size_t shortestTerm = 5; // of those with other meanings

using Counts = std::map<std::u16string, int>; // ordered: sums come out the same everywhere

bool isSmallWord(std::u16string_view word) {
    return (stopWordBits(word) & (StopWord::Spanish | StopWord::English | StopWord::Request)) != 0;
}

// Without the endings of number and gender: "contables" and "contable" meet, "abogada" and "abogado".
std::u16string_view stem(std::u16string_view word) {
    constexpr std::size_t shortest = 4;
    if (word.size() > shortest && word.back() == u's') {
        word.remove_suffix(1);
    }
    if (word.size() > shortest && std::u16string_view(u"aeo").find(word.back()) != word.npos) {
        word.remove_suffix(1);
    }
    return word;
}

void countPieces(Counts& counts, std::u16string_view word) {
    const std::u16string marked = u"^" + std::u16string(word) + u"$";
    for (std::size_t i = 0; i + pieceLength <= marked.size(); ++i) {
        ++counts[marked.substr(i, pieceLength)];
    }
}

void countTerms(Counts& terms, Counts& fields, const TermList& list, const FoldedText& text) {
    for (const PhraseMatch& match : list.phrases.find(text.words())) {
        if (match.ambiguous && text.words()[match.firstWord].folded.size() < shortestTerm) {
            continue; // "go" and "rest" are hardly ever the terms they could be
        }
        const Term& term = list.terms[static_cast<std::size_t>(match.id)];
        ++terms[term.display.toStdU16String()];
        if (!term.field.isEmpty()) {
            ++fields[term.field.toStdU16String()];
        }
    }
}

std::uint64_t hashed(char16_t kind, std::u16string_view feature) {
    std::uint64_t hash = 0xcbf29ce484222325U; // FNV-1a
    const auto mix = [&hash](char16_t c) {
        hash = (hash ^ (c & 0xffU)) * 0x100000001b3U;
        hash = (hash ^ (static_cast<unsigned>(c) >> 8U)) * 0x100000001b3U;
    };
    mix(kind);
    for (const char16_t c : feature) {
        mix(c);
    }
    return hash ^ (hash >> 29U);
}

void add(std::array<double, embeddingLength>& sums, char16_t kind, const Counts& counts, double weight) {
    for (const auto& [feature, count] : counts) {
        const std::uint64_t hash = hashed(kind, feature);
        const double sign = (hash >> 63U) != 0 ? -1 : 1;
        sums[hash % embeddingLength] += sign * weight * (1 + std::log(count));
    }
}

} // namespace

std::vector<float> embedding(const QString& text) {
    const FoldedText foldedWords(text);
    Counts words;
    Counts pieces;
    for (const Word& word : foldedWords.words()) {
        if (!isSmallWord(word.folded)) {
            ++words[std::u16string(stem(word.folded))];
            countPieces(pieces, word.folded);
        }
    }
    Counts terms;
    Counts fields;
    const Vocabulary& all = vocabulary();
    for (const TermList* list : {&all.technical, &all.soft, &all.languages, &all.professions}) {
        countTerms(terms, fields, *list, foldedWords);
    }
    if (words.empty()) {
        words[u""] = 1; // a text without words still has a direction
    }

    std::array<double, embeddingLength> sums{};
    add(sums, u'w', words, wordWeight);
    add(sums, u'p', pieces, pieceWeight);
    add(sums, u't', terms, termWeight);
    add(sums, u'f', fields, fieldWeight);
    double squares = 0;
    for (const double sum : sums) {
        squares += sum * sum;
    }
    const double length = std::sqrt(squares);
    std::vector<float> out;
    out.reserve(embeddingLength);
    for (const double sum : sums) {
        out.push_back(length > 0 ? static_cast<float>(sum / length) : (out.empty() ? 1.0F : 0.0F));
    }
    return out;
}

} // namespace dorvantel
