// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/DorvantelApp.h"

#include "modelserver/AppSettings.h"
#include "ui/Style.h"

#include <QApplication>
#include <QScreen>
#include <QShortcut>

namespace dorvantel {

using namespace Qt::StringLiterals;

DorvantelApp::DorvantelApp(AppSettings& settings, const QString& recordsBaseUrl)
    : m_settings(settings)
    , m_records(m_http, recordsBaseUrl)
    , m_models(m_http, settings)
    , m_pdfs(findPDFReader(QCoreApplication::applicationDirPath()))
    , m_window(std::make_unique<ContentView>(ContentView::Services{m_records, m_models, m_pdfs, m_urls})) {
    connect(m_window.get(), &ContentView::settingsRequested, this, &DorvantelApp::openSettings);
    connect(m_window.get(), &ContentView::aboutRequested, this, &DorvantelApp::showAbout);
    connect(qGuiApp, &QGuiApplication::lastWindowClosed, this, &DorvantelApp::windowClosed);
    connect(&m_terminationSignals, &TerminationSignals::received, this, &QApplication::closeAllWindows);
    // Left to itself the window would be as small as its contents allow, or larger than a small screen.
    constexpr QSize comfortable(1100, 720);
    m_window->resize(comfortable.boundedTo(m_window->screen()->availableSize()));
}

/// The event loop may go on until the records service has answered. Meanwhile nothing is seen of the program, and what
/// the window was about to do is given up.
void DorvantelApp::windowClosed() {
    if (m_window) {
        m_window.release()->deleteLater(); // it may be its own event that led here
        QApplication::closeAllWindows();
    }
}

void DorvantelApp::showInFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

void DorvantelApp::openSettings() {
    if (!m_settingsView) {
        m_settingsView = std::make_unique<SettingsView>(m_settings, m_http);
        m_settingsView->setObjectName(u"settings"_s);
        m_settingsView->setWindowTitle(u"Preferencias"_s);
        for (const QKeySequence& key : {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)}) {
            new QShortcut(key, m_settingsView.get(), m_settingsView.get(), &QWidget::close);
        }
        // The window that is left when the main window closes must not keep the program.
        m_settingsView->setAttribute(Qt::WA_QuitOnClose, false);
    }
    showInFront(*m_settingsView);
}

void DorvantelApp::showAbout() {
    if (!m_about) {
        m_about =
            new QMessageBox(QMessageBox::NoIcon, u"Acerca de Dorvantel"_s, QString(), QMessageBox::Ok, m_window.get());
        m_about->setObjectName(u"about"_s);
        m_about->setAttribute(Qt::WA_DeleteOnClose);
        m_about->setWindowModality(Qt::NonModal);
        m_about->setIconPixmap(QApplication::windowIcon().pixmap(64, 64));
        m_about->setTextFormat(Qt::RichText);
        m_about->setText(u"<p style='font-size:%1px'><b>Dorvantel</b><br>Versión %2</p>"
                         "<p style='font-size:%3px'><b>Desarrollado por los fundadores de Dorvantel</b></p>"
                         "<p style='font-size:%3px'>© 2026 The Dorvantel founders</p>"_s
                             .arg(textFont(TextStyle::Headline).pixelSize())
                             .arg(QApplication::applicationVersion())
                             .arg(textFont(TextStyle::Caption).pixelSize()));
    }
    showInFront(*m_about);
}

} // namespace dorvantel
