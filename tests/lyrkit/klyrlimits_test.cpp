#include "lyrfilesdk/lyrkit/klyrlimits.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <random>
#include <string>

#include "lyrfilesdk/lyrkit/klyrtypedadd.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;

const double kNan = std::numeric_limits<double>::quiet_NaN();
const double kInfinity = std::numeric_limits<double>::infinity();

class Limits : public HandleTest {
protected:
    template <typename T, typename Min, typename Max>
    H Bounded(const T& pValue, const Min& pMin, const Max& pMax) {
        return lyrBuild(*mPage, "bounded", pValue).Limits(pMin, pMax);
    }

    OwnedRoot mPage{H::Create("page", eUNIDENTIFIED)};
    H mPower = lyrBuild(*mPage, "power", 60.0).Limits(0.0, 150.0).SoftLimits(10.0, 100.0);
};

TEST_F(Limits, AreInclusiveAndHardBeforeSoft) {
    EXPECT_EQ(lyrValidate(mPower, 0.0, eLyrHardLimits), eLyrWithinLimits);
    EXPECT_EQ(lyrValidate(mPower, 150.0, eLyrHardLimits), eLyrWithinLimits);
    EXPECT_EQ(lyrValidate(mPower, -1), eLyrBelowMin);
    EXPECT_EQ(lyrValidate(mPower, 151u), eLyrAboveMax);
    EXPECT_EQ(lyrValidate(mPower, 9.5f), eLyrBelowSoftMin);
    EXPECT_EQ(lyrValidate(mPower, "101"), eLyrAboveSoftMax);
    EXPECT_EQ(lyrValidate(mPower, 10), eLyrWithinLimits);
    EXPECT_EQ(lyrValidate(mPower, 151, eLyrSoftLimits), eLyrAboveSoftMax);
    EXPECT_EQ(lyrValidate(mPower, kInfinity), eLyrAboveMax);
    EXPECT_EQ(lyrValidate(mPower, -kInfinity), eLyrBelowMin);
}

TEST_F(Limits, AreHeldAgainstTheValueShown) {
    EXPECT_EQ(lyrValidate(mPower), eLyrWithinLimits);
    OwnedRoot lInstance(H::Create(*mPage));
    lyrSet(mPower, 500.0);
    EXPECT_EQ(lyrValidate(On(*lInstance, mPower)), eLyrAboveMax);
    lyrSet(On(*lInstance, mPower), 5.0);
    EXPECT_EQ(lyrValidate(On(*lInstance, mPower)), eLyrBelowSoftMin);
    EXPECT_EQ(lyrValidate(On(*lInstance, mPower), eLyrHardLimits), eLyrWithinLimits);
    EXPECT_EQ(lyrValidate(*mPage), eLyrLimitsRefused) << "has no value";
    EXPECT_EQ(lyrValidate(lyrAdd(*mPage, "text", "any")), eLyrWithinLimits) << "has no limits";
}

TEST_F(Limits, ThatAreMissingAreNone) {
    const H lFree = lyrAdd(*mPage, "free", 1.0);
    EXPECT_EQ(lyrValidate(lFree, DBL_MAX), eLyrWithinLimits);
    EXPECT_EQ(lyrValidate(lFree, kNan), eLyrWithinLimits);
    EXPECT_TRUE(std::isnan(lyrClamp(lFree, kNan).value()));
    const H lFromBelow = lyrBuild(*mPage, "from below", 1.0).Min(0.0);
    EXPECT_EQ(lyrValidate(lFromBelow, DBL_MAX), eLyrWithinLimits);
    EXPECT_EQ(lyrValidate(lFromBelow, -1), eLyrBelowMin);
    EXPECT_EQ(lyrValidate(lyrBuild(*mPage, "nan", 1.0).Limits(kNan, kNan), 5), eLyrWithinLimits);
}

