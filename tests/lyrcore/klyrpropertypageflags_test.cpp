#include <gtest/gtest.h>

#include <climits>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/page_family.h"

namespace lyrsdk {
namespace {

using Flag = LyrPropertyFlags;
using FlagSet = KLyrPropertyPage::eLyrPropertyFlags;

// Flags of a page: what is seen, where it comes from, and changing it. Property 0 is the root's, with all flags off.
class KLyrPropertyPageFlagsTest : public PageTest {
protected:
    OwnedPage mRoot = MakeRoot("root", eDOUBLE1);
    OwnedPage mMiddle = MakeInstance(mRoot);
    OwnedPage mLeaf = MakeInstance(mMiddle);
};

// --- what is seen ----------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageFlagsTest, EachPageLaysItsOwnFlagsOverTheInheritedOnes) {
    EXPECT_EQ(mLeaf->GetFlags(0), 0u);
    mRoot->ModifyFlags(0, Flag::eANIMATABLE | Flag::eUSER, true, false);
    mMiddle->ModifyFlags(0, Flag::eUSER, false, false);
    mMiddle->ModifyFlags(0, Flag::eTEMPORARY, true, false);
    mLeaf->ModifyFlags(0, Flag::eANIMATABLE, false, false);
    EXPECT_EQ(mRoot->GetFlags(0), Flag::eANIMATABLE | Flag::eUSER);
    EXPECT_EQ(mMiddle->GetFlags(0), Flag::eANIMATABLE | Flag::eTEMPORARY);
    EXPECT_EQ(mLeaf->GetFlags(0), Flag::eTEMPORARY);
    mRoot->ModifyFlags(0, Flag::eHIDDEN, true, false);
    EXPECT_EQ(mLeaf->GetFlags(0), Flag::eTEMPORARY | Flag::eHIDDEN);
}

TEST_F(KLyrPropertyPageFlagsTest, UnknownPropertyHasNoFlags) {
    const int lBelow = mMiddle->Add(0, "a", eDOUBLE1);
    mMiddle->ModifyFlags(lBelow, Flag::AllFlags(), true, false);
    EXPECT_EQ(mRoot->GetFlags(lBelow), 0u);
    EXPECT_EQ(mLeaf->GetFlags(lBelow), Flag::AllFlags());
    EXPECT_EQ(mLeaf->GetFlagsInheritType(Flag::AllFlags(), true, lBelow), eLyrInherit) << "the root does not know it";
    for (int lId : {9, -1, -2, INT_MAX, INT_MIN}) {
        EXPECT_EQ(mLeaf->GetFlags(lId), 0u);
        for (bool lCheck : {false, true}) {
            EXPECT_EQ(mLeaf->GetFlagsInheritType(Flag::AllFlags(), lCheck, lId), eLyrInherit);
            EXPECT_FALSE(mLeaf->ModifyFlags(lId, Flag::eUSER, true, lCheck));
            EXPECT_FALSE(mLeaf->ModifyFlags(lId, Flag::eNO_FLAG, true, lCheck));
        }
        EXPECT_FALSE(mLeaf->SetFlagsInheritType(eLyrOverride, Flag::eUSER, lId));
        EXPECT_FALSE(mLeaf->SetFlagsInheritType(eLyrInherit, Flag::eUSER, lId));
        EXPECT_FALSE(mLeaf->SetFlagsInheritType(eLyrDeleted, Flag::eUSER, lId));
    }
    EXPECT_EQ(Held(mLeaf), "");
}

TEST_F(KLyrPropertyPageFlagsTest, AllSixteenBitsOfAFlagsItemAreSeen) {
    EXPECT_TRUE(mMiddle->ModifyFlags(0, Flags(0xFFFF), true, false));
    EXPECT_EQ(OwnFlagData(mMiddle, 0), 0xFFFFFFFFu);
    EXPECT_EQ(mLeaf->GetFlags(0), 0xFFFFu);
    EXPECT_EQ(mLeaf->GetFlagsInheritType(Flags(0x8000), true, 0), eLyrInherit);
    EXPECT_EQ(mMiddle->GetFlagsInheritType(Flags(0x8000), false, 0), eLyrOverride);
}

// --- where it comes from ---------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageFlagsTest, StateIsOverrideWhereAnyOfTheFlagsIsSetOnThePage) {
    mLeaf->ModifyFlags(0, Flag::eHIDDEN, false, false);
    EXPECT_EQ(mLeaf->GetFlagsInheritType(Flag::eHIDDEN, false, 0), eLyrOverride) << "off is a setting too";
    EXPECT_EQ(mLeaf->GetFlagsInheritType(Flag::eHIDDEN | Flag::eUSER, false, 0), eLyrOverride);
    EXPECT_EQ(mLeaf->GetFlagsInheritType(Flag::eUSER, false, 0), eLyrInherit);
    EXPECT_EQ(mLeaf->GetFlagsInheritType(Flag::eNO_FLAG, false, 0), eLyrInherit);
    EXPECT_EQ(mMiddle->GetFlagsInheritType(Flag::eHIDDEN, false, 0), eLyrInherit);
    EXPECT_EQ(mRoot->GetFlagsInheritType(Flag::eHIDDEN, false, 0), eLyrOverride);
}

