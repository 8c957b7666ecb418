#pragma once

// The types that values of the type codes are stored as.

#include <cstddef>

#include "lyrfilesdk/components/kbaselib/klib/kstring.h"
#include "lyrfilesdk/components/kbaselib/klib/ktime.h"
#include "lyrfilesdk/klyrplugins/klyrblob.h"
#include "lyrfilesdk/klyrplugins/klyrdatetime.h"
#include "lyrfilesdk/klyrplugins/klyrdistance.h"
#include "lyrfilesdk/klyrplugins/klyrhalffloat.h"
#include "lyrfilesdk/klyrplugins/klyrtypelist.h"
#include "lyrfilesdk/klyrplugins/klyrvectortemplate.h"

namespace lyrsdk {

// What stands in the storage of an eREFERENCE: a zero byte.
struct lyrVoidReference {
    // Always 0.
    unsigned char mByte = 0;
};

namespace detail {

constexpr std::size_t LargestValue() {
    std::size_t lLargest = 0;
#define LYRSDK_NO_ROW(pNumber, pName, pType, pSize)
#define LYRSDK_ROW(pNumber, pName, pType, pSize) lLargest = sizeof(pType) > lLargest ? sizeof(pType) : lLargest;
    LYRSDK_TYPE_LIST(LYRSDK_NO_ROW, LYRSDK_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
    return lLargest;
}

constexpr std::size_t LargestAlignment() {
    std::size_t lLargest = 0;
#define LYRSDK_ROW(pNumber, pName, pType, pSize) lLargest = alignof(pType) > lLargest ? alignof(pType) : lLargest;
    LYRSDK_TYPE_LIST(LYRSDK_NO_ROW, LYRSDK_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
    return lLargest;
}

// The bytes that a value of each code takes on this target.
inline constexpr std::size_t kStorageSizes[] = {
#define LYRSDK_NO_STORAGE_ROW(pNumber, pName, pType, pSize) 0,
#define LYRSDK_ROW(pNumber, pName, pType, pSize) sizeof(pType),
    LYRSDK_TYPE_LIST(LYRSDK_NO_STORAGE_ROW, LYRSDK_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
#undef LYRSDK_NO_STORAGE_ROW
};

#define LYRSDK_ROW(pNumber, pName, pType, pSize)                                     \
    static_assert(alignof(pType) <= alignof(std::max_align_t), "the hook's memory"); \
    static_assert(sizeof(void*) != 4 || sizeof(pType) == (pSize), "the size that is told is the size on 32 bits");
LYRSDK_TYPE_LIST(LYRSDK_NO_ROW, LYRSDK_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
#undef LYRSDK_NO_ROW

}  // namespace detail

// No value is larger than this, on this target: a buffer of so many bytes, aligned as std::max_align_t, holds any.
inline constexpr std::size_t kLyrMaxValueSize = detail::LargestValue();

// No value asks for a stricter alignment than this, on this target.
inline constexpr std::size_t kLyrMaxValueAlignment = detail::LargestAlignment();

}  // namespace lyrsdk
