// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/Model.h"

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
using test::CapturedOutput;
using test::FakeRecordsService;
using test::waitUntil;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

DBRecordPointer candidate(const QString& name, const JSONCVData& data = {}) {
    auto record = std::make_shared<DBRecordRepresentation>();
    record->name = name;
    record->jsonCVData = data;
    return record;
}

DBRecordPointer speaking(const QStringList& languages) {
    return candidate(u"Ana"_s, {.gender = {}, .softSkills = {}, .techSkills = {}, .languages = languages});
}

/// A model whose load was answered with `records`, and the service behind it.
struct LoadedModel {
    explicit LoadedModel(std::vector<DBRecordPointer> records) {
        bool rebuilt = false;
        const auto connection =
            QObject::connect(&model, &Model::cataloguesRebuilt, &model, [&rebuilt] { rebuilt = true; });
        service.answerFetchAll(std::move(records));
        EXPECT_TRUE(waitUntil([&rebuilt] { return rebuilt; }));
        QObject::disconnect(connection);
    }
    FakeRecordsService service;
    Model model{service};
};

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

// ----- the catalogues

TEST(Model, LaterSpellingOfTheSameValueWins) {
    const LoadedModel loaded({
        candidate(u"Ana"_s, {.gender = {}, .softSkills = {u"Liderazgo"_s}, .techSkills = {}, .languages = {}}),
        candidate(u"Luis"_s, {.gender = {}, .softSkills = {u"liderazgo"_s}, .techSkills = {}, .languages = {}}),
    });
    EXPECT_EQ(loaded.model.softSkillsDictionary(), (Model::Catalogue{{u"liderazgo"_s, u"liderazgo"_s}}));
    EXPECT_THAT(loaded.model.softSkills(), ElementsAre(u"liderazgo"_s));
}

TEST(Model, SpellingThatComesBackAfterAnotherWinsAgain) {
    const LoadedModel loaded({speaking({u"Inglés"_s}), speaking({u"INGLÉS"_s}), speaking({u"Inglés"_s})});
    EXPECT_EQ(loaded.model.languagesDictionary(), (Model::Catalogue{{u"inglés"_s, u"Inglés"_s}}));
}

TEST(Model, LaterSpellingWithinOneRecordWins) {
    const LoadedModel loaded({speaking({u"inglés"_s, u"Inglés"_s})});
    EXPECT_EQ(loaded.model.languagesDictionary(), (Model::Catalogue{{u"inglés"_s, u"Inglés"_s}}));
}

TEST(Model, EachKindHasACatalogueOfItsOwn) {
    const LoadedModel loaded({candidate(u"Ana"_s, {.gender = u"Femenino"_s,
                                                   .softSkills = {u"Empatía"_s},
                                                   .techSkills = {u"C++"_s, u"Qt"_s},
                                                   .languages = {u"Español"_s}})});
    EXPECT_EQ(loaded.model.softSkillsDictionary(), (Model::Catalogue{{u"empatía"_s, u"Empatía"_s}}));
    EXPECT_EQ(loaded.model.techSkillsDictionary(), (Model::Catalogue{{u"c++"_s, u"C++"_s}, {u"qt"_s, u"Qt"_s}}));
    EXPECT_EQ(loaded.model.languagesDictionary(), (Model::Catalogue{{u"español"_s, u"Español"_s}}));
    EXPECT_THAT(loaded.model.softSkills(), ElementsAre(u"Empatía"_s));
    EXPECT_THAT(loaded.model.techSkills(), UnorderedElementsAre(u"C++"_s, u"Qt"_s));
    EXPECT_THAT(loaded.model.languages(), ElementsAre(u"Español"_s));
}

TEST(Model, ValuesAreNeitherTrimmedNorFreedOfAccents) {
    const LoadedModel loaded({speaking({u"Inglés"_s, u"Ingles"_s, u"Inglés "_s, u""_s})});
    EXPECT_EQ(
        loaded.model.languagesDictionary(),
        (Model::Catalogue{
            {u"inglés"_s, u"Inglés"_s}, {u"ingles"_s, u"Ingles"_s}, {u"inglés "_s, u"Inglés "_s}, {u""_s, u""_s}}));
}

