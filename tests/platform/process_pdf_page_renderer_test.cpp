// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFDocument.h"
#include "platform/ProcessPDFPageRenderer.h"
#include "platform/Sanitizers.h"
#include "tests/support/FakeReader.h"
#include "tests/support/Print.h"
#include "tests/support/SamplePDF.h"
#include "tests/support/Wait.h"

#include <QDirIterator>
#include <QElapsedTimer>

#include <gmock/gmock.h>
#include <sys/resource.h>

namespace dorvantel {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using test::contentOf;
using test::FakeReader;
using test::waitUntil;
using testing::ElementsAre;

namespace {

const QString reader = QStringLiteral(DORVANTEL_BIN_DIR "/dorvantel-pdf-reader");

/// A PDF whose pages are filled with a colour each, 100 points wide and 50 high.
std::shared_ptr<const PDFDocument> documentOf(const QByteArrayList& colours) {
    QByteArrayList kids;
    QByteArrayList pages;
    for (const QByteArray& colour : colours) {
        const qsizetype number = 3 + pages.size();
        kids.append(QByteArray::number(number) + " 0 R");
        pages.append("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 100 50] /Contents " + QByteArray::number(number + 1) +
                     " 0 R >>");
        pages.append(test::pdfStream(colour + " rg 0 0 100 50 re f"));
    }
    QByteArrayList objects = {"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count " +
                                                                       QByteArray::number(colours.size()) + " /Kids [" +
                                                                       kids.join(' ') + "] >>"};
    return std::make_shared<PDFDocument>(test::pdfFromObjects(objects + pages), QStringList(colours.size(), QString()));
}

/// A renderer and what it reported.
struct Rendering {
    explicit Rendering(const std::shared_ptr<const PDFDocument>& document, const QString& program = reader,
                       std::chrono::milliseconds timeLimit = 20s)
        : renderer(std::make_unique<ProcessPDFPageRenderer>(program, document, timeLimit)) {
        QObject::connect(renderer.get(), &PDFPageRenderer::opened, [this](const QList<QSizeF>& pageSizes) {
            ++openings;
            sizes = pageSizes;
        });
        QObject::connect(renderer.get(), &PDFPageRenderer::rendered, [this](int page, const QImage& drawn) {
            pages.append(page);
            image = drawn;
        });
    }

    bool open() {
        renderer->open();
        EXPECT_EQ(openings, 0) << "reported from inside the call";
        return waitUntil([this] { return openings > 0; }) && !sizes.isEmpty();
    }
    QImage render(int page, QSize pixels) {
        const qsizetype before = pages.size();
        renderer->render(page, pixels);
        EXPECT_EQ(pages.size(), before) << "reported from inside the call";
        EXPECT_TRUE(waitUntil([&] { return pages.size() > before; }));
        EXPECT_EQ(pages.last(), page);
        return image;
    }

