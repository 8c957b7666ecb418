// Runs of the library beside the model, as long as wanted.
//
//   lyrsdk_model_run [--seed N] [--steps N]   N operations, without end for 0, in runs of the seeds from N on
//       --length N                            the operations of one run
//       --interval N                          everything is compared after so many of them; 0: only at the end of a run
//       --failing-memory                      with random requests for memory refused, and compared after each that was
//       --trace                               prints each operation before it is applied
//   lyrsdk_model_run --replay FILE            the operations of a file, one a line, as a run prints them
//
// Ends with 1 and the shortened sequence when the two disagree.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>

#include "tests/model/driver.h"
#include "tests/support/scarce_memory.h"

namespace {

struct Options {
    std::uint64_t mSeed = 1, mSteps = 1000000, mLength = 10000, mInterval = lyrmodel::kInterval;
    std::string mReplay;
    bool mTrace = false, mFailingMemory = false;
};

bool Read(int pCount, char** pArguments, Options& pOptions) {
    for (int i = 1; i < pCount; ++i) {
        const std::string lName = pArguments[i];
        if (lName == "--trace" || lName == "--failing-memory") {
            (lName == "--trace" ? pOptions.mTrace : pOptions.mFailingMemory) = true;
            continue;
        }
        if (++i == pCount)
            return false;
        if (lName == "--replay") {
            pOptions.mReplay = pArguments[i];
            continue;
        }
        char* lEnd = nullptr;
        const std::uint64_t lNumber = std::strtoull(pArguments[i], &lEnd, 10);
        std::uint64_t* lOption = lName == "--seed"       ? &pOptions.mSeed
                                 : lName == "--steps"    ? &pOptions.mSteps
                                 : lName == "--length"   ? &pOptions.mLength
                                 : lName == "--interval" ? &pOptions.mInterval
                                                         : nullptr;
        if (!lOption || *lEnd || lEnd == pArguments[i])
            return false;
        *lOption = lNumber;
    }
    return pOptions.mLength > 0;
}

// Everything is compared after each operation, and printed before it: the last line tells where a crash was.
int Trace(const std::vector<lyrmodel::Operation>& pOperations) {
    lyrmodel::Driver lDriver;
    for (const lyrmodel::Operation& lOperation : pOperations) {
        std::cout << ToText(lOperation) << std::endl;
        if (lDriver.ApplyAsStated(lOperation) && lDriver.Check())
            continue;
        std::cout << "# " << lDriver.Last() << "\n# " << lDriver.Difference() << "\n";
        return 1;
    }
    return 0;
}

int Replay(const Options& pOptions) {
    std::ifstream lFile(pOptions.mReplay);
    if (!lFile) {
        std::cerr << "cannot read " << pOptions.mReplay << "\n";
        return 2;
    }
    std::vector<lyrmodel::Operation> lOperations;
    for (std::string lLine; std::getline(lFile, lLine);) {
        lyrmodel::Operation lOperation;
        if (lyrmodel::FromText(lLine, lOperation))
            lOperations.push_back(lOperation);
    }
    lyrsdk::ScarceMemory::Install();
    if (pOptions.mTrace)
        return Trace(lOperations);
    const bool lSame = lyrmodel::RunOperations(lOperations, 1).mSame;
    std::cout << lyrmodel::Print(lOperations, lyrmodel::Fault::eNone);
    return lSame ? 0 : 1;
}

int RunSeeds(const Options& pOptions) {
    std::uint64_t lDone = 0;
    lyrmodel::ScarceCounts lCounts{};
    if (pOptions.mFailingMemory)
        lyrsdk::ScarceMemory::Install();
    for (std::uint64_t lSeed = pOptions.mSeed; pOptions.mSteps == 0 || lDone < pOptions.mSteps; ++lSeed) {
        const std::uint64_t lLeft = pOptions.mSteps ? pOptions.mSteps - lDone : pOptions.mLength;
        const std::uint64_t lLength = std::min(lLeft, pOptions.mLength);
        if (pOptions.mTrace) {
            std::cout << "# seed " << lSeed << "\n";
            if (const int lResult = Trace(lyrmodel::Generate(lSeed, lLength)))
                return lResult;
        } else {
            const std::string lText = pOptions.mFailingMemory
                                          ? lyrmodel::RunSeedScarce(lSeed, lLength, lCounts)
                                          : lyrmodel::RunSeed(lSeed, lLength, lyrmodel::Fault::eNone,
                                                              static_cast<std::size_t>(pOptions.mInterval));
            if (!lText.empty()) {
                std::cout << lText;
                return 1;
            }
        }
        lDone += lLength;
        if (lDone == pOptions.mSteps || (lSeed - pOptions.mSeed) % 100 == 99)
            std::cout << lDone << " operations agree, the last ones of seed " << lSeed << std::endl;
    }
    if (pOptions.mFailingMemory) {
        const char* const lNames[] = {"not refused", "done without", "undone", "partly done"};
        for (std::size_t i = 0; i < std::size(lNames); ++i) {
            std::uint64_t lSum = 0;
            for (const auto& lKind : lCounts)
                lSum += lKind[i];
            std::cout << lNames[i] << ": " << lSum << "\n";
        }
    }
    return 0;
}

}  // namespace

int main(int pCount, char** pArguments) {
    Options lOptions;
    if (!Read(pCount, pArguments, lOptions)) {
        std::cerr << "usage: lyrsdk_model_run [--seed N] [--steps N] [--length N] [--interval N] [--failing-memory] "
                     "[--trace]\n"
                     "       lyrsdk_model_run --replay FILE [--trace]\n";
        return 2;
    }
    return lOptions.mReplay.empty() ? RunSeeds(lOptions) : Replay(lOptions);
}
