#pragma once

// A run of bytes that the blob owns.
//
//     mData      the bytes, or null when the blob is empty
//     mSize      how many there are
//     mCapacity  how many the block has room for
//
// 12 bytes on 32-bit targets. A block is used again while what is assigned fits into it; an empty blob owns no memory.
// Assigning costs the bytes copied. Without memory Assign returns false and the assignments keep the old bytes; the
// copy constructor gives an empty blob.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"

namespace lyrsdk {

class LYRSDK_API lyrBlob {
public:
    constexpr lyrBlob() = default;  // empty
    // Bytes of its own, or the bytes of pOther, which is empty then.
    lyrBlob(const lyrBlob& pOther) { Assign(pOther); }
    lyrBlob(lyrBlob&& pOther) noexcept;
    ~lyrBlob() { Clear(); }
    // Takes a copy of the bytes, or the bytes of pOther itself.
    lyrBlob& operator=(const lyrBlob& pOther);
    lyrBlob& operator=(lyrBlob&& pOther) noexcept;

    // Copies pSize bytes from pData, which may lie inside the blob's own. Null, or a size of 0 or less, empties the
    // blob. False, and unchanged, when there is no memory.
    bool Assign(const void* pData, int pSize);
    bool Assign(const lyrBlob& pOther) { return Assign(pOther.mData, pOther.mSize); }
    // Makes the blob empty and frees its block.
    void Clear();

    // The bytes, null when there are none. They stay where they are until the blob is changed or destroyed.
    const void* GetData() const { return mData; }
    // How many bytes there are.
    int GetSize() const { return mSize; }

private:
    void* mData = nullptr;
    int mSize = 0;
    int mCapacity = 0;
};

// Equal when size and bytes are.
LYRSDK_API bool operator==(const lyrBlob& pLeft, const lyrBlob& pRight);
inline bool operator!=(const lyrBlob& pLeft, const lyrBlob& pRight) {
    return !(pLeft == pRight);
}

}  // namespace lyrsdk
