#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyitems.h"
#include "tests/support/counted.h"
#include "tests/support/failing_memory.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

using Value = Counted<KLyrPropertyValue>;
using Messages = std::vector<std::string>;

constexpr const char* kUnknownType = "Trying to assign an unknown type";
constexpr const char* kVoidReference = "Trying to set value on a void Reference type";
// Longer than any text that could be kept without a block of its own.
constexpr const char* kLongText = "a text that is long enough to need memory wherever it is copied to";

Value MakeValue(const void* pValue, ELyrType pType) {
    return Value(KLyrPropertyValue::Create(pValue, pType));
}

Value MakeText(const char* pText) {
    const KString lText(pText);
    return MakeValue(&lText, eSTRING);
}

std::string TextOf(const Value& pValue) {
    KString lText;
    EXPECT_TRUE(pValue->Get(&lText, eSTRING));
    return lText.Buffer();
}

std::vector<ELyrType> TypesWithValues() {
    std::vector<ELyrType> lTypes;
    for (int i = 1; i < eMAX_TYPES; ++i)
        if (i != eREFERENCE)
            lTypes.push_back(static_cast<ELyrType>(i));
    return lTypes;
}

TEST(KLyrPropertyValue, StartsAtTheDefaultOfItsType) {
    const LeakCheck lLeaks;
    for (const ELyrType lType : TypesWithValues()) {
        const Value lValue = MakeValue(nullptr, lType);
        ASSERT_TRUE(lValue);
        EXPECT_EQ(lValue->GetType(), lType);
        void* lDefault = lyrCreate(lType);
        void* lRead = lyrCreate(lType);
        EXPECT_TRUE(lValue->Get(lRead, lType)) << lType;
        EXPECT_TRUE(lyrCompare(lDefault, lRead, lType)) << lType;
        lyrDestroy(lType, lRead);
        lyrDestroy(lType, lDefault);
    }
}

TEST(KLyrPropertyValue, ATypeWithoutStorageHasNeitherStorageNorValue) {
    const LeakCheck lLeaks;
    for (const int lType : {0, 24, 25, 255, -1, INT_MIN, INT_MAX}) {
        const std::size_t lBlocks = MemoryProbe::LiveBlocks();
        const int lNumber = 3;
        const Value lValue = MakeValue(&lNumber, static_cast<ELyrType>(lType));
        ASSERT_TRUE(lValue) << lType;
        EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks + 1) << lType;
        EXPECT_EQ(static_cast<int>(lValue->GetType()), lType);
        int lRead = 7;
        EXPECT_FALSE(lValue->Get(&lRead, eINTEGER1));
        EXPECT_FALSE(lValue->Get(&lRead, eUNIDENTIFIED));
        EXPECT_FALSE(lValue->Set(&lNumber, eINTEGER1));
        EXPECT_FALSE(lValue->Set(&lNumber, static_cast<ELyrType>(lType)));
        EXPECT_EQ(lRead, 7);
        const Value lClone(lValue->Clone(nullptr));
        ASSERT_TRUE(lClone);
        EXPECT_FALSE(lClone->Get(&lRead, eINTEGER1));
        EXPECT_EQ(static_cast<int>(lClone->GetType()), lType);
    }
}

TEST(KLyrPropertyValue, CopiesTheValueItIsMadeFrom) {
    const LeakCheck lLeaks;
    const KString lText(kLongText);
    const Value lValue = MakeValue(&lText, eSTRING);
    EXPECT_EQ(TextOf(lValue), kLongText);

    lyrDouble44 lMatrix;
    for (int i = 0; i < 16; ++i)
        lMatrix[i / 4][i % 4] = i + 0.5;
    const Value lOther = MakeValue(&lMatrix, eDOUBLE44);
    lyrDouble44 lRead;
    ASSERT_TRUE(lOther->Get(&lRead, eDOUBLE44));
    EXPECT_TRUE(lRead == lMatrix);
}

TEST(KLyrPropertyValue, AReferenceIsNeverCopiedSetOrRead) {
    const LeakCheck lLeaks;
    ReportRecorder lReports;
    const unsigned char lByte = 7;
    const Value lValue = MakeValue(&lByte, eREFERENCE);
    ASSERT_TRUE(lValue);
    const Value lClone(lValue->Clone(nullptr));
    ASSERT_TRUE(lClone);
    EXPECT_EQ(lReports.Take(), Messages());

    unsigned char lRead = 9;
    int lNumber = 9;
    EXPECT_FALSE(lValue->Get(&lRead, eREFERENCE));
    EXPECT_FALSE(lValue->Get(&lNumber, eINTEGER1));
    EXPECT_FALSE(lClone->Set(&lByte, eREFERENCE));
    EXPECT_FALSE(lClone->Set(&lNumber, eINTEGER1));
    EXPECT_EQ(lReports.Take(), Messages(4, kVoidReference));
    EXPECT_EQ(lRead, 9);
    EXPECT_EQ(lNumber, 9);
}

