#pragma once

// Two values side by side: mFirst, then mSecond.

namespace lyrsdk {

template <typename First, typename Second>
struct KPair {
    // Both values are zero or default-constructed.
    KPair() : mFirst(), mSecond() {}
    // Copies of the two.
    KPair(const First& pFirst, const Second& pSecond) : mFirst(pFirst), mSecond(pSecond) {}

    // The first one.
    First mFirst;
    // The second one.
    Second mSecond;
};

}  // namespace lyrsdk
