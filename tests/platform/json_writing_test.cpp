// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonWriting.h"

#include "platform/JsonDecoding.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

QByteArray written(const QString& text) {
    QByteArray out;
    EXPECT_TRUE(appendJsonString(out, text));
    return out;
}

TEST(JsonWriting, EscapesOnlyWhatJsonDemands) {
    EXPECT_EQ(written(u""_s), "\"\"");
    EXPECT_EQ(written(u"a\"b\\c/'"_s), R"("a\"b\\c/'")");
    EXPECT_EQ(written(u"\n\r\t\b\f\u001F\u007F"_s), "\"\\n\\r\\t\\u0008\\u000c\\u001f\x7F\"");
    EXPECT_EQ(written(QString(QChar(0))), "\"\\u0000\"");
    EXPECT_EQ(written(u"ñ€😀\u2028"_s), "\"ñ€😀\u2028\"");
}

TEST(JsonWriting, EveryCharacterComesBackAsItWas) {
    for (char32_t character = 0; character < 0x11000; ++character) {
        if (!QChar::isSurrogate(character)) {
            const QString text = QString::fromUcs4(&character, 1);
            ASSERT_EQ(decodeJson<QString>(written(text)), text) << static_cast<unsigned>(character);
        }
    }
}

TEST(JsonWriting, HalfASurrogatePairCannotBeWritten) {
    for (const QString& text : {QString(QChar(0xD800)), QString(QChar(0xDFFF)), u"a\xDC00"_s + QChar(0xD83D)}) {
        QByteArray out = "before";
        EXPECT_FALSE(appendJsonString(out, text));
        EXPECT_EQ(out, "before");
    }
}

TEST(JsonObjectWriter, WritesMembersInOrderAndLeavesAbsentOnesOut) {
    JsonObjectWriter inner;
    inner.add("list", QStringList{u"a"_s, u"b\""_s}).add("empty", QStringList());
    EXPECT_EQ(JsonObjectWriter()
                  .add("text", u"t"_s)
                  .add("absent", std::optional<QString>())
                  .add("present", std::optional<QString>(u"p"_s))
                  .add("inner", inner)
                  .add("noBytes", std::optional<QByteArray>())
                  .add("bytes", std::optional<QByteArray>("%PDF"))
                  .take(),
              R"({"text":"t","present":"p","inner":{"list":["a","b\""],"empty":[]},"bytes":"JVBERg=="})"_ba);
    EXPECT_EQ(JsonObjectWriter().take(), "{}"_ba);
}

TEST(JsonObjectWriter, GivesNothingWhenOneTextCannotBeWritten) {
    const QString half(QChar(0xD800));
    EXPECT_EQ(JsonObjectWriter().add("a", u"x"_s).add("b", half).add("c", u"y"_s).take(), std::nullopt);
    EXPECT_EQ(JsonObjectWriter().add("a", QStringList{u"x"_s, half}).take(), std::nullopt);
    EXPECT_EQ(JsonObjectWriter().add("a", JsonObjectWriter().add("b", half)).take(), std::nullopt);
}

} // namespace
} // namespace dorvantel
