#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

#include <cstdlib>
#include <cstring>

namespace lyrsdk {
namespace {

void* DefaultMalloc(std::size_t pSize) {
    return std::malloc(pSize);
}

void DefaultFree(void* pMemory) {
    std::free(pMemory);
}

LyrSdkMallocHandler sgMalloc = &DefaultMalloc;
LyrSdkFreeHandler sgFree = &DefaultFree;

// What stands in front of an array's block: its size, padded so that the block is aligned like the hook's own.
struct ArrayPrefix {
    alignas(std::max_align_t) unsigned int mSize;
};

ArrayPrefix* PrefixOf(char* pBlock) {
    return reinterpret_cast<ArrayPrefix*>(pBlock - sizeof(ArrayPrefix));
}

}  // namespace

void LyrSdkSetMemoryHandlers(LyrSdkMallocHandler pMalloc, LyrSdkFreeHandler pFree) {
    const bool lBoth = pMalloc && pFree;
    sgMalloc = lBoth ? pMalloc : &DefaultMalloc;
    sgFree = lBoth ? pFree : &DefaultFree;
}

LYRSDK_REPLACEABLE void* LyrSdkMalloc(std::size_t pSize) {
    return sgMalloc(pSize);
}

LYRSDK_REPLACEABLE void LyrSdkFree(void* pMemory) {
    if (pMemory)
        sgFree(pMemory);
}

LYRSDK_REPLACEABLE char* KBaseArrayRealloc(char* pBlock, unsigned int pSize) {
    if (pSize > static_cast<unsigned int>(-1) - sizeof(ArrayPrefix))
        return nullptr;
    void* lMemory = LyrSdkMalloc(sizeof(ArrayPrefix) + pSize);
    if (!lMemory)
        return nullptr;
    ArrayPrefix* lPrefix = ::new (lMemory) ArrayPrefix{pSize};
    char* lBlock = reinterpret_cast<char*>(lPrefix + 1);
    if (pBlock) {
        const unsigned int lOldSize = PrefixOf(pBlock)->mSize;
        std::memcpy(lBlock, pBlock, lOldSize < pSize ? lOldSize : pSize);
        KBaseArrayFree(pBlock);
    }
    return lBlock;
}

LYRSDK_REPLACEABLE void KBaseArrayFree(char* pBlock) {
    if (pBlock)
        LyrSdkFree(PrefixOf(pBlock));
}

}  // namespace lyrsdk
