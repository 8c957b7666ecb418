#include "lyrfilesdk/components/kbaselib/klib/karrayul.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <random>
#include <type_traits>
#include <vector>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

using Pointers = KArrayTemplate<int*>;
using Numbers = KArrayTemplate<unsigned int>;

static_assert(sizeof(void*) != 4 || sizeof(Pointers) == 8);
static_assert(sizeof(Pointers) == sizeof(KBaseArrayFast<sizeof(void*)>), "no fields of its own");
static_assert(std::is_base_of_v<KBaseArrayFast<sizeof(void*)>, Pointers>);
static_assert(!std::is_copy_constructible_v<Pointers> && !std::is_copy_assignable_v<Pointers>);
static_assert(KBaseArrayFast<4u>::GetHeaderOffset() == 4);

int sgTargets[300];

// The array holds &sgTargets[n] for each n.
void ExpectTargets(const Pointers& pArray, const std::vector<int>& pNumbers) {
    ASSERT_EQ(pArray.GetCount(), static_cast<int>(pNumbers.size()));
    ASSERT_EQ(pArray.GetArrayCount(), static_cast<int>(pNumbers.size()));
    for (std::size_t lIndex = 0; lIndex < pNumbers.size(); ++lIndex)
        ASSERT_EQ(pArray.GetAt(static_cast<int>(lIndex)), sgTargets + pNumbers[lIndex]) << lIndex;
}

void Fill(Pointers& pArray, int pCount) {
    for (int lIndex = 0; lIndex < pCount; ++lIndex)
        ASSERT_EQ(pArray.Add(sgTargets + lIndex), lIndex);
}

// What the memory hook is asked for when an array's block has this size.
std::size_t RequestFor(unsigned int pBlockSize) {
    KBaseArrayFree(KBaseArrayRealloc(nullptr, pBlockSize));
    return MemoryProbe::LastSize();
}

TEST(KArrayTemplate, IsEmptyAtFirstWithoutABlock) {
    const std::size_t lBefore = MemoryProbe::Allocations();
    Pointers lArray;
    EXPECT_EQ(lArray.GetCount(), 0);
    EXPECT_EQ(lArray.GetBlockCount(), 0);
    EXPECT_EQ(lArray.GetArray(), nullptr);
    lArray.Clear();
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
}

TEST(KArrayTemplate, DoublesItsBlockWhenItIsFull) {
    LeakCheck lLeaks;
    Numbers lArray;
    const unsigned int lSizes[] = {20, 36, 68, 132};
    const int lFirst[] = {0, 4, 8, 16};
    int lStep = 0;
    for (unsigned int lNumber = 0; lNumber < 32; ++lNumber) {
        const std::size_t lBefore = MemoryProbe::Allocations();
        EXPECT_EQ(lArray.Add(lNumber), static_cast<int>(lNumber));
        if (lStep < 4 && static_cast<int>(lNumber) == lFirst[lStep]) {
            EXPECT_EQ(MemoryProbe::Allocations(), lBefore + 1);
            EXPECT_EQ(MemoryProbe::LastSize(), RequestFor(lSizes[lStep]));
            EXPECT_EQ(lArray.GetBlockCount(), 1 << lStep);
            ++lStep;
        } else {
            EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
        }
    }
    for (int lIndex = 0; lIndex < 32; ++lIndex)
        EXPECT_EQ(lArray[lIndex], static_cast<unsigned int>(lIndex));
}

TEST(KArrayTemplate, TakesABlockOfFourPointersFirst) {
    Pointers lArray;
    lArray.Add(sgTargets);
    const unsigned int lPointer = sizeof(void*);
    EXPECT_EQ(MemoryProbe::LastSize(), RequestFor(4 * lPointer + lPointer));
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(lArray.GetArray()) % alignof(int*), 0u);
}

TEST(KArrayTemplate, InsertsInFrontOfAnElement) {
    Pointers lArray;
    Fill(lArray, 3);
    EXPECT_EQ(lArray.InsertAt(0, sgTargets + 10), 0);
    ExpectTargets(lArray, {10, 0, 1, 2});
    EXPECT_EQ(lArray.InsertAt(2, sgTargets + 11), 2);
    ExpectTargets(lArray, {10, 0, 11, 1, 2});
    EXPECT_EQ(lArray.InsertAt(5, sgTargets + 12), 5);
    ExpectTargets(lArray, {10, 0, 11, 1, 2, 12});
}

