#include "lyrfilesdk/klyrplugins/klyrconversion.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/klyrplugins/any_value.h"
#include "tests/klyrplugins/conversion_reference.h"
#include "tests/klyrplugins/value_samples.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

template <typename T>
T OldValue() {
    return Samples<T>().back();
}

// Checks one outcome: result, destination, and the reports.
void ExpectOutcome(ReportRecorder& pRecorder, char pRule, bool pExpected, const std::string& pImage, bool pResult,
                   const AnyValue& pDst) {
    EXPECT_EQ(pExpected, pResult);
    EXPECT_EQ(pImage, ImageOf(pDst));
    const std::vector<ReportRecorder::Report> lReports = pRecorder.TakeReports();
    ASSERT_EQ(pRule == 'X' ? 1u : 0u, lReports.size());
    for (const ReportRecorder::Report& lReport : lReports) {
        EXPECT_EQ("lyrfilesdk/klyrplugins/klyrtypes", lReport.file);
        EXPECT_EQ("", lReport.function);
        EXPECT_EQ("Incompatible type assigment", lReport.message);
    }
}

// Converts every sample in each of the three ways, each time over the old value.
void CheckPair(ELyrType pDstType, ELyrType pSrcType, char pRule) {
    ReportRecorder lRecorder;
    const AnyValue lOld = SamplesOf(pDstType).back();
    const std::vector<AnyValue> lSamples = SamplesOf(pSrcType);
    ASSERT_FALSE(lSamples.empty());
    int lIndex = 0;
    for (const AnyValue& lSample : lSamples) {
        SCOPED_TRACE("to " + std::to_string(pDstType) + " from " + std::to_string(pSrcType) + ", sample " +
                     std::to_string(lIndex++));
        AnyValue lSrc = lSample;
        AnyValue lDst = lOld;
        std::string lImage;
        const bool lExpected = reference::Convert(pRule, lDst, lSrc, lImage);
        if (!lExpected)
            lImage = ImageOf(lDst);
        ExpectOutcome(lRecorder, pRule, lExpected, lImage, CopyByTypes(lDst, lSrc), lDst);
        lDst = lOld;
        ExpectOutcome(lRecorder, pRule, lExpected, lImage, CopyIntoCode(lDst, pDstType, lSrc), lDst);
        lDst = lOld;
        ExpectOutcome(lRecorder, pRule, lExpected, lImage, CopyByCodes(lDst, pDstType, lSrc, pSrcType), lDst);
        EXPECT_EQ(ImageOf(lSample), ImageOf(lSrc));
        if (testing::Test::HasFailure())
            return;
    }
}

void CheckDestination(ELyrType pDstType, const std::string& pRules) {
    std::size_t lColumn = 0;
#define LYRSDK_PAIR(pCode, pType) CheckPair(pDstType, pCode, pRules.at(lColumn++));
    LYRSDK_TEST_TYPES(LYRSDK_PAIR)
#undef LYRSDK_PAIR
    ASSERT_EQ(pRules.size(), lColumn);
    // An enumeration is an int, as a source too.
    CheckPair(pDstType, eENUM, pRules.at(9));
}

#define LYRSDK_DESTINATION_TEST(pCode, pType)                   \
    TEST(LyrCopy, ConvertsEverySampleOfEveryTypeInto_##pCode) { \
        LeakCheck lLeaks;                                       \
        CheckDestination(pCode, reference::Rules().at(pCode));  \
    }
LYRSDK_TEST_TYPES(LYRSDK_DESTINATION_TEST)

TEST(LyrCopy, ConvertsEverySampleOfEveryTypeIntoAnEnumerationAsIntoAnInt) {
    CheckDestination(eENUM, reference::Rules().at(eINTEGER1));
}

template <typename Dst, typename Src>
Dst Converted(const Src& pSrc) {
    Dst lDst{};
    EXPECT_TRUE(lyrCopy(lDst, pSrc));
    return lDst;
}

