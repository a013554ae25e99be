// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/Model.h"

#include "tests/data/LoadedModel.h"
#include "tests/support/Print.h"

#include <gmock/gmock.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::candidate;
using test::LoadedModel;
using test::speaking;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

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

} // namespace
} // namespace dorvantel
