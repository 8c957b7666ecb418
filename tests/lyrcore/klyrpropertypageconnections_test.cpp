#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "lyrfilesdk/klyrplugins/klyrplug.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/connection_filters.h"
#include "tests/support/counted.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

constexpr int kUnknownIds[] = {-1, -2, 99, INT_MIN, INT_MAX};

// Two families, and an instance of a page of the first one.
class KLyrPropertyPageConnections : public testing::Test {
protected:
    // The page that holds the connection item seen for pId.
    static KLyrPropertyPage* ConnectHolder(const OwnedPage& pPage, int pId) {
        KLyrPropertyPage* lHolder = nullptr;
        pPage->GetPropertyItem<KLyrPropertyConnect>(nullptr, pId, &lHolder);
        return lHolder;
    }
    static KLyrPropertyPage* EntryHolder(const OwnedPage& pPage, int pId) {
        KLyrPropertyPage* lHolder = nullptr;
        pPage->GetPropertyEntry(pId, &lHolder);
        return lHolder;
    }
    static int Connections(const OwnedPage& pPage, int pId) {
        return pPage->GetSrcCount(pId, nullptr) + pPage->GetDstCount(pId, nullptr);
    }

    void ExpectSrc(const OwnedPage& pPage, int pId, int pIndex, const OwnedPage& pSrcPage, int pSrcId) {
        KLyrPropertyPage* lPage = nullptr;
        int lId = -7;
        EXPECT_TRUE(pPage->GetSrc(pId, pIndex, nullptr, &lPage, &lId));
        EXPECT_EQ(lPage, pSrcPage.get());
        EXPECT_EQ(lId, pSrcId);
    }
    void ExpectDst(const OwnedPage& pPage, int pId, int pIndex, const OwnedPage& pDstPage, int pDstId) {
        KLyrPropertyPage* lPage = nullptr;
        int lId = -7;
        EXPECT_TRUE(pPage->GetDst(pId, pIndex, nullptr, &lPage, &lId));
        EXPECT_EQ(lPage, pDstPage.get());
        EXPECT_EQ(lId, pDstId);
    }

    LeakCheck mLeaks;
    OwnedPage mLamp{KLyrPropertyPage::Create("lamp", eUNIDENTIFIED)};
    int mPower = mLamp->Add(0, "power", eDOUBLE1);
    int mColour = mLamp->Add(0, "colour", eDOUBLE3);
    OwnedPage mCurve{KLyrPropertyPage::Create("curve", eUNIDENTIFIED)};
    int mOut = mCurve->Add(0, "out", eDOUBLE1);
    OwnedPage mInstance{KLyrPropertyPage::Create(mLamp.get())};
};

// --- connecting ----------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageConnections, AreSeenFromBothPages) {
    EXPECT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionDefault));
    EXPECT_EQ(mLamp->GetSrcCount(mPower, nullptr), 1);
    EXPECT_EQ(mLamp->GetDstCount(mPower, nullptr), 0);
    EXPECT_EQ(mCurve->GetDstCount(mOut, nullptr), 1);
    EXPECT_EQ(mCurve->GetSrcCount(mOut, nullptr), 0);
    ExpectSrc(mLamp, mPower, 0, mCurve, mOut);
    ExpectDst(mCurve, mOut, 0, mLamp, mPower);
    EXPECT_TRUE(mLamp->IsConnectedSrc(mPower, mCurve.get(), mOut));
    EXPECT_TRUE(mCurve->IsConnectedDst(mOut, mLamp.get(), mPower));
    EXPECT_FALSE(mLamp->IsConnectedDst(mPower, mCurve.get(), mOut));
    EXPECT_FALSE(mCurve->IsConnectedSrc(mOut, mLamp.get(), mPower));
    EXPECT_EQ(Connections(mLamp, mColour), 0);
}

