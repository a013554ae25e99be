// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/Schema.h"
#include "tests/service/SqliteStoreFixture.h"

using namespace dorvantel::service;
using namespace dorvantel::test;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(SqliteStoreTest, InsertedCandidateWaitsForItsVector) {
    SqliteStore store(folder.store(), "m");
    ASSERT_TRUE(store.insert(makeRecord("a@x", {"Femenino", {"S"}, {"T"}, {"L"}})));
    ASSERT_TRUE(store.insert(makeRecord("b@x")));
    const auto firstId = *store.nextUnembedded(0);
    ASSERT_TRUE(firstId);
    const auto first = *store.unembedded(*firstId);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->id, *firstId);
    EXPECT_EQ(first->name, "Name of a@x");
    EXPECT_EQ(first->email, "a@x");
    EXPECT_EQ(first->profession, "Profession of a@x");
    EXPECT_EQ(first->summarizedText, "Summary of a@x");
    EXPECT_EQ(first->cvData, (CVData{"Femenino", {"S"}, {"T"}, {"L"}}));
    const auto second = *store.nextUnembedded(*firstId);
    ASSERT_TRUE(second);
    EXPECT_EQ((*store.unembedded(*second))->profession, "Profession of b@x");
    EXPECT_EQ(*store.nextUnembedded(*second), std::nullopt);
    ASSERT_EQ(store.putVector(*second, {1, 0}), true);
    EXPECT_FALSE(*store.unembedded(*second)) << "it waits no longer";
}

TEST_F(SqliteStoreTest, StoreOfEveryEarlierVersionComputesItsVectorsAgain) {
    for (std::size_t version = 1; version < migrations().size(); ++version) {
        SCOPED_TRACE(version);
        const StoreFolder own;
        {
            const StoreFile file(own.store());
            const SqliteDatabase old(own.store().string(), SqliteDatabase::Access::ReadWriteCreate);
            migrate(old, migrations().first(version));
            old.execute("INSERT INTO record VALUES (7, 'a@x', 'N', 'P', 'S', 'M', '{}', '{}', 0);"
                        "INSERT INTO vector VALUES (7, 'm', x'0000803f')");
        }
        SqliteStore store(own.store(), "m");
        EXPECT_THAT(emailsOf(store, similarTo({1})), IsEmpty());
        EXPECT_EQ(*store.nextUnembedded(0), 7);
        EXPECT_EQ(store.putVector(7, {1, 0}), true);
        EXPECT_THAT(emailsOf(store, similarTo({1, 0})), ElementsAre("a@x"));
    }
}

TEST_F(SqliteStoreTest, VectorsOfTheNewestVersionAreKeptAtTheNextStart) {
    {
        SqliteStore store(folder.store(), "m");
        ASSERT_TRUE(store.insert(makeRecord("a@x")));
        ASSERT_EQ(store.putVector(queuedId(store, "a@x"), {1, 0}), true);
    }
    SqliteStore store(folder.store(), "m");
    EXPECT_EQ(*store.nextUnembedded(0), std::nullopt);
    EXPECT_THAT(emailsOf(store, similarTo({1, 0})), ElementsAre("a@x"));
}

TEST_F(SqliteStoreTest, SearchWithAVectorAndNoOrderComesInTheOrderOfInsertion) {
    SqliteStore store(folder.store(), "m");
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    ASSERT_TRUE(store.insert(makeRecord("b@x")));
    ASSERT_EQ(store.putVector(2, {1, 0}), true);
    ASSERT_EQ(store.putVector(1, {0, 1}), true);
    Plan plan = similarTo({1, 0});
    plan.best.reset();
    const auto rows = rowsOf(store, plan);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].email, "a@x");
    EXPECT_EQ(rows[0].score, 50);
    EXPECT_EQ(rows[1].score, 100);
}

TEST_F(SqliteStoreTest, RanksByScoreAndBreaksTiesByInsertion) {
    SqliteStore store(folder.store(), "m");
    const std::vector<std::pair<std::string, std::vector<float>>> candidates{
        {"east", {1, 0}}, {"north", {0, 1}}, {"west", {-1, 0}}, {"north2", {0, 1}}, {"south", {0, -1}}, {"none", {}}};
    for (const auto& [email, vector] : candidates) {
        ASSERT_TRUE(store.insert(makeRecord(email)));
    }
    // In another order than the insertions, which alone must count.
    for (const std::size_t i : {4U, 3U, 0U, 2U, 1U}) {
        ASSERT_EQ(store.putVector(queuedId(store, candidates[i].first), candidates[i].second), true);
    }
    EXPECT_THAT(emailsOf(store, similarTo({1, 0})), ElementsAre("east", "north", "north2", "south", "west"));
    const auto rows = rowsOf(store, similarTo({0, 0.5F}));
    EXPECT_EQ(rows[0].email, "north");
    EXPECT_EQ(rows[0].score, 75);
    EXPECT_EQ(rows[1].email, "north2");
    EXPECT_EQ(rows[2].email, "east");
    EXPECT_EQ(rows[2].score, 50);
    EXPECT_EQ(rows[3].email, "west");
    EXPECT_EQ(rows[4].score, 25);
}

