// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/CvText.h"

#include <QStringList>

namespace dorvantel {

/// The technical skills that the CV names, in the order of the text, in their Spanish form, each once. A word with
/// other meanings ("Spring", "Go") counts only where skills are listed.
QStringList technicalSkillsIn(const CvText& cv);

/// The same for personal skills.
QStringList softSkillsIn(const CvText& cv);

/// The languages that the candidate speaks: named among languages or beside a level ("Inglés B2"), never a cuisine or
/// a nationality; and the language that the CV itself is written in.
QStringList languagesIn(const CvText& cv);

} // namespace dorvantel
