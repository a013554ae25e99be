// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace dorvantel {

/// Every word's first letter in upper (title) case and its other letters in lower case, by ICU's root-locale
/// title-casing: "maría josé LÓPEZ" becomes "María José López".
QString capitalized(const QString& text);

/// The form in which values are compared without regard to case: lower case, and composed, so that a letter written
/// with a separate accent is the same letter. A letter without its accent stays another letter.
QString caselessForm(const QString& text);

/// Without the white space and line breaks at both ends.
QString trimmed(const QString& text);

} // namespace dorvantel
