// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TokenField2Coordinator.h"

#include <gmock/gmock.h>

namespace dorvantel {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

class LenientCoordinator : public testing::Test {
protected:
    TokenField2Coordinator coordinator(const QStringList& catalogue) {
        return {TokenBinding(list, [this] { states.append(list); }), catalogue};
    }

    QStringList list;          ///< the owner's
    QList<QStringList> states; ///< of the owner's list, after each write
};

} // namespace

TEST_F(LenientCoordinator, CompletionsAreTheCatalogueSpellingsThatBeginWithTheSubstringInAnyCase) {
    const TokenField2Coordinator lenient = coordinator({u"Word"_s, u"Excel"_s, u"EXCHANGE"_s, u"An Excel"_s});
    EXPECT_THAT(lenient.completionsForSubstring(u"eX"_s, {}), UnorderedElementsAre(u"Excel"_s, u"EXCHANGE"_s));
}

TEST_F(LenientCoordinator, ATokenOfTheFieldIsNotOfferedInWhateverCaseItStandsThere) {
    const TokenField2Coordinator lenient = coordinator({u"Excel"_s, u"Exchange"_s});
    EXPECT_THAT(lenient.completionsForSubstring(u"ex"_s, {u"EXCEL"_s}), ElementsAre(u"Exchange"_s));
}

TEST_F(LenientCoordinator, ACatalogueThatAccumulatedOffersEachValueOnceInItsLastSpelling) {
    const TokenField2Coordinator lenient = coordinator({u"Excel"_s, u"Word"_s, u"EXCEL"_s, u"Excel"_s, u"eXcel"_s});
    EXPECT_THAT(lenient.completionsForSubstring(u"ex"_s, {}), ElementsAre(u"eXcel"_s));
}

TEST_F(LenientCoordinator, TypingExcelAddsTheCatalogueSpellingOnce) {
    TokenField2Coordinator lenient = coordinator({u"Excel"_s});
    EXPECT_THAT(lenient.shouldAdd({u"excel"_s}, 0, {}), ElementsAre(u"Excel"_s));
    EXPECT_THAT(list, ElementsAre(u"Excel"_s));
    EXPECT_THAT(lenient.shouldAdd({u"EXCEL"_s}, 1, {u"Excel"_s}), IsEmpty());
    EXPECT_THAT(list, ElementsAre(u"Excel"_s));
}

TEST_F(LenientCoordinator, AValueOutsideTheCatalogueIsSkipped) {
    TokenField2Coordinator lenient = coordinator({u"Excel"_s, u"Word"_s});
    EXPECT_THAT(lenient.shouldAdd({u"PHP"_s, u"word"_s, u" excel"_s}, 0, {}), ElementsAre(u"Word"_s));
}

TEST_F(LenientCoordinator, AcceptedValuesAreAppendedOneAfterAnother) {
    list = {u"Java"_s};
    TokenField2Coordinator lenient = coordinator({u"Excel"_s, u"Word"_s, u"Java"_s});
    EXPECT_THAT(lenient.shouldAdd({u"word"_s, u"excel"_s}, 0, tokenObjects(list)), ElementsAre(u"Word"_s, u"Excel"_s));
    EXPECT_THAT(states,
                ElementsAre(QStringList({u"Java"_s, u"Word"_s}), QStringList({u"Java"_s, u"Word"_s, u"Excel"_s})));
}

TEST_F(LenientCoordinator, OnlyTheFieldsTokensCountAsPresentNotThoseProposedWithIt) {
    TokenField2Coordinator lenient = coordinator({u"Excel"_s});
    EXPECT_THAT(lenient.shouldAdd({u"excel"_s, u"EXCEL"_s}, 0, {}), ElementsAre(u"Excel"_s, u"Excel"_s));
}

