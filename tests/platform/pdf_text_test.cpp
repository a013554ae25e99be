// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFText.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

using namespace dorvantel;
using namespace Qt::StringLiterals;

namespace {

/// The text of a page of one line, without the line feed at its end.
QString line(const QString& raw) {
    QString text = ordinaryPageText(raw);
    EXPECT_TRUE(text.endsWith(u'\n'));
    text.chop(1);
    return text;
}

} // namespace

TEST(OrdinaryPageText, LinesEndWithLineFeeds) {
    EXPECT_EQ(ordinaryPageText(u"Uno\r\nDos\r\n\r\nTres\u2028Cuatro\u2029Cinco\n"_s),
              u"Uno\nDos\n\nTres\nCuatro\nCinco\n"_s);
}

TEST(OrdinaryPageText, TheLastLineEndsToo) {
    EXPECT_EQ(ordinaryPageText(u"Uno\r\nDos"_s), u"Uno\nDos\n"_s);
}

TEST(OrdinaryPageText, APageWithoutTextIsEmpty) {
    EXPECT_EQ(ordinaryPageText({}), QString());
    EXPECT_EQ(ordinaryPageText(u"\r\n \t\u00A0\r\n\x01"_s), QString());
}

TEST(OrdinaryPageText, AWordDividedAtALineEndIsWhole) {
    EXPECT_EQ(line(u"ex\uFFFEperience"_s), u"experience"_s);
    EXPECT_EQ(line(u"A\uFFFEvenida"_s), u"Avenida"_s);
    EXPECT_EQ(line(u"EXPE\uFFFERIENCIA"_s), u"EXPERIENCIA"_s);
    EXPECT_EQ(line(u"administra\uFFFEción"_s), u"administración"_s);
}

TEST(OrdinaryPageText, TheOtherMarkOfADividedWordCountsAsWell) {
    EXPECT_EQ(line(u"ex\u0002perience"_s), u"experience"_s);
    EXPECT_EQ(line(u"ex\u0002\r\nperience"_s), u"experience"_s);
    EXPECT_EQ(line(u"\u0002 icono"_s), u" icono"_s) << "without a letter before it is a control character";
}

TEST(OrdinaryPageText, AHyphenOfItsOwnAtALineEndStays) {
    EXPECT_EQ(line(u"Anglo\uFFFESaxon"_s), u"Anglo-Saxon"_s);
    EXPECT_EQ(line(u"SQL\uFFFEdatabases"_s), u"SQL-databases"_s);
    EXPECT_EQ(line(u"Covid\uFFFE19"_s), u"Covid-19"_s);
    EXPECT_EQ(line(u"3\uFFFEyear"_s), u"3-year"_s);
    EXPECT_EQ(line(u"fin\uFFFE"_s), u"fin-"_s);
}

TEST(OrdinaryPageText, ASoftHyphenAtALineEndJoinsTheWord) {
    EXPECT_EQ(line(u"desa\u00AD\r\nrrollo web"_s), u"desarrollo web"_s);
    EXPECT_EQ(line(u"desa\u00AD \r\nrrollo"_s), u"desarrollo"_s);
}

TEST(OrdinaryPageText, ASoftHyphenElsewhereIsTheHyphenThatIsDrawn) {
    EXPECT_EQ(line(u"Front\u00ADend"_s), u"Front-end"_s);
    EXPECT_EQ(line(u"2010 \u00AD 2017"_s), u"2010 - 2017"_s);
    EXPECT_EQ(line(u"555\u00AD5555"_s), u"555-5555"_s);
}

TEST(OrdinaryPageText, EveryHorizontalBlankIsABlank) {
    const QString blanks = u"\t\u0020\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A"
                           u"\u202F\u205F\u3000"_s;
    EXPECT_EQ(line(u"a"_s + blanks + u"b"_s), u"a"_s + QString(blanks.size(), u' ') + u"b"_s);
}

