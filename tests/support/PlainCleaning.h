// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <map>
#include <memory>

#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>

namespace dorvantel::test {

/// `cleanExtractedText` written as its rules read, character by character over ICU's break iterator: what the quick
/// one is compared with, for its result and for its speed.
inline QString plainlyCleanedText(const QString& text) {
    enum class Group { Allowed, LineFeedOrUmlaut };
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2& decomposing = *icu::Normalizer2::getNFDInstance(status);
    static const std::map<icu::UnicodeString, Group> groups = [&] {
        std::map<icu::UnicodeString, Group> all;
        const icu::UnicodeString allowed(u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyzÑñáéíóúÁÉÍÓÚ"
                                         u"0123456789¡!¿?./\\:-@");
        for (int32_t i = 0; i < allowed.length(); ++i) {
            all.emplace(decomposing.normalize(allowed.tempSubString(i, 1), status), Group::Allowed);
        }
        for (const char16_t c : {u'\n', u'ü', u'Ü'}) {
            all.emplace(decomposing.normalize(icu::UnicodeString(c), status), Group::LineFeedOrUmlaut);
        }
        return all;
    }();
    const auto isNumber = [](const icu::UnicodeString& character) {
        return u_getIntPropertyValue(character.char32At(0), UCHAR_NUMERIC_TYPE) != U_NT_NONE;
    };

    const icu::UnicodeString input(reinterpret_cast<const char16_t*>(text.utf16()), static_cast<int32_t>(text.size()));
    const std::unique_ptr<icu::BreakIterator> boundaries(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    boundaries->setText(input);

    icu::UnicodeString output;
    icu::UnicodeString previous;
    int32_t begin = 0;
    int32_t end = boundaries->next();
    while (end != icu::BreakIterator::DONE) {
        const int32_t nextEnd = boundaries->next();
        const icu::UnicodeString character = input.tempSubStringBetween(begin, end);
        const icu::UnicodeString decomposed = decomposing.normalize(character, status);
        if (decomposed == u" ") {
            const bool hasNext = nextEnd != icu::BreakIterator::DONE;
            const bool dropped = previous.isEmpty() || !hasNext ||
                                 (isNumber(previous) && isNumber(input.tempSubStringBetween(end, nextEnd))) ||
                                 previous == u"\n";
            if (!dropped) {
                output += character;
            }
        } else if (const auto group = groups.find(decomposed);
                   group != groups.end() && !(group->second == Group::LineFeedOrUmlaut && previous == u"\n")) {
            output += character;
            previous = character;
        }
        begin = end;
        end = nextEnd;
    }
    return QString::fromUtf16(output.getBuffer(), output.length());
}

} // namespace dorvantel::test
