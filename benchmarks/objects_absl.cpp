#include <absl/container/flat_hash_map.h>

#include "benchmarks/objects_sides.h"
#include "benchmarks/variants.h"

namespace lyrsdk::bench {

namespace {

class FlatVariants : public VariantsByName<absl::flat_hash_map<std::string, Variant>> {
public:
    static constexpr char kName[] = "absl::flat_hash_map of variants";
    using VariantsByName::VariantsByName;
};

const Registration sgRegistration([] {
    AddCreateSides<FlatVariants>();
    AddNameSides<FlatVariants>();
});

}  // namespace

}  // namespace lyrsdk::bench
