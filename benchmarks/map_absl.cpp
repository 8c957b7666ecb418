#include <absl/container/btree_map.h>
#include <absl/container/flat_hash_map.h>

#include "benchmarks/map_sides.h"

namespace lyrsdk::bench {

namespace {

struct BTree : StandardMap<absl::btree_map<int, void*>> {
    static constexpr char kName[] = "absl::btree_map";
};

struct FlatHash : StandardMap<absl::flat_hash_map<int, void*>> {
    static constexpr char kName[] = "absl::flat_hash_map";
};

const Registration sgRegistration([] {
    AddMapSides<BTree>();
    AddMapSides<FlatHash>();
});

}  // namespace

}  // namespace lyrsdk::bench
