// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/DorvantelApp.h"
#include "modelserver/AppSettings.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Wait.h"

#include <QAction>
#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace dorvantel;
using namespace dorvantel::test;
using namespace Qt::StringLiterals;

namespace {

class DorvantelAppTest : public testing::Test {
protected:
    QTemporaryDir folder;
    AppSettings settings{std::make_unique<QSettings>(folder.filePath(u"settings.conf"_s), QSettings::IniFormat)};
    ScriptedServer server{[](const ScriptedRequest& request) {
        return ScriptedReply{.body = request.target == "/curriculums" ? R"({"response": []})" : R"({"models":[]})"};
    }};
    CapturedOutput output;
    DorvantelApp program{settings, server.url() + u"/curriculums"_s};
};

QWidget* topLevel(const QString& name) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == name && widget->isVisible()) {
            return widget;
        }
    }
    return nullptr;
}

} // namespace

TEST_F(DorvantelAppTest, LoadsTheRecordsFromTheServiceItWasBuiltFor) {
    ASSERT_TRUE(waitUntil([&] { return !server.requests().isEmpty(); }));
    EXPECT_EQ(server.requests()[0].method, "GET");
    EXPECT_EQ(server.requests()[0].target, "/curriculums");
}

TEST_F(DorvantelAppTest, SettingsOpenFromTheMenuWithTheUsualKeyAndOnlyOnce) {
    settings.setOllamaURL(server.url());
    auto* action = program.window().findChild<QAction*>(u"settings"_s);
    EXPECT_EQ(action->shortcut(), QKeySequence(u"Ctrl+,"_s));
    EXPECT_FALSE(topLevel(u"settings"_s));
    action->trigger();
    QWidget* opened = topLevel(u"settings"_s);
    ASSERT_TRUE(opened);
    action->trigger();
    EXPECT_EQ(topLevel(u"settings"_s), opened);
}

TEST_F(DorvantelAppTest, SettingsMayBeOpenWhenTheProgramEnds) {
    settings.setOllamaURL(server.url());
    program.openSettings();
    EXPECT_TRUE(topLevel(u"settings"_s));
}

TEST_F(DorvantelAppTest, AboutShowsNameVersionAndCredits) {
    QApplication::setApplicationVersion(u"1.2.3"_s);
    auto* action = program.window().findChild<QAction*>(u"about"_s);
    EXPECT_EQ(action->text().remove(u'&'), u"Acerca de Dorvantel..."_s);
    action->trigger();
    auto* about = program.window().findChild<QMessageBox*>(u"about"_s);
    ASSERT_TRUE(about);
    EXPECT_TRUE(about->text().contains(u"Versión 1.2.3"_s));
    EXPECT_TRUE(about->text().contains(u"© 2026"_s));
}
