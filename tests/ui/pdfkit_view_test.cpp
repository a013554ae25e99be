// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFDocument.h"
#include "platform/PDFPageRenderer.h"
#include "platform/ProcessPDFOpener.h"
#include "tests/support/FakeReader.h"
#include "tests/support/Wait.h"
#include "ui/PDFKitView.h"
#include "ui/PDFView.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QPainter>
#include <QPdfWriter>
#include <QScrollBar>
#include <QTest>

#include <gmock/gmock.h>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

/// Draws in the process that ships with the program.
const ProcessPDFOpener pdfs(QStringLiteral(DORVANTEL_BIN_DIR "/dorvantel-pdf-reader"));

/// A document of A4 pages, each filled with its colour.
std::shared_ptr<const PDFDocument> documentOf(const QList<QColor>& pages) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageMargins(QMarginsF());
        QPainter painter(&writer);
        for (qsizetype i = 0; i < pages.size(); ++i) {
            if (i > 0) {
                writer.newPage();
            }
            painter.fillRect(QRect(0, 0, writer.width(), writer.height()), pages[i]);
        }
    }
    return std::make_shared<PDFDocument>(buffer.data(), QStringList(pages.size(), QString()));
}

/// The colour in the middle of what is seen of the pages.
QColor middle(const PDFKitView& view) {
    QWidget* viewport = view.pdfView()->viewport();
    return viewport->grab().toImage().pixelColor(viewport->width() / 2, viewport->height() / 2);
}

bool shows(const PDFKitView& view, const QColor& colour) {
    return test::waitUntil([&] { return middle(view) == colour; });
}

/// How much of the width of the view the page takes.
double shareOfWidth(const PDFKitView& view, const QColor& page) {
    const QImage image = view.pdfView()->viewport()->grab().toImage();
    int count = 0;
    for (int x = 0; x < image.width(); ++x) {
        count += image.pixelColor(x, image.height() / 2) == page ? 1 : 0;
    }
    return static_cast<double>(count) / image.width();
}

void show(PDFKitView& view) {
    view.resize(300, 200);
    view.show();
}

} // namespace

TEST(PDFKitView, ShowsTheFirstPageScaledToTheWidth) {
    PDFKitView view(documentOf({Qt::red, Qt::green}), pdfs);
    show(view);
    ASSERT_TRUE(shows(view, Qt::red));
    EXPECT_GT(shareOfWidth(view, Qt::red), 0.9);
}

TEST(PDFKitView, ScrollsThroughAllPages) {
    PDFKitView view(documentOf({Qt::red, Qt::green, Qt::blue}), pdfs);
    show(view);
    QScrollBar* bar = view.pdfView()->verticalScrollBar();
    ASSERT_TRUE(test::waitUntil([&] { return bar->maximum() > 0; }));
    bar->setValue(bar->maximum() / 2);
    EXPECT_TRUE(shows(view, Qt::green));
    bar->setValue(bar->maximum());
    EXPECT_TRUE(shows(view, Qt::blue));
}

TEST(PDFKitView, FollowsItsWidth) {
    PDFKitView view(documentOf({Qt::red, Qt::green}), pdfs);
    show(view);
    ASSERT_TRUE(shows(view, Qt::red));
    const int narrow = view.pdfView()->verticalScrollBar()->maximum();
    view.resize(600, 200);
    ASSERT_TRUE(test::waitUntil([&] { return shareOfWidth(view, Qt::red) > 0.9; }));
    EXPECT_GT(view.pdfView()->verticalScrollBar()->maximum(), narrow);
    EXPECT_EQ(view.pdfView()->horizontalScrollBar()->maximum(), 0);
}

TEST(PDFKitView, TheKeyboardScrolls) {
    PDFKitView view(documentOf({Qt::red, Qt::green}), pdfs);
    show(view);
    ASSERT_TRUE(shows(view, Qt::red));
    QTest::keyClick(view.pdfView(), Qt::Key_PageDown);
    EXPECT_GT(view.pdfView()->verticalScrollBar()->value(), 0);
}

