#pragma once

// Values of the type codes: the types they are stored as, their storage, conversion and comparison.
//
// A value is a block of memory and a type code. The functions below take the memory as it comes: that it holds a
// constructed value of the stated code, aligned for its type, is the caller's duty. A null pointer gives false before
// anything else happens, and an unknown code is a code without storage.

#include <cstddef>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/klyrplugins/klyrconversion.h"
#include "lyrfilesdk/klyrplugins/klyrcopystr.h"
#include "lyrfilesdk/klyrplugins/klyrtypelist.h"
#include "lyrfilesdk/klyrplugins/klyrvaluetypes.h"

namespace lyrsdk {

// The bytes that a value of the code takes on this target: 0 for codes without storage, 1 for eREFERENCE, at most
// kLyrMaxValueSize.
inline std::size_t lyrStorageSize(ELyrType pType) {
    return pType >= 0 && pType < eMAX_TYPES ? detail::kStorageSizes[pType] : 0;
}

// Whether values of the code exist that can be read and written: not for eREFERENCE and codes without storage.
inline bool lyrHoldsValue(ELyrType pType) {
    return pType != eREFERENCE && lyrStorageSize(pType) != 0;
}

// Makes a zero or empty value in memory of lyrStorageSize bytes. False, and nothing done, for null and for codes
// without storage. Cannot fail for want of memory.
LYRSDK_API bool lyrConstruct(ELyrType pType, void* pMemory);
// Ends the value made by lyrConstruct; the memory stays the caller's. Null and codes without storage are ignored.
LYRSDK_API void lyrDestruct(ELyrType pType, void* pMemory);

// A new zero or empty value, owned by the caller, who gives it back with lyrDestroy and the same code. Null for codes
// without storage and when there is no memory. An eREFERENCE gets one zero byte.
LYRSDK_API void* lyrCreate(ELyrType pType);
// Destroys and frees a value made by lyrCreate. Null is ignored.
LYRSDK_API void lyrDestroy(ELyrType pType, void* pValue);

// Converts the value of code pSrcType at pSrc into the value of code pDstType at pDst, as the typed lyrCopy does. The
// source is read before the destination is written, so that both may be the same memory. A source of code eREFERENCE or
// without a value is refused with a report, whatever the destination.
LYRSDK_API bool lyrCopy(void* pDst, ELyrType pDstType, const void* pSrc, ELyrType pSrcType);

// Whether two values of one code are equal: floating numbers as == does, half floats by their bits, texts and blobs by
// their bytes. Codes that have no value to compare are false, with a report.
LYRSDK_API bool lyrCompare(const void* pLeft, const void* pRight, ELyrType pType);

}  // namespace lyrsdk
