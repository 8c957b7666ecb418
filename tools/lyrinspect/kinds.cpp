#include "tools/lyrinspect/kinds.h"

#include <cstring>
#include <iterator>

namespace lyrsdk::inspect {

namespace {

struct KindRow {
    const char* name;
    const char* plural;
};

// In the order of ObjectKind.
constexpr KindRow kKinds[] = {
    {"document", "documents"},   {"scene", "scenes"},       {"node", "nodes"},       {"mesh", "meshes"},
    {"primitive", "primitives"}, {"material", "materials"}, {"texture", "textures"}, {"image", "images"},
    {"sampler", "samplers"},     {"camera", "cameras"},     {"light", "lights"},     {"skin", "skins"},
    {"animation", "animations"}, {"channel", "channels"},
};
static_assert(std::size(kKinds) == kKindCount, "one row a kind");

}  // namespace

const char* KindName(ObjectKind pKind) {
    const std::size_t lIndex = static_cast<std::size_t>(pKind);
    return lIndex < kKindCount ? kKinds[lIndex].name : "";
}

const char* KindPlural(ObjectKind pKind) {
    const std::size_t lIndex = static_cast<std::size_t>(pKind);
    return lIndex < kKindCount ? kKinds[lIndex].plural : "";
}

ObjectKind KindOfName(const char* pName) {
    std::size_t lIndex = 0;
    while (lIndex < kKindCount && std::strcmp(kKinds[lIndex].name, pName) != 0)
        ++lIndex;
    return static_cast<ObjectKind>(lIndex);
}

}  // namespace lyrsdk::inspect
