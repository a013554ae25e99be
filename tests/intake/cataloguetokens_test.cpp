// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/CatalogueTokens.h"

#include "tests/support/Print.h"

#include <gmock/gmock.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(SplitByCatalogue, KnownSoftSkillTakesTheCataloguesSpelling) {
    const auto tokens = splitByCatalogue({u"TRABAJO EN EQUIPO"_s}, {{u"trabajo en equipo"_s, u"Trabajo en equipo"_s}},
                                         TokenKind::Spoken);
    EXPECT_THAT(tokens.known, ElementsAre(u"Trabajo en equipo"_s));
    EXPECT_THAT(tokens.unknown, IsEmpty());
}

TEST(SplitByCatalogue, NewSoftSkillIsCapitalised) {
    const auto tokens = splitByCatalogue({u"liderazgo situacional"_s}, {{u"rigor"_s, u"Rigor"_s}}, TokenKind::Spoken);
    EXPECT_THAT(tokens.known, IsEmpty());
    EXPECT_THAT(tokens.unknown, ElementsAre(u"Liderazgo Situacional"_s));
}

TEST(SplitByCatalogue, TechnicalSkillsStayAsTheModelWroteThemOnBothSides) {
    const auto tokens =
        splitByCatalogue({u"figma"_s, u"jQuery mobile"_s}, {{u"figma"_s, u"Figma"_s}}, TokenKind::Technical);
    EXPECT_THAT(tokens.known, ElementsAre(u"figma"_s));
    EXPECT_THAT(tokens.unknown, ElementsAre(u"jQuery mobile"_s));
}

TEST(SplitByCatalogue, EmptyCatalogueFindsNothing) {
    EXPECT_EQ(splitByCatalogue({u"Qt"_s, u"C++"_s}, {}, TokenKind::Technical),
              (CatalogueTokens{.known = {}, .unknown = {u"Qt"_s, u"C++"_s}}));
}

TEST(SplitByCatalogue, NoValuesGiveTwoEmptyLists) {
    EXPECT_EQ(splitByCatalogue({}, {{u"qt"_s, u"Qt"_s}}, TokenKind::Technical), CatalogueTokens());
}

TEST(SplitByCatalogue, BlanksAndAccentsMakeADifference) {
    const auto tokens =
        splitByCatalogue({u"inglés "_s, u"ingles"_s, u"INGLÉS"_s}, {{u"inglés"_s, u"Inglés"_s}}, TokenKind::Spoken);
    EXPECT_THAT(tokens.known, ElementsAre(u"Inglés"_s));
    EXPECT_THAT(tokens.unknown, ElementsAre(u"Inglés "_s, u"Ingles"_s));
}

TEST(SplitByCatalogue, AccentWrittenApartIsTheSameValue) {
    const auto tokens = splitByCatalogue({u"ingle\u0301s"_s}, {{u"inglés"_s, u"Inglés"_s}}, TokenKind::Spoken);
    EXPECT_THAT(tokens.known, ElementsAre(u"Inglés"_s));
    EXPECT_THAT(tokens.unknown, IsEmpty());
}

TEST(SplitByCatalogue, OrderAndRepetitionsAreKept) {
    const auto tokens = splitByCatalogue({u"b"_s, u"x"_s, u"a"_s, u"b"_s, u"x"_s}, {{u"a"_s, u"A"_s}, {u"b"_s, u"B"_s}},
                                         TokenKind::Spoken);
    EXPECT_THAT(tokens.known, ElementsAre(u"B"_s, u"A"_s, u"B"_s));
    EXPECT_THAT(tokens.unknown, ElementsAre(u"X"_s, u"X"_s));
}

} // namespace
} // namespace dorvantel
