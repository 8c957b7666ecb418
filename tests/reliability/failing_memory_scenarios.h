#pragma once

// Runs one operation with each of its requests for memory refused in turn, once alone and once with all behind it, and
// compares all that can be seen with what was there before and with what is there when nothing is refused.

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <type_traits>

#include "tests/support/failing_memory.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {

// How much of a stage is compared.
enum class Detail {
    eEverything,
    eSeen,    // what is read, without who holds it
    eRanked,  // everything, but ids are counted as if none had been left out
};

// What an operation leaves behind when it failed for want of memory.
enum class Refused {
    eChangesNothing,
    // What is read stays the same; an own copy of it may have come to be.
    eMayLeaveAnOwnCopy,
    // Nothing is added, but ids that were given out on the way are not given out again.
    eLeavesOutIds,
    // The operation makes do without: it never fails.
    eSucceedsAllTheSame,
};

// An operation on a stage. A stage is a class with
//     std::string Shows(Detail) const    all that can be seen of it
//     testing::AssertionResult Holds() const    its invariants
template <typename Stage>
struct Operation {
    // Part of the test's name.
    const char* mName;
    // Gives what the operation answered.
    std::string (*mRun)(Stage& pStage);
    // The answer for want of memory.
    const char* mFailure;
    Refused mRefused = Refused::eChangesNothing;
    // Readies the stage, with memory.
    void (*mPrepare)(Stage& pStage) = nullptr;

    friend void PrintTo(const Operation& pOperation, std::ostream* pOut) { *pOut << pOperation.mName; }
};

struct NameOfOperation {
    template <typename Stage>
    std::string operator()(const testing::TestParamInfo<Operation<Stage>>& pInfo) const {
        return pInfo.param.mName;
    }
};

// --- answers as texts ------------------------------------------------------------------------------------------------

inline std::string Answer(bool pAnswer) {
    return pAnswer ? "true" : "false";
}
inline std::string Answer(int pAnswer) {
    return std::to_string(pAnswer);
}
inline std::string Answer(const void* pAnswer) {
    return pAnswer ? "something" : "null";
}

// --- the run ---------------------------------------------------------------------------------------------------------

namespace detail {

struct Sight {
    std::string mAnswer;
    std::string mEverything;
    std::string mRanked;
};

template <typename Stage>
Sight Look(const Stage& pStage, const std::string& pAnswer) {
    return {pAnswer, pStage.Shows(Detail::eEverything), pStage.Shows(Detail::eRanked)};
}

template <typename Stage>
void ExpectDone(const Stage& pStage, const std::string& pAnswer, const Sight& pDone, Refused pRefused) {
    EXPECT_EQ(pAnswer, pDone.mAnswer);
    const bool lRanked = pRefused == Refused::eLeavesOutIds;
    EXPECT_EQ(pStage.Shows(lRanked ? Detail::eRanked : Detail::eEverything),
              lRanked ? pDone.mRanked : pDone.mEverything);
    EXPECT_TRUE(pStage.Holds());
}

template <typename Stage>
void ExpectFailed(const Stage& pStage, const std::string& pAnswer, const std::string& pBefore,
                  const Operation<Stage>& pOperation) {
    EXPECT_NE(pOperation.mRefused, Refused::eSucceedsAllTheSame) << "failed";
    EXPECT_EQ(pAnswer, pOperation.mFailure);
    const bool lCopies = pOperation.mRefused == Refused::eMayLeaveAnOwnCopy;
    EXPECT_EQ(pStage.Shows(lCopies ? Detail::eSeen : Detail::eEverything), pBefore);
    EXPECT_TRUE(pStage.Holds());
}

}  // namespace detail

// How often an operation was run with a refusal, and how many of these runs failed.
struct RefusedRuns {
    int mRuns = 0;
    int mFailed = 0;
};

