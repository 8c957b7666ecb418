#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <numeric>
#include <random>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"
#include "tests/support/connection_filters.h"
#include "tests/support/connection_model.h"
#include "tests/support/failing_memory.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

constexpr kLyrConnectionType kTypes[] = {eLyrConnectionNone,      eLyrConnectionSystem, eLyrConnectionUser,
                                         eLyrConnectionReference, eLyrConnectionData,   eLyrConnectionDefault};

kLyrConnectionType TypeOf(int pNumber) {
    return kTypes[static_cast<unsigned>(pNumber) % std::size(kTypes)];
}

std::vector<int> Shuffled(int pCount, unsigned pSeed) {
    std::vector<int> lNumbers(static_cast<std::size_t>(pCount));
    std::iota(lNumbers.begin(), lNumbers.end(), 0);
    std::shuffle(lNumbers.begin(), lNumbers.end(), std::mt19937(pSeed));
    return lNumbers;
}

TEST(KConnectionList, TheFirstConnectionOfAPointTakesNoMemory) {
    for (const bool lSource : {true, false}) {
        ConnectionModel lModel(3);
        lModel.AddFilter(eLyrConnectionUser);
        const std::size_t lBefore = MemoryProbe::Allocations();
        const FailAllocations lFail(0, true);
        ASSERT_TRUE(lSource ? lModel.Connect(0, 1, eLyrConnectionUser) : lModel.Connect(1, 0, eLyrConnectionUser));
        EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
        EXPECT_FALSE(lModel.Point(lSource ? 0 : 1).ConnectSrc(&lModel.Point(2), eLyrConnectionUser));
    }
}

TEST(KConnectionList, TheOnlyConnectionOfAPointIsKnownOnItsSideAlone) {
    const LeakCheck lLeaks;
    ConnectionModel lModel(3);
    lModel.AddFilter(eLyrConnectionSystem);
    for (int lRound = 0; lRound < 2; ++lRound) {
        ASSERT_TRUE(lModel.Connect(0, 1, eLyrConnectionSystem));
        ASSERT_TRUE(lModel.AllAgree());
        ASSERT_FALSE(lModel.Connect(0, 1, eLyrConnectionUser));
        ASSERT_FALSE(lModel.Disconnect(1, 0));
        ASSERT_FALSE(lModel.Disconnect(0, 2));
        ASSERT_FALSE(lModel.Disconnect(2, 0));
        ASSERT_TRUE(lModel.AllAgree());
        ASSERT_TRUE(lModel.Disconnect(0, 1));
        ASSERT_TRUE(lModel.AllAgree());
    }
    ASSERT_TRUE(lModel.Connect(1, 0, eLyrConnectionUser));
    ASSERT_TRUE(lModel.Connect(0, 1, eLyrConnectionSystem));
    ASSERT_TRUE(lModel.AllAgree());
    ASSERT_TRUE(lModel.Disconnect(1, 0));
    EXPECT_TRUE(lModel.AllAgree());
}

// Up and down between none and three, through every mixture of sides.
TEST(KConnectionList, GoesAnyWayBetweenNoConnectionAndAFew) {
    const LeakCheck lLeaks;
    ConnectionModel lModel(4);
    lModel.AddFilter(eLyrConnectionUser);
    std::mt19937 lRandom(3);
    for (int i = 0; i < 3000; ++i) {
        const int lPeer = 1 + static_cast<int>(lRandom() % 3);
        const bool lSource = lRandom() % 2 == 0;
        const int lDst = lSource ? 0 : lPeer;
        const int lSrc = lSource ? lPeer : 0;
        if (lModel.Point(lDst).IsConnectedSrc(&lModel.Point(lSrc)))
            ASSERT_TRUE(lModel.Disconnect(lDst, lSrc));
        else if (lModel.Point(0).GetSrcCount() + lModel.Point(0).GetDstCount() < 3)
            ASSERT_TRUE(lModel.Connect(lDst, lSrc, TypeOf(i)));
        else
            lModel.Wipe(0);
        ASSERT_TRUE(lModel.AllAgree()) << "operation " << i;
    }
}

