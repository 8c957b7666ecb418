#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/connection_filters.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using F = LyrPropertyFlags;

class PropertyHandleMetadata : public HandleTest {};

#define EXPECT_GIVES(pType, pCall) static_assert(std::is_same_v<decltype(pCall), pType>, #pCall)

TEST_F(PropertyHandleMetadata, TakesEveryCallWithItsDocumentedArgumentsAndResult) {
    [[maybe_unused]] H lHandle;
    [[maybe_unused]] const H lConst;
    [[maybe_unused]] const char* const lText = "a";
    [[maybe_unused]] const void* const lSource = nullptr;
    [[maybe_unused]] void* const lTarget = nullptr;
    [[maybe_unused]] KLyrConnectionPointFilter* const lFilter = nullptr;
    EXPECT_GIVES(bool, lHandle.SetMin(lSource, eDOUBLE1));
    EXPECT_GIVES(bool, lHandle.SetSoftMin(lSource, eDOUBLE1));
    EXPECT_GIVES(bool, lHandle.SetMax(lSource, eDOUBLE1));
    EXPECT_GIVES(bool, lHandle.SetSoftMax(lSource, eDOUBLE1));
    EXPECT_GIVES(bool, lConst.GetMin(lTarget, eDOUBLE1));
    EXPECT_GIVES(bool, lConst.GetSoftMin(lTarget, eDOUBLE1));
    EXPECT_GIVES(bool, lConst.GetMax(lTarget, eDOUBLE1));
    EXPECT_GIVES(bool, lConst.GetSoftMax(lTarget, eDOUBLE1));
    EXPECT_GIVES(bool, lConst.HasMin());
    EXPECT_GIVES(bool, lConst.HasSoftMin());
    EXPECT_GIVES(bool, lConst.HasMax());
    EXPECT_GIVES(bool, lConst.HasSoftMax());
    EXPECT_GIVES(int, lHandle.AddEnumValue("a"));
    EXPECT_GIVES(void, lHandle.InsertEnumValue(0, lText));
    EXPECT_GIVES(int, lHandle.GetEnumCount());
    EXPECT_GIVES(void, lHandle.SetEnumValue(0, "a"));
    EXPECT_GIVES(void, lHandle.RemoveEnumValue(0));
    EXPECT_GIVES(const char*, lHandle.GetEnumValue(0));
    EXPECT_GIVES(bool, lHandle.SetLabel("a"));
    EXPECT_GIVES(const char*, lConst.GetLabel());
    EXPECT_GIVES(bool, lHandle.SetUserTag(1));
    EXPECT_GIVES(int, lConst.GetUserTag());
    EXPECT_GIVES(bool, lHandle.SetUserData(lSource));
    EXPECT_GIVES(void*, lConst.GetUserData());
    EXPECT_GIVES(F::eLyrPropertyFlags, lConst.GetFlags());
    EXPECT_GIVES(bool, lHandle.ModifyFlags(F::eUSER, true));
    EXPECT_GIVES(KLyrInheritType, lConst.GetFlagsInheritType(F::eUSER, true));
    EXPECT_GIVES(bool, lHandle.SetFlagsInheritType(F::eUSER, eLyrInherit));
    EXPECT_GIVES(KLyrInheritType, lConst.GetValueInheritType(true));
    EXPECT_GIVES(bool, lHandle.SetValueInheritType(eLyrOverride));
    EXPECT_GIVES(bool, lHandle.PushPropertiesToParentInstance());
    EXPECT_GIVES(H, lConst.GetParent());
    EXPECT_GIVES(H, lConst.GetChild());
    EXPECT_GIVES(H, lConst.GetSibling());
    EXPECT_GIVES(H, lConst.GetFirstDescendent());
    EXPECT_GIVES(H, lConst.GetNextDescendent(lConst));
    EXPECT_GIVES(bool, lConst.IsChildOf(lConst));
    EXPECT_GIVES(bool, lConst.IsDescendentOf(lConst));
    EXPECT_GIVES(bool, lHandle.ConnectSrc(lConst, eLyrConnectionData));
    EXPECT_GIVES(bool, lHandle.ConnectDst(lConst, eLyrConnectionData));
    EXPECT_GIVES(bool, lHandle.DisconnectSrc(lConst));
    EXPECT_GIVES(bool, lHandle.DisconnectDst(lConst));
    EXPECT_GIVES(bool, lConst.IsConnectedSrc(lConst));
    EXPECT_GIVES(bool, lConst.IsConnectedDst(lConst));
    EXPECT_GIVES(int, lConst.GetSrcCount(lFilter));
    EXPECT_GIVES(int, lConst.GetDstCount(nullptr));
    EXPECT_GIVES(H, lConst.GetSrc(lFilter, 0));
    EXPECT_GIVES(H, lConst.GetDst(nullptr, 0));
    EXPECT_GIVES(void, lHandle.WipeAllConnections());
    EXPECT_GIVES(void, lHandle.ClearConnectCache());
    EXPECT_GIVES(bool, lConst.IsAReferenceTo());
    EXPECT_GIVES(void*, lConst.GetReferenceTo());
    EXPECT_GIVES(int, lConst.GetReferencedByCount());
    EXPECT_GIVES(void*, lConst.GetReferencedBy(0));
    EXPECT_GIVES(bool, lConst.IsReferencedBy());
    EXPECT_EQ(KLyrPropertyInfo::eValueMin, 0);
    EXPECT_EQ(KLyrPropertyInfo::eValueSoftMin, 1);
    EXPECT_EQ(KLyrPropertyInfo::eValueMax, 2);
    EXPECT_EQ(KLyrPropertyInfo::eValueSoftMax, 3);
    EXPECT_EQ(KLyrPropertyInfo::eValueCount, 4);
}

