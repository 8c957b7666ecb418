#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"
#include "tests/support/connection_filters.h"
#include "tests/support/failing_memory.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

class KLyrConnectionPointFilterTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(mHub.ConnectSrc(&mA, eLyrConnectionUser));
        ASSERT_TRUE(mHub.ConnectSrc(&mB, eLyrConnectionSystem));
        ASSERT_TRUE(mHub.ConnectSrc(&mC, eLyrConnectionSystemOrUser));
        ASSERT_TRUE(mA.ConnectSrc(&mHub, eLyrConnectionData));
        ASSERT_TRUE(mC.ConnectSrc(&mHub, eLyrConnectionUser));
    }

    LeakCheck mLeaks;
    int mData = 0;
    KLyrConnectionPoint mHub{&mData};
    KLyrConnectionPoint mA{nullptr};
    KLyrConnectionPoint mB{nullptr};
    KLyrConnectionPoint mC{nullptr};
    KLyrConnectionPoint mD{nullptr};
};

TEST_F(KLyrConnectionPointFilterTest, ShowsOnlyWhatItSelectsInTheOrderOfConnection) {
    TypeFilter lUser(eLyrConnectionUser);
    EXPECT_EQ(mHub.GetSrcCount(&lUser), 2);
    EXPECT_EQ(mHub.GetSrc(0, &lUser), &mA);
    EXPECT_EQ(mHub.GetSrc(1, &lUser), &mC);
    EXPECT_EQ(mHub.GetDstCount(&lUser), 1);
    EXPECT_EQ(mHub.GetDst(0, &lUser), &mC);
    EXPECT_EQ(mHub.GetSrcCount(), 3);
    for (const int lIndex : {-1, 2, INT_MIN, INT_MAX}) {
        EXPECT_EQ(mHub.GetSrc(lIndex, &lUser), nullptr) << lIndex;
        EXPECT_EQ(mHub.GetDst(lIndex, &lUser), nullptr) << lIndex;
    }
}

TEST_F(KLyrConnectionPointFilterTest, IsAskedWithThePeerAndTheTypeOfEachConnection) {
    PeerFilter lOnlyC(&mC);
    EXPECT_EQ(mHub.GetSrcCount(&lOnlyC), 1);
    EXPECT_EQ(mHub.GetDstCount(&lOnlyC), 1);
    ASSERT_EQ(lOnlyC.Questions().size(), 5u);
    EXPECT_EQ(std::count_if(lOnlyC.Questions().begin(), lOnlyC.Questions().end(),
                            [this](const PeerFilter::Question& pAsked) {
                                return pAsked.mPeer == &mA &&
                                       (pAsked.mType == eLyrConnectionUser || pAsked.mType == eLyrConnectionData);
                            }),
              2);
    EXPECT_EQ(std::count_if(lOnlyC.Questions().begin(), lOnlyC.Questions().end(),
                            [this](const PeerFilter::Question& pAsked) { return pAsked.mPeer == &mHub; }),
              0);
}

TEST_F(KLyrConnectionPointFilterTest, IsAskedOnceForEveryConnection) {
    TypeFilter lUser(eLyrConnectionUser);
    EXPECT_EQ(lUser.TakeAsked(), 0);
    mHub.GetSrcCount(&lUser);
    EXPECT_EQ(lUser.TakeAsked(), 5);
    mHub.GetDstCount(&lUser);
    mHub.GetSrc(0, &lUser);
    mHub.GetDst(0, &lUser);
    EXPECT_EQ(lUser.TakeAsked(), 0);
    ASSERT_TRUE(mHub.ConnectSrc(&mD, eLyrConnectionUser));
    EXPECT_EQ(lUser.TakeAsked(), 1);
    ASSERT_TRUE(mHub.DisconnectSrc(&mD));
    EXPECT_EQ(mHub.GetSrcCount(&lUser), 2);
    EXPECT_EQ(lUser.TakeAsked(), 0);
}

