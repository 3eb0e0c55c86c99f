#include "burn/BlockSums.h"

#include <gtest/gtest.h>

using recorder::BlockSums;

namespace {

std::vector<UInt8> Bytes(size_t inSize) {
    std::vector<UInt8> bytes(inSize);
    for (size_t i = 0; i < inSize; ++i) bytes[i] = UInt8(i * 7 + i / 251);
    return bytes;
}

TEST(BlockSums, SameBytesInOtherPiecesAreTheSame) {
    const auto bytes = Bytes(3 * BlockSums::kBlock + 2048);
    BlockSums sums;
    sums.Add(bytes.data(), BlockSums::kBlock);
    sums.Add(bytes.data() + BlockSums::kBlock, bytes.size() - BlockSums::kBlock);
    EXPECT_FALSE(sums.FirstDifference(0, bytes.data(), bytes.size()));
}

TEST(BlockSums, EveryFlippedBitOfABlockIsSeen) {
    auto bytes = Bytes(2048);
    BlockSums sums;
    sums.Add(bytes.data(), bytes.size());
    for (size_t bit = 0; bit < bytes.size() * 8; ++bit) {
        bytes[bit / 8] ^= UInt8(1 << bit % 8);
        ASSERT_EQ(sums.FirstDifference(0, bytes.data(), bytes.size()), UInt64(0)) << bit;
        bytes[bit / 8] ^= UInt8(1 << bit % 8);
    }
}

TEST(BlockSums, SwappedWordsAndBlocksAreSeen) {
    const auto bytes = Bytes(2 * BlockSums::kBlock);
    BlockSums sums;
    sums.Add(bytes.data(), bytes.size());
    auto swapped = bytes;
    std::swap_ranges(swapped.begin(), swapped.begin() + 8, swapped.begin() + 32);
    EXPECT_EQ(sums.FirstDifference(0, swapped.data(), swapped.size()), UInt64(0));
    swapped = bytes;
    std::swap_ranges(swapped.begin(), swapped.begin() + BlockSums::kBlock,
                     swapped.begin() + BlockSums::kBlock);
    EXPECT_EQ(sums.FirstDifference(0, swapped.data(), swapped.size()), UInt64(0));
}

TEST(BlockSums, BytesBeyondTheEndDiffer) {
    const auto bytes = Bytes(2 * BlockSums::kBlock);
    BlockSums sums;
    sums.Add(bytes.data(), BlockSums::kBlock);
    EXPECT_EQ(sums.FirstDifference(0, bytes.data(), bytes.size()), UInt64(BlockSums::kBlock));
}

}  // namespace
