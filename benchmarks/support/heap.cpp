#include "benchmarks/support/heap.h"

#include <malloc.h>

#include <cstdlib>
#include <unordered_map>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

namespace lyrsdk::bench {

namespace {

struct Block {
    std::size_t requested;
    std::size_t usable;
};

struct Tally {
    std::unordered_map<void*, Block> blocks;
    std::size_t requested = 0;
    std::size_t usable = 0;
    std::size_t allocations = 0;
};

Tally* sgTally = nullptr;

// Blocks come from malloc and go to free, as with the default handlers, so that the two can be exchanged at any time.
void* WatchedMalloc(std::size_t pSize) {
    void* lMemory = std::malloc(pSize);
    if (!lMemory)
        return nullptr;
    const Block lBlock = {pSize, malloc_usable_size(lMemory)};
    sgTally->blocks[lMemory] = lBlock;
    sgTally->requested += lBlock.requested;
    sgTally->usable += lBlock.usable;
    ++sgTally->allocations;
    return lMemory;
}

void WatchedFree(void* pMemory) {
    const auto lFound = sgTally->blocks.find(pMemory);
    if (lFound != sgTally->blocks.end()) {
        sgTally->requested -= lFound->second.requested;
        sgTally->usable -= lFound->second.usable;
        sgTally->blocks.erase(lFound);
    }
    std::free(pMemory);
}

}  // namespace

std::size_t HeapBytes() {
    const struct mallinfo2 lInfo = mallinfo2();
    return lInfo.uordblks + lInfo.hblkhd;
}

LibraryMemory::LibraryMemory() {
    sgTally = new Tally;
    LyrSdkSetMemoryHandlers(&WatchedMalloc, &WatchedFree);
}

LibraryMemory::~LibraryMemory() {
    LyrSdkSetMemoryHandlers(nullptr, nullptr);
    delete sgTally;
    sgTally = nullptr;
}

std::size_t LibraryMemory::RequestedBytes() const {
    return sgTally->requested;
}

std::size_t LibraryMemory::UsableBytes() const {
    return sgTally->usable;
}

std::size_t LibraryMemory::Allocations() const {
    return sgTally->allocations;
}

}  // namespace lyrsdk::bench
