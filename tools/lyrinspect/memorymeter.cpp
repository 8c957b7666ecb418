#include "tools/lyrinspect/memorymeter.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

namespace lyrsdk::inspect {

namespace {

// A block's size stands in front of it, in as many bytes as keep the block aligned.
constexpr std::size_t kHeader = alignof(std::max_align_t);
static_assert(kHeader >= sizeof(std::size_t));

MemoryUse sgUse;

void* CountingMalloc(std::size_t pSize) {
    if (pSize > static_cast<std::size_t>(-1) - kHeader)
        return nullptr;
    char* lBlock = static_cast<char*>(std::malloc(pSize + kHeader));
    if (!lBlock)
        return nullptr;
    std::memcpy(lBlock, &pSize, sizeof pSize);
    ++sgUse.allocations;
    ++sgUse.liveBlocks;
    sgUse.liveBytes += pSize;
    sgUse.peakBytes = std::max(sgUse.peakBytes, sgUse.liveBytes);
    return lBlock + kHeader;
}

void CountingFree(void* pMemory) {
    char* lBlock = static_cast<char*>(pMemory) - kHeader;
    std::size_t lSize = 0;
    std::memcpy(&lSize, lBlock, sizeof lSize);
    --sgUse.liveBlocks;
    sgUse.liveBytes -= lSize;
    std::free(lBlock);
}

}  // namespace

void InstallMemoryMeter() {
    LyrSdkSetMemoryHandlers(&CountingMalloc, &CountingFree);
}

MemoryUse GetMemoryUse() {
    return sgUse;
}

}  // namespace lyrsdk::inspect