#undef EXPECT_GIVES

// --- description -----------------------------------------------------------------------------------------------------

struct Bound {
    const char* mName;
    KLyrPropertyInfo::eValueIndex mIndex;
    bool (H::*mSet)(const void*, ELyrType);
    bool (H::*mGet)(void*, ELyrType) const;
    bool (H::*mHas)() const;
};

const Bound kBounds[] = {
    {"min", KLyrPropertyInfo::eValueMin, &H::SetMin, &H::GetMin, &H::HasMin},
    {"softmin", KLyrPropertyInfo::eValueSoftMin, &H::SetSoftMin, &H::GetSoftMin, &H::HasSoftMin},
    {"max", KLyrPropertyInfo::eValueMax, &H::SetMax, &H::GetMax, &H::HasMax},
    {"softmax", KLyrPropertyInfo::eValueSoftMax, &H::SetSoftMax, &H::GetSoftMax, &H::HasSoftMax},
};

TEST_F(PropertyHandleMetadata, KeepsTheFourBoundsApart) {
    OwnedRoot lPage(H::Create("root", eINTEGER1));
    int lSet = 0;
    for (const Bound& lBound : kBounds) {
        SCOPED_TRACE(lBound.mName);
        double lValue = -1;
        EXPECT_FALSE(((*lPage).*lBound.mHas)());
        EXPECT_FALSE(((*lPage).*lBound.mGet)(&lValue, eDOUBLE1));
        EXPECT_EQ(lValue, -1);
        const double lGiven = 10.75 + lSet;
        EXPECT_TRUE(((*lPage).*lBound.mSet)(&lGiven, eDOUBLE1));
        ++lSet;
        int lBefore = 0;
        for (const Bound& lOther : kBounds) {
            EXPECT_EQ(((*lPage).*lOther.mHas)(), lBefore < lSet) << lOther.mName;
            EXPECT_EQ(lPage->GetPage()->HasMinMax(0, lOther.mIndex), lBefore < lSet) << lOther.mName;
            ++lBefore;
        }
    }
    int lExpected = 10;
    for (const Bound& lBound : kBounds) {
        double lValue = -1;
        EXPECT_TRUE(((*lPage).*lBound.mGet)(&lValue, eDOUBLE1));
        EXPECT_EQ(lValue, lExpected++) << "kept as an int";
    }
}

