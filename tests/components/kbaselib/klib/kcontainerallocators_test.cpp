#include "lyrfilesdk/components/kbaselib/klib/kcontainerallocators.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <type_traits>
#include <vector>

#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

static_assert(!std::is_copy_constructible_v<KBaseAllocator> && !std::is_copy_assignable_v<KBaseAllocator>);
static_assert(!std::is_copy_constructible_v<KHungryAllocator> && !std::is_copy_assignable_v<KHungryAllocator>);

constexpr std::size_t kRecordSize = 24;

// The blocks' sizes in records, newest first.
std::vector<std::size_t> BlockSizes(const KHungryAllocator& pAllocator) {
    std::vector<std::size_t> lSizes;
    for (const auto* lBlock = pAllocator.GetNewestBlock(); lBlock; lBlock = lBlock->mNextBlock)
        lSizes.push_back(static_cast<std::size_t>(lBlock->mEnd - lBlock->mData) / pAllocator.GetRecordSize());
    return lSizes;
}

TEST(KBaseAllocator, HandsOutOneHeapBlockARequest) {
    LeakCheck lLeaks;
    KBaseAllocator lAllocator(28);
    EXPECT_EQ(lAllocator.GetRecordSize(), 28u);
    const std::size_t lBefore = MemoryProbe::LiveBlocks();
    void* lOne = lAllocator.AllocateRecords(1);
    EXPECT_EQ(MemoryProbe::LastSize(), 28u);
    void* lThree = lAllocator.AllocateRecords(3);
    EXPECT_EQ(MemoryProbe::LastSize(), 84u);
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBefore + 2);
    lAllocator.FreeMemory(lOne);
    lAllocator.FreeMemory(lThree);
    lAllocator.FreeMemory(nullptr);
}

TEST(KBaseAllocator, KeepsNothingInStock) {
    KBaseAllocator lAllocator(28);
    const std::size_t lBefore = MemoryProbe::Allocations();
    EXPECT_TRUE(lAllocator.Reserve(1000));
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
}

TEST(KBaseAllocator, GivesNullWithoutMemoryAndForSizesThatDoNotFit) {
    KBaseAllocator lAllocator(28);
    EXPECT_EQ(lAllocator.AllocateRecords(SIZE_MAX / 28 + 1), nullptr);
    EXPECT_EQ(lAllocator.AllocateRecords(SIZE_MAX), nullptr);
    FailAllocations lFail(0, false);
    EXPECT_EQ(lAllocator.AllocateRecords(1), nullptr);
    EXPECT_EQ(lFail.Failed(), 1u);
}

TEST(KHungryAllocator, TouchesNoMemoryUntilItIsUsed) {
    const std::size_t lBefore = MemoryProbe::Allocations();
    {
        KHungryAllocator lAllocator(kRecordSize);
        EXPECT_EQ(lAllocator.GetRecordSize(), kRecordSize);
        EXPECT_EQ(lAllocator.GetRecordPoolSize(), 0u);
        EXPECT_EQ(lAllocator.GetNewestBlock(), nullptr);
    }
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
}

TEST(KHungryAllocator, TakesTheFirstTwoRecordsFromTwoBlocks) {
    LeakCheck lLeaks;
    KHungryAllocator lAllocator(kRecordSize);
    void* lFirst = lAllocator.AllocateRecords(1);
    EXPECT_EQ(MemoryProbe::LastSize(), 48u);
    EXPECT_EQ(BlockSizes(lAllocator), (std::vector<std::size_t>{2}));
    EXPECT_EQ(lFirst, lAllocator.GetNewestBlock()->mData);
    void* lSecond = lAllocator.AllocateRecords(1);
    EXPECT_EQ(MemoryProbe::LastSize(), 48u);
    EXPECT_EQ(BlockSizes(lAllocator), (std::vector<std::size_t>{2, 2}));
    EXPECT_EQ(lSecond, lAllocator.GetNewestBlock()->mData);
    EXPECT_EQ(lAllocator.GetRecordPoolSize(), 4u);
}

TEST(KHungryAllocator, GrowsBlockByBlock) {
    LeakCheck lLeaks;
    KHungryAllocator lAllocator(kRecordSize);
    std::vector<std::size_t> lPools;
    for (int lRequest = 0; lRequest < 12; ++lRequest) {
        ASSERT_NE(lAllocator.AllocateRecords(1), nullptr);
        lPools.push_back(lAllocator.GetRecordPoolSize());
    }
    EXPECT_EQ(lPools, (std::vector<std::size_t>{2, 4, 6, 8, 18, 20, 22, 24, 27, 27, 30, 30}));
    EXPECT_EQ(BlockSizes(lAllocator), (std::vector<std::size_t>{3, 3, 2, 2, 2, 2, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2}));
}