TEST(KArrayTemplate, AppendsWhatIsInsertedPastTheEnd) {
    Pointers lArray;
    Fill(lArray, 3);
    EXPECT_EQ(lArray.InsertAt(100, sgTargets + 9), 3);
    EXPECT_EQ(lArray.InsertAt(INT_MAX, sgTargets + 8), 4);
    ExpectTargets(lArray, {0, 1, 2, 9, 8});
}

TEST(KArrayTemplate, InsertsTheBytesThatAPointerLeadsTo) {
    Pointers lArray;
    int* const lTarget = sgTargets + 3;
    EXPECT_EQ(lArray.InsertAt(100, &lTarget), 0);
    ExpectTargets(lArray, {3});
}

TEST(KArrayTemplate, RefusesANegativeIndexAndANullItem) {
    Pointers lArray;
    EXPECT_EQ(lArray.InsertAt(-1, sgTargets), -1);
    EXPECT_EQ(lArray.InsertAt(0, static_cast<const void*>(nullptr)), -1);
    EXPECT_EQ(lArray.GetArray(), nullptr);
    Fill(lArray, 3);
    EXPECT_EQ(lArray.InsertAt(-1, sgTargets), -1);
    EXPECT_EQ(lArray.InsertAt(INT_MIN, sgTargets), -1);
    EXPECT_EQ(lArray.InsertAt(1, static_cast<const void*>(nullptr)), -1);
    ExpectTargets(lArray, {0, 1, 2});
}

TEST(KArrayTemplate, InsertsItsOwnElements) {
    LeakCheck lLeaks;
    Pointers lArray;
    Fill(lArray, 4);
    EXPECT_EQ(lArray.InsertAt(0, static_cast<const void*>(lArray.GetArray() + 3)), 0);
    ExpectTargets(lArray, {3, 0, 1, 2, 3});
    EXPECT_EQ(lArray.InsertAt(1, static_cast<const void*>(lArray.GetArray() + 2)), 1);
    ExpectTargets(lArray, {3, 1, 0, 1, 2, 3});
    EXPECT_EQ(lArray.Add(lArray[1]), 6);
    ExpectTargets(lArray, {3, 1, 0, 1, 2, 3, 1});
}

TEST(KArrayTemplate, RemovesAnElementAndZeroesTheSlotThatFallsVacant) {
    Pointers lArray;
    Fill(lArray, 3);
    EXPECT_EQ(lArray.RemoveAt(0), sgTargets);
    ExpectTargets(lArray, {1, 2});
    EXPECT_EQ(lArray.GetArray()[2], nullptr);
    EXPECT_EQ(lArray.RemoveAt(1), sgTargets + 2);
    ExpectTargets(lArray, {1});
    EXPECT_EQ(lArray.GetArray()[1], nullptr);
    EXPECT_EQ(lArray.RemoveAt(0), sgTargets + 1);
    EXPECT_EQ(lArray.GetCount(), 0);
    EXPECT_EQ(lArray.GetArray()[0], nullptr);
    EXPECT_EQ(lArray.GetBlockCount(), 1);
}

TEST(KArrayTemplate, RemovesNothingAtAnInvalidIndex) {
    Pointers lArray;
    EXPECT_EQ(lArray.RemoveAt(0), nullptr);
    Fill(lArray, 3);
    for (int lIndex : {5, 3, -1, INT_MAX, INT_MIN})
        EXPECT_EQ(lArray.RemoveAt(lIndex), sgTargets) << lIndex;
    ExpectTargets(lArray, {0, 1, 2});
}

TEST(KArrayTemplate, ReadsElementZeroAtAnInvalidIndex) {
    Pointers lArray;
    Fill(lArray, 3);
    const Pointers& lConst = lArray;
    for (int lIndex : {-1, 3, INT_MAX, INT_MIN}) {
        EXPECT_FALSE(lArray.ValidateIndex(lIndex));
        EXPECT_EQ(lArray.GetAt(lIndex), sgTargets);
        EXPECT_EQ(&lArray[lIndex], lArray.GetArray());
        EXPECT_EQ(&lConst[lIndex], lArray.GetArray());
    }
    EXPECT_TRUE(lArray.ValidateIndex(0));
    EXPECT_TRUE(lArray.ValidateIndex(2));
    lArray[2] = sgTargets + 20;
    EXPECT_EQ(lConst[2], sgTargets + 20);
}

TEST(KArrayTemplate, ReadsZeroWithoutABlockWhateverWasWrittenThere) {
    Pointers lArray;
    EXPECT_EQ(lArray.GetAt(0), nullptr);
    EXPECT_EQ(lArray[-1], nullptr);
    lArray[0] = sgTargets;
    EXPECT_EQ(lArray[0], nullptr);
    EXPECT_EQ(lArray.GetAt(7), nullptr);
    EXPECT_EQ(lArray.GetCount(), 0);
    const Pointers lOther;
    EXPECT_EQ(lOther[0], nullptr);
}