// One run. Gives the number of requests that were refused.
template <typename Stage>
std::size_t RunRefused(const Operation<Stage>& pOperation, const detail::Sight& pDone, FailurePoint pPoint,
                       RefusedRuns& pRuns) {
    Stage lStage;
    if (pOperation.mPrepare)
        pOperation.mPrepare(lStage);
    const Detail lDetail = pOperation.mRefused == Refused::eMayLeaveAnOwnCopy ? Detail::eSeen : Detail::eEverything;
    const std::string lBefore = lStage.Shows(lDetail);
    std::string lAnswer;
    std::size_t lFailed = 0;
    {
        const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
        lAnswer = pOperation.mRun(lStage);
        lFailed = lFail.Failed();
    }
    pRuns.mRuns += lFailed > 0 ? 1 : 0;
    const bool lDone = lAnswer == pDone.mAnswer && (lStage.Shows(Detail::eEverything) == pDone.mEverything);
    if (lFailed > 0 && !lDone) {
        ++pRuns.mFailed;
        detail::ExpectFailed(lStage, lAnswer, lBefore, pOperation);
        lAnswer = pOperation.mRun(lStage);
    }
    detail::ExpectDone(lStage, lAnswer, pDone, lFailed > 0 ? pOperation.mRefused : Refused::eChangesNothing);
    return testing::Test::HasFailure() ? 0 : lFailed;
}

// Whatever was refused, the operation either did all that it does with memory or left everything as the row says; then
// it is run again with memory and does all.
template <typename Stage>
RefusedRuns ExpectDoneOrRefused(const Operation<Stage>& pOperation) {
    const LeakCheck lLeaks;
    detail::Sight lDone;
    std::string lBefore;
    {
        Stage lStage;
        if (pOperation.mPrepare)
            pOperation.mPrepare(lStage);
        lBefore = lStage.Shows(Detail::eEverything);
        const std::string lAnswer = pOperation.mRun(lStage);
        lDone = detail::Look(lStage, lAnswer);
        EXPECT_TRUE(lStage.Holds());
    }
    EXPECT_TRUE(lDone.mAnswer != pOperation.mFailure || lDone.mEverything != lBefore)
        << "success and failure look the same";
    RefusedRuns lRuns;
    WithEveryAllocationFailing([&](FailurePoint pPoint) { return RunRefused(pOperation, lDone, pPoint, lRuns); });
    if (pOperation.mRefused != Refused::eSucceedsAllTheSame) {
        EXPECT_GT(lRuns.mFailed, 0) << "no refusal made it fail";
    }
    return lRuns;
}

// An operation that is refused the same request again and again does not make memory grow: what it leaves in stock is
// used by the next try.
template <typename Stage>
void ExpectBoundedWhenRefused(const Operation<Stage>& pOperation) {
    constexpr int lTries = 150;
    constexpr std::size_t lStock = 8192;
    std::size_t lRefused = 1;
    for (std::size_t lRequest = 0; lRefused > 0; ++lRequest) {
        SCOPED_TRACE(lRequest);
        const LeakCheck lLeaks;
        Stage lStage;
        if (pOperation.mPrepare)
            pOperation.mPrepare(lStage);
        const std::size_t lBytes = MemoryProbe::LiveBytes();
        bool lFails = true;
        for (int i = 0; i < lTries && lFails; ++i) {
            const FailAllocations lFail(lRequest, false);
            lFails = pOperation.mRun(lStage) == pOperation.mFailure && lFail.Failed() > 0;
            lRefused = i == 0 ? lFail.Failed() : lRefused;
        }
        if (lFails) {
            ASSERT_LT(MemoryProbe::LiveBytes(), lBytes + lStock);
        }
    }
}

// Runs pAsk without any memory and expects what it answers with memory, and that it asked for none.
template <typename Ask>
void ExpectSameWithoutMemory(Ask pAsk) {
    const auto lWith = pAsk();
    std::decay_t<decltype(lWith)> lWithout{};
    std::size_t lFailed = 0;
    {
        const FailAllocations lFail(0, true);
        lWithout = pAsk();
        lFailed = lFail.Failed();
    }
    EXPECT_EQ(lWithout, lWith);
    EXPECT_EQ(lFailed, 0u) << "asked for memory";
}

}  // namespace lyrsdk
