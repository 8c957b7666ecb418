#pragma once

// A length as it was given: a float and the unit it is counted in. 20 bytes on 32-bit targets; the default is 0 Inch.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/components/kbaselib/klib/kstring.h"
#include "lyrfilesdk/klyrplugins/klyrsystemunit.h"

namespace lyrsdk {

class LYRSDK_API lyrDistance {
public:
    constexpr lyrDistance() = default;  // 0 Inch
    // So many of that unit.
    constexpr lyrDistance(float pValue, const KLyrSystemUnit& pUnit) : mValue(pValue), mUnit(pUnit) {}

    // The number as it was given.
    constexpr float value() const { return mValue; }
    // Its unit.
    constexpr const KLyrSystemUnit& unit() const { return mUnit; }
    // The short name of the unit; empty when there is no memory.
    KString unitName() const { return mUnit.GetScaleFactorAsString(true); }

    // The length in inches: the product is made in extended precision and rounded to float once.
    float internalValue() const;

    // Equal when number and unit are. The same length in different units is not equal, nor is a NaN.
    friend constexpr bool operator==(const lyrDistance& pLeft, const lyrDistance& pRight) {
        return pLeft.mValue == pRight.mValue && pLeft.mUnit == pRight.mUnit;
    }
    friend constexpr bool operator!=(const lyrDistance& pLeft, const lyrDistance& pRight) { return !(pLeft == pRight); }

private:
    float mValue = 0.0f;
    KLyrSystemUnit mUnit = KLyrSystemUnit::Inch;
};

}  // namespace lyrsdk
