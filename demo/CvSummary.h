// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/CvText.h"

#include <QString>

namespace dorvantel {

/// A few sentences about the candidate in the CV's own words: from the profile section, else from running text under
/// the name. Empty when there is neither.
QString summaryIn(const CvText& cv);

} // namespace dorvantel
