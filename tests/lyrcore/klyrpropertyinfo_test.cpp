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

namespace lyrsdk {
namespace {

using Info = Counted<KLyrPropertyInfo>;

constexpr const char* kLongText = "a text that is long enough to need memory wherever it is copied to";

Info MakeInfo(const char* pName, ELyrType pType) {
    return Info(KLyrPropertyInfo::Create(pName, pType));
}

Info MakeTyped(const char* pName, KLyrTypeInfo* pTypeInfo) {
    return Info(KLyrPropertyInfo::Create(pName, pTypeInfo));
}

OwnedPage MakePage(const char* pName, ELyrType pType) {
    return OwnedPage(KLyrPropertyPage::Create(pName, pType));
}

// Gives the root of pPage another description.
void SetRootInfo(KLyrPropertyPage& pPage, KLyrPropertyInfo* pInfo) {
    pPage.GetPropertyEntry(0)->Set(pInfo);
}

// --- making --------------------------------------------------------------------------------------------------------

TEST(KLyrPropertyInfo, StartsWithItsNameAndTypeAlone) {
    const LeakCheck lLeaks;
    const Info lInfo = MakeInfo("width", eDOUBLE1);
    ASSERT_TRUE(lInfo);
    EXPECT_STREQ(lInfo->GetName(), "width");
    EXPECT_STREQ(lInfo->GetNameText(), "width");
    EXPECT_EQ(lInfo->GetType(), eDOUBLE1);
    EXPECT_EQ(lInfo->GetTypeInfo(), nullptr);
    EXPECT_STREQ(lInfo->GetLabel(), "");
    EXPECT_EQ(lInfo->GetUserTag(), 0);
    EXPECT_EQ(lInfo->GetUserData(), nullptr);
    for (int i = 0; i < KLyrPropertyInfo::eValueCount; ++i)
        EXPECT_FALSE(lInfo->HasMinMax(static_cast<KLyrPropertyInfo::eValueIndex>(i)));
    EXPECT_EQ(lInfo->GetEnumCount(), 0);
    EXPECT_EQ(lInfo->GetEnumValue(0), nullptr);
}

TEST(KLyrPropertyInfo, TakesEveryTypeCodeAsItIs) {
    for (const int lType : {-1, 0, 1, 17, 20, 23, 24, 255, INT_MIN, INT_MAX}) {
        const Info lInfo = MakeInfo("x", static_cast<ELyrType>(lType));
        ASSERT_TRUE(lInfo);
        EXPECT_EQ(static_cast<int>(lInfo->GetType()), lType);
    }
}

TEST(KLyrPropertyInfo, TakesEveryText) {
    const LeakCheck lLeaks;
    const std::string lLong(1 << 20, 'x');
    for (const char* lName : {"", "a b|c", "\xff\xfe\x01", lLong.c_str()}) {
        const Info lInfo = MakeInfo(lName, eINTEGER1);
        EXPECT_STREQ(lInfo->GetNameText(), lName);
        EXPECT_TRUE(lInfo->SetLabel(lName));
        EXPECT_STREQ(lInfo->GetLabel(), lName);
    }
    const Info lNull = MakeInfo(nullptr, eINTEGER1);
    ASSERT_TRUE(lNull);
    EXPECT_STREQ(lNull->GetNameText(), "");
    EXPECT_TRUE(lNull->GetName().IsEmpty());
    ASSERT_TRUE(MakeTyped(nullptr, nullptr));
}

TEST(KLyrPropertyInfo, InfosOfOneNameShareItsText) {
    const Info lOne = MakeInfo("shared name", eINTEGER1);
    const Info lTwo = MakeInfo("shared name", eSTRING);
    EXPECT_TRUE(lOne->GetName() == lTwo->GetName());
    EXPECT_EQ(lOne->GetNameText(), lTwo->GetNameText());
}

TEST(KLyrPropertyInfo, TheNameThatIsGivenOutLivesOnWithoutTheInfo) {
    const LeakCheck lLeaks;
    Info lInfo = MakeInfo("gone", eINTEGER1);
    const KLyrStringSymbol lName = lInfo->GetName();
    lInfo.Reset();
    EXPECT_STREQ(lName, "gone");
}

TEST(KLyrPropertyInfo, IsFreedWithItsLastReference) {
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    KLyrPropertyInfo* lInfo = KLyrPropertyInfo::Create("name", eENUM);
    EXPECT_TRUE(lInfo->SetLabel("label"));
    EXPECT_EQ(lInfo->AddEnumValue("one"), 0);
    lInfo->IncRef();
    lInfo->IncRef();
    lInfo->DecRef();
    EXPECT_STREQ(lInfo->GetLabel(), "label");
    lInfo->DecRef();
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks);
}

// --- type ----------------------------------------------------------------------------------------------------------

TEST(KLyrPropertyInfo, IsStoredAsTheRootOfItsTypeInfo) {
    const LeakCheck lLeaks;
    const OwnedPage lVector = MakePage("vector", eDOUBLE3);
    const Info lInfo = MakeTyped("position", lVector.get());
    EXPECT_EQ(lInfo->GetTypeInfo(), lVector.get());
    EXPECT_EQ(lInfo->GetType(), eDOUBLE3);
    EXPECT_STREQ(lInfo->GetNameText(), "position");

    const Info lPlain = MakeTyped("plain", nullptr);
    EXPECT_EQ(lPlain->GetTypeInfo(), nullptr);
    EXPECT_EQ(lPlain->GetType(), eUNIDENTIFIED);
}

TEST(KLyrPropertyInfo, FollowsTypeInfosOfTypeInfos) {
    const LeakCheck lLeaks;
    const OwnedPage lInner = MakePage("inner", eTIME);
    const OwnedPage lMiddle(KLyrPropertyPage::Create("middle", lInner.get()));
    const OwnedPage lInstance(KLyrPropertyPage::Create(lMiddle.get()));
    const Info lInfo = MakeTyped("outer", lInstance.get());
    EXPECT_EQ(lInfo->GetType(), eTIME);
    EXPECT_EQ(lInfo->GetTypeInfo(), lInstance.get());
}

TEST(KLyrPropertyInfo, HasNoTypeWhenItsTypeInfosRunInACircle) {
    const LeakCheck lLeaks;
    for (int lLength = 1; lLength <= 5; ++lLength) {
        std::vector<OwnedPage> lPages;
        for (int i = 0; i < lLength; ++i)
            lPages.push_back(MakePage("page", eINTEGER1));
        for (std::size_t i = 0; i < lPages.size(); ++i)
            SetRootInfo(*lPages[i], KLyrPropertyInfo::Create("root", lPages[(i + 1) % lPages.size()].get()));
        const Info lInfo = MakeTyped("outside", lPages[0].get());
        EXPECT_EQ(lInfo->GetType(), eUNIDENTIFIED) << lLength;
        EXPECT_EQ(lPages[0]->GetType(0), eUNIDENTIFIED) << lLength;
        int lNumber = 1;
        EXPECT_FALSE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lNumber, eINTEGER1));
        EXPECT_EQ(lInfo->AddEnumValue("one"), -1);
    }
}

