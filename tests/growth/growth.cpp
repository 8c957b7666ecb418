// lyrsdk_growth [--smallest] [LAW...]
//
// Does the work of the named laws, or of all, at all their sizes. --list prints their names; --smallest takes only the
// smallest size. Under callgrind each size becomes a part of the profile that is named "law|growth|size".

#include "tests/growth/growth.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <string>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

#ifdef LYRSDK_COUNTS_INSTRUCTIONS
#include <valgrind/callgrind.h>
#else
#define CALLGRIND_START_INSTRUMENTATION
#define CALLGRIND_STOP_INSTRUMENTATION
#define CALLGRIND_DUMP_STATS_AT(pText) static_cast<void>(pText)
#endif

namespace lyrsdk {

namespace {

// Memory at the same cost for every block and at every time, so that only the library's own work grows. Blocks of one
// size, a power of two, are kept for the next one of that size.
class Blocks {
public:
    static void* Get(std::size_t pSize) {
        unsigned lClass = 5;
        while ((std::size_t(1) << lClass) < pSize + sizeof(Head))
            ++lClass;
        Head* lHead = sgFree[lClass];
        if (lHead)
            sgFree[lClass] = lHead->mNext;
        else
            lHead = static_cast<Head*>(Carve(std::size_t(1) << lClass));
        if (!lHead)
            return nullptr;
        lHead->mClass = lClass;
        return lHead + 1;
    }
    static void GiveBack(void* pBlock) {
        if (!pBlock)
            return;
        Head* lHead = static_cast<Head*>(pBlock) - 1;
        lHead->mNext = sgFree[lHead->mClass];
        sgFree[lHead->mClass] = lHead;
    }

private:
    struct alignas(std::max_align_t) Head {
        Head* mNext;
        unsigned mClass;
    };

    static void* Carve(std::size_t pSize) {
        constexpr std::size_t kChunk = std::size_t(1) << 20;
        if (pSize > kChunk)
            return std::malloc(pSize);
        if (pSize > sgLeft) {
            sgChunk = static_cast<char*>(std::malloc(kChunk));
            sgLeft = sgChunk ? kChunk : 0;
        }
        if (pSize > sgLeft)
            return nullptr;
        sgLeft -= pSize;
        return sgChunk + sgLeft;
    }

