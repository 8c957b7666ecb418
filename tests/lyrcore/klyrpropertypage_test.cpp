#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

#include <gtest/gtest.h>

#include <climits>
#include <type_traits>

#include "tests/support/page_family.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

static_assert(!std::is_copy_constructible_v<KLyrPropertyPage> && !std::is_copy_assignable_v<KLyrPropertyPage>);
static_assert(!std::is_default_constructible_v<KLyrPropertyPage> && !std::is_destructible_v<KLyrPropertyPage>);
static_assert(!std::is_polymorphic_v<KLyrPropertyPage>);

// --- the id generator ------------------------------------------------------------------------------------------------

class KLyrPropertyIdGeneratorTest : public PageTest {
protected:
    Counted<KLyrPropertyIdGenerator> mGenerator{LyrSdkNew<KLyrPropertyIdGenerator>()};
};

TEST_F(KLyrPropertyIdGeneratorTest, CountsFromZero) {
    EXPECT_EQ(mGenerator->GetNextIdAndInc(), 0);
    EXPECT_EQ(mGenerator->GetNextIdAndInc(), 1);
    EXPECT_EQ(mGenerator->PeekNextId(), 2);
    EXPECT_EQ(mGenerator->PeekNextId(), 2);
    EXPECT_EQ(mGenerator->GetNextIdAndInc(), 2);
}

TEST_F(KLyrPropertyIdGeneratorTest, SkipsForwardOnly) {
    EXPECT_TRUE(mGenerator->SkipTo(0));
    EXPECT_TRUE(mGenerator->SkipTo(40));
    EXPECT_FALSE(mGenerator->SkipTo(39));
    EXPECT_FALSE(mGenerator->SkipTo(-1));
    EXPECT_FALSE(mGenerator->SkipTo(INT_MIN));
    EXPECT_EQ(mGenerator->GetNextIdAndInc(), 40);
}

TEST_F(KLyrPropertyIdGeneratorTest, EndsAfterTheLargestId) {
    ASSERT_TRUE(mGenerator->SkipTo(INT_MAX));
    EXPECT_EQ(mGenerator->GetNextIdAndInc(), INT_MAX);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(mGenerator->PeekNextId(), -1);
        EXPECT_EQ(mGenerator->GetNextIdAndInc(), -1);
    }
    EXPECT_FALSE(mGenerator->SkipTo(INT_MAX));
    EXPECT_FALSE(mGenerator->SkipTo(0));
}

TEST_F(KLyrPropertyIdGeneratorTest, LivesUntilItsLastReference) {
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    mGenerator->IncRef();
    mGenerator->DecRef();
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks);
    mGenerator.Reset();
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks - 1);
}

// --- making ----------------------------------------------------------------------------------------------------------

class KLyrPropertyPageTest : public PageTest {};

TEST_F(KLyrPropertyPageTest, FamilyRootHoldsOnePropertyAndNothingElse) {
    const OwnedPage lPage = MakeRoot("scene", eDOUBLE1);
    EXPECT_EQ(lPage->GetPropertyEntryCount(), 1);
    EXPECT_EQ(lPage->GetMinimumPropertyIdAndEntry(-1), -1);
    EXPECT_EQ(lPage->GetParent(0), -1);
    EXPECT_STREQ(lPage->GetName(0), "scene");
    EXPECT_EQ(lPage->GetType(0), eDOUBLE1);
    EXPECT_EQ(NumberOf(lPage, 0), 0.0);
    EXPECT_EQ(lPage->GetInstanceOf(), nullptr);
    EXPECT_EQ(lPage->GetInstances().GetCount(), 0);
    EXPECT_EQ(lPage->GetDataPtr(), nullptr);
    EXPECT_EQ(lPage->Add(0, "a", eDOUBLE1), 1);
}

