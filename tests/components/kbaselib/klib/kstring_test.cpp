#include "lyrfilesdk/components/kbaselib/klib/kstring.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <utility>

#include "tests/support/huge_text.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

static_assert(sizeof(KString) == sizeof(void*));
static_assert(!std::is_constructible_v<bool, KString>, "a text in a condition would always be true");

std::string Text(const KString& pString) {
    EXPECT_EQ(pString.Buffer()[pString.GetLen()], '\0');
    return std::string(pString.Buffer(), static_cast<std::size_t>(pString.GetLen()));
}

TEST(KString, IsEmptyWithoutAllocating) {
    const std::size_t lBefore = MemoryProbe::Allocations();
    const KString lDefault;
    const KString lNull(static_cast<const char*>(nullptr));
    const KString lEmpty("");
    for (const KString* lString : {&lDefault, &lNull, &lEmpty}) {
        EXPECT_TRUE(lString->IsEmpty());
        EXPECT_EQ(lString->GetLen(), 0);
        EXPECT_STREQ(lString->Buffer(), "");
        EXPECT_STREQ(static_cast<const char*>(*lString), "");
    }
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
}

TEST(KString, CopiesTextsIntoBlocksOfItsOwn) {
    LeakCheck lLeaks;
    char lSource[] = "abc";
    KString lFirst(lSource);
    KString lSecond(lFirst);
    lSource[0] = 'x';
    lFirst.Buffer()[1] = 'y';
    EXPECT_EQ(Text(lFirst), "ayc");
    EXPECT_EQ(Text(lSecond), "abc");
    EXPECT_FALSE(lSecond.IsEmpty());
}

TEST(KString, MovesWithoutAllocatingAndLeavesTheSourceEmpty) {
    LeakCheck lLeaks;
    KString lSource("text");
    const std::size_t lBefore = MemoryProbe::Allocations();
    KString lTarget(std::move(lSource));
    KString lAssigned;
    lAssigned = std::move(lTarget);
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
    EXPECT_EQ(Text(lAssigned), "text");
    EXPECT_TRUE(lSource.IsEmpty());
    EXPECT_TRUE(lTarget.IsEmpty());
    KString& lSelf = lAssigned;
    lAssigned = std::move(lSelf);
    EXPECT_EQ(Text(lAssigned), "text");
}

TEST(KString, AssignsItsOwnTextAndPartsOfIt) {
    LeakCheck lLeaks;
    KString lString("hello world");
    const KString& lSelf = lString;
    lString = lSelf;
    EXPECT_EQ(Text(lString), "hello world");
    lString = lString.Buffer() + 6;
    EXPECT_EQ(Text(lString), "world");
    EXPECT_TRUE(lString.Assign(lString.Buffer() + 1, 3));
    EXPECT_EQ(Text(lString), "orl");
    lString = lString.Buffer() + 3;
    EXPECT_TRUE(lString.IsEmpty());
}

TEST(KString, AssignRefusesANegativeLengthAndTakesNullAsEmpty) {
    KString lString("kept");
    EXPECT_FALSE(lString.Assign("other", -1));
    EXPECT_FALSE(lString.Assign(nullptr, INT_MIN));
    EXPECT_EQ(Text(lString), "kept");
    EXPECT_TRUE(lString.Assign(nullptr, 5));
    EXPECT_TRUE(lString.IsEmpty());
    lString = "again";
    lString = static_cast<const char*>(nullptr);
    EXPECT_TRUE(lString.IsEmpty());
}

TEST(KString, EmptyTextsGiveTheBlockBack) {
    const std::size_t lBefore = MemoryProbe::LiveBlocks();
    KString lString("long enough for a block");
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBefore + 1);
    EXPECT_TRUE(lString.Assign("", 0));
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBefore);
    lString = "again";
    lString.Clear();
    lString.Clear();
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBefore);
    EXPECT_TRUE(lString.IsEmpty());
}

TEST(KString, AppendsTextsAndItself) {
    LeakCheck lLeaks;
    KString lString;
    EXPECT_TRUE(lString.Append("ab"));
    EXPECT_TRUE(lString.Append(lString));
    EXPECT_EQ(Text(lString), "abab");
    EXPECT_TRUE(lString.Append(lString.Buffer() + 1, 2));
    EXPECT_EQ(Text(lString), "ababba");
    EXPECT_TRUE(lString.Append(static_cast<const char*>(nullptr)));
    EXPECT_TRUE(lString.Append(""));
    EXPECT_TRUE(lString.Append(KString()));
    EXPECT_FALSE(lString.Append("x", -1));
    EXPECT_FALSE(lString.Append("x", INT_MAX));
    EXPECT_EQ(Text(lString), "ababba");
}

