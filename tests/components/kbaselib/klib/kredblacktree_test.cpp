#include "lyrfilesdk/components/kbaselib/klib/kredblacktree.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "lyrfilesdk/components/kbaselib/klib/kmap.h"
#include "tests/support/broken_trees.h"
#include "tests/support/map_invariants.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

using Map = BrokenTree::Map;
using Record = Map::RecordType;

// "20B(10R 30R)": key, colour, children; "-" for a missing one of two.
std::string Shape(const Record* pRecord) {
    if (!pRecord)
        return "-";
    std::string lShape = std::to_string(pRecord->GetKey()) + (pRecord->mColor == 1 ? "B" : "R");
    if (pRecord->mLeftChild || pRecord->mRightChild)
        lShape += "(" + Shape(pRecord->mLeftChild) + " " + Shape(pRecord->mRightChild) + ")";
    return lShape;
}

std::string Shape(const Map& pMap) {
    const Record* lRoot = pMap.Minimum();
    while (lRoot && lRoot->mParent)
        lRoot = lRoot->mParent;
    return Shape(lRoot);
}

std::string ShapeAfter(const std::vector<int>& pKeys) {
    Map lMap;
    for (int lKey : pKeys)
        lMap.Insert(lKey, 0);
    EXPECT_TRUE(HoldsInvariants(lMap));
    return Shape(lMap);
}

TEST(RedBlackTree, RotatesAnOuterGrandchildOnce) {
    EXPECT_EQ(ShapeAfter({1}), "1B");
    EXPECT_EQ(ShapeAfter({1, 2}), "1B(- 2R)");
    EXPECT_EQ(ShapeAfter({1, 2, 3}), "2B(1R 3R)");
    EXPECT_EQ(ShapeAfter({3, 2, 1}), "2B(1R 3R)");
}

TEST(RedBlackTree, RotatesAnInnerGrandchildTwice) {
    EXPECT_EQ(ShapeAfter({1, 3, 2}), "2B(1R 3R)");
    EXPECT_EQ(ShapeAfter({3, 1, 2}), "2B(1R 3R)");
}

TEST(RedBlackTree, RecoloursBelowARedUncle) {
    EXPECT_EQ(ShapeAfter({1, 2, 3, 4}), "2B(1B 3B(- 4R))");
    EXPECT_EQ(ShapeAfter({4, 3, 2, 1}), "3B(2B(1R -) 4B)");
    EXPECT_EQ(ShapeAfter({1, 2, 3, 4, 5, 6, 7, 8}), "4B(2R(1B 3B) 6R(5B 7B(- 8R)))");
    EXPECT_EQ(ShapeAfter({8, 7, 6, 5, 4, 3, 2, 1}), "5B(3R(2B(1R -) 4B) 7R(6B 8B))");
}

// Builds a tree, then removes keys one by one and compares the shape behind each.
void ShapesAre(const std::vector<int>& pKeys, const std::vector<std::pair<int, const char*>>& pRemovals) {
    Map lMap;
    for (int lKey : pKeys)
        lMap.Insert(lKey, 0);
    for (const auto& lRemoval : pRemovals) {
        EXPECT_EQ(lMap.Remove(lRemoval.first), 1);
        EXPECT_EQ(Shape(lMap), lRemoval.second) << "behind the removal of " << lRemoval.first;
        EXPECT_TRUE(HoldsInvariants(lMap));
    }
}

TEST(RedBlackTree, ReplacesARecordWithTwoChildrenByTheNextOne) {
    ShapesAre({1, 2, 3, 4, 5, 6, 7, 8}, {{4, "5B(2R(1B 3B) 7R(6B 8B))"},
                                         {5, "6B(2R(1B 3B) 7B(- 8R))"},
                                         {6, "7B(2R(1B 3B) 8B)"},
                                         {8, "2B(1B 7B(3R -))"},
                                         {7, "2B(1B 3B)"},
                                         {1, "2B(- 3R)"},
                                         {3, "2B"},
                                         {2, "-"}});
}

