// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/Model.h"

#include "tests/data/LoadedModel.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/Print.h"
#include "tests/support/Wait.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

#include <memory>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::candidate;
using test::CapturedOutput;
using test::FakeRecordsService;
using test::LoadedModel;
using test::speaking;
using test::waitUntil;
using testing::ElementsAre;

// ----- the initial load

TEST(Model, StartsEmptyAndAsksForAllRecordsOnce) {
    FakeRecordsService service;
    const Model model(service);

    EXPECT_THAT(service.calls(), ElementsAre(u"fetchAll"_s));
    EXPECT_TRUE(model.dbRecords().empty());
    EXPECT_EQ(model.selectedDBRecord(), nullptr);
    EXPECT_TRUE(model.techSkills().isEmpty());
    EXPECT_TRUE(model.softSkills().isEmpty());
    EXPECT_TRUE(model.languages().isEmpty());
    EXPECT_TRUE(model.techSkillsDictionary().isEmpty());
    EXPECT_TRUE(model.softSkillsDictionary().isEmpty());
    EXPECT_TRUE(model.languagesDictionary().isEmpty());
}

TEST(Model, FailedLoadLogsExactlyTwoLinesAndLeavesEverythingEmpty) {
    FakeRecordsService service;
    Model model(service);
    const QSignalSpy rebuilt(&model, &Model::cataloguesRebuilt);

    CapturedOutput output;
    service.answerFetchAll(std::unexpected(APIError::decodingProblem));
    QCoreApplication::processEvents();

    EXPECT_EQ(output.text(), u"❌ Failed to load resumes from API\n❌ Error type: decodingProblem\n"_s);
    EXPECT_TRUE(model.dbRecords().empty());
    for (const QStringList& list : {model.techSkills(), model.softSkills(), model.languages()}) {
        EXPECT_TRUE(list.isEmpty());
    }
    for (const Model::Catalogue& catalogue :
         {model.techSkillsDictionary(), model.softSkillsDictionary(), model.languagesDictionary()}) {
        EXPECT_TRUE(catalogue.isEmpty());
    }
    EXPECT_EQ(rebuilt.count(), 0);
    EXPECT_EQ(service.calls().size(), 1) << "a failed load is not tried again";
}

TEST(Model, FailedLoadEndsTheLoading) {
    FakeRecordsService service;
    const Model model(service);
    const QSignalSpy changed(&model, &Model::isLoadingChanged);
    ASSERT_TRUE(model.isLoading());

    const CapturedOutput silence;
    service.answerFetchAll(std::unexpected(APIError::responseProblem));

    EXPECT_FALSE(model.isLoading());
    EXPECT_EQ(changed.count(), 1);
}

TEST(Model, FailedLoadNamesEachErrorByItsCase) {
    for (const auto& [error, name] : {std::pair{APIError::responseProblem, u"responseProblem"_s},
                                      std::pair{APIError::decodingProblem, u"decodingProblem"_s},
                                      std::pair{APIError::encodingProblem, u"encodingProblem"_s}}) {
        FakeRecordsService service;
        const Model model(service);
        CapturedOutput output;
        service.answerFetchAll(std::unexpected(error));
        EXPECT_THAT(output.lines(), ElementsAre(u"❌ Failed to load resumes from API"_s, u"❌ Error type: "_s + name));
    }
}

TEST(Model, LoadedRecordsArriveInAQueuedStepOfTheirOwn) {
    FakeRecordsService service;
    Model model(service);

    service.answerFetchAll(std::vector{candidate(u"Ana"_s), candidate(u"Luis"_s)});
    EXPECT_TRUE(model.dbRecords().empty()) << "nothing may change inside the answer";

    ASSERT_TRUE(waitUntil([&model] { return model.dbRecords().size() == 2; }));
    EXPECT_EQ(model.dbRecords()[0]->name, u"Ana"_s);
    EXPECT_EQ(model.dbRecords()[1]->name, u"Luis"_s);
}

TEST(Model, LoadedRecordsFollowThoseThatWereAddedMeanwhile) {
    FakeRecordsService service;
    Model model(service);
    model.appendRecord(candidate(u"Nueva"_s));
    const QSignalSpy appended(&model, &Model::recordsAppended);

    service.answerFetchAll(std::vector{candidate(u"Ana"_s), candidate(u"Luis"_s)});

    ASSERT_TRUE(waitUntil([&model] { return model.dbRecords().size() == 3; }));
    EXPECT_EQ(model.dbRecords()[0]->name, u"Nueva"_s);
    EXPECT_EQ(model.dbRecords()[1]->name, u"Ana"_s);
    ASSERT_EQ(appended.count(), 1);
    EXPECT_EQ(appended[0], (QVariantList{qsizetype{1}, qsizetype{2}}));
}

