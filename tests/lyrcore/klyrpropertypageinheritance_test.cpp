#include <gtest/gtest.h>

#include <climits>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/page_family.h"

namespace lyrsdk {
namespace {

using Flag = LyrPropertyFlags;

constexpr KLyrInheritType kNoState = static_cast<KLyrInheritType>(3);
constexpr KLyrInheritType kNegativeState = static_cast<KLyrInheritType>(-1);

// Three pages; property 1, "a", is the root's, with value 1 and flags eUSER.
class KLyrPropertyPageInheritanceTest : public PageTest {
protected:
    KLyrPropertyPageInheritanceTest() {
        mRoot->Add(0, "a", eDOUBLE1);
        SetNumber(mRoot, kA, 1);
        mRoot->ModifyFlags(kA, Flag::eUSER, true, false);
    }

    static constexpr int kA = 1;
    OwnedPage mRoot = MakeRoot();
    OwnedPage mMiddle = MakeInstance(mRoot);
    OwnedPage mLeaf = MakeInstance(mMiddle);
};

// --- entries ---------------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageInheritanceTest, OverriddenEntryIsMadeEmptyOnce) {
    KLyrPropertyEntry* lEntry = mLeaf->ChangePropertyEntryState(kA, eLyrOverride);
    ASSERT_NE(lEntry, nullptr);
    EXPECT_EQ(OwnEntry(mLeaf, kA), lEntry);
    EXPECT_EQ(lEntry->GetParentId(), 0);
    EXPECT_TRUE(lEntry->IsEmpty());
    EXPECT_EQ(Held(mLeaf), "1<0 --- 0\n");
    EXPECT_EQ(mLeaf->ChangePropertyEntryState(kA, eLyrOverride), lEntry);
    EXPECT_EQ(Held(mMiddle), "");
    EXPECT_EQ(Seen(mLeaf), Seen(mRoot));
    EXPECT_EQ(mRoot->ChangePropertyEntryState(kA, eLyrOverride), OwnEntry(mRoot, kA));
}

TEST_F(KLyrPropertyPageInheritanceTest, NoEntryIsMadeForAnUnknownProperty) {
    for (int lId : {2, -1, -2, INT_MAX, INT_MIN}) {
        for (KLyrInheritType lState : {eLyrOverride, eLyrInherit, eLyrDeleted, kNoState, kNegativeState}) {
            EXPECT_EQ(mLeaf->ChangePropertyEntryState(lId, lState), nullptr);
            EXPECT_EQ(mRoot->ChangePropertyEntryState(lId, lState), nullptr);
        }
    }
    EXPECT_EQ(Held(mLeaf), "");
}

TEST_F(KLyrPropertyPageInheritanceTest, InheritAndDeletedRemoveOnlyThePagesOwnEntry) {
    for (KLyrInheritType lState : {eLyrInherit, eLyrDeleted}) {
        EXPECT_EQ(mLeaf->ChangePropertyEntryState(kA, lState), nullptr);
        EXPECT_NE(OwnEntry(mRoot, kA), nullptr);
        SetNumber(mLeaf, kA, 3);
        mLeaf->ModifyFlags(kA, Flag::eHIDDEN, true, false);
        EXPECT_EQ(mLeaf->ChangePropertyEntryState(kA, lState), nullptr);
        EXPECT_EQ(Held(mLeaf), "");
        EXPECT_EQ(NumberOf(mLeaf, kA), 1);
    }
}

TEST_F(KLyrPropertyPageInheritanceTest, FamilyRootsEntryCanBeRemoved) {
    EXPECT_EQ(mRoot->ChangePropertyEntryState(kA, eLyrInherit), nullptr);
    EXPECT_EQ(mLeaf->GetPropertyEntry(kA), nullptr);
    EXPECT_EQ(mRoot->ChangePropertyEntryState(0, eLyrDeleted), nullptr);
    EXPECT_EQ(mLeaf->GetPropertyEntryCount(), 0);
}

TEST_F(KLyrPropertyPageInheritanceTest, UndefinedStatesChangeNothing) {
    SetNumber(mLeaf, kA, 3);
    const std::string lBefore = Held(mLeaf);
    for (KLyrInheritType lState : {kNoState, kNegativeState}) {
        EXPECT_EQ(mLeaf->ChangePropertyEntryState(kA, lState), nullptr);
        EXPECT_EQ(mLeaf->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, kA, lState), nullptr);
        EXPECT_EQ(mLeaf->ChangePropertyItemState<KLyrPropertyValue>(nullptr, kA, lState), nullptr);
        EXPECT_EQ(mLeaf->ChangePropertyItemState<KLyrPropertyFlags>(nullptr, kA, lState), nullptr);
        EXPECT_FALSE(mLeaf->SetValueInherit(kA, lState));
        EXPECT_FALSE(mLeaf->SetFlagsInheritType(lState, Flag::eUSER, kA));
    }
    EXPECT_EQ(Held(mLeaf), lBefore);
    EXPECT_EQ(Held(mMiddle), "");
}

