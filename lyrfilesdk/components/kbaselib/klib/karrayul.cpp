#include "lyrfilesdk/components/kbaselib/klib/karrayul.h"

#include <climits>
#include <cstddef>
#include <cstring>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

namespace lyrsdk {
namespace {

// What a block starts with. The bytes up to element 0 that it does not fill are padding.
struct BlockHeader {
    // cppcheck-suppress unusedStructMember ; written and read through the block
    int mBlockCount;
};

constexpr int sgElementsPerBlock = 4;

template <unsigned int pElementSize>
std::size_t BytesOf(int pElements) {
    return static_cast<std::size_t>(pElements) * pElementSize;
}

}  // namespace

template <unsigned int pElementSize>
int KBaseArrayFast<pElementSize>::GetBlockCount() const {
    return mBaseArray ? reinterpret_cast<const BlockHeader*>(mBaseArray)->mBlockCount : 0;
}

template <unsigned int pElementSize>
void KBaseArrayFast<pElementSize>::SetBlockCount(int pBlockCount) {
    if (!mBaseArray)
        return;
    // Less than there is, or than is in use, may be written as it stands: InsertAt makes the room that it needs.
    // Element 0 stands in for missing ones, so that its room must stay.
    if (pBlockCount <= 0 || pBlockCount <= GetBlockCount() ||
        pBlockCount < (mArrayCount + sgElementsPerBlock - 1) / sgElementsPerBlock)
        reinterpret_cast<BlockHeader*>(mBaseArray)->mBlockCount = pBlockCount;
    else
        ResizeBlock(pBlockCount);
}

// False, and nothing has changed, without memory or when the size in bytes is no int.
template <unsigned int pElementSize>
bool KBaseArrayFast<pElementSize>::ResizeBlock(int pBlockCount) {
    constexpr int lBytesPerBlock = sgElementsPerBlock * static_cast<int>(pElementSize);
    if (pBlockCount > (INT_MAX - GetHeaderOffset()) / lBytesPerBlock)
        return false;
    const int lSize = pBlockCount * lBytesPerBlock + GetHeaderOffset();
    char* lBlock = KBaseArrayRealloc(mBaseArray, static_cast<unsigned int>(lSize));
    if (!lBlock)
        return false;
    mBaseArray = lBlock;
    ::new (static_cast<void*>(lBlock)) BlockHeader{pBlockCount};
    return true;
}

template <unsigned int pElementSize>
int KBaseArrayFast<pElementSize>::InsertAt(int pIndex, const void* pItem) {
    if (pIndex < 0 || !pItem)
        return -1;
    // The item may lie in the block that is about to move.
    char lItem[pElementSize];
    std::memcpy(lItem, pItem, pElementSize);

    const int lIndex = pIndex < mArrayCount ? pIndex : mArrayCount;
    int lBlockCount = GetBlockCount();
    if (lBlockCount <= mArrayCount / sgElementsPerBlock) {
        // One doubling, unless the room was set to less than what is in use. What is doubled is at most a fourth of a
        // count, so that it stays an int.
        do {
            lBlockCount = lBlockCount > 0 ? lBlockCount * 2 : 1;
        } while (lBlockCount <= mArrayCount / sgElementsPerBlock);
        if (!ResizeBlock(lBlockCount))
            return -1;
    }
    char* lSlot = Elements() + BytesOf<pElementSize>(lIndex);
    if (lIndex < mArrayCount)
        std::memmove(lSlot + pElementSize, lSlot, BytesOf<pElementSize>(mArrayCount - lIndex));
    std::memcpy(lSlot, lItem, pElementSize);
    ++mArrayCount;
    return lIndex;
}

template <unsigned int pElementSize>
void KBaseArrayFast<pElementSize>::RemoveAt(int pIndex) {
    if (!ValidateIndex(pIndex))
        return;
    --mArrayCount;
    char* lSlot = Elements() + BytesOf<pElementSize>(pIndex);
    if (pIndex < mArrayCount)
        std::memmove(lSlot, lSlot + pElementSize, BytesOf<pElementSize>(mArrayCount - pIndex));
    std::memset(Elements() + BytesOf<pElementSize>(mArrayCount), 0, pElementSize);
}

template <unsigned int pElementSize>
void KBaseArrayFast<pElementSize>::Clear() {
    if (mBaseArray) {
        KBaseArrayFree(mBaseArray);
        mBaseArray = nullptr;
        mArrayCount = 0;
    }
}

template <unsigned int pElementSize>
void KBaseArrayFast<pElementSize>::Swap(KBaseArrayFast& pOther) {
    const int lCount = mArrayCount;
    char* lBlock = mBaseArray;
    mArrayCount = pOther.mArrayCount;
    mBaseArray = pOther.mBaseArray;
    pOther.mArrayCount = lCount;
    pOther.mBaseArray = lBlock;
}

template class KBaseArrayFast<4u>;
template class KBaseArrayFast<8u>;

}  // namespace lyrsdk