TEST(OrdinaryPageText, LigatureCharactersAreTheirLetters) {
    EXPECT_EQ(line(u"\uFB00 \uFB01 \uFB02 \uFB03 \uFB04 \uFB05 \uFB06"_s), u"ff fi fl ffi ffl st st"_s);
    EXPECT_EQ(line(u"o\uFB03cina \u0132sselmeer \u01C4 \u01C9 \u01F1"_s), u"officina IJsselmeer DŽ lj DZ"_s);
    EXPECT_EQ(line(u"\uFB13\uFB17"_s), u"մնմխ"_s);
}

TEST(OrdinaryPageText, LettersThatOnlyLookLikeLigaturesStay) {
    EXPECT_EQ(line(u"œuvre vitæ Straße"_s), u"œuvre vitæ Straße"_s);
}

TEST(OrdinaryPageText, ControlCharactersOfTheNewTeXEncodingAreLigaturesInsideAWord) {
    EXPECT_EQ(line(u"Certi\u001Ccates Stackover\u001Dow O\u001Ece di\u001Berent ba\u001Fed"_s),
              u"Certificates Stackoverflow Office different baffled"_s);
}

TEST(OrdinaryPageText, ControlCharactersOfTheOldTeXEncodingAreLigaturesInsideAWord) {
    EXPECT_EQ(line(u"Certi\u000Ccates re\rect O\u000Ece di\u000Berent ba\u000Fed"_s),
              u"Certificates reflect Office different baffled"_s);
}

TEST(OrdinaryPageText, ALigatureMayBeginOrEndAWord) {
    EXPECT_EQ(line(u"to \u001Cnd code \u001Daws"_s), u"to find code flaws"_s);
    EXPECT_EQ(line(u"the sta\u001B, o\u001B-line"_s), u"the staff, off-line"_s);
}

TEST(OrdinaryPageText, AWordMayBeDividedBesideALigature) {
    EXPECT_EQ(line(u"simpli\uFFFE\u001Ced o\u001B\uFFFEice"_s), u"simplified office"_s);
}

TEST(OrdinaryPageText, TheSameControlCharactersAsIconsAreGone) {
    EXPECT_EQ(line(u"\u001C GitHub"_s), u" GitHub"_s);
    EXPECT_EQ(line(u"\u001CGitHub"_s), u"GitHub"_s);
    EXPECT_EQ(line(u"ana@example.com \u001D 555"_s), u"ana@example.com  555"_s);
    EXPECT_EQ(line(u"\rc European Union"_s), u"c European Union"_s);
}

TEST(OrdinaryPageText, OtherControlCharactersAreGone) {
    EXPECT_EQ(line(u"a\u0001b\u0013c\u007Fd\u0080e\u008Cf\u009Bg"_s), u"abcdefg"_s);
    EXPECT_EQ(line(QString::fromUtf16(u"a\0b", 3)), u"ab"_s);
}

TEST(OrdinaryPageText, NonCharactersAndHalvesOfSurrogatePairsAreGone) {
    const QString raw = u"a"_s + QChar(0xD83D) + u"b"_s + QChar(0xDE00) + u"c\uFFFFd\uFEFFe"_s;
    EXPECT_EQ(line(raw), u"abcde"_s);
    EXPECT_EQ(line(u"hola 😀"_s), u"hola 😀"_s);
}

TEST(OrdinaryPageText, IsInComposedForm) {
    EXPECT_EQ(line(u"Jose\u0301 Mun\u0303oz"_s), u"José Muñoz"_s);
}

TEST(OrdinaryPageText, AccentsBesideTheirLettersAreComposed) {
    EXPECT_EQ(line(u"Pa´ıs, desempe˜no, M´exico, ling¨u´ıstica"_s), u"País, desempeño, México, lingüística"_s);
}

TEST(OrdinaryPageText, OrdinaryTextStaysAsItIs) {
    const QString text = u"Juan Pérez, Ingeniero (Madrid)\n• ¿Qué? — «Así» + #1 & 50 % · C++/C# 2010–2017\n"_s;
    EXPECT_EQ(ordinaryPageText(text), text);
}
