// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <cstdio>

#include <unistd.h>

namespace dorvantel::test {

/// Collects what the program writes to standard output while this object lives, and shows it meanwhile: some of what
/// the program does ends with a line and nothing else. One at a time.
class WatchedOutput {
public:
    WatchedOutput() {
        m_file.open();
        std::fflush(stdout);
        m_before = dup(STDOUT_FILENO);
        dup2(m_file.handle(), STDOUT_FILENO);
    }
    ~WatchedOutput() {
        std::fflush(stdout);
        dup2(m_before, STDOUT_FILENO);
        close(m_before);
        if (testing::Test::HasFailure()) {
            std::puts(qPrintable(lines().join(QLatin1Char('\n')))); // what the test said about it is among them
        }
    }
    WatchedOutput(const WatchedOutput&) = delete;
    WatchedOutput& operator=(const WatchedOutput&) = delete;

    /// The whole lines so far.
    QStringList lines() const {
        QFile file(m_file.fileName());
        file.open(QIODevice::ReadOnly);
        QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        lines.removeLast();
        return lines;
    }

private:
    QTemporaryFile m_file;
    int m_before = -1;
};

} // namespace dorvantel::test
