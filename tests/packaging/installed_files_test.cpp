// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/packaging/InstalledTree.h"

#include <QFileInfo>
#include <QImage>

#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

const QStringList iconSizes{u"16"_s, u"22"_s, u"24"_s, u"32"_s, u"48"_s, u"64"_s, u"128"_s, u"256"_s, u"512"_s};

QString iconFile(const QString& size) {
    return u"share/icons/hicolor/%1x%1/apps/dorvantel.png"_s.arg(size);
}

/// What every component brings along.
QStringList commonFiles(const QString& component) {
    const QString documents = u"share/doc/"_s + component;
    return {u"bin/"_s + component, u"share/man/man1/%1.1.gz"_s.arg(component), documents + u"/changelog.Debian.gz"_s,
            documents + u"/changelog.gz"_s, documents + u"/copyright"_s};
}

QStringList sorted(QStringList names) {
    names.sort();
    return names;
}

} // namespace

TEST(InstalledFiles, TheProgramComesWithItsReaderItsIconsAndItsDesktopFiles) {
    QStringList expected =
        commonFiles(u"dorvantel"_s) + QStringList{u"libexec/dorvantel/dorvantel-pdf-reader"_s,
                                                  u"share/applications/dorvantel.desktop"_s,
                                                  u"share/icons/hicolor/scalable/apps/dorvantel.svg"_s,
                                                  u"share/metainfo/org.dorvantel.dorvantel.metainfo.xml"_s};
    for (const QString& size : iconSizes) {
        expected.append(iconFile(size));
    }
    EXPECT_EQ(InstalledTree({u"dorvantel"_s}).files(), sorted(expected));
}

TEST(InstalledFiles, TheRecordsServiceComesWithItsUnitItsCompletionAndItsDocumentation) {
    EXPECT_EQ(InstalledTree({u"dorvantel-records"_s}).files(),
              sorted(commonFiles(u"dorvantel-records"_s) +
                     QStringList{u"lib/systemd/user/dorvantel-records.service"_s,
                                 u"share/bash-completion/completions/dorvantel-records"_s,
                                 u"share/doc/dorvantel-records/records-service.md"_s}));
}

TEST(InstalledFiles, TheStandInComesWithItsDocumentation) {
    EXPECT_EQ(InstalledTree({u"dorvantel-demo-model"_s}).files(),
              sorted(commonFiles(u"dorvantel-demo-model"_s) +
                     QStringList{u"share/doc/dorvantel-demo-model/demo-model.md"_s}));
}

TEST(InstalledFiles, OnlyProgramsCanBeRunAndOnlyTheOwnerCanWrite) {
    const InstalledTree tree({u"dorvantel"_s, u"dorvantel-records"_s, u"dorvantel-demo-model"_s});
    for (const QString& file : tree.files()) {
        const bool program = file.startsWith(u"bin/"_s) || file.startsWith(u"libexec/"_s);
        const QFileDevice::Permissions modes = QFileInfo(tree.path(file)).permissions();
        EXPECT_EQ(modes.testFlag(QFile::ExeOther), program) << qPrintable(file);
        EXPECT_TRUE(modes.testFlag(QFile::ReadOther)) << qPrintable(file);
        EXPECT_FALSE(modes & (QFile::WriteGroup | QFile::WriteOther)) << qPrintable(file);
    }
}

TEST(InstalledFiles, TheIconHasEverySizeOfTheIconTheme) {
    const InstalledTree tree({u"dorvantel"_s});
    for (const QString& size : iconSizes) {
        const QImage icon(tree.path(iconFile(size)));
        EXPECT_EQ(icon.size(), QSize(size.toInt(), size.toInt()));
        EXPECT_EQ(qAlpha(icon.pixel(icon.width() / 2, icon.height() / 2)), 255) << qPrintable(size);
        EXPECT_EQ(qAlpha(icon.pixel(0, 0)), 0) << qPrintable(size);
    }
}

} // namespace dorvantel::test
