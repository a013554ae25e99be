// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QTabWidget>

namespace dorvantel {

class AppSettings;
class HttpSession;

/// The contents of the settings window: one tab for the model server, one for the models. Speaks English.
/// `settings` and `session` outlive it.
class SettingsView : public QTabWidget {
    Q_OBJECT

public:
    SettingsView(AppSettings& settings, HttpSession& session, QWidget* parent = nullptr);
};

} // namespace dorvantel
