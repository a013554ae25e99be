// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "app/ContentView.h"
#include "app/TerminationSignals.h"
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
/// main(), lives on the UI thread. Making it makes the main window, which starts loading the records. When the main
/// window closes, by the user or by a signal of the system, all windows close and the program ends, as soon as the
/// records service has answered what it was asked to store or to delete.
class DorvantelApp : public QObject {
    Q_OBJECT

public:
    DorvantelApp(AppSettings& settings, const QString& recordsBaseUrl);

    /// The main window, until it is closed.
    ContentView& window() { return *m_window; }

    /// Opens the settings window, or brings it to the front.
    void openSettings();
    /// Null until it was opened.
    SettingsView* settingsView() const { return m_settingsView.get(); }
    void showAbout();

private:
    void windowClosed();
    static void showInFront(QWidget& window);

    AppSettings& m_settings;
    NetworkHttpSession m_http;
    APIRequest m_records;
    OllamaService m_models;
    ProcessPDFOpener m_pdfs;
    DesktopURLOpener m_urls;
    std::unique_ptr<ContentView> m_window;
    std::unique_ptr<SettingsView> m_settingsView;
    QPointer<QMessageBox> m_about;
    TerminationSignals m_terminationSignals;
};

} // namespace dorvantel