    std::unique_ptr<ProcessPDFPageRenderer> renderer;
    int openings = 0;
    QList<QSizeF> sizes;
    QList<int> pages; ///< reported, whether drawn or not
    QImage image;     ///< of the last one
};

template <typename... Frames>
QByteArray bytesOf(const Frames&... frames) {
    return (QByteArray() + ... + QByteArray(reinterpret_cast<const char*>(&frames), sizeof frames));
}

const QByteArray openedOnePage = bytesOf(RenderOpened{RenderOpened::signature}, RenderPageSize{100, 50});

/// A reader that says this when a page was asked for. It reads the document of documentOf({"1 0 0"}) and the request
/// by their number of bytes, for a shell knows no frames.
FakeReader readerThatAnswers(const QByteArray& answer, const QByteArray& then) {
    const qsizetype document = qsizetype(sizeof(RenderDocument)) + documentOf({"1 0 0"})->dataRepresentation().size();
    FakeReader fake("here=$(dirname \"$0\"); head -c " + QByteArray::number(document) +
                    " >/dev/null; cat \"$here/opened\"; head -c 12 >/dev/null; cat \"$here/answer\"; " + then);
    fake.put(u"opened"_s, openedOnePage);
    fake.put(u"answer"_s, answer);
    return fake;
}

} // namespace

TEST(ProcessPDFPageRenderer, GivesTheSizeOfEveryPage) {
    Rendering rendering(documentOf({"1 0 0", "0 1 0"}));
    ASSERT_TRUE(rendering.open());
    EXPECT_THAT(rendering.sizes, ElementsAre(QSizeF(100, 50), QSizeF(100, 50)));
}

TEST(ProcessPDFPageRenderer, DrawsEachPageInTheSizeAskedFor) {
    Rendering rendering(documentOf({"1 0 0", "0 1 0", "0 0 1"}));
    ASSERT_TRUE(rendering.open());
    for (const auto& [page, colour] : {std::pair(2, Qt::blue), {0, Qt::red}, {1, Qt::green}}) {
        const QImage image = rendering.render(page, {200, 100 + page});
        EXPECT_EQ(image.size(), QSize(200, 100 + page));
        EXPECT_EQ(image.pixelColor(100, 50), QColor(colour));
    }
}

TEST(ProcessPDFPageRenderer, WhereNothingIsThePageIsWhite) {
    const auto document = std::make_shared<PDFDocument>(test::contentPDF({"0 0 1 1 re f"}), QStringList{QString()});
    Rendering rendering(document);
    ASSERT_TRUE(rendering.open());
    EXPECT_EQ(rendering.render(0, {60, 80}).pixelColor(30, 10), QColor(Qt::white));
}

TEST(ProcessPDFPageRenderer, WhatWasPutOverThePageIsDrawnWithIt) {
    const QByteArray bytes = test::pdfFromObjects(
        {"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
         "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 100 50] /Annots [4 0 R] >>",
         "<< /Type /Annot /Subtype /Stamp /F 4 /Rect [0 0 100 50] /AP << /N 5 0 R >> >>",
         test::pdfStream("0 1 0 rg 0 0 100 50 re f", "/Type /XObject /Subtype /Form /BBox [0 0 100 50]")});
    Rendering rendering(std::make_shared<PDFDocument>(bytes, QStringList{QString()}));
    ASSERT_TRUE(rendering.open());
    EXPECT_EQ(rendering.render(0, {10, 5}).pixelColor(5, 2), QColor(Qt::green));
}

TEST(ProcessPDFPageRenderer, AnImageOfManyMegabytesComesWhole) {
    Rendering rendering(documentOf({"1 0 0"}));
    ASSERT_TRUE(rendering.open());
    const QImage image = rendering.render(0, {4'000, 2'000});
    ASSERT_EQ(image.size(), QSize(4'000, 2'000));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(3'999, 1'999), QColor(Qt::red));
}

TEST(ProcessPDFPageRenderer, BytesThatAreNoPDFDoNotOpen) {
    Rendering rendering(std::make_shared<PDFDocument>("not a PDF", QStringList{u"Uno"_s}));
    EXPECT_FALSE(rendering.open());
}

TEST(ProcessPDFPageRenderer, AnotherNumberOfPagesThanTheDocumentHasDoesNotOpen) {
    const QByteArray bytes = documentOf({"1 0 0", "0 1 0"})->dataRepresentation();
    Rendering rendering(std::make_shared<PDFDocument>(bytes, QStringList{u"Uno"_s}));
    EXPECT_FALSE(rendering.open());
}

TEST(ProcessPDFPageRenderer, AMissingReaderOpensNothing) {
    for (const QString& program : {u"/nonexistent/reader"_s, QString()}) {
        Rendering rendering(documentOf({"1 0 0"}), program);
        EXPECT_FALSE(rendering.open());
        EXPECT_EQ(rendering.openings, 1);
    }
}

