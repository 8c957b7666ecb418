// A map of numbers that grows at its end, which remembers its last record.

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "lyrfilesdk/components/kbaselib/klib/kmap.h"
#include "tests/support/map_invariants.h"

namespace lyrsdk {
namespace {

// By operator<, and counts.
struct CountingCompare {
    static constexpr bool kIsOperatorLess = true;
    static inline int sgCount = 0;
    int operator()(int pLeft, int pRight) const {
        ++sgCount;
        return KLyrLessCompare<int>()(pLeft, pRight);
    }
};

TEST(MapAppend, InsertingBehindAllOthersLooksAtNoRecordButTheLast) {
    KMap<int, int, CountingCompare, KHungryAllocator> lMap;
    for (int lId = 0; lId < 5000; ++lId) {
        CountingCompare::sgCount = 0;
        lMap.Insert(lId, 0);
        EXPECT_LE(CountingCompare::sgCount, 2) << lId;
    }
    EXPECT_TRUE(HoldsInvariants(lMap));
}

// Insertions behind all others alternate with everything that changes which record is the last one, or where it is.
TEST(MapAppend, KnowsWhichRecordIsTheLast) {
    const unsigned int lSeed = 20260;
    SCOPED_TRACE(testing::Message() << "seed " << lSeed);
    std::mt19937 lRandom(lSeed);
    KMap<int, int, KLyrLessCompare<int>, KHungryAllocator> lMap;
    std::map<int, int> lModel;
    for (int lStep = 0; lStep < 20000; ++lStep) {
        const int lLast = lModel.empty() ? 0 : lModel.rbegin()->first;
        const unsigned int lWhat = lRandom() % 64;
        if (lWhat < 36) {
            const int lKey = lLast + static_cast<int>(lRandom() % 3) - 1;
            EXPECT_EQ(lMap.Insert(lKey, lStep).mSecond, lModel.emplace(lKey, lStep).second);
        } else if (lWhat < 48) {
            EXPECT_EQ(lMap.Remove(lLast), static_cast<int>(lModel.erase(lLast)));
        } else if (lWhat < 62) {
            const int lKey = static_cast<int>(lRandom() % 64) + lLast - 60;
            EXPECT_EQ(lMap.Remove(lKey), static_cast<int>(lModel.erase(lKey)));
        } else if (lWhat == 62) {
            EXPECT_TRUE(lMap.Compact(3));
        } else if (lRandom() % 32 == 0) {
            lMap.Clear();
            lModel.clear();
        }
        ASSERT_EQ(lMap.GetSize(), static_cast<int>(lModel.size())) << lStep;
        ASSERT_TRUE(HoldsInvariants(lMap)) << lStep;
        if (!lModel.empty()) {
            ASSERT_EQ(lMap.Maximum()->GetKey(), lModel.rbegin()->first) << lStep;
            ASSERT_EQ(lMap.Maximum()->GetValue(), lModel.rbegin()->second) << lStep;
        }
    }
}

}  // namespace
}  // namespace lyrsdk