TEST_F(Limits, RefuseWhatIsNotANumber) {
    EXPECT_EQ(lyrValidate(mPower, kNan), eLyrIsNotANumber);
    EXPECT_EQ(lyrValidate(mPower, static_cast<float>(kNan)), eLyrIsNotANumber);
    EXPECT_EQ(lyrValidate(mPower, lyrHalfFloat::FromBits(0x7FFF)), eLyrIsNotANumber);
    EXPECT_EQ(lyrClamp(mPower, kNan), std::nullopt);
}

TEST_F(Limits, AreComparedBeforeTheValueIsConverted) {
    const H lByte = Bounded(static_cast<unsigned char>(0), 0, 255);
    EXPECT_EQ(lyrValidate(lByte, 300), eLyrAboveMax);
    EXPECT_EQ(lyrValidate(lByte, -1), eLyrBelowMin);
    EXPECT_EQ(lyrClamp(lByte, 300), 255);
    const H lWide = Bounded(0ull, 0, 18446744073709551614ull);
    EXPECT_EQ(lyrValidate(lWide, ULLONG_MAX), eLyrAboveMax);
    EXPECT_EQ(lyrValidate(lWide, ULLONG_MAX - 1), eLyrWithinLimits);
    EXPECT_EQ(lyrValidate(lWide, -1ll), eLyrBelowMin);
    EXPECT_EQ(lyrValidate(lWide, 18446744073709551616.0), eLyrAboveMax);
    const H lExact = Bounded(0.0, 0, 9007199254740992.0);
    EXPECT_EQ(lyrValidate(lExact, 9007199254740993ll), eLyrAboveMax) << "one more than a double tells apart";
}

TEST_F(Limits, ClampToTheNearestValueInside) {
    EXPECT_EQ(lyrClamp(mPower, 200.0), 150.0);
    EXPECT_EQ(lyrClamp(mPower, -kInfinity), 0.0);
    EXPECT_EQ(lyrClamp(mPower, 60), 60);
    EXPECT_EQ(lyrClamp(mPower, 5, eLyrAllLimits), 10);
    EXPECT_EQ(lyrClamp(mPower, 5.0, eLyrSoftLimits), 10.0);
    EXPECT_EQ(lyrClamp(mPower, 500.0f, eLyrAllLimits), 100.0f);
    EXPECT_EQ(lyrClamp(mPower, true, eLyrHardLimits), true);
    EXPECT_EQ(lyrClamp(mPower, static_cast<std::int8_t>(-7)), static_cast<std::int8_t>(0));
}

TEST_F(Limits, ClampToAValueOfTheType) {
    const H lBetween = Bounded(0.0, 0.5, 2.7);
    EXPECT_EQ(lyrClamp(lBetween, 0), 1);
    EXPECT_EQ(lyrClamp(lBetween, 5), 2);
    EXPECT_EQ(lyrClamp(Bounded(0.0, -2.7, -0.5), 0u), std::nullopt) << "nothing unsigned is inside";
    EXPECT_EQ(lyrClamp(Bounded(0.0, 0.2, 0.8), 5), std::nullopt) << "no integer is inside";
    const H lTenth = Bounded(0.0, 0.1, 0.7);
    EXPECT_GE(static_cast<double>(lyrClamp(lTenth, 0.0f).value()), 0.1);
    EXPECT_LE(static_cast<double>(lyrClamp(lTenth, 1.0f).value()), 0.7);
    EXPECT_EQ(lyrClamp(Bounded(0.0, 0.0, 0.1), 1.0f), std::nextafter(0.1f, 0.0f));
    EXPECT_EQ(lyrClamp(Bounded(0.0, 1e300, 1e301), 1.0f), std::nullopt) << "no float is inside";
    EXPECT_EQ(lyrClamp(Bounded(0.0, -1e301, 1e300), 1.0f), 1.0f);
    EXPECT_EQ(lyrClamp(Bounded(0.0, 0, 1e10), INT_MIN), 0);
    EXPECT_EQ(lyrClamp(Bounded(0.0, 1e10, 2e10), 5), std::nullopt);
}

