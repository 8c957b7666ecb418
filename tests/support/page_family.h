#pragma once

// Page families for tests of the page: making them, looking at what a page sees and what it holds itself, and families
// that are made at random.

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "lyrfilesdk/components/kbaselib/klib/kstring.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/counted.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {

// A test at whose end the library holds as much memory as at its start.
class PageTest : public testing::Test {
private:
    LeakCheck mLeakCheck;
};

// --- making ----------------------------------------------------------------------------------------------------------

inline OwnedPage MakeRoot(const char* pName = "root", ELyrType pType = eUNIDENTIFIED) {
    return OwnedPage(KLyrPropertyPage::Create(pName, pType));
}

inline OwnedPage MakeTyped(const char* pName, const OwnedPage& pTypeInfo) {
    return OwnedPage(KLyrPropertyPage::Create(pName, pTypeInfo.get()));
}

inline OwnedPage MakeInstance(const OwnedPage& pInstanceOf) {
    return OwnedPage(KLyrPropertyPage::Create(pInstanceOf.get()));
}

inline KLyrPropertyPage::eLyrPropertyFlags Flags(unsigned pBits) {
    return static_cast<KLyrPropertyPage::eLyrPropertyFlags>(pBits);
}

// --- values ----------------------------------------------------------------------------------------------------------

inline bool SetNumber(const OwnedPage& pPage, int pId, double pValue, bool pCheckValueEquality = false) {
    return pPage->Set(pId, &pValue, eDOUBLE1, pCheckValueEquality);
}

inline bool SetText(const OwnedPage& pPage, int pId, const char* pValue, bool pCheckValueEquality = false) {
    const KString lValue(pValue);
    return pPage->Set(pId, &lValue, eSTRING, pCheckValueEquality);
}

// The value as a number; a test failure when there is none.
inline double NumberOf(const KLyrPropertyPage& pPage, int pId) {
    double lValue = -12345.678;
    EXPECT_TRUE(pPage.Get(pId, &lValue, eDOUBLE1)) << "property " << pId << " has no number";
    return lValue;
}
inline double NumberOf(const OwnedPage& pPage, int pId) {
    return NumberOf(*pPage, pId);
}

inline double DefaultOf(const OwnedPage& pPage, int pId) {
    double lValue = -12345.678;
    EXPECT_TRUE(pPage->GetDefaultValue(pId, &lValue, eDOUBLE1)) << "property " << pId << " has no default";
    return lValue;
}

// The value as a text, "(none)" when there is none.
inline std::string TextOf(const KLyrPropertyPage& pPage, int pId) {
    const KLyrPropertyValue* lItem = pPage.GetPropertyItem<KLyrPropertyValue>(nullptr, pId);
    KString lText;
    if (!lItem || lItem->GetType() == eREFERENCE || !lItem->Get(&lText, eSTRING))
        return "(none)";
    return std::string(lText.Buffer(), static_cast<std::size_t>(lText.GetLen()));
}
inline std::string TextOf(const OwnedPage& pPage, int pId) {
    return TextOf(*pPage, pId);
}

// --- what a page holds itself ----------------------------------------------------------------------------------------

inline KLyrPropertyEntry* OwnEntry(const KLyrPropertyPage& pPage, int pId) {
    KLyrPropertyPage* lHolder = nullptr;
    KLyrPropertyEntry* lEntry = pPage.GetPropertyEntry(pId, &lHolder);
    return lHolder == &pPage ? lEntry : nullptr;
}
inline KLyrPropertyEntry* OwnEntry(const OwnedPage& pPage, int pId) {
    return OwnEntry(*pPage, pId);
}

// The item, when the page holds it itself.
template <typename T>
T* OwnItem(const KLyrPropertyPage& pPage, int pId) {
    KLyrPropertyEntry* lEntry = OwnEntry(pPage, pId);
    return lEntry ? lEntry->Get(static_cast<const T*>(nullptr)) : nullptr;
}
template <typename T>
T* OwnItem(const OwnedPage& pPage, int pId) {
    return OwnItem<T>(*pPage, pId);
}