TEST_F(PropertyHandleMetadata, SharesTheDescriptionBetweenAPageAndItsInstances) {
    OwnedRoot lPage(H::Create("root", eENUM));
    OwnedRoot lInstance(H::Create(*lPage));
    int lData = 0;
    const int lBound = 4;
    SetInt(*lInstance, 1);
    for (const Bound& lEach : kBounds)
        EXPECT_TRUE(((*lInstance).*lEach.mSet)(&lBound, eINTEGER1));
    EXPECT_TRUE(lInstance->SetLabel("Label"));
    EXPECT_TRUE(lInstance->SetUserTag(-7));
    EXPECT_TRUE(lInstance->SetUserData(&lData));
    EXPECT_EQ(lInstance->AddEnumValue("one"), 0);
    for (const Bound& lEach : kBounds)
        EXPECT_TRUE(((*lPage).*lEach.mHas)());
    EXPECT_STREQ(lPage->GetLabel(), "Label");
    EXPECT_EQ(lPage->GetUserTag(), -7);
    EXPECT_EQ(lPage->GetUserData(), &lData);
    EXPECT_STREQ(lPage->GetEnumValue(0), "one");
}

TEST_F(PropertyHandleMetadata, StartsWithAnEmptyDescription) {
    OwnedRoot lPage(H::Create("root", eENUM));
    EXPECT_STREQ(lPage->GetLabel(), "");
    EXPECT_EQ(lPage->GetUserTag(), 0);
    EXPECT_EQ(lPage->GetUserData(), nullptr);
    EXPECT_EQ(lPage->GetEnumCount(), 0);
    EXPECT_EQ(lPage->GetEnumValue(0), nullptr);
    for (const Bound& lBound : kBounds)
        EXPECT_FALSE(((*lPage).*lBound.mHas)());
}

TEST_F(PropertyHandleMetadata, EditsTheTextsOfAnEnumeration) {
    OwnedRoot lPage(H::Create("root", eENUM));
    EXPECT_EQ(lPage->AddEnumValue("a"), 0);
    EXPECT_EQ(lPage->AddEnumValue("c"), 1);
    EXPECT_EQ(lPage->AddEnumValue("a"), -1) << "no text twice";
    lPage->InsertEnumValue(1, "b");
    lPage->InsertEnumValue(99, "d");
    EXPECT_EQ(lPage->GetEnumCount(), 4);
    lPage->SetEnumValue(0, "A");
    lPage->RemoveEnumValue(2);
    ASSERT_EQ(lPage->GetEnumCount(), 3);
    EXPECT_STREQ(lPage->GetEnumValue(0), "A");
    EXPECT_STREQ(lPage->GetEnumValue(1), "b");
    EXPECT_STREQ(lPage->GetEnumValue(2), "d");
    EXPECT_EQ(lPage->GetEnumValue(3), nullptr);
    OwnedRoot lOther(H::Create("root", eINTEGER1));
    EXPECT_EQ(lOther->AddEnumValue("a"), -1);
    lOther->InsertEnumValue(0, "a");
    EXPECT_EQ(lOther->GetEnumCount(), 0);
    EXPECT_EQ(lOther->GetEnumValue(0), nullptr);
}

TEST_F(PropertyHandleMetadata, LeavesTheDescriptionBehindInATypedCopy) {
    OwnedRoot lType(H::Create("type", eENUM));
    H lChild = AddChild(*lType, "child", eENUM);
    const int lBound = 1;
    lChild.SetLabel("Child");
    lChild.SetUserTag(1);
    lChild.AddEnumValue("one");
    lChild.SetMin(&lBound, eINTEGER1);
    OwnedRoot lPage(H::Create("root", *lType));
    const H lCopy = lPage->GetChild();
    EXPECT_STREQ(lCopy.GetName(), "child");
    EXPECT_STREQ(lCopy.GetLabel(), "");
    EXPECT_EQ(lCopy.GetUserTag(), 0);
    EXPECT_EQ(lCopy.GetEnumCount(), 0);
    EXPECT_FALSE(lCopy.HasMin());
}

// --- flags and inheritance -------------------------------------------------------------------------------------------

TEST_F(PropertyHandleMetadata, TurnsFlagsOnAndOffOnOnePage) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    EXPECT_EQ(lPage->GetFlags(), F::eNO_FLAG);
    EXPECT_EQ(lPage->GetFlagsInheritType(F::eUSER, false), eLyrOverride) << "a new property sets all its flags";
    EXPECT_TRUE(lPage->ModifyFlags(F::eUSER | F::eHIDDEN, true));
    EXPECT_EQ(lPage->GetFlags(), F::eUSER | F::eHIDDEN);
    EXPECT_TRUE(lPage->ModifyFlags(F::eUSER, false));
    EXPECT_EQ(lPage->GetFlags(), F::eHIDDEN);
}

