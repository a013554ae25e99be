// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/SearchResultDetailUIView.h"

#include "data/SearchResults.h"
#include "search/ElidedLabel.h"
#include "search/InvitationLink.h"
#include "search/PDFPreviewSheet.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakePDFOpener.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/FakeURLOpener.h"
#include "tests/support/Print.h"
#include "tests/support/SamplePDF.h"
#include "tests/support/Wait.h"
#include "ui/Figures.h"
#include "ui/PDFKitView.h"
#include "ui/Spinner.h"
#include "ui/Style.h"
#include "ui/TagView.h"

#include <QAccessible>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <algorithm>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using namespace test;

class SearchResultTest : public testing::Test {
protected:
    SearchResultTest() {
        result->name = u"Lucía Pérez"_s;
        result->profession = u"Contable"_s;
        result->email = u"lucia@example.org"_s;
        result->summarizedText = u"Diez años de experiencia en <b>contabilidad</b>."_s;
        result->invitationMail = u"Estimada Lucía:\\nVenga & hable.\n100 %"_s;
        result->jsonCVData = {
            .gender = u"Femenino"_s,
            .softSkills = {u"Liderazgo"_s},
            .techSkills = {u"Excel"_s, u"SAP"_s, u"Excel"_s},
            .languages = {},
        };
        result->score = 87.5F;
    }

