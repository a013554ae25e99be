// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/TextBlocks.h"

#include "tests/support/Print.h"

#include <QStringList>

#include <algorithm>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

QString make(TextBlocks& blocks, const QString& text) {
    char16_t* room = blocks.room(0, text.size());
    std::copy_n(reinterpret_cast<const char16_t*>(text.utf16()), text.size(), room);
    return blocks.take(text.size());
}

TEST(TextBlocks, StringsHoldTheirTextsAndEndInANul) {
    TextBlocks blocks;
    const QStringList texts = {u""_s, u"a"_s, u"Núñez"_s, QString(100'000, u'x'), u"fin"_s};
    QStringList made;
    for (const QString& text : texts) {
        made.append(make(blocks, text));
    }
    EXPECT_EQ(made, texts);
    for (const QString& text : made) {
        EXPECT_EQ(text.constData()[text.size()], QChar(0));
    }
}

TEST(TextBlocks, StringsOutliveTheirMakerAndEachOther) {
    QStringList made;
    {
        TextBlocks blocks;
        for (int i = 0; i < 10'000; ++i) {
            made.append(make(blocks, u"text number %1"_s.arg(i)));
        }
    }
    for (qsizetype i = 9'999; i > 0; --i) {
        if (i % 7 != 0) {
            made[i].clear();
        }
    }
    for (qsizetype i = 0; i < made.size(); i += 7) {
        ASSERT_EQ(made[i], u"text number %1"_s.arg(i));
    }
}

TEST(TextBlocks, StringsThatAreChangedLeaveTheirNeighboursAlone) {
    TextBlocks blocks;
    QString first = make(blocks, u"first"_s);
    QString second = make(blocks, u"second"_s);
    QString third = make(blocks, u"third"_s);
    second += u" and a longer text than there was room for"_s;
    second[0] = u'S';
    first.append(u'!');
    first.prepend(u'¡');
    first.squeeze();
    third.remove(0, 2);
    third.resize(2);
    third.reserve(100);
    EXPECT_EQ(first, u"¡first!"_s);
    EXPECT_EQ(second, u"Second and a longer text than there was room for"_s);
    EXPECT_EQ(third, u"ir"_s);
    EXPECT_EQ(make(blocks, u"fourth"_s), u"fourth"_s);
}

TEST(TextBlocks, LastStringOfABlockMayBeChangedInPlace) {
    QString only;
    {
        TextBlocks blocks;
        make(blocks, u"gone"_s);
        only = make(blocks, u"only"_s);
        make(blocks, u"gone too"_s);
    }
    only += u" one"_s;
    only.prepend(u"the "_s);
    only.replace(u'o', u'0');
    EXPECT_EQ(only, u"the 0nly 0ne"_s);
}

TEST(TextBlocks, RoomThatGrowsKeepsWhatWasUsed) {
    TextBlocks blocks;
    make(blocks, QString(3'000, u'x'));
    char16_t* room = blocks.room(0, 1'000);
    std::fill_n(room, 1'000, u'a');
    room = blocks.room(1'000, 1'000'000);
    std::fill_n(room + 1'000, 999'000, u'b');
    EXPECT_TRUE(blocks.take(1'000'000) == QString(1'000, u'a') + QString(999'000, u'b'));
}

TEST(TextBlocks, StringsAreLikeAnyOtherInContainersAndComparisons) {
    TextBlocks blocks;
    const QString a = make(blocks, u"Español"_s);
    const QString b = make(blocks, u"Español"_s);
    EXPECT_EQ(a, b);
    EXPECT_EQ(qHash(a), qHash(u"Español"_s));
    EXPECT_EQ(a.toLower(), u"español"_s);
    EXPECT_EQ(a.mid(3), u"añol"_s);
    EXPECT_EQ(a.toUtf8(), u"Español"_s.toUtf8());
    EXPECT_TRUE(a.startsWith(u"Esp"_s));
}

} // namespace
} // namespace dorvantel