TEST(KLyrPropertyInfo, HasNoTypeWhenTheRootOfItsTypeInfoHasNoDescription) {
    const OwnedPage lPage = MakePage("page", eINTEGER1);
    const Info lInfo = MakeTyped("typed", lPage.get());
    SetRootInfo(*lPage, nullptr);
    EXPECT_EQ(lInfo->GetType(), eUNIDENTIFIED);
    ASSERT_TRUE(lPage->RemoveOwnEntry(0));
    EXPECT_EQ(lInfo->GetType(), eUNIDENTIFIED);
}

TEST(KLyrPropertyInfo, KeepsTheTypeWhenItsTypeInfoIsDestroyed) {
    const LeakCheck lLeaks;
    OwnedPage lInner = MakePage("inner", eDISTANCE);
    OwnedPage lOuter(KLyrPropertyPage::Create("outer", lInner.get()));
    const Info lOne = MakeTyped("one", lOuter.get());
    const Info lTwo = MakeTyped("two", lOuter.get());
    Info lGone = MakeTyped("gone", lOuter.get());
    lGone.Reset();
    lOuter.reset();
    for (const Info* lInfo : {&lOne, &lTwo}) {
        EXPECT_EQ((*lInfo)->GetTypeInfo(), nullptr);
        EXPECT_EQ((*lInfo)->GetType(), eDISTANCE);
    }
    lInner.reset();
    EXPECT_EQ(lOne->GetType(), eDISTANCE);
    const Info lClone(lOne->Clone(nullptr));
    EXPECT_EQ(lClone->GetType(), eDISTANCE);
}

