// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/packaging/InstalledTree.h"

#include <QFile>
#include <QSettings>
#include <QStandardPaths>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

TEST(DesktopEntry, IsValid) {
    const InstalledTree tree({u"dorvantel"_s});
    const Finished checked =
        run(u"desktop-file-validate"_s, {tree.path(u"share/applications/dorvantel.desktop"_s)}, tree.home());
    EXPECT_EQ(checked.status, 0);
    EXPECT_EQ(checked.output + checked.errors, QString());
}

TEST(DesktopEntry, OpensPdfFilesWithTheInstalledProgramAndItsIcon) {
    const InstalledTree tree({u"dorvantel"_s});
    QSettings entry(tree.path(u"share/applications/dorvantel.desktop"_s), QSettings::IniFormat);
    entry.beginGroup(u"Desktop Entry"_s);
    EXPECT_EQ(entry.value(u"MimeType"_s).toString(), u"application/pdf"_s);
    EXPECT_EQ(entry.value(u"Exec"_s).toString(), u"dorvantel %f"_s);
    EXPECT_TRUE(QFile::exists(tree.path(u"bin/dorvantel"_s)));
    EXPECT_TRUE(
        QFile::exists(tree.path(u"share/icons/hicolor/scalable/apps/%1.svg"_s.arg(entry.value(u"Icon"_s).toString()))));
    for (const QString& key : {u"GenericName"_s, u"Comment"_s, u"Keywords"_s}) {
        EXPECT_TRUE(entry.contains(key)) << qPrintable(key);
        EXPECT_TRUE(entry.contains(key + u"[es]"_s)) << qPrintable(key);
    }
}

TEST(SoftwareCentre, TheDescriptionIsValid) {
    const InstalledTree tree({u"dorvantel"_s});
    const Finished checked = run(u"appstreamcli"_s,
                                 {u"validate"_s, u"--no-net"_s, u"--pedantic"_s, u"--no-color"_s,
                                  tree.path(u"share/metainfo/org.dorvantel.dorvantel.metainfo.xml"_s)},
                                 tree.home());
    EXPECT_EQ(checked.status, 0) << qPrintable(checked.output + checked.errors);
    EXPECT_THAT(checked.output.toStdString(), testing::HasSubstr("Validation was successful."));
}

TEST(SoftwareCentre, TheDescriptionKnowsTheReleaseThatIsInstalled) {
    const InstalledTree tree({u"dorvantel"_s});
    QFile description(tree.path(u"share/metainfo/org.dorvantel.dorvantel.metainfo.xml"_s));
    ASSERT_TRUE(description.open(QIODevice::ReadOnly));
    const QString version =
        run(tree.path(u"bin/dorvantel"_s), {u"--version"_s}, tree.home()).output.trimmed().section(u' ', -1);
    ASSERT_FALSE(version.isEmpty());
    EXPECT_THAT(description.readAll().toStdString(),
                testing::HasSubstr("<release version=\"" + version.toStdString() + "\""));
}

TEST(ServiceUnit, IsUnderstoodWhollyByTheUsersManager) {
    if (QStandardPaths::findExecutable(u"systemd-analyze"_s).isEmpty()) {
        GTEST_SKIP() << "systemd-analyze is not installed";
    }
    const InstalledTree tree({u"dorvantel-records"_s});
    const Finished checked =
        run(u"systemd-analyze"_s,
            {u"--user"_s, u"verify"_s, u"--man=no"_s, tree.path(u"lib/systemd/user/dorvantel-records.service"_s)},
            tree.home());
    EXPECT_EQ(checked.status, 0);
    EXPECT_EQ(checked.output + checked.errors, QString()) << "what it does not understand it only warns of";
}

TEST(ServiceUnit, StartsTheInstalledProgram) {
    const InstalledTree tree({u"dorvantel-records"_s});
    QFile unit(tree.path(u"lib/systemd/user/dorvantel-records.service"_s));
    ASSERT_TRUE(unit.open(QIODevice::ReadOnly));
    EXPECT_THAT(unit.readAll().toStdString(),
                testing::HasSubstr("\nExecStart=" + tree.path(u"bin/dorvantel-records"_s).toStdString() +
                                   " $DORVANTEL_RECORDS_OPTIONS\n"));
}

} // namespace dorvantel::test
