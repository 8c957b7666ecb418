#include "tests/growth/growth.h"
#include "tests/support/connection_filters.h"

namespace lyrsdk {
namespace {

const std::vector<int> kSizes = {500, 4000, 32000};
constexpr int kHub = 1;
constexpr int kQuestions = 1000;

// A hub on one page and its peers, which are the properties of another one from id 1 on.
struct Star {
    explicit Star(int pCount) : mHub(MakePage(Wide(2))), mPeers(MakePage(Wide(pCount + 1))), mCount(pCount) {}

    // The peers become sources of the hub, or its destinations.
    void Connect(bool pSources) {
        for (int lId = 1; lId <= mCount; ++lId)
            Connect(pSources, lId);
    }
    void Connect(bool pSource, int pPeer) {
        if (pSource)
            mHub->ConnectSrc(kHub, mPeers.get(), pPeer, eLyrConnectionDefault);
        else
            mHub->ConnectDst(kHub, mPeers.get(), pPeer, eLyrConnectionDefault);
    }
    bool Disconnect(bool pSource, int pPeer) {
        return pSource ? mHub->DisconnectSrc(kHub, mPeers.get(), pPeer)
                       : mHub->DisconnectDst(kHub, mPeers.get(), pPeer);
    }
    int GetCount() const { return mHub->GetSrcCount(kHub, nullptr) + mHub->GetDstCount(kHub, nullptr); }

