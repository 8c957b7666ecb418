#include "lyrfilesdk/klyrplugins/klyrtypes.h"

#include <cstring>
#include <new>
#include <type_traits>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

namespace lyrsdk {
namespace {

// Trivial values are moved into a local first, because the destination may overlap them. A value that is its bytes goes
// to its own code without another choice; the byte in a bool may be any and has to become one of two.
template <typename T, ELyrType Type>
bool CopyFrom(void* pDst, ELyrType pDstType, const void* pSrc) {
    if constexpr (std::is_same_v<T, bool>) {
        unsigned char lByte;
        std::memcpy(&lByte, pSrc, sizeof(lByte));
        return lyrCopy(pDst, pDstType, lByte != 0);
    } else if constexpr (std::is_trivially_copyable_v<T>) {
        T lSrc;
        std::memcpy(static_cast<void*>(&lSrc), pSrc, sizeof(T));
        if (pDstType == Type) {
            std::memcpy(pDst, static_cast<const void*>(&lSrc), sizeof(T));
            return true;
        }
        return lyrCopy(pDst, pDstType, lSrc);
    } else {
        return lyrCopy(pDst, pDstType, *static_cast<const T*>(pSrc));
    }
}

// Integers and bool are equal when their bytes are, which asks nothing of the byte in a bool.
template <typename T>
bool Equal(const void* pLeft, const void* pRight) {
    if constexpr (std::is_integral_v<T>)
        return std::memcmp(pLeft, pRight, sizeof(T)) == 0;
    else
        return *static_cast<const T*>(pLeft) == *static_cast<const T*>(pRight);
}

template <typename T>
void Destruct(void* pMemory) {
    static_cast<T*>(pMemory)->~T();
}

}  // namespace

#define LYRSDK_NO_ROW(pNumber, pName, pType, pSize)

bool lyrConstruct(ELyrType pType, void* pMemory) {
    if (!pMemory)
        return false;
    switch (pType) {
#define LYRSDK_ROW(pNumber, pName, pStored, pSize) \
    case pName:                                    \
        ::new (pMemory) pStored();                 \
        return true;
        LYRSDK_TYPE_LIST(LYRSDK_NO_ROW, LYRSDK_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
        case eUNIDENTIFIED:
        case eMAX_TYPES:
        default:
            return false;
    }
}

void lyrDestruct(ELyrType pType, void* pMemory) {
    if (!pMemory)
        return;
    switch (pType) {
#define LYRSDK_ROW(pNumber, pName, pStored, pSize) \
    case pName:                                    \
        return Destruct<pStored>(pMemory);
        LYRSDK_TYPE_LIST(LYRSDK_NO_ROW, LYRSDK_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
        case eUNIDENTIFIED:
        case eMAX_TYPES:
        default:
            return;
    }
}

void* lyrCreate(ELyrType pType) {
    const std::size_t lSize = lyrStorageSize(pType);
    void* lValue = lSize > 0 ? LyrSdkMalloc(lSize) : nullptr;
    lyrConstruct(pType, lValue);
    return lValue;
}

void lyrDestroy(ELyrType pType, void* pValue) {
    lyrDestruct(pType, pValue);
    LyrSdkFree(pValue);
}

bool lyrCopy(void* pDst, ELyrType pDstType, const void* pSrc, ELyrType pSrcType) {
    if (!pDst || !pSrc)
        return false;
    switch (pSrcType) {
#define LYRSDK_ROW(pNumber, pName, pStored, pSize) \
    case pName:                                    \
        return CopyFrom<pStored, pName>(pDst, pDstType, pSrc);
        LYRSDK_TYPE_LIST(LYRSDK_NO_ROW, LYRSDK_NO_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
        case eREFERENCE:
            LYRSDK_REPORT(LYRSDK_TYPES_PATH, __LINE__, "Trying to set value on a void Reference type");
            return false;
        case eUNIDENTIFIED:
        case eMAX_TYPES:
        default:
            LYRSDK_REPORT(LYRSDK_TYPES_PATH, __LINE__, "Trying to assign an unknown type");
            return false;
    }
}

bool lyrCompare(const void* pLeft, const void* pRight, ELyrType pType) {
    if (!pLeft || !pRight)
        return false;
    switch (pType) {
#define LYRSDK_ROW(pNumber, pName, pStored, pSize) \
    case pName:                                    \
        return Equal<pStored>(pLeft, pRight);
        LYRSDK_TYPE_LIST(LYRSDK_NO_ROW, LYRSDK_NO_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
        case eREFERENCE:
            LYRSDK_REPORT(LYRSDK_TYPES_PATH, __LINE__, "Trying to compare value on a void Reference type");
            return false;
        case eUNIDENTIFIED:
        case eMAX_TYPES:
        default:
            LYRSDK_REPORT(LYRSDK_TYPES_PATH, __LINE__, "Trying to compare an unknown type");
            return false;
    }
}

#undef LYRSDK_NO_ROW

}  // namespace lyrsdk
