#include <algorithm>

#include "tests/growth/growth.h"

namespace lyrsdk {
namespace {

const std::vector<int> kSizes = {500, 4000, 32000};
constexpr int kSubtree = 200;
constexpr int kLargePage = 64100;

using Tree = Parents (*)(int);

// --- children and siblings -----------------------------------------------------------------------------------------

// Depth first; gives how many properties there are below pRoot.
int CountBelow(const KLyrPropertyPage* pPage, int pRoot) {
    int lCount = 0;
    for (int lId = pPage->GetChild(pRoot); lId != -1;) {
        ++lCount;
        int lNext = pPage->GetChild(lId);
        while (lNext == -1 && lId != pRoot) {
            lNext = pPage->GetSibling(lId);
            lId = pPage->GetParent(lId);
            if (lId == pRoot)
                break;
        }
        lId = lNext;
    }
    return lCount;
}

std::function<void(int)> WholeTree(Tree pTree) {
    return [pTree](int pCount) {
        PagePtr lPage = MakePage(pTree(pCount));
        int lSeen = 0;
        {
            const CountedWork lWork;
            lSeen = CountBelow(lPage.get(), 0);
        }
        Expect(lSeen == pCount - 1, "every property was visited");
    };
}

void WholeTreeOfInstance(int pCount) {
    PagePtr lPage = MakePage(AnyParents(pCount));
    PagePtr lInstance = MakeInstance(lPage.get());
    for (int lId : Numbers(1, pCount - 1, eRandom))
        if (lId % 2)
            lInstance->Set(lId, &lId, eINTEGER1, false);
    int lSeen = 0;
    {
        const CountedWork lWork;
        lSeen = CountBelow(lInstance.get(), 0);
    }
    Expect(lSeen == pCount - 1, "every property was visited");
}

// --- descendants ---------------------------------------------------------------------------------------------------

template <typename Visit>
int VisitDescendents(const KLyrPropertyPage* pPage, int pAncestor, const Visit& pVisit) {
    int lCount = 0;
    for (int lId = pPage->GetFirstDescendent(pAncestor); lId != -1; ++lCount) {
        pVisit(lId);
        lId = pPage->GetNextDescendent(pAncestor, lId);
    }
    return lCount;
}

int CountDescendents(const KLyrPropertyPage* pPage, int pAncestor) {
    return VisitDescendents(pPage, pAncestor, [](int) {});
}

// Where the properties of one subtree have their ids among those of the page.
enum ELayout { eTogether, eInTurn, eScattered, eChain, eUnderStem };

// A page of about pCount properties with a subtree of pSubtree properties, its root included; gives that root.
// eUnderStem: at the end of a chain of 100, which counts as part of it.
PagePtr MakeSubtree(int pCount, int pSubtree, ELayout pLayout, int* pRoot, ENames pNames = eOwnNames) {
    std::vector<int> lIds = Numbers(2, pCount - 2, pLayout == eScattered ? eRandom : eAscending);
    const int lStep = pLayout == eTogether ? 1 : std::max(1, (pCount - 2) / pSubtree);
    std::vector<int> lMine;
    for (int i = 0; i < pSubtree; ++i) {
        const int lAt = i * (pLayout == eScattered ? 1 : lStep);
        lMine.push_back(lIds[static_cast<std::size_t>(lAt)]);
    }
    std::sort(lMine.begin(), lMine.end());

    // Property 1 is the parent of all others, so that they make one large subtree.
    std::minstd_rand lDice = Dice();
    Parents lParents(static_cast<std::size_t>(pCount), 1);
    lParents[1] = 0;
    for (int i = 1; i < pSubtree; ++i) {
        int lParent = (i - 1) / 8;
        if (pLayout == eScattered)
            lParent = static_cast<int>(lDice() % static_cast<unsigned>(i));
        if (pLayout == eChain)
            lParent = i - 1;
        if (pLayout == eUnderStem)
            lParent = std::min(i - 1, 100);
        lParents[static_cast<std::size_t>(lMine[static_cast<std::size_t>(i)])] =
            lMine[static_cast<std::size_t>(lParent)];
    }
    *pRoot = lMine[0];
    return MakePage(lParents, pNames);
}

void WalkSubtree(int pCount, int pSubtree, ELayout pLayout) {
    int lRoot = 0;
    PagePtr lPage = MakeSubtree(pCount, pSubtree, pLayout, &lRoot);
    int lSeen = 0;
    {
        const CountedWork lWork;
        lSeen = CountDescendents(lPage.get(), lRoot);
    }
    Expect(lSeen == pSubtree - 1, "every descendant was visited");
}

std::function<void(int)> InPageOf(ELayout pLayout) {
    return [pLayout](int pCount) { WalkSubtree(pCount, kSubtree, pLayout); };
}

std::function<void(int)> SubtreeOf(ELayout pLayout) {
    return [pLayout](int pCount) { WalkSubtree(kLargePage, pCount, pLayout); };
}

// All subtrees of an interleaved page, one after the other.
void AllSubtrees(int pCount) {
    PagePtr lPage = MakePage(Interleaved(pCount + 1, 100));
    int lSeen = 0;
    {
        const CountedWork lWork;
        for (int lChild = lPage->GetChild(0); lChild != -1; lChild = lPage->GetSibling(lChild))
            lSeen += 1 + CountDescendents(lPage.get(), lChild);
    }
    Expect(lSeen == pCount, "every property was visited");
}

std::function<void(int)> WholePage(Tree pTree, int pAncestor) {
    return [pTree, pAncestor](int pCount) {
        PagePtr lPage = MakePage(pTree(pCount));
        int lSeen = 0;
        {
            const CountedWork lWork;
            lSeen = CountDescendents(lPage.get(), pAncestor);
        }
        Expect(pAncestor > 0 || lSeen == pCount - 1, "every property was visited");
    };
}

// --- walks while something else happens ----------------------------------------------------------------------------

// Pages of twice as many properties, half of them in the subtree that is walked.
template <typename Step>
std::function<void(int)> WalkAnd(ELayout pLayout, const Step& pStep) {
    return [pLayout, pStep](int pCount) {
        int lRoot = 0;
        PagePtr lPage = MakeSubtree(2 * pCount + 2, pCount, pLayout, &lRoot);
        int lSeen = 0;
        {
            const CountedWork lWork;
            lSeen = VisitDescendents(lPage.get(), lRoot, [&](int pId) { pStep(lPage.get(), lRoot, pId); });
        }
        Expect(lSeen >= pCount - 1, "every descendant was visited");
    };
}

// Leaves only: what is below a property that goes is no descendant any more.
void RemoveIt(KLyrPropertyPage* pPage, int, int pId) {
    if (pPage->GetChild(pId) == -1)
        pPage->RemoveOwnEntry(pId);
}

void AddElsewhere(KLyrPropertyPage* pPage, int, int) {
    pPage->Add(0, "new", eINTEGER1);
}

void MakeAndDestroyInstance(KLyrPropertyPage* pPage, int, int pId) {
    KLyrPropertyPage* lInstance = KLyrPropertyPage::Create(pPage);
    lInstance->Set(pId, &pId, eINTEGER1, false);
    lInstance->Destroy();
}

void WalkItsSubtree(KLyrPropertyPage* pPage, int, int pId) {
    CountDescendents(pPage, pId);
}

void WalkInstanceAndOverride(int pCount) {
    int lRoot = 0;
    PagePtr lPage = MakeSubtree(2 * pCount + 2, pCount, eInTurn, &lRoot);
    PagePtr lInstance = MakeInstance(lPage.get());
    int lSeen = 0;
    {
        const CountedWork lWork;
        lSeen = VisitDescendents(lInstance.get(), lRoot, [&](int pId) { lInstance->Set(pId, &pId, eINTEGER1, false); });
    }
    Expect(lSeen == pCount - 1, "every descendant was visited");
}

// --- properties of many pages, and properties that come -------------------------------------------------------------

// A chain of pStem properties below pParent; gives the last one.
int AddStem(KLyrPropertyPage* pPage, int pParent, int pStem) {
    for (int i = 0; i < pStem; ++i)
        pParent = pPage->Add(pParent, "stem", eINTEGER1);
    return pParent;
}

// An instance that has as many as its page, far below the ancestor, and the page got its own last.
void WalkInstanceOfGrownPage(int pCount) {
    PagePtr lPage = MakePage({0, 0});
    PagePtr lInstance = MakeInstance(lPage.get());
    const int lParent = AddStem(lInstance.get(), 1, 40);
    for (KLyrPropertyPage* lAddTo : {lInstance.get(), lPage.get()})
        for (int i = 0; i < pCount; ++i)
            lAddTo->Add(lParent, "own", eINTEGER1);
    int lSeen = 0;
    {
        const CountedWork lWork;
        lSeen = CountDescendents(lInstance.get(), 1);
    }
    Expect(lSeen == 40 + 2 * pCount, "every descendant was visited");
}

// A chain of pages with 100 properties each, and one in the subtree that is walked. A step looks at every page.
void WalkChainOfSmallPages(int pCount) {
    PagePtr lPage = MakePage({0, 0, 0});
    lPage->Add(1, "first", eINTEGER1);
    std::vector<PagePtr> lChain;
    for (int i = 0; i < pCount; ++i) {
        lChain.push_back(MakeInstance(i == 0 ? lPage.get() : lChain.back().get()));
        for (int j = 0; j < 100; ++j)
            lChain.back()->Add(2, "other", eINTEGER1);
    }
    lChain.back()->Add(1, "last", eINTEGER1);
    int lSeen = 0;
    {
        const CountedWork lWork;
        lSeen = CountDescendents(lChain.back().get(), 1);
    }
    Expect(lSeen == 2, "every descendant was visited");
    while (!lChain.empty())
        lChain.pop_back();
}

// Each property gets a child when the walk comes to it.
void WalkChainThatGrows(int pCount) {
    PagePtr lPage = MakePage(Wide(200));
    int lLast = lPage->Add(1, "first", eINTEGER1);
    int lSeen = 0;
    {
        const CountedWork lWork;
        lSeen = VisitDescendents(lPage.get(), 1, [&](int pId) {
            if (pId - lLast < pCount)
                lPage->Add(pId, "next", eINTEGER1);
        });
    }
    Expect(lSeen == pCount + 1, "every descendant was visited");
}

// A small subtree, walked whenever a property came at the end of a long chain elsewhere.
void WalkAndAddFarBelow(int pCount) {
    PagePtr lPage = MakePage({0, 0, 0, 1});
    int lEnd = AddStem(lPage.get(), 2, pCount);
    int lSeen = 0;
    {
        const CountedWork lWork;
        for (int i = 0; i < 20; ++i) {
            lEnd = lPage->Add(lEnd, "new", eINTEGER1);
            lSeen += CountDescendents(lPage.get(), 1);
        }
    }
    Expect(lSeen == 20, "the descendant was visited each time");
}

// Only the first descendant of a large subtree, with a property of another subtree before it.
void FirstOfManyDescendents(int pCount) {
    PagePtr lPage = MakePage(Interleaved(2 * pCount, pCount));
    int lFirst = -1;
    {
        const CountedWork lWork;
        lFirst = lPage->GetFirstDescendent(1);
    }
    Expect(lFirst == 3, "the first descendant was found");
}

// Two subtrees, one step in each.
void TwoInTurns(int pCount) {
    PagePtr lPage = MakePage(Interleaved(4 * pCount, pCount));
    int lAt[2] = {1, 2};
    int lSeen = 0;
    {
        const CountedWork lWork;
        while (lAt[0] != -1 || lAt[1] != -1) {
            for (int i = 0; i < 2; ++i) {
                lAt[i] = lAt[i] == -1 ? -1 : lPage->GetNextDescendent(i + 1, lAt[i]);
                lSeen += lAt[i] != -1 ? 1 : 0;
            }
        }
    }
    Expect(lSeen == 2 * pCount - 2, "every descendant of both was visited");
}

}  // namespace

std::vector<GrowthLaw> WalkLaws() {
    return {
        {"children.wide", "n log n", kSizes, WholeTree(Wide)},
        {"children.deep", "n log n", kSizes, WholeTree(Deep)},
        {"children.depth-first", "n log n", kSizes, WholeTree(DepthFirst)},
        {"children.breadth-first", "n log n", kSizes, WholeTree(BreadthFirst)},
        {"children.any-parents", "n log n", kSizes, WholeTree(AnyParents)},
        {"children.instance", "n log n", kSizes, WholeTreeOfInstance},
        {"descendants.in-page-of.together", "log n", kSizes, InPageOf(eTogether)},
        {"descendants.in-page-of.in-turn", "log n", kSizes, InPageOf(eInTurn)},
        {"descendants.in-page-of.scattered", "log n", kSizes, InPageOf(eScattered)},
        {"descendants.in-page-of.chain", "log n", kSizes, InPageOf(eChain)},
        {"descendants.of.together", "n log n", kSizes, SubtreeOf(eTogether)},
        {"descendants.of.in-turn", "n log n", kSizes, SubtreeOf(eInTurn)},
        {"descendants.of.scattered", "n log n", kSizes, SubtreeOf(eScattered)},
        {"descendants.of.chain", "n log n", kSizes, SubtreeOf(eChain)},
        {"descendants.of.under-stem", "n log n", kSizes, SubtreeOf(eUnderStem)},
        {"descendants.all-subtrees", "n log n", kSizes, AllSubtrees},
        {"descendants.whole-page.root", "n log n", kSizes, WholePage(AnyParents, 0)},
        {"descendants.whole-page.deep", "n log n", kSizes, WholePage(Deep, 1)},
        {"descendants.whole-page.breadth-first", "n log n", kSizes, WholePage(BreadthFirst, 1)},
        {"descendants.and-remove.in-turn", "n log n", kSizes, WalkAnd(eInTurn, RemoveIt)},
        {"descendants.and-remove.under-stem", "n log n", kSizes, WalkAnd(eUnderStem, RemoveIt)},
        {"descendants.and-add", "n log n", kSizes, WalkAnd(eInTurn, AddElsewhere)},
        {"descendants.and-override", "n log n", kSizes, WalkInstanceAndOverride},
        {"descendants.and-instance", "n log n", {100, 800, 6400}, WalkAnd(eInTurn, MakeAndDestroyInstance)},
        {"descendants.and-add-below", "n log n", kSizes, WalkChainThatGrows},
        {"descendants.and-add-far-below", "log n", kSizes, WalkAndAddFarBelow},
        {"descendants.instance-of-grown-page", "n log n", {500, 4000}, WalkInstanceOfGrownPage},
        {"descendants.chain-of-small-pages", "n log n", {10, 80, 640}, WalkChainOfSmallPages},
        {"descendants.nested", "n log n", {100, 800, 6400}, WalkAnd(eInTurn, WalkItsSubtree)},
        {"descendants.first", "log n", kSizes, FirstOfManyDescendents},
        {"descendants.two-in-turns", "n log n", {100, 800, 6400}, TwoInTurns},
    };
}

}  // namespace lyrsdk
