// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Utf8.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

TEST(IsUtf8, TellsTextsFromOtherBytes) {
    EXPECT_TRUE(isUtf8(QByteArray()));
    EXPECT_TRUE(isUtf8(u"ñ€😀"_s.toUtf8()));
    EXPECT_FALSE(isUtf8("\xFF"_ba));
    EXPECT_FALSE(isUtf8("abc\xC3"_ba));
    EXPECT_FALSE(isUtf8("\xED\xA0\x80"_ba));
}

TEST(FirstCharacters, ShorterTextsComeWhole) {
    EXPECT_EQ(firstCharacters(QByteArray(), 500), u""_s);
    EXPECT_EQ(firstCharacters("abc"_ba, 500), u"abc"_s);
    EXPECT_EQ(firstCharacters("abc"_ba, 3), u"abc"_s);
}

TEST(FirstCharacters, CountsCharactersAsPeopleDo) {
    EXPECT_EQ(firstCharacters("abc"_ba, 2), u"ab"_s);
    EXPECT_EQ(firstCharacters(u"ñandú"_s.toUtf8(), 2), u"ña"_s);
    EXPECT_EQ(firstCharacters(u"n\u0303andu\u0301"_s.toUtf8(), 2), u"n\u0303a"_s);
    EXPECT_EQ(firstCharacters(u"👩‍👩‍👧👨"_s.toUtf8(), 1), u"👩‍👩‍👧"_s);
    EXPECT_EQ(firstCharacters("a\r\nb"_ba, 2), u"a\r\n"_s);
}

TEST(FirstCharacters, CountOfNoneIsNothing) {
    EXPECT_EQ(firstCharacters("abc"_ba, 0), u""_s);
}

} // namespace
} // namespace dorvantel