TEST_F(KLyrConnectionPointFilterTest, FollowsConnectingDisconnectingAndWipingAtEitherEnd) {
    TypeFilter lUser(eLyrConnectionUser);
    KLyrConnectionPoint* lSub = mHub.SubConnectGetOrCreate(&lUser);
    ASSERT_NE(lSub, nullptr);
    ASSERT_NE(lSub, &mHub);
    EXPECT_EQ(lSub->GetData(), &mData);
    EXPECT_EQ(lSub->GetSrcCount(), 2);

    ASSERT_TRUE(mHub.ConnectSrc(&mD, eLyrConnectionDefault));
    ASSERT_TRUE(mD.ConnectSrc(&mHub, eLyrConnectionUser));
    ASSERT_TRUE(mB.ConnectSrc(&mHub, eLyrConnectionSystem));
    EXPECT_EQ(lSub->GetSrcCount(), 3);
    EXPECT_EQ(lSub->GetSrc(2), &mD);
    EXPECT_EQ(lSub->GetSrcType(2), eLyrConnectionDefault);
    EXPECT_EQ(lSub->GetDstCount(), 2);
    EXPECT_EQ(lSub->GetDst(1), &mD);

    ASSERT_TRUE(mHub.DisconnectSrc(&mA));
    EXPECT_EQ(lSub->GetSrc(0), &mC);
    ASSERT_TRUE(mC.DisconnectSrc(&mHub));
    EXPECT_EQ(lSub->GetDst(0), &mD);
    mD.WipeConnectionList();
    EXPECT_EQ(lSub->GetSrcCount(), 1);
    EXPECT_EQ(lSub->GetDstCount(), 0);
    mHub.WipeConnectionList();
    EXPECT_EQ(lSub->GetSrcCount(), 0);
    ASSERT_TRUE(mHub.ConnectSrc(&mA, eLyrConnectionUser));
    EXPECT_EQ(lSub->GetSrcCount(), 1);
    EXPECT_EQ(mHub.SubConnectGetOrCreate(&lUser), lSub);
}

TEST_F(KLyrConnectionPointFilterTest, FollowsWhenAPeerIsDestroyed) {
    TypeFilter lUser(eLyrConnectionUser);
    {
        KLyrConnectionPoint lGone(nullptr);
        ASSERT_TRUE(mHub.ConnectSrc(&lGone, eLyrConnectionUser));
        ASSERT_TRUE(lGone.ConnectSrc(&mHub, eLyrConnectionUser));
        EXPECT_EQ(mHub.GetSrcCount(&lUser), 3);
        EXPECT_EQ(mHub.GetDstCount(&lUser), 2);
        EXPECT_EQ(lGone.GetSrcCount(&lUser), 1);
    }
    EXPECT_EQ(mHub.GetSrcCount(&lUser), 2);
    EXPECT_EQ(mHub.GetDstCount(&lUser), 1);
    EXPECT_EQ(mHub.GetSrc(2, &lUser), nullptr);
}

TEST_F(KLyrConnectionPointFilterTest, OneFilterServesManyPointsAndManyFiltersOnePoint) {
    TypeFilter lUser(eLyrConnectionUser);
    TypeFilter lSystem(eLyrConnectionSystem);
    TypeFilter lNothing(0);
    EXPECT_EQ(mHub.GetSrcCount(&lUser), 2);
    EXPECT_EQ(mHub.GetSrcCount(&lSystem), 2);
    EXPECT_EQ(mHub.GetSrcCount(&lNothing), 0);
    EXPECT_EQ(mA.GetDstCount(&lUser), 1);
    EXPECT_EQ(mB.GetDstCount(&lUser), 0);
    EXPECT_EQ(mB.GetDstCount(&lSystem), 1);
    EXPECT_EQ(mC.GetDst(0, &lSystem), &mHub);
    EXPECT_NE(mHub.SubConnectGetOrCreate(&lUser), mHub.SubConnectGetOrCreate(&lSystem));
    EXPECT_NE(mHub.SubConnectGetOrCreate(&lUser), mA.SubConnectGetOrCreate(&lUser));
}

TEST_F(KLyrConnectionPointFilterTest, IsAskedAnewAfterTheCacheWasDropped) {
    TypeFilter lFilter(eLyrConnectionUser);
    TypeFilter lOther(eLyrConnectionUser);
    EXPECT_EQ(mHub.GetSrcCount(&lFilter), 2);
    EXPECT_EQ(mHub.GetSrcCount(&lOther), 2);
    EXPECT_EQ(mA.GetDstCount(&lFilter), 1);
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    lFilter.Change(eLyrConnectionData);
    lFilter.TakeAsked();
    mHub.SubConnectRemoveAll();
    EXPECT_LT(MemoryProbe::LiveBlocks(), lBlocks);
    EXPECT_EQ(mHub.GetSrcCount(), 3);
    EXPECT_EQ(mHub.GetSrcCount(&lFilter), 0);
    EXPECT_EQ(mHub.GetDstCount(&lFilter), 1);
    EXPECT_EQ(lFilter.TakeAsked(), 5);
    EXPECT_EQ(mA.GetDstCount(&lFilter), 1);
    EXPECT_EQ(lFilter.TakeAsked(), 0);
    mHub.SubConnectRemoveAll();
    mHub.SubConnectRemoveAll();
    mD.SubConnectRemoveAll();
}

