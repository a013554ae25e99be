// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <span>

namespace dorvantel {

/// The numbers of a vector joined by commas, each with the fewest digits that read back as the same value. Integral
/// values end in ".0". A magnitude below 0.0001 or above 2 to the 53rd power is written with an exponent of a sign and
/// at least two digits ("1.5e-05"); zero never is. ASCII; empty for an empty vector.
QByteArray vectorText(std::span<const double> vector);

/// Ranks the candidates for whom all clauses hold by the likeness of their stored vector to `vector`, the best five
/// first, scored from 0 to 100.
QString semanticStatement(std::span<const double> vector, const QStringList& clauses);

} // namespace dorvantel
