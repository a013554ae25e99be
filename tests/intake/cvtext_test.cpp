// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/CVText.h"
#include "platform/PDFDocument.h"
#include "tests/support/PlainCleaning.h"
#include "tests/support/Print.h"

#include <QList>

#include <random>

#include <gtest/gtest.h>

using namespace dorvantel;
using namespace dorvantel::test;
using namespace Qt::StringLiterals;

namespace {

/// A text of up to `longest` pieces drawn from `alphabet`.
QString randomText(std::mt19937& random, const QStringList& alphabet, int longest) {
    std::uniform_int_distribution<qsizetype> piece(0, alphabet.size() - 1);
    std::uniform_int_distribution<int> length(0, longest);
    QString text;
    for (int i = length(random); i > 0; --i) {
        text += alphabet[piece(random)];
    }
    return text;
}

const QStringList plainAlphabet = {u"a"_s,  u"Z"_s, u"ñ"_s, u"é"_s, u"ü"_s, u"Ü"_s, u" "_s, u" "_s,  u"\n"_s,
                                   u"\r"_s, u"1"_s, u"9"_s, u"½"_s, u"²"_s, u","_s, u"ç"_s, u"\t"_s, u"\r\n"_s};

const QStringList hostileAlphabet = {
    u"a"_s,          u"n"_s,          u"U"_s,      u"K"_s,      u"1"_s,      u" "_s,      u" "_s,
    u"\n"_s,         u"\r"_s,         u","_s,      u"©"_s,      u"½"_s,      u"\u00AD"_s, u"\u0301"_s,
    u"\u0341"_s,     u"\u0303"_s,     u"\u0308"_s, u"\u0344"_s, u"\u034F"_s, // combining, the joiner of graphemes
    u"\u200D"_s,     u"\u200C"_s,     u"\u200B"_s, u"\uFE0F"_s, u"\u20E3"_s, // joiners, selector, keycap
    u"👩"_s,         u"🦰"_s,         u"🏽"_s,     u"❤"_s,      u"🇪"_s,      u"🇸"_s,      u"🏴"_s,
    u"\U000E0067"_s, u"\U000E007F"_s,                                        // emoji, flags, tags
    u"\u1100"_s,     u"\u1161"_s,     u"\u11A8"_s, u"가"_s,     u"각"_s,     // Hangul
    u"\u0600"_s,     u"\U000110BD"_s, u"\u0903"_s, u"\u0E33"_s,              // what joins the next, spacing marks
    u"क"_s,          u"\u094D"_s,     u"ष"_s,      u"\u0BBF"_s,              // conjuncts
    u"\u212A"_s,     u"\u212B"_s,     u"\u037E"_s, u"\u1FEF"_s, u"\u2000"_s, // equal to others
    u"٣"_s,          u"Ⅷ"_s,          u"一"_s,     u"𝟘"_s,      u"①"_s,      u"•"_s,      u"–"_s,
    u"中"_s,         u"\uFFFE"_s,     u"\u2028"_s, u"\u0085"_s};

void expectAgreement(const QStringList& alphabet, int texts, int longest, unsigned seed) {
    std::mt19937 random(seed);
    QStringList pieces = alphabet;
    for (const char16_t half : {u'\xD83D', u'\xDE00', u'\xDC00'}) {
        pieces.append(QString(QChar(half)));
    }
    for (int i = 0; i < texts; ++i) {
        const QString text = randomText(random, i % 2 == 0 ? alphabet : pieces, longest);
        ASSERT_EQ(cleanExtractedText(text), plainlyCleanedText(text))
            << "text " << i << ": " << text.toUtf8().toHex(' ').constData();
    }
}

} // namespace

TEST(CleanExtractedText, NothingStaysNothing) {
    EXPECT_EQ(cleanExtractedText(QString()), QString());
    EXPECT_EQ(cleanExtractedText(u""_s), QString());
}

TEST(CleanExtractedText, CommasAndParenthesesVanishAndBlanksStay) {
    EXPECT_EQ(cleanExtractedText(u"Juan Pérez, Ingeniero (Madrid)"_s), u"Juan Pérez Ingeniero Madrid"_s);
}