TEST_F(KLyrPropertyPageFlagsTest, WithTheCheckASecondOverridingPageUpTheChainCounts) {
    EXPECT_EQ(mRoot->GetFlagsInheritType(Flag::eUSER, true, 0), eLyrOverride);
    EXPECT_EQ(mLeaf->GetFlagsInheritType(Flag::eUSER, true, 0), eLyrInherit) << "only the root sets it";
    mMiddle->ModifyFlags(0, Flag::eUSER, true, false);
    EXPECT_EQ(mMiddle->GetFlagsInheritType(Flag::eUSER, true, 0), eLyrOverride);
    EXPECT_EQ(mLeaf->GetFlagsInheritType(Flag::eUSER, true, 0), eLyrOverride) << "the page between and the root";
    EXPECT_EQ(mLeaf->GetFlagsInheritType(Flag::eHIDDEN, true, 0), eLyrInherit);
    EXPECT_EQ(mLeaf->GetFlagsInheritType(Flag::eNO_FLAG, true, 0), eLyrInherit);
}

TEST_F(KLyrPropertyPageFlagsTest, WithTheCheckAPageWithoutAnEntryCountsForTheOneItSees) {
    mLeaf->ModifyFlags(0, Flag::eHIDDEN, true, false);
    EXPECT_EQ(mLeaf->GetFlagsInheritType(Flag::eUSER, true, 0), eLyrOverride) << "the page between shows the root's";
    const OwnedPage lDirect = MakeInstance(mRoot);
    lDirect->ModifyFlags(0, Flag::eHIDDEN, true, false);
    EXPECT_EQ(lDirect->GetFlagsInheritType(Flag::eUSER, true, 0), eLyrInherit);
}

// The flags seen, asked of each page in turn from the top.
unsigned MergedFlags(const KLyrPropertyPage& pPage, int pId) {
    const KLyrPropertyFlags* lItem = pPage.GetPropertyItem<KLyrPropertyFlags>(nullptr, pId);
    if (!lItem)
        return 0;
    const KLyrPropertyPage* lParent = pPage.GetInstanceOf();
    return lParent ? lItem->GetMergedFlags(MergedFlags(*lParent, pId)) : lItem->GetFlags();
}

// The state with the check, page by page from the one where the flags are found.
KLyrInheritType CheckedState(const KLyrPropertyPage& pPage, FlagSet pFlags, int pId) {
    KLyrPropertyPage* lPage = nullptr;
    pPage.GetPropertyItem<KLyrPropertyFlags>(nullptr, pId, &lPage);
    bool lSeen = false;
    for (; lPage; lPage = lPage->GetInstanceOf()) {
        const KLyrPropertyFlags* lItem = lPage->GetPropertyItem<KLyrPropertyFlags>(nullptr, pId);
        if (!lItem)
            return eLyrInherit;
        if (lItem->GetFlagsInheritType(pFlags) != eLyrOverride)
            continue;
        if (lPage == &pPage || lSeen)
            return eLyrOverride;
        lSeen = true;
    }
    return eLyrInherit;
}

TEST_F(KLyrPropertyPageFlagsTest, RandomFamiliesShowWhatAPlainWalkFinds) {
    for (unsigned lSeed = 1; lSeed <= 300; ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(100);
        for (const OwnedPage& lPage : lFamily.Pages()) {
            for (int lId = -1; lId < RandomFamily::kMaxProperties + 1; ++lId) {
                ASSERT_EQ(lPage->GetFlags(lId), MergedFlags(*lPage, lId));
                for (unsigned lFlags : {1u, 2u, 4u, 64u, 0u, 3u, 0x7FFFu})
                    ASSERT_EQ(lPage->GetFlagsInheritType(Flags(lFlags), true, lId),
                              CheckedState(*lPage, Flags(lFlags), lId))
                        << lFlags;
            }
        }
    }
}

