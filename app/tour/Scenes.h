// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>

namespace dorvantel {

/// Takes the tour once for every look that the program must hold: light and dark, at one and two device pixels a point,
/// in a small and in a large window; each in a process of its own with a folder of its own in `out`. False, with the
/// reason on standard error, when one of them fails.
bool takeScenes(const QDir& out);

} // namespace dorvantel
