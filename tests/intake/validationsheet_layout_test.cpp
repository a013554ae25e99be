// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/FormGrid.h"
#include "tests/intake/ValidationSheetFixture.h"
#include "ui/Spinner.h"
#include "ui/Style.h"

#include <algorithm>

namespace dorvantel::test {

class ValidationSheetLayout : public ValidationSheetTest {
protected:
    template <typename Widget>
    Widget* labelled(const QString& text) {
        for (auto* widget : sheet.findChildren<Widget*>()) {
            if (widget->text() == text) {
                return widget;
            }
        }
        return nullptr;
    }
    QRect placeOf(const QWidget* widget) { return {widget->mapTo(&sheet, QPoint()), widget->size()}; }
    QWidget* page(int index) {
        find<SegmentedControl>(u"valuetype"_s)->setCurrentIndex(index);
        return find<QWidget>(index == 0 ? u"name"_s : u"summarizedText"_s)->parentWidget();
    }
    static FormGrid* gridOf(QWidget* page) { return static_cast<FormGrid*>(page->layout()); }
    /// The labels in the first column, from the top.
    static QStringList rowLabels(const FormGrid& grid) {
        QStringList labels;
        for (int row = 0; row < grid.rowCount(); ++row) {
            if (const QLayoutItem* item = grid.itemAtPosition(row, 0)) {
                const auto* label = qobject_cast<QLabel*>(item->widget());
                EXPECT_TRUE(label->font().bold()) << label->text().toStdString();
                labels.append(label->text());
            }
        }
        return labels;
    }
};

TEST_F(ValidationSheetLayout, ProgressViewSaysInWhiteWhatItWaitsForAboveAWhiteSpinner) {
    auto* text = labelled<QLabel>(u"Extrayendo datos del currículum"_s);
    ASSERT_TRUE(text && text->isVisible());
    EXPECT_EQ(text->font(), systemFont(24));
    EXPECT_EQ(text->palette().color(QPalette::WindowText), QColor(Qt::white));
    auto* spinner = sheet.findChild<Spinner*>();
    ASSERT_TRUE(spinner && spinner->isVisible());
    EXPECT_LT(placeOf(text).bottom(), placeOf(spinner).top());
    EXPECT_NEAR(placeOf(text).center().x(), sheet.rect().center().x(), 1);
    EXPECT_NEAR(placeOf(spinner).center().x(), sheet.rect().center().x(), 1);
    EXPECT_NEAR((placeOf(text).top() + placeOf(spinner).bottom()) / 2, sheet.rect().center().y(), 2);

    const QImage image = sheet.grab(placeOf(spinner)).toImage();
    int white = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            white += image.pixelColor(x, y) == QColor(Qt::white) ? 1 : 0;
        }
    }
    EXPECT_GT(white, 0);
}

TEST_F(ValidationSheetLayout, ProgressViewIsBlackOfSixtyPercentOverWhite) {
    const QImage image = sheet.grab().toImage();
    for (const QPoint& corner : {QPoint(0, 0), QPoint(image.width() - 1, image.height() - 1)}) {
        EXPECT_EQ(image.pixelColor(corner), QColor(102, 102, 102));
    }
}

TEST_F(ValidationSheetLayout, DataIsSevenHundredByFiveHundred) {
    extract();
    EXPECT_EQ(sheet.size(), QSize(700, 500));
}

TEST_F(ValidationSheetLayout, TitleStandsAboveThePickerOfThePages) {
    extract();
    auto* title = labelled<QLabel>(u"Validación de la información"_s);
    ASSERT_TRUE(title);
    EXPECT_EQ(title->font(), textFont(TextStyle::Title));
    const auto* picker = find<SegmentedControl>(u"valuetype"_s);
    QStringList options;
    for (const auto* option : picker->findChildren<QAbstractButton*>()) {
        options.append(option->text());
    }
    EXPECT_EQ(options, (QStringList{u"Datos extraídos"_s, u"Datos generados"_s}));
    EXPECT_EQ(picker->size(), picker->sizeHint()) << "as wide as its content";
    EXPECT_NEAR(placeOf(title).center().x(), 350, 1);
    EXPECT_NEAR(placeOf(picker).center().x(), 350, 1);
    EXPECT_GE(placeOf(picker).top() - placeOf(title).bottom() - 1, 4);
    EXPECT_GE(placeOf(page(1)).top() - placeOf(picker).bottom() - 1, 4);
}

TEST_F(ValidationSheetLayout, FirstPageIsChosenAtFirst) {
    extract();
    EXPECT_EQ(sheet.valuetype(), valuetypesTagTypes::extracted);
    EXPECT_EQ(find<SegmentedControl>(u"valuetype"_s)->currentIndex(), 0);
    EXPECT_TRUE(field(u"name"_s)->isVisible());
}

