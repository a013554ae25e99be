// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TokenFieldCoordinator.h"

#include <gmock/gmock.h>

namespace dorvantel {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class StrictCoordinator : public testing::Test {
protected:
    TokenFieldCoordinator coordinator(const QStringList& catalogue) {
        return {TokenBinding(list, [this] { ++changes; }), catalogue};
    }

    QStringList list; ///< the owner's
    int changes = 0;
};

} // namespace

TEST_F(StrictCoordinator, CompletionsBeginWithTheSubstringInAnyCaseAndKeepTheCatalogueOrder) {
    const TokenFieldCoordinator strict = coordinator({u"Word"_s, u"Excel"_s, u"EXCHANGE"_s, u"An Excel"_s, u"exe"_s});
    EXPECT_THAT(strict.completionsForSubstring(u"eX"_s, {}), ElementsAre(u"Excel"_s, u"EXCHANGE"_s, u"exe"_s));
}

TEST_F(StrictCoordinator, AValueThatIsATokenAlreadyIsStillOffered) {
    list = {u"Excel"_s};
    EXPECT_THAT(coordinator({u"Excel"_s}).completionsForSubstring(u"ex"_s, tokenObjects(list)),
                ElementsAre(u"Excel"_s));
}

TEST_F(StrictCoordinator, ACatalogueThatHoldsAValueTwiceOffersItTwice) {
    EXPECT_THAT(coordinator({u"Excel"_s, u"Excel"_s}).completionsForSubstring(u"e"_s, {}),
                ElementsAre(u"Excel"_s, u"Excel"_s));
}

TEST_F(StrictCoordinator, AnEmptySubstringOffersTheWholeCatalogue) {
    EXPECT_THAT(coordinator({u"b"_s, u"a"_s}).completionsForSubstring(QString(), {}), ElementsAre(u"b"_s, u"a"_s));
}

TEST_F(StrictCoordinator, AnUnaccentedSubstringDoesNotBeginAnAccentedValue) {
    const TokenFieldCoordinator strict = coordinator({u"E\u0301tica"_s});
    EXPECT_THAT(strict.completionsForSubstring(u"e"_s, {}), IsEmpty());
    EXPECT_THAT(strict.completionsForSubstring(u"\u00c9t"_s, {}), ElementsAre(u"E\u0301tica"_s));
}

TEST_F(StrictCoordinator, TypingExcelInLowerCaseAddsNothingAlthoughExcelIsOffered) {
    TokenFieldCoordinator strict = coordinator({u"Excel"_s});
    EXPECT_THAT(strict.completionsForSubstring(u"ex"_s, {}), ElementsAre(u"Excel"_s));
    EXPECT_THAT(strict.shouldAdd({u"excel"_s}, 0, {}), IsEmpty());
    EXPECT_THAT(list, IsEmpty());
    EXPECT_EQ(changes, 0);
}

TEST_F(StrictCoordinator, OnlyExactMembersAreKeptAndAppendedInOrder) {
    list = {u"Word"_s};
    TokenFieldCoordinator strict = coordinator({u"Excel"_s, u"Java"_s, u"Word"_s});
    EXPECT_THAT(strict.shouldAdd({u"Java"_s, u" Excel"_s, u"PHP"_s, u"Excel"_s}, 1, tokenObjects(list)),
                ElementsAre(u"Java"_s, u"Excel"_s));
    EXPECT_THAT(list, ElementsAre(u"Word"_s, u"Java"_s, u"Excel"_s));
    EXPECT_EQ(changes, 1) << "the kept ones are appended in one go";
}

TEST_F(StrictCoordinator, AValueThatIsATokenAlreadyIsLetInAgain) {
    list = {u"Excel"_s};
    EXPECT_THAT(coordinator({u"Excel"_s}).shouldAdd({u"Excel"_s}, 1, tokenObjects(list)), ElementsAre(u"Excel"_s));
    EXPECT_THAT(list, ElementsAre(u"Excel"_s, u"Excel"_s));
}

TEST_F(StrictCoordinator, WithAnEmptyCatalogueNothingIsLetIn) {
    EXPECT_THAT(coordinator({}).shouldAdd({u"Excel"_s}, 0, {}), IsEmpty());
}

TEST_F(StrictCoordinator, OneProposedObjectThatIsNoTextKeepsAllOut) {
    EXPECT_THAT(coordinator({u"Excel"_s}).shouldAdd({u"Excel"_s, 7}, 0, {}), IsEmpty());
    EXPECT_THAT(list, IsEmpty());
}

