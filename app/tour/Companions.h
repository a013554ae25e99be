// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace dorvantel {

/// The two servers that the tour talks to, as processes of their own with a store and ports of their own. They end with
/// this object. Failures are thrown as std::runtime_error with a text for people.
class Companions {
public:
    Companions();
    ~Companions();

    QString recordsUrl() const { return m_recordsUrl; } ///< the base URL of the client
    QString modelServerUrl() const { return m_modelServerUrl; }
    qint64 recordsProcessId() const { return m_records->processId(); }

    /// Puts the invented sample candidates into the store.
    void fillStore();
    void stopModelServer();

private:
    QTemporaryDir m_folder;
    std::unique_ptr<QProcess> m_modelServer;
    std::unique_ptr<QProcess> m_records;
    QString m_modelServerUrl;
    QString m_recordsUrl;
};

} // namespace dorvantel
