// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/FoldedText.h"
#include "demo/Vocabulary.h"

#include <QString>

namespace dorvantel {

/// By a list of first names, where a second given name decides if the first is unknown; else by what the CV itself says
/// ("Sexo: mujer", "casada", "enfermera"), else by how the first name ends. Unknown only when there is no name either.
NameGender genderOfCandidate(const QString& name, const FoldedText& cvText);

} // namespace dorvantel