TEST_F(PropertyHandleMetadata, AlwaysComparesFlagsWithTheInheritedOnes) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    OwnedRoot lInstance(H::Create(*lPage));
    lPage->ModifyFlags(F::eUSER, true);
    EXPECT_TRUE(lInstance->ModifyFlags(F::eUSER, true));
    EXPECT_EQ(lInstance->GetFlagsInheritType(F::eUSER, false), eLyrInherit) << "on already";
    EXPECT_TRUE(lInstance->ModifyFlags(F::eUSER, false));
    EXPECT_EQ(lInstance->GetFlags(), F::eUSER) << "flags that are all on above are not turned off from inheriting";
    EXPECT_TRUE(lInstance->ModifyFlags(F::eHIDDEN, true));
    EXPECT_EQ(lInstance->GetFlags(), F::eUSER | F::eHIDDEN);
    EXPECT_EQ(lInstance->GetFlagsInheritType(F::eHIDDEN, false), eLyrOverride);
    EXPECT_TRUE(lInstance->ModifyFlags(F::eUSER, false));
    EXPECT_EQ(lInstance->GetFlags(), F::eHIDDEN) << "with flags of its own it can turn them off";
    EXPECT_TRUE(lInstance->ModifyFlags(F::eUSER, true));
    EXPECT_EQ(lInstance->GetFlagsInheritType(F::eUSER, false), eLyrInherit);
    EXPECT_TRUE(lInstance->ModifyFlags(F::eHIDDEN, false));
    EXPECT_EQ(lInstance->GetFlags(), F::eUSER);
    EXPECT_EQ(lInstance->GetPage()->GetPropertyEntry(0), lPage->GetPage()->GetPropertyEntry(0));
}

TEST_F(PropertyHandleMetadata, TakesTheFlagsFirstAndTheStateSecond) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    OwnedRoot lInstance(H::Create(*lPage));
    lPage->ModifyFlags(F::eUSER, true);
    EXPECT_TRUE(lInstance->SetFlagsInheritType(F::eUSER, eLyrOverride));
    EXPECT_EQ(lInstance->GetFlagsInheritType(F::eUSER, false), eLyrOverride);
    EXPECT_EQ(lInstance->GetFlagsInheritType(F::eANIMATABLE, false), eLyrInherit);
    lPage->ModifyFlags(F::eUSER, false);
    EXPECT_EQ(lInstance->GetFlags(), F::eUSER);
    EXPECT_TRUE(lInstance->SetFlagsInheritType(F::eUSER, eLyrInherit));
    EXPECT_EQ(lInstance->GetFlags(), F::eNO_FLAG);
    EXPECT_FALSE(lInstance->SetFlagsInheritType(F::eUSER, eLyrDeleted));
    EXPECT_FALSE(lPage->SetFlagsInheritType(F::eUSER, eLyrOverride)) << "nothing to override";
}

TEST_F(PropertyHandleMetadata, AsksTheWholeChainForFlagsWhenToldTo) {
    OwnedRoot lTop(H::Create("root", eDOUBLE1));
    OwnedRoot lMiddle(H::Create(*lTop));
    OwnedRoot lBottom(H::Create(*lMiddle));
    EXPECT_EQ(lBottom->GetFlagsInheritType(F::eUSER, true), eLyrInherit) << "only the top sets it";
    lMiddle->ModifyFlags(F::eUSER, true);
    EXPECT_EQ(lBottom->GetFlagsInheritType(F::eUSER, false), eLyrInherit);
    EXPECT_EQ(lBottom->GetFlagsInheritType(F::eUSER, true), eLyrOverride) << "the middle overrides the top";
    EXPECT_EQ(lBottom->GetFlagsInheritType(F::eHIDDEN, true), eLyrInherit);
    EXPECT_EQ(lMiddle->GetFlagsInheritType(F::eUSER, true), eLyrOverride);
}

