// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/ui/TokenEditorFixture.h"
#include "ui/TokenField.h"
#include "ui/TokenField2.h"

namespace dorvantel {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A token field and an owner that keeps the list.
template <typename Field>
class BoundFieldTest : public testing::Test, protected test::TokenWindow {
protected:
    void open(Field* made) {
        field = made;
        owned = field->tokens();
        QObject::connect(field, &Field::tokensChanged, field, [this](const QStringList& tokens) {
            owned = tokens;
            states.append(tokens);
            if (echoes) {
                field->setTokens(owned);
            }
        });
        show(field, field->tokenField());
    }

    Field* field = nullptr;
    QStringList owned;
    QList<QStringList> states;
    bool echoes = false; ///< as an owner does that updates its views on every change of its own state
};

class StrictField : public BoundFieldTest<TokenField> {};
class LenientField : public BoundFieldTest<TokenField2> {};

} // namespace

// The strict one

TEST_F(StrictField, ShowsTheOwnersTokensWhetherTheyAreInTheCatalogueOrNot) {
    open(new TokenField({u"Excel"_s, u"COBOL"_s}, {u"Excel"_s}));
    EXPECT_THAT(tokens(), ElementsAre(u"Excel"_s, u"COBOL"_s));
    EXPECT_THAT(states, IsEmpty());
}

TEST_F(StrictField, TypingExcelInLowerCaseAddsNothingAlthoughExcelIsOffered) {
    open(new TokenField({}, {u"Excel"_s}));
    type(u"ex"_s);
    EXPECT_THAT(offered(), ElementsAre(u"Excel"_s));
    type(u"cel"_s);
    press(Qt::Key_Return);
    EXPECT_THAT(tokens(), IsEmpty());
    EXPECT_THAT(owned, IsEmpty());
    EXPECT_EQ(field->tokenField()->text(), QString());
}

TEST_F(StrictField, TheOfferedCompletionIsAdded) {
    open(new TokenField({}, {u"Excel"_s}));
    type(u"ex"_s);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_THAT(tokens(), ElementsAre(u"Excel"_s));
    EXPECT_THAT(owned, ElementsAre(u"Excel"_s));
}

TEST_F(StrictField, AfterADeleteKeyATokenOutsideTheCatalogueIsDroppedToo) {
    open(new TokenField({u"COBOL"_s, u"Excel"_s, u"Word"_s}, {u"Excel"_s, u"Word"_s}));
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    EXPECT_THAT(owned, ElementsAre(u"Excel"_s));
    EXPECT_THAT(tokens(), ElementsAre(u"Excel"_s));
}

TEST_F(StrictField, TheOtherDeleteKeyIsWrittenWhenEditingEnds) {
    open(new TokenField({u"COBOL"_s, u"Excel"_s, u"Word"_s}, {u"Excel"_s, u"Word"_s}));
    click(2);
    press(Qt::Key_Delete);
    EXPECT_THAT(states, IsEmpty());
    elsewhere->setFocus();
    EXPECT_THAT(owned, ElementsAre(u"COBOL"_s, u"Excel"_s));
}

TEST_F(StrictField, DeletingALetterKeepsTheRestOfTheTextAndItsCompletions) {
    open(new TokenField({u"Excel"_s, u"COBOL"_s}, {u"Excel"_s, u"Word"_s}));
    type(u"Word"_s);
    press(Qt::Key_Left);
    press(Qt::Key_Backspace);
    EXPECT_THAT(owned, ElementsAre(u"Excel"_s));
    EXPECT_THAT(tokens(), ElementsAre(u"Excel"_s));
    EXPECT_EQ(field->tokenField()->text(), u"Wod"_s);
    EXPECT_EQ(input()->cursorPosition(), 2);
    press(Qt::Key_Delete);
    EXPECT_THAT(offered(), ElementsAre(u"Word"_s));
}

TEST_F(StrictField, AListThatDropsTokensKeepsTheUnfinishedRestOfWhatWasPasted) {
    open(new TokenField({u"COBOL"_s}, {u"Excel"_s, u"Word"_s}));
    press(Qt::Key_Backspace);
    type(u"Excel,Wo"_s);
    EXPECT_THAT(tokens(), ElementsAre(u"Excel"_s));
    EXPECT_EQ(field->tokenField()->text(), u"Wo"_s);
}

TEST_F(StrictField, ATokenHasNoMenu) {
    open(new TokenField({u"Excel"_s}, {u"Excel"_s}));
    openMenu(0);
    EXPECT_EQ(menu(), nullptr);
}

// The lenient one

