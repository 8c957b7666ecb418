#pragma once

// Memory. Every heap byte of the library goes through LyrSdkMalloc and LyrSdkFree: objects, records, texts, arrays.
//
// LyrSdkMalloc may return null. The operation that needed the memory then gives its failure result, and what was
// stored before stays as it was.

#include <cstddef>
#include <new>
#include <utility>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"

namespace lyrsdk {

// Hands out pSize bytes aligned for any object, or null. pSize may be 0.
using LyrSdkMallocHandler = void* (*)(std::size_t pSize);
// Takes back what the malloc handler gave. Is never called with null.
using LyrSdkFreeHandler = void (*)(void* pMemory);

// Replaces the pair of functions behind LyrSdkMalloc and LyrSdkFree; when either is null, both are malloc and free. To
// be called before the first allocation, because a block goes back to the handler installed at that time. The handlers
// must be safe to call from every thread that uses the library, and must not call back into it.
LYRSDK_API void LyrSdkSetMemoryHandlers(LyrSdkMallocHandler pMalloc, LyrSdkFreeHandler pFree);

// The two hooks. LyrSdkMalloc gives pSize bytes aligned for any object, or null; LyrSdkFree takes them back, and
// ignores null. Weak definitions: a host may define its own pair at link time.
LYRSDK_API void* LyrSdkMalloc(std::size_t pSize);
LYRSDK_API void LyrSdkFree(void* pMemory);

// The heap block of an array. Resizes pBlock to pSize bytes, or makes a block when pBlock is null; what fits of the old
// content is kept. Null when there is no memory, and pBlock then stays as it was. Weak definitions, to be replaced as a
// pair; the default pair keeps the block's size in front of it and stands on LyrSdkMalloc and LyrSdkFree.
LYRSDK_API char* KBaseArrayRealloc(char* pBlock, unsigned int pSize);
// Takes back what KBaseArrayRealloc gave; null is ignored.
LYRSDK_API void KBaseArrayFree(char* pBlock);

// A new T made from the arguments, or null without constructing when there is no memory. Owned by the caller, who gives
// it back with LyrSdkDelete. If the constructor throws, the bytes are not given back.
template <typename T, typename... Args>
T* LyrSdkNew(Args&&... pArgs) {
    static_assert(alignof(T) <= alignof(std::max_align_t), "the memory hook aligns for fundamental types only");
    void* lMemory = LyrSdkMalloc(sizeof(T));
    return lMemory ? ::new (lMemory) T(std::forward<Args>(pArgs)...) : nullptr;
}

// Destroys and frees an object made by LyrSdkNew; null is ignored.
template <typename T>
void LyrSdkDelete(T* pObject) {
    if (pObject) {
        pObject->~T();
        LyrSdkFree(pObject);
    }
}

}  // namespace lyrsdk
