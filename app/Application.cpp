// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/Application.h"

#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QApplication>
#include <QFontDatabase>
#include <QLibraryInfo>
#include <QThreadPool>
#include <QTranslator>

#include <fontconfig/fontconfig.h>

namespace dorvantel {

using namespace Qt::StringLiterals;

std::jthread readFontConfiguration() {
    return std::jthread([] { FcInit(); });
}

void prepareApplication(QApplication& application) {
    QApplication::setOrganizationName(u"Dorvantel"_s);
    QApplication::setApplicationName(u"Dorvantel"_s);
    QApplication::setApplicationVersion(QStringLiteral(DORVANTEL_VERSION));
    QApplication::setDesktopFileName(u"dorvantel"_s);
    QApplication::setWindowIcon(applicationIcon());
    QLocale::setDefault(QLocale(QLocale::Spanish));
    auto* spanish = new QTranslator(&application);
    if (spanish->load(u"qtbase_es"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QApplication::installTranslator(spanish);
    }
    applyApplicationLook(application);
}

void listFonts() {
    QThreadPool::globalInstance()->start([] { QFontDatabase::families(); });
}

} // namespace dorvantel
