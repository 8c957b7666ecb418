#include "lyrfilesdk/components/kbaselib/klib/ktime.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace lyrsdk {
namespace {

constexpr long long kMin = std::numeric_limits<long long>::min();
constexpr long long kMax = std::numeric_limits<long long>::max();

std::string TextOf(KTime pTime) {
    char lText[KTime::kTimeStringSize];
    const int lLength = pTime.GetTimeString(lText, 5, 0, 2, 0.0);
    EXPECT_EQ(std::string(lText).size(), static_cast<std::size_t>(lLength));
    return lText;
}

long long CountOf(double pSeconds) {
    KTime lTime(1);
    lTime.SetSecondDouble(pSeconds);
    return lTime.Get();
}

TEST(KTime, IsOneCountThatCanBeSetAndCompared) {
    EXPECT_EQ(0, KTime().Get());
    KTime lTime(5);
    EXPECT_EQ(5, lTime.Get());
    lTime.Set(kMin);
    EXPECT_EQ(kMin, lTime.Get());
    EXPECT_TRUE(lTime == KTime(kMin));
    EXPECT_TRUE(lTime != KTime(kMax));
    // Counts that differ in one half only.
    EXPECT_FALSE(KTime(1) == KTime(1 + (1ll << 32)));
    EXPECT_FALSE(KTime(1ll << 32) == KTime((1ll << 32) + 1));
}

TEST(KTime, HoldsTheUsualFrameAndSampleTimesInWholeCounts) {
    for (int lRate :
         {24, 25, 30, 48, 50, 60, 90, 96, 100, 120, 1000, 8000, 11025, 22050, 44100, 48000, 88200, 96000, 192000})
        EXPECT_EQ(0, kTimeUnitsPerSecond % lRate) << lRate;
    EXPECT_EQ(0, kTimeUnitsPerSecond * 1001 % 30000);
}

TEST(KTime, TellsSeconds) {
    EXPECT_EQ(0.0, KTime().GetSecondDouble());
    EXPECT_EQ(1.0, KTime(705600000).GetSecondDouble());
    EXPECT_EQ(-0.5, KTime(-352800000).GetSecondDouble());
    EXPECT_EQ(1.0 / 24, KTime(29400000).GetSecondDouble());
    EXPECT_EQ(13071672387.832731, KTime(kMax).GetSecondDouble());
    EXPECT_EQ(-13071672387.832731, KTime(kMin).GetSecondDouble());
}

TEST(KTime, TakesTheNearestCountOfSeconds) {
    EXPECT_EQ(705600000, CountOf(1.0));
    EXPECT_EQ(29400000, CountOf(1.0 / 24));
    EXPECT_EQ(-1058400000, CountOf(-1.5));
    EXPECT_EQ(0, CountOf(0.4 / 705600000));
    EXPECT_EQ(1, CountOf(0.6 / 705600000));
    EXPECT_EQ(-1, CountOf(-0.6 / 705600000));
    EXPECT_EQ(0, CountOf(4.9406564584124654e-324));
}

TEST(KTime, ClampsSecondsThatDoNotFit) {
    EXPECT_EQ(kMax, CountOf(std::numeric_limits<double>::infinity()));
    EXPECT_EQ(kMin, CountOf(-std::numeric_limits<double>::infinity()));
    EXPECT_EQ(kMax, CountOf(1e300));
    EXPECT_EQ(kMin, CountOf(-1e300));
    EXPECT_EQ(kMax, CountOf(13071672387.832733));
    EXPECT_EQ(kMin, CountOf(-13071672387.832733));
    EXPECT_EQ(0, CountOf(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_LT(CountOf(13071672387.0), kMax);
}

TEST(KTime, GetsCountsBackFromTheirSeconds) {
    for (long long lCount = 1; lCount < 1ll << 50; lCount = lCount * 3 + 1) {
        EXPECT_EQ(lCount, CountOf(KTime(lCount).GetSecondDouble()));
        EXPECT_EQ(-lCount, CountOf(KTime(-lCount).GetSecondDouble()));
    }
}

TEST(KTime, WritesHoursMinutesSecondsAndTheFractionWithoutTrailingZeros) {
    EXPECT_EQ("00:00:00", TextOf(0));
    EXPECT_EQ("00:00:01", TextOf(705600000));
    EXPECT_EQ("00:00:00.5", TextOf(352800000));
    EXPECT_EQ("-00:00:00.5", TextOf(-352800000));
    EXPECT_EQ("01:01:01", TextOf(3661ll * 705600000));
    EXPECT_EQ("00:00:59.999999999", TextOf(60ll * 705600000 - 1));
    EXPECT_EQ("00:00:00.000000001", TextOf(1));
    EXPECT_EQ("-00:00:00.000000001", TextOf(-1));
    EXPECT_EQ("00:00:00.000000003", TextOf(2));
    EXPECT_EQ("00:00:00.041666667", TextOf(29400000));
    EXPECT_EQ("00:00:00.04", TextOf(28224000));
    EXPECT_EQ("99:59:59", TextOf(359999ll * 705600000));
    EXPECT_EQ("100:00:00", TextOf(360000ll * 705600000));
}

TEST(KTime, WritesTheExtremeCounts) {
    EXPECT_EQ("3631020:06:27.832732153", TextOf(kMax));
    EXPECT_EQ("-3631020:06:27.832732154", TextOf(kMin));
}

TEST(KTime, GivesDifferentTextsToNeighbours) {
    for (long long lBase : {0ll, 705600000ll, 123456789012ll, -705600000ll}) {
        for (long long lCount = lBase - 50; lCount < lBase + 50; ++lCount)
            EXPECT_NE(TextOf(lCount), TextOf(lCount + 1));
    }
}

TEST(KTime, AcceptsAnyFormatNumbersAndNoBuffer) {
    char lText[KTime::kTimeStringSize];
    EXPECT_EQ(8, KTime(705600000).GetTimeString(lText, -1, 2147483647, -2147483647 - 1,
                                                std::numeric_limits<double>::quiet_NaN()));
    EXPECT_STREQ("00:00:01", lText);
    EXPECT_EQ(0, KTime(1).GetTimeString(nullptr, 5, 0, 2, 0.0));
}

}  // namespace
}  // namespace lyrsdk