TEST_F(KLyrPropertyPageConnections, MakeAnItemAtEachEndThatKnowsItsPlace) {
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionData));
    const auto* lDst = mLamp->GetPropertyItem<KLyrPropertyConnect>(nullptr, mPower);
    const auto* lSrc = mCurve->GetPropertyItem<KLyrPropertyConnect>(nullptr, mOut);
    ASSERT_NE(lDst, nullptr);
    ASSERT_NE(lSrc, nullptr);
    EXPECT_EQ(lDst->GetPage(), mLamp.get());
    EXPECT_EQ(lDst->GetPropertyId(), mPower);
    EXPECT_EQ(lSrc->GetPage(), mCurve.get());
    EXPECT_EQ(lSrc->GetPropertyId(), mOut);
    EXPECT_EQ(lDst->GetConnectionPoint().GetSrcType(0), eLyrConnectionData);
    EXPECT_EQ(mLamp->GetPropertyItem<KLyrPropertyConnect>(nullptr, mColour), nullptr);

    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), 0, eLyrConnectionUser));
    EXPECT_EQ(mLamp->GetPropertyItem<KLyrPropertyConnect>(nullptr, mPower), lDst);
}

TEST_F(KLyrPropertyPageConnections, ToADestinationAreTheSameWithTheEndsSwapped) {
    EXPECT_TRUE(mCurve->ConnectDst(mOut, mLamp.get(), mPower, eLyrConnectionSystem));
    EXPECT_TRUE(mLamp->IsConnectedSrc(mPower, mCurve.get(), mOut));
    ExpectSrc(mLamp, mPower, 0, mCurve, mOut);
    EXPECT_EQ(mLamp->GetPropertyItem<KLyrPropertyConnect>(nullptr, mPower)->GetConnectionPoint().GetSrcType(0),
              eLyrConnectionSystem);
    EXPECT_FALSE(mLamp->DisconnectDst(mPower, mCurve.get(), mOut));
    EXPECT_TRUE(mCurve->DisconnectDst(mOut, mLamp.get(), mPower));
    EXPECT_FALSE(mLamp->IsConnectedSrc(mPower, mCurve.get(), mOut));
    EXPECT_FALSE(mCurve->DisconnectDst(mOut, mLamp.get(), mPower));
}

TEST_F(KLyrPropertyPageConnections, OfTwoPropertiesAreMadeOnceInEachDirection) {
    EXPECT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    EXPECT_FALSE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionSystem));
    EXPECT_FALSE(mCurve->ConnectDst(mOut, mLamp.get(), mPower, eLyrConnectionUser));
    EXPECT_TRUE(mLamp->ConnectDst(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    EXPECT_EQ(mLamp->GetSrcCount(mPower, nullptr), 1);
    EXPECT_EQ(mLamp->GetDstCount(mPower, nullptr), 1);
    EXPECT_TRUE(mLamp->DisconnectSrc(mPower, mCurve.get(), mOut));
    EXPECT_EQ(mLamp->GetSrcCount(mPower, nullptr), 0);
    EXPECT_EQ(mLamp->GetDstCount(mPower, nullptr), 1);
}

TEST_F(KLyrPropertyPageConnections, WithinAPageJoinDifferentPropertiesOnly) {
    EXPECT_TRUE(mLamp->ConnectSrc(mPower, mLamp.get(), mColour, eLyrConnectionUser));
    ExpectSrc(mLamp, mPower, 0, mLamp, mColour);
    EXPECT_FALSE(mLamp->ConnectSrc(0, mLamp.get(), 0, eLyrConnectionUser));
    EXPECT_FALSE(mLamp->ConnectDst(0, mLamp.get(), 0, eLyrConnectionUser));
    EXPECT_EQ(ConnectHolder(mLamp, 0), nullptr);
    EXPECT_FALSE(mLamp->ConnectSrc(mPower, mLamp.get(), mPower, eLyrConnectionUser));
    EXPECT_EQ(mLamp->GetSrcCount(mPower, nullptr), 1);
}

TEST_F(KLyrPropertyPageConnections, NeedBothEndsAndElseCreateNothing) {
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    for (const int lId : kUnknownIds) {
        EXPECT_FALSE(mLamp->ConnectSrc(lId, mCurve.get(), mOut, eLyrConnectionUser)) << lId;
        EXPECT_FALSE(mInstance->ConnectSrc(mPower, mCurve.get(), lId, eLyrConnectionUser)) << lId;
        EXPECT_FALSE(mInstance->ConnectDst(mPower, mCurve.get(), lId, eLyrConnectionUser)) << lId;
        EXPECT_FALSE(mInstance->ConnectDst(lId, mCurve.get(), mOut, eLyrConnectionUser)) << lId;
        EXPECT_FALSE(mLamp->ConnectSrc(lId, mLamp.get(), lId, eLyrConnectionUser)) << lId;
    }
    EXPECT_FALSE(mInstance->ConnectSrc(mPower, nullptr, mOut, eLyrConnectionUser));
    EXPECT_FALSE(mInstance->ConnectDst(mPower, nullptr, mOut, eLyrConnectionUser));
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks);
    EXPECT_EQ(ConnectHolder(mCurve, mOut), nullptr);
    EXPECT_EQ(EntryHolder(mInstance, mPower), mLamp.get());
}