TEST(KLyrPropertyInfo, KeepsTheTypeThroughAChainWhoseEndIsDestroyedFirst) {
    const LeakCheck lLeaks;
    OwnedPage lInner = MakePage("inner", eBLOB);
    OwnedPage lOuter(KLyrPropertyPage::Create("outer", lInner.get()));
    const Info lInfo = MakeTyped("one", lOuter.get());
    lInner.reset();
    EXPECT_EQ(lInfo->GetType(), eBLOB);
    EXPECT_EQ(lInfo->GetTypeInfo(), lOuter.get());
    lOuter.reset();
    EXPECT_EQ(lInfo->GetType(), eBLOB);
}

// --- clone ---------------------------------------------------------------------------------------------------------

TEST(KLyrPropertyInfo, TheCloneHasNameAndTypeAndNothingElse) {
    const LeakCheck lLeaks;
    int lData = 0;
    const Info lInfo = MakeInfo("mode", eENUM);
    EXPECT_TRUE(lInfo->SetLabel("Mode"));
    lInfo->SetUserTag(3);
    lInfo->SetUserData(&lData);
    const int lOne = 1;
    EXPECT_TRUE(lInfo->SetMinMax(KLyrPropertyInfo::eValueMin, &lOne, eINTEGER1));
    EXPECT_EQ(lInfo->AddEnumValue("off"), 0);

    const OwnedPage lPage = MakePage("page", eINTEGER1);
    const Info lClone(lInfo->Clone(lPage.get()));
    ASSERT_TRUE(lClone);
    EXPECT_STREQ(lClone->GetNameText(), "mode");
    EXPECT_EQ(lClone->GetType(), eENUM);
    EXPECT_STREQ(lClone->GetLabel(), "");
    EXPECT_EQ(lClone->GetUserTag(), 0);
    EXPECT_EQ(lClone->GetUserData(), nullptr);
    EXPECT_FALSE(lClone->HasMinMax(KLyrPropertyInfo::eValueMin));
    EXPECT_EQ(lClone->GetEnumCount(), 0);
    EXPECT_EQ(lClone->GetEnumValue(0), nullptr);

    EXPECT_STREQ(lInfo->GetLabel(), "Mode");
    EXPECT_EQ(lInfo->GetEnumCount(), 1);
}

TEST(KLyrPropertyInfo, TheCloneOfATypedInfoIsTypedByTheSamePage) {
    const LeakCheck lLeaks;
    OwnedPage lVector = MakePage("vector", eDOUBLE3);
    const Info lInfo = MakeTyped("position", lVector.get());
    const Info lClone(lInfo->Clone(nullptr));
    EXPECT_EQ(lClone->GetTypeInfo(), lVector.get());
    EXPECT_EQ(lClone->GetType(), eDOUBLE3);
    EXPECT_STREQ(lClone->GetNameText(), "position");
    lVector.reset();
    EXPECT_EQ(lClone->GetTypeInfo(), nullptr);
    EXPECT_EQ(lClone->GetType(), eDOUBLE3);
}