TEST_F(StrictCoordinator, AnAccentWrittenApartIsTheSameText) {
    EXPECT_THAT(coordinator({u"Inglés"_s}).shouldAdd({u"Ingle\u0301s"_s}, 0, {}), ElementsAre(u"Ingle\u0301s"_s));
}

TEST_F(StrictCoordinator, NoCommandIsEverHandled) {
    TokenFieldCoordinator strict = coordinator({});
    for (const TextCommand command : {TextCommand::DeleteBackward, TextCommand::DeleteForward,
                                      TextCommand::InsertNewline, TextCommand::InsertTab}) {
        EXPECT_FALSE(strict.doCommand(command));
    }
}

TEST_F(StrictCoordinator, AChangeOfTextAloneWritesNothing) {
    list = {u"Excel"_s, u"Word"_s};
    TokenFieldCoordinator strict = coordinator({u"Excel"_s, u"Word"_s});
    strict.textDidChange({u"Excel"_s}, FieldChange::Deletion);
    EXPECT_EQ(changes, 0);
}

TEST_F(StrictCoordinator, ADeletedLetterCountsAsADeletedTokenDoes) {
    list = {u"Excel"_s, u"COBOL"_s};
    TokenFieldCoordinator strict = coordinator({u"Excel"_s});
    strict.doCommand(TextCommand::DeleteBackward);
    strict.textDidChange(tokenObjects(list), FieldChange::Typing);
    EXPECT_THAT(list, ElementsAre(u"Excel"_s));
}

TEST_F(StrictCoordinator, OtherCommandsThanDeleteBackwardDoNotMakeAChangeCount) {
    list = {u"Excel"_s, u"Word"_s};
    TokenFieldCoordinator strict = coordinator({u"Excel"_s, u"Word"_s});
    strict.doCommand(TextCommand::DeleteForward);
    strict.doCommand(TextCommand::InsertNewline);
    strict.textDidChange({u"Excel"_s}, FieldChange::Deletion);
    EXPECT_EQ(changes, 0);
}

TEST_F(StrictCoordinator, AfterADeleteKeyTheFieldsTokensAreWritten) {
    list = {u"Excel"_s, u"Word"_s};
    TokenFieldCoordinator strict = coordinator({u"Excel"_s, u"Word"_s});
    strict.doCommand(TextCommand::DeleteBackward);
    strict.textDidChange({u"Word"_s}, FieldChange::Deletion);
    EXPECT_THAT(list, ElementsAre(u"Word"_s));
}

TEST_F(StrictCoordinator, AfterADeleteKeyATokenOutsideTheCatalogueIsDroppedToo) {
    list = {u"Excel"_s, u"COBOL"_s, u"Word"_s};
    TokenFieldCoordinator strict = coordinator({u"Excel"_s, u"Word"_s});
    strict.doCommand(TextCommand::DeleteBackward);
    strict.textDidChange({u"Excel"_s, u"COBOL"_s}, FieldChange::Deletion);
    EXPECT_THAT(list, ElementsAre(u"Excel"_s));
}

TEST_F(StrictCoordinator, OneDeleteKeyMakesOneChangeCount) {
    list = {u"Excel"_s, u"Word"_s};
    TokenFieldCoordinator strict = coordinator({u"Excel"_s, u"Word"_s});
    strict.doCommand(TextCommand::DeleteBackward);
    strict.textDidChange({u"Excel"_s}, FieldChange::Deletion);
    strict.textDidChange({}, FieldChange::Deletion);
    EXPECT_THAT(list, ElementsAre(u"Excel"_s));
}

TEST_F(StrictCoordinator, TheEndOfEditingWritesTheTextsAmongTheFieldsObjects) {
    list = {u"Excel"_s};
    coordinator({}).textDidEndEditing({u"COBOL"_s, 7, u"Excel"_s});
    EXPECT_THAT(list, ElementsAre(u"COBOL"_s, u"Excel"_s)) << "without a look at the catalogue";
}

TEST_F(StrictCoordinator, ThereIsNoMenu) {
    EXPECT_FALSE(coordinator({u"Excel"_s}).hasMenuForToken(u"Excel"_s));
}

TEST(StrictCoordinatorDeathTest, AFieldValueThatIsNoListOfTextsStopsTheProgram) {
    QStringList list;
    TokenFieldCoordinator strict(TokenBinding(list, [] {}), {});
    strict.doCommand(TextCommand::DeleteBackward);
    EXPECT_DEATH(strict.textDidChange({7}, FieldChange::Deletion),
                 "Fatal error: the value of a token field is not a list of strings");
}

} // namespace dorvantel