// --- items -----------------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageInheritanceTest, OverriddenItemsAreClones) {
    mRoot->SetLabel(kA, "label");
    KLyrPropertyInfo* lInfo = mLeaf->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, kA, eLyrOverride);
    KLyrPropertyValue* lValue = mLeaf->ChangePropertyItemState<KLyrPropertyValue>(nullptr, kA, eLyrOverride);
    ASSERT_NE(lInfo, nullptr);
    ASSERT_NE(lValue, nullptr);
    EXPECT_EQ(lInfo, OwnItem<KLyrPropertyInfo>(mLeaf, kA));
    EXPECT_EQ(lValue, OwnItem<KLyrPropertyValue>(mLeaf, kA));
    EXPECT_STREQ(lInfo->GetNameText(), "a");
    EXPECT_EQ(lInfo->GetType(), eDOUBLE1);
    EXPECT_STREQ(lInfo->GetLabel(), "");
    EXPECT_EQ(NumberOf(mLeaf, kA), 1);
    EXPECT_EQ(Held(mLeaf), "1<0 iv- 0\n");
    EXPECT_EQ(mLeaf->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, kA, eLyrOverride), lInfo);
    EXPECT_EQ(mLeaf->ChangePropertyItemState<KLyrPropertyValue>(nullptr, kA, eLyrOverride), lValue);
    SetNumber(mRoot, kA, 9);
    EXPECT_EQ(NumberOf(mLeaf, kA), 1);
    EXPECT_EQ(NumberOf(mMiddle, kA), 9);
}

TEST_F(KLyrPropertyPageInheritanceTest, OverriddenFlagsStartEmpty) {
    KLyrPropertyFlags* lFlags = mLeaf->ChangePropertyItemState<KLyrPropertyFlags>(nullptr, kA, eLyrOverride);
    ASSERT_NE(lFlags, nullptr);
    EXPECT_EQ(lFlags, OwnItem<KLyrPropertyFlags>(mLeaf, kA));
    EXPECT_EQ(OwnFlagData(mLeaf, kA), 0u);
    EXPECT_EQ(mLeaf->GetFlags(kA), Flag::eUSER);
}

template <typename T>
void ExpectNothingChanges(const OwnedPage& pPage, int pId, KLyrInheritType pState) {
    const std::string lBefore = Held(pPage);
    EXPECT_EQ(pPage->ChangePropertyItemState<T>(nullptr, pId, pState), nullptr);
    EXPECT_EQ(Held(pPage), lBefore);
}

TEST_F(KLyrPropertyPageInheritanceTest, ItemsOfUnknownPropertiesAreNotChanged) {
    for (int lId : {2, -1, -2, INT_MAX, INT_MIN}) {
        for (KLyrInheritType lState : {eLyrOverride, eLyrInherit, eLyrDeleted}) {
            for (const OwnedPage* lPage : {&mRoot, &mLeaf}) {
                ExpectNothingChanges<KLyrPropertyInfo>(*lPage, lId, lState);
                ExpectNothingChanges<KLyrPropertyValue>(*lPage, lId, lState);
                ExpectNothingChanges<KLyrPropertyFlags>(*lPage, lId, lState);
            }
        }
    }
}

TEST_F(KLyrPropertyPageInheritanceTest, InheritDoesNothingWhereThereIsNothingToInherit) {
    const int lOwn = mLeaf->Add(0, "own", eDOUBLE1);
    for (const OwnedPage* lPage : {&mRoot, &mLeaf}) {
        const int lId = *lPage == mRoot ? kA : lOwn;
        ExpectNothingChanges<KLyrPropertyInfo>(*lPage, lId, eLyrInherit);
        ExpectNothingChanges<KLyrPropertyValue>(*lPage, lId, eLyrInherit);
        ExpectNothingChanges<KLyrPropertyFlags>(*lPage, lId, eLyrInherit);
    }
}

