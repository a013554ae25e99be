// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFAccents.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

using namespace dorvantel;
using namespace Qt::StringLiterals;

TEST(WithAccentsOnLetters, AnAccentGoesOnTheLetterAfterIt) {
    EXPECT_EQ(withAccentsOnLetters(u"Tel´efono acad´emico ´ultimo M´EXICO"_s), u"Teléfono académico último MÉXICO"_s);
    EXPECT_EQ(withAccentsOnLetters(u"desempe˜no S˜ao Espa˜na"_s), u"desempeño São España"_s);
    EXPECT_EQ(withAccentsOnLetters(u"¨Ubung ping¨uino na¨ıve"_s), u"Übung pingüino naïve"_s);
    EXPECT_EQ(withAccentsOnLetters(u"Universit`a perch`e"_s), u"Università perchè"_s);
    EXPECT_EQ(withAccentsOnLetters(u"M\u02C6etre Andri\u02C7c Erd\u02DDos \u02DAAngstr"_s),
              u"Mêtre Andrič Erdős Ångstr"_s);
    EXPECT_EQ(withAccentsOnLetters(u"\u0384Αρρεν"_s), u"Άρρεν"_s);
}

TEST(WithAccentsOnLetters, ADotlessLetterGetsItsDotBackUnderTheAccent) {
    EXPECT_EQ(withAccentsOnLetters(u"Pa´ıs Mart´ınez \u02C6\u0237"_s), u"País Martínez ĵ"_s);
    EXPECT_EQ(withAccentsOnLetters(u"Diyarbakır"_s), u"Diyarbakır"_s) << "no accent, no dot";
}

TEST(WithAccentsOnLetters, ACedillaGoesOnTheLetterBeforeIt) {
    EXPECT_EQ(withAccentsOnLetters(u"Franc\u00B8ois Barc\u00B8a"_s), u"François Barça"_s);
    EXPECT_EQ(withAccentsOnLetters(u"\u00B8Cankaya"_s), u"Çankaya"_s) << "or after it, when none is before";
}

TEST(WithAccentsOnLetters, AnAccentWithoutALetterThatTakesItStays) {
    EXPECT_EQ(withAccentsOnLetters(u"desempeño ´"_s), u"desempeño ´"_s);
    EXPECT_EQ(withAccentsOnLetters(u"˜100 ´x ´"_s), u"˜100 ´x ´"_s);
}

TEST(WithAccentsOnLetters, AnApostropheStays) {
    EXPECT_EQ(withAccentsOnLetters(u"O´Neill D´Angelo Ana´s don´t"_s), u"O´Neill D´Angelo Ana´s don´t"_s);
}

TEST(WithAccentsOnLetters, OnAPageWithAcuteLettersTheAcuteIsAnApostrophe) {
    EXPECT_EQ(withAccentsOnLetters(u"l´analyse des données à l´école préparatoire"_s),
              u"l´analyse des données à l´école préparatoire"_s);
    EXPECT_EQ(withAccentsOnLetters(u"Título: m´as t´ecnico, educaci´on"_s), u"Título: más técnico, educación"_s)
        << "one such letter, in a heading's font, says nothing of the others";
}

TEST(WithAccentsOnLetters, QuotationMarksStay) {
    EXPECT_EQ(withAccentsOnLetters(u"proyecto ¨empresa abierta¨, ´area´"_s), u"proyecto ¨empresa abierta¨, ´area´"_s);
    EXPECT_EQ(withAccentsOnLetters(u"¨ah¨\n´Area"_s), u"¨ah¨\nÁrea"_s) << "within one line only";
}

TEST(WithAccentsOnLetters, ABacktickOutsideAWordStays) {
    EXPECT_EQ(withAccentsOnLetters(u"run `echo` or ``ah''"_s), u"run `echo` or ``ah''"_s);
}

TEST(WithAccentsOnLetters, TheTildeOfAnAddressIsATilde) {
    EXPECT_EQ(withAccentsOnLetters(u"http://example.com/\u02DCana"_s), u"http://example.com/~ana"_s);
    EXPECT_EQ(withAccentsOnLetters(u"~ana ^a"_s), u"~ana ^a"_s) << "ASCII characters are typed, never accents";
}

TEST(WithAccentsOnLetters, ManyAccentsOnOneLineTakeNoLongerThanTheyShould) {
    const QString text = u"´a"_s.repeated(200'000);
    EXPECT_EQ(withAccentsOnLetters(text), u"á"_s.repeated(200'000));
}
