// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFDocument.h"
#include "platform/ProcessPDFOpener.h"
#include "tests/support/Print.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QMap>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace dorvantel;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto timeLimit = 10s;

/// What is known of one file of the test data: `library` is what the bare PDF library did with it, as
/// "error=None pages=2 words=720 …".
struct Known {
    QString path;
    QString library;

    bool never() const { return library.startsWith("HANG"_L1); }
    bool opens() const { return library.startsWith("error=None "_L1) && number(u"pages"_s) > 0; }
    qsizetype number(const QString& name) const {
        static const QRegularExpression figure(u"(\\w+)=(\\d+)"_s);
        for (auto found = figure.globalMatch(library); found.hasNext();) {
            const QRegularExpressionMatch match = found.next();
            if (match.captured(1) == name) {
                return match.captured(2).toLongLong();
            }
        }
        return -1;
    }
};

QList<Known> knownFiles(const QString& folder) {
    const QString root = qEnvironmentVariable("DORVANTEL_TEST_DATA");
    QFile index(root + u"/INDEX.tsv"_s);
    QList<Known> files;
    if (root.isEmpty() || !index.open(QIODevice::ReadOnly)) {
        return files;
    }
    const QStringList lines = QString::fromUtf8(index.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines.mid(1)) {
        const QStringList columns = line.split(u'\t');
        if (columns[0].startsWith(folder + u'/')) {
            files.append({root + u'/' + columns[0], columns.last()});
        }
    }
    return files;
}

QByteArray content(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

std::shared_ptr<PDFDocument> open(const QByteArray& bytes, std::chrono::milliseconds limit) {
    ProcessPDFOpener opener(QStringLiteral(DORVANTEL_BIN_DIR "/dorvantel-pdf-reader"), limit);
    QEventLoop loop;
    std::shared_ptr<PDFDocument> document;
    opener.open(bytes, &loop, [&](std::shared_ptr<PDFDocument> opened) {
        document = std::move(opened);
        loop.quit();
    });
    loop.exec();
    return document;
}

qsizetype words(const PDFDocument& document) {
    static const QRegularExpression blanks(u"\\s+"_s);
    qsizetype count = 0;
    for (qsizetype page = 0; page < document.pageCount(); ++page) {
        count += document.pageText(page).split(blanks, Qt::SkipEmptyParts).size();
    }
    return count;
}

void openAll(const QString& folder) {
    const QList<Known> files = knownFiles(folder);
    if (files.isEmpty()) {
        GTEST_SKIP() << "DORVANTEL_TEST_DATA names no folder with test data";
    }
    for (const Known& file : files) {
        SCOPED_TRACE(file.path.toStdString());
        QElapsedTimer clock;
        clock.start();
        const auto document = open(content(file.path), file.never() ? 500ms : timeLimit);
        EXPECT_LT(clock.elapsed(), std::chrono::milliseconds(timeLimit).count());
        ASSERT_EQ(document != nullptr, file.opens());
        if (document) {
            EXPECT_EQ(document->pageCount(), file.number(u"pages"_s));
            const auto expected = static_cast<double>(file.number(u"words"_s));
            // Words that were divided or run together are counted otherwise than in the library's own text.
            EXPECT_NEAR(static_cast<double>(words(*document)), expected, 2 + expected / 10);
        }
    }
}

} // namespace

TEST(PDFLibrary, OpensEveryCV) {
    openAll(u"cv"_s);
}

TEST(PDFLibrary, SurvivesEveryOddPDF) {
    openAll(u"odd"_s);
}
