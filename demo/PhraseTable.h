// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/FoldedText.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace dorvantel {

struct FoldedHash {
    using is_transparent = void;
    std::size_t operator()(std::u16string_view text) const { return std::hash<std::u16string_view>{}(text); }
};

/// Keyed by folded text, asked with the views that words hold.
template <typename Value>
using FoldedMap = std::unordered_map<std::u16string, Value, FoldedHash, std::equal_to<>>;

/// Where a phrase of a `PhraseTable` stands in a text.
struct PhraseMatch {
    int id = 0;                ///< what `PhraseTable::add` was given
    std::size_t firstWord = 0; ///< index into the words that were searched
    std::size_t wordCount = 0;
    bool ambiguous = false; ///< the phrase means something else as well
};

/// Finds the phrases of a vocabulary in a text in one pass: whole words only, case and accents ignored, the longest
/// phrase first, never two that overlap. Filled once, then only read, from any thread.
class PhraseTable {
public:
    /// A phrase added twice keeps its first meaning.
    void add(const QString& phrase, int id, bool ambiguous = false);

    /// In the order of the text. A phrase may run over a line end, but not over the end of a sentence, and none is
    /// found in a web or e-mail address.
    std::vector<PhraseMatch> find(const std::vector<Word>& words) const;

    /// The id of the phrase that is all of `words`, or -1.
    int exact(const std::vector<Word>& words) const;

private:
    struct Phrase {
        int id;
        bool ambiguous;
    };
    FoldedMap<Phrase> m_phrases;      ///< folded words, one blank between
    FoldedMap<std::size_t> m_longest; ///< first word -> most words
};

} // namespace dorvantel