TEST(ProcessPDFPageRenderer, ADocumentThatNeverOpensIsGivenUpAtTheTimeLimit) {
    Rendering rendering(std::make_shared<PDFDocument>(test::neverEndingPDF(), QStringList{QString()}), reader, 300ms);
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(rendering.open());
    EXPECT_GE(clock.elapsed(), 300);
    EXPECT_LT(clock.elapsed(), 8'000);
}

TEST(ProcessPDFPageRenderer, APageThatNeverEndsIsUnavailableAndTheNextIsDrawnByANewProcess) {
    const FakeReader fake = readerThatAnswers("", "echo $$ >>\"$here/pids\"; if [ -e \"$here/again\" ]; then cat "
                                                  "\"$here/image\"; fi; : >\"$here/again\"; exec sleep 60");
    fake.put(u"image"_s, bytesOf(RenderAnswer{{0, 1, 1}, 1}, std::uint32_t{0xff00ff00}));
    Rendering rendering(documentOf({"1 0 0"}), fake.path(), 1s);
    ASSERT_TRUE(rendering.open());
    EXPECT_TRUE(rendering.render(0, {1, 1}).isNull());
    const QImage image = rendering.render(0, {1, 1});
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::green));
    EXPECT_EQ(rendering.openings, 1) << "the sizes are known";
    const QByteArrayList pids = contentOf(fake.file(u"pids"_s)).trimmed().split('\n');
    ASSERT_EQ(pids.size(), 2);
    EXPECT_TRUE(waitUntil([&] { return !test::isRunning(pids[0].toInt()); }));
}

TEST(ProcessPDFPageRenderer, APageThatCrashesTheReaderIsUnavailableAndTheNextIsDrawn) {
    const FakeReader fake = readerThatAnswers("", "if [ -e \"$here/again\" ]; then exec cat \"$here/image\"; fi; "
                                                  ": >\"$here/again\"; kill -SEGV $$");
    fake.put(u"image"_s, bytesOf(RenderAnswer{{0, 1, 1}, 1}, std::uint32_t{0xff00ff00}));
    Rendering rendering(documentOf({"1 0 0"}), fake.path());
    ASSERT_TRUE(rendering.open());
    EXPECT_TRUE(rendering.render(0, {1, 1}).isNull());
    EXPECT_FALSE(rendering.render(0, {1, 1}).isNull());
}

