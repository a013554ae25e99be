// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TagView.h"

#include "ui/Style.h"

#include <QAccessible>
#include <QPushButton>
#include <QTest>

#include <cstdlib>

#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

QList<TagViewItem> items(const QStringList& titles) {
    QList<TagViewItem> tags;
    for (const QString& title : titles) {
        tags.append({title, false});
    }
    return tags;
}

QList<QPushButton*> chips(const TagView& view) {
    return view.findChildren<QPushButton*>();
}

TEST(TagLayout, NoChipsMeasureNothing) {
    const TagLayout layout = layOutTags({}, {}, 100);
    EXPECT_TRUE(layout.places.isEmpty());
    EXPECT_EQ(layout.totalHeight, 0);
}

TEST(TagLayout, ChipsStandSideBySideWhileTheyFit) {
    const TagLayout layout = layOutTags({u"a"_s, u"b"_s, u"c"_s}, {{30, 20}, {40, 20}, {30, 20}}, 100);
    EXPECT_EQ(layout.places, (QList<QPoint>{{0, 0}, {30, 0}, {70, 0}}));
    EXPECT_EQ(layout.totalHeight, 20);
}

TEST(TagLayout, ChipThatDoesNotFitBeginsANewLine) {
    const TagLayout layout = layOutTags({u"a"_s, u"b"_s, u"c"_s, u"d"_s}, {{60, 20}, {41, 20}, {59, 20}, {1, 20}}, 100);
    EXPECT_EQ(layout.places, (QList<QPoint>{{0, 0}, {0, 20}, {41, 20}, {0, 40}}));
    EXPECT_EQ(layout.totalHeight, 60);
}

TEST(TagLayout, NewLineIsAsFarDownAsTheChipThatBeginsItIsHigh) {
    const TagLayout layout = layOutTags({u"a"_s, u"b"_s}, {{60, 20}, {60, 50}}, 100);
    EXPECT_EQ(layout.places, (QList<QPoint>{{0, 0}, {0, 50}}));
    EXPECT_EQ(layout.totalHeight, 100);
}

TEST(TagLayout, ChipWiderThanTheViewStandsAloneOnItsLine) {
    const TagLayout layout = layOutTags({u"a"_s, u"b"_s, u"c"_s}, {{30, 20}, {200, 20}, {30, 20}}, 100);
    EXPECT_EQ(layout.places, (QList<QPoint>{{0, 0}, {0, 20}, {0, 40}}));
    EXPECT_EQ(layout.totalHeight, 60);
}

TEST(TagLayout, FirstChipWiderThanTheViewLeavesNoEmptyLine) {
    EXPECT_EQ(layOutTags({u"a"_s}, {{200, 20}}, 100).places, QList<QPoint>{QPoint()});
    EXPECT_EQ(layOutTags({u"a"_s}, {{200, 20}}, 100).totalHeight, 20);
    const TagLayout layout = layOutTags({u"a"_s, u"b"_s}, {{200, 20}, {30, 20}}, 100);
    EXPECT_EQ(layout.places, (QList<QPoint>{{0, 0}, {0, 20}}));
    EXPECT_EQ(layout.totalHeight, 40);
}

TEST(TagLayout, ChipWithTheLastTitleResetsBothOffsets) {
    const TagLayout layout =
        layOutTags({u"a"_s, u"z"_s, u"b"_s, u"c"_s, u"z"_s}, {{60, 20}, {60, 20}, {50, 20}, {60, 20}, {30, 20}}, 100);
    // "z" ends the second line and sends "b" back to the first one, over "a"; "c" wraps from there.
    EXPECT_EQ(layout.places, (QList<QPoint>{{0, 0}, {0, 20}, {0, 0}, {0, 20}, {60, 20}}));
    EXPECT_EQ(layout.totalHeight, 40);
}

TEST(TagLayout, TitlesAreComparedExactly) {
    const TagLayout layout = layOutTags({u"Z"_s, u"z "_s, u"z"_s}, {{30, 20}, {30, 20}, {30, 20}}, 100);
    EXPECT_EQ(layout.places, (QList<QPoint>{{0, 0}, {30, 0}, {60, 0}}));
}