TEST(KConnectionList, AsksForNoMemoryWhileItGoesBetweenNoneAndAFew) {
    ConnectionModel lModel(4);
    for (int i = 1; i <= 3; ++i)
        ASSERT_TRUE(lModel.Connect(0, i, eLyrConnectionUser));
    const std::size_t lBefore = MemoryProbe::Allocations();
    for (int lRound = 0; lRound < 10; ++lRound) {
        for (int i = 1; i <= 3; ++i)
            ASSERT_TRUE(lModel.Point(0).DisconnectSrc(&lModel.Point(i)));
        for (int i = 1; i <= 3; ++i)
            ASSERT_TRUE(lModel.Point(0).ConnectSrc(&lModel.Point(i), eLyrConnectionUser));
    }
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
    EXPECT_TRUE(lModel.AllAgree());
}

// Every step that crosses a size at which a list changes its inner form is compared in full.
TEST(KConnectionList, GrowsAndShrinksThroughEverySizeWithSourcesOnly) {
    const LeakCheck lLeaks;
    ConnectionModel lModel(101);
    for (int i = 1; i <= 100; ++i) {
        ASSERT_TRUE(lModel.Connect(0, i, TypeOf(i)));
        ASSERT_TRUE(lModel.Agrees(0));
    }
    for (const int i : Shuffled(100, 1)) {
        ASSERT_TRUE(lModel.Disconnect(0, i + 1));
        ASSERT_TRUE(lModel.Agrees(0));
    }
    EXPECT_TRUE(lModel.AllAgree());
}

TEST(KConnectionList, GrowsAndShrinksThroughEverySizeWithDestinationsOnly) {
    const LeakCheck lLeaks;
    ConnectionModel lModel(101);
    for (int i = 1; i <= 100; ++i) {
        ASSERT_TRUE(lModel.Connect(i, 0, TypeOf(i)));
        ASSERT_TRUE(lModel.Agrees(0));
    }
    for (const int i : Shuffled(100, 2)) {
        ASSERT_TRUE(lModel.Disconnect(i + 1, 0));
        ASSERT_TRUE(lModel.Agrees(0));
    }
    EXPECT_TRUE(lModel.AllAgree());
}

// For each number of destinations there first, sources are put in front of them.
TEST(KConnectionList, TakesSourcesInFrontOfAnyNumberOfDestinations) {
    const LeakCheck lLeaks;
    for (int lDestinations = 0; lDestinations <= 70; ++lDestinations) {
        ConnectionModel lModel(141);
        for (int i = 1; i <= lDestinations; ++i)
            ASSERT_TRUE(lModel.Connect(i, 0, TypeOf(i)));
        for (int i = 1; i <= 70; ++i) {
            ASSERT_TRUE(lModel.Connect(0, i + 70, TypeOf(i)));
            if (i <= 3 || i % 16 <= 1) {
                ASSERT_TRUE(lModel.Agrees(0)) << lDestinations << " destinations, " << i << " sources";
            }
        }
        ASSERT_TRUE(lModel.Agrees(0));
    }
}

TEST(KConnectionList, TheSamePeersMayBeSourcesAndDestinationsOfALongList) {
    const LeakCheck lLeaks;
    ConnectionModel lModel(201);
    for (int i = 1; i <= 200; ++i) {
        ASSERT_TRUE(lModel.Connect(0, i, TypeOf(i)));
        ASSERT_TRUE(lModel.Connect(i, 0, TypeOf(i + 1)));
        ASSERT_FALSE(lModel.Connect(0, i, eLyrConnectionUser));
        ASSERT_FALSE(lModel.Connect(i, 0, eLyrConnectionUser));
    }
    ASSERT_TRUE(lModel.AllAgree());
    for (const int i : Shuffled(200, 3)) {
        ASSERT_TRUE(i % 2 ? lModel.Disconnect(0, i + 1) : lModel.Disconnect(i + 1, 0));
        ASSERT_FALSE(i % 2 ? lModel.Disconnect(0, i + 1) : lModel.Disconnect(i + 1, 0));
        ASSERT_TRUE(lModel.Agrees(0));
    }
    EXPECT_TRUE(lModel.AllAgree());
}

