#include "lyrfilesdk/klyrplugins/klyrsystemunit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

// Read before main, when other files' constructors may not have run yet.
const double sgInchesInAFootBeforeMain = KLyrSystemUnit::Foot.GetConversionFactorTo(KLyrSystemUnit::Inch);

struct Named {
    const KLyrSystemUnit& mUnit;
    double mCentimeters;
    const char* mShort;
    const char* mLong;
};

const Named kNamed[] = {
    {KLyrSystemUnit::mm, 0.1, "mm", "millimeter"},    {KLyrSystemUnit::dm, 10, "dm", "decimeter"},
    {KLyrSystemUnit::cm, 1, "cm", "centimeter"},      {KLyrSystemUnit::m, 100, "m", "meter"},
    {KLyrSystemUnit::km, 100000, "km", "kilometer"},  {KLyrSystemUnit::Inch, 2.54, "Inch", "inch"},
    {KLyrSystemUnit::Foot, 30.48, "Foot", "foot"},    {KLyrSystemUnit::Yard, 91.44, "Yard", "yard"},
    {KLyrSystemUnit::Mile, 160934.4, "Mile", "mile"},
};

TEST(KLyrSystemUnit, KnowsItsNamedUnits) {
    for (const Named& lNamed : kNamed) {
        EXPECT_EQ(lNamed.mCentimeters, lNamed.mUnit.GetScaleFactor());
        EXPECT_EQ(1.0, lNamed.mUnit.GetMultiplier());
        EXPECT_STREQ(lNamed.mShort, lNamed.mUnit.GetScaleFactorAsString(true).Buffer());
        EXPECT_STREQ(lNamed.mLong, lNamed.mUnit.GetScaleFactorAsString(false).Buffer());
    }
    EXPECT_STREQ("cm", KLyrSystemUnit::cm.GetScaleFactorAsString().Buffer());
}

TEST(KLyrSystemUnit, HasItsNamedUnitsBeforeAnyConstructorRuns) {
    EXPECT_EQ(12.0, sgInchesInAFootBeforeMain);
    static_assert(KLyrSystemUnit::Inch.GetScaleFactor() == 2.54, "a constant");
}

TEST(KLyrSystemUnit, ConvertsByItsLengthInCentimeters) {
    EXPECT_EQ(12.0, KLyrSystemUnit::Foot.GetConversionFactorTo(KLyrSystemUnit::Inch));
    EXPECT_EQ(2.54, KLyrSystemUnit::Inch.GetConversionFactorTo(KLyrSystemUnit::cm));
    EXPECT_EQ(1 / 2.54, KLyrSystemUnit::cm.GetConversionFactorTo(KLyrSystemUnit::Inch));
    EXPECT_EQ(1000.0, KLyrSystemUnit::km.GetConversionFactorTo(KLyrSystemUnit::m));
    for (const Named& lNamed : kNamed)
        EXPECT_EQ(1.0, lNamed.mUnit.GetConversionFactorTo(lNamed.mUnit));
}

TEST(KLyrSystemUnit, CountsTheMultiplierAsPartOfTheLength) {
    EXPECT_EQ(30.0, KLyrSystemUnit(2.5, 12).GetConversionFactorTo(KLyrSystemUnit::cm));
    EXPECT_EQ(0.5, KLyrSystemUnit::cm.GetConversionFactorTo(KLyrSystemUnit(1, 2)));
}

TEST(KLyrSystemUnit, NamesOtherUnitsByTheirLength) {
    EXPECT_STREQ("x 10 Inch", KLyrSystemUnit(2.54, 10).GetScaleFactorAsString(true).Buffer());
    EXPECT_STREQ("x 10 inch", KLyrSystemUnit(2.54, 10).GetScaleFactorAsString(false).Buffer());
    EXPECT_STREQ("x 2.5 cm", KLyrSystemUnit(2.5).GetScaleFactorAsString(true).Buffer());
    EXPECT_STREQ("x 5 cm", KLyrSystemUnit(2.5, 2).GetScaleFactorAsString(true).Buffer());
    EXPECT_STREQ("x 2.5 centimeter", KLyrSystemUnit(2.5).GetScaleFactorAsString(false).Buffer());
}

TEST(KLyrSystemUnit, TakesAnyTwoNumbers) {
    const double lInfinity = std::numeric_limits<double>::infinity();
    const double lNaN = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(lInfinity, KLyrSystemUnit::cm.GetConversionFactorTo(KLyrSystemUnit(0)));
    EXPECT_EQ(0.0, KLyrSystemUnit::cm.GetConversionFactorTo(KLyrSystemUnit(lInfinity)));
    EXPECT_TRUE(std::isnan(KLyrSystemUnit(lNaN).GetConversionFactorTo(KLyrSystemUnit::cm)));
    EXPECT_STREQ("x nan cm", KLyrSystemUnit(lNaN).GetScaleFactorAsString(true).Buffer());
    EXPECT_STREQ("x -1.7976931348623157e+308 centimeter",
                 KLyrSystemUnit(std::numeric_limits<double>::lowest()).GetScaleFactorAsString(false).Buffer());
    EXPECT_STREQ("x -2.2250738585072014e-308 kilometer",
                 KLyrSystemUnit(100000, -2.2250738585072014e-308).GetScaleFactorAsString(false).Buffer());
}

TEST(KLyrSystemUnit, ComparesBothNumbers) {
    EXPECT_TRUE(KLyrSystemUnit::Inch == KLyrSystemUnit(2.54));
    EXPECT_FALSE(KLyrSystemUnit::Inch == KLyrSystemUnit::cm);
    EXPECT_FALSE(KLyrSystemUnit(10, 1) == KLyrSystemUnit(10, 2));
    EXPECT_TRUE(KLyrSystemUnit(10, 1) != KLyrSystemUnit(1, 10));
}

TEST(KLyrSystemUnit, GivesAnEmptyNameWithoutMemory) {
    FailAllocations lFail(0, true);
    EXPECT_TRUE(KLyrSystemUnit::Inch.GetScaleFactorAsString(true).IsEmpty());
}

}  // namespace
}  // namespace lyrsdk