TEST(KString, AppendsByteByByteWithFewAllocations) {
    KString lString;
    std::string lExpected;
    const std::size_t lBefore = MemoryProbe::Allocations();
    for (int lIndex = 0; lIndex < 10000; ++lIndex) {
        const char lByte = static_cast<char>('a' + lIndex % 26);
        ASSERT_TRUE(lString.Append(&lByte, 1));
        lExpected += lByte;
    }
    EXPECT_EQ(Text(lString), lExpected);
    EXPECT_LE(MemoryProbe::Allocations() - lBefore, 16u);
}

TEST(KString, JoinsTexts) {
    LeakCheck lLeaks;
    const KString lLeft("left");
    EXPECT_EQ(Text(lLeft + "right"), "leftright");
    EXPECT_EQ(Text(lLeft + KString("right")), "leftright");
    EXPECT_EQ(Text(lLeft + static_cast<const char*>(nullptr)), "left");
    EXPECT_EQ(Text(KString() + lLeft), "left");
    EXPECT_EQ(Text("head" + lLeft), "headleft");
    EXPECT_EQ(Text(KString(1.5) + "," + KString(2.0)), "1.5,2");
}

TEST(KString, ComparesByBytes) {
    const KString lString("abc");
    EXPECT_TRUE(lString == KString("abc"));
    EXPECT_TRUE(lString == "abc");
    EXPECT_TRUE("abc" == lString);
    EXPECT_FALSE(lString != "abc");
    EXPECT_TRUE(lString != "ab");
    EXPECT_TRUE(lString != "abcd");
    EXPECT_TRUE("abC" != lString);
    EXPECT_TRUE(lString != KString("abd"));
    EXPECT_TRUE(lString != KString());
    EXPECT_TRUE(KString() == static_cast<const char*>(nullptr));
    EXPECT_TRUE(KString() == "");
    EXPECT_TRUE(KString() == KString(""));
    EXPECT_FALSE(lString == static_cast<const char*>(nullptr));
}

TEST(KString, KeepsZeroBytesInsideACountedText) {
    KString lString;
    ASSERT_TRUE(lString.Assign("a\0b", 3));
    EXPECT_EQ(lString.GetLen(), 3);
    EXPECT_EQ(Text(lString), std::string("a\0b", 3));
    EXPECT_TRUE(lString != "a");
    EXPECT_TRUE(lString == KString(lString));
    EXPECT_GT(lyrCompareText(lString, "a"), 0);
}

TEST(KString, OrdersTextsLikeUnsignedBytes) {
    const char* const lOrdered[] = {"", "A", "B", "a", "aa", "ab", "b", "\x7f", "\x80", "\xff"};
    for (const char* lLeft : lOrdered) {
        for (const char* lRight : lOrdered) {
            const int lExpected = std::strcmp(lLeft, lRight);
            const int lActual = lyrCompareText(lLeft, lRight);
            EXPECT_EQ(lExpected < 0, lActual < 0) << lLeft << ' ' << lRight;
            EXPECT_EQ(lExpected > 0, lActual > 0) << lLeft << ' ' << lRight;
        }
    }
}

TEST(KString, LosesNothingWithoutMemory) {
    LeakCheck lLeaks;
    KString lString("kept");
    const KString lOther("a text that needs a larger block");
    FailAllocations lFail(0, true);
    EXPECT_FALSE(lString.Assign(lOther, lOther.GetLen()));
    EXPECT_FALSE(lString.Assign(-1234));
    EXPECT_FALSE(lString.Assign(12.25));
    EXPECT_FALSE(lString.Assign(12.25f));
    EXPECT_FALSE(lString.Append(lOther));
    lString = lOther;
    lString = "a text that needs a larger block";
    EXPECT_EQ(Text(lString), "kept");
    EXPECT_TRUE(KString(lOther).IsEmpty());
    EXPECT_TRUE(KString("text").IsEmpty());
    EXPECT_TRUE(KString(12).IsEmpty());
    EXPECT_TRUE((lOther + "x").IsEmpty());
    EXPECT_TRUE((lOther + lString).IsEmpty());
    EXPECT_EQ(lFail.Failed(), 12u);
    EXPECT_TRUE(lString.Assign("fits", 4));
    EXPECT_EQ(Text(lString), "fits");
    EXPECT_TRUE(lString.Assign(1234));
    EXPECT_EQ(Text(lString), "1234");
}