TEST(KConnectionList, EmptiesFromTheFrontFromTheBackAndFromTheMiddle) {
    const LeakCheck lLeaks;
    constexpr int lEach = 90;
    for (int lWay = 0; lWay < 3; ++lWay) {
        ConnectionModel lModel(2 * lEach + 1);
        for (int i = 1; i <= lEach; ++i) {
            ASSERT_TRUE(lModel.Connect(0, i, TypeOf(i)));
            ASSERT_TRUE(lModel.Connect(i + lEach, 0, TypeOf(i)));
        }
        for (int i = 0; i < lEach; ++i) {
            const int lMiddle = i % 2 ? lEach / 2 - i / 2 : lEach / 2 + i / 2 + 1;
            const int lPeer = lWay == 0 ? i + 1 : lWay == 1 ? lEach - i : lMiddle;
            ASSERT_TRUE(lModel.Disconnect(0, lPeer)) << lPeer;
            ASSERT_TRUE(lModel.Agrees(0));
            ASSERT_TRUE(lModel.Disconnect(lPeer + lEach, 0)) << lPeer;
            ASSERT_TRUE(lModel.Agrees(0));
        }
        EXPECT_EQ(lModel.Point(0).GetSrcCount() + lModel.Point(0).GetDstCount(), 0);
    }
}

// One side goes altogether while the other stays, and comes back.
TEST(KConnectionList, LosesOneSideAndGetsItBackBesideALongOtherSide) {
    const LeakCheck lLeaks;
    for (const bool lSources : {true, false}) {
        ConnectionModel lModel(241);
        const auto lConnect = [&](int pPeer, bool pSource) {
            return pSource ? lModel.Connect(0, pPeer, TypeOf(pPeer)) : lModel.Connect(pPeer, 0, TypeOf(pPeer));
        };
        for (int i = 1; i <= 120; ++i) {
            ASSERT_TRUE(lConnect(i, lSources));
            ASSERT_TRUE(lConnect(i + 120, !lSources));
        }
        for (int lRound = 0; lRound < 4; ++lRound) {
            for (int i = 1; i <= 120; ++i)
                ASSERT_TRUE(lSources ? lModel.Disconnect(0, i) : lModel.Disconnect(i, 0));
            ASSERT_TRUE(lModel.Agrees(0));
            for (int i = 120; i >= 1; --i) {
                ASSERT_TRUE(lConnect(i, lSources));
                ASSERT_TRUE(lModel.Agrees(0));
            }
        }
        EXPECT_TRUE(lModel.AllAgree());
    }
}

TEST(KConnectionList, AgreesWithAPlainModelAfterRandomOperations) {
    for (unsigned lSeed = 1; lSeed <= 6; ++lSeed) {
        SCOPED_TRACE(testing::Message() << "seed " << lSeed);
        const LeakCheck lLeaks;
        std::mt19937 lRandom(lSeed);
        const int lPoints = lSeed % 2 ? 12 : 60;
        ConnectionModel lModel(lPoints);
        lModel.AddFilter(eLyrConnectionUser);
        lModel.AddFilter(eLyrConnectionReference);
        const auto lPick = [&](int pEnd) { return static_cast<int>(lRandom() % static_cast<unsigned>(pEnd)); };
        // Phases of growing and of shrinking, so that sizes wander across the limits.
        for (int i = 0; i < 6000; ++i) {
            const bool lGrows = (i / 1000) % 2 == 0;
            const int lA = lPick(4) == 0 ? lPick(lPoints) : lPick(3);
            const int lB = lPick(lPoints);
            const int lDice = lPick(1000);
            if (lDice < (lGrows ? 800 : 300))
                lModel.Connect(lA, lB, TypeOf(lPick(6)));
            else if (lDice < 990)
                lModel.Disconnect(lA, lB);
            else if (lDice < 993)
                lModel.Wipe(lB);
            else if (lDice < 996)
                lModel.Replace(lB);
            else
                lModel.DropCache(lA);
            ASSERT_TRUE(lModel.Agrees(lA) && lModel.Agrees(lB)) << "operation " << i;
        }
        ASSERT_TRUE(lModel.AllAgree());
    }
}

