#include "tests/model/driver.h"

#include <algorithm>

namespace lyrmodel {

bool Driver::Apply(const Operation& pOperation) {
    static constexpr Step sSteps[] = {
#define LYRMODEL_ROW(pName, pArguments, pWeight) &Driver::pName,
        LYRMODEL_OPERATIONS(LYRMODEL_ROW)
#undef LYRMODEL_ROW
    };
    mLast = pOperation;
    mSame.SetTally(mTallies ? &(*mTallies)[static_cast<std::size_t>(pOperation.mKind)] : nullptr);
    mArguments = Resolve(pOperation, mPair.mModel);
    (this->*sSteps[static_cast<std::size_t>(pOperation.mKind)])(mArguments);
    mSame.SameReports();
    return mSame.IsSame();
}

bool Driver::Check() {
    mSame.SetTally(nullptr);
    mSame.All();
    return mSame.IsSame();
}

Outcome RunOperations(const std::vector<Operation>& pOperations, std::size_t pInterval, Fault pFault,
                      std::size_t pClosely) {
    Driver lDriver(pFault);
    Outcome lOutcome;
    for (const Operation& lOperation : pOperations) {
        ++lOutcome.mSteps;
        lOutcome.mSame = lDriver.ApplyAsStated(lOperation);
        const bool lClose = lOutcome.mSteps + pClosely >= pOperations.size();
        if (lOutcome.mSame && (lClose || (pInterval && lOutcome.mSteps % pInterval == 0)))
            lOutcome.mSame = lDriver.Check();
        if (!lOutcome.mSame)
            break;
    }
    lOutcome.mDifference = lDriver.Difference();
    lOutcome.mWhat = lDriver.What();
    return lOutcome;
}

namespace {

// So few operations are worth every attempt.
constexpr std::size_t kFew = 40;

// Looks for a shorter sequence until the work that it may do is used up.
class Shortener {
public:
    Shortener(const std::vector<Operation>& pOperations, Fault pFault, std::size_t pMostSteps)
        : mFault(pFault), mStepsLeft(pMostSteps) {
        // The first difference is found, and what it is, by looking closely where the sides were last seen to agree.
        // Looking makes the library keep what filters select: if it takes that to differ, every run has to look.
        for (std::size_t lInterval : {std::size_t(0), kInterval, std::size_t(1)}) {
            mInterval = lInterval;
            if (Try(pOperations, kInterval))
                return;
        }
        mShortest = pOperations;
    }

    const std::vector<Operation>& Shortest() const { return mShortest; }

    void LeaveOut() {
        RenameAll();
        for (std::size_t lChunk = mShortest.size() / 2; lChunk > 0; lChunk /= 2)
            LeaveOutChunks(lChunk);
        // What is left out may make room for what was tried before.
        while (LeaveOutChunks(1) || (mShortest.size() <= kFew && LeaveOutTheRest()))
            continue;
    }

    // Gives memory and makes arguments small where the difference stays.
    void Simplify() {
        for (std::size_t i = 0; i < mShortest.size(); ++i)
            GiveMemory(i);
        for (std::size_t i = 0; i < mShortest.size(); ++i)
            for (std::size_t k = 0; k < kArguments; ++k)
                SimplifyArgument(i, k);
    }

private:
    // Takes the sequence if it diverges in the same point, cut off behind the operation that shows it.
    bool Try(const std::vector<Operation>& pOperations, std::size_t pClosely) {
        if (mStepsLeft == 0 || pOperations.empty())
            return false;
        const Outcome lOutcome = RunOperations(pOperations, mInterval, mFault, pClosely);
        // A look costs about as much as that many steps.
        const std::size_t lLooks = mInterval ? lOutcome.mSteps / mInterval : 0;
        mStepsLeft -= std::min(mStepsLeft, lOutcome.mSteps + 50 * lLooks);
        if (lOutcome.mSame || (!mWhat.empty() && lOutcome.mWhat != mWhat))
            return false;
        mWhat = lOutcome.mWhat;
        mShortest.assign(pOperations.begin(), pOperations.begin() + static_cast<std::ptrdiff_t>(lOutcome.mSteps));
        return true;
    }

    void RenameAll() {
        Driver lDriver(mFault);
        std::vector<Operation> lRenamed;
        for (const Operation& lOperation : mShortest) {
            lDriver.ApplyAsStated(lOperation);
            lRenamed.push_back(lDriver.LastRenamed());
        }
        Try(lRenamed, 0);
    }

    // Leaves out chunks of that size where it can, from the back.
    bool LeaveOutChunks(std::size_t pChunk) {
        bool lAny = false;
        std::size_t lEnd = mShortest.size();
        while (lEnd > 0 && mStepsLeft != 0) {
            const std::size_t lBegin = lEnd > pChunk ? lEnd - pChunk : 0;
            std::vector<Operation> lRest = mShortest;
            lRest.erase(lRest.begin() + static_cast<std::ptrdiff_t>(lBegin),
                        lRest.begin() + static_cast<std::ptrdiff_t>(lEnd));
            lAny = Try(lRest, 0) || lAny;
            lEnd = std::min(lBegin, mShortest.size());
        }
        return lAny;
    }