TEST_F(Limits, ClampHalfFloatsToTheirNeighbours) {
    for (const double lMin : {0.1, 1e-9, 1e-5, 65000.0, -0.3, -1e-9}) {
        const H lProperty = lyrBuild(*mPage, "half", 0.0).Min(lMin);
        const lyrHalfFloat lHalf = lyrClamp(lProperty, lyrHalfFloat(-60000.0f)).value();
        EXPECT_GE(static_cast<double>(lHalf.value()), lMin);
        const int lBits = lHalf.bits();
        const int lBelow = lBits == 0 ? 0x8001 : (lBits & 0x8000) != 0 ? lBits + 1 : lBits - 1;
        EXPECT_LT(static_cast<double>(lyrHalfFloat::FromBits(static_cast<unsigned short>(lBelow)).value()), lMin);
    }
    const H lBelow = lyrBuild(*mPage, "half", 0.0).Max(0.1);
    EXPECT_EQ(lyrClamp(lBelow, lyrHalfFloat(1.0f)).value().bits(), 0x2E66);
}

TEST_F(Limits, OfAVectorCountElementByElement) {
    const H lVector = Bounded(lyrDouble3(), lyrDouble3{{0, -1, 10}}, lyrDouble3{{1, 1, 20}});
    EXPECT_EQ(lyrValidate(lVector, lyrDouble3{{1, -1, 15}}), eLyrWithinLimits);
    EXPECT_EQ(lyrValidate(lVector, lyrDouble3{{1, -1, 21}}), eLyrAboveMax);
    EXPECT_EQ(lyrValidate(lVector, lyrDouble3{{0, -2, 21}}), eLyrBelowMin) << "the first element's";
    EXPECT_TRUE(lyrClamp(lVector, lyrDouble3{{5, -5, 15}}) == (lyrDouble3{{1, -1, 15}}));
    EXPECT_EQ(lyrClamp(lVector, std::array<double, 3>{-5, 0, 25}), (std::array<double, 3>{0, 0, 20}));
    EXPECT_EQ(lyrValidate(lVector, lyrDouble3{{0, kNan, 15}}), eLyrIsNotANumber);
    EXPECT_EQ(lyrClamp(lVector, lyrDouble3{{-5, kNan, 15}}), std::nullopt);
    EXPECT_TRUE(lyrClamp(lVector, lyrDouble4{{-5, 0, 15, 1000}}) == (lyrDouble4{{0, 0, 15, 1000}}))
        << "the last element would not be stored";
}

TEST_F(Limits, OfAMatrixCountElementByElement) {
    std::array<double, 16> lMin{};
    std::array<double, 16> lMax{};
    for (std::size_t i = 0; i < 16; ++i)
        lMax[i] = static_cast<double>(i);
    const H lMatrix = Bounded(lMin, lMin, lMax);
    std::array<double, 16> lValue{};
    lValue.fill(7);
    lValue[15] = -1;
    EXPECT_EQ(lyrValidate(lMatrix, lMax), eLyrWithinLimits);
    EXPECT_EQ(lyrValidate(lMatrix, lValue), eLyrAboveMax);
    const std::array<double, 16> lInside = lyrClamp(lMatrix, lValue).value();
    for (std::size_t i = 0; i < 15; ++i)
        EXPECT_EQ(lInside[i], std::min(lMax[i], 7.0));
    EXPECT_EQ(lInside[15], 0);
}

TEST_F(Limits, CountAsFarAsAValueIsStored) {
    const H lVector = Bounded(lyrDouble2(), lyrDouble2{{0, 5}}, lyrDouble2{{10, 20}});
    EXPECT_EQ(lyrValidate(lVector, 4), eLyrBelowMin) << "fills both elements";
    EXPECT_EQ(lyrClamp(lVector, 4), 5);
    EXPECT_EQ(lyrClamp(lVector, 30), 10);
    EXPECT_EQ(lyrValidate(mPower, lyrDouble2{{50, 1000}}), eLyrWithinLimits) << "only the first element is stored";
    EXPECT_TRUE(lyrClamp(mPower, lyrDouble2{{500, 1000}}) == (lyrDouble2{{150, 1000}}));
    EXPECT_EQ(lyrValidate(lVector, lyrDouble3()), eLyrLimitsRefused) << "the pair is refused";
    const H lFour = Bounded(lyrDouble4(), lyrDouble4{{1, 1, 1, 1}}, lyrDouble4{{2, 2, 2, 2}});
    EXPECT_EQ(lyrValidate(lFour, lyrDouble3{{1, 1, 1}}), eLyrWithinLimits) << "the last element stays as it is";
}