// --- the state set ---------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageFlagsTest, OverrideCopiesWhatTheParentShows) {
    mRoot->ModifyFlags(0, Flag::eUSER | Flag::eHIDDEN, true, false);
    mMiddle->ModifyFlags(0, Flag::eHIDDEN, false, false);
    EXPECT_TRUE(mLeaf->SetFlagsInheritType(eLyrOverride, Flag::eUSER | Flag::eHIDDEN | Flag::ePUBLISHED, 0));
    EXPECT_EQ(OwnFlagData(mLeaf, 0), (Flag::eUSER | Flag::eHIDDEN | Flag::ePUBLISHED) * 0x10000u + Flag::eUSER)
        << "the page between hides eHIDDEN, and eUSER comes from the root";
    mRoot->ModifyFlags(0, Flag::eUSER, false, false);
    EXPECT_EQ(mLeaf->GetFlags(0), Flag::eUSER);
    EXPECT_EQ(mMiddle->GetFlags(0), 0u);
}

TEST_F(KLyrPropertyPageFlagsTest, OverrideBringsTheParentsOtherFlagsAlongUnmarked) {
    mRoot->ModifyFlags(0, Flag::eUSER, true, false);
    EXPECT_TRUE(mLeaf->SetFlagsInheritType(eLyrOverride, Flag::eHIDDEN, 0));
    EXPECT_EQ(OwnFlagData(mLeaf, 0), Flag::eHIDDEN * 0x10000u + Flag::eUSER);
    EXPECT_EQ(mLeaf->GetFlagsInheritType(Flag::eUSER, false, 0), eLyrInherit);
    mRoot->ModifyFlags(0, Flag::eUSER, false, false);
    EXPECT_EQ(mLeaf->GetFlags(0), Flag::eUSER);
    EXPECT_TRUE(mLeaf->SetFlagsInheritType(eLyrInherit, Flag::eUSER, 0));
    EXPECT_EQ(mLeaf->GetFlags(0), 0u);
    EXPECT_EQ(OwnFlagData(mLeaf, 0), Flag::eHIDDEN * 0x10000u);
}

TEST_F(KLyrPropertyPageFlagsTest, OverrideTurnsFlagsOnThatWereOffHereAndAreOnInTheParent) {
    mRoot->ModifyFlags(0, Flag::eUSER, true, false);
    mLeaf->ModifyFlags(0, Flag::eUSER, false, false);
    EXPECT_TRUE(mLeaf->SetFlagsInheritType(eLyrOverride, Flag::eHIDDEN, 0));
    EXPECT_EQ(OwnFlagData(mLeaf, 0), (Flag::eHIDDEN | Flag::eUSER) * 0x10000u + Flag::eUSER);
}

TEST_F(KLyrPropertyPageFlagsTest, OverrideOfAFlagThatIsSetHereTakesTheParentsValueAgain) {
    mLeaf->ModifyFlags(0, Flag::eUSER, true, false);
    EXPECT_TRUE(mLeaf->SetFlagsInheritType(eLyrOverride, Flag::eUSER, 0));
    EXPECT_EQ(mLeaf->GetFlags(0), 0u);
    EXPECT_EQ(mLeaf->GetFlagsInheritType(Flag::eUSER, false, 0), eLyrOverride);
}

TEST_F(KLyrPropertyPageFlagsTest, OverrideNeedsAParentWithTheProperty) {
    const std::string lBefore = Held(mRoot);
    EXPECT_FALSE(mRoot->SetFlagsInheritType(eLyrOverride, Flag::eUSER, 0));
    EXPECT_EQ(Held(mRoot), lBefore);
    const int lOwn = mLeaf->Add(0, "own", eDOUBLE1);
    mLeaf->ModifyFlags(lOwn, Flag::eUSER, true, false);
    EXPECT_FALSE(mLeaf->SetFlagsInheritType(eLyrOverride, Flag::eUSER, lOwn));
    EXPECT_EQ(mLeaf->GetFlags(lOwn), Flag::eUSER);
}

