// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFDocument.h"
#include "platform/PDFPageFrames.h"
#include "platform/ProcessPDFOpener.h"
#include "platform/Sanitizers.h"
#include "tests/support/FakeReader.h"
#include "tests/support/Print.h"
#include "tests/support/SamplePDF.h"
#include "tests/support/Wait.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPainter>
#include <QPdfWriter>
#include <QTimer>

#include <array>
#include <memory>

#include <gmock/gmock.h>
#include <sys/resource.h>

using namespace dorvantel;
using namespace dorvantel::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

const QString reader = QStringLiteral(DORVANTEL_BIN_DIR "/dorvantel-pdf-reader");

/// What one call of `open` came to.
struct Opened {
    int completions = 0;
    std::shared_ptr<PDFDocument> document;

    PDFOpener::Completion completion() {
        return [this](std::shared_ptr<PDFDocument> opened) {
            ++completions;
            document = std::move(opened);
            loop.quit();
        };
    }
    /// Megabytes come through a pipe in small pieces, an event each: a loop of its own takes them without a pause.
    bool wait() {
        QTimer::singleShot(60s, &loop, &QEventLoop::quit);
        if (completions == 0) {
            loop.exec();
        }
        return completions > 0;
    }

    QEventLoop loop;
};

std::shared_ptr<PDFDocument> open(const QByteArray& bytes, const QString& program = reader,
                                  std::chrono::milliseconds timeLimit = 20s) {
    ProcessPDFOpener opener(program, timeLimit);
    QObject context;
    Opened opened;
    opener.open(bytes, &context, opened.completion());
    EXPECT_TRUE(opened.wait());
    EXPECT_EQ(opened.completions, 1);
    return opened.document;
}

QStringList texts(const PDFDocument& document) {
    QStringList all;
    for (qsizetype page = 0; page < document.pageCount(); ++page) {
        all.append(document.pageText(page));
    }
    return all;
}

QByteArray writtenPDF(const QStringList& pages) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    QPainter painter(&writer);
    for (qsizetype i = 0; i < pages.size(); ++i) {
        if (i > 0) {
            writer.newPage();
        }
        painter.drawText(QRect(0, 0, 8000, 8000), 0, pages[i]);
    }
    painter.end();
    return bytes;
}

} // namespace

TEST(ProcessPDFOpener, GivesTheTextOfEveryPageInOrder) {
    const auto document = open(textPDF({"Juan P\\351rez\nIngeniero", "Segunda p\\341gina"}));
    ASSERT_TRUE(document);
    EXPECT_THAT(texts(*document), ElementsAre(u"Juan Pérez\nIngeniero\n"_s, u"Segunda página\n"_s));
}

TEST(ProcessPDFOpener, KeepsTheVeryBytesItWasGiven) {
    const QByteArray bytes = textPDF({"Uno"});
    const auto document = open(bytes);
    ASSERT_TRUE(document);
    EXPECT_EQ(document->dataRepresentation(), bytes);
    EXPECT_EQ(document->dataRepresentation().constData(), bytes.constData()) << "a copy was made";
}

TEST(ProcessPDFOpener, OpensWhatQtItselfWrites) {
    const auto document = open(writtenPDF({u"Formación en diseño"_s, u"Idiomas: alemán"_s}));
    ASSERT_TRUE(document);
    EXPECT_THAT(texts(*document), ElementsAre(u"Formación en diseño\n"_s, u"Idiomas: alemán\n"_s));
}

TEST(ProcessPDFOpener, NeverCompletesFromInsideTheCall) {
    for (const QString& program : {reader, u"/nonexistent/reader"_s, QString()}) {
        ProcessPDFOpener opener(program);
        QObject context;
        Opened opened;
        opener.open(textPDF({"Uno"}), &context, opened.completion());
        EXPECT_EQ(opened.completions, 0);
        EXPECT_TRUE(opened.wait());
    }
}