TEST_F(KLyrPropertyPageTest, CanBeMadeWithAnyTypeCode) {
    for (int lCode : {INT_MIN, -1, 0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11,     12,
                      13,      14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, INT_MAX}) {
        SCOPED_TRACE(lCode);
        const ELyrType lType = static_cast<ELyrType>(lCode);
        const OwnedPage lPage = MakeRoot("x", lType);
        EXPECT_EQ(lPage->GetType(0), lType);
        EXPECT_EQ(lPage->GetTypeInfo(0), nullptr);
        ASSERT_NE(OwnItem<KLyrPropertyValue>(lPage, 0), nullptr);
        EXPECT_EQ(OwnItem<KLyrPropertyValue>(lPage, 0)->GetType(), lType);
        KString lText;
        if (lCode != eREFERENCE) {
            EXPECT_EQ(lPage->Get(0, &lText, eSTRING), lCode > 0 && lCode < eMAX_TYPES);
        }
    }
}

TEST_F(KLyrPropertyPageTest, TakesANullNameAsTheEmptyOne) {
    const OwnedPage lPage = MakeRoot(nullptr, eDOUBLE1);
    const OwnedPage lTyped(KLyrPropertyPage::Create(nullptr, lPage.get()));
    EXPECT_STREQ(lPage->GetName(0), "");
    EXPECT_STREQ(lTyped->GetName(0), "");
    const int lId = lPage->Add(0, nullptr, eINTEGER1);
    EXPECT_STREQ(lPage->GetName(lId), "");
    EXPECT_EQ(lPage->FastFind(0, "", nullptr, true), lId);
}

TEST_F(KLyrPropertyPageTest, OfNoPageIsAnUnnamedFamilyRoot) {
    const OwnedPage lPage(KLyrPropertyPage::Create(nullptr));
    EXPECT_EQ(lPage->GetInstanceOf(), nullptr);
    EXPECT_EQ(lPage->GetPropertyEntryCount(), 1);
    EXPECT_EQ(lPage->GetParent(0), -1);
    EXPECT_STREQ(lPage->GetName(0), "");
    EXPECT_EQ(lPage->GetType(0), eUNIDENTIFIED);
    EXPECT_NE(OwnItem<KLyrPropertyInfo>(lPage, 0), nullptr);
    double lNumber = 7;
    EXPECT_FALSE(lPage->Get(0, &lNumber, eDOUBLE1));
    EXPECT_FALSE(lPage->Set(0, &lNumber, eDOUBLE1, false));
    EXPECT_FALSE(lPage->Set(0, &lNumber, eDOUBLE1, true));
    EXPECT_EQ(lNumber, 7);
    EXPECT_EQ(lPage->Add(0, "a", eDOUBLE1), 1);
}

TEST_F(KLyrPropertyPageTest, RootTypedByAPageHasItsTypeAndCopiesOfItsProperties) {
    const OwnedPage lType = MakeRoot("vector", eDOUBLE3);
    lType->Add(0, "x", eDOUBLE1);
    lType->Add(0, "y", eDOUBLE1);
    const OwnedPage lPage = MakeTyped("position", lType);
    EXPECT_STREQ(lPage->GetName(0), "position");
    EXPECT_EQ(lPage->GetType(0), eDOUBLE3);
    EXPECT_EQ(lPage->GetTypeInfo(0), lType.get());
    EXPECT_EQ(TextOf(lPage, 0), "0,0,0");
    EXPECT_EQ(Tree(lPage, 0), "x=0 y=0");
    EXPECT_EQ(lPage->GetPropertyEntryCount(), 3);
    EXPECT_NE(lPage->GetIdGenerator(), lType->GetIdGenerator());
}

TEST_F(KLyrPropertyPageTest, RootTypedByNoPageIsUnidentifiedAndAlone) {
    const OwnedPage lPage(KLyrPropertyPage::Create("x", static_cast<KLyrPropertyPage*>(nullptr)));
    EXPECT_EQ(lPage->GetType(0), eUNIDENTIFIED);
    EXPECT_EQ(lPage->GetTypeInfo(0), nullptr);
    EXPECT_EQ(lPage->GetPropertyEntryCount(), 1);
    const int lId = lPage->Add(0, "y", static_cast<KLyrPropertyPage*>(nullptr));
    EXPECT_EQ(lId, 1);
    EXPECT_EQ(lPage->GetType(lId), eUNIDENTIFIED);
    EXPECT_EQ(lPage->GetPropertyEntryCount(), 2);
}