TEST(KConnectionList, KeepsOrderAndTypesOverSomeThousandConnections) {
    const LeakCheck lLeaks;
    constexpr int lPoints = 4001;
    ConnectionModel lModel(lPoints);
    lModel.AddFilter(eLyrConnectionSystem);
    const auto lOneWay = [&](int i) { return i % 3 != 0; };
    for (const int i : Shuffled(lPoints - 1, 7))
        ASSERT_TRUE(lOneWay(i) ? lModel.Connect(0, i + 1, TypeOf(i)) : lModel.Connect(i + 1, 0, TypeOf(i)));
    ASSERT_TRUE(lModel.AllAgree());

    int lSteps = 0;
    for (const int i : Shuffled(lPoints - 1, 8)) {
        ASSERT_TRUE(lOneWay(i) ? lModel.Disconnect(0, i + 1) : lModel.Disconnect(i + 1, 0));
        if (++lSteps % 250 == 0) {
            ASSERT_TRUE(lModel.Agrees(0)) << lSteps;
        }
        if (lSteps % 4 == 0) {
            ASSERT_TRUE(lOneWay(i) ? lModel.Connect(0, i + 1, TypeOf(i + 1)) : lModel.Connect(i + 1, 0, TypeOf(i + 1)));
        }
    }
    EXPECT_TRUE(lModel.AllAgree());
    EXPECT_EQ(lModel.Point(0).GetSrcCount() + lModel.Point(0).GetDstCount(), (lPoints - 1) / 4);
    lModel.Wipe(0);
    EXPECT_TRUE(lModel.AllAgree());
}

TEST(KConnectionList, APointInTheMiddleOfThousandsIsWipedOrDestroyedWhole) {
    const LeakCheck lLeaks;
    for (const bool lDestroy : {false, true}) {
        ConnectionModel lModel(3001);
        for (int i = 1; i <= 3000; ++i) {
            ASSERT_TRUE(lModel.Connect(0, i, TypeOf(i)));
            ASSERT_TRUE(lModel.Connect(i, 0, TypeOf(i)));
            ASSERT_TRUE(lModel.Connect(i, i == 1 ? 3000 : i - 1, TypeOf(i)));
        }
        if (lDestroy)
            lModel.Replace(0);
        else
            lModel.Wipe(0);
        EXPECT_TRUE(lModel.AllAgree());
    }
}

TEST(KConnectionList, TwoHubsWithLongListsOfEachOthersPeersStayApart) {
    const LeakCheck lLeaks;
    ConnectionModel lModel(202);
    ASSERT_TRUE(lModel.Connect(0, 1, eLyrConnectionUser));
    ASSERT_TRUE(lModel.Connect(1, 0, eLyrConnectionSystem));
    for (int i = 2; i < 202; ++i) {
        ASSERT_TRUE(lModel.Connect(0, i, TypeOf(i)));
        ASSERT_TRUE(lModel.Connect(1, i, TypeOf(i + 1)));
    }
    ASSERT_TRUE(lModel.AllAgree());
    ASSERT_TRUE(lModel.Disconnect(0, 1));
    ASSERT_TRUE(lModel.AllAgree());
    lModel.Wipe(1);
    EXPECT_TRUE(lModel.AllAgree());
    EXPECT_EQ(lModel.Point(0).GetSrcCount(), 200);
}

// Connects points 1 to pCount with each other behind the model's back, so that each has room for one connection more
// and what is counted from then on is asked for by point 0 alone.
void JoinInARing(ConnectionModel& pModel, int pCount) {
    for (int i = 1; i <= pCount; ++i)
        pModel.Point(i).ConnectSrc(&pModel.Point(i == 1 ? pCount : i - 1), eLyrConnectionUser);
}

// What is laid out anew on every step would ask for memory on every step.
TEST(KConnectionList, AsksForMemoryRarelyWhateverTheOrderOfSides) {
    constexpr int lPeers = 8192;
    for (int lWay = 0; lWay < 3; ++lWay) {
        ConnectionModel lModel(lPeers + 1);
        JoinInARing(lModel, lPeers);
        KLyrConnectionPoint& lHub = lModel.Point(0);
        const std::size_t lBefore = MemoryProbe::Allocations();
        for (int i = 1; i <= lPeers; ++i) {
            const bool lSource = lWay == 0 ? i % 2 == 0 : lWay == 1 ? i > lPeers / 2 : i <= lPeers / 2;
            ASSERT_TRUE(lSource ? lHub.ConnectSrc(&lModel.Point(i), eLyrConnectionUser)
                                : lModel.Point(i).ConnectSrc(&lHub, eLyrConnectionUser));
        }
        EXPECT_LT(MemoryProbe::Allocations() - lBefore, 200u) << "way " << lWay;
    }
}

