#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/connection_filters.h"
#include "tests/support/counted.h"
#include "tests/support/handle_pages.h"

// What outlives a property, a page, a type page, a peer or a filter, and what goes with it, in every order. Every test
// of this file ends with as much memory in use as it began with.

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;

class PropertyItemLifetimes : public HandleTest {};

// --- items that the application holds --------------------------------------------------------------------------------

// The description, value and connection point of a typed property, each with a reference of the test's own.
struct HeldItems {
    explicit HeldItems(const H& pProperty)
        : mInfo(pProperty.GetPage()->GetPropertyItem<KLyrPropertyInfo>(nullptr, pProperty.GetId())),
          mValue(pProperty.GetPage()->GetPropertyItem<KLyrPropertyValue>(nullptr, pProperty.GetId())),
          mConnect(pProperty.GetPage()->GetPropertyItem<KLyrPropertyConnect>(nullptr, pProperty.GetId())) {}

    Counted<KLyrPropertyInfo> mInfo;
    Counted<KLyrPropertyValue> mValue;
    Counted<KLyrPropertyConnect> mConnect;
};

TEST_F(PropertyItemLifetimes, ItemsThatTheApplicationHoldsOutlivePropertyTypeAndPeer) {
    std::vector<int> lOrder{0, 1, 2, 3};
    do {
        const LeakCheck lLeakCheck;
        H lType = H::Create("type", eDOUBLE1);
        H lPage = H::Create("root", eSTRING);
        H lTyped = lPage.Add("typed", lType);
        H lPeer = H::Create("peer", eSTRING);
        SetDouble(lTyped, 4.5);
        lTyped.ConnectSrc(lPeer);
        lTyped.ConnectDst(lPeer);
        const HeldItems lHeld(lTyped);
        H* lAll[] = {&lType, &lTyped, &lPage, &lPeer};
        for (int lNext : lOrder) {
            // A property whose page went first is not there to be destroyed.
            if (lAll[lNext] != &lTyped || lPage.Valid())
                lAll[lNext]->Destroy();
            EXPECT_EQ(lHeld.mInfo->GetTypeInfo(), lType.GetPage());
            EXPECT_EQ(lHeld.mInfo->GetType(), eDOUBLE1);
        }
        double lValue = 0;
        EXPECT_TRUE(lHeld.mValue->Get(&lValue, eDOUBLE1));
        EXPECT_EQ(lValue, 4.5);
        EXPECT_STREQ(lHeld.mInfo->GetNameText(), "typed");
        EXPECT_EQ(Counted<KLyrPropertyInfo>(lHeld.mInfo->Clone(nullptr))->GetType(), eDOUBLE1);
        EXPECT_EQ(lHeld.mConnect->GetPage(), nullptr);
        EXPECT_EQ(lHeld.mConnect->GetSrcCount(nullptr) + lHeld.mConnect->GetDstCount(nullptr), 0);
    } while (std::next_permutation(lOrder.begin(), lOrder.end()));
}

TEST_F(PropertyItemLifetimes, AConnectionToAPropertyThatIsGoneLeadsToNoPage) {
    OwnedRoot lPeer(H::Create("peer", eSTRING));
    OwnedRoot lOther(H::Create("other", eSTRING));
    H lPage = H::Create("root", eSTRING);
    lPage.ConnectSrc(*lOther);
    lPeer->ConnectSrc(*lOther);
    const HeldItems lGone(lPage);
    const HeldItems lThere(*lPeer);
    lPage.Destroy();
    EXPECT_TRUE(lThere.mConnect->ConnectSrc(lGone.mConnect.Get(), eLyrConnectionData));
    ASSERT_EQ(lPeer->GetSrcCount(nullptr), 2);
    EXPECT_EQ(lPeer->GetSrc(nullptr, 0), *lOther);
    EXPECT_EQ(lPeer->GetSrc(nullptr, 1), H(nullptr, 0));
}

TEST_F(PropertyItemLifetimes, APropertyThatIsGoneIsFoundByNoBracketAndNoType) {
    H lType = H::Create("type", eDOUBLE1);
    OwnedRoot lPage(H::Create("root", eSTRING));
    OwnedRoot lInstance(H::Create(*lPage));
    H lTyped = lPage->Add("a name that is not short", lType);
    const H lStale = lTyped;
    SetDouble(On(*lInstance, lTyped), 3);
    lPage->BeginCreateOrFindProperty();
    lInstance->BeginCreateOrFindProperty();
    lTyped.Destroy();
    lType.Destroy();
    for (OwnedRoot* lRoot : {&lPage, &lInstance}) {
        H lSeen = On(**lRoot, lStale);
        EXPECT_STREQ(lSeen.GetName(), "") << "an own value has no description";
        EXPECT_EQ(lSeen.GetType(), eUNIDENTIFIED);
        EXPECT_EQ(lSeen.GetTypeInfo(), H(nullptr, 0));
        EXPECT_FALSE(lSeen.SetLabel("label"));
    }
    EXPECT_EQ(DoubleOf(On(*lInstance, lStale)), 3) << "its own value stays";
    EXPECT_FALSE(lPage->Find("a name that is not short", true).Valid());
    const H lNew = lPage->Add("a name that is not short", H());
    EXPECT_NE(lNew.GetId(), lStale.GetId());
    lPage->EndCreateOrFindProperty();
    lInstance->EndCreateOrFindProperty();
    EXPECT_EQ(lPage->Find("a name that is not short", true), lNew);
}

