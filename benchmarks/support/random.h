#pragma once

// Orders that look random and are the same in every run and on every machine.

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace lyrsdk::bench {

class Random {
public:
    explicit Random(std::uint32_t pSeed) : mState(pSeed) {}

    // A number below pLimit.
    std::uint32_t Below(std::uint32_t pLimit) {
        mState = mState * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<std::uint32_t>(((mState >> 32) * pLimit) >> 32);
    }

private:
    std::uint64_t mState;
};

template <typename T>
void Shuffle(std::vector<T>& pValues, std::uint32_t pSeed) {
    Random lRandom(pSeed);
    for (std::size_t i = pValues.size(); i > 1; --i)
        std::swap(pValues[i - 1], pValues[lRandom.Below(static_cast<std::uint32_t>(i))]);
}

// How many questions are asked in a row: processors learn the branches of a few thousand by heart.
constexpr int kQuestionCount = 65536;

// pCount numbers below pLimit.
inline std::vector<int> RandomIds(int pCount, int pLimit, std::uint32_t pSeed) {
    Random lRandom(pSeed);
    std::vector<int> lIds;
    for (int i = 0; i < pCount; ++i)
        lIds.push_back(static_cast<int>(lRandom.Below(static_cast<std::uint32_t>(pLimit))));
    return lIds;
}

// 0 to pCount - 1 in random order.
inline std::vector<int> ShuffledIds(int pCount, std::uint32_t pSeed) {
    std::vector<int> lIds;
    for (int i = 0; i < pCount; ++i)
        lIds.push_back(i);
    Shuffle(lIds, pSeed);
    return lIds;
}

}  // namespace lyrsdk::bench
