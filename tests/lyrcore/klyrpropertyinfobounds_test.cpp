#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyitems.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/counted.h"
#include "tests/support/failing_memory.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

using Info = Counted<KLyrPropertyInfo>;
using Bound = KLyrPropertyInfo::eValueIndex;
using Messages = std::vector<std::string>;

constexpr const char* kLongText = "a text that is long enough to need memory wherever it is copied to";
constexpr Bound kBounds[] = {KLyrPropertyInfo::eValueMin, KLyrPropertyInfo::eValueSoftMin, KLyrPropertyInfo::eValueMax,
                             KLyrPropertyInfo::eValueSoftMax};

Info MakeInfo(ELyrType pType) {
    return Info(KLyrPropertyInfo::Create("name", pType));
}

std::string BoundText(const Info& pInfo, Bound pBound) {
    KString lText;
    EXPECT_TRUE(pInfo->GetMinMax(pBound, &lText, eSTRING));
    return lText.Buffer();
}

// --- bounds --------------------------------------------------------------------------------------------------------

TEST(KLyrPropertyInfoBounds, HaveTheirFixedIndices) {
    EXPECT_EQ(static_cast<int>(KLyrPropertyInfo::eValueMin), 0);
    EXPECT_EQ(static_cast<int>(KLyrPropertyInfo::eValueSoftMin), 1);
    EXPECT_EQ(static_cast<int>(KLyrPropertyInfo::eValueMax), 2);
    EXPECT_EQ(static_cast<int>(KLyrPropertyInfo::eValueSoftMax), 3);
    EXPECT_EQ(static_cast<int>(KLyrPropertyInfo::eValueCount), 4);
}

TEST(KLyrPropertyInfoBounds, AreSetAndReadOneByOne) {
    const LeakCheck lLeaks;
    const Info lInfo = MakeInfo(eINTEGER1);
    for (const Bound lBound : kBounds) {
        int lRead = 77;
        EXPECT_FALSE(lInfo->HasMinMax(lBound));
        EXPECT_FALSE(lInfo->GetMinMax(lBound, &lRead, eINTEGER1));
        EXPECT_EQ(lRead, 77);
        const int lValue = 10 * lBound;
        EXPECT_TRUE(lInfo->SetMinMax(lBound, &lValue, eINTEGER1));
        EXPECT_TRUE(lInfo->HasMinMax(lBound));
    }
    for (const Bound lBound : kBounds)
        EXPECT_EQ(BoundText(lInfo, lBound), std::to_string(10 * lBound));
    const int lOther = -5;
    EXPECT_TRUE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMax, &lOther, eINTEGER1));
    EXPECT_EQ(BoundText(lInfo, KLyrPropertyInfo::eValueMax), "-5");
    EXPECT_EQ(BoundText(lInfo, KLyrPropertyInfo::eValueSoftMax), "30");
}

TEST(KLyrPropertyInfoBounds, AreConvertedToAndFromTheTypeOfTheProperty) {
    const Info lInfo = MakeInfo(eSHORT1);
    const double lDouble = 12.9;
    EXPECT_TRUE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lDouble, eDOUBLE1));
    float lFloat = 0;
    EXPECT_TRUE(lInfo->GetMinMax(KLyrPropertyInfo::eValueMin, &lFloat, eFLOAT1));
    EXPECT_EQ(lFloat, 12.0f);
    EXPECT_EQ(lInfo->GetType(), eSHORT1);
}

TEST(KLyrPropertyInfoBounds, OfEveryTypeHoldAValueOfThatType) {
    const LeakCheck lLeaks;
    for (int i = 1; i < eMAX_TYPES; ++i) {
        const ELyrType lType = static_cast<ELyrType>(i);
        if (lType == eREFERENCE)
            continue;
        const Info lInfo = MakeInfo(lType);
        void* lValue = lyrCreate(lType);
        void* lRead = lyrCreate(lType);
        const KString lText(kLongText);
        if (lType == eSTRING || lType == eBLOB) {
            EXPECT_TRUE(lyrCopy(lValue, lType, &lText, eSTRING));
        }
        for (const Bound lBound : kBounds) {
            EXPECT_TRUE(lInfo->SetMinMax(lBound, lValue, lType)) << i;
            EXPECT_TRUE(lInfo->GetMinMax(lBound, lRead, lType)) << i;
            EXPECT_TRUE(lyrCompare(lValue, lRead, lType)) << i;
        }
        lyrDestroy(lType, lRead);
        lyrDestroy(lType, lValue);
    }
}

