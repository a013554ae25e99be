// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFPageFrames.h"

#include <gmock/gmock.h>

using namespace dorvantel;
using namespace Qt::StringLiterals;

TEST(PDFPageFrames, ComeBackAsTheyWent) {
    for (const QStringList& pages :
         {QStringList{}, QStringList{u""_s}, QStringList{u"Uno"_s, u""_s, u"ñandú 😀\n"_s, QString(QChar(0xD800))}}) {
        EXPECT_EQ(decodePageFrames(encodePageFrames(pages)), pages);
    }
}

TEST(PDFPageFrames, AreRefusedWhenCutAnywhere) {
    const QByteArray frames = encodePageFrames({u"Uno"_s, u"Dos"_s});
    for (qsizetype length = 0; length < frames.size(); ++length) {
        EXPECT_FALSE(decodePageFrames(frames.left(length))) << length;
    }
}

TEST(PDFPageFrames, AreRefusedWithAnythingBehind) {
    EXPECT_FALSE(decodePageFrames(encodePageFrames({u"Uno"_s}) + '\0'));
}

TEST(PDFPageFrames, AreRefusedWithAnotherBeginning) {
    EXPECT_FALSE(decodePageFrames("DVPAGES2" + encodePageFrames({}).sliced(8)));
    EXPECT_FALSE(decodePageFrames("Uno"));
}

TEST(PDFPageFrames, AnAbsurdCountOrLengthCostsNothing) {
    EXPECT_FALSE(decodePageFrames("DVPAGES1\xFF\xFF\xFF\xFF"));
    EXPECT_FALSE(decodePageFrames(QByteArray("DVPAGES1\x01\x00\x00\x00\xFF\xFF\xFF\xFF", 16)));
}
