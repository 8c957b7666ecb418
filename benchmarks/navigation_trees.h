#pragma once

// Trees to be walked. A tree is the list of its nodes' parents; a node's id is its place in the list, the root is 0,
// and the children of a node come in ascending order.

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/support/bench.h"

namespace lyrsdk::bench {

enum class Shape {
    eWide,        // all below the root
    eDeep,        // each below the one before
    eDepthFirst,  // eight below each, numbered depth first
    eBreadthFirst
};

using Parents = std::vector<int>;

inline std::string NameOf(Shape pShape) {
    const char* const kNames[] = {"wide", "deep", "depth-first ids", "breadth-first ids"};
    return kNames[static_cast<int>(pShape)];
}

inline Parents MakeTree(Shape pShape, int pCount) {
    constexpr int kFanOut = 8;
    const auto lCount = static_cast<std::size_t>(pCount);
    Parents lParents(lCount, -1);
    if (pShape == Shape::eDepthFirst) {
        // The breadth-first tree, renumbered: a node comes behind its siblings' nodes with smaller numbers. Sizes of
        // the subtrees are summed up from the leaves.
        std::vector<int> lSizes(lCount, 1);
        for (std::size_t i = lCount - 1; i > 0; --i)
            lSizes[(i - 1) / kFanOut] += lSizes[i];
        std::vector<int> lIds(lCount, 0);
        std::vector<int> lNext(lCount, 1);
        for (std::size_t i = 1; i < lCount; ++i) {
            const std::size_t lParent = (i - 1) / kFanOut;
            lIds[i] = lNext[lParent];
            lNext[lParent] += lSizes[i];
            lNext[i] = lIds[i] + 1;
            lParents[static_cast<std::size_t>(lIds[i])] = lIds[lParent];
        }
        return lParents;
    }
    for (int i = 1; i < pCount; ++i) {
        const int lParent = pShape == Shape::eWide ? 0 : pShape == Shape::eDeep ? i - 1 : (i - 1) / kFanOut;
        lParents[static_cast<std::size_t>(i)] = lParent;
    }
    return lParents;
}

struct Links {
    int child = -1;
    int sibling = -1;
};

inline std::vector<Links> LinksOf(const Parents& pParents) {
    std::vector<Links> lLinks(pParents.size());
    for (std::size_t i = pParents.size() - 1; i > 0; --i) {
        Links& lParent = lLinks[static_cast<std::size_t>(pParents[i])];
        lLinks[i].sibling = lParent.child;
        lParent.child = static_cast<int>(i);
    }
    return lLinks;
}

// What a walk has seen: how many nodes, a number that depends on them and on their order, and whether it came to its
// end.
struct Seen {
    std::size_t count = 0;
    std::size_t order = 0;
    bool complete = false;

    void See(int pId) {
        ++count;
        order = order * 31 + static_cast<std::size_t>(pId) + 1;
    }
    bool operator==(const Seen& pOther) const {
        return count == pOther.count && order == pOther.order && complete == pOther.complete;
    }
};

// Gives a walk up that would take too long to be worth its time.
class Patience {
public:
    explicit Patience(double pSeconds) : mEnd(CpuSeconds() + pSeconds) {}

    bool IsOver() {
        if (++mSteps % 16)
            return false;
        return CpuSeconds() > mEnd;
    }

private:
    double mEnd;
    unsigned mSteps = 0;
};

// No patience is needed where it is known that the walk ends.
struct Endless {
    static bool IsOver() { return false; }
};

// From the root on, each node before what is below it. The nodes on the way down are kept in pPath.
template <typename Tree, typename Until>
Seen Walk(const Tree& pTree, std::vector<typename Tree::Node>& pPath, Until pUntil) {
    Seen lSeen;
    pPath.clear();
    typename Tree::Node lNode = pTree.Root();
    for (;;) {
        lSeen.See(pTree.Id(lNode));
        typename Tree::Node lNext = pTree.Child(lNode);
        if (pTree.Is(lNext)) {
            pPath.push_back(lNode);
        } else {
            for (;;) {
                lSeen.complete = pPath.empty();
                if (lSeen.complete || pUntil.IsOver())
                    return lSeen;
                lNext = pTree.Sibling(lNode);
                if (pTree.Is(lNext))
                    break;
                lNode = pPath.back();
                pPath.pop_back();
            }
        }
        lNode = lNext;
    }
}

// The trees are kept for all repetitions.
template <typename Tree>
const Tree& KeptTree(Shape pShape, int pCount) {
    static std::map<std::pair<Shape, int>, std::unique_ptr<Tree>> sTrees;
    std::unique_ptr<Tree>& lTree = sTrees[{pShape, pCount}];
    if (!lTree)
        lTree = std::make_unique<Tree>(MakeTree(pShape, pCount));
    return *lTree;
}

}  // namespace lyrsdk::bench
