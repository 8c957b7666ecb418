#include "lyrfilesdk/klyrplugins/klyrhalffloat.h"

#include <gtest/gtest.h>

#include "tests/klyrplugins/conversion_reference.h"
#include "tests/klyrplugins/value_samples.h"

namespace lyrsdk {
namespace {

int HalfOf(float pValue) {
    return lyrHalfFloat(pValue).bits();
}

unsigned int FloatBits(float pValue) {
    return FromBits<unsigned int>(pValue);
}

unsigned short HalfOfBits(unsigned int pBits) {
    float lFloat;
    std::memcpy(&lFloat, &pBits, sizeof(lFloat));
    return lyrHalfFloat().FtoHF(&lFloat);
}

TEST(LyrHalfFloat, CutsOffWhatDoesNotFitAndNeverRoundsUp) {
    EXPECT_EQ(0x3C00, HalfOf(1.0f));
    EXPECT_EQ(0x3C01, HalfOf(1.0009765625f));
    EXPECT_EQ(0x3C00, HalfOf(1.0004f));
    EXPECT_EQ(0xBC00, HalfOf(-1.0009f));
    EXPECT_EQ(0x7BFF, HalfOf(65504.0f));
    EXPECT_EQ(0x7BFF, HalfOf(65535.0f));
    EXPECT_EQ(0xFBFF, HalfOf(-65535.996f));
}

TEST(LyrHalfFloat, TurnsMagnitudesFrom65536IntoInfinity) {
    EXPECT_EQ(0x7C00, HalfOf(65536.0f));
    EXPECT_EQ(0x7C00, HalfOf(65537.0f));
    EXPECT_EQ(0xFC00, HalfOf(-1e30f));
    EXPECT_EQ(0x7C00, HalfOf(std::numeric_limits<float>::infinity()));
    EXPECT_EQ(0xFC00, HalfOf(-std::numeric_limits<float>::infinity()));
}

TEST(LyrHalfFloat, TurnsEveryNaNIntoTheOneWithAllFractionBits) {
    for (unsigned int lFraction : {1u, 0x1FFFu, 0x200000u, 0x400000u, 0x7FFFFFu}) {
        EXPECT_EQ(0x7FFF, HalfOfBits(0x7F800000u | lFraction));
        EXPECT_EQ(0xFFFF, HalfOfBits(0xFF800000u | lFraction));
    }
    EXPECT_EQ(0x7FFFFFFFu, FloatBits(lyrHalfFloat::FromBits(0x7C01).value()));
    EXPECT_EQ(0xFFFFFFFFu, FloatBits(lyrHalfFloat::FromBits(0xFE00).value()));
}

TEST(LyrHalfFloat, DropsTheLeadingBitBelowTheNormalRange) {
    EXPECT_EQ(0x0000, HalfOf(3.0517578125e-05f));
    EXPECT_EQ(0x0100, HalfOf(4.57763671875e-05f));
    EXPECT_EQ(0x0400, HalfOf(6.103515625e-05f));
    EXPECT_EQ(0x01FF, HalfOf(6.1035e-05f));
    EXPECT_EQ(0x0000, HalfOf(0.0f));
    EXPECT_EQ(0x8000, HalfOf(-0.0f));
}

TEST(LyrHalfFloat, ShiftsModulo32WhereTheShiftRunsPastTheWord) {
    // Exponent 94 shifts by 32, which is by nothing; 93 by 1; 63 again by 31.
    EXPECT_EQ(0x3456, HalfOfBits(94u << 23 | 0x123456u));
    EXPECT_EQ(0x3456 | 0x8000, HalfOfBits(0x80000000u | 94u << 23 | 0x123456u));
    EXPECT_EQ(0xFFFF, HalfOfBits(94u << 23 | 0x7FFFFFu));
    EXPECT_EQ(0x1A2B, HalfOfBits(93u << 23 | 0x123456u));
    EXPECT_EQ(0, HalfOfBits(95u << 23 | 0x7FFFFFu));
    EXPECT_EQ(0, HalfOfBits(63u << 23 | 0x7FFFFFu));
    EXPECT_EQ(0x3456, HalfOfBits(62u << 23 | 0x123456u));
    EXPECT_EQ(0, HalfOfBits(0x7FFFFFu));
}

TEST(LyrHalfFloat, DecodesEveryPattern) {
    for (unsigned int lBits = 0; lBits <= 0xFFFF; ++lBits) {
        const unsigned short lHalf = static_cast<unsigned short>(lBits);
        const float lValue = lyrHalfFloat::FromBits(lHalf).value();
        const unsigned int lSign = lBits >> 15 << 31;
        if ((lBits & 0x7FFF) > 0x7C00)
            ASSERT_EQ(0x7FFFFFFFu | lSign, FloatBits(lValue)) << lBits;
        else
            ASSERT_EQ(FloatBits(static_cast<float>(reference::HalfValue(lHalf))), FloatBits(lValue)) << lBits;
    }
}

TEST(LyrHalfFloat, EncodesTheValueOfEveryPattern) {
    for (unsigned int lBits = 0; lBits <= 0xFFFF; ++lBits) {
        const unsigned short lHalf = static_cast<unsigned short>(lBits);
        const unsigned int lMagnitude = lBits & 0x7FFF;
        const int lBack = HalfOf(lyrHalfFloat::FromBits(lHalf).value());
        if (lMagnitude > 0x7C00)
            ASSERT_EQ(static_cast<int>(lBits | 0x7FFF), lBack) << lBits;
        else if (lMagnitude == 0 || lMagnitude >= 0x400)
            ASSERT_EQ(static_cast<int>(lBits), lBack) << lBits;
        else
            // Below the normal range the leading bit of the value is lost.
            ASSERT_EQ(reference::HalfBits(static_cast<float>(reference::HalfValue(lHalf))), lBack) << lBits;
    }
}

TEST(LyrHalfFloat, EncodesFloatsOfEveryExponent) {
    unsigned int lRandom = 12345;
    for (unsigned int lExponent = 0; lExponent < 512; ++lExponent) {
        std::vector<unsigned int> lFractions = {0, 1, 0x1FFF, 0x2000, 0x3FF000, 0x400000, 0x7FE000, 0x7FFFFF};
        for (int i = 0; i < 200; ++i)
            lFractions.push_back((lRandom = lRandom * 1664525u + 1013904223u) >> 9);
        for (unsigned int lFraction : lFractions) {
            const unsigned int lBits = lExponent << 23 | lFraction;
            ASSERT_EQ(reference::HalfBits(FromBits<float>(lBits)), HalfOfBits(lBits)) << lBits;
        }
    }
}

TEST(LyrHalfFloat, ComparesBitPatterns) {
    EXPECT_TRUE(lyrHalfFloat(1.5f) == lyrHalfFloat(1.5f));
    EXPECT_TRUE(lyrHalfFloat::FromBits(0x7FFF) == lyrHalfFloat::FromBits(0x7FFF));
    EXPECT_FALSE(lyrHalfFloat::FromBits(0x7FFF) == lyrHalfFloat::FromBits(0x7FFE));
    EXPECT_TRUE(lyrHalfFloat(0.0f) != lyrHalfFloat(-0.0f));
}

TEST(LyrHalfFloat, CopiesItsBitsAndIsZeroToBeginWith) {
    EXPECT_EQ(0, lyrHalfFloat().bits());
    lyrHalfFloat lCopy(2.0f);
    lCopy = lyrHalfFloat::FromBits(0x7C01);
    EXPECT_EQ(0x7C01, lCopy.bits());
    EXPECT_EQ(0x7C01, lyrHalfFloat(lCopy).bits());
    EXPECT_EQ(0, lCopy.FtoHF(nullptr));
}

}  // namespace
}  // namespace lyrsdk
