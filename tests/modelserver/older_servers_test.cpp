// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/modelserver/ModelSettingsFixture.h"
#include "tests/support/CapturedOutput.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace dorvantel::test {

/// The page over servers that do not yet say what their models can do, with what such servers really answered.
class OlderServers : public ModelSettingsViewTest {
protected:
    void SetUp() override {
        if (qEnvironmentVariableIsEmpty("DORVANTEL_TEST_DATA")) {
            GTEST_SKIP() << "DORVANTEL_TEST_DATA names no folder of recorded answers";
        }
    }

    static QByteArray recorded(const QString& name) {
        QFile file(QDir(qEnvironmentVariable("DORVANTEL_TEST_DATA") + u"/ollama"_s).filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
        return file.readAll();
    }

    /// The names that the recorded list holds.
    QStringList listen(const QString& list, const QString& show) {
        tags = recorded(list);
        QStringList names;
        for (const QJsonValue model : QJsonDocument::fromJson(tags).object().value(u"models").toArray()) {
            names += model.toObject().value(u"name").toString();
            shows[names.last().toUtf8()] = recorded(show);
        }
        return names;
    }

    /// Every listed model is offered as a language model, none as an embedding model, and nothing is logged.
    void expectLanguageModels(QStringList names) {
        CapturedOutput output;
        openLoadedPage();
        EXPECT_FALSE(row(u"modelError"_s).isVisible());
        EXPECT_FALSE(picker(u"embedding"_s).isVisible());
        QStringList offeredNames;
        for (int i = 1; i < picker(u"language"_s).count(); ++i) {
            offeredNames += picker(u"language"_s).itemText(i).section(u' ', 0, 0);
        }
        offeredNames.sort();
        names.sort();
        EXPECT_EQ(offeredNames, names);
        EXPECT_EQ(output.text(), QString());
    }
};

TEST_F(OlderServers, OldOneOffersAllItsModelsAsLanguageModelsEvenOneThatSees) {
    const QStringList names = listen(u"tags-old-server.json"_s, u"show-old-server.json"_s);
    ASSERT_TRUE(names.contains(u"llava:7b"_s));
    expectLanguageModels(names);
    choose(u"language"_s, u"llama2:latest"_s); // its "families" is null
    ASSERT_TRUE(details(u"language"_s));
    EXPECT_EQ(details(u"language"_s)->model().details->family, u"llama"_s);
}

TEST_F(OlderServers, MiddleOneOffersAllItsModelsAsLanguageModelsEvenEmbeddingModels) {
    const QStringList names = listen(u"tags-mid-server.json"_s, u"show-mid-server.json"_s);
    ASSERT_TRUE(names.contains(u"nomic-embed-text:latest"_s));
    shows["nomic-embed-text:latest"] = recorded(u"show-mid-server-embedding.json"_s);
    expectLanguageModels(names);
}

} // namespace dorvantel::test