TEST_F(Limits, OfTimesDistancesAndDatesCount) {
    const H lTime = Bounded(KTime(), KTime(LLONG_MIN + 1), KTime(LLONG_MAX - 1));
    EXPECT_EQ(lyrValidate(lTime, KTime(LLONG_MAX)), eLyrAboveMax);
    EXPECT_EQ(lyrClamp(lTime, KTime(LLONG_MIN))->Get(), LLONG_MIN + 1);
    const lyrDistance lFoot(1, KLyrSystemUnit::Foot);
    const H lDistance = Bounded(lyrDistance(), lyrDistance(1, KLyrSystemUnit::cm), lFoot);
    EXPECT_EQ(lyrValidate(lDistance, lyrDistance(13, KLyrSystemUnit::Inch)), eLyrAboveMax);
    EXPECT_EQ(lyrValidate(lDistance, lyrDistance(11, KLyrSystemUnit::Inch)), eLyrWithinLimits);
    EXPECT_TRUE(lyrClamp(lDistance, lyrDistance(13, KLyrSystemUnit::Inch)) == lFoot) << "the limit in its own unit";
    lyrDateTime lEarly, lLate, lLater;
    lEarly.Set(2024, 1, 31, 23, 59, 59, 999);
    lLate.Set(2024, 2, 1);
    lLater.Set(2024, 2, 1, 0, 0, 0, 1);
    const H lDate = Bounded(lyrDateTime(), lEarly, lLate);
    EXPECT_EQ(lyrValidate(lDate, lEarly), eLyrWithinLimits);
    EXPECT_EQ(lyrValidate(lDate, lLater), eLyrAboveMax);
    EXPECT_TRUE(lyrClamp(lDate, lLater) == lLate);
    EXPECT_EQ(lyrValidate(lDate, "2023-12-31T00:00"), eLyrBelowMin);
}

TEST_F(Limits, OfConvertedValuesCountButDoNotClamp) {
    KTime lTime;
    lTime.SetSecondDouble(200);
    EXPECT_EQ(lyrValidate(mPower, lTime), eLyrAboveMax) << "200 seconds";
    EXPECT_EQ(lyrClamp(mPower, lTime), std::nullopt);
    lTime.SetSecondDouble(100);
    EXPECT_EQ(lyrClamp(mPower, lTime)->GetSecondDouble(), 100);
    EXPECT_EQ(lyrValidate(mPower, "no number"), eLyrLimitsRefused);
}

TEST_F(Limits, OfWhatHasNoOrderRefuse) {
    const H lText = Bounded("m", "a", "z");
    EXPECT_EQ(lyrValidate(lText, "b"), eLyrLimitsRefused);
    EXPECT_EQ(lyrValidate(lText), eLyrLimitsRefused);
    EXPECT_EQ(lyrValidate(lText, "b", eLyrSoftLimits), eLyrWithinLimits) << "there is no soft one";
    EXPECT_EQ(lyrClamp(lText, KString("b")), std::nullopt);
    EXPECT_EQ(lyrValidate(mPower, lyrBlob()), eLyrLimitsRefused) << "the pair is refused, without a report";
}

