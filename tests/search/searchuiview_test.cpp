// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/CriteriaPanel.h"
#include "search/VectorText.h"
#include "tests/search/SearchUIViewFixture.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"
#include "ui/Figures.h"
#include "ui/Style.h"
#include "ui/TokenEditor.h"

#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScrollBar>

#include <array>
#include <functional>

namespace dorvantel::test {

TEST_F(SearchUIViewTest, TextsAndControlsStandInTheirOrder) {
    const QStringList expected = {u"Búsqueda"_s,
                                  u"Búsqueda estructurada"_s,
                                  u"Mujer"_s,
                                  u"Hombre"_s,
                                  u"Indistinto"_s,
                                  u"Habilidades técnicas"_s,
                                  u"Habilidades personales"_s,
                                  u"Idiomas"_s,
                                  u"Búsqueda no estructurada"_s,
                                  u"Limpiar"_s,
                                  u"Buscar"_s};
    QMap<std::pair<int, int>, QString> found; // by row and column
    for (QWidget* widget : screen->findChildren<QWidget*>()) {
        const auto* label = qobject_cast<QLabel*>(widget);
        const auto* button = qobject_cast<QAbstractButton*>(widget);
        const QString text = label ? label->text() : button ? button->text() : QString();
        if (widget->isVisible() && !text.isEmpty() && text != pairFigure) {
            const QPoint centre = widget->mapTo(screen.get(), widget->rect().center());
            found.insert({centre.y(), centre.x()}, text);
        }
    }
    EXPECT_EQ(QStringList(found.values()), expected);
    EXPECT_EQ(part<QPlainTextEdit>(u"freeText"_s)->height(), 70);
    for (const QString& name : {u"techSkills"_s, u"softSkills"_s, u"languages"_s}) {
        EXPECT_TRUE(field(name)->first());
    }
}

TEST_F(SearchUIViewTest, BackgroundIsWhiteWithDarkTextInADarkDesktopToo) {
    QApplication::setPalette(darkPalette());
    const SearchUIView::Services services{model, records, models, pdfs, urls};
    SearchUIView dark(services);
    dark.resize(700, 600);
    EXPECT_EQ(dark.grab().toImage().pixelColor(2, 2), QColor(Qt::white));
    for (const QWidget* widget : dark.findChildren<QWidget*>()) {
        EXPECT_EQ(widget->palette().color(QPalette::WindowText), QColor(colours::text));
        EXPECT_EQ(widget->palette().color(QPalette::Text), QColor(colours::text));
    }
    QApplication::setPalette(lightPalette());
}

TEST_F(SearchUIViewTest, FigureFollowsTheGenderAtOnce) {
    const auto* figure = part<QLabel>(u"genderFigure"_s);
    EXPECT_EQ(figure->text(), pairFigure.toString());
    part<QRadioButton>(u"male"_s)->click();
    EXPECT_EQ(figure->text(), manFigure.toString());
    part<QRadioButton>(u"female"_s)->click();
    EXPECT_EQ(figure->text(), womanFigure.toString());
    part<QRadioButton>(u"any"_s)->click();
    EXPECT_EQ(figure->text(), pairFigure.toString());
}

TEST_F(SearchUIViewTest, SearchAsksForWhatIsChosenAtThatMoment) {
    loadCatalogues();
    part<QRadioButton>(u"female"_s)->click();
    enter(u"techSkills"_s, u"excel"_s);
    enter(u"softSkills"_s, u"LIDERAZGO"_s);
    enter(u"languages"_s, u"inglés"_s);
    enter(u"languages"_s, u"Klingon"_s);
    EXPECT_EQ(search(), structuredStatement({u"jsonCVData::gender = '\"Femenino\"'"_s,
                                             u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'Excel')"_s,
                                             u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::softSkills,'Liderazgo')"_s,
                                             u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::languages,'Inglés')"_s}));
    part<QRadioButton>(u"any"_s)->click();
    EXPECT_FALSE(search().contains(u"gender ="_s));
}

TEST_F(SearchUIViewTest, FreeTextIsSentAsItIs) {
    models.queueEmbedding(QList<double>{0.5});
    const QString text = u" alguien\u00A0que\nsepa\u2028de nóminas "_s;
    part<QPlainTextEdit>(u"freeText"_s)->setPlainText(text);
    EXPECT_EQ(search(), semanticStatement(std::array{0.5}, {}));
    EXPECT_EQ(models.embeddingCalls()[0].text, text);
}

TEST_F(SearchUIViewTest, TokenTakenByItsMenuComesBackWithTheNextChangeOfTheScreen) {
    const auto changes = std::to_array<std::function<void()>>({
        [this] { part<QRadioButton>(u"male"_s)->click(); },
        [this] { part<QPlainTextEdit>(u"freeText"_s)->setPlainText(u"x"_s); },
        [this] { enter(u"languages"_s, u"Español"_s); },
        [this] {
            part<QPlainTextEdit>(u"freeText"_s)->clear();
            field(u"techSkills"_s)->tokenField()->removeToken();
            showAnswer(1);
        },
    });
    enter(u"techSkills"_s, u"Excel"_s);
    for (const auto& change : changes) {
        field(u"techSkills"_s)->tokenField()->removeToken();
        ASSERT_TRUE(field(u"techSkills"_s)->tokenField()->chips().empty());
        change();
        EXPECT_EQ(field(u"techSkills"_s)->tokenField()->chips().size(), 1U);
    }
}

TEST_F(SearchUIViewTest, TextThatIsBeingTypedSurvivesACatalogueThatArrives) {
    auto* input = field(u"techSkills"_s)->findChild<QLineEdit*>();
    typeText(*input, u"exc"_s);
    loadCatalogues();
    EXPECT_EQ(field(u"techSkills"_s)->tokenField()->text(), u"exc"_s);
    typeText(*field(u"techSkills"_s)->findChild<QLineEdit*>(), u"el,"_s);
    EXPECT_EQ(field(u"techSkills"_s)->tokens(), QStringList{u"Excel"_s});
}

TEST_F(SearchUIViewTest, FontsAndSizesAreThoseOfItsParts) {
    EXPECT_EQ(part<QLabel>(u"genderFigure"_s)->font().pixelSize(), 72);
    EXPECT_EQ(part<QPlainTextEdit>(u"freeText"_s)->font(), textFont(TextStyle::Body));
    EXPECT_TRUE(part<QPlainTextEdit>(u"freeText"_s)->inputMethodHints().testFlag(Qt::ImhNoPredictiveText));
    for (const QLabel* label : screen->findChildren<QLabel*>()) {
        if (label->text() == u"Búsqueda"_s) {
            EXPECT_EQ(label->font(), textFont(TextStyle::Title));
        } else if (label->text().startsWith(u"Búsqueda "_s)) {
            EXPECT_EQ(label->font().pixelSize(), 18);
        }
    }
}

TEST_F(SearchUIViewTest, TitleCriteriaAndResultsStandInTheMiddleOneBelowTheOther) {
    showAnswer(3);
    ASSERT_TRUE(waitUntil([&] { return list()->height() >= 150; }));
    const auto* panel = screen->findChild<CriteriaPanel*>();
    const QLabel* title = nullptr;
    for (const QLabel* label : screen->findChildren<QLabel*>()) {
        title = label->text() == u"Búsqueda"_s ? label : title;
    }
    int bottom = 0;
    for (const QWidget* part : {static_cast<const QWidget*>(title), static_cast<const QWidget*>(panel),
                                static_cast<const QWidget*>(list())}) {
        const QRect place(part->mapTo(screen.get(), QPoint()), part->size());
        EXPECT_NEAR(place.center().x(), screen->rect().center().x(), 1);
        EXPECT_GT(place.left(), 0);
        EXPECT_GT(place.top(), bottom);
        bottom = place.bottom();
    }
}

TEST_F(SearchUIViewTest, GenderIsOneChoiceOutOfThreeAndIndistintoAtFirst) {
    const QStringList names = {u"female"_s, u"male"_s, u"any"_s};
    const auto chosen = [&] {
        QStringList checked;
        for (const QString& name : names) {
            if (part<QRadioButton>(name)->isChecked()) {
                checked.append(name);
            }
        }
        return checked;
    };
    EXPECT_EQ(chosen(), QStringList{u"any"_s});
    for (const QString& name : names) {
        part<QRadioButton>(name)->click();
        EXPECT_EQ(chosen(), QStringList{name});
    }
}

TEST_F(SearchUIViewTest, CriteriaStandOnGreyOfATenthOverWhite) {
    const auto* panel = screen->findChild<CriteriaPanel*>();
    const QImage image = screen->grab().toImage();
    const QPoint inside = panel->mapTo(screen.get(), QPoint(panel->width() / 2, 3));
    const QColor grey(colours::gray);
    EXPECT_NEAR(image.pixelColor(inside).red(), 255 - (255 - grey.red()) / 10, 1);
    const QPoint corner = panel->mapTo(screen.get(), QPoint(0, 0));
    EXPECT_EQ(image.pixelColor(corner), QColor(Qt::white));
}

TEST_F(SearchUIViewTest, CataloguesOfTheModelAreTheFieldsOwn) {
    loadCatalogues();
    enter(u"techSkills"_s, u"Liderazgo"_s);
    EXPECT_EQ(field(u"techSkills"_s)->tokens(), QStringList());
    enter(u"softSkills"_s, u"Liderazgo"_s);
    EXPECT_EQ(field(u"softSkills"_s)->tokens(), QStringList{u"Liderazgo"_s});
}

TEST_F(SearchUIViewTest, CataloguesThatChangeReachTheFieldsWhichKeepTheirTokens) {
    loadCatalogues();
    enter(u"techSkills"_s, u"sap"_s);
    field(u"techSkills"_s)->setFocus();
    model.appendRecord(candidateWith({u"COBOL"_s}, {}, {}));
    model.rebuildCatalogues();
    EXPECT_EQ(field(u"techSkills"_s)->tokens(), QStringList{u"SAP"_s});
    EXPECT_TRUE(field(u"techSkills"_s)->isAncestorOf(QApplication::focusWidget()));
    enter(u"techSkills"_s, u"cobol"_s);
    EXPECT_EQ(search(), structuredStatement({u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'SAP')"_s,
                                             u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'COBOL')"_s}));
}

TEST_F(SearchUIViewTest, ClearingResetsEverything) {
    part<QRadioButton>(u"male"_s)->click();
    enter(u"techSkills"_s, u"a"_s);
    enter(u"softSkills"_s, u"b"_s);
    enter(u"languages"_s, u"c"_s);
    part<QPlainTextEdit>(u"freeText"_s)->setPlainText(u"x"_s);
    models.queueEmbedding(QList<double>{1});
    showAnswer(3);
    ASSERT_TRUE(list()->isVisible());

    press(u"clearButton"_s);
    EXPECT_TRUE(part<QRadioButton>(u"any"_s)->isChecked());
    EXPECT_EQ(part<QLabel>(u"genderFigure"_s)->text(), pairFigure.toString());
    for (const QString& name : {u"techSkills"_s, u"softSkills"_s, u"languages"_s}) {
        EXPECT_EQ(field(name)->tokens(), QStringList());
        EXPECT_TRUE(field(name)->tokenField()->chips().empty());
    }
    EXPECT_EQ(part<QPlainTextEdit>(u"freeText"_s)->toPlainText(), QString());
    EXPECT_FALSE(list()->isVisible());
    EXPECT_EQ(list()->count(), 0);
    EXPECT_EQ(search(), structuredStatement({}));
}

TEST_F(SearchUIViewTest, FieldsAndListHaveNamesForScreenReaders) {
    EXPECT_EQ(field(u"techSkills"_s)->accessibleName(), u"Habilidades técnicas"_s);
    EXPECT_EQ(field(u"softSkills"_s)->accessibleName(), u"Habilidades personales"_s);
    EXPECT_EQ(field(u"languages"_s)->accessibleName(), u"Idiomas"_s);
    EXPECT_EQ(part<QPlainTextEdit>(u"freeText"_s)->accessibleName(), u"Búsqueda no estructurada"_s);
    EXPECT_EQ(list()->accessibleName(), u"Resultados"_s);
}

} // namespace dorvantel::test