// --- many connections ------------------------------------------------------------------------------------------------

// Enough connections for an index beside each list: a hub with a hundred sources and as many destinations.
class ConnectedHub {
public:
    ConnectedHub() {
        for (int i = 0; i < kPeers; ++i) {
            mPeers.push_back(H::Create("peer", eDOUBLE1));
            const kLyrConnectionType lType = i % 2 == 0 ? eLyrConnectionData : eLyrConnectionSystem;
            EXPECT_TRUE(mHub.ConnectSrc(mPeers.back(), lType));
            EXPECT_TRUE(mHub.ConnectDst(mPeers.back(), lType));
        }
    }
    ~ConnectedHub() {
        DestroyHub();
        for (H& lPeer : mPeers)
            lPeer.Destroy();
    }
    ConnectedHub(const ConnectedHub&) = delete;
    ConnectedHub& operator=(const ConnectedHub&) = delete;

    H& Hub() { return mHub; }
    void DestroyHub() { mHub.Destroy(); }
    // The peers at even places, which are those connected by data.
    void DestroyEvenPeers() {
        for (std::size_t i = 0; i < mPeers.size(); i += 2)
            mPeers[i].Destroy();
    }
    int CountAtPeers(KLyrConnectionPointFilter* pFilter) const {
        int lCount = 0;
        for (const H& lPeer : mPeers)
            lCount += lPeer.GetSrcCount(pFilter) + lPeer.GetDstCount(pFilter);
        return lCount;
    }

    static constexpr int kPeers = 100;

private:
    H mHub = H::Create("hub", eDOUBLE1);
    std::vector<H> mPeers;
};

TEST_F(PropertyItemLifetimes, FiltersPeersAndHubGoInAnyOrder) {
    std::vector<int> lOrder{0, 1, 2, 3};
    do {
        const LeakCheck lLeakCheck;
        ConnectedHub lConnected;
        auto lData = std::make_unique<TypeFilter>(eLyrConnectionData);
        auto lSystem = std::make_unique<TypeFilter>(eLyrConnectionSystem);
        EXPECT_EQ(lConnected.Hub().GetSrcCount(lData.get()), ConnectedHub::kPeers / 2);
        EXPECT_EQ(lConnected.Hub().GetDstCount(lSystem.get()), ConnectedHub::kPeers / 2);
        EXPECT_EQ(lConnected.CountAtPeers(lData.get()), ConnectedHub::kPeers);
        int lLeft = ConnectedHub::kPeers;
        for (int lNext : lOrder) {
            if (lNext == 0)
                lData.reset();
            else if (lNext == 1)
                lSystem.reset();
            else if (lNext == 2)
                lConnected.DestroyEvenPeers();
            else
                lConnected.DestroyHub();
            if (lNext == 2)
                lLeft /= 2;
            const bool lThere = lConnected.Hub().Valid();
            EXPECT_EQ(lConnected.Hub().GetSrcCount(nullptr), lThere ? lLeft : 0);
            EXPECT_EQ(lConnected.CountAtPeers(nullptr), lThere ? 2 * lLeft : 0);
            if (lSystem) {
                EXPECT_EQ(lConnected.CountAtPeers(lSystem.get()), lThere ? ConnectedHub::kPeers : 0);
            }
            if (lData) {
                EXPECT_EQ(lConnected.Hub().GetDstCount(lData.get()), lThere ? lLeft - ConnectedHub::kPeers / 2 : 0);
            }
        }
    } while (std::next_permutation(lOrder.begin(), lOrder.end()));
}

TEST_F(PropertyItemLifetimes, AFilterGoesAfterItsSubPointsWereDropped) {
    ConnectedHub lConnected;
    {
        TypeFilter lFilter(eLyrConnectionData);
        TypeFilter lCopy(lFilter);
        EXPECT_EQ(lConnected.Hub().GetSrcCount(&lFilter), lConnected.Hub().GetSrcCount(&lCopy));
        lConnected.Hub().ClearConnectCache();
        lFilter = lCopy;
        EXPECT_EQ(lConnected.Hub().GetDstCount(&lFilter), ConnectedHub::kPeers / 2);
        lConnected.Hub().WipeAllConnections();
        EXPECT_EQ(lConnected.Hub().GetDstCount(&lFilter), 0);
    }
    EXPECT_EQ(lConnected.CountAtPeers(nullptr), 0);
}

}  // namespace
}  // namespace lyrsdk