TEST_F(KLyrConnectionPointFilterTest, ADestroyedFilterTakesItsSubPointsAlong) {
    TypeFilter lStays(eLyrConnectionSystem);
    EXPECT_EQ(mHub.GetSrcCount(&lStays), 2);
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    {
        TypeFilter lGoes(eLyrConnectionUser);
        EXPECT_EQ(mHub.GetSrcCount(&lGoes), 2);
        EXPECT_EQ(mA.GetDstCount(&lGoes), 1);
        EXPECT_EQ(mD.GetDstCount(&lGoes), 0);
        EXPECT_GT(MemoryProbe::LiveBlocks(), lBlocks);
    }
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks);
    ASSERT_TRUE(mHub.ConnectSrc(&mD, eLyrConnectionSystem));
    EXPECT_EQ(mHub.GetSrcCount(&lStays), 3);
}

TEST_F(KLyrConnectionPointFilterTest, AFilterMadeAtTheAddressOfAnEarlierOneStartsAfresh) {
    alignas(TypeFilter) unsigned char lMemory[sizeof(TypeFilter)];
    TypeFilter* lFirst = new (lMemory) TypeFilter(eLyrConnectionUser);
    EXPECT_EQ(mHub.GetSrcCount(lFirst), 2);
    EXPECT_EQ(mHub.GetDstCount(lFirst), 1);
    lFirst->~TypeFilter();
    TypeFilter* lSecond = new (lMemory) TypeFilter(0);
    EXPECT_EQ(mHub.GetSrcCount(lSecond), 0);
    EXPECT_EQ(mHub.GetDstCount(lSecond), 0);
    lSecond->~TypeFilter();
}

TEST_F(KLyrConnectionPointFilterTest, SubPointsGoInAnyOrderOfFiltersAndPoints) {
    for (int lFirst = 0; lFirst < 6; ++lFirst) {
        std::unique_ptr<TypeFilter> lFilters[3];
        std::unique_ptr<KLyrConnectionPoint> lPoints[3];
        for (auto& lFilter : lFilters)
            lFilter = std::make_unique<TypeFilter>(eLyrConnectionUser);
        for (auto& lPoint : lPoints) {
            lPoint = std::make_unique<KLyrConnectionPoint>(nullptr);
            ASSERT_TRUE(lPoint->ConnectSrc(&mA, eLyrConnectionUser));
            for (auto& lFilter : lFilters)
                EXPECT_EQ(lPoint->GetSrcCount(lFilter.get()), 1);
        }
        // Point, filter, point, ... beginning somewhere in the circle of six.
        for (int i = 0; i < 6; ++i) {
            const int lNext = (lFirst + i) % 6;
            if (lNext % 2 == 0)
                lPoints[lNext / 2].reset();
            else
                lFilters[lNext / 2].reset();
            for (const auto& lPoint : lPoints)
                for (const auto& lFilter : lFilters)
                    if (lPoint && lFilter) {
                        EXPECT_EQ(lPoint->GetSrcCount(lFilter.get()), 1);
                    }
        }
    }
}

TEST_F(KLyrConnectionPointFilterTest, ACopiedFilterHasSubPointsOfItsOwn) {
    auto lOriginal = std::make_unique<TypeFilter>(eLyrConnectionUser);
    EXPECT_EQ(mHub.GetSrcCount(lOriginal.get()), 2);
    TypeFilter lCopy(*lOriginal);
    EXPECT_EQ(mHub.GetSrcCount(&lCopy), 2);
    EXPECT_NE(mHub.SubConnectGetOrCreate(&lCopy), mHub.SubConnectGetOrCreate(lOriginal.get()));
    lOriginal.reset();
    EXPECT_EQ(mHub.GetSrcCount(&lCopy), 2);

    TypeFilter lAssigned(eLyrConnectionUser);
    EXPECT_EQ(mHub.GetSrcCount(&lAssigned), 2);
    lAssigned = lCopy;
    mHub.SubConnectRemoveAll();
    EXPECT_EQ(mHub.GetSrcCount(&lAssigned), 2);
}

