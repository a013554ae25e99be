// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/SearchUIView.h"

#include "data/Model.h"
#include "search/CriteriaPanel.h"
#include "search/LazyRowList.h"
#include "search/SearchResultDetailUIView.h"
#include "search/VectorText.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeModelService.h"
#include "tests/support/FakePDFOpener.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/FakeURLOpener.h"
#include "tests/support/Print.h"
#include "tests/support/Typing.h"
#include "tests/support/Wait.h"
#include "ui/Figures.h"
#include "ui/Style.h"
#include "ui/TokenEditor.h"
#include "ui/TokenField2.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTest>

#include <array>
#include <functional>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using namespace test;

DBRecordPointer candidateWith(const QStringList& techSkills, const QStringList& softSkills,
                              const QStringList& languages) {
    auto record = std::make_shared<DBRecordRepresentation>();
    record->jsonCVData = {u"Femenino"_s, softSkills, techSkills, languages};
    return record;
}

Search::Results answerOf(int rows) {
    SearchResponse response;
    for (int i = 0; i < rows; ++i) {
        QueryResult row;
        row.name = u"Candidata %1"_s.arg(i);
        row.email = u"c%1@example.org"_s.arg(i);
        row.score = static_cast<float>(i % 101);
        response.result.push_back(std::move(row));
    }
    return std::make_shared<IdentifiableSearchResponse>(std::move(response));
}

class SearchUIViewTest : public testing::Test {
protected:
    void SetUp() override {
        screen->resize(900, 800);
        screen->show();
        screen->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(screen.get()));
    }
    void loadCatalogues(std::vector<DBRecordPointer> candidates) {
        bool rebuilt = false;
        QObject::connect(&model, &Model::cataloguesRebuilt, &model, [&rebuilt] { rebuilt = true; });
        records.answerFetchAll(std::move(candidates));
        ASSERT_TRUE(waitUntil([&] { return rebuilt; }));
    }
    void loadCatalogues() {
        loadCatalogues({candidateWith({u"Excel"_s, u"SAP"_s}, {u"Liderazgo"_s}, {u"Español"_s, u"Inglés"_s})});
    }

    template <typename Widget>
    Widget* part(const QString& name) {
        return screen->findChild<Widget*>(name);
    }
    TokenField2* field(const QString& name) { return part<TokenField2>(name); }
    void enter(const QString& name, const QString& token) {
        auto* input = field(name)->findChild<QLineEdit*>();
        typeText(*input, token + u","_s);
    }
    void press(const QString& button) { QTest::mouseClick(part<QPushButton>(button), Qt::LeftButton); }
    LazyRowList* list() { return part<LazyRowList>(u"results"_s); }
    SearchResultDetailUIView* row(qsizetype index) {
        return static_cast<SearchResultDetailUIView*>(list()->row(index));
    }
    QStringList searches() const {
        QStringList statements;
        for (const QString& call : records.calls()) {
            if (call.startsWith(u"search "_s)) {
                statements.append(call.mid(7));
            }
        }
        return statements;
    }
    /// Presses "Buscar" and waits for the statement.
    QString search() {
        const qsizetype before = searches().size();
        press(u"searchButton"_s);
        EXPECT_TRUE(waitUntil([&] { return searches().size() > before; }));
        return searches().last();
    }
    void showAnswer(int rows) {
        search();
        records.answerSearch(answerOf(rows));
    }

    FakeRecordsService records;
    FakeModelService models;
    FakePDFOpener pdfs;
    FakeURLOpener urls;
    Model model{records};
    std::unique_ptr<SearchUIView> screen =
        std::make_unique<SearchUIView>(SearchUIView::Services{model, records, models, pdfs, urls});
};

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

