#pragma once

// The object of 64 properties as a map of variants.

#include <array>
#include <string>
#include <variant>

#include "benchmarks/objects_sides.h"

namespace lyrsdk::bench {

using Variant = std::variant<double, int, bool, std::array<double, 3>, std::string, float>;

inline Variant VariantOf(int pIndex, bool pValues) {
    switch (KindOf(pIndex)) {
        case Kind::eDouble:
            return pValues ? DoubleValue(pIndex) : 0.0;
        case Kind::eInt:
            return pValues ? pIndex : 0;
        case Kind::eBool:
            return pValues;
        case Kind::eVector:
            return pValues ? std::array<double, 3>{1, 2, 3} : std::array<double, 3>{};
        case Kind::eText:
            return std::string(pValues ? kTextValue : "");
        case Kind::eFloat:
            return pValues ? 0.5F : 0.0F;
    }
    return {};
}

// Over a map from name to variant.
template <typename MapType>
class VariantsByName {
public:
    explicit VariantsByName(bool pValues) {
        for (int i = 0; i < kPropertyCount; ++i)
            mValues.emplace(PropertyName(i), VariantOf(i, pValues));
    }
    double GetByName(const char* pName) const {
        const auto lFound = mValues.find(pName);
        return lFound == mValues.end() ? -1 : std::get<double>(lFound->second);
    }

private:
    MapType mValues;
};

}  // namespace lyrsdk::bench