TEST(PDFKitView, TheEmptyDocumentAndNoDocumentShowNothing) {
    for (const std::shared_ptr<const PDFDocument>& document :
         {std::shared_ptr<const PDFDocument>(), std::shared_ptr<const PDFDocument>(new PDFDocument)}) {
        PDFKitView view(document, pdfs);
        show(view);
        EXPECT_EQ(view.pdfView()->pageCount(), 0);
        EXPECT_EQ(view.pdfView()->verticalScrollBar()->maximum(), 0);
        const QImage image = view.grab().toImage();
        EXPECT_EQ(image.pixelColor(20, 20), image.pixelColor(image.width() / 2, image.height() / 2));
    }
}

TEST(PDFKitView, BytesThatAreNoPDFShowNothing) {
    PDFKitView view(std::make_shared<PDFDocument>("not a PDF", QStringList()), pdfs);
    show(view);
    EXPECT_EQ(view.pdfView()->verticalScrollBar()->maximum(), 0);
}

TEST(PDFKitView, AnUpdateShowsTheOtherDocumentFromItsBeginning) {
    PDFKitView view(documentOf({Qt::red, Qt::green}), pdfs);
    show(view);
    ASSERT_TRUE(shows(view, Qt::red));
    QScrollBar* bar = view.pdfView()->verticalScrollBar();
    bar->setValue(bar->maximum());
    view.setPDFDocument(documentOf({Qt::blue, Qt::yellow}));
    EXPECT_TRUE(shows(view, Qt::blue));
    EXPECT_EQ(bar->value(), 0);
    view.setPDFDocument(nullptr);
    EXPECT_FALSE(middle(view) == QColor(Qt::blue));
}

TEST(PDFKitView, AnUpdateWithTheDocumentThatIsShownKeepsThePlace) {
    const std::shared_ptr<const PDFDocument> document = documentOf({Qt::red, Qt::green});
    PDFKitView view(document, pdfs);
    show(view);
    ASSERT_TRUE(shows(view, Qt::red));
    view.pdfView()->verticalScrollBar()->setValue(100);
    view.setPDFDocument(document);
    EXPECT_EQ(view.pdfView()->verticalScrollBar()->value(), 100);
    EXPECT_EQ(view.pdfDocument(), document);
}

TEST(PDFKitView, ADocumentOutlivesWhoeverGaveIt) {
    std::shared_ptr<const PDFDocument> document = documentOf({Qt::red});
    PDFKitView view(document, pdfs);
    document.reset();
    show(view);
    EXPECT_TRUE(shows(view, Qt::red));
}

TEST(PDFKitView, ThePagesOfBytesThatAreNoPDFAreUnavailable) {
    PDFKitView view(std::make_shared<PDFDocument>("not a PDF", QStringList{u"Uno"_s}), pdfs);
    show(view);
    EXPECT_TRUE(test::waitUntil([&] { return view.pdfView()->pageState(0) == PDFView::PageState::Unavailable; }));
}

TEST(PDFKitView, AMissingReaderMakesThePagesUnavailable) {
    const ProcessPDFOpener missing(u"/nonexistent/reader"_s);
    PDFKitView view(documentOf({Qt::red}), missing);
    show(view);
    EXPECT_TRUE(test::waitUntil([&] { return view.pdfView()->pageState(0) == PDFView::PageState::Unavailable; }));
}

TEST(PDFKitView, ClosingItWhileAPageHangsReturnsAtOnce) {
    const test::FakeReader fake("echo $$ >\"$(dirname \"$0\")/pid\"; exec sleep 60");
    const ProcessPDFOpener hanging(fake.path());
    auto view = std::make_unique<PDFKitView>(documentOf({Qt::red}), hanging);
    show(*view);
    ASSERT_TRUE(test::waitUntil([&] { return test::contentOf(fake.file(u"pid"_s)).endsWith('\n'); }));
    QElapsedTimer clock;
    clock.start();
    view.reset();
    EXPECT_LT(clock.elapsed(), 1'000);
    const pid_t process = test::contentOf(fake.file(u"pid"_s)).trimmed().toInt();
    EXPECT_TRUE(test::waitUntil([&] { return !test::isRunning(process); }));
}

TEST(PDFKitView, CanBeDestroyedWhileItDraws) {
    const std::shared_ptr<const PDFDocument> document = documentOf(QList<QColor>(20, Qt::red));
    for (int i = 0; i < 10; ++i) {
        PDFKitView view(document, pdfs);
        show(view);
        view.grab();
    }
}

} // namespace dorvantel
