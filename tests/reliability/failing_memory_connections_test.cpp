#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"
#include "tests/reliability/failing_memory_scenarios.h"
#include "tests/support/connection_filters.h"

namespace lyrsdk {
namespace {

// A crowded point in the middle of many others: kSources sources and kDestinations destinations of every type. Peers
// are shown by their number. The peers up to kNew that come next have a source of their own, so that one connection
// more takes memory at their end too.
template <int kSources, int kDestinations>
struct PointStage {
    static constexpr int kPeers = 240;
    static constexpr int kNew = 170;
    static constexpr bool kHasDestinations = kDestinations > 0;

    std::vector<std::unique_ptr<KLyrConnectionPoint>> mPeers;
    int mNumbers[kPeers + 2];
    mutable TypeFilter mUser{eLyrConnectionUser};
    mutable TypeFilter mReference{eLyrConnectionReference};
    KLyrConnectionPoint mOther{mNumbers + kPeers + 1};
    std::unique_ptr<KLyrConnectionPoint> mPoint;

    PointStage() {
        for (int i = 0; i <= kPeers + 1; ++i)
            mNumbers[i] = i;
        for (int i = 0; i < kPeers; ++i)
            mPeers.push_back(std::make_unique<KLyrConnectionPoint>(mNumbers + i));
        mPoint = std::make_unique<KLyrConnectionPoint>(mNumbers + kPeers);
        for (int i = 0; i < kSources; ++i)
            mPoint->ConnectSrc(Peer(i), TypeOf(i));
        for (int i = 0; i < kDestinations; ++i)
            Peer(kPeers - 1 - i)->ConnectSrc(mPoint.get(), TypeOf(i));
        for (int i = kNew - 10; i <= kNew; ++i)
            Peer(i)->ConnectSrc(&mOther, TypeOf(i));
    }
    static kLyrConnectionType TypeOf(int pIndex) { return static_cast<kLyrConnectionType>(pIndex % 8); }
    KLyrConnectionPoint* Peer(int pIndex) const { return mPeers[static_cast<std::size_t>(pIndex)].get(); }

