// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gmock/gmock.h>

/// Every test program: an application on the offscreen platform whose settings and data stay in a folder of its own.
int main(int argc, char** argv) {
    const QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        qputenv(variable, (home.path() + QLatin1String("/") + QLatin1String(variable).toString().toLower()).toUtf8());
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    qunsetenv("http_proxy");
    qunsetenv("HTTP_PROXY");

    testing::InitGoogleMock(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Dorvantel"));
    QApplication::setApplicationName(QStringLiteral("Dorvantel"));
    return RUN_ALL_TESTS();
}
