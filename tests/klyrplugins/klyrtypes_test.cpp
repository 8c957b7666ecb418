#include "lyrfilesdk/klyrplugins/klyrtypes.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/klyrplugins/value_samples.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

const int kUnknownCodes[] = {-1, 24, 25, 255, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};

TEST(LyrTypes, NumbersTheCodesFromZeroTo23) {
    const ELyrType lCodes[] = {eUNIDENTIFIED, eBYTE1,     eUBYTE1,   eSHORT1,   eUSHORT1, eUINTEGER1, eLONGLONG1,
                               eULONGLONG1,   eHALFFLOAT, eBOOL1,    eINTEGER1, eFLOAT1,  eDOUBLE1,   eDOUBLE2,
                               eDOUBLE3,      eDOUBLE4,   eDOUBLE44, eENUM,     eSTRING,  eTIME,      eREFERENCE,
                               eBLOB,         eDISTANCE,  eDATETIME, eMAX_TYPES};
    for (int i = 0; i <= 24; ++i)
        EXPECT_EQ(i, static_cast<int>(lCodes[i]));
    EXPECT_EQ(4u, sizeof(ELyrType));
}

TEST(LyrTypes, TellsTheSameSizesOnEveryTarget) {
    const int lSizes[] = {0, 1, 1, 2, 2, 4, 8, 8, 2, 1, 4, 4, 8, 16, 24, 32, 128, 4, 4, 8, 1, 12, 20, 10};
    ASSERT_EQ(sizeof(lSizes), sizeof(LyrTypeSizeOf));
    for (int i = 0; i < 24; ++i)
        EXPECT_EQ(lSizes[i], LyrTypeSizeOf[i]) << i;
}

TEST(LyrTypes, TellsTheBytesAValueReallyTakes) {
    for (int i = 0; i < 24; ++i) {
        const std::size_t lSize = lyrStorageSize(static_cast<ELyrType>(i));
        EXPECT_LE(static_cast<std::size_t>(LyrTypeSizeOf[i]), lSize) << i;
        EXPECT_LE(lSize, kLyrMaxValueSize) << i;
        if (sizeof(void*) == 4) {
            EXPECT_EQ(static_cast<std::size_t>(LyrTypeSizeOf[i]), lSize) << i;
        }
    }
    EXPECT_EQ(sizeof(KString), lyrStorageSize(eSTRING));
    EXPECT_EQ(sizeof(lyrBlob), lyrStorageSize(eBLOB));
    EXPECT_EQ(1u, lyrStorageSize(eREFERENCE));
    EXPECT_EQ(0u, lyrStorageSize(eUNIDENTIFIED));
    for (int lCode : kUnknownCodes)
        EXPECT_EQ(0u, lyrStorageSize(static_cast<ELyrType>(lCode)));
}

// A new value is the default, and takes another value.
template <typename T>
void ExpectDefault(ELyrType pType) {
    const T lDefault{};
    LeakCheck lLeaks;
    void* lValue = lyrCreate(pType);
    ASSERT_NE(nullptr, lValue);
    EXPECT_EQ(lyrStorageSize(pType), MemoryProbe::LastSize());
    EXPECT_EQ(ImageOf(lDefault), ImageOf(*static_cast<const T*>(lValue))) << pType;
    EXPECT_TRUE(lyrCompare(lValue, &lDefault, pType)) << pType;
    const T lOther = Samples<T>().back();
    EXPECT_TRUE(lyrCopy(lValue, pType, &lOther, pType)) << pType;
    EXPECT_EQ(ImageOf(lOther), ImageOf(*static_cast<const T*>(lValue))) << pType;
    lyrDestroy(pType, lValue);
}

TEST(LyrCreate, MakesAZeroOrEmptyValueOfEveryCode) {
#define LYRSDK_DEFAULT(pCode, pType) ExpectDefault<pType>(pCode);
    LYRSDK_TEST_TYPES(LYRSDK_DEFAULT)
#undef LYRSDK_DEFAULT
    ExpectDefault<int>(eENUM);
}

