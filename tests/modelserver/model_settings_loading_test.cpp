// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/modelserver/ModelSettingsFixture.h"
#include "tests/support/CapturedOutput.h"

#include <QLabel>

namespace dorvantel::test {

/// What servers list and when they answer, as the page shows it.
struct ModelSettingsLoading : ModelSettingsViewTest {
    CapturedOutput output; // what the models can do is logged

    qsizetype lists() const {
        return std::ranges::count(server.requests(), QByteArray("/api/tags"), &ScriptedRequest::target);
    }
    QString noCandidates(const QString& name) const {
        auto* message = choice(name).findChild<MarkedRow*>(u"noCandidates"_s);
        return message->isVisible() ? message->text() : QString();
    }
};

TEST_F(ModelSettingsLoading, ServerWithoutModelsOffersNone) {
    tags = R"({"models":[]})";
    openLoadedPage();
    EXPECT_FALSE(row(u"modelError"_s).isVisible());
    EXPECT_TRUE(noCandidates(u"embedding"_s).startsWith(u"No embedding models available."_s));
    EXPECT_TRUE(noCandidates(u"language"_s).startsWith(u"No compatible LLM models available."_s));
    EXPECT_FALSE(picker(u"embedding"_s).isVisible());
    EXPECT_FALSE(button(u"saveSelection"_s).isEnabled());
}

TEST_F(ModelSettingsLoading, FiftyModelsAreAllOfferedWhereTheySuit) {
    QByteArrayList models;
    for (int i = 0; i < 50; ++i) {
        const QByteArray name = "modelo-" + QByteArray::number(i);
        models += R"({"name":")" + name + R"("})";
        shows[name] = i % 5 == 0 ? R"({"capabilities":["embedding"]})" : R"({"capabilities":["completion"]})";
    }
    tags = R"({"models":[)" + models.join(',') + "]}";
    openLoadedPage();
    EXPECT_EQ(picker(u"embedding"_s).count(), 1 + 10);
    EXPECT_EQ(picker(u"language"_s).count(), 1 + 40);
    choose(u"language"_s, u"modelo-49"_s);
    EXPECT_EQ(view->selectedLLMModel(), u"modelo-49"_s);
}

TEST_F(ModelSettingsLoading, ModelsOfAServerThatSaysNothingAboutThemAreKnownAfterTheTimeOut) {
    stallShows = true;
    view = std::make_unique<ModelSettingsView>(settings, session, std::chrono::milliseconds(200));
    view->show();
    ASSERT_TRUE(waitUntil([this] { return row(u"loaded"_s).isVisible(); }));
    EXPECT_FALSE(row(u"modelError"_s).isVisible());
    EXPECT_EQ(picker(u"language"_s).count(), 1 + 4);
    EXPECT_FALSE(picker(u"embedding"_s).isVisible());
}

TEST_F(ModelSettingsLoading, RefreshPressedTwiceLoadsTwiceAndEndsLoaded) {
    openLoadedPage();
    hold = true;
    QTest::mouseClick(&button(u"refresh"_s), Qt::LeftButton);
    QTest::mouseClick(&button(u"refresh"_s), Qt::LeftButton);
    EXPECT_TRUE(row(u"loading"_s).isVisible());
    ASSERT_TRUE(waitUntil([this] { return server.heldCount() == 2; }));
    EXPECT_EQ(lists(), 3);
    server.release();
    server.release();
    ASSERT_TRUE(waitUntil([this] { return server.requests().size() == 3 + 3 * 4; }));
    ASSERT_TRUE(waitUntil([this] { return row(u"loaded"_s).isVisible(); }));
    EXPECT_EQ(picker(u"language"_s).count(), 1 + 2);
}

TEST_F(ModelSettingsLoading, PageMayCloseWhileModelsAreAskedAbout) {
    holdShows = true;
    openPage();
    ASSERT_TRUE(waitUntil([this] { return server.heldCount() == 4; }));
    view.reset();
    EXPECT_TRUE(waitUntil([this] { return server.openConnections() <= 1; })) << server.openConnections();
}

TEST_F(ModelSettingsLoading, PageHiddenDuringALoadAndOpenedAgainLoadsAgain) {
    hold = true;
    openPage();
    ASSERT_TRUE(waitUntil([this] { return server.heldCount() == 1; }));
    view->hide();
    settings.setSelectedLLMModel(u"llama"_s);
    view->show();
    ASSERT_TRUE(waitUntil([this] { return server.heldCount() == 2; }));
    EXPECT_EQ(view->selectedLLMModel(), u"llama"_s);
    hold = false;
    server.release();
    server.release();
    ASSERT_TRUE(waitUntil([this] { return row(u"loaded"_s).isVisible(); }));
    EXPECT_EQ(lists(), 2);
    EXPECT_EQ(picker(u"language"_s).currentText(), u"llama (2.02 GB)"_s);
}

TEST_F(ModelSettingsLoading, PageOfHTMLReadsAsAFailure) {
    for (const auto& [status, body] : {std::pair{200, "<html>login</html>"}, {502, "<html>Bad Gateway</html>"}}) {
        tags = body;
        tagsStatus = status;
        openLoadedPage();
        EXPECT_TRUE(row(u"modelError"_s).isVisible());
        EXPECT_EQ(row(u"modelError"_s).text(),
                  u"Failed to fetch models: No se han podido leer los datos porque no tienen el formato correcto."_s);
        EXPECT_EQ(row(u"loaded"_s).symbol().name(), u"checkmark.circle.fill"_s);
        EXPECT_GT(row(u"modelError"_s).y(), row(u"loaded"_s).y());
    }
}

TEST_F(ModelSettingsLoading, OfTwoModelsWithOneNameTheFirstIsShown) {
    ModelChoice twins({u"h"_s, u"c"_s, u"p"_s, u"n"_s});
    const OllamaModel first{u"a"_s, {}, {}, ModelDetails{u"primero"_s, {}, {}}, {}};
    const OllamaModel second{u"a"_s, {}, {}, ModelDetails{u"segundo"_s, {}, {}}, {}};
    twins.setCandidates({first, second});
    twins.setSelection(u"a"_s);
    ASSERT_TRUE(twins.findChild<ModelDetailView*>());
    EXPECT_EQ(twins.findChild<ModelDetailView*>()->model(), first);
}

TEST_F(ModelSettingsLoading, SavedSelectionIsInTheFileAtOnce) {
    openLoadedPage();
    choose(u"embedding"_s, u"nomic"_s);
    choose(u"language"_s, u"llama"_s);
    QTest::mouseClick(&button(u"saveSelection"_s), Qt::LeftButton);
    QFile file(folder.filePath(u"a.conf"_s));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.contains("\nselectedEmbeddingModel=nomic\nselectedLLMModel=llama\n")) << bytes.constData();
}

} // namespace dorvantel::test
