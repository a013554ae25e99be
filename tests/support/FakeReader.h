// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/types.h>

namespace dorvantel::test {

inline QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool isRunning(pid_t process) {
    using namespace Qt::StringLiterals;
    // A process that has ended but was not waited for still has a number.
    const QByteArray status = contentOf(u"/proc/%1/status"_s.arg(process));
    return !status.isEmpty() && !status.contains("State:\tZ");
}

/// A program of a few lines of shell that stands for dorvantel-pdf-reader.
class FakeReader {
public:
    explicit FakeReader(const QByteArray& script) {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + script + "\n");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QString path() const { return file(QStringLiteral("reader")); }
    QString file(const QString& name) const { return m_folder.filePath(name); }

    /// Puts `content` beside the program, where it finds it as "$(dirname $0)/NAME".
    void put(const QString& name, const QByteArray& content) const {
        QFile beside(file(name));
        EXPECT_TRUE(beside.open(QIODevice::WriteOnly));
        beside.write(content);
    }

private:
    QTemporaryDir m_folder;
};

} // namespace dorvantel::test
