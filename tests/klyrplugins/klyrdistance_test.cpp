#include "lyrfilesdk/klyrplugins/klyrdistance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lyrsdk {
namespace {

TEST(LyrDistance, IsZeroInchesToBeginWith) {
    const lyrDistance lDistance;
    EXPECT_EQ(0.0f, lDistance.value());
    EXPECT_TRUE(lDistance.unit() == KLyrSystemUnit::Inch);
    EXPECT_STREQ("Inch", lDistance.unitName().Buffer());
}

TEST(LyrDistance, KeepsTheNumberAndUnitThatWereGiven) {
    const lyrDistance lDistance(2.5f, KLyrSystemUnit::m);
    EXPECT_EQ(2.5f, lDistance.value());
    EXPECT_STREQ("m", lDistance.unitName().Buffer());
    lyrDistance lCopy;
    lCopy = lDistance;
    EXPECT_TRUE(lCopy == lDistance);
    EXPECT_TRUE(lCopy.unit() == KLyrSystemUnit::m);
}

TEST(LyrDistance, TellsInches) {
    EXPECT_EQ(1.0f, lyrDistance(1.0f, KLyrSystemUnit::Inch).internalValue());
    EXPECT_EQ(12.0f, lyrDistance(1.0f, KLyrSystemUnit::Foot).internalValue());
    EXPECT_EQ(39.3700787f, lyrDistance(1.0f, KLyrSystemUnit::m).internalValue());
    EXPECT_EQ(-63360.0f, lyrDistance(-1.0f, KLyrSystemUnit::Mile).internalValue());
    EXPECT_EQ(1.0f, lyrDistance(2.54f, KLyrSystemUnit::cm).internalValue());
    EXPECT_EQ(10.0f, lyrDistance(1.0f, KLyrSystemUnit(2.54, 10)).internalValue());
}

TEST(LyrDistance, MakesTheProductInExtendedPrecision) {
    // Rounded to double on the way, the first would end in 33, the second in 302.
    EXPECT_EQ(11.4532824f, lyrDistance(11.0824146f, KLyrSystemUnit(2.625)).internalValue());
    EXPECT_EQ(148.215286f, lyrDistance(15.4447937f, KLyrSystemUnit(24.375)).internalValue());
}

TEST(LyrDistance, PassesInfinitiesAndNaNsOn) {
    const float lInfinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(-lInfinity, lyrDistance(-lInfinity, KLyrSystemUnit::cm).internalValue());
    EXPECT_EQ(lInfinity, lyrDistance(3e38f, KLyrSystemUnit::km).internalValue());
    EXPECT_TRUE(std::isnan(lyrDistance(std::nanf(""), KLyrSystemUnit::cm).internalValue()));
    EXPECT_EQ(lInfinity, lyrDistance(1.0f, KLyrSystemUnit(lInfinity)).internalValue());
}

TEST(LyrDistance, ComparesNumberAndUnitNotLength) {
    EXPECT_TRUE(lyrDistance(1, KLyrSystemUnit::Foot) == lyrDistance(1, KLyrSystemUnit::Foot));
    EXPECT_FALSE(lyrDistance(1, KLyrSystemUnit::Foot) == lyrDistance(12, KLyrSystemUnit::Inch));
    EXPECT_TRUE(lyrDistance(1, KLyrSystemUnit::Foot) != lyrDistance(1, KLyrSystemUnit::Inch));
    EXPECT_FALSE(lyrDistance(1, KLyrSystemUnit(2, 1)) == lyrDistance(1, KLyrSystemUnit(1, 2)));
    EXPECT_TRUE(lyrDistance(0.0f, KLyrSystemUnit::m) == lyrDistance(-0.0f, KLyrSystemUnit::m));
    EXPECT_FALSE(lyrDistance(std::nanf(""), KLyrSystemUnit::m) == lyrDistance(std::nanf(""), KLyrSystemUnit::m));
}

}  // namespace
}  // namespace lyrsdk
