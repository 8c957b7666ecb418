#pragma once

// The two allocators of the ordered map. A map asks for its records one at a time; the objects in them belong to the
// map, the bytes to the allocator.
//
//   KBaseAllocator    one heap block a record, given back with the record.
//   KHungryAllocator  carves records out of blocks that grow with the number of records, and gives everything back at
//                     once when it is destroyed. Handing out a record is a pointer bump in the newest block with room.
//
// Without memory AllocateRecords returns null and Reserve false; what was handed out before stays as it is. A size in
// bytes that does not fit a size_t counts as no memory.

#include <cstddef>
#include <cstring>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

namespace lyrsdk {

// One heap block a record, given back with the record.
class LYRSDK_API KBaseAllocator {
public:
    // Whether FreeMemory does anything.
    static constexpr bool kFreesRecords = true;
    // Whether the allocator lends its owner room for a pointer.
    static constexpr bool kLendsPointer = false;

    // For records of pRecordSize bytes.
    explicit KBaseAllocator(std::size_t pRecordSize) : mRecordSize(pRecordSize) {}
    KBaseAllocator(const KBaseAllocator&) = delete;
    KBaseAllocator& operator=(const KBaseAllocator&) = delete;

    // Does nothing; there is nothing to keep in stock.
    bool Reserve(std::size_t) { return true; }
    // Bytes for pRecordCount records side by side, or null. Given back with FreeMemory.
    void* AllocateRecords(std::size_t pRecordCount);
    // Null is ignored.
    void FreeMemory(void* pMemory) { LyrSdkFree(pMemory); }
    // Bytes per record.
    std::size_t GetRecordSize() const { return mRecordSize; }

private:
    std::size_t mRecordSize;
};

// Records out of blocks, given back all at once.
class LYRSDK_API KHungryAllocator {
public:
    // One block and its storage:
    //
    //     mData ............ mFreeData ............ mEnd
    //       | handed out        | free                |
    //
    // The last bytes are never handed out: a chunk must end before mEnd. A block of n records serves n - 1 of them, and
    // a block of one record serves none. The pointers are null when there was no memory for the storage.
    class LYRSDK_API MemoryBlock {
    public:
        // With room for pByteCount bytes.
        explicit MemoryBlock(std::size_t pByteCount);
        ~MemoryBlock() { LyrSdkFree(mData); }
        MemoryBlock(const MemoryBlock&) = delete;
        MemoryBlock& operator=(const MemoryBlock&) = delete;

        // The next pByteCount free bytes, or null when they would reach mEnd.
        void* GetChunk(std::size_t pByteCount) {
            if (!HasRoom(pByteCount))
                return nullptr;
            void* lChunk = mFreeData;
            mFreeData += pByteCount;
            return lChunk;
        }
        // Whether GetChunk gives so many bytes.
        bool HasRoom(std::size_t pByteCount) const { return pByteCount < static_cast<std::size_t>(mEnd - mFreeData); }

        // The block reserved before this one, or null.
        MemoryBlock* mNextBlock = nullptr;
        // The first byte of the storage.
        char* mData = nullptr;
        // The first byte that is not handed out.
        char* mFreeData = nullptr;
        // Behind the last byte.
        char* mEnd = nullptr;
    };

    // Whether FreeMemory does anything.
    static constexpr bool kFreesRecords = false;
    // Whether the allocator lends its owner room for a pointer.
    static constexpr bool kLendsPointer = true;

    // For records of pRecordSize bytes; takes no memory yet.
    explicit KHungryAllocator(std::size_t pRecordSize) : mRecordSize(pRecordSize) {}
    // Frees every block and with it every record.
    ~KHungryAllocator();
    KHungryAllocator(const KHungryAllocator&) = delete;
    KHungryAllocator& operator=(const KHungryAllocator&) = delete;

    // Puts a block of pRecordCount records in front of the others. False when there is no memory; the blocks and the
    // pool size are then unchanged.
    bool Reserve(std::size_t pRecordCount);
    // Bytes for pRecordCount records side by side, or null. They live as long as the allocator. When no block has room,
    // reserves an eighth of the pool, at least two and at least pRecordCount records, until one has.
    void* AllocateRecords(std::size_t pRecordCount) {
        void* lRecord = pRecordCount == 1 && mData && mRecordSize != 0 ? mData->GetChunk(mRecordSize) : nullptr;
        return lRecord ? lRecord : AllocateFromAnyBlock(pRecordCount);
    }
    // Does nothing: bytes are not used twice.
    void FreeMemory(void*) {}
    // Bytes per record.
    std::size_t GetRecordSize() const { return mRecordSize; }
    // Records reserved so far, over all blocks.
    std::size_t GetRecordPoolSize() const { return mRecordPoolSize; }
    // Whether the next record comes out of a block that is there.
    bool HasRoom() const { return (mData && mData->HasRoom(mRecordSize)) || HasRoomInAnyBlock(); }
    // Exchanges blocks and record sizes with another allocator.
    void Swap(KHungryAllocator& pOther);
    // The newest block, or null when there is none.
    const MemoryBlock* GetNewestBlock() const { return mData; }

    // One pointer that the allocator's owner may keep in it, null at first. It stands in the bytes of the newest block
    // that are never handed out; where there are too few, nothing is kept and null comes back.
    void* GetLentPointer() const {
        void* lPointer = nullptr;
        if (mData && mData->HasRoom(sizeof(lPointer) - 1))
            std::memcpy(&lPointer, mData->mEnd - sizeof(lPointer), sizeof(lPointer));
        return lPointer;
    }
    void SetLentPointer(void* pPointer) {
        if (mData && mData->HasRoom(sizeof(pPointer) - 1))
            std::memcpy(mData->mEnd - sizeof(pPointer), &pPointer, sizeof(pPointer));
    }

private:
    bool HasRoomInAnyBlock() const;
    void* AllocateFromAnyBlock(std::size_t pRecordCount);

    std::size_t mRecordSize;
    MemoryBlock* mData = nullptr;
    std::size_t mRecordPoolSize = 0;
};

static_assert(sizeof(void*) != 4 || sizeof(KHungryAllocator::MemoryBlock) == 16, "four pointers");
static_assert(sizeof(void*) != 4 || sizeof(KHungryAllocator) == 12, "size, blocks, pool size");

}  // namespace lyrsdk
