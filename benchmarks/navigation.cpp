// Walks over all properties of a page, and over those below one of them.

#include <map>

#include "benchmarks/navigation_trees.h"
#include "lyrfilesdk/lyrsdk.h"

namespace lyrsdk::bench {

namespace {

class OurTree {
public:
    using Node = KLyrPropertyHandle;
    static constexpr char kName[] = "ours";

    explicit OurTree(const Parents& pParents) : mRoot(KLyrPropertyHandle::Create()) {
        for (std::size_t i = 1; i < pParents.size(); ++i) {
            const int lId = mRoot.GetPage()->Add(pParents[i], "node", eINTEGER1);
            Require(lId == static_cast<int>(i), "ours counts its ids");
        }
    }
    ~OurTree() { mRoot.Destroy(); }
    OurTree(const OurTree&) = delete;
    OurTree& operator=(const OurTree&) = delete;

    Node Root() const { return mRoot; }
    static int Id(const Node& pNode) { return pNode.GetId(); }
    static bool Is(const Node& pNode) { return pNode.Valid(); }
    static Node Child(const Node& pNode) { return pNode.GetChild(); }
    static Node Sibling(const Node& pNode) { return pNode.GetSibling(); }
    Node At(int pId) const { return KLyrPropertyHandle(mRoot.GetPage(), pId); }

private:
    KLyrPropertyHandle mRoot;
};

// The links of each node in a map by its id: a step is a lookup.
class MapTree {
public:
    using Node = int;
    static constexpr char kName[] = "std::map";

    explicit MapTree(const Parents& pParents) {
        const std::vector<Links> lLinks = LinksOf(pParents);
        for (std::size_t i = 0; i < lLinks.size(); ++i)
            mLinks.emplace(static_cast<int>(i), lLinks[i]);
    }
    static Node Root() { return 0; }
    static int Id(Node pNode) { return pNode; }
    static bool Is(Node pNode) { return pNode >= 0; }
    Node Child(Node pNode) const { return mLinks.find(pNode)->second.child; }
    Node Sibling(Node pNode) const { return mLinks.find(pNode)->second.sibling; }

private:
    std::map<int, Links> mLinks;
};

// Nodes that point at each other.
class PointerTree {
    struct Linked {
        int id;
        const Linked* child;
        const Linked* sibling;
    };

public:
    using Node = const Linked*;
    static constexpr char kName[] = "vector of pointers";

    explicit PointerTree(const Parents& pParents) {
        const std::vector<Links> lLinks = LinksOf(pParents);
        for (std::size_t i = 0; i < lLinks.size(); ++i)
            mNodes.push_back(std::make_unique<Linked>(Linked{static_cast<int>(i), nullptr, nullptr}));
        for (std::size_t i = 0; i < lLinks.size(); ++i) {
            mNodes[i]->child = At(lLinks[i].child);
            mNodes[i]->sibling = At(lLinks[i].sibling);
        }
    }
    Node Root() const { return mNodes.front().get(); }
    static int Id(Node pNode) { return pNode->id; }
    static bool Is(Node pNode) { return pNode != nullptr; }
    static Node Child(Node pNode) { return pNode->child; }
    static Node Sibling(Node pNode) { return pNode->sibling; }

private:
    Node At(int pIndex) const { return pIndex < 0 ? nullptr : mNodes[static_cast<std::size_t>(pIndex)].get(); }

    std::vector<std::unique_ptr<Linked>> mNodes;
};

// What a first walk showed: how far it came, in what time. It is made once, whatever the repetitions.
struct FirstWalk {
    Seen seen;
    double seconds = 0;

