// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/SampleCv.h"
#include "demo/SamplePdf.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

/// Draws the sample CVs as PDF files into a folder. scripts/make-samples.sh calls it.
int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 2 || !QDir().mkpath(arguments[1])) {
        std::fprintf(stderr, "Usage: dorvantel-make-samples FOLDER\n");
        return 2;
    }
    for (const auto& [name, source] : dorvantel::sampleSources(u"src"_s)) {
        const auto cv = dorvantel::parseSampleCv(source);
        if (!cv) {
            std::fprintf(stderr, "dorvantel-make-samples: %s.md: %s\n", qUtf8Printable(name),
                         qUtf8Printable(cv.error()));
            return 1;
        }
        QFile file(QDir(arguments[1]).filePath(name + u".pdf"_s));
        const QByteArray bytes = dorvantel::samplePdf(*cv);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            std::fprintf(stderr, "dorvantel-make-samples: %s: %s\n", qUtf8Printable(file.fileName()),
                         qUtf8Printable(file.errorString()));
            return 1;
        }
        std::printf("%s: %lld bytes\n", qUtf8Printable(file.fileName()), static_cast<long long>(bytes.size()));
    }
    return 0;
}