TEST(KLyrPropertyValue, ConvertsBothWays) {
    const Value lValue = MakeValue(nullptr, eINTEGER1);
    const double lDouble = -2.9;
    EXPECT_TRUE(lValue->Set(&lDouble, eDOUBLE1));
    EXPECT_EQ(TextOf(lValue), "-2");
    const KString lText(" 41 ");
    EXPECT_TRUE(lValue->Set(&lText, eSTRING));
    float lFloat = 0;
    EXPECT_TRUE(lValue->Get(&lFloat, eFLOAT1));
    EXPECT_EQ(lFloat, 41.0f);
    EXPECT_EQ(lValue->GetType(), eINTEGER1);
}

TEST(KLyrPropertyValue, ARefusedConversionChangesNeitherSide) {
    const Value lShort = MakeValue(nullptr, eSHORT1);
    const int lTwelve = 12;
    EXPECT_TRUE(lShort->Set(&lTwelve, eINTEGER1));
    const unsigned int lWide = 5;
    EXPECT_FALSE(lShort->Set(&lWide, eUINTEGER1));
    const KString lWord("twelve");
    EXPECT_FALSE(lShort->Set(&lWord, eSTRING));
    EXPECT_EQ(TextOf(lShort), "12");
    lyrDouble4 lVector;
    lVector[0] = 1.0;
    EXPECT_FALSE(lShort->Get(&lVector, eDOUBLE4));
    EXPECT_EQ(lVector[0], 1.0);

    ReportRecorder lReports;
    lyrDouble44 lMatrix;
    EXPECT_FALSE(lShort->Get(&lMatrix, eDOUBLE44));
    EXPECT_EQ(lReports.Take(), Messages{"Incompatible type assigment"});
}

TEST(KLyrPropertyValue, NullPointersAreRefusedBeforeAnythingElse) {
    for (int i = 1; i < eMAX_TYPES; ++i) {
        const Value lValue = MakeValue(nullptr, static_cast<ELyrType>(i));
        for (int lType = -1; lType <= eMAX_TYPES; ++lType) {
            EXPECT_FALSE(lValue->Get(nullptr, static_cast<ELyrType>(lType)));
            EXPECT_FALSE(lValue->Set(nullptr, static_cast<ELyrType>(lType)));
        }
    }
}

TEST(KLyrPropertyValue, CodesWithoutAValueAreReportedAndChangeNothing) {
    ReportRecorder lReports;
    const int lFive = 5;
    const Value lValue = MakeValue(&lFive, eINTEGER1);
    int lMemory = 9;
    for (const int lType : {-1, 0, 24, 255, INT_MIN, INT_MAX}) {
        EXPECT_FALSE(lValue->Get(&lMemory, static_cast<ELyrType>(lType)));
        EXPECT_EQ(lReports.Take(), Messages{kUnknownType}) << lType;
        EXPECT_FALSE(lValue->Set(&lMemory, static_cast<ELyrType>(lType)));
        EXPECT_EQ(lReports.Take(), Messages{kUnknownType}) << lType;
    }
    EXPECT_FALSE(lValue->Get(&lMemory, eREFERENCE));
    EXPECT_EQ(lReports.Take(), Messages{kVoidReference});
    EXPECT_FALSE(lValue->Set(&lMemory, eREFERENCE));
    EXPECT_EQ(lReports.Take(), Messages{kVoidReference});
    EXPECT_EQ(lMemory, 9);
    EXPECT_EQ(TextOf(lValue), "5");
}

TEST(KLyrPropertyValue, TheCloneHasTheSameTypeAndAValueOfItsOwn) {
    const LeakCheck lLeaks;
    Value lValue = MakeText(kLongText);
    const Value lClone(lValue->Clone(nullptr));
    ASSERT_TRUE(lClone);
    EXPECT_EQ(lClone->GetType(), eSTRING);
    const KString lOther("other");
    EXPECT_TRUE(lValue->Set(&lOther, eSTRING));
    EXPECT_EQ(TextOf(lClone), kLongText);
    lValue.Reset();
    EXPECT_EQ(TextOf(lClone), kLongText);
}

TEST(KLyrPropertyValue, TheClonesOfAllTypesReadTheSame) {
    const LeakCheck lLeaks;
    const OwnedPage lPage(KLyrPropertyPage::Create("page", eINTEGER1));
    const double lNumber = 1.0;
    for (const ELyrType lType : TypesWithValues()) {
        ReportRecorder lReports;
        const Value lValue = MakeValue(nullptr, lType);
        lValue->Set(&lNumber, eDOUBLE1);
        lReports.Clear();
        const Value lClone(lValue->Clone(lPage.get()));
        ASSERT_TRUE(lClone) << lType;
        void* lLeft = lyrCreate(lType);
        void* lRight = lyrCreate(lType);
        EXPECT_TRUE(lValue->Get(lLeft, lType)) << lType;
        EXPECT_TRUE(lClone->Get(lRight, lType)) << lType;
        EXPECT_TRUE(lyrCompare(lLeft, lRight, lType)) << lType;
        lyrDestroy(lType, lRight);
        lyrDestroy(lType, lLeft);
    }
}

