// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JSONDocument.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

QString nested(qsizetype levels) {
    return QString(levels, u'[') + QString(levels, u']');
}

TEST(ParseJSON, AnyTopLevelValueIsTaken) {
    for (const QString& text : {u"{}"_s, u"[]"_s, u"\"a\""_s, u"1.5"_s, u"true"_s, u"null"_s, u" \r\n\t{} \n"_s}) {
        EXPECT_TRUE(isJSON(text)) << text.toStdString();
        EXPECT_TRUE(parseJSON(text).has_value()) << text.toStdString();
    }
}

TEST(ParseJSON, WhatIsNotJSONIsReportedOnOneLine) {
    for (const QString& text : {u""_s, u"hola"_s, u"{\"a\":1,}"_s, u"{\"a\":\"dos\nlíneas\"}"_s, u"{} {}"_s, u"1e999"_s,
                                u"\"\\ud800\""_s, u"{\"a\":1}\0{"_s}) {
        EXPECT_FALSE(isJSON(text)) << text.toStdString();
        const auto parsed = parseJSON(text);
        ASSERT_FALSE(parsed.has_value()) << text.toStdString();
        EXPECT_FALSE(parsed.error().isEmpty());
        EXPECT_FALSE(parsed.error().contains(u'\n')) << parsed.error().toStdString();
    }
}

TEST(ParseJSON, TextAfterANulIsNotOverlooked) {
    EXPECT_FALSE(isJSON(u"{\"a\":1}\0"_s));
    EXPECT_EQ(parseJSON(u"{\"a\":1}\0x"_s).error(), u"NUL at byte 8"_s);
}

TEST(ParseJSON, LastOfARepeatedKeyCounts) {
    EXPECT_EQ((*parseJSON(u"{\"a\":1,\"a\":2}"_s))["a"], 2);
}

TEST(ParseJSON, AMillionLevelsAreSurvived) {
    EXPECT_TRUE(isJSON(nested(1'000'000)));
    EXPECT_TRUE(parseJSON(nested(1'000'000)).has_value());
    EXPECT_FALSE(parseJSON(QString(1'000'000, u'[')).has_value());
}

TEST(CompactJSONText, HasNoBlanksAndKeepsLetters) {
    EXPECT_EQ(compactJSONText(*parseJSON(u"{ \"b\" : [ 1, 2.50, true, null ], \"a\": \"ñ/\\\"\" }"_s)),
              uR"({"a":"ñ/\"","b":[1,2.5,true,null]})"_s);
}

TEST(CompactJSONText, NestingBeyondTheLimitIsAnErrorNotACrash) {
    EXPECT_EQ(compactJSONText(*parseJSON(nested(512))), nested(512));
    EXPECT_EQ(compactJSONText(*parseJSON(nested(513))).error(), u"nested deeper than 512 levels"_s);
    EXPECT_FALSE(compactJSONText(*parseJSON(nested(1'000'000))).has_value());
}

} // namespace
} // namespace dorvantel
