// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/app/DorvantelAppFixture.h"

#include <QAction>
#include <QLineEdit>
#include <QProcess>
#include <QScreen>
#include <QTest>

namespace dorvantel::test {

TEST_F(DorvantelAppTest, LoadsTheRecordsFromTheServiceItWasBuiltFor) {
    ASSERT_TRUE(waitUntil([&] { return !server.requests().isEmpty(); }));
    EXPECT_EQ(server.requests()[0].method, "GET");
    EXPECT_EQ(server.requests()[0].target, "/curriculums");
}

TEST_F(DorvantelAppTest, MainWindowFitsTheScreen) {
    const QSize screen = program.window().screen()->availableSize();
    EXPECT_EQ(program.window().objectName(), u"main"_s);
    EXPECT_LE(program.window().width(), screen.width());
    EXPECT_LE(program.window().height(), screen.height());
    EXPECT_EQ(program.window().size(), QSize(1100, 720).boundedTo(screen));
}

TEST_F(DorvantelAppTest, SettingsOpenFromTheMenuWithTheUsualKeyAndOnlyOnce) {
    settings.setOllamaURL(server.url());
    auto* action = program.window().findChild<QAction*>(u"settings"_s);
    EXPECT_EQ(action->shortcut(), QKeySequence(u"Ctrl+,"_s));
    EXPECT_TRUE(topLevels(u"settings"_s).isEmpty());
    program.window().show();
    program.window().activateWindow();
    ASSERT_TRUE(waitUntil([this] { return program.window().isActiveWindow(); }));
    QTest::keyClick(&program.window(), Qt::Key_Comma, Qt::ControlModifier);
    const QList<QWidget*> opened = topLevels(u"settings"_s);
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(opened[0]->windowTitle(), u"Preferencias"_s);
    EXPECT_EQ(opened[0]->size(), QSize(600, 500));
    action->trigger();
    EXPECT_EQ(topLevels(u"settings"_s), opened);
}

TEST_F(DorvantelAppTest, SettingsCloseWithEscapeAndWithTheUsualKey) {
    settings.setOllamaURL(server.url());
    for (const auto& [key, modifier] :
         {std::pair{Qt::Key_Escape, Qt::NoModifier}, std::pair{Qt::Key_W, Qt::ControlModifier}}) {
        program.openSettings();
        QWidget* window = topLevel(u"settings"_s);
        ASSERT_TRUE(window);
        ASSERT_TRUE(waitUntil([&] { return window->isActiveWindow(); }));
        QTest::keyClick(window, key, modifier);
        EXPECT_FALSE(topLevel(u"settings"_s));
    }
}

TEST_F(DorvantelAppTest, MinimisedSettingsComeBackWhenTheyAreOpenedAgain) {
    settings.setOllamaURL(server.url());
    program.openSettings();
    QWidget* window = topLevel(u"settings"_s);
    window->showMinimized();
    EXPECT_TRUE(window->isMinimized());
    program.openSettings();
    EXPECT_FALSE(window->isMinimized());
    EXPECT_TRUE(window->isVisible());
}

TEST_F(DorvantelAppTest, AddressThatWasTypedIsKeptWhileTheSettingsAreClosed) {
    program.openSettings();
    auto* typed = topLevel(u"settings"_s)->findChild<QLineEdit*>(u"urlText"_s);
    typed->setText(u"http://a"_s);
    topLevel(u"settings"_s)->close();
    program.openSettings();
    EXPECT_EQ(topLevel(u"settings"_s)->findChild<QLineEdit*>(u"urlText"_s)->text(), u"http://a"_s);
}

TEST_F(DorvantelAppTest, SettingsMayBeOpenWhenTheProgramEnds) {
    settings.setOllamaURL(server.url());
    program.openSettings();
    EXPECT_TRUE(topLevel(u"settings"_s));
}

TEST_F(DorvantelAppTest, AboutShowsIconNameVersionAndCredits) {
    QApplication::setApplicationVersion(u"1.2.3"_s);
    QApplication::setWindowIcon(QIcon(QPixmap(64, 64)));
    auto* action = program.window().findChild<QAction*>(u"about"_s);
    EXPECT_EQ(action->text().remove(u'&'), u"Acerca de Dorvantel..."_s);
    action->trigger();
    auto* about = program.window().findChild<QMessageBox*>(u"about"_s);
    ASSERT_TRUE(about);
    EXPECT_EQ(about->windowTitle(), u"Acerca de Dorvantel"_s);
    EXPECT_FALSE(about->iconPixmap().isNull());
    EXPECT_EQ(about->text(), u"<p style='font-size:14px'><b>Dorvantel</b><br>Versión 1.2.3</p>"
                             "<p style='font-size:11px'><b>Desarrollado por los fundadores de Dorvantel</b></p>"
                             "<p style='font-size:11px'>© 2026 The Dorvantel founders</p>"_s);
}

TEST_F(DorvantelAppTest, AboutOpensOnceAndClosesWithEscapeAndOpensAgain) {
    program.window().show();
    for (int time = 0; time < 2; ++time) {
        program.showAbout();
        program.showAbout();
        ASSERT_EQ(topLevels(u"about"_s).size(), 1);
        QWidget* about = topLevel(u"about"_s);
        EXPECT_TRUE(program.window().isEnabled());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        QTest::keyClick(about, Qt::Key_Escape);
        EXPECT_FALSE(topLevel(u"about"_s));
    }
}

TEST(Application, VersionIsTheProjects) {
    QProcess program;
    program.start(QStringLiteral(DORVANTEL_BIN_DIR "/dorvantel"), {u"--version"_s});
    ASSERT_TRUE(waitUntil([&] { return program.state() == QProcess::NotRunning; }, 30'000));
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(program.readAllStandardOutput(), "Dorvantel " DORVANTEL_VERSION "\n");
}

} // namespace dorvantel::test