TEST_F(KLyrPropertyPageConnections, AskedForWithBadEndsAreNotThere) {
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    KLyrPropertyPage* lPage = mCurve.get();
    int lOther = 42;
    for (const int lId : kUnknownIds) {
        EXPECT_FALSE(mLamp->IsConnectedSrc(lId, mCurve.get(), mOut));
        EXPECT_FALSE(mLamp->IsConnectedSrc(mPower, mCurve.get(), lId));
        EXPECT_FALSE(mLamp->IsConnectedDst(lId, mCurve.get(), mOut));
        EXPECT_FALSE(mLamp->DisconnectSrc(lId, mCurve.get(), mOut));
        EXPECT_FALSE(mLamp->DisconnectSrc(mPower, mCurve.get(), lId));
        EXPECT_FALSE(mLamp->DisconnectDst(lId, mCurve.get(), mOut));
        EXPECT_EQ(mLamp->GetSrcCount(lId, nullptr), 0);
        EXPECT_EQ(mLamp->GetDstCount(lId, nullptr), 0);
        EXPECT_FALSE(mLamp->GetSrc(lId, 0, nullptr, &lPage, &lOther));
        EXPECT_FALSE(mLamp->GetDst(lId, 0, nullptr, &lPage, &lOther));
        mLamp->WipeAllConnections(lId);
        mLamp->ClearConnectCache(lId);
    }
    EXPECT_FALSE(mLamp->IsConnectedSrc(mPower, nullptr, mOut));
    EXPECT_FALSE(mLamp->IsConnectedDst(mPower, nullptr, mOut));
    EXPECT_FALSE(mLamp->DisconnectSrc(mPower, nullptr, mOut));
    EXPECT_FALSE(mLamp->DisconnectDst(mPower, nullptr, mOut));
    EXPECT_EQ(lPage, mCurve.get());
    EXPECT_EQ(lOther, 42);
    EXPECT_EQ(mLamp->GetSrcCount(mPower, nullptr), 1);
}

TEST_F(KLyrPropertyPageConnections, AtAnIndexOutOfRangeLeaveTheOutParametersAlone) {
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    TypeFilter lNothing(0);
    KLyrPropertyPage* lPage = mInstance.get();
    int lId = 42;
    for (const int lIndex : {-1, 1, INT_MIN, INT_MAX}) {
        EXPECT_FALSE(mLamp->GetSrc(mPower, lIndex, nullptr, &lPage, &lId)) << lIndex;
        EXPECT_FALSE(mCurve->GetDst(mOut, lIndex, nullptr, &lPage, &lId)) << lIndex;
    }
    EXPECT_FALSE(mLamp->GetSrc(mPower, 0, &lNothing, &lPage, &lId));
    EXPECT_FALSE(mCurve->GetDst(mOut, 0, &lNothing, &lPage, &lId));
    EXPECT_FALSE(mLamp->GetDst(mPower, 0, nullptr, &lPage, &lId));
    EXPECT_FALSE(mLamp->GetSrc(mColour, 0, nullptr, &lPage, &lId));
    EXPECT_EQ(lPage, mInstance.get());
    EXPECT_EQ(lId, 42);
}

