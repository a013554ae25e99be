// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/CvText.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <ranges>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t longestHeading = 5; // words

struct Piece {
    qsizetype begin;
    qsizetype end;
};

// The parts of a line between runs of two or more blanks; the whole line when every blank of it is such a run, as
// some word processors write it.
std::vector<Piece> piecesOf(const QString& text, qsizetype begin, qsizetype end) {
    std::vector<Piece> pieces;
    bool someSingleBlank = false;
    qsizetype pieceBegin = begin;
    qsizetype i = begin;
    while (i < end) {
        if (text[i] != u' ') {
            ++i;
            continue;
        }
        qsizetype run = i;
        while (run < end && text[run] == u' ') {
            ++run;
        }
        if (run - i > 1) {
            pieces.push_back({pieceBegin, i});
            pieceBegin = run;
        } else {
            someSingleBlank = true;
        }
        i = run;
    }
    pieces.push_back({pieceBegin, end});
    return someSingleBlank ? pieces : std::vector<Piece>{{begin, end}};
}

// Whether the full stop at `at` ends a sentence rather than an abbreviation ("Prof. Ruiz", "Claud D. Park").
bool endsSentence(const QString& text, qsizetype at, qsizetype end) {
    static const QSet<QString> abbreviations = {u"prof"_s, u"avda"_s, u"mtro"_s, u"mtra"_s, u"srta"_s,
                                                u"dipl"_s, u"dept"_s, u"univ"_s, u"sept"_s};
    if (text[at] != u'.' || at + 2 >= end || text[at + 1] != u' ' || !text[at + 2].isUpper()) {
        return false;
    }
    qsizetype begin = at;
    while (begin > 0 && text[begin - 1].isLetterOrNumber()) {
        --begin;
    }
    const QString word = text.mid(begin, at - begin).toLower();
    return word.size() >= 4 && !abbreviations.contains(word);
}

// PDF readers run a line into the next where a sentence ends with it, headings and all.
std::vector<Piece> sentencesOf(const QString& text, const Piece& piece) {
    std::vector<Piece> sentences;
    qsizetype begin = piece.begin;
    for (qsizetype i = piece.begin; i < piece.end; ++i) {
        if (endsSentence(text, i, piece.end)) {
            sentences.push_back({begin, i + 1});
            begin = i + 2;
        }
    }
    sentences.push_back({begin, piece.end});
    return sentences;
}

} // namespace

CvText::CvText(const QString& text)
    : m_text(text) {
    const QString& all = m_text.original();
    std::size_t nextWord = 0;
    qsizetype lineBegin = 0;
    while (lineBegin <= all.size()) {
        const qsizetype feed = all.indexOf(u'\n', lineBegin);
        const qsizetype lineEnd = feed < 0 ? all.size() : feed;
        for (const Piece& piece : piecesOf(all, lineBegin, lineEnd)) {
            for (const Piece& sentence : sentencesOf(all, piece)) {
                addLine(sentence.begin, sentence.end, nextWord);
            }
        }
        lineBegin = lineEnd + 1;
    }
    findSections();
}

void CvText::addLine(qsizetype begin, qsizetype end, std::size_t& nextWord) {
    const std::vector<Word>& words = m_text.words();
    std::size_t first = nextWord;
    while (nextWord < words.size() && words[nextWord].begin < end) {
        ++nextWord;
    }
    // "PERSONAL INFORMATION Betty Smith": a label and what it stands beside.
    const std::size_t label = capitalHeading(first, nextWord);
    if (label > 0) {
        const qsizetype labelEnd = words[first + label - 1].end;
        m_lines.push_back({m_text.original().mid(begin, labelEnd - begin).simplified(), first, label});
        first += label;
        begin = labelEnd;
    }
    if (nextWord > first) {
        const QString text = m_text.original().mid(begin, end - begin).simplified();
        m_lines.push_back({text, first, nextWord - first});
    }
}

std::size_t CvText::capitalHeading(std::size_t first, std::size_t last) const {
    const auto isCapitals = [this](const Word& word) {
        const QStringView text = m_text.originalOf(word);
        return text.size() > 1 && std::ranges::all_of(text, [](QChar c) { return c.isUpper(); });
    };
    const std::vector<Word>& words = m_text.words();
    const std::vector<Word> start(words.begin() + static_cast<std::ptrdiff_t>(first),
                                  words.begin() + static_cast<std::ptrdiff_t>(std::min(last, first + longestHeading)));
    const std::size_t capitals = static_cast<std::size_t>(std::ranges::find_if_not(start, isCapitals) - start.begin());
    if (capitals == 0 || capitals == start.size()) {
        return 0;
    }
    const bool isHeading =
        vocabulary().headings.exact({start.begin(), start.begin() + static_cast<std::ptrdiff_t>(capitals)}) >= 0;
    return isHeading ? capitals : 0;
}

void CvText::findSections() {
    const PhraseTable& headings = vocabulary().headings;
    Section current = Section::None;
    for (CvLine& line : m_lines) {
        const std::span<const Word> words = wordsOf(line);
        line.section = current;
        const std::vector<Word> start(
            words.begin(), words.begin() + static_cast<std::ptrdiff_t>(std::min(words.size(), longestHeading)));
        if (words.size() <= longestHeading && !line.text.endsWith(u'.')) {
            const int whole = headings.exact(start);
            if (whole >= 0) {
                const auto section = static_cast<Section>(whole);
                current = section == Section::Document ? current : section;
                line.section = current;
                line.heading = true;
                continue;
            }
        }
        // "Idiomas: Inglés B2" and "Mother tongue English" tell where they belong; what follows them stays where it
        // was.
        const std::vector<PhraseMatch> matches = headings.find(start);
        if (!matches.empty() && matches[0].firstWord == 0) {
            const auto section = static_cast<Section>(matches[0].id);
            const Word& last = words[matches[0].wordCount - 1];
            const QString& all = m_text.original();
            const bool colon = last.end < all.size() && all[last.end] == u':';
            if (colon || section == Section::Languages) {
                line.section = section;
            }
        }
    }
}

const CvLine& CvText::lineOf(std::size_t word) const {
    const auto after = std::upper_bound(m_lines.begin(), m_lines.end(), word,
                                        [](std::size_t w, const CvLine& line) { return w < line.firstWord; });
    return *(after - 1);
}

QString languageOf(const FoldedText& text) {
    constexpr std::size_t fewestWords = 80;
    constexpr double smallestShare = 0.08;
    // In the order of the bits of `StopWord`.
    static const std::array<QString, 6> codes = {u"es"_s, u"en"_s, u"fr"_s, u"de"_s, u"it"_s, u"pt"_s};
    const std::vector<Word>& words = text.words();
    if (words.size() < fewestWords) {
        return {};
    }
    std::array<std::size_t, codes.size()> hits{};
    for (const Word& word : words) {
        const unsigned bits = stopWordBits(word.folded);
        for (std::size_t i = 0; i < codes.size(); ++i) {
            hits[i] += (bits >> i) & 1U;
        }
    }
    const auto best = std::max_element(hits.begin(), hits.end());
    const auto second = std::ranges::max(hits | std::views::filter([&](const auto& h) { return &h != &*best; }));
    const bool clear = *best * 4 > second * 5;
    const double share = static_cast<double>(*best) / static_cast<double>(words.size());
    return share < smallestShare || !clear ? QString() : codes[static_cast<std::size_t>(best - hits.begin())];
}

} // namespace dorvantel
