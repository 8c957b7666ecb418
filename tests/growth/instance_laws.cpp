#include <algorithm>

#include "tests/growth/growth.h"

namespace lyrsdk {
namespace {

const std::vector<int> kSizes = {500, 4000, 32000};
const std::vector<int> kInstances = {250, 2000, 16000};
const std::vector<int> kDepths = {16, 128, 1024};
constexpr int kPageSize = 20;

// --- one instance of a large page ----------------------------------------------------------------------------------

enum EOverride { eValues, eDescriptions, eFlags };

void Override(KLyrPropertyPage* pInstance, int pId, EOverride pWhat) {
    if (pWhat == eValues)
        pInstance->Set(pId, &pId, eINTEGER1, false);
    else if (pWhat == eDescriptions)
        pInstance->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, pId, eLyrOverride);
    else
        pInstance->ModifyFlags(pId, LyrPropertyFlags::eANIMATABLE, true, false);
}

std::function<void(int)> OverrideAll(EOverride pWhat, ENames pNames, EOrder pOrder) {
    return [pWhat, pNames, pOrder](int pCount) {
        PagePtr lPage = MakePage(Wide(pCount), pNames);
        PagePtr lInstance = MakeInstance(lPage.get());
        const std::vector<int> lIds = Numbers(1, pCount - 1, pOrder);
        {
            const CountedWork lWork;
            for (int lId : lIds)
                Override(lInstance.get(), lId, pWhat);
        }
        KLyrPropertyPage* lHolder = nullptr;
        lInstance->GetPropertyEntry(pCount / 2, &lHolder);
        Expect(lHolder == lInstance.get(), "the instance has entries of its own");
    };
}

std::function<void(int)> HandBack(EOrder pOrder) {
    return [pOrder](int pCount) {
        PagePtr lPage = MakePage(Wide(pCount));
        PagePtr lInstance = MakeInstance(lPage.get());
        for (int lId = 1; lId < pCount; ++lId)
            Override(lInstance.get(), lId, eValues);
        const std::vector<int> lIds = Numbers(1, pCount - 1, pOrder);
        {
            const CountedWork lWork;
            for (int lId : lIds)
                lInstance->SetValueInherit(lId, eLyrInherit);
        }
        KLyrPropertyPage* lHolder = nullptr;
        lInstance->GetPropertyEntry(pCount / 2, &lHolder);
        Expect(lHolder == lPage.get(), "the page's own values show again");
    };
}

// A description of another page in place of the one there, property by property.
std::function<void(int)> ExchangeDescriptions(ENames pFrom, ENames pTo) {
    return [pFrom, pTo](int pCount) {
        PagePtr lPage = MakePage(Wide(pCount), pFrom);
        PagePtr lOther = MakePage(Wide(pCount), pTo);
        const std::vector<int> lIds = Numbers(1, pCount - 1, eRandom);
        {
            const CountedWork lWork;
            for (int lId : lIds)
                lPage->GetPropertyEntry(lId)->Set(lOther->GetPropertyItem<KLyrPropertyInfo>(nullptr, lId));
        }
        const int lFound = lPage->Find(0, NameOf(pCount - 1, pTo).Buffer(), nullptr, true, nullptr);
        Expect(lFound == (pTo == eOneName ? 1 : pCount - 1), "the new names are found");
    };
}

std::function<void(int)> Push(EOrder pOrder) {
    return [pOrder](int pCount) {
        PagePtr lPage = MakePage(Wide(pCount));
        PagePtr lInstance = MakeInstance(lPage.get());
        for (int lId : Numbers(1, pCount - 1, pOrder))
            Override(lInstance.get(), lId, eValues);
        {
            const CountedWork lWork;
            lInstance->PushPropertiesToParentInstance();
        }
        int lValue = 0;
        Expect(lPage->Get(pCount / 2, &lValue, eINTEGER1) && lValue == pCount / 2, "the page holds the values");
    };
}

// The page and its instance add properties in turn, so that the ids of what moves lie between those of what is there.
PagePtr MakeInTurn(int pCount, ENames pNames, PagePtr* pInstance) {
    PagePtr lPage(KLyrPropertyPage::Create("root", eUNIDENTIFIED));
    *pInstance = MakeInstance(lPage.get());
    for (int i = 1; i < pCount; ++i)
        (i % 2 ? lPage : *pInstance)->Add(0, NameOf(i, pNames).Buffer(), eINTEGER1);
    return lPage;
}

std::function<void(int)> PushInTurn(ENames pNames) {
    return [pNames](int pCount) {
        PagePtr lInstance;
        PagePtr lPage = MakeInTurn(pCount, pNames, &lInstance);
        {
            const CountedWork lWork;
            lInstance->PushPropertiesToParentInstance();
        }
        Expect(lPage->GetPropertyEntryCount() == pCount, "the page holds all properties");
    };
}

std::function<void(int)> HandDownInTurn(ENames pNames) {
    return [pNames](int pCount) {
        PagePtr lInstance;
        PagePtr lPage = MakeInTurn(pCount, pNames, &lInstance);
        {
            const CountedWork lWork;
            lPage.reset();
        }
        Expect(!lInstance->GetInstanceOf() && lInstance->GetPropertyEntry(1), "the instance has copies");
    };
}

// --- many instances ------------------------------------------------------------------------------------------------

KLyrPropertyPage* MakeOverriding(KLyrPropertyPage* pOf) {
    KLyrPropertyPage* lInstance = KLyrPropertyPage::Create(pOf);
    for (int lId = 1; lId <= 3; ++lId)
        Override(lInstance, lId, eValues);
    return lInstance;
}

void CreateInstances(int pCount) {
    PagePtr lPage = MakePage(Wide(kPageSize));
    std::vector<PagePtr> lInstances(static_cast<std::size_t>(pCount));
    {
        const CountedWork lWork;
        for (PagePtr& lInstance : lInstances)
            lInstance.reset(MakeOverriding(lPage.get()));
    }
    Expect(lPage->GetInstances().GetCount() == pCount, "the page knows its instances");
}

std::function<void(int)> DestroyInstances(EOrder pOrder, bool pPageFirst) {
    return [pOrder, pPageFirst](int pCount) {
        PagePtr lPage = MakePage(Wide(kPageSize));
        std::vector<KLyrPropertyPage*> lInstances;
        for (int lIndex : Numbers(0, pCount, eAscending))
            lInstances.push_back(lIndex < pCount ? MakeOverriding(lPage.get()) : nullptr);
        const std::vector<int> lOrder = Numbers(0, pCount, pOrder);
        const CountedWork lWork;
        if (pPageFirst)
            lPage.reset();
        for (int lIndex : lOrder)
            lInstances[static_cast<std::size_t>(lIndex)]->Destroy();
        Expect(pPageFirst || lPage->GetInstances().GetCount() == 0, "no instance is left");
    };
}

// --- chains --------------------------------------------------------------------------------------------------------

// Each page is an instance of the one before.
std::vector<KLyrPropertyPage*> MakeChain(int pDepth) {
    std::vector<KLyrPropertyPage*> lPages = {MakePage(BreadthFirst(kPageSize)).release()};
    while (static_cast<int>(lPages.size()) < pDepth)
        lPages.push_back(KLyrPropertyPage::Create(lPages.back()));
    return lPages;
}

void DestroyInOrder(const std::vector<KLyrPropertyPage*>& pPages, EOrder pOrder) {
    for (int lIndex : Numbers(0, static_cast<int>(pPages.size()), pOrder))
        pPages[static_cast<std::size_t>(lIndex)]->Destroy();
}

void CreateChain(int pDepth) {
    std::vector<KLyrPropertyPage*> lPages;
    {
        const CountedWork lWork;
        lPages = MakeChain(pDepth);
    }
    Expect(lPages.back()->GetPropertyEntry(kPageSize - 1) != nullptr, "the last page sees the first one's properties");
    DestroyInOrder(lPages, eDescending);
}

std::function<void(int)> DestroyChain(EOrder pOrder) {
    return [pOrder](int pDepth) {
        const std::vector<KLyrPropertyPage*> lPages = MakeChain(pDepth);
        const CountedWork lWork;
        DestroyInOrder(lPages, pOrder);
    };
}

// What is asked of the last page of a chain, and must be true. With pOverridden, each page has values, flags and a
// description of its own.
template <typename Ask>
std::function<void(int)> AskChain(bool pOverridden, const Ask& pAsk) {
    return [pOverridden, pAsk](int pDepth) {
        const std::vector<KLyrPropertyPage*> lPages = MakeChain(pDepth);
        for (KLyrPropertyPage* lPage : lPages)
            for (EOverride lWhat : {eValues, eDescriptions, eFlags})
                if (pOverridden)
                    Override(lPage, 1, lWhat);
        bool lHolds = false;
        {
            const CountedWork lWork;
            lHolds = pAsk(lPages.back());
        }
        Expect(lHolds, "the last page answers");
        DestroyInOrder(lPages, eDescending);
    };
}

bool ReadsValue(KLyrPropertyPage* pPage) {
    int lValue = 0;
    return pPage->Get(1, &lValue, eINTEGER1);
}

bool ReadsDefault(KLyrPropertyPage* pPage) {
    int lValue = 0;
    return pPage->GetDefaultValue(1, &lValue, eINTEGER1);
}

bool ReadsFlags(KLyrPropertyPage* pPage) {
    return pPage->GetFlags(kPageSize - 1) == LyrPropertyFlags::eNO_FLAG;
}

bool ReadsOwnFlags(KLyrPropertyPage* pPage) {
    return pPage->GetFlags(1) == LyrPropertyFlags::eANIMATABLE;
}

bool AsksWhereFrom(KLyrPropertyPage* pPage) {
    return pPage->GetValueInherit(kPageSize - 1, true) == eLyrInherit &&
           pPage->GetFlagsInheritType(LyrPropertyFlags::eHIDDEN, true, kPageSize - 1) == eLyrInherit;
}

bool Navigates(KLyrPropertyPage* pPage) {
    int lSeen = 0;
    for (int lId = pPage->GetChild(0); lId != -1; lId = pPage->GetSibling(lId))
        lSeen += pPage->GetChild(lId) != -1 ? 2 : 1;
    for (int lId = pPage->GetFirstDescendent(1); lId != -1; lId = pPage->GetNextDescendent(1, lId))
        ++lSeen;
    return lSeen == 8 + 2 + 8;
}

bool FindsName(KLyrPropertyPage* pPage) {
    return pPage->Find(0, "name8", nullptr, true, nullptr) == 8 &&
           pPage->Find(0, "none", nullptr, false, nullptr) == -1;
}

bool FindsOwnName(KLyrPropertyPage* pPage) {
    return pPage->Find(0, "name1", nullptr, true, nullptr) == 1;
}

// Every page of a chain adds a property of one name; the first page's is found from the last.
void FindAmongNamesakesOfChain(int pDepth) {
    const std::vector<KLyrPropertyPage*> lPages = MakeChain(pDepth);
    for (KLyrPropertyPage* lPage : lPages)
        lPage->Add(0, "new", eINTEGER1);
    int lFound = -1;
    {
        const CountedWork lWork;
        lFound = lPages.back()->Find(0, "new", nullptr, true, nullptr);
    }
    Expect(lFound == kPageSize, "the first one is found");
    DestroyInOrder(lPages, eDescending);
}

}  // namespace

