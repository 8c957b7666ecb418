#pragma once

// Values held against the limits of their property. The library keeps limits and gives them back; nothing holds a value
// against them but these functions.
//
//     if (lyrValidate(lPower, 200.0) != eLyrWithinLimits) ...
//     std::optional<double> lInside = lyrClamp(lPower, 200.0);
//
// A value is compared before it is converted to the property's type, and exactly: 300 is above the maximum of an
// eUBYTE1, though it would be stored as 44. The elements of a vector are held against those of the limits one by one,
// and a number that is to fill a vector against all of them; what a conversion leaves out is not looked at. Texts are
// read as the property's type first. eTIME, eDISTANCE (by length) and eDATETIME have limits as well; texts, blobs and
// references have no order, so that limits of such a property refuse every value.
//
//     a limit that is missing, or is not a number itself      is no limit
//     a value, or an element of one, that is not a number     eLyrIsNotANumber where there is a limit, and not clamped
//     a minimum above its maximum                             counts as the maximum
//
// Clamping goes to the soft limits first and then to the hard ones, which alone count where the two lie apart. Where
// the limit is no value of the given type, the next one inside is taken: an int below a minimum of 0.5 becomes 1. A
// number that is to fill a vector finds no place where the limits of the elements leave none between them.
//
// Nothing takes memory or makes a report, unless a refused pair of types does. Constant cost: a few reads of limits.

#include <optional>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"

namespace lyrsdk {

// Which limits count.
enum ELyrLimits : int {
    eLyrHardLimits = 1,  // minimum and maximum
    eLyrSoftLimits = 2,  // soft minimum and soft maximum
    eLyrAllLimits = 3,   // both
};

// What is wrong with a value.
enum ELyrLimitVerdict : int {
    eLyrWithinLimits,  // nothing
    eLyrBelowMin,      // below the minimum
    eLyrAboveMax,      // above the maximum
    eLyrBelowSoftMin,  // below the soft minimum
    eLyrAboveSoftMax,  // above the soft maximum
    eLyrIsNotANumber,  // it is not a number, and there is a limit
    // No such property, limits that are none, a refused conversion, a text that does not read, or no order.
    eLyrLimitsRefused,
};

// A verdict in words, such as "below the minimum"; "unknown" for what is none. A literal.
LYRSDK_API const char* lyrResultText(ELyrLimitVerdict pVerdict);

// Whether the value at pValue, which is of the given code, keeps to the limits of pHandle. Of several faults the first
// element's counts, a hard limit before a soft one.
LYRSDK_API ELyrLimitVerdict lyrValidate(const KLyrPropertyHandle& pHandle, const void* pValue, ELyrType pValueType,
                                        ELyrLimits pLimits = eLyrAllLimits);
// The same for the value that the property shows. Refused when it has none.
LYRSDK_API ELyrLimitVerdict lyrValidate(const KLyrPropertyHandle& pHandle, ELyrLimits pLimits = eLyrAllLimits);

// The same for a value of a type that has a code, or a text.
template <typename T>
ELyrLimitVerdict lyrValidate(const KLyrPropertyHandle& pHandle, const T& pValue, ELyrLimits pLimits = eLyrAllLimits) {
    return detail::WithStored(pValue, eLyrLimitsRefused, [&pHandle, pLimits](const void* pStored, ELyrType pType) {
        return lyrValidate(pHandle, pStored, pType, pLimits);
    });
}

// Brings the value at pValue, which is of the given code, inside the limits of pHandle. True when it is inside now.
// False, and the value unchanged, when lyrValidate refuses it, it is not a number, there is no value of the code
// inside, or the value is a text or of a type that is not compared as it is (a time for a property in seconds) and is
// outside.
LYRSDK_API bool lyrClamp(const KLyrPropertyHandle& pHandle, void* pValue, ELyrType pValueType,
                         ELyrLimits pLimits = eLyrHardLimits);

// The value of type T inside the limits that is nearest to pValue; nullopt where the other one is false.
template <typename T>
std::optional<T> lyrClamp(const KLyrPropertyHandle& pHandle, const T& pValue, ELyrLimits pLimits = eLyrHardLimits) {
    if constexpr (!kLyrHasTypeCode<T>) {
        LYRSDK_NEEDS_TYPE_CODE(T);
        return std::nullopt;
    } else if constexpr (detail::kReadsAsStored<T>) {
        std::optional<T> lValue(pValue);
        if (!lyrClamp(pHandle, static_cast<void*>(&*lValue), lyrTypeCodeOf<T>(), pLimits))
            lValue.reset();
        return lValue;
    } else {
        auto lStored = static_cast<typename detail::StoredType<T>::Type>(pValue);
        if (!lyrClamp(pHandle, static_cast<void*>(&lStored), lyrTypeCodeOf<T>(), pLimits))
            return std::nullopt;
        return static_cast<T>(lStored);
    }
}

}  // namespace lyrsdk