TEST(LyrCreate, MakesAZeroByteForAReferenceAndNothingForCodesWithoutStorage) {
    LeakCheck lLeaks;
    void* lReference = lyrCreate(eREFERENCE);
    ASSERT_NE(nullptr, lReference);
    EXPECT_EQ(0, *static_cast<unsigned char*>(lReference));
    lyrDestroy(eREFERENCE, lReference);
    EXPECT_EQ(nullptr, lyrCreate(eUNIDENTIFIED));
    for (int lCode : kUnknownCodes)
        EXPECT_EQ(nullptr, lyrCreate(static_cast<ELyrType>(lCode)));
}

TEST(LyrCreate, GivesNullWithoutMemory) {
    FailAllocations lFail(0, true);
    for (int i = 0; i < 24; ++i)
        EXPECT_EQ(nullptr, lyrCreate(static_cast<ELyrType>(i)));
    EXPECT_EQ(23u, lFail.Failed());
}

TEST(LyrDestroy, IgnoresNullForEveryCode) {
    for (int i = -1; i <= 24; ++i)
        lyrDestroy(static_cast<ELyrType>(i), nullptr);
}

TEST(LyrConstruct, MakesValuesInPlaceAndEndsThem) {
    LeakCheck lLeaks;
    alignas(std::max_align_t) unsigned char lMemory[kLyrMaxValueSize + 1];
    const KString lText("some text that needs memory");
    for (int i = 0; i < 24; ++i) {
        const ELyrType lType = static_cast<ELyrType>(i);
        const std::size_t lSize = lyrStorageSize(lType);
        std::memset(lMemory, 0xA5, sizeof(lMemory));
        EXPECT_EQ(lSize > 0, lyrConstruct(lType, lMemory)) << i;
        EXPECT_EQ(0xA5, lMemory[lSize]) << i;
        if (lType == eSTRING || lType == eBLOB) {
            EXPECT_TRUE(lyrCopy(lMemory, lType, lText));
        }
        lyrDestruct(lType, lMemory);
        EXPECT_FALSE(lyrConstruct(lType, nullptr)) << i;
        lyrDestruct(lType, nullptr);
    }
    for (int lCode : kUnknownCodes) {
        EXPECT_FALSE(lyrConstruct(static_cast<ELyrType>(lCode), lMemory));
        lyrDestruct(static_cast<ELyrType>(lCode), lMemory);
    }
}

TEST(LyrCopy, RefusesSourceCodesWithoutAValueWhateverTheDestination) {
    ReportRecorder lRecorder;
    unsigned char lDst[kLyrMaxValueSize] = {7};
    const unsigned char lSrc[kLyrMaxValueSize] = {};
    for (int lDstType = -1; lDstType <= 24; ++lDstType) {
        const ELyrType lType = static_cast<ELyrType>(lDstType);
        EXPECT_FALSE(lyrCopy(lDst, lType, lSrc, eREFERENCE));
        EXPECT_EQ(std::vector<std::string>{"Trying to set value on a void Reference type"}, lRecorder.Take());
        EXPECT_FALSE(lyrCopy(lDst, lType, lSrc, eUNIDENTIFIED));
        for (int lCode : kUnknownCodes)
            EXPECT_FALSE(lyrCopy(lDst, lType, lSrc, static_cast<ELyrType>(lCode)));
        EXPECT_EQ(std::vector<std::string>(7, "Trying to assign an unknown type"), lRecorder.Take());
    }
    EXPECT_EQ(7, lDst[0]);
}

TEST(LyrCopy, RefusesNullBeforeAnythingElse) {
    const int lInt = 5;
    int lDst = 3;
    for (int i = -1; i <= 24; ++i) {
        const ELyrType lType = static_cast<ELyrType>(i);
        EXPECT_FALSE(lyrCopy(nullptr, lType, &lInt, eINTEGER1));
        EXPECT_FALSE(lyrCopy(&lDst, eINTEGER1, static_cast<const void*>(nullptr), lType));
        EXPECT_FALSE(lyrCopy(nullptr, lType, static_cast<const void*>(nullptr), lType));
    }
    EXPECT_EQ(3, lDst);
}

