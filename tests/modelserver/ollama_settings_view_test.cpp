// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/OllamaSettingsView.h"

#include "modelserver/AppSettings.h"
#include "modelserver/SettingsRows.h"
#include "tests/support/Print.h"
#include "tests/support/Wait.h"
#include "ui/Symbols.h"

#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

struct OllamaSettingsViewTest : testing::Test {
    struct Later {
        std::chrono::milliseconds delay;
        std::function<void()> work;
    };

    QTemporaryDir folder;
    AppSettings settings{std::make_unique<QSettings>(folder.filePath(u"a.conf"_s), QSettings::IniFormat)};
    QList<Later> later;
    OllamaSettingsView view{settings, [this](std::chrono::milliseconds delay, QObject*, std::function<void()> work) {
                                later.append({delay, std::move(work)});
                            }};
    QLineEdit& urlText = *view.findChild<QLineEdit*>(u"urlText"_s);
    QPushButton& saveButton = *view.findChild<QPushButton*>(u"save"_s);
    MarkedRow& error = *view.findChild<MarkedRow*>(u"errorMessage"_s);
    MarkedRow& confirmation = *view.findChild<MarkedRow*>(u"saveConfirmation"_s);

    void save(const QString& text) {
        urlText.setText(text);
        QTest::mouseClick(&saveButton, Qt::LeftButton);
    }

    QStringList labels() const {
        QStringList texts;
        for (const QLabel* label : view.findChildren<QLabel*>()) {
            texts += label->text();
        }
        return texts;
    }
};

TEST_F(OllamaSettingsViewTest, BeginsWithTheCurrentAddressAndNoMessage) {
    EXPECT_EQ(urlText.text(), u"http://localhost:11434"_s);
    EXPECT_EQ(urlText.placeholderText(), u"http://localhost:11434"_s);
    EXPECT_TRUE(error.isHidden());
    EXPECT_TRUE(confirmation.isHidden());
    EXPECT_FALSE(view.showingSaveConfirmation());
    settings.setOllamaURL(u"http://otro:8080"_s);
    const OllamaSettingsView other(settings);
    EXPECT_EQ(other.findChild<QLineEdit*>(u"urlText"_s)->text(), u"http://otro:8080"_s);
}

TEST_F(OllamaSettingsViewTest, RowsHaveTheirSymbolsColoursAndFonts) {
    EXPECT_EQ(error.symbol().name(), u"exclamationmark.triangle.fill"_s);
    EXPECT_EQ(error.symbol().colour(), QColor(colours::orange));
    EXPECT_EQ(error.label().font(), textFont(TextStyle::Caption));
    EXPECT_EQ(confirmation.symbol().name(), u"checkmark.circle.fill"_s);
    EXPECT_EQ(confirmation.symbol().colour(), QColor(colours::green));
    EXPECT_TRUE(saveButton.isDefault());
    const auto texts = view.findChildren<QLabel*>();
    EXPECT_EQ(texts[0]->font(), textFont(TextStyle::Headline));
    EXPECT_EQ(texts[1]->font(), textFont(TextStyle::Caption));
    EXPECT_EQ(texts[1]->palette().color(QPalette::WindowText), secondaryTextColour(view.palette()));
    EXPECT_EQ(texts[4]->font(), textFont(TextStyle::Headline));
    EXPECT_EQ(texts.last()->font(), textFont(TextStyle::Caption));
    EXPECT_EQ(texts.last()->palette().color(QPalette::WindowText), secondaryTextColour(view.palette()));
}

TEST_F(OllamaSettingsViewTest, SaysWhatItIsFor) {
    EXPECT_EQ(labels(), (QStringList{u"Ollama Server URL"_s, u"Enter the URL where your Ollama server is running"_s,
                                     u""_s, u"Settings saved! Restart the app to apply changes."_s, u"Examples"_s,
                                     u"Local (default)"_s, u"http://localhost:11434"_s, u"Custom port"_s,
                                     u"http://localhost:8080"_s, u"Remote server"_s, u"http://192.168.1.100:11434"_s}));
    EXPECT_EQ(saveButton.text(), u"Save"_s);
    EXPECT_EQ(view.findChild<QPushButton*>(u"reset"_s)->text(), u"Reset"_s);
}

TEST_F(OllamaSettingsViewTest, AddressWithBlanksAroundItIsSavedWithoutThem) {
    save(u"  http://localhost:8080  "_s);
    EXPECT_EQ(settings.ollamaURL(), u"http://localhost:8080"_s);
    EXPECT_TRUE(error.isHidden());
    EXPECT_FALSE(confirmation.isHidden());
    EXPECT_EQ(confirmation.text(), u"Settings saved! Restart the app to apply changes."_s);
}

TEST_F(OllamaSettingsViewTest, AddressWithoutItsSchemeIsRefused) {
    for (const QString& text : {u"HTTP://localhost:11434"_s, u"localhost:11434"_s}) {
        save(text);
        EXPECT_EQ(error.text(), u"URL must start with http:// or https://"_s);
        EXPECT_FALSE(error.isHidden());
        EXPECT_TRUE(confirmation.isHidden());
    }
    EXPECT_EQ(settings.ollamaURL(), u"http://localhost:11434"_s);
    EXPECT_TRUE(later.isEmpty());
}