TEST_F(KLyrPropertyPageTest, InstanceHoldsNothingAndSeesAll) {
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    SetNumber(lRoot, lRoot->Add(0, "a", eDOUBLE1), 4);
    const OwnedPage lInstance = MakeInstance(lRoot);
    EXPECT_EQ(lInstance->GetInstanceOf(), lRoot.get());
    EXPECT_EQ(Held(lInstance), "");
    EXPECT_EQ(Seen(lInstance), Seen(lRoot));
    EXPECT_EQ(lInstance->GetPropertyEntryCount(), 2);
    EXPECT_EQ(lInstance->GetInstances().GetCount(), 0);
    EXPECT_EQ(lInstance->GetDataPtr(), nullptr);
    EXPECT_EQ(lInstance->GetIdGenerator(), lRoot->GetIdGenerator());
}

TEST_F(KLyrPropertyPageTest, IsListedOnceInThePageItIsAnInstanceOf) {
    const OwnedPage lRoot = MakeRoot();
    const OwnedPage lFirst = MakeInstance(lRoot);
    const OwnedPage lSecond = MakeInstance(lRoot);
    const OwnedPage lBelow = MakeInstance(lFirst);
    KArrayTemplate<KLyrPropertyPage*>& lInstances = lRoot->GetInstances();
    ASSERT_EQ(lInstances.GetCount(), 2);
    EXPECT_EQ(lInstances.GetAt(0), lFirst.get());
    EXPECT_EQ(lInstances.GetAt(1), lSecond.get());
    EXPECT_EQ(&lRoot->GetInstances(), &lInstances);
    ASSERT_EQ(lFirst->GetInstances().GetCount(), 1);
    EXPECT_EQ(lFirst->GetInstances().GetAt(0), lBelow.get());
}

TEST_F(KLyrPropertyPageTest, IdsAreDistinctInAFamilyAndAddedOnesAreSeenBelowOnly) {
    const OwnedPage lRoot = MakeRoot();
    const OwnedPage lMiddle = MakeInstance(lRoot);
    const OwnedPage lSide = MakeInstance(lRoot);
    const OwnedPage lLeaf = MakeInstance(lMiddle);
    EXPECT_EQ(lRoot->Add(0, "a", eDOUBLE1), 1);
    EXPECT_EQ(lMiddle->Add(0, "b", eDOUBLE1), 2);
    EXPECT_EQ(lSide->Add(0, "c", eDOUBLE1), 3);
    EXPECT_EQ(lLeaf->Add(0, "d", eDOUBLE1), 4);
    EXPECT_EQ(lRoot->Add(0, "e", eDOUBLE1), 5);
    EXPECT_EQ(Tree(lRoot, 0), "a=0 e=0");
    EXPECT_EQ(Tree(lMiddle, 0), "a=0 b=0 e=0");
    EXPECT_EQ(Tree(lSide, 0), "a=0 c=0 e=0");
    EXPECT_EQ(Tree(lLeaf, 0), "a=0 b=0 d=0 e=0");
}

TEST_F(KLyrPropertyPageTest, IsOnlyItself) {
    const OwnedPage lRoot = MakeRoot();
    const OwnedPage lInstance = MakeInstance(lRoot);
    EXPECT_TRUE(lRoot->Is(lRoot.get()));
    EXPECT_FALSE(lRoot->Is(lInstance.get()));
    EXPECT_FALSE(lInstance->Is(lRoot.get()));
    EXPECT_FALSE(lRoot->Is(nullptr));
}

TEST_F(KLyrPropertyPageTest, RefusesToReparent) {
    const OwnedPage lPage = MakeRoot();
    const int lA = lPage->Add(0, "a", eDOUBLE1);
    const int lB = lPage->Add(0, "b", eDOUBLE1);
    const std::string lBefore = Seen(lPage);
    for (int lChild : {lB, lA, 0, -1, 99, INT_MAX, INT_MIN})
        for (int lParent : {lA, lB, 0, -1, 99, INT_MAX, INT_MIN})
            EXPECT_FALSE(lPage->Reparent(lChild, lParent));
    EXPECT_EQ(Seen(lPage), lBefore);
}

TEST_F(KLyrPropertyPageTest, KeepsADataPointerOfItsOwn) {
    const OwnedPage lRoot = MakeRoot();
    const OwnedPage lInstance = MakeInstance(lRoot);
    int lData = 0;
    lRoot->SetDataPtr(&lData);
    EXPECT_EQ(lRoot->GetDataPtr(), &lData);
    EXPECT_EQ(lInstance->GetDataPtr(), nullptr);
    lRoot->SetDataPtr(nullptr);
    EXPECT_EQ(lRoot->GetDataPtr(), nullptr);
}

