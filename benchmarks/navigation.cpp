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

// What a first walk showed: how far it came, in what time.
struct FirstWalk {
    Seen seen;
    double seconds;
};

template <typename Tree>
const FirstWalk& KeptFirstWalk(Shape pShape, int pCount) {
    constexpr double kPatience = 1;
    static std::map<std::pair<Shape, int>, FirstWalk> sWalks;
    const auto lFound = sWalks.find({pShape, pCount});
    if (lFound != sWalks.end())
        return lFound->second;
    const Tree& lTree = KeptTree<Tree>(pShape, pCount);
    std::vector<typename Tree::Node> lPath;
    const double lStart = CpuSeconds();
    const Seen lSeen = Walk(lTree, lPath, Patience(kPatience));
    return sWalks[{pShape, pCount}] = {lSeen, CpuSeconds() - lStart};
}

template <typename Tree>
void TimeWalk(benchmark::State& pState, Shape pShape, int pCount) {
    const FirstWalk& lFirst = KeptFirstWalk<Tree>(pShape, pCount);
    std::vector<typename Tree::Node> lPath;
    if (lFirst.seen.count < static_cast<std::size_t>(pCount)) {
        ReportCut(pState, lFirst.seconds, static_cast<double>(lFirst.seen.count));
        return;
    }
    std::vector<PointerTree::Node> lFloorPath;
    const Seen lFloor = Walk(PointerTree(MakeTree(pShape, pCount)), lFloorPath, Endless());
    Require(lFirst.seen == lFloor, std::string(Tree::kName) + " walks through all nodes in order");
    const Tree& lTree = KeptTree<Tree>(pShape, pCount);
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

// The node in the middle of the tree whose subtree is nearest to pSize nodes, and that size.
std::pair<int, int> FindSubtree(const Parents& pParents, int pSize) {
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
    return {static_cast<int>(lBest), lSizes[lBest]};
}

template <typename Until>
Seen WalkBelow(const KLyrPropertyHandle& pTop, Until pUntil) {
    Seen lSeen;
    for (KLyrPropertyHandle lNode = pTop.GetFirstDescendent(); lNode.Valid(); lNode = pTop.GetNextDescendent(lNode)) {
        lSeen.See(lNode.GetId());
        if (pUntil.IsOver())
            break;
    }
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
    return lSeen;
}

void TimeDescendants(benchmark::State& pState, Shape pShape, int pCount, int pSize) {
    const Parents lParents = MakeTree(pShape, pCount);
    const std::pair<int, int> lSubtree = FindSubtree(lParents, pSize);
    const KLyrPropertyHandle lTop = KeptTree<OurTree>(pShape, pCount).At(lSubtree.first);
    Require(WalkBelow(lTop, Endless()) == IdsBelow(lParents, lSubtree.first), "ours walks through a subtree");
    Measure(pState, lSubtree.second - 1, [&] { benchmark::DoNotOptimize(WalkBelow(lTop, Endless())); });
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
