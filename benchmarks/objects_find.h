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

// Names to ask for: of siblings in random order, or such as none has. In capitals where the case does not matter.
inline std::vector<std::string> Questions(int pCount, bool pHits, Case pCase) {
    constexpr std::size_t kMost = 200;
    const std::vector<std::string> lNames = SiblingNames(pCount);
    std::vector<std::string> lQuestions;
    for (int lIndex : ShuffledIds(pCount, 5)) {
        if (lQuestions.size() == kMost)
            break;
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

template <typename Side>
void TimeFind(benchmark::State& pState, int pCount, bool pHits, Case pCase) {
    const std::vector<std::string> lQuestions = Questions(pCount, pHits, pCase);
    const Side lSiblings(SiblingNames(pCount));
    for (const std::string& lName : lQuestions)
        Require(lSiblings.Has(lName) == pHits, std::string(Side::kName) + " finds siblings");
    Measure(pState, static_cast<double>(lQuestions.size()), [&] {
        int lFound = 0;
        for (const std::string& lName : lQuestions)
            lFound += lSiblings.Has(lName);
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