TEST(KLyrPropertyInfoBounds, AreRefusedByATypeWithoutStorage) {
    const int lValue = 3;
    for (const int lType : {0, 24, 255, -1, INT_MIN, INT_MAX}) {
        const Info lInfo = MakeInfo(static_cast<ELyrType>(lType));
        const std::size_t lAllocations = MemoryProbe::Allocations();
        for (const Bound lBound : kBounds) {
            int lRead = 7;
            EXPECT_FALSE(lInfo->SetMinMax(lBound, &lValue, eINTEGER1));
            EXPECT_FALSE(lInfo->HasMinMax(lBound));
            EXPECT_FALSE(lInfo->GetMinMax(lBound, &lRead, eINTEGER1));
        }
        EXPECT_EQ(MemoryProbe::Allocations(), lAllocations) << lType;
    }
}

TEST(KLyrPropertyInfoBounds, OfAReferenceCannotBeSetAndSaySo) {
    const LeakCheck lLeaks;
    ReportRecorder lReports;
    const Info lInfo = MakeInfo(eREFERENCE);
    const int lValue = 3;
    EXPECT_FALSE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lValue, eINTEGER1));
    EXPECT_EQ(lReports.Take(), Messages{"Trying to set value on a void Reference type"});
}

TEST(KLyrPropertyInfoBounds, ARefusedConversionLeavesADefaultBoundOrTheOneThereWas) {
    const LeakCheck lLeaks;
    const Info lInfo = MakeInfo(eINTEGER1);
    const KString lWord("many");
    EXPECT_FALSE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lWord, eSTRING));
    EXPECT_TRUE(lInfo->HasMinMax(KLyrPropertyInfo::eValueMin));
    EXPECT_EQ(BoundText(lInfo, KLyrPropertyInfo::eValueMin), "0");

    const int lFive = 5;
    EXPECT_TRUE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lFive, eINTEGER1));
    EXPECT_FALSE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lWord, eSTRING));
    EXPECT_EQ(BoundText(lInfo, KLyrPropertyInfo::eValueMin), "5");
    EXPECT_FALSE(lInfo->HasMinMax(KLyrPropertyInfo::eValueMax));
}

TEST(KLyrPropertyInfoBounds, AreNotReadIntoATypeThatRefusesThem) {
    const Info lInfo = MakeInfo(eINTEGER1);
    const int lFive = 5;
    EXPECT_TRUE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lFive, eINTEGER1));
    lyrDouble4 lVector;
    lVector[3] = 1.0;
    EXPECT_FALSE(lInfo->GetMinMax(KLyrPropertyInfo::eValueMin, &lVector, eDOUBLE4));
    EXPECT_EQ(lVector[3], 1.0);
}

TEST(KLyrPropertyInfoBounds, AnIndexThatIsNoBoundIsRefused) {
    const LeakCheck lLeaks;
    const Info lInfo = MakeInfo(eINTEGER1);
    int lValue = 3;
    for (const int lIndex : {4, 5, -1, 1000, INT_MIN, INT_MAX}) {
        const Bound lBound = static_cast<Bound>(lIndex);
        EXPECT_FALSE(lInfo->HasMinMax(lBound)) << lIndex;
        EXPECT_FALSE(lInfo->SetMinMax(lBound, &lValue, eINTEGER1)) << lIndex;
        EXPECT_FALSE(lInfo->GetMinMax(lBound, &lValue, eINTEGER1)) << lIndex;
    }
    for (const Bound lBound : kBounds)
        EXPECT_FALSE(lInfo->HasMinMax(lBound));
    EXPECT_EQ(lValue, 3);
}

