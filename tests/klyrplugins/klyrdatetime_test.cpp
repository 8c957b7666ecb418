#include "lyrfilesdk/klyrplugins/klyrdatetime.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

std::string TextOf(const lyrDateTime& pValue) {
    return pValue.toString().Buffer();
}

std::string ReadAndShow(const char* pText) {
    lyrDateTime lValue;
    lValue.Set(1111, 11, 11);
    return lValue.fromString(pText) ? TextOf(lValue) : "refused " + TextOf(lValue);
}

const char kRefused[] = "refused 1111-11-11T00:00:00.000";

TEST(LyrDateTime, BeginsWithTheCalendar) {
    EXPECT_EQ("0000-01-01T00:00:00.000", TextOf(lyrDateTime()));
    lyrDateTime lBack;
    lBack.Set(5, 5, 5);
    EXPECT_TRUE(lBack.fromString("0000-01-01T00:00:00.000"));
    EXPECT_TRUE(lBack == lyrDateTime());
}

TEST(LyrDateTime, KeepsWhatIsSet) {
    lyrDateTime lValue;
    ASSERT_TRUE(lValue.Set(2024, 2, 29, 23, 58, 57, 4));
    EXPECT_EQ(2024, lValue.GetYear());
    EXPECT_EQ(2, lValue.GetMonth());
    EXPECT_EQ(29, lValue.GetDay());
    EXPECT_EQ(23, lValue.GetHour());
    EXPECT_EQ(58, lValue.GetMinute());
    EXPECT_EQ(57, lValue.GetSecond());
    EXPECT_EQ(4, lValue.GetMillisecond());
    EXPECT_EQ("2024-02-29T23:58:57.004", TextOf(lValue));
}

TEST(LyrDateTime, RefusesNumbersOutOfRangeAndKeepsItsValue) {
    lyrDateTime lValue;
    ASSERT_TRUE(lValue.Set(9999, 12, 31, 23, 59, 59, 999));
    const int lMin = std::numeric_limits<int>::min();
    const int lMax = std::numeric_limits<int>::max();
    for (int lYear : {-1, 10000, 65536, lMin, lMax})
        EXPECT_FALSE(lValue.Set(lYear, 1, 1));
    for (int lMonth : {0, 13, 257, lMin, lMax})
        EXPECT_FALSE(lValue.Set(2000, lMonth, 1));
    for (int lDay : {0, 32, 257, lMin, lMax})
        EXPECT_FALSE(lValue.Set(2000, 1, lDay));
    for (int lHour : {-1, 24, 256, lMin, lMax})
        EXPECT_FALSE(lValue.Set(2000, 1, 1, lHour));
    for (int lSixty : {-1, 60, 256, lMin, lMax}) {
        EXPECT_FALSE(lValue.Set(2000, 1, 1, 0, lSixty));
        EXPECT_FALSE(lValue.Set(2000, 1, 1, 0, 0, lSixty));
    }
    for (int lMillisecond : {-1, 1000, 65536, lMin, lMax})
        EXPECT_FALSE(lValue.Set(2000, 1, 1, 0, 0, 0, lMillisecond));
    EXPECT_EQ("9999-12-31T23:59:59.999", TextOf(lValue));
}

TEST(LyrDateTime, KnowsTheCalendar) {
    const int lDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    lyrDateTime lValue;
    for (int lYear : {0, 1, 4, 100, 400, 1900, 1999, 2000, 2023, 2024, 2100, 9999}) {
        const bool lLeap = lYear == 0 || lYear == 4 || lYear == 400 || lYear == 2000 || lYear == 2024;
        for (int lMonth = 1; lMonth <= 12; ++lMonth) {
            const int lLast = lDays[lMonth - 1] + (lLeap && lMonth == 2);
            EXPECT_TRUE(lValue.Set(lYear, lMonth, lLast)) << lYear << '-' << lMonth;
            EXPECT_FALSE(lValue.Set(lYear, lMonth, lLast + 1)) << lYear << '-' << lMonth;
        }
    }
}

