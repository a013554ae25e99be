// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/Flow.h"
#include "ui/TokenClipboard.h"
#include "ui/TokenSelection.h"

#include <gmock/gmock.h>

namespace dorvantel {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Flow, NothingNeedsNoHeight) {
    EXPECT_EQ(flow({}, 100, 20, 4).height, 0);
    EXPECT_EQ(flow({}, 100, 20, 4).lines, 0);
}

TEST(Flow, ThingsThatFitStandSideBySideAndTheLastTakesTheRest) {
    const Flow set = flow({30, 30, 10}, 100, 20, 4);
    EXPECT_THAT(set.places, ElementsAre(QRect(0, 0, 30, 20), QRect(34, 0, 30, 20), QRect(68, 0, 32, 20)));
    EXPECT_EQ(set.height, 20);
}

TEST(Flow, AThingThatJustFitsStaysOnTheLine) {
    EXPECT_EQ(flow({48, 48}, 100, 20, 4).lines, 1);
    EXPECT_EQ(flow({48, 49}, 100, 20, 4).lines, 2);
}

TEST(Flow, WhatDoesNotFitBeginsTheNextLine) {
    const Flow set = flow({60, 60, 20}, 100, 20, 4);
    EXPECT_THAT(set.places, ElementsAre(QRect(0, 0, 60, 20), QRect(0, 24, 60, 20), QRect(64, 24, 36, 20)));
    EXPECT_EQ(set.lines, 2);
    EXPECT_EQ(set.height, 44);
}

TEST(Flow, WhatIsWiderThanALineStandsAloneAndIsCut) {
    const Flow set = flow({20, 300, 20}, 100, 20, 4);
    EXPECT_THAT(set.places, ElementsAre(QRect(0, 0, 20, 20), QRect(0, 24, 100, 20), QRect(0, 48, 100, 20)));
}

TEST(TokenSelection, ANewOneIsEmpty) {
    const TokenSelection selection;
    EXPECT_TRUE(selection.isEmpty());
    EXPECT_FALSE(selection.current());
}

TEST(TokenSelection, ExtendingGoesFromWhereTheSelectionBeganInBothDirections) {
    TokenSelection selection;
    selection.selectOnly(3);
    selection.extendTo(5);
    EXPECT_THAT(selection.indices(), ElementsAre(3, 4, 5));
    selection.extendTo(1);
    EXPECT_THAT(selection.indices(), ElementsAre(1, 2, 3));
    EXPECT_EQ(selection.current(), 1);
}

TEST(TokenSelection, ExtendingAnEmptyOneSelectsTheOne) {
    TokenSelection selection;
    selection.extendTo(2);
    EXPECT_THAT(selection.indices(), ElementsAre(2));
}

TEST(TokenSelection, TogglingAddsAndTakesAwayAndMovesTheBeginning) {
    TokenSelection selection;
    selection.selectOnly(0);
    selection.toggle(4);
    EXPECT_THAT(selection.indices(), ElementsAre(0, 4));
    selection.toggle(0);
    EXPECT_THAT(selection.indices(), ElementsAre(4));
    selection.extendTo(1);
    EXPECT_THAT(selection.indices(), ElementsAre(0, 1));
}

TEST(TokenSelection, AllOfNoneIsNone) {
    TokenSelection selection;
    selection.selectOnly(1);
    selection.selectAll(0);
    EXPECT_TRUE(selection.isEmpty());
    selection.selectAll(3);
    EXPECT_THAT(selection.indices(), ElementsAre(0, 1, 2));
}

TEST(TokenClipboard, CommaLineBreakAndTabEndATokenAndBlanksAroundItGo) {
    EXPECT_THAT(tokenTexts(u" Java, C++\nGo\r\n\tRust\tC ,, "_s),
                ElementsAre(u"Java"_s, u"C++"_s, u"Go"_s, u"Rust"_s, u"C"_s));
    EXPECT_THAT(tokenTexts(u"Trabajo en equipo"_s), ElementsAre(u"Trabajo en equipo"_s));
    EXPECT_THAT(tokenTexts(u" , "_s), IsEmpty());
}

TEST(TokenClipboard, AllTokensComeBackAsTheyWereWhateverTheyHold) {
    const QStringList tokens{u"Word, Excel"_s, u"dos\nlíneas"_s, u" blancos "_s, u"🚀"_s};
    EXPECT_EQ(tokensInMimeData(*mimeDataOfTokens(tokens)), tokens);
}

TEST(TokenClipboard, OthersGetTheTextsWithCommas) {
    EXPECT_EQ(mimeDataOfTokens({u"Java"_s, u"Go"_s})->text(), u"Java, Go"_s);
}

TEST(TokenClipboard, APieceOfTextIsNoListOfTokens) {
    QMimeData piece;
    piece.setText(u"Jav"_s);
    EXPECT_THAT(tokensInMimeData(piece), IsEmpty());
    QMimeData list;
    list.setText(u"Java\nGo"_s);
    EXPECT_THAT(tokensInMimeData(list), ElementsAre(u"Java"_s, u"Go"_s));
    EXPECT_THAT(tokensInMimeData(QMimeData()), IsEmpty());
}

} // namespace dorvantel
