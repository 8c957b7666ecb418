#include "tools/lyrinspect/blockpool.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

namespace lyrsdk::inspect {

namespace {

struct Taken {
    unsigned char* bytes;
    std::size_t size;
    unsigned char mark;
};

Taken TakeMarked(std::size_t pSize, unsigned char pMark) {
    auto* lBytes = static_cast<unsigned char*>(TakeBlock(pSize));
    EXPECT_NE(lBytes, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(lBytes) % alignof(std::max_align_t), 0u);
    if (lBytes && pSize > 0)
        std::memset(lBytes, pMark, pSize);
    return {lBytes, pSize, pMark};
}

void CheckAndGiveBack(const Taken& pTaken) {
    for (std::size_t i = 0; i < pTaken.size; ++i)
        ASSERT_EQ(pTaken.bytes[i], pTaken.mark) << i << " of " << pTaken.size;
    EXPECT_EQ(GiveBackBlock(pTaken.bytes), pTaken.size);
}

}  // namespace

TEST(BlockPool, KeepsBlocksOfEverySizeApart) {
    std::vector<Taken> lBlocks;
    for (std::size_t lSize = 0; lSize <= kLargestPooled + 64; ++lSize)
        lBlocks.push_back(TakeMarked(lSize, static_cast<unsigned char>(lSize)));
    lBlocks.push_back(TakeMarked(std::size_t{1} << 20, 0x5A));
    for (const Taken& lBlock : lBlocks)
        CheckAndGiveBack(lBlock);
}

TEST(BlockPool, KeepsBlocksApartThatAreTakenAndGivenBackInAnyOrder) {
    std::mt19937 lRandom(7);
    std::vector<Taken> lBlocks;
    for (int i = 0; i < 200000; ++i) {
        if (lBlocks.size() < 1000 || lRandom() % 2 == 0) {
            const std::size_t lSize = lRandom() % 8 ? lRandom() % 200 : lRandom() % 3000;
            lBlocks.push_back(TakeMarked(lSize, static_cast<unsigned char>(i)));
        } else {
            std::swap(lBlocks[lRandom() % lBlocks.size()], lBlocks.back());
            CheckAndGiveBack(lBlocks.back());
            lBlocks.pop_back();
        }
    }
    for (const Taken& lBlock : lBlocks)
        CheckAndGiveBack(lBlock);
}

TEST(BlockPool, HasRoomForMoreThanOneLargeChunk) {
    std::vector<Taken> lBlocks;
    for (int i = 0; i < 20000; ++i)
        lBlocks.push_back(TakeMarked(kLargestPooled, static_cast<unsigned char>(i)));
    for (const Taken& lBlock : lBlocks)
        CheckAndGiveBack(lBlock);
}

TEST(BlockPool, RefusesSizesThatLeaveNoRoomForTheHeader) {
    for (std::size_t lLess = 0; lLess < alignof(std::max_align_t); ++lLess)
        EXPECT_EQ(TakeBlock(static_cast<std::size_t>(-1) - lLess), nullptr) << lLess;
}

}  // namespace lyrsdk::inspect
