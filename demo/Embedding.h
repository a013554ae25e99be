// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

namespace dorvantel {

inline constexpr std::size_t embeddingLength = 768;

/// A vector of unit length for the text, such that texts about the same things have a large dot product. Made of
/// hashed features, no model involved: words without their endings, pieces of four letters, terms of the vocabulary in
/// whatever language they are written, and their fields of work. A feature's weight grows with the logarithm of how
/// often it occurs. Case, accents and small words do not count. The same text gives the same vector on every machine.
std::vector<float> embedding(const QString& text);

} // namespace dorvantel
