// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Text.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace dorvantel {

QString capitalized(const QString& text) {
    icu::UnicodeString value(reinterpret_cast<const char16_t*>(text.utf16()), static_cast<int32_t>(text.size()));
    value.toTitle(nullptr, icu::Locale::getRoot());
    return QString::fromUtf16(value.getBuffer(), value.length());
}

QString caselessForm(const QString& text) {
    return text.toLower().normalized(QString::NormalizationForm_C);
}

QString trimmed(const QString& text) {
    return text.trimmed();
}

} // namespace dorvantel