TEST(ProcessPDFPageRenderer, AReaderThatEndsWhileNobodyAsksIsStartedAgain) {
    const FakeReader fake =
        readerThatAnswers(bytesOf(RenderAnswer{{0, 1, 1}, 1}, std::uint32_t{0xff00ff00}), "echo $$ >>\"$here/ended\"");
    Rendering rendering(documentOf({"1 0 0"}), fake.path());
    ASSERT_TRUE(rendering.open());
    for (int time = 1; time <= 3; ++time) {
        EXPECT_FALSE(rendering.render(0, {1, 1}).isNull());
        ASSERT_TRUE(waitUntil([&] { return contentOf(fake.file(u"ended"_s)).count('\n') == time; }));
        const pid_t process = contentOf(fake.file(u"ended"_s)).trimmed().split('\n').last().toInt();
        ASSERT_TRUE(waitUntil([&] { return contentOf(u"/proc/%1/status"_s.arg(process)).isEmpty(); }));
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(rendering.pages.size(), 3);
}

TEST(ProcessPDFPageRenderer, AnAnswerThatIsNoneMakesThePageUnavailable) {
    const QByteArray pixel = bytesOf(std::uint32_t{0});
    for (const QByteArray& answer :
         {QByteArray("a line of text, and a long one"), bytesOf(RenderAnswer{{1, 1, 1}, 1}) + pixel,
          bytesOf(RenderAnswer{{0, 60'000, 60'000}, 1}) + pixel, bytesOf(RenderAnswer{{0, 1, 1}, 2}) + pixel,
          bytesOf(RenderAnswer{{0, 1, 1}, 0}), bytesOf(RenderAnswer{{0, 1, 1}, 1}),
          bytesOf(RenderAnswer{{0, 1, 1}, 1}) + pixel + "more"}) {
        const FakeReader fake = readerThatAnswers(answer, "");
        Rendering rendering(documentOf({"1 0 0"}), fake.path());
        ASSERT_TRUE(rendering.open());
        EXPECT_TRUE(rendering.render(0, {1, 1}).isNull());
        EXPECT_EQ(rendering.pages.size(), 1);
    }
}

TEST(ProcessPDFPageRenderer, ASignatureThatIsNoneDoesNotOpen) {
    FakeReader fake("cat \"$(dirname \"$0\")/opened\"; exec sleep 60");
    fake.put(u"opened"_s, QByteArray(openedOnePage).replace("DVRENDR1", "DVRENDR0"));
    Rendering rendering(documentOf({"1 0 0"}), fake.path());
    EXPECT_FALSE(rendering.open());
}

TEST(ProcessPDFPageRenderer, EndlessOutputIsCutOff) {
    const FakeReader fake("exec cat /dev/zero");
    Rendering rendering(documentOf({"1 0 0"}), fake.path());
    EXPECT_FALSE(rendering.open());
}

TEST(ProcessPDFPageRenderer, APageThatWasGivenUpIsNotReported) {
    const FakeReader fake = readerThatAnswers("", "exec sleep 60");
    Rendering rendering(documentOf({"1 0 0"}), fake.path());
    ASSERT_TRUE(rendering.open());
    rendering.renderer->render(0, {1, 1});
    rendering.renderer->giveUp();
    Rendering other(documentOf({"0 1 0"}));
    ASSERT_TRUE(other.open());
    EXPECT_FALSE(other.render(0, {10, 10}).isNull());
    EXPECT_TRUE(rendering.pages.isEmpty());
}

TEST(ProcessPDFPageRenderer, DestroyingItWhileAPageHangsReturnsAtOnceAndEndsTheProcess) {
    const FakeReader fake = readerThatAnswers("", "echo $$ >\"$here/pid\"; exec sleep 60");
    Rendering rendering(documentOf({"1 0 0"}), fake.path());
    ASSERT_TRUE(rendering.open());
    rendering.renderer->render(0, {1, 1});
    ASSERT_TRUE(waitUntil([&] { return contentOf(fake.file(u"pid"_s)).endsWith('\n'); }));
    const pid_t process = contentOf(fake.file(u"pid"_s)).trimmed().toInt();
    QElapsedTimer clock;
    clock.start();
    rendering.renderer.reset();
    EXPECT_LT(clock.elapsed(), 1'000);
    EXPECT_TRUE(waitUntil([&] { return !test::isRunning(process); }));
    EXPECT_TRUE(rendering.pages.isEmpty());
}

TEST(ProcessPDFPageRenderer, DestroyingItBeforeTheReaderStartedIsFine) {
    for (int i = 0; i < 20; ++i) {
        Rendering rendering(documentOf({"1 0 0"}));
        rendering.renderer->open();
    }
    QCoreApplication::processEvents();
}

TEST(ProcessPDFPageRenderer, AMemoryBombIsUnavailableWithinTheLimit) {
    if (isSanitized) {
        GTEST_SKIP() << "under the sanitizers the reader has no limit on memory";
    }
    Rendering rendering(std::make_shared<PDFDocument>(test::memoryBombPDF(), QStringList{QString()}));
    ASSERT_TRUE(rendering.open());
    EXPECT_TRUE(rendering.render(0, {400, 500}).isNull());
    rusage children{};
    getrusage(RUSAGE_CHILDREN, &children);
    EXPECT_LT(children.ru_maxrss, 1024 * 1024) << "kilobytes of the largest process";
}

TEST(ProcessPDFPageRenderer, OddDocumentsAreDrawnOrUnavailable) {
    const QString data = qEnvironmentVariable("DORVANTEL_TEST_DATA");
    if (data.isEmpty()) {
        GTEST_SKIP() << "DORVANTEL_TEST_DATA is not set";
    }
    int files = 0;
    for (QDirIterator odd(data + "/odd"_L1, {u"*.pdf"_s}, QDir::Files); odd.hasNext(); ++files) {
        const QByteArray bytes = contentOf(odd.next());
        // Most have one page; the others are refused, which must not hurt either.
        Rendering rendering(std::make_shared<PDFDocument>(bytes, QStringList{QString()}), reader, 2s);
        if (rendering.open()) {
            const QImage image = rendering.render(0, {400, 500});
            EXPECT_TRUE(image.isNull() || image.size() == QSize(400, 500)) << qPrintable(odd.fileName());
        }
        EXPECT_EQ(rendering.openings, 1) << qPrintable(odd.fileName());
    }
    EXPECT_GT(files, 0);
}

} // namespace dorvantel