TEST_F(LenientField, TypingExcelAddsTheCatalogueSpellingOnce) {
    open(new TokenField2({}, true, {u"Excel"_s}));
    typeToken(u"excel"_s);
    EXPECT_THAT(tokens(), ElementsAre(u"Excel"_s));
    EXPECT_THAT(owned, ElementsAre(u"Excel"_s));
    typeToken(u"EXCEL"_s);
    EXPECT_THAT(tokens(), ElementsAre(u"Excel"_s));
    EXPECT_THAT(states, ElementsAre(QStringList{u"Excel"_s}));
}

TEST_F(LenientField, AnEmptyCatalogueAcceptsAnyText) {
    open(new TokenField2({}, true, {}));
    typeToken(u"Lo que sea"_s);
    typeToken(u"lo que sea"_s);
    EXPECT_THAT(owned, ElementsAre(u"Lo que sea"_s, u"lo que sea"_s));
    EXPECT_THAT(tokens(), ElementsAre(u"Lo que sea"_s, u"lo que sea"_s));
}

TEST_F(LenientField, AValueOutsideTheCatalogueVanishes) {
    open(new TokenField2({}, true, {u"Excel"_s}));
    typeToken(u"PHP"_s);
    EXPECT_THAT(tokens(), IsEmpty());
    EXPECT_EQ(field->tokenField()->text(), QString());
    EXPECT_THAT(states, IsEmpty());
}

TEST_F(LenientField, AChosenValueIsNotOfferedAgain) {
    open(new TokenField2({u"excel"_s}, true, {u"Excel"_s, u"Exchange"_s}));
    type(u"EX"_s);
    EXPECT_THAT(offered(), ElementsAre(u"Exchange"_s));
}

TEST_F(LenientField, AListThatIsPastedIsWrittenOneAfterAnother) {
    open(new TokenField2({}, true, {u"Excel"_s, u"Word"_s}));
    type(u"excel, php, word,"_s);
    EXPECT_THAT(states, ElementsAre(QStringList{u"Excel"_s}, QStringList({u"Excel"_s, u"Word"_s})));
}

TEST_F(LenientField, AnOwnerThatUpdatesTheFieldOnEveryChangeSeesEachTokenOnce) {
    echoes = true;
    open(new TokenField2({u"Java"_s}, true, {}));
    type(u"Go, PHP"_s);
    press(Qt::Key_Return);
    EXPECT_THAT(owned, ElementsAre(u"Java"_s, u"Go"_s, u"PHP"_s));
    EXPECT_THAT(tokens(), ElementsAre(u"Java"_s, u"Go"_s, u"PHP"_s));
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    EXPECT_THAT(owned, ElementsAre(u"Java"_s, u"Go"_s));
    EXPECT_THAT(tokens(), ElementsAre(u"Java"_s, u"Go"_s));
}

TEST_F(LenientField, AnOwnerThatChangesTheListInItsAnswerHasTheLastWord) {
    open(new TokenField2({}, true, {}));
    QObject::connect(field, &TokenField2::tokensChanged, field, [this] { field->setTokens({u"Otro"_s}); });
    typeToken(u"Go"_s);
    EXPECT_THAT(tokens(), ElementsAre(u"Otro"_s));
    EXPECT_THAT(field->tokens(), ElementsAre(u"Otro"_s));
}

TEST_F(LenientField, EitherDeleteKeyIsWrittenAtOnce) {
    open(new TokenField2({u"Excel"_s, u"Word"_s, u"Java"_s}, true, {}));
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    EXPECT_THAT(owned, ElementsAre(u"Excel"_s, u"Word"_s));
    click(0);
    press(Qt::Key_Delete);
    EXPECT_THAT(owned, ElementsAre(u"Word"_s));
}

TEST_F(LenientField, EliminarTokenOnTheThirdTokenRemovesTheFirstAndLeavesTheOwnersList) {
    open(new TokenField2({u"Excel"_s, u"Word"_s, u"Java"_s}, true, {}));
    openMenu(2);
    ASSERT_NE(menu(), nullptr);
    ASSERT_EQ(menu()->actions().size(), 1);
    EXPECT_EQ(menu()->actions().first()->text(), u"Eliminar token"_s);
    menu()->actions().first()->trigger();
    EXPECT_THAT(tokens(), ElementsAre(u"Word"_s, u"Java"_s));
    EXPECT_THAT(field->tokens(), ElementsAre(u"Excel"_s, u"Word"_s, u"Java"_s));
    EXPECT_THAT(states, IsEmpty());
}

TEST_F(LenientField, AfterEliminarTokenTheNextUpdateShowsTheOwnersListAgain) {
    open(new TokenField2({u"Excel"_s, u"Word"_s}, true, {}));
    field->tokenField()->removeToken();
    field->setTokens(field->tokens());
    EXPECT_THAT(tokens(), ElementsAre(u"Excel"_s, u"Word"_s));
}

