// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/CandidateListModel.h"
#include "app/CandidateRowDelegate.h"
#include "app/Placeholder.h"
#include "tests/app/ContentViewFixture.h"
#include "tests/support/Drawn.h"
#include "ui/Figures.h"
#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QPainter>
#include <QStandardItemModel>

namespace dorvantel::test {

namespace {

/// A row of the sidebar as it is drawn.
class Row {
public:
    /// Of a candidate.
    Row(const QString& figure, const QString& name, const QString& profession) {
        auto* item = new QStandardItem(name);
        item->setData(static_cast<int>(CandidateListModel::Kind::Candidate), CandidateListModel::KindRole);
        item->setData(figure, CandidateListModel::FigureRole);
        item->setData(profession, CandidateListModel::ProfessionRole);
        m_rows.appendRow(item);
    }

    QSize size() const { return {width, m_delegate.sizeHint({}, m_rows.index(0, 0)).height()}; }
    QImage image() const {
        QImage image(size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        QStyleOptionViewItem option;
        option.rect = image.rect();
        option.palette = lightPalette();
        QPainter painter(&image);
        m_delegate.paint(&painter, option, m_rows.index(0, 0));
        return image;
    }
    /// What is not white.
    QRect ink() const {
        const QImage drawn = image();
        QRect ink;
        for (int y = 0; y < drawn.height(); ++y) {
            for (int x = 0; x < drawn.width(); ++x) {
                if (drawn.pixelColor(x, y) != QColor(Qt::white)) {
                    ink |= QRect(x, y, 1, 1);
                }
            }
        }
        return ink;
    }

private:
    static constexpr int width = 300;
    QStandardItemModel m_rows;
    CandidateRowDelegate m_delegate;
};

/// Where `text` in this font has ink, beginning at the origin.
QSize inkSize(const QFont& font, const QString& text) {
    return QFontMetrics(font).tightBoundingRect(text).size();
}

} // namespace

class SidebarTest : public ContentViewTest {
protected:
    QString figureOf(const QString& gender) {
        auto record = candidate(u"Ana"_s, u"ana@example.com"_s);
        record->jsonCVData.gender = gender;
        const int last = list->model()->rowCount();
        window.model().appendRecord(record);
        return list->model()->index(last, 0).data(CandidateListModel::FigureRole).toString();
    }
};

TEST_F(SidebarTest, OnlyTheExactWordMasculinoShowsTheManInItsRow) {
    EXPECT_EQ(figureOf(u"Masculino"_s), manFigure);
    EXPECT_EQ(figureOf(u"Femenino"_s), womanFigure);
    EXPECT_EQ(figureOf(u"masculino"_s), womanFigure);
}

TEST_F(SidebarTest, FemeninoInLowerCaseShowsTheWomanInItsRow) {
    EXPECT_EQ(figureOf(u"femenino"_s), womanFigure);
}

TEST_F(SidebarTest, KeyboardPassesOverTheHeader) {
    loadThree();
    list->setFocus();
    click(0);
    QTest::keyClick(list, Qt::Key_Down);
    ASSERT_TRUE(window.model().selectedDBRecord());
    EXPECT_EQ(window.model().selectedDBRecord()->name, u"Ana"_s);
    QTest::keyClick(list, Qt::Key_Up);
    EXPECT_FALSE(window.model().selectedDBRecord());
    EXPECT_EQ(detail()->objectName(), u"search"_s);
}

TEST_F(SidebarTest, RecordsCanBeReadWhileOneOfThemGoes) {
    loadThree();
    auto* rows = qobject_cast<CandidateListModel*>(list->model());
    QStringList names;
    QObject::connect(rows, &QAbstractItemModel::rowsAboutToBeRemoved, rows, [&] {
        for (int i = row(0); i < rows->rowCount(); ++i) {
            const DBRecordPointer record = rows->record(rows->index(i));
            names.append(record ? record->name : u"gone"_s);
        }
    });
    window.model().setSelectedDBRecord(window.model().dbRecords()[1]);
    window.model().removeSelectedRecord();
    EXPECT_EQ(names, (QStringList{u"Ana"_s, u"gone"_s, u"Carla"_s}));
    window.model().setSelectedDBRecord(window.model().dbRecords()[1]);
    window.model().removeSelectedRecord();
    EXPECT_EQ(names.sliced(3), (QStringList{u"Ana"_s, u"gone"_s}));
}

TEST_F(SidebarTest, CandidatesWithTheSameEmailHaveRowsOfTheirOwn) {
    load({candidate(u"Ana"_s, u"ana@example.com"_s), candidate(u"Ana"_s, u"ana@example.com"_s)});
    const auto* rows = qobject_cast<CandidateListModel*>(list->model());
    const auto& listed = window.model().dbRecords();
    EXPECT_EQ(rows->indexOf(listed[0]).row(), row(0));
    EXPECT_EQ(rows->indexOf(listed[1]).row(), row(1));
}

TEST_F(SidebarTest, PlaceholderIsTheLogoInTheAccentColourAndInTheMiddle) {
    ASSERT_EQ(detail()->objectName(), u"placeholder"_s);
    auto* logo = detail()->findChild<SymbolView*>();
    ASSERT_TRUE(waitUntil([&] { return logo->y() > 0; }));
    EXPECT_EQ(logo->size(), QSize(150, 150));
    EXPECT_NEAR(logo->geometry().center().x(), detail()->width() / 2, 1);
    EXPECT_NEAR(logo->geometry().center().y(), detail()->height() / 2, 1);
    const std::unique_ptr<SymbolView> expected(SymbolView::ostrelLogo(QColor(colours::accent), 150));
    const QImage shown = drawn(*logo, {150, 150});
    EXPECT_EQ(shown, drawn(*expected, {150, 150}));
    for (const QPoint edge : {QPoint(75, 1), QPoint(75, 148), QPoint(1, 75), QPoint(148, 75)}) {
        EXPECT_EQ(shown.pixelColor(edge), QColor(colours::accent)) << edge.x() << ' ' << edge.y();
    }
}

TEST(CandidateRow, FigureIsLeftOfTheNameAndTheNameAboveTheProfession) {
    const QRect figure = Row(womanFigure.toString(), {}, {}).ink();
    const QRect name = Row({}, u"Hx"_s, {}).ink();
    const QRect profession = Row({}, {}, u"Hx"_s).ink();
    EXPECT_LT(figure.right(), name.left());
    EXPECT_LT(name.bottom(), profession.top());
    EXPECT_NEAR(name.left(), profession.left(), 1);
    EXPECT_NEAR(figure.center().y(), Row({}, {}, {}).size().height() / 2, 3);
}

TEST(CandidateRow, TextsHaveTheFontsOfAHeadlineAndASubheadline) {
    const QString text = u"Contable de proyectos"_s;
    EXPECT_NEAR(Row({}, text, {}).ink().width(), inkSize(textFont(TextStyle::Headline), text).width(), 2);
    EXPECT_NEAR(Row({}, {}, text).ink().width(), inkSize(textFont(TextStyle::Subheadline), text).width(), 2);
}

TEST(CandidateRow, FigureIsThatOf36Points) {
    const Row row(womanFigure.toString(), {}, {});
    const int expected = QFontMetrics(emojiFont(36)).horizontalAdvance(womanFigure.toString());
    EXPECT_NEAR(row.ink().width(), expected, 6);
}

TEST(CandidateRow, IsPaddedByFourPointsAboveAndBelow) {
    const Row row(womanFigure.toString(), u"ÁÉg"_s, u"ÁÉg"_s);
    EXPECT_GE(row.ink().top(), 4);
    EXPECT_LE(row.ink().bottom(), row.size().height() - 4 - 1);
}

TEST(CandidateRow, LongNameIsCut) {
    const Row row({}, u"María de los Ángeles "_s.repeated(10), {});
    EXPECT_LE(row.ink().right(), 300 - spacing::standard);
}

} // namespace dorvantel::test
