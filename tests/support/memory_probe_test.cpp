#include "tests/support/memory_probe.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

namespace lyrsdk {
namespace {

TEST(MemoryProbe, CountsWhatIsAlive) {
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    const std::size_t lBytes = MemoryProbe::LiveBytes();
    const std::size_t lAllocations = MemoryProbe::Allocations();
    void* lMemory = LyrSdkMalloc(10);
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks + 1);
    EXPECT_EQ(MemoryProbe::LiveBytes(), lBytes + 10);
    EXPECT_EQ(MemoryProbe::LastSize(), 10u);
    LyrSdkFree(lMemory);
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks);
    EXPECT_EQ(MemoryProbe::LiveBytes(), lBytes);
    EXPECT_EQ(MemoryProbe::Allocations(), lAllocations + 1);
}

TEST(MemoryProbe, RemembersTheMostThatWasAlive) {
    MemoryProbe::ResetPeak();
    const std::size_t lBytes = MemoryProbe::LiveBytes();
    EXPECT_EQ(MemoryProbe::PeakBytes(), lBytes);
    void* lFirst = LyrSdkMalloc(10);
    void* lSecond = LyrSdkMalloc(20);
    LyrSdkFree(lFirst);
    void* lThird = LyrSdkMalloc(5);
    EXPECT_EQ(MemoryProbe::PeakBytes(), lBytes + 30);
    MemoryProbe::ResetPeak();
    EXPECT_EQ(MemoryProbe::PeakBytes(), lBytes + 25);
    LyrSdkFree(lSecond);
    LyrSdkFree(lThird);
    EXPECT_EQ(MemoryProbe::PeakBytes(), lBytes + 25);
}

TEST(MemoryProbe, StopsTheProgramWhenABlockIsNotItsOwn) {
    alignas(std::max_align_t) char lForeign[256] = {};
    EXPECT_DEATH(LyrSdkFree(lForeign + 128), "is not a live block");
}

TEST(LeakCheck, FailsTheTestWhenABlockIsLeft) {
    static void* sMemory;
    EXPECT_NONFATAL_FAILURE(
        {
            const LeakCheck lCheck;
            sMemory = LyrSdkMalloc(0);
        },
        "live blocks at the end");
    LyrSdkFree(sMemory);
}

TEST(FailAllocations, FailsOneRequest) {
    const FailAllocations lFail(1, false);
    void* lFirst = LyrSdkMalloc(1);
    EXPECT_NE(lFirst, nullptr);
    EXPECT_EQ(LyrSdkMalloc(1), nullptr);
    void* lThird = LyrSdkMalloc(1);
    EXPECT_NE(lThird, nullptr);
    EXPECT_EQ(lFail.Failed(), 1u);
    LyrSdkFree(lThird);
    LyrSdkFree(lFirst);
}

TEST(FailAllocations, FailsFromOneRequestOn) {
    {
        const FailAllocations lFail(0, true);
        EXPECT_EQ(LyrSdkMalloc(1), nullptr);
        EXPECT_EQ(LyrSdkMalloc(1), nullptr);
        EXPECT_EQ(lFail.Failed(), 2u);
    }
    void* lAfter = LyrSdkMalloc(1);
    EXPECT_NE(lAfter, nullptr);
    LyrSdkFree(lAfter);
}

}  // namespace
}  // namespace lyrsdk
