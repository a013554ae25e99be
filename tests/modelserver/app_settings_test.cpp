// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/AppSettings.h"

#include "tests/support/Print.h"

#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

struct AppSettingsTest : testing::Test {
    QTemporaryDir folder;
    QString path = folder.filePath(u"Dorvantel.conf"_s);

    std::unique_ptr<QSettings> store() const { return std::make_unique<QSettings>(path, QSettings::IniFormat); }

    void writeFile(const QByteArray& bytes) const {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QByteArray fileBytes() const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

TEST_F(AppSettingsTest, FirstStartHasTheLocalServerAndNoModels) {
    const AppSettings settings(store());
    EXPECT_EQ(settings.ollamaURL(), u"http://localhost:11434"_s);
    EXPECT_EQ(settings.selectedLLMModel(), std::nullopt);
    EXPECT_EQ(settings.selectedEmbeddingModel(), std::nullopt);
    EXPECT_FALSE(settings.bothModelsChosen());
}

TEST_F(AppSettingsTest, DefaultURLIsNotWrittenUntilTheURLIsChanged) {
    AppSettings settings(store());
    settings.setSelectedLLMModel(u"llama3.2:3b"_s);
    EXPECT_FALSE(store()->contains(u"ollamaURL"_s));
    settings.setOllamaURL(u"http://localhost:8080"_s);
    EXPECT_EQ(store()->value(u"ollamaURL"_s), u"http://localhost:8080"_s);
}

TEST_F(AppSettingsTest, EveryChangeIsInTheFileAtOnceUnderItsKeyAtTheRoot) {
    AppSettings settings(store());
    settings.setOllamaURL(u"http://localhost:8080"_s);
    settings.setSelectedLLMModel(u"llama3.2:3b"_s);
    settings.setSelectedEmbeddingModel(u"bge-m3:latest"_s);
    EXPECT_EQ(fileBytes(), "[General]\n"
                           "ollamaURL=http://localhost:8080\n"
                           "selectedEmbeddingModel=bge-m3:latest\n"
                           "selectedLLMModel=llama3.2:3b\n");
}

TEST_F(AppSettingsTest, NextStartLoadsWhatWasSet) {
    {
        AppSettings settings(store());
        settings.setOllamaURL(u"http://localhost:8080"_s);
        settings.setSelectedLLMModel(u"@dorvantel/selección-es:7b, \"q4\""_s);
        settings.setSelectedEmbeddingModel(u"bge-m3:latest"_s);
    }
    const AppSettings settings(store());
    EXPECT_EQ(settings.ollamaURL(), u"http://localhost:8080"_s);
    EXPECT_EQ(settings.selectedLLMModel(), u"@dorvantel/selección-es:7b, \"q4\""_s);
    EXPECT_EQ(settings.selectedEmbeddingModel(), u"bge-m3:latest"_s);
    EXPECT_TRUE(settings.bothModelsChosen());
}

TEST_F(AppSettingsTest, SettingAModelToAbsentRemovesItsKey) {
    AppSettings settings(store());
    settings.setSelectedLLMModel(u"llama3.2:3b"_s);
    settings.setSelectedEmbeddingModel(u"bge-m3:latest"_s);
    settings.setSelectedLLMModel(std::nullopt);
    EXPECT_EQ(store()->allKeys(), QStringList{u"selectedEmbeddingModel"_s});
    const AppSettings nextStart(store());
    EXPECT_EQ(nextStart.selectedLLMModel(), std::nullopt);
}

TEST_F(AppSettingsTest, StoredURLThatIsNotValidIsLoadedAsItIs) {
    writeFile("[General]\nollamaURL=no es una url\n");
    EXPECT_EQ(AppSettings(store()).ollamaURL(), u"no es una url"_s);
}

TEST_F(AppSettingsTest, EmptyTextIsAValueAndStaysOne) {
    {
        AppSettings settings(store());
        settings.setOllamaURL(QString());
        settings.setSelectedLLMModel(u""_s);
    }
    const AppSettings nextStart(store());
    EXPECT_EQ(nextStart.ollamaURL(), u""_s);
    EXPECT_EQ(nextStart.selectedLLMModel(), u""_s);
}

TEST_F(AppSettingsTest, LoadingAndEndingLeaveTheFileAsItWas) {
    const QByteArray before = "[General]\nselectedEmbeddingModel=bge-m3:latest\nselectedLLMModel=llama3.2:3b\n";
    writeFile(before);
    {
        const AppSettings settings(store());
        EXPECT_EQ(fileBytes(), before);
    }
    EXPECT_EQ(fileBytes(), before);
}

TEST_F(AppSettingsTest, ChangeIsSignalledOnceAndAfterItHappened) {
    AppSettings settings(store());
    QStringList seen;
    QObject::connect(&settings, &AppSettings::ollamaURLChanged, [&] { seen += settings.ollamaURL(); });
    QObject::connect(&settings, &AppSettings::selectedLLMModelChanged, [&] { seen += *settings.selectedLLMModel(); });
    QObject::connect(&settings, &AppSettings::selectedEmbeddingModelChanged,
                     [&] { seen += *settings.selectedEmbeddingModel(); });
    settings.setOllamaURL(u"http://a"_s);
    settings.setOllamaURL(u"http://a"_s);
    settings.setSelectedLLMModel(u"llm"_s);
    settings.setSelectedLLMModel(u"llm"_s);
    settings.setSelectedEmbeddingModel(u"emb"_s);
    EXPECT_EQ(seen, (QStringList{u"http://a"_s, u"llm"_s, u"emb"_s}));
}

TEST_F(AppSettingsTest, BothModelsChosenFollowsTheTwoModels) {
    AppSettings settings(store());
    const QSignalSpy changes(&settings, &AppSettings::bothModelsChosenChanged);
    settings.setSelectedLLMModel(u"llm"_s);
    EXPECT_FALSE(settings.bothModelsChosen());
    EXPECT_EQ(changes.size(), 0);
    settings.setSelectedEmbeddingModel(u"emb"_s);
    EXPECT_TRUE(settings.bothModelsChosen());
    EXPECT_EQ(changes.size(), 1);
    settings.setSelectedLLMModel(std::nullopt);
    EXPECT_FALSE(settings.bothModelsChosen());
    EXPECT_EQ(changes.size(), 2);
}

TEST_F(AppSettingsTest, PropertiesAreReachableByName) {
    AppSettings settings(store());
    EXPECT_TRUE(settings.setProperty("selectedLLMModel", QVariant::fromValue(std::optional(u"llm"_s))));
    EXPECT_EQ(settings.selectedLLMModel(), u"llm"_s);
    EXPECT_EQ(settings.property("ollamaURL"), u"http://localhost:11434"_s);
    EXPECT_EQ(settings.property("bothModelsChosen"), false);
}

TEST_F(AppSettingsTest, GarbageInTheFileCountsAsEmpty) {
    QByteArray garbage("\xff\xfe\x00[[[=\n%%%=\\x\n\"\n@Variant(\x01\x02", 26);
    garbage.append(QByteArray(5000, '\x80'));
    writeFile(garbage);
    AppSettings settings(store());
    EXPECT_EQ(settings.ollamaURL(), u"http://localhost:11434"_s);
    settings.setSelectedLLMModel(u"llm"_s);
    EXPECT_EQ(settings.selectedLLMModel(), u"llm"_s);
    EXPECT_EQ(AppSettings(store()).selectedLLMModel(), u"llm"_s);
}

TEST_F(AppSettingsTest, EveryChangeIsSeenByAnotherProcessAtOnce) {
    AppSettings settings(store());
    const auto seenByAnother = [this] {
        QProcess cat;
        cat.start(u"cat"_s, {path});
        EXPECT_TRUE(cat.waitForFinished());
        return cat.readAllStandardOutput();
    };
    settings.setOllamaURL(u"http://a"_s);
    EXPECT_EQ(seenByAnother(), "[General]\nollamaURL=http://a\n");
    settings.setSelectedLLMModel(u"llm"_s);
    EXPECT_EQ(seenByAnother(), "[General]\nollamaURL=http://a\nselectedLLMModel=llm\n");
    settings.setSelectedEmbeddingModel(u"emb"_s);
    EXPECT_EQ(seenByAnother(), "[General]\nollamaURL=http://a\nselectedEmbeddingModel=emb\nselectedLLMModel=llm\n");
    settings.setSelectedLLMModel(std::nullopt);
    EXPECT_EQ(seenByAnother(), "[General]\nollamaURL=http://a\nselectedEmbeddingModel=emb\n");
}

TEST_F(AppSettingsTest, ReadOnlyFileIsReadAndKeptAndTheRefusalIsToldOnce) {
    const QByteArray before = "[General]\nollamaURL=http://a\n";
    writeFile(before);
    const QFile::Permissions reading = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
    ASSERT_TRUE(QFile::setPermissions(path, reading));
    ASSERT_TRUE(QFile::setPermissions(folder.path(), reading | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther));
    constexpr uid_t nobody = 65534; // for root nothing is read-only
    const bool isRoot = geteuid() == 0;
    ASSERT_TRUE(!isRoot || seteuid(nobody) == 0);
    testing::internal::CaptureStderr();
    {
        AppSettings settings(store());
        EXPECT_EQ(settings.ollamaURL(), u"http://a"_s);
        settings.setOllamaURL(u"http://b"_s);
        settings.setOllamaURL(u"http://c"_s);
        EXPECT_EQ(settings.ollamaURL(), u"http://c"_s);
    }
    const std::string told = testing::internal::GetCapturedStderr();
    ASSERT_TRUE(!isRoot || seteuid(0) == 0);
    EXPECT_EQ(told, "The settings cannot be written to " + path.toStdString() + "\n");
    EXPECT_EQ(fileBytes(), before);
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

TEST_F(AppSettingsTest, ValueThatIsNoTextCountsAsAbsent) {
    writeFile("[General]\n"
              "ollamaURL=@Variant(\\0\\0\\0\\x2\\0\\0\\0\\x5)\n"
              "selectedEmbeddingModel=@Invalid()\n"
              "selectedLLMModel=a, b\n");
    const AppSettings settings(store());
    EXPECT_EQ(settings.ollamaURL(), u"http://localhost:11434"_s);
    EXPECT_EQ(settings.selectedEmbeddingModel(), std::nullopt);
    EXPECT_EQ(settings.selectedLLMModel(), std::nullopt);
}

TEST_F(AppSettingsTest, StoreThatCannotBeReadOrWrittenStillServesTheRun) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"Dorvantel.conf"_s));
    AppSettings settings(store());
    EXPECT_EQ(settings.ollamaURL(), u"http://localhost:11434"_s);
    settings.setOllamaURL(u"http://a"_s);
    settings.setSelectedLLMModel(u"llm"_s);
    EXPECT_EQ(settings.ollamaURL(), u"http://a"_s);
    EXPECT_EQ(settings.selectedLLMModel(), u"llm"_s);
}

TEST(SharedAppSettings, IsOneObjectOverTheStandardSettingsOfTheProgram) {
    // What the machine or the maker's other programs say does not count.
    QSettings(u"Dorvantel"_s).setValue(u"selectedEmbeddingModel"_s, u"ajeno"_s);
    ASSERT_EQ(QSettings(u"Dorvantel"_s, u"Dorvantel"_s).value(u"selectedEmbeddingModel"_s), u"ajeno"_s);
    EXPECT_EQ(AppSettings::shared().selectedEmbeddingModel(), std::nullopt);
    AppSettings::shared().setSelectedLLMModel(u"compartido"_s);
    EXPECT_EQ(&AppSettings::shared(), &AppSettings::shared());
    EXPECT_EQ(QSettings(u"Dorvantel"_s, u"Dorvantel"_s).value(u"selectedLLMModel"_s), u"compartido"_s);
}

} // namespace
} // namespace dorvantel
