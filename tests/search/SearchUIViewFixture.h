// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/Model.h"
#include "search/LazyRowList.h"
#include "search/SearchResultDetailUIView.h"
#include "search/SearchUIView.h"
#include "tests/support/FakeModelService.h"
#include "tests/support/FakePDFOpener.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/FakeURLOpener.h"
#include "tests/support/Typing.h"
#include "tests/support/Wait.h"
#include "ui/TokenField2.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

inline DBRecordPointer candidateWith(const QStringList& techSkills, const QStringList& softSkills,
                                     const QStringList& languages) {
    auto record = std::make_shared<DBRecordRepresentation>();
    record->jsonCVData = {u"Femenino"_s, softSkills, techSkills, languages};
    return record;
}

inline Search::Results answerOf(int rows) {
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
        QObject::connect(
            &model, &Model::cataloguesRebuilt, &model, [&rebuilt] { rebuilt = true; }, Qt::SingleShotConnection);
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

} // namespace dorvantel::test