TEST(KConnectionList, AsksForMemoryRarelyWhileConnectionsComeAndGo) {
    constexpr int lPeers = 1000;
    ConnectionModel lModel(2 * lPeers + 1);
    KLyrConnectionPoint& lHub = lModel.Point(0);
    JoinInARing(lModel, 2 * lPeers);
    for (int i = 1; i <= lPeers; ++i) {
        ASSERT_TRUE(lHub.ConnectSrc(&lModel.Point(i), eLyrConnectionUser));
        ASSERT_TRUE(lModel.Point(i + lPeers).ConnectSrc(&lHub, eLyrConnectionUser));
    }
    const std::size_t lBefore = MemoryProbe::Allocations();
    for (int lRound = 0; lRound < 10; ++lRound) {
        for (int i = 1; i <= lPeers; ++i) {
            ASSERT_TRUE(lHub.DisconnectSrc(&lModel.Point(i)));
            ASSERT_TRUE(lHub.ConnectSrc(&lModel.Point(i), eLyrConnectionUser));
            ASSERT_TRUE(lModel.Point(i + lPeers).DisconnectSrc(&lHub));
            ASSERT_TRUE(lModel.Point(i + lPeers).ConnectSrc(&lHub, eLyrConnectionUser));
        }
    }
    EXPECT_LT(MemoryProbe::Allocations() - lBefore, 400u);
    EXPECT_EQ(lHub.GetSrc(0), &lModel.Point(1));
    EXPECT_EQ(lHub.GetDst(lPeers - 1), &lModel.Point(2 * lPeers));
}

TEST(KConnectionList, GivesPartOfItsMemoryBackAsItShrinks) {
    constexpr int lPeers = 8192;
    ConnectionModel lModel(lPeers + 1);
    JoinInARing(lModel, lPeers);
    KLyrConnectionPoint& lHub = lModel.Point(0);
    const std::size_t lEmpty = MemoryProbe::LiveBytes();
    for (int i = 1; i <= lPeers; ++i)
        ASSERT_TRUE(lHub.ConnectSrc(&lModel.Point(i), eLyrConnectionUser));
    const std::size_t lFull = MemoryProbe::LiveBytes() - lEmpty;
    for (int i = 1; i <= lPeers - 100; ++i)
        ASSERT_TRUE(lHub.DisconnectSrc(&lModel.Point(i)));
    EXPECT_LT(MemoryProbe::LiveBytes() - lEmpty, lFull / 3 * 2);
    EXPECT_EQ(lHub.GetSrc(0), &lModel.Point(lPeers - 99));
}

TEST(KConnectionList, GivesItsMemoryBackWhenItIsEmptiedByWiping) {
    KLyrConnectionPoint lHub(nullptr);
    const LeakCheck lLeaks;
    std::vector<std::unique_ptr<KLyrConnectionPoint>> lPeers;
    for (int i = 0; i < 500; ++i) {
        lPeers.push_back(std::make_unique<KLyrConnectionPoint>(nullptr));
        ASSERT_TRUE(lHub.ConnectSrc(lPeers.back().get(), eLyrConnectionUser));
    }
    lHub.WipeConnectionList();
    lPeers.clear();
}

