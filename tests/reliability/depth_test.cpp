#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/connection_filters.h"
#include "tests/support/page_family.h"

// Sizes that no stack holds and that a quadratic step would not survive. All of it runs on a stack of 256 kB; every
// walk takes a time that grows with the size, or with the size times its logarithm.
//
// What costs a chain or a scan by its documentation is asked a bounded number of times: a lookup outside a bracket, a
// step that looks for a child among later ids, and whatever reads through a long chain of pages.

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define LYRSDK_TEST_SLOW 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define LYRSDK_TEST_SLOW 1
#endif
#endif
#if !defined(__OPTIMIZE__) && !defined(LYRSDK_TEST_SLOW)
#define LYRSDK_TEST_SLOW 1
#endif

namespace lyrsdk {
namespace {

// Builds that are ten times slower and larger take sizes that are smaller by this, unless LYRSDK_FULL=1 asks for all.
#ifdef LYRSDK_TEST_SLOW
constexpr int kDivisor = 10;
#else
constexpr int kDivisor = 1;
#endif

int Scaled(int pFull) {
    const char* lFull = std::getenv("LYRSDK_FULL");
    return lFull && std::strcmp(lFull, "1") == 0 ? pFull : pFull / kDivisor;
}

int Million() {
    return Scaled(1000000);
}
int LongChainLength() {
    return Scaled(100000);
}
int NestedTypes() {
    return Scaled(100000);
}
// AddressSanitizer, told to be strict about strings, reads the rest of a path whenever a name is cut from it.
int PathDepth() {
#ifdef LYRSDK_TEST_SLOW
    return 20000;
#else
    return Million();
#endif
}
// Work that is quadratic by its nature: pushing page by page up a chain, types of types.
int BoundedChainLength() {
    return Scaled(4000);
}

class Depth : public PageTest {
protected:
    void OnSmallStack(const std::function<void()>& pBody) {
        RunOnSmallStack([&] {
            const LeakCheck lLeakCheck;
            pBody();
        });
    }
};

int IntOf(const KLyrPropertyPage& pPage, int pId) {
    int lValue = -1;
    return pPage.Get(pId, &lValue, eINTEGER1) ? lValue : -1;
}

bool SetInt(KLyrPropertyPage& pPage, int pId, int pValue) {
    return pPage.Set(pId, &pValue, eINTEGER1, false);
}

// The number of entries that a walk over the ids meets.
int CountByIds(const KLyrPropertyPage& pPage) {
    int lCount = pPage.GetPropertyEntry(0) ? 1 : 0;
    for (int lId = 0; (lId = pPage.GetMinimumPropertyIdAndEntry(lId)) != -1;)
        ++lCount;
    return lCount;
}

// --- a deep tree of properties ---------------------------------------------------------------------------------------

// Property n + 1 is the only child of property n.
OwnedPage DeepTree(int pDepth) {
    OwnedPage lPage = MakeRoot("root", eINTEGER1);
    for (int i = 0; i < pDepth; ++i)
        if (lPage->Add(i, "n", eINTEGER1) != i + 1)
            ADD_FAILURE() << "property " << i + 1;
    return lPage;
}

TEST_F(Depth, ADeepTreeIsReadWrittenAndWalked) {
    OnSmallStack([] {
        const int lDepth = Million();
        const OwnedPage lPage = DeepTree(lDepth);
        int lWritten = 0;
        int lRead = 0;
        for (int i = 0; i <= lDepth; ++i)
            lWritten += SetInt(*lPage, i, i) ? 1 : 0;
        for (int i = 0; i <= lDepth; ++i)
            lRead += IntOf(*lPage, i) == i ? 1 : 0;
        EXPECT_EQ(lWritten, lDepth + 1);
        EXPECT_EQ(lRead, lDepth + 1);

        int lDown = 0;
        for (int lId = lPage->GetChild(0); lId != -1; lId = lPage->GetChild(lId))
            ++lDown;
        int lUp = 0;
        for (int lId = lDepth; lId != 0; lId = lPage->GetParent(lId))
            ++lUp;
        int lAll = 0;
        for (int lId = lPage->GetFirstDescendent(0); lId != -1; lId = lPage->GetNextDescendent(0, lId))
            ++lAll;
        EXPECT_EQ(lDown, lDepth);
        EXPECT_EQ(lUp, lDepth);
        EXPECT_EQ(lAll, lDepth);
        EXPECT_EQ(CountByIds(*lPage), lDepth + 1);
        EXPECT_EQ(lPage->GetPropertyEntryCount(), lDepth + 1);
        EXPECT_TRUE(lPage->IsDescendentOf(lDepth, 1));
        EXPECT_FALSE(lPage->IsDescendentOf(lDepth, lDepth));
        EXPECT_EQ(lPage->GetNextDescendent(1, lDepth - 1), lDepth);
        EXPECT_EQ(lPage->GetSibling(1), -1);
    });
}

TEST_F(Depth, APathLeadsThroughADeepTree) {
    OnSmallStack([] {
        const int lDepth = PathDepth();
        const OwnedPage lPage = DeepTree(lDepth);
        std::string lPath = "n";
        for (int i = 1; i < lDepth; ++i)
            lPath += "/n";
        EXPECT_EQ(lPage->Find(0, lPath.c_str(), nullptr, true, "/"), lDepth);
        EXPECT_EQ(lPage->Find(0, lPath.c_str(), nullptr, false, "/"), lDepth);
        EXPECT_EQ(lPage->Find(0, (lPath + "/n").c_str(), nullptr, true, "/"), -1);
        lPage->BeginCreateOrFindProperty();
        EXPECT_EQ(lPage->Find(0, lPath.c_str(), nullptr, true, "/"), lDepth);
        EXPECT_EQ(lPage->Add(lDepth, "n", eINTEGER1), lDepth + 1);
        EXPECT_EQ(lPage->Find(0, (lPath + "/n").c_str(), nullptr, true, "/"), lDepth + 1);
        lPage->EndCreateOrFindProperty();
    });
}

TEST_F(Depth, ADeepTreeGoesPropertyByPropertyFromTheTop) {
    OnSmallStack([] {
        const int lDepth = Million();
        const OwnedPage lPage = DeepTree(lDepth);
        int lGone = 0;
        for (int i = 1; i <= lDepth; ++i)
            lGone += KLyrPropertyHandle(lPage.get(), i).Destroy() ? 1 : 0;
        EXPECT_EQ(lGone, lDepth);
        EXPECT_EQ(CountByIds(*lPage), 1);
    });
}

TEST_F(Depth, ADeepTreeIsCopiedAsATypeAndHandedDownToAnInstance) {
    OnSmallStack([] {
        const int lDepth = Million() / 2;
        OwnedPage lType = DeepTree(lDepth);
        SetInt(*lType, lDepth, 7);
        OwnedPage lPage = MakeTyped("root", lType);
        lType.reset();
        EXPECT_EQ(CountByIds(*lPage), lDepth + 1);
        EXPECT_EQ(IntOf(*lPage, lDepth), 7);
        const OwnedPage lInstance = MakeInstance(lPage);
        lPage.reset();
        EXPECT_EQ(CountByIds(*lInstance), lDepth + 1);
        EXPECT_EQ(lInstance->GetParent(lDepth), lDepth - 1);
        EXPECT_EQ(IntOf(*lInstance, lDepth), 7);
    });
}

// --- a long chain of pages -------------------------------------------------------------------------------------------

std::vector<OwnedPage> LongChain(int pLength) {
    std::vector<OwnedPage> lChain;
    lChain.push_back(MakeRoot("root", eINTEGER1));
    lChain.front()->Add(0, "child", eINTEGER1);
    while (static_cast<int>(lChain.size()) < pLength)
        lChain.push_back(MakeInstance(lChain.back()));
    return lChain;
}

void ExpectReadsThrough(const KLyrPropertyPage& pTop, KLyrPropertyPage& pLeaf) {
    EXPECT_EQ(IntOf(pLeaf, 1), 5);
    EXPECT_STREQ(pLeaf.GetName(1), "child");
    EXPECT_EQ(pLeaf.GetParent(1), 0);
    EXPECT_EQ(pLeaf.GetChild(0), 1);
    EXPECT_EQ(pLeaf.GetSibling(1), -1);
    EXPECT_EQ(pLeaf.Find(0, "child", nullptr, true, nullptr), 1);
    EXPECT_EQ(pLeaf.Find(0, "CHILD", nullptr, false, nullptr), 1);
    EXPECT_EQ(pLeaf.GetFlags(1), LyrPropertyFlags::eHIDDEN);
    EXPECT_EQ(pLeaf.GetValueInherit(1, true), eLyrInherit);
    EXPECT_EQ(pLeaf.GetFlagsInheritType(LyrPropertyFlags::eHIDDEN, true, 1), eLyrInherit);
    EXPECT_EQ(pLeaf.GetPropertyEntryCount(), 2);
    EXPECT_EQ(pLeaf.GetFirstPropertyItem<KLyrPropertyValue>(1, nullptr), &pTop);
    pLeaf.BeginCreateOrFindProperty();
    EXPECT_EQ(pLeaf.Find(0, "child", nullptr, true, nullptr), 1);
    pLeaf.EndCreateOrFindProperty();
}

TEST_F(Depth, ALongChainIsReadAndWrittenAtItsEnd) {
    OnSmallStack([] {
        std::vector<OwnedPage> lChain = LongChain(LongChainLength());
        KLyrPropertyPage& lTop = *lChain.front();
        KLyrPropertyPage& lLeaf = *lChain.back();
        EXPECT_TRUE(SetInt(lTop, 1, 5));
        EXPECT_TRUE(lTop.ModifyFlags(1, LyrPropertyFlags::eHIDDEN, true, false));
        ExpectReadsThrough(lTop, lLeaf);
        const int lEqual = 5;
        EXPECT_FALSE(lLeaf.Set(1, &lEqual, eINTEGER1, true)) << "inherited as it is";
        EXPECT_TRUE(SetInt(lLeaf, 1, 6));
        EXPECT_EQ(IntOf(lLeaf, 1), 6);
        EXPECT_EQ(DefaultOf(lChain.back(), 1), 5);
        EXPECT_TRUE(lLeaf.ModifyFlags(1, LyrPropertyFlags::eUSER, true, true));
        EXPECT_EQ(lLeaf.GetFlags(1), LyrPropertyFlags::eHIDDEN | LyrPropertyFlags::eUSER);
        EXPECT_TRUE(lLeaf.SetValueInherit(1, eLyrInherit));
        EXPECT_EQ(IntOf(lLeaf, 1), 5);
        EXPECT_EQ(lLeaf.Add(0, "added", eINTEGER1), 2);
        EXPECT_EQ(CountByIds(lLeaf), 3);
    });
}

// A value on every page: reading is one lookup, and the pages go with copies for the one below.
TEST_F(Depth, EveryPageOfALongChainHoldsAValueAndGoesFromTheTop) {
    OnSmallStack([] {
        std::vector<OwnedPage> lChain = LongChain(LongChainLength());
        const int lLength = static_cast<int>(lChain.size());
        int lRead = 0;
        for (int i = 0; i < lLength; ++i)
            SetInt(*lChain[static_cast<std::size_t>(i)], 0, i);
        for (int i = 0; i < lLength; ++i)
            lRead += IntOf(*lChain[static_cast<std::size_t>(i)], 0) == i ? 1 : 0;
        EXPECT_EQ(lRead, lLength);
        EXPECT_EQ(lChain.back()->GetValueInherit(0, true), eLyrOverride);
        for (int i = 0; i + 1 < lLength; ++i)
            lChain[static_cast<std::size_t>(i)].reset();
        EXPECT_EQ(IntOf(*lChain.back(), 0), lLength - 1);
        EXPECT_STREQ(lChain.back()->GetName(1), "child");
        EXPECT_EQ(lChain.back()->GetInstanceOf(), nullptr);
    });
}

TEST_F(Depth, ALongChainGoesFromTheBottom) {
    OnSmallStack([] {
        std::vector<OwnedPage> lChain = LongChain(LongChainLength());
        while (lChain.size() > 1)
            lChain.pop_back();
        EXPECT_EQ(lChain.front()->GetInstances().GetCount(), 0);
    });
}

TEST_F(Depth, APageInTheMiddleOfALongChainGoes) {
    OnSmallStack([] {
        std::vector<OwnedPage> lChain = LongChain(LongChainLength());
        SetInt(*lChain.front(), 1, 5);
        for (std::size_t i = lChain.size() / 4; i < lChain.size(); i += lChain.size() / 4)
            lChain[i].reset();
        EXPECT_EQ(IntOf(*lChain.back(), 1), 5);
        SetInt(*lChain.front(), 1, 6);
        EXPECT_EQ(IntOf(*lChain.back(), 1), 5) << "cut off, with a copy";
    });
}

TEST_F(Depth, AValueIsPushedPageByPageUpAChain) {
    OnSmallStack([] {
        std::vector<OwnedPage> lChain = LongChain(BoundedChainLength());
        KLyrPropertyPage& lLeaf = *lChain.back();
        SetInt(lLeaf, 1, 9);
        for (std::size_t i = lChain.size() - 1; i > 0; --i)
            lChain[i]->PushPropertiesToParentInstance();
        EXPECT_EQ(lLeaf.GetValueInherit(1, false), eLyrInherit);
        EXPECT_EQ(IntOf(*lChain.front(), 1), 9);
        EXPECT_EQ(IntOf(lLeaf, 1), 9);
    });
}

TEST_F(Depth, ManyPropertiesArePushedAtOnce) {
    OnSmallStack([] {
        const OwnedPage lPage = MakeRoot("root", eINTEGER1);
        const OwnedPage lInstance = MakeInstance(lPage);
        const int lCount = Million() / 2;
        for (int i = 1; i <= lCount; ++i)
            lInstance->Add(0, "pushed", eINTEGER1);
        SetInt(*lInstance, lCount, 4);
        lInstance->PushPropertiesToParentInstance();
        EXPECT_EQ(CountByIds(*lPage), lCount + 1);
        EXPECT_EQ(IntOf(*lPage, lCount), 4);
        EXPECT_EQ(lInstance->GetValueInherit(lCount, false), eLyrInherit);
    });
}

// --- many instances of one page --------------------------------------------------------------------------------------

std::vector<OwnedPage> Fan(const OwnedPage& pPage, int pCount) {
    std::vector<OwnedPage> lInstances;
    lInstances.reserve(static_cast<std::size_t>(pCount));
    for (int i = 0; i < pCount; ++i)
        lInstances.push_back(MakeInstance(pPage));
    return lInstances;
}

TEST_F(Depth, AMillionInstancesComeAreReadAndGoInAnyOrder) {
    OnSmallStack([] {
        const OwnedPage lPage = MakeRoot("root", eINTEGER1);
        SetInt(*lPage, 0, 3);
        std::vector<OwnedPage> lInstances = Fan(lPage, Million());
        EXPECT_EQ(lPage->GetInstances().GetCount(), Million());
        int lRead = 0;
        for (const OwnedPage& lInstance : lInstances)
            lRead += IntOf(*lInstance, 0) == 3 ? 1 : 0;
        EXPECT_EQ(lRead, Million());
        for (std::size_t i = 0; i < lInstances.size(); i += 2)
            lInstances[i].reset();
        for (std::size_t i = lInstances.size() - 1; i < lInstances.size(); i -= 2)
            lInstances[i].reset();
        EXPECT_EQ(lPage->GetInstances().GetCount(), 0);
    });
}

TEST_F(Depth, APageGoesBeforeAMillionInstances) {
    OnSmallStack([] {
        OwnedPage lPage = MakeRoot("root", eINTEGER1);
        SetInt(*lPage, 0, 3);
        std::vector<OwnedPage> lInstances = Fan(lPage, Million());
        lPage.reset();
        int lRead = 0;
        for (const OwnedPage& lInstance : lInstances)
            lRead += IntOf(*lInstance, 0) == 3 && !lInstance->GetInstanceOf() ? 1 : 0;
        EXPECT_EQ(lRead, Million());
    });
}

// --- types -----------------------------------------------------------------------------------------------------------

// Every page has one child that is typed by the page before it, put there while that one was still empty.
TEST_F(Depth, TypesWithinTypesAreExpandedToTheInnermost) {
    OnSmallStack([] {
        std::vector<OwnedPage> lTypes;
        for (int i = 0; i < NestedTypes(); ++i)
            lTypes.push_back(MakeRoot("type", eINTEGER1));
        for (std::size_t i = lTypes.size() - 1; i > 0; --i)
            lTypes[i]->Add(0, "part", lTypes[i - 1].get());
        lTypes.front()->Add(0, "innermost", eINTEGER1);
        const OwnedPage lPage = MakeRoot("root", eINTEGER1);
        const int lId = lPage->Add(0, "whole", lTypes.back().get());
        EXPECT_EQ(lId, 1);
        EXPECT_EQ(CountByIds(*lPage), NestedTypes() + 2);
        int lDeepest = 0;
        int lLevels = 0;
        for (int i = 0; (i = lPage->GetChild(i)) != -1; ++lLevels)
            lDeepest = i;
        EXPECT_EQ(lLevels, NestedTypes() + 1);
        EXPECT_STREQ(lPage->GetName(lDeepest), "innermost");
        lTypes.erase(lTypes.begin(), lTypes.begin() + NestedTypes() / 2);
        EXPECT_EQ(lPage->GetTypeInfo(lId), lTypes.back().get());
    });
}

// The type of a root that is typed by a root and so on is looked up through all of them.
TEST_F(Depth, ATypeIsFoundThroughAChainOfTypedRoots) {
    OnSmallStack([] {
        std::vector<OwnedPage> lTypes;
        lTypes.push_back(MakeRoot("type", eDOUBLE3));
        while (static_cast<int>(lTypes.size()) < BoundedChainLength())
            lTypes.push_back(MakeTyped("type", lTypes.back()));
        EXPECT_EQ(lTypes.back()->GetType(0), eDOUBLE3);
        for (std::size_t i = 0; i + 1 < lTypes.size(); ++i)
            lTypes[i].reset();
        EXPECT_EQ(lTypes.back()->GetType(0), eDOUBLE3);
    });
}

TEST_F(Depth, AMillionChildrenAreTypedByOnePageThatGoesFirst) {
    OnSmallStack([] {
        OwnedPage lType = MakeRoot("type", eINTEGER1);
        const OwnedPage lPage = MakeRoot("root", eINTEGER1);
        int lAdded = 0;
        for (int i = 0; i < Million(); ++i)
            lAdded += lPage->Add(0, "typed", lType.get()) == i + 1 ? 1 : 0;
        EXPECT_EQ(lAdded, Million());
        EXPECT_EQ(lPage->GetTypeInfo(Million()), lType.get());
        int lChildren = 0;
        for (int lId = lPage->GetChild(0); lId != -1; lId = lPage->GetSibling(lId))
            ++lChildren;
        EXPECT_EQ(lChildren, Million());
        for (int i = 1; i <= Million(); i += 2)
            lPage->RemoveOwnEntry(i);
        lType.reset();
        int lTyped = 0;
        for (int i = 2; i <= Million(); i += 2)
            lTyped += !lPage->GetTypeInfo(i) && lPage->GetType(i) == eINTEGER1 ? 1 : 0;
        EXPECT_EQ(lTyped, Million() / 2);
    });
}

// --- connections -----------------------------------------------------------------------------------------------------

TEST_F(Depth, APointHasAMillionConnections) {
    OnSmallStack([] {
        KLyrConnectionPoint lPoint(nullptr);
        TypeFilter lFilter(eLyrConnectionData);
        std::deque<KLyrConnectionPoint> lPeers;
        int lConnected = 0;
        for (int i = 0; i < Million(); ++i) {
            KLyrConnectionPoint& lPeer = lPeers.emplace_back(nullptr);
            const kLyrConnectionType lType = i % 4 == 0 ? eLyrConnectionData : eLyrConnectionSystem;
            lConnected += (i % 2 == 0 ? lPoint.ConnectSrc(&lPeer, lType) : lPeer.ConnectSrc(&lPoint, lType)) ? 1 : 0;
        }
        EXPECT_EQ(lConnected, Million());
        EXPECT_EQ(lPoint.GetSrcCount(), Million() / 2);
        EXPECT_EQ(lPoint.GetDstCount(), Million() / 2);
        EXPECT_EQ(lPoint.GetSrcCount(&lFilter), Million() / 4);
        EXPECT_EQ(lPoint.GetDstCount(&lFilter), 0);
        int lRight = 0;
        for (int i = 0; i < Million(); ++i) {
            KLyrConnectionPoint* lPeer = &lPeers[static_cast<std::size_t>(i)];
            lRight += (i % 2 == 0 ? lPoint.GetSrc(i / 2) : lPoint.GetDst(i / 2)) == lPeer ? 1 : 0;
        }
        EXPECT_EQ(lRight, Million());
        for (std::size_t i = 0; i < lPeers.size(); i += 4)
            lPoint.DisconnectSrc(&lPeers[i]);
        EXPECT_EQ(lPoint.GetSrcCount(), Million() / 4);
        EXPECT_EQ(lPoint.GetSrcCount(&lFilter), 0);
        while (lPeers.size() > static_cast<std::size_t>(Million() / 2))
            lPeers.pop_front();
        EXPECT_EQ(lPoint.GetDstCount(), Million() / 4);
        lPoint.WipeConnectionList();
        EXPECT_EQ(lPeers.back().GetSrcCount() + lPeers.back().GetDstCount(), 0);
    });
}

// pPeerFirst: the page with the many properties goes before the one that they are all connected to.
void ConnectAMillionProperties(bool pPeerFirst) {
    const int lCount = Million();
    OwnedPage lHub = MakeRoot("hub", eINTEGER1);
    OwnedPage lPage = MakeRoot("root", eINTEGER1);
    const KLyrPropertyInfo* lTag = nullptr;
    KLyrPropertyInfo* lInfo = lPage->GetPropertyItem(lTag, 0);
    int lConnected = 0;
    for (int i = 1; i <= lCount; ++i) {
        const int lId = lPage->Add(0, lInfo, nullptr, nullptr, false);
        lConnected += lHub->ConnectSrc(0, lPage.get(), lId, eLyrConnectionData) ? 1 : 0;
    }
    EXPECT_EQ(lConnected, lCount);
    EXPECT_EQ(lHub->GetSrcCount(0, nullptr), lCount);
    int lRight = 0;
    for (int i = 0; i < lCount; ++i) {
        int lId = -1;
        lRight += lHub->GetSrc(0, i, nullptr, nullptr, &lId) && lId == i + 1 ? 1 : 0;
    }
    EXPECT_EQ(lRight, lCount);
    (pPeerFirst ? lPage : lHub).reset();
    if (lHub) {
        EXPECT_EQ(lHub->GetSrcCount(0, nullptr), 0);
    }
    if (lPage) {
        EXPECT_EQ(lPage->GetDstCount(lCount, nullptr), 0);
    }
}

TEST_F(Depth, APropertyWithAMillionSourcesGoesFirst) {
    OnSmallStack([] { ConnectAMillionProperties(false); });
}

TEST_F(Depth, AMillionSourcesOfAPropertyGoFirst) {
    OnSmallStack([] { ConnectAMillionProperties(true); });
}

}  // namespace
}  // namespace lyrsdk
