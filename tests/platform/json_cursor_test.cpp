// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonCursor.h"

#include "tests/support/Print.h"

#include <QList>
#include <QStringDecoder>

#include <random>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using Kind = JsonCursor::Kind;

bool isValid(const QByteArray& text) {
    JsonCursor cursor(text);
    cursor.skip();
    return cursor.finish();
}

QString read(const QByteArray& text) {
    JsonCursor cursor(text);
    const QString value = cursor.string();
    EXPECT_TRUE(cursor.finish()) << text.toStdString();
    return value;
}

TEST(JsonCursor, AcceptsWhatJsonIs) {
    for (const QByteArray& text : {"null"_ba,
                                   "true"_ba,
                                   "false"_ba,
                                   "0"_ba,
                                   "-0"_ba,
                                   "10"_ba,
                                   "1.5"_ba,
                                   "-1.25e-10"_ba,
                                   "1E+5"_ba,
                                   "\"\""_ba,
                                   "[]"_ba,
                                   "{}"_ba,
                                   "[ ]"_ba,
                                   "{ }"_ba,
                                   "[1,2]"_ba,
                                   "{\"a\":1,\"b\":[{}]}"_ba,
                                   " \t\r\n1 \t\r\n"_ba,
                                   "\"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u00e9\\uD83D\\uDE00\""_ba,
                                   "\"\x7F\""_ba,
                                   "\xEF\xBB\xBF{}"_ba,
                                   "123456789012345678901234567890"_ba,
                                   "1e999"_ba}) {
        EXPECT_TRUE(isValid(text)) << text.toStdString();
    }
}

TEST(JsonCursor, RefusesWhatJsonIsNot) {
    for (const QByteArray& text : {""_ba,
                                   " "_ba,
                                   "nul"_ba,
                                   "nulll"_ba,
                                   "True"_ba,
                                   "+1"_ba,
                                   "01"_ba,
                                   "-"_ba,
                                   "1."_ba,
                                   ".5"_ba,
                                   "1e"_ba,
                                   "1e+"_ba,
                                   "--1"_ba,
                                   "0x10"_ba,
                                   "NaN"_ba,
                                   "\""_ba,
                                   "\"a"_ba,
                                   "'a'"_ba,
                                   "\"\\x\""_ba,
                                   "\"\\u12\""_ba,
                                   "\"\\u12G4\""_ba,
                                   "\"\n\""_ba,
                                   "\"\t\""_ba,
                                   "\"\x1F\""_ba,
                                   "[1,]"_ba,
                                   "[,1]"_ba,
                                   "[1 2]"_ba,
                                   "[1"_ba,
                                   "]"_ba,
                                   "[}"_ba,
                                   "{\"a\"}"_ba,
                                   "{\"a\":}"_ba,
                                   "{\"a\":1,}"_ba,
                                   "{a:1}"_ba,
                                   "{1:1}"_ba,
                                   "{\"a\":1"_ba,
                                   "{\"a\" 1}"_ba,
                                   "1 2"_ba,
                                   "{}{}"_ba,
                                   "/**/1"_ba,
                                   "1//"_ba,
                                   "\v1"_ba,
                                   "\"\\\""_ba,
                                   "{\"a\\x\":1}"_ba,
                                   "{\"a\xFF\":1}"_ba}) {
        EXPECT_FALSE(isValid(text)) << text.toStdString();
    }
    EXPECT_FALSE(isValid(QByteArray("\"a\0b\"", 5)));
    EXPECT_FALSE(isValid(QByteArray("1\0", 2)));
}

TEST(JsonCursor, RefusesHalvesOfSurrogatePairs) {
    for (const QByteArray& text : {"\"\\uD800\""_ba, "\"\\uDC00\""_ba, "\"\\uD800\\u0041\""_ba, "\"\\uD800x\""_ba,
                                   "\"\\uDE00\\uD83D\""_ba, "\"\\uD83D\\uD83D\""_ba, "\"\\uD83D\\n\""_ba}) {
        EXPECT_FALSE(isValid(text)) << text.toStdString();
    }
}

