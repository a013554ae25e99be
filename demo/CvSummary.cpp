// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/CvSummary.h"

#include <QStringList>

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestSummary = 480; // characters
constexpr qsizetype shortestProse = 60;   // characters that tell running text from a label

// Running text uses small words; a list of nouns does not.
bool holdsSmallWords(const CvText& cv, const CvLine& line) {
    const auto& stopWords = vocabulary().stopWords;
    const auto small = std::ranges::count_if(cv.wordsOf(line), [&](const Word& word) {
        const QString key = QString::fromUtf16(word.folded.data(), static_cast<qsizetype>(word.folded.size()));
        return std::ranges::any_of(stopWords, [&](const QSet<QString>& words) { return words.contains(key); });
    });
    return small >= 2 || (small >= 1 && line.wordCount <= 6);
}

bool isAddressOrNumber(const CvLine& line) {
    const auto digits = std::ranges::count_if(line.text, [](QChar c) { return c.isDigit(); });
    return line.text.contains(u'@') || line.text.contains("http"_L1) || line.text.contains("www."_L1) ||
           line.text.contains(".com/"_L1) || digits * 3 > line.text.size();
}

// Consecutive lines of the section, joined; the first run that is long enough to be prose.
QString proseOf(const CvText& cv, auto belongs) {
    QString prose;
    const std::vector<CvLine>& lines = cv.lines();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const CvLine& line = lines[i];
        const bool lastWords = line.text.endsWith(u'.') && line.wordCount <= 4 && !prose.endsWith(u'.');
        const bool continues = !prose.isEmpty() && (line.text.front().isLower() || lastWords);
        if (!line.heading && belongs(line) && !isAddressOrNumber(line) && (holdsSmallWords(cv, line) || continues)) {
            prose += (prose.isEmpty() ? QString() : u" "_s) + line.text;
            continue;
        }
        if (prose.size() >= shortestProse) {
            break;
        }
        prose.clear();
    }
    return prose.size() >= shortestProse ? prose : QString();
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
    const auto inProfile = [](const CvLine& line) { return line.section == Section::Profile; };
    // A few lines under the name; the sentences of a later section tell of a job, not of the person.
    const auto underName = [](const CvLine& line) {
        return (line.section == Section::None || line.section == Section::Contact) && !line.text.contains(u':') &&
               line.text.size() >= shortestProse / 2;
    };
    // Where columns run into each other, a profile may turn up under the heading of the other column.
    const auto besideLists = [](const CvLine& line) {
        return line.section != Section::Experience && line.section != Section::Education &&
               line.section != Section::Other && line.text.size() >= shortestProse * 2 / 3;
    };
    QString prose = proseOf(cv, inProfile);
    if (prose.isEmpty()) {
        prose = proseOf(cv, underName);
    }
    if (prose.isEmpty()) {
        prose = proseOf(cv, besideLists);
        prose = prose.size() < 2 * shortestProse ? QString() : prose;
    }
    return prose.isEmpty() ? QString() : firstSentences(prose);
}

} // namespace dorvantel