TEST(KLyrPropertyInfoBounds, NullPointersAreRefusedBeforeAnythingElse) {
    const Info lInfo = MakeInfo(eINTEGER1);
    for (int lType = -1; lType <= eMAX_TYPES; ++lType) {
        EXPECT_FALSE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, nullptr, static_cast<ELyrType>(lType)));
        EXPECT_FALSE(lInfo->GetMinMax(KLyrPropertyInfo::eValueMin, nullptr, static_cast<ELyrType>(lType)));
    }
    EXPECT_FALSE(lInfo->HasMinMax(KLyrPropertyInfo::eValueMin));
    const int lFive = 5;
    EXPECT_TRUE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lFive, eINTEGER1));
    EXPECT_FALSE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, nullptr, eINTEGER1));
    EXPECT_FALSE(lInfo->GetMinMax(KLyrPropertyInfo::eValueMin, nullptr, eINTEGER1));
    EXPECT_EQ(BoundText(lInfo, KLyrPropertyInfo::eValueMin), "5");
}

TEST(KLyrPropertyInfoBounds, CodesWithoutAValueAreReportedAndChangeNothing) {
    const LeakCheck lLeaks;
    ReportRecorder lReports;
    const Info lInfo = MakeInfo(eINTEGER1);
    const int lFive = 5;
    int lMemory = 9;
    for (const int lType : {-1, 0, 24, INT_MIN, INT_MAX}) {
        const ELyrType lCode = static_cast<ELyrType>(lType);
        EXPECT_FALSE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMax, &lMemory, lCode));
        EXPECT_EQ(lReports.Take(), Messages{"Trying to assign an unknown type"}) << lType;
        EXPECT_FALSE(lInfo->HasMinMax(KLyrPropertyInfo::eValueMax)) << lType;

        EXPECT_TRUE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lFive, eINTEGER1));
        EXPECT_FALSE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lMemory, lCode));
        EXPECT_FALSE(lInfo->GetMinMax(KLyrPropertyInfo::eValueMin, &lMemory, lCode));
        EXPECT_EQ(lReports.Take(), Messages(2, "Trying to assign an unknown type")) << lType;
        EXPECT_EQ(BoundText(lInfo, KLyrPropertyInfo::eValueMin), "5");
    }
    EXPECT_FALSE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lMemory, eREFERENCE));
    EXPECT_FALSE(lInfo->GetMinMax(KLyrPropertyInfo::eValueMin, &lMemory, eREFERENCE));
    EXPECT_EQ(lReports.Take(), Messages(2, "Trying to set value on a void Reference type"));
    EXPECT_EQ(BoundText(lInfo, KLyrPropertyInfo::eValueMin), "5");
    EXPECT_EQ(lMemory, 9);
}

TEST(KLyrPropertyInfoBounds, OfATypedPropertyStayReadableWhateverBecomesOfItsTypeInfo) {
    const LeakCheck lLeaks;
    OwnedPage lPage(KLyrPropertyPage::Create("page", eSTRING));
    const Info lInfo(KLyrPropertyInfo::Create("typed", lPage.get()));
    const KString lText(kLongText);
    EXPECT_TRUE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lText, eSTRING));

    lPage->GetPropertyEntry(0)->Set(KLyrPropertyInfo::Create("root", eDOUBLE44));
    EXPECT_EQ(lInfo->GetType(), eDOUBLE44);
    EXPECT_EQ(BoundText(lInfo, KLyrPropertyInfo::eValueMin), kLongText);
    lyrDouble44 lMatrix;
    EXPECT_TRUE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMax, &lMatrix, eDOUBLE44));
    EXPECT_EQ(BoundText(lInfo, KLyrPropertyInfo::eValueMax), "0,0,0,0");

    lPage->GetPropertyEntry(0)->Set(static_cast<KLyrPropertyInfo*>(nullptr));
    EXPECT_EQ(BoundText(lInfo, KLyrPropertyInfo::eValueMin), kLongText);
    lPage.reset();
    EXPECT_EQ(BoundText(lInfo, KLyrPropertyInfo::eValueMin), kLongText);
    EXPECT_TRUE(lInfo->SetMinMax(KLyrPropertyInfo::eValueSoftMin, &lText, eSTRING));
}