    PagePtr mHub;
    PagePtr mPeers;
    int mCount;
};

std::function<void(int)> Connect(bool pSources) {
    return [pSources](int pCount) {
        Star lStar(pCount);
        {
            const CountedWork lWork;
            lStar.Connect(pSources);
        }
        Expect(lStar.GetCount() == pCount, "all are connected");
    };
}

// Sources and destinations in turn, with a filter that follows.
void ConnectBothWays(int pCount) {
    Star lStar(pCount);
    TypeFilter lFilter(eLyrConnectionDefault);
    lStar.mHub->GetSrcCount(kHub, &lFilter);
    {
        const CountedWork lWork;
        for (int lId = 1; lId <= pCount; ++lId) {
            lStar.Connect(lId % 2 == 0, lId);
            lStar.mHub->GetSrcCount(kHub, &lFilter);
        }
    }
    Expect(lStar.GetCount() == pCount, "all are connected");
}

std::function<void(int)> Disconnect(bool pSources, EOrder pOrder) {
    return [pSources, pOrder](int pCount) {
        Star lStar(pCount);
        lStar.Connect(pSources);
        const std::vector<int> lIds = Numbers(1, pCount, pOrder);
        {
            const CountedWork lWork;
            for (int lId : lIds)
                lStar.Disconnect(pSources, lId);
        }
        Expect(lStar.GetCount() == 0, "none is connected");
    };
}

// One goes, one comes, and the first one is asked for.
void Churn(int pCount) {
    Star lStar(2 * pCount);
    for (int lId = 1; lId <= pCount; ++lId)
        lStar.Connect(true, lId);
    int lSeen = 0;
    {
        const CountedWork lWork;
        for (int lId = 1; lId <= pCount; ++lId) {
            int lFirst = 0;
            lStar.Disconnect(true, lId);
            lStar.Connect(true, lId + pCount);
            lStar.mHub->GetSrc(kHub, 0, nullptr, nullptr, &lFirst);
            lSeen += lFirst == lId + 1 ? 1 : 0;
        }
    }
    Expect(lSeen == pCount && lStar.GetCount() == pCount, "the order of connection holds");
}

enum EEnd { eHubGoes, eWiped, ePageGoes };

std::function<void(int)> EndHub(bool pSources, EEnd pEnd) {
    return [pSources, pEnd](int pCount) {
        Star lStar(pCount);
        lStar.Connect(pSources);
        {
            const CountedWork lWork;
            if (pEnd == eHubGoes)
                lStar.mHub->RemoveOwnEntry(kHub);
            else if (pEnd == eWiped)
                lStar.mHub->WipeAllConnections(kHub);
            else
                lStar.mHub.reset();
        }
        Expect(lStar.mPeers->GetDstCount(pCount, nullptr) + lStar.mPeers->GetSrcCount(pCount, nullptr) == 0,
               "no peer is connected");
    };
}

std::function<void(int)> EndPeers(bool pSources, EOrder pOrder) {
    return [pSources, pOrder](int pCount) {
        Star lStar(pCount);
        lStar.Connect(pSources);
        const std::vector<int> lIds = Numbers(1, pCount, pOrder);
        {
            const CountedWork lWork;
            for (int lId : lIds)
                lStar.mPeers->RemoveOwnEntry(lId);
        }
        Expect(lStar.GetCount() == 0, "none is connected");
    };
}

std::function<void(int)> Count(bool pFiltered) {
    return [pFiltered](int pCount) {
        Star lStar(pCount);
        lStar.Connect(true);
        TypeFilter lFilter(eLyrConnectionDefault);
        KLyrConnectionPointFilter* lUsed = pFiltered ? &lFilter : nullptr;
        bool lHolds = lStar.mHub->GetSrcCount(kHub, lUsed) == pCount;
        {
            const CountedWork lWork;
            for (int i = 0; i < kQuestions; ++i)
                lHolds &= lStar.mHub->GetSrcCount(kHub, lUsed) == pCount && lStar.mHub->GetDstCount(kHub, lUsed) == 0;
        }
        Expect(lHolds, "all are counted");
    };
}

// With every third connection gone, so that positions are not places.
std::function<void(int)> AskByPosition(bool pFiltered) {
    return [pFiltered](int pCount) {
        Star lStar(pCount);
        lStar.Connect(true);
        TypeFilter lFilter(eLyrConnectionDefault);
        KLyrConnectionPointFilter* lUsed = pFiltered ? &lFilter : nullptr;
        lStar.mHub->GetSrcCount(kHub, lUsed);
        for (int lId = 1; lId <= pCount; lId += 3)
            lStar.Disconnect(true, lId);
        const int lLeft = lStar.GetCount();
        int lFound = 0;
        {
            const CountedWork lWork;
            for (int i = 0; i < kQuestions; ++i)
                lFound += lStar.mHub->GetSrc(kHub, i % lLeft, lUsed, nullptr, nullptr) ? 1 : 0;
        }
        Expect(lFound == kQuestions, "every position has its peer");
    };
}

std::function<void(int)> Test(bool pHits) {
    return [pHits](int pCount) {
        Star lStar(2 * pCount);
        for (int lId = 1; lId <= pCount; ++lId)
            lStar.Connect(true, lId);
        std::minstd_rand lDice = Dice();
        int lConnected = 0;
        {
            const CountedWork lWork;
            for (int i = 0; i < kQuestions; ++i) {
                const int lPeer = 1 + static_cast<int>(lDice() % static_cast<unsigned>(pCount));
                lConnected +=
                    lStar.mHub->IsConnectedSrc(kHub, lStar.mPeers.get(), pHits ? lPeer : lPeer + pCount) ? 1 : 0;
            }
        }
        Expect(lConnected == (pHits ? kQuestions : 0), "exactly those that are connected say so");
    };
}

// Each property is the source of the next one.
void ConnectInARow(int pCount) {
    PagePtr lPage = MakePage(Wide(pCount + 1));
    {
        const CountedWork lWork;
        for (int lId = 2; lId <= pCount; ++lId)
            lPage->ConnectSrc(lId, lPage.get(), lId - 1, eLyrConnectionDefault);
    }
    Expect(lPage->GetSrcCount(pCount, nullptr) == 1, "the last one has its source");
}

}  // namespace

std::vector<GrowthLaw> ConnectionLaws() {
    return {
        {"connect.many-to-one", "n log n", kSizes, Connect(true)},
        {"connect.one-to-many", "n log n", kSizes, Connect(false)},
        {"connect.both-ways.filtered", "n log n", kSizes, ConnectBothWays},
        {"connect.in-a-row", "n log n", kSizes, ConnectInARow},
        {"disconnect.sources.in-order", "n log n", kSizes, Disconnect(true, eAscending)},
        {"disconnect.sources.reverse", "n log n", kSizes, Disconnect(true, eDescending)},
        {"disconnect.sources.random", "n log n", kSizes, Disconnect(true, eRandom)},
        {"disconnect.destinations.in-order", "n log n", kSizes, Disconnect(false, eAscending)},
        {"disconnect.destinations.reverse", "n log n", kSizes, Disconnect(false, eDescending)},
        {"disconnect.destinations.random", "n log n", kSizes, Disconnect(false, eRandom)},
        {"connections.churn", "n log n", kSizes, Churn},
        {"connections.hub-goes.sources", "n log n", kSizes, EndHub(true, eHubGoes)},
        {"connections.hub-goes.destinations", "n log n", kSizes, EndHub(false, eHubGoes)},
        {"connections.hub-wiped", "n log n", kSizes, EndHub(true, eWiped)},
        {"connections.hub-page-goes", "n log n", kSizes, EndHub(true, ePageGoes)},
        {"connections.peers-go.in-order", "n log n", kSizes, EndPeers(true, eAscending)},
        {"connections.peers-go.reverse", "n log n", kSizes, EndPeers(false, eDescending)},
        {"connections.peers-go.random", "n log n", kSizes, EndPeers(true, eRandom)},
        {"connections.count", "1", kSizes, Count(false)},
        {"connections.count.filtered", "1", kSizes, Count(true)},
        {"connections.by-position", "log n", kSizes, AskByPosition(false)},
        {"connections.by-position.filtered", "log n", kSizes, AskByPosition(true)},
        {"connections.is-connected.hits", "log n", kSizes, Test(true)},
        {"connections.is-connected.misses", "log n", kSizes, Test(false)},
    };
}

}  // namespace lyrsdk
