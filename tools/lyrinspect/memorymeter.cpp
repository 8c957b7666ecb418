#include "tools/lyrinspect/memorymeter.h"

#include <algorithm>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"
#include "tools/lyrinspect/blockpool.h"

namespace lyrsdk::inspect {

namespace {

MemoryUse sgUse;

void* CountingMalloc(std::size_t pSize) {
    void* lBlock = TakeBlock(pSize);
    if (!lBlock)
        return nullptr;
    ++sgUse.allocations;
    ++sgUse.liveBlocks;
    sgUse.liveBytes += pSize;
    sgUse.peakBytes = std::max(sgUse.peakBytes, sgUse.liveBytes);
    return lBlock;
}

void CountingFree(void* pMemory) {
    --sgUse.liveBlocks;
    sgUse.liveBytes -= GiveBackBlock(pMemory);
}

}  // namespace

void InstallMemoryMeter() {
    LyrSdkSetMemoryHandlers(&CountingMalloc, &CountingFree);
}

MemoryUse GetMemoryUse() {
    return sgUse;
}

}  // namespace lyrsdk::inspect
