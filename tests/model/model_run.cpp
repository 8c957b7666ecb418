// Runs of the library beside the model, as long as wanted.
//
//   lyrsdk_model_run [--seed N] [--runs N] [--steps N]   N runs of so many operations, of the seeds from N on; without
//                                                        end for 0 runs
//   lyrsdk_model_run --replay FILE                       the operations of a file, one a line, as a run prints them
//   --trace                                              prints each operation before it is applied
//
// Ends with 1 and the shortened sequence when the two disagree.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>

#include "tests/model/driver.h"

namespace {

struct Options {
    std::uint64_t mSeed = 1, mRuns = 100, mSteps = 10000;
    std::string mReplay;
    bool mTrace = false;
};

bool Read(int pCount, char** pArguments, Options& pOptions) {
    for (int i = 1; i < pCount; ++i) {
        const std::string lName = pArguments[i];
        if (lName == "--trace") {
            pOptions.mTrace = true;
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
        std::uint64_t* lOption = lName == "--seed"    ? &pOptions.mSeed
                                 : lName == "--runs"  ? &pOptions.mRuns
                                 : lName == "--steps" ? &pOptions.mSteps
                                                      : nullptr;
        if (!lOption || *lEnd || lEnd == pArguments[i])
            return false;
        *lOption = lNumber;
    }
    return true;
}

// Everything is compared after each operation, and printed before it: the last line tells where a crash was.
int Trace(const std::vector<lyrmodel::Operation>& pOperations) {
    lyrmodel::Driver lDriver;
    for (const lyrmodel::Operation& lOperation : pOperations) {
        std::cout << ToText(lOperation) << std::endl;
        if (lDriver.Apply(lOperation) && lDriver.Check())
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
    if (pOptions.mTrace)
        return Trace(lOperations);
    const bool lSame = lyrmodel::RunOperations(lOperations, 1).mSame;
    std::cout << lyrmodel::Print(lOperations, lyrmodel::Fault::eNone);
    return lSame ? 0 : 1;
}

int RunSeeds(const Options& pOptions) {
    for (std::uint64_t lRun = 0; pOptions.mRuns == 0 || lRun < pOptions.mRuns; ++lRun) {
        const std::uint64_t lSeed = pOptions.mSeed + lRun;
        if (pOptions.mTrace) {
            std::cout << "# seed " << lSeed << "\n";
            if (const int lResult = Trace(lyrmodel::Generate(lSeed, pOptions.mSteps)))
                return lResult;
            continue;
        }
        const std::string lText = lyrmodel::RunSeed(lSeed, pOptions.mSteps);
        if (!lText.empty()) {
            std::cout << lText;
            return 1;
        }
        if ((lRun + 1) % 100 == 0)
            std::cerr << "seed " << lSeed << ": " << (lRun + 1) * pOptions.mSteps << " operations agree\n";
    }
    return 0;
}

}  // namespace

int main(int pCount, char** pArguments) {
    Options lOptions;
    if (!Read(pCount, pArguments, lOptions)) {
        std::cerr << "usage: lyrsdk_model_run [--seed N] [--runs N] [--steps N] [--replay FILE] [--trace]\n";
        return 2;
    }
    return lOptions.mReplay.empty() ? RunSeeds(lOptions) : Replay(lOptions);
}
