// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/FillSamples.h"

#include <QGuiApplication>

#include <cstdio>

/// Fills an empty records service with the invented candidates of the demo profile.
int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen"); // it draws files only
    }
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 2 || arguments[1].startsWith(u'-')) {
        std::fprintf(stderr, "Usage: dorvantel-fill-samples URL\n"
                             "Inserts invented candidates into the records service at URL (for example\n"
                             "http://127.0.0.1:8765/curriculums) unless it has records already.\n");
        return arguments.contains(QStringLiteral("--help")) ? 0 : 2;
    }
    const std::expected<int, QString> inserted = dorvantel::fillRecords(arguments[1], dorvantel::sampleCandidates());
    if (!inserted) {
        std::fprintf(stderr, "dorvantel-fill-samples: %s\n", qUtf8Printable(inserted.error()));
        return 1;
    }
    std::printf(*inserted == 0 ? "The records service has records already; nothing was inserted\n"
                               : "%d invented candidates were inserted\n",
                *inserted);
    return 0;
}
