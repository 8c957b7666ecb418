#pragma once

// A million floats turned into halves and back. Usual ones have a half with a leading 1, of the others a half keeps
// only the last bits.

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "benchmarks/support/bench.h"
#include "benchmarks/support/random.h"

namespace lyrsdk::bench {

enum class Halves { eUsual, eSubnormal };

constexpr std::size_t kHalfCount = 1000000;

// A half's bits, with a random sign.
inline std::vector<std::uint16_t> HalfBits(Halves pHalves) {
    Random lRandom(8);
    std::vector<std::uint16_t> lBits;
    for (std::size_t i = 0; i < kHalfCount; ++i) {
        const std::uint32_t lMagnitude =
            pHalves == Halves::eUsual ? 0x0400 + lRandom.Below(0x7C00 - 0x0400) : 1 + lRandom.Below(0x03FF);
        lBits.push_back(static_cast<std::uint16_t>(lMagnitude | lRandom.Below(2) << 15));
    }
    return lBits;
}

// What a half's bits stand for.
inline float HalfValue(std::uint16_t pBits) {
    const int lExponent = pBits >> 10 & 31;
    const float lFraction = static_cast<float>(pBits & 0x3FF);
    const float lMagnitude = lExponent ? std::ldexp(1024 + lFraction, lExponent - 25) : std::ldexp(lFraction, -24);
    return pBits >> 15 ? -lMagnitude : lMagnitude;
}

// Floats between halves as well.
inline std::vector<float> HalfFloats(Halves pHalves) {
    Random lRandom(9);
    std::vector<float> lFloats;
    for (std::uint16_t lBits : HalfBits(pHalves))
        lFloats.push_back(HalfValue(lBits) * (1 + static_cast<float>(lRandom.Below(1000)) * 1e-7F));
    return lFloats;
}

// Side: kName; std::uint16_t FromFloat(float); float ToFloat(std::uint16_t).
template <typename Side>
void TimeFromFloat(benchmark::State& pState, Halves pHalves) {
    const std::vector<float> lFloats = HalfFloats(pHalves);
    const std::vector<std::uint16_t> lBits = HalfBits(pHalves);
    std::vector<std::uint16_t> lHalves(kHalfCount);
    const auto lWork = [&] {
        for (std::size_t i = 0; i < kHalfCount; ++i)
            lHalves[i] = Side::FromFloat(lFloats[i]);
        benchmark::DoNotOptimize(lHalves.data());
        benchmark::ClobberMemory();
    };
    lWork();
    // A side may round up or cut off, and one of them is known to make subnormal halves smaller. None loses a sign.
    for (std::size_t i = 0; i < kHalfCount; ++i) {
        const bool lNear = pHalves == Halves::eSubnormal ? (lHalves[i] & 0x7FFF) <= (lBits[i] & 0x7FFF) + 1
                                                         : std::abs(int{lHalves[i]} - int{lBits[i]}) <= 1;
        Require(lNear && lHalves[i] >> 15 == lBits[i] >> 15, std::string(Side::kName) + " makes halves");
    }
    Measure(pState, kHalfCount, lWork);
}

template <typename Side>
void TimeToFloat(benchmark::State& pState, Halves pHalves) {
    const std::vector<std::uint16_t> lBits = HalfBits(pHalves);
    std::vector<float> lFloats(kHalfCount);
    const auto lWork = [&] {
        for (std::size_t i = 0; i < kHalfCount; ++i)
            lFloats[i] = Side::ToFloat(lBits[i]);
        benchmark::DoNotOptimize(lFloats.data());
        benchmark::ClobberMemory();
    };
    lWork();
    for (std::size_t i = 0; i < kHalfCount; ++i)
        Require(lFloats[i] == HalfValue(lBits[i]), std::string(Side::kName) + " reads halves");
    Measure(pState, kHalfCount, lWork);
}

template <typename Side>
void AddHalfSides() {
    for (Halves lHalves : {Halves::eUsual, Halves::eSubnormal}) {
        const std::string lWhich = lHalves == Halves::eUsual ? "usual" : "subnormal";
        AddSide("half from float, " + lWhich, Side::kName,
                [lHalves](benchmark::State& pState) { TimeFromFloat<Side>(pState, lHalves); });
        AddSide("half to float, " + lWhich, Side::kName,
                [lHalves](benchmark::State& pState) { TimeToFloat<Side>(pState, lHalves); });
    }
}

}  // namespace lyrsdk::bench