TEST_F(SqliteStoreTest, ScoresAreClamped) {
    SqliteStore store(folder.store(), "m");
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    ASSERT_TRUE(store.putVector(1, {1, 0}));
    EXPECT_EQ(rowsOf(store, similarTo({7, 0}))[0].score, 100);
    EXPECT_EQ(rowsOf(store, similarTo({-7, 0}))[0].score, 0);
}

TEST_F(SqliteStoreTest, ConditionsNarrowTheRanking) {
    SqliteStore store(folder.store(), "m");
    ASSERT_TRUE(store.insert(makeRecord("a@x", {"Femenino", {}, {"A"}, {}})));
    ASSERT_TRUE(store.insert(makeRecord("b@x", {"Masculino", {}, {"A"}, {}})));
    ASSERT_TRUE(store.insert(makeRecord("c@x", {"Masculino", {}, {"A"}, {}}))); // has no vector
    ASSERT_TRUE(store.putVector(1, {1, 0}));
    ASSERT_TRUE(store.putVector(2, {0, 1}));
    EXPECT_THAT(emailsOf(store, similarTo({1, 0}, {{Trait::Gender, "Masculino"}})), ElementsAre("b@x"));
    EXPECT_THAT(emailsOf(store, similarTo({1, 0}, {{Trait::TechSkill, "A"}})), ElementsAre("a@x", "b@x"));
    EXPECT_THAT(emailsOf(store, similarTo({1, 0}, {{Trait::TechSkill, "B"}})), IsEmpty());
}

TEST_F(SqliteStoreTest, QueryVectorOfAnotherLengthNamesBoth) {
    SqliteStore store(folder.store(), "m");
    EXPECT_THAT(rowsOf(store, similarTo({1, 0, 0})), IsEmpty());
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    ASSERT_TRUE(store.putVector(1, {1, 0}));
    for (const std::vector<float>& query : {std::vector<float>{1, 0, 0}, std::vector<float>{}}) {
        const auto rows = store.run(similarTo(query, {{Trait::Gender, "Nobody"}}));
        ASSERT_FALSE(rows);
        EXPECT_EQ(rows.error().kind, StoreError::Kind::VectorLength);
        EXPECT_EQ(rows.error().message,
                  "the query vector has " + std::to_string(query.size()) + " numbers, the stored vectors have 2");
    }
}

TEST_F(SqliteStoreTest, NewVectorOfAnotherLengthIsRefused) {
    SqliteStore store(folder.store(), "m");
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    ASSERT_TRUE(store.insert(makeRecord("b@x")));
    ASSERT_TRUE(store.putVector(1, {1, 0}));
    EXPECT_EQ(store.putVector(2, {1, 0, 0}).error().message, "the new vector has 3 numbers, the stored vectors have 2");
    EXPECT_EQ(queuedId(store, "b@x"), 2);
}

TEST_F(SqliteStoreTest, ReplacedAndDeletedRecordsLeaveTheRanking) {
    SqliteStore store(folder.store(), "m");
    for (const char* const email : {"a@x", "b@x", "c@x"}) {
        ASSERT_TRUE(store.insert(makeRecord(email)));
        ASSERT_TRUE(store.putVector(queuedId(store, email), {1, 0}));
    }
    ASSERT_TRUE(store.remove("a@x"));
    ASSERT_TRUE(store.insert(makeRecord("b@x")));
    EXPECT_THAT(emailsOf(store, similarTo({1, 0})), ElementsAre("c@x"));
    EXPECT_EQ(store.putVector(2, {1, 0}), false) << "the replaced version";
    ASSERT_EQ(store.putVector(queuedId(store, "b@x"), {0, 1}), true);
    EXPECT_THAT(emailsOf(store, similarTo({1, 0})), ElementsAre("c@x", "b@x"));
    EXPECT_EQ(value("SELECT count(*) FROM vector"), "2");
}

TEST_F(SqliteStoreTest, AnotherModelStartsAnewAndKeepsItsVectorsApart) {
    {
        SqliteStore store(folder.store(), "old");
        ASSERT_TRUE(store.insert(makeRecord("a@x")));
        ASSERT_TRUE(store.putVector(1, {1, 0}));
    }
    SqliteStore store(folder.store(), "new");
    EXPECT_THAT(rowsOf(store, similarTo({1, 0})), IsEmpty());
    ASSERT_EQ(queuedId(store, "a@x"), 1);
    ASSERT_TRUE(store.putVector(1, {0, 0, 1}));
    EXPECT_THAT(emailsOf(store, similarTo({0, 0, 1})), ElementsAre("a@x"));
    EXPECT_EQ(value("SELECT model FROM vector"), "new");
}

TEST_F(SqliteStoreTest, WithoutAModelASemanticPlanGivesNoRows) {
    {
        SqliteStore store(folder.store(), "m");
        ASSERT_TRUE(store.insert(makeRecord("a@x")));
        ASSERT_TRUE(store.putVector(1, {1, 0}));
    }
    {
        SqliteStore store(folder.store(), "");
        EXPECT_THAT(rowsOf(store, similarTo({1, 0})), IsEmpty());
        EXPECT_THAT(rowsOf(store, similarTo({1, 0, 0})), IsEmpty());
        ASSERT_TRUE(store.insert(makeRecord("b@x")));
    }
    SqliteStore store(folder.store(), "m");
    EXPECT_THAT(emailsOf(store, similarTo({1, 0})), ElementsAre("a@x"));
    EXPECT_EQ(queuedId(store, "b@x"), 2);
}