TEST(JsonCursor, RefusesWhatUtf8IsNotAlsoInWhatIsPassedOver) {
    for (const QByteArray& bad :
         {"\x80"_ba, "\xC0\x80"_ba, "\xC1\xBF"_ba, "\xC3"_ba, "\xC3\x28"_ba, "\xE0\x80\x80"_ba, "\xE2\x82"_ba,
          "\xED\xA0\x80"_ba, "\xF0\x80\x80\x80"_ba, "\xF4\x90\x80\x80"_ba, "\xF5\x80\x80\x80"_ba, "\xFF"_ba}) {
        for (const int padding : {0, 1, 20, 200}) {
            const QByteArray text = '"' + QByteArray(padding, 'x') + bad + QByteArray(padding, 'y') + '"';
            EXPECT_FALSE(isValid(text)) << text.toHex().toStdString();
            JsonCursor cursor(text);
            EXPECT_EQ(cursor.string(), QString());
            EXPECT_FALSE(cursor.finish()) << text.toHex().toStdString();
        }
    }
}

TEST(JsonCursor, StringsAreReadWhateverTheirLengthAndPlace) {
    // Around the sizes of the blocks in which they are read, at the end of a text and with much behind them.
    const QStringList pieces = {u"a"_s, u"ñ"_s, u"€"_s, u"😀"_s, u"\n"_s, u"\""_s, u"\\"_s, u"\u0001"_s};
    for (const QString& piece : pieces) {
        for (int before = 0; before < 70; ++before) {
            const QString expected = QString(before, u'x') + piece + u"yz"_s + piece;
            QByteArray spelling = expected.toUtf8();
            spelling.replace('\\', "\\\\").replace('"', "\\\"").replace('\n', "\\n").replace('\x01', "\\u0001");
            ASSERT_EQ(read('"' + spelling + '"'), expected);
            const QByteArray list = "[\""_ba + spelling + "\"," + QByteArray(200, ' ') + "1]";
            JsonCursor cursor(list);
            QStringList texts;
            cursor.elements([&] {
                if (cursor.next() == Kind::String) {
                    texts.append(cursor.string());
                } else {
                    cursor.skip();
                }
            });
            ASSERT_TRUE(cursor.finish());
            ASSERT_EQ(texts, QStringList{expected});
        }
    }
}

TEST(JsonCursor, LongStringsAreReadWhole) {
    const QString text = u"Línea «uno» y \"dos\"\n😀 "_s.repeated(20'000);
    QByteArray spelling = text.toUtf8();
    spelling.replace('"', "\\\"").replace('\n', "\\n");
    EXPECT_TRUE(read('"' + spelling + '"') == text);
    TextBlocks blocks;
    const QByteArray json = '"' + spelling + '"';
    JsonCursor cursor(json);
    EXPECT_TRUE(cursor.string(blocks) == text);
    EXPECT_TRUE(cursor.finish());
}

TEST(JsonCursor, ByteOrderMarkInAStringIsACharacter) {
    EXPECT_EQ(read("\"\xEF\xBB\xBF\""), QString(QChar(0xFEFF)));
}

TEST(JsonCursor, NulAndEscapedSlashAreCharacters) {
    EXPECT_EQ(read("\"a\\u0000b\\/\""), QString::fromUtf16(u"a\0b/", 4));
}

TEST(JsonCursor, RawStringSaysWhatItHolds) {
    JsonCursor cursor("[\"a\",\"\\n\",\"\xC3\xB1\"]"_ba);
    std::vector<std::pair<bool, bool>> found;
    QStringList texts;
    cursor.elements([&] {
        const JsonCursor::RawString raw = cursor.rawString();
        found.emplace_back(raw.hasEscapes, raw.isAscii);
        texts.append(cursor.text(raw));
    });
    EXPECT_TRUE(cursor.finish());
    EXPECT_THAT(found, ElementsAre(std::pair(false, true), std::pair(true, true), std::pair(false, false)));
    EXPECT_THAT(texts, ElementsAre(u"a"_s, u"\n"_s, u"ñ"_s));
}

TEST(JsonCursor, UncheckedStringThatIsNoUtf8FailsWhenItsTextIsAskedFor) {
    JsonCursor cursor("\"\xFF\""_ba);
    const JsonCursor::RawString raw = cursor.uncheckedString();
    EXPECT_FALSE(cursor.failed());
    EXPECT_EQ(cursor.text(raw), QString());
    EXPECT_TRUE(cursor.failed());
}

TEST(JsonCursor, KeysAreUnescaped) {
    JsonCursor cursor("{\"na\\u006de\":1,\"\":2,\"\\u00f1\":3}"_ba);
    QStringList keys;
    cursor.members([&](std::string_view key) {
        keys.append(QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size())));
        cursor.skip();
    });
    EXPECT_TRUE(cursor.finish());
    EXPECT_THAT(keys, ElementsAre(u"name"_s, u""_s, u"ñ"_s));
}

