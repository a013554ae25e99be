// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/DroppedPDF.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"
#include "tests/support/Wait.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QMimeData>
#include <QTemporaryDir>
#include <QThread>
#include <QThreadPool>
#include <QUrl>

#include <gtest/gtest.h>

using namespace dorvantel;
using namespace dorvantel::test;
using namespace Qt::StringLiterals;

namespace {

class DroppedPDFTest : public testing::Test {
protected:
    QString file(const QString& name, const QByteArray& bytes) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    static std::optional<DroppedPDF> drop(const QStringList& paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths) {
            urls.append(QUrl::fromLocalFile(path));
        }
        data.setUrls(urls);
        return firstPDF(data);
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(DroppedPDFTest, OfTwoPDFsOnlyTheFirstIsTaken) {
    const QString first = file(u"b.pdf"_s, "1");
    const QString second = file(u"a.pdf"_s, "2");
    const auto dropped = drop({first, second});
    ASSERT_TRUE(dropped);
    EXPECT_EQ(dropped->path, first);
}

TEST_F(DroppedPDFTest, FolderIsRefusedWhateverItsName) {
    QDir(folder.path()).mkdir(u"cvs.pdf"_s);
    EXPECT_FALSE(drop({folder.path()}));
    EXPECT_FALSE(drop({folder.filePath(u"cvs.pdf"_s)}));
}

TEST_F(DroppedPDFTest, TextFileIsRefused) {
    EXPECT_FALSE(drop({file(u"cv.txt"_s, "Ana Ruiz")}));
}

TEST_F(DroppedPDFTest, TextFileBesideAPDFDoesNotHideIt) {
    const QString text = file(u"cv.txt"_s, "Ana Ruiz");
    const QString pdf = file(u"cv.PDF"_s, "%PDF-1.7");
    const auto dropped = drop({text, pdf});
    ASSERT_TRUE(dropped);
    EXPECT_EQ(dropped->path, pdf);
}

TEST_F(DroppedPDFTest, FileNamedPDFIsTakenWhateverItHolds) {
    EXPECT_TRUE(drop({file(u"empty.pdf"_s, "")}));
    EXPECT_TRUE(drop({file(u"text.pdf"_s, "Ana Ruiz")}));
}

TEST_F(DroppedPDFTest, PDFWithoutASuffixIsKnownByItsContent) {
    EXPECT_TRUE(drop({file(u"curriculum"_s, "%PDF-1.7\n1 0 obj\n")}));
}

TEST_F(DroppedPDFTest, FileThatIsNotThereIsRefused) {
    EXPECT_FALSE(drop({folder.filePath(u"gone.pdf"_s)}));
}

TEST_F(DroppedPDFTest, NothingDroppedIsRefused) {
    EXPECT_FALSE(firstPDF(QMimeData()));
}

TEST_F(DroppedPDFTest, PDFOnAnotherMachineIsRefused) {
    QMimeData data;
    data.setUrls({QUrl(u"http://example.com/cv.pdf"_s)});
    EXPECT_FALSE(firstPDF(data));
}

TEST_F(DroppedPDFTest, BytesInTheDragItselfAreTaken) {
    QMimeData data;
    data.setData(u"application/pdf"_s, "%PDF-1.7");
    const auto dropped = firstPDF(data);
    ASSERT_TRUE(dropped);
    EXPECT_EQ(dropped->bytes, "%PDF-1.7");
    std::optional<QByteArray> received;
    loadBytes(*dropped, qApp, [&](const QByteArray& bytes) { received = bytes; });
    EXPECT_FALSE(received);
    ASSERT_TRUE(waitUntil([&] { return received.has_value(); }));
    EXPECT_EQ(*received, "%PDF-1.7");
}

TEST_F(DroppedPDFTest, DragThatPromisesAPDFWithoutBytesIsRefused) {
    QMimeData data;
    data.setData(u"application/pdf"_s, "");
    EXPECT_FALSE(firstPDF(data));
}

TEST_F(DroppedPDFTest, BytesOfTheFileArrive) {
    std::optional<QByteArray> received;
    loadBytes({file(u"cv.pdf"_s, "bytes"), {}}, qApp, [&](const QByteArray& bytes) { received = bytes; });
    ASSERT_TRUE(waitUntil([&] { return received.has_value(); }));
    EXPECT_EQ(*received, "bytes");
}

TEST_F(DroppedPDFTest, BytesArriveLaterAndOnTheThreadOfWhoeverReceivesThem) {
    const QThread* thread = nullptr;
    loadBytes({file(u"cv.pdf"_s, "bytes"), {}}, qApp, [&](const QByteArray&) { thread = QThread::currentThread(); });
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_FALSE(thread) << "it has been read, but nothing is handed over from inside the call";
    ASSERT_TRUE(waitUntil([&] { return thread != nullptr; }));
    EXPECT_EQ(thread, qApp->thread());
}

TEST_F(DroppedPDFTest, EmptyFileArrivesAsNoBytes) {
    std::optional<QByteArray> received;
    loadBytes({file(u"cv.pdf"_s, ""), {}}, qApp, [&](const QByteArray& bytes) { received = bytes; });
    ASSERT_TRUE(waitUntil([&] { return received.has_value(); }));
    EXPECT_TRUE(received->isEmpty());
}

TEST_F(DroppedPDFTest, FileThatCannotBeReadIsSilentlyIgnored) {
    CapturedOutput output;
    bool called = false;
    loadBytes({folder.filePath(u"gone.pdf"_s), {}}, qApp, [&](const QByteArray&) { called = true; });
    QThreadPool::globalInstance()->waitForDone();
    bool later = false;
    loadBytes({file(u"cv.pdf"_s, "x"), {}}, qApp, [&](const QByteArray&) { later = true; });
    ASSERT_TRUE(waitUntil([&] { return later; }));
    EXPECT_FALSE(called);
    EXPECT_EQ(output.text(), QString());
}