// --- adding ----------------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageTest, StoresTheParentIdAsGiven) {
    const OwnedPage lPage = MakeRoot();
    for (int lParent : {0, 1, 77, -1, -2, INT_MAX, INT_MIN}) {
        const int lId = lPage->Add(lParent, "a", eDOUBLE1);
        EXPECT_EQ(lPage->GetParent(lId), lParent);
        const int lOther = lPage->Add(lParent, nullptr, nullptr, nullptr, true);
        EXPECT_EQ(lPage->GetParent(lOther), lParent);
    }
}

TEST_F(KLyrPropertyPageTest, NewPropertyHasEveryFlagOffAndSetLocally) {
    const OwnedPage lRoot = MakeRoot();
    const OwnedPage lInstance = MakeInstance(lRoot);
    EXPECT_EQ(OwnFlagData(lRoot, 0), 0x7FFF0000u);
    EXPECT_EQ(OwnFlagData(lInstance, lInstance->Add(0, "a", eDOUBLE1)), 0x7FFF0000u);
    EXPECT_EQ(OwnFlagData(lInstance, lInstance->Add(0, nullptr, nullptr, nullptr, false)), 0x7FFF0000u);
}

TEST_F(KLyrPropertyPageTest, AddedItemsAreTheOnesGiven) {
    const OwnedPage lPage = MakeRoot();
    const Counted<KLyrPropertyInfo> lInfo(KLyrPropertyInfo::Create("a", eINTEGER1));
    const Counted<KLyrPropertyValue> lValue(KLyrPropertyValue::Create(nullptr, eDOUBLE1));
    const Counted<KLyrPropertyConnect> lConnect(KLyrPropertyConnect::Create(lPage.get(), 1));
    const int lId = lPage->Add(0, lInfo.Get(), lValue.Get(), lConnect.Get(), true);
    EXPECT_EQ(lId, 1);
    EXPECT_EQ(OwnItem<KLyrPropertyInfo>(lPage, lId), lInfo.Get());
    EXPECT_EQ(OwnItem<KLyrPropertyValue>(lPage, lId), lValue.Get());
    EXPECT_EQ(OwnItem<KLyrPropertyConnect>(lPage, lId), lConnect.Get());
    EXPECT_EQ(lPage->GetType(lId), eINTEGER1);
}

TEST_F(KLyrPropertyPageTest, ItemsMayBeSharedByPropertiesAndOutliveThem) {
    const Counted<KLyrPropertyValue> lValue(KLyrPropertyValue::Create(nullptr, eDOUBLE1));
    const Counted<KLyrPropertyInfo> lInfo(KLyrPropertyInfo::Create("shared", eDOUBLE1));
    {
        const OwnedPage lPage = MakeRoot();
        const OwnedPage lOther = MakeRoot();
        const int lA = lPage->Add(0, lInfo.Get(), lValue.Get(), nullptr, true);
        const int lB = lPage->Add(0, lInfo.Get(), lValue.Get(), nullptr, true);
        const int lC = lOther->Add(0, lInfo.Get(), lValue.Get(), nullptr, true);
        EXPECT_TRUE(SetNumber(lPage, lA, 8));
        EXPECT_EQ(NumberOf(lPage, lB), 8);
        EXPECT_EQ(NumberOf(lOther, lC), 8);
    }
    double lNumber = 0;
    EXPECT_TRUE(lValue->Get(&lNumber, eDOUBLE1));
    EXPECT_EQ(lNumber, 8);
    EXPECT_STREQ(lInfo->GetNameText(), "shared");
}

