// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/ProcessPDFOpener.h"
#include "tests/packaging/InstalledTree.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>

#include <httplib.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int limitMs = 30'000;

/// A server of the tree on a free port; ended by SIGTERM.
class Server {
public:
    Server(const QString& program, const QStringList& arguments) {
        m_process.start(program, arguments);
        while (!m_process.canReadLine() && m_process.waitForReadyRead(limitMs)) {
        }
        m_readyLine = QString::fromUtf8(m_process.readLine()).trimmed();
    }

    const QString& readyLine() const { return m_readyLine; }

    httplib::Client client() const {
        static const QRegularExpression port(u"127\\.0\\.0\\.1:([0-9]+)"_s);
        return httplib::Client("127.0.0.1", port.match(m_readyLine).captured(1).toInt());
    }

    int end() {
        m_process.terminate();
        EXPECT_TRUE(m_process.waitForFinished(limitMs));
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

private:
    QProcess m_process;
    QString m_readyLine;
};

} // namespace

TEST(InstalledPrograms, SayTheirVersion) {
    const InstalledTree tree({u"dorvantel"_s, u"dorvantel-records"_s, u"dorvantel-demo-model"_s});
    for (const QString& program : QDir(tree.path(u"bin"_s)).entryList(QDir::Files)) {
        const Finished done = run(tree.path(u"bin/"_s + program), {u"--version"_s}, tree.home());
        EXPECT_EQ(done.status, 0) << qPrintable(done.errors);
        EXPECT_THAT(done.output.toLower().toStdString(), testing::StartsWith(program.toStdString() + " "));
    }
}

TEST(InstalledPrograms, TheWindowsReaderIsFoundFromWhereverTheTreeIs) {
    const InstalledTree tree({u"dorvantel"_s});
    const QString moved = QDir(tree.home()).filePath(u"moved"_s);
    ASSERT_TRUE(QDir().rename(tree.path({}), moved));
    const QString reader = findPDFReader(moved + u"/bin"_s);
    EXPECT_EQ(reader, QFileInfo(moved + u"/libexec/dorvantel/dorvantel-pdf-reader"_s).canonicalFilePath());

    const Finished read =
        run(reader, {u"--text"_s, QStringLiteral(DORVANTEL_SOURCE_DIR "/demo/samples/contable.pdf")}, tree.home());
    EXPECT_EQ(read.status, 0) << qPrintable(read.errors);
    EXPECT_THAT(read.output.toStdString(), testing::HasSubstr("@example.com"));
}

TEST(InstalledPrograms, TheRecordsServiceServesAnEmptyStore) {
    const InstalledTree tree({u"dorvantel-records"_s});
    Server server(tree.path(u"bin/dorvantel-records"_s),
                  {u"--listen"_s, u"127.0.0.1:0"_s, u"--store"_s, QDir(tree.home()).filePath(u"records.sqlite"_s)});
    const httplib::Result answer = server.client().Get("/curriculums");
    ASSERT_TRUE(answer) << qPrintable(server.readyLine());
    EXPECT_EQ(answer->body, R"({"response":[]})");
    EXPECT_EQ(server.end(), 0);
}

TEST(InstalledPrograms, TheStandInListsItsModels) {
    const InstalledTree tree({u"dorvantel-demo-model"_s});
    Server server(tree.path(u"bin/dorvantel-demo-model"_s), {u"--listen"_s, u"127.0.0.1:0"_s});
    const httplib::Result answer = server.client().Get("/api/tags");
    ASSERT_TRUE(answer) << qPrintable(server.readyLine());
    EXPECT_THAT(answer->body, testing::HasSubstr("demo-texto:latest"));
    EXPECT_EQ(server.end(), 0);
}

} // namespace dorvantel::test
