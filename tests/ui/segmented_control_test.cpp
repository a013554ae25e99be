// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/SegmentedControl.h"

#include "ui/Style.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QSignalSpy>
#include <QTest>

#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

class SegmentedControlTest : public testing::Test {
protected:
    void SetUp() override {
        control.show();
        QApplication::setActiveWindow(&control);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&control));
    }
    QAbstractButton* segment(int index) const { return control.findChildren<QAbstractButton*>()[index]; }
    static void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

    SegmentedControl control{{u"PDF"_s, u"Texto"_s, u"Correo"_s}, u"Vista"_s};
    QSignalSpy changes{&control, &SegmentedControl::currentIndexChanged};
};

TEST_F(SegmentedControlTest, FirstIsChosenAtFirst) {
    EXPECT_EQ(control.currentIndex(), 0);
    EXPECT_TRUE(segment(0)->isChecked());
    EXPECT_EQ(changes.size(), 0);
}

TEST_F(SegmentedControlTest, ClickAnywhereInASegmentChoosesItAndIsToldOnce) {
    QTest::mouseClick(segment(2), Qt::LeftButton, {}, {segment(2)->width() - 3, 3});
    EXPECT_EQ(control.currentIndex(), 2);
    EXPECT_EQ(changes, (QList<QVariantList>{{2}}));
    QTest::mouseClick(segment(2), Qt::LeftButton);
    EXPECT_EQ(changes.size(), 1);
}

TEST_F(SegmentedControlTest, ArrowKeysMoveTheChoice) {
    segment(0)->setFocus();
    press(Qt::Key_Right);
    EXPECT_EQ(control.currentIndex(), 1);
    press(Qt::Key_Right);
    EXPECT_EQ(control.currentIndex(), 2);
    press(Qt::Key_Left);
    EXPECT_EQ(control.currentIndex(), 1);
    EXPECT_TRUE(segment(1)->hasFocus());
    EXPECT_EQ(changes, (QList<QVariantList>{{1}, {2}, {1}}));
}

TEST_F(SegmentedControlTest, ScreenReadersHearWhatIsChosenAmongWhat) {
    EXPECT_EQ(control.accessibleName(), u"Vista"_s);
    QAccessibleInterface* chosen = QAccessible::queryAccessibleInterface(segment(0));
    EXPECT_EQ(chosen->role(), QAccessible::RadioButton);
    EXPECT_EQ(chosen->text(QAccessible::Name), u"PDF"_s);
    EXPECT_TRUE(chosen->state().checked);
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(segment(1))->state().checked);
}

TEST_F(SegmentedControlTest, ChosenSegmentIsSeen) {
    const QColor highlight = control.palette().color(QPalette::Highlight);
    const auto fill = [this](int index) {
        const QRect place = segment(index)->geometry();
        return control.grab().toImage().pixelColor(place.left() + 6, place.center().y());
    };
    EXPECT_EQ(fill(0), highlight);
    EXPECT_NE(fill(1), highlight);
    control.setCurrentIndex(1);
    EXPECT_NE(fill(0), highlight);
    EXPECT_EQ(fill(1), highlight);
}

} // namespace
} // namespace dorvantel