TEST(KHungryAllocator, EachBlockServesOneRecordLessThanItHolds) {
    LeakCheck lLeaks;
    KHungryAllocator lAllocator(kRecordSize);
    ASSERT_TRUE(lAllocator.Reserve(1000));
    std::size_t lPool = lAllocator.GetRecordPoolSize();
    std::size_t lExpected = 999;
    for (int lBlock = 0; lBlock < 20; ++lBlock) {
        for (std::size_t lRecord = 0; lRecord < lExpected; ++lRecord) {
            ASSERT_NE(lAllocator.AllocateRecords(1), nullptr);
            ASSERT_EQ(lAllocator.GetRecordPoolSize(), lPool);
        }
        ASSERT_NE(lAllocator.AllocateRecords(1), nullptr);
        ASSERT_EQ(lAllocator.GetRecordPoolSize(), lPool + lPool / 8);
        lExpected = lPool / 8 - 2;
        lPool += lPool / 8;
    }
}

TEST(KHungryAllocator, RefusesToFillABlockToTheLastByte) {
    KHungryAllocator lAllocator(kRecordSize);
    ASSERT_TRUE(lAllocator.Reserve(1));
    const auto* lReserved = lAllocator.GetNewestBlock();
    EXPECT_EQ(lAllocator.GetRecordPoolSize(), 1u);
    void* lRecord = lAllocator.AllocateRecords(1);
    EXPECT_EQ(lAllocator.GetNewestBlock()->mNextBlock, lReserved);
    EXPECT_EQ(lRecord, lAllocator.GetNewestBlock()->mData);
    EXPECT_EQ(lReserved->mFreeData, lReserved->mData);
    EXPECT_EQ(lAllocator.GetRecordPoolSize(), 3u);
}

TEST(KHungryAllocator, FillsOlderBlocksThatHaveRoom) {
    KHungryAllocator lAllocator(kRecordSize);
    ASSERT_TRUE(lAllocator.Reserve(3));
    ASSERT_TRUE(lAllocator.Reserve(1));
    const auto* lOlder = lAllocator.GetNewestBlock()->mNextBlock;
    EXPECT_EQ(lAllocator.AllocateRecords(1), lOlder->mData);
    EXPECT_EQ(lAllocator.AllocateRecords(1), lOlder->mData + kRecordSize);
    EXPECT_EQ(lAllocator.GetRecordPoolSize(), 4u);
}

TEST(KHungryAllocator, ServesRequestsLargerThanItsGrowth) {
    LeakCheck lLeaks;
    KHungryAllocator lAllocator(kRecordSize);
    char* lRecords = static_cast<char*>(lAllocator.AllocateRecords(5));
    ASSERT_NE(lRecords, nullptr);
    std::memset(lRecords, 0, 5 * kRecordSize);
    const auto* lBlock = lAllocator.GetNewestBlock();
    EXPECT_EQ(lRecords, lBlock->mData);
    EXPECT_LT(lBlock->mFreeData, lBlock->mEnd);
    EXPECT_EQ(lBlock->mFreeData, lRecords + 5 * kRecordSize);
}

TEST(KHungryAllocator, HandsOutRecordsThatDoNotOverlap) {
    LeakCheck lLeaks;
    KHungryAllocator lAllocator(kRecordSize);
    std::vector<unsigned char*> lRecords;
    for (unsigned int lRecord = 0; lRecord < 500; ++lRecord) {
        lRecords.push_back(static_cast<unsigned char*>(lAllocator.AllocateRecords(1)));
        ASSERT_NE(lRecords.back(), nullptr);
        ASSERT_EQ(reinterpret_cast<std::uintptr_t>(lRecords.back()) % alignof(void*), 0u);
        std::memset(lRecords.back(), static_cast<int>(lRecord % 251), kRecordSize);
    }
    for (unsigned int lRecord = 0; lRecord < 500; ++lRecord)
        for (std::size_t lByte = 0; lByte < kRecordSize; ++lByte)
            ASSERT_EQ(lRecords[lRecord][lByte], lRecord % 251);
}