TEST(KLyrPropertyInfoBounds, KeepWhatTheyHeldWhenThereIsNoMemory) {
    const KString lNew(kLongText);
    WithEveryAllocationFailing([&](const FailurePoint& pPoint) {
        const Info lInfo = MakeInfo(eSTRING);
        const KString lOld("before");
        EXPECT_TRUE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lOld, eSTRING));
        bool lOverwrites = false;
        bool lAdds = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lOverwrites = lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lNew, eSTRING);
            lAdds = lInfo->SetMinMax(KLyrPropertyInfo::eValueMax, &lNew, eSTRING);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lOverwrites && lAdds, lFailed == 0);
        EXPECT_EQ(BoundText(lInfo, KLyrPropertyInfo::eValueMin), lOverwrites ? kLongText : "before");
        if (lInfo->HasMinMax(KLyrPropertyInfo::eValueMax)) {
            EXPECT_EQ(BoundText(lInfo, KLyrPropertyInfo::eValueMax), lAdds ? kLongText : "");
        }
        EXPECT_TRUE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMax, &lNew, eSTRING));
        EXPECT_EQ(BoundText(lInfo, KLyrPropertyInfo::eValueMax), kLongText);
        return lFailed;
    });
}

// --- enumeration ---------------------------------------------------------------------------------------------------

class KLyrPropertyInfoEnum : public testing::Test {
protected:
    // All texts, a comma behind each.
    static std::string Texts(const Info& pInfo) {
        std::string lTexts;
        for (int i = 0; i < pInfo->GetEnumCount(); ++i)
            lTexts += std::string(pInfo->GetEnumValue(i)) + ",";
        return lTexts;
    }

    LeakCheck mLeaks;
    Info mInfo = MakeInfo(eENUM);
};

TEST_F(KLyrPropertyInfoEnum, NumbersTextsFromZeroUpwards) {
    EXPECT_EQ(mInfo->AddEnumValue("red"), 0);
    EXPECT_EQ(mInfo->AddEnumValue("green"), 1);
    EXPECT_EQ(mInfo->AddEnumValue("blue"), 2);
    EXPECT_EQ(mInfo->GetEnumCount(), 3);
    EXPECT_STREQ(mInfo->GetEnumValue(1), "green");
}

TEST_F(KLyrPropertyInfoEnum, RefusesToAddATextTwice) {
    EXPECT_EQ(mInfo->AddEnumValue("red"), 0);
    EXPECT_EQ(mInfo->AddEnumValue("red"), -1);
    EXPECT_EQ(mInfo->AddEnumValue("Red"), 1);
    EXPECT_EQ(mInfo->AddEnumValue(nullptr), 2);
    EXPECT_EQ(mInfo->AddEnumValue(""), -1);
    EXPECT_EQ(mInfo->AddEnumValue(nullptr), -1);
    EXPECT_EQ(Texts(mInfo), "red,Red,,");
}

TEST_F(KLyrPropertyInfoEnum, AnIndexPastTheEndHasNoTextAndOneBelowZeroTheFirst) {
    for (const int lIndex : {0, 1, -1, INT_MIN, INT_MAX})
        EXPECT_EQ(mInfo->GetEnumValue(lIndex), nullptr);
    mInfo->AddEnumValue("red");
    mInfo->AddEnumValue("green");
    for (const int lIndex : {2, 3, INT_MAX})
        EXPECT_EQ(mInfo->GetEnumValue(lIndex), nullptr);
    for (const int lIndex : {-1, INT_MIN})
        EXPECT_STREQ(mInfo->GetEnumValue(lIndex), "red");
    mInfo->RemoveEnumValue(0);
    mInfo->RemoveEnumValue(0);
    for (const int lIndex : {0, -1, INT_MIN})
        EXPECT_EQ(mInfo->GetEnumValue(lIndex), nullptr);
}

