#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <type_traits>
#include <vector>

#include "lyrfilesdk/klyrplugins/klyrplug.h"
#include "tests/support/connection_filters.h"
#include "tests/support/failing_memory.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

static_assert(!std::is_copy_constructible_v<KLyrConnectionPoint>, "a point is not copied");
static_assert(!std::is_copy_assignable_v<KLyrConnectionPoint>, "a point is not copied");
static_assert(!std::is_copy_constructible_v<KLyrConnectionPoint::KConnectionList>, "a list is not copied");
static_assert(std::is_same_v<std::underlying_type_t<kLyrConnectionType>, int>, "any int is a connection type");

class KLyrConnectionPointTest : public testing::Test {
protected:
    LeakCheck mLeaks;
    int mDataA = 0;
    int mDataB = 0;
    KLyrConnectionPoint mA{&mDataA};
    KLyrConnectionPoint mB{&mDataB};
    KLyrConnectionPoint mC{nullptr};
    KLyrConnectionPoint mD{nullptr};
};

std::vector<KLyrConnectionPoint*> SourcesOf(const KLyrConnectionPoint& pPoint) {
    std::vector<KLyrConnectionPoint*> lPoints;
    for (int i = 0; i < pPoint.GetSrcCount(); ++i)
        lPoints.push_back(pPoint.GetSrc(i));
    return lPoints;
}

std::vector<KLyrConnectionPoint*> DestinationsOf(const KLyrConnectionPoint& pPoint) {
    std::vector<KLyrConnectionPoint*> lPoints;
    for (int i = 0; i < pPoint.GetDstCount(); ++i)
        lPoints.push_back(pPoint.GetDst(i));
    return lPoints;
}

using Points = std::vector<KLyrConnectionPoint*>;

TEST(KLyrConnectionType, HasItsFixedValues) {
    struct Row {
        kLyrConnectionType mType;
        int mValue;
    };
    const Row lRows[] = {
        {eLyrConnectionNone, 0},      {eLyrConnectionSystem, 1},
        {eLyrConnectionUser, 2},      {eLyrConnectionSystemOrUser, 3},
        {eLyrConnectionReference, 4}, {eLyrConnectionContains, 8},
        {eLyrConnectionData, 16},     {eLyrConnectionLinkType, 28},
        {eLyrConnectionDefault, 6},   {eLyrConnectionUnidirectional, 128},
    };
    for (const Row& lRow : lRows)
        EXPECT_EQ(static_cast<int>(lRow.mType), lRow.mValue);
}

TEST_F(KLyrConnectionPointTest, GivesBackItsDataAndStartsUnconnected) {
    EXPECT_EQ(mA.GetData(), &mDataA);
    EXPECT_EQ(mC.GetData(), nullptr);
    EXPECT_EQ(mA.GetSrcCount(), 0);
    EXPECT_EQ(mA.GetDstCount(), 0);
    EXPECT_EQ(mA.GetSrc(0), nullptr);
    EXPECT_EQ(mA.GetDst(0), nullptr);
    EXPECT_FALSE(mA.IsConnectedSrc(&mB));
}

TEST_F(KLyrConnectionPointTest, AConnectionIsSeenFromBothEnds) {
    EXPECT_TRUE(mA.ConnectSrc(&mB, eLyrConnectionDefault));
    EXPECT_EQ(SourcesOf(mA), Points{&mB});
    EXPECT_EQ(DestinationsOf(mB), Points{&mA});
    EXPECT_EQ(mA.GetDstCount(), 0);
    EXPECT_EQ(mB.GetSrcCount(), 0);
    EXPECT_TRUE(mA.IsConnectedSrc(&mB));
    EXPECT_FALSE(mB.IsConnectedSrc(&mA));
}

