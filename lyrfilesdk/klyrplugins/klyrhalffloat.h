#pragma once

// A 16-bit floating-point number: bit 15 the sign, bits 10 to 14 the exponent (bias 15), bits 0 to 9 the fraction.
//
// From a half to a float is exact. From a float to a half cuts off what does not fit; it never rounds up. Magnitudes
// from 65536 become infinite, every NaN becomes the NaN with all fraction bits set. Below 2^-14 the float's leading 1
// is not carried into the fraction, so that such halves are smaller than the float. Two bytes; the default is +0.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"

namespace lyrsdk {

class LYRSDK_API lyrHalfFloat {
public:
    constexpr lyrHalfFloat() = default;
    lyrHalfFloat(float pValue) { mBits = FtoHF(&pValue); }
    lyrHalfFloat(const lyrHalfFloat&) = default;
    lyrHalfFloat& operator=(const lyrHalfFloat&) = default;

    // The half with the given bit pattern, and the bit pattern of a half.
    static constexpr lyrHalfFloat FromBits(unsigned short pBits) { return lyrHalfFloat(pBits, FromPattern()); }
    constexpr unsigned short bits() const { return mBits; }

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

}  // namespace lyrsdk
