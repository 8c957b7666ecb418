#pragma once

// What is timed on a map from int to pointer. A side is a struct with a name, a map type and the operations.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/support/bench.h"
#include "benchmarks/support/heap.h"
#include "benchmarks/support/random.h"

namespace lyrsdk::bench {

// What the map holds for a key.
inline void* MapValue(int pKey) {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(pKey) * 8 + 8);
}

// As many maps of pSize entries as are filled or emptied in one go, so that a small map is timed as exactly as a large
// one.
template <typename Side>
class Maps {
public:
    explicit Maps(int pSize) : mSize(pSize), mCount(pSize < 4096 ? 4096 / pSize : 1) {}

    double Items() const { return static_cast<double>(mSize) * mCount; }

    void Make() {
        for (int i = 0; i < mCount; ++i)
            mMaps.push_back(std::make_unique<typename Side::Map>());
    }
    void Fill(const std::vector<int>& pKeys) {
        for (auto& lMap : mMaps) {
            for (int lKey : pKeys)
                Side::Insert(*lMap, lKey, MapValue(lKey));
        }
    }
    void Erase(const std::vector<int>& pKeys) {
        for (auto& lMap : mMaps) {
            for (int lKey : pKeys)
                Side::Erase(*lMap, lKey);
        }
    }
    void Clear() {
        for (auto& lMap : mMaps) {
            Side::Clear(*lMap);
            lMap.reset();
        }
    }
    void Drop() { mMaps.clear(); }
    const typename Side::Map& First() const { return *mMaps.front(); }

    // Whether each map holds just the keys from 0 to below pCount.
    bool Hold(int pCount) const {
        for (auto& lMap : mMaps) {
            if (Side::Size(*lMap) != pCount)
                return false;
            for (int lKey = 0; lKey < mSize; ++lKey) {
                if (Side::Find(*lMap, lKey) != (lKey < pCount ? MapValue(lKey) : nullptr))
                    return false;
            }
        }
        return true;
    }

private:
    int mSize;
    int mCount;
    std::vector<std::unique_ptr<typename Side::Map>> mMaps;
};

template <typename Side>
void TimeMapFill(benchmark::State& pState, const std::vector<int>& pKeys) {
    const int lSize = static_cast<int>(pKeys.size());
    Maps<Side> lMaps(lSize);
    lMaps.Make();
    lMaps.Fill(pKeys);
    Require(lMaps.Hold(lSize), std::string(Side::kName) + " inserts");
    lMaps.Drop();
    MeasureBetween(
        pState, lMaps.Items(), [&] { lMaps.Make(); }, [&] { lMaps.Fill(pKeys); }, [&] { lMaps.Drop(); });
}

template <typename Side>
void TimeMapFind(benchmark::State& pState, int pSize) {
    const std::vector<int> lKeys = ShuffledIds(pSize, 1);
    const std::vector<int> lQuestions = RandomIds(kQuestionCount, pSize, 2);
    Maps<Side> lMaps(pSize);
    lMaps.Make();
    lMaps.Fill(lKeys);
    Require(lMaps.Hold(pSize), std::string(Side::kName) + " finds");
    Measure(pState, static_cast<double>(lQuestions.size()), [&] {
        std::uintptr_t lSum = 0;
        for (int lKey : lQuestions)
            lSum += reinterpret_cast<std::uintptr_t>(Side::Find(lMaps.First(), lKey));
        benchmark::DoNotOptimize(lSum);
    });
}

template <typename Side>
void TimeMapErase(benchmark::State& pState, int pSize) {
    const std::vector<int> lKeys = ShuffledIds(pSize, 1);
    const std::vector<int> lGoing = ShuffledIds(pSize, 3);
    Maps<Side> lMaps(pSize);
    lMaps.Make();
    lMaps.Fill(lKeys);
    lMaps.Erase(lGoing);
    Require(lMaps.Hold(0), std::string(Side::kName) + " erases");
    lMaps.Drop();
    const auto lPrepare = [&] {
        lMaps.Make();
        lMaps.Fill(lKeys);
    };
    MeasureBetween(
        pState, lMaps.Items(), lPrepare, [&] { lMaps.Erase(lGoing); }, [&] { lMaps.Drop(); });
}

template <typename Side>
void TimeMapClear(benchmark::State& pState, int pSize) {
    const std::vector<int> lKeys = ShuffledIds(pSize, 1);
    Maps<Side> lMaps(pSize);
    const auto lPrepare = [&] {
        lMaps.Make();
        lMaps.Fill(lKeys);
    };
    lPrepare();
    Require(lMaps.Hold(pSize), std::string(Side::kName) + " is filled");
    lMaps.Drop();
    MeasureBetween(
        pState, lMaps.Items(), lPrepare, [&] { lMaps.Clear(); }, [&] { lMaps.Drop(); });
}

template <typename Side>
void CountMapBytes(benchmark::State& pState, int pSize) {
    const std::vector<int> lKeys = ShuffledIds(pSize, 1);
    Maps<Side> lMaps(pSize);
    lMaps.Make();
    const std::size_t lBefore = HeapBytes();
    lMaps.Fill(lKeys);
    const std::size_t lAfter = HeapBytes();
    Require(lMaps.Hold(pSize) && lAfter > lBefore, std::string(Side::kName) + " takes memory");
    ReportAmount(pState, static_cast<double>(lAfter - lBefore), lMaps.Items());
}

template <typename Side>
void AddMapSides() {
    for (int lSize : {32, 1000, 100000}) {
        const std::string lOf = "/" + std::to_string(lSize);
        std::vector<int> lAscending;
        for (int i = 0; i < lSize; ++i)
            lAscending.push_back(i);
        AddSide("map insert ascending" + lOf, Side::kName,
                [lAscending](benchmark::State& pState) { TimeMapFill<Side>(pState, lAscending); });
        AddSide("map insert random" + lOf, Side::kName,
                [lSize](benchmark::State& pState) { TimeMapFill<Side>(pState, ShuffledIds(lSize, 1)); });
        AddSide("map find random" + lOf, Side::kName,
                [lSize](benchmark::State& pState) { TimeMapFind<Side>(pState, lSize); });
        AddSide("map erase random" + lOf, Side::kName,
                [lSize](benchmark::State& pState) { TimeMapErase<Side>(pState, lSize); });
        AddSide("map clear" + lOf, Side::kName,
                [lSize](benchmark::State& pState) { TimeMapClear<Side>(pState, lSize); });
        AddSide("map bytes" + lOf, Side::kName,
                [lSize](benchmark::State& pState) { CountMapBytes<Side>(pState, lSize); });
    }
}

// The operations of a map with the interface of the standard ones.
template <typename MapType>
struct StandardMap {
    using Map = MapType;

    static void Insert(Map& pMap, int pKey, void* pValue) { pMap.emplace(pKey, pValue); }
    static void* Find(const Map& pMap, int pKey) {
        const auto lFound = pMap.find(pKey);
        return lFound == pMap.end() ? nullptr : lFound->second;
    }
    static void Erase(Map& pMap, int pKey) { pMap.erase(pKey); }
    static void Clear(Map& pMap) { pMap.clear(); }
    static int Size(const Map& pMap) { return static_cast<int>(pMap.size()); }
};

}  // namespace lyrsdk::bench
