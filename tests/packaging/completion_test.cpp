// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/packaging/InstalledTree.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

class Completion : public testing::Test {
protected:
    /// What bash offers for the last of `words`, which follow the program on the command line as bash takes it apart.
    QStringList offered(const QStringList& words) const {
        const QString script = uR"(
            set -u
            source "$1"; shift
            cd "$HOME"
            COMP_WORDS=("$@")
            COMP_CWORD=$(($# - 1))
            _dorvantel_records "$1" "${@: -1}" "${@: -2:1}"
            [ ${#COMPREPLY[@]} -eq 0 ] || printf '%s\n' "${COMPREPLY[@]}"
        )"_s;
        const Finished done =
            run(u"bash"_s,
                QStringList{u"-c"_s, script, u"bash"_s,
                            m_tree.path(u"share/bash-completion/completions/dorvantel-records"_s), program()} +
                    words,
                m_tree.home());
        EXPECT_EQ(done.status, 0);
        EXPECT_EQ(done.errors, QString());
        return done.output.split(u'\n', Qt::SkipEmptyParts);
    }

    QString program() const { return m_tree.path(u"bin/dorvantel-records"_s); }

    const InstalledTree m_tree{{u"dorvantel-records"_s}};
};

} // namespace

TEST_F(Completion, OffersWhatTheHelpLists) {
    EXPECT_EQ(offered({u""_s}), helpTerms(run(program(), {u"--help"_s}, m_tree.home()).output));
}

TEST_F(Completion, OffersWhatBeginsLikeTheWord) {
    EXPECT_EQ(offered({u"--st"_s}), QStringList{u"--store"_s});
    EXPECT_EQ(offered({u"--store=a"_s, u"--no-such"_s}), QStringList());
}

TEST_F(Completion, OffersFilesWhereAnOptionTakesAFile) {
    QFile file(QDir(m_tree.home()).filePath(u"personas.sqlite"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(offered({u"--store"_s, u"per"_s}), QStringList{u"personas.sqlite"_s});
    EXPECT_EQ(offered({u"--store"_s, u"="_s, u"per"_s}), QStringList{u"personas.sqlite"_s});
    EXPECT_THAT(offered({u"--store"_s, u"="_s}), testing::Contains(u"personas.sqlite"_s));
}

TEST_F(Completion, OffersNothingWhereAnOptionTakesAnotherValue) {
    EXPECT_EQ(offered({u"--listen"_s, u""_s}), QStringList());
    EXPECT_EQ(offered({u"--body-limit"_s, u"="_s}), QStringList());
}

TEST_F(Completion, OffersTheOptionsOfACommandAfterIt) {
    for (const QString& command : {u"check"_s, u"export"_s, u"erase"_s, u"reembed"_s}) {
        EXPECT_EQ(offered({command, u""_s}), helpTerms(run(program(), {command, u"--help"_s}, m_tree.home()).output));
    }
    EXPECT_EQ(offered({u"backup"_s, u"--r"_s}), QStringList{u"--replace"_s});
}

TEST_F(Completion, OffersFilesToACommandThatTakesAFile) {
    ASSERT_TRUE(QDir(m_tree.home()).mkdir(u"copias"_s));
    EXPECT_EQ(offered({u"restore"_s, u"co"_s}), QStringList{u"copias"_s});
    EXPECT_EQ(offered({u"backup"_s, u""_s}), QStringList{u"copias"_s});
    EXPECT_EQ(offered({u"export"_s, u"a@example.com"_s, u"--to"_s, u""_s}), QStringList{u"copias"_s});
}

} // namespace dorvantel::test
