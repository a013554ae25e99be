// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/RecordsProcess.h"

#include <QUrl>

#include <csignal>
#include <fstream>

#include <gtest/gtest.h>

namespace dorvantel::test {

namespace {

constexpr int limitMs = 30'000;
const QByteArray readyText = "dorvantel-records is ready at ";

} // namespace

RecordsProcess::RecordsProcess(const QStringList& arguments, const std::function<void()>& prepare) {
    m_process.setChildProcessModifier(prepare);
    m_process.setProgram(QStringLiteral(DORVANTEL_BIN_DIR "/dorvantel-records"));
    m_process.setArguments(arguments);
    m_process.start();
    EXPECT_TRUE(m_process.waitForStarted(limitMs)) << qPrintable(m_process.errorString());
}

RecordsProcess::~RecordsProcess() {
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished(limitMs);
    }
}

bool RecordsProcess::waitUntilReady() {
    m_process.setReadChannel(QProcess::StandardOutput);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(limitMs)) {
            ADD_FAILURE() << "it is not ready: " << errors();
            return false;
        }
    }
    const QByteArray line = m_process.readLine().trimmed();
    EXPECT_TRUE(line.startsWith(readyText)) << line.toStdString();
    m_url = line.mid(readyText.size()).toStdString();
    m_port = QUrl(QString::fromStdString(m_url)).port();
    return m_port > 0;
}

httplib::Client RecordsProcess::client() const {
    httplib::Client client("127.0.0.1", m_port);
    client.set_read_timeout(30);
    return client;
}

std::size_t RecordsProcess::mostMemory() const {
    std::ifstream status("/proc/" + std::to_string(m_process.processId()) + "/status");
    for (std::string word; status >> word;) {
        std::size_t kibibytes = 0;
        if (word == "VmHWM:" && status >> kibibytes) {
            return kibibytes * 1024;
        }
    }
    ADD_FAILURE() << "the system does not tell";
    return 0;
}

void RecordsProcess::sendSignal(int signal) {
    ::kill(static_cast<pid_t>(m_process.processId()), signal);
}

int RecordsProcess::exitCode() {
    if (m_process.state() != QProcess::NotRunning) {
        EXPECT_TRUE(m_process.waitForFinished(limitMs)) << "it does not end";
    }
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

std::string RecordsProcess::output() {
    return m_process.readAllStandardOutput().toStdString();
}

std::string RecordsProcess::errors() {
    m_process.waitForReadyRead(0);
    return m_process.readAllStandardError().toStdString();
}

} // namespace dorvantel::test
