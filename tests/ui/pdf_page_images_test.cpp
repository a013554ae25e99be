// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/PDFPageImages.h"

#include <gtest/gtest.h>

namespace dorvantel {

namespace {

/// 400 bytes.
QImage image() {
    return {10, 10, QImage::Format_RGB32};
}

bool has(const PDFPageImages& images, int page) {
    return !images.image(page).isNull();
}

} // namespace

TEST(PDFPageImages, TheOneUsedLongestAgoGoesFirst) {
    PDFPageImages images(1'200);
    for (int page = 0; page < 3; ++page) {
        images.insert(page, image());
    }
    EXPECT_EQ(images.bytes(), 1'200);
    images.use({0, 7, 1});
    images.insert(3, image());
    EXPECT_FALSE(has(images, 2));
    images.insert(4, image());
    EXPECT_FALSE(has(images, 1));
    EXPECT_TRUE(has(images, 0));
    EXPECT_EQ(images.bytes(), 1'200);
}

TEST(PDFPageImages, AnotherImageOfAPageTakesThePlaceOfTheFirst) {
    PDFPageImages images(1'200);
    images.insert(0, image());
    images.insert(0, QImage(5, 5, QImage::Format_RGB32));
    EXPECT_EQ(images.bytes(), 100);
    EXPECT_EQ(images.image(0).size(), QSize(5, 5));
}

TEST(PDFPageImages, AnImageLargerThanTheBoundIsNotKept) {
    PDFPageImages images(399);
    images.insert(0, image());
    EXPECT_FALSE(has(images, 0));
    EXPECT_EQ(images.bytes(), 0);
}

TEST(PDFPageImages, ClearForgetsAll) {
    PDFPageImages images(1'200);
    images.insert(0, image());
    images.clear();
    EXPECT_FALSE(has(images, 0));
    EXPECT_EQ(images.bytes(), 0);
}

} // namespace dorvantel