TEST_F(KLyrPropertyPageInheritanceTest, InheritDoesNothingToWhatIsInheritedAlready) {
    for (KLyrInheritType lState : {eLyrInherit, eLyrDeleted}) {
        ExpectNothingChanges<KLyrPropertyInfo>(mLeaf, kA, lState);
        ExpectNothingChanges<KLyrPropertyValue>(mLeaf, kA, lState);
        ExpectNothingChanges<KLyrPropertyFlags>(mLeaf, kA, lState);
        EXPECT_EQ(Held(mRoot), "0<-1 iv- 7fff0000\n1<0 iv- 7fff0002\n");
    }
}

TEST_F(KLyrPropertyPageInheritanceTest, ItemsGoOneByOneAndTheEmptyEntryWithTheLast) {
    for (KLyrInheritType lState : {eLyrInherit, eLyrDeleted}) {
        mLeaf->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, kA, eLyrOverride);
        SetNumber(mLeaf, kA, 5);
        mLeaf->ModifyFlags(kA, Flag::eHIDDEN, true, false);
        EXPECT_EQ(Held(mLeaf), "1<0 iv- 400040\n");
        EXPECT_EQ(mLeaf->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, kA, lState), nullptr);
        EXPECT_EQ(Held(mLeaf), "1<0 -v- 400040\n");
        EXPECT_EQ(mLeaf->ChangePropertyItemState<KLyrPropertyFlags>(nullptr, kA, lState), nullptr);
        EXPECT_EQ(Held(mLeaf), "1<0 -v- 0\n");
        EXPECT_EQ(mLeaf->ChangePropertyItemState<KLyrPropertyValue>(nullptr, kA, lState), nullptr);
        EXPECT_EQ(Held(mLeaf), "");
        EXPECT_EQ(Seen(mLeaf), Seen(mRoot));
    }
}

TEST_F(KLyrPropertyPageInheritanceTest, DeletedDropsAnItemThoughNothingIsInherited) {
    EXPECT_EQ(mRoot->ChangePropertyItemState<KLyrPropertyValue>(nullptr, kA, eLyrDeleted), nullptr);
    EXPECT_EQ(mRoot->ChangePropertyItemState<KLyrPropertyFlags>(nullptr, kA, eLyrDeleted), nullptr);
    EXPECT_EQ(OwnItem<KLyrPropertyValue>(mRoot, kA), nullptr);
    EXPECT_EQ(OwnFlagData(mRoot, kA), 0u);
    EXPECT_NE(OwnItem<KLyrPropertyInfo>(mRoot, kA), nullptr);
    double lNumber = 0;
    EXPECT_FALSE(mLeaf->Get(kA, &lNumber, eDOUBLE1));
    EXPECT_EQ(mRoot->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, kA, eLyrDeleted), nullptr);
    EXPECT_EQ(mLeaf->GetPropertyEntry(kA), nullptr) << "the last item takes the entry along";
}

TEST_F(KLyrPropertyPageInheritanceTest, SharedItemSurvivesBeingDropped) {
    const Counted<KLyrPropertyValue> lKept(OwnItem<KLyrPropertyValue>(mRoot, kA));
    mRoot->ChangePropertyItemState<KLyrPropertyValue>(nullptr, kA, eLyrDeleted);
    double lNumber = 0;
    EXPECT_TRUE(lKept->Get(&lNumber, eDOUBLE1));
    EXPECT_EQ(lNumber, 1);
}

// --- the state of values ---------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageInheritanceTest, ValueStateIsOverrideWhereThePageHoldsIt) {
    EXPECT_EQ(mRoot->GetValueInherit(kA, false), eLyrOverride);
    EXPECT_EQ(mRoot->GetValueInherit(kA, true), eLyrOverride);
    for (bool lCheck : {false, true}) {
        EXPECT_EQ(mMiddle->GetValueInherit(kA, lCheck), eLyrInherit);
        EXPECT_EQ(mLeaf->GetValueInherit(kA, lCheck), eLyrInherit);
    }
    SetNumber(mMiddle, kA, 2);
    EXPECT_EQ(mLeaf->GetValueInherit(kA, false), eLyrInherit);
    EXPECT_EQ(mLeaf->GetValueInherit(kA, true), eLyrOverride) << "what is seen overrides the root's";
    EXPECT_EQ(mMiddle->GetValueInherit(kA, false), eLyrOverride);
    mRoot->ChangePropertyItemState<KLyrPropertyValue>(nullptr, kA, eLyrDeleted);
    EXPECT_EQ(mLeaf->GetValueInherit(kA, true), eLyrInherit) << "what is seen overrides nothing any more";
}