TEST(Model, LoadedRecordsAreThereBeforeTheCataloguesAreRebuilt) {
    FakeRecordsService service;
    Model model(service);
    QStringList steps;
    QObject::connect(&model, &Model::recordsAppended, &model,
                     [&] { steps.append(u"appended, %1 languages"_s.arg(model.languages().size())); });
    QObject::connect(&model, &Model::cataloguesRebuilt, &model,
                     [&] { steps.append(u"rebuilt, %1 languages"_s.arg(model.languages().size())); });

    service.answerFetchAll(std::vector{speaking({u"Español"_s}), speaking({u"Inglés"_s})});

    ASSERT_TRUE(waitUntil([&steps] { return steps.size() == 2; }));
    EXPECT_THAT(steps, ElementsAre(u"appended, 0 languages"_s, u"rebuilt, 2 languages"_s));
}

TEST(Model, EmptyAnswerOnlyRebuildsTheCatalogues) {
    FakeRecordsService service;
    Model model(service);
    const QSignalSpy appended(&model, &Model::recordsAppended);
    QSignalSpy rebuilt(&model, &Model::cataloguesRebuilt);

    service.answerFetchAll(std::vector<DBRecordPointer>{});

    ASSERT_TRUE(waitUntil([&rebuilt] { return rebuilt.count() == 1; }));
    EXPECT_EQ(appended.count(), 0);
    EXPECT_TRUE(model.dbRecords().empty());
}

TEST(Model, AnswerAfterTheModelIsGoneIsIgnored) {
    FakeRecordsService service;
    auto model = std::make_unique<Model>(service);
    model.reset();
    CapturedOutput output;
    service.answerFetchAll(std::vector{candidate(u"Ana"_s)});
    QCoreApplication::processEvents();
    EXPECT_EQ(output.text(), QString());
}

TEST(Model, ModelThatGoesBetweenAnswerAndQueuedStepIsNotTouched) {
    FakeRecordsService service;
    auto model = std::make_unique<Model>(service);
    QSignalSpy changed(model.get(), &Model::cataloguesRebuilt);
    service.answerFetchAll(std::vector{candidate(u"Ana"_s)});
    model.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(changed.size(), 0);
}

// ----- appending, selecting, removing

TEST(Model, AppendedRecordIsLastAndAnnouncedWithoutARebuild) {
    LoadedModel loaded({speaking({u"Español"_s})});
    const QSignalSpy appended(&loaded.model, &Model::recordsAppended);
    const QSignalSpy rebuilt(&loaded.model, &Model::cataloguesRebuilt);

    loaded.model.appendRecord(speaking({u"Euskera"_s}));

    ASSERT_EQ(appended.count(), 1);
    EXPECT_EQ(appended[0], (QVariantList{qsizetype{1}, qsizetype{1}}));
    EXPECT_EQ(rebuilt.count(), 0);
    EXPECT_FALSE(loaded.model.languagesDictionary().contains(u"euskera"_s));
}

TEST(Model, SelectionIsAnnouncedOnlyWhenItChanges) {
    LoadedModel loaded({candidate(u"Ana"_s)});
    const QSignalSpy changed(&loaded.model, &Model::selectedDBRecordChanged);

    loaded.model.setSelectedDBRecord(loaded.model.dbRecords()[0]);
    loaded.model.setSelectedDBRecord(loaded.model.dbRecords()[0]);

    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(loaded.model.selectedDBRecord(), loaded.model.dbRecords()[0]);
}

TEST(Model, RemovingWithoutASelectionDoesNothing) {
    LoadedModel loaded({speaking({u"Español"_s})});
    const QSignalSpy rebuilt(&loaded.model, &Model::cataloguesRebuilt);

    loaded.model.removeSelectedRecord();

    EXPECT_EQ(loaded.model.dbRecords().size(), 1U);
    EXPECT_EQ(loaded.model.languages().size(), 1);
    EXPECT_EQ(rebuilt.count(), 0);
}

