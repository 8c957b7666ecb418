// The ordered map from int to pointer, as a page uses it.

#include <map>
#include <unordered_map>

#include "benchmarks/map_sides.h"
#include "lyrfilesdk/lyrsdk.h"

namespace lyrsdk::bench {

namespace {

struct OurMap {
    using Map = KMap<int, void*, KLyrLessCompare<int>, KHungryAllocator>;
    static constexpr char kName[] = "ours";

    static void Insert(Map& pMap, int pKey, void* pValue) { pMap.Insert(pKey, pValue); }
    static void* Find(const Map& pMap, int pKey) {
        const auto* lRecord = pMap.Find(pKey);
        return lRecord ? lRecord->GetValue() : nullptr;
    }
    static void Erase(Map& pMap, int pKey) { pMap.Remove(pKey); }
    static void Clear(Map& pMap) { pMap.Clear(); }
    static int Size(const Map& pMap) { return pMap.GetSize(); }
};

struct OrderedMap : StandardMap<std::map<int, void*>> {
    static constexpr char kName[] = "std::map";
};

struct HashMap : StandardMap<std::unordered_map<int, void*>> {
    static constexpr char kName[] = "std::unordered_map";
};

const Registration sgRegistration([] {
    AddMapSides<OurMap>();
    AddMapSides<OrderedMap>();
    AddMapSides<HashMap>();
});

}  // namespace

}  // namespace lyrsdk::bench
