// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/CapabilityBadge.h"
#include "tests/modelserver/ModelSettingsFixture.h"

#include <QPropertyAnimation>
#include <QWheelEvent>

namespace dorvantel::test {

const QString noLanguageModel =
    u"No compatible LLM models available. Please install a text-only model (e.g., llama3.2, mistral, qwen2.5)"_s;
const QString noEmbeddingModel = u"No embedding models available. Please install an embedding model (e.g., "
                                 u"nomic-embed-text, mxbai-embed-large)"_s;

TEST_F(ModelSettingsViewTest, ShowsThatModelsAreLoadingAndThenThatTheyAre) {
    hold = true;
    openPage();
    EXPECT_TRUE(row(u"loading"_s).isVisible());
    EXPECT_EQ(row(u"loading"_s).text(), u"Loading models..."_s);
    EXPECT_FALSE(row(u"loaded"_s).isVisible());
    ASSERT_TRUE(waitUntil([this] { return server.heldCount() == 1; }));
    server.release();
    ASSERT_TRUE(waitUntil([this] { return row(u"loaded"_s).isVisible(); }));
    EXPECT_EQ(row(u"loaded"_s).text(), u"Models loaded"_s);
    EXPECT_FALSE(row(u"loading"_s).isVisible());
    EXPECT_FALSE(row(u"modelError"_s).isVisible());
}

TEST_F(ModelSettingsViewTest, SymbolTurnsOnAndOnUntilTheModelsAreThere) {
    hold = true;
    openPage();
    auto* turning = view->findChild<QPropertyAnimation*>();
    ASSERT_TRUE(turning);
    EXPECT_EQ(turning->state(), QAbstractAnimation::Running);
    EXPECT_EQ(turning->loopCount(), -1);
    turning->pause(); // holds the clock
    turning->setCurrentTime(250);
    EXPECT_EQ(row(u"loading"_s).symbol().rotation(), 90);
    turning->setCurrentTime(1500);
    EXPECT_EQ(row(u"loading"_s).symbol().rotation(), 180);
    turning->resume();
    ASSERT_TRUE(waitUntil([this] { return server.heldCount() == 1; }));
    server.release();
    ASSERT_TRUE(waitUntil([this] { return row(u"loaded"_s).isVisible(); }));
    EXPECT_EQ(turning->state(), QAbstractAnimation::Stopped);
}

TEST_F(ModelSettingsViewTest, NothingTurnsWhileThePageIsHidden) {
    hold = true;
    openPage();
    auto* turning = view->findChild<QPropertyAnimation*>();
    view->hide();
    EXPECT_EQ(turning->state(), QAbstractAnimation::Stopped);
    view->show();
    EXPECT_EQ(turning->state(), QAbstractAnimation::Running);
}

TEST_F(ModelSettingsViewTest, EachPickerOffersTheModelsThatSuitIt) {
    openLoadedPage();
    EXPECT_EQ(offered(u"embedding"_s), (QStringList{u"Select a model..."_s, u"nomic (274.3 MB)"_s}));
    QStringList sorted = offered(u"language"_s);
    sorted.sort();
    EXPECT_EQ(sorted, (QStringList{u"Select a model..."_s, u"llama (2.02 GB)"_s, u"roto"_s}));
    EXPECT_EQ(picker(u"language"_s).itemText(0), u"Select a model..."_s);
}

TEST(ModelPicker, KeepsTheOrderOfTheModels) {
    ModelPicker picker(u"LLM Model"_s);
    picker.setModels({{u"c"_s, {}, {}, {}, {}}, {u"a"_s, {}, {}, {}, {}}, {u"b"_s, {}, {}, {}, {}}});
    QStringList entries;
    for (int i = 0; i < picker.count(); ++i) {
        entries += picker.itemText(i);
    }
    EXPECT_EQ(entries, (QStringList{u"Select a model..."_s, u"c"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(picker.accessibleName(), u"LLM Model"_s);
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

} // namespace dorvantel::test
