#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

struct Counted {
    explicit Counted(int pValue) : mValue(pValue) { ++sgAlive; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    ~Counted() { --sgAlive; }

    int mValue;
    static int sgAlive;
};
int Counted::sgAlive = 0;

bool IsAligned(const void* pMemory) {
    return reinterpret_cast<std::uintptr_t>(pMemory) % alignof(std::max_align_t) == 0;
}

TEST(LyrSdkMalloc, GivesAlignedMemoryOfAnySizeAndTakesItBack) {
    const LeakCheck lCheck;
    for (const std::size_t lSize : {std::size_t{0}, std::size_t{1}, std::size_t{7}, std::size_t{4096}}) {
        void* lMemory = LyrSdkMalloc(lSize);
        ASSERT_NE(lMemory, nullptr);
        EXPECT_TRUE(IsAligned(lMemory));
        EXPECT_EQ(MemoryProbe::LastSize(), lSize);
        LyrSdkFree(lMemory);
    }
}

TEST(LyrSdkFree, IgnoresNull) {
    const LeakCheck lCheck;
    LyrSdkFree(nullptr);
}

int sgMallocs = 0;
int sgFrees = 0;

void* CountingMalloc(std::size_t pSize) {
    ++sgMallocs;
    return std::malloc(pSize);
}

void CountingFree(void* pMemory) {
    ++sgFrees;
    std::free(pMemory);
}

TEST(LyrSdkSetMemoryHandlers, SendsEveryRequestToThePair) {
    LyrSdkSetMemoryHandlers(&CountingMalloc, &CountingFree);
    LyrSdkFree(LyrSdkMalloc(8));
    LyrSdkFree(nullptr);
    MemoryProbe::Install();
    EXPECT_EQ(sgMallocs, 1);
    EXPECT_EQ(sgFrees, 1);
}

TEST(LyrSdkSetMemoryHandlers, TakesHalfAPairForNone) {
    sgMallocs = sgFrees = 0;
    for (int lHalf = 0; lHalf < 3; ++lHalf) {
        LyrSdkSetMemoryHandlers(lHalf == 1 ? &CountingMalloc : nullptr, lHalf == 2 ? &CountingFree : nullptr);
        void* lMemory = LyrSdkMalloc(8);
        EXPECT_NE(lMemory, nullptr);
        LyrSdkFree(lMemory);
    }
    MemoryProbe::Install();
    EXPECT_EQ(sgMallocs, 0);
    EXPECT_EQ(sgFrees, 0);
}

TEST(LyrSdkNew, ConstructsAndDestroysThroughTheHook) {
    const LeakCheck lCheck;
    Counted* lObject = LyrSdkNew<Counted>(5);
    ASSERT_NE(lObject, nullptr);
    EXPECT_EQ(MemoryProbe::LastSize(), sizeof(Counted));
    EXPECT_EQ(lObject->mValue, 5);
    EXPECT_EQ(Counted::sgAlive, 1);
    LyrSdkDelete(lObject);
    EXPECT_EQ(Counted::sgAlive, 0);
    LyrSdkDelete<Counted>(nullptr);
}

TEST(LyrSdkNew, ConstructsNothingWithoutMemory) {
    const FailAllocations lFail(0, false);
    EXPECT_EQ(LyrSdkNew<Counted>(5), nullptr);
    EXPECT_EQ(Counted::sgAlive, 0);
    EXPECT_EQ(lFail.Failed(), 1u);
}

TEST(KBaseArrayRealloc, KeepsWhatFits) {
    const LeakCheck lCheck;
    char* lBlock = KBaseArrayRealloc(nullptr, 4);
    ASSERT_NE(lBlock, nullptr);
    EXPECT_TRUE(IsAligned(lBlock));
    std::memcpy(lBlock, "abcd", 4);
    lBlock = KBaseArrayRealloc(lBlock, 1000);
    ASSERT_NE(lBlock, nullptr);
    EXPECT_EQ(std::memcmp(lBlock, "abcd", 4), 0);
    std::memset(lBlock + 4, 'x', 996);
    lBlock = KBaseArrayRealloc(lBlock, 2);
    ASSERT_NE(lBlock, nullptr);
    EXPECT_EQ(std::memcmp(lBlock, "ab", 2), 0);
    lBlock = KBaseArrayRealloc(lBlock, 0);
    EXPECT_NE(lBlock, nullptr);
    KBaseArrayFree(lBlock);
    KBaseArrayFree(nullptr);
}

TEST(KBaseArrayRealloc, LeavesTheBlockAloneWhenItFails) {
    const LeakCheck lCheck;
    char* lBlock = KBaseArrayRealloc(nullptr, 4);
    ASSERT_NE(lBlock, nullptr);
    std::memcpy(lBlock, "abcd", 4);
    {
        const FailAllocations lFail(0, true);
        EXPECT_EQ(KBaseArrayRealloc(lBlock, 8), nullptr);
        EXPECT_EQ(KBaseArrayRealloc(nullptr, 8), nullptr);
    }
    EXPECT_EQ(std::memcmp(lBlock, "abcd", 4), 0);
    KBaseArrayFree(lBlock);
}

TEST(KBaseArrayRealloc, RefusesASizeThatDoesNotFit) {
    const std::size_t lBefore = MemoryProbe::Allocations();
    for (unsigned int lShort = 0; lShort < alignof(std::max_align_t); ++lShort)
        EXPECT_EQ(KBaseArrayRealloc(nullptr, UINT_MAX - lShort), nullptr);
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
}

}  // namespace
}  // namespace lyrsdk
