// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT

// A window that lived through a change of the desktop from light to dark looks as one that was made in the dark.
#include "intake/ValidationSheetView.h"
#include "modelserver/AppSettings.h"
#include "modelserver/SettingsView.h"
#include "platform/HttpSession.h"
#include "tests/app/ContentViewFixture.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/ScriptedServer.h"
#include "ui/SegmentedControl.h"
#include "ui/Style.h"

#include <QSettings>
#include <QStyleFactory>

namespace dorvantel::test {

namespace {

/// What a desktop sets that has a palette of its own.
const QColor lightDesktop(0xef, 0xf0, 0xf1);
const QColor darkDesktop(0x31, 0x36, 0x3b);

class PaletteChange : public testing::Test {
protected:
    PaletteChange() { applyApplicationLook(*qApp); }
    ~PaletteChange() override {
        QApplication::setPalette(lightPalette());
        QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    }

    static QImage pictureOf(QWidget& window) {
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        QCoreApplication::processEvents(); // the window gives the focus to somebody
        if (QWidget* focused = window.focusWidget()) {
            focused->clearFocus(); // no ring, and no caret, which blinks
        }
        return window.grab().toImage();
    }

    /// `make` gives a window that shows what is to be looked at.
    template <typename Make>
    static void expectThatItFollows(const Make& make, const QString& name) {
        QApplication::setPalette(QPalette(lightDesktop));
        const auto light = make();
        const QImage before = pictureOf(*light);
        QApplication::setPalette(QPalette(darkDesktop));
        const QImage after = pictureOf(*light);
        const auto dark = make();
        const QImage expected = pictureOf(*dark);
        EXPECT_NE(before, after) << name.toStdString();
        EXPECT_EQ(after, expected) << name.toStdString();
        if (const QString folder = qEnvironmentVariable("DORVANTEL_TEST_PICTURES"); !folder.isEmpty()) {
            before.save(folder + u'/' + name + u"-before.png"_s);
            after.save(folder + u'/' + name + u"-after.png"_s);
            expected.save(folder + u'/' + name + u"-expected.png"_s);
        }
    }

    FakeRecordsService records;
    FakeModelService models;
    FakePDFOpener pdfs;
    FakeURLOpener urls;
    QTemporaryDir folder;
};

} // namespace

TEST_F(PaletteChange, TheMainWindowWithTheSearchFollows) {
    const auto make = [this] {
        auto window = std::make_unique<ContentView>(ContentView::Services{records, models, pdfs, urls});
        window->resize(1000, 700);
        window->show();
        records.answerFetchAll({{candidate(u"Ana"_s, u"ana@example.com"_s), candidate(u"Blas"_s, u"b@example.com"_s)}});
        EXPECT_TRUE(waitUntil([&] { return window->model().dbRecords().size() == 2; }));
        auto* list = window->findChild<QListView*>(u"candidateList"_s);
        list->setCurrentIndex(list->model()->index(0, 0));
        return window;
    };
    expectThatItFollows(make, u"main"_s);
}

TEST_F(PaletteChange, BothPagesOfTheValidationSheetFollow) {
    Model model(records);
    IntakeState state;
    SheetValues values;
    values.name = u"Ana Ruiz"_s;
    values.techSkills = {{u"Excel"_s}, {u"Sage"_s}};
    values.summarizedText = u"Lleva cuentas."_s;
    state.setValues(values);
    state.setDataExtracted(true);
    for (int page = 0; page < 2; ++page) {
        const auto make = [&] {
            auto sheet = std::make_unique<ValidationSheetView>(state, model, records, nullptr);
            sheet->findChild<SegmentedControl*>(u"valuetype"_s)->setCurrentIndex(page);
            sheet->show();
            return sheet;
        };
        expectThatItFollows(make, u"sheet%1"_s.arg(page));
    }
}

TEST_F(PaletteChange, BothTabsOfTheSettingsFollow) {
    const CapturedOutput silence;
    ScriptedServer server{[](const ScriptedRequest& request) {
        return request.target == "/api/tags" ? ScriptedReply{.body = R"({"models":[{"name":"nomic"}]})"}
                                             : ScriptedReply{.body = R"({"capabilities":["embedding"]})"};
    }};
    AppSettings settings{std::make_unique<QSettings>(folder.filePath(u"a.conf"_s), QSettings::IniFormat)};
    settings.setOllamaURL(server.url());
    settings.setSelectedEmbeddingModel(u"nomic"_s);
    NetworkHttpSession session;
    for (int tab = 0; tab < 2; ++tab) {
        const auto make = [&] {
            auto view = std::make_unique<SettingsView>(settings, session);
            view->setFixedSize(600, 800); // higher than its content, which fits or not by a hair otherwise
            view->setCurrentIndex(tab);
            view->show();
            auto* loaded = view->findChild<QWidget*>(u"loaded"_s);
            EXPECT_TRUE(tab == 0 || waitUntil([&] { return loaded->isVisible(); }));
            return view;
        };
        expectThatItFollows(make, u"settings%1"_s.arg(tab));
    }
}

} // namespace dorvantel::test