template <typename T>
void ExpectComparison(ELyrType pType) {
    const std::vector<T> lSamples = Samples<T>();
    for (std::size_t i = 0; i < lSamples.size(); ++i) {
        for (std::size_t j = 0; j < lSamples.size(); ++j) {
            const T& lLeft = lSamples[i];
            const T& lRight = lSamples[j];
            EXPECT_EQ(lLeft == lRight, lyrCompare(&lLeft, &lRight, pType)) << pType << ' ' << i << ' ' << j;
        }
        const T& lLeft = lSamples[i];
        EXPECT_FALSE(lyrCompare(&lLeft, nullptr, pType));
        EXPECT_FALSE(lyrCompare(nullptr, &lLeft, pType));
    }
    EXPECT_FALSE(lyrCompare(nullptr, nullptr, pType));
}

TEST(LyrCompare, ComparesTheValuesOfEveryCode) {
#define LYRSDK_COMPARE(pCode, pType) ExpectComparison<pType>(pCode);
    LYRSDK_TEST_TYPES(LYRSDK_COMPARE)
#undef LYRSDK_COMPARE
    ExpectComparison<int>(eENUM);
}

TEST(LyrCompare, LooksAtEveryByteOfAnInteger) {
    const ELyrType lTypes[] = {eBYTE1,     eUBYTE1,   eBOOL1, eSHORT1,    eUSHORT1,
                               eUINTEGER1, eINTEGER1, eENUM,  eLONGLONG1, eULONGLONG1};
    for (ELyrType lType : lTypes) {
        alignas(8) const unsigned char lZero[16] = {};
        for (std::size_t i = 0; i < 16; ++i) {
            alignas(8) unsigned char lOther[16] = {};
            lOther[i] = 1;
            EXPECT_EQ(i >= lyrStorageSize(lType), lyrCompare(lZero, lOther, lType)) << lType << ' ' << i;
        }
    }
}

TEST(LyrCompare, TreatsZerosAndNaNsAsEachTypeDoes) {
    const double lDoubles[] = {0.0, -0.0, std::numeric_limits<double>::quiet_NaN()};
    EXPECT_TRUE(lyrCompare(&lDoubles[0], &lDoubles[1], eDOUBLE1));
    EXPECT_FALSE(lyrCompare(&lDoubles[2], &lDoubles[2], eDOUBLE1));
    const float lFloats[] = {0.0f, -0.0f, std::numeric_limits<float>::quiet_NaN()};
    EXPECT_TRUE(lyrCompare(&lFloats[0], &lFloats[1], eFLOAT1));
    EXPECT_FALSE(lyrCompare(&lFloats[2], &lFloats[2], eFLOAT1));
    const lyrHalfFloat lHalves[] = {0.0f, -0.0f, lyrHalfFloat::FromBits(0x7E00)};
    EXPECT_FALSE(lyrCompare(&lHalves[0], &lHalves[1], eHALFFLOAT));
    EXPECT_TRUE(lyrCompare(&lHalves[2], &lHalves[2], eHALFFLOAT));
}

TEST(LyrCompare, ReportsCodesWithoutAValue) {
    ReportRecorder lRecorder;
    const unsigned char lByte[kLyrMaxValueSize] = {};
    EXPECT_FALSE(lyrCompare(lByte, lByte, eREFERENCE));
    EXPECT_EQ(std::vector<std::string>{"Trying to compare value on a void Reference type"}, lRecorder.Take());
    EXPECT_FALSE(lyrCompare(lByte, lByte, eUNIDENTIFIED));
    for (int lCode : kUnknownCodes)
        EXPECT_FALSE(lyrCompare(lByte, lByte, static_cast<ELyrType>(lCode)));
    const std::vector<ReportRecorder::Report> lReports = lRecorder.TakeReports();
    ASSERT_EQ(7u, lReports.size());
    for (const ReportRecorder::Report& lReport : lReports) {
        EXPECT_EQ("Trying to compare an unknown type", lReport.message);
        EXPECT_EQ("lyrfilesdk/klyrplugins/klyrtypes", lReport.file);
        EXPECT_EQ("", lReport.function);
    }
    EXPECT_FALSE(lyrCompare(nullptr, lByte, eREFERENCE));
    EXPECT_FALSE(lyrCompare(lByte, nullptr, eUNIDENTIFIED));
}

}  // namespace
}  // namespace lyrsdk