TEST_F(Limits, ThatContradictGoToTheMaximum) {
    const H lProperty = Bounded(0.0, 3.0, 2.0);
    EXPECT_EQ(lyrValidate(lProperty, 2.5), eLyrAboveMax);
    EXPECT_EQ(lyrClamp(lProperty, 1.0), 2.0);
    EXPECT_EQ(lyrClamp(lProperty, 5.0), 2.0);
    const H lApart = lyrBuild(*mPage, "apart", 0.0).Limits(20, 30).SoftLimits(0, 10);
    EXPECT_EQ(lyrClamp(lApart, 50.0, eLyrAllLimits), 20.0) << "the hard ones come last";
    const H lBetween = lyrBuild(*mPage, "between", 0.0).Limits(0.5, 9.5).SoftLimits(20.5, 30.5);
    EXPECT_EQ(lyrClamp(lBetween, 5, eLyrAllLimits), 9) << "up to the soft minimum, and down to the maximum";
    EXPECT_EQ(lyrClamp(lBetween, 50, eLyrAllLimits), 9);
    const H lBelow = lyrBuild(*mPage, "below", 0.0).Limits(20.5, 30.5).SoftLimits(0.5, 9.5);
    EXPECT_EQ(lyrClamp(lBelow, 25, eLyrAllLimits), 21);
}

class RandomNumbers {
public:
    explicit RandomNumbers(unsigned pSeed) : mEngine(pSeed) {}

    int Below(int pEnd) { return static_cast<int>(mEngine() % static_cast<unsigned>(pEnd)); }
    double Any() {
        const double lOdd[] = {kNan, kInfinity, -kInfinity, -0.0, DBL_MAX, -DBL_MAX, 5e-324, 1e10, -1e10};
        if (Below(4) == 0)
            return lOdd[Below(9)];
        return (Below(2000) - 1000) / (Below(2) == 0 ? 8.0 : 3.0);
    }
    // With hard limits, and often with soft ones.
    H Limited(const H& pParent) {
        H lProperty = lyrBuild(pParent, "any", eDOUBLE1).Limits(Any(), Any());
        const double lMin = Any();
        const double lMax = Any();
        if (Below(2) == 0)
            lProperty.SetSoftMin(&lMin, eDOUBLE1);
        if (Below(2) == 0)
            lProperty.SetSoftMax(&lMax, eDOUBLE1);
        return lProperty;
    }

private:
    std::mt19937 mEngine;
};

// What is inside stays as it is, and what is clamped is inside. Whether it moved.
template <typename T>
bool MovesInside(const H& pProperty, ELyrLimits pLimits, T pValue) {
    const ELyrLimitVerdict lVerdict = lyrValidate(pProperty, pValue, pLimits);
    const std::optional<T> lInside = lyrClamp(pProperty, pValue, pLimits);
    if (lVerdict == eLyrWithinLimits) {
        EXPECT_TRUE(lInside && std::memcmp(&*lInside, &pValue, sizeof pValue) == 0);
        return false;
    }
    const ELyrLimits lDecisive = pLimits == eLyrAllLimits ? eLyrHardLimits : pLimits;
    EXPECT_TRUE(!lInside || lyrValidate(pProperty, *lInside, lDecisive) == eLyrWithinLimits);
    return lInside.has_value();
}

TEST_F(Limits, ClampRandomNumbersToWhatIsInsideOrNotAtAll) {
    RandomNumbers lRandom(5);
    int lMoved = 0;
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        H lProperty = lRandom.Limited(*mPage);
        const auto lLimits = static_cast<ELyrLimits>(1 + lRandom.Below(3));
        const int lWhole = lRandom.Below(3000) - 1500;
        lMoved += MovesInside(lProperty, lLimits, lRandom.Any());
        lMoved += MovesInside(lProperty, lLimits, static_cast<float>(lWhole) / 8);
        lMoved += MovesInside(lProperty, lLimits, lyrHalfFloat(static_cast<float>(lWhole) / 8));
        lMoved += MovesInside(lProperty, lLimits, lWhole);
        lMoved += MovesInside(lProperty, lLimits, static_cast<short>(lWhole));
        lMoved += MovesInside(lProperty, lLimits, static_cast<unsigned char>(lWhole & 255));
        lMoved += MovesInside(lProperty, lLimits, static_cast<long long>(lWhole) * (1LL << 40));
        lMoved += MovesInside(lProperty, lLimits, static_cast<unsigned long long>(lRandom.Below(3000)) << 50);
        lMoved += MovesInside(lProperty, lLimits, lWhole > 0);
        lProperty.Destroy();
    }
    EXPECT_GT(lMoved, 20000);
}

