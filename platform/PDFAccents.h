// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace dorvantel {

/// Puts accents that stand beside their letter on it: "Pa´ıs", "desempe˜no", "¨Ubung" and "Franc¸ois" become "País",
/// "desempeño", "Übung" and "François". Old TeX fonts have no accented letters, and draw accent and letter one after
/// the other. An accent that is no accent stays: an apostrophe ("O´Neill", or any ´ on a page whose fonts have
/// accented letters of their own), quotation marks ("¨así¨"), the tilde of an address ("/˜ana", which becomes "/~ana").
/// Pure; any thread.
QString withAccentsOnLetters(const QString& text);

/// The letter `base` (a dotless i or j included) with the accent that the spacing character `accent` shows, or a null
/// character when `accent` is none or Unicode has no such letter.
QChar accented(QChar base, QChar accent);

/// Whether `character` is an accent with a place of its own, such as ´ or ˜.
bool isSpacingAccent(QChar character);

} // namespace dorvantel
