// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonDocument.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

QString nested(qsizetype levels) {
    return QString(levels, u'[') + QString(levels, u']');
}

TEST(ParseJson, AnyTopLevelValueIsTaken) {
    for (const QString& text : {u"{}"_s, u"[]"_s, u"\"a\""_s, u"1.5"_s, u"true"_s, u"null"_s, u" \r\n\t{} \n"_s}) {
        EXPECT_TRUE(isJson(text)) << text.toStdString();
        EXPECT_TRUE(parseJson(text).has_value()) << text.toStdString();
    }
}

TEST(ParseJson, WhatIsNotJSONIsReportedOnOneLine) {
    for (const QString& text : {u""_s, u"hola"_s, u"{\"a\":1,}"_s, u"{\"a\":\"dos\nlíneas\"}"_s, u"{} {}"_s, u"1e999"_s,
                                u"\"\\ud800\""_s, u"{\"a\":1}\0{"_s}) {
        EXPECT_FALSE(isJson(text)) << text.toStdString();
        const auto parsed = parseJson(text);
        ASSERT_FALSE(parsed.has_value()) << text.toStdString();
        EXPECT_FALSE(parsed.error().isEmpty());
        EXPECT_FALSE(parsed.error().contains(u'\n')) << parsed.error().toStdString();
    }
}

TEST(ParseJson, TextAfterANulIsNotOverlooked) {
    EXPECT_FALSE(isJson(u"{\"a\":1}\0"_s));
    EXPECT_EQ(parseJson(u"{\"a\":1}\0x"_s).error(), u"NUL at byte 8"_s);
}

TEST(ParseJson, LastOfARepeatedKeyCounts) {
    EXPECT_EQ((*parseJson(u"{\"a\":1,\"a\":2}"_s))["a"], 2);
}

TEST(ParseJson, AMillionLevelsAreSurvived) {
    EXPECT_TRUE(isJson(nested(1'000'000)));
    EXPECT_TRUE(parseJson(nested(1'000'000)).has_value());
    EXPECT_FALSE(parseJson(QString(1'000'000, u'[')).has_value());
}

TEST(CompactJsonText, HasNoBlanksAndKeepsLetters) {
    EXPECT_EQ(compactJsonText(*parseJson(u"{ \"b\" : [ 1, 2.50, true, null ], \"a\": \"ñ/\\\"\" }"_s)),
              uR"({"a":"ñ/\"","b":[1,2.5,true,null]})"_s);
}

TEST(CompactJsonText, NestingBeyondTheLimitIsAnErrorNotACrash) {
    EXPECT_EQ(compactJsonText(*parseJson(nested(512))), nested(512));
    EXPECT_EQ(compactJsonText(*parseJson(nested(513))).error(),
              u"No se han podido escribir los datos porque tienen más de 512 niveles."_s);
    EXPECT_FALSE(compactJsonText(*parseJson(nested(1'000'000))).has_value());
}

} // namespace
} // namespace dorvantel
