#pragma once

// Runs an operation with each of its requests for memory refused in turn.

#include <gtest/gtest.h>

#include <cstddef>

#include "tests/support/memory_probe.h"

namespace lyrsdk {

// pScenario sets up what it needs, runs the operation while a FailAllocations made from the given point is alive, and
// returns that one's Failed(). It is called with the first request to refuse at 0, 1, 2, ... until nothing is refused
// any more, once with a single refusal and once with all requests behind it refused too. Every call must give back all
// memory.
struct FailurePoint {
    std::size_t mFirst;
    bool mForever;
};

template <typename Scenario>
void WithEveryAllocationFailing(Scenario pScenario) {
    constexpr std::size_t lTooMany = 10000;
    for (const bool lForever : {false, true}) {
        std::size_t lFailed = 1;
        for (std::size_t i = 0; lFailed > 0; ++i) {
            SCOPED_TRACE(testing::Message() << "request " << i << (lForever ? " and all behind it" : "") << " refused");
            const LeakCheck lLeaks;
            lFailed = pScenario(FailurePoint{i, lForever});
            ASSERT_LT(i, lTooMany) << "the operation asks for memory without end";
            if (i == 0) {
                ASSERT_GT(lFailed, 0u) << "the operation asks for no memory at all";
            }
            if (testing::Test::HasFatalFailure())
                return;
        }
    }
}

}  // namespace lyrsdk