TEST_F(ValidationSheetLayout, ChosenPageStaysWhenANewExtractionReplacesTheValues) {
    extract();
    find<SegmentedControl>(u"valuetype"_s)->setCurrentIndex(1);
    EXPECT_EQ(sheet.valuetype(), valuetypesTagTypes::generated);
    SheetValues other = completeValues();
    other.summarizedText = u"Otra"_s;
    extract(other);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(sheet.valuetype(), valuetypesTagTypes::generated);
    EXPECT_EQ(find<SegmentedControl>(u"valuetype"_s)->currentIndex(), 1);
    EXPECT_TRUE(find<QPlainTextEdit>(u"summarizedText"_s)->isVisible());
    EXPECT_EQ(find<QPlainTextEdit>(u"summarizedText"_s)->toPlainText(), u"Otra"_s);
}

TEST_F(ValidationSheetLayout, FigureOf72PointsStandsAboveTheGendersLeftOfTheRows) {
    extract();
    const auto* figure = find<QLabel>(u"figure"_s);
    EXPECT_EQ(figure->font(), emojiFont(72));
    EXPECT_GT(figure->margin(), 0);
    const auto* man = find<QRadioButton>(u"Masculino"_s);
    const auto* woman = find<QRadioButton>(u"Femenino"_s);
    EXPECT_EQ(man->text(), u"Masculino"_s);
    EXPECT_EQ(woman->text(), u"Femenino"_s);
    EXPECT_LT(placeOf(figure).bottom(), placeOf(man).top());
    EXPECT_LT(placeOf(man).bottom(), placeOf(woman).top());
    EXPECT_LT(placeOf(figure).right(), placeOf(labelled<QLabel>(u"Nombre"_s)).left());
}

TEST_F(ValidationSheetLayout, GenderThatWasExtractedIsTheChosenOne) {
    extract();
    EXPECT_TRUE(find<QRadioButton>(u"Femenino"_s)->isChecked());
    EXPECT_FALSE(find<QRadioButton>(u"Masculino"_s)->isChecked());
}

TEST_F(ValidationSheetLayout, UnknownGenderChoosesNeither) {
    SheetValues values = completeValues();
    values.gender = u"otro"_s;
    extract(values);
    EXPECT_FALSE(find<QRadioButton>(u"Femenino"_s)->isChecked());
    EXPECT_FALSE(find<QRadioButton>(u"Masculino"_s)->isChecked());
}

TEST_F(ValidationSheetLayout, RowsOfTheExtractedDataStandInTheirOrder) {
    extract();
    const FormGrid& grid = *gridOf(page(0));
    EXPECT_EQ(rowLabels(grid), (QStringList{u"Nombre"_s, u"Profesión"_s, u"Correo electrónico"_s,
                                            u"Habilidades técnicas"_s, u"Habilidades personales"_s, u"Idiomas"_s}));
    for (const auto& [label, edit] : std::initializer_list<std::pair<QString, QString>>{
             {u"Nombre"_s, u"name"_s}, {u"Profesión"_s, u"profession"_s}, {u"Correo electrónico"_s, u"email"_s}}) {
        EXPECT_NEAR(placeOf(labelled<QLabel>(label)).center().y(), placeOf(field(edit)).center().y(), 1);
    }
}

TEST_F(ValidationSheetLayout, RowsOfTheGeneratedDataStandInTheirOrder) {
    extract();
    const FormGrid& grid = *gridOf(page(1));
    EXPECT_EQ(rowLabels(grid), (QStringList{u"Resumen"_s, u"Correo"_s}));
}

TEST_F(ValidationSheetLayout, RowsAre12ApartAndColumns20OnBothPages) {
    extract();
    for (const int index : {0, 1}) {
        const FormGrid& grid = *gridOf(page(index));
        EXPECT_EQ(grid.horizontalSpacing(), 20);
        EXPECT_EQ(grid.verticalSpacing(), 12);
        EXPECT_GT(grid.contentsMargins().left(), 0);
        EXPECT_EQ(grid.contentsMargins().right(), grid.contentsMargins().left());
        EXPECT_EQ(grid.contentsMargins().top(), 0);
    }
}