    static int NumberOf(const KLyrConnectionPoint* pPoint) {
        return pPoint ? *static_cast<const int*>(pPoint->GetData()) : -1;
    }
    static void Show(std::ostream& pOut, const KLyrConnectionPoint& pPoint) {
        pOut << NumberOf(&pPoint) << " from";
        for (int i = 0; i < pPoint.GetSrcCount(); ++i)
            pOut << ' ' << NumberOf(pPoint.GetSrc(i)) << '/' << pPoint.GetSrcType(i);
        pOut << " to";
        for (int i = 0; i < pPoint.GetDstCount(); ++i)
            pOut << ' ' << NumberOf(pPoint.GetDst(i)) << '/' << pPoint.GetDstType(i);
        pOut << '\n';
    }
    // Without looking through filters, which would make sub-points.
    std::string Shows(Detail) const {
        std::ostringstream lOut;
        Show(lOut, *mPoint);
        for (const auto& lPeer : mPeers)
            if (lPeer->GetSrcCount() + lPeer->GetDstCount() > 0)
                Show(lOut, *lPeer);
        return lOut.str();
    }
    // Both ends of every connection know it, and nobody knows another one.
    testing::AssertionResult Holds() const {
        int lKnown = 0;
        for (const auto& lPeer : mPeers)
            lKnown += (mPoint->IsConnectedSrc(lPeer.get()) ? 1 : 0) + (lPeer->IsConnectedSrc(mPoint.get()) ? 1 : 0);
        if (lKnown != mPoint->GetSrcCount() + mPoint->GetDstCount())
            return testing::AssertionFailure() << lKnown << " connections are known";
        for (int i = 0; i < mPoint->GetSrcCount(); ++i)
            if (!mPoint->IsConnectedSrc(mPoint->GetSrc(i)) || mPoint->GetSrc(i)->GetDst(0) != mPoint.get())
                return testing::AssertionFailure() << "source " << i;
        for (int i = 0; i < mPoint->GetDstCount(); ++i)
            if (!mPoint->GetDst(i)->IsConnectedSrc(mPoint.get()))
                return testing::AssertionFailure() << "destination " << i;
        return testing::AssertionSuccess();
    }
    // The sub-point shows just what the filter selects, in order.
    testing::AssertionResult FollowsFilter(TypeFilter& pFilter, int pBits) const {
        int lSeen = 0;
        for (int i = 0; i < mPoint->GetSrcCount(); ++i)
            if ((mPoint->GetSrcType(i) & pBits) != 0 && mPoint->GetSrc(lSeen++, &pFilter) != mPoint->GetSrc(i))
                return testing::AssertionFailure() << "source " << i << " is not seen";
        if (mPoint->GetSrcCount(&pFilter) != lSeen)
            return testing::AssertionFailure() << "more is seen than there is";
        return testing::AssertionSuccess();
    }
};

using Few = PointStage<4, 4>;
using ShortOfAnIndex = PointStage<20, 12>;
using Many = PointStage<70, 50>;
using Sources = PointStage<150, 4>;

// Every third connection was taken away and four more came: the index is full, and part of it is gaps.
template <int kSources, int kDestinations>
struct GapStage : PointStage<kSources, kDestinations> {
    GapStage() {
        for (int i = 1; i < kSources; i += 3)
            this->mPoint->DisconnectSrc(this->Peer(i));
        for (int i = 1; i < kDestinations; i += 3)
            this->Peer(this->kPeers - 1 - i)->DisconnectSrc(this->mPoint.get());
        for (int i = 100; i < 104; ++i)
            this->mPoint->ConnectSrc(this->Peer(i), this->TypeOf(i));
    }
};
using Gaps = GapStage<60, 0>;
using GapsOnBothSides = GapStage<36, 24>;

constexpr auto kNothing = Refused::eChangesNothing;

template <typename Stage>
void LookThroughFilters(Stage& pStage) {
    EXPECT_TRUE(pStage.FollowsFilter(pStage.mUser, eLyrConnectionUser));
    EXPECT_TRUE(pStage.FollowsFilter(pStage.mReference, eLyrConnectionReference));
}

template <typename Stage>
std::vector<Operation<Stage>> Operations() {
    std::vector<Operation<Stage>> lOperations = {
        {"ConnectASource",
         [](Stage& p) { return Answer(p.mPoint->ConnectSrc(p.Peer(Stage::kNew), eLyrConnectionDefault)); }, "false"},
        {"ConnectADestination",
         [](Stage& p) { return Answer(p.Peer(Stage::kNew)->ConnectSrc(p.mPoint.get(), eLyrConnectionDefault)); },
         "false"},
        {"ConnectASourceThatFiltersSee",
         [](Stage& p) { return Answer(p.mPoint->ConnectSrc(p.Peer(Stage::kNew), eLyrConnectionDefault)); }, "false",
         kNothing, LookThroughFilters<Stage>},
        {"ConnectADestinationThatFiltersSee",
         [](Stage& p) { return Answer(p.Peer(Stage::kNew)->ConnectSrc(p.mPoint.get(), eLyrConnectionDefault)); },
         "false", kNothing, LookThroughFilters<Stage>},
        {"CountSourcesThroughAFilter", [](Stage& p) { return Answer(p.mPoint->GetSrcCount(&p.mUser)); }, "0"},
        {"GiveASourceThroughAFilter", [](Stage& p) { return Answer(p.NumberOf(p.mPoint->GetSrc(1, &p.mUser))); }, "-1"},
        {"MakeASubPoint", [](Stage& p) { return Answer(p.mPoint->SubConnectGetOrCreate(&p.mUser)); }, "null"},
    };
    if (Stage::kHasDestinations) {
        lOperations.push_back(
            {"CountDestinationsThroughAFilter", [](Stage& p) { return Answer(p.mPoint->GetDstCount(&p.mUser)); }, "0"});
        lOperations.push_back({"GiveADestinationThroughAFilter",
                               [](Stage& p) { return Answer(p.NumberOf(p.mPoint->GetDst(1, &p.mUser))); }, "-1"});
    }
    return lOperations;
}

template <typename Stage>
class FailingMemoryPoint : public testing::Test {};
using Stages = testing::Types<Few, ShortOfAnIndex, Many, Sources, GapsOnBothSides, Gaps>;

struct StageNames {
    template <typename Stage>
    static std::string GetName(int pIndex) {
        static const char* const sNames[] = {"WithOneSource",  "WithOneDestination",  "WithFewConnections",
                                             "ShortOfAnIndex", "WithAnIndex",         "WithManySources",
                                             "WithGaps",       "WithGapsAmongSources"};
        return sNames[pIndex];
    }
};
TYPED_TEST_SUITE(FailingMemoryPoint, Stages, StageNames);

// With the index that a long list gets, or without when there is no memory for it.
TYPED_TEST(FailingMemoryPoint, ConnectsBothEndsAndTheirFiltersOrNone) {
    for (const auto& lOperation : Operations<TypeParam>()) {
        SCOPED_TRACE(lOperation.mName);
        ExpectDoneOrRefused(lOperation);
    }
}

// Whatever became of the index, every connection is found by it and taken away.
TYPED_TEST(FailingMemoryPoint, LetsGoOfEveryConnectionBehindARefusedOne) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        TypeParam lStage;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lStage.mPoint->ConnectSrc(lStage.Peer(lStage.kNew), eLyrConnectionUser);
            lFailed = lFail.Failed();
        }
        while (KLyrConnectionPoint* lSource = lStage.mPoint->GetSrc(0)) {
            const bool lGone = lStage.mPoint->DisconnectSrc(lSource);
            EXPECT_TRUE(lGone);
            if (!lGone || lStage.mPoint->IsConnectedSrc(lSource))
                break;
        }
        while (KLyrConnectionPoint* lDestination = lStage.mPoint->GetDst(0)) {
            const bool lGone = lDestination->DisconnectSrc(lStage.mPoint.get());
            EXPECT_TRUE(lGone);
            if (!lGone)
                break;
        }
        EXPECT_TRUE(lStage.Holds());
        EXPECT_EQ(lStage.mPoint->GetSrcCount() + lStage.mPoint->GetDstCount(), 0);
        return testing::Test::HasFailure() ? 0 : lFailed;
    });
}

