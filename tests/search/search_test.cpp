// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/Search.h"

#include "search/VectorText.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeModelService.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/Print.h"
#include "tests/support/Wait.h"

#include <QSignalSpy>

#include <array>

#include <gtest/gtest.h>

#include <stdexcept>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::CapturedOutput;
using test::FakeModelService;
using test::FakeRecordsService;
using test::waitUntil;

const SearchCriteria contable{.genderRequired = Gender::male,
                              .techSkillsRequiredTokens = {u"Excel"_s},
                              .freeTextSearchString = u"contable con experiencia"_s};

Search::Results answerNamed(const QString& sql) {
    return std::make_shared<IdentifiableSearchResponse>(SearchResponse{sql, {}});
}

/// A model service whose calls end with an exception.
class ThrowingModelService final : public ModelService {
public:
    QFuture<ModelResult<QString>> chat(const QList<OllamaChatMessage>&, const std::optional<QString>&,
                                       const std::optional<double>&) override {
        return {};
    }
    QFuture<ModelResult<QList<double>>> generateEmbedding(const QString&, const std::optional<QString>&) override {
        QPromise<ModelResult<QList<double>>> promise;
        promise.start();
        promise.setException(std::make_exception_ptr(std::runtime_error("no memory left")));
        promise.finish();
        return promise.future();
    }
};

class SearchTest : public testing::Test {
protected:
    void waitForSearches(qsizetype count) {
        ASSERT_TRUE(waitUntil([&] { return records.calls().size() >= count; }));
    }
    /// Long enough for everything that is already queued.
    static void runQueue() {
        bool done = false;
        QMetaObject::invokeMethod(qApp, [&done] { done = true; }, Qt::QueuedConnection);
        ASSERT_TRUE(waitUntil([&done] { return done; }));
    }

    FakeRecordsService records;
    FakeModelService models;
    std::unique_ptr<QObject> application = std::make_unique<QObject>();
    std::unique_ptr<Search> search = std::make_unique<Search>(records, models, *application);
    QSignalSpy changed{search.get(), &Search::resultsChanged};
};

TEST_F(SearchTest, StructuredSearchBeginsAfterTheButtonsActionReturns) {
    search->start({.genderRequired = Gender::male});
    EXPECT_EQ(records.calls(), QStringList());
    waitForSearches(1);
    EXPECT_EQ(records.calls(), QStringList{u"search select name,profession,email,summarizedText,invitationMail,"
                                           "jsonCVData,100.0 as score from curriculums where jsonCVData::gender = "
                                           "'\"Masculino\"'"_s});
    EXPECT_TRUE(models.embeddingCalls().isEmpty());
}

TEST_F(SearchTest, NoResultsBeforeTheFirstAnswer) {
    EXPECT_EQ(search->results(), nullptr);
    search->start({});
    waitForSearches(1);
    EXPECT_EQ(search->results(), nullptr);
    EXPECT_EQ(changed.size(), 0);
}

TEST_F(SearchTest, AnswerBecomesTheResults) {
    search->start({});
    waitForSearches(1);
    const Search::Results answer = answerNamed(u"1"_s);
    records.answerSearch(answer);
    EXPECT_EQ(search->results(), answer);
    EXPECT_EQ(changed.size(), 1);
}

TEST_F(SearchTest, FailedSearchLeavesTheResultsAndLogsOneLine) {
    for (int press = 0; press < 4; ++press) {
        search->start({});
    }
    waitForSearches(4);
    const Search::Results answer = answerNamed(u"1"_s);
    records.answerSearch(answer);
    for (const APIError error : {APIError::responseProblem, APIError::decodingProblem, APIError::encodingProblem}) {
        CapturedOutput output;
        records.answerSearch(std::unexpected(error));
        EXPECT_EQ(output.text(), u"Failure! No records returned\n"_s);
    }
    EXPECT_EQ(search->results(), answer);
    EXPECT_EQ(changed.size(), 1);
}

TEST_F(SearchTest, EveryPressStartsASearchOfItsOwn) {
    search->start({});
    search->start({});
    search->start({.genderRequired = Gender::female});
    waitForSearches(3);
    EXPECT_EQ(records.calls().size(), 3);
    EXPECT_EQ(records.calls()[0], records.calls()[1]);
}