    void make() {
        row = new SearchResultDetailUIView(result, 1, {records, pdfs, urls}, &window);
        window.resize(700, 600);
        fit();
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void fit() { row->setGeometry(0, 0, 700, row->heightForWidth(700)); }

    template <typename Widget = QPushButton>
    Widget* part(const QString& name) {
        return row->findChild<Widget*>(name);
    }
    void click(const QString& name) { QTest::mouseClick(part<QAbstractButton>(name), Qt::LeftButton); }
    PDFPreviewSheet* sheet() { return window.findChild<PDFPreviewSheet*>(); }
    void loadCV() {
        click(u"cv"_s);
        records.answerFetchPDF(textPDF({"Hola"}));
        pdfs.succeed(static_cast<std::size_t>(pdfs.openings() - 1), {u"Hola"_s});
    }

    FakeRecordsService records;
    FakePDFOpener pdfs;
    FakeURLOpener urls;
    std::shared_ptr<IdentifiableQueryResult> result = std::make_shared<IdentifiableQueryResult>();
    QWidget window;
    SearchResultDetailUIView* row = nullptr;
};

TEST_F(SearchResultTest, HeaderRunsFromTheScoreToTheInvitation) {
    make();
    const QStringList order = {u"ScoreBar"_s, u"figure"_s, u"disclosure"_s, u"cv"_s, u"invite"_s};
    int x = -1;
    for (const QString& name : order) {
        const QWidget* widget = part<QWidget>(name);
        if (!widget) {
            for (const QWidget* child : row->findChildren<QWidget*>()) {
                widget = child->inherits("dorvantel::ScoreBar") ? child : widget;
            }
        }
        ASSERT_TRUE(widget) << qPrintable(name);
        const QPoint corner = widget->mapTo(row, QPoint());
        EXPECT_GT(corner.x(), x);
        EXPECT_NEAR(corner.y() + widget->height() / 2.0, SearchResultDetailUIView::closedHeight / 2.0, 1);
        x = corner.x();
    }
    EXPECT_EQ(part(u"cv"_s)->text(), u"CV"_s);
    EXPECT_EQ(part(u"cv"_s)->toolTip(), u"Pulse este botón para ver el CV"_s);
    EXPECT_EQ(part(u"invite"_s)->text(), u"Invitar"_s);
    EXPECT_EQ(row->lineColorIndex(), 1);
    EXPECT_EQ(part<QLabel>(u"figure"_s)->font().pixelSize(), 36);
}

TEST_F(SearchResultTest, NameStandsAboveTheProfessionBehindTheFigure) {
    make();
    const QList<ElidedLabel*> labels = row->findChildren<ElidedLabel*>();
    ASSERT_EQ(labels.size(), 2);
    EXPECT_EQ(labels[0]->text(), u"Lucía Pérez"_s);
    EXPECT_EQ(labels[0]->font(), textFont(TextStyle::Headline));
    EXPECT_EQ(labels[1]->text(), u"Contable"_s);
    EXPECT_EQ(labels[1]->font(), textFont(TextStyle::Subheadline));
    EXPECT_EQ(labels[0]->x(), labels[1]->x());
    EXPECT_LT(labels[0]->geometry().bottom(), labels[1]->geometry().top());
    EXPECT_GT(labels[0]->mapTo(row, QPoint()).x(), part<QWidget>(u"figure"_s)->mapTo(row, QPoint()).x());
    EXPECT_LT(labels[0]->mapTo(row, QPoint()).x(), part<QWidget>(u"disclosure"_s)->mapTo(row, QPoint()).x());
}

TEST_F(SearchResultTest, NameThatIsTooLongIsElidedAndToldInATooltip) {
    result->name = u"María de los Ángeles "_s.repeated(20);
    make();
    const QList<ElidedLabel*> labels = row->findChildren<ElidedLabel*>();
    EXPECT_EQ(labels[0]->toolTip(), result->name);
    EXPECT_EQ(labels[1]->toolTip(), QString());
}

TEST_F(SearchResultTest, FigureIsTheManOnlyForExactlyMasculino) {
    for (const auto& [gender, figure] : std::initializer_list<std::pair<QString, QStringView>>{
             {u"Masculino"_s, manFigure},
             {u"Femenino"_s, womanFigure},
             {u""_s, womanFigure},
             {u"masculino"_s, womanFigure},
         }) {
        result->jsonCVData.gender = gender;
        const SearchResultDetailUIView view(result, 0, {records, pdfs, urls});
        EXPECT_EQ(view.findChild<QLabel*>(u"figure"_s)->text(), figure.toString());
    }
}

TEST_F(SearchResultTest, BeginsClosedWithoutPreviewOrSpinner) {
    make();
    EXPECT_FALSE(row->disclosed());
    EXPECT_EQ(row->heightForWidth(700), SearchResultDetailUIView::closedHeight);
    EXPECT_FALSE(row->holdsState());
    EXPECT_EQ(row->findChild<QWidget*>(u"expanded"_s), nullptr);
    EXPECT_EQ(row->findChild<Spinner*>(), nullptr);
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_EQ(records.calls(), QStringList());
}

TEST_F(SearchResultTest, OpensToSummaryAndThreeListsOfChipsBetweenBlankLines) {
    make();
    QSignalSpy heightChanged(row, &LazyRow::heightChanged);
    click(u"disclosure"_s);
    EXPECT_TRUE(row->disclosed());
    EXPECT_TRUE(row->holdsState());
    EXPECT_EQ(heightChanged.size(), 1);
    fit();
    const QWidget* expanded = row->findChild<QWidget*>(u"expanded"_s);
    QStringList parts;
    QObjectList children = expanded->children();
    std::ranges::stable_sort(children, {}, [](const QObject* child) {
        const auto* widget = qobject_cast<const QWidget*>(child);
        return widget ? widget->y() : -1;
    });
    for (const QObject* child : children) {
        if (const auto* label = qobject_cast<const QLabel*>(child)) {
            parts.append(label->text());
        } else if (const auto* tags = qobject_cast<const TagView*>(child)) {
            QStringList titles;
            for (const TagViewItem& tag : tags->tags()) {
                EXPECT_FALSE(tag.isSelected);
                titles.append(tag.title);
            }
            parts.append(u"tags: "_s + titles.join(u", "_s));
        }
    }
    EXPECT_EQ(parts, (QStringList{u" "_s, result->summarizedText, u" "_s, u"tags: Excel, SAP, Excel"_s, u" "_s,
                                  u"tags: Liderazgo"_s, u" "_s, u"tags: "_s, u" "_s, u" "_s}));
}

TEST_F(SearchResultTest, SummaryIsNotMarkup) {
    make();
    row->setDisclosed(true);
    for (const QLabel* label : row->findChild<QWidget*>(u"expanded"_s)->findChildren<QLabel*>()) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    }
}

TEST_F(SearchResultTest, ChipsStartUnselectedEachTimeTheRowIsOpened) {
    make();
    row->setDisclosed(true);
    fit();
    QTest::mouseClick(row->findChildren<TagView*>()[0]->findChildren<QPushButton*>()[1], Qt::LeftButton);
    EXPECT_TRUE(row->findChildren<TagView*>()[0]->tags()[1].isSelected);
    row->setDisclosed(false);
    EXPECT_EQ(row->heightForWidth(700), SearchResultDetailUIView::closedHeight);
    EXPECT_FALSE(row->holdsState());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    row->setDisclosed(true);
    EXPECT_FALSE(row->findChildren<TagView*>()[0]->tags()[1].isSelected);
}

