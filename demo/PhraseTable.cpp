// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/PhraseTable.h"

#include <algorithm>

namespace dorvantel {

namespace {

std::u16string joined(const std::vector<Word>& words, std::size_t first, std::size_t count) {
    std::u16string out;
    for (std::size_t i = first; i < first + count; ++i) {
        if (i > first) {
            out += u' ';
        }
        out += words[i].folded;
    }
    return out;
}

} // namespace

void PhraseTable::add(const QString& phrase, int id, bool ambiguous) {
    const FoldedText text(phrase);
    const std::vector<Word>& words = text.words();
    if (words.empty()) {
        return;
    }
    m_phrases.emplace(joined(words, 0, words.size()), Phrase{id, ambiguous});
    std::size_t& longest = m_longest[std::u16string(words[0].folded)];
    longest = std::max(longest, words.size());
}

std::vector<PhraseMatch> PhraseTable::find(const std::vector<Word>& words) const {
    std::vector<PhraseMatch> matches;
    std::size_t i = 0;
    while (i < words.size()) {
        const auto longest = words[i].inAddress ? m_longest.end() : m_longest.find(words[i].folded);
        std::size_t reach = 0;
        if (longest != m_longest.end()) {
            reach = 1;
            while (reach < longest->second && i + reach < words.size() && !words[i + reach].opensSentence) {
                ++reach;
            }
        }
        for (; reach > 0; --reach) {
            const auto phrase = m_phrases.find(joined(words, i, reach));
            if (phrase != m_phrases.end()) {
                matches.push_back({phrase->second.id, i, reach, phrase->second.ambiguous});
                break;
            }
        }
        i += std::max<std::size_t>(reach, 1);
    }
    return matches;
}

int PhraseTable::exact(const std::vector<Word>& words) const {
    const auto phrase = m_phrases.find(joined(words, 0, words.size()));
    return phrase == m_phrases.end() ? -1 : phrase->second.id;
}

} // namespace dorvantel