TEST(LyrDateTime, ReadsItsText) {
    EXPECT_EQ("2020-02-29T12:34:56.789", ReadAndShow("2020-02-29T12:34:56.789"));
    EXPECT_EQ("2020-02-29T12:34:56.789", ReadAndShow("2020-02-29 12:34:56.789"));
    EXPECT_EQ("2020-02-29T12:34:56.700", ReadAndShow("2020-02-29t12:34:56.7"));
    EXPECT_EQ("2020-02-29T12:34:56.070", ReadAndShow("2020-02-29T12:34:56.07"));
    EXPECT_EQ("2020-02-29T12:34:56.000", ReadAndShow("2020-02-29T12:34:56"));
    EXPECT_EQ("2020-02-29T12:34:00.000", ReadAndShow("2020-02-29 12:34"));
}

TEST(LyrDateTime, RefusesOtherTextsAndKeepsItsValue) {
    for (const char* lText : {"",
                              " ",
                              "2020-02-29",
                              "2020-02-29T",
                              "2020-02-29T12",
                              "2020-02-29T12:",
                              "2020-02-29T12:3",
                              "2020-02-29T12:34:",
                              "2020-02-29T12:34:5",
                              "2020-02-29T12:34:56.",
                              "2020-02-29T12:34:56.7891",
                              "2020-02-29T12:34:56.789Z",
                              "2020-02-29T12:34.5",
                              "2020-02-29T12:34 ",
                              " 2020-02-29T12:34",
                              "2020-2-29T12:34",
                              "20200-02-29T12:34",
                              "-020-02-29T12:34",
                              "+2020-02-29T12:34",
                              "2020/02/29T12:34",
                              "2020",
                              "2020-",
                              "2020-02",
                              "2020-02/29T12:34",
                              "2020-02-",
                              "2020-02-29",
                              "2020-02-29_12:34",
                              "2020-02-29T12-34",
                              "2020-02-29T24:00",
                              "2020-02-29T12:60",
                              "2020-02-29T12:34:60",
                              "2020-13-01T00:00",
                              "2020-00-01T00:00",
                              "2021-02-29T00:00",
                              "1900-02-29T00:00",
                              "2020-04-31T00:00",
                              "2020-01-00T00:00",
                              "abcd-ef-ghTij:kl",
                              "2020-02-29T12:34:56,789",
                              "2020-02-29T 2:34",
                              "\xFF\xFF"})
        EXPECT_EQ(kRefused, ReadAndShow(lText)) << lText;
    EXPECT_EQ(kRefused, ReadAndShow(nullptr));
}

TEST(LyrDateTime, ReadsBackEveryDayOfManyYears) {
    int lCount = 0;
    for (int lYear = 0; lYear <= 9999; lYear += lYear < 400 ? 1 : 37) {
        for (int lMonth = 1; lMonth <= 12; ++lMonth) {
            lyrDateTime lValue;
            for (int lDay = 1; lValue.Set(lYear, lMonth, lDay, lCount % 24, lCount % 60, lCount % 59, lCount % 1000);
                 ++lDay) {
                lyrDateTime lBack;
                char lText[32];
                ASSERT_EQ(23, lValue.format(lText));
                ASSERT_TRUE(lBack.fromString(lText)) << lText;
                ASSERT_TRUE(lBack == lValue) << lText;
                ++lCount;
            }
        }
    }
    EXPECT_GT(lCount, 146097);
}

TEST(LyrDateTime, ComparesEveryField) {
    const int lBase[7] = {2000, 5, 5, 5, 5, 5, 5};
    lyrDateTime lValue;
    ASSERT_TRUE(lValue.Set(2000, 5, 5, 5, 5, 5, 5));
    for (int i = 0; i < 7; ++i) {
        int lField[7];
        for (int j = 0; j < 7; ++j)
            lField[j] = lBase[j] + (i == j);
        lyrDateTime lOther;
        ASSERT_TRUE(lOther.Set(lField[0], lField[1], lField[2], lField[3], lField[4], lField[5], lField[6]));
        EXPECT_TRUE(lOther != lValue) << i;
        EXPECT_FALSE(lOther == lValue) << i;
    }
    EXPECT_TRUE(lValue == lyrDateTime(lValue));
}

TEST(LyrDateTime, GivesAnEmptyTextWithoutMemory) {
    FailAllocations lFail(0, true);
    EXPECT_TRUE(lyrDateTime().toString().IsEmpty());
}

}  // namespace
}  // namespace lyrsdk
