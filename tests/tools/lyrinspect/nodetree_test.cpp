#include "tools/lyrinspect/nodetree.h"

#include <gtest/gtest.h>

namespace lyrsdk::inspect {
namespace {

struct Tree {
    std::vector<int> parents;
    Warnings warnings;
};

Tree TreeOf(std::size_t pCount, const std::vector<NodeEdge>& pEdges) {
    Tree lTree;
    lTree.parents = BuildNodeTree(
        pCount, pEdges, [](int pNode) { return "n" + std::to_string(pNode); }, lTree.warnings);
    return lTree;
}

TEST(NodeTree, KeepsAForestAsItIs) {
    const Tree lTree = TreeOf(5, {{0, 1}, {0, 2}, {2, 3}});
    EXPECT_EQ(lTree.parents, (std::vector<int>{-1, 0, 0, 2, -1}));
    EXPECT_EQ(lTree.warnings.Count(), 0u);
}

TEST(NodeTree, LeavesASecondParentOut) {
    const Tree lTree = TreeOf(3, {{0, 2}, {1, 2}});
    EXPECT_EQ(lTree.parents, (std::vector<int>{-1, -1, 0}));
    EXPECT_EQ(lTree.warnings.Texts(),
              std::vector<std::string>{"n2 already has the parent n0; the link from n1 is left out"});
}

TEST(NodeTree, LeavesANodeThatIsItsOwnChildOut) {
    const Tree lTree = TreeOf(1, {{0, 0}});
    EXPECT_EQ(lTree.parents, std::vector<int>{-1});
    EXPECT_EQ(lTree.warnings.Texts(), std::vector<std::string>{"n0 is listed as its own child; the link is left out"});
}

TEST(NodeTree, CutsEveryCycleOnce) {
    // 0 -> 1 -> 2 -> 0 with a tail 2 -> 3, and 4 -> 5 -> 4.
    const Tree lTree = TreeOf(6, {{0, 1}, {1, 2}, {2, 0}, {2, 3}, {4, 5}, {5, 4}});
    EXPECT_EQ(lTree.parents, (std::vector<int>{-1, 0, 1, 2, -1, 4}));
    EXPECT_EQ(lTree.warnings.Texts(),
              (std::vector<std::string>{"n0 is its own ancestor; the link from its parent n2 is left out",
                                        "n4 is its own ancestor; the link from its parent n5 is left out"}));
}

TEST(NodeTree, CutsACycleThatIsReachedFromOutsideIt) {
    // The walk from 0 enters the cycle 1 -> 2 -> 1 from below.
    const Tree lTree = TreeOf(3, {{1, 0}, {1, 2}, {2, 1}});
    EXPECT_EQ(lTree.parents, (std::vector<int>{1, -1, 1}));
    EXPECT_EQ(lTree.warnings.Count(), 1u);
}

TEST(NodeTree, TakesAChainAndARingOfAHundredThousand) {
    constexpr int kCount = 100000;
    std::vector<NodeEdge> lEdges;
    for (int i = 0; i + 1 < kCount; ++i)
        lEdges.push_back({i, i + 1});
    EXPECT_EQ(TreeOf(kCount, lEdges).warnings.Count(), 0u);
    lEdges.push_back({kCount - 1, 0});
    const Tree lRing = TreeOf(kCount, lEdges);
    EXPECT_EQ(lRing.warnings.Count(), 1u);
    EXPECT_EQ(lRing.parents[0], -1);
    EXPECT_EQ(lRing.parents[kCount - 1], kCount - 2);
}

}  // namespace
}  // namespace lyrsdk::inspect
