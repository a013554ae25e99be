// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <string>
#include <string_view>
#include <vector>

namespace dorvantel {

/// The letter without case and accent ("Ñ" and "ň" both give "n"); U+0000 for a loose combining mark.
char16_t folded(char16_t letter);

/// Every letter folded, length kept: position i of the result stands for position i of `text`.
std::u16string foldedText(QStringView text);

/// One word of a text: a run of letters and digits, and the "+" or "#" right behind it ("c++", "c#").
struct Word {
    qsizetype begin = 0; ///< position in the text, in UTF-16 units
    qsizetype end = 0;
    std::u16string_view folded; ///< points into the owning `FoldedText`
    bool opensSentence = false; ///< first of the text, or behind a full stop, colon, "!" or "?" and a blank
    bool inAddress = false;     ///< part of a web or e-mail address
};

/// A text with its words, ready for matching that ignores case and accents. Immutable; movable, never copied, since
/// its words point into it.
class FoldedText {
public:
    explicit FoldedText(const QString& text);
    FoldedText(FoldedText&&) = default;
    FoldedText(const FoldedText&) = delete;
    FoldedText& operator=(const FoldedText&) = delete;

    const QString& original() const { return m_original; } ///< composed (NFC)
    const std::vector<Word>& words() const { return m_words; }

    QStringView originalOf(const Word& word) const {
        return QStringView(m_original).mid(word.begin, word.end - word.begin);
    }

private:
    QString m_original;
    std::vector<char16_t> m_folded; ///< a vector, because a moved short string would leave its words dangling
    std::vector<Word> m_words;
};

} // namespace dorvantel
