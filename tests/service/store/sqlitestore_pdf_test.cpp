// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/SqliteStoreFixture.h"

using namespace dorvantel::service;
using namespace dorvantel::test;

TEST_F(SqliteStoreTest, PDFComesInPieces) {
    SqliteStore store(folder.store(), "");
    Record record = makeRecord("a@x");
    record.file = std::string(50'000, 'a') + std::string(50'000, 'b') + "end";
    ASSERT_TRUE(store.insert(record));
    const auto pdf = store.pdf("a@x");
    ASSERT_TRUE(pdf && *pdf);
    EXPECT_EQ((*pdf)->size, 100'003U);
    EXPECT_EQ(*store.pdfPiece((*pdf)->version, 49'999, 2), "ab");
    EXPECT_EQ(*store.pdfPiece((*pdf)->version, 100'000, 100), "end");
    EXPECT_EQ(*store.pdfPiece((*pdf)->version, 100'003, 100), "");
}

TEST_F(SqliteStoreTest, PDFThatIsReadCanBeReplacedAndDeletedMeanwhile) {
    SqliteStore store(folder.store(), "");
    Record record = makeRecord("a@x");
    record.file = "first";
    ASSERT_TRUE(store.insert(record));
    const auto pdf = store.pdf("a@x");
    ASSERT_TRUE(pdf && *pdf);
    record.file = "second";
    ASSERT_TRUE(store.insert(record));
    ASSERT_TRUE(store.remove("a@x"));
    EXPECT_EQ(*store.pdfPiece((*pdf)->version, 0, 100), "first");
}

TEST_F(SqliteStoreTest, PieceOfAPDFThatIsNotThereIsAnError) {
    SqliteStore store(folder.store(), "");
    EXPECT_FALSE(store.pdfPiece(1, 0, 100));
}
