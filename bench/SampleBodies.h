// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace dorvantel::bench {

/// What the records of a made-up body look like. The same shape always gives the same bytes.
struct BodyShape {
    int records = 0;
    int pdfBytes = 0; ///< of each record's PDF; none when 0
};

/// A list answer in Spanish, with accents and escaped line breaks as real records have them.
QByteArray listBody(const BodyShape& shape);

/// A search answer with the same records and a score each.
QByteArray searchBody(const BodyShape& shape);

/// The answer of a PDF download of so many bytes.
QByteArray fileBody(int pdfBytes);

} // namespace dorvantel::bench
