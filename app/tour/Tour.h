// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "app/DorvantelApp.h"
#include "app/tour/Companions.h"
#include "app/tour/MailCatcher.h"

#include <QDir>
#include <QSize>

#include <functional>
#include <memory>
#include <vector>

namespace dorvantel {

/// Goes through the real program, with the real records service and the stand-in model server, as a recruiter would: by
/// drops, keys and clicks. Leaves one picture per step. A step that fails throws std::runtime_error with its name.
class Tour {
public:
    /// Pictures go to `out`; the main window has `windowSize`.
    Tour(const QDir& out, const QSize& windowSize);

    /// The whole main job with the CV at `cv`.
    void takeMainJob(const QString& cv);
    /// Drops the CV, looks at both pages and stores it when nothing is missing, or leaves the sheet.
    void takeThrough(const QString& cv);
    /// Both kinds of search, a result's details and preview, and its invitation, which is caught and not sent.
    void takeSearch();
    /// The settings window with both of its tabs, and the About panel.
    void takeSettings();
    /// A CV while the model server is away: the alert, and a usable window after it.
    void takeModelServerAway(const QString& cv);

    int pictures() const { return m_pictures; }

private:
    void openWindow();
    void drag(const QString& cv);
    void drop(const QString& cv);
    void waitForData();
    void showPage(int page);
    void showTab(const QString& tags, int tab);
    void lookAtCandidate();
    QList<QWidget*> results() const; ///< those on screen, from the top
    void press(const QString& objectName);
    void clickCandidate(const QString& name);
    void answerDeleteAlert();
    QWidget& find(const QString& objectName) const;
    ContentView& window() const { return m_app->window(); }
    void picture(const QString& name);
    void picture(const QString& name, QWidget& window);
    void waitForFirstPage(const QWidget& where); ///< of the PDF that is shown there
    void waitUntil(const QString& what, const std::function<bool()>& condition);

    QDir m_out;
    QSize m_windowSize;
    Companions m_companions;
    MailCatcher m_mail;
    std::vector<std::unique_ptr<DorvantelApp>> m_earlier; ///< as before restarts of the program
    std::unique_ptr<DorvantelApp> m_app;
    int m_pictures = 0;
};

} // namespace dorvantel