TEST_F(PropertyHandleMetadata, OverridesAndInheritsAValue) {
    OwnedRoot lTop(H::Create("root", eDOUBLE1));
    OwnedRoot lMiddle(H::Create(*lTop));
    OwnedRoot lBottom(H::Create(*lMiddle));
    SetDouble(*lTop, 1);
    EXPECT_EQ(lTop->GetValueInheritType(false), eLyrOverride);
    EXPECT_EQ(lMiddle->GetValueInheritType(true), eLyrInherit);
    EXPECT_TRUE(lMiddle->SetValueInheritType(eLyrOverride));
    EXPECT_EQ(lMiddle->GetValueInheritType(false), eLyrOverride);
    EXPECT_EQ(lBottom->GetValueInheritType(false), eLyrInherit);
    EXPECT_EQ(lBottom->GetValueInheritType(true), eLyrOverride);
    SetDouble(*lTop, 2);
    EXPECT_EQ(DoubleOf(*lBottom), 1);
    EXPECT_FALSE(lMiddle->SetValueInheritType(eLyrDeleted));
    EXPECT_EQ(lMiddle->GetValueInheritType(false), eLyrOverride);
    EXPECT_TRUE(lMiddle->SetValueInheritType(eLyrInherit));
    EXPECT_EQ(DoubleOf(*lBottom), 2);
    EXPECT_FALSE(lTop->SetValueInheritType(eLyrInherit)) << "nothing to inherit";
    EXPECT_EQ(DoubleOf(*lTop), 2);
}

TEST_F(PropertyHandleMetadata, PushesOnlyThroughTheRoot) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    const H lChild = AddChild(*lPage, "child", eDOUBLE1);
    OwnedRoot lInstance(H::Create(*lPage));
    const H lOwn = AddChild(*lInstance, "own", eINTEGER1);
    SetDouble(On(*lInstance, lChild), 5);
    lInstance->ModifyFlags(F::eHIDDEN, true);
    H lOther = On(*lInstance, lChild);
    const std::string lBefore = DescribePage(*lInstance);
    EXPECT_FALSE(lOther.PushPropertiesToParentInstance());
    EXPECT_EQ(DescribePage(*lInstance), lBefore);
    EXPECT_EQ(DoubleOf(lChild), 0);

    const std::string lSeen = DescribePage(*lInstance, false);
    EXPECT_TRUE(lInstance->PushPropertiesToParentInstance());
    EXPECT_EQ(DescribePage(*lInstance, false), lSeen);
    EXPECT_EQ(DescribePage(*lPage, false), lSeen);
    EXPECT_EQ(DoubleOf(lChild), 5);
    EXPECT_EQ(lPage->GetFlags(), F::eHIDDEN);
    EXPECT_EQ(lOther.GetValueInheritType(false), eLyrInherit);
    EXPECT_EQ(lOwn.GetValueInheritType(false), eLyrInherit);
    EXPECT_EQ(lInstance->GetFlagsInheritType(F::eHIDDEN, false), eLyrInherit);
}

TEST_F(PropertyHandleMetadata, PushesToNowhereWithSuccess) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    SetDouble(*lPage, 3);
    const std::string lBefore = DescribePage(*lPage);
    EXPECT_TRUE(lPage->PushPropertiesToParentInstance());
    EXPECT_EQ(DescribePage(*lPage), lBefore);
}

TEST_F(PropertyHandleMetadata, LeavesConnectionsBehindWhenItPushes) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    OwnedRoot lInstance(H::Create(*lPage));
    OwnedRoot lPeer(H::Create("peer", eDOUBLE1));
    SetDouble(*lInstance, 4);
    EXPECT_TRUE(lInstance->ConnectSrc(*lPeer, eLyrConnectionData));
    EXPECT_TRUE(lInstance->PushPropertiesToParentInstance());
    EXPECT_TRUE(lInstance->IsConnectedSrc(*lPeer));
    EXPECT_EQ(lPage->GetSrcCount(nullptr), 0);
    EXPECT_EQ(lPeer->GetDst(nullptr, 0), *lInstance);
    EXPECT_EQ(lInstance->GetValueInheritType(false), eLyrInherit);
}

// --- the tree --------------------------------------------------------------------------------------------------------