    // Whether it took so long that it is not made again to be timed.
    bool Stands() const { return !seen.complete || seconds > 0.4; }
};

// pWalk walks and gives what it saw; pExpected is what a complete walk sees.
template <typename WalkOnce, typename Expected>
const FirstWalk& MakeFirstWalk(const std::string& pName, WalkOnce pWalk, Expected pExpected) {
    static std::map<std::string, FirstWalk> sWalks;
    const auto lPlace = sWalks.emplace(pName, FirstWalk());
    FirstWalk& lFirst = lPlace.first->second;
    if (!lPlace.second)
        return lFirst;
    const double lStart = CpuSeconds();
    lFirst.seen = pWalk();
    lFirst.seconds = CpuSeconds() - lStart;
    Require(!lFirst.seen.complete || lFirst.seen == pExpected(), pName + " walks through all nodes in order");
    return lFirst;
}

void ReportFirstWalk(benchmark::State& pState, const FirstWalk& pFirst) {
    const auto lItems = static_cast<double>(pFirst.seen.count);
    if (!pFirst.seen.complete) {
        ReportCut(pState, pFirst.seconds, lItems);
        return;
    }
    for ([[maybe_unused]] auto lPass : pState)
        pState.SetIterationTime(pFirst.seconds);
    pState.counters["items"] = lItems;
}

constexpr double kPatience = 1;

template <typename Tree>
void TimeWalk(benchmark::State& pState, Shape pShape, int pCount) {
    const Tree& lTree = KeptTree<Tree>(pShape, pCount);
    std::vector<typename Tree::Node> lPath;
    const FirstWalk& lFirst = MakeFirstWalk(
        std::string(Tree::kName) + NameOf(pShape) + std::to_string(pCount),
        [&] { return Walk(lTree, lPath, Patience(kPatience)); },
        [&] {
            std::vector<PointerTree::Node> lFloorPath;
            return Walk(PointerTree(MakeTree(pShape, pCount)), lFloorPath, Endless());
        });
    if (lFirst.Stands()) {
        ReportFirstWalk(pState, lFirst);
        return;
    }
    Measure(pState, pCount, [&] { benchmark::DoNotOptimize(Walk(lTree, lPath, Endless())); });
}

template <typename Tree>
void AddWalkSides() {
    for (Shape lShape : {Shape::eWide, Shape::eDeep, Shape::eDepthFirst, Shape::eBreadthFirst}) {
        for (int lCount : {1000, 100000, 1000000}) {
            AddSide("walk " + NameOf(lShape) + "/" + std::to_string(lCount), Tree::kName,
                    [lShape, lCount](benchmark::State& pState) { TimeWalk<Tree>(pState, lShape, lCount); });
        }
    }
}

// The node near the middle of the tree whose subtree is nearest to pSize nodes.
int FindSubtree(const Parents& pParents, int pSize) {
    std::vector<int> lSizes(pParents.size(), 1);
    for (std::size_t i = pParents.size() - 1; i > 0; --i)
        lSizes[static_cast<std::size_t>(pParents[i])] += lSizes[i];
    std::size_t lBest = 0;
    for (std::size_t i = 0; i < lSizes.size(); ++i) {
        const int lOff = std::abs(lSizes[i] - pSize);
        const int lBestOff = std::abs(lSizes[lBest] - pSize);
        const auto lMiddle = [&](std::size_t pId) {
            return std::abs(static_cast<double>(pId) / static_cast<double>(lSizes.size()) - 0.5);
        };
        if (lOff < lBestOff || (lOff == lBestOff && lMiddle(i) < lMiddle(lBest)))
            lBest = i;
    }
    return static_cast<int>(lBest);
}

template <typename Until>
Seen WalkBelow(const KLyrPropertyHandle& pTop, Until pUntil) {
    Seen lSeen;
    for (KLyrPropertyHandle lNode = pTop.GetFirstDescendent(); lNode.Valid(); lNode = pTop.GetNextDescendent(lNode)) {
        lSeen.See(lNode.GetId());
        if (pUntil.IsOver())
            return lSeen;
    }
    lSeen.complete = true;
    return lSeen;
}

// The descendants come in ascending order of their ids, wherever they are in the tree.
Seen IdsBelow(const Parents& pParents, int pTop) {
    Seen lSeen;
    std::vector<bool> lBelow(pParents.size());
    for (std::size_t i = static_cast<std::size_t>(pTop) + 1; i < pParents.size(); ++i) {
        lBelow[i] = pParents[i] == pTop || (pParents[i] > 0 && lBelow[static_cast<std::size_t>(pParents[i])]);
        if (lBelow[i])
            lSeen.See(static_cast<int>(i));
    }
    lSeen.complete = true;
    return lSeen;
}

void TimeDescendants(benchmark::State& pState, Shape pShape, int pCount, int pSize) {
    static std::map<std::string, int> sTops;
    const std::string lName = std::to_string(pSize) + NameOf(pShape) + std::to_string(pCount);
    const auto lPlace = sTops.emplace(lName, 0);
    if (lPlace.second)
        lPlace.first->second = FindSubtree(MakeTree(pShape, pCount), pSize);
    const int lId = lPlace.first->second;
    const KLyrPropertyHandle lTop = KeptTree<OurTree>(pShape, pCount).At(lId);
    const FirstWalk& lFirst = MakeFirstWalk(
        lName, [&] { return WalkBelow(lTop, Patience(kPatience)); },
        [&] { return IdsBelow(MakeTree(pShape, pCount), lId); });
    if (lFirst.Stands()) {
        ReportFirstWalk(pState, lFirst);
        return;
    }
    Measure(pState, static_cast<double>(lFirst.seen.count),
            [&] { benchmark::DoNotOptimize(WalkBelow(lTop, Endless())); });
}

const Registration sgRegistration([] {
    AddWalkSides<OurTree>();
    AddWalkSides<MapTree>();
    AddWalkSides<PointerTree>();
    for (Shape lShape : {Shape::eDepthFirst, Shape::eBreadthFirst}) {
        for (int lCount : {10000, 100000, 1000000}) {
            for (int lSize : {72, 584}) {
                AddSide("descendants " + std::to_string(lSize) + ", " + NameOf(lShape) + "/" + std::to_string(lCount),
                        "ours", [lShape, lCount, lSize](benchmark::State& pState) {
                            TimeDescendants(pState, lShape, lCount, lSize);
                        });
            }
        }
    }
});

}  // namespace

}  // namespace lyrsdk::bench
