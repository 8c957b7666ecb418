#include "tests/support/scarce_memory.h"

#include <cstdlib>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

namespace lyrsdk {
namespace {

std::size_t sgLiveBlocks = 0;
bool sgRefusing = false, sgForever = false;
std::size_t sgFirst = 0, sgRequests = 0, sgRefused = 0;
int sgPauses = 0;

bool IsRefused() {
    if (!sgRefusing || sgPauses > 0)
        return false;
    const std::size_t lRequest = sgRequests++;
    return lRequest == sgFirst || (sgForever && lRequest > sgFirst);
}

void* Allocate(std::size_t pSize) {
    if (IsRefused()) {
        ++sgRefused;
        return nullptr;
    }
    void* lMemory = std::malloc(pSize);
    sgLiveBlocks += lMemory ? 1 : 0;
    return lMemory;
}

void Free(void* pMemory) {
    --sgLiveBlocks;
    std::free(pMemory);
}

}  // namespace

void ScarceMemory::Install() {
    LyrSdkSetMemoryHandlers(&Allocate, &Free);
}

std::size_t ScarceMemory::LiveBlocks() {
    return sgLiveBlocks;
}

void ScarceMemory::Refuse(std::size_t pFirst, bool pForever) {
    sgFirst = pFirst;
    sgForever = pForever;
    sgRequests = sgRefused = 0;
    sgRefusing = true;
}

std::size_t ScarceMemory::Relent() {
    sgRefusing = false;
    return sgRefused;
}

ScarceMemory::Pause::Pause() {
    ++sgPauses;
}

ScarceMemory::Pause::~Pause() {
    --sgPauses;
}

}  // namespace lyrsdk
