#pragma once

// Two values side by side: mFirst, then mSecond.

namespace lyrsdk {

template <typename First, typename Second>
struct KPair {
    // Both values are zero or default-constructed.
    KPair() : mFirst(), mSecond() {}
    KPair(const First& pFirst, const Second& pSecond) : mFirst(pFirst), mSecond(pSecond) {}

    First mFirst;
    Second mSecond;
};

}  // namespace lyrsdk
