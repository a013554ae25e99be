// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/Application.h"
#include "app/tour/Scenes.h"
#include "app/tour/Tour.h"
#include "ui/Style.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cstdio>
#include <exception>
#include <optional>

using namespace dorvantel;
using namespace Qt::StringLiterals;

namespace {

constexpr int usageError = 2;

int refuse(const char* why) {
    std::fprintf(stderr, "dorvantel-tour: %s\n", why);
    return usageError;
}

/// A screen on which every window of the tour finds room at two pixels a point; dialogs fold their texts by its width.
QString screenFile(const QTemporaryDir& folder) {
    QFile file(folder.filePath(u"screen.json"_s));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(R"({"screens":[{"name":"tour","x":0,"y":0,"width":5120,"height":2880,)"
                   R"("logicalDpi":96,"logicalBaseDpi":96,"dpr":1}]})");
    }
    return file.fileName();
}

std::optional<QSize> sizeOf(const QString& text) {
    static const QRegularExpression form(u"^([1-9][0-9]{2,3})x([1-9][0-9]{2,3})$"_s);
    const QRegularExpressionMatch match = form.match(text);
    return match.hasMatch() ? std::optional(QSize(match.captured(1).toInt(), match.captured(2).toInt())) : std::nullopt;
}

int takeTour(const QDir& out, const QSize& size, const QStringList& cvs) {
    const QString sample = QStringLiteral(DORVANTEL_SAMPLE_CV);
    try {
        Tour tour(out, size);
        tour.takeMainJob(sample);
        for (const QString& cv : cvs) {
            tour.takeThrough(cv);
        }
        tour.takeSearch();
        tour.takeSettings();
        tour.takeModelServerAway(sample);
        std::fprintf(stderr, "%d pictures are in %s\n", tour.pictures(), qUtf8Printable(out.absolutePath()));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "dorvantel-tour: this step failed: %s\n", error.what());
        return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    // A guest's settings and data: the tour never touches the user's own.
    const QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.filePath(u"config"_s).toUtf8());
    qputenv("XDG_DATA_HOME", home.filePath(u"data"_s).toUtf8());
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screenFile(home).toUtf8());

    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Goes through the program in its real window, with invented candidates, and leaves a picture per step."_s);
    parser.addHelpOption();
    parser.addOption({u"out"_s, u"Folder for the pictures."_s, u"folder"_s});
    parser.addOption({u"cv"_s, u"A CV to take through; may be given several times."_s, u"file"_s});
    parser.addOption({u"size"_s, u"Size of the window, 1100x720 unless given."_s, u"size"_s, u"1100x720"_s});
    parser.addOption({u"palette"_s, u"light (unless given) or dark."_s, u"name"_s, u"light"_s});
    parser.addOption(
        {u"scenes"_s,
         u"Instead: takes the tour in light and dark, at 1 and 2 pixels a point, in a small and in a large "
         "window, each into a folder of its own in this one."_s,
         u"folder"_s});
    parser.process(application);

    const bool scenes = parser.isSet(u"scenes"_s);
    const QDir out(parser.value(scenes ? u"scenes"_s : u"out"_s));
    if ((!scenes && !parser.isSet(u"out"_s)) || !out.mkpath(u"."_s)) {
        return refuse("--out and --scenes need a folder that can be written");
    }
    if (scenes) {
        return takeScenes(out) ? 0 : 1;
    }
    const std::optional<QSize> size = sizeOf(parser.value(u"size"_s));
    const QString palette = parser.value(u"palette"_s);
    if (!size || (palette != "light"_L1 && palette != "dark"_L1)) {
        return refuse("--size is like 1100x720, --palette is light or dark");
    }
    QApplication::setPalette(palette == "dark"_L1 ? darkPalette() : lightPalette());
    prepareApplication(application);
    return takeTour(out, *size, parser.values(u"cv"_s));
}
