// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/CvName.h"
#include "demo/CvText.h"

#include <QString>

namespace dorvantel {

/// The candidate's profession: as the CV's title beside the name or a label ("Puesto:") has it, else the first known
/// one of the profile, of the latest job, or of the whole text, in the Spanish form for `gender`. Empty when the CV
/// names none.
QString professionIn(const CvText& cv, const FoundName& name, NameGender gender);

} // namespace dorvantel
