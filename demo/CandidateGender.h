// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/FoldedText.h"
#include "demo/Vocabulary.h"

#include <QString>

namespace dorvantel {

/// By a list of first names, else by how the first name ends; a second given name decides where the first is unknown.
/// Unknown only for an empty name.
NameGender genderOfName(const QString& name);

/// What the CV itself says where the name is not in the list: "Sexo: mujer", "casada", "enfermera".
NameGender genderOfCandidate(const QString& name, const FoldedText& cvText);

} // namespace dorvantel