    bool LeaveOutTheRest() {
        return LeaveOutAndLower('p', World::kSlots) || LeaveOutAndLower('i', 40) || LeaveOutPairs();
    }

    // Leaves out one operation, which may have made a page or property: what comes behind names lower ones then.
    bool LeaveOutAndLower(char pLetter, std::uint8_t pHighest) {
        for (std::size_t i = 0; i < mShortest.size(); ++i) {
            for (std::uint8_t lKept = 0; lKept < pHighest; ++lKept) {
                std::vector<Operation> lRest = mShortest;
                lRest.erase(lRest.begin() + static_cast<std::ptrdiff_t>(i));
                if (Lower(lRest, i, pLetter, lKept, pHighest) && Try(lRest, 0))
                    return true;
            }
        }
        return false;
    }

    // Lowers the arguments of that letter by one, from an operation on, where they are above pKept.
    static bool Lower(std::vector<Operation>& pOperations, std::size_t pFrom, char pLetter, std::uint8_t pKept,
                      std::uint8_t pHighest) {
        bool lAny = false;
        for (std::size_t k = pFrom; k < pOperations.size(); ++k) {
            const char* lLetters = ArgumentsOf(pOperations[k].mKind);
            for (std::size_t a = 0; lLetters[a]; ++a) {
                std::uint8_t& lArgument = pOperations[k].mArguments[a];
                if (lLetters[a] != pLetter || lArgument <= pKept || lArgument > pHighest)
                    continue;
                --lArgument;
                lAny = true;
            }
        }
        return lAny;
    }

    // Two operations of which neither can go alone: one made what the other took away.
    bool LeaveOutPairs() {
        for (std::size_t i = 0; i < mShortest.size(); ++i) {
            for (std::size_t k = i + 1; k < mShortest.size(); ++k) {
                std::vector<Operation> lRest = mShortest;
                lRest.erase(lRest.begin() + static_cast<std::ptrdiff_t>(k));
                lRest.erase(lRest.begin() + static_cast<std::ptrdiff_t>(i));
                if (Try(lRest, 0))
                    return true;
            }
        }
        return false;
    }

    void GiveMemory(std::size_t pIndex) {
        if (!mShortest[pIndex].mRefused)
            return;
        std::vector<Operation> lSimpler = mShortest;
        lSimpler[pIndex].mForever = false;
        Try(lSimpler, 0);
        lSimpler[pIndex].mRefused = 0;
        Try(lSimpler, 0);
    }

    void SimplifyArgument(std::size_t pIndex, std::size_t pArgument) {
        for (std::uint8_t lSmall = 0; lSmall < 4 && pIndex < mShortest.size(); ++lSmall) {
            std::vector<Operation> lSimpler = mShortest;
            if (lSimpler[pIndex].mArguments[pArgument] <= lSmall)
                return;
            lSimpler[pIndex].mArguments[pArgument] = lSmall;
            if (Try(lSimpler, 0))
                return;
        }
    }

    Fault mFault;
    std::size_t mStepsLeft;
    std::size_t mInterval = 0;
    std::vector<Operation> mShortest;
    // What the sequence diverges in.
    std::string mWhat;
};

}  // namespace

std::vector<Operation> Shorten(const std::vector<Operation>& pOperations, Fault pFault, std::size_t pMostSteps) {
    Shortener lShortener(pOperations, pFault, pMostSteps);
    for (int i = 0; i < 3; ++i) {
        lShortener.LeaveOut();
        lShortener.Simplify();
    }
    lShortener.LeaveOut();
    return lShortener.Shortest();
}

std::string Print(const std::vector<Operation>& pOperations, Fault pFault) {
    Driver lDriver(pFault);
    std::string lText;
    for (const Operation& lOperation : pOperations) {
        const bool lSame = lDriver.ApplyAsStated(lOperation);
        const std::string lReplay = ToText(lOperation);
        lText +=
            lReplay + std::string(lReplay.size() < 40 ? 40 - lReplay.size() : 1, ' ') + "# " + lDriver.Last() + "\n";
        if (!lSame || !lDriver.Check())
            break;
    }
    return lText + "# " + (lDriver.Difference().empty() ? "both agree" : lDriver.Difference()) + "\n";
}

std::string Shortened(std::uint64_t pSeed, std::vector<Operation> pOperations, const Outcome& pOutcome, Fault pFault) {
    pOperations.resize(pOutcome.mSteps);
    const std::vector<Operation> lShort = Shorten(pOperations, pFault, 300 * pOutcome.mSteps + 2000000);
    return "seed " + std::to_string(pSeed) + ", operation " + std::to_string(pOutcome.mSteps) + ": " +
           pOutcome.mDifference + "\n" + Print(lShort, pFault);
}

std::string RunSeed(std::uint64_t pSeed, std::uint64_t pCount, Fault pFault, std::size_t pInterval) {
    const std::vector<Operation> lOperations = Generate(pSeed, pCount);
    const Outcome lOutcome = RunOperations(lOperations, pInterval, pFault, 1);
    return lOutcome.mSame ? "" : Shortened(pSeed, lOperations, lOutcome, pFault);
}

}  // namespace lyrmodel
