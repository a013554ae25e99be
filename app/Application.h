// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

class QApplication;

namespace dorvantel {

/// What every program with the main window does first, before its first window: names that the settings are found by,
/// the version, the look, and Spanish for the texts that the toolkit supplies (file dialog, context menus, network
/// errors).
void prepareApplication(QApplication& application);

} // namespace dorvantel
