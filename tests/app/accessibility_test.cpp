// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT

// Every screen of the program, walked through with the keyboard and looked at as a screen reader sees it.
#include "app/DorvantelApp.h"
#include "data/SearchResults.h"
#include "intake/ValidationSheetView.h"
#include "modelserver/AppSettings.h"
#include "modelserver/ModelSettingsView.h"
#include "search/PDFPreviewSheet.h"
#include "tests/app/ContentViewFixture.h"
#include "tests/app/KeyboardWalk.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"
#include "tests/support/ScriptedServer.h"
#include "ui/SegmentedControl.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QTabBar>
#include <QToolButton>

#include <gmock/gmock.h>

namespace dorvantel::test {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// As complaintsAbout, for a window that is brought to the front first.
Complaints complaintsAboutShown(QWidget& window) {
    window.show();
    QApplication::setActiveWindow(&window);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    return complaintsAbout(window);
}

void switchTo(QWidget& window, const QString& tags, int tab) {
    window.findChild<SegmentedControl*>(tags)->setCurrentIndex(tab);
}

std::shared_ptr<IdentifiableSearchResponse> twoResults() {
    SearchResponse response;
    for (const QString& name : {u"Ana"_s, u"Blas"_s}) {
        QueryResult row;
        row.name = name;
        row.profession = u"Contable"_s;
        row.summarizedText = u"Lleva cuentas."_s;
        row.jsonCVData = {u"Femenino"_s, {u"Calma"_s}, {u"Excel"_s, u"SAP"_s}, {u"Inglés"_s}};
        response.result.push_back(std::move(row));
    }
    return std::make_shared<IdentifiableSearchResponse>(std::move(response));
}

} // namespace

class Accessibility : public ContentViewTest {
protected:
    void showCandidate() {
        const CapturedOutput silence;
        loadThree();
        click(row(1));
        records.answerFetchPDF(QByteArray("pdf"));
        ASSERT_TRUE(waitUntil([&] { return pdfs.openings() == 1; }));
        pdfs.succeed(0, {u"Lleva cuentas."_s});
    }
    void showSearch() {
        loadThree();
        click(0);
    }
    void showResults() {
        showSearch();
        window.resize(1100, 1000);
        QTest::mouseClick(detail()->findChild<QPushButton*>(u"searchButton"_s), Qt::LeftButton);
        ASSERT_TRUE(waitUntil([&] { return records.calls().last().startsWith(u"search "_s); }));
        records.answerSearch(twoResults());
        ASSERT_TRUE(waitUntil([&] { return detail()->findChild<QToolButton*>(u"disclosure"_s) != nullptr; }));
    }
    ValidationSheetView& filledSheet() {
        IntakeState& intake = window.intake();
        intake.setSheetIsShowing(true);
        SheetValues values;
        values.techSkills = {{u"Excel"_s, u"SAP"_s}, {u"Sage"_s}};
        values.softSkills = {{}, {u"Calma"_s}};
        values.languages = {{u"Inglés"_s}, {}};
        intake.setValues(std::move(values));
        intake.setDataExtracted(true);
        return *window.findChild<ValidationSheetView*>();
    }
};

// The walk itself

TEST_F(Accessibility, TheWalkComplainsOfAControlWithoutAName) {
    QWidget bad;
    auto* row = new QHBoxLayout(&bad);
    row->addWidget(new QLineEdit);
    EXPECT_THAT(complaintsAboutShown(bad), ElementsAre("no name: QLineEdit  «»"));
}

TEST_F(Accessibility, TheWalkComplainsOfAControlThatNoScreenReaderKnows) {
    QWidget bad;
    auto* drawn = new QWidget;
    drawn->setFocusPolicy(Qt::StrongFocus);
    drawn->setAccessibleName(u"Figura"_s);
    drawn->setMinimumSize(20, 20);
    (new QHBoxLayout(&bad))->addWidget(drawn);
    EXPECT_THAT(complaintsAboutShown(bad), ElementsAre("role 10: QWidget  «Figura»"));
}

TEST_F(Accessibility, TheWalkComplainsOfAnOrderThatTheEyeDoesNotFollow) {
    QWidget bad;
    auto* row = new QHBoxLayout(&bad);
    QList<QPushButton*> buttons;
    for (const QString& name : {u"Uno"_s, u"Dos"_s, u"Tres"_s}) {
        buttons.append(new QPushButton(name));
        row->addWidget(buttons.last());
    }
    QWidget::setTabOrder(buttons[0], buttons[2]);
    QWidget::setTabOrder(buttons[2], buttons[1]);
    EXPECT_THAT(complaintsAboutShown(bad), ElementsAre("out of order: QPushButton  «Dos» after QPushButton  «Tres»",
                                                       "out of order: QPushButton  «Uno» after QPushButton  «Dos»"));
}