TEST(TagLayout, EqualTitlesAllLieOverEachOther) {
    const TagLayout layout = layOutTags({u"z"_s, u"z"_s, u"z"_s}, {{30, 20}, {30, 20}, {30, 20}}, 100);
    EXPECT_EQ(layout.places, (QList<QPoint>{{0, 0}, {0, 0}, {0, 0}}));
    EXPECT_EQ(layout.totalHeight, 20);
}

TEST(TagView, WithoutTagsItHasNoHeightAndNoChips) {
    const TagView view({});
    EXPECT_EQ(view.totalHeight(), 0);
    EXPECT_EQ(view.heightForWidth(300), 0);
    EXPECT_TRUE(chips(view).isEmpty());
}

TEST(TagView, ChipsWrapAndTheViewIsAsHighAsTheirLines) {
    TagView view(items({u"Contabilidad"_s, u"Excel"_s, u"Nóminas"_s}));
    const int line = chips(view)[0]->sizeHint().height() + 8;
    EXPECT_EQ(view.heightForWidth(2000), line);
    EXPECT_EQ(view.sizeHint().height(), line);
    EXPECT_EQ(view.heightForWidth(chips(view)[0]->sizeHint().width() + 8), 3 * line);
    view.resize(2000, line);
    view.show();
    EXPECT_EQ(view.totalHeight(), line);
    EXPECT_EQ(chips(view)[0]->pos(), QPoint(4, 4));
    EXPECT_EQ(chips(view)[1]->x(), chips(view)[0]->geometry().right() + 1 + 8);
}

TEST(TagView, ChipWiderThanTheViewIsElidedAndTellsItsTitle) {
    const QString title = u"Administración de sistemas "_s.repeated(400);
    TagView view(items({title}));
    view.resize(200, view.heightForWidth(200));
    view.show();
    EXPECT_EQ(chips(view)[0]->geometry().right(), 200 - 4 - 1);
    EXPECT_EQ(chips(view)[0]->toolTip(), title);
    EXPECT_FALSE(view.grab().isNull());
}

TEST(TagView, AClickTogglesTheChipAtItsPosition) {
    TagView view(items({u"Excel"_s, u"Word"_s, u"Access"_s}));
    view.resize(view.sizeHint());
    QTest::mouseClick(chips(view)[1], Qt::LeftButton);
    EXPECT_EQ(view.tags(), (QList<TagViewItem>{{u"Excel"_s, false}, {u"Word"_s, true}, {u"Access"_s, false}}));
    QTest::mouseClick(chips(view)[1], Qt::LeftButton);
    EXPECT_EQ(view.tags(), items({u"Excel"_s, u"Word"_s, u"Access"_s}));
}

TEST(TagView, OfTwoChipsWithOneTitleOnlyTheClickedOneIsToggled) {
    TagView view(items({u"Excel"_s, u"Word"_s, u"Excel"_s}));
    view.resize(view.sizeHint());
    QTest::mouseClick(chips(view)[0], Qt::LeftButton);
    EXPECT_TRUE(view.tags()[0].isSelected);
    EXPECT_FALSE(view.tags()[2].isSelected);
}

TEST(TagView, ItemsThatComeSelectedAreShownSelected) {
    const TagView view({{u"Excel"_s, true}, {u"Word"_s, false}});
    EXPECT_TRUE(chips(view)[0]->isChecked());
    EXPECT_FALSE(chips(view)[1]->isChecked());
}

TEST(TagView, EveryChipHasFourPointsAroundIt) {
    TagView view({{u"Excel"_s, false}, {u"Word"_s, false}});
    view.resize(view.sizeHint());
    view.grab();
    const QRect first = chips(view)[0]->geometry();
    const QRect second = chips(view)[1]->geometry();
    EXPECT_EQ(first.topLeft(), QPoint(4, 4));
    EXPECT_EQ(second.left() - first.right() - 1, 4 + 4);
    EXPECT_EQ(view.width() - second.right() - 1, 4);
    EXPECT_EQ(view.totalHeight() - second.bottom() - 1, 4);
}