TEST_F(KLyrPropertyPageTest, PropertyWithoutItemsReadsAsNothing) {
    const OwnedPage lPage = MakeRoot();
    const int lId = lPage->Add(0, nullptr, nullptr, nullptr, true);
    ASSERT_NE(OwnEntry(lPage, lId), nullptr);
    EXPECT_STREQ(lPage->GetName(lId), "");
    EXPECT_EQ(lPage->GetType(lId), eUNIDENTIFIED);
    double lNumber = 3;
    EXPECT_FALSE(lPage->Get(lId, &lNumber, eDOUBLE1));
    EXPECT_FALSE(lPage->GetDefaultValue(lId, &lNumber, eDOUBLE1));
    EXPECT_FALSE(lPage->Set(lId, &lNumber, eDOUBLE1, false));
    EXPECT_FALSE(lPage->Set(lId, &lNumber, eDOUBLE1, true));
    EXPECT_EQ(lNumber, 3);
    EXPECT_EQ(ChildrenOf(lPage, 0), std::vector<int>{lId});
}

TEST_F(KLyrPropertyPageTest, HandsOutTheLargestIdAndNoneBehindIt) {
    const OwnedPage lRoot = MakeRoot();
    const OwnedPage lInstance = MakeInstance(lRoot);
    ASSERT_TRUE(lRoot->GetIdGenerator()->SkipTo(INT_MAX - 1));
    EXPECT_EQ(lRoot->Add(0, "a", eDOUBLE1), INT_MAX - 1);
    EXPECT_EQ(lInstance->Add(0, "b", eDOUBLE1), INT_MAX);
    const std::string lBefore = Seen(lInstance);
    const Counted<KLyrPropertyInfo> lInfo(KLyrPropertyInfo::Create("c", eINTEGER1));
    for (const OwnedPage* lPage : {&lRoot, &lInstance}) {
        EXPECT_EQ((*lPage)->Add(0, "c", eDOUBLE1), -1);
        EXPECT_EQ((*lPage)->Add(0, "c", lRoot.get()), -1);
        EXPECT_EQ((*lPage)->Add(0, lInfo.Get(), nullptr, nullptr, true), -1);
    }
    EXPECT_EQ(Seen(lInstance), lBefore);
    EXPECT_EQ(lInstance->GetPropertyEntryCount(), INT_MAX);
    EXPECT_EQ(lRoot->GetPropertyEntryCount(), INT_MAX);
    EXPECT_EQ(Tree(lInstance, 0), "a=0 b=0");
    EXPECT_EQ(lInstance->GetMinimumPropertyIdAndEntry(INT_MAX), -1);
}

TEST_F(KLyrPropertyPageTest, CountStopsAtTheLargestInteger) {
    const OwnedPage lPage = MakeRoot();
    const OwnedPage lInstance = MakeInstance(lPage);
    ASSERT_TRUE(lPage->GetIdGenerator()->SkipTo(INT_MAX));
    EXPECT_EQ(lPage->Add(0, "last", eDOUBLE1), INT_MAX);
    EXPECT_EQ(lPage->GetPropertyEntryCount(), INT_MAX);
    EXPECT_EQ(lInstance->GetPropertyEntryCount(), INT_MAX);
}

// --- entries and items -----------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageTest, FindsAnEntryInTheNearestPageThatHoldsIt) {
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    const OwnedPage lMiddle = MakeInstance(lRoot);
    const OwnedPage lLeaf = MakeInstance(lMiddle);
    KLyrPropertyPage* lHolder = lLeaf.get();
    KLyrPropertyEntry* lEntry = lRoot->GetPropertyEntry(0);
    EXPECT_EQ(lLeaf->GetPropertyEntry(0, &lHolder), lEntry);
    EXPECT_EQ(lHolder, lRoot.get());
    KLyrPropertyEntry* lOwn = lMiddle->ChangePropertyEntryState(0, eLyrOverride);
    EXPECT_NE(lOwn, lEntry);
    EXPECT_EQ(lLeaf->GetPropertyEntry(0, &lHolder), lOwn);
    EXPECT_EQ(lHolder, lMiddle.get());
    EXPECT_EQ(lMiddle->GetPropertyEntry(0), lOwn);
    EXPECT_EQ(lRoot->GetPropertyEntry(0), lEntry);
    for (int lId : {1, -1, -2, INT_MAX, INT_MIN}) {
        lHolder = lLeaf.get();
        EXPECT_EQ(lLeaf->GetPropertyEntry(lId, &lHolder), nullptr);
        EXPECT_EQ(lHolder, nullptr);
        EXPECT_EQ(lLeaf->GetPropertyEntry(lId), nullptr);
    }
}

