#include "lyrfilesdk/klyrplugins/klyrblob.h"

#include <cstddef>
#include <cstring>
#include <utility>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

namespace lyrsdk {

lyrBlob::lyrBlob(lyrBlob&& pOther) noexcept
    : mData(std::exchange(pOther.mData, nullptr)),
      mSize(std::exchange(pOther.mSize, 0)),
      mCapacity(std::exchange(pOther.mCapacity, 0)) {}

lyrBlob& lyrBlob::operator=(const lyrBlob& pOther) {
    Assign(pOther);
    return *this;
}

lyrBlob& lyrBlob::operator=(lyrBlob&& pOther) noexcept {
    if (this != &pOther) {
        Clear();
        mData = std::exchange(pOther.mData, nullptr);
        mSize = std::exchange(pOther.mSize, 0);
        mCapacity = std::exchange(pOther.mCapacity, 0);
    }
    return *this;
}

bool lyrBlob::Assign(const void* pData, int pSize) {
    if (!pData || pSize <= 0) {
        Clear();
        return true;
    }
    if (pSize <= mCapacity) {
        std::memmove(mData, pData, static_cast<std::size_t>(pSize));
        mSize = pSize;
        return true;
    }
    void* lBlock = LyrSdkMalloc(static_cast<std::size_t>(pSize));
    if (!lBlock)
        return false;
    // Before the old block goes, and before a field changes: the source may be either.
    std::memcpy(lBlock, pData, static_cast<std::size_t>(pSize));
    LyrSdkFree(mData);
    mData = lBlock;
    mSize = pSize;
    mCapacity = pSize;
    return true;
}

void lyrBlob::Clear() {
    LyrSdkFree(mData);
    mData = nullptr;
    mSize = 0;
    mCapacity = 0;
}

bool operator==(const lyrBlob& pLeft, const lyrBlob& pRight) {
    if (pLeft.GetSize() != pRight.GetSize())
        return false;
    return pLeft.GetSize() == 0 ||
           std::memcmp(pLeft.GetData(), pRight.GetData(), static_cast<std::size_t>(pLeft.GetSize())) == 0;
}

}  // namespace lyrsdk
