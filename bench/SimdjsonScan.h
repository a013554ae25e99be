// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <cstdint>
#include <vector>

namespace dorvantel::bench {

/// Visits every value of `body` with simdjson's on-demand parser, keeping only a sum: the least that any reader built
/// on it does. The parser is kept between calls, and it uses the processor's vector instructions throughout.
std::uint64_t simdjsonScan(const QByteArray& body);

/// The bytes of a PDF download, number by number with simdjson's on-demand parser into one vector.
std::vector<std::uint8_t> simdjsonFileBytes(const QByteArray& body);

/// The room that the parser wants behind a text.
qsizetype simdjsonPadding();

} // namespace dorvantel::bench