TEST_F(KLyrConnectionPointTest, AnIndexOutOfRangeGivesNullAndNoType) {
    ASSERT_TRUE(mA.ConnectSrc(&mB, eLyrConnectionDefault));
    ASSERT_TRUE(mC.ConnectSrc(&mA, eLyrConnectionDefault));
    for (const int lIndex : {-1, 1, 2, INT_MIN, INT_MAX}) {
        EXPECT_EQ(mA.GetSrc(lIndex), nullptr) << lIndex;
        EXPECT_EQ(mA.GetDst(lIndex), nullptr) << lIndex;
        EXPECT_EQ(mA.GetSrc(lIndex, nullptr), nullptr) << lIndex;
        EXPECT_EQ(mA.GetDst(lIndex, nullptr), nullptr) << lIndex;
        EXPECT_EQ(mA.GetSrcType(lIndex), eLyrConnectionNone) << lIndex;
        EXPECT_EQ(mA.GetDstType(lIndex), eLyrConnectionNone) << lIndex;
    }
    EXPECT_EQ(mA.GetSrc(0), &mB);
    EXPECT_EQ(mA.GetDst(0), &mC);
}

TEST_F(KLyrConnectionPointTest, ANullFilterMeansAllConnections) {
    ASSERT_TRUE(mA.ConnectSrc(&mB, eLyrConnectionNone));
    ASSERT_TRUE(mC.ConnectSrc(&mA, eLyrConnectionNone));
    EXPECT_EQ(mA.GetSrcCount(nullptr), 1);
    EXPECT_EQ(mA.GetDstCount(nullptr), 1);
    EXPECT_EQ(mA.GetSrc(0, nullptr), &mB);
    EXPECT_EQ(mA.GetDst(0, nullptr), &mC);
    EXPECT_EQ(mA.SubConnectGetOrCreate(nullptr), &mA);
}

TEST_F(KLyrConnectionPointTest, TheTypeIsStoredAsGivenAtBothEnds) {
    int lCount = 0;
    for (const int lType : {0, 1, 2, 3, 4, 6, 8, 16, 28, 128, 255, -1, INT_MIN, INT_MAX}) {
        ASSERT_TRUE(mA.ConnectSrc(&mB, static_cast<kLyrConnectionType>(lType)));
        EXPECT_EQ(static_cast<int>(mA.GetSrcType(0)), lType);
        EXPECT_EQ(static_cast<int>(mB.GetDstType(0)), lType);
        ASSERT_TRUE(mA.DisconnectSrc(&mB));
        ++lCount;
    }
    EXPECT_EQ(lCount, 14);
}

TEST_F(KLyrConnectionPointTest, KeepsTheFirstConnectionOfTwoPoints) {
    ASSERT_TRUE(mA.ConnectSrc(&mB, eLyrConnectionUser));
    EXPECT_FALSE(mA.ConnectSrc(&mB, eLyrConnectionUser));
    EXPECT_FALSE(mA.ConnectSrc(&mB, eLyrConnectionSystem));
    EXPECT_EQ(mA.GetSrcCount(), 1);
    EXPECT_EQ(mB.GetDstCount(), 1);
    EXPECT_EQ(mA.GetSrcType(0), eLyrConnectionUser);
    EXPECT_EQ(mB.GetDstType(0), eLyrConnectionUser);
}

TEST_F(KLyrConnectionPointTest, TwoPointsMayBeConnectedInBothDirections) {
    ASSERT_TRUE(mA.ConnectSrc(&mB, eLyrConnectionUser));
    EXPECT_TRUE(mB.ConnectSrc(&mA, eLyrConnectionSystem));
    EXPECT_EQ(mA.GetSrcType(0), eLyrConnectionUser);
    EXPECT_EQ(mA.GetDstType(0), eLyrConnectionSystem);
    EXPECT_EQ(mB.GetSrcType(0), eLyrConnectionSystem);
    EXPECT_EQ(mB.GetDstType(0), eLyrConnectionUser);

    EXPECT_TRUE(mA.DisconnectSrc(&mB));
    EXPECT_FALSE(mA.IsConnectedSrc(&mB));
    EXPECT_TRUE(mB.IsConnectedSrc(&mA));
    EXPECT_EQ(DestinationsOf(mA), Points{&mB});
}