TEST_F(ValidationSheetLayout, SkillRowsAndTextsHaveTheirLabelsAtTheTop) {
    extract();
    QWidget* extracted = page(0);
    for (const auto& [label, tokens] :
         std::initializer_list<std::pair<QString, QString>>{{u"Habilidades técnicas"_s, u"techSkills"_s},
                                                            {u"Habilidades personales"_s, u"softSkills"_s},
                                                            {u"Idiomas"_s, u"languages"_s}}) {
        EXPECT_EQ(labelled<QLabel>(label)->mapTo(extracted, QPoint()).y(),
                  find<QWidget>(tokens)->mapTo(extracted, QPoint()).y());
    }
    page(1);
    EXPECT_EQ(placeOf(labelled<QLabel>(u"Resumen"_s)).top(), placeOf(find<QWidget>(u"summarizedText"_s)).top());
    EXPECT_EQ(placeOf(labelled<QLabel>(u"Correo"_s)).top(), placeOf(find<QWidget>(u"invitationMail"_s)).top());
}

TEST_F(ValidationSheetLayout, EachSkillRowHasTheCatalogueFieldThenTheOtherEachFollowedByItsCaption) {
    extract();
    for (const QString& name : {u"techSkills"_s, u"softSkills"_s, u"languages"_s}) {
        QList<QWidget*> parts =
            find<QWidget>(name)->parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        std::ranges::sort(parts, {}, &QWidget::y);
        ASSERT_EQ(parts.size(), 4);
        EXPECT_EQ(parts[0]->objectName(), name);
        EXPECT_EQ(parts[2]->objectName(), name + u'2');
        const auto* inside = qobject_cast<QLabel*>(parts[1]);
        const auto* outside = qobject_cast<QLabel*>(parts[3]);
        ASSERT_TRUE(inside && outside);
        EXPECT_EQ(inside->text(), u"(Valores en catálogo)"_s);
        EXPECT_EQ(outside->text(), u"(Valores fuera de catálogo)"_s);
        EXPECT_EQ(inside->font(), textFont(TextStyle::Caption));
        EXPECT_EQ(outside->font(), textFont(TextStyle::Caption));
    }
}

TEST_F(ValidationSheetLayout, WarningMarksAreTrianglesThatAlwaysKeepTheirPlace) {
    extract();
    const QStringList marks = {u"nameWarning"_s, u"professionWarning"_s, u"emailWarning"_s};
    QList<QRect> places;
    for (const QString& mark : marks) {
        EXPECT_EQ(find<SymbolView>(mark)->name(), u"exclamationmark.triangle"_s);
        EXPECT_TRUE(find<SymbolView>(mark)->isVisible());
        places.append(placeOf(find<SymbolView>(mark)));
    }
    const QRect nameField = placeOf(field(u"name"_s));
    type(u"name"_s, QString());
    for (qsizetype i = 0; i < marks.size(); ++i) {
        EXPECT_TRUE(find<SymbolView>(marks[i])->isShown());
        EXPECT_EQ(placeOf(find<SymbolView>(marks[i])), places[i]);
    }
    EXPECT_EQ(placeOf(field(u"name"_s)), nameField);
    page(1);
    for (const QString& mark : {u"summarizedTextWarning"_s, u"invitationMailWarning"_s}) {
        EXPECT_EQ(find<SymbolView>(mark)->name(), u"exclamationmark.triangle"_s);
        EXPECT_TRUE(find<SymbolView>(mark)->isVisible());
    }
}

TEST_F(ValidationSheetLayout, TokenRowsHaveNoWarningMark) {
    extract();
    page(0);
    EXPECT_EQ(sheet.findChildren<SymbolView*>().size(), 5) << "three on the first page, two on the second";
}

TEST_F(ValidationSheetLayout, GeneratedTextsAreInTheSecondaryColour) {
    extract();
    page(1);
    for (const QString& name : {u"summarizedText"_s, u"invitationMail"_s}) {
        const QPalette palette = find<QPlainTextEdit>(name)->palette();
        EXPECT_EQ(palette.color(QPalette::Text), secondaryTextColour(palette));
    }
}

TEST_F(ValidationSheetLayout, CancelStandsOnTheLeftAndOKOnTheRightWithoutAKeyOfItsOwn) {
    extract();
    const auto* cancel = find<QPushButton>(u"cancel"_s);
    const auto* ok = find<QPushButton>(u"ok"_s);
    EXPECT_EQ(cancel->text(), u"Cancel"_s);
    EXPECT_EQ(ok->text(), u"OK"_s);
    EXPECT_EQ(placeOf(cancel).left(), 700 - placeOf(ok).right() - 1);
    EXPECT_LT(placeOf(cancel).right(), 350);
    EXPECT_GT(placeOf(ok).left(), 350);
    EXPECT_EQ(placeOf(cancel).top(), placeOf(ok).top());
    EXPECT_GT(placeOf(ok).top(), placeOf(page(1)).bottom());
    EXPECT_TRUE(ok->shortcut().isEmpty());
    EXPECT_FALSE(ok->isDefault());
    EXPECT_FALSE(ok->autoDefault());
}

} // namespace dorvantel::test