TEST(KArrayTemplate, WritesAtValidIndexesOnly) {
    Pointers lArray;
    lArray.SetAt(0, sgTargets + 9);
    EXPECT_EQ(lArray.GetArray(), nullptr);
    Fill(lArray, 3);
    lArray.SetAt(1, sgTargets + 9);
    for (int lIndex : {-1, 3, INT_MAX, INT_MIN})
        lArray.SetAt(lIndex, sgTargets + 8);
    ExpectTargets(lArray, {0, 9, 2});
}

TEST(KArrayTemplate, FindsElementsBehindAnIndex) {
    Pointers lArray;
    EXPECT_EQ(lArray.Find(sgTargets), -1);
    Fill(lArray, 3);
    Fill(lArray, 0);
    lArray.Add(sgTargets + 1);
    EXPECT_EQ(lArray.Find(sgTargets + 1), 1);
    EXPECT_EQ(lArray.FindAfter(0, sgTargets + 1), 1);
    EXPECT_EQ(lArray.FindAfter(1, sgTargets + 1), 3);
    EXPECT_EQ(lArray.FindAfter(3, sgTargets + 1), -1);
    EXPECT_EQ(lArray.Find(sgTargets + 9), -1);
    EXPECT_EQ(lArray.Find(nullptr), -1);
    EXPECT_EQ(lArray.FindAfter(INT_MIN, sgTargets), 0);
    EXPECT_EQ(lArray.FindAfter(INT_MAX, sgTargets), -1);
}

TEST(KArrayTemplate, ClearGivesTheBlockBack) {
    const std::size_t lBefore = MemoryProbe::LiveBlocks();
    Pointers lArray;
    Fill(lArray, 9);
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBefore + 1);
    lArray.Clear();
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBefore);
    EXPECT_EQ(lArray.GetCount(), 0);
    EXPECT_EQ(lArray.GetBlockCount(), 0);
    Fill(lArray, 2);
    ExpectTargets(lArray, {0, 1});
}

TEST(KArrayTemplate, StaysAsItIsWithoutMemory) {
    LeakCheck lLeaks;
    Pointers lArray;
    {
        FailAllocations lFail(0, false);
        EXPECT_EQ(lArray.Add(sgTargets), -1);
        EXPECT_EQ(lArray.GetArray(), nullptr);
    }
    Fill(lArray, 4);
    {
        FailAllocations lFail(0, true);
        EXPECT_EQ(lArray.Add(sgTargets + 4), -1);
        EXPECT_EQ(lArray.InsertAt(0, sgTargets + 4), -1);
        EXPECT_EQ(lFail.Failed(), 2u);
    }
    ExpectTargets(lArray, {0, 1, 2, 3});
    EXPECT_EQ(lArray.GetBlockCount(), 1);
    EXPECT_EQ(lArray.Add(sgTargets + 4), 4);
}

TEST(KArrayTemplate, SetsNoRoomWithoutABlock) {
    Pointers lArray;
    lArray.SetBlockCount(5);
    EXPECT_EQ(lArray.GetBlockCount(), 0);
    EXPECT_EQ(lArray.GetArray(), nullptr);
}

TEST(KArrayTemplate, TakesEveryRoomThatIsSet) {
    LeakCheck lLeaks;
    std::vector<int> lNumbers;
    for (int lNumber = 0; lNumber < 23; ++lNumber)
        lNumbers.push_back(lNumber);
    for (int lRoom : {INT_MIN, -1, 0, 1, 2, 5, 8, 20}) {
        Pointers lArray;
        Fill(lArray, 21);
        lArray.SetBlockCount(lRoom);
        EXPECT_EQ(lArray.GetBlockCount(), lRoom);
        EXPECT_EQ(lArray.Add(sgTargets + 21), 21);
        EXPECT_EQ(lArray.Add(sgTargets + 22), 22);
        EXPECT_GE(lArray.GetBlockCount(), 6);
        ExpectTargets(lArray, lNumbers);
    }
}

