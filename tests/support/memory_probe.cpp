#include "tests/support/memory_probe.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

#if defined(__SANITIZE_ADDRESS__)
#define LYRSDK_TEST_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LYRSDK_TEST_ASAN 1
#endif
#endif

#ifdef LYRSDK_TEST_ASAN
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(pAddress, pSize) ((void)0)
#define ASAN_UNPOISON_MEMORY_REGION(pAddress, pSize) ((void)0)
#endif

namespace lyrsdk {
namespace {

constexpr std::uint32_t kLiveMark = 0x4c697665;
constexpr int kFreshByte = 0xcd;
constexpr int kFreedByte = 0xdd;

// What stands in front of a block, padded so that the block is aligned like malloc's own.
struct alignas(std::max_align_t) Prefix {
    std::size_t mSize;
    std::uint32_t mMark;
};

std::atomic<std::size_t> sgLiveBytes{0};
std::atomic<std::size_t> sgLiveBlocks{0};
std::atomic<std::size_t> sgPeakBytes{0};
std::atomic<std::size_t> sgAllocations{0};
std::atomic<std::size_t> sgLastSize{0};

std::atomic<bool> sgFailing{false};
std::atomic<std::size_t> sgRequests{0};
std::atomic<std::size_t> sgFailed{0};
std::size_t sgFirstToFail = 0;
bool sgFailForever = false;
std::atomic<void (*)()> sgOnRefusal{nullptr};

bool Refuses() {
    if (!sgFailing)
        return false;
    const std::size_t lRequest = sgRequests++;
    const bool lRefuses = lRequest == sgFirstToFail || (sgFailForever && lRequest > sgFirstToFail);
    sgFailed += lRefuses ? 1 : 0;
    void (*const lListener)() = sgOnRefusal;
    if (lRefuses && lListener)
        lListener();
    return lRefuses;
}

void RaisePeak(std::size_t pBytes) {
    std::size_t lPeak = sgPeakBytes;
    while (pBytes > lPeak && !sgPeakBytes.compare_exchange_weak(lPeak, pBytes))
        continue;
}

void* Allocate(std::size_t pSize) {
    sgLastSize = pSize;
    if (Refuses() || pSize > SIZE_MAX - sizeof(Prefix))
        return nullptr;
    void* lMemory = std::malloc(sizeof(Prefix) + pSize);
    if (!lMemory)
        return nullptr;
    Prefix* lPrefix = ::new (lMemory) Prefix{pSize, kLiveMark};
    ++sgAllocations;
    ++sgLiveBlocks;
    RaisePeak(sgLiveBytes += pSize);
    std::memset(lPrefix + 1, kFreshByte, pSize);
    ASAN_POISON_MEMORY_REGION(lPrefix, sizeof(Prefix));
    return lPrefix + 1;
}

void Free(void* pMemory) {
    Prefix* lPrefix = static_cast<Prefix*>(pMemory) - 1;
    ASAN_UNPOISON_MEMORY_REGION(lPrefix, sizeof(Prefix));
    if (lPrefix->mMark != kLiveMark) {
        std::fprintf(stderr, "LyrSdkFree: %p is not a live block\n", pMemory);
        std::abort();
    }
    const std::size_t lSize = lPrefix->mSize;
    --sgLiveBlocks;
    sgLiveBytes -= lSize;
    std::memset(static_cast<void*>(lPrefix), kFreedByte, sizeof(Prefix) + lSize);
    std::free(lPrefix);
}

}  // namespace

void MemoryProbe::Install() {
    LyrSdkSetMemoryHandlers(&Allocate, &Free);
}

std::size_t MemoryProbe::LiveBytes() {
    return sgLiveBytes;
}

std::size_t MemoryProbe::LiveBlocks() {
    return sgLiveBlocks;
}

std::size_t MemoryProbe::PeakBytes() {
    return sgPeakBytes;
}

void MemoryProbe::ResetPeak() {
    sgPeakBytes = sgLiveBytes.load();
}

std::size_t MemoryProbe::Allocations() {
    return sgAllocations;
}

std::size_t MemoryProbe::LastSize() {
    return sgLastSize;
}

void MemoryProbe::OnRefusal(void (*pListener)()) {
    sgOnRefusal = pListener;
}

LeakCheck::LeakCheck() : mBlocks(MemoryProbe::LiveBlocks()), mBytes(MemoryProbe::LiveBytes()) {}

LeakCheck::~LeakCheck() {
    EXPECT_EQ(MemoryProbe::LiveBlocks(), mBlocks) << "live blocks at the end and the start of a leak check";
    EXPECT_EQ(MemoryProbe::LiveBytes(), mBytes) << "live bytes at the end and the start of a leak check";
}

FailAllocations::FailAllocations(std::size_t pFirstToFail, bool pForever) {
    EXPECT_FALSE(sgFailing) << "two FailAllocations are alive";
    sgFirstToFail = pFirstToFail;
    sgFailForever = pForever;
    sgRequests = 0;
    sgFailed = 0;
    sgFailing = true;
}

FailAllocations::~FailAllocations() {
    sgFailing = false;
}

std::size_t FailAllocations::Failed() const {
    return sgFailed;
}

}  // namespace lyrsdk