// --- label, tag and data -------------------------------------------------------------------------------------------

TEST(KLyrPropertyInfo, KeepsLabelTagAndData) {
    const LeakCheck lLeaks;
    const Info lInfo = MakeInfo("name", eINTEGER1);
    for (const char* lLabel : {"first", "", "second", "second", kLongText}) {
        EXPECT_TRUE(lInfo->SetLabel(lLabel));
        EXPECT_STREQ(lInfo->GetLabel(), lLabel);
    }
    EXPECT_TRUE(lInfo->SetLabel(nullptr));
    EXPECT_STREQ(lInfo->GetLabel(), "");
    for (const int lTag : {1, -1, 0, INT_MIN, INT_MAX}) {
        lInfo->SetUserTag(lTag);
        EXPECT_EQ(lInfo->GetUserTag(), lTag);
    }
    const int lData = 0;
    lInfo->SetUserData(&lData);
    EXPECT_EQ(lInfo->GetUserData(), &lData);
    lInfo->SetUserData(nullptr);
    EXPECT_EQ(lInfo->GetUserData(), nullptr);
    EXPECT_STREQ(lInfo->GetNameText(), "name");
}

TEST(KLyrPropertyInfo, TakesItsOwnLabelAsItsLabel) {
    const LeakCheck lLeaks;
    const Info lInfo = MakeInfo("name", eINTEGER1);
    EXPECT_TRUE(lInfo->SetLabel("a label"));
    EXPECT_TRUE(lInfo->SetLabel(lInfo->GetLabel()));
    EXPECT_STREQ(lInfo->GetLabel(), "a label");
    EXPECT_TRUE(lInfo->SetLabel(lInfo->GetLabel() + 2));
    EXPECT_STREQ(lInfo->GetLabel(), "label");
    EXPECT_TRUE(lInfo->SetLabel(lInfo->GetNameText()));
    EXPECT_STREQ(lInfo->GetLabel(), "name");
}

// --- failing memory ------------------------------------------------------------------------------------------------

TEST(KLyrPropertyInfo, IsNotMadeOrClonedByHalvesWithoutMemory) {
    const OwnedPage lPage = MakePage("page", eINTEGER1);
    for (const bool lTyped : {false, true}) {
        const auto lMake = [&] { return lTyped ? MakeTyped(kLongText, lPage.get()) : MakeInfo(kLongText, eSTRING); };
        WithEveryAllocationFailing([&](const FailurePoint& pPoint) {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            const Info lInfo = lMake();
            EXPECT_EQ(!lInfo, lFail.Failed() > 0);
            if (lInfo) {
                EXPECT_STREQ(lInfo->GetNameText(), kLongText);
            }
            return lFail.Failed();
        });
        const Info lInfo = lMake();
        WithEveryAllocationFailing([&](const FailurePoint& pPoint) {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            const Info lClone(lInfo->Clone(nullptr));
            EXPECT_EQ(!lClone, lFail.Failed() > 0);
            return lFail.Failed();
        });
        EXPECT_STREQ(lInfo->GetNameText(), kLongText);
    }
}

TEST(KLyrPropertyInfo, KeepsItsLabelWhenThereIsNoMemoryForAnother) {
    WithEveryAllocationFailing([](const FailurePoint& pPoint) {
        const Info lInfo = MakeInfo("name", eINTEGER1);
        EXPECT_TRUE(lInfo->SetLabel("before"));
        bool lDone = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lDone = lInfo->SetLabel(kLongText);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lDone, lFailed == 0);
        EXPECT_STREQ(lInfo->GetLabel(), lDone ? kLongText : "before");
        EXPECT_TRUE(lInfo->SetLabel(kLongText));
        EXPECT_STREQ(lInfo->GetLabel(), kLongText);
        return lFailed;
    });
}

}  // namespace
}  // namespace lyrsdk
