// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/Symbols.h"

#include <QDir>

#include <cstdio>

using namespace Qt::StringLiterals;

/// Draws the program's mark in every size of the icon theme, below FOLDER as the theme wants it. Run by the build.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "Usage: dorvantel-draw-icons FOLDER\n");
        return 2;
    }
    const QDir theme(QString::fromLocal8Bit(argv[1]));
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        const QString folder = u"%1x%1/apps"_s.arg(size);
        const QString file = theme.filePath(folder + u"/dorvantel.png"_s);
        if (!theme.mkpath(folder) || !dorvantel::applicationImage(size).save(file)) {
            std::fprintf(stderr, "dorvantel-draw-icons: cannot write %s\n", qUtf8Printable(file));
            return 1;
        }
    }
    return 0;
}
