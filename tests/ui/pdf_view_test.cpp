// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/support/FakePDFPageRenderer.h"
#include "tests/support/Print.h"
#include "tests/support/Wait.h"
#include "ui/PDFView.h"
#include "ui/Style.h"

#include <QAccessible>
#include <QPointer>
#include <QScrollBar>
#include <QTest>

#include <gmock/gmock.h>

namespace dorvantel {

using namespace Qt::StringLiterals;
using test::FakePDFPageRenderer;
using testing::ElementsAre;
using enum PDFView::PageState;

namespace {

class PDFViewTest : public testing::Test {
protected:
    /// 300 × 200 pixels: a page of A4 is about twice as high as the view.
    PDFViewTest() { view.resize(300, 200); }

    void give(int pageCount) {
        auto made = std::make_unique<FakePDFPageRenderer>();
        renderer = made.get();
        view.setDocument(pageCount, std::move(made));
    }
    void show(int pageCount, QSizeF size = usualPageSize) {
        give(pageCount);
        view.show();
        renderer->succeedOpening(QList<QSizeF>(pageCount, size));
    }
    void answerAll(const QColor& colour = Qt::red) {
        while (renderer->request) {
            renderer->succeed(colour);
        }
    }
    QScrollBar& bar() { return *view.verticalScrollBar(); }
    QImage picture() { return view.viewport()->grab().toImage(); }
    QColor middle() { return picture().pixelColor(view.viewport()->rect().center()); }