template <typename T>
void ExpectItemAt(const OwnedPage& pAsked, int pId, const OwnedPage& pHolder) {
    KLyrPropertyPage* lHolder = nullptr;
    const T* lItem = pAsked->GetPropertyItem<T>(nullptr, pId, &lHolder);
    EXPECT_NE(lItem, nullptr);
    EXPECT_EQ(lItem, OwnItem<T>(pHolder, pId));
    EXPECT_EQ(lHolder, pHolder.get());
    EXPECT_EQ(pAsked->GetPropertyItem<T>(nullptr, pId), lItem);
}

template <typename T>
void ExpectNoItem(const OwnedPage& pAsked, int pId) {
    KLyrPropertyPage* lHolder = pAsked.get();
    EXPECT_EQ(pAsked->GetPropertyItem<T>(nullptr, pId, &lHolder), nullptr);
    EXPECT_EQ(lHolder, nullptr);
    EXPECT_EQ(pAsked->GetPropertyItem<T>(nullptr, pId), nullptr);
    EXPECT_EQ(pAsked->GetFirstPropertyItem<T>(pId, nullptr), nullptr);
}

TEST_F(KLyrPropertyPageTest, EachItemIsFoundByAWalkOfItsOwn) {
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    const OwnedPage lMiddle = MakeInstance(lRoot);
    const OwnedPage lGap = MakeInstance(lMiddle);
    const OwnedPage lLeaf = MakeInstance(lGap);
    ASSERT_TRUE(SetNumber(lMiddle, 0, 2));
    ASSERT_NE(lLeaf->ChangePropertyEntryState(0, eLyrOverride), nullptr);
    for (const OwnedPage* lPage : {&lMiddle, &lGap, &lLeaf}) {
        ExpectItemAt<KLyrPropertyInfo>(*lPage, 0, lRoot);
        ExpectItemAt<KLyrPropertyValue>(*lPage, 0, lMiddle);
        ExpectNoItem<KLyrPropertyConnect>(*lPage, 0);
        EXPECT_EQ(NumberOf(*lPage, 0), 2);
    }
    ExpectItemAt<KLyrPropertyFlags>(lGap, 0, lMiddle);
    ExpectItemAt<KLyrPropertyFlags>(lLeaf, 0, lLeaf);
    ExpectItemAt<KLyrPropertyValue>(lRoot, 0, lRoot);
    EXPECT_EQ(NumberOf(lRoot, 0), 0);
}

TEST_F(KLyrPropertyPageTest, NoItemIsFoundOfAnUnknownProperty) {
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    const OwnedPage lInstance = MakeInstance(lRoot);
    const int lBelow = lInstance->Add(0, "a", eDOUBLE1);
    for (int lId : {lBelow, lBelow + 1, -1, -2, INT_MAX, INT_MIN}) {
        ExpectNoItem<KLyrPropertyInfo>(lRoot, lId);
        ExpectNoItem<KLyrPropertyValue>(lRoot, lId);
        ExpectNoItem<KLyrPropertyConnect>(lRoot, lId);
        ExpectNoItem<KLyrPropertyFlags>(lRoot, lId);
        double lNumber = 6;
        EXPECT_FALSE(lRoot->Get(lId, &lNumber, eDOUBLE1));
        EXPECT_FALSE(lRoot->GetDefaultValue(lId, &lNumber, eDOUBLE1));
        EXPECT_EQ(lNumber, 6);
        EXPECT_FALSE(lRoot->RemoveOwnEntry(lId));
    }
}

