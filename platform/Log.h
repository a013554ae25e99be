// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

namespace dorvantel {

/// Writes `line` as UTF-8 and one line feed to standard output and flushes, so that whoever reads the output through
/// a pipe sees each event when it happens. Line feeds inside `line` are written as they are. Any thread.
/// Qt's own messages go to standard error and never pass through here.
void logLine(QStringView line);

} // namespace dorvantel
