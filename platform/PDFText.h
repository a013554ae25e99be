// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace dorvantel {

/// Turns the text of one page, as the PDF library gives it, into ordinary text:
///  - lines end with LF, the last one too, so that pages can be joined as they are;
///  - a word divided at a line end is whole again, and a hyphen of its own stays: "desarrollo", "Anglo-Saxon" (the
///    library puts U+FFFE or U+0002 in place of the hyphen and the line end);
///  - every horizontal blank (tab, no-break, thin, figure …) is U+0020;
///  - ligature characters are their letters, also where a font without a character map gives the control
///    characters of the old TeX encodings for them;
///  - an accent that an old TeX font draws beside its letter is composed with it: "Pa´ıs" becomes "País";
///  - control characters and the halves of broken surrogate pairs are gone, and the text is in Unicode's form C.
/// A page with nothing but blanks and line ends has the empty text. Pure; any thread.
QString ordinaryPageText(const QString& raw);

} // namespace dorvantel