TEST_F(KLyrPropertyPageConnections, FillOnlyTheOutParametersThatAreThere) {
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    KLyrPropertyPage* lPage = nullptr;
    int lId = -7;
    EXPECT_TRUE(mLamp->GetSrc(mPower, 0, nullptr, &lPage, nullptr));
    EXPECT_EQ(lPage, mCurve.get());
    EXPECT_TRUE(mLamp->GetSrc(mPower, 0, nullptr, nullptr, &lId));
    EXPECT_EQ(lId, mOut);
    EXPECT_TRUE(mLamp->GetSrc(mPower, 0, nullptr, nullptr, nullptr));
    EXPECT_TRUE(mCurve->GetDst(mOut, 0, nullptr, &lPage, nullptr));
    EXPECT_EQ(lPage, mLamp.get());
    EXPECT_TRUE(mCurve->GetDst(mOut, 0, nullptr, nullptr, &lId));
    EXPECT_EQ(lId, mPower);
    EXPECT_TRUE(mCurve->GetDst(mOut, 0, nullptr, nullptr, nullptr));
}

TEST_F(KLyrPropertyPageConnections, AreShownThroughFilters) {
    TypeFilter lUser(eLyrConnectionUser);
    EXPECT_EQ(mLamp->GetSrcCount(mPower, &lUser), 0);
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), 0, eLyrConnectionSystem));
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionDefault));
    ASSERT_TRUE(mLamp->ConnectDst(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    EXPECT_EQ(mLamp->GetSrcCount(mPower, &lUser), 1);
    EXPECT_EQ(mLamp->GetDstCount(mPower, &lUser), 1);
    KLyrPropertyPage* lPage = nullptr;
    int lId = -7;
    EXPECT_TRUE(mLamp->GetSrc(mPower, 0, &lUser, &lPage, &lId));
    EXPECT_EQ(lPage, mCurve.get());
    EXPECT_EQ(lId, mOut);
    EXPECT_FALSE(mLamp->GetSrc(mPower, 1, &lUser, &lPage, &lId));
    EXPECT_EQ(lUser.TakeAsked(), 3);
    mLamp->ClearConnectCache(mColour);
    EXPECT_EQ(mLamp->GetSrcCount(mPower, &lUser), 1);
    EXPECT_EQ(lUser.TakeAsked(), 0);
    mLamp->ClearConnectCache(mPower);
    EXPECT_EQ(mLamp->GetSrcCount(mPower, &lUser), 1);
    EXPECT_EQ(lUser.TakeAsked(), 3);
}

TEST_F(KLyrPropertyPageConnections, KeepTheirOrder) {
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mLamp.get(), mColour, eLyrConnectionUser));
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), 0, eLyrConnectionUser));
    ASSERT_TRUE(mLamp->DisconnectSrc(mPower, mLamp.get(), mColour));
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mInstance.get(), mColour, eLyrConnectionUser));
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mLamp.get(), mColour, eLyrConnectionUser));
    ASSERT_EQ(mLamp->GetSrcCount(mPower, nullptr), 4);
    ExpectSrc(mLamp, mPower, 0, mCurve, mOut);
    ExpectSrc(mLamp, mPower, 1, mCurve, 0);
    ExpectSrc(mLamp, mPower, 2, mInstance, mColour);
    ExpectSrc(mLamp, mPower, 3, mLamp, mColour);
}

