// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/CvReader.h"

#include <QString>

namespace dorvantel {

/// The stand-in's answer to a chat prompt: the CV's data as a JSON object, the invitation mail, or, to anything else,
/// a sentence that says that no language model is at work. The same prompt always gets the same answer. Any thread.
QString chatAnswer(const QString& prompt);

/// {"name":…,"profession":…,"email":…,"summarizedText":…,"softSkills":[…],"techSkills":[…],"languages":[…]}
QString extractionAnswer(const CvFacts& facts);

/// A formal letter in Spanish that begins "Estimado Sr. …:" or "Estimada Sra. …:" and ends with `signature`. The word
/// of the other gender never occurs in it: readers tell the candidate's gender by it.
QString mailAnswer(const CvFacts& facts, const QString& signature);

/// The first surname with its particles: "Ferrer" of "Lucía Ferrer Campos", "de la Fuente" of "Ana María de la Fuente".
QString surnameOf(const QString& name);

} // namespace dorvantel
