#include "tools/lyrinspect/blockpool.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <new>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LYRINSPECT_CHECKS_ADDRESSES
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define LYRINSPECT_CHECKS_ADDRESSES
#endif

namespace lyrsdk::inspect {

namespace {

#ifdef LYRINSPECT_CHECKS_ADDRESSES
constexpr bool kHasChunks = false;
#else
constexpr bool kHasChunks = true;
#endif

constexpr std::size_t kAlignment = alignof(std::max_align_t);
// The size stands right in front of the block.
constexpr std::size_t kHeader = sizeof(std::size_t);
static_assert(kHeader <= kAlignment);

// Chunks grow, so that a small scene takes little.
constexpr std::size_t kFirstChunk = std::size_t{1} << 16;
constexpr std::size_t kLargestChunk = std::size_t{1} << 22;
// The system maps memory of this size and alignment as one page where it is asked to; to map small pages one by one
// takes longer than to fill them.
constexpr std::size_t kLargePage = std::size_t{1} << 21;

struct FreeBlock {
    FreeBlock* next;
};

constexpr bool IsPooled(std::size_t pSize) {
    return kHasChunks && pSize <= kLargestPooled;
}

// Bytes in a chunk for a block of pSize bytes and its header.
constexpr std::size_t FootprintOf(std::size_t pSize) {
    return (std::max(pSize, sizeof(FreeBlock)) + kHeader + kAlignment - 1) / kAlignment * kAlignment;
}

// At the front of a chunk, where the first block's header would not be aligned.
struct Chunk {
    Chunk* next;
};
static_assert(sizeof(Chunk) + kHeader <= kAlignment);

struct Pool {
    // Kept so that who looks for lost memory finds all of it held.
    Chunk* chunks = nullptr;
    // What is free of the newest chunk. Behind a header at its front a block is aligned.
    char* free = nullptr;
    char* end = nullptr;
    std::size_t nextChunk = kFirstChunk;
    // Blocks that were given back, by their footprint in units of the alignment.
    std::array<FreeBlock*, FootprintOf(kLargestPooled) / kAlignment + 1> given = {};
};

Pool sgPool;

void* AllocateChunk(std::size_t pSize) {
    const bool lLarge = pSize >= kLargePage;
    void* lMemory = std::aligned_alloc(lLarge ? kLargePage : kAlignment, pSize);
#ifdef MADV_HUGEPAGE
    // A refusal costs time only.
    if (lMemory && lLarge)
        madvise(lMemory, pSize, MADV_HUGEPAGE);
#endif
    return lMemory;
}

// What is left of the chunk before is lost: less than the largest pooled block. Where memory is short, a smaller chunk
// may still be there.
bool AddChunk() {
    std::size_t lSize = sgPool.nextChunk;
    void* lMemory = AllocateChunk(lSize);
    while (!lMemory && lSize > kFirstChunk) {
        lSize /= 2;
        lMemory = AllocateChunk(lSize);
    }
    if (!lMemory)
        return false;
    sgPool.chunks = ::new (lMemory) Chunk{sgPool.chunks};
    sgPool.free = static_cast<char*>(lMemory) + kAlignment - kHeader;
    sgPool.end = static_cast<char*>(lMemory) + lSize;
    sgPool.nextChunk = std::min(lSize * 2, kLargestChunk);
    return true;
}

void* WithSize(char* pBlock, std::size_t pSize) {
    std::memcpy(pBlock - kHeader, &pSize, sizeof pSize);
    return pBlock;
}

void* TakeLargeBlock(std::size_t pSize) {
    if (pSize > static_cast<std::size_t>(-1) - kAlignment)
        return nullptr;
    char* lMemory = static_cast<char*>(std::malloc(pSize + kAlignment));
    return lMemory ? WithSize(lMemory + kAlignment, pSize) : nullptr;
}

}  // namespace

void* TakeBlock(std::size_t pSize) {
    if (!IsPooled(pSize))
        return TakeLargeBlock(pSize);
    const std::size_t lFootprint = FootprintOf(pSize);
    FreeBlock*& lGiven = sgPool.given[lFootprint / kAlignment];
    if (lGiven) {
        FreeBlock* lBlock = lGiven;
        lGiven = lBlock->next;
        return WithSize(reinterpret_cast<char*>(lBlock), pSize);
    }
    if (static_cast<std::size_t>(sgPool.end - sgPool.free) < lFootprint && !AddChunk())
        return nullptr;
    char* lBlock = sgPool.free + kHeader;
    sgPool.free += lFootprint;
    return WithSize(lBlock, pSize);
}

std::size_t GiveBackBlock(void* pBlock) {
    std::size_t lSize = 0;
    std::memcpy(&lSize, static_cast<char*>(pBlock) - kHeader, sizeof lSize);
    if (!IsPooled(lSize)) {
        std::free(static_cast<char*>(pBlock) - kAlignment);
        return lSize;
    }
    FreeBlock*& lGiven = sgPool.given[FootprintOf(lSize) / kAlignment];
    lGiven = ::new (pBlock) FreeBlock{lGiven};
    return lSize;
}

}  // namespace lyrsdk::inspect
