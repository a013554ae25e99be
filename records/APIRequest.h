// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/RecordsService.h"
#include "platform/HttpSession.h"

#include <QObject>
#include <QString>

namespace dorvantel {

/// The records service over HTTP with JSON bodies. Lives on the UI thread, as its session does, and keeps nothing
/// between calls: nothing is retried, queued or stored. Each step of a call is one line of the log. Large bodies are
/// written and read on the global thread pool.
///
/// An insert or a delete under way keeps the application's event loop from ending with its last window: what the user
/// has confirmed reaches the service although the window is closed at once. When the object is destroyed, the calls
/// under way are given up and their completions never called. The session must outlive it. A base URL that does not
/// parse stops the program: it is a constant of the build.
class APIRequest final : public RecordsService {
public:
    explicit APIRequest(HttpSession& session, QString baseUrl = defaultBaseUrl());

    /// What this build was configured with.
    static QString defaultBaseUrl();

    void fetchAll(Completion<std::vector<DBRecordPointer>> completion) override;
    void fetchPDF(const QString& key, Completion<std::optional<QByteArray>> completion) override;
    void insertResume(const DBRecordRepresentation& record, Completion<DBRecord> completion) override;
    void deleteResume(const QString& key) override;

    /// Writes no log lines but one: a statement that has no UTF-8 form is not sent, and its completion never called.
    void search(const QString& sql, Completion<std::shared_ptr<IdentifiableSearchResponse>> completion) override;

private:
    /// Calls `done` with `work()`: at once when `size` is small, otherwise later with the result of the thread pool.
    template <typename Work, typename Done>
    void runForSize(qsizetype size, Work work, Done done);

    HttpSession& m_session;
    QString m_baseUrl;
    QObject m_context; ///< bounds the life of what is under way
};

} // namespace dorvantel