TEST(CleanExtractedText, BlanksBetweenDigitsAreDropped) {
    EXPECT_EQ(cleanExtractedText(u"Tel: 91 555 12 34"_s), u"Tel: 915551234"_s);
    EXPECT_EQ(cleanExtractedText(u"1 000"_s), u"1000"_s);
}

TEST(CleanExtractedText, EveryAllowedCharacterIsKept) {
    const QString allowed = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyzÑñáéíóúÁÉÍÓÚ0123456789¡!¿?./\\:-@"_s;
    EXPECT_EQ(cleanExtractedText(allowed), allowed);
}

TEST(CleanExtractedText, OfTheFirst768CodePointsOnlyTheNamedOnesAreKept) {
    const QString kept = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyzÑñáéíóúÁÉÍÓÚ0123456789¡!¿?./\\:-@ "
                         u"üÜ\n"_s;
    for (char16_t c = 0; c < 0x0300; ++c) {
        const QString text = u"x"_s + QChar(c) + u"y"_s;
        EXPECT_EQ(cleanExtractedText(text), kept.contains(QChar(c)) ? text : u"xy"_s) << int{c};
    }
}

TEST(CleanExtractedText, SymbolsAndOtherLettersAreDropped) {
    EXPECT_EQ(cleanExtractedText(u"C++ & C# «à ç ö» \"x\" 'y' 50% [a] {b} (c) +34 • –€ñ"_s),
              u"C  C    x y 50 a b c 34  ñ"_s);
}

TEST(CleanExtractedText, OfTwoLineFeedsOnlyTheFirstIsKept) {
    EXPECT_EQ(cleanExtractedText(u"a\n\nb"_s), u"a\nb"_s);
    EXPECT_EQ(cleanExtractedText(u"a\n\n\n\nb"_s), u"a\nb"_s);
    EXPECT_EQ(cleanExtractedText(u"a\n , \nb"_s), u"a\nb"_s);
}

TEST(CleanExtractedText, ALineFeedAtTheStartIsKept) {
    EXPECT_EQ(cleanExtractedText(u"\n\na"_s), u"\na"_s);
}

TEST(CleanExtractedText, ABlankRightAfterALineFeedIsDropped) {
    EXPECT_EQ(cleanExtractedText(u"a\n b"_s), u"a\nb"_s);
    EXPECT_EQ(cleanExtractedText(u"a\n   b"_s), u"a\nb"_s);
    EXPECT_EQ(cleanExtractedText(u"a\n• b"_s), u"a\nb"_s) << "a dropped character between them changes nothing";
}

TEST(CleanExtractedText, ABlankBeforeALineFeedIsKept) {
    EXPECT_EQ(cleanExtractedText(u"a \nb"_s), u"a \nb"_s);
}

TEST(CleanExtractedText, ABlankAtTheVeryStartOrEndIsDropped) {
    EXPECT_EQ(cleanExtractedText(u" a "_s), u"a"_s);
    EXPECT_EQ(cleanExtractedText(u" "_s), QString());
    EXPECT_EQ(cleanExtractedText(u"   "_s), QString());
}

TEST(CleanExtractedText, OnlyTheLastOfSeveralBlanksAtTheEndHasNoNextCharacter) {
    EXPECT_EQ(cleanExtractedText(u"a  "_s), u"a "_s);
    EXPECT_EQ(cleanExtractedText(u"a ,"_s), u"a "_s);
}

TEST(CleanExtractedText, BlanksBeforeTheFirstKeptCharacterAreDropped) {
    EXPECT_EQ(cleanExtractedText(u", , a"_s), u"a"_s);
}

TEST(CleanExtractedText, ARunOfBlanksBetweenWordsIsKeptWhole) {
    EXPECT_EQ(cleanExtractedText(u"a    b"_s), u"a    b"_s);
}

TEST(CleanExtractedText, OfARunOfBlanksBetweenNumbersOnlyTheLastIsDropped) {
    EXPECT_EQ(cleanExtractedText(u"1   2"_s), u"1  2"_s) << "the others have a blank as their next character";
}

TEST(CleanExtractedText, DroppedCharactersBetweenABlankAndANumberKeepTheBlank) {
    EXPECT_EQ(cleanExtractedText(u"1 (2"_s), u"1 2"_s);
    EXPECT_EQ(cleanExtractedText(u"1, 2"_s), u"12"_s) << "before the blank only kept characters count";
}

