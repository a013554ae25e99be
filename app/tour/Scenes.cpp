// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/tour/Scenes.h"

#include <QCoreApplication>
#include <QProcess>

#include <cstdio>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr int tourLimitMs = 10 * 60 * 1000;

bool takeScene(const QDir& out, const QString& palette, const QString& scale, const QString& size) {
    const QString name = palette + u'-' + scale + u"x-"_s + size;
    // The scale is read when the application object is made, and holds for the whole process.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_SCALE_FACTOR"_s, scale);
    QProcess tour;
    tour.setProcessEnvironment(environment);
    tour.setProcessChannelMode(QProcess::ForwardedChannels);
    tour.start(QCoreApplication::applicationFilePath(),
               {u"--out"_s, out.filePath(name), u"--size"_s, size, u"--palette"_s, palette});
    if (!tour.waitForFinished(tourLimitMs) || tour.exitStatus() != QProcess::NormalExit || tour.exitCode() != 0) {
        std::fprintf(stderr, "dorvantel-tour: the scene %s failed\n", qUtf8Printable(name));
        return false;
    }
    return true;
}

} // namespace

bool takeScenes(const QDir& out) {
    bool good = true;
    for (const QString& palette : {u"light"_s, u"dark"_s}) {
        for (const QString& scale : {u"1"_s, u"2"_s}) {
            for (const QString& size : {u"1024x640"_s, u"2560x1440"_s}) {
                good = takeScene(out, palette, scale, size) && good;
            }
        }
    }
    return good;
}

} // namespace dorvantel
