#pragma once

// Connection points beside a plain model of them.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"
#include "tests/support/connection_filters.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {

// A number of points, each with two vectors that say what its connections must be. Every operation runs on both; its
// answer is checked against the model's.
class ConnectionModel {
public:
    explicit ConnectionModel(int pPoints) : mSides(static_cast<std::size_t>(pPoints)) {
        for (Sides& lSides : mSides)
            lSides.mPoint = std::make_unique<KLyrConnectionPoint>(&lSides);
    }
    ~ConnectionModel() {
        // Half of the filters go before the points, half of them after.
        mFilters.resize(mFilters.size() / 2);
        mSides.clear();
    }

    // From now on what a point shows through a filter for these type bits is compared as well.
    void AddFilter(int pBits) { mFilters.push_back({pBits, std::make_unique<TypeFilter>(pBits)}); }

    KLyrConnectionPoint& Point(int pPoint) { return *At(pPoint).mPoint; }

    bool Connect(int pDst, int pSrc, kLyrConnectionType pType) {
        const bool lDone = Point(pDst).ConnectSrc(&Point(pSrc), pType);
        EXPECT_EQ(lDone, pDst != pSrc && !Has(pDst, pSrc)) << "connecting " << pSrc << " to " << pDst;
        if (lDone)
            Note(pDst, pSrc, pType);
        return lDone;
    }

    // The same with the pFirst-th request for memory refused; it may then fail, but only then. Returns the number of
    // refusals.
    std::size_t TryConnect(int pDst, int pSrc, kLyrConnectionType pType, std::size_t pFirst, bool pForever) {
        bool lDone = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pFirst, pForever);
            lDone = Point(pDst).ConnectSrc(&Point(pSrc), pType);
            lFailed = lFail.Failed();
        }
        const bool lAllowed = pDst != pSrc && !Has(pDst, pSrc);
        EXPECT_TRUE(lDone == lAllowed || (lAllowed && lFailed > 0)) << "connecting " << pSrc << " to " << pDst;
        if (lDone)
            Note(pDst, pSrc, pType);
        return lFailed;
    }

    bool Disconnect(int pDst, int pSrc) {
        const bool lHad = Has(pDst, pSrc);
        EXPECT_EQ(Point(pDst).IsConnectedSrc(&Point(pSrc)), lHad) << "testing " << pSrc << " to " << pDst;
        const bool lDone = Point(pDst).DisconnectSrc(&Point(pSrc));
        EXPECT_EQ(lDone, lHad) << "disconnecting " << pSrc << " from " << pDst;
        if (lHad)
            Forget(pDst, pSrc);
        return lDone;
    }

    void Wipe(int pPoint) {
        Point(pPoint).WipeConnectionList();
        ForgetAll(pPoint);
    }

    // Destroys the point and makes a fresh one in its place.
    void Replace(int pPoint) {
        At(pPoint).mPoint.reset();
        ForgetAll(pPoint);
        At(pPoint).mPoint = std::make_unique<KLyrConnectionPoint>(&At(pPoint));
    }

    void DropCache(int pPoint) { Point(pPoint).SubConnectRemoveAll(); }

    testing::AssertionResult Agrees(int pPoint) {
        Sides& lSides = At(pPoint);
        if (lSides.mPoint->GetData() != &lSides)
            return testing::AssertionFailure() << "data of point " << pPoint;
        testing::AssertionResult lResult = Compare(*lSides.mPoint, nullptr, lSides, -1);
        for (std::size_t i = 0; lResult && i < mFilters.size(); ++i)
            lResult = Compare(*lSides.mPoint, mFilters[i].mFilter.get(), lSides, mFilters[i].mBits);
        return lResult ? lResult : lResult << " of point " << pPoint;
    }

    testing::AssertionResult AllAgree() {
        testing::AssertionResult lResult = testing::AssertionSuccess();
        for (int i = 0; lResult && i < static_cast<int>(mSides.size()); ++i)
            lResult = Agrees(i);
        return lResult;
    }

