// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/candidates/CVText.h"

#include "data/JSONCVData.h"

#include <random>

#include <gmock/gmock.h>

using namespace dorvantel;
using namespace dorvantel::service;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::vector<std::string> utf8(const QStringList& values) {
    std::vector<std::string> texts;
    for (const QString& value : values) {
        texts.push_back(value.toStdString());
    }
    return texts;
}

/// What the reader makes of the text that the client writes for `data`.
CVData afterTheWire(const JSONCVData& data) {
    const auto read = readCVText(data.jsonString().toStdString());
    EXPECT_TRUE(read) << read.error();
    return read.value_or(CVData{});
}

std::string withTechSkills(const std::string& list) {
    return R"({"gender":"Femenino","softSkills":[],"techSkills":)" + list + R"(,"languages":[]})";
}

std::vector<std::string> techSkills(const std::string& list) {
    const auto read = readCVText(withTechSkills(list));
    EXPECT_TRUE(read) << read.error();
    return read.value_or(CVData{}).techSkills;
}

std::string errorOf(const std::string& text) {
    const auto read = readCVText(text);
    EXPECT_FALSE(read);
    return read ? "" : read.error();
}

} // namespace

TEST(ReadCVText, TypicalRecord) {
    const auto read =
        readCVText(R"({"gender":"Femenino","softSkills":["A", "B"],"techSkills":["X"],"languages":["Español"]})");
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, (CVData{"Femenino", {"A", "B"}, {"X"}, {"Español"}}));
}

TEST(ReadCVText, ApostropheEscapeIsAnApostrophe) {
    EXPECT_THAT(techSkills(R"(["O\'Reilly"])"), ElementsAre("O'Reilly"));
}

TEST(ReadCVText, NulEscapeIsNulAndTakesNoDigitAfterIt) {
    EXPECT_THAT(techSkills(R"(["a\01"])"), ElementsAre(std::string("a\0"
                                                                   "1",
                                                                   3)));
}

TEST(ReadCVText, BracedEscapeOfAnyLengthIsItsCodePoint) {
    EXPECT_THAT(techSkills(R"(["\u{1F600}", "\u{7f}", "\u{7}", "\u{FEFF}", "\u{22}", "\u{5C}"])"),
                ElementsAre("😀", "\x7f", "\a", "\uFEFF", "\"", "\\"));
}

TEST(ReadCVText, OrdinaryJSONEscapesAreReadAsWell) {
    EXPECT_THAT(techSkills(R"(["\"\\\/\b\f\n\r\t\u00e9\ud83d\ude00"])"), ElementsAre("\"\\/\b\f\n\r\té😀"));
}

TEST(ReadCVText, EscapedBackslashBeforeAnApostropheStaysABackslash) {
    EXPECT_THAT(techSkills(R"(["\\\'", "\\'"])"), ElementsAre("\\'", "\\'"));
}

TEST(ReadCVText, UnknownKeysAreIgnored) {
    const auto read = readCVText(
        R"({"extra":{"a":[1,null]},"gender":"x","softSkills":[],"techSkills":[],"languages":[],"more":1.5})");
    ASSERT_TRUE(read);
    EXPECT_EQ(read->gender, "x");
}

TEST(ReadCVText, EveryKeyIsRequired) {
    EXPECT_EQ(errorOf(R"({"softSkills":[],"techSkills":[],"languages":[]})"), "\"gender\" is not a text");
    EXPECT_EQ(errorOf(R"({"gender":"x","techSkills":[],"languages":[]})"), "\"softSkills\" is not a list");
    EXPECT_EQ(errorOf(R"({"gender":"x","softSkills":[],"languages":[]})"), "\"techSkills\" is not a list");
    EXPECT_EQ(errorOf(R"({"gender":"x","softSkills":[],"techSkills":[]})"), "\"languages\" is not a list");
}

TEST(ReadCVText, OtherTypesAreRefused) {
    EXPECT_EQ(errorOf(R"({"gender":1,"softSkills":[],"techSkills":[],"languages":[]})"), "\"gender\" is not a text");
    EXPECT_EQ(errorOf(withTechSkills("\"x\"")), "\"techSkills\" is not a list");
    EXPECT_EQ(errorOf(withTechSkills("[\"x\",1]")), "\"techSkills\" holds something that is not a text");
}

TEST(ReadCVText, WhatIsNoObjectIsRefused) {
    for (const char* const text : {"", "[]", "null", "{", "{\"gender\":\"x\"", "{} {}", "\"", "{\"gender\":\"\\"}) {
        errorOf(text);
    }
}

TEST(ReadCVText, BrokenEscapesAreRefusedWithTheirPlace) {
    EXPECT_EQ(errorOf(R"({"gender":"\u{110000}"})"), "there is a broken escape at offset 11");
    EXPECT_EQ(errorOf(R"({"gender":"\u{D800}"})"), "there is a broken escape at offset 11");
    EXPECT_EQ(errorOf(R"({"gender":"\u{}"})"), "there is a broken escape at offset 11");
    EXPECT_EQ(errorOf(R"({"gender":"\u{41"})"), "there is a broken escape at offset 11");
    EXPECT_EQ(errorOf(R"({"gender":"ab\)"), "there is a broken escape at offset 13");
    EXPECT_THAT(errorOf(R"({"gender":"\x"})"), HasSubstr("not the text of a JSON object"));
}

TEST(ReadCVText, ErrorsQuoteNothingOfTheText) {
    EXPECT_EQ(errorOf("{\"gender\":secret}").find("secret"), std::string::npos);
}

TEST(ReadCVText, EveryCodePointComesBackAsItWas) {
    JSONCVData data;
    data.gender = u"Masculino"_s;
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        if (codePoint < 0xD800 || codePoint > 0xDFFF) {
            data.techSkills.append(QString::fromUcs4(&codePoint, 1));
        }
    }
    const CVData read = afterTheWire(data);
    ASSERT_EQ(read.techSkills.size(), 0x10FFFF + 1 - 0x800);
    EXPECT_EQ(read.techSkills, utf8(data.techSkills));
}

TEST(ReadCVText, WhatGoesInComesOut) {
    std::mt19937 random(20260101);
    const std::vector<QString> pieces{u"'"_s, u"\""_s, u"\\"_s,     u"\n"_s, u"\r"_s,  u"\t"_s, QString(QChar(u'\0')),
                                      u"0"_s, u"{"_s,  u"}"_s,      u"u"_s,  u"u{"_s,  u"😀"_s, u"\u0007"_s,
                                      u"ñ"_s, u"]"_s,  u"\", \""_s, u","_s,  u"\\u"_s, u"n"_s,  u"\u2028"_s,
                                      u"é"_s, u"漢"_s, u"\uFFFE"_s, u" "_s,  u"x"_s,   u"/"_s,  u"\u001f"_s};
    const auto text = [&] {
        QString out;
        for (auto length = random() % 8; length > 0; --length) {
            out += pieces[random() % pieces.size()];
        }
        return out;
    };
    const auto list = [&] {
        QStringList out;
        for (auto length = random() % 5; length > 0; --length) {
            out.append(text());
        }
        return out;
    };
    for (int round = 0; round < 5'000; ++round) {
        const JSONCVData data{round % 2 == 0 ? u"Masculino"_s : u"Femenino"_s, list(), list(), list()};
        const CVData read = afterTheWire(data);
        ASSERT_EQ(read.gender, data.gender.toStdString());
        ASSERT_EQ(read.softSkills, utf8(data.softSkills));
        ASSERT_EQ(read.techSkills, utf8(data.techSkills));
        ASSERT_EQ(read.languages, utf8(data.languages));
    }
}