TEST(CleanExtractedText, WhatFollowsABlankNeedOnlyHaveTheNumericProperty) {
    EXPECT_EQ(cleanExtractedText(u"1 ½x"_s), u"1x"_s);
    EXPECT_EQ(cleanExtractedText(u"1 ²x"_s), u"1x"_s);
    EXPECT_EQ(cleanExtractedText(u"1 ٣x"_s), u"1x"_s);
    EXPECT_EQ(cleanExtractedText(u"1 Ⅷx"_s), u"1x"_s);
    EXPECT_EQ(cleanExtractedText(u"1 一x"_s), u"1x"_s);
    EXPECT_EQ(cleanExtractedText(u"1 𝟘x"_s), u"1x"_s) << "outside the basic plane as well";
    EXPECT_EQ(cleanExtractedText(u"1 1\uFE0F\u20E3x"_s), u"1x"_s) << "its first code point decides";
    EXPECT_EQ(cleanExtractedText(u"1 •x"_s), u"1 x"_s);
}

TEST(CleanExtractedText, ADroppedNumberBeforeABlankDoesNotCount) {
    EXPECT_EQ(cleanExtractedText(u"a½ 2"_s), u"a 2"_s);
}

TEST(CleanExtractedText, CarriageReturnLineFeedPairIsDroppedWhole) {
    EXPECT_EQ(cleanExtractedText(u"Uno\r\nDos"_s), u"UnoDos"_s);
    EXPECT_EQ(cleanExtractedText(u"\r\n"_s), QString());
    EXPECT_EQ(cleanExtractedText(u"a\r\r\n\nb"_s), u"a\nb"_s);
}

TEST(CleanExtractedText, ACarriageReturnAloneIsDropped) {
    EXPECT_EQ(cleanExtractedText(u"Uno\rDos\n\rTres"_s), u"UnoDos\nTres"_s);
}

TEST(CleanExtractedText, ABlankBeforeACarriageReturnLineFeedPairIsKept) {
    EXPECT_EQ(cleanExtractedText(u"a \r\n"_s), u"a "_s);
}

TEST(CleanExtractedText, UmlautIsKeptExceptAfterALineFeed) {
    EXPECT_EQ(cleanExtractedText(u"Müller"_s), u"Müller"_s);
    EXPECT_EQ(cleanExtractedText(u"\nü"_s), u"\n"_s);
    EXPECT_EQ(cleanExtractedText(u"a\nÜbung"_s), u"a\nbung"_s);
    EXPECT_EQ(cleanExtractedText(u"üÜü"_s), u"üÜü"_s);
}

TEST(CleanExtractedText, AfterAnUmlautBlanksAndLineFeedsAreKept) {
    EXPECT_EQ(cleanExtractedText(u"ü b"_s), u"ü b"_s);
    EXPECT_EQ(cleanExtractedText(u"ü\nb"_s), u"ü\nb"_s);
}

TEST(CleanExtractedText, ADecomposedLetterIsKeptAsItCame) {
    EXPECT_EQ(cleanExtractedText(u"Jose\u0301 Mun\u0303oz Mu\u0308ller"_s), u"Jose\u0301 Mun\u0303oz Mu\u0308ller"_s);
    EXPECT_EQ(cleanExtractedText(u"\nu\u0308"_s), u"\n"_s);
    EXPECT_EQ(cleanExtractedText(u"a\u0341"_s), u"a\u0341"_s) << "the other acute";
}

TEST(CleanExtractedText, ALetterThatIsEquivalentToAnAllowedOneIsKeptAsItCame) {
    EXPECT_EQ(cleanExtractedText(u"30 \u212A"_s), u"30 \u212A"_s) << "the Kelvin sign is a K";
    EXPECT_EQ(cleanExtractedText(u"\u212B \u2126 \uFB01 Ａ"_s), QString()) << "compatible is not equivalent";
}