TEST_F(SearchResultTest, NarrowRowIsHigher) {
    result->summarizedText = u"Diez años de experiencia en contabilidad. "_s.repeated(10);
    make();
    row->setDisclosed(true);
    EXPECT_GT(row->heightForWidth(450), row->heightForWidth(900));
}

TEST_F(SearchResultTest, SpinnerStandsForTheLabelWhileTheCVIsLoading) {
    make();
    const int width = part(u"cv"_s)->width();
    click(u"cv"_s);
    ASSERT_TRUE(row->findChild<Spinner*>());
    EXPECT_TRUE(row->findChild<Spinner*>()->isVisible());
    EXPECT_EQ(row->findChild<Spinner*>()->size(), QSize(14, 14));
    EXPECT_EQ(row->findChild<Spinner*>()->geometry().center(), part(u"cv"_s)->rect().center());
    EXPECT_EQ(part(u"cv"_s)->text(), QString());
    EXPECT_EQ(part(u"cv"_s)->width(), width);
    EXPECT_TRUE(row->holdsState());
    const CapturedOutput output;
    records.answerFetchPDF(std::nullopt);
    EXPECT_FALSE(row->findChild<Spinner*>()->isVisible());
    EXPECT_EQ(part(u"cv"_s)->text(), u"CV"_s);
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_FALSE(row->holdsState());
}

TEST_F(SearchResultTest, LoadedCVIsPreviewedAndASecondPressShowsItAtOnce) {
    make();
    loadCV();
    ASSERT_TRUE(sheet());
    EXPECT_TRUE(sheet()->isVisible());
    EXPECT_EQ(sheet()->findChild<PDFKitView*>()->pdfDocument()->pageText(0), u"Hola"_s);
    EXPECT_TRUE(row->holdsState());
    QTest::mouseClick(sheet()->findChild<QPushButton*>(u"close"_s), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return !sheet(); }));

    click(u"cv"_s);
    EXPECT_TRUE(sheet() && sheet()->isVisible());
    EXPECT_EQ(records.calls().size(), 1);
}

TEST_F(SearchResultTest, CVThatCameWithTheRowIsPreviewedWithoutARequest) {
    result->file = textPDF({"Hola"});
    make();
    click(u"cv"_s);
    pdfs.succeed(0, {u"Hola"_s});
    EXPECT_TRUE(sheet() && sheet()->isVisible());
    EXPECT_EQ(records.calls(), QStringList());
}

TEST_F(SearchResultTest, TwoPressesShowOneSheet) {
    make();
    click(u"cv"_s);
    click(u"cv"_s);
    for (const std::size_t opening : {0U, 1U}) {
        records.answerFetchPDF(textPDF({"Hola"}));
        pdfs.succeed(opening, {u"Hola"_s});
    }
    EXPECT_EQ(window.findChildren<PDFPreviewSheet*>().size(), 1);
}

TEST_F(SearchResultTest, FailedFetchOpensNothing) {
    make();
    click(u"cv"_s);
    CapturedOutput output;
    records.answerFetchPDF(std::unexpected(APIError::responseProblem));
    EXPECT_EQ(output.text(), u"❌ Error loading PDF: responseProblem\n"_s);
    EXPECT_TRUE(window.findChildren<QDialog*>().isEmpty());
}

TEST_F(SearchResultTest, BrokenPDFSaysThatThereIsNothingToShow) {
    make();
    click(u"cv"_s);
    records.answerFetchPDF(QByteArray("no es un PDF"));
    pdfs.fail(0);
    EXPECT_EQ(sheet(), nullptr);
    auto* alert = window.findChild<QMessageBox*>();
    ASSERT_TRUE(alert && alert->isVisible());
    EXPECT_EQ(alert->text(), u"PDF no disponible"_s);
    QTest::keyClick(alert, Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return !window.findChild<QMessageBox*>(); }));
}

TEST_F(SearchResultTest, CVThatOpensReplacesTheMessageThatOneDidNot) {
    make();
    click(u"cv"_s);
    click(u"cv"_s);
    records.answerFetchPDF(QByteArray("no es un PDF"));
    records.answerFetchPDF(textPDF({"Hola"}));
    pdfs.fail(0);
    ASSERT_TRUE(window.findChild<QMessageBox*>(u"noPDF"_s));
    pdfs.succeed(1, {u"Hola"_s});
    EXPECT_TRUE(sheet() && sheet()->isVisible());
    EXPECT_TRUE(waitUntil([&] { return !window.findChild<QMessageBox*>(); }));
}