    PDFView view;
    QPointer<FakePDFPageRenderer> renderer;
};

} // namespace

TEST_F(PDFViewTest, OpensTheDocumentWhenItIsFirstShown) {
    give(2);
    EXPECT_EQ(renderer->openings, 0);
    view.show();
    EXPECT_EQ(renderer->openings, 1);
    view.hide();
    view.show();
    EXPECT_EQ(renderer->openings, 1);
    EXPECT_TRUE(renderer->pages.isEmpty()) << "its pages are not known yet";
}

TEST_F(PDFViewTest, ADocumentThatIsBeingOpenedIsAlreadyThereAsBlankPages) {
    give(3);
    view.show();
    EXPECT_EQ(view.pageCount(), 3);
    EXPECT_GT(bar().maximum(), 0);
    EXPECT_EQ(picture().pixelColor(20, 20), QColor(Qt::white));
}

TEST_F(PDFViewTest, PagesAreAskedForAsLargeAsTheyAreSeen) {
    show(1);
    ASSERT_TRUE(renderer->request);
    const int width = view.viewport()->width() - 2 * PDFPageLayout::gap;
    EXPECT_EQ(renderer->request->pixels, QSize(width, qRound(width * 842.0 / 595)));
}

TEST_F(PDFViewTest, OnlyPagesInSightAndTheirNeighboursAreAskedFor) {
    show(10);
    answerAll();
    EXPECT_THAT(renderer->pages, ElementsAre(0, 1));
    EXPECT_EQ(view.pagesInSight(), (PDFPageLayout::Span{0, 1}));
    bar().setValue(bar().maximum() / 2);
    const PDFPageLayout::Span inSight = view.pagesInSight();
    answerAll();
    EXPECT_EQ(renderer->pages[2], inSight.first);
    for (const int page : renderer->pages.sliced(2)) {
        EXPECT_TRUE(page >= inSight.first - 1 && page <= inSight.end) << page;
    }
    EXPECT_EQ(view.pageState(8), Waiting);
}

TEST_F(PDFViewTest, TheScrollRangeCoversAllPages) {
    show(4);
    answerAll();
    const int pageHeight = qRound((view.viewport()->width() - 2 * PDFPageLayout::gap) * 842.0 / 595);
    EXPECT_EQ(bar().maximum(), 4 * pageHeight + 5 * PDFPageLayout::gap - view.viewport()->height());
    bar().setValue(bar().maximum());
    EXPECT_EQ(view.pagesInSight(), (PDFPageLayout::Span{3, 4}));
    EXPECT_EQ(renderer->request->page, 3);
    EXPECT_EQ(view.horizontalScrollBar()->maximum(), 0);
}

TEST_F(PDFViewTest, APageThatIsLeftBeforeItsTurnIsNeverDrawn) {
    show(100);
    // The first page is being drawn while the reader runs through the document.
    for (int page = 1; page < 60; ++page) {
        bar().setValue(bar().maximum() * page / 60);
    }
    bar().setValue(bar().maximum());
    answerAll();
    EXPECT_THAT(renderer->pages, ElementsAre(0, 99, 98));
}

TEST_F(PDFViewTest, APageOutOfSightIsGivenUpWhenItKeepsOneInSightWaiting) {
    show(10);
    ASSERT_EQ(renderer->request->page, 0);
    bar().setValue(bar().maximum());
    ASSERT_TRUE(test::waitUntil([this] { return renderer->givenUp == 1; }));
    EXPECT_EQ(renderer->request->page, 9);
    renderer->succeed(Qt::red);
    EXPECT_EQ(view.pageState(0), Waiting) << "given up is not unavailable";
    bar().setValue(0);
    answerAll(Qt::blue);
    EXPECT_EQ(view.pageState(0), Drawn);
}

TEST_F(PDFViewTest, APageInSightIsWaitedFor) {
    show(10);
    ASSERT_EQ(renderer->request->page, 0);
    bar().setValue(50);
    QTimer patience;
    patience.setSingleShot(true);
    patience.start(600);
    ASSERT_TRUE(test::waitUntil([&patience] { return !patience.isActive(); }));
    EXPECT_EQ(renderer->givenUp, 0);
    EXPECT_EQ(renderer->request->page, 0);
}

TEST_F(PDFViewTest, APageNotDrawnYetIsABlankSheetWithItsNumber) {
    show(1);
    const QImage waiting = picture();
    EXPECT_EQ(waiting.pixelColor(20, 20), QColor(Qt::white));
    renderer->succeed(Qt::white);
    EXPECT_NE(picture(), waiting);
    EXPECT_EQ(view.pageState(0), Drawn);
}

TEST_F(PDFViewTest, APageThatCannotBeDrawnSaysSoAndIsNotAskedForAgain) {
    show(2);
    const QImage waiting = picture();
    renderer->fail();
    EXPECT_EQ(view.pageState(0), Unavailable);
    EXPECT_NE(picture(), waiting);
    answerAll();
    EXPECT_EQ(view.pageState(1), Drawn) << "the others are there";
    view.resize(400, 200);
    answerAll();
    EXPECT_EQ(renderer->pages.count(0), 1);
}

TEST_F(PDFViewTest, ADocumentThatDoesNotOpenHasNoPageAvailable) {
    give(3);
    view.show();
    renderer->failOpening();
    EXPECT_EQ(view.pageState(0), Unavailable);
    EXPECT_EQ(view.pageState(2), Unavailable);
    EXPECT_TRUE(renderer->pages.isEmpty());
}

TEST_F(PDFViewTest, AnotherNumberOfPagesThanTheDocumentHasIsNotBelieved) {
    give(3);
    view.show();
    renderer->succeedOpening(QList<QSizeF>(1'000'000, usualPageSize));
    EXPECT_EQ(view.pageCount(), 3);
    EXPECT_EQ(view.pageState(0), Unavailable);
}

TEST_F(PDFViewTest, APageOfAbsurdSizeIsUnavailableAndTheOthersAreThere) {
    give(2);
    view.show();
    renderer->succeedOpening({QSizeF(1, 1e9), usualPageSize});
    answerAll();
    EXPECT_EQ(view.pageState(0), Unavailable);
    EXPECT_THAT(renderer->pages, ElementsAre(1));
    EXPECT_LT(bar().maximum(), 2'000);
}

TEST_F(PDFViewTest, AHugePageIsAskedForInTheSizeOfTheScreen) {
    show(1, {35'000, 35'000});
    EXPECT_EQ(renderer->request->pixels.width(), view.viewport()->width() - 2 * PDFPageLayout::gap);
    EXPECT_EQ(renderer->request->pixels.width(), renderer->request->pixels.height());
}

TEST_F(PDFViewTest, NoImageHasMorePixelsThanTheBound) {
    view.resize(6'000, 4'000);
    show(3);
    const QSize pixels = renderer->request->pixels;
    EXPECT_LE(qint64(pixels.width()) * pixels.height(), PDFView::mostImagePixels);
    answerAll();
    EXPECT_LE(renderer->pages.size(), 3) << "no page is drawn twice";
}

TEST_F(PDFViewTest, ManyLargePagesInSightAreDrawnOnceEachWithinTheBound) {
    view.resize(7'000, 4'000);
    show(30, {700, 100});
    for (int drawn = 0; renderer->request && drawn < 100; ++drawn) {
        renderer->succeed(Qt::red);
    }
    EXPECT_FALSE(renderer->request) << "it comes to an end";
    EXPECT_LE(renderer->pages.size(), 10);
}

TEST_F(PDFViewTest, FollowsTheSizeOfItsWindow) {
    show(3);
    answerAll();
    const int narrow = bar().maximum();
    view.resize(600, 200);
    EXPECT_GT(bar().maximum(), 2 * narrow - 200);
    EXPECT_EQ(middle(), QColor(Qt::red)) << "the image of before, until the new one is there";
    ASSERT_TRUE(renderer->request);
    EXPECT_EQ(renderer->request->pixels.width(), view.viewport()->width() - 2 * PDFPageLayout::gap);
    answerAll(Qt::blue);
    EXPECT_EQ(middle(), QColor(Qt::blue));
}

TEST_F(PDFViewTest, StaysAtItsPlaceInThePagesWhenTheWidthChanges) {
    show(9);
    bar().setValue(bar().maximum() / 2);
    const int page = view.pagesInSight().first;
    view.resize(800, 200);
    EXPECT_EQ(view.pagesInSight().first, page);
    view.resize(300, 200);
    EXPECT_EQ(view.pagesInSight().first, page);
}

TEST_F(PDFViewTest, TheKeyboardScrolls) {
    show(9);
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_Down);
    const int line = bar().value();
    EXPECT_GT(line, 0);
    QTest::keyClick(&view, Qt::Key_Up);
    EXPECT_EQ(bar().value(), 0);
    QTest::keyClick(&view, Qt::Key_PageDown);
    EXPECT_GT(bar().value(), line);
    EXPECT_LT(bar().value(), view.viewport()->height()) << "a line stays in sight";
    QTest::keyClick(&view, Qt::Key_PageUp);
    EXPECT_EQ(bar().value(), 0);
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(bar().value(), bar().maximum());
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_EQ(bar().value(), 0);
}

TEST_F(PDFViewTest, AnotherDocumentStartsAfreshAndTheOldRendererGoes) {
    show(9);
    answerAll();
    bar().setValue(bar().maximum());
    ASSERT_TRUE(renderer->request);
    const QPointer<FakePDFPageRenderer> old = renderer;
    give(2);
    EXPECT_FALSE(old);
    EXPECT_EQ(bar().value(), 0);
    EXPECT_EQ(view.pageState(0), Waiting);
    EXPECT_EQ(renderer->openings, 1);
    renderer->succeedOpening(QList<QSizeF>(2, usualPageSize));
    answerAll(Qt::blue);
    EXPECT_EQ(middle(), QColor(Qt::blue));
}

TEST_F(PDFViewTest, ADocumentThatIsGivenUpOnLeavesNoTimerBehind) {
    show(10);
    bar().setValue(bar().maximum()); // page 1 is now in the way
    view.setDocument(0, nullptr);
    QTimer patience;
    patience.setSingleShot(true);
    patience.start(600);
    EXPECT_TRUE(test::waitUntil([&patience] { return !patience.isActive(); }));
    EXPECT_EQ(view.pageCount(), 0);
}

TEST_F(PDFViewTest, NoDocumentShowsNothing) {
    view.show();
    view.setDocument(0, nullptr);
    EXPECT_EQ(bar().maximum(), 0);
    const QImage image = picture();
    EXPECT_EQ(image.pixelColor(20, 20), image.pixelColor(image.width() / 2, image.height() / 2));
}

TEST_F(PDFViewTest, WhileItIsHiddenNothingIsDrawn) {
    show(9);
    view.hide();
    renderer->succeed(Qt::red);
    EXPECT_FALSE(renderer->request);
    bar().setValue(bar().maximum());
    EXPECT_FALSE(renderer->request);
    view.show();
    EXPECT_EQ(renderer->request->page, 8);
}

TEST_F(PDFViewTest, AScreenReaderMeetsADocumentWithItsNumberOfPages) {
    show(3);
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&view);
    ASSERT_TRUE(accessible);
    EXPECT_EQ(accessible->role(), QAccessible::Document);
    EXPECT_EQ(accessible->text(QAccessible::Name), u"Documento PDF, 3 páginas"_s);
    give(1);
    EXPECT_EQ(accessible->text(QAccessible::Name), u"Documento PDF, 1 página"_s);
}

TEST_F(PDFViewTest, PaperStaysWhiteInADarkDesktop) {
    view.setPalette(darkPalette());
    show(1);
    renderer->succeed(Qt::white);
    const QImage image = picture();
    EXPECT_EQ(image.pixelColor(image.rect().center()), QColor(Qt::white));
    EXPECT_LT(image.pixelColor(2, 2).lightness(), 60);
}

} // namespace dorvantel