    static inline Head* sgFree[sizeof(std::size_t) * 8] = {};
    static inline char* sgChunk = nullptr;
    static inline std::size_t sgLeft = 0;
};

}  // namespace

CountedWork::CountedWork() {
    CALLGRIND_START_INSTRUMENTATION;
}

CountedWork::~CountedWork() {
    CALLGRIND_STOP_INSTRUMENTATION;
}

void Expect(bool pHolds, const char* pText) {
    if (pHolds)
        return;
    std::fprintf(stderr, "not so: %s\n", pText);
    std::exit(1);
}

std::vector<int> Numbers(int pFirst, int pCount, EOrder pOrder) {
    std::vector<int> lNumbers(static_cast<std::size_t>(pCount));
    std::iota(lNumbers.begin(), lNumbers.end(), pFirst);
    if (pOrder == eDescending)
        std::reverse(lNumbers.begin(), lNumbers.end());
    if (pOrder == eRandom)
        std::shuffle(lNumbers.begin(), lNumbers.end(), Dice());
    return lNumbers;
}

KString NameOf(int pNumber, ENames pNames) {
    if (pNames == eOneName)
        return KString("name");
    if (pNames == eOwnNames)
        return KString((std::string("name") + std::to_string(pNumber)).c_str());
    char lName[] = "abcdefghijklmnopqrstuvwx";
    for (char* lChar = lName; *lChar; ++lChar, pNumber /= 2)
        if (pNumber % 2)
            *lChar = static_cast<char>(*lChar - 'a' + 'A');
    return KString(lName);
}

// --- trees ---------------------------------------------------------------------------------------------------------

namespace {

Parents MakeParents(int pCount, const std::function<int(int)>& pParentOf) {
    Parents lParents(1, -1);
    for (int i = 1; i < pCount; ++i)
        lParents.push_back(pParentOf(i));
    return lParents;
}

}  // namespace

Parents Wide(int pCount) {
    return MakeParents(pCount, [](int) { return 0; });
}

Parents Deep(int pCount) {
    return MakeParents(pCount, [](int pId) { return pId - 1; });
}

Parents BreadthFirst(int pCount) {
    return MakeParents(pCount, [](int pId) { return (pId - 1) / 8; });
}

// Five levels, the last of which has no children; then the next child of the root.
Parents DepthFirst(int pCount) {
    constexpr int kLevels = 5;
    int lPath[kLevels] = {};
    return MakeParents(pCount, [&lPath](int pId) {
        int lBelow = 1;  // properties of a subtree one level down
        int lLevel = kLevels - 1;
        for (; lLevel > 1 && (pId - lPath[lLevel - 1]) > 8 * lBelow; --lLevel)
            lBelow = 8 * lBelow + 1;
        for (int i = lLevel; i < kLevels; ++i)
            lPath[i] = pId;
        return lLevel == 1 ? 0 : lPath[lLevel - 1];
    });
}

Parents AnyParents(int pCount) {
    std::minstd_rand lDice = Dice();
    return MakeParents(pCount, [&lDice](int pId) { return static_cast<int>(lDice() % static_cast<unsigned>(pId)); });
}

Parents Interleaved(int pCount, int pSubtree) {
    const int lSubtrees = std::max(1, pCount / pSubtree);
    return MakeParents(pCount, [lSubtrees](int pId) {
        const int lTree = (pId - 1) % lSubtrees;
        const int lRank = (pId - 1) / lSubtrees;
        return lRank == 0 ? 0 : (lRank - 1) / 8 * lSubtrees + lTree + 1;
    });
}

PagePtr MakePage(const Parents& pParents, ENames pNames) {
    PagePtr lPage(KLyrPropertyPage::Create("root", eUNIDENTIFIED));
    for (int i = 1; i < static_cast<int>(pParents.size()); ++i)
        Expect(lPage->Add(pParents[static_cast<std::size_t>(i)], NameOf(i, pNames).Buffer(), eINTEGER1) == i,
               "ids are given in turn");
    return lPage;
}

PagePtr MakeInstance(KLyrPropertyPage* pOf) {
    return PagePtr(KLyrPropertyPage::Create(pOf));
}

namespace {

std::vector<GrowthLaw> AllLaws() {
    std::vector<GrowthLaw> lAll;
    for (auto lMake : {&MapLaws, &TreeLaws, &WalkLaws, &InstanceLaws, &ConnectionLaws})
        for (const GrowthLaw& lLaw : lMake())
            lAll.push_back(lLaw);
    return lAll;
}

void Run(const GrowthLaw& pLaw, bool pSmallest) {
    for (int lSize : pLaw.mSizes) {
        pLaw.mWork(lSize);
        const std::string lPart = std::string(pLaw.mName) + "|" + pLaw.mGrowth + "|" + std::to_string(lSize);
        CALLGRIND_DUMP_STATS_AT(lPart.c_str());
        if (pSmallest)
            return;
    }
}

int Main(const std::vector<std::string>& pArguments) {
    std::vector<std::string> lNames;
    bool lSmallest = false;
    bool lList = false;
    for (const std::string& lArgument : pArguments) {
        lSmallest |= lArgument == "--smallest";
        lList |= lArgument == "--list";
        if (lArgument.compare(0, 2, "--") != 0)
            lNames.push_back(lArgument);
    }
    LyrSdkSetMemoryHandlers(&Blocks::Get, &Blocks::GiveBack);
    std::size_t lFound = 0;
    for (const GrowthLaw& lLaw : AllLaws()) {
        const bool lNamed = std::find(lNames.begin(), lNames.end(), lLaw.mName) != lNames.end();
        lFound += lNamed ? 1u : 0u;
        if (lList)
            std::printf("%s\n", lLaw.mName);
        else if (lNamed || lNames.empty())
            Run(lLaw, lSmallest);
    }
    Expect(lFound == lNames.size(), "every argument names a law");
    return 0;
}

}  // namespace
}  // namespace lyrsdk

int main(int pCount, char** pArguments) {
    return lyrsdk::Main(std::vector<std::string>(pArguments + 1, pArguments + pCount));
}