TEST_F(KLyrPropertyPageInheritanceTest, ValueStateIsInheritWhereThereIsNoValue) {
    const int lEmpty = mRoot->Add(0, nullptr, nullptr, nullptr, true);
    for (int lId : {lEmpty, 77, -1, -2, INT_MAX, INT_MIN}) {
        for (bool lCheck : {false, true}) {
            EXPECT_EQ(mLeaf->GetValueInherit(lId, lCheck), eLyrInherit);
            EXPECT_EQ(mRoot->GetValueInherit(lId, lCheck), eLyrInherit);
        }
    }
}

TEST_F(KLyrPropertyPageInheritanceTest, ValueStateIsSetWhereItCanBe) {
    EXPECT_TRUE(mLeaf->SetValueInherit(kA, eLyrInherit));
    EXPECT_EQ(Held(mLeaf), "");
    EXPECT_TRUE(mLeaf->SetValueInherit(kA, eLyrOverride));
    EXPECT_EQ(Held(mLeaf), "1<0 -v- 0\n");
    EXPECT_EQ(NumberOf(mLeaf, kA), 1);
    EXPECT_TRUE(mLeaf->SetValueInherit(kA, eLyrOverride));
    EXPECT_FALSE(mLeaf->SetValueInherit(kA, eLyrDeleted));
    EXPECT_EQ(Held(mLeaf), "1<0 -v- 0\n");
    EXPECT_TRUE(mLeaf->SetValueInherit(kA, eLyrInherit));
    EXPECT_EQ(Held(mLeaf), "");

    EXPECT_FALSE(mRoot->SetValueInherit(kA, eLyrInherit));
    EXPECT_TRUE(mRoot->SetValueInherit(kA, eLyrOverride));
    EXPECT_EQ(NumberOf(mRoot, kA), 1);
    const int lOwn = mLeaf->Add(0, "own", eDOUBLE1);
    EXPECT_FALSE(mLeaf->SetValueInherit(lOwn, eLyrInherit));
    EXPECT_EQ(NumberOf(mLeaf, lOwn), 0);
}

TEST_F(KLyrPropertyPageInheritanceTest, ValueStateIsSetWhereWhatIsSeenThenOverridesAnotherOne) {
    SetNumber(mMiddle, kA, 2);
    EXPECT_TRUE(mLeaf->SetValueInherit(kA, eLyrInherit)) << "inherits from the middle, which overrides the root's";
    EXPECT_TRUE(mLeaf->SetValueInherit(kA, eLyrOverride));
    EXPECT_TRUE(mLeaf->SetValueInherit(kA, eLyrInherit));
    EXPECT_EQ(NumberOf(mLeaf, kA), 2);
}

TEST_F(KLyrPropertyPageInheritanceTest, ValueStateOfAPropertyWithoutAValueCanOnlyBeInherit) {
    const int lEmpty = mRoot->Add(0, nullptr, nullptr, nullptr, true);
    for (int lId : {lEmpty, 77, -1, INT_MIN}) {
        EXPECT_FALSE(mLeaf->SetValueInherit(lId, eLyrOverride));
        EXPECT_TRUE(mLeaf->SetValueInherit(lId, eLyrInherit));
        EXPECT_FALSE(mLeaf->SetValueInherit(lId, eLyrDeleted));
    }
    EXPECT_EQ(Held(mLeaf), "");
}

// --- push ------------------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageInheritanceTest, PushWithoutAParentOrWithNothingToPushChangesNothing) {
    const std::string lRootBefore = Held(mRoot);
    mRoot->PushPropertiesToParentInstance();
    mLeaf->PushPropertiesToParentInstance();
    EXPECT_EQ(Held(mRoot), lRootBefore);
    EXPECT_EQ(Held(mMiddle), "");
    EXPECT_EQ(Held(mLeaf), "");
    mLeaf->ChangePropertyEntryState(kA, eLyrOverride);
    mLeaf->PushPropertiesToParentInstance();
    EXPECT_EQ(Held(mMiddle), "") << "an empty entry holds nothing to push";
    EXPECT_EQ(Seen(mLeaf), Seen(mRoot));
}

