#include "lyrfilesdk/klyrplugins/klyrhalffloat.h"

namespace lyrsdk {
namespace detail {
namespace {

// The exponents of a float, without their bias, at which halves begin to be normal and to be infinite, and the one of
// infinity.
constexpr unsigned int kSmallestNormal = 113;
constexpr unsigned int kTooLarge = 143;
constexpr unsigned int kFloatInfinity = 255;
// The difference between the two biases.
constexpr unsigned int kBias = 112;

constexpr HalfStep StepOf(unsigned int pSignAndExponent) {
    const unsigned int lSign = pSignAndExponent >> 8 << 15;
    const unsigned int lExponent = pSignAndExponent & kFloatInfinity;
    // A shift by 31 leaves nothing of a fraction.
    if (lExponent >= kTooLarge)
        return {static_cast<unsigned short>(lSign | 0x7C00), 31};
    if (lExponent >= kSmallestNormal)
        return {static_cast<unsigned short>(lSign | (lExponent - kBias) << 10), 13};
    // The count runs past 31 for the smallest exponents and is taken modulo 32, as the 32-bit shift of the target
    // processors takes it.
    return {static_cast<unsigned short>(lSign), static_cast<unsigned short>((kBias - lExponent + 14) & 31)};
}

constexpr HalfSteps MakeSteps() {
    HalfSteps lSteps{};
    for (unsigned int i = 0; i < 0x200; ++i)
        lSteps.mSteps[i] = StepOf(i);
    return lSteps;
}

// pBits has no sign.
constexpr unsigned int FloatOf(unsigned int pBits) {
    if (pBits > 0x7C00)
        return 0x7FFFFFFF;
    if (pBits == 0x7C00)
        return 0x7F800000;
    if (pBits >= 0x0400)
        return (pBits << 13) + (kBias << 23);
    if (pBits == 0)
        return 0;
    unsigned int lExponent = kSmallestNormal;
    unsigned int lFraction = pBits;
    for (; lFraction < 0x0400; lFraction <<= 1)
        --lExponent;
    return lExponent << 23 | (lFraction & 0x03FF) << 13;
}

constexpr HalfFloats MakeFloats() {
    HalfFloats lFloats{};
    for (unsigned int i = 0; i < 0x8000; ++i) {
        lFloats.mFloats[i] = FloatOf(i);
        lFloats.mFloats[0x8000 | i] = 0x80000000 | lFloats.mFloats[i];
    }
    return lFloats;
}

}  // namespace

// Declared in the header, and so visible outside.
constexpr HalfSteps kHalfSteps = MakeSteps();
constexpr HalfFloats kHalfFloats = MakeFloats();

}  // namespace detail
}  // namespace lyrsdk
