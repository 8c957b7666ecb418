#include "lyrfilesdk/components/kbaselib/klib/kcontainerallocators.h"

#include <cstdint>
#include <utility>

namespace lyrsdk {
namespace {

// False when the product does not fit.
bool BytesOf(std::size_t pRecordSize, std::size_t pRecordCount, std::size_t& pBytes) {
    if (pRecordSize != 0 && pRecordCount > SIZE_MAX / pRecordSize)
        return false;
    pBytes = pRecordSize * pRecordCount;
    return true;
}

}  // namespace

void* KBaseAllocator::AllocateRecords(std::size_t pRecordCount) {
    std::size_t lBytes = 0;
    return BytesOf(mRecordSize, pRecordCount, lBytes) ? LyrSdkMalloc(lBytes) : nullptr;
}

KHungryAllocator::MemoryBlock::MemoryBlock(std::size_t pByteCount)
    : mData(static_cast<char*>(LyrSdkMalloc(pByteCount))) {
    if (mData) {
        mFreeData = mData;
        mEnd = mData + pByteCount;
    }
}

KHungryAllocator::~KHungryAllocator() {
    while (mData) {
        MemoryBlock* lNext = mData->mNextBlock;
        LyrSdkDelete(mData);
        mData = lNext;
    }
}

bool KHungryAllocator::Reserve(std::size_t pRecordCount) {
    std::size_t lBytes = 0;
    if (!BytesOf(mRecordSize, pRecordCount, lBytes))
        return false;
    MemoryBlock* lBlock = LyrSdkNew<MemoryBlock>(lBytes);
    if (!lBlock)
        return false;
    if (!lBlock->mData) {
        LyrSdkDelete(lBlock);
        return false;
    }
    void* lLent = GetLentPointer();
    lBlock->mNextBlock = mData;
    mData = lBlock;
    SetLentPointer(lLent);
    mRecordPoolSize += pRecordCount;
    return true;
}

bool KHungryAllocator::HasRoomInAnyBlock() const {
    const MemoryBlock* lBlock = mData;
    while (lBlock && !lBlock->HasRoom(mRecordSize))
        lBlock = lBlock->mNextBlock;
    return lBlock != nullptr;
}

void KHungryAllocator::Swap(KHungryAllocator& pOther) {
    std::swap(mRecordSize, pOther.mRecordSize);
    std::swap(mData, pOther.mData);
    std::swap(mRecordPoolSize, pOther.mRecordPoolSize);
}

void* KHungryAllocator::AllocateFromAnyBlock(std::size_t pRecordCount) {
    // Blocks of records without size never have room, however many there are.
    std::size_t lBytes = 0;
    if (mRecordSize == 0 || !BytesOf(mRecordSize, pRecordCount, lBytes))
        return nullptr;
    for (MemoryBlock* lBlock = mData; lBlock; lBlock = lBlock->mNextBlock)
        if (void* lChunk = lBlock->GetChunk(lBytes))
            return lChunk;
    for (;;) {
        // A block that is just large enough refuses the request; the pool's growth ends that.
        const std::size_t lGrowth = mRecordPoolSize < 8 ? 2 : mRecordPoolSize / 8;
        if (!Reserve(lGrowth >= pRecordCount ? lGrowth : pRecordCount))
            return nullptr;
        if (void* lChunk = mData->GetChunk(lBytes))
            return lChunk;
    }
}

}  // namespace lyrsdk