TEST_F(Limits, KeepWhatTheyWereClampedTo) {
    const H lContradicting = Bounded(0.0, 8.0, 4.0);
    EXPECT_EQ(lyrClamp(lContradicting, 2.0), 4.0);
    EXPECT_EQ(lyrValidate(lContradicting, 4.0), eLyrWithinLimits);
    EXPECT_EQ(lyrValidate(lContradicting, 3.0), eLyrBelowMin);
    EXPECT_EQ(lyrValidate(lContradicting, 5.0), eLyrAboveMax);
}

TEST_F(Limits, OfElementsThatLieApartLeaveNoPlaceForOneNumber) {
    using Three = std::array<double, 3>;
    const H lApart = Bounded(lyrDouble3(), Three{0, 5, 0}, Three{10, 6, 3});
    EXPECT_EQ(lyrValidate(lApart, 3.0), eLyrBelowMin);
    for (const double lNumber : {1.0, 4.0, 5.5, 9.0})
        EXPECT_EQ(lyrClamp(lApart, lNumber), std::nullopt);
    EXPECT_EQ(lyrClamp(lApart, Three{7, 7, 7}), (Three{7, 6, 3}));
    EXPECT_EQ(lyrClamp(Bounded(lyrDouble3(), Three{0, 8, 0}, Three{9, 4, 9}), 1.0), 4.0) << "of one element";
}

template <typename T>
void ExpectClampedTo(const H& pProperty, T pBelow, T pMin, T pAbove, T pMax) {
    EXPECT_EQ(lyrValidate(pProperty, pBelow), eLyrBelowMin);
    EXPECT_EQ(lyrClamp(pProperty, pBelow), pMin);
    EXPECT_EQ(lyrClamp(pProperty, pMin), pMin);
    EXPECT_EQ(lyrValidate(pProperty, pAbove), eLyrAboveMax);
    EXPECT_EQ(lyrClamp(pProperty, pAbove), pMax);
}

enum class Shade : int { eBlack, eGrey, eWhite };

TEST_F(Limits, ClampNumbersOfEveryType) {
    const H lProperty = Bounded(5.0, 2.5, 9.5);
    ExpectClampedTo<signed char>(lProperty, -1, 3, 100, 9);
    ExpectClampedTo<unsigned char>(lProperty, 1, 3, 100, 9);
    ExpectClampedTo<short>(lProperty, -1, 3, 100, 9);
    ExpectClampedTo<unsigned short>(lProperty, 1, 3, 100, 9);
    ExpectClampedTo<int>(lProperty, -1, 3, 100, 9);
    ExpectClampedTo<unsigned int>(lProperty, 1, 3, 100, 9);
    ExpectClampedTo<long long>(lProperty, -1, 3, 100, 9);
    ExpectClampedTo<unsigned long long>(lProperty, 1, 3, 100, 9);
    ExpectClampedTo<float>(lProperty, -1, 2.5f, 100, 9.5f);
    ExpectClampedTo<double>(lProperty, -1, 2.5, 100, 9.5);
    EXPECT_EQ(lyrClamp(Bounded(true, 0.5, 3.0), false), true);
    const H lShade = Bounded(Shade::eGrey, 1, 1);
    ExpectClampedTo(lShade, Shade::eBlack, Shade::eGrey, Shade::eWhite, Shade::eGrey);
    EXPECT_EQ(lyrClamp(H(), Shade::eWhite), std::nullopt);
}