TEST(RedBlackTree, BorrowsFromAnInnerNephew) {
    ShapesAre({1, 2, 4, 3}, {{1, "3B(2B 4B)"}});
    ShapesAre({4, 3, 1, 2}, {{4, "2B(1B 3B)"}});
}

TEST(RedBlackTree, BorrowsFromAnOuterNephew) {
    ShapesAre({1, 2, 3, 4}, {{1, "3B(2B 4B)"}});
    ShapesAre({4, 3, 2, 1}, {{4, "2B(1B 3B)"}});
}

TEST(RedBlackTree, RotatesARedSiblingUpFirst) {
    ShapesAre({1, 2, 3, 4, 5, 6}, {{1, "4B(2B(- 3R) 5B(- 6R))"}});
    ShapesAre({6, 5, 4, 3, 2, 1}, {{6, "3B(2B(1R -) 5B(4R -))"}});
}

TEST(RedBlackTree, ALonelyChildTakesThePlaceOfTheRoot) {
    ShapesAre({1, 2}, {{1, "2B"}});
    ShapesAre({2, 1}, {{2, "1B"}});
}

TEST(RedBlackTree, ARootThatWasMadeRedTurnsBlackWithTheNextInsertion) {
    Map lMap;
    lMap.Insert(1, 0);
    lMap.Minimum()->mColor = 0;
    lMap.Insert(2, 0);
    EXPECT_EQ(Shape(lMap), "1B(- 2R)");
    EXPECT_EQ(lMap.Remove(1), 1);
    EXPECT_EQ(Shape(lMap), "2B");
}

// ---------------------------------------------------------------------------------------------------------------------
// Broken links

constexpr char kPath[] = "lyrfilesdk/components/kbaselib/klib/kmap";

const std::map<unsigned long, const char*> kTexts = {
    {602, "lParent->mRightChild == 0"},
    {608, "lParent->mLeftChild == 0"},
    {1066, "mRoot == pNode"},
    {1080, "pNode->mLeftChild == A"},
    {1081, "pNode->mRightChild == B"},
    {1085, "lNode->mRightChild == C"},
    {1086, "lNode->mParent == Z"},
    {1088, "A == 0 || A->mParent == pNode"},
    {1089, "B == 0 || B->mParent == pNode"},
    {1090, "C == 0 || C->mParent == lNode"},
    {1091, "Z == 0 || Z->mLeftChild == lNode || Z->mRightChild == lNode"},
    {1115, "mRoot == pNode"},
    {1129, "lNode->mLeftChild == A"},
    {1131, "lNode->mParent == Z"},
    {1133, "pNode->mLeftChild == B"},
    {1134, "pNode->mRightChild == C"},
    {1137, "A == 0 || A->mParent == lNode"},
    {1138, "B == 0 || B->mParent == pNode"},
    {1139, "C == 0 || C->mParent == pNode"},
    {1140, "Z == 0 || Z->mLeftChild == lNode || Z->mRightChild == lNode"},
    {1162, "Node not found in KRedBlackTree"},
    {1167, "mRoot == pNode"},
    {1192, "Node not found in KRedBlackTree"},
    {1197, "mRoot == pNode"},
    {1226, "Node not found in KRedBlackTree"},
    {1231, "mRoot == pNode"},
    {1273, "mRoot == pNodeToReplace"},
    {1396, "lSibling != 0"},
};

TEST(RedBlackTree, ReportsEachBrokenLinkAndGoesOn) {
    LeakCheck lLeaks;
    for (const BrokenTree& lTree : kBrokenTrees) {
        SCOPED_TRACE(testing::Message() << "line " << lTree.mLines.front() << ", key " << lTree.mKey);
        const auto lReports = ReportsOf(lTree);
        ASSERT_EQ(lReports.size(), lTree.mLines.size());
        for (std::size_t lIndex = 0; lIndex < lReports.size(); ++lIndex) {
            EXPECT_EQ(lReports[lIndex].file, kPath);
            EXPECT_EQ(lReports[lIndex].function, "");
            EXPECT_EQ(lReports[lIndex].line, lTree.mLines[lIndex]);
            EXPECT_EQ(lReports[lIndex].message, kTexts.at(lTree.mLines[lIndex]));
        }
    }
}