TEST_F(KLyrPropertyPageInheritanceTest, PushMovesTheItemsThemselves) {
    SetNumber(mLeaf, kA, 5);
    KLyrPropertyInfo* lInfo = mLeaf->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, kA, eLyrOverride);
    mLeaf->SetLabel(kA, "label");
    const KLyrPropertyValue* lValue = OwnItem<KLyrPropertyValue>(mLeaf, kA);
    const std::string lBefore = Seen(mLeaf);
    mLeaf->PushPropertiesToParentInstance();
    EXPECT_EQ(Held(mLeaf), "");
    EXPECT_EQ(OwnItem<KLyrPropertyInfo>(mMiddle, kA), lInfo);
    EXPECT_EQ(OwnItem<KLyrPropertyValue>(mMiddle, kA), lValue);
    EXPECT_EQ(Seen(mLeaf), lBefore);
    EXPECT_STREQ(mMiddle->GetLabel(kA), "label");
    EXPECT_EQ(NumberOf(mRoot, kA), 1);
}

TEST_F(KLyrPropertyPageInheritanceTest, PushLeavesInTheParentWhatThePageDoesNotHold) {
    SetNumber(mMiddle, kA, 5);
    KLyrPropertyInfo* lInfo = mMiddle->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, kA, eLyrOverride);
    mMiddle->ModifyFlags(kA, Flag::eHIDDEN, true, false);
    SetNumber(mLeaf, kA, 6);
    mLeaf->PushPropertiesToParentInstance();
    EXPECT_EQ(NumberOf(mMiddle, kA), 6);
    EXPECT_EQ(OwnItem<KLyrPropertyInfo>(mMiddle, kA), lInfo);
    EXPECT_EQ(OwnFlagData(mMiddle, kA), 0x400040u);
    mLeaf->ModifyFlags(kA, Flag::eANIMATABLE, true, false);
    mLeaf->PushPropertiesToParentInstance();
    EXPECT_EQ(NumberOf(mMiddle, kA), 6);
    EXPECT_EQ(OwnFlagData(mMiddle, kA), 0x410041u);
}

TEST_F(KLyrPropertyPageInheritanceTest, PushLaysFlagsOverTheParentsOwn) {
    mMiddle->ModifyFlags(kA, Flag::eHIDDEN | Flag::eTEMPORARY, true, false);
    mMiddle->ModifyFlags(kA, Flag::eUSER, false, false);
    mLeaf->ModifyFlags(kA, Flag::eTEMPORARY, false, false);
    mLeaf->ModifyFlags(kA, Flag::eUSER | Flag::ePUBLISHED, true, false);
    const unsigned lSeen = mLeaf->GetFlags(kA);
    EXPECT_EQ(lSeen, static_cast<unsigned>(Flag::eHIDDEN | Flag::eUSER | Flag::ePUBLISHED));
    mLeaf->PushPropertiesToParentInstance();
    EXPECT_EQ(mLeaf->GetFlags(kA), lSeen);
    EXPECT_EQ(mMiddle->GetFlags(kA), lSeen);
    EXPECT_EQ(OwnFlagData(mMiddle, kA) >> 16, lSeen | Flag::eTEMPORARY);
    EXPECT_EQ(Held(mLeaf), "");
}

TEST_F(KLyrPropertyPageInheritanceTest, PushKeepsFlagsThatWereCopiedUnmarked) {
    mLeaf->SetFlagsInheritType(eLyrOverride, Flag::eHIDDEN, kA);
    mRoot->ModifyFlags(kA, Flag::eUSER, false, false);
    EXPECT_EQ(mLeaf->GetFlags(kA), Flag::eUSER) << "came along unmarked";
    mLeaf->PushPropertiesToParentInstance();
    EXPECT_EQ(mLeaf->GetFlags(kA), Flag::eUSER);
    EXPECT_EQ(Held(mLeaf), "");
}

TEST_F(KLyrPropertyPageInheritanceTest, PushKeepsFlagsOfAnEntryThatMarksNone) {
    mLeaf->ChangePropertyEntryState(kA, eLyrOverride);
    mLeaf->SetFlagsInheritType(eLyrOverride, Flag::eNO_FLAG, kA);
    mRoot->ModifyFlags(kA, Flag::eUSER, false, false);
    EXPECT_EQ(mLeaf->GetFlags(kA), Flag::eUSER);
    mLeaf->PushPropertiesToParentInstance();
    EXPECT_EQ(mLeaf->GetFlags(kA), Flag::eUSER);
    EXPECT_EQ(Held(mLeaf), "");
}

