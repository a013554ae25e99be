// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>

#include <memory>

namespace dorvantel {

/// Kills `process` and returns at once; destroying the object instead would wait until the process has ended. The
/// object goes when it has. Nothing of it is reported any more. UI thread.
void abandonProcess(std::unique_ptr<QProcess> process);

} // namespace dorvantel
