#pragma once

// The page of 64 doubles that is instanced, and where an instance differs.

#include <string>

#include "benchmarks/support/bench.h"
#include "benchmarks/support/heap.h"
#include "benchmarks/support/random.h"

namespace lyrsdk::bench {

constexpr int kPageSize = 64;
constexpr int kOverrides[3] = {5, 23, 41};

inline std::string FieldName(int pIndex) {
    return "field" + std::to_string(pIndex);
}
constexpr double FieldValue(int pIndex) {
    return pIndex + 0.5;
}
constexpr double OverrideValue(int pInstance) {
    return 1000.0 + pInstance;
}

}  // namespace lyrsdk::bench