// One connection more at each size, with each request refused: the list is as it was or one longer.
TEST(KConnectionList, AConnectionThatFindsNoMemoryChangesNothingAtAnySize) {
    for (const int lSize : {1, 2, 3, 4, 8, 15, 16, 31, 32, 33, 63, 64, 96, 127, 128, 255}) {
        for (const bool lSource : {true, false}) {
            SCOPED_TRACE(testing::Message() << lSize << " connections, one " << (lSource ? "source" : "destination"));
            for (const bool lForever : {false, true}) {
                std::size_t lFailed = 1;
                for (std::size_t k = 0; lFailed > 0; ++k) {
                    const LeakCheck lLeaks;
                    ConnectionModel lModel(lSize + 2);
                    lModel.AddFilter(eLyrConnectionUser);
                    for (int i = 1; i <= lSize; ++i)
                        ASSERT_TRUE(i % 2 ? lModel.Connect(0, i, TypeOf(i)) : lModel.Connect(i, 0, TypeOf(i)));
                    ASSERT_TRUE(lModel.Agrees(0));
                    lFailed = lSource ? lModel.TryConnect(0, lSize + 1, eLyrConnectionUser, k, lForever)
                                      : lModel.TryConnect(lSize + 1, 0, eLyrConnectionUser, k, lForever);
                    ASSERT_TRUE(lModel.AllAgree()) << "request " << k;
                    lModel.Connect(0, lSize + 1, eLyrConnectionUser);
                    lModel.Connect(lSize + 1, 0, eLyrConnectionUser);
                    ASSERT_TRUE(lModel.AllAgree()) << "request " << k;
                    ASSERT_TRUE(lModel.Disconnect(0, 1));
                    ASSERT_TRUE(lModel.AllAgree()) << "request " << k;
                }
            }
        }
    }
}

TEST(KConnectionList, DisconnectsAndWipesWithoutAnyMemory) {
    for (const int lCount : {20, 33, 100, 700}) {
        const LeakCheck lLeaks;
        ConnectionModel lModel(lCount + 1);
        lModel.AddFilter(eLyrConnectionUser);
        for (int i = 1; i <= lCount; ++i)
            ASSERT_TRUE(i % 2 ? lModel.Connect(0, i, TypeOf(i)) : lModel.Connect(i, 0, TypeOf(i)));
        ASSERT_TRUE(lModel.AllAgree());
        {
            const FailAllocations lFail(0, true);
            int lLeft = lCount;
            for (const int i : Shuffled(lCount, 5)) {
                if (--lLeft < lCount / 5)
                    break;
                ASSERT_TRUE(i % 2 == 0 ? lModel.Disconnect(0, i + 1) : lModel.Disconnect(i + 1, 0));
                ASSERT_TRUE(lModel.Agrees(0));
            }
            lModel.Wipe(0);
            ASSERT_TRUE(lModel.Agrees(0));
        }
        ASSERT_TRUE(lModel.AllAgree());
        ASSERT_TRUE(lModel.Connect(0, 1, eLyrConnectionUser));
        EXPECT_TRUE(lModel.AllAgree());
    }
}

// Whatever requests are refused, no connection is lost, doubled or out of order.
TEST(KConnectionList, AgreesWithAPlainModelWhileMemoryComesAndGoes) {
    for (unsigned lSeed = 1; lSeed <= 8; ++lSeed) {
        SCOPED_TRACE(testing::Message() << "seed " << lSeed);
        const LeakCheck lLeaks;
        std::mt19937 lRandom(lSeed);
        const auto lPick = [&](int pEnd) { return static_cast<int>(lRandom() % static_cast<unsigned>(pEnd)); };
        constexpr int lPoints = 90;
        ConnectionModel lModel(lPoints);
        lModel.AddFilter(eLyrConnectionUser);
        for (int i = 0; i < 5000; ++i) {
            const int lA = lPick(2);
            const int lB = lPick(lPoints);
            const bool lSource = lPick(2) == 0;
            const int lDst = lSource ? lA : lB;
            const int lSrc = lSource ? lB : lA;
            if (lPick(10) < ((i / 800) % 2 == 0 ? 8 : 2)) {
                lModel.TryConnect(lDst, lSrc, TypeOf(lPick(6)), static_cast<std::size_t>(lPick(6)), lPick(2) == 0);
            } else {
                const FailAllocations lFail(static_cast<std::size_t>(lPick(3)), lPick(2) == 0);
                lModel.Disconnect(lDst, lSrc);
            }
            ASSERT_TRUE(lModel.Agrees(lA) && lModel.Agrees(lB)) << "operation " << i;
        }
        ASSERT_TRUE(lModel.AllAgree());
    }
}

}  // namespace
}  // namespace lyrsdk