TYPED_TEST(FailingMemoryPoint, ShowsThroughItsFiltersWhatItShowsWithoutThem) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        TypeParam lStage;
        LookThroughFilters(lStage);
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            for (int i = lStage.kNew - 10; i < lStage.kNew; ++i)
                lStage.mPoint->ConnectSrc(lStage.Peer(i), lStage.TypeOf(i));
            lFailed = lFail.Failed();
        }
        EXPECT_TRUE(lStage.Holds());
        LookThroughFilters(lStage);
        return lFailed;
    });
}

// A long list tidies its index as it shrinks; without memory it goes on without one.
TYPED_TEST(FailingMemoryPoint, DisconnectsWhateverIsRefused) {
    for (const bool lForever : {false, true}) {
        TypeParam lStage;
        TypeParam lReference;
        LookThroughFilters(lStage);
        std::mt19937 lEngine(7);
        while (lStage.mPoint->GetSrcCount() > 0) {
            const int lPosition = static_cast<int>(lEngine() % static_cast<unsigned>(lStage.mPoint->GetSrcCount()));
            {
                const FailAllocations lFail(0, lForever);
                EXPECT_TRUE(lStage.mPoint->DisconnectSrc(lStage.mPoint->GetSrc(lPosition)));
            }
            EXPECT_TRUE(lReference.mPoint->DisconnectSrc(lReference.mPoint->GetSrc(lPosition)));
            ASSERT_EQ(lStage.Shows(Detail::eEverything), lReference.Shows(Detail::eEverything));
            EXPECT_TRUE(lStage.Holds());
        }
        LookThroughFilters(lStage);
        const FailAllocations lFail(0, true);
        lStage.mPoint->WipeConnectionList();
        lStage.mPoint->SubConnectRemoveAll();
        EXPECT_EQ(lStage.mPoint->GetDstCount(), 0);
        EXPECT_EQ(lFail.Failed(), 0u);
    }
}

// Connections are made and taken away while every third request is refused; then all is as in lists that were never
// refused anything.
TEST(FailingMemoryLongList, ComesOutInOrderOfConnectionThoughItsIndexComesAndGoes) {
    const LeakCheck lLeaks;
    Few lStage;
    std::vector<int> lModel{0, 1, 2, 3};
    std::mt19937 lEngine(11);
    for (int lStep = 0; lStep < 4000; ++lStep) {
        const int lPeer = static_cast<int>(lEngine() % 220u);
        const bool lGrowing = lStep % 1000 < 500;
        const FailAllocations lFail(lEngine() % 3, lEngine() % 2 == 0);
        const auto lAt = std::find(lModel.begin(), lModel.end(), lPeer);
        if (lAt == lModel.end() && lGrowing) {
            if (lStage.mPoint->ConnectSrc(lStage.Peer(lPeer), eLyrConnectionUser))
                lModel.push_back(lPeer);
        } else if (lAt != lModel.end() && (!lGrowing || lEngine() % 4 == 0)) {
            ASSERT_TRUE(lStage.mPoint->DisconnectSrc(lStage.Peer(lPeer)));
            lModel.erase(lAt);
        }
        ASSERT_EQ(lStage.mPoint->GetSrcCount(), static_cast<int>(lModel.size()));
        for (std::size_t i = 0; lStep % 50 == 0 && i < lModel.size(); ++i)
            ASSERT_EQ(Few::NumberOf(lStage.mPoint->GetSrc(static_cast<int>(i))), lModel[i]);
    }
}

}  // namespace
}  // namespace lyrsdk
