#include <algorithm>

#include "tests/growth/growth.h"

namespace lyrsdk {
namespace {

const std::vector<int> kSizes = {500, 4000, 32000};
const std::vector<int> kSiblings = {10, 100, 1000, 10000};
constexpr int kLookups = 1000;

std::size_t At(int pIndex) {
    return static_cast<std::size_t>(pIndex);
}

using Tree = Parents (*)(int);

std::vector<KString> NamesOf(int pCount, ENames pNames) {
    std::vector<KString> lNames;
    for (int i = 0; i < pCount; ++i)
        lNames.push_back(NameOf(i, pNames));
    return lNames;
}

// --- adding and removing -------------------------------------------------------------------------------------------

std::function<void(int)> Add(Tree pTree, ENames pNames) {
    return [pTree, pNames](int pCount) {
        const Parents lParents = pTree(pCount);
        const std::vector<KString> lNames = NamesOf(pCount, pNames);
        PagePtr lPage(KLyrPropertyPage::Create("root", eUNIDENTIFIED));
        {
            const CountedWork lWork;
            for (int i = 1; i < pCount; ++i)
                lPage->Add(lParents[At(i)], lNames[At(i)].Buffer(), eINTEGER1);
        }
        Expect(lPage->GetPropertyEntryCount() == pCount, "every property was added");
    };
}

std::function<void(int)> Remove(Tree pTree, ENames pNames, EOrder pOrder) {
    return [pTree, pNames, pOrder](int pCount) {
        PagePtr lPage = MakePage(pTree(pCount), pNames);
        const std::vector<int> lIds = Numbers(1, pCount - 1, pOrder);
        {
            const CountedWork lWork;
            for (int lId : lIds)
                lPage->RemoveOwnEntry(lId);
        }
        Expect(lPage->GetPropertyEntryCount() == 1, "only the root is left");
    };
}

// Some of the last ones of many that are removed in any order: a tree of names may not get deeper as it gets smaller.
std::function<void(int)> RemoveLate(ENames pNames) {
    return [pNames](int pCount) {
        PagePtr lPage = MakePage(Wide(pCount), pNames);
        const std::vector<int> lIds = Numbers(1, pCount - 1, eRandom);
        const auto lLate = lIds.begin() + pCount / 4 * 3;
        const auto lLeft = lIds.begin() + pCount / 8 * 7;
        for (auto lId = lIds.begin(); lId != lLate; ++lId)
            lPage->RemoveOwnEntry(*lId);
        {
            const CountedWork lWork;
            for (auto lId = lLate; lId != lLeft; ++lId)
                lPage->RemoveOwnEntry(*lId);
        }
        const int lFirst = *std::min_element(lLeft, lIds.end());
        Expect(lPage->Find(0, "name", nullptr, true, nullptr) == lFirst, "the others are left");
    };
}

// One goes, one comes, so that what is dead has to be swept out again and again.
std::function<void(int)> Churn(ENames pNames) {
    return [pNames](int pCount) {
        PagePtr lPage = MakePage(Wide(pCount), pNames);
        const std::vector<int> lIds = Numbers(1, pCount - 1, eRandom);
        const std::vector<KString> lNames = NamesOf(pCount, pNames);
        {
            const CountedWork lWork;
            for (int lRound = 0; lRound < 2; ++lRound) {
                for (int lId : lIds) {
                    const char* lName = lNames[At(lId)].Buffer();
                    lPage->RemoveOwnEntry(lId + lRound * (pCount - 1));
                    lPage->Add(0, lName, eINTEGER1);
                    Expect(lPage->Find(0, lName, nullptr, true, nullptr) != -1, "what was added is found");
                }
            }
        }
        Expect(lPage->GetPropertyEntryCount() == 3 * pCount - 2, "as many came as went");
    };
}

void DestroyPage(int pCount) {
    PagePtr lPage = MakePage(AnyParents(pCount));
    const CountedWork lWork;
    lPage.reset();
}

void DestroyDeepPage(int pCount) {
    PagePtr lPage = MakePage(Deep(pCount), eOneName);
    const CountedWork lWork;
    lPage.reset();
}

std::function<void(int)> AddTyped(Tree pTree) {
    return [pTree](int pCount) {
        PagePtr lType = MakePage(pTree(pCount));
        PagePtr lPage(KLyrPropertyPage::Create("root", eUNIDENTIFIED));
        {
            const CountedWork lWork;
            lPage->Add(0, "typed", lType.get());
        }
        Expect(lPage->GetPropertyEntryCount() == pCount + 1, "the whole type was copied");
    };
}

// --- names ---------------------------------------------------------------------------------------------------------

enum ESeenFrom { eItself, eAnInstance };

std::function<void(int)> FindAmong(bool pHits, bool pCase, ESeenFrom pSeenFrom = eItself) {
    return [pHits, pCase, pSeenFrom](int pCount) {
        PagePtr lPage = MakePage(Wide(pCount + 1));
        PagePtr lInstance = MakeInstance(lPage.get());
        const KLyrPropertyPage* lSeen = pSeenFrom == eItself ? lPage.get() : lInstance.get();
        std::minstd_rand lDice = Dice();
        std::vector<KString> lNames;
        for (int i = 0; i < kLookups; ++i) {
            const int lNumber = static_cast<int>(lDice() % static_cast<unsigned>(pCount)) + 1;
            lNames.push_back(NameOf(pHits ? lNumber : -lNumber, eOwnNames));
        }
        int lFound = 0;
        {
            const CountedWork lWork;
            for (const KString& lName : lNames)
                lFound += lSeen->Find(0, lName.Buffer(), nullptr, pCase, nullptr) != -1 ? 1 : 0;
        }
        Expect(lFound == (pHits ? kLookups : 0), "exactly the names that are there are found");
    };
}

// The first of many with one name.
void FindFirstNamesake(int pCount) {
    PagePtr lPage = MakePage(Wide(pCount), eOneName);
    int lFound = 0;
    {
        const CountedWork lWork;
        for (int i = 0; i < kLookups; ++i)
            lFound += lPage->Find(0, "NAME", nullptr, false, nullptr);
    }
    Expect(lFound == kLookups, "the first one is found");
}

// What is found is taken away, first to last.
void FindAndRemove(int pCount) {
    PagePtr lPage = MakePage(Wide(pCount), eOneName);
    {
        const CountedWork lWork;
        for (int lId; (lId = lPage->Find(0, "name", nullptr, true, nullptr)) != -1;)
            lPage->RemoveOwnEntry(lId);
    }
    Expect(lPage->GetPropertyEntryCount() == 1, "all were found");
}

// --- brackets ------------------------------------------------------------------------------------------------------

std::function<void(int)> BracketOf(Tree pTree) {
    return [pTree](int pCount) {
        PagePtr lPage = MakePage(pTree(pCount));
        const CountedWork lWork;
        lPage->BeginCreateOrFindProperty();
        lPage->EndCreateOrFindProperty();
    };
}

// Each name is looked for, added, and looked for again.
void CreateOrFind(int pCount) {
    PagePtr lPage(KLyrPropertyPage::Create("root", eUNIDENTIFIED));
    const std::vector<KString> lNames = NamesOf(pCount, eOwnNames);
    int lFound = 0;
    {
        const CountedWork lWork;
        lPage->BeginCreateOrFindProperty();
        for (int i = 0; i < 2 * pCount; ++i) {
            const char* lName = lNames[At(i % pCount)].Buffer();
            if (lPage->Find(0, lName, nullptr, true, nullptr) != -1)
                ++lFound;
            else
                lPage->Add(0, lName, eINTEGER1);
        }
        lPage->EndCreateOrFindProperty();
    }
    Expect(lFound == pCount && lPage->GetPropertyEntryCount() == pCount + 1, "each name was added once");
}

// --- values --------------------------------------------------------------------------------------------------------

// A read and a write of values in a page that grows.
void GetAndSet(int pCount) {
    PagePtr lPage = MakePage(Wide(pCount));
    std::minstd_rand lDice = Dice();
    std::vector<int> lIds;
    for (int i = 0; i < kLookups; ++i)
        lIds.push_back(static_cast<int>(lDice() % static_cast<unsigned>(pCount - 1)) + 1);
    int lRead = 0;
    {
        const CountedWork lWork;
        for (int lId : lIds) {
            int lValue = 0;
            lPage->Set(lId, &lId, eINTEGER1, true);
            lPage->Get(lId, &lValue, eINTEGER1);
            lRead += lValue == lId ? 1 : 0;
        }
    }
    Expect(lRead == kLookups, "what was written is read");
}

}  // namespace

std::vector<GrowthLaw> TreeLaws() {
    return {
        {"add.wide", "n log n", kSizes, Add(Wide, eOwnNames)},
        {"add.deep", "n log n", kSizes, Add(Deep, eOwnNames)},
        {"add.breadth-first", "n log n", kSizes, Add(BreadthFirst, eOwnNames)},
        {"add.any-parents", "n log n", kSizes, Add(AnyParents, eOwnNames)},
        {"add.one-name", "n log n", kSizes, Add(Wide, eOneName)},
        {"add.case-only", "n log n", kSizes, Add(Wide, eCaseOnly)},
        {"add.typed.wide", "n log n", kSizes, AddTyped(Wide)},
        {"add.typed.deep", "n log n", kSizes, AddTyped(Deep)},
        {"add.typed.any-parents", "n log n", kSizes, AddTyped(AnyParents)},
        {"remove.ascending", "n log n", kSizes, Remove(Wide, eOwnNames, eAscending)},
        {"remove.descending", "n log n", kSizes, Remove(Wide, eOwnNames, eDescending)},
        {"remove.random", "n log n", kSizes, Remove(AnyParents, eOwnNames, eRandom)},
        {"remove.deep.ascending", "n log n", kSizes, Remove(Deep, eOwnNames, eAscending)},
        {"remove.deep.random", "n log n", kSizes, Remove(Deep, eOwnNames, eRandom)},
        {"remove.one-name.ascending", "n log n", kSizes, Remove(Wide, eOneName, eAscending)},
        {"remove.one-name.descending", "n log n", kSizes, Remove(Wide, eOneName, eDescending)},
        {"remove.one-name.random", "n log n", kSizes, Remove(Wide, eOneName, eRandom)},
        {"remove.one-name.late", "n log n", {500, 8000, 256000}, RemoveLate(eOneName)},
        {"remove.case-only.random", "n log n", kSizes, Remove(Wide, eCaseOnly, eRandom)},
        {"churn.own-names", "n log n", kSizes, Churn(eOwnNames)},
        {"churn.one-name", "n log n", kSizes, Churn(eOneName)},
        {"destroy.page", "n", kSizes, DestroyPage},
        {"destroy.deep-page", "n", kSizes, DestroyDeepPage},
        {"find.hit.case", "log n", kSiblings, FindAmong(true, true)},
        {"find.hit.no-case", "log n", kSiblings, FindAmong(true, false)},
        {"find.miss.case", "log n", kSiblings, FindAmong(false, true)},
        {"find.miss.no-case", "log n", kSiblings, FindAmong(false, false)},
        {"find.instance.hit", "log n", kSiblings, FindAmong(true, true, eAnInstance)},
        {"find.instance.miss", "log n", kSiblings, FindAmong(false, false, eAnInstance)},
        {"find.one-name", "log n", kSiblings, FindFirstNamesake},
        {"find-and-remove.one-name", "n log n", kSizes, FindAndRemove},
        {"bracket.wide", "n log n", kSizes, BracketOf(Wide)},
        {"bracket.deep", "n log n", kSizes, BracketOf(Deep)},
        {"bracket.create-or-find", "n log n", kSizes, CreateOrFind},
        {"values.get-and-set", "log n", kSizes, GetAndSet},
    };
}

}  // namespace lyrsdk