TEST_F(KLyrConnectionPointTest, RefusesNullAndItself) {
    EXPECT_FALSE(mA.ConnectSrc(nullptr, eLyrConnectionDefault));
    EXPECT_FALSE(mA.ConnectSrc(&mA, eLyrConnectionDefault));
    EXPECT_FALSE(mA.DisconnectSrc(nullptr));
    EXPECT_FALSE(mA.DisconnectSrc(&mA));
    EXPECT_FALSE(mA.IsConnectedSrc(nullptr));
    EXPECT_FALSE(mA.IsConnectedSrc(&mA));
    EXPECT_EQ(mA.GetSrcCount() + mA.GetDstCount(), 0);
}

TEST_F(KLyrConnectionPointTest, DisconnectsOnlyWhatIsConnected) {
    ASSERT_TRUE(mA.ConnectSrc(&mB, eLyrConnectionDefault));
    EXPECT_FALSE(mB.DisconnectSrc(&mA));
    EXPECT_FALSE(mA.DisconnectSrc(&mC));
    EXPECT_TRUE(mA.DisconnectSrc(&mB));
    EXPECT_FALSE(mA.DisconnectSrc(&mB));
    EXPECT_EQ(mA.GetSrcCount(), 0);
    EXPECT_EQ(mB.GetDstCount(), 0);
    EXPECT_TRUE(mA.ConnectSrc(&mB, eLyrConnectionDefault));
}

TEST_F(KLyrConnectionPointTest, KeepsTheOrderOfConnectionOnEachSide) {
    ASSERT_TRUE(mA.ConnectSrc(&mC, eLyrConnectionSystem));
    ASSERT_TRUE(mD.ConnectSrc(&mA, eLyrConnectionUser));
    ASSERT_TRUE(mA.ConnectSrc(&mB, eLyrConnectionReference));
    ASSERT_TRUE(mC.ConnectSrc(&mA, eLyrConnectionContains));
    ASSERT_TRUE(mA.ConnectSrc(&mD, eLyrConnectionData));
    EXPECT_EQ(SourcesOf(mA), (Points{&mC, &mB, &mD}));
    EXPECT_EQ(DestinationsOf(mA), (Points{&mD, &mC}));
    EXPECT_EQ(mA.GetSrcType(1), eLyrConnectionReference);
    EXPECT_EQ(mA.GetDstType(1), eLyrConnectionContains);

    ASSERT_TRUE(mA.DisconnectSrc(&mC));
    ASSERT_TRUE(mA.ConnectSrc(&mC, eLyrConnectionDefault));
    EXPECT_EQ(SourcesOf(mA), (Points{&mB, &mD, &mC}));
    EXPECT_EQ(mA.GetSrcType(1), eLyrConnectionData);
    EXPECT_EQ(mA.GetDstType(0), eLyrConnectionUser);
    EXPECT_EQ(DestinationsOf(mA), (Points{&mD, &mC}));
}

TEST_F(KLyrConnectionPointTest, WipingRemovesEverythingOnBothSidesAndNothingElse) {
    ASSERT_TRUE(mA.ConnectSrc(&mB, eLyrConnectionUser));
    ASSERT_TRUE(mB.ConnectSrc(&mA, eLyrConnectionUser));
    ASSERT_TRUE(mC.ConnectSrc(&mA, eLyrConnectionUser));
    ASSERT_TRUE(mC.ConnectSrc(&mB, eLyrConnectionSystem));
    mA.WipeConnectionList();
    EXPECT_EQ(mA.GetSrcCount() + mA.GetDstCount(), 0);
    EXPECT_EQ(mB.GetSrcCount(), 0);
    EXPECT_EQ(DestinationsOf(mB), Points{&mC});
    EXPECT_EQ(SourcesOf(mC), Points{&mB});
    EXPECT_EQ(mC.GetSrcType(0), eLyrConnectionSystem);

    mA.WipeConnectionList();
    EXPECT_TRUE(mA.ConnectSrc(&mB, eLyrConnectionUser));
}

