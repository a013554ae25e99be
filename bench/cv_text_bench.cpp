// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/Report.h"
#include "platform/ProcessPDFOpener.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

using namespace dorvantel;
using namespace dorvantel::bench;
using namespace Qt::StringLiterals;

namespace {

constexpr int repetitions = 5;

/// Seconds from the start to the end of a process that writes a text; negative when it fails.
double secondsOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer clock;
    clock.start();
    process.start(program, arguments);
    const bool ended = process.waitForFinished();
    const double seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
    return ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0 ? seconds : -1;
}

} // namespace

/// The text of every CV of a folder, each read by a process of its own as a drop does it, beside pdftotext.
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QString data = qEnvironmentVariable("DORVANTEL_TEST_DATA");
    const QString pdftotext = QStandardPaths::findExecutable(u"pdftotext"_s);
    const QFileInfoList files = QDir(data + u"/cv"_s).entryInfoList({u"*.pdf"_s}, QDir::Files, QDir::Name);
    if (data.isEmpty() || files.isEmpty() || pdftotext.isEmpty()) {
        std::fputs("cv_text: needs CVs in $DORVANTEL_TEST_DATA/cv and pdftotext; nothing was measured\n", stderr);
        return EXIT_SUCCESS;
    }
    const QString reader = findPDFReader(QCoreApplication::applicationDirPath());
    double ours = 0;
    double theirs = 0;
    for (const QFileInfo& file : files) {
        const QString path = file.absoluteFilePath();
        std::vector<double> ourTimes;
        std::vector<double> theirTimes;
        for (int i = 0; i < repetitions; ++i) {
            ourTimes.push_back(secondsOf(reader, {u"--text"_s, path}));
            theirTimes.push_back(secondsOf(pdftotext, {u"-enc"_s, u"UTF-8"_s, path, u"-"_s}));
        }
        if (std::ranges::min(ourTimes) < 0 || std::ranges::min(theirTimes) < 0) {
            std::fprintf(stderr, "%s: left out, since one of the two does not read it\n", qPrintable(file.fileName()));
            continue;
        }
        ours += median(ourTimes);
        theirs += median(theirTimes);
        std::fprintf(stderr, "%s\t%.4f\t%.4f\n", qPrintable(file.fileName()), median(ourTimes), median(theirTimes));
    }
    const Report report(argc, argv);
    report.atMost("text of the CVs, whole processes: ours / pdftotext", ours / theirs, 1, "times");
    return EXIT_SUCCESS;
}