TEST_F(KLyrPropertyPageFlagsTest, OverrideOfNoFlagLeavesNothingBehind) {
    mRoot->ModifyFlags(0, Flag::eUSER, true, false);
    EXPECT_TRUE(mLeaf->SetFlagsInheritType(eLyrOverride, Flag::eNO_FLAG, 0));
    EXPECT_EQ(Held(mLeaf), "");
    EXPECT_TRUE(mLeaf->SetFlagsInheritType(eLyrInherit, Flag::eNO_FLAG, 0));
    EXPECT_EQ(Held(mLeaf), "");
}

TEST_F(KLyrPropertyPageFlagsTest, InheritShowsTheParentsFlagsAndDropsTheEntryWithTheLast) {
    mRoot->ModifyFlags(0, Flag::eUSER, true, false);
    mLeaf->ModifyFlags(0, Flag::eHIDDEN | Flag::eTEMPORARY, true, false);
    mLeaf->ModifyFlags(0, Flag::eUSER, false, false);
    EXPECT_TRUE(mLeaf->SetFlagsInheritType(eLyrInherit, Flag::eHIDDEN, 0));
    EXPECT_EQ(mLeaf->GetFlags(0), Flag::eTEMPORARY);
    EXPECT_TRUE(mLeaf->SetFlagsInheritType(eLyrInherit, Flag::eUSER, 0));
    EXPECT_EQ(mLeaf->GetFlags(0), Flag::eTEMPORARY | Flag::eUSER);
    EXPECT_TRUE(mLeaf->SetFlagsInheritType(eLyrInherit, Flag::eTEMPORARY, 0));
    EXPECT_EQ(Held(mLeaf), "");
    EXPECT_TRUE(mLeaf->SetFlagsInheritType(eLyrInherit, Flag::eTEMPORARY, 0)) << "inherited already";
    SetNumber(mLeaf, 0, 1);
    mLeaf->ModifyFlags(0, Flag::eHIDDEN, true, false);
    EXPECT_TRUE(mLeaf->SetFlagsInheritType(eLyrInherit, Flag::AllFlags(), 0));
    EXPECT_EQ(Held(mLeaf), "0<-1 -v- 0\n") << "the value keeps its entry";
}

TEST_F(KLyrPropertyPageFlagsTest, InheritLeavesFlagsOfTheAncestorsAlone) {
    mRoot->ModifyFlags(0, Flag::eUSER, true, false);
    mMiddle->ModifyFlags(0, Flag::eHIDDEN, true, false);
    const std::string lAbove = Held(mRoot) + Held(mMiddle);
    EXPECT_TRUE(mLeaf->SetFlagsInheritType(eLyrInherit, Flag::AllFlags(), 0));
    EXPECT_EQ(Held(mRoot) + Held(mMiddle), lAbove);
}

TEST_F(KLyrPropertyPageFlagsTest, InheritWithoutAParentTakesTheMarkAndKeepsTheFlag) {
    mRoot->ModifyFlags(0, Flag::eUSER, true, false);
    EXPECT_TRUE(mRoot->SetFlagsInheritType(eLyrInherit, Flag::eUSER, 0));
    EXPECT_EQ(OwnFlagData(mRoot, 0), (0x7FFFu - Flag::eUSER) * 0x10000u + Flag::eUSER);
    EXPECT_TRUE(mRoot->SetFlagsInheritType(eLyrInherit, Flag::AllFlags(), 0));
    EXPECT_EQ(OwnFlagData(mRoot, 0), static_cast<unsigned>(Flag::eUSER));
    EXPECT_EQ(mLeaf->GetFlags(0), Flag::eUSER);
}

TEST_F(KLyrPropertyPageFlagsTest, DeletedIsRefused) {
    mLeaf->ModifyFlags(0, Flag::eUSER, true, false);
    const std::string lBefore = Held(mLeaf);
    EXPECT_FALSE(mLeaf->SetFlagsInheritType(eLyrDeleted, Flag::eUSER, 0));
    EXPECT_EQ(Held(mLeaf), lBefore);
}

// --- flags changed ---------------------------------------------------------------------------------------------------

struct ModifyCase {
    unsigned mParent;  // what the parent shows
    unsigned mOwnOn;   // set on this page: on
    unsigned mOwnOff;  // and off
    unsigned mFlags;
    bool mValue;
    bool mCheck;
    unsigned mDataAfter;  // mask and flags of the page's own entry
};

constexpr unsigned kA = 1, kB = 2, kC = 4;
constexpr unsigned Masked(unsigned pMask, unsigned pFlags) {
    return pMask << 16 | pFlags;
}