TEST_F(SearchUIViewTest, FailedSearchLeavesTheListItShows) {
    showAnswer(2);
    search();
    const CapturedOutput output;
    records.answerSearch(std::unexpected(APIError::decodingProblem));
    EXPECT_EQ(list()->count(), 2);
    EXPECT_TRUE(list()->isVisible());
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

TEST_F(SearchUIViewTest, CriteriaStandOnGreyOfATenthOverWhite) {
    const auto* panel = screen->findChild<CriteriaPanel*>();
    const QImage image = screen->grab().toImage();
    const QPoint inside = panel->mapTo(screen.get(), QPoint(panel->width() / 2, 3));
    const QColor grey(colours::gray);
    EXPECT_NEAR(image.pixelColor(inside).red(), 255 - (255 - grey.red()) / 10, 1);
    const QPoint corner = panel->mapTo(screen.get(), QPoint(0, 0));
    EXPECT_EQ(image.pixelColor(corner), QColor(Qt::white));
}

TEST_F(SearchUIViewTest, EmbeddingServerThatIsDownLeavesTheScreenAsItIs) {
    showAnswer(2);
    models.queueEmbedding(
        std::unexpected(OllamaError::networkError({.domain = {}, .code = 0, .description = u"Conexión rechazada"_s})));
    part<QPlainTextEdit>(u"freeText"_s)->setPlainText(u"x"_s);
    CapturedOutput output;
    press(u"searchButton"_s);
    bool done = false;
    QMetaObject::invokeMethod(qApp, [&done] { done = true; }, Qt::QueuedConnection);
    ASSERT_TRUE(waitUntil([&] { return done; }));
    EXPECT_EQ(output.text(), u"❌ Error generating embedding: Error de red: Conexión rechazada\n"_s);
    EXPECT_EQ(list()->count(), 2);
    EXPECT_TRUE(list()->isVisible());
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

TEST_F(SearchUIViewTest, NoResultAreaBeforeTheFirstAnswer) {
    EXPECT_FALSE(list()->isVisible());
    search();
    EXPECT_FALSE(list()->isVisible());
    CapturedOutput output;
    records.answerSearch(std::unexpected(APIError::responseProblem));
    EXPECT_EQ(output.text(), u"Failure! No records returned\n"_s);
    EXPECT_FALSE(list()->isVisible());
}

TEST_F(SearchUIViewTest, EmptyAnswerShowsAnEmptyArea) {
    showAnswer(100);
    showAnswer(0);
    EXPECT_TRUE(list()->isVisible());
    EXPECT_EQ(list()->count(), 0);
    EXPECT_EQ(list()->verticalScrollBar()->maximum(), 0);
}

TEST_F(SearchUIViewTest, RowsStandInTheOrderReceivedAndAlternate) {
    showAnswer(5);
    for (qsizetype i = 0; i < 5; ++i) {
        list()->verticalScrollBar()->setValue(static_cast<int>(i) * SearchResultDetailUIView::closedHeight);
        ASSERT_TRUE(row(i));
        EXPECT_EQ(row(i)->result().name, u"Candidata %1"_s.arg(i));
        EXPECT_EQ(row(i)->lineColorIndex(), i % 2);
    }
}

TEST_F(SearchUIViewTest, AnswerReplacesTheOneBeforeAndItsRowsAreNew) {
    showAnswer(3);
    row(0)->setDisclosed(true);
    showAnswer(3);
    EXPECT_FALSE(row(0)->disclosed());
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

TEST_F(SearchUIViewTest, AnswerThatArrivesAfterClearingIsShown) {
    search();
    press(u"clearButton"_s);
    records.answerSearch(answerOf(2));
    EXPECT_TRUE(list()->isVisible());
    EXPECT_EQ(list()->count(), 2);
}

TEST_F(SearchUIViewTest, ScreenThatWasLeftSurvivesEveryAnswer) {
    showAnswer(3);
    QTest::mouseClick(row(0)->findChild<QPushButton*>(u"cv"_s), Qt::LeftButton);
    search();
    part<QPlainTextEdit>(u"freeText"_s)->setPlainText(u"x"_s);
    press(u"searchButton"_s);
    screen.reset();
    records.answerSearch(answerOf(1));
    records.answerFetchPDF(QByteArray("%PDF"));
    models.answerEmbedding(0, QList<double>{1});
    bool done = false;
    QMetaObject::invokeMethod(qApp, [&done] { done = true; }, Qt::QueuedConnection);
    ASSERT_TRUE(waitUntil([&] { return done; }));
    EXPECT_EQ(searches().size(), 2);
}

TEST_F(SearchUIViewTest, KeyboardAloneRunsAStructuredSearch) {
    loadCatalogues();
    const auto key = [](Qt::Key code) { QTest::keyClick(QApplication::focusWidget(), code); };
    part<QRadioButton>(u"any"_s)->setFocus();
    key(Qt::Key_Up);
    EXPECT_TRUE(part<QRadioButton>(u"male"_s)->isChecked());
    key(Qt::Key_Tab);
    typeText(*QApplication::focusWidget(), u"excel,"_s);
    key(Qt::Key_Tab);
    typeText(*QApplication::focusWidget(), u"liderazgo"_s);
    key(Qt::Key_Return);
    key(Qt::Key_Tab);
    EXPECT_TRUE(field(u"languages"_s)->isAncestorOf(QApplication::focusWidget()));
    key(Qt::Key_Tab);
    EXPECT_TRUE(part<QPlainTextEdit>(u"freeText"_s)->hasFocus());
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    EXPECT_TRUE(part<QPushButton>(u"searchButton"_s)->hasFocus());
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return !searches().isEmpty(); }));
    EXPECT_EQ(searches(),
              QStringList{structuredStatement({u"jsonCVData::gender = '\"Masculino\"'"_s,
                                               u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'Excel')"_s,
                                               u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::softSkills,'Liderazgo')"_s})});
}

TEST_F(SearchUIViewTest, KeyboardAloneRunsASemanticSearchAndOpensAResult) {
    models.queueEmbedding(QList<double>{1});
    const auto key = [](Qt::Key code) { QTest::keyClick(QApplication::focusWidget(), code); };
    part<QPlainTextEdit>(u"freeText"_s)->setFocus();
    typeText(*QApplication::focusWidget(), u"contable"_s);
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    key(Qt::Key_Space);
    ASSERT_TRUE(waitUntil([&] { return !searches().isEmpty(); }));
    records.answerSearch(answerOf(5));
    key(Qt::Key_Tab);
    EXPECT_TRUE(row(0)->hasFocus());
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_TRUE(row(1)->disclosed());
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    key(Qt::Key_Space);
    EXPECT_EQ(records.calls().last(), u"fetchPDF c1@example.org"_s);
    key(Qt::Key_Up);
    EXPECT_TRUE(row(0)->hasFocus());
}

TEST_F(SearchUIViewTest, FieldsAndListHaveNamesForScreenReaders) {
    EXPECT_EQ(field(u"techSkills"_s)->accessibleName(), u"Habilidades técnicas"_s);
    EXPECT_EQ(field(u"softSkills"_s)->accessibleName(), u"Habilidades personales"_s);
    EXPECT_EQ(field(u"languages"_s)->accessibleName(), u"Idiomas"_s);
    EXPECT_EQ(part<QPlainTextEdit>(u"freeText"_s)->accessibleName(), u"Búsqueda no estructurada"_s);
    EXPECT_EQ(list()->accessibleName(), u"Resultados"_s);
}

TEST_F(SearchUIViewTest, LowWindowLeavesRoomForTheResults) {
    screen->resize(724, 560);
    for (int i = 0; i < 30; ++i) {
        enter(u"techSkills"_s, u"Habilidad %1"_s.arg(i));
        enter(u"softSkills"_s, u"Habilidad %1"_s.arg(i));
    }
    showAnswer(10);
    ASSERT_TRUE(waitUntil([&] { return list()->geometry().bottom() <= screen->height(); }));
    EXPECT_EQ(screen->height(), 560);
    EXPECT_GE(list()->height(), 2 * SearchResultDetailUIView::closedHeight);
}

TEST_F(SearchUIViewTest, TenThousandResultsCostOnlyWhatIsSeen) {
    showAnswer(10'000);
    screen->grab();
    EXPECT_EQ(list()->count(), 10'000);
    EXPECT_LE(list()->madeRows(), 12);
    list()->verticalScrollBar()->setValue(list()->verticalScrollBar()->maximum());
    EXPECT_EQ(row(9'999)->result().name, u"Candidata 9999"_s);
    EXPECT_EQ(row(9'999)->lineColorIndex(), 1);
    EXPECT_LE(list()->madeRows(), 12);
}

} // namespace
} // namespace dorvantel
