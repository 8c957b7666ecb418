#pragma once

// What is timed on a lookup by name among n siblings. A side is a class made from their names, which says whether it
// has a name.

#include <cctype>
#include <string>
#include <vector>

#include "benchmarks/support/bench.h"
#include "benchmarks/support/random.h"

namespace lyrsdk::bench {

enum class Case { eKept, eIgnored };

inline std::vector<std::string> SiblingNames(int pCount) {
    std::vector<std::string> lNames;
    for (int i = 0; i < pCount; ++i)
        lNames.push_back("Mesh" + std::to_string(i) + "Shape");
    return lNames;
}

constexpr std::size_t kNameCount = 4096;

// Names to ask for: of siblings in random order, or such as none has. In capitals where the case does not matter.
inline std::vector<std::string> Questions(int pCount, bool pHits, Case pCase) {
    const std::vector<std::string> lNames = SiblingNames(pCount);
    std::vector<std::string> lQuestions;
    for (int lIndex : RandomIds(kNameCount, pCount, 5)) {
        std::string lName = lNames[static_cast<std::size_t>(lIndex)];
        if (!pHits)
            lName.back() = 'y';
        if (pCase == Case::eIgnored) {
            for (char& lLetter : lName)
                lLetter = static_cast<char>(std::toupper(static_cast<unsigned char>(lLetter)));
        }
        lQuestions.push_back(lName);
    }
    return lQuestions;
}

// A pass asks a part of the questions, the next one goes on behind them.
template <typename Side>
void TimeFind(benchmark::State& pState, int pCount, bool pHits, Case pCase) {
    constexpr std::size_t kPart = 64;
    const std::vector<std::string> lQuestions = Questions(pCount, pHits, pCase);
    const Side lSiblings(SiblingNames(pCount));
    for (std::size_t i = 0; i < kPart; ++i)
        Require(lSiblings.Has(lQuestions[i]) == pHits, std::string(Side::kName) + " finds siblings");
    std::size_t lNext = 0;
    Measure(pState, kPart, [&] {
        int lFound = 0;
        for (std::size_t i = lNext; i < lNext + kPart; ++i)
            lFound += lSiblings.Has(lQuestions[i]);
        lNext = (lNext + kPart) % kNameCount;
        benchmark::DoNotOptimize(lFound);
    });
}

template <typename Side>
void AddFindSides(Case pCase) {
    for (bool lHits : {true, false}) {
        for (int lCount : {10, 100, 1000, 10000}) {
            const std::string lRow = std::string("find ") + (lHits ? "hit" : "miss") +
                                     (pCase == Case::eKept ? "" : " any case") + "/" + std::to_string(lCount);
            AddSide(lRow, Side::kName,
                    [lCount, lHits, pCase](benchmark::State& pState) { TimeFind<Side>(pState, lCount, lHits, pCase); });
        }
    }
}

}  // namespace lyrsdk::bench