TEST_F(LenientField, AfterEliminarTokenTheNextDeletionWritesWhatTheFieldShows) {
    open(new TokenField2({u"Excel"_s, u"Word"_s, u"Java"_s}, true, {}));
    field->tokenField()->removeToken();
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    EXPECT_THAT(owned, ElementsAre(u"Word"_s));
}

TEST_F(LenientField, AfterEliminarTokenTypingALetterDecidesNothing) {
    open(new TokenField2({u"Excel"_s, u"Word"_s, u"Java"_s}, true, {}));
    field->tokenField()->removeToken();
    type(u"Go"_s);
    press(Qt::Key_Backspace);
    EXPECT_THAT(states, IsEmpty());
    EXPECT_THAT(tokens(), ElementsAre(u"Word"_s, u"Java"_s));
    EXPECT_EQ(field->tokenField()->text(), u"G"_s);
}

TEST_F(LenientField, AfterEliminarTokenAnAdditionBringsTheOwnersListBack) {
    open(new TokenField2({u"Excel"_s, u"Word"_s, u"Java"_s}, true, {}));
    field->tokenField()->removeToken();
    typeToken(u"Go"_s);
    EXPECT_THAT(owned, ElementsAre(u"Excel"_s, u"Word"_s, u"Java"_s, u"Go"_s));
    EXPECT_THAT(tokens(), ElementsAre(u"Excel"_s, u"Word"_s, u"Java"_s, u"Go"_s));
}

TEST_F(LenientField, AfterEliminarTokenAValueThatIsNotLetInDecidesNothing) {
    open(new TokenField2({u"Excel"_s, u"Word"_s}, true, {u"Excel"_s, u"Word"_s}));
    field->tokenField()->removeToken();
    typeToken(u"PHP"_s);
    EXPECT_THAT(states, IsEmpty());
    EXPECT_THAT(tokens(), ElementsAre(u"Word"_s));
}

TEST_F(LenientField, EliminarTokenKeepsTheTextBeingTyped) {
    open(new TokenField2({u"Excel"_s, u"Word"_s}, true, {}));
    type(u"Jav"_s);
    field->tokenField()->removeToken();
    EXPECT_THAT(tokens(), ElementsAre(u"Word"_s));
    EXPECT_EQ(field->tokenField()->text(), u"Jav"_s);
}

TEST_F(LenientField, DeletingATokenBehindWhichSomethingIsBeingTypedIsWritten) {
    open(new TokenField2({u"Excel"_s, u"Word"_s}, true, {}));
    type(u"Jav"_s);
    click(0);
    press(Qt::Key_Backspace);
    EXPECT_THAT(owned, ElementsAre(u"Word"_s));
    EXPECT_EQ(field->tokenField()->text(), u"Jav"_s);
}

TEST_F(LenientField, AnUpdateShowsTheListInsteadOfWhateverIsShownAndIsNotReported) {
    open(new TokenField2({u"Excel"_s}, true, {}));
    type(u"Jav"_s);
    field->setTokens({u"Go"_s});
    EXPECT_THAT(tokens(), ElementsAre(u"Go"_s));
    EXPECT_EQ(field->tokenField()->text(), QString());
    EXPECT_THAT(states, IsEmpty());
}

TEST_F(LenientField, TheFirstMarkIsTheOwnersAndMeansNothing) {
    open(new TokenField2({}, false, {u"Excel"_s}));
    EXPECT_FALSE(field->first());
    typeToken(u"excel"_s);
    EXPECT_THAT(owned, ElementsAre(u"Excel"_s));
    EXPECT_TRUE(TokenField2({}, true, {}).first());
}

TEST_F(LenientField, TheTextIsWrittenWhenTheFocusGoesAndBeforeThatButtonIsPressed) {
    open(new TokenField2({}, true, {}));
    QPushButton ok(&window);
    ok.setFocusPolicy(Qt::StrongFocus);
    ok.show();
    QStringList seen;
    QObject::connect(&ok, &QPushButton::clicked, &ok, [&] { seen = owned; });
    type(u"Go"_s);
    QTest::mouseClick(&ok, Qt::LeftButton);
    EXPECT_THAT(seen, ElementsAre(u"Go"_s));
}

TEST_F(LenientField, AFieldThatIsDestroyedWhileItIsEditedReportsNothing) {
    open(new TokenField2({}, true, {}));
    type(u"Go"_s);
    delete field;
    EXPECT_THAT(states, IsEmpty());
}

TEST_F(LenientField, TheFieldsNameIsThatOfItsText) {
    open(new TokenField2({}, true, {}));
    field->setFieldName(u"Idiomas"_s);
    EXPECT_EQ(input()->accessibleName(), u"Idiomas"_s);
    EXPECT_EQ(field->accessibleName(), u"Idiomas"_s);
}

} // namespace dorvantel
