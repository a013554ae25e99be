// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFPageFrames.h"
#include "platform/ProcessPDFOpener.h"
#include "platform/Sanitizers.h"
#include "tests/support/Print.h"
#include "tests/support/SamplePDF.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace dorvantel;
using namespace dorvantel::test;
using namespace Qt::StringLiterals;

namespace {

const QString reader = QStringLiteral(DORVANTEL_BIN_DIR "/dorvantel-pdf-reader");

/// What the reader did with `input` and `arguments`.
struct Outcome {
    int exitCode = -1;
    QByteArray output;
    QByteArray errors;
};

Outcome run(const QStringList& arguments, const QByteArray& input = {}) {
    QProcess process;
    process.start(reader, arguments);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished());
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError()};
}

QByteArray limitOf(qint64 process, const QByteArray& name) {
    QFile file(u"/proc/%1/limits"_s.arg(process));
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (line.startsWith(name)) {
                return line.sliced(name.size()).simplified();
            }
        }
    }
    return {};
}

} // namespace

TEST(PDFReader, WritesThePageTextsAsFrames) {
    const Outcome done = run({}, textPDF({"Uno\nDos", ""}));
    EXPECT_EQ(done.exitCode, 0);
    EXPECT_EQ(decodePageFrames(done.output), (QStringList{u"Uno\nDos\n"_s, QString()}));
}

TEST(PDFReader, SaysWithItsExitCodeThatAPDFDoesNotOpen) {
    const Outcome done = run({}, "no PDF");
    EXPECT_EQ(done.exitCode, 1);
    EXPECT_EQ(done.output, QByteArray());
}

TEST(PDFReader, PrintsTheTextOfAFileForPeople) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"cv #1.pdf"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(textPDF({"P\\341gina", "Dos"}));
    file.close();
    const Outcome done = run({u"--text"_s, file.fileName()});
    EXPECT_EQ(done.exitCode, 0);
    EXPECT_EQ(done.output, QByteArray("Página\n\fDos\n\f"));
}

TEST(PDFReader, NamesTheFileThatDoesNotOpen) {
    const Outcome missing = run({u"--text"_s, u"/nonexistent/cv.pdf"_s});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.errors, QByteArray("/nonexistent/cv.pdf: No such file or directory\n"));
    const Outcome noPDF = run({u"--text"_s, reader});
    EXPECT_EQ(noPDF.exitCode, 1);
    EXPECT_EQ(noPDF.errors, reader.toUtf8() + ": not a PDF that opens\n");
}

TEST(PDFReader, ExplainsItsUsage) {
    const Outcome done = run({u"--frobnicate"_s});
    EXPECT_EQ(done.exitCode, 2);
    EXPECT_TRUE(done.errors.startsWith("usage: dorvantel-pdf-reader")) << done.errors.constData();
}

TEST(PDFReader, LimitsItself) {
    QProcess process;
    process.start(reader, QStringList());
    ASSERT_TRUE(process.waitForStarted());
    const qint64 id = process.processId();
    EXPECT_TRUE(waitUntil([id] { return limitOf(id, "Max file size").startsWith("0 0 "); }));
    EXPECT_EQ(limitOf(id, "Max core file size"), QByteArray("0 0 bytes"));
    EXPECT_EQ(limitOf(id, "Max cpu time"), QByteArray("10 10 seconds"));
    if (!isSanitized) {
        EXPECT_EQ(limitOf(id, "Max address space"), QByteArray("1073741824 1073741824 bytes"));
    }
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished());
}

TEST(PDFReader, DiesWithItsParent) {
    const QTemporaryDir folder;
    const QString pipe = folder.filePath(u"pipe"_s);
    ASSERT_EQ(mkfifo(pipe.toUtf8().constData(), 0600), 0);
    QFile writer(pipe);
    ASSERT_TRUE(writer.open(QIODevice::ReadWrite)) << "holds the pipe open, so that the reader waits for more";

    QProcess shell;
    shell.start(u"/bin/sh"_s, {u"-c"_s, u"\"$0\" <\"$1\" & echo $!; wait"_s, reader, pipe});
    QByteArray printed;
    ASSERT_TRUE(waitUntil([&] { return (printed += shell.readAllStandardOutput()).endsWith('\n'); }));
    const qint64 id = printed.trimmed().toLongLong();
    ASSERT_TRUE(waitUntil([id] { return limitOf(id, "Max file size").startsWith("0 0 "); }));

    shell.kill();
    ASSERT_TRUE(shell.waitForFinished());
    EXPECT_TRUE(waitUntil([id] {
        QFile status(u"/proc/%1/status"_s.arg(id));
        return !status.open(QIODevice::ReadOnly) || status.readAll().contains("State:\tZ");
    }));
}

TEST(FindPDFReader, FindsTheOneBesideTheProgram) {
    EXPECT_EQ(findPDFReader(QStringLiteral(DORVANTEL_BIN_DIR)), QFileInfo(reader).canonicalFilePath());
}

TEST(FindPDFReader, FindsTheInstalledOne) {
    const QTemporaryDir root;
    const QDir prefix(root.path());
    ASSERT_TRUE(prefix.mkpath(u"bin"_s) && prefix.mkpath(u"libexec/dorvantel"_s));
    const QString installed = prefix.filePath(u"libexec/dorvantel/dorvantel-pdf-reader"_s);
    ASSERT_TRUE(QFile::copy(reader, installed));
    EXPECT_EQ(findPDFReader(prefix.filePath(u"bin"_s)), QFileInfo(installed).canonicalFilePath());
}

TEST(FindPDFReader, IsEmptyWhereThereIsNone) {
    const QTemporaryDir empty;
    EXPECT_EQ(findPDFReader(empty.path()), QString());
}