TEST(KString, SumIsEmptyWhenOnlyTheSecondHalfFindsNoMemory) {
    const KString lLeft("left");
    FailAllocations lFail(1, false);
    EXPECT_TRUE((lLeft + "right").IsEmpty());
    EXPECT_EQ(lFail.Failed(), 1u);
}

std::string Format(double pValue) {
    char lBuffer[32];
    const int lLength = lyrFormat(lBuffer, pValue);
    EXPECT_EQ(lBuffer[lLength], '\0');
    EXPECT_EQ(KString(pValue), lBuffer);
    return std::string(lBuffer, static_cast<std::size_t>(lLength));
}

std::string Format(float pValue) {
    char lBuffer[32];
    const int lLength = lyrFormat(lBuffer, pValue);
    EXPECT_EQ(lBuffer[lLength], '\0');
    EXPECT_EQ(KString(pValue), lBuffer);
    return std::string(lBuffer, static_cast<std::size_t>(lLength));
}

TEST(NumberText, WritesIntegersInDecimal) {
    EXPECT_EQ(KString(0), "0");
    EXPECT_EQ(KString(-1), "-1");
    EXPECT_EQ(KString(INT_MAX), "2147483647");
    EXPECT_EQ(KString(INT_MIN), "-2147483648");
    char lBuffer[32];
    EXPECT_EQ(lyrFormat(lBuffer, INT_MIN), 11);
    EXPECT_STREQ(lBuffer, "-2147483648");
}

TEST(NumberText, ARealTakesThePlaceOfAnyText) {
    LeakCheck lLeaks;
    for (const char* lOld : {"", "7", "a text with room for every real"}) {
        KString lString(lOld);
        ASSERT_TRUE(lString.Assign(0.1));
        EXPECT_EQ(Text(lString), "0.1");
        ASSERT_TRUE(lString.Assign(1.0f / 3.0f));
        EXPECT_EQ(Text(lString), "0.33333334");
        ASSERT_TRUE(lString.Assign(1.0 / 3.0));
        EXPECT_EQ(Text(lString), "0.3333333333333333");
    }
}

TEST(NumberText, AnIntegerTakesThePlaceOfAnyText) {
    LeakCheck lLeaks;
    for (long long lPower = 1; lPower <= 10000000000; lPower *= 10) {
        for (long long lNumber : {lPower - 1, lPower, lPower + 1, 1 - lPower, -lPower, -1 - lPower}) {
            if (lNumber < INT_MIN || lNumber > INT_MAX)
                continue;
            const int lValue = static_cast<int>(lNumber);
            for (const char* lOld : {"", "7", "a text with room for every integer"}) {
                KString lString(lOld);
                ASSERT_TRUE(lString.Assign(lValue));
                EXPECT_EQ(Text(lString), std::to_string(lValue));
                EXPECT_EQ(Text(lString), Text(KString(lValue)));
            }
        }
    }
}

TEST(NumberText, AnIntegerOfAnyBitsHasItsDigits) {
    for (long long lPower = 1; lPower <= 0x80000000; lPower *= 2) {
        for (long long lNumber : {lPower - 1, lPower, lPower / 3 * 4}) {
            for (long long lSigned : {lNumber, -lNumber}) {
                if (lSigned < INT_MIN || lSigned > INT_MAX)
                    continue;
                EXPECT_EQ(Text(KString(static_cast<int>(lSigned))), std::to_string(lSigned));
            }
        }
    }
    for (int lPair = 0; lPair < 100; ++lPair)
        EXPECT_EQ(Text(KString(1234567890 + lPair * 101)), std::to_string(1234567890 + lPair * 101));
}

