// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/FoldedText.h"

#include <QChar>

#include <algorithm>
#include <array>

namespace dorvantel {

namespace {

// Letters that Unicode does not take apart into a base letter and an accent.
char16_t baseOfUndecomposed(char16_t letter) {
    switch (letter) {
    case u'ß':
        return u's';
    case u'ø':
        return u'o';
    case u'ł':
        return u'l';
    case u'đ':
    case u'ð':
        return u'd';
    case u'æ':
        return u'a';
    case u'œ':
        return u'o';
    case u'ı':
        return u'i';
    default:
        return letter;
    }
}

char16_t computeFolded(char16_t letter) {
    if (QChar(letter).category() == QChar::Mark_NonSpacing) {
        return u'\0';
    }
    char16_t lower = QChar(letter).toLower().unicode();
    for (QString parts = QChar(lower).decomposition(); !parts.isEmpty(); parts = QChar(lower).decomposition()) {
        lower = parts[0].unicode();
        if (parts.size() == 1) {
            break;
        }
    }
    return baseOfUndecomposed(QChar(lower).toLower().unicode());
}

bool endsSentence(char16_t c) {
    return c == u'.' || c == u':' || c == u'!' || c == u'?' || c == u';';
}

// The stretch between blanks at `from`, and whether it is a web or e-mail address.
struct Stretch {
    std::size_t end;
    bool isAddress;
};

Stretch stretchAt(std::u16string_view text, std::size_t from) {
    std::size_t end = from;
    while (end < text.size() && !QChar(text[end]).isSpace()) {
        ++end;
    }
    const std::u16string_view stretch = text.substr(from, end - from);
    static constexpr std::array<std::u16string_view, 8> signs = {u"@",    u"://",   u"www.", u".com",
                                                                 u".org", u".edu/", u".io/", u"/in/"};
    return {end, std::ranges::any_of(signs, [&](auto sign) { return stretch.find(sign) != stretch.npos; })};
}

} // namespace

char16_t folded(char16_t letter) {
    constexpr std::size_t tableSize = 0x250; // Latin with all its accents
    static const std::array<char16_t, tableSize> table = [] {
        std::array<char16_t, tableSize> t{};
        for (std::size_t i = 0; i < tableSize; ++i) {
            t[i] = computeFolded(static_cast<char16_t>(i));
        }
        return t;
    }();
    return letter < tableSize ? table[letter] : computeFolded(letter);
}

std::u16string foldedText(QStringView text) {
    std::u16string out(static_cast<std::size_t>(text.size()), u'\0');
    std::transform(text.utf16(), text.utf16() + text.size(), out.begin(), folded);
    return out;
}

FoldedText::FoldedText(const QString& text)
    : m_original(text.normalized(QString::NormalizationForm_C)) {
    const std::u16string foldedOriginal = foldedText(m_original);
    m_folded.assign(foldedOriginal.begin(), foldedOriginal.end());
    const std::u16string_view all(m_folded.data(), m_folded.size());
    bool sentenceEnded = true;
    Stretch stretch{0, false};
    std::size_t i = 0;
    while (i < all.size()) {
        if (i >= stretch.end) {
            stretch = stretchAt(all, i);
        }
        if (!QChar(all[i]).isLetterOrNumber()) {
            sentenceEnded =
                sentenceEnded || (endsSentence(all[i]) && (i + 1 == all.size() || QChar(all[i + 1]).isSpace()));
            ++i;
            continue;
        }
        const std::size_t begin = i;
        while (i < all.size() && QChar(all[i]).isLetterOrNumber()) {
            ++i;
        }
        while (i < all.size() && (all[i] == u'+' || all[i] == u'#')) {
            ++i;
        }
        m_words.push_back({static_cast<qsizetype>(begin), static_cast<qsizetype>(i), all.substr(begin, i - begin),
                           sentenceEnded, stretch.isAddress});
        sentenceEnded = false;
    }
}

} // namespace dorvantel