TEST_F(SearchTest, TheAnswerThatArrivesLastStays) {
    models.queueEmbedding(QList<double>{1});
    search->start({});
    search->start(contable);
    waitForSearches(2);
    const Search::Results first = answerNamed(u"first"_s);
    const Search::Results second = answerNamed(u"second"_s);
    records.answerSearch(first);
    EXPECT_EQ(search->results(), first);
    records.answerSearch(second);
    EXPECT_EQ(search->results(), second);
}

TEST_F(SearchTest, LateAnswerComesBackAfterClearing) {
    search->start({});
    waitForSearches(1);
    search->clear();
    EXPECT_EQ(search->results(), nullptr);
    const Search::Results late = answerNamed(u"late"_s);
    records.answerSearch(late);
    EXPECT_EQ(search->results(), late);
}

TEST_F(SearchTest, ClearingTakesTheResultsAwayAndCancelsNothing) {
    search->start(contable);
    search->start({});
    waitForSearches(1);
    records.answerSearch(answerNamed(u"1"_s));
    search->clear();
    EXPECT_EQ(search->results(), nullptr);
    EXPECT_EQ(changed.size(), 2);
    EXPECT_FALSE(models.isEmbeddingCancelled(0));
    models.answerEmbedding(0, QList<double>{1});
    waitForSearches(2);
}

TEST_F(SearchTest, FreeTextMakesTheSearchSemanticAndTokensNarrowIt) {
    search->start(contable);
    ASSERT_EQ(models.embeddingCalls().size(), 1);
    EXPECT_EQ(models.embeddingCalls()[0].text, u"contable con experiencia"_s);
    EXPECT_EQ(models.embeddingCalls()[0].model, std::nullopt);
    models.answerEmbedding(0, QList<double>{0.25, -0.5, 1.5e-05});
    waitForSearches(1);
    EXPECT_EQ(records.calls(),
              QStringList{u"search select name,profession,email,summarizedText,invitationMail,jsonCVData,GREATEST(0, "
                          "LEAST(100, (dot_product(vector, JSON_ARRAY_PACK('[0.25,-0.5,1.5e-05]')) + 1) * 50)) AS "
                          "score from curriculums where jsonCVData::gender = '\"Masculino\"' AND "
                          "JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'Excel') ORDER BY score DESC LIMIT 5"_s});
}

TEST_F(SearchTest, FreeTextOfBlanksIsEmbeddedAsItIs) {
    for (const QString& text : {u" "_s, u"  \n\t "_s, u" Contable "_s}) {
        search->start({.freeTextSearchString = text});
        EXPECT_EQ(models.embeddingCalls().last().text, text);
    }
    runQueue();
    EXPECT_EQ(records.calls(), QStringList());
    models.answerEmbedding(0, QList<double>{0.5});
    waitForSearches(1);
    EXPECT_EQ(records.calls(), QStringList{u"search "_s + semanticStatement(std::array{0.5}, {})});
}

TEST_F(SearchTest, EmptyEmbeddingIsSearchedWith) {
    models.queueEmbedding(QList<double>());
    search->start({.freeTextSearchString = u"x"_s});
    waitForSearches(1);
    EXPECT_EQ(records.calls(), QStringList{u"search "_s + semanticStatement({}, {})});
}

TEST_F(SearchTest, FailedEmbeddingIsLoggedAndNothingIsSent) {
    search->start({});
    waitForSearches(1);
    const Search::Results before = answerNamed(u"1"_s);
    records.answerSearch(before);
    models.queueEmbedding(std::unexpected(OllamaError::modelNotConfigured()));
    models.queueEmbedding(
        std::unexpected(OllamaError::networkError({.domain = {}, .code = 0, .description = u"Conexión rechazada"_s})));

    CapturedOutput output;
    search->start({.freeTextSearchString = u"x"_s});
    search->start({.freeTextSearchString = u"x"_s});
    runQueue();
    EXPECT_EQ(output.text(), u"❌ Error generating embedding: Modelo LLM no configurado en Preferencias\n"
                             "❌ Error generating embedding: Error de red: Conexión rechazada\n"_s);
    EXPECT_EQ(records.calls().size(), 1);
    EXPECT_EQ(search->results(), before);
}