TEST_F(Limits, ThatAFloatCannotHoldClampToTheNextOneInside) {
    const float lMost = std::numeric_limits<float>::max();
    const float lInfinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(lyrClamp(Bounded(0.0, 1e300, kInfinity), 0.0f), lInfinity);
    EXPECT_EQ(lyrClamp(Bounded(0.0, 0.0, 1e300), lInfinity), lMost);
    EXPECT_EQ(lyrClamp(Bounded(0.0, -1e300, 0.0), -lInfinity), -lMost);
    EXPECT_EQ(lyrClamp(Bounded(0.0, -kInfinity, -1e300), 0.0f), -lInfinity);
}

TEST_F(Limits, LeaveElementsWithoutALimitAlone) {
    const H lVector = Bounded(lyrDouble3(), std::array<double, 3>{0, kNan, 0}, std::array<double, 3>{1, kNan, 1});
    const auto lClamped = lyrClamp(lVector, std::array<double, 3>{5, kNan, 0.5});
    ASSERT_TRUE(lClamped);
    EXPECT_EQ((*lClamped)[0], 1);
    EXPECT_TRUE(std::isnan((*lClamped)[1]));
    EXPECT_EQ(lyrClamp(lVector, std::array<double, 3>{5, 0, kNan}), std::nullopt);
}

TEST_F(Limits, AreThoseThatAreAskedFor) {
    const H lHard = lyrBuild(*mPage, "hard", "m").Max("z");
    EXPECT_EQ(lyrValidate(lHard, "b", eLyrHardLimits), eLyrLimitsRefused);
    EXPECT_EQ(lyrValidate(lHard, "b", eLyrSoftLimits), eLyrWithinLimits);
    const H lSoft = lyrBuild(*mPage, "soft", "m").SoftMax("z");
    EXPECT_EQ(lyrValidate(lSoft, "b", eLyrHardLimits), eLyrWithinLimits);
    EXPECT_EQ(lyrValidate(lSoft, "b", eLyrSoftLimits), eLyrLimitsRefused);
    const H lOne = lyrBuild(*mPage, "one", 5.0).SoftMin(3.0).Max(7.0);
    EXPECT_EQ(lyrClamp(lOne, 1.0), 1.0);
    EXPECT_EQ(lyrClamp(lOne, 1.0, eLyrSoftLimits), 3.0);
    EXPECT_EQ(lyrClamp(lOne, 9.0, eLyrAllLimits), 7.0);
    EXPECT_EQ(lyrClamp(lOne, 9.0, eLyrSoftLimits), 9.0);
}

TEST_F(Limits, OfTimesClampToTheOneThatWasPassed) {
    KTime lTimes[5];
    for (int i = 0; i < 5; ++i)
        lTimes[i].SetSecondDouble(i);
    const H lTime = lyrBuild(*mPage, "time", lTimes[2]).Limits(lTimes[1], lTimes[3]).SoftMax(lTimes[2]);
    EXPECT_EQ(lyrClamp(lTime, lTimes[0])->Get(), lTimes[1].Get());
    EXPECT_EQ(lyrClamp(lTime, lTimes[4])->Get(), lTimes[3].Get());
    EXPECT_EQ(lyrClamp(lTime, lTimes[4], eLyrAllLimits)->Get(), lTimes[2].Get());
    EXPECT_EQ(lyrValidate(lTime, 2.5), eLyrLimitsRefused) << "no number becomes a time";
    EXPECT_EQ(lyrValidate(mPower, lyrDouble3()), eLyrBelowSoftMin) << "its first element counts";
}

TEST_F(Limits, TakeNoMemory) {
    const H lMatrix = Bounded(lyrDouble44(), lyrDouble44(), lyrDouble44());
    const std::size_t lBefore = MemoryProbe::Allocations();
    EXPECT_EQ(lyrValidate(mPower, "101"), eLyrAboveSoftMax);
    EXPECT_EQ(lyrClamp(mPower, 200.0), 150.0);
    EXPECT_TRUE(lyrClamp(lMatrix, std::array<double, 16>{5}));
    EXPECT_EQ(lyrValidate(mPower), eLyrWithinLimits);
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
}

}  // namespace
}  // namespace lyrsdk
