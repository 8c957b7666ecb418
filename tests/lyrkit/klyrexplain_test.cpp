#include "lyrfilesdk/lyrkit/klyrexplain.h"

#include <gtest/gtest.h>

#include "tests/support/page_family.h"

namespace lyrsdk {
namespace {

using Origin = KLyrOrigin;

class ExplainTest : public PageTest {
protected:
    static constexpr int kId = 1;

    ExplainTest() { mTop->Add(0, "power", eDOUBLE1); }

    static KLyrExplanation Explain(const OwnedPage& pPage, int pId = kId) {
        return lyrExplain(KLyrPropertyHandle(pPage.get(), pId));
    }
    static KLyrPropertyHandle At(const OwnedPage& pPage, int pId = kId) { return KLyrPropertyHandle(pPage.get(), pId); }

    OwnedPage mTop = MakeRoot();
    OwnedPage mMiddle = MakeInstance(mTop);
    OwnedPage mLow = MakeInstance(mMiddle);
};

void ExpectItem(const KLyrItemOrigin& pItem, Origin pOrigin, int pDistance, const KLyrPropertyHandle& pHolder,
                const KLyrPropertyHandle& pIfInherited) {
    EXPECT_EQ(pItem.mOrigin, pOrigin);
    EXPECT_EQ(pItem.mDistance, pDistance);
    EXPECT_EQ(pItem.mHolder, pHolder);
    EXPECT_EQ(pItem.mIfInherited, pIfInherited);
}

TEST_F(ExplainTest, APageThatAddedAPropertyHoldsAllOfItAndCannotHandItBack) {
    const KLyrExplanation lAnswer = Explain(mTop);
    EXPECT_EQ(lAnswer.mProperty, At(mTop));
    EXPECT_EQ(lAnswer.mAddedBy, At(mTop));
    ExpectItem(lAnswer.mDescription, Origin::eOwn, 0, At(mTop), KLyrPropertyHandle());
    ExpectItem(lAnswer.mValue, Origin::eOwn, 0, At(mTop), KLyrPropertyHandle());
    ExpectItem(lAnswer.mConnections, Origin::eNowhere, -1, KLyrPropertyHandle(), KLyrPropertyHandle());
    EXPECT_EQ(lAnswer.mFlagsSet, LyrPropertyFlags::AllFlags());
}

TEST_F(ExplainTest, AnInstanceWithoutAnythingOfItsOwnTakesAllFromAbove) {
    const KLyrExplanation lAnswer = Explain(mLow);
    EXPECT_EQ(lAnswer.mAddedBy, At(mTop));
    ExpectItem(lAnswer.mDescription, Origin::eInherited, 2, At(mTop), At(mTop));
    ExpectItem(lAnswer.mValue, Origin::eInherited, 2, At(mTop), At(mTop));
    EXPECT_EQ(lAnswer.mFlags[6].mOrigin, Origin::eInherited);
    EXPECT_EQ(lAnswer.mFlags[6].mDistance, 2);
    EXPECT_EQ(lAnswer.mFlagsSet, LyrPropertyFlags::eNO_FLAG);
}

TEST_F(ExplainTest, AnEntryInTheMiddleThatLacksAnItemIsPassed) {
    ASSERT_TRUE(mMiddle->ModifyFlags(kId, LyrPropertyFlags::eHIDDEN, true, false));
    const KLyrExplanation lAnswer = Explain(mLow);
    ExpectItem(lAnswer.mValue, Origin::eInherited, 2, At(mTop), At(mTop));
    EXPECT_EQ(lAnswer.mFlags[6].mDistance, 1);
    EXPECT_EQ(lAnswer.mFlags[6].mHolder, At(mMiddle));
    EXPECT_TRUE(lAnswer.mFlags[6].mIsOn);
    EXPECT_TRUE(lAnswer.mFlags[6].mIsSet);
    EXPECT_TRUE(lAnswer.mFlags[6].mIsOnIfInherited);
    EXPECT_EQ(lAnswer.mFlags[5].mDistance, 2);
    EXPECT_FALSE(lAnswer.mFlags[5].mIsOn);
    EXPECT_EQ(Explain(mMiddle).mFlagsIfInherited, LyrPropertyFlags::eNO_FLAG);
}

TEST_F(ExplainTest, AnOwnValueOverAnotherOneSaysWhichOneShowsBehindIt) {
    SetNumber(mMiddle, kId, 2);
    SetNumber(mLow, kId, 3);
    ExpectItem(Explain(mLow).mValue, Origin::eOwn, 0, At(mLow), At(mMiddle));
    ExpectItem(Explain(mMiddle).mValue, Origin::eOwn, 0, At(mMiddle), At(mTop));
}

TEST_F(ExplainTest, AFlagThatWasCopiedWithoutAMarkIsHeldButNotSet) {
    mTop->ModifyFlags(kId, LyrPropertyFlags::eHIDDEN | LyrPropertyFlags::eUSER, true, false);
    ASSERT_TRUE(mLow->SetFlagsInheritType(eLyrOverride, LyrPropertyFlags::eHIDDEN, kId));
    mTop->ModifyFlags(kId, LyrPropertyFlags::eUSER, false, false);
    const KLyrExplanation lAnswer = Explain(mLow);
    EXPECT_EQ(lAnswer.mFlags[1].mOrigin, Origin::eOwn);
    EXPECT_TRUE(lAnswer.mFlags[1].mIsOn);
    EXPECT_FALSE(lAnswer.mFlags[1].mIsSet);
    EXPECT_FALSE(lAnswer.mFlags[1].mIsOnIfInherited);
    EXPECT_EQ(lAnswer.mFlagsSet, LyrPropertyFlags::eHIDDEN);
}

TEST_F(ExplainTest, ConnectionsAreCountedOnlyWhereTheyWereMade) {
    const OwnedPage lPeer = MakeRoot("peer", eDOUBLE1);
    ASSERT_TRUE(mMiddle->ConnectSrc(kId, lPeer.get(), 0, eLyrConnectionData));
    const KLyrExplanation lAtMiddle = Explain(mMiddle);
    ExpectItem(lAtMiddle.mConnections, Origin::eOwn, 0, At(mMiddle), KLyrPropertyHandle());
    EXPECT_EQ(lAtMiddle.mSrcCount, 1);
    EXPECT_EQ(lAtMiddle.mDstCount, 0);
    const KLyrExplanation lAtLow = Explain(mLow);
    ExpectItem(lAtLow.mConnections, Origin::eInherited, 1, At(mMiddle), At(mMiddle));
    EXPECT_EQ(lAtLow.mSrcCount, 0);
    EXPECT_EQ(Explain(lPeer, 0).mDstCount, 1);
}

TEST_F(ExplainTest, NoMemoryIsTaken) {
    SetNumber(mLow, kId, 3);
    const std::size_t lBefore = MemoryProbe::Allocations();
    EXPECT_EQ(Explain(mLow).mValue.mDistance, 0);
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
}

TEST_F(ExplainTest, WhatDoesNotExistIsFromNowhere) {
    for (const KLyrPropertyHandle& lProperty : {KLyrPropertyHandle(), KLyrPropertyHandle(nullptr, 0), At(mLow, -1),
                                                At(mLow, 99), At(mLow, -5), At(mLow, 2147483647)}) {
        const KLyrExplanation lAnswer = lyrExplain(lProperty);
        EXPECT_EQ(lAnswer.mProperty, lProperty);
        EXPECT_EQ(lAnswer.mAddedBy, KLyrPropertyHandle());
        for (const KLyrItemOrigin& lItem : {lAnswer.mDescription, lAnswer.mValue, lAnswer.mConnections})
            ExpectItem(lItem, Origin::eNowhere, -1, KLyrPropertyHandle(), KLyrPropertyHandle());
        for (const KLyrFlagOrigin& lFlag : lAnswer.mFlags)
            EXPECT_TRUE(lFlag.mOrigin == Origin::eNowhere && lFlag.mDistance == -1 && !lFlag.mIsOn);
    }
}

// --- families at random ----------------------------------------------------------------------------------------------

// The pages from pPage up that hold an own item, looked at one by one.
template <typename T>
std::vector<int> DistancesOf(const KLyrPropertyPage* pPage, int pId) {
    std::vector<int> lDistances;
    int lDistance = 0;
    for (; pPage; pPage = pPage->GetInstanceOf(), ++lDistance)
        if (OwnItem<T>(*pPage, pId))
            lDistances.push_back(lDistance);
    return lDistances;
}

template <typename T>
void ExpectLooksAs(const KLyrItemOrigin& pItem, const KLyrPropertyHandle& pProperty) {
    const std::vector<int> lDistances = DistancesOf<T>(pProperty.GetPage(), pProperty.GetId());
    ASSERT_EQ(pItem.mDistance, lDistances.empty() ? -1 : lDistances[0]);
    const KLyrPropertyPage* lPage = pProperty.GetPage();
    for (int i = 0; i < pItem.mDistance; ++i)
        lPage = lPage->GetInstanceOf();
    EXPECT_EQ(pItem.mHolder.GetPage(), pItem.mDistance < 0 ? nullptr : lPage);
    const bool lShowsAnother = lDistances.size() > (pItem.mDistance == 0 ? 1u : 0u);
    EXPECT_EQ(pItem.mIfInherited.Valid(), lShowsAnother);
}

void ExpectFlags(const KLyrExplanation& pAnswer, const KLyrPropertyHandle& pProperty) {
    EXPECT_EQ(pAnswer.mFlagsSeen, pProperty.GetFlags());
    for (int i = 0; i < KLyrExplanation::kFlagCount; ++i) {
        const KLyrFlagOrigin& lFlag = pAnswer.mFlags[i];
        EXPECT_EQ(lFlag.mIsOn, (pProperty.GetFlags() >> i & 1u) != 0);
        if (lFlag.mDistance != 0 || !lFlag.mIsSet) {
            EXPECT_EQ(pProperty.GetFlagsInheritType(Flags(1u << i), false), eLyrInherit);
        } else {
            EXPECT_EQ(pProperty.GetFlagsInheritType(Flags(1u << i), false), eLyrOverride);
        }
    }
}

// Hands value and flags back, on a family that is thrown away, and looks whether what was foretold shows.
void ExpectForetold(KLyrPropertyHandle pProperty) {
    const KLyrExplanation lAnswer = lyrExplain(pProperty);
    const std::string lShown = TextOf(*pProperty.GetPage(), pProperty.GetId());
    const KLyrPropertyHandle& lFrom = lAnswer.mValue.mIfInherited;
    const std::string lForetold = lFrom.Valid() ? TextOf(*lFrom.GetPage(), lFrom.GetId()) : lShown;
    pProperty.SetValueInheritType(eLyrInherit);
    EXPECT_EQ(TextOf(*pProperty.GetPage(), pProperty.GetId()), lForetold);
    pProperty.SetFlagsInheritType(Flags(0xFFFF), eLyrInherit);
    EXPECT_EQ(pProperty.GetFlags(), lAnswer.mFlagsIfInherited);
}

TEST(Explain, AgreesWithALookAtEveryPageOfRandomFamilies) {
    const LeakCheck lLeaks;
    int lOverridden = 0;
    for (unsigned lSeed = 0; lSeed < 60 && !testing::Test::HasFailure(); ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(250);
        for (const OwnedPage& lPage : lFamily.Pages()) {
            for (int lId = 0; lId < RandomFamily::kMaxProperties; ++lId) {
                const KLyrPropertyHandle lProperty(lPage.get(), lId);
                const KLyrExplanation lAnswer = lyrExplain(lProperty);
                ExpectLooksAs<KLyrPropertyInfo>(lAnswer.mDescription, lProperty);
                ExpectLooksAs<KLyrPropertyValue>(lAnswer.mValue, lProperty);
                ExpectLooksAs<KLyrPropertyConnect>(lAnswer.mConnections, lProperty);
                if (lAnswer.mAddedBy.Valid())
                    ExpectFlags(lAnswer, lProperty);
                lOverridden += lAnswer.mValue.mDistance == 0 && lAnswer.mValue.mIfInherited.Valid();
            }
        }
        for (const OwnedPage& lPage : lFamily.Pages())
            for (int lId = 0; lId < RandomFamily::kMaxProperties; ++lId)
                ExpectForetold(KLyrPropertyHandle(lPage.get(), lId));
    }
    EXPECT_GT(lOverridden, 200);
}

}  // namespace
}  // namespace lyrsdk