TEST(Model, RemovingASelectionThatIsNotInTheListChangesNothing) {
    LoadedModel loaded({speaking({u"Español"_s})});
    const DBRecordPointer stranger = candidate(loaded.model.dbRecords()[0]->name);
    loaded.model.setSelectedDBRecord(stranger);
    const QSignalSpy removed(&loaded.model, &Model::recordRemoved);
    const QSignalSpy selected(&loaded.model, &Model::selectedDBRecordChanged);
    const QSignalSpy rebuilt(&loaded.model, &Model::cataloguesRebuilt);

    loaded.model.removeSelectedRecord();

    EXPECT_EQ(loaded.model.dbRecords().size(), 1U);
    EXPECT_EQ(loaded.model.selectedDBRecord(), stranger);
    EXPECT_EQ(loaded.model.languages().size(), 1);
    EXPECT_EQ(removed.count() + selected.count() + rebuilt.count(), 0);
}

TEST(Model, RemovalTakesTheSelectedRecordClearsTheSelectionAndRebuilds) {
    LoadedModel loaded({candidate(u"Ana"_s), candidate(u"Luis"_s), candidate(u"Eva"_s)});
    loaded.model.setSelectedDBRecord(loaded.model.dbRecords()[1]);
    const QSignalSpy removed(&loaded.model, &Model::recordRemoved);
    const QSignalSpy selected(&loaded.model, &Model::selectedDBRecordChanged);
    const QSignalSpy rebuilt(&loaded.model, &Model::cataloguesRebuilt);

    loaded.model.removeSelectedRecord();

    ASSERT_EQ(loaded.model.dbRecords().size(), 2U);
    EXPECT_EQ(loaded.model.dbRecords()[0]->name, u"Ana"_s);
    EXPECT_EQ(loaded.model.dbRecords()[1]->name, u"Eva"_s);
    EXPECT_EQ(loaded.model.selectedDBRecord(), nullptr);
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed[0], (QVariantList{qsizetype{1}}));
    EXPECT_EQ(selected.count(), 1);
    EXPECT_EQ(rebuilt.count(), 1);
}

TEST(Model, RemovalTakesTheRecordThenTheSelectionAndRebuildsLast) {
    LoadedModel loaded({speaking({u"Español"_s}), speaking({u"Inglés"_s})});
    Model& model = loaded.model;
    model.setSelectedDBRecord(model.dbRecords()[0]);
    QStringList steps;
    const auto note = [&](const QString& signal) {
        steps.append(u"%1: %2 records, %3, %4 languages"_s.arg(signal)
                         .arg(model.dbRecords().size())
                         .arg(model.selectedDBRecord() ? u"selected"_s : u"none"_s)
                         .arg(model.languages().size()));
    };
    QObject::connect(&model, &Model::recordRemoved, &model, [&] { note(u"removed"_s); });
    QObject::connect(&model, &Model::selectedDBRecordChanged, &model, [&] { note(u"selection"_s); });
    QObject::connect(&model, &Model::cataloguesRebuilt, &model, [&] { note(u"rebuilt"_s); });

    model.removeSelectedRecord();

    EXPECT_THAT(steps,
                ElementsAre(u"removed: 1 records, selected, 2 languages"_s,
                            u"selection: 1 records, none, 2 languages"_s, u"rebuilt: 1 records, none, 3 languages"_s));
}

TEST(Model, RemovalGoesByIdentityNotByContent) {
    LoadedModel loaded({candidate(u"Ana"_s), candidate(u"Ana"_s)});
    const DBRecordPointer kept = loaded.model.dbRecords()[0];
    loaded.model.setSelectedDBRecord(loaded.model.dbRecords()[1]);

    loaded.model.removeSelectedRecord();

    ASSERT_EQ(loaded.model.dbRecords().size(), 1U);
    EXPECT_EQ(loaded.model.dbRecords()[0], kept);
}

TEST(Model, RemovalFindsARecordThroughAnotherObjectOfTheSameIdentity) {
    LoadedModel loaded({candidate(u"Ana"_s)});
    const DBRecordPointer twin = candidate(u"Ana, edited"_s);
    twin->id = loaded.model.dbRecords()[0]->id;
    loaded.model.setSelectedDBRecord(twin);

    loaded.model.removeSelectedRecord();

    EXPECT_TRUE(loaded.model.dbRecords().empty());
}

TEST(Model, RemovalDoesNotCallTheRecordsService) {
    LoadedModel loaded({candidate(u"Ana"_s)});
    loaded.model.setSelectedDBRecord(loaded.model.dbRecords()[0]);
    loaded.model.removeSelectedRecord();
    EXPECT_THAT(loaded.service.calls(), ElementsAre(u"fetchAll"_s));
}

} // namespace
} // namespace dorvantel