TEST_F(PropertyHandleMetadata, WalksTheTree) {
    OwnedRoot lPage(H::Create());
    const H lA = AddChild(*lPage, "a", eDOUBLE1);
    const H lB = AddChild(*lPage, "b", eDOUBLE1);
    const H lDeep = AddChild(lA, "deep", eDOUBLE1);
    const H lDeeper = AddChild(lDeep, "deeper", eDOUBLE1);
    const H lNone(lPage->GetPage(), -1);
    EXPECT_EQ(lPage->GetParent(), lNone);
    EXPECT_EQ(lPage->GetSibling(), lNone);
    EXPECT_EQ(lPage->GetChild(), lA);
    EXPECT_EQ(lA.GetSibling(), lB);
    EXPECT_EQ(lB.GetSibling(), lNone);
    EXPECT_EQ(lA.GetChild(), lDeep);
    EXPECT_EQ(lB.GetChild(), lNone);
    EXPECT_EQ(lDeeper.GetParent(), lDeep);
    EXPECT_EQ(lPage->GetFirstDescendent(), lA);
    EXPECT_EQ(lA.GetFirstDescendent(), lDeep);
    EXPECT_EQ(lA.GetNextDescendent(lDeep), lDeeper);
    EXPECT_EQ(lA.GetNextDescendent(lDeeper), lNone);
    EXPECT_EQ(lB.GetFirstDescendent(), lNone);
    std::vector<H> lAll;
    for (H lIt = lPage->GetFirstDescendent(); lIt.Valid(); lIt = lPage->GetNextDescendent(lIt))
        lAll.push_back(lIt);
    EXPECT_EQ(lAll, (std::vector<H>{lA, lB, lDeep, lDeeper}));
}

TEST_F(PropertyHandleMetadata, TakesOnlyTheIdOfTheHandleToWalkOnFrom) {
    OwnedRoot lPage(H::Create());
    OwnedRoot lOther(H::Create());
    AddChild(*lPage, "a", eDOUBLE1);
    const H lB = AddChild(*lPage, "b", eDOUBLE1);
    EXPECT_EQ(lPage->GetNextDescendent(H(lOther->GetPage(), 1)), lB);
    EXPECT_EQ(lPage->GetNextDescendent(H(nullptr, 1)), lB);
    EXPECT_EQ(lPage->GetNextDescendent(H()), H(lPage->GetPage(), -1));
}

TEST_F(PropertyHandleMetadata, KnowsItsAncestorsOnItsVeryPageOnly) {
    OwnedRoot lPage(H::Create());
    OwnedRoot lInstance(H::Create(*lPage));
    const H lA = AddChild(*lPage, "a", eDOUBLE1);
    const H lDeep = AddChild(lA, "deep", eDOUBLE1);
    EXPECT_TRUE(lDeep.IsChildOf(lA));
    EXPECT_FALSE(lDeep.IsChildOf(*lPage));
    EXPECT_TRUE(lDeep.IsDescendentOf(lA));
    EXPECT_TRUE(lDeep.IsDescendentOf(*lPage));
    EXPECT_FALSE(lA.IsDescendentOf(lDeep));
    EXPECT_FALSE(lA.IsDescendentOf(lA));
    EXPECT_TRUE(lPage->IsDescendentOf(*lPage)) << "the root counts as everyone's ancestor";
    const H lInherited = On(*lInstance, lDeep);
    EXPECT_TRUE(lInherited.IsChildOf(On(*lInstance, lA)));
    EXPECT_FALSE(lInherited.IsChildOf(lA));
    EXPECT_FALSE(lInherited.IsDescendentOf(lA));
    EXPECT_FALSE(lInherited.IsDescendentOf(*lPage));
    EXPECT_FALSE(lDeep.IsChildOf(On(*lInstance, lA)));
    EXPECT_FALSE(lDeep.IsDescendentOf(*lInstance));
}

// --- connections -----------------------------------------------------------------------------------------------------

