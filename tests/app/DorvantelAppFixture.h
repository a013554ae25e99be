// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "app/DorvantelApp.h"
#include "modelserver/AppSettings.h"
#include "platform/PDFDocument.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Wait.h"

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QSettings>
#include <QTemporaryDir>
#include <QThreadPool>

#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

/// The visible windows of this name.
inline QList<QWidget*> topLevels(const QString& name) {
    QList<QWidget*> found;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == name && widget->isVisible()) {
            found += widget;
        }
    }
    return found;
}

inline QWidget* topLevel(const QString& name) {
    return topLevels(name).value(0);
}

/// The whole program over one server that is both its records service, with one candidate, and its model server, with
/// no models. The answers to an insert and a delete are held until the test releases them.
class DorvantelAppTest : public testing::Test {
protected:
    ScriptedReply answer(const ScriptedRequest& request) const {
        if (request.method == "DELETE") {
            return {.status = 204, .held = true};
        }
        if (request.method == "POST") {
            return insertReply;
        }
        return {.body = request.target == "/curriculums" ? candidates : QByteArray(R"({"models":[]})")};
    }

    QString file(const QString& name, const QByteArray& bytes) const {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    QTemporaryDir folder;
    AppSettings settings{std::make_unique<QSettings>(folder.filePath(u"settings.conf"_s), QSettings::IniFormat)};
    QByteArray candidates = R"({"response": [{"name": "Blas", "profession": "Contable", "email": "blas@example.com",
        "summarizedText": "", "invitationMail": "",
        "jsonCVData": {"gender": "", "softSkills": [], "techSkills": [], "languages": []}}]})";
    ScriptedReply insertReply{.status = 201,
                              .body = R"({"name": "", "profession": "", "email": "", "summarizedText": "",
                                          "invitationMail": "", "jsonCVData": "", "file": null})",
                              .held = true};
    ScriptedServer server{[this](const ScriptedRequest& request) { return answer(request); }};
    CapturedOutput output;
    DorvantelApp program{settings, server.url() + u"/curriculums"_s};
};

} // namespace dorvantel::test