TEST_F(KLyrPropertyPageConnections, AreWipedOnBothSides) {
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    ASSERT_TRUE(mLamp->ConnectDst(mPower, mCurve.get(), 0, eLyrConnectionUser));
    ASSERT_TRUE(mLamp->ConnectSrc(mColour, mCurve.get(), mOut, eLyrConnectionUser));
    mLamp->WipeAllConnections(mPower);
    EXPECT_EQ(Connections(mLamp, mPower), 0);
    EXPECT_EQ(Connections(mCurve, 0), 0);
    EXPECT_EQ(Connections(mCurve, mOut), 1);
    ExpectDst(mCurve, mOut, 0, mLamp, mColour);
    EXPECT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
}

// --- instances -----------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageConnections, MadeOnAnInstanceBelongToTheInstance) {
    const double lWatts = 60.0;
    ASSERT_TRUE(mLamp->Set(mPower, &lWatts, eDOUBLE1, false));
    EXPECT_TRUE(mInstance->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    EXPECT_EQ(EntryHolder(mInstance, mPower), mInstance.get());
    EXPECT_EQ(ConnectHolder(mInstance, mPower), mInstance.get());
    EXPECT_EQ(ConnectHolder(mLamp, mPower), nullptr);
    EXPECT_EQ(Connections(mLamp, mPower), 0);
    ExpectDst(mCurve, mOut, 0, mInstance, mPower);

    EXPECT_EQ(mInstance->GetValueInherit(mPower, false), eLyrInherit);
    EXPECT_EQ(mInstance->GetFlagsInheritType(LyrPropertyFlags::AllFlags(), false, mPower), eLyrInherit);
    EXPECT_EQ(mInstance->GetParent(mPower), 0);
    EXPECT_STREQ(mInstance->GetName(mPower), "power");
    double lRead = 0.0;
    EXPECT_TRUE(mInstance->Get(mPower, &lRead, eDOUBLE1));
    EXPECT_EQ(lRead, 60.0);
    KLyrPropertyPage* lHolder = nullptr;
    mInstance->GetPropertyItem<KLyrPropertyInfo>(nullptr, mPower, &lHolder);
    EXPECT_EQ(lHolder, mLamp.get());
}

TEST_F(KLyrPropertyPageConnections, OfTheParentAreNotTheInstances) {
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    ASSERT_TRUE(mLamp->ConnectDst(mPower, mCurve.get(), 0, eLyrConnectionUser));
    EXPECT_EQ(ConnectHolder(mInstance, mPower), mLamp.get());
    EXPECT_EQ(Connections(mInstance, mPower), 0);
    KLyrPropertyPage* lPage = nullptr;
    int lId = -7;
    EXPECT_FALSE(mInstance->GetSrc(mPower, 0, nullptr, &lPage, &lId));
    EXPECT_FALSE(mInstance->GetDst(mPower, 0, nullptr, &lPage, &lId));
    EXPECT_FALSE(mInstance->IsConnectedSrc(mPower, mCurve.get(), mOut));
    EXPECT_FALSE(mCurve->IsConnectedSrc(0, mInstance.get(), mPower));
    EXPECT_FALSE(mCurve->IsConnectedDst(mOut, mInstance.get(), mPower));
    EXPECT_FALSE(mInstance->DisconnectSrc(mPower, mCurve.get(), mOut));
    EXPECT_FALSE(mCurve->DisconnectSrc(0, mInstance.get(), mPower));
    EXPECT_EQ(lPage, nullptr);
    EXPECT_EQ(lId, -7);
    EXPECT_EQ(Connections(mLamp, mPower), 2);
    EXPECT_EQ(EntryHolder(mInstance, mPower), mLamp.get());
}

TEST_F(KLyrPropertyPageConnections, OfTheParentAreWipedAndTheirCacheClearedThroughTheInstance) {
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    TypeFilter lUser(eLyrConnectionUser);
    EXPECT_EQ(mLamp->GetSrcCount(mPower, &lUser), 1);
    EXPECT_EQ(lUser.TakeAsked(), 1);
    mInstance->ClearConnectCache(mPower);
    EXPECT_EQ(mLamp->GetSrcCount(mPower, &lUser), 1);
    EXPECT_EQ(lUser.TakeAsked(), 1);
    mInstance->WipeAllConnections(mPower);
    EXPECT_EQ(Connections(mLamp, mPower), 0);
    EXPECT_EQ(Connections(mCurve, mOut), 0);
    EXPECT_EQ(EntryHolder(mInstance, mPower), mLamp.get());
}