TEST_F(KLyrPropertyInfoEnum, InsertsAnywhereAndRepeatsTexts) {
    mInfo->InsertEnumValue(0, "b");
    mInfo->InsertEnumValue(0, "a");
    mInfo->InsertEnumValue(2, "d");
    mInfo->InsertEnumValue(2, "c");
    mInfo->InsertEnumValue(100, "a");
    mInfo->InsertEnumValue(INT_MAX, nullptr);
    EXPECT_EQ(Texts(mInfo), "a,b,c,d,a,,");
    mInfo->InsertEnumValue(-1, "x");
    mInfo->InsertEnumValue(INT_MIN, "x");
    EXPECT_EQ(Texts(mInfo), "a,b,c,d,a,,");
}

TEST_F(KLyrPropertyInfoEnum, SetsAndRemovesWhatIsThere) {
    for (const char* lText : {"a", "b", "c"})
        mInfo->AddEnumValue(lText);
    mInfo->SetEnumValue(1, "c");
    EXPECT_EQ(Texts(mInfo), "a,c,c,");
    mInfo->SetEnumValue(0, nullptr);
    EXPECT_EQ(Texts(mInfo), ",c,c,");
    for (const int lIndex : {-1, 3, INT_MIN, INT_MAX}) {
        mInfo->SetEnumValue(lIndex, "x");
        mInfo->RemoveEnumValue(lIndex);
    }
    EXPECT_EQ(Texts(mInfo), ",c,c,");
    mInfo->RemoveEnumValue(0);
    mInfo->RemoveEnumValue(1);
    EXPECT_EQ(Texts(mInfo), "c,");
    EXPECT_EQ(mInfo->AddEnumValue("d"), 1);
}

TEST_F(KLyrPropertyInfoEnum, RemovingMakesAnEmptyListWhenThereIsNone) {
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    mInfo->RemoveEnumValue(0);
    EXPECT_GT(MemoryProbe::LiveBlocks(), lBlocks);
    EXPECT_EQ(mInfo->GetEnumCount(), 0);
    EXPECT_EQ(mInfo->GetEnumValue(0), nullptr);
    const std::size_t lWithList = MemoryProbe::LiveBlocks();
    mInfo->RemoveEnumValue(0);
    mInfo->SetEnumValue(0, "x");
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lWithList);
}

TEST_F(KLyrPropertyInfoEnum, TakesItsOwnTextsAsArguments) {
    mInfo->AddEnumValue("first text");
    EXPECT_EQ(mInfo->AddEnumValue(mInfo->GetEnumValue(0)), -1);
    EXPECT_EQ(mInfo->AddEnumValue(mInfo->GetEnumValue(0) + 6), 1);
    for (int i = 0; i < 10; ++i)
        mInfo->InsertEnumValue(0, mInfo->GetEnumValue(0));
    mInfo->SetEnumValue(3, mInfo->GetEnumValue(3) + 6);
    mInfo->SetEnumValue(4, mInfo->GetEnumValue(4));
    EXPECT_EQ(mInfo->GetEnumCount(), 12);
    EXPECT_STREQ(mInfo->GetEnumValue(0), "first text");
    EXPECT_STREQ(mInfo->GetEnumValue(3), "text");
    EXPECT_STREQ(mInfo->GetEnumValue(4), "first text");
    EXPECT_STREQ(mInfo->GetEnumValue(11), "text");
}