constexpr ModifyCase kModifyCases[] = {
    // nothing set here, no check
    {0, 0, 0, kA, true, false, Masked(kA, kA)},
    {0, 0, 0, kA, false, false, Masked(kA, 0)},
    {kA, 0, 0, kA, true, false, Masked(kA, kA)},
    {kA, 0, 0, kA, false, false, Masked(kA, 0)},
    {kA | kB, 0, 0, kA, true, false, Masked(kA, kA)},
    {0, 0, 0, 0, true, false, 0},
    // nothing set here, check: all on above means no change, whatever is asked
    {kA, 0, 0, kA, true, true, 0},
    {kA, 0, 0, kA, false, true, 0},
    {kA | kB, 0, 0, kA | kB, false, true, 0},
    {kA, 0, 0, kA | kB, true, true, Masked(kA | kB, kA | kB)},
    {kA, 0, 0, kA | kB, false, true, Masked(kA | kB, 0)},
    {0, 0, 0, kA, true, true, Masked(kA, kA)},
    {0, 0, 0, kA, false, true, Masked(kA, 0)},
    {0, 0, 0, 0, false, true, 0},
    // set here, no check: stays set
    {kA, 0, kA, kA, true, false, Masked(kA, kA)},
    {0, kA, 0, kA, false, false, Masked(kA, 0)},
    {0, kA, kB, kC, true, false, Masked(kA | kB | kC, kA | kC)},
    // set here, check: what equals the parent's goes back
    {kA, 0, kA, kA, true, true, 0},
    {0, kA, 0, kA, false, true, 0},
    {kA, kA, 0, kA, true, true, 0},
    {0, kA, 0, kA, true, true, Masked(kA, kA)},
    {kA, kA, 0, kA, false, true, Masked(kA, 0)},
    {0, kA | kB, 0, kA, false, true, Masked(kB, kB)},
    {kA, kB, kA, kA, true, true, Masked(kB, kB)},
    {kA, kC, kB, kA, true, true, Masked(kB | kC, kC)},
    {kA, kC, 0, kB, false, true, Masked(kC, kC)},
    {kA, kC, 0, kA | kB, true, true, Masked(kA | kB | kC, kA | kB | kC)},
    {kA | kB, kC, 0, kA | kB, true, true, Masked(kC, kC)},
    {0, kC, 0, 0, true, true, Masked(kC, kC)},
    // the undefined top bit is a bit like the others, and bits above change marks
    {0, 0, 0, 0x8000, true, false, Masked(0x8000, 0x8000)},
    {0x8000, 0x8000, 0, 0x8000, true, true, 0},
    {0, kA, 0, 0x20000, true, false, Masked(kA | kB, kA)},
    {0, kA, kB, 0x20000, false, false, Masked(kA, kA)},
    {kA, 0, 0, 0x10000 | kA, true, true, 0},
    {kA, 0, 0, 0x10000, false, true, 0},
};

TEST_F(KLyrPropertyPageFlagsTest, ModifyingFollowsTheTable) {
    for (const ModifyCase& lCase : kModifyCases) {
        SCOPED_TRACE(testing::Message() << "row " << &lCase - kModifyCases);
        const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
        const OwnedPage lMiddle = MakeInstance(lRoot);
        const OwnedPage lLeaf = MakeInstance(lMiddle);
        // What the parent shows is half its own and half the root's.
        lRoot->ModifyFlags(0, Flags(lCase.mParent & 0xAAAAu), true, false);
        lMiddle->ModifyFlags(0, Flags(lCase.mParent & 0x5555u), true, false);
        lLeaf->ModifyFlags(0, Flags(lCase.mOwnOn), true, false);
        lLeaf->ModifyFlags(0, Flags(lCase.mOwnOff), false, false);
        const unsigned lOtherFlags = ~lCase.mFlags & lLeaf->GetFlags(0);
        const std::string lAbove = Held(lRoot) + Held(lMiddle);
        EXPECT_TRUE(lLeaf->ModifyFlags(0, Flags(lCase.mFlags), lCase.mValue, lCase.mCheck));
        EXPECT_EQ(OwnFlagData(lLeaf, 0), lCase.mDataAfter);
        EXPECT_EQ(OwnEntry(lLeaf, 0) != nullptr, lCase.mDataAfter != 0) << "an entry that holds nothing goes";
        EXPECT_EQ(~lCase.mFlags & lLeaf->GetFlags(0), lOtherFlags);
        EXPECT_EQ(Held(lRoot) + Held(lMiddle), lAbove);
    }
}