std::vector<GrowthLaw> InstanceLaws() {
    return {
        {"override.values.ascending", "n log n", kSizes, OverrideAll(eValues, eOwnNames, eAscending)},
        {"override.values.random", "n log n", kSizes, OverrideAll(eValues, eOwnNames, eRandom)},
        {"override.flags.random", "n log n", kSizes, OverrideAll(eFlags, eOwnNames, eRandom)},
        {"override.descriptions.random", "n log n", kSizes, OverrideAll(eDescriptions, eOwnNames, eRandom)},
        {"override.descriptions.one-name", "n log n", kSizes, OverrideAll(eDescriptions, eOneName, eRandom)},
        {"override.descriptions.case-only", "n log n", kSizes, OverrideAll(eDescriptions, eCaseOnly, eRandom)},
        {"override.hand-back.random", "n log n", kSizes, HandBack(eRandom)},
        {"override.hand-back.descending", "n log n", kSizes, HandBack(eDescending)},
        {"descriptions.exchanged.to-own-names", "n log n", kSizes, ExchangeDescriptions(eOneName, eOwnNames)},
        {"descriptions.exchanged.to-one-name", "n log n", kSizes, ExchangeDescriptions(eOwnNames, eOneName)},
        {"push.ascending", "n log n", kSizes, Push(eAscending)},
        {"push.random", "n log n", kSizes, Push(eRandom)},
        {"push.in-turn", "n log n", kSizes, PushInTurn(eOwnNames)},
        {"push.in-turn.one-name", "n log n", kSizes, PushInTurn(eOneName)},
        {"destroy.page-in-turn", "n log n", kSizes, HandDownInTurn(eOwnNames)},
        {"destroy.page-in-turn.one-name", "n log n", kSizes, HandDownInTurn(eOneName)},
        {"instances.create", "n", kInstances, CreateInstances},
        {"instances.destroy.ascending", "n", kInstances, DestroyInstances(eAscending, false)},
        {"instances.destroy.descending", "n", kInstances, DestroyInstances(eDescending, false)},
        {"instances.destroy.random", "n", kInstances, DestroyInstances(eRandom, false)},
        {"instances.destroy.page-first", "n", kInstances, DestroyInstances(eRandom, true)},
        {"chain.create", "n", kDepths, CreateChain},
        {"chain.destroy.first-to-last", "n", kDepths, DestroyChain(eAscending)},
        {"chain.destroy.last-to-first", "n", kDepths, DestroyChain(eDescending)},
        {"chain.destroy.random", "n log n", kDepths, DestroyChain(eRandom)},
        {"chain.get", "n", kDepths, AskChain(false, ReadsValue)},
        {"chain.get.overridden", "1", kDepths, AskChain(true, ReadsValue)},
        {"chain.default-value", "n", kDepths, AskChain(false, ReadsDefault)},
        {"chain.default-value.overridden", "n", kDepths, AskChain(true, ReadsDefault)},
        {"chain.flags", "n", kDepths, AskChain(false, ReadsFlags)},
        {"chain.flags.overridden", "n", kDepths, AskChain(true, ReadsOwnFlags)},
        {"chain.where-from", "n", kDepths, AskChain(false, AsksWhereFrom)},
        {"chain.where-from.overridden", "n", kDepths, AskChain(true, AsksWhereFrom)},
        {"chain.navigation", "n", kDepths, AskChain(false, Navigates)},
        {"chain.navigation.overridden", "n", kDepths, AskChain(true, Navigates)},
        {"chain.find", "n", kDepths, AskChain(false, FindsName)},
        {"chain.find.overridden", "n", kDepths, AskChain(true, FindsOwnName)},
        {"chain.find.one-name", "n", kDepths, FindAmongNamesakesOfChain},
    };
}

}  // namespace lyrsdk
