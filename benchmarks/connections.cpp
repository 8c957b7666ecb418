// Connections of one property to many, and of many to as many others.

#include "benchmarks/connections_sides.h"

#include "lyrfilesdk/lyrsdk.h"

namespace lyrsdk::bench {

namespace {

// Each object is a page, so that one can be destroyed by itself.
class OurObjects {
public:
    static constexpr char kName[] = "ours";

    OurObjects(int pCount, bool pPairs)
        : mHub(KLyrPropertyHandle::Create("hub", eDOUBLE1)),
          mSources(MakeObjects(pPairs ? pCount : 0)),
          mPeers(MakeObjects(pCount)) {}
    ~OurObjects() {
        mHub.Destroy();
        for (KLyrPropertyHandle& lSource : mSources)
            lSource.Destroy();
        for (KLyrPropertyHandle& lPeer : mPeers)
            lPeer.Destroy();
    }
    OurObjects(const OurObjects&) = delete;
    OurObjects& operator=(const OurObjects&) = delete;

    void Connect(int pIndex) { mHub.ConnectDst(Peer(pIndex)); }
    void Disconnect(int pIndex) { mHub.DisconnectDst(Peer(pIndex)); }
    void ConnectPair(int pIndex) { Peer(pIndex).ConnectSrc(mSources[static_cast<std::size_t>(pIndex)]); }
    void DisconnectPair(int pIndex) { Peer(pIndex).DisconnectSrc(mSources[static_cast<std::size_t>(pIndex)]); }
    int Connections() const {
        int lCount = 0;
        for (const KLyrPropertyHandle& lPeer : mPeers)
            lCount += lPeer.GetSrcCount(nullptr);
        return lCount;
    }
    void DestroyHub() { mHub.Destroy(); }
    void Destroy(int pIndex) { Peer(pIndex).Destroy(); }
    const KLyrPropertyHandle& Hub() const { return mHub; }

private:
    static std::vector<KLyrPropertyHandle> MakeObjects(int pCount) {
        std::vector<KLyrPropertyHandle> lObjects;
        for (int i = 0; i < pCount; ++i)
            lObjects.push_back(KLyrPropertyHandle::Create("object", eDOUBLE1));
        return lObjects;
    }
    KLyrPropertyHandle& Peer(int pIndex) { return mPeers[static_cast<std::size_t>(pIndex)]; }

    KLyrPropertyHandle mHub;
    std::vector<KLyrPropertyHandle> mSources;
    std::vector<KLyrPropertyHandle> mPeers;
};

class UserFilter : public KLyrConnectionPointFilter {
public:
    bool Selects(const KLyrConnectionPoint*, kLyrConnectionType pType) const override {
        return (pType & eLyrConnectionUser) != 0;
    }
};

// The question of how many there are, asked again.
void TimeCount(benchmark::State& pState, int pCount, bool pFiltered) {
    UserFilter lFilter;
    const auto lObjects = MakeHub<OurObjects>(pCount, true);
    const auto lCount = [&] { return lObjects->Hub().GetDstCount(pFiltered ? &lFilter : nullptr); };
    Require(lCount() == pCount, "ours counts connections");
    Measure(pState, 1, [&] { benchmark::DoNotOptimize(lCount()); });
}

void CountRequestedBytes(benchmark::State& pState, bool pPairs) {
    constexpr int kCount = 10000;
    OurObjects lObjects(kCount, pPairs);
    {
        const LibraryMemory lMemory;
        for (int i = 0; i < kCount; ++i)
            pPairs ? lObjects.ConnectPair(i) : lObjects.Connect(i);
        ReportAmount(pState, static_cast<double>(lMemory.RequestedBytes()), kCount);
    }
    Require(lObjects.Connections() == kCount, "ours connects");
}

const Registration sgRegistration([] {
    AddConnectionSides<OurObjects>();
    for (int lCount : {1000, 100000}) {
        const std::string lOf = "/" + std::to_string(lCount);
        AddSide("repeated count" + lOf, "ours", [lCount](auto& pState) { TimeCount(pState, lCount, false); });
        AddSide("repeated count, filtered" + lOf, "ours", [lCount](auto& pState) { TimeCount(pState, lCount, true); });
    }
    AddSide("connection bytes, hub, requested", "ours", [](auto& pState) { CountRequestedBytes(pState, false); });
    AddSide("connection bytes, pairs, requested", "ours", [](auto& pState) { CountRequestedBytes(pState, true); });
});

}  // namespace

}  // namespace lyrsdk::bench
