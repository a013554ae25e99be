// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/CvSummary.h"

#include <algorithm>
#include <initializer_list>
#include <limits>
#include <span>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t everyLine = std::numeric_limits<std::size_t>::max();
constexpr std::size_t nearTheName = 40;   // lines
constexpr qsizetype longestSummary = 480; // characters
constexpr qsizetype shortestProse = 60;   // characters that tell running text from a label

// Running text uses small words; a list of nouns does not.
bool holdsSmallWords(const CvText& cv, const CvLine& line) {
    const auto small = std::ranges::count_if(
        cv.wordsOf(line), [](const Word& word) { return (stopWordBits(word.folded) & StopWord::AnyLanguage) != 0; });
    return small >= 2 || (small >= 1 && line.wordCount <= 6);
}

bool isAddressOrNumber(const CvLine& line) {
    const auto digits = std::ranges::count_if(line.text, [](QChar c) { return c.isDigit(); });
    return line.text.contains(u'@') || line.text.contains("http"_L1) || line.text.contains("www."_L1) ||
           line.text.contains(".com/"_L1) || digits * 3 > line.text.size();
}

bool isProse(const QString& text) {
    const bool holdsDigit = std::ranges::any_of(text, [](QChar c) { return c.isDigit(); });
    return text.size() >= shortestProse && (text.contains(u'.') || !holdsDigit);
}

// Goes on where a line did: in lower case, or with the last words of its sentence.
bool continues(const QString& prose, const CvLine& line) {
    return line.text.front().isLower() || (line.text.endsWith(u'.') && line.wordCount <= 6) ||
           (!prose.endsWith(u'.') && line.wordCount <= 2);
}

// Consecutive lines of the wanted sections, joined: the first run that is long enough to be prose. It starts with a
// line that `starts` it.
QString proseOf(const CvText& cv, std::initializer_list<Section> sections, std::size_t lines, auto starts) {
    QString prose;
    for (const CvLine& line : std::span(cv.lines()).first(std::min(lines, cv.lines().size()))) {
        const bool belongs = !line.heading && std::ranges::find(sections, line.section) != sections.end() &&
                             !isAddressOrNumber(line) && line.text != line.text.toUpper();
        const bool taken = prose.isEmpty() ? holdsSmallWords(cv, line) && starts(line)
                                           : holdsSmallWords(cv, line) || continues(prose, line);
        if (belongs && taken) {
            prose += (prose.isEmpty() ? QString() : u" "_s) + line.text;
            continue;
        }
        if (isProse(prose)) {
            break;
        }
        prose.clear();
    }
    return isProse(prose) ? prose : QString();
}

// Whole sentences up to the limit; a single sentence longer than that is cut at a word.
QString firstSentences(const QString& text) {
    qsizetype end = 0;
    for (qsizetype i = 0; i < std::min(text.size(), longestSummary); ++i) {
        const bool stop = text[i] == u'.' || text[i] == u'!' || text[i] == u'?';
        const bool last = i + 1 == text.size();
        if (stop && (last || (text[i + 1] == u' ' && (i + 2 == text.size() || text[i + 2].isUpper())))) {
            end = i + 1;
        }
    }
    if (text.size() <= longestSummary && end < text.size() * 2 / 3) {
        return text;
    }
    if (end >= shortestProse) {
        return text.left(end);
    }
    const qsizetype blank = text.lastIndexOf(u' ', longestSummary);
    return text.left(blank > 0 ? blank : longestSummary) + u"…"_s;
}

} // namespace

QString summaryIn(const CvText& cv) {
    QString prose = proseOf(cv, {Section::Profile}, everyLine, [](const CvLine&) { return true; });
    if (prose.isEmpty()) {
        // A few lines under the name; the sentences of a later section tell of a job, not of the person.
        prose = proseOf(cv, {Section::None, Section::Contact}, nearTheName, [](const CvLine& line) {
            return !line.text.contains(u':') && line.text.size() >= shortestProse / 2;
        });
    }
    if (prose.isEmpty()) {
        // Where columns run into each other, a profile may turn up under the heading of the other column.
        prose = proseOf(cv, {Section::Technical, Section::Skills, Section::Soft}, nearTheName,
                        [](const CvLine& line) { return line.text.size() >= shortestProse * 2 / 3; });
        prose = prose.size() < 2 * shortestProse ? QString() : prose;
    }
    return prose.isEmpty() ? QString() : firstSentences(prose);
}

} // namespace dorvantel
