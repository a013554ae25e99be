// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/ModelSettingsView.h"

#include "modelserver/AppSettings.h"
#include "modelserver/CapabilityBadge.h"
#include "modelserver/ModelChoice.h"
#include "modelserver/ModelDetailView.h"
#include "modelserver/ModelPicker.h"
#include "modelserver/SettingsView.h"
#include "tests/support/Print.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Wait.h"
#include "ui/Symbols.h"

#include <QHash>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::ScriptedReply;
using test::ScriptedRequest;
using test::ScriptedServer;
using test::waitUntil;

const QString noLanguageModel =
    u"No compatible LLM models available. Please install a text-only model (e.g., llama3.2, mistral, qwen2.5)"_s;
const QString noEmbeddingModel = u"No embedding models available. Please install an embedding model (e.g., "
                                 u"nomic-embed-text, mxbai-embed-large)"_s;

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
    bool hold = false;
    int tagsStatus = 200;
    ScriptedServer server{[this](const ScriptedRequest& request) {
        if (request.target == "/api/tags") {
            return ScriptedReply{.status = tagsStatus, .body = tags, .held = hold};
        }
        return ScriptedReply{.body = shows.value(request.body.mid(9).chopped(2), "model not found")};
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
        texts.sort();
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

TEST_F(ModelSettingsViewTest, ShowsThatModelsAreLoadingAndThenThatTheyAre) {
    hold = true;
    openPage();
    EXPECT_TRUE(row(u"loading"_s).isVisible());
    EXPECT_EQ(row(u"loading"_s).text(), u"Loading models..."_s);
    EXPECT_FALSE(row(u"loaded"_s).isVisible());
    const qreal before = row(u"loading"_s).symbol().rotation();
    EXPECT_TRUE(waitUntil([&] { return row(u"loading"_s).symbol().rotation() > before; }));
    ASSERT_TRUE(waitUntil([this] { return server.heldCount() == 1; }));
    server.release();
    ASSERT_TRUE(waitUntil([this] { return row(u"loaded"_s).isVisible(); }));
    EXPECT_EQ(row(u"loaded"_s).text(), u"Models loaded"_s);
    EXPECT_FALSE(row(u"loading"_s).isVisible());
    EXPECT_FALSE(row(u"modelError"_s).isVisible());
}

TEST_F(ModelSettingsViewTest, EachPickerOffersTheModelsThatSuitIt) {
    openLoadedPage();
    EXPECT_EQ(offered(u"embedding"_s), (QStringList{u"Select a model..."_s, u"nomic (274.3 MB)"_s}));
    EXPECT_EQ(offered(u"language"_s), (QStringList{u"Select a model..."_s, u"llama (2.02 GB)"_s, u"roto"_s}));
    EXPECT_EQ(picker(u"language"_s).itemText(0), u"Select a model..."_s);
}

TEST_F(ModelSettingsViewTest, ModelWithoutSizeShowsItsNameAlone) {
    openLoadedPage();
    EXPECT_GE(picker(u"language"_s).findText(u"roto"_s, Qt::MatchFixedString), 0);
}

TEST_F(ModelSettingsViewTest, VisionModelAloneLeavesNothingToChoose) {
    tags = R"({"models":[{"name":"gemma"}]})";
    openLoadedPage();
    for (const auto& [name, text] : {std::pair{u"language"_s, noLanguageModel}, {u"embedding"_s, noEmbeddingModel}}) {
        auto* message = choice(name).findChild<MarkedRow*>(u"noCandidates"_s);
        EXPECT_TRUE(message->isVisible());
        EXPECT_EQ(message->text(), text);
        EXPECT_FALSE(picker(name).isVisible());
    }
}

TEST_F(ModelSettingsViewTest, ModelWhoseCapabilitiesAreUnknownIsALanguageModelOnly) {
    tags = R"({"models":[{"name":"roto"}]})";
    openLoadedPage();
    EXPECT_EQ(offered(u"language"_s), (QStringList{u"Select a model..."_s, u"roto"_s}));
    EXPECT_FALSE(picker(u"embedding"_s).isVisible());
}

TEST_F(ModelSettingsViewTest, ChosenModelShowsItsDetailsAndBadges) {
    openLoadedPage();
    EXPECT_EQ(details(u"embedding"_s), nullptr);
    choose(u"embedding"_s, u"nomic"_s);
    ASSERT_NE(details(u"embedding"_s), nullptr);
    QStringList texts;
    for (const QLabel* label : details(u"embedding"_s)->findChildren<QLabel*>()) {
        texts += label->text();
    }
    EXPECT_EQ(texts, (QStringList{u"Format:"_s, u"gguf"_s, u"Parameters:"_s, u"137M"_s, u"Family:"_s, u"nomic-bert"_s,
                                  u"Capabilities:"_s, u"Embedding"_s}));
    choose(u"embedding"_s, u"Select a model..."_s);
    EXPECT_EQ(details(u"embedding"_s), nullptr);
}

TEST_F(ModelSettingsViewTest, NothingIsSavedBeforeTheButton) {
    openLoadedPage();
    choose(u"embedding"_s, u"nomic"_s);
    choose(u"language"_s, u"llama"_s);
    EXPECT_FALSE(settings.bothModelsChosen());
    EXPECT_TRUE(row(u"notConfigured"_s).isVisible());
    EXPECT_EQ(row(u"notConfigured"_s).text(), u"Please select both models to use the app"_s);
    QTest::mouseClick(&button(u"saveSelection"_s), Qt::LeftButton);
    EXPECT_EQ(settings.selectedEmbeddingModel(), u"nomic"_s);
    EXPECT_EQ(settings.selectedLLMModel(), u"llama"_s);
    EXPECT_TRUE(row(u"configured"_s).isVisible());
    EXPECT_EQ(row(u"configured"_s).text(), u"Both models configured"_s);
    EXPECT_FALSE(row(u"notConfigured"_s).isVisible());
}

TEST_F(ModelSettingsViewTest, SavingNeedsBothSelections) {
    openLoadedPage();
    EXPECT_FALSE(button(u"saveSelection"_s).isEnabled());
    choose(u"embedding"_s, u"nomic"_s);
    EXPECT_FALSE(button(u"saveSelection"_s).isEnabled());
    choose(u"language"_s, u"llama"_s);
    EXPECT_TRUE(button(u"saveSelection"_s).isEnabled());
    choose(u"embedding"_s, u"Select a model..."_s);
    EXPECT_FALSE(button(u"saveSelection"_s).isEnabled());
}

TEST_F(ModelSettingsViewTest, BeginsWithTheSavedSelection) {
    settings.setSelectedEmbeddingModel(u"nomic"_s);
    settings.setSelectedLLMModel(u"llama"_s);
    openLoadedPage();
    EXPECT_EQ(picker(u"embedding"_s).currentText(), u"nomic (274.3 MB)"_s);
    EXPECT_EQ(picker(u"language"_s).currentText(), u"llama (2.02 GB)"_s);
    EXPECT_NE(details(u"language"_s), nullptr);
    EXPECT_TRUE(button(u"saveSelection"_s).isEnabled());
}

TEST_F(ModelSettingsViewTest, SavedModelThatTheServerLacksStaysSelectedWithoutDetails) {
    settings.setSelectedEmbeddingModel(u"borrado"_s);
    settings.setSelectedLLMModel(u"llama"_s);
    openLoadedPage();
    EXPECT_EQ(choice(u"embedding"_s).selection(), u"borrado"_s);
    EXPECT_EQ(picker(u"embedding"_s).currentIndex(), -1);
    EXPECT_EQ(picker(u"embedding"_s).placeholderText(), u"borrado"_s);
    EXPECT_EQ(details(u"embedding"_s), nullptr);
    EXPECT_TRUE(button(u"saveSelection"_s).isEnabled());
}

TEST_F(ModelSettingsViewTest, SavedModelsCountWhileTheListIsLoadingOrFailed) {
    settings.setSelectedEmbeddingModel(u"nomic"_s);
    settings.setSelectedLLMModel(u"llama"_s);
    hold = true;
    openPage();
    EXPECT_TRUE(row(u"loading"_s).isVisible());
    EXPECT_TRUE(row(u"configured"_s).isVisible());
    tags = "<html>";
    hold = false;
    QTest::mouseClick(&button(u"refresh"_s), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([this] { return row(u"modelError"_s).isVisible(); }));
    EXPECT_TRUE(row(u"configured"_s).isVisible());
}

TEST_F(ModelSettingsViewTest, FailedLoadReadsAsLoadedWithTheErrorBeneath) {
    tags = "404 page not found";
    tagsStatus = 404;
    openLoadedPage();
    EXPECT_TRUE(row(u"modelError"_s).isVisible());
    EXPECT_EQ(row(u"modelError"_s).text(),
              u"Failed to fetch models: No se han podido leer los datos porque no tienen el formato correcto."_s);
}

TEST_F(ModelSettingsViewTest, RefreshLoadsAgainAndKeepsTheSelection) {
    openLoadedPage();
    choose(u"language"_s, u"llama"_s);
    tags = R"({"models":[{"name":"llama","size":1000000},{"name":"nuevo"}]})";
    QTest::mouseClick(&button(u"refresh"_s), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([this] { return picker(u"language"_s).findText(u"nuevo"_s) > 0; }));
    EXPECT_EQ(picker(u"language"_s).currentText(), u"llama (1 MB)"_s);
    EXPECT_FALSE(picker(u"embedding"_s).isVisible());
}

TEST_F(ModelSettingsViewTest, EveryAppearanceTakesTheSavedSelectionAndLoads) {
    openLoadedPage();
    choose(u"language"_s, u"llama"_s);
    const qsizetype before = server.requests().size();
    view->hide();
    view->show();
    EXPECT_EQ(choice(u"language"_s).selection(), std::nullopt);
    EXPECT_TRUE(waitUntil([&] { return server.requests().size() > before; }));
}

TEST_F(ModelSettingsViewTest, WheelOverAPickerChoosesNothing) {
    openLoadedPage();
    ModelPicker& menu = picker(u"language"_s);
    menu.setFocus();
    QWheelEvent turn(QPointF(5, 5), menu.mapToGlobal(QPointF(5, 5)), {}, {0, -240}, Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&menu, &turn);
    EXPECT_EQ(menu.currentIndex(), 0);
}

TEST_F(ModelSettingsViewTest, PageMayCloseWhileItLoads) {
    hold = true;
    openPage();
    ASSERT_TRUE(waitUntil([this] { return server.heldCount() == 1; }));
    view.reset();
    EXPECT_TRUE(waitUntil([this] { return server.openConnections() == 0; }));
}

TEST(ModelDetailView, BadgesComeInAFixedOrderInTheirColours) {
    const ModelDetailView view({u"a"_s, {}, {}, {}, ModelCapabilities{true, true, true, true}});
    QStringList badges;
    for (const CapabilityBadge* badge : view.findChildren<CapabilityBadge*>()) {
        badges += badge->text() + u' ' + badge->color().name();
    }
    EXPECT_EQ(
        badges,
        (QStringList{u"Embedding "_s + QColor(colours::blue).name(), u"Tools "_s + QColor(colours::purple).name(),
                     u"Vision "_s + QColor(colours::green).name(), u"Thinking "_s + QColor(colours::orange).name()}));
}

TEST(ModelDetailView, ModelOfWhichNothingIsKnownShowsTheLabelAlone) {
    const ModelDetailView view({u"a"_s, {}, {}, {}, {}});
    const auto labels = view.findChildren<QLabel*>();
    ASSERT_EQ(labels.size(), 1);
    EXPECT_EQ(labels[0]->text(), u"Capabilities:"_s);
}

TEST(ModelDetailView, MarkupFromAServerIsShownAsItIs) {
    const ModelDetailView view({u"a"_s, {}, {}, ModelDetails{u"<b>x</b>"_s, {}, {}}, {}});
    for (const QLabel* label : view.findChildren<QLabel*>()) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    }
}

using SettingsViewTest = ModelSettingsViewTest;

TEST_F(SettingsViewTest, HasTwoTabsInOrderAndItsSize) {
    SettingsView tabs(settings, session);
    ASSERT_EQ(tabs.count(), 2);
    EXPECT_EQ(tabs.tabText(0), u"General"_s);
    EXPECT_EQ(tabs.tabText(1), u"Models"_s);
    EXPECT_FALSE(tabs.tabIcon(0).isNull());
    EXPECT_FALSE(tabs.tabIcon(1).isNull());
    EXPECT_EQ(tabs.size(), QSize(600, 500));
}

TEST_F(SettingsViewTest, ModelsAreLoadedWhenTheirTabIsOpened) {
    SettingsView tabs(settings, session);
    tabs.show();
    QCoreApplication::processEvents();
    EXPECT_TRUE(server.requests().isEmpty());
    tabs.setCurrentIndex(1);
    EXPECT_TRUE(waitUntil([this] { return server.requests().size() == 5; }));
}

} // namespace
} // namespace dorvantel
