// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/DorvantelApp.h"

#include "modelserver/AppSettings.h"
#include "ui/Style.h"

#include <QApplication>
#include <QPushButton>

namespace dorvantel {

using namespace Qt::StringLiterals;

DorvantelApp::DorvantelApp(AppSettings& settings, const QString& recordsBaseUrl)
    : m_settings(settings)
    , m_records(m_http, recordsBaseUrl)
    , m_models(m_http, settings)
    , m_pdfs(findPDFReader(QCoreApplication::applicationDirPath()))
    , m_window({m_records, m_models, m_pdfs, m_urls}) {
    connect(&m_window, &ContentView::settingsRequested, this, &DorvantelApp::openSettings);
    connect(&m_window, &ContentView::aboutRequested, this, &DorvantelApp::showAbout);
}

void DorvantelApp::openSettings() {
    if (!m_settingsView) {
        m_settingsView = std::make_unique<SettingsView>(m_settings, m_http);
        m_settingsView->setObjectName(u"settings"_s);
        // The window that is left when the main window closes must not keep the program.
        m_settingsView->setAttribute(Qt::WA_QuitOnClose, false);
    }
    m_settingsView->show();
    m_settingsView->raise();
    m_settingsView->activateWindow();
}

void DorvantelApp::showAbout() {
    if (!m_about) {
        m_about = new QMessageBox(QMessageBox::NoIcon, u"Acerca de Dorvantel"_s, QString(), QMessageBox::Ok, &m_window);
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
    m_about->show();
    m_about->raise();
    m_about->activateWindow();
}

} // namespace dorvantel