TEST(TagView, FillsAndOutlineHaveTheirColours) {
    TagView view({{u"Excel"_s, true}, {u"Word"_s, false}});
    view.resize(view.sizeHint());
    const QImage image = view.grab().toImage();
    const auto fillOf = [&](const QPushButton* chip) {
        return image.pixelColor(chip->geometry().left() + 4, chip->geometry().center().y());
    };
    const QColor selected = fillOf(chips(view)[0]);
    const QColor unselected = fillOf(chips(view)[1]);
    const auto textOf = [&](const QPushButton* chip) {
        // The letters' own colour is the one that is farthest from the fill.
        const QColor fill = fillOf(chip);
        QColor farthest = fill;
        const auto distance = [&fill](const QColor& colour) {
            return std::abs(colour.red() - fill.red()) + std::abs(colour.green() - fill.green()) +
                   std::abs(colour.blue() - fill.blue());
        };
        const QRect inner = chip->geometry().adjusted(4, 4, -4, -4);
        for (int y = inner.top(); y <= inner.bottom(); ++y) {
            for (int x = inner.left(); x <= inner.right(); ++x) {
                farthest = distance(image.pixelColor(x, y)) > distance(farthest) ? image.pixelColor(x, y) : farthest;
            }
        }
        return farthest;
    };
    EXPECT_EQ(selected.hslHue() / 30, 4) << "green";
    EXPECT_EQ(textOf(chips(view)[0]).hslHue() / 30, 7) << "blue";
    EXPECT_EQ(unselected, QColor(colours::red));
    EXPECT_GT(textOf(chips(view)[1]).lightness(), 240) << "white";
    const QColor outline = image.pixelColor(chips(view)[1]->geometry().center().x(), chips(view)[1]->geometry().top());
    EXPECT_GT(outline.red(), 200);
    EXPECT_LT(outline.blue(), 80);
    EXPECT_GT(outline.green(), 100);
    const QColor below =
        image.pixelColor(chips(view)[1]->geometry().center().x(), chips(view)[1]->geometry().top() + 1);
    EXPECT_EQ(below, unselected) << "the outline is one line wide";
}

TEST(TagView, TitlesAreInTheFontOfACaption) {
    const TagView view(items({u"Excel"_s}));
    EXPECT_EQ(chips(view)[0]->font(), textFont(TextStyle::Caption));
}

TEST(TagView, KeyboardGoesFromChipToChipAndToggles) {
    QWidget window;
    TagView view(items({u"Excel"_s, u"Word"_s, u"Access"_s}), &window);
    view.resize(view.sizeHint());
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    chips(view)[0]->setFocus();
    const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
    press(Qt::Key_Right);
    EXPECT_TRUE(chips(view)[1]->hasFocus());
    press(Qt::Key_Space);
    EXPECT_EQ(view.tags(), (QList<TagViewItem>{{u"Excel"_s, false}, {u"Word"_s, true}, {u"Access"_s, false}}));
    press(Qt::Key_End);
    EXPECT_TRUE(chips(view)[2]->hasFocus());
    press(Qt::Key_Right);
    EXPECT_TRUE(chips(view)[2]->hasFocus());
    press(Qt::Key_Left);
    EXPECT_TRUE(chips(view)[1]->hasFocus());
    press(Qt::Key_Home);
    EXPECT_TRUE(chips(view)[0]->hasFocus());
    press(Qt::Key_Left);
    EXPECT_TRUE(chips(view)[0]->hasFocus());
}

TEST(TagView, IsOneStopForTheTabKey) {
    TagView view(items({u"Excel"_s, u"Word"_s, u"Access"_s}));
    const auto stops = [&view] {
        QStringList names;
        for (const QPushButton* chip : chips(view)) {
            if (chip->focusPolicy() & Qt::TabFocus) {
                names.append(chip->accessibleName());
            }
        }
        return names;
    };
    EXPECT_EQ(stops(), QStringList{u"Excel"_s});
    view.resize(view.sizeHint());
    QTest::mouseClick(chips(view)[2], Qt::LeftButton);
    EXPECT_EQ(stops(), QStringList{u"Access"_s});
}

TEST(TagView, ScreenReadersHearTitleAndState) {
    TagView view({{u"I+D & más"_s, true}});
    QAccessibleInterface* chip = QAccessible::queryAccessibleInterface(chips(view)[0]);
    ASSERT_TRUE(chip);
    EXPECT_EQ(chip->text(QAccessible::Name), u"I+D & más"_s);
    EXPECT_TRUE(chip->state().checkable);
    EXPECT_TRUE(chip->state().checked);
}

} // namespace
} // namespace dorvantel
