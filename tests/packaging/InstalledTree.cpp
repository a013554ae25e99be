// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/packaging/InstalledTree.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

Finished run(const QString& program, const QStringList& arguments, const QString& home) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"HOME"_s, home);
    environment.insert(u"XDG_RUNTIME_DIR"_s, home);
    for (const QString& moved : {u"XDG_CONFIG_HOME"_s, u"XDG_DATA_HOME"_s, u"XDG_CACHE_HOME"_s}) {
        environment.remove(moved);
    }
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    constexpr int limitMs = 60'000;
    if (!process.waitForStarted(limitMs) || !process.waitForFinished(limitMs)) {
        ADD_FAILURE() << qPrintable(program) << ": " << qPrintable(process.errorString());
        process.kill();
        process.waitForFinished();
        return {};
    }
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()), QString::fromUtf8(process.readAllStandardError())};
}

InstalledTree::InstalledTree(const QStringList& components) {
    EXPECT_TRUE(QDir().mkpath(home()));
    // Open to others, it would be no folder for a runtime, and another would be made in that of all users.
    EXPECT_TRUE(QFile::setPermissions(home(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    for (const QString& component : components) {
        const Finished installed = run(u"cmake"_s,
                                       {u"--install"_s, QStringLiteral(DORVANTEL_BIN_DIR "/.."), u"--component"_s,
                                        component, u"--prefix"_s, m_folder.filePath(u"prefix"_s)},
                                       home());
        EXPECT_EQ(installed.status, 0) << qPrintable(installed.errors);
    }
}

QStringList InstalledTree::files() const {
    const QDir prefix(path({}));
    QStringList names;
    QDirIterator entries(prefix.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        names.append(prefix.relativeFilePath(entries.next()));
    }
    names.sort();
    return names;
}

QStringList helpTerms(const QString& help) {
    // One line each, two blanks deep: "  -h, --help   …", "  --store PATH   …", "  command FILE   …".
    static const QRegularExpression line(u"^  (-[a-z], )?(-*[a-z][a-z-]*)"_s, QRegularExpression::MultilineOption);
    QStringList terms;
    for (auto match = line.globalMatch(help); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        if (found.hasCaptured(1)) {
            terms.append(found.captured(1).left(2));
        }
        terms.append(found.captured(2));
    }
    EXPECT_TRUE(terms.contains(u"--help"_s)) << qPrintable(help);
    return terms;
}

} // namespace dorvantel::test