// A block of the item and the value, aligned for both.
TEST(KLyrPropertyValue, IsOneBlockWhateverItsType) {
    const LeakCheck lLeaks;
    std::size_t lOffset = sizeof(KLyrPropertyValue);
    while (lOffset % kLyrMaxValueAlignment != 0)
        ++lOffset;
    for (int i = 0; i <= eMAX_TYPES; ++i) {
        const ELyrType lType = static_cast<ELyrType>(i);
        const std::size_t lBlocks = MemoryProbe::LiveBlocks();
        const Value lValue = MakeValue(nullptr, lType);
        EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks + 1) << i;
        const std::size_t lSize = lyrStorageSize(lType);
        EXPECT_EQ(MemoryProbe::LastSize(), lSize == 0 ? sizeof(KLyrPropertyValue) : lOffset + lSize) << i;
    }
}

TEST(KLyrPropertyValue, ReadsAndWritesOfFixedSizeTakeNoMemory) {
    const double lNumber = 3.0;
    for (const ELyrType lType : TypesWithValues()) {
        if (lType == eSTRING || lType == eBLOB)
            continue;
        ReportRecorder lReports;
        const Value lValue = MakeValue(nullptr, lType);
        alignas(std::max_align_t) unsigned char lRead[kLyrMaxValueSize] = {};
        const std::size_t lBefore = MemoryProbe::Allocations();
        EXPECT_TRUE(lValue->Get(lRead, lType)) << lType;
        EXPECT_TRUE(lValue->Set(lRead, lType)) << lType;
        lValue->Set(&lNumber, eDOUBLE1);
        EXPECT_EQ(MemoryProbe::Allocations(), lBefore) << lType;
        lReports.Clear();
    }
}

TEST(KLyrPropertyValue, IsFreedWithItsLastReference) {
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    KLyrPropertyValue* lValue = KLyrPropertyValue::Create(nullptr, eINTEGER1);
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks + 1);
    lValue->IncRef();
    lValue->IncRef();
    lValue->DecRef();
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks + 1);
    lValue->DecRef();
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks);
}

// The count goes below 0 then, and only reaching 0 from above frees.
TEST(KLyrPropertyValue, AReferenceGivenBackThatNobodyTookFreesNothing) {
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    KLyrPropertyValue* lValue = KLyrPropertyValue::Create(nullptr, eINTEGER1);
    lValue->DecRef();
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks + 1);
    lValue->IncRef();
    lValue->IncRef();
    lValue->DecRef();
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks);
}

TEST(KLyrPropertyValue, IsNotMadeOrClonedByHalvesWithoutMemory) {
    const KString lText(kLongText);
    for (const ELyrType lType : {eINTEGER1, eSTRING, eREFERENCE}) {
        const void* lFrom = lType == eSTRING ? &lText : nullptr;
        WithEveryAllocationFailing([&](const FailurePoint& pPoint) {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            const Value lValue = MakeValue(lFrom, lType);
            EXPECT_EQ(!lValue, lFail.Failed() > 0);
            return lFail.Failed();
        });
        const Value lValue = MakeValue(lFrom, lType);
        WithEveryAllocationFailing([&](const FailurePoint& pPoint) {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            const Value lClone(lValue->Clone(nullptr));
            EXPECT_EQ(!lClone, lFail.Failed() > 0);
            return lFail.Failed();
        });
    }
    const lyrBlob lBlob = [] {
        lyrBlob lBytes;
        EXPECT_TRUE(lBytes.Assign(kLongText, 20));
        return lBytes;
    }();
    WithEveryAllocationFailing([&](const FailurePoint& pPoint) {
        const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
        const Value lValue = MakeValue(&lBlob, eBLOB);
        EXPECT_EQ(!lValue, lFail.Failed() > 0);
        return lFail.Failed();
    });
}

TEST(KLyrPropertyValue, KeepsItsValueWhenSettingFindsNoMemory) {
    const KString lNew(kLongText);
    WithEveryAllocationFailing([&](const FailurePoint& pPoint) {
        const Value lValue = MakeText("before");
        bool lDone = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lDone = lValue->Set(&lNew, eSTRING);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lDone, lFailed == 0);
        EXPECT_EQ(TextOf(lValue), lFailed > 0 ? "before" : kLongText);
        EXPECT_TRUE(lValue->Set(&lNew, eSTRING));
        EXPECT_EQ(TextOf(lValue), kLongText);
        return lFailed;
    });
}

TEST(KLyrPropertyValue, LeavesTheDestinationAloneWhenReadingFindsNoMemory) {
    const Value lValue = MakeText(kLongText);
    WithEveryAllocationFailing([&](const FailurePoint& pPoint) {
        KString lRead("before");
        bool lDone = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lDone = lValue->Get(&lRead, eSTRING);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lDone, lFailed == 0);
        EXPECT_STREQ(lRead.Buffer(), lFailed > 0 ? "before" : kLongText);
        return lFailed;
    });
}

}  // namespace
}  // namespace lyrsdk
