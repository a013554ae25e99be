// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/longrun/Judgement.h"

#include <cstdio>

namespace dorvantel::test {

class Recruiter;

struct Length {
    int rounds = 0; ///< one intake and one search each
    int deletions = 0;
    int roundsPerSample = 0;
};

/// Works through the rounds, with the deletions spread over them, and gives back what was seen on the way. Each sample
/// is a line of a table on `table`.
QList<Sample> runLong(Recruiter& recruiter, const Length& length, std::FILE* table);

} // namespace dorvantel::test