// Flags and mask of the page's own entry, as they lie in the item: the mask in the upper half.
inline unsigned OwnFlagData(const KLyrPropertyPage& pPage, int pId) {
    const KLyrPropertyFlags* lItem = OwnItem<KLyrPropertyFlags>(pPage, pId);
    return lItem ? lItem->GetMask() << 16 | lItem->GetFlags() : 0;
}
inline unsigned OwnFlagData(const OwnedPage& pPage, int pId) {
    return OwnFlagData(*pPage, pId);
}

// The items that a page holds, one line an entry: id, parent, i(nfo) v(alue) c(onnect), flag data.
inline std::string Held(const KLyrPropertyPage& pPage) {
    std::ostringstream lOut;
    for (int lId = 0; lId != -1; lId = pPage.GetMinimumPropertyIdAndEntry(lId)) {
        KLyrPropertyEntry* lEntry = OwnEntry(pPage, lId);
        if (!lEntry)
            continue;
        lOut << lId << '<' << lEntry->GetParentId() << ' ' << (OwnItem<KLyrPropertyInfo>(pPage, lId) ? "i" : "-")
             << (OwnItem<KLyrPropertyValue>(pPage, lId) ? "v" : "-")
             << (OwnItem<KLyrPropertyConnect>(pPage, lId) ? "c" : "-") << ' ' << std::hex << OwnFlagData(pPage, lId)
             << std::dec << '\n';
    }
    return lOut.str();
}
inline std::string Held(const OwnedPage& pPage) {
    return Held(*pPage);
}

// --- what a page sees ------------------------------------------------------------------------------------------------

inline std::vector<int> ChildrenOf(const KLyrPropertyPage& pPage, int pId) {
    std::vector<int> lChildren;
    for (int lChild = pPage.GetChild(pId); lChild != -1; lChild = pPage.GetSibling(lChild))
        lChildren.push_back(lChild);
    return lChildren;
}
inline std::vector<int> ChildrenOf(const OwnedPage& pPage, int pId) {
    return ChildrenOf(*pPage, pId);
}

// Parent, name, type, value and flags, one line a property.
inline std::string Seen(const KLyrPropertyPage& pPage) {
    std::ostringstream lOut;
    for (int lId = 0; lId != -1; lId = pPage.GetMinimumPropertyIdAndEntry(lId))
        if (pPage.GetPropertyEntry(lId))
            lOut << lId << '<' << pPage.GetParent(lId) << " '" << pPage.GetName(lId) << "' type "
                 << static_cast<int>(pPage.GetType(lId)) << " value " << TextOf(pPage, lId) << " flags " << std::hex
                 << static_cast<unsigned>(pPage.GetFlags(lId)) << std::dec << '\n';
    return lOut.str();
}
inline std::string Seen(const OwnedPage& pPage) {
    return Seen(*pPage);
}

// The names and values of a property's descendants, as nested lists: "a=1(b=2 c=3)".
inline std::string Tree(const KLyrPropertyPage& pPage, int pId) {
    std::string lText;
    for (int lChild : ChildrenOf(pPage, pId)) {
        const std::string lBelow = Tree(pPage, lChild);
        lText += (lText.empty() ? "" : " ") + std::string(pPage.GetName(lChild)) + "=" + TextOf(pPage, lChild);
        if (!lBelow.empty())
            lText += "(" + lBelow + ")";
    }
    return lText;
}
inline std::string Tree(const OwnedPage& pPage, int pId) {
    return Tree(*pPage, pId);
}

// --- depth -----------------------------------------------------------------------------------------------------------

