// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT

// The program as users have it, but for the records service, whose base URL is the argument: the tests' own stands at a
// port that is known only when it runs.
#include "app/Application.h"
#include "app/DorvantelApp.h"
#include "modelserver/AppSettings.h"

#include <QApplication>

using namespace dorvantel;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    prepareApplication(application);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 2) {
        qFatal("one argument: the base URL of the records service");
    }
    DorvantelApp program(AppSettings::shared(), arguments[1]);
    program.window().resize(1100, 720);
    program.window().show();
    return QApplication::exec();
}
