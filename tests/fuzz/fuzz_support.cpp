#include "tests/fuzz/fuzz_support.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

namespace lyrfuzz {

void Fail(const std::string& pText) {
    std::fprintf(stderr, "%s\n", pText.c_str());
    std::abort();
}

// --- memory

namespace {

std::size_t sgLiveBlocks = 0;

void* Allocate(std::size_t pSize) {
    void* lMemory = std::malloc(pSize);
    sgLiveBlocks += lMemory ? 1 : 0;
    return lMemory;
}

void Free(void* pMemory) {
    --sgLiveBlocks;
    std::free(pMemory);
}

// Before the library asks for memory: it does not before main.
const bool sgInstalled = (lyrsdk::LyrSdkSetMemoryHandlers(&Allocate, &Free), true);

}  // namespace

LeakCheck::LeakCheck() : mBlocks(sgLiveBlocks) {
    Require(sgInstalled, "the memory is not counted");
}

LeakCheck::~LeakCheck() {
    if (sgLiveBlocks != mBlocks)
        Fail("live blocks: " + std::to_string(mBlocks) + " before, " + std::to_string(sgLiveBlocks) + " after");
}

// --- reports

Reports* Reports::sgActive = nullptr;

Reports::Reports() : mBefore(lyrsdk::KSetAssertFailedHandler(&Reports::Receive)) {
    sgActive = this;
}

Reports::~Reports() {
    lyrsdk::KSetAssertFailedHandler(mBefore);
    sgActive = nullptr;
}

std::vector<std::string> Reports::Take() {
    return std::exchange(mMessages, {});
}

void Reports::Receive(const char*, const char*, unsigned long, const char* pMessage, bool*) {
    sgActive->mMessages.push_back(pMessage);
}

}  // namespace lyrfuzz
