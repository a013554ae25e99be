// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Text.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

TEST(CaselessForm, CaseAndTheWayAnAccentIsWrittenMakeNoDifferenceButTheAccentDoes) {
    EXPECT_EQ(caselessForm(u"INGLÉS"_s), u"inglés"_s);
    EXPECT_EQ(caselessForm(u"INGLE\u0301S"_s), u"inglés"_s);
    EXPECT_NE(caselessForm(u"ingles"_s), caselessForm(u"inglés"_s));
    EXPECT_EQ(caselessForm(u" C++ "_s), u" c++ "_s);
}

TEST(Capitalized, EveryWordStartsInUpperCaseAndGoesOnInLowerCase) {
    EXPECT_EQ(capitalized(u"maría josé LÓPEZ"_s), u"María José López"_s);
    EXPECT_EQ(capitalized(u"TRABAJO EN EQUIPO"_s), u"Trabajo En Equipo"_s);
    EXPECT_EQ(capitalized(u"liderazgo situacional"_s), u"Liderazgo Situacional"_s);
}

TEST(Capitalized, BlanksStayAsTheyAre) {
    EXPECT_EQ(capitalized(u"  ana   de\tla\ncruz "_s), u"  Ana   De\tLa\nCruz "_s);
    EXPECT_EQ(capitalized(u""_s), u""_s);
}

TEST(Capitalized, ApostropheDoesNotStartAWord) {
    EXPECT_EQ(capitalized(u"o'connor d’artagnan"_s), u"O'connor D’artagnan"_s);
}

TEST(Capitalized, HyphenAndSlashStartAWord) {
    EXPECT_EQ(capitalized(u"jean-luc garcía-lópez"_s), u"Jean-Luc García-López"_s);
    EXPECT_EQ(capitalized(u"catalán/valenciano"_s), u"Catalán/Valenciano"_s);
}

TEST(Capitalized, PunctuationBeforeAWordIsPassedOver) {
    EXPECT_EQ(capitalized(u"inglés (c1) «nativo» ¿sí?"_s), u"Inglés (C1) «Nativo» ¿Sí?"_s);
}

TEST(Capitalized, WordThatStartsWithADigitGoesOnInLowerCase) {
    EXPECT_EQ(capitalized(u"3D max"_s), u"3d Max"_s);
}

TEST(Capitalized, LettersWithoutASingleCapitalFollowUnicode) {
    EXPECT_EQ(capitalized(u"ßa"_s), u"Ssa"_s);
    EXPECT_EQ(capitalized(u"ǆ"_s), u"ǅ"_s);
    EXPECT_EQ(capitalized(u"ΟΔΥΣΣΕΥΣ"_s), u"Οδυσσευς"_s);
}

TEST(Capitalized, DecomposedAccentsStayDecomposed) {
    EXPECT_EQ(capitalized(u"n\u0303ANDU\u0301"_s), u"N\u0303andu\u0301"_s);
}

TEST(Capitalized, ScriptsWithoutCaseAndEmojiStayAsTheyAre) {
    EXPECT_EQ(capitalized(u"中文 العربية 👩\u200D💻"_s), u"中文 العربية 👩\u200D💻"_s);
}

TEST(Trimmed, WhiteSpaceAndLineBreaksGoAtBothEndsOnly) {
    EXPECT_EQ(trimmed(u" \t\r\n ana  luz \u00A0\u2028\u3000"_s), u"ana  luz"_s);
    EXPECT_EQ(trimmed(u" \n "_s), u""_s);
}

TEST(Trimmed, InvisibleCharactersThatAreNoSpaceStay) {
    EXPECT_EQ(trimmed(u"\uFEFF\u200Ba\u200B"_s), u"\uFEFF\u200Ba\u200B"_s);
}

} // namespace
} // namespace dorvantel
