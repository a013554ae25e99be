// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/Application.h"
#include "app/tour/Tour.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTemporaryDir>

#include <cstdio>
#include <exception>

using namespace dorvantel;
using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
    // A guest's settings and data: the tour never touches the user's own.
    const QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.filePath(u"config"_s).toUtf8());
    qputenv("XDG_DATA_HOME", home.filePath(u"data"_s).toUtf8());
    qputenv("QT_QPA_PLATFORM", "offscreen");

    QApplication application(argc, argv);
    prepareApplication(application);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Goes through the main job in the real window, with invented candidates, and leaves a picture per step."_s);
    parser.addHelpOption();
    parser.addOption({u"out"_s, u"Folder for the pictures."_s, u"folder"_s});
    parser.addOption({u"cv"_s, u"A CV to take through; may be given several times."_s, u"file"_s});
    parser.process(application);
    const QDir out(parser.value(u"out"_s));
    if (!parser.isSet(u"out"_s) || !out.mkpath(u"."_s)) {
        std::fprintf(stderr, "dorvantel-tour: --out needs a folder that can be written\n");
        return 2;
    }

    const QString sample = QStringLiteral(DORVANTEL_SAMPLE_CV);
    try {
        Tour tour(out);
        tour.takeMainJob(sample);
        for (const QString& cv : parser.values(u"cv"_s)) {
            tour.takeThrough(cv);
        }
        tour.takeSearch();
        tour.takeModelServerAway(sample);
        std::fprintf(stderr, "%d pictures are in %s\n", tour.pictures(), qUtf8Printable(out.absolutePath()));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "dorvantel-tour: this step failed: %s\n", error.what());
        return 1;
    }
    return 0;
}
