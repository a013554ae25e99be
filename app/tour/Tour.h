// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "app/ContentView.h"
#include "app/tour/Companions.h"
#include "modelserver/OllamaService.h"
#include "platform/HttpSession.h"
#include "platform/ProcessPDFOpener.h"
#include "platform/URLOpener.h"
#include "records/APIRequest.h"

#include <QDir>
#include <QStringList>

#include <functional>
#include <memory>

namespace dorvantel {

/// Keeps what was to be opened.
struct CatchingURLOpener final : URLOpener {
    bool open(const QUrl& url) override {
        caught = url;
        return true;
    }
    QUrl caught;
};

/// Goes through the main job in the real main window, with the real records service and the stand-in model server, as a
/// recruiter would: by drops, keys and clicks. Leaves one picture per step. A step that fails throws
/// std::runtime_error with the step's name.
class Tour {
public:
    explicit Tour(const QDir& out);

    /// The whole main job with the CV at `cv`.
    void takeMainJob(const QString& cv);
    /// Drops the CV, looks at both pages and stores it when nothing is missing, or leaves the sheet.
    void takeThrough(const QString& cv);
    /// Both kinds of search, a result's details and preview, and its invitation, which is caught and not sent.
    void takeSearch();
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
    void picture(const QString& name);
    void waitUntil(const QString& what, const std::function<bool()>& condition);

    QDir m_out;
    Companions m_companions;
    NetworkHttpSession m_http;
    std::unique_ptr<APIRequest> m_records;
    std::unique_ptr<OllamaService> m_models;
    ProcessPDFOpener m_pdfs;
    CatchingURLOpener m_urls;
    std::unique_ptr<ContentView> m_window;
    int m_pictures = 0;
};

} // namespace dorvantel