private:
    struct Connection {
        int mPeer;
        kLyrConnectionType mType;
    };
    using Connections = std::vector<Connection>;

    struct Sides {
        std::unique_ptr<KLyrConnectionPoint> mPoint;
        Connections mSources;
        Connections mDestinations;
    };

    struct Filter {
        int mBits;
        std::unique_ptr<TypeFilter> mFilter;
    };

    Sides& At(int pPoint) { return mSides[static_cast<std::size_t>(pPoint)]; }

    static Connections::iterator FindPeer(Connections& pConnections, int pPeer) {
        return std::find_if(pConnections.begin(), pConnections.end(),
                            [pPeer](const Connection& pConnection) { return pConnection.mPeer == pPeer; });
    }

    // The shorter of the two vectors is searched.
    bool Has(int pDst, int pSrc) {
        Connections& lSources = At(pDst).mSources;
        Connections& lDestinations = At(pSrc).mDestinations;
        return lSources.size() < lDestinations.size() ? FindPeer(lSources, pSrc) != lSources.end()
                                                      : FindPeer(lDestinations, pDst) != lDestinations.end();
    }

    void Note(int pDst, int pSrc, kLyrConnectionType pType) {
        At(pDst).mSources.push_back({pSrc, pType});
        At(pSrc).mDestinations.push_back({pDst, pType});
    }

    void Forget(int pDst, int pSrc) {
        At(pDst).mSources.erase(FindPeer(At(pDst).mSources, pSrc));
        At(pSrc).mDestinations.erase(FindPeer(At(pSrc).mDestinations, pDst));
    }

    void ForgetAll(int pPoint) {
        for (const Connection& lConnection : Connections(At(pPoint).mSources))
            Forget(pPoint, lConnection.mPeer);
        for (const Connection& lConnection : Connections(At(pPoint).mDestinations))
            Forget(lConnection.mPeer, pPoint);
    }

    // Without memory for its sub-point a filter shows nothing, so filters are compared while there is some.
    testing::AssertionResult Compare(KLyrConnectionPoint& pPoint, TypeFilter* pFilter, const Sides& pSides, int pBits) {
        KLyrConnectionPoint* lShown = pPoint.SubConnectGetOrCreate(pFilter);
        if (!lShown)
            return testing::AssertionFailure() << "no sub-point for bits " << pBits;
        if (pFilter &&
            (pPoint.GetSrcCount(pFilter) != lShown->GetSrcCount() || pPoint.GetDst(0, pFilter) != lShown->GetDst(0)))
            return testing::AssertionFailure() << "two answers for bits " << pBits;

        const auto lSelected = [&](const Connections& pConnections) {
            Connections lResult;
            for (const Connection& lConnection : pConnections)
                if (!pFilter || (lConnection.mType & pBits) != 0)
                    lResult.push_back(lConnection);
            return lResult;
        };
        const Connections lSources = lSelected(pSides.mSources);
        const Connections lDestinations = lSelected(pSides.mDestinations);
        if (lShown->GetSrcCount() != static_cast<int>(lSources.size()) ||
            lShown->GetDstCount() != static_cast<int>(lDestinations.size()))
            return testing::AssertionFailure()
                   << lShown->GetSrcCount() << " sources and " << lShown->GetDstCount() << " destinations instead of "
                   << lSources.size() << " and " << lDestinations.size() << " for bits " << pBits;

        for (int i = -1; i <= lShown->GetSrcCount(); ++i)
            if (!Same(lShown->GetSrc(i), lShown->GetSrcType(i), lSources, i))
                return testing::AssertionFailure() << "source " << i << " for bits " << pBits;
        for (int i = -1; i <= lShown->GetDstCount(); ++i)
            if (!Same(lShown->GetDst(i), lShown->GetDstType(i), lDestinations, i))
                return testing::AssertionFailure() << "destination " << i << " for bits " << pBits;
        return testing::AssertionSuccess();
    }

    bool Same(const KLyrConnectionPoint* pPeer, kLyrConnectionType pType, const Connections& pExpected, int pIndex) {
        if (pIndex < 0 || pIndex >= static_cast<int>(pExpected.size()))
            return !pPeer && pType == eLyrConnectionNone;
        const Connection& lExpected = pExpected[static_cast<std::size_t>(pIndex)];
        return pPeer == At(lExpected.mPeer).mPoint.get() && pType == lExpected.mType;
    }

    std::vector<Filter> mFilters;
    std::vector<Sides> mSides;
};

}  // namespace lyrsdk
