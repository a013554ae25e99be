// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/packaging/InstalledTree.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

struct Program {
    std::string test; ///< how the tests call it
    QString name;
};

void PrintTo(const Program& program, std::ostream* stream) {
    *stream << program.test;
}

class Manual : public testing::TestWithParam<Program> {
protected:
    QString page() const { return m_tree.path(u"share/man/man1/%1.1.gz"_s.arg(GetParam().name)); }

    QStringList terms(const QStringList& command) const {
        const QString program = m_tree.path(u"bin/"_s + GetParam().name);
        return helpTerms(run(program, command + QStringList{u"--help"_s}, m_tree.home()).output);
    }

    /// What the help lists, and what the helps of the commands in it list.
    QStringList allTerms() const {
        QStringList all;
        for (const QString& term : terms({})) {
            all += term;
            if (!term.startsWith(u'-')) {
                all += terms({term});
            }
        }
        return all;
    }

    const InstalledTree m_tree{{GetParam().name}};
};

} // namespace

TEST_P(Manual, IsWellFormed) {
    const Finished checked = run(u"mandoc"_s, {u"-T"_s, u"lint"_s, page()}, m_tree.home());
    EXPECT_EQ(checked.status, 0);
    EXPECT_EQ(checked.output + checked.errors, QString());
}

TEST_P(Manual, DescribesWhatTheHelpLists) {
    const QString source = run(u"gzip"_s, {u"-dc"_s, page()}, m_tree.home()).output;
    for (QString term : allTerms()) {
        const QString escaped = QRegularExpression::escape(term.replace(u'-', u"\\-"_s));
        const QRegularExpression heading(u"^\\.(B|BI|BR) (.* )?"_s + escaped + u"( |$)"_s,
                                         QRegularExpression::MultilineOption);
        EXPECT_TRUE(heading.match(source).hasMatch()) << qPrintable(term);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, Manual,
                         testing::Values(Program{"Dorvantel", u"dorvantel"_s},
                                         Program{"Records", u"dorvantel-records"_s},
                                         Program{"DemoModel", u"dorvantel-demo-model"_s}),
                         [](const auto& of) { return of.param.test; });

} // namespace dorvantel::test