TEST(KHungryAllocator, HasRoomAsLongAsTheNextRecordTakesNoMemory) {
    KHungryAllocator lAllocator(kRecordSize);
    EXPECT_FALSE(lAllocator.HasRoom());
    for (int lReserved : {1, 2, 9, 40}) {
        lAllocator.Reserve(static_cast<std::size_t>(lReserved));
        // The block of one record in front of the others has no room, and theirs counts.
        lAllocator.Reserve(1);
        for (int i = 0; i < lReserved - 1; ++i) {
            EXPECT_TRUE(lAllocator.HasRoom()) << "record " << i << " of " << lReserved;
            const std::size_t lBefore = MemoryProbe::Allocations();
            lAllocator.AllocateRecords(1);
            EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
        }
        EXPECT_FALSE(lAllocator.HasRoom()) << "behind " << lReserved;
    }
}

TEST(KHungryAllocator, ChangesBlocksWithAnother) {
    LeakCheck lLeaks;
    KHungryAllocator lLeft(kRecordSize);
    KHungryAllocator lRight(kRecordSize);
    lLeft.Reserve(5);
    lRight.Reserve(3);
    lRight.Reserve(4);
    void* lRecord = lLeft.AllocateRecords(1);
    std::memset(lRecord, 7, kRecordSize);
    lLeft.Swap(lRight);
    EXPECT_EQ(BlockSizes(lLeft), (std::vector<std::size_t>{4, 3}));
    EXPECT_EQ(lLeft.GetRecordPoolSize(), 7u);
    EXPECT_EQ(BlockSizes(lRight), (std::vector<std::size_t>{5}));
    EXPECT_EQ(lRight.GetRecordPoolSize(), 5u);
    EXPECT_EQ(lRecord, lRight.GetNewestBlock()->mData);
    EXPECT_EQ(static_cast<char*>(lRecord)[kRecordSize - 1], 7);
    EXPECT_NE(lRight.AllocateRecords(1), lRecord);
}

TEST(KHungryAllocator, KeepsAPointerWhereNoRecordComes) {
    LeakCheck lLeaks;
    KHungryAllocator lAllocator(kRecordSize);
    EXPECT_EQ(lAllocator.GetLentPointer(), nullptr);
    lAllocator.SetLentPointer(&lAllocator);
    EXPECT_EQ(lAllocator.GetLentPointer(), nullptr) << "there is no room before the first block";
    for (int lRecord = 0; lRecord < 200; ++lRecord) {
        void* lMemory = lAllocator.AllocateRecords(1);
        EXPECT_EQ(lAllocator.GetLentPointer(), lRecord == 0 ? nullptr : &lAllocator) << lRecord;
        std::memset(lMemory, 0x55, kRecordSize);
        lAllocator.SetLentPointer(&lAllocator);
        EXPECT_EQ(*static_cast<unsigned char*>(lMemory), 0x55);
    }
    lAllocator.SetLentPointer(nullptr);
    EXPECT_EQ(lAllocator.GetLentPointer(), nullptr);
}

TEST(KHungryAllocator, TheLentPointerGoesWithTheBlocks) {
    KHungryAllocator lLeft(kRecordSize);
    KHungryAllocator lRight(kRecordSize);
    ASSERT_TRUE(lLeft.Reserve(2) && lRight.Reserve(2));
    lLeft.SetLentPointer(&lLeft);
    lLeft.Swap(lRight);
    EXPECT_EQ(lLeft.GetLentPointer(), nullptr);
    EXPECT_EQ(lRight.GetLentPointer(), &lLeft);
}

// Records smaller than a pointer reach into the room, and a block without bytes has none.
TEST(KHungryAllocator, LendsNoRoomThatARecordHas) {
    LeakCheck lLeaks;
    KHungryAllocator lAllocator(2);
    ASSERT_TRUE(lAllocator.Reserve(16));
    lAllocator.SetLentPointer(&lAllocator);
    for (std::size_t lRecord = 0; lRecord < 15; ++lRecord) {
        std::memset(lAllocator.AllocateRecords(1), 0x55, 2);
        const bool lRoom = 32 - 2 * (lRecord + 1) >= sizeof(void*);
        EXPECT_EQ(lAllocator.GetLentPointer(), lRoom ? &lAllocator : nullptr) << lRecord;
    }
    ASSERT_TRUE(lAllocator.Reserve(0));
    lAllocator.SetLentPointer(&lAllocator);
    EXPECT_EQ(lAllocator.GetLentPointer(), nullptr);
}