// Runs pBody on a stack of 256 kB, where recursion over a few thousand levels does not fit.
inline void RunOnSmallStack(const std::function<void()>& pBody) {
    constexpr std::size_t lStackSize = std::size_t{256} * 1024;
    pthread_attr_t lAttributes;
    ASSERT_EQ(pthread_attr_init(&lAttributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&lAttributes, lStackSize), 0);
    pthread_t lThread;
    const auto lRun = [](void* pFunction) -> void* {
        (*static_cast<const std::function<void()>*>(pFunction))();
        return nullptr;
    };
    const int lStarted = pthread_create(&lThread, &lAttributes, lRun, const_cast<std::function<void()>*>(&pBody));
    pthread_attr_destroy(&lAttributes);
    ASSERT_EQ(lStarted, 0);
    ASSERT_EQ(pthread_join(lThread, nullptr), 0);
}

// --- families at random ----------------------------------------------------------------------------------------------

// A family that grows and changes by random operations. The same seed gives the same family.
class RandomFamily {
public:
    static constexpr int kMaxPages = 7;
    static constexpr int kMaxProperties = 14;

    explicit RandomFamily(unsigned pSeed) : mEngine(pSeed) { mPages.push_back(MakeRoot("root", eDOUBLE1)); }
    ~RandomFamily() {
        while (!mPages.empty())
            mPages.erase(mPages.begin() + Below(static_cast<int>(mPages.size())));
    }

    const std::vector<OwnedPage>& Pages() const { return mPages; }
    std::vector<OwnedPage>& Pages() { return mPages; }
    const OwnedPage& AnyPage() { return mPages[static_cast<std::size_t>(Below(static_cast<int>(mPages.size())))]; }
    // An id that is there, or sometimes one that is not.
    int AnyId() { return Below(10) == 0 ? Below(30) - 5 : Below(mNextId); }
    int Below(int pEnd) { return static_cast<int>(mEngine() % static_cast<unsigned>(pEnd)); }
    KLyrPropertyPage::eLyrPropertyFlags AnyFlags() {
        return Flags(Below(3) == 0 ? mEngine() & 0x7FFFu : mEngine() & 7u);
    }

    void Change(int pTimes) {
        for (int i = 0; i < pTimes; ++i)
            ChangeOnce();
    }

private:
    void ChangeOnce() {
        const OwnedPage& lPage = AnyPage();
        const int lId = AnyId();
        switch (Below(12)) {
            case 0:
                if (mPages.size() < static_cast<std::size_t>(kMaxPages))
                    mPages.push_back(MakeInstance(lPage));
                break;
            case 1:
            case 2:
                if (mNextId < kMaxProperties)
                    mNextId =
                        lPage->Add(AnyId(), std::string(1, static_cast<char>('a' + Below(3))).c_str(), eDOUBLE1) + 1;
                break;
            case 3:
            case 4:
                SetNumber(lPage, lId, Below(3), Below(2) == 0);
                break;
            case 5:
                lPage->SetValueInherit(lId, Below(2) == 0 ? eLyrOverride : eLyrInherit);
                break;
            case 6:
            case 7:
                lPage->ModifyFlags(lId, AnyFlags(), Below(2) == 0, Below(2) == 0);
                break;
            case 8:
                lPage->SetFlagsInheritType(Below(2) == 0 ? eLyrOverride : eLyrInherit, AnyFlags(), lId);
                break;
            case 9:
                lPage->ChangePropertyItemState<KLyrPropertyFlags>(nullptr, lId,
                                                                  Below(2) == 0 ? eLyrOverride : eLyrInherit);
                break;
            case 10:
                lPage->ChangePropertyEntryState(lId, Below(4) == 0 ? eLyrInherit : eLyrOverride);
                break;
            case 11:
                lPage->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, lId,
                                                                 Below(2) == 0 ? eLyrOverride : eLyrInherit);
                break;
            default:
                break;
        }
    }

    std::mt19937 mEngine;
    std::vector<OwnedPage> mPages;
    int mNextId = 1;
};

}  // namespace lyrsdk
