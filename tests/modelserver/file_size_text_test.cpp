// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/FileSizeText.h"

#include "tests/support/Print.h"

#include <limits>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

TEST(FileSizeText, NoneIsZeroKilobytes) {
    EXPECT_EQ(fileSizeText(0), u"Zero KB"_s);
}

TEST(FileSizeText, BelowAKilobyteBytesAreCounted) {
    EXPECT_EQ(fileSizeText(1), u"1 byte"_s);
    EXPECT_EQ(fileSizeText(384), u"384 bytes"_s);
    EXPECT_EQ(fileSizeText(512), u"512 bytes"_s);
    EXPECT_EQ(fileSizeText(999), u"999 bytes"_s);
}

TEST(FileSizeText, KilobytesAreWhole) {
    EXPECT_EQ(fileSizeText(1'000), u"1 KB"_s);
    EXPECT_EQ(fileSizeText(1'499), u"1 KB"_s);
    EXPECT_EQ(fileSizeText(1'500), u"2 KB"_s);
    EXPECT_EQ(fileSizeText(999'499), u"999 KB"_s);
}

TEST(FileSizeText, MegabytesHaveAtMostOneDecimal) {
    EXPECT_EQ(fileSizeText(1'000'000), u"1 MB"_s);
    EXPECT_EQ(fileSizeText(1'250'000), u"1.3 MB"_s);
    EXPECT_EQ(fileSizeText(274'302'450), u"274.3 MB"_s);
    EXPECT_EQ(fileSizeText(100'000'000), u"100 MB"_s);
}

TEST(FileSizeText, LargerUnitsHaveAtMostTwoDecimals) {
    EXPECT_EQ(fileSizeText(5'225'388'164), u"5.23 GB"_s);
    EXPECT_EQ(fileSizeText(3'300'000'000), u"3.3 GB"_s);
    EXPECT_EQ(fileSizeText(2'000'000'000), u"2 GB"_s);
    EXPECT_EQ(fileSizeText(1'050'000'000'000), u"1.05 TB"_s);
    EXPECT_EQ(fileSizeText(7'000'000'000'000'000), u"7 PB"_s);
    EXPECT_EQ(fileSizeText(std::numeric_limits<qint64>::max()), u"9.22 EB"_s);
}

TEST(FileSizeText, WhatRoundsUpToAThousandIsOneOfTheNextUnit) {
    EXPECT_EQ(fileSizeText(999'500), u"1 MB"_s);
    EXPECT_EQ(fileSizeText(999'949'999), u"999.9 MB"_s);
    EXPECT_EQ(fileSizeText(999'950'000), u"1 GB"_s);
    EXPECT_EQ(fileSizeText(999'995'000'000), u"1 TB"_s);
}

TEST(FileSizeText, NonsenseBelowZeroIsStillAText) {
    EXPECT_EQ(fileSizeText(-512), u"-512 bytes"_s);
    EXPECT_EQ(fileSizeText(std::numeric_limits<qint64>::min()), u"-9.22 EB"_s);
}

} // namespace
} // namespace dorvantel
