// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <optional>

namespace dorvantel::test {

/// What a program did: what it wrote, and its exit status, -1 when it did not start or was ended by a signal.
struct Finished {
    int status = -1;
    QString output;
    QString errors;
};

/// Runs a program to its end, on the platform without windows and with its settings and data in `home`.
Finished run(const QString& program, const QStringList& arguments, const QString& home);

/// The components of the build installed below a folder of its own, as `cmake --install --prefix` does it.
class InstalledTree {
public:
    explicit InstalledTree(const QStringList& components);

    /// The path of something below the prefix.
    QString path(const QString& name) const { return m_folder.filePath(QStringLiteral("prefix/") + name); }
    /// An empty folder for what the programs write.
    QString home() const { return m_folder.filePath(QStringLiteral("home")); }
    /// Every file below the prefix, relative to it, in order.
    QStringList files() const;

private:
    QTemporaryDir m_folder;
};

/// The options and commands that a program's --help lists.
QStringList helpTerms(const QString& help);

} // namespace dorvantel::test
