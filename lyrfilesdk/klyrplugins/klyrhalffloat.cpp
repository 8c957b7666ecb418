#include "lyrfilesdk/klyrplugins/klyrhalffloat.h"

#include <cstring>

namespace lyrsdk {
namespace {

constexpr unsigned int kFloatExponent = 0x7F800000;
constexpr unsigned int kFloatFraction = 0x007FFFFF;
constexpr unsigned int kHalfExponent = 0x7C00;
constexpr unsigned int kHalfFraction = 0x03FF;
// The exponent bits of 2^16 less one: above lies what a half cannot hold.
constexpr unsigned int kTooLarge = 0x477FFFFF;
// The difference between the two biases, in the place of a float's exponent.
constexpr unsigned int kBias = 0x38000000;

static_assert(sizeof(float) == sizeof(unsigned int), "bit patterns move through unsigned int");

}  // namespace

unsigned short lyrHalfFloat::FtoHF(const float* pValue) const {
    if (!pValue)
        return 0;
    unsigned int lFloat;
    std::memcpy(&lFloat, pValue, sizeof(lFloat));
    const unsigned int lSign = (lFloat >> 31) << 15;
    const unsigned int lExponent = lFloat & kFloatExponent;
    unsigned int lFraction = lFloat & kFloatFraction;
    if (lExponent > kTooLarge) {
        const bool lNaN = lFraction != 0 && lExponent == kFloatExponent;
        lFraction = lNaN ? kFloatFraction : 0;
        return static_cast<unsigned short>(lSign | (lFraction >> 13) | kHalfExponent);
    }
    if (lExponent <= kBias) {
        // The count runs past 31 for the smallest exponents and is taken modulo 32, as the 32-bit shift of the target
        // processors takes it.
        const unsigned int lShift = ((kBias - lExponent) >> 23) + 14;
        return static_cast<unsigned short>(lSign | (lFraction >> (lShift & 31)));
    }
    return static_cast<unsigned short>(lSign | ((lExponent - kBias) >> 13) | (lFraction >> 13));
}

float lyrHalfFloat::HFtoF(unsigned short pBits) const {
    const unsigned int lSign = static_cast<unsigned int>(pBits >> 15) << 31;
    unsigned int lExponent = pBits & kHalfExponent;
    unsigned int lFraction = pBits & kHalfFraction;
    if (lExponent == kHalfExponent) {
        lExponent = kFloatExponent;
        lFraction = lFraction != 0 ? kFloatFraction : 0;
    } else if (lExponent != 0) {
        lExponent = (lExponent << 13) + kBias;
        lFraction <<= 13;
    } else if (lFraction != 0) {
        lExponent = kBias;
        for (lFraction <<= 1; (lFraction & (kHalfFraction + 1)) == 0; lFraction <<= 1)
            lExponent -= 0x00800000;
        lFraction = (lFraction & kHalfFraction) << 13;
    }
    const unsigned int lFloat = lSign | lExponent | lFraction;
    float lValue;
    std::memcpy(&lValue, &lFloat, sizeof(lValue));
    return lValue;
}

}  // namespace lyrsdk