TEST_F(SearchTest, IsUnderWayUntilTheLastOfAllIsAnsweredOrHasFailed) {
    const QSignalSpy underWay(search.get(), &Search::isUnderWayChanged);
    search->start({.freeTextSearchString = u"x"_s});
    search->start({});
    search->start({});
    waitForSearches(2);
    const CapturedOutput silence;
    models.answerEmbedding(0, std::unexpected(OllamaError::modelNotConfigured()));
    runQueue();
    records.answerSearch(std::unexpected(APIError::responseProblem));
    EXPECT_TRUE(search->isUnderWay());
    records.answerSearch(answerNamed(u"1"_s));
    EXPECT_FALSE(search->isUnderWay());
    EXPECT_EQ(underWay.size(), 2);
}

TEST_F(SearchTest, FailedSemanticSearchIsLoggedLikeAStructuredOne) {
    models.queueEmbedding(QList<double>{1});
    search->start(contable);
    waitForSearches(1);
    CapturedOutput output;
    records.answerSearch(std::unexpected(APIError::responseProblem));
    EXPECT_EQ(output.text(), u"Failure! No records returned\n"_s);
    EXPECT_EQ(changed.size(), 0);
}

TEST_F(SearchTest, SemanticSearchesRunAtOnceAndEndInAnyOrder) {
    search->start({.freeTextSearchString = u"uno"_s});
    search->start({.freeTextSearchString = u"dos"_s});
    models.answerEmbedding(1, QList<double>{2});
    waitForSearches(1);
    models.answerEmbedding(0, QList<double>{1});
    waitForSearches(2);
    EXPECT_TRUE(records.calls()[0].contains(u"'[2.0]'"_s));
    EXPECT_TRUE(records.calls()[1].contains(u"'[1.0]'"_s));
}

TEST_F(SearchTest, ExceptionInsteadOfAnEmbeddingIsLoggedAndEndsTheSearch) {
    ThrowingModelService throwing;
    Search other(records, throwing, *application);
    CapturedOutput output;
    other.start({.freeTextSearchString = u"x"_s});
    EXPECT_TRUE(other.isUnderWay());
    ASSERT_TRUE(waitUntil([&] { return !other.isUnderWay(); }));
    EXPECT_EQ(output.text(), u"❌ Error generating embedding: no memory left\n"_s);
    EXPECT_EQ(records.calls(), QStringList());
}

TEST_F(SearchTest, SearchesUnderWayComeToTheirEndWhenItIsGoneAndReachNobody) {
    search->start({});
    search->start({});
    waitForSearches(2);
    search->start({.freeTextSearchString = u"x"_s});
    search->start({.genderRequired = Gender::male});
    search.reset();
    CapturedOutput output;
    records.answerSearch(answerNamed(u"late"_s));
    records.answerSearch(std::unexpected(APIError::responseProblem));
    EXPECT_EQ(output.text(), u"Failure! No records returned\n"_s);

    models.answerEmbedding(0, QList<double>{0.5});
    waitForSearches(4);
    EXPECT_EQ(records.calls().sliced(2),
              (QStringList{u"search "_s + structuredStatement({u"jsonCVData::gender = '\"Masculino\"'"_s}),
                           u"search "_s + semanticStatement(std::array{0.5}, {})}));
    EXPECT_EQ(changed.size(), 0);
}

TEST_F(SearchTest, EmbeddingThatFailsWhenItIsGoneIsStillLogged) {
    search->start({.freeTextSearchString = u"x"_s});
    search.reset();
    CapturedOutput output;
    models.answerEmbedding(0, std::unexpected(OllamaError::emptyResponse()));
    runQueue();
    EXPECT_EQ(output.text(), u"❌ Error generating embedding: Respuesta vacía del modelo\n"_s);
    EXPECT_EQ(records.calls(), QStringList());
}

TEST_F(SearchTest, WhatHasNotBeenSentIsGivenUpWithTheApplication) {
    search->start({});
    search->start({.freeTextSearchString = u"x"_s});
    search.reset();
    application.reset();
    CapturedOutput output;
    models.answerEmbedding(0, QList<double>{1});
    runQueue();
    EXPECT_EQ(output.text(), QString());
    EXPECT_EQ(records.calls(), QStringList());
}

} // namespace
} // namespace dorvantel
