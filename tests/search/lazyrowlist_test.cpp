// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/LazyRowList.h"

#include "tests/support/Wait.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::waitUntil;

constexpr int usual = 50;

/// A row that can be opened, with two buttons.
class TestRow final : public LazyRow {
public:
    TestRow(qsizetype rowIndex, QWidget* parent)
        : LazyRow(parent)
        , index(rowIndex) {
        setFocusPolicy(Qt::StrongFocus);
        auto* line = new QHBoxLayout(this);
        line->addWidget(first);
        line->addWidget(second);
    }

    bool holdsState() const override { return open; }
    int heightForWidth(int width) const override { return open ? (width < 300 ? 400 : 300) : usual; }
    void setOpen(bool isOpen) {
        open = isOpen;
        Q_EMIT heightChanged();
    }

    qsizetype index;
    bool open = false;
    QPushButton* first = new QPushButton;
    QPushButton* second = new QPushButton;
};

class LazyRowListTest : public testing::Test {
protected:
    void SetUp() override {
        auto* column = new QVBoxLayout(&window);
        column->addWidget(before);
        column->addWidget(list);
        column->addWidget(after);
        window.resize(500, 400);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void fill(qsizetype count) {
        list->setRows(count, usual, [this](qsizetype index, QWidget* parent) {
            ++made;
            return new TestRow(index, parent);
        });
    }
    TestRow* row(qsizetype index) { return static_cast<TestRow*>(list->row(index)); }
    void scrollTo(int y) { list->verticalScrollBar()->setValue(y); }
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }

    QWidget window;
    QPushButton* before = new QPushButton;
    LazyRowList* list = new LazyRowList;
    QPushButton* after = new QPushButton;
    int made = 0;
};

