// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Utf8.h"

#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <simdjson.h>

#include <memory>

namespace dorvantel {

bool isUtf8(QByteArrayView bytes) {
    return simdjson::validate_utf8(bytes.data(), static_cast<std::size_t>(bytes.size()));
}

QString firstCharacters(QByteArrayView utf8, int count) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText text = UTEXT_INITIALIZER;
    utext_openUTF8(&text, utf8.data(), utf8.size(), &status);
    characters->setText(&text, status);
    qsizetype end = 0;
    for (int i = 0; i < count && end != icu::BreakIterator::DONE; ++i) {
        end = characters->next();
    }
    utext_close(&text);
    return QString::fromUtf8(end == icu::BreakIterator::DONE ? utf8 : utf8.first(end));
}

} // namespace dorvantel