TEST(LyrCopy, KeepsTheLowBitsOfWhatDoesNotFit) {
    EXPECT_EQ(44, Converted<char>(300));
    EXPECT_EQ(44, Converted<unsigned char>(300.0));
    EXPECT_EQ(44, Converted<unsigned char>(300.7f));
    EXPECT_EQ(4294967295u, Converted<unsigned int>(-1.0));
    EXPECT_EQ(4294967295u, Converted<unsigned int>(static_cast<char>(-1)));
    EXPECT_EQ(255u, Converted<unsigned int>(static_cast<unsigned char>(255)));
    EXPECT_EQ(65535, Converted<unsigned short>(-1));
    EXPECT_EQ(-1, Converted<int>(0xFFFFFFFFFFFFFFFFull));
    EXPECT_EQ(1410065408u, Converted<unsigned int>(1e10));
}

TEST(LyrCopy, GivesTheLeastIntermediateForFloatingNumbersThatDoNotFit) {
    EXPECT_EQ(std::numeric_limits<int>::min(), Converted<int>(1e10));
    EXPECT_EQ(0, Converted<char>(40000.0));
    EXPECT_EQ(0, Converted<unsigned char>(-40000.0f));
    EXPECT_EQ(-32768, Converted<short>(32768.0));
    EXPECT_EQ(32768, Converted<unsigned short>(32768.0));
    EXPECT_EQ(0, Converted<unsigned short>(3e9));
    EXPECT_EQ(0u, Converted<unsigned int>(1e19));
    EXPECT_EQ(std::numeric_limits<long long>::min(), Converted<long long>(9223372036854775808.0));
    EXPECT_EQ(std::numeric_limits<int>::min(), Converted<int>(std::numeric_limits<float>::quiet_NaN()));
    EXPECT_EQ(0, Converted<short>(std::numeric_limits<float>::quiet_NaN()) & 0x7FFF);
}

TEST(LyrCopy, CutsFractionsOffTowardsZero) {
    EXPECT_EQ(2, Converted<int>(2.9));
    EXPECT_EQ(-2, Converted<int>(-2.9));
    EXPECT_EQ(0, Converted<long long>(-0.99f));
    EXPECT_EQ(-32768, Converted<short>(-32768.9));
    EXPECT_EQ(2147483647, Converted<int>(2147483647.9));
    // The least number but one is no sign of one that does not fit.
    EXPECT_EQ(-32767, Converted<short>(-32767.0));
    EXPECT_EQ(-32767, Converted<short>(-32767.5));
    EXPECT_EQ(-2147483647, Converted<int>(-2147483647.0));
    EXPECT_EQ(-2147483647, Converted<int>(-2147483647.5));
    EXPECT_EQ(-9223372036854774784ll, Converted<long long>(-9223372036854774784.0));
}

