// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/FoldedText.h"
#include "demo/Vocabulary.h"

#include <QString>

#include <span>
#include <vector>

namespace dorvantel {

/// One line of a CV, or a part of one that wide blanks set apart ("Ana Ruiz   Contable   ana@example.com").
struct CvLine {
    QString text;              ///< trimmed, single blanks
    std::size_t firstWord = 0; ///< into the CV's words
    std::size_t wordCount = 0;
    Section section = Section::None; ///< where the line stands
    bool heading = false;            ///< the line is a heading and nothing else
};

/// The text of a CV cut into lines that know their section. Immutable.
class CvText {
public:
    explicit CvText(const QString& text);

    const FoldedText& text() const { return m_text; }
    const std::vector<CvLine>& lines() const { return m_lines; }
    std::span<const Word> wordsOf(const CvLine& line) const {
        return std::span(m_text.words()).subspan(line.firstWord, line.wordCount);
    }
    /// The line that holds the word with this index.
    const CvLine& lineOf(std::size_t word) const;

private:
    void addLine(qsizetype begin, qsizetype end, std::size_t& nextWord);
    /// How many words of the line that starts there are a heading in capitals before other text; 0 when it is none.
    std::size_t capitalHeading(std::size_t first, std::size_t last) const;
    void findSections();

    FoldedText m_text;
    std::vector<CvLine> m_lines; ///< none without words
};

/// The language most of the running text is written in ("es", "en", "fr", "de", "it", "pt"), by its commonest words;
/// empty when there is too little to tell.
QString languageOf(const FoldedText& text);

} // namespace dorvantel