TEST(KArrayTemplate, KeepsItsElementsWhenRoomIsSetAgainAndAgain) {
    LeakCheck lLeaks;
    for (int lFirst : {0, 1, 2, 3, 5}) {
        for (int lSecond : {1, 2, 3, 4, 9}) {
            Pointers lArray;
            Fill(lArray, 10);
            lArray.SetBlockCount(lFirst);
            lArray.SetBlockCount(lSecond);
            ExpectTargets(lArray, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
            EXPECT_EQ(lArray.Add(sgTargets + 10), 10);
            ExpectTargets(lArray, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
        }
    }
}

// An array whose last element went keeps its block, in which element 0 stands in for all others.
TEST(KArrayTemplate, KeepsRoomForTheFirstElementWhenItIsEmptyAndNoRoomIsSet) {
    LeakCheck lLeaks;
    for (int lFirst : {INT_MIN, -2, -1, 0, 1, 2}) {
        for (int lSecond : {INT_MIN, -2, -1, 0, 1, 2}) {
            Numbers lArray;
            lArray.Add(1);
            lArray.RemoveAt(0);
            lArray.SetBlockCount(lFirst);
            lArray.SetBlockCount(lSecond);
            EXPECT_EQ(lArray.GetBlockCount(), lSecond);
            EXPECT_EQ(lArray.GetAt(0), 0u) << lFirst << ", " << lSecond;
            lArray[5] = 3;
            EXPECT_EQ(lArray.GetAt(-1), 3u) << lFirst << ", " << lSecond;
            EXPECT_EQ(lArray.Add(4), 0);
        }
    }
}

TEST(KArrayTemplate, KeepsItsRoomWhenALargerOneIsNotToBeHad) {
    Pointers lArray;
    Fill(lArray, 1);
    lArray.SetBlockCount(INT_MAX);
    EXPECT_EQ(lArray.GetBlockCount(), 1);
    FailAllocations lFail(0, true);
    lArray.SetBlockCount(2);
    EXPECT_EQ(lFail.Failed(), 1u);
    EXPECT_EQ(lArray.GetBlockCount(), 1);
    ExpectTargets(lArray, {0});
}

TEST(KArrayTemplate, SwapsContents) {
    LeakCheck lLeaks;
    Pointers lLeft;
    Pointers lRight;
    Fill(lLeft, 2);
    lLeft.Swap(lRight);
    ExpectTargets(lLeft, {});
    ExpectTargets(lRight, {0, 1});
    lRight.Swap(lRight);
    ExpectTargets(lRight, {0, 1});
}

TEST(KArrayTemplate, AgreesWithAVectorInRandomUse) {
    for (unsigned int lSeed = 1; lSeed <= 20; ++lSeed) {
        SCOPED_TRACE(testing::Message() << "seed " << lSeed);
        std::mt19937 lRandom(lSeed);
        Pointers lArray;
        std::vector<int> lModel;
        for (int lStep = 0; lStep < 300; ++lStep) {
            const int lNumber = static_cast<int>(lRandom() % 300);
            const std::size_t lAt = lRandom() % (lModel.size() + 1);
            if (lRandom() % 3 != 0) {
                ASSERT_EQ(lArray.InsertAt(static_cast<int>(lAt), sgTargets + lNumber), static_cast<int>(lAt));
                lModel.insert(lModel.begin() + static_cast<std::ptrdiff_t>(lAt), lNumber);
            } else if (lAt < lModel.size()) {
                ASSERT_EQ(lArray.RemoveAt(static_cast<int>(lAt)), sgTargets + lModel[lAt]);
                lModel.erase(lModel.begin() + static_cast<std::ptrdiff_t>(lAt));
            }
            ExpectTargets(lArray, lModel);
        }
    }
}

TEST(KBaseArrayFast, HoldsElementsOfEightBytes) {
    LeakCheck lLeaks;
    KArrayTemplate<std::uint64_t> lArray;
    EXPECT_EQ(lArray.GetHeaderOffset(), 8);
    for (std::uint64_t lNumber = 0; lNumber < 9; ++lNumber)
        lArray.Add(lNumber << 40);
    EXPECT_EQ(lArray.GetBlockCount(), 4);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(lArray.GetArray()) % 8, 0u);
    EXPECT_EQ(lArray.GetAt(8), std::uint64_t{8} << 40);
}

TEST(KBaseArrayFast, InsertsAndRemovesUntypedItems) {
    KBaseArrayFast<4u> lArray;
    const std::uint32_t lItems[] = {1, 2, 3};
    for (const std::uint32_t& lItem : lItems)
        EXPECT_GE(lArray.InsertAt(0, &lItem), 0);
    EXPECT_EQ(lArray.GetArrayCount(), 3);
    lArray.RemoveAt(1);
    lArray.RemoveAt(5);
    lArray.RemoveAt(-1);
    EXPECT_EQ(lArray.GetCount(), 2);
    EXPECT_TRUE(lArray.ValidateIndex(1));
    EXPECT_FALSE(lArray.ValidateIndex(2));
}

}  // namespace
}  // namespace lyrsdk