TEST(LyrCopy, SetsTheTopBitOfAnUnsignedLongLongFromTwoToThe63) {
    EXPECT_EQ(0x8000000000000000ull, Converted<unsigned long long>(9223372036854775808.0));
    EXPECT_EQ(0xFFFFFFFFFFFFF800ull, Converted<unsigned long long>(18446744073709549568.0));
    EXPECT_EQ(0x8000000000000000ull, Converted<unsigned long long>(18446744073709551616.0));
    EXPECT_EQ(0x8000000000000000ull, Converted<unsigned long long>(std::numeric_limits<double>::infinity()));
    EXPECT_EQ(0x8000000000000000ull, Converted<unsigned long long>(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_EQ(0xFFFFFFFFFFFFFFFFull, Converted<unsigned long long>(-1.0));
}

TEST(LyrCopy, RoundsUnsignedLongLongsOnce) {
    EXPECT_EQ(18446744073709551616.0, Converted<double>(0xFFFFFFFFFFFFFFFFull));
    EXPECT_EQ(9223372036854775808.0, Converted<double>(0x8000000000000400ull));
    EXPECT_EQ(9223372036854777856.0, Converted<double>(0x8000000000000401ull));
    EXPECT_EQ(9007199254740992.0, Converted<double>(9007199254740993ull));
    EXPECT_EQ(0x7C00, Converted<lyrHalfFloat>(0xFFFFFFFFFFFFFFFFull).bits());
}

TEST(LyrCopy, RoundsDoublesToTheNearestFloat) {
    EXPECT_EQ(16777216.0f, Converted<float>(16777217.0));
    EXPECT_EQ(16777220.0f, Converted<float>(16777219.0));
    EXPECT_EQ(std::numeric_limits<float>::infinity(), Converted<float>(1e300));
    EXPECT_EQ(0.0f, Converted<float>(7e-46));
}

TEST(LyrCopy, AsksABoolOnlyWhetherTheNumberIsZero) {
    EXPECT_FALSE(Converted<bool>(-0.0));
    EXPECT_TRUE(Converted<bool>(5e-324));
    EXPECT_TRUE(Converted<bool>(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_TRUE(Converted<bool>(0x100000000ll));
    EXPECT_EQ(1.0f, Converted<float>(true));
}

TEST(LyrCopy, PrintsSixtyFourBitIntegersThroughInt) {
    EXPECT_TRUE(Converted<KString>(0xFFFFFFFFull) == "-1");
    EXPECT_TRUE(Converted<KString>(0x100000005ll) == "5");
    EXPECT_TRUE(Converted<KString>(4294967295u) == "-1");
}

TEST(LyrCopy, PrintsVectorsWithCommasAndOfAMatrixTheFirstRow) {
    EXPECT_TRUE(Converted<KString>(lyrDouble2{1.5, 2}) == "1.5,2");
    EXPECT_TRUE(Converted<KString>(lyrDouble3{1, 2, 3}) == "1,2,3");
    EXPECT_TRUE(Converted<KString>(lyrDouble4{1, -2, 1e300, 0.1}) == "1,-2,1e+300,0.1");
    lyrDouble44 lMatrix;
    for (int i = 0; i < 16; ++i)
        lMatrix[i / 4][i % 4] = i;
    EXPECT_TRUE(Converted<KString>(lMatrix) == "0,1,2,3");
    const double lLong = -2.2250738585072014e-308;
    EXPECT_TRUE(Converted<KString>(lyrDouble4{lLong, lLong, lLong, lLong}) ==
                "-2.2250738585072014e-308,-2.2250738585072014e-308,-2.2250738585072014e-308,-2.2250738585072014e-308");
}

TEST(LyrCopy, PrintsWhatIsNoNumber) {
    EXPECT_TRUE(Converted<KString>(true) == "true");
    EXPECT_TRUE(Converted<KString>(false) == "false");
    EXPECT_TRUE(Converted<KString>(lyrBlob()) == "<blob>");
    EXPECT_TRUE(Converted<KString>(lyrDistance(2.5f, KLyrSystemUnit::cm)) == "2.5 cm");
    EXPECT_TRUE(Converted<KString>(KTime(kTimeUnitsPerSecond * 3723 / 2)) == "00:31:01.5");
    EXPECT_TRUE(Converted<KString>(lyrDateTime()) == "0000-01-01T00:00:00.000");
}

TEST(LyrCopy, PutsTheBytesOfANumberAndTheCharactersOfAStringIntoABlob) {
    const int lNumber = 0x01020304;
    EXPECT_EQ(BytesOf(lNumber), ImageOf(Converted<lyrBlob>(lNumber)));
    EXPECT_EQ(128u, ImageOf(Converted<lyrBlob>(lyrDouble44())).size());
    EXPECT_EQ(BytesOf(0x0102030405060708ll), ImageOf(Converted<lyrBlob>(KTime(0x0102030405060708ll))));
    EXPECT_EQ("abc", ImageOf(Converted<lyrBlob>(KString("abc"))));
    KString lWithZero;
    ASSERT_TRUE(lWithZero.Assign("a\0b", 3));
    EXPECT_EQ(std::string("a\0b", 3), ImageOf(Converted<lyrBlob>(lWithZero)));
    EXPECT_EQ("", ImageOf(Converted<lyrBlob>(KString())));
}

TEST(LyrCopy, MovesTheBytesOfSignallingNaNsBetweenEqualTypes) {
    const double lDouble = FromBits<double>(0xFFF4000000000001ull);
    double lDoubleCopy = 0;
    ASSERT_TRUE(lyrCopy(&lDoubleCopy, eDOUBLE1, &lDouble, eDOUBLE1));
    EXPECT_EQ(BytesOf(lDouble), BytesOf(lDoubleCopy));
    const float lFloat = FromBits<float>(0x7FA00001u);
    float lFloatCopy = 0;
    ASSERT_TRUE(lyrCopy(&lFloatCopy, eFLOAT1, &lFloat, eFLOAT1));
    EXPECT_EQ(BytesOf(lFloat), BytesOf(lFloatCopy));
    lyrDouble4 lVector;
    std::memcpy(&lVector.mData[0], &lDouble, 8);
    std::memcpy(&lVector.mData[2], &lDouble, 8);
    lyrDouble4 lVectorCopy;
    ASSERT_TRUE(lyrCopy(&lVectorCopy, eDOUBLE4, &lVector, eDOUBLE4));
    EXPECT_EQ(BytesOf(lVector), BytesOf(lVectorCopy));
    // From vector to vector, to its first element, and from one number into all elements too.
    lyrDouble3 lThree;
    ASSERT_TRUE(lyrCopy(&lThree, eDOUBLE3, &lVector, eDOUBLE4));
    EXPECT_EQ(BytesOf(lVector).substr(0, 24), BytesOf(lThree));
    ASSERT_TRUE(lyrCopy(&lDoubleCopy, eDOUBLE1, &lVector, eDOUBLE4));
    EXPECT_EQ(BytesOf(lDouble), BytesOf(lDoubleCopy));
    lyrDouble2 lTwo;
    ASSERT_TRUE(lyrCopy(&lTwo, eDOUBLE2, &lDouble, eDOUBLE1));
    EXPECT_EQ(BytesOf(lDouble) + BytesOf(lDouble), BytesOf(lTwo));
}

struct Stranger {
    int mValue;
};

TEST(LyrCopy, RefusesTypesWithoutACodeWithAReport) {
    ReportRecorder lRecorder;
    int lInt = 7;
    EXPECT_FALSE(lyrCopy(lInt, Stranger{1}));
    EXPECT_EQ(std::vector<std::string>{"Incompatible type assigment"}, lRecorder.Take());
    EXPECT_FALSE(lyrCopy(lInt, 1L));
    EXPECT_FALSE(lyrCopy(lInt, static_cast<signed char>(1)));
    EXPECT_FALSE(lyrCopy(&lInt, eINTEGER1, 1L));
    EXPECT_EQ(std::vector<std::string>(3, "Incompatible type assigment"), lRecorder.Take());
    EXPECT_EQ(7, lInt);
    Stranger lStranger{3};
    EXPECT_FALSE(lyrCopy(lStranger, 5));
    EXPECT_FALSE(lyrCopy(lStranger, Stranger{5}));
    EXPECT_EQ(std::vector<std::string>(2, "Incompatible type assigment"), lRecorder.Take());
    EXPECT_EQ(3, lStranger.mValue);
}

template <typename T>
void ExpectRefusedCodes(const T& pSrc, ELyrType pSrcType) {
    ReportRecorder lRecorder;
    unsigned char lMemory[kLyrMaxValueSize] = {7};
    for (int lCode : {-1, 0, 24, 255, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_FALSE(lyrCopy(lMemory, static_cast<ELyrType>(lCode), pSrc));
        EXPECT_FALSE(lyrCopy(lMemory, static_cast<ELyrType>(lCode), &pSrc, pSrcType));
        EXPECT_EQ(std::vector<std::string>(2, "Trying to assign an unknown type"), lRecorder.Take());
    }
    EXPECT_FALSE(lyrCopy(lMemory, eREFERENCE, pSrc));
    EXPECT_FALSE(lyrCopy(lMemory, eREFERENCE, &pSrc, pSrcType));
    EXPECT_EQ(std::vector<std::string>(2, "Trying to set value on a void Reference type"), lRecorder.Take());
    EXPECT_EQ(7, lMemory[0]);
    EXPECT_FALSE(lyrCopy(nullptr, eREFERENCE, pSrc));
    EXPECT_FALSE(lyrCopy(nullptr, pSrcType, pSrc));
}

TEST(LyrCopy, RefusesDestinationCodesWithoutAValueWithAReport) {
#define LYRSDK_REFUSED(pCode, pType) ExpectRefusedCodes(OldValue<pType>(), pCode);
    LYRSDK_TEST_TYPES(LYRSDK_REFUSED)
#undef LYRSDK_REFUSED
}

// Counts what a handler gets that silences each site at once.
int sgSilencedReports = 0;
void CountAndSilence(const char*, const char*, unsigned long, const char*, bool* pHideForever) {
    ++sgSilencedReports;
    *pHideForever = true;
}

// Types of this test alone, so that no other test meets a silenced site.
struct FirstStranger {};
struct SecondStranger {};

TEST(LyrCopy, KeepsOneSwitchForEachPairOfTypes) {
    const KAssertFailedHandler lBefore = KSetAssertFailedHandler(&CountAndSilence);
    sgSilencedReports = 0;
    int lInt = 0;
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(lyrCopy(lInt, FirstStranger()));
    EXPECT_EQ(1, sgSilencedReports);
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(lyrCopy(lInt, SecondStranger()));
    EXPECT_EQ(2, sgSilencedReports);
    KSetAssertFailedHandler(lBefore);
}

TEST(LyrCopy, LeavesStringsAndBlobsAloneWhenThereIsNoMemory) {
    KString lString("old");
    lyrBlob lBlob;
    ASSERT_TRUE(lBlob.Assign("old", 3));
    const KString lLong("a text that is longer than what was there before");
    lyrBlob lLongBlob;
    ASSERT_TRUE(lLongBlob.Assign(lLong.Buffer(), lLong.GetLen()));
    {
        FailAllocations lFail(0, true);
        EXPECT_FALSE(lyrCopy(lString, lyrDouble4{0.1, 0.2, 0.3, 0.4}));
        EXPECT_FALSE(lyrCopy(lString, lLong));
        EXPECT_FALSE(lyrCopy(lString, KTime(kTimeUnitsPerSecond + 1)));
        EXPECT_FALSE(lyrCopy(lString, lyrDateTime()));
        EXPECT_FALSE(lyrCopy(lString, lyrDistance(12345.67f, KLyrSystemUnit::Mile)));
        EXPECT_FALSE(lyrCopy(lString, -1234567890));
        EXPECT_FALSE(lyrCopy(lBlob, lyrDouble44()));
        EXPECT_FALSE(lyrCopy(lBlob, lLong));
        EXPECT_FALSE(lyrCopy(lBlob, lLongBlob));
        EXPECT_EQ(9u, lFail.Failed());
    }
    EXPECT_TRUE(lString == "old");
    EXPECT_EQ("old", ImageOf(lBlob));
}

TEST(LyrCopy, ReadsTheSourceBeforeItWritesOverIt) {
    alignas(std::max_align_t) unsigned char lMemory[kLyrMaxValueSize];
    const double lValue = 2.5;
    std::memcpy(lMemory, &lValue, sizeof(lValue));
    ASSERT_TRUE(lyrCopy(lMemory, eDOUBLE3, lMemory, eDOUBLE1));
    EXPECT_EQ(BytesOf(lyrDouble3{2.5, 2.5, 2.5}), std::string(reinterpret_cast<char*>(lMemory), 24));
    ASSERT_TRUE(lyrCopy(lMemory, eLONGLONG1, lMemory, eDOUBLE1));
    EXPECT_EQ(BytesOf(2ll), std::string(reinterpret_cast<char*>(lMemory), 8));
    ASSERT_TRUE(lyrCopy(lMemory, eDOUBLE2, lMemory, eLONGLONG1));
    EXPECT_EQ(BytesOf(lyrDouble2{2, 2}), std::string(reinterpret_cast<char*>(lMemory), 16));
    // Behind itself: the source overlaps all but the first element.
    const lyrDouble4 lFour = {1, 2, 3, 4};
    std::memcpy(lMemory + 8, &lFour, sizeof(lFour));
    ASSERT_TRUE(lyrCopy(lMemory, eDOUBLE3, lMemory + 8, eDOUBLE4));
    EXPECT_EQ(BytesOf(lyrDouble3{1, 2, 3}), std::string(reinterpret_cast<char*>(lMemory), 24));
    ASSERT_TRUE(lyrCopy(lMemory + 8, eDOUBLE4, lMemory, eDOUBLE3));
    EXPECT_EQ(BytesOf(lyrDouble4{1, 2, 3, 4}), std::string(reinterpret_cast<char*>(lMemory + 8), 32));
}

TEST(LyrCopy, TakesAValueAsItsOwnSource) {
    KString lString("the same text");
    EXPECT_TRUE(lyrCopy(&lString, eSTRING, &lString, eSTRING));
    EXPECT_TRUE(lString == "the same text");
    lyrBlob lBlob;
    ASSERT_TRUE(lBlob.Assign("12345678", 8));
    EXPECT_TRUE(lyrCopy(&lBlob, eBLOB, &lBlob, eBLOB));
    EXPECT_EQ("12345678", ImageOf(lBlob));
    // Its own bytes as a number.
    EXPECT_TRUE(lyrCopy(&lBlob, eBLOB, lBlob.GetData(), eUINTEGER1));
    EXPECT_EQ("1234", ImageOf(lBlob));
    lyrDouble44 lMatrix = Samples<lyrDouble44>().back();
    const std::string lBytes = BytesOf(lMatrix);
    EXPECT_TRUE(lyrCopy(&lMatrix, eDOUBLE44, &lMatrix, eDOUBLE44));
    EXPECT_EQ(lBytes, BytesOf(lMatrix));
}

template <typename T>
void ExpectRoundTrip(bool pNaNToo) {
    for (const T& lSample : Samples<T>()) {
        T lBack = OldValue<T>();
        const KString lText = Converted<KString>(lSample);
        ASSERT_TRUE(lyrCopy(lBack, lText)) << lText.Buffer();
        if (pNaNToo || !(reference::Exact(lSample) != reference::Exact(lSample))) {
            EXPECT_EQ(ImageOf(lSample), ImageOf(lBack)) << lText.Buffer();
        }
    }
}

TEST(LyrCopy, ReadsBackWhatItPrints) {
    ExpectRoundTrip<char>(true);
    ExpectRoundTrip<unsigned char>(true);
    ExpectRoundTrip<short>(true);
    ExpectRoundTrip<unsigned short>(true);
    ExpectRoundTrip<unsigned int>(true);
    ExpectRoundTrip<int>(true);
    ExpectRoundTrip<bool>(true);
    ExpectRoundTrip<double>(false);
    for (const lyrDateTime& lSample : Samples<lyrDateTime>())
        EXPECT_TRUE(lSample == Converted<lyrDateTime>(Converted<KString>(lSample)));
}

}  // namespace
}  // namespace lyrsdk