TEST_F(KLyrPropertyPageFlagsTest, AncestorsFlagsAreComparedAsTheyAreSeen) {
    mRoot->ModifyFlags(0, Flag::eUSER, true, false);
    mMiddle->ModifyFlags(0, Flag::eHIDDEN, true, false);
    EXPECT_TRUE(mLeaf->ModifyFlags(0, Flag::eUSER | Flag::eHIDDEN, true, true));
    EXPECT_EQ(Held(mLeaf), "") << "one is the root's, the other the middle's";
    mLeaf->ModifyFlags(0, Flag::eUSER, false, false);
    EXPECT_TRUE(mLeaf->ModifyFlags(0, Flag::eUSER, true, true));
    EXPECT_EQ(Held(mLeaf), "");
}

TEST_F(KLyrPropertyPageFlagsTest, FamilyRootsFlagsStaySetWithAndWithoutTheCheck) {
    for (bool lCheck : {false, true}) {
        EXPECT_TRUE(mRoot->ModifyFlags(0, Flag::eUSER, true, lCheck));
        EXPECT_EQ(OwnFlagData(mRoot, 0), 0x7FFF0000u + Flag::eUSER);
        EXPECT_TRUE(mRoot->ModifyFlags(0, Flag::eUSER, false, lCheck));
        EXPECT_EQ(OwnFlagData(mRoot, 0), 0x7FFF0000u);
    }
    const int lOwn = mLeaf->Add(0, "own", eDOUBLE1);
    EXPECT_TRUE(mLeaf->ModifyFlags(lOwn, Flag::eUSER, true, true));
    EXPECT_EQ(OwnFlagData(mLeaf, lOwn), 0x7FFF0000u + Flag::eUSER);
}

TEST_F(KLyrPropertyPageFlagsTest, FlagsThatGoBackLeaveTheValueAlone) {
    SetNumber(mLeaf, 0, 4);
    EXPECT_TRUE(mLeaf->ModifyFlags(0, Flag::eUSER, true, true));
    EXPECT_EQ(Held(mLeaf), "0<-1 -v- 20002\n");
    EXPECT_TRUE(mLeaf->ModifyFlags(0, Flag::eUSER, false, true));
    EXPECT_EQ(Held(mLeaf), "0<-1 -v- 0\n");
    EXPECT_TRUE(mLeaf->ModifyFlags(0, Flag::eUSER, false, true)) << "equal to the parent's at once";
    EXPECT_EQ(Held(mLeaf), "0<-1 -v- 0\n");
}

TEST_F(KLyrPropertyPageFlagsTest, EmptyEntryThatWasThereStaysWhenNoFlagIsChanged) {
    const KLyrPropertyEntry* lEntry = mLeaf->ChangePropertyEntryState(0, eLyrOverride);
    EXPECT_TRUE(mLeaf->ModifyFlags(0, Flag::eNO_FLAG, true, false));
    EXPECT_TRUE(mLeaf->SetFlagsInheritType(eLyrOverride, Flag::eNO_FLAG, 0));
    EXPECT_EQ(OwnEntry(mLeaf, 0), lEntry);
}

TEST_F(KLyrPropertyPageFlagsTest, RandomChangesShowTheFlagsThatWereAskedFor) {
    for (unsigned lSeed = 1; lSeed <= 300; ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(60);
        for (int i = 0; i < 40; ++i) {
            const OwnedPage& lPage = lFamily.AnyPage();
            const int lId = lFamily.AnyId();
            const FlagSet lFlags = lFamily.AnyFlags();
            const bool lValue = lFamily.Below(2) == 0;
            const bool lCheck = lFamily.Below(2) == 0;
            const bool lKnown = lPage->GetPropertyEntry(lId) != nullptr;
            const bool lNoChange = lCheck && !OwnEntry(lPage, lId) && (lPage->GetFlags(lId) & lFlags) == lFlags;
            const unsigned lExpected = lNoChange ? static_cast<unsigned>(lFlags) : lValue && lKnown ? lFlags : 0u;
            ASSERT_EQ(lPage->ModifyFlags(lId, lFlags, lValue, lCheck), lKnown);
            ASSERT_EQ(lPage->GetFlags(lId) & lFlags, lExpected) << "change " << i;
            lFamily.Change(1);
        }
    }
}

}  // namespace
}  // namespace lyrsdk
