#pragma once

// Growth laws: work of growing size, and how its cost may grow. scripts/growth counts the instructions.
//
// There is no law for what the headers do not promise:
//
//   - finding a name with case among m siblings whose names differ from it only by case, or with a type info among m
//     namesakes of other types: m a lookup
//   - three or more walks over descendants that take turns, each with gaps between its ids: k a step
//   - removing, on such a walk, property after property that still has children, more than 32 levels below the
//     ancestor: k a step
//   - destroying the pages of a chain from the first to the last, each of which added properties: every page gets
//     copies of all that the pages before it had

#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "lyrfilesdk/components/kbaselib/klib/kstring.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

namespace lyrsdk {

// How the cost of the whole work may grow with its size: "1", "log n", "n" or "n log n".
struct GrowthLaw {
    const char* mName;
    const char* mGrowth;
    std::vector<int> mSizes;
    std::function<void(int)> mWork;
};

// Instructions count while one of these is alive. What a law prepares, checks and clears away stays outside.
class CountedWork {
public:
    CountedWork();
    ~CountedWork();
    CountedWork(const CountedWork&) = delete;
    CountedWork& operator=(const CountedWork&) = delete;
};

// Ends the program when the work was not done.
void Expect(bool pHolds, const char* pText);

enum EOrder { eAscending, eDescending, eRandom };

// The numbers from pFirst on, pCount of them.
std::vector<int> Numbers(int pFirst, int pCount, EOrder pOrder);

// A generator that gives the same numbers in every run.
inline std::minstd_rand Dice() {
    return std::minstd_rand(20011);
}

// One name for all, one for each, or names that are equal but for case.
enum ENames { eOneName, eOwnNames, eCaseOnly };

KString NameOf(int pNumber, ENames pNames);

// A tree: the parent of each property from id 1 on; entry 0 is the root's and not used. Ids count in the order of the
// list, so that a parent stands in front of its children.
using Parents = std::vector<int>;

Parents Wide(int pCount);
Parents Deep(int pCount);
// Eight children each, ids level by level, or each subtree in one piece.
Parents BreadthFirst(int pCount);
Parents DepthFirst(int pCount);
Parents AnyParents(int pCount);
// Subtrees of pSubtree properties below the root, that get their ids in turn.
Parents Interleaved(int pCount, int pSubtree);

// Pages that are destroyed with the scope, outside of what counts.
struct PageDeleter {
    void operator()(KLyrPropertyPage* pPage) const { pPage->Destroy(); }
};
using PagePtr = std::unique_ptr<KLyrPropertyPage, PageDeleter>;

PagePtr MakePage(const Parents& pParents, ENames pNames = eOwnNames);
PagePtr MakeInstance(KLyrPropertyPage* pOf);

std::vector<GrowthLaw> MapLaws();
std::vector<GrowthLaw> TreeLaws();
std::vector<GrowthLaw> WalkLaws();
std::vector<GrowthLaw> InstanceLaws();
std::vector<GrowthLaw> ConnectionLaws();

}  // namespace lyrsdk