TEST(ProcessPDFOpener, WhatIsNoPDFDoesNotOpen) {
    EXPECT_FALSE(open("PK\x03\x04 a spreadsheet"));
    EXPECT_FALSE(open(QByteArray(100'000, 'x')));
    EXPECT_FALSE(open("%PDF-1.4\n%%EOF\n"));
}

TEST(ProcessPDFOpener, ZeroBytesDoNotOpen) {
    EXPECT_FALSE(open({}));
}

TEST(ProcessPDFOpener, APDFCutShortNeverCrashesTheOpener) {
    const QByteArray bytes = textPDF({"Juan P\\351rez\nIngeniero"});
    EXPECT_FALSE(open(bytes.left(60)));
    // Later cuts may leave enough for the library to repair.
    open(bytes.left(bytes.size() / 2));
    open(bytes.left(bytes.size() - 30));
}

TEST(ProcessPDFOpener, APDFWithAPasswordDoesNotOpen) {
    EXPECT_FALSE(open(encryptedPDF("Secreto", "view")));
}

TEST(ProcessPDFOpener, APDFEncryptedWithTheEmptyPasswordOpens) {
    const auto document = open(encryptedPDF("Cifrado sin clave", ""));
    ASSERT_TRUE(document);
    EXPECT_THAT(texts(*document), ElementsAre(u"Cifrado sin clave\n"_s));
}

TEST(ProcessPDFOpener, PagesWithoutTextHaveEmptyTexts) {
    const auto document = open(textPDF({"", "Algo", ""}));
    ASSERT_TRUE(document);
    EXPECT_THAT(texts(*document), ElementsAre(QString(), u"Algo\n"_s, QString()));
}

TEST(ProcessPDFOpener, OpensThreeHundredPages) {
    QByteArrayList pages;
    for (int page = 1; page <= 300; ++page) {
        pages.append("Page " + QByteArray::number(page));
    }
    const auto document = open(textPDF(pages));
    ASSERT_TRUE(document);
    ASSERT_EQ(document->pageCount(), 300);
    EXPECT_EQ(document->pageText(299), u"Page 300\n"_s);
}

TEST(ProcessPDFOpener, AnAccentDrawnOverACapitalIsOnTheCapital) {
    // As an old TeX font draws it: the accent by itself, over the letter that follows. The library gives it at
    // the end of the line, or before the letter when it is higher.
    for (const char* height : {"703", "706"}) {
        const auto document = open(contentPDF({"BT /F1 12 Tf 1 0 0 1 74 " + QByteArray(height) +
                                               " Tm (\\264) Tj 1 0 0 1 72 700 Tm (Angel Lopez, ingeniero) Tj "
                                               "1 0 0 1 72 680 Tm (Segunda) Tj ET"}));
        ASSERT_TRUE(document);
        EXPECT_THAT(texts(*document), ElementsAre(u"Ángel Lopez, ingeniero\nSegunda\n"_s)) << height;
    }
}

TEST(ProcessPDFOpener, AnAccentDrawnOverNothingStaysWhereItIs) {
    const auto document = open(contentPDF({"BT /F1 12 Tf 1 0 0 1 300 706 Tm (\\264) Tj 1 0 0 1 72 700 Tm "
                                           "(Angel Lopez) Tj ET"}));
    ASSERT_TRUE(document);
    EXPECT_TRUE(document->pageText(0).contains(u'´'));
    EXPECT_TRUE(document->pageText(0).contains(u"Angel Lopez"_s));
}

TEST(ProcessPDFOpener, APDFThatNeverEndsIsGivenUpAtTheTimeLimit) {
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(open(neverEndingPDF(), reader, 300ms));
    EXPECT_GE(clock.elapsed(), 300);
    EXPECT_LT(clock.elapsed(), 8'000) << "ended by the reader's own limit, not by the opener's";
}

TEST(ProcessPDFOpener, AMemoryBombStaysWithinTheLimit) {
    if (isSanitized) {
        GTEST_SKIP() << "under the sanitizers the reader has no limit on memory";
    }
    open(memoryBombPDF());
    rusage children{};
    getrusage(RUSAGE_CHILDREN, &children);
    EXPECT_LT(children.ru_maxrss, 1024 * 1024) << "kilobytes of the largest process";
}

TEST(ProcessPDFOpener, AnAbsurdPageCountDoesNotHurt) {
    const QByteArray bytes =
        pdfFromObjects({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 213804087 /Kids [3 0 R] >>",
                        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] >>"});
    QElapsedTimer clock;
    clock.start();
    open(bytes);
    EXPECT_LT(clock.elapsed(), 9'000);
}

TEST(ProcessPDFOpener, MoreThanTwentyThousandPagesDoNotOpen) {
    const QByteArray bytes =
        pdfFromObjects({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 20001 /Kids [3 0 R] >>",
                        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] >>"});
    EXPECT_FALSE(open(bytes));
}

TEST(ProcessPDFOpener, AMissingReaderOpensNothing) {
    EXPECT_FALSE(open(textPDF({"Uno"}), u"/nonexistent/reader"_s));
    EXPECT_FALSE(open(textPDF({"Uno"}), QString()));
}

TEST(ProcessPDFOpener, ACrashingReaderOpensNothing) {
    EXPECT_FALSE(open(textPDF({"Uno"}), FakeReader("kill -SEGV $$").path()));
}

TEST(ProcessPDFOpener, AReaderThatEndsWithoutReadingOpensNothing) {
    EXPECT_FALSE(open(QByteArray(5'000'000, 'x'), FakeReader("exit 1").path()));
}

TEST(ProcessPDFOpener, MalformedOutputOpensNothing) {
    EXPECT_FALSE(open(textPDF({"Uno"}), FakeReader("cat >/dev/null").path()));
    EXPECT_FALSE(open(textPDF({"Uno"}), FakeReader("cat >/dev/null; echo Uno").path()));
}

TEST(ProcessPDFOpener, GoodOutputWithABadExitOpensNothing) {
    FakeReader fake("cat >/dev/null; cat \"$(dirname \"$0\")/frames\"; exit 1");
    fake.put(u"frames"_s, encodePageFrames({u"Uno"_s}));
    EXPECT_FALSE(open("whatever", fake.path()));
}

TEST(ProcessPDFOpener, GoodOutputOfAnotherReaderOpens) {
    FakeReader fake("cat >/dev/null; cat \"$(dirname \"$0\")/frames\"");
    fake.put(u"frames"_s, encodePageFrames({u"Uno"_s}));
    const auto document = open("whatever", fake.path());
    ASSERT_TRUE(document);
    EXPECT_THAT(texts(*document), ElementsAre(u"Uno"_s));
}

TEST(ProcessPDFOpener, EndlessOutputIsCutOff) {
    EXPECT_FALSE(open("whatever", FakeReader("exec cat /dev/zero").path()));
}

TEST(ProcessPDFOpener, SeveralAreOpenedAtOnce) {
    ProcessPDFOpener opener(reader, 20s);
    QObject context;
    std::array<Opened, 6> opened;
    for (std::size_t i = 0; i < opened.size(); ++i) {
        opener.open(textPDF({"CV " + QByteArray::number(i)}), &context, opened[i].completion());
    }
    for (std::size_t i = 0; i < opened.size(); ++i) {
        ASSERT_TRUE(opened[i].wait());
        ASSERT_TRUE(opened[i].document);
        EXPECT_EQ(opened[i].document->pageText(0), u"CV %1\n"_s.arg(i));
        EXPECT_EQ(opened[i].completions, 1);
    }
}

TEST(ProcessPDFOpener, ASlowOneDoesNotHoldUpTheNext) {
    ProcessPDFOpener opener(reader, 20s);
    QObject slowContext;
    Opened slow;
    opener.open(neverEndingPDF(), &slowContext, slow.completion());
    EXPECT_TRUE(open(textPDF({"Uno"})));
    EXPECT_EQ(slow.completions, 0);
}

TEST(ProcessPDFOpener, DestroyingTheContextKillsTheReaderAndNothingCompletes) {
    FakeReader fake("echo $$ >\"$(dirname \"$0\")/pid\"; exec sleep 60");
    ProcessPDFOpener opener(fake.path());
    auto context = std::make_unique<QObject>();
    Opened opened;
    opener.open("whatever", context.get(), opened.completion());
    ASSERT_TRUE(waitUntil([&] { return contentOf(fake.file(u"pid"_s)).endsWith('\n'); }));
    const pid_t process = contentOf(fake.file(u"pid"_s)).trimmed().toInt();
    EXPECT_TRUE(isRunning(process));
    context.reset();
    EXPECT_TRUE(waitUntil([&] { return !isRunning(process); }));
    EXPECT_EQ(opened.completions, 0);
}

TEST(ProcessPDFOpener, DestroyingTheContextBeforeTheReaderStartedIsFine) {
    ProcessPDFOpener opener(reader);
    Opened opened;
    {
        QObject context;
        opener.open(textPDF({"Uno"}), &context, opened.completion());
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(opened.completions, 0);
}

TEST(ProcessPDFOpener, ACompletionMayDestroyItsContext) {
    ProcessPDFOpener opener(reader);
    auto context = std::make_unique<QObject>();
    int completions = 0;
    opener.open(textPDF({"Uno"}), context.get(), [&](const std::shared_ptr<PDFDocument>&) {
        ++completions;
        context.reset();
    });
    EXPECT_TRUE(waitUntil([&] { return completions > 0; }));
    EXPECT_EQ(completions, 1);
}

TEST(ProcessPDFOpener, AnOpeningOutlivesItsOpener) {
    QObject context;
    Opened opened;
    ProcessPDFOpener(reader).open(textPDF({"Uno"}), &context, opened.completion());
    ASSERT_TRUE(opened.wait());
    EXPECT_TRUE(opened.document);
}
