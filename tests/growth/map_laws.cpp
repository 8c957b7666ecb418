#include "lyrfilesdk/components/kbaselib/klib/kmap.h"

#include "tests/growth/growth.h"

namespace lyrsdk {
namespace {

const std::vector<int> kSizes = {1000, 8000, 64000};

using EntryMap = KMap<int, void*, KLyrLessCompare<int>, KHungryAllocator>;
using PlainMap = KMap<int, void*, KLyrLessCompare<int>, KBaseAllocator>;
using NameMap = KMap<KPair<int, const char*>, int, KNameMapCompare, KBaseAllocator>;

// Even keys, so that there are misses between them.
template <typename Map>
void Fill(Map& pMap, int pCount, EOrder pOrder) {
    for (int lKey : Numbers(0, pCount, pOrder))
        pMap.Insert(2 * lKey, nullptr);
}

std::function<void(int)> Insert(EOrder pOrder) {
    return [pOrder](int pCount) {
        const std::vector<int> lKeys = Numbers(0, pCount, pOrder);
        EntryMap lMap;
        {
            const CountedWork lWork;
            for (int lKey : lKeys)
                lMap.Insert(lKey, nullptr);
        }
        Expect(lMap.GetSize() == pCount, "every key was inserted");
    };
}

std::function<void(int)> Find(EOrder pFilled, bool pHits) {
    return [pFilled, pHits](int pCount) {
        const std::vector<int> lKeys = Numbers(0, pCount, eRandom);
        EntryMap lMap;
        Fill(lMap, pCount, pFilled);
        int lFound = 0;
        {
            const CountedWork lWork;
            for (int lKey : lKeys)
                lFound += lMap.Find(pHits ? 2 * lKey : 2 * lKey + 1) ? 1 : 0;
        }
        Expect(lFound == (pHits ? pCount : 0), "exactly the keys that are there are found");
    };
}

std::function<void(int)> Erase(EOrder pOrder) {
    return [pOrder](int pCount) {
        const std::vector<int> lKeys = Numbers(0, pCount, pOrder);
        EntryMap lMap;
        Fill(lMap, pCount, eRandom);
        {
            const CountedWork lWork;
            for (int lKey : lKeys)
                lMap.Remove(2 * lKey);
        }
        Expect(lMap.GetSize() == 0, "every key was removed");
    };
}

void Walk(int pCount) {
    EntryMap lMap;
    Fill(lMap, pCount, eRandom);
    int lSeen = 0;
    {
        const CountedWork lWork;
        for (auto lIt = lMap.Begin(); lIt != lMap.End(); ++lIt)
            ++lSeen;
    }
    Expect(lSeen == pCount, "every record was visited");
}

template <typename Map>
void Clear(int pCount) {
    Map lMap;
    Fill(lMap, pCount, eRandom);
    {
        const CountedWork lWork;
        lMap.Clear();
    }
    Expect(lMap.GetSize() == 0, "the map is empty");
}

// Removing and inserting in turn, at one size.
void Churn(int pCount) {
    const std::vector<int> lKeys = Numbers(0, pCount, eRandom);
    EntryMap lMap;
    Fill(lMap, pCount, eRandom);
    {
        const CountedWork lWork;
        for (int lKey : lKeys) {
            lMap.Remove(2 * lKey);
            lMap.Insert(2 * lKey + 1, nullptr);
        }
    }
    Expect(lMap.GetSize() == pCount, "as many came as went");
}

void InsertNames(int pCount) {
    std::vector<KString> lNames;
    for (int lNumber : Numbers(0, pCount, eRandom))
        lNames.push_back(NameOf(lNumber, eOwnNames));
    NameMap lMap;
    {
        const CountedWork lWork;
        for (int i = 0; i < pCount; ++i)
            lMap.Insert(KPair<int, const char*>(i % 8, lNames[static_cast<std::size_t>(i)].Buffer()), i);
    }
    Expect(lMap.GetSize() == pCount, "every name was inserted");
}

}  // namespace

std::vector<GrowthLaw> MapLaws() {
    return {
        {"map.insert.ascending", "n", kSizes, Insert(eAscending)},
        {"map.insert.descending", "n log n", kSizes, Insert(eDescending)},
        {"map.insert.random", "n log n", kSizes, Insert(eRandom)},
        {"map.insert.names", "n log n", kSizes, InsertNames},
        {"map.find.hits", "n log n", kSizes, Find(eRandom, true)},
        {"map.find.misses", "n log n", kSizes, Find(eRandom, false)},
        {"map.find.filled-ascending", "n log n", kSizes, Find(eAscending, true)},
        {"map.find.filled-descending", "n log n", kSizes, Find(eDescending, true)},
        {"map.erase.ascending", "n log n", kSizes, Erase(eAscending)},
        {"map.erase.descending", "n log n", kSizes, Erase(eDescending)},
        {"map.erase.random", "n log n", kSizes, Erase(eRandom)},
        {"map.churn", "n log n", kSizes, Churn},
        {"map.walk", "n", kSizes, Walk},
        {"map.clear.in-one-block", "1", kSizes, Clear<EntryMap>},
        {"map.clear.record-by-record", "n", kSizes, Clear<PlainMap>},
    };
}

}  // namespace lyrsdk