TEST_F(PropertyHandleMetadata, ConnectsFromEitherEnd) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    OwnedRoot lOther(H::Create("other", eDOUBLE1));
    H lA = AddChild(*lPage, "a", eDOUBLE1);
    H lB = AddChild(*lPage, "b", eDOUBLE1);
    EXPECT_TRUE(lA.ConnectSrc(*lOther, eLyrConnectionData));
    EXPECT_TRUE(lA.ConnectDst(lB, eLyrConnectionReference));
    EXPECT_FALSE(lB.ConnectSrc(lA, eLyrConnectionData)) << "connected already";
    EXPECT_FALSE(lA.ConnectSrc(lA, eLyrConnectionData)) << "no property feeds itself";
    EXPECT_TRUE(lA.IsConnectedSrc(*lOther));
    EXPECT_TRUE(lOther->IsConnectedDst(lA));
    EXPECT_FALSE(lA.IsConnectedDst(*lOther));
    EXPECT_TRUE(lB.IsConnectedSrc(lA));
    EXPECT_EQ(lA.GetSrcCount(nullptr), 1);
    EXPECT_EQ(lA.GetDstCount(nullptr), 1);
    EXPECT_EQ(lA.GetSrc(nullptr, 0), *lOther);
    EXPECT_EQ(lA.GetDst(nullptr, 0), lB);
    for (int lIndex : {-1, 1, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(lA.GetSrc(nullptr, lIndex), H()) << lIndex;
        EXPECT_EQ(lA.GetDst(nullptr, lIndex), H()) << lIndex;
    }
    EXPECT_FALSE(lA.DisconnectSrc(lB));
    EXPECT_TRUE(lA.DisconnectDst(lB));
    EXPECT_FALSE(lA.DisconnectDst(lB));
    EXPECT_TRUE(lA.DisconnectSrc(*lOther));
    EXPECT_EQ(lOther->GetDstCount(nullptr), 0);
}

TEST_F(PropertyHandleMetadata, FiltersConnectionsAndClearsTheirCache) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    const H lA = AddChild(*lPage, "a", eDOUBLE1);
    const H lB = AddChild(*lPage, "b", eDOUBLE1);
    TypeFilter lData(eLyrConnectionData);
    lPage->ConnectSrc(lA, eLyrConnectionReference);
    lPage->ConnectSrc(lB, eLyrConnectionData);
    lPage->ConnectDst(lA, eLyrConnectionData);
    EXPECT_EQ(lPage->GetSrcCount(&lData), 1);
    EXPECT_EQ(lPage->GetSrc(&lData, 0), lB);
    EXPECT_EQ(lPage->GetSrc(&lData, 1), H());
    EXPECT_EQ(lPage->GetDst(&lData, 0), lA);
    lPage->ClearConnectCache();
    EXPECT_EQ(lPage->GetSrcCount(&lData), 1);
    EXPECT_EQ(lPage->GetDstCount(&lData), 1);
    lPage->WipeAllConnections();
    EXPECT_EQ(lPage->GetSrcCount(&lData), 0);
    EXPECT_EQ(lPage->GetSrcCount(nullptr), 0);
    EXPECT_EQ(lPage->GetDstCount(nullptr), 0);
    EXPECT_EQ(lA.GetDstCount(nullptr) + lA.GetSrcCount(nullptr) + lB.GetDstCount(nullptr), 0);
}

TEST_F(PropertyHandleMetadata, ConnectsTheCopiesOfConnectedPropertiesUnderTheirOwnIds) {
    OwnedRoot lType(H::Create("type", eDOUBLE1));
    AddChild(*lType, "part", eDOUBLE1).ConnectSrc(*lType, eLyrConnectionData);
    OwnedRoot lPage(H::Create());
    H lCopy = lPage->Add("copy", *lType).GetChild();
    EXPECT_EQ(lCopy.GetSrcCount(nullptr), 0) << "connections are not copied";
    EXPECT_TRUE(lCopy.ConnectSrc(*lPage, eLyrConnectionData));
    EXPECT_EQ(lPage->GetDst(nullptr, 0), lCopy);
}

TEST_F(PropertyHandleMetadata, KeepsFilteredListsOfBothEndsUpToDate) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    const H lA = AddChild(*lPage, "a", eDOUBLE1);
    const H lB = AddChild(*lPage, "b", eDOUBLE1);
    TypeFilter lData(eLyrConnectionData);
    EXPECT_EQ(lPage->GetSrcCount(&lData) + lA.GetDstCount(&lData), 0);
    lPage->ConnectSrc(lB, eLyrConnectionData);
    lPage->ConnectSrc(lA, eLyrConnectionData);
    EXPECT_EQ(lPage->GetSrc(&lData, 1), lA);
    EXPECT_EQ(lA.GetDst(&lData, 0), *lPage);
    EXPECT_TRUE(lPage->DisconnectSrc(lA));
    EXPECT_EQ(lPage->GetSrcCount(&lData), 1);
    EXPECT_EQ(lA.GetDstCount(&lData), 0);
    EXPECT_EQ(lB.GetDstCount(&lData), 1);
    lPage->WipeAllConnections();
    EXPECT_EQ(lB.GetDstCount(&lData), 0);
    lPage->ConnectSrc(lB, eLyrConnectionData);
    EXPECT_EQ(lB.GetDstCount(&lData), 1);
}

