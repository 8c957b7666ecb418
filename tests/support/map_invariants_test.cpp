#include "tests/support/map_invariants.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace lyrsdk {
namespace {

// 4B(2R(1B 3B) 6R(5B 7B(- 8R)))
class MapInvariantsTest : public testing::Test {
protected:
    using Map = KMap<int, int, KLyrLessCompare<int>, KHungryAllocator>;

    MapInvariantsTest() {
        for (int lKey = 1; lKey <= 8; ++lKey)
            mMap.Insert(lKey, 0);
    }
    ~MapInvariantsTest() override { EXPECT_TRUE(HoldsInvariants(mMap)) << "a test has not undone its damage"; }

    Map::RecordType* Find(int pKey) { return mMap.Find(pKey); }
    std::string Verdict() { return HoldsInvariants(mMap).message(); }

    Map mMap;
};

TEST_F(MapInvariantsTest, SeeARedRoot) {
    Find(4)->mColor = 0;
    EXPECT_EQ(Verdict(), "broken: the root is black (root)");
    Find(4)->mColor = 1;
}

TEST_F(MapInvariantsTest, SeeARedChildOfARedRecord) {
    Find(3)->mColor = 0;
    EXPECT_EQ(Verdict(), "broken: a red record has no red child (root.L.R)");
    Find(3)->mColor = 1;
}

TEST_F(MapInvariantsTest, SeeAColourThatIsNone) {
    Find(8)->mColor = 2;
    EXPECT_EQ(Verdict(), "broken: a record is red or black (root.R.R.R)");
    Find(8)->mColor = 0;
}

TEST_F(MapInvariantsTest, SeeWaysWithDifferentNumbersOfBlackRecords) {
    Find(8)->mColor = 1;
    EXPECT_EQ(Verdict(), "broken: all ways down meet as many black records (root.R.R)");
    Find(8)->mColor = 0;
}

TEST_F(MapInvariantsTest, SeeAChildThatPointsAtAnotherParent) {
    auto* lRecord = Find(5);
    auto* lParent = std::exchange(lRecord->mParent, Find(2));
    EXPECT_EQ(Verdict(), "broken: a child points back at its parent (root.R.L)");
    lRecord->mParent = lParent;
}

TEST_F(MapInvariantsTest, SeeKeysOutOfOrder) {
    auto* lRecord = Find(7);
    std::swap(lRecord->mLeftChild, lRecord->mRightChild);
    EXPECT_EQ(Verdict(), "broken: keys increase (root.R.R)");
    std::swap(lRecord->mLeftChild, lRecord->mRightChild);
}

TEST_F(MapInvariantsTest, SeeALostRecord) {
    auto* lRecord = Find(7);
    auto* lLost = std::exchange(lRecord->mRightChild, nullptr);
    EXPECT_EQ(Verdict(), "broken: the size counts the records (map)");
    lRecord->mRightChild = lLost;
}

TEST_F(MapInvariantsTest, EndOnLinksThatRunInACircle) {
    auto* lRecord = Find(4);
    lRecord->mParent = Find(2);
    EXPECT_EQ(Verdict(), "broken: the root can be reached from the minimum (map)");
    lRecord->mParent = nullptr;
}

}  // namespace
}  // namespace lyrsdk
