// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "app/ContentView.h"
#include "modelserver/OllamaService.h"
#include "modelserver/SettingsView.h"
#include "platform/HttpSession.h"
#include "platform/ProcessPDFOpener.h"
#include "platform/URLOpener.h"
#include "records/APIRequest.h"

#include <QMessageBox>
#include <QPointer>

#include <memory>

namespace dorvantel {

class AppSettings;

/// The program put together: its services, the one main window, the settings window and the About panel. Made once by
/// main(), lives on the UI thread. Making it makes the main window, which starts loading the records.
class DorvantelApp : public QObject {
    Q_OBJECT

public:
    DorvantelApp(AppSettings& settings, const QString& recordsBaseUrl);

    ContentView& window() { return m_window; }

    /// Opens the settings window, or brings it to the front.
    void openSettings();
    /// Null until it was opened.
    SettingsView* settingsView() const { return m_settingsView.get(); }
    void showAbout();

private:
    AppSettings& m_settings;
    NetworkHttpSession m_http;
    APIRequest m_records;
    OllamaService m_models;
    ProcessPDFOpener m_pdfs;
    DesktopURLOpener m_urls;
    ContentView m_window;
    std::unique_ptr<SettingsView> m_settingsView;
    QPointer<QMessageBox> m_about;
};

} // namespace dorvantel