TEST_F(PropertyHandleMetadata, SeesOnlyItsOwnConnectionsButWipesInheritedOnes) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    OwnedRoot lInstance(H::Create(*lPage));
    OwnedRoot lPeer(H::Create("peer", eDOUBLE1));
    EXPECT_TRUE(lPage->ConnectSrc(*lPeer, eLyrConnectionDefault));
    EXPECT_EQ(lInstance->GetSrcCount(nullptr), 0);
    EXPECT_FALSE(lInstance->IsConnectedSrc(*lPeer));
    EXPECT_FALSE(lInstance->DisconnectSrc(*lPeer));
    lInstance->WipeAllConnections();
    EXPECT_EQ(lPage->GetSrcCount(nullptr), 0);
    EXPECT_EQ(lPeer->GetDstCount(nullptr), 0);
    EXPECT_TRUE(lInstance->ConnectSrc(*lPage, eLyrConnectionDefault)) << "two properties of one id on two pages";
    EXPECT_EQ(lInstance->GetValueInheritType(false), eLyrInherit);
    EXPECT_EQ(lPage->GetDst(nullptr, 0), *lInstance);
}

// --- references ------------------------------------------------------------------------------------------------------

TEST_F(PropertyHandleMetadata, RefersToThePageItIsAnInstanceOfByItsData) {
    OwnedRoot lPage(H::Create());
    OwnedRoot lInstance(H::Create(*lPage));
    int lData = 0;
    EXPECT_FALSE(lPage->IsAReferenceTo());
    EXPECT_EQ(lPage->GetReferenceTo(), nullptr);
    EXPECT_FALSE(lInstance->IsAReferenceTo()) << "no data pointer";
    EXPECT_EQ(lInstance->GetReferenceTo(), nullptr);
    lPage->SetPageDataPtr(&lData);
    EXPECT_TRUE(lInstance->IsAReferenceTo());
    EXPECT_EQ(lInstance->GetReferenceTo(), &lData);
    EXPECT_EQ(H(lInstance->GetPage(), 42).GetReferenceTo(), &lData) << "whatever the id";
    EXPECT_FALSE(lPage->IsAReferenceTo());
}

TEST_F(PropertyHandleMetadata, IsReferencedByItsInstances) {
    OwnedRoot lPage(H::Create());
    int lData[3] = {};
    EXPECT_FALSE(lPage->IsReferencedBy());
    EXPECT_EQ(lPage->GetReferencedByCount(), 0);
    EXPECT_EQ(lPage->GetReferencedBy(0), nullptr);
    {
        OwnedRoot lFirst(H::Create(*lPage));
        OwnedRoot lSecond(H::Create(*lPage));
        OwnedRoot lThird(H::Create(*lPage));
        lFirst->SetPageDataPtr(&lData[0]);
        lThird->SetPageDataPtr(&lData[2]);
        EXPECT_TRUE(lPage->IsReferencedBy());
        EXPECT_EQ(H(lPage->GetPage(), 42).GetReferencedByCount(), 3);
        EXPECT_EQ(lPage->GetReferencedBy(0), &lData[0]);
        EXPECT_EQ(lPage->GetReferencedBy(1), nullptr) << "an instance without data";
        EXPECT_EQ(lPage->GetReferencedBy(2), &lData[2]);
        lFirst->Destroy();
        EXPECT_EQ(lPage->GetReferencedByCount(), 2);
        EXPECT_EQ(lPage->GetReferencedBy(0), &lData[2]) << "the last one moved into its place";
    }
    EXPECT_FALSE(lPage->IsReferencedBy());
    EXPECT_EQ(lPage->GetReferencedBy(0), nullptr);
}

}  // namespace
}  // namespace lyrsdk