TEST_F(KLyrPropertyPageTest, FirstItemIsTheFarthestUp) {
    const OwnedPage lRoot = MakeRoot();
    const OwnedPage lOrigin = MakeInstance(lRoot);
    const OwnedPage lGap = MakeInstance(lOrigin);
    const OwnedPage lLeaf = MakeInstance(lGap);
    const int lId = lOrigin->Add(0, "a", eDOUBLE1);
    EXPECT_EQ(lLeaf->GetFirstPropertyItem<KLyrPropertyValue>(lId, nullptr), lOrigin.get());
    SetNumber(lOrigin, lId, 1);
    SetNumber(lGap, lId, 2);
    SetNumber(lLeaf, lId, 3);
    for (const OwnedPage* lPage : {&lOrigin, &lGap, &lLeaf}) {
        EXPECT_EQ((*lPage)->GetFirstPropertyItem<KLyrPropertyValue>(lId, nullptr), lOrigin.get());
        EXPECT_EQ(DefaultOf(*lPage, lId), 1);
    }
    EXPECT_EQ(lRoot->GetFirstPropertyItem<KLyrPropertyValue>(lId, nullptr), nullptr);
    EXPECT_EQ(lLeaf->GetFirstPropertyItem<KLyrPropertyInfo>(lId, nullptr), lOrigin.get());
    EXPECT_EQ(lLeaf->GetFirstPropertyItem<KLyrPropertyFlags>(lId, nullptr), lOrigin.get());
    EXPECT_EQ(lLeaf->GetFirstPropertyItem<KLyrPropertyFlags>(0, nullptr), lRoot.get());
}

TEST_F(KLyrPropertyPageTest, DefaultValueIsTheOneAtTheTop) {
    const OwnedPage lRoot = MakeRoot();
    const OwnedPage lMiddle = MakeInstance(lRoot);
    const OwnedPage lLeaf = MakeInstance(lMiddle);
    const int lId = lRoot->Add(0, nullptr, nullptr, nullptr, true);
    const Counted<KLyrPropertyValue> lValue(KLyrPropertyValue::Create(nullptr, eDOUBLE1));
    lMiddle->ChangePropertyEntryState(lId, eLyrOverride)->Set(lValue.Get());
    SetNumber(lMiddle, lId, 5);
    SetNumber(lLeaf, lId, 6);
    EXPECT_EQ(DefaultOf(lLeaf, lId), 5) << "the top of those that hold a value, though the root has the entry";
    int lWhole = 0;
    EXPECT_TRUE(lLeaf->GetDefaultValue(lId, &lWhole, eINTEGER1));
    EXPECT_EQ(lWhole, 5);
    EXPECT_FALSE(lLeaf->GetDefaultValue(lId, nullptr, eDOUBLE1));
}

TEST_F(KLyrPropertyPageTest, ReadingConvertsAndFailsWhenTheConversionIsRefused) {
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    const OwnedPage lInstance = MakeInstance(lRoot);
    SetNumber(lRoot, 0, 2.5);
    int lWhole = 0;
    EXPECT_TRUE(lInstance->Get(0, &lWhole, eINTEGER1));
    EXPECT_EQ(lWhole, 2);
    EXPECT_EQ(TextOf(lInstance, 0), "2.5");
    lyrDistance lDistance;
    EXPECT_FALSE(lInstance->Get(0, &lDistance, eDISTANCE));
    EXPECT_FALSE(lInstance->GetDefaultValue(0, &lDistance, eDISTANCE));
    EXPECT_FALSE(lInstance->Get(0, nullptr, eDOUBLE1));
    ReportRecorder lReports;
    EXPECT_FALSE(lInstance->Get(0, &lWhole, eUNIDENTIFIED));
    EXPECT_FALSE(lInstance->Get(0, &lWhole, static_cast<ELyrType>(24)));
    EXPECT_FALSE(lInstance->GetDefaultValue(0, &lWhole, eREFERENCE));
    EXPECT_EQ(lReports.Take().size(), 3u);
    EXPECT_EQ(lWhole, 2);
}

TEST_F(KLyrPropertyPageTest, RemovedOwnEntryLetsTheInheritedOneShow) {
    const OwnedPage lRoot = MakeRoot();
    const OwnedPage lInstance = MakeInstance(lRoot);
    const int lId = lRoot->Add(0, "a", eDOUBLE1);
    SetNumber(lInstance, lId, 4);
    EXPECT_TRUE(lInstance->RemoveOwnEntry(lId));
    EXPECT_EQ(NumberOf(lInstance, lId), 0);
    EXPECT_FALSE(lInstance->RemoveOwnEntry(lId));
    EXPECT_TRUE(lRoot->RemoveOwnEntry(lId));
    EXPECT_EQ(lInstance->GetPropertyEntry(lId), nullptr);
    EXPECT_EQ(lRoot->Add(0, "b", eDOUBLE1), lId + 1) << "ids are not used again";
}

}  // namespace
}  // namespace lyrsdk
