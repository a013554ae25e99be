// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <optional>
#include <span>
#include <string_view>

#include <gmock/gmock.h>

namespace {

/// Whether this process was started by a test to die. It could not remove a folder of its own, so it has its parent's.
bool isDeathTest(std::span<char*> arguments) {
    return std::ranges::any_of(
        arguments, [](std::string_view argument) { return argument.starts_with("--gtest_internal_run_death_test"); });
}

} // namespace

/// Every test program: an application on the offscreen platform whose settings and data stay in a folder of its own.
int main(int argc, char** argv) {
    std::optional<QTemporaryDir> home;
    if (!isDeathTest({argv, argv + argc})) {
        home.emplace();
        qputenv("HOME", home->path().toUtf8());
        for (const char* const variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
            const QString name = QLatin1String(variable).toString().toLower();
            qputenv(variable, (home->path() + QLatin1String("/") + name).toUtf8());
        }
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
