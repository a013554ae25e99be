// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT

// What is slow shows that it goes on, and what changes does not make the eye jump.
#include "app/DropOverlay.h"
#include "tests/app/ContentViewFixture.h"
#include "tests/support/CapturedOutput.h"
#include "ui/Spinner.h"

#include <QGraphicsOpacityEffect>
#include <QProxyStyle>
#include <QPushButton>
#include <QScrollBar>

namespace dorvantel::test {

namespace {

class WithoutAnimations final : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        return hint == SH_Widget_Animation_Duration ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

} // namespace

class SignsOfLife : public ContentViewTest {
protected:
    Spinner* spinner(const QString& name) { return window.findChild<Spinner*>(name); }
    void loadMany(int count) {
        std::vector<DBRecordPointer> many;
        for (int i = 0; i < count; ++i) {
            many.push_back(candidate(u"Candidata %1"_s.arg(i), u"c%1@example.com"_s.arg(i)));
        }
        load(std::move(many));
    }
};

TEST_F(SignsOfLife, TheListShowsThatItIsLoadedUntilItIs) {
    ASSERT_TRUE(waitUntil([&] { return spinner(u"loadingCandidates"_s)->isVisible(); }));
    loadThree();
    ASSERT_TRUE(waitUntil([&] { return !window.model().isLoading(); }));
    EXPECT_FALSE(spinner(u"loadingCandidates"_s)->isVisible());
}

TEST_F(SignsOfLife, AListThatCannotBeLoadedIsNotWaitedFor) {
    const CapturedOutput silence;
    ASSERT_TRUE(waitUntil([&] { return spinner(u"loadingCandidates"_s)->isVisible(); }));
    records.answerFetchAll(std::unexpected(APIError::responseProblem));
    EXPECT_FALSE(spinner(u"loadingCandidates"_s)->isVisible());
}

TEST_F(SignsOfLife, ASearchShowsThatItIsUnderWayUntilItFails) {
    const CapturedOutput silence;
    loadThree();
    click(0);
    QTest::mouseClick(detail()->findChild<QPushButton*>(u"searchButton"_s), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return spinner(u"searching"_s)->isVisible(); }));
    records.answerSearch(std::unexpected(APIError::responseProblem));
    EXPECT_FALSE(spinner(u"searching"_s)->isVisible());
}

TEST_F(SignsOfLife, OfTwoSearchesTheSecondIsStillShownWhenTheFirstIsAnswered) {
    loadThree();
    click(0);
    auto* button = detail()->findChild<QPushButton*>(u"searchButton"_s);
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return spinner(u"searching"_s)->isVisible(); }));
    records.answerSearch(std::make_shared<IdentifiableSearchResponse>(SearchResponse{}));
    EXPECT_TRUE(spinner(u"searching"_s)->isVisible());
    records.answerSearch(std::make_shared<IdentifiableSearchResponse>(SearchResponse{}));
    EXPECT_FALSE(spinner(u"searching"_s)->isVisible());
}

TEST_F(SignsOfLife, TheOverlayIsThereAtOnceOnADesktopWithoutAnimations) {
    WithoutAnimations style;
    auto* overlay = window.findChild<DropOverlay*>();
    overlay->setStyle(&style);
    overlay->setTargeted(true);
    EXPECT_EQ(static_cast<QGraphicsOpacityEffect*>(overlay->graphicsEffect())->opacity(), 1);
    overlay->setTargeted(false);
    EXPECT_FALSE(overlay->isVisible());
}

TEST_F(SignsOfLife, TheListStaysWhereItIsWhenACandidateIsAdded) {
    loadMany(100);
    click(row(3));
    list->verticalScrollBar()->setValue(500);
    const DBRecordPointer selected = window.model().selectedDBRecord();
    window.model().appendRecord(candidate(u"Nueva"_s, u"nueva@example.com"_s));
    EXPECT_EQ(list->verticalScrollBar()->value(), 500);
    EXPECT_EQ(window.model().selectedDBRecord(), selected);
    EXPECT_TRUE(list->selectionModel()->isRowSelected(row(3)));
}

TEST_F(SignsOfLife, TheListStaysWhereItIsWhenACandidateIsDeleted) {
    loadMany(100);
    list->verticalScrollBar()->setValue(500);
    const int top = list->indexAt({20, 20}).row();
    const QModelIndex chosen = list->indexAt({20, list->viewport()->height() / 2});
    list->setCurrentIndex(chosen);
    window.model().removeSelectedRecord();
    EXPECT_EQ(list->verticalScrollBar()->value(), 500);
    EXPECT_EQ(list->indexAt({20, 20}).row(), top);
    EXPECT_TRUE(list->selectionModel()->selectedIndexes().isEmpty());
}

} // namespace dorvantel::test