TEST_F(LazyRowListTest, OnlyRowsInViewAreMade) {
    fill(10'000);
    EXPECT_LE(list->madeRows(), list->viewport()->height() / usual + 2);
    EXPECT_GE(list->madeRows(), list->viewport()->height() / usual);
    EXPECT_EQ(row(0)->geometry(), QRect(0, 0, list->viewport()->width(), usual));
    EXPECT_EQ(row(1)->y(), usual);
    EXPECT_EQ(list->verticalScrollBar()->maximum(), 10'000 * usual - list->viewport()->height());
}

TEST_F(LazyRowListTest, RowsThatScrollAwayAreDestroyedAndMadeAnew) {
    fill(10'000);
    const QPointer<TestRow> first = row(0);
    scrollTo(5'000 * usual);
    EXPECT_EQ(list->row(0), nullptr);
    EXPECT_EQ(row(5'000)->index, 5'000);
    EXPECT_EQ(row(5'000)->y(), 0);
    EXPECT_TRUE(waitUntil([&] { return !first; }));
    EXPECT_LE(list->madeRows(), list->viewport()->height() / usual + 2);
    scrollTo(0);
    EXPECT_EQ(row(0)->index, 0);
}

TEST_F(LazyRowListTest, NoRowIsMadeForTheWayBetween) {
    fill(10'000);
    const int madeBefore = made;
    scrollTo(9'000 * usual);
    EXPECT_LE(made - madeBefore, list->viewport()->height() / usual + 2);
}

TEST_F(LazyRowListTest, AnOpenedRowMovesTheOthersAndKeepsItsStateWhileScrolledAway) {
    fill(10'000);
    const QPointer<TestRow> opened = row(1);
    opened->setOpen(true);
    EXPECT_EQ(opened->height(), 300);
    EXPECT_EQ(list->verticalScrollBar()->maximum(), 9'999 * usual + 300 - list->viewport()->height());
    scrollTo(9'000 * usual);
    EXPECT_EQ(list->row(1), opened);
    EXPECT_FALSE(opened->isVisible());
    scrollTo(0);
    EXPECT_TRUE(opened->isVisible());
    EXPECT_EQ(opened->geometry(), QRect(0, usual, list->viewport()->width(), 300));
}

TEST_F(LazyRowListTest, ARowThatIsClosedAgainIsDestroyedLikeAnyOther) {
    fill(100);
    const QPointer<TestRow> row1 = row(1);
    row1->setOpen(true);
    row1->setOpen(false);
    EXPECT_EQ(row(2)->y(), row(1)->y() + usual);
    scrollTo(50 * usual);
    EXPECT_TRUE(waitUntil([&] { return !row1; }));
}

TEST_F(LazyRowListTest, ARowThatOpensAtTheBottomComesIntoView) {
    fill(100);
    const qsizetype last = list->madeRows() - 1;
    row(last)->setOpen(true);
    EXPECT_GE(row(last)->y(), 0);
    EXPECT_LE(row(last)->geometry().bottom(), list->viewport()->height());
}

TEST_F(LazyRowListTest, AnotherWidthMeasuresOpenRowsAnewAndKeepsWhatIsRead) {
    fill(1'000);
    row(0)->setOpen(true);
    scrollTo(300 + 99 * usual + 20);
    ASSERT_EQ(row(100)->y(), -20);
    window.resize(250, 400);
    ASSERT_LT(list->viewport()->width(), 300);
    EXPECT_EQ(row(0)->open, true);
    EXPECT_EQ(list->verticalScrollBar()->value(), 400 + 99 * usual + 20);
    EXPECT_EQ(row(100)->y(), -20);
}

TEST_F(LazyRowListTest, NewRowsReplaceAllAndBeginAtTheTop) {
    fill(1'000);
    const QPointer<TestRow> opened = row(0);
    opened->setOpen(true);
    scrollTo(20'000);
    fill(3);
    EXPECT_EQ(list->verticalScrollBar()->value(), 0);
    EXPECT_EQ(list->verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(list->madeRows(), 3);
    EXPECT_NE(list->row(0), opened);
    EXPECT_FALSE(row(0)->open);
    EXPECT_TRUE(waitUntil([&] { return !opened; }));
    fill(0);
    EXPECT_EQ(list->madeRows(), 0);
}

TEST_F(LazyRowListTest, AnEmptyListTakesKeysAndSizesWithoutHarm) {
    fill(1'000);
    scrollTo(500 * usual);
    fill(0);
    EXPECT_EQ(list->verticalScrollBar()->maximum(), 0);
    list->setFocus();
    press(Qt::Key_Down);
    press(Qt::Key_End);
    EXPECT_TRUE(list->hasFocus());
    window.resize(300, 300);
    EXPECT_EQ(list->verticalScrollBar()->maximum(), 0);
}

TEST_F(LazyRowListTest, ArrowsGoFromRowToRowAndScroll) {
    fill(1'000);
    row(0)->setFocus();
    press(Qt::Key_Up);
    EXPECT_TRUE(row(0)->hasFocus());
    for (int i = 1; i <= 20; ++i) {
        press(Qt::Key_Down);
        ASSERT_TRUE(row(i) && row(i)->hasFocus());
        ASSERT_GE(row(i)->y(), 0);
        ASSERT_LE(row(i)->geometry().bottom(), list->viewport()->height());
    }
    press(Qt::Key_Up);
    EXPECT_TRUE(row(19)->hasFocus());
}

TEST_F(LazyRowListTest, HomeEndAndPagesGoFurther) {
    fill(1'000);
    row(0)->setFocus();
    press(Qt::Key_End);
    EXPECT_TRUE(row(999)->hasFocus());
    press(Qt::Key_Down);
    EXPECT_TRUE(row(999)->hasFocus());
    press(Qt::Key_Home);
    EXPECT_TRUE(row(0)->hasFocus());
    const int page = list->viewport()->height() / usual;
    press(Qt::Key_PageDown);
    EXPECT_TRUE(row(page)->hasFocus());
    press(Qt::Key_PageUp);
    EXPECT_TRUE(row(0)->hasFocus());
}

TEST_F(LazyRowListTest, TheRowWithTheFocusSurvivesScrolling) {
    fill(1'000);
    row(2)->first->setFocus();
    const QPointer<TestRow> focused = row(2);
    scrollTo(500 * usual);
    EXPECT_TRUE(focused->first->hasFocus());
    press(Qt::Key_Tab);
    EXPECT_TRUE(focused->second->hasFocus());
}

TEST_F(LazyRowListTest, TabEntersAtTheFirstRowInViewWalksThroughItAndLeaves) {
    fill(1'000);
    scrollTo(100 * usual);
    before->setFocus();
    press(Qt::Key_Tab);
    EXPECT_TRUE(row(100)->hasFocus());
    press(Qt::Key_Tab);
    EXPECT_TRUE(row(100)->first->hasFocus());
    press(Qt::Key_Tab);
    EXPECT_TRUE(row(100)->second->hasFocus());
    press(Qt::Key_Tab);
    EXPECT_TRUE(after->hasFocus());
}

TEST_F(LazyRowListTest, BacktabWalksThroughTheCurrentRowAndLeaves) {
    fill(1'000);
    row(3)->second->setFocus();
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(row(3)->first->hasFocus());
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(row(3)->hasFocus());
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(before->hasFocus());
}

} // namespace
} // namespace dorvantel