TEST_F(KLyrConnectionPointFilterTest, ASubPointTakesNoConnectionsOfItsOwn) {
    TypeFilter lUser(eLyrConnectionUser);
    TypeFilter lSystem(eLyrConnectionSystem);
    KLyrConnectionPoint* lSub = mHub.SubConnectGetOrCreate(&lUser);
    ASSERT_NE(lSub, nullptr);
    EXPECT_FALSE(lSub->ConnectSrc(&mD, eLyrConnectionUser));
    EXPECT_FALSE(mD.ConnectSrc(lSub, eLyrConnectionUser));
    EXPECT_FALSE(mHub.ConnectSrc(lSub, eLyrConnectionUser));
    EXPECT_FALSE(lSub->ConnectSrc(&mHub, eLyrConnectionUser));
    EXPECT_FALSE(lSub->ConnectSrc(lSub, eLyrConnectionUser));
    EXPECT_FALSE(lSub->DisconnectSrc(&mA));
    EXPECT_FALSE(mC.DisconnectSrc(lSub));
    lSub->WipeConnectionList();
    lSub->SubConnectRemoveAll();
    EXPECT_EQ(lSub->SubConnectGetOrCreate(&lSystem), lSub);
    EXPECT_EQ(lSub->GetSrcCount(), 2);
    EXPECT_EQ(mHub.GetSrcCount(), 3);
    EXPECT_EQ(mHub.GetDstCount(), 2);
    EXPECT_EQ(mD.GetSrcCount() + mD.GetDstCount(), 0);
}

TEST_F(KLyrConnectionPointFilterTest, ASubPointKnowsWhichSourcesItShows) {
    TypeFilter lUser(eLyrConnectionUser);
    KLyrConnectionPoint* lSub = mHub.SubConnectGetOrCreate(&lUser);
    ASSERT_NE(lSub, nullptr);
    EXPECT_TRUE(lSub->IsConnectedSrc(&mA));
    EXPECT_FALSE(lSub->IsConnectedSrc(&mB));
    EXPECT_TRUE(lSub->IsConnectedSrc(&mC));
    EXPECT_FALSE(lSub->IsConnectedSrc(&mHub));
    EXPECT_FALSE(mC.IsConnectedSrc(lSub));
}

// A filter may look at the points that it is asked about, with filters too.
class CuriousFilter : public KLyrConnectionPointFilter {
public:
    bool Selects(const KLyrConnectionPoint* pPeer, kLyrConnectionType) const override {
        for (KLyrConnectionPoint* lPoint : mPoints)
            if (lPoint == pPeer)
                mSeen += lPoint->GetSrcCount(mInner) + lPoint->GetDstCount(mInner);
        return pPeer->GetSrcCount() > 0;
    }
    std::vector<KLyrConnectionPoint*> mPoints;
    KLyrConnectionPointFilter* mInner = nullptr;
    mutable int mSeen = 0;
};

TEST_F(KLyrConnectionPointFilterTest, MayLookAtPeersThroughAnotherFilterWhileItIsAsked) {
    TypeFilter lUser(eLyrConnectionUser);
    CuriousFilter lCurious;
    lCurious.mPoints = {&mA, &mB, &mC};
    lCurious.mInner = &lUser;
    EXPECT_EQ(mHub.GetSrcCount(&lCurious), 2);
    EXPECT_EQ(mHub.GetDstCount(&lCurious), 2);
    // A as a source and as a destination shows its source side, C both.
    EXPECT_EQ(lCurious.mSeen, 2 * 1 + 2 * 2);
}

// The first look at a peer through the inner filter is taken while the connection to it is being made.
TEST_F(KLyrConnectionPointFilterTest, AFirstLookWhileAConnectionIsMadeSeesItOnce) {
    TypeFilter lUser(eLyrConnectionUser);
    CuriousFilter lCurious;
    lCurious.mInner = &lUser;
    EXPECT_EQ(mHub.GetSrcCount(&lCurious), 2);
    EXPECT_EQ(mD.GetSrcCount(&lCurious), 0);
    lCurious.mPoints = {&mB, &mD, &mHub};
    ASSERT_TRUE(mHub.ConnectSrc(&mD, eLyrConnectionUser));
    EXPECT_EQ(mD.GetDstCount(&lUser), 1);
    EXPECT_EQ(mHub.GetSrcCount(&lUser), 3);
    ASSERT_TRUE(mB.ConnectSrc(&mHub, eLyrConnectionUser));
    EXPECT_EQ(mB.GetSrcCount(&lUser), 1);
    EXPECT_EQ(mHub.GetDstCount(&lUser), 2);

    ASSERT_TRUE(mHub.DisconnectSrc(&mD));
    EXPECT_EQ(mD.GetDstCount(&lUser), 0);
    ASSERT_TRUE(mB.DisconnectSrc(&mHub));
    EXPECT_EQ(mB.GetSrcCount(&lUser), 0);
}