TEST_F(Accessibility, TheWalkComplainsOfAControlThatOnlyTheMouseReaches) {
    QWidget bad;
    auto* row = new QHBoxLayout(&bad);
    row->addWidget(new QPushButton(u"Uno"_s));
    auto* mouseOnly = new QToolButton;
    mouseOnly->setText(u"Dos"_s);
    mouseOnly->setFocusPolicy(Qt::NoFocus);
    row->addWidget(mouseOnly);
    EXPECT_THAT(complaintsAboutShown(bad), ElementsAre("not reached: QToolButton  «Dos»"));
}

// The screens

TEST_F(Accessibility, MainWindow) {
    loadThree();
    EXPECT_THAT(complaintsAboutShown(window), IsEmpty());
}

TEST_F(Accessibility, EveryTabOfACandidate) {
    showCandidate();
    for (int tab = 0; tab < 4; ++tab) {
        switchTo(window, u"mainTagType"_s, tab);
        EXPECT_THAT(complaintsAboutShown(window), IsEmpty()) << tab;
    }
}

TEST_F(Accessibility, TheSecondTabsOfACandidate) {
    showCandidate();
    const std::pair<int, QString> tabs[] = {{2, u"extractTagType"_s}, {3, u"correoTagType"_s}};
    for (const auto& [tab, second] : tabs) {
        switchTo(window, u"mainTagType"_s, tab);
        switchTo(window, second, 1);
        EXPECT_THAT(complaintsAboutShown(window), IsEmpty()) << tab;
    }
}

TEST_F(Accessibility, SearchScreen) {
    showSearch();
    EXPECT_THAT(complaintsAboutShown(window), IsEmpty());
}

TEST_F(Accessibility, SearchScreenWithAnOpenResult) {
    showResults();
    detail()->findChild<QToolButton*>(u"disclosure"_s)->click();
    EXPECT_THAT(complaintsAboutShown(window), IsEmpty());
}

TEST_F(Accessibility, PreviewOfACV) {
    PDFPreviewSheet preview(std::make_shared<PDFDocument>(QByteArray("pdf"), QStringList{u"x"_s}), pdfs, &window);
    EXPECT_THAT(complaintsAboutShown(preview), IsEmpty());
}

TEST_F(Accessibility, BothPagesOfTheValidationSheet) {
    ValidationSheetView& sheet = filledSheet();
    for (int page = 0; page < 2; ++page) {
        switchTo(sheet, u"valuetype"_s, page);
        EXPECT_THAT(complaintsAboutShown(sheet), IsEmpty()) << page;
    }
}

TEST_F(Accessibility, QuestionBeforeDeleting) {
    loadThree();
    click(row(1));
    window.deleteCommand();
    EXPECT_THAT(complaintsAboutShown(*deleteAlert()), IsEmpty());
}

TEST_F(Accessibility, AlertAboutAFailure) {
    window.intake().setProcessingError(u"No va"_s);
    EXPECT_THAT(complaintsAboutShown(*errorAlert()), IsEmpty());
}

TEST_F(Accessibility, BothTabsOfTheSettings) {
    const CapturedOutput silence;
    ScriptedServer server{[](const ScriptedRequest& request) {
        return request.target == "/api/tags"
                   ? ScriptedReply{.body = R"({"models":[{"name":"nomic"},{"name":"llama"}]})"}
                   : ScriptedReply{.body = request.body.contains("nomic") ? R"({"capabilities":["embedding"]})"
                                                                          : R"({"capabilities":["completion"]})"};
    }};
    AppSettings settings{std::make_unique<QSettings>(folder.filePath(u"a.conf"_s), QSettings::IniFormat)};
    settings.setOllamaURL(server.url());
    NetworkHttpSession session;
    SettingsView view(settings, session);
    EXPECT_THAT(complaintsAboutShown(view), IsEmpty());
    view.setCurrentIndex(1);
    auto* loaded = view.findChild<QWidget*>(u"loaded"_s);
    ASSERT_TRUE(waitUntil([&] { return loaded->isVisible(); }));
    EXPECT_THAT(complaintsAboutShown(view), IsEmpty());
}

TEST_F(Accessibility, AboutPanel) {
    const CapturedOutput silence;
    AppSettings settings{std::make_unique<QSettings>(folder.filePath(u"a.conf"_s), QSettings::IniFormat)};
    DorvantelApp program(settings, u"http://127.0.0.1:1"_s);
    program.window().show();
    program.showAbout();
    EXPECT_THAT(complaintsAboutShown(*program.window().findChild<QMessageBox*>(u"about"_s)), IsEmpty());
}

} // namespace dorvantel::test
