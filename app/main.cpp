// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/Application.h"
#include "app/DorvantelApp.h"
#include "intake/DroppedPDF.h"
#include "modelserver/AppSettings.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>

#include <cstdio>

using namespace dorvantel;
using namespace Qt::StringLiterals;

namespace {

constexpr int usageError = 2;

/// The CV named on the command line, if any. Ends the program when it cannot be read, before any window opens.
QString cvFromCommandLine(const QCoreApplication& application) {
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Convierte currículums en PDF en candidatos que se pueden buscar."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(u"FILE.pdf"_s, u"Currículum que se abre al empezar."_s, u"[FILE.pdf]"_s);
    parser.process(application);

    const QString path = parser.positionalArguments().value(0);
    if (path.isEmpty()) {
        return path;
    }
    if (!QFileInfo(path).isReadable()) {
        std::fprintf(stderr, "dorvantel: no se puede leer %s\n", qUtf8Printable(path));
        std::exit(usageError);
    }
    if (!isPDFFile(path)) {
        std::fprintf(stderr, "dorvantel: %s no es un PDF\n", qUtf8Printable(path));
        std::exit(usageError);
    }
    return path;
}

} // namespace

int main(int argc, char** argv) {
    std::jthread fonts = readFontConfiguration();
    QApplication application(argc, argv);
    prepareApplication(application);
    fonts.join(); // the command line may end the program, which must not happen while it runs
    const QString cv = cvFromCommandLine(application);
    listFonts();

    DorvantelApp program(AppSettings::shared(), QStringLiteral(DORVANTEL_RECORDS_BASE_URL));
    ContentView& window = program.window();
    window.show();
    if (!cv.isEmpty()) {
        window.openCV(cv);
    }
    return QApplication::exec();
}