TEST_F(LenientCoordinator, WithAnEmptyCatalogueAnyTextIsAcceptedAsTyped) {
    list = {u"excel"_s};
    TokenField2Coordinator lenient = coordinator({});
    EXPECT_THAT(lenient.shouldAdd({u"Lo que SEA"_s, u"excel"_s}, 1, tokenObjects(list)),
                ElementsAre(u"Lo que SEA"_s, u"excel"_s));
    EXPECT_THAT(list, ElementsAre(u"excel"_s, u"Lo que SEA"_s, u"excel"_s));
    EXPECT_THAT(lenient.completionsForSubstring(u"l"_s, {}), IsEmpty());
}

TEST_F(LenientCoordinator, OneProposedObjectThatIsNoTextKeepsAllOut) {
    EXPECT_THAT(coordinator({}).shouldAdd({u"Excel"_s, 7}, 0, {}), IsEmpty());
    EXPECT_THAT(states, IsEmpty());
}

TEST_F(LenientCoordinator, AnAccentWrittenApartIsTheSameLetter) {
    TokenField2Coordinator lenient = coordinator({u"Inglés"_s});
    EXPECT_THAT(lenient.completionsForSubstring(u"INGLE\u0301"_s, {}), ElementsAre(u"Inglés"_s));
    EXPECT_THAT(lenient.shouldAdd({u"ingle\u0301s"_s}, 0, {}), ElementsAre(u"Inglés"_s));
}

TEST_F(LenientCoordinator, AFieldThatHoldsFewerTokensReplacesTheList) {
    list = {u"Excel"_s, u"Word"_s, u"Java"_s};
    coordinator({}).textDidChange({u"Java"_s, u"Excel"_s}, FieldChange::Deletion);
    EXPECT_THAT(list, ElementsAre(u"Java"_s, u"Excel"_s));
}

TEST_F(LenientCoordinator, AFieldThatHoldsAsManyOrMoreWritesNothing) {
    list = {u"Excel"_s};
    TokenField2Coordinator lenient = coordinator({});
    lenient.textDidChange({u"Word"_s}, FieldChange::Deletion);
    lenient.textDidChange({u"Word"_s, u"Java"_s}, FieldChange::Deletion);
    EXPECT_THAT(states, IsEmpty());
}

TEST_F(LenientCoordinator, TypingWritesNothingEvenInAFieldThatHoldsFewerTokens) {
    list = {u"Excel"_s, u"Word"_s};
    coordinator({}).textDidChange({u"Word"_s}, FieldChange::Typing);
    EXPECT_THAT(states, IsEmpty());
}

TEST_F(LenientCoordinator, TheEndOfEditingWritesNothing) {
    list = {u"Excel"_s};
    coordinator({}).textDidEndEditing({});
    EXPECT_THAT(states, IsEmpty());
}

TEST_F(LenientCoordinator, EveryTokenHasAMenuWithTheOneItem) {
    const TokenField2Coordinator lenient = coordinator({});
    EXPECT_TRUE(lenient.hasMenuForToken(u"Excel"_s));
    EXPECT_TRUE(lenient.hasMenuForToken(QString()));
    EXPECT_THAT(lenient.menuForToken(u"Excel"_s),
                ElementsAre(TokenMenuItem{u"Eliminar token"_s, TokenAction::RemoveToken}));
}

TEST_F(LenientCoordinator, NoCommandIsEverHandled) {
    TokenField2Coordinator lenient = coordinator({});
    EXPECT_FALSE(lenient.doCommand(TextCommand::DeleteBackward));
    EXPECT_FALSE(lenient.doCommand(TextCommand::InsertNewline));
}

TEST(LenientCoordinatorDeathTest, AFieldValueThatIsNoListOfTextsStopsTheProgram) {
    QStringList list{u"Excel"_s, u"Word"_s};
    TokenField2Coordinator lenient(TokenBinding(list, [] {}), {u"Excel"_s});
    constexpr auto message = "Fatal error: the value of a token field is not a list of strings";
    EXPECT_DEATH(lenient.completionsForSubstring(u"e"_s, {7}), message);
    EXPECT_DEATH(lenient.shouldAdd({u"Excel"_s}, 0, {7}), message);
    EXPECT_DEATH(lenient.textDidChange({7}, FieldChange::Deletion), message);
}

} // namespace dorvantel
