// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "modelserver/AppSettings.h"
#include "modelserver/ModelChoice.h"
#include "modelserver/ModelDetailView.h"
#include "modelserver/ModelPicker.h"
#include "modelserver/ModelSettingsView.h"
#include "tests/support/Print.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Wait.h"
#include "ui/Symbols.h"

#include <QHash>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

/// The page over a server with one model of each kind.
struct ModelSettingsViewTest : testing::Test {
    QTemporaryDir folder;
    AppSettings settings{std::make_unique<QSettings>(folder.filePath(u"a.conf"_s), QSettings::IniFormat)};
    NetworkHttpSession session;
    QByteArray tags = R"({"models":[
        {"name":"nomic","size":274302450,"details":{"format":"gguf","family":"nomic-bert","parameter_size":"137M"}},
        {"name":"llama","size":2019393189,"details":{"format":"gguf"}},{"name":"gemma"},{"name":"roto"}]})";
    QHash<QByteArray, QByteArray> shows{{"nomic", R"({"capabilities":["embedding"]})"},
                                        {"llama", R"({"capabilities":["completion","tools"]})"},
                                        {"gemma", R"({"capabilities":["completion","vision"]})"}};
    bool hold = false;      ///< the lists that are asked for from now on
    bool holdShows = false; ///< the answers about the models
    bool stallShows = false;
    int tagsStatus = 200;
    ScriptedServer server{[this](const ScriptedRequest& request) {
        if (request.target == "/api/tags") {
            return ScriptedReply{.status = tagsStatus, .body = tags, .held = hold};
        }
        return ScriptedReply{.body = shows.value(request.body.mid(9).chopped(2), "model not found"),
                             .way = stallShows ? ScriptedReply::Way::Stall : ScriptedReply::Way::Whole,
                             .held = holdShows};
    }};
    std::unique_ptr<ModelSettingsView> view;

    ModelSettingsViewTest() { settings.setOllamaURL(server.url()); }

    void openPage() {
        view = std::make_unique<ModelSettingsView>(settings, session);
        view->resize(600, 460);
        view->show();
    }
    void openLoadedPage() {
        openPage();
        ASSERT_TRUE(waitUntil([this] { return row(u"loaded"_s).isVisible(); }));
    }

    MarkedRow& row(const QString& name) const { return *view->findChild<MarkedRow*>(name); }
    ModelChoice& choice(const QString& name) const { return *view->findChild<ModelChoice*>(name); }
    ModelPicker& picker(const QString& name) const { return *choice(name).findChild<ModelPicker*>(); }
    ModelDetailView* details(const QString& name) const { return choice(name).findChild<ModelDetailView*>(); }
    QPushButton& button(const QString& name) const { return *view->findChild<QPushButton*>(name); }
    QStringList offered(const QString& name) const {
        QStringList texts;
        for (int i = 0; i < picker(name).count(); ++i) {
            texts += picker(name).itemText(i);
        }
        return texts;
    }
    void choose(const QString& name, const QString& entry) const {
        ModelPicker& menu = picker(name);
        const int index = menu.findText(entry, Qt::MatchStartsWith);
        ASSERT_GE(index, 0);
        menu.setFocus();
        // As the user's keys do it, from wherever the menu stands.
        QTest::keyClick(&menu, Qt::Key_Home);
        for (int i = 0; i < index; ++i) {
            QTest::keyClick(&menu, Qt::Key_Down);
        }
        ASSERT_EQ(menu.currentIndex(), index);
    }
};

} // namespace dorvantel::test
