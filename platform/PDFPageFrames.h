// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>

#include <optional>

namespace dorvantel {

/// How the process that reads a PDF hands the page texts to the one that asked, on one machine: the eight bytes
/// "DVPAGES1", the number of pages, then per page its length in UTF-16 units and the units themselves. Numbers are
/// 32 bits; numbers and units are in the machine's byte order.
QByteArray encodePageFrames(const QStringList& pageTexts);

/// The page texts, or nothing when `frames` is not exactly what `encodePageFrames` gives: the sender may have died
/// half-way, or have been taken over by what it read.
std::optional<QStringList> decodePageFrames(const QByteArray& frames);

} // namespace dorvantel