TEST(KHungryAllocator, GivesNothingBackBeforeItsEnd) {
    const std::size_t lBefore = MemoryProbe::LiveBlocks();
    {
        KHungryAllocator lAllocator(kRecordSize);
        void* lRecord = lAllocator.AllocateRecords(1);
        const auto* lNewest = lAllocator.GetNewestBlock();
        lAllocator.FreeMemory(lRecord);
        lAllocator.FreeMemory(nullptr);
        EXPECT_EQ(lAllocator.GetNewestBlock(), lNewest);
        EXPECT_EQ(lAllocator.GetRecordPoolSize(), 2u);
        EXPECT_EQ(MemoryProbe::LiveBlocks(), lBefore + 2);
        EXPECT_NE(lAllocator.AllocateRecords(1), lRecord);
    }
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBefore);
}

// A reservation takes two requests: the block, then its storage.
TEST(KHungryAllocator, StaysAsItIsWhenABlockFindsNoMemory) {
    LeakCheck lLeaks;
    KHungryAllocator lAllocator(kRecordSize);
    ASSERT_NE(lAllocator.AllocateRecords(1), nullptr);
    const auto* lNewest = lAllocator.GetNewestBlock();
    for (std::size_t lFirst = 0; lFirst < 2; ++lFirst) {
        FailAllocations lFail(lFirst, true);
        EXPECT_FALSE(lAllocator.Reserve(10));
        EXPECT_EQ(lAllocator.AllocateRecords(1), nullptr);
        EXPECT_GT(lFail.Failed(), 0u);
        EXPECT_EQ(lAllocator.GetNewestBlock(), lNewest);
        EXPECT_EQ(lAllocator.GetRecordPoolSize(), 2u);
    }
    EXPECT_NE(lAllocator.AllocateRecords(1), nullptr);
}

TEST(KHungryAllocator, RefusesSizesThatDoNotFit) {
    KHungryAllocator lAllocator(kRecordSize);
    EXPECT_FALSE(lAllocator.Reserve(SIZE_MAX / kRecordSize + 1));
    EXPECT_FALSE(lAllocator.Reserve(SIZE_MAX));
    EXPECT_EQ(lAllocator.AllocateRecords(SIZE_MAX / kRecordSize + 1), nullptr);
    EXPECT_EQ(lAllocator.AllocateRecords(SIZE_MAX), nullptr);
    EXPECT_EQ(lAllocator.GetRecordPoolSize(), 0u);
}

TEST(KHungryAllocator, TakesZeroForASize) {
    LeakCheck lLeaks;
    KHungryAllocator lNoSize(0);
    EXPECT_EQ(lNoSize.AllocateRecords(1), nullptr);
    EXPECT_TRUE(lNoSize.Reserve(3));
    EXPECT_EQ(lNoSize.AllocateRecords(3), nullptr);
    KHungryAllocator lAllocator(kRecordSize);
    EXPECT_TRUE(lAllocator.Reserve(0));
    EXPECT_EQ(lAllocator.GetRecordPoolSize(), 0u);
    EXPECT_NE(lAllocator.AllocateRecords(0), nullptr);
}

TEST(MemoryBlock, StartsFreeFromEndToEnd) {
    LeakCheck lLeaks;
    KHungryAllocator::MemoryBlock lBlock(100);
    EXPECT_EQ(MemoryProbe::LastSize(), 100u);
    EXPECT_EQ(lBlock.mNextBlock, nullptr);
    EXPECT_EQ(lBlock.mFreeData, lBlock.mData);
    EXPECT_EQ(lBlock.mEnd, lBlock.mData + 100);
}

TEST(MemoryBlock, HandsOutChunksThatEndBeforeItsEnd) {
    KHungryAllocator::MemoryBlock lBlock(100);
    EXPECT_EQ(lBlock.GetChunk(100), nullptr);
    EXPECT_EQ(lBlock.GetChunk(SIZE_MAX), nullptr);
    EXPECT_EQ(lBlock.GetChunk(60), lBlock.mData);
    EXPECT_EQ(lBlock.GetChunk(40), nullptr);
    EXPECT_EQ(lBlock.GetChunk(39), lBlock.mData + 60);
    EXPECT_EQ(lBlock.GetChunk(1), nullptr);
    EXPECT_EQ(lBlock.GetChunk(0), lBlock.mData + 99);
}

TEST(MemoryBlock, HasNullBoundsWithoutMemory) {
    FailAllocations lFail(0, true);
    KHungryAllocator::MemoryBlock lBlock(100);
    EXPECT_EQ(lBlock.mData, nullptr);
    EXPECT_EQ(lBlock.mFreeData, nullptr);
    EXPECT_EQ(lBlock.mEnd, nullptr);
    EXPECT_EQ(lBlock.GetChunk(0), nullptr);
    EXPECT_EQ(lBlock.GetChunk(1), nullptr);
}

}  // namespace
}  // namespace lyrsdk
