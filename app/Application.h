// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <thread>

class QApplication;

namespace dorvantel {

/// Reads the system's configuration of fonts on a thread of its own, so that it is there when the first text needs it.
/// To be started before the QApplication, which needs no fonts and about as long.
std::jthread readFontConfiguration();

/// What every program with the main window does first, before its first window: names that the settings are found by,
/// the version, the look, and Spanish for the texts that the toolkit supplies (file dialog, context menus, network
/// errors).
void prepareApplication(QApplication& application);

/// Has the fonts listed on the thread pool while the window is made, whose first text needs the list. Only where the
/// program goes on to its event loop: the end of the application waits for it, std::exit does not.
void listFonts();

} // namespace dorvantel
