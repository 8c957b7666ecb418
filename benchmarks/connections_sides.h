#pragma once

// What is timed on connections. A side makes objects and connects them; it is a class with
//
//   kName
//   Side(count, pairs)  a hub and so many destinations; with pairs also as many sources
//   Connect(i)          the hub to destination i
//   Disconnect(i)
//   ConnectPair(i)      source i to destination i
//   DisconnectPair(i)
//   Connections()       how many there are
//   DestroyHub()
//   Destroy(i)          destination i

#include <memory>
#include <string>
#include <vector>

#include "benchmarks/support/bench.h"
#include "benchmarks/support/heap.h"
#include "benchmarks/support/random.h"

namespace lyrsdk::bench {

inline std::vector<int> ConnectionOrder(const std::string& pName, int pCount) {
    if (pName == "random")
        return ShuffledIds(pCount, 12);
    std::vector<int> lOrder;
    for (int i = 0; i < pCount; ++i)
        lOrder.push_back(pName == "backward" ? pCount - 1 - i : i);
    return lOrder;
}

// One hub and pCount peers, all connected when pConnected.
template <typename Side>
std::unique_ptr<Side> MakeHub(int pCount, bool pConnected) {
    auto lSide = std::make_unique<Side>(pCount, false);
    for (int i = 0; pConnected && i < pCount; ++i)
        lSide->Connect(i);
    Require(lSide->Connections() == (pConnected ? pCount : 0), std::string(Side::kName) + " connects a hub");
    return lSide;
}

// Times pWork(side) on a hub made anew each time. pLeft is how many connections there are behind it.
template <typename Side, typename Work>
void TimeHub(benchmark::State& pState, int pCount, bool pConnected, int pLeft, Work pWork) {
    std::unique_ptr<Side> lSide;
    const auto lClear = [&] {
        Require(lSide->Connections() == pLeft, std::string(Side::kName) + " leaves the connections that it should");
        lSide.reset();
    };
    MeasureBetween(
        pState, pCount, [&] { lSide = MakeHub<Side>(pCount, pConnected); }, [&] { pWork(*lSide); }, lClear);
}

template <typename Side>
void AddHubSides(int pCount) {
    const std::string lOf = "/" + std::to_string(pCount);
    AddSide("connect hub" + lOf, Side::kName, [pCount](auto& pState) {
        TimeHub<Side>(pState, pCount, false, pCount, [pCount](Side& pSide) {
            for (int i = 0; i < pCount; ++i)
                pSide.Connect(i);
        });
    });
    for (const char* lName : {"forward", "backward", "random"}) {
        AddSide(std::string("disconnect hub ") + lName + lOf, Side::kName, [pCount, lName](auto& pState) {
            const std::vector<int> lOrder = ConnectionOrder(lName, pCount);
            TimeHub<Side>(pState, pCount, true, 0, [&lOrder](Side& pSide) {
                for (int lIndex : lOrder)
                    pSide.Disconnect(lIndex);
            });
        });
    }
    AddSide("destroy hub" + lOf, Side::kName, [pCount](auto& pState) {
        TimeHub<Side>(pState, pCount, true, 0, [](Side& pSide) { pSide.DestroyHub(); });
    });
    AddSide("destroy peers of hub" + lOf, Side::kName, [pCount](auto& pState) {
        const std::vector<int> lOrder = ConnectionOrder("random", pCount);
        TimeHub<Side>(pState, pCount, true, 0, [&lOrder](Side& pSide) {
            for (int lIndex : lOrder)
                pSide.Destroy(lIndex);
        });
    });
}

template <typename Side>
void AddPairSides(int pCount) {
    const std::string lOf = "/" + std::to_string(pCount);
    AddSide("connect pairs" + lOf, Side::kName, [pCount](auto& pState) {
        std::unique_ptr<Side> lSide;
        const auto lWork = [&] {
            for (int i = 0; i < pCount; ++i)
                lSide->ConnectPair(i);
        };
        const auto lClear = [&] {
            Require(lSide->Connections() == pCount, std::string(Side::kName) + " connects pairs");
            lSide.reset();
        };
        MeasureBetween(
            pState, pCount, [&] { lSide = std::make_unique<Side>(pCount, true); }, lWork, lClear);
    });
    AddSide("disconnect pairs" + lOf, Side::kName, [pCount](auto& pState) {
        const std::vector<int> lOrder = ConnectionOrder("random", pCount);
        std::unique_ptr<Side> lSide;
        const auto lPrepare = [&] {
            lSide = std::make_unique<Side>(pCount, true);
            for (int i = 0; i < pCount; ++i)
                lSide->ConnectPair(i);
            Require(lSide->Connections() == pCount, std::string(Side::kName) + " connects pairs");
        };
        const auto lWork = [&] {
            for (int lIndex : lOrder)
                lSide->DisconnectPair(lIndex);
        };
        const auto lClear = [&] {
            Require(lSide->Connections() == 0, std::string(Side::kName) + " disconnects pairs");
            lSide.reset();
        };
        MeasureBetween(pState, pCount, lPrepare, lWork, lClear);
    });
}

// What the hub and its peers take more for being connected.
template <typename Side>
void CountConnectionBytes(benchmark::State& pState, bool pPairs) {
    constexpr int kCount = 10000;
    Side lSide(kCount, pPairs);
    const std::size_t lBefore = HeapBytes();
    for (int i = 0; i < kCount; ++i)
        pPairs ? lSide.ConnectPair(i) : lSide.Connect(i);
    Require(lSide.Connections() == kCount, std::string(Side::kName) + " connects");
    ReportAmount(pState, static_cast<double>(HeapBytes() - lBefore), kCount);
}

template <typename Side>
void AddConnectionSides() {
    for (int lCount : {1000, 100000}) {
        AddHubSides<Side>(lCount);
        AddPairSides<Side>(lCount);
    }
    AddSide("connection bytes, hub", Side::kName, [](auto& pState) { CountConnectionBytes<Side>(pState, false); });
    AddSide("connection bytes, pairs", Side::kName, [](auto& pState) { CountConnectionBytes<Side>(pState, true); });
}

}  // namespace lyrsdk::bench
