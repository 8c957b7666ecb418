#include "lyrfilesdk/klyrplugins/klyrtypes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "tests/klyrplugins/value_samples.h"

namespace lyrsdk {
namespace {

template <typename T>
struct Case {
    const char* mText;
    T mValue;
};

template <typename T>
void ExpectRead(const std::vector<Case<T>>& pCases) {
    for (const Case<T>& lCase : pCases) {
        T lValue = lCase.mValue == T(0) ? T(1) : T(0);
        EXPECT_TRUE(lyrCopyStr(lValue, lCase.mText)) << lCase.mText;
        EXPECT_EQ(BytesOf(lCase.mValue), BytesOf(lValue)) << lCase.mText;
    }
}

template <typename T>
void ExpectRefused(const std::vector<const char*>& pTexts) {
    for (const char* lText : pTexts) {
        for (T lOld : {T(0), T(1)}) {
            T lValue = lOld;
            EXPECT_FALSE(lyrCopyStr(lValue, lText)) << lText;
            EXPECT_EQ(lOld, lValue) << lText;
        }
    }
}

const std::vector<const char*> kNoIntegers = {"",      " ",     "+",   "-",   "+-1",
                                              "-+1",   "--1",   "1 2", "1.0", "1e3",
                                              "0x10",  "1a",    "a1",  "a",   "1,000",
                                              "tru",   "truee", "yes", "inf", "nan",
                                              "\2401", "1\xA0", "- 1", "12-", "99999999999999999999999"};

template <typename T>
void CheckIntegers() {
    ExpectRead<T>({{"0", T(0)},
                   {"-0", T(0)},
                   {"+0", T(0)},
                   {"1", T(1)},
                   {"+7", T(7)},
                   {"  42  ", T(42)},
                   {"\t5\n", T(5)},
                   {"\v\f\r6", T(6)},
                   {"000000000000000000000000000007", T(7)},
                   {"-1", T(-1)},
                   {"-128", T(-128)}});
    ExpectRefused<T>(kNoIntegers);
    ExpectRefused<T>({"true", "18446744073709551616", "-9223372036854775809", "36893488147419103233"});
}

TEST(LyrCopyStr, ReadsDecimalIntegersOfEveryType) {
    CheckIntegers<char>();
    CheckIntegers<unsigned char>();
    CheckIntegers<short>();
    CheckIntegers<unsigned short>();
    CheckIntegers<int>();
    CheckIntegers<unsigned int>();
    CheckIntegers<long long>();
    CheckIntegers<unsigned long long>();
}

TEST(LyrCopyStr, ReadsEachIntegerTypeToItsLimits) {
    ExpectRead<char>({{"127", 127}, {"-128", -128}});
    ExpectRefused<char>({"128", "-129", "255", "256"});
    ExpectRead<unsigned char>({{"255", 255}, {"-1", 255}, {"-128", 128}});
    ExpectRefused<unsigned char>({"256", "-129", "-256"});
    ExpectRead<short>({{"32767", 32767}, {"-32768", -32768}});
    ExpectRefused<short>({"32768", "-32769", "65535"});
    ExpectRead<unsigned short>({{"65535", 65535}, {"-1", 65535}, {"-32768", 32768}});
    ExpectRefused<unsigned short>({"65536", "-32769"});
    ExpectRead<int>({{"2147483647", 2147483647}, {"-2147483648", std::numeric_limits<int>::min()}});
    ExpectRefused<int>({"2147483648", "-2147483649", "4294967295"});
    ExpectRead<unsigned int>({{"4294967295", 4294967295u}, {"-1", 4294967295u}, {"-2147483648", 2147483648u}});
    ExpectRefused<unsigned int>({"4294967296", "-2147483649"});
    ExpectRead<long long>({{"9223372036854775807", std::numeric_limits<long long>::max()},
                           {"-9223372036854775808", std::numeric_limits<long long>::min()}});
    ExpectRefused<long long>({"9223372036854775808", "-9223372036854775809", "18446744073709551615"});
    ExpectRead<unsigned long long>(
        {{"18446744073709551615", ~0ull}, {"-1", ~0ull}, {"-9223372036854775808", 1ull << 63}});
    ExpectRefused<unsigned long long>({"18446744073709551616", "-9223372036854775809"});
}

TEST(LyrCopyStr, ReadsABoolFromItsNamesOrAnInteger) {
    ExpectRead<bool>({{"true", true},
                      {"TRUE", true},
                      {" True ", true},
                      {"tRuE", true},
                      {"false", false},
                      {"FALSE", false},
                      {"False\n", false},
                      {"0", false},
                      {"-0", false},
                      {"1", true},
                      {"-1", true},
                      {"300", true},
                      {"18446744073709551615", true},
                      {"-9223372036854775808", true}});
    ExpectRefused<bool>(kNoIntegers);
    ExpectRefused<bool>(
        {"t", "f", "true1", "truefalse", "falsee", "fals", "0.0", "18446744073709551616", "-9223372036854775809"});
}

TEST(LyrCopyStr, ReadsDoubles) {
    const double lInfinity = std::numeric_limits<double>::infinity();
    ExpectRead<double>({{"0", 0.0},
                        {"-0", -0.0},
                        {"1.5", 1.5},
                        {" -2.25\t", -2.25},
                        {"+3", 3.0},
                        {".5", 0.5},
                        {"5.", 5.0},
                        {"1e3", 1000.0},
                        {"-1E-3", -0.001},
                        {"+.5e1", 5.0},
                        {"inf", lInfinity},
                        {"-inf", -lInfinity},
                        {"+infinity", lInfinity},
                        {"5.435359256080003e+22", 5.435359256080003e+22},
                        {"4.9406564584124654e-324", 4.9406564584124654e-324},
                        {"18446744073709551616", 18446744073709551616.0},
                        {"1.7976931348623157e308", std::numeric_limits<double>::max()}});
    double lNaN = 0;
    EXPECT_TRUE(lyrCopyStr(lNaN, "nan"));
    EXPECT_TRUE(std::isnan(lNaN));
    ExpectRefused<double>({"", " ", "+", "-", "+-1", "-+1", "++1", "+ 1", "1 2", "1,5", "1.5x", "0x1p3", "e5", ".",
                           "1e", "abc", "true", "1e999", "-1e999"});
}

TEST(LyrCopy, TakesNoDateWithAZeroByteBehindIt) {
    KString lText;
    ASSERT_TRUE(lText.Assign("2020-01-02T03:04\0junk", 21));
    lyrDateTime lValue;
    EXPECT_FALSE(lyrCopy(lValue, lText));
    EXPECT_EQ(lValue, lyrDateTime());
}

TEST(LyrCopyStr, TakesNoTextWithAZeroByteInside) {
    KString lText;
    ASSERT_TRUE(
        lText.Assign("12\0"
                     "34",
                     5));
    int lInt = 7;
    EXPECT_FALSE(lyrCopyStr(lInt, lText));
    EXPECT_EQ(7, lInt);
    double lDouble = 7;
    EXPECT_FALSE(lyrCopyStr(lDouble, lText));
    EXPECT_EQ(7, lDouble);
    ASSERT_TRUE(lText.Assign("true\0", 5));
    bool lBool = false;
    EXPECT_FALSE(lyrCopyStr(lBool, lText));
    EXPECT_FALSE(lBool);
}

}  // namespace
}  // namespace lyrsdk
