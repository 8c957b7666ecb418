#include "tests/fuzz/fuzz_support.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "tests/support/scarce_memory.h"

namespace lyrfuzz {

void Fail(const std::string& pText) {
    std::fprintf(stderr, "%s\n", pText.c_str());
    std::abort();
}

// --- memory

namespace {

// Before the library asks for memory: it does not before main.
const bool sgInstalled = (lyrsdk::ScarceMemory::Install(), true);

}  // namespace

LeakCheck::LeakCheck() : mBlocks(lyrsdk::ScarceMemory::LiveBlocks()) {
    Require(sgInstalled, "the memory is not counted");
}

LeakCheck::~LeakCheck() {
    const std::size_t lBlocks = lyrsdk::ScarceMemory::LiveBlocks();
    if (lBlocks != mBlocks)
        Fail("live blocks: " + std::to_string(mBlocks) + " before, " + std::to_string(lBlocks) + " after");
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
