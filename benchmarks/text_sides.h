#pragma once

// The values whose conversion is timed, and the timing. A side gives the value at an index of one of the lists below,
// converted: a double of a text, or a text that stays until it is called again.

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks/support/bench.h"
#include "benchmarks/support/random.h"

namespace lyrsdk::bench {

constexpr std::size_t kTextCount = 64;

// With as many digits as people and programs write: 2 to 7, some 16.
inline const std::vector<std::string>& DoubleTexts() {
    static const std::vector<std::string> sTexts = [] {
        Random lRandom(6);
        std::vector<std::string> lTexts;
        for (std::size_t i = 0; i < kTextCount; ++i) {
            std::string lText = std::to_string(lRandom.Below(100)) + "." + std::to_string(1 + lRandom.Below(100000));
            if (i % 8 == 0)
                lText += std::to_string(100000000 + lRandom.Below(900000000));
            lTexts.push_back(i % 4 == 1 ? "-" + lText : lText);
        }
        return lTexts;
    }();
    return sTexts;
}

inline const std::vector<int>& Ints() {
    static const std::vector<int> sInts = [] {
        Random lRandom(7);
        std::vector<int> lInts;
        for (std::size_t i = 0; i < kTextCount; ++i)
            lInts.push_back(static_cast<int>(lRandom.Below(i % 2 ? 1000 : 1000000000)) - 500);
        return lInts;
    }();
    return sInts;
}

inline const std::vector<std::array<double, 3>>& Vectors() {
    static const std::vector<std::array<double, 3>> sVectors = [] {
        std::vector<std::array<double, 3>> lVectors;
        for (std::size_t i = 0; i < kTextCount; ++i) {
            std::array<double, 3> lVector{};
            for (std::size_t j = 0; j < 3; ++j)
                lVector[j] = std::strtod(DoubleTexts()[(i + j) % kTextCount].c_str(), nullptr);
            lVectors.push_back(lVector);
        }
        return lVectors;
    }();
    return sVectors;
}

// The numbers in a text, whatever stands between them.
inline std::vector<double> NumbersIn(std::string_view pText) {
    const std::string lText(pText);
    std::vector<double> lNumbers;
    for (const char* lPlace = lText.c_str(); *lPlace;) {
        char* lEnd = nullptr;
        const double lNumber = std::strtod(lPlace, &lEnd);
        if (lEnd != lPlace)
            lNumbers.push_back(lNumber);
        lPlace = lEnd == lPlace ? lPlace + 1 : lEnd;
    }
    return lNumbers;
}

template <typename Side>
void TimeDoubles(benchmark::State& pState, const std::string& pName, Side pSide) {
    for (std::size_t i = 0; i < kTextCount; ++i)
        Require(pSide(i) == std::strtod(DoubleTexts()[i].c_str(), nullptr), pName + " reads " + DoubleTexts()[i]);
    Measure(pState, kTextCount, [&] {
        double lSum = 0;
        for (std::size_t i = 0; i < kTextCount; ++i)
            lSum += pSide(i);
        benchmark::DoNotOptimize(lSum);
    });
}

template <typename Side>
void TimeTexts(benchmark::State& pState, Side pSide) {
    Measure(pState, kTextCount, [&] {
        std::size_t lLength = 0;
        for (std::size_t i = 0; i < kTextCount; ++i)
            lLength += pSide(i).size();
        benchmark::DoNotOptimize(lLength);
    });
}

template <typename Side>
void TimeInts(benchmark::State& pState, const std::string& pName, Side pSide) {
    for (std::size_t i = 0; i < kTextCount; ++i)
        Require(pSide(i) == std::to_string(Ints()[i]), pName + " writes an int");
    TimeTexts(pState, pSide);
}

template <typename Side>
void TimeVectors(benchmark::State& pState, const std::string& pName, Side pSide) {
    for (std::size_t i = 0; i < kTextCount; ++i) {
        const std::vector<double> lNumbers = NumbersIn(pSide(i));
        Require(lNumbers == std::vector<double>(Vectors()[i].begin(), Vectors()[i].end()), pName + " writes a vector");
    }
    TimeTexts(pState, pSide);
}

}  // namespace lyrsdk::bench