TEST(NumberText, WritesRealsAsShortAsTheyReadBack) {
    EXPECT_EQ(Format(1.0), "1");
    EXPECT_EQ(Format(1.5), "1.5");
    EXPECT_EQ(Format(100000.0), "100000");
    EXPECT_EQ(Format(1e14), "100000000000000");
    EXPECT_EQ(Format(1e15), "1e+15");
    EXPECT_EQ(Format(0.1), "0.1");
    EXPECT_EQ(Format(0.0001), "0.0001");
    EXPECT_EQ(Format(0.00001), "1e-05");
    EXPECT_EQ(Format(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(Format(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(Format(DBL_MAX), "1.7976931348623157e+308");
    EXPECT_EQ(Format(-DBL_MIN), "-2.2250738585072014e-308");
    EXPECT_EQ(Format(5e-324), "4.94065645841247e-324");
    EXPECT_EQ(Format(0.1f), "0.1");
    EXPECT_EQ(Format(16777216.0f), "16777216");
    EXPECT_EQ(Format(1.0f / 3.0f), "0.33333334");
    EXPECT_EQ(Format(FLT_MAX), "3.4028235e+38");
    EXPECT_EQ(Format(1e6f), "1e+06");
}

TEST(NumberText, WritesSpecialValues) {
    const double lInfinity = std::numeric_limits<double>::infinity();
    const double lNan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Format(0.0), "0");
    EXPECT_EQ(Format(-0.0), "-0");
    EXPECT_EQ(Format(lInfinity), "inf");
    EXPECT_EQ(Format(-lInfinity), "-inf");
    EXPECT_EQ(Format(lNan), "nan");
    EXPECT_EQ(Format(std::copysign(lNan, -1.0)), "nan");
    EXPECT_EQ(Format(-0.0f), "-0");
    EXPECT_EQ(Format(-std::numeric_limits<float>::infinity()), "-inf");
    EXPECT_EQ(Format(std::copysign(std::numeric_limits<float>::quiet_NaN(), -1.0f)), "nan");
}

template <typename T>
std::uint64_t Bits(T pValue) {
    std::uint64_t lBits = 0;
    std::memcpy(&lBits, &pValue, sizeof(T));
    return lBits;
}

// The same text from the C library.
template <typename T>
std::string Shortest(T pValue, int pFewest, int pMost, T (*pRead)(const char*, char**)) {
    char lBuffer[64];
    for (int lDigits = pFewest; lDigits <= pMost; ++lDigits) {
        std::snprintf(lBuffer, sizeof(lBuffer), "%.*g", lDigits, static_cast<double>(pValue));
        if (Bits(pRead(lBuffer, nullptr)) == Bits(pValue))
            break;
    }
    return lBuffer;
}

TEST(NumberText, EveryRealReadsBackAndAgreesWithTheCLibrary) {
    std::mt19937_64 lRandom(20111);
    for (int lRound = 0; lRound < 200000; ++lRound) {
        const std::uint64_t lBits = lRandom();
        double lDouble = 0.0;
        std::memcpy(&lDouble, &lBits, sizeof(lDouble));
        if (lRound % 2 == 0)
            lDouble = static_cast<double>(static_cast<std::int64_t>(lBits >> 20)) / 1000.0;
        if (std::isfinite(lDouble)) {
            const std::string lText = Format(lDouble);
            ASSERT_EQ(lText, Shortest(lDouble, 15, 17, &std::strtod));
            double lBack = 0.0;
            ASSERT_TRUE(lyrParseDouble(lText.c_str(), static_cast<int>(lText.size()), lBack)) << lText;
            ASSERT_EQ(Bits(lBack), Bits(lDouble)) << lText;
        }
        float lFloat = 0.0f;
        std::memcpy(&lFloat, &lBits, sizeof(lFloat));
        if (std::isfinite(lFloat)) {
            ASSERT_EQ(Format(lFloat), Shortest(lFloat, 6, 9, &std::strtof));
        }
    }
}

// The number, its neighbours on both sides, and their negatives.
template <typename T>
void ExpectTextsOfTheCLibraryAround(T pValue, int pFewest, int pMost, T (*pRead)(const char*, char**)) {
    const T lInfinity = std::numeric_limits<T>::infinity();
    for (T lMagnitude : {std::nextafter(pValue, T(0)), pValue, std::nextafter(pValue, lInfinity)}) {
        for (T lValue : {lMagnitude, -lMagnitude}) {
            if (std::isfinite(lValue)) {
                EXPECT_EQ(Format(lValue), Shortest(lValue, pFewest, pMost, pRead));
            }
        }
    }
}

void ExpectTextsOfTheCLibrary(double pValue) {
    ExpectTextsOfTheCLibraryAround(pValue, 15, 17, &std::strtod);
    if (std::fabs(pValue) <= static_cast<double>(FLT_MAX))
        ExpectTextsOfTheCLibraryAround(static_cast<float>(pValue), 6, 9, &std::strtof);
}

TEST(NumberText, PowersAndTheirNeighboursAgreeWithTheCLibrary) {
    for (int lExponent = -1074; lExponent < 1024; ++lExponent)
        ExpectTextsOfTheCLibrary(std::ldexp(1.0, lExponent));
    for (int lExponent = -324; lExponent <= 308; ++lExponent) {
        for (const char* lDigits : {"1", "2", "4.5", "1.25", "9.99999999999999", "1.2345678901234567"})
            ExpectTextsOfTheCLibrary(std::strtod((lDigits + ("e" + std::to_string(lExponent))).c_str(), nullptr));
    }
}

TEST(NumberText, PointAndZerosStandWhereTheCLibraryPutsThem) {
    for (int lCount = 1; lCount <= 17; ++lCount) {
        const std::string lDigits = std::string("13579246813579246").substr(0, static_cast<std::size_t>(lCount));
        for (int lExponent = -25; lExponent <= 20; ++lExponent)
            ExpectTextsOfTheCLibrary(std::strtod((lDigits + "e" + std::to_string(lExponent)).c_str(), nullptr));
    }
}

TEST(NumberText, AnEvenDigitStandsWhereTwoTextsAreEquallyNear) {
    EXPECT_EQ(Format(900000000000000.25), "900000000000000.2");
    EXPECT_EQ(Format(900000000000000.75), "900000000000000.8");
    std::mt19937_64 lRandom(90025);
    for (int lRound = 0; lRound < 20000; ++lRound) {
        const double lWhole = static_cast<double>(lRandom() >> 14);
        for (int lPower = 0; lPower < 10; ++lPower) {
            const double lValue = std::ldexp(lWhole, -lPower);
            ASSERT_EQ(Format(lValue), Shortest(lValue, 15, 17, &std::strtod));
        }
    }
}

// The bits that the text reads as, or those of -7 when it is refused.
std::uint64_t Parse(const std::string& pText) {
    double lValue = -7.0;
    const bool lRead = lyrParseDouble(pText.c_str(), static_cast<int>(pText.size()), lValue);
    EXPECT_TRUE(lRead || Bits(lValue) == Bits(-7.0)) << pText;
    return Bits(lValue);
}

TEST(NumberText, ReadsTheNearestDouble) {
    EXPECT_EQ(Parse("5.435359256080003e+22"), 0x44a705073f90be81u);
    EXPECT_EQ(Parse("5.435359256080003e+0000000000022"), 0x44a705073f90be81u);
    EXPECT_EQ(Parse(std::string("0.") + std::string(1200, '0') + "5435359256080003e1223"), 0x44a705073f90be81u);
    EXPECT_EQ(Parse("9007199254740993"), 0x4340000000000000u) << "a tie goes to the even neighbour below";
    EXPECT_EQ(Parse("9007199254740995"), 0x4340000000000002u) << "a tie goes to the even neighbour above";
    EXPECT_EQ(Parse("9007199254740993.00000000000000000000000001"), 0x4340000000000001u);
    EXPECT_EQ(Parse("9007199254740992.99999999999999999999999999"), 0x4340000000000000u);
    EXPECT_EQ(Parse("1.7976931348623158e308"), 0x7fefffffffffffffu);
    EXPECT_EQ(Parse("2.2250738585072011e-308"), 0x000fffffffffffffu);
    EXPECT_EQ(Parse("2.2250738585072012e-308"), 0x0010000000000000u);
    EXPECT_EQ(Parse("4.9e-324"), 1u);
    EXPECT_EQ(Parse("2.4703282292062328e-324"), 1u);
    EXPECT_EQ(Parse("7.4109846876186981e-324"), 1u);
    EXPECT_EQ(Parse("7.4109846876186982e-324"), 2u);
}

TEST(NumberText, ReadsEveryFormOfANumber) {
    EXPECT_EQ(Parse("0"), Bits(0.0));
    EXPECT_EQ(Parse("-0"), Bits(-0.0));
    EXPECT_EQ(Parse(".5"), Bits(0.5));
    EXPECT_EQ(Parse("5."), Bits(5.0));
    EXPECT_EQ(Parse("-.5e+1"), Bits(-5.0));
    EXPECT_EQ(Parse("1.E2"), Bits(100.0));
    EXPECT_EQ(Parse("000000000000000000000000000012.50000000000000000000000000"), Bits(12.5));
    EXPECT_EQ(Parse("0e999999999999999999999"), Bits(0.0));
    EXPECT_EQ(Parse("-0e-999999999999999999999"), Bits(-0.0));
    const double lInfinity = std::numeric_limits<double>::infinity();
    for (const char* lText : {"inf", "INF", "infinity", "Infinity"})
        EXPECT_EQ(Parse(lText), Bits(lInfinity)) << lText;
    EXPECT_EQ(Parse("-inf"), Bits(-lInfinity));
    EXPECT_EQ(Parse("nan"), 0x7ff8000000000000u);
    EXPECT_EQ(Parse("-NaN"), 0xfff8000000000000u);
}

TEST(NumberText, RefusesWhatIsNoNumber) {
    for (const char* lText : {"",    " ",    "+1",  " 1",  "1 ",   "-",   ".",   "-.",   "e5", ".e5", "1e",    "1e+",
                              "1e-", "1e5x", "1..", "--1", "0x10", "1,5", "1_0", "infi", "na", "1f",  "1e5.0", "1\n"})
        EXPECT_EQ(Parse(lText), Bits(-7.0)) << '"' << lText << '"';
    EXPECT_EQ(Parse(std::string("1\0", 2)), Bits(-7.0));
    double lValue = -7.0;
    EXPECT_FALSE(lyrParseDouble(nullptr, 3, lValue));
    EXPECT_FALSE(lyrParseDouble("1", 0, lValue));
    EXPECT_FALSE(lyrParseDouble("1", -1, lValue));
    EXPECT_EQ(lValue, -7.0);
    EXPECT_TRUE(lyrParseDouble("12", 1, lValue));
    EXPECT_EQ(lValue, 1.0);
}

TEST(NumberText, RefusesWhatIsTooLargeOrTooSmall) {
    for (const char* lText : {"1.7976931348623159e308", "1e309", "-1e309", "1e99999999999999999999", "1e-400",
                              "-1e-400", "2.4703282292062327e-324", "0.0000001e-99999999999999999999"})
        EXPECT_EQ(Parse(lText), Bits(-7.0)) << lText;
    EXPECT_EQ(Parse(std::string(400, '9')), Bits(-7.0));
}

std::string RandomNumber(std::mt19937_64& pRandom, int pKind) {
    char lBuffer[80];
    const std::uint64_t lDigits = pRandom();
    const int lExponent = static_cast<int>(pRandom() % 60) - 30;
    switch (pKind) {
        case 0: {
            double lValue = 0.0;
            std::memcpy(&lValue, &lDigits, sizeof(lValue));
            std::snprintf(lBuffer, sizeof(lBuffer), "%.*g", lExponent / 2 + 16, std::isfinite(lValue) ? lValue : 1.0);
            break;
        }
        case 1:
            std::snprintf(lBuffer, sizeof(lBuffer), "%llue%d", static_cast<unsigned long long>(lDigits >> 11),
                          lExponent);
            break;
        case 2:
            std::snprintf(lBuffer, sizeof(lBuffer), "-%u.%012llu", static_cast<unsigned int>(lDigits % 10000u),
                          static_cast<unsigned long long>(lDigits % 1000000000000u));
            break;
        default:
            std::snprintf(lBuffer, sizeof(lBuffer), "%llu.%llue%d", static_cast<unsigned long long>(lDigits),
                          static_cast<unsigned long long>(pRandom()), lExponent * 11);
            break;
    }
    return lBuffer;
}

// The C library's reader is correctly rounded on every word size, but follows the locale; a test runs in the C locale.
TEST(NumberText, AMillionTextsReadAsTheCLibraryReadsThem) {
    std::mt19937_64 lRandom(54353);
    for (int lRound = 0; lRound < 1000000; ++lRound) {
        const std::string lText = RandomNumber(lRandom, lRound % 4);
        const double lExpected = std::strtod(lText.c_str(), nullptr);
        const bool lZero = lText.find_first_of("123456789") >= lText.find('e');
        const bool lRefused = std::isinf(lExpected) || (lExpected == 0.0 && !lZero);
        ASSERT_EQ(Parse(lText), lRefused ? Bits(-7.0) : Bits(lExpected)) << lText;
    }
}

#ifdef LYRSDK_TEST_HUGE_TEXT
TEST(HugeText, IsNoString) {
    const HugeText lHuge("");
    EXPECT_TRUE(KString(lHuge.Text()).IsEmpty());
    KString lString("old");
    lString = lHuge.Text();
    EXPECT_FALSE(lString.Assign(lHuge.Text(), INT_MAX));
    EXPECT_FALSE(lString.Append(lHuge.Text()));
    EXPECT_FALSE(lString.Append(lHuge.Text(), INT_MAX - 3)) << "a length, but more than one block holds";
    EXPECT_EQ(Text(lString), "old");
}
#endif

}  // namespace
}  // namespace lyrsdk
