// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QStringList>

#include <functional>
#include <string>

#include <httplib.h>

namespace dorvantel::test {

/// `dorvantel-records` as a process of its own. It ends with this object.
class RecordsProcess {
public:
    /// Starts it with these arguments; the caller waits for what it expects. `prepare` runs in the new process before
    /// the program does.
    explicit RecordsProcess(const QStringList& arguments, const std::function<void()>& prepare = {});
    ~RecordsProcess();

    /// Waits for the ready line; a test failure with what the process says when it does not come.
    bool waitUntilReady();
    /// What the ready line names, and its port; only after `waitUntilReady`.
    std::string url() const { return m_url; }
    int port() const { return m_port; }
    httplib::Client client() const;

    /// The most memory that it ever had, in bytes.
    std::size_t mostMemory() const;

    void sendSignal(int signal);
    /// Waits for the end; -1 when it was killed.
    int exitCode();
    std::string output(); ///< standard output so far, without the ready line
    std::string errors(); ///< standard error so far

private:
    QProcess m_process;
    std::string m_url;
    int m_port = 0;
};

} // namespace dorvantel::test
