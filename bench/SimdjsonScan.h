// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <cstdint>

namespace dorvantel::bench {

/// Visits every value of `body` with simdjson's on-demand parser, keeping only a sum: the least that any reader built
/// on it does. The parser is kept between calls, and it uses the processor's vector instructions throughout.
std::uint64_t simdjsonScan(const QByteArray& body);

/// The room that the parser wants behind a text.
qsizetype simdjsonPadding();

} // namespace dorvantel::bench