TEST(JsonCursor, NestsAsDeepAsItLikes) {
    const int depth = 1'000'000;
    EXPECT_TRUE(isValid(QByteArray(depth, '[') + QByteArray(depth, ']')));
    EXPECT_FALSE(isValid(QByteArray(depth, '[') + QByteArray(depth - 1, ']')));
    EXPECT_TRUE(isValid(QByteArray("{\"a\":").repeated(depth) + "1" + QByteArray(depth, '}')));
}

TEST(JsonCursor, PositionIsThatOfTheFirstError) {
    JsonCursor cursor("[1, 2, x, \"\xFF\"]"_ba);
    cursor.skip();
    EXPECT_FALSE(cursor.finish());
    EXPECT_EQ(cursor.position(), 7);
    EXPECT_EQ(cursor.next(), Kind::Invalid);
}

TEST(JsonCursor, FailedCursorReadsNothingMore) {
    JsonCursor cursor("x[\"a\",1]"_ba);
    EXPECT_EQ(cursor.string(), QString());
    EXPECT_EQ(cursor.number(), std::string_view());
    EXPECT_FALSE(cursor.boolean());
    EXPECT_EQ(cursor.takeBytes(nullptr), 0);
    cursor.elements([] { FAIL() << "an element of nothing"; });
    cursor.members([](std::string_view) { FAIL() << "a member of nothing"; });
    cursor.skip();
    EXPECT_FALSE(cursor.finish());
    EXPECT_EQ(cursor.position(), 0);
}

TEST(JsonCursor, BytesAreTakenUpToTheLastButOneAndOnlyWhenWrittenPlainly) {
    const auto taken = [](const QByteArray& array) {
        const QByteArray text = array + "    ";
        JsonCursor cursor(text);
        QByteArray bytes;
        cursor.elements([&] {
            cursor.takeBytes(&bytes);
            cursor.skip();
        });
        return bytes;
    };
    EXPECT_EQ(taken("[0,1,9,10,99,100,255,7]"), QByteArray("\0\1\x09\x0A\x63\x64\xFF", 7));
    EXPECT_EQ(taken("[7]"), QByteArray());
    EXPECT_EQ(taken("[1, 2,3]"), QByteArray("\2"));
    EXPECT_EQ(taken("[1,256,2,3]"), QByteArray("\1\2"));
    EXPECT_EQ(taken("[01,2,3,4]"), QByteArray());
    EXPECT_EQ(taken("[1,-1,2,3]"), QByteArray("\2"));
    EXPECT_EQ(taken("[1,null,2,3]"), QByteArray("\2"));
}

/// Texts made of pieces that JSON is made of, most of them not JSON.
TEST(JsonCursor, AgreesWithAnotherParserOnRandomTexts) {
    const QList<QByteArray> pieces = {
        "{", "}",      "[",  "]",  ":",  ",",  "\"a\"", "\"\"", "\"\\n\"",  "1", "-0.5",    "1e5,",     "null", "true",
        " ", "\"b\":", "[]", "{}", "\"", "\\", "\xC3",  "\xB1", "\xC3\xB1", "0", "\\u00e9", "\"a\":1,", "[1,",  "]}"};
    std::minstd_rand random(11);
    int accepted = 0;
    for (int round = 0; round < 100'000; ++round) {
        QByteArray text;
        for (auto count = 1 + random() % 9; count > 0; --count) {
            text += pieces[static_cast<qsizetype>(random() % static_cast<unsigned>(pieces.size()))];
        }
        const bool expected = nlohmann::json::accept(text.begin(), text.end());
        accepted += expected ? 1 : 0;
        ASSERT_EQ(isValid(text), expected) << text.toStdString();
    }
    EXPECT_GT(accepted, 1'000);
}

} // namespace
} // namespace dorvantel