TEST_F(KLyrPropertyPageConnections, OfTheInstanceAreWipedAloneWhenItHasSome) {
    const OwnedPage lLower(KLyrPropertyPage::Create(mInstance.get()));
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    ASSERT_TRUE(mInstance->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    EXPECT_EQ(mCurve->GetDstCount(mOut, nullptr), 2);
    lLower->WipeAllConnections(mPower);
    EXPECT_EQ(Connections(mInstance, mPower), 0);
    EXPECT_EQ(Connections(mLamp, mPower), 1);
    EXPECT_EQ(Connections(lLower, mPower), 0);
    ExpectDst(mCurve, mOut, 0, mLamp, mPower);
}

TEST_F(KLyrPropertyPageConnections, MayJoinAnInstanceWithItsParentAndWithItsSiblings) {
    const OwnedPage lSibling(KLyrPropertyPage::Create(mLamp.get()));
    EXPECT_TRUE(mInstance->ConnectSrc(mPower, mLamp.get(), mPower, eLyrConnectionUser));
    EXPECT_TRUE(mInstance->ConnectSrc(mPower, lSibling.get(), mPower, eLyrConnectionUser));
    EXPECT_TRUE(mLamp->ConnectSrc(mPower, mInstance.get(), mPower, eLyrConnectionUser));
    ExpectSrc(mInstance, mPower, 0, mLamp, mPower);
    ExpectSrc(mInstance, mPower, 1, lSibling, mPower);
    ExpectDst(mLamp, mPower, 0, mInstance, mPower);
    ExpectSrc(mLamp, mPower, 0, mInstance, mPower);
}

TEST_F(KLyrPropertyPageConnections, StayWhenTheInstanceInheritsItsOtherItemsAgain) {
    ASSERT_TRUE(mInstance->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    const double lWatts = 75.0;
    ASSERT_TRUE(mInstance->Set(mPower, &lWatts, eDOUBLE1, true));
    ASSERT_TRUE(mInstance->ModifyFlags(mPower, LyrPropertyFlags::eUSER, true, false));
    EXPECT_TRUE(mInstance->SetValueInherit(mPower, eLyrInherit));
    EXPECT_TRUE(mInstance->SetFlagsInheritType(eLyrInherit, LyrPropertyFlags::eUSER, mPower));
    EXPECT_EQ(EntryHolder(mInstance, mPower), mInstance.get());
    ExpectSrc(mInstance, mPower, 0, mCurve, mOut);
}

TEST_F(KLyrPropertyPageConnections, StayWhereTheyAreWhenTheInstancePushesToItsParent) {
    ASSERT_TRUE(mInstance->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    ASSERT_TRUE(mInstance->ConnectDst(mColour, mCurve.get(), mOut, eLyrConnectionUser));
    const double lWatts = 75.0;
    ASSERT_TRUE(mInstance->Set(mPower, &lWatts, eDOUBLE1, true));
    mInstance->PushPropertiesToParentInstance();
    EXPECT_EQ(mInstance->GetValueInherit(mPower, false), eLyrInherit);
    EXPECT_EQ(ConnectHolder(mLamp, mPower), nullptr);
    EXPECT_EQ(ConnectHolder(mLamp, mColour), nullptr);
    ExpectSrc(mInstance, mPower, 0, mCurve, mOut);
    ExpectDst(mInstance, mColour, 0, mCurve, mOut);
}

// --- the ends of pages and properties ------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageConnections, GoWithEitherPageInEitherWipeMode) {
    for (const bool lWipeMode : {false, true}) {
        KLyrPlug::SetWipeMode(lWipeMode);
        for (const bool lSourceGoes : {false, true}) {
            OwnedPage lGone(KLyrPropertyPage::Create("gone", eINTEGER1));
            if (lSourceGoes) {
                EXPECT_TRUE(mLamp->ConnectSrc(mPower, lGone.get(), 0, eLyrConnectionUser));
            } else {
                EXPECT_TRUE(mLamp->ConnectDst(mPower, lGone.get(), 0, eLyrConnectionUser));
            }
            EXPECT_EQ(Connections(mLamp, mPower), 1);
            lGone.reset();
            EXPECT_EQ(Connections(mLamp, mPower), 0);
        }
        KLyrPlug::SetWipeMode(false);
    }
}

TEST_F(KLyrPropertyPageConnections, OfAParentGoWithItAndThoseOfItsInstanceStay) {
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    ASSERT_TRUE(mLamp->ConnectSrc(mColour, mCurve.get(), mOut, eLyrConnectionUser));
    ASSERT_TRUE(mInstance->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    ASSERT_TRUE(mInstance->ConnectSrc(mPower, mLamp.get(), mColour, eLyrConnectionUser));
    mLamp.reset();
    EXPECT_EQ(mInstance->GetSrcCount(mPower, nullptr), 1);
    ExpectSrc(mInstance, mPower, 0, mCurve, mOut);
    EXPECT_EQ(mCurve->GetDstCount(mOut, nullptr), 1);
    ExpectDst(mCurve, mOut, 0, mInstance, mPower);
    EXPECT_EQ(ConnectHolder(mInstance, mColour), nullptr);
}

// A page must not be reached through its peers once it was destroyed, even while something of it lives on.
TEST_F(KLyrPropertyPageConnections, GoWithTheirPageThoughItsItemIsStillHeld) {
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    const Counted<KLyrPropertyConnect> lHeld(mCurve->GetPropertyItem<KLyrPropertyConnect>(nullptr, mOut));
    mCurve.reset();
    EXPECT_EQ(Connections(mLamp, mPower), 0);
    EXPECT_FALSE(mLamp->GetSrc(mPower, 0, nullptr, nullptr, nullptr));
    EXPECT_EQ(lHeld->GetDstCount(nullptr), 0);
}

TEST_F(KLyrPropertyPageConnections, GoWithTheirPageThoughItLivesOnForItsInstance) {
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    {
        const FailAllocations lFail(0, true);
        mLamp.reset();
    }
    EXPECT_STREQ(mInstance->GetName(mPower), "power");
    EXPECT_EQ(Connections(mCurve, mOut), 0);
    EXPECT_FALSE(mCurve->GetDst(mOut, 0, nullptr, nullptr, nullptr));
}

TEST_F(KLyrPropertyPageConnections, GoWithTheirProperty) {
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    ASSERT_TRUE(mInstance->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    EXPECT_EQ(mInstance->ChangePropertyEntryState(mPower, eLyrInherit), nullptr);
    EXPECT_EQ(mCurve->GetDstCount(mOut, nullptr), 1);
    ASSERT_TRUE(mLamp->RemoveOwnEntry(mPower));
    EXPECT_EQ(mCurve->GetDstCount(mOut, nullptr), 0);
    EXPECT_FALSE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
}

TEST_F(KLyrPropertyPageConnections, OfATypePageAreNotCopiedButTheirItemsAre) {
    ASSERT_TRUE(mLamp->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    const OwnedPage lPage(KLyrPropertyPage::Create("scene", eUNIDENTIFIED));
    const int lCopy = lPage->Add(0, "lamp", mLamp.get());
    const int lPower = lPage->GetChild(lCopy);
    ASSERT_STREQ(lPage->GetName(lPower), "power");
    const auto* lItem = lPage->GetPropertyItem<KLyrPropertyConnect>(nullptr, lPower);
    ASSERT_NE(lItem, nullptr);
    EXPECT_EQ(lItem->GetPage(), lPage.get());
    EXPECT_EQ(lItem->GetPropertyId(), lPower);
    EXPECT_EQ(Connections(lPage, lPower), 0);
    EXPECT_EQ(mCurve->GetDstCount(mOut, nullptr), 1);
    ASSERT_TRUE(lPage->ConnectSrc(lPower, mCurve.get(), mOut, eLyrConnectionUser));
    ExpectDst(mCurve, mOut, 1, lPage, lPower);
}

TEST_F(KLyrPropertyPageConnections, AreFoundThroughAnItemThatTheCallerGave) {
    KLyrPropertyConnect* lItem = KLyrPropertyConnect::Create(mCurve.get(), 1000);
    const int lId = mCurve->Add(0, nullptr, nullptr, lItem, false);
    ASSERT_GE(lId, 0);
    ASSERT_TRUE(mCurve->ConnectSrc(lId, mLamp.get(), mPower, eLyrConnectionUser));
    EXPECT_EQ(lItem->GetSrcCount(nullptr), 1);
    // The item was told another id, and that is what the other side reads.
    ExpectDst(mLamp, mPower, 0, mCurve, 1000);
}

TEST_F(KLyrPropertyPageConnections, AnItemLeadsToNoPageThatIsGoneWhoeverHoldsIt) {
    OwnedPage lGone(KLyrPropertyPage::Create("gone", eUNIDENTIFIED));
    const Counted<KLyrPropertyConnect> lAlone(KLyrPropertyConnect::Create(lGone.get(), 0));
    const Counted<KLyrPropertyConnect> lOtherId(KLyrPropertyConnect::Create(lGone.get(), 7));
    const Counted<KLyrPropertyConnect> lElsewhere(KLyrPropertyConnect::Create(lGone.get(), 0));
    ASSERT_GE(lGone->Add(0, nullptr, nullptr, lOtherId.Get(), false), 0);
    const int lId = mLamp->Add(0, nullptr, nullptr, lElsewhere.Get(), false);
    ASSERT_TRUE(mCurve->ConnectSrc(mOut, mLamp.get(), lId, eLyrConnectionUser));
    KLyrPropertyConnect* lPeer = mCurve->GetPropertyItem<KLyrPropertyConnect>(nullptr, mOut);
    for (KLyrPropertyConnect* lItem : {lAlone.Get(), lOtherId.Get()})
        ASSERT_TRUE(lPeer->ConnectSrc(lItem, eLyrConnectionUser));
    ASSERT_EQ(mCurve->GetSrcCount(mOut, nullptr), 3);

    lGone.reset();
    EXPECT_EQ(mCurve->GetSrcCount(mOut, nullptr), 0);
    for (const KLyrPropertyConnect* lItem : {lAlone.Get(), lOtherId.Get(), lElsewhere.Get()})
        EXPECT_EQ(lItem->GetPage(), nullptr);
}

TEST_F(KLyrPropertyPageConnections, OfSomeThousandInstancesToOneSourceComeAndGo) {
    std::vector<OwnedPage> lPages;
    for (int i = 0; i < 3000; ++i) {
        lPages.emplace_back(KLyrPropertyPage::Create(mLamp.get()));
        ASSERT_TRUE(lPages.back()->ConnectSrc(mPower, mCurve.get(), mOut, eLyrConnectionUser));
    }
    ASSERT_EQ(mCurve->GetDstCount(mOut, nullptr), 3000);
    for (const std::size_t i : {0u, 1u, 1499u, 2999u})
        ExpectDst(mCurve, mOut, static_cast<int>(i), lPages[i], mPower);
    for (std::size_t i = 0; i < lPages.size(); i += 2)
        lPages[i].reset();
    ASSERT_EQ(mCurve->GetDstCount(mOut, nullptr), 1500);
    for (const std::size_t i : {0u, 1u, 749u, 1499u})
        ExpectDst(mCurve, mOut, static_cast<int>(i), lPages[2 * i + 1], mPower);
    mCurve->WipeAllConnections(mOut);
    EXPECT_EQ(Connections(lPages[1], mPower), 0);
}

}  // namespace
}  // namespace lyrsdk