TEST_F(KLyrPropertyPageInheritanceTest, PushMakesPropertiesOfThePageSeenFromTheParent) {
    const OwnedPage lSide = MakeInstance(mMiddle);
    const int lOwn = mLeaf->Add(kA, "own", eDOUBLE1);
    SetNumber(mLeaf, lOwn, 4);
    mLeaf->ModifyFlags(lOwn, Flag::eHIDDEN, true, false);
    mRoot->GetIdGenerator()->SkipTo(lOwn + 5);
    mLeaf->Add(lOwn, "behind a gap", eDOUBLE1);
    const std::string lBefore = Seen(mLeaf);
    mLeaf->PushPropertiesToParentInstance();
    EXPECT_EQ(Seen(mLeaf), lBefore);
    EXPECT_EQ(Seen(mMiddle), lBefore);
    EXPECT_EQ(Seen(lSide), lBefore);
    EXPECT_EQ(Held(mLeaf), "");
    EXPECT_EQ(OwnFlagData(mMiddle, lOwn), 0x7FFF0040u);
    EXPECT_EQ(mRoot->GetPropertyEntry(lOwn), nullptr);
}

TEST_F(KLyrPropertyPageInheritanceTest, PushTakesTheLargestIdAlong) {
    ASSERT_TRUE(mRoot->GetIdGenerator()->SkipTo(INT_MAX));
    ASSERT_EQ(mLeaf->Add(0, "last", eDOUBLE1), INT_MAX);
    mLeaf->PushPropertiesToParentInstance();
    EXPECT_EQ(Held(mLeaf), "");
    EXPECT_EQ(Tree(mMiddle, 0), "a=1 last=0");
}

TEST_F(KLyrPropertyPageInheritanceTest, PushLeavesConnectionsWhereTheyWere) {
    const OwnedPage lOther = MakeRoot();
    ASSERT_TRUE(mLeaf->ConnectSrc(kA, lOther.get(), 0, eLyrConnectionNone));
    const int lOwn = mLeaf->Add(0, "own", eDOUBLE1);
    ASSERT_TRUE(mLeaf->ConnectSrc(lOwn, lOther.get(), 0, eLyrConnectionNone));
    SetNumber(mLeaf, kA, 3);
    mLeaf->PushPropertiesToParentInstance();
    EXPECT_EQ(Held(mLeaf), "1<0 --c 0\n2<0 --c 0\n");
    EXPECT_EQ(Held(mMiddle), "1<0 -v- 0\n2<0 iv- 7fff0000\n");
    EXPECT_TRUE(mLeaf->IsConnectedSrc(kA, lOther.get(), 0));
    EXPECT_TRUE(mLeaf->IsConnectedSrc(lOwn, lOther.get(), 0));
    EXPECT_EQ(mMiddle->GetSrcCount(kA, nullptr), 0);
}

TEST_F(KLyrPropertyPageInheritanceTest, RepeatedPushesBringAnItemToTheTop) {
    SetNumber(mLeaf, kA, 7);
    mLeaf->PushPropertiesToParentInstance();
    mLeaf->PushPropertiesToParentInstance();
    EXPECT_EQ(NumberOf(mRoot, kA), 1);
    mMiddle->PushPropertiesToParentInstance();
    mMiddle->PushPropertiesToParentInstance();
    EXPECT_EQ(NumberOf(mRoot, kA), 7);
    EXPECT_EQ(Held(mMiddle), "");
    mRoot->PushPropertiesToParentInstance();
    EXPECT_EQ(NumberOf(mLeaf, kA), 7);
}

TEST_F(KLyrPropertyPageInheritanceTest, PushOfRandomPagesIsNotSeenThroughThem) {
    for (unsigned lSeed = 1; lSeed <= 400; ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(80);
        for (int i = 0; i < 4; ++i) {
            const OwnedPage& lPage = lFamily.AnyPage();
            const std::string lBefore = Seen(lPage);
            lPage->PushPropertiesToParentInstance();
            ASSERT_EQ(Seen(lPage), lBefore);
            for (int lId = 0; lId < lPage->GetPropertyEntryCount() && lPage->GetInstanceOf(); ++lId) {
                ASSERT_EQ(OwnItem<KLyrPropertyInfo>(lPage, lId), nullptr) << lId;
                ASSERT_EQ(OwnItem<KLyrPropertyValue>(lPage, lId), nullptr) << lId;
                ASSERT_EQ(OwnFlagData(lPage, lId), 0u) << lId;
            }
            lFamily.Change(5);
        }
    }
}

}  // namespace
}  // namespace lyrsdk