TEST(CleanExtractedText, ALetterWithAnotherMarkIsDroppedWhole) {
    EXPECT_EQ(cleanExtractedText(u"e\u0300a\u0301\u0323x\u0301"_s), QString());
    EXPECT_EQ(cleanExtractedText(u"1\uFE0F\u20E32"_s), u"2"_s) << "a keycap is no digit";
    EXPECT_EQ(cleanExtractedText(u"a \u0301b"_s), u"ab"_s) << "a blank with a mark is no blank";
}

TEST(CleanExtractedText, EmojiFlagsAndFamiliesAreDroppedWhole) {
    EXPECT_EQ(cleanExtractedText(u"a👩‍👩‍👧b🇪🇸c👍🏽d🏴\U000E0067\U000E0062\U000E007Fe"_s),
              u"abcde"_s);
    EXPECT_EQ(cleanExtractedText(u"a\u200Db"_s), u"b"_s) << "a joiner belongs to the letter before it";
}

TEST(CleanExtractedText, HangulIsDroppedWhole) {
    EXPECT_EQ(cleanExtractedText(u"a각\u1100\u1161\u11A8b"_s), u"ab"_s);
}

TEST(CleanExtractedText, ALetterAfterAPrependedMarkIsDroppedWithIt) {
    EXPECT_EQ(cleanExtractedText(u"a\u0600bc"_s), u"ac"_s);
}

TEST(CleanExtractedText, HalvesOfSurrogatePairsAreDropped) {
    EXPECT_EQ(cleanExtractedText(u"a"_s + QChar(0xD83D) + u"b"_s + QChar(0xDE00) + u"c"_s), u"abc"_s);
    EXPECT_EQ(cleanExtractedText(QString(QChar(0xD83D))), QString());
}

TEST(CleanExtractedText, AgreesWithThePlainLoopOnPlainText) {
    expectAgreement(plainAlphabet, 50'000, 24, 1);
}

TEST(CleanExtractedText, AgreesWithThePlainLoopOnHostileText) {
    expectAgreement(hostileAlphabet, 100'000, 12, 2);
    expectAgreement(hostileAlphabet, 500, 400, 3);
}

TEST(CleanExtractedText, AgreesWithThePlainLoopOnAMixOfBoth) {
    expectAgreement(plainAlphabet + plainAlphabet + plainAlphabet + hostileAlphabet, 50'000, 60, 4);
}

TEST(CleanExtractedText, AgreesWithThePlainLoopOnEveryCodePoint) {
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        const QString text = u"1 "_s + QString::fromUcs4(&c, 1) + u" \u0301a"_s;
        ASSERT_EQ(cleanExtractedText(text), plainlyCleanedText(text)) << std::hex << static_cast<std::uint32_t>(c);
        if (c == 0x33FF) {
            c = 0xABFF; // CJK ideographs and Hangul syllables are covered by their neighbours
        } else if (c == 0x1FFFF) {
            c = 0xDFFFF; // ideographs and nothing
        } else if (c == 0xE01FF) {
            break; // private use to the end
        }
    }
}

TEST(CleanExtractedText, OneCharacterOfAMillionMarksTakesNoLongerThanItShould) {
    EXPECT_EQ(cleanExtractedText(u"x"_s + QString(1'000'000, QChar(0x0301)) + u"y"_s), u"y"_s);
    EXPECT_EQ(cleanExtractedText(u"\u0301\u0323"_s.repeated(500'000)), QString());
}

TEST(ExtractCleanText, JoinsThePagesWithNothingInBetween) {
    const PDFDocument document({}, {u"Uno\n"_s, u"Dos"_s, u"tres, 1"_s, u" 2"_s});
    EXPECT_EQ(extractCleanText(document), u"Uno\nDostres 12"_s);
}

TEST(ExtractCleanText, ACharacterMayBeginOnOnePageAndEndOnTheNext) {
    EXPECT_EQ(extractCleanText(PDFDocument({}, {u"Jose"_s, u"\u0301"_s})), u"Jose\u0301"_s);
    EXPECT_EQ(extractCleanText(PDFDocument({}, {u"a\r"_s, u"\nb"_s})), u"ab"_s);
}

TEST(ExtractCleanText, ADocumentWithoutPagesOrTextGivesTheEmptyText) {
    EXPECT_EQ(extractCleanText(PDFDocument()), QString());
    EXPECT_EQ(extractCleanText(PDFDocument({}, {QString(), QString()})), QString());
}
