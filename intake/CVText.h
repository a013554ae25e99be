// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace dorvantel {

class PDFDocument;

/// The one way a PDF becomes CV text: the texts of its pages in order, with nothing in between, cleaned. Empty for a
/// document without pages or without text. Never fails.
QString extractCleanText(const PDFDocument& document);

/// What of `text` the language model is to read. The text is taken character by character as people see them (extended
/// grapheme clusters), and characters are compared under canonical equivalence: an "á" of two code points is an "á",
/// and is kept as it came.
///  - Kept: the letters A to Z, Ñ and the vowels with acute, in both cases; the digits; ¡ ! ¿ ? . / \ : - @.
///  - A blank is kept, except at the start and end, after a kept line feed, and between two characters that have the
///    numeric property ("1 000" becomes "1000"); only kept characters count as standing before it.
///  - A line feed, and ü and Ü likewise, is kept except after a kept line feed.
///  - Everything else is dropped, a CR LF pair as one character.
/// Pure; any thread.
QString cleanExtractedText(const QString& text);

} // namespace dorvantel