TEST(RedBlackTree, TheBrokenTreesReachEveryCheckThatLinksCanReach) {
    std::set<unsigned long> lReached{602, 608};
    for (const BrokenTree& lTree : kBrokenTrees)
        lReached.insert(lTree.mLines.begin(), lTree.mLines.end());
    for (const auto& lText : kTexts)
        EXPECT_EQ(lReached.count(lText.first), 1u) << lText.first;
}

void ReportsATakenSlot(int pSecondKey, int pThirdKey, unsigned long pLine) {
    const auto lReports = ReportsOfATakenSlot(pSecondKey, pThirdKey);
    ASSERT_EQ(lReports.size(), 1u);
    EXPECT_EQ(lReports[0].file, kPath);
    EXPECT_EQ(lReports[0].line, pLine);
    EXPECT_EQ(lReports[0].message, kTexts.at(pLine));
}

// Integers from the largest to the smallest.
struct DescendingCompare {
    int operator()(int pLeft, int pRight) const { return KLyrLessCompare<int>()(pRight, pLeft); }
};

TEST(RedBlackTree, OrdersIntegersAsItsFunctorSays) {
    KMap<int, int, DescendingCompare, KHungryAllocator> lMap;
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(lMap.Insert(i * 37 % 100, i).mSecond);
    int lExpected = 99;
    for (auto lIt = lMap.Begin(); lIt != lMap.End(); ++lIt)
        EXPECT_EQ(lIt->GetKey(), lExpected--);
    EXPECT_EQ(lExpected, -1);
    for (int i = 0; i < 100; ++i) {
        const auto* lRecord = lMap.Find(i * 37 % 100);
        ASSERT_NE(lRecord, nullptr);
        EXPECT_EQ(lRecord->GetValue(), i);
    }
}

TEST(RedBlackTree, TakesAKeyWithItsValue) {
    Map::TreeType lTree;
    const auto [lRecord, lIsNew] = lTree.Insert(Map::KKeyValuePair(7, 1));
    ASSERT_NE(lRecord, nullptr);
    EXPECT_TRUE(lIsNew);
    EXPECT_EQ(lRecord->GetKey(), 7);
    EXPECT_EQ(lRecord->GetValue(), 1);
    const auto [lSame, lIsNewAgain] = lTree.Insert(Map::KKeyValuePair(7, 2));
    EXPECT_EQ(lSame, lRecord);
    EXPECT_FALSE(lIsNewAgain);
    EXPECT_EQ(lRecord->GetValue(), 1);
}

TEST(RedBlackTree, ReportsASlotThatIsTakenWhenKeysChangeTheirOrder) {
    ReportsATakenSlot(20, 5, 602);
    ReportsATakenSlot(5, 20, 608);
}

TEST(RedBlackTree, ReportsOncePerSiteWhenTheHandlerSilencesIt) {
    static int sReports = 0;
    sReports = 0;
    using OtherMap = KMap<int, long long, KLyrLessCompare<int>, KHungryAllocator>;
    const KAssertFailedHandler lBefore =
        KSetAssertFailedHandler([](const char*, const char*, unsigned long, const char*, bool* pHideForever) {
            ++sReports;
            *pHideForever = true;
        });
    OtherMap::IteratorType lEnd;
    ++lEnd;
    ++lEnd;
    EXPECT_EQ(sReports, 1);
    lEnd.operator->();
    EXPECT_EQ(sReports, 2);
    KSetAssertFailedHandler(lBefore);
}

}  // namespace
}  // namespace lyrsdk