TEST_F(OllamaSettingsViewTest, AddressThatIsNoURLIsRefused) {
    save(u"http://local host"_s);
    EXPECT_EQ(error.text(), u"Invalid URL format"_s);
    EXPECT_FALSE(error.isHidden());
    EXPECT_EQ(settings.ollamaURL(), u"http://localhost:11434"_s);
}

TEST_F(OllamaSettingsViewTest, RefusalTakesTheConfirmationAwayAndSuccessTheError) {
    save(u"http://a"_s);
    save(u"a"_s);
    EXPECT_TRUE(confirmation.isHidden());
    EXPECT_FALSE(error.isHidden());
    save(u"http://b"_s);
    EXPECT_TRUE(error.isHidden());
    EXPECT_FALSE(confirmation.isHidden());
}

TEST_F(OllamaSettingsViewTest, ConfirmationGoesThreeSecondsAfterTheSave) {
    save(u"http://a"_s);
    ASSERT_EQ(later.size(), 1);
    EXPECT_EQ(later[0].delay, 3000ms);
    EXPECT_TRUE(view.showingSaveConfirmation());
    later[0].work();
    EXPECT_FALSE(view.showingSaveConfirmation());
    EXPECT_TRUE(confirmation.isHidden());
}

TEST_F(OllamaSettingsViewTest, AfterTwoSavesTheConfirmationGoesWithTheFirstTimer) {
    save(u"http://a"_s);
    save(u"http://b"_s);
    ASSERT_EQ(later.size(), 2);
    later[0].work();
    EXPECT_TRUE(confirmation.isHidden());
    later[1].work();
    EXPECT_TRUE(confirmation.isHidden());
}

TEST_F(OllamaSettingsViewTest, ResetPutsTheDefaultIntoTheFieldAndSavesNothing) {
    settings.setOllamaURL(u"http://a"_s);
    urlText.setText(u"http://b"_s);
    QTest::mouseClick(view.findChild<QPushButton*>(u"reset"_s), Qt::LeftButton);
    EXPECT_EQ(urlText.text(), u"http://localhost:11434"_s);
    EXPECT_EQ(settings.ollamaURL(), u"http://a"_s);
}

TEST_F(OllamaSettingsViewTest, BlankAddressCannotBeSaved) {
    urlText.setText(u" \t "_s);
    EXPECT_FALSE(saveButton.isEnabled());
    urlText.setText(u"a"_s);
    EXPECT_TRUE(saveButton.isEnabled());
}

TEST_F(OllamaSettingsViewTest, ReturnKeySaves) {
    urlText.setText(u"http://a"_s);
    QTest::keyClick(&urlText, Qt::Key_Return);
    EXPECT_EQ(settings.ollamaURL(), u"http://a"_s);
}

TEST_F(OllamaSettingsViewTest, SavedAddressIsInTheFileAtOnce) {
    save(u"http://a"_s);
    QFile file(folder.filePath(u"a.conf"_s));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "[General]\nollamaURL=http://a\n");
}

TEST_F(OllamaSettingsViewTest, AddressInCapitalsIsSavedAsTyped) {
    save(u"http://LOCALHOST:11434"_s);
    EXPECT_EQ(settings.ollamaURL(), u"http://LOCALHOST:11434"_s);
}

TEST_F(OllamaSettingsViewTest, LongAddressIsSavedWhole) {
    const QString longAddress = u"http://127.0.0.1:1/"_s + QString(10'240, u'a');
    save(longAddress);
    EXPECT_TRUE(error.isHidden());
    EXPECT_EQ(settings.ollamaURL(), longAddress);
    const AppSettings nextStart(std::make_unique<QSettings>(folder.filePath(u"a.conf"_s), QSettings::IniFormat));
    EXPECT_EQ(nextStart.ollamaURL(), longAddress);
}

TEST(RunLaterOnMainQueue, RunsLaterAndOnlyForWhoIsStillThere) {
    const RunLater runLater = runLaterOnMainQueue();
    QObject here;
    auto gone = std::make_unique<QObject>();
    int runs = 0;
    bool ranForNobody = false;
    runLater(1ms, gone.get(), [&] { ranForNobody = true; });
    runLater(2ms, &here, [&] { ++runs; });
    gone.reset();
    EXPECT_EQ(runs, 0);
    EXPECT_TRUE(test::waitUntil([&] { return runs > 0; }));
    EXPECT_EQ(runs, 1);
    EXPECT_FALSE(ranForNobody);
}

TEST_F(OllamaSettingsViewTest, TypingStoresNothing) {
    QTest::keyClicks(&urlText, u"0"_s);
    EXPECT_EQ(urlText.text(), u"http://localhost:114340"_s);
    EXPECT_EQ(settings.ollamaURL(), u"http://localhost:11434"_s);
}

} // namespace
} // namespace dorvantel