TEST_F(KLyrPropertyInfoEnum, IsForEnumerationsOnly) {
    for (int lType = -1; lType <= eMAX_TYPES; ++lType) {
        if (lType == eENUM)
            continue;
        const Info lOther = MakeInfo(static_cast<ELyrType>(lType));
        const std::size_t lAllocations = MemoryProbe::Allocations();
        EXPECT_EQ(lOther->AddEnumValue("red"), -1) << lType;
        lOther->InsertEnumValue(0, "red");
        lOther->SetEnumValue(0, "red");
        lOther->RemoveEnumValue(0);
        EXPECT_EQ(lOther->GetEnumCount(), 0) << lType;
        EXPECT_EQ(lOther->GetEnumValue(0), nullptr) << lType;
        EXPECT_EQ(MemoryProbe::Allocations(), lAllocations) << lType;
    }
}

// The count is that of the list, whatever the type has become.
TEST_F(KLyrPropertyInfoEnum, FollowsTheTypeOfItsTypeInfo) {
    const OwnedPage lPage(KLyrPropertyPage::Create("page", eENUM));
    const Info lTyped(KLyrPropertyInfo::Create("typed", lPage.get()));
    EXPECT_EQ(lTyped->AddEnumValue("red"), 0);
    lPage->GetPropertyEntry(0)->Set(KLyrPropertyInfo::Create("root", eINTEGER1));
    EXPECT_EQ(lTyped->GetEnumCount(), 1);
    EXPECT_EQ(lTyped->GetEnumValue(0), nullptr);
    EXPECT_EQ(lTyped->AddEnumValue("green"), -1);
    lTyped->RemoveEnumValue(0);
    EXPECT_EQ(lTyped->GetEnumCount(), 1);
}

TEST_F(KLyrPropertyInfoEnum, ChangesNothingWithoutMemory) {
    struct Row {
        const char* mName;
        void (*mChange)(KLyrPropertyInfo&);
        const char* mAfter;
    };
    const Row lRows[] = {
        {"add", [](KLyrPropertyInfo& pInfo) { pInfo.AddEnumValue(kLongText); }, "a,b,c,d,L,"},
        {"insert", [](KLyrPropertyInfo& pInfo) { pInfo.InsertEnumValue(1, kLongText); }, "a,L,b,c,d,"},
        {"set", [](KLyrPropertyInfo& pInfo) { pInfo.SetEnumValue(2, kLongText); }, "a,b,L,d,"},
    };
    for (const Row& lRow : lRows) {
        SCOPED_TRACE(lRow.mName);
        WithEveryAllocationFailing([&](const FailurePoint& pPoint) {
            const Info lInfo = MakeInfo(eENUM);
            for (const char* lText : {"a", "b", "c", "d"})
                lInfo->AddEnumValue(lText);
            std::size_t lFailed = 0;
            {
                const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
                lRow.mChange(*lInfo.Get());
                lFailed = lFail.Failed();
            }
            if (lFailed > 0) {
                EXPECT_EQ(Texts(lInfo), "a,b,c,d,");
                lRow.mChange(*lInfo.Get());
            }
            std::string lExpected(lRow.mAfter);
            lExpected.replace(lExpected.find('L'), 1, kLongText);
            EXPECT_EQ(Texts(lInfo), lExpected);
            return lFailed;
        });
    }
}

TEST_F(KLyrPropertyInfoEnum, GetsItsListLaterWhenThereWasNoMemoryForIt) {
    WithEveryAllocationFailing([](const FailurePoint& pPoint) {
        const Info lInfo = MakeInfo(eENUM);
        int lIndex = 0;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lIndex = lInfo->AddEnumValue(kLongText);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lIndex, lFailed > 0 ? -1 : 0);
        EXPECT_EQ(lInfo->GetEnumCount(), lFailed > 0 ? 0 : 1);
        EXPECT_EQ(lInfo->AddEnumValue(kLongText), lFailed > 0 ? 0 : -1);
        return lFailed;
    });
    WithEveryAllocationFailing([](const FailurePoint& pPoint) {
        const Info lInfo = MakeInfo(eENUM);
        const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
        lInfo->RemoveEnumValue(0);
        EXPECT_EQ(lInfo->GetEnumCount(), 0);
        return lFail.Failed();
    });
}

}  // namespace
}  // namespace lyrsdk