TEST(KLyrConnectionPointFilter, GivesNothingWithoutMemoryAndAllOfItAfterwards) {
    WithEveryAllocationFailing([](const FailurePoint& pPoint) {
        KLyrConnectionPoint lHub(nullptr);
        KLyrConnectionPoint lA(nullptr);
        KLyrConnectionPoint lB(nullptr);
        EXPECT_TRUE(lHub.ConnectSrc(&lA, eLyrConnectionUser));
        EXPECT_TRUE(lB.ConnectSrc(&lHub, eLyrConnectionUser));
        TypeFilter lUser(eLyrConnectionUser);
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            const KLyrConnectionPoint* lSub = lHub.SubConnectGetOrCreate(&lUser);
            lFailed = lFail.Failed();
            EXPECT_EQ(lSub == nullptr, lFailed > 0);
            if (lFailed > 0 && pPoint.mForever) {
                EXPECT_EQ(lHub.GetSrcCount(&lUser), 0);
                EXPECT_EQ(lHub.GetDstCount(&lUser), 0);
                EXPECT_EQ(lHub.GetSrc(0, &lUser), nullptr);
                EXPECT_EQ(lHub.GetDst(0, &lUser), nullptr);
            }
        }
        EXPECT_EQ(lHub.GetSrcCount(), 1);
        EXPECT_EQ(lHub.GetSrcCount(&lUser), 1);
        EXPECT_EQ(lHub.GetDst(0, &lUser), &lB);
        return lFailed;
    });
}

// The connection itself may be made or not; what is seen through the filter agrees with it either way.
TEST(KLyrConnectionPointFilter, AgreesWithItsPointAfterAConnectionThatRanOutOfMemory) {
    WithEveryAllocationFailing([](const FailurePoint& pPoint) {
        KLyrConnectionPoint lHub(nullptr);
        KLyrConnectionPoint lPeers[5] = {KLyrConnectionPoint(nullptr), KLyrConnectionPoint(nullptr),
                                         KLyrConnectionPoint(nullptr), KLyrConnectionPoint(nullptr),
                                         KLyrConnectionPoint(nullptr)};
        TypeFilter lUser(eLyrConnectionUser);
        TypeFilter lSystem(eLyrConnectionSystem);
        for (int i = 0; i < 4; ++i)
            EXPECT_TRUE(lHub.ConnectSrc(&lPeers[i], eLyrConnectionUser));
        EXPECT_EQ(lHub.GetSrcCount(&lUser), 4);
        EXPECT_EQ(lHub.GetSrcCount(&lSystem), 0);
        EXPECT_EQ(lPeers[4].GetDstCount(&lUser), 0);
        bool lDone = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lDone = lHub.ConnectSrc(&lPeers[4], eLyrConnectionSystemOrUser);
            lFailed = lFail.Failed();
        }
        EXPECT_TRUE(lDone || lFailed > 0);
        EXPECT_EQ(lHub.GetSrcCount(&lUser), lDone ? 5 : 4);
        EXPECT_EQ(lHub.GetSrcCount(&lSystem), lDone ? 1 : 0);
        EXPECT_EQ(lPeers[4].GetDstCount(&lUser), lDone ? 1 : 0);
        for (int i = 0; i < lHub.GetSrcCount(); ++i)
            EXPECT_EQ(lHub.GetSrc(i, &lUser), &lPeers[i]);
        EXPECT_EQ(lHub.DisconnectSrc(&lPeers[4]), lDone);
        EXPECT_EQ(lHub.GetSrcCount(&lSystem), 0);
        return lFailed;
    });
}

// Who holds a sub-point reads it without asking for it again.
TEST(KLyrConnectionPointFilter, ASubPointThatIsHeldKeepsWhatItShowedWhenMemoryEnds) {
    WithEveryAllocationFailing([](const FailurePoint& pPoint) {
        KLyrConnectionPoint lHub(nullptr);
        KLyrConnectionPoint lPeers[5] = {KLyrConnectionPoint(nullptr), KLyrConnectionPoint(nullptr),
                                         KLyrConnectionPoint(nullptr), KLyrConnectionPoint(nullptr),
                                         KLyrConnectionPoint(nullptr)};
        TypeFilter lUser(eLyrConnectionUser);
        for (int i = 0; i < 4; ++i)
            EXPECT_TRUE(lHub.ConnectSrc(&lPeers[i], eLyrConnectionUser));
        const KLyrConnectionPoint* lSub = lHub.SubConnectGetOrCreate(&lUser);
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lHub.ConnectSrc(&lPeers[4], eLyrConnectionUser);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lSub->GetSrcCount(), lHub.GetSrcCount());
        EXPECT_EQ(lSub->GetSrc(3), &lPeers[3]);
        return lFailed;
    });
}

}  // namespace
}  // namespace lyrsdk