TEST_F(SearchResultTest, MailProgramThatCannotBeOpenedIsTold) {
    make();
    urls.hasProgram = false;
    click(u"invite"_s);
    const auto* message = window.findChild<QMessageBox*>(u"noMailProgram"_s);
    ASSERT_TRUE(message && message->isVisible());
    EXPECT_EQ(message->text(), u"No se ha podido abrir el programa de correo"_s);
}

TEST_F(SearchResultTest, PreviewOutlivesItsRow) {
    make();
    loadCV();
    delete row;
    EXPECT_TRUE(sheet() && sheet()->isVisible());
}

TEST_F(SearchResultTest, InvitationGoesToTheMailProgram) {
    make();
    click(u"invite"_s);
    ASSERT_EQ(urls.opened().size(), 1);
    EXPECT_EQ(urls.opened()[0].toEncoded(), "mailto:lucia@example.org?cc=" + invitationCarbonCopy().toLatin1() +
                                                "&subject=Invitaci%C3%B3n%20a%20entrevista%20a%20Ostrel&body="
                                                "Estimada%20Luc%C3%ADa:%0AVenga%20&%20hable.%0A100%20%25");
}

TEST_F(SearchResultTest, KeysOpenAndCloseTheRow) {
    make();
    row->setFocus();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(row, key);
        EXPECT_TRUE(row->disclosed());
        QTest::keyClick(row, key);
        EXPECT_FALSE(row->disclosed());
    }
    QTest::keyClick(row, Qt::Key_Left);
    EXPECT_FALSE(row->disclosed());
    QTest::keyClick(row, Qt::Key_Right);
    QTest::keyClick(row, Qt::Key_Right);
    EXPECT_TRUE(row->disclosed());
    EXPECT_TRUE(part<QToolButton>(u"disclosure"_s)->isChecked());
    QTest::keyClick(row, Qt::Key_Left);
    EXPECT_FALSE(row->disclosed());
}

TEST_F(SearchResultTest, KeysWorkEveryButton) {
    make();
    part<QToolButton>(u"disclosure"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_TRUE(row->disclosed());
    part(u"cv"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_EQ(records.calls(), QStringList{u"fetchPDF lucia@example.org"_s});
    part(u"invite"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_EQ(urls.opened().size(), 1);
}

TEST_F(SearchResultTest, ScreenReadersHearWhoseRowAndButtonsTheyAre) {
    make();
    const auto name = [](QWidget* widget) {
        return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
    };
    EXPECT_EQ(name(row), u"Lucía Pérez, Contable"_s);
    EXPECT_EQ(name(part<QToolButton>(u"disclosure"_s)), u"Detalles de Lucía Pérez"_s);
    EXPECT_EQ(name(part(u"cv"_s)), u"CV de Lucía Pérez"_s);
    EXPECT_EQ(name(part(u"invite"_s)), u"Invitar a Lucía Pérez"_s);
}

TEST(PDFPreviewSheet, HasItsTitleItsSizeAndAButtonThatClosesIt) {
    const FakePDFOpener pdfs;
    PDFPreviewSheet sheet(std::make_shared<PDFDocument>(), pdfs, nullptr);
    EXPECT_GE(sheet.minimumWidth(), 600);
    EXPECT_GE(sheet.minimumHeight(), 700);
    const auto* title = sheet.findChild<QLabel*>();
    EXPECT_EQ(title->text(), u"Vista previa del CV"_s);
    EXPECT_EQ(title->font(), textFont(TextStyle::Headline));
    sheet.open();
    ASSERT_TRUE(sheet.isVisible());
    auto* close = sheet.findChild<QPushButton*>(u"close"_s);
    EXPECT_LT(title->geometry().right(), close->x());
    EXPECT_LT(close->geometry().bottom(), sheet.findChild<PDFKitView*>()->y());
    EXPECT_EQ(close->text(), u"Cerrar"_s);
    QTest::mouseClick(close, Qt::LeftButton);
    EXPECT_FALSE(sheet.isVisible());
    sheet.open();
    QTest::keyClick(&sheet, Qt::Key_Escape);
    EXPECT_FALSE(sheet.isVisible());
}

} // namespace
} // namespace dorvantel
