// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/ServerAddress.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

const auto wrongStart = std::unexpected(u"URL must start with http:// or https://"_s);
const auto wrongFormat = std::unexpected(u"Invalid URL format"_s);

TEST(CheckedServerAddress, BlanksAroundItAreDropped) {
    EXPECT_EQ(checkedServerAddress(u"  http://localhost:11434  "_s), u"http://localhost:11434"_s);
    EXPECT_EQ(checkedServerAddress(u"\t https://a.example/\t"_s), u"https://a.example/"_s);
}

TEST(CheckedServerAddress, SchemeInCapitalsIsRefused) {
    EXPECT_EQ(checkedServerAddress(u"HTTP://localhost:11434"_s), wrongStart);
    EXPECT_EQ(checkedServerAddress(u"Https://localhost:11434"_s), wrongStart);
}

TEST(CheckedServerAddress, AddressWithoutSchemeIsRefused) {
    EXPECT_EQ(checkedServerAddress(u"localhost:11434"_s), wrongStart);
    EXPECT_EQ(checkedServerAddress(u""_s), wrongStart);
    EXPECT_EQ(checkedServerAddress(u"ftp://localhost"_s), wrongStart);
}

TEST(CheckedServerAddress, LineBreakInFrontIsNoBlank) {
    EXPECT_EQ(checkedServerAddress(u"\nhttp://localhost"_s), wrongStart);
}

TEST(CheckedServerAddress, TextThatIsNoURLIsRefused) {
    for (const QString& text : {u"http://local host"_s, u"http://localhost:puerto"_s, u"http://localhost\n"_s,
                                u"http://[::1"_s, u"http://localhost:99999"_s}) {
        EXPECT_EQ(checkedServerAddress(text), wrongFormat) << qPrintable(text);
    }
}

TEST(CheckedServerAddress, BlanksInsideAreRefusedWhereverTheyStand) {
    for (const QString& text : {u"http://h/a b"_s, u"http://h/a?b c"_s, u"http:// h"_s, u"http://h:1 1"_s}) {
        EXPECT_EQ(checkedServerAddress(text), wrongFormat) << qPrintable(text);
    }
}

TEST(CheckedServerAddress, HostInCapitalsIsKeptAsTyped) {
    EXPECT_EQ(checkedServerAddress(u"http://LOCALHOST:11434"_s), u"http://LOCALHOST:11434"_s);
}

TEST(CheckedServerAddress, NoBreakSpaceInFrontIsNoBlank) {
    EXPECT_EQ(checkedServerAddress(u"\u00a0http://localhost"_s), wrongStart);
}

TEST(CheckedServerAddress, LongAddressIsAnAddressUnlessItsHostIsNone) {
    const QString path = u"http://localhost/"_s + QString(10'240, u'a');
    EXPECT_EQ(checkedServerAddress(path), path);
    EXPECT_EQ(checkedServerAddress(u"http://"_s + QString(10'240, u'a')), wrongFormat);
}

TEST(WithoutOuterBlanks, OnlyBlanksBecomeEmpty) {
    EXPECT_EQ(withoutOuterBlanks(u" \t "_s), QString());
    EXPECT_EQ(withoutOuterBlanks(u" a b\n "_s), u"a b\n"_s);
}

} // namespace
} // namespace dorvantel