TEST(Model, AccentWrittenApartIsTheSameValue) {
    const LoadedModel loaded({speaking({u"Inglés"_s}), speaking({u"INGLE\u0301S"_s})});
    EXPECT_EQ(loaded.model.languagesDictionary(), (Model::Catalogue{{u"inglés"_s, u"INGLE\u0301S"_s}}));
}

TEST(Model, ListsGrowWithEveryRebuildWhileDictionariesStayExact) {
    LoadedModel loaded({speaking({u"Español"_s, u"Inglés"_s}), speaking({u"Inglés"_s, u"Español"_s})});
    ASSERT_THAT(loaded.model.languages(), UnorderedElementsAre(u"Español"_s, u"Inglés"_s));

    loaded.model.setSelectedDBRecord(loaded.model.dbRecords()[0]);
    loaded.model.removeSelectedRecord();

    EXPECT_THAT(loaded.model.languages(), UnorderedElementsAre(u"Español"_s, u"Inglés"_s, u"Español"_s, u"Inglés"_s));
    EXPECT_EQ(loaded.model.languagesDictionary().size(), 2);
}

TEST(Model, ValueOfARemovedRecordLeavesTheDictionaryButNotTheList) {
    LoadedModel loaded({speaking({u"Español"_s}), speaking({u"Inglés"_s})});
    loaded.model.setSelectedDBRecord(loaded.model.dbRecords()[1]);
    loaded.model.removeSelectedRecord();

    EXPECT_EQ(loaded.model.languagesDictionary(), (Model::Catalogue{{u"español"_s, u"Español"_s}}));
    EXPECT_THAT(loaded.model.languages(), UnorderedElementsAre(u"Español"_s, u"Inglés"_s, u"Español"_s));
}

TEST(Model, KnownValuesAreTheListsWithoutRepetitions) {
    LoadedModel loaded({speaking({u"Español"_s, u"Inglés"_s})});
    loaded.model.rebuildCatalogues();
    loaded.model.rebuildCatalogues();
    EXPECT_EQ(loaded.model.languages().size(), 6);
    EXPECT_THAT(loaded.model.knownLanguages(), UnorderedElementsAre(u"Español"_s, u"Inglés"_s));
}

TEST(Model, KnownValueHasTheSpellingOfTheLatestRebuild) {
    LoadedModel loaded({speaking({u"inglés"_s}), speaking({u"Inglés"_s})});
    loaded.model.setSelectedDBRecord(loaded.model.dbRecords()[1]);
    loaded.model.removeSelectedRecord();
    EXPECT_THAT(loaded.model.languages(), ElementsAre(u"Inglés"_s, u"inglés"_s));
    EXPECT_THAT(loaded.model.knownLanguages(), ElementsAre(u"inglés"_s));
}

TEST(Model, ValueOfARemovedRecordStaysKnown) {
    LoadedModel loaded({speaking({u"Español"_s}), speaking({u"Inglés"_s})});
    loaded.model.setSelectedDBRecord(loaded.model.dbRecords()[1]);
    loaded.model.removeSelectedRecord();
    EXPECT_THAT(loaded.model.knownLanguages(), UnorderedElementsAre(u"Español"_s, u"Inglés"_s));
}

TEST(Model, KnownValuesOfOneKindAreNotThoseOfAnother) {
    const LoadedModel loaded({candidate(u"Ana"_s, {.gender = u"Femenino"_s,
                                                   .softSkills = {u"Empatía"_s},
                                                   .techSkills = {u"C++"_s, u"Qt"_s},
                                                   .languages = {u"Español"_s}})});
    EXPECT_THAT(loaded.model.knownSoftSkills(), ElementsAre(u"Empatía"_s));
    EXPECT_THAT(loaded.model.knownTechSkills(), UnorderedElementsAre(u"C++"_s, u"Qt"_s));
    EXPECT_THAT(loaded.model.knownLanguages(), ElementsAre(u"Español"_s));
}

TEST(Model, RebuildTakesUpWhatWasEditedInARecord) {
    LoadedModel loaded({speaking({u"Español"_s})});
    loaded.model.dbRecords()[0]->jsonCVData.languages = {u"Gallego"_s};
    loaded.model.rebuildCatalogues();
    EXPECT_EQ(loaded.model.languagesDictionary(), (Model::Catalogue{{u"gallego"_s, u"Gallego"_s}}));
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
