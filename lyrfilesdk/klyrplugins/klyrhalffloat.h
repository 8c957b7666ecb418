#pragma once

// A 16-bit floating-point number: bit 15 the sign, bits 10 to 14 the exponent (bias 15), bits 0 to 9 the fraction.
//
// From a half to a float is exact. From a float to a half cuts off what does not fit; it never rounds up. Magnitudes
// from 65536 become infinite, every NaN becomes the NaN with all fraction bits set. Below 2^-14 the float's leading 1
// is not carried into the fraction, so that such halves are smaller than the float. Two bytes; the default is +0.
//
// Both directions read a table of constants and do not branch on the value, so that all values take the same time:
// 2 KiB of tables for the way from a float, 256 KiB for the way to one, once in a program and shared by processes.

#include <cstring>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"

namespace lyrsdk {
namespace detail {

// How floats of one sign and exponent become halves: the fraction is shifted right and the base is put in front of it.
struct HalfStep {
    unsigned short mBase;
    unsigned short mShift;
};

// By a float's sign and exponent. NaNs are not in it: infinity's step would take away what sets them apart.
struct HalfSteps {
    HalfStep mSteps[0x200];
};

// The bit pattern of the float of each half.
struct HalfFloats {
    unsigned int mFloats[0x10000];
};

LYRSDK_API extern const HalfSteps kHalfSteps;
LYRSDK_API extern const HalfFloats kHalfFloats;

}  // namespace detail

class LYRSDK_API lyrHalfFloat {
public:
    constexpr lyrHalfFloat() = default;  // +0
    // The half for a float, as FtoHF makes it.
    lyrHalfFloat(float pValue) { mBits = FtoHF(&pValue); }
    // A copy.
    lyrHalfFloat(const lyrHalfFloat&) = default;
    // Copies.
    lyrHalfFloat& operator=(const lyrHalfFloat&) = default;

    // The half with the given bit pattern.
    static constexpr lyrHalfFloat FromBits(unsigned short pBits) { return lyrHalfFloat(pBits, FromPattern()); }
    // The bit pattern.
    constexpr unsigned short bits() const { return mBits; }

    // The float that the half stands for.
    float value() const { return HFtoF(mBits); }

    // The bit pattern of the half for *pValue, read as a bit pattern, so that a signalling NaN is safe. Null gives 0.
    unsigned short FtoHF(const float* pValue) const;
    // The float of the half with the given bit pattern.
    float HFtoF(unsigned short pBits) const;

    // Compares bit patterns: +0 and -0 differ, and a NaN equals itself.
    friend constexpr bool operator==(const lyrHalfFloat& pLeft, const lyrHalfFloat& pRight) {
        return pLeft.mBits == pRight.mBits;
    }
    friend constexpr bool operator!=(const lyrHalfFloat& pLeft, const lyrHalfFloat& pRight) {
        return pLeft.mBits != pRight.mBits;
    }

private:
    struct FromPattern {};
    constexpr lyrHalfFloat(unsigned short pBits, FromPattern) : mBits(pBits) {}

    unsigned short mBits = 0;
};

static_assert(sizeof(lyrHalfFloat) == 2, "a half is its bit pattern");
static_assert(sizeof(float) == sizeof(unsigned int), "bit patterns move through unsigned int");

inline unsigned short lyrHalfFloat::FtoHF(const float* pValue) const {
    if (!pValue)
        return 0;
    unsigned int lFloat;
    std::memcpy(&lFloat, pValue, sizeof(lFloat));
    if ((lFloat & 0x7FFFFFFF) > 0x7F800000)
        return static_cast<unsigned short>(lFloat >> 16 | 0x7FFF);
    const detail::HalfStep& lStep = detail::kHalfSteps.mSteps[lFloat >> 23];
    return static_cast<unsigned short>(lStep.mBase | (lFloat & 0x007FFFFF) >> lStep.mShift);
}

inline float lyrHalfFloat::HFtoF(unsigned short pBits) const {
    float lValue;
    std::memcpy(&lValue, &detail::kHalfFloats.mFloats[pBits], sizeof(lValue));
    return lValue;
}

}  // namespace lyrsdk
