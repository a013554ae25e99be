// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonBlocks.h"

#include <array>
#include <random>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

/// What the masks of a block are to be, byte by byte.
template <typename Block>
void expectMasks(const char* bytes) {
    std::uint64_t special = 0;
    std::uint64_t multibyte = 0;
    std::array<char16_t, Block::size> units{};
    for (qsizetype i = 0; i < Block::size; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        special |= std::uint64_t{byte < 0x20 || byte == '"' || byte == '\\'} << i;
        multibyte |= std::uint64_t{byte >= 0x80} << i;
        units[static_cast<std::size_t>(i)] = byte;
    }
    const Block block(bytes);
    ASSERT_EQ(block.special(), special);
    ASSERT_EQ(block.multibyte(), multibyte);
    std::array<char16_t, Block::size> widened{};
    block.widen(widened.data());
    ASSERT_EQ(widened, units);
}

template <typename Block>
struct JsonBlockTest : testing::Test {};

#if defined(__SSE2__)
using Blocks = testing::Types<PortableBlock, VectorBlock>;
#else
using Blocks = testing::Types<PortableBlock>;
#endif
TYPED_TEST_SUITE(JsonBlockTest, Blocks);

TYPED_TEST(JsonBlockTest, EveryByteInEveryPlaceIsToldApart) {
    for (int byte = 0; byte < 256; ++byte) {
        for (std::size_t place = 0; place < TypeParam::size; ++place) {
            for (const char neighbour : {'a', '\0', '"', '\x7F', '\x80', '\xFF'}) {
                std::array<char, TypeParam::size> bytes;
                bytes.fill(neighbour);
                bytes[place] = static_cast<char>(byte);
                expectMasks<TypeParam>(bytes.data());
            }
        }
    }
}

TYPED_TEST(JsonBlockTest, RandomBytesAreToldApart) {
    std::minstd_rand random(3);
    for (int round = 0; round < 20'000; ++round) {
        std::array<char, TypeParam::size> bytes;
        for (char& byte : bytes) {
            byte = static_cast<char>(random());
        }
        expectMasks<TypeParam>(bytes.data());
    }
}

} // namespace
} // namespace dorvantel