TEST_F(KLyrConnectionPointTest, APointThatGoesLeavesNoPeerPointingAtItInEitherWipeMode) {
    for (const bool lWipeMode : {false, true}) {
        KLyrPlug::SetWipeMode(lWipeMode);
        {
            KLyrConnectionPoint lGone(nullptr);
            ASSERT_TRUE(lGone.ConnectSrc(&mA, eLyrConnectionDefault));
            ASSERT_TRUE(mB.ConnectSrc(&lGone, eLyrConnectionDefault));
            ASSERT_TRUE(mB.ConnectSrc(&mA, eLyrConnectionDefault));
        }
        KLyrPlug::SetWipeMode(false);
        EXPECT_EQ(DestinationsOf(mA), Points{&mB});
        EXPECT_EQ(SourcesOf(mB), Points{&mA});
        mA.WipeConnectionList();
    }
}

// Every way to take a request back must leave both ends in step. Each has a connection already, because the first one
// of a point takes no memory.
TEST(KLyrConnectionPoint, AConnectionThatFindsNoMemoryIsMadeAtNeitherEnd) {
    WithEveryAllocationFailing([](const FailurePoint& pPoint) {
        KLyrConnectionPoint lA(nullptr);
        KLyrConnectionPoint lB(nullptr);
        KLyrConnectionPoint lOther(nullptr);
        EXPECT_TRUE(lA.ConnectSrc(&lOther, eLyrConnectionSystem) && lOther.ConnectSrc(&lB, eLyrConnectionSystem));
        bool lDone = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lDone = lA.ConnectSrc(&lB, eLyrConnectionUser);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lDone, lFailed == 0);
        EXPECT_EQ(lA.GetSrcCount(), lDone ? 2 : 1);
        EXPECT_EQ(lB.GetDstCount(), lDone ? 2 : 1);
        EXPECT_EQ(lA.IsConnectedSrc(&lB), lDone);
        EXPECT_EQ(lA.ConnectSrc(&lB, eLyrConnectionUser), !lDone);
        EXPECT_EQ(lA.GetSrc(0), &lOther);
        EXPECT_EQ(lA.GetSrc(1), &lB);
        EXPECT_EQ(lB.GetDst(0), &lOther);
        EXPECT_EQ(lB.GetDst(1), &lA);
        return lFailed;
    });
}

TEST(KLyrConnectionPoint, ReadingTestingAndTakingAwayAskForNoMemory) {
    const LeakCheck lLeaks;
    KLyrConnectionPoint lHub(nullptr);
    std::vector<std::unique_ptr<KLyrConnectionPoint>> lPeers;
    for (int i = 0; i < 20; ++i) {
        lPeers.push_back(std::make_unique<KLyrConnectionPoint>(nullptr));
        ASSERT_TRUE(lHub.ConnectSrc(lPeers.back().get(), eLyrConnectionUser));
    }
    const FailAllocations lFail(0, true);
    EXPECT_EQ(lHub.GetSrc(7), lPeers[7].get());
    EXPECT_TRUE(lHub.IsConnectedSrc(lPeers[19].get()));
    EXPECT_FALSE(lHub.ConnectSrc(lPeers[3].get(), eLyrConnectionUser));
    EXPECT_TRUE(lHub.DisconnectSrc(lPeers[3].get()));
    lHub.WipeConnectionList();
    EXPECT_EQ(lHub.GetSrcCount(), 0);
    EXPECT_EQ(lFail.Failed(), 0u);
}

}  // namespace
}  // namespace lyrsdk
