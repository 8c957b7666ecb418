#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "lyrfilesdk/klyrplugins/klyrplug.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/connection_filters.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

// What is left when something goes: nothing that dangles, nothing that leaks. Every test of this file ends with as much
// memory in use as it began with; run under AddressSanitizer they also show that nobody looks at what is gone.

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using F = LyrPropertyFlags;

class PropertyLifetimes : public HandleTest {};

// While alive, connection items wipe their connections themselves.
class WipeMode {
public:
    explicit WipeMode(bool pOn) : mBefore(KLyrPlug::GetWipeMode()) { KLyrPlug::SetWipeMode(pOn); }
    ~WipeMode() { KLyrPlug::SetWipeMode(mBefore); }
    WipeMode(const WipeMode&) = delete;
    WipeMode& operator=(const WipeMode&) = delete;

private:
    bool mBefore;
};

// --- pages of one family ---------------------------------------------------------------------------------------------

// Makes a family of four pages whose n-th page is an instance of page pParents[n] (-1: of none).
class FourPages {
public:
    explicit FourPages(const std::vector<int>& pParents) {
        for (int i = 0; i < 4; ++i) {
            const int lParent = pParents[static_cast<std::size_t>(i)];
            mPages.push_back(lParent < 0 ? H::Create("root", eSTRING) : H::Create(mPages[Index(lParent)]));
            Fill(mPages.back(), i);
        }
    }
    ~FourPages() {
        for (H& lPage : mPages)
            lPage.Destroy();
    }
    FourPages(const FourPages&) = delete;
    FourPages& operator=(const FourPages&) = delete;

    void Destroy(int pPage) { EXPECT_TRUE(mPages[Index(pPage)].Destroy()); }

    std::vector<std::string> Seen() const {
        std::vector<std::string> lSeen;
        for (const H& lPage : mPages)
            lSeen.push_back(lPage.Valid() ? DescribePage(lPage, false) : "");
        return lSeen;
    }

private:
    static std::size_t Index(int pPage) { return static_cast<std::size_t>(pPage); }

    // Something of its own, and something over what is inherited.
    static void Fill(H& pPage, int pNumber) {
        const std::string lName = "added by page " + std::to_string(pNumber);
        H lAdded = AddChild(pPage, lName.c_str(), eDOUBLE1);
        SetDouble(lAdded, pNumber + 0.5);
        SetText(AddChild(lAdded, "text", eSTRING), lName.c_str());
        lAdded.ModifyFlags(static_cast<F::eLyrPropertyFlags>(1u << pNumber), true);
        pPage.ModifyFlags(F::eUSER, pNumber % 2 == 0);
        pPage.ModifyFlags(static_cast<F::eLyrPropertyFlags>(256u << pNumber), true);
        if (pNumber > 0)
            SetDouble(H(pPage.GetPage(), 1), 100 + pNumber);
        if (pNumber == 2)
            SetText(pPage, "over the root");
    }

    std::vector<H> mPages;
};

// Every shape that a family of four can have below its root, and every order of destruction.
TEST_F(PropertyLifetimes, PagesOfAFamilyGoInAnyOrderAndTheOthersReadTheSame) {
    for (int lShape = 0; lShape < 6; ++lShape) {
        const std::vector<int> lParents{-1, 0, lShape % 2, lShape / 2};
        std::vector<int> lOrder{0, 1, 2, 3};
        do {
            SCOPED_TRACE("shape " + std::to_string(lShape) + ", order " + std::to_string(lOrder[0]) +
                         std::to_string(lOrder[1]) + std::to_string(lOrder[2]) + std::to_string(lOrder[3]));
            const LeakCheck lLeakCheck;
            FourPages lFamily(lParents);
            std::vector<std::string> lSeen = lFamily.Seen();
            for (int lPage : lOrder) {
                lFamily.Destroy(lPage);
                lSeen[static_cast<std::size_t>(lPage)].clear();
                ASSERT_EQ(lFamily.Seen(), lSeen) << "after page " << lPage;
            }
        } while (std::next_permutation(lOrder.begin(), lOrder.end()));
    }
}

TEST_F(PropertyLifetimes, AnInstanceIsAFamilyRootOfItsOwnAfterItsPageWent) {
    H lPage = H::Create("root", eDOUBLE1);
    OwnedRoot lInstance(H::Create(lPage));
    OwnedRoot lSister(H::Create(lPage));
    int lData = 0;
    lPage.SetPageDataPtr(&lData);
    SetDouble(lPage, 2);
    const H lBefore = lPage.Add("before", H());
    lPage.Destroy();
    EXPECT_FALSE(lInstance->IsAReferenceTo());
    EXPECT_EQ(lInstance->GetReferenceTo(), nullptr);
    EXPECT_EQ(lInstance->GetPage()->GetInstanceOf(), nullptr);
    EXPECT_EQ(lInstance->GetValueInheritType(true), eLyrOverride);
    EXPECT_EQ(lInstance->GetFlagsInheritType(F::AllFlags(), false), eLyrOverride);
    EXPECT_FALSE(lInstance->SetValueInheritType(eLyrInherit));
    EXPECT_EQ(DoubleOf(*lInstance), 2);
    SetDouble(*lInstance, 3);
    EXPECT_EQ(DoubleOf(*lSister), 2);
    const H lHere = lInstance->Add("here", H());
    const H lThere = lSister->Add("there", H());
    EXPECT_GT(lHere.GetId(), lBefore.GetId());
    EXPECT_GT(lThere.GetId(), lHere.GetId()) << "the ids still come from one counter";
}

TEST_F(PropertyLifetimes, ItemsThatWerePushedOutliveThePageThatMadeThem) {
    OwnedRoot lPage(H::Create("root", eSTRING));
    H lInstance = H::Create(*lPage);
    SetText(lInstance, "from the instance");
    SetText(AddChild(lInstance, "added", eSTRING), "added to the instance");
    lInstance.PushPropertiesToParentInstance();
    lInstance.Destroy();
    EXPECT_EQ(TextOf(*lPage), "from the instance");
    EXPECT_EQ(TextOf(lPage->Find("added", true)), "added to the instance");
}

TEST_F(PropertyLifetimes, ABracketClosesWithItsPage) {
    for (bool lEntriesFirst : {false, true}) {
        H lPage = H::Create("root", eDOUBLE1);
        H lInstance = H::Create(lPage);
        H lChild = lPage.Add("child of a name that is not short", H());
        lPage.BeginCreateOrFindProperty();
        lInstance.BeginCreateOrFindProperty();
        if (lEntriesFirst)
            lChild.Destroy();
        lPage.Destroy();
        EXPECT_EQ(lInstance.Find("child of a name that is not short", true).Valid(), !lEntriesFirst);
        lInstance.Destroy();
    }
    const LeakCheck lLeakCheck;
    H::Create("a name of which nothing is left", eDOUBLE1).Destroy();
}

// --- type pages ------------------------------------------------------------------------------------------------------

TEST_F(PropertyLifetimes, APropertyKeepsTheTypeThatItsTypePageGaveIt) {
    H lType = H::Create("type", eENUM);
    AddChild(lType, "part", eDOUBLE2);
    OwnedRoot lPage(H::Create("root", lType));
    OwnedRoot lInstance(H::Create(*lPage));
    const H lChild = lPage->Add("child", lType);
    const int lBound = 2;
    lPage->SetMax(&lBound, eINTEGER1);
    lPage->AddEnumValue("zero");
    SetInt(*lPage, 1);
    lType.Destroy();
    for (H lHandle : {H(*lPage), lChild, H(*lInstance), On(*lInstance, lChild)}) {
        EXPECT_EQ(lHandle.GetTypeInfo(), H(nullptr, 0));
        EXPECT_EQ(lHandle.GetType(), eENUM);
        EXPECT_STREQ(lHandle.GetChild().GetName(), "part");
    }
    EXPECT_EQ(IntOf(*lPage), 1);
    int lMax = 0;
    EXPECT_TRUE(lPage->GetMax(&lMax, eINTEGER1));
    EXPECT_EQ(lMax, 2);
    EXPECT_EQ(lPage->AddEnumValue("one"), 1);
    OwnedRoot lCopy(H::Create("copy", *lPage));
    EXPECT_EQ(lCopy->GetType(), eENUM) << "a page whose type page is gone still types others";
}

TEST_F(PropertyLifetimes, ANewPageIsNotTakenForATypePageThatIsGone) {
    OwnedRoot lPage(H::Create());
    H lType = H::Create("type", eDOUBLE1);
    lPage->Add("child", lType);
    KLyrPropertyPage* lOld = lType.GetPage();
    EXPECT_TRUE(lPage->Find("child", lType, true).Valid());
    lType.Destroy();
    EXPECT_FALSE(lPage->Find("child", H(lOld, 0), true).Valid()) << "only the address is looked at";
    std::vector<std::unique_ptr<OwnedRoot>> lOthers;
    for (int i = 0; i < 100; ++i) {
        lOthers.push_back(std::make_unique<OwnedRoot>(H::Create("other", eDOUBLE1)));
        EXPECT_FALSE(lPage->Find("child", *lOthers.back(), true).Valid());
    }
}

TEST_F(PropertyLifetimes, TypePagesGoBeforeAndAfterWhatTheyType) {
    for (int lOrder = 0; lOrder < 6; ++lOrder) {
        SCOPED_TRACE(lOrder);
        const LeakCheck lLeakCheck;
        H lInner = H::Create("inner", eDOUBLE1);
        H lOuter = H::Create("outer", eSTRING);
        lOuter.Add("part", lInner);
        H lPage = H::Create("root", lOuter);
        H* lPages[] = {&lInner, &lOuter, &lPage};
        lPages[lOrder % 3]->Destroy();
        EXPECT_EQ(lPage.Valid() ? lPage.GetType() : eSTRING, eSTRING);
        lPages[(lOrder + 1 + lOrder / 3) % 3]->Destroy();
        EXPECT_EQ(lPage.Valid() ? lPage.GetType() : eSTRING, eSTRING);
        for (H* lLeft : lPages)
            lLeft->Destroy();
    }
}

TEST_F(PropertyLifetimes, APageThatTypesItsOwnPropertiesGoesQuietly) {
    ReportRecorder lReports;
    H lPage = H::Create("root", eINTEGER1);
    H lInstance = H::Create(lPage);
    lPage.Add("self", lPage);
    lInstance.Add("above", lPage);
    EXPECT_EQ(lReports.Take(), std::vector<std::string>(2, "Recursive type info")) << "once of itself, once within it";
    lPage.Destroy();
    for (const char* lName : {"self", "above"}) {
        EXPECT_EQ(lInstance.Find(lName, true).GetType(), eINTEGER1);
        EXPECT_EQ(lInstance.Find(lName, true).GetTypeInfo(), H(nullptr, 0));
    }
    EXPECT_STREQ(lInstance.Find("above|self", "|", true).GetName(), "self");
    lInstance.Destroy();
}

TEST_F(PropertyLifetimes, ATypePageThatInheritsItsRootTypesThroughTheChain) {
    H lTop = H::Create("type", eDOUBLE3);
    AddChild(lTop, "x", eDOUBLE1);
    H lType = H::Create(lTop);
    AddChild(lType, "y", eDOUBLE1);
    OwnedRoot lPage(H::Create("root", lType));
    EXPECT_EQ(lPage->GetType(), eDOUBLE3);
    EXPECT_TRUE(lPage->Find("x", true).Valid() && lPage->Find("y", true).Valid());
    lTop.Destroy();
    EXPECT_EQ(lPage->GetType(), eDOUBLE3);
    EXPECT_EQ(lPage->GetTypeInfo(), lType);
    lType.Destroy();
    EXPECT_EQ(lPage->GetType(), eDOUBLE3);
    EXPECT_EQ(lPage->GetTypeInfo(), H(nullptr, 0));
}

// --- connections -----------------------------------------------------------------------------------------------------

TEST_F(PropertyLifetimes, NoPeerPointsAtAPropertyOrPageThatIsGone) {
    for (bool lWipe : {false, true}) {
        const WipeMode lMode(lWipe);
        OwnedRoot lPage(H::Create("root", eDOUBLE1));
        TypeFilter lFilter(eLyrConnectionData);
        H lPeer = H::Create("peer", eDOUBLE1);
        H lChild = AddChild(lPeer, "child", eDOUBLE1);
        lPage->ConnectSrc(lPeer, eLyrConnectionData);
        lPage->ConnectSrc(lChild, eLyrConnectionData);
        lPage->ConnectDst(lChild, eLyrConnectionData);
        lPeer.ConnectDst(lChild, eLyrConnectionData);
        EXPECT_EQ(lPage->GetSrcCount(&lFilter), 2);
        EXPECT_EQ(lPage->GetDstCount(&lFilter), 1);
        lChild.Destroy();
        EXPECT_EQ(lPage->GetSrcCount(&lFilter), 1);
        EXPECT_EQ(lPage->GetDstCount(&lFilter), 0);
        EXPECT_EQ(lPage->GetDstCount(nullptr), 0);
        EXPECT_EQ(lPage->GetSrc(nullptr, 0), lPeer);
        EXPECT_EQ(lPeer.GetDstCount(nullptr), 1);
        lPeer.Destroy();
        EXPECT_EQ(lPage->GetSrcCount(&lFilter), 0);
        EXPECT_EQ(lPage->GetSrcCount(nullptr), 0);
        EXPECT_EQ(lPage->GetSrc(&lFilter, 0), H());
    }
}

TEST_F(PropertyLifetimes, ConnectionsOfAPageGoWithItAndNotToItsInstances) {
    OwnedRoot lPeer(H::Create("peer", eDOUBLE1));
    H lPage = H::Create("root", eDOUBLE1);
    OwnedRoot lInstance(H::Create(lPage));
    lPage.ConnectSrc(*lPeer, eLyrConnectionDefault);
    lInstance->ConnectSrc(*lPeer, eLyrConnectionDefault);
    EXPECT_EQ(lPeer->GetDstCount(nullptr), 2);
    lPage.Destroy();
    EXPECT_EQ(lPeer->GetDstCount(nullptr), 1);
    EXPECT_EQ(lPeer->GetDst(nullptr, 0), *lInstance);
    EXPECT_TRUE(lInstance->IsConnectedSrc(*lPeer));
}

TEST_F(PropertyLifetimes, AFilterGoesBeforeThePointsItFiltered) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    OwnedRoot lPeer(H::Create("peer", eDOUBLE1));
    lPage->ConnectSrc(*lPeer, eLyrConnectionData);
    lPage->ConnectDst(*lPeer, eLyrConnectionSystem);
    alignas(TypeFilter) unsigned char lMemory[sizeof(TypeFilter)];
    const struct {
        kLyrConnectionType mType;
        int mSrcs, mDsts;
    } lCases[] = {{eLyrConnectionData, 1, 0}, {eLyrConnectionSystem, 0, 1}, {eLyrConnectionUser, 0, 0}};
    for (const auto& lCase : lCases) {
        TypeFilter* lFilter = ::new (lMemory) TypeFilter(lCase.mType);
        EXPECT_EQ(lPage->GetSrcCount(lFilter), lCase.mSrcs) << "a filter at the address of the one before";
        EXPECT_EQ(lPage->GetDstCount(lFilter), lCase.mDsts);
        EXPECT_EQ(lPeer->GetDstCount(lFilter), lCase.mSrcs);
        lFilter->~TypeFilter();
        EXPECT_EQ(lPage->GetSrcCount(nullptr), 1);
    }
    TypeFilter lFilter(eLyrConnectionData);
    {
        OwnedRoot lOther(H::Create("other", eDOUBLE1));
        lOther->ConnectSrc(*lPage, eLyrConnectionData);
        EXPECT_EQ(lOther->GetSrcCount(&lFilter), 1);
    }
    EXPECT_EQ(lPage->GetDstCount(&lFilter), 0) << "the point went before the filter";
}

// --- without memory for the copies
// ------------------------------------------------------------------------------------

// The page then lives on behind its instance, which must not hand out what the application took for gone.
class PropertyLifetimesWithoutMemory : public HandleTest {
protected:
    PropertyLifetimesWithoutMemory() {
        mPage.SetPageDataPtr(this);
        SetText(mPage, "still read");
    }
    void DestroyThePage() {
        const FailAllocations lFail(0, true);
        EXPECT_TRUE(mPage.Destroy());
    }

    H mPage = H::Create("root", eSTRING);
    OwnedRoot mInstance{H::Create(mPage)};
    OwnedRoot mPeer{H::Create("peer", eSTRING)};
};

TEST_F(PropertyLifetimesWithoutMemory, ADestroyedPageIsStillReadByItsInstance) {
    DestroyThePage();
    EXPECT_EQ(TextOf(*mInstance), "still read");
}

TEST_F(PropertyLifetimesWithoutMemory, ADestroyedPageGivesItsDataToNobody) {
    DestroyThePage();
    EXPECT_FALSE(mInstance->IsAReferenceTo());
    EXPECT_EQ(mInstance->GetReferenceTo(), nullptr);
}

TEST_F(PropertyLifetimesWithoutMemory, ADestroyedPageIsConnectedToNobody) {
    mPeer->ConnectSrc(mPage, eLyrConnectionDefault);
    mPeer->ConnectDst(mPage, eLyrConnectionDefault);
    DestroyThePage();
    EXPECT_EQ(mPeer->GetSrc(nullptr, 0), H());
    EXPECT_EQ(mPeer->GetDstCount(nullptr), 0);
}

TEST_F(PropertyLifetimesWithoutMemory, ADestroyedPageTypesNothing) {
    const H lTyped = mPeer->Add("typed", mPage);
    DestroyThePage();
    EXPECT_EQ(lTyped.GetTypeInfo(), H(nullptr, 0));
    EXPECT_EQ(lTyped.GetType(), eSTRING);
}

TEST_F(PropertyLifetimesWithoutMemory, ADestroyedPageTakesNothingFromItsInstances) {
    OwnedRoot lOther(H::Create(mPage));
    DestroyThePage();
    SetText(*lOther, "its own");
    lOther->PushPropertiesToParentInstance();
    EXPECT_EQ(TextOf(*lOther), "its own");
    EXPECT_EQ(TextOf(*mInstance), "still read");
}

// --- memory that does not grow ---------------------------------------------------------------------------------------

// A page keeps the records of entries that went until they outnumber the others by far; everything else is given back
// at once. So these rounds either keep their entries or make and destroy their pages.

// Runs one round twice to warm up, then many times, and expects the memory in use to stay as it is.
void ExpectNoGrowth(const std::function<void(int)>& pRound) {
    pRound(0);
    pRound(1);
    const std::size_t lBytes = MemoryProbe::LiveBytes();
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    for (int i = 0; i < 500; ++i)
        pRound(i);
    pRound(0);
    pRound(1);
    EXPECT_EQ(MemoryProbe::LiveBytes(), lBytes);
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks);
}

std::string TextOfRound(int pRound) {
    return "a text that is not short, number " + std::to_string(pRound % 2);
}

TEST_F(PropertyLifetimes, OverridingAndInheritingAgainKeepsNothing) {
    OwnedRoot lPage(H::Create("root", eSTRING));
    OwnedRoot lInstance(H::Create(*lPage));
    SetText(*lPage, "a text of some length that has to be copied");
    lInstance->ModifyFlags(F::eHIDDEN, true);
    const auto lRest = static_cast<F::eLyrPropertyFlags>(F::AllFlags() & ~F::eHIDDEN);
    ExpectNoGrowth([&](int) {
        EXPECT_TRUE(lInstance->SetValueInheritType(eLyrOverride));
        EXPECT_TRUE(lInstance->SetFlagsInheritType(lRest, eLyrOverride));
        EXPECT_TRUE(lInstance->SetValueInheritType(eLyrInherit));
        EXPECT_TRUE(lInstance->SetFlagsInheritType(lRest, eLyrInherit));
        EXPECT_TRUE(lInstance->ModifyFlags(F::eUSER, true));
        EXPECT_TRUE(lInstance->ModifyFlags(F::eUSER, false));
    });
    EXPECT_EQ(lInstance->GetFlags(), F::eHIDDEN);
}

// A few dozen records, however many rounds; nothing of the values.
TEST_F(PropertyLifetimes, AnEntryThatComesAndGoesKeepsNoMoreThanAFewRecords) {
    OwnedRoot lPage(H::Create("root", eSTRING));
    OwnedRoot lInstance(H::Create(*lPage));
    const std::string lText(10000, 't');
    SetText(*lPage, lText.c_str());
    const std::size_t lBytes = MemoryProbe::LiveBytes();
    const int lRounds = 500;
    for (int i = 0; i < lRounds; ++i) {
        EXPECT_TRUE(lInstance->SetValueInheritType(eLyrOverride));
        EXPECT_TRUE(lInstance->SetValueInheritType(eLyrInherit));
        EXPECT_EQ(lInstance->GetPage()->GetPropertyEntry(0), lPage->GetPage()->GetPropertyEntry(0));
    }
    EXPECT_LE(MemoryProbe::LiveBytes(), lBytes + 50 * sizeof(KLyrPropertyPage::KEntryMap::RecordType));
}

TEST_F(PropertyLifetimes, RewritingKeepsOnlyTheLastText) {
    OwnedRoot lPage(H::Create("root", eENUM));
    H lText = AddChild(*lPage, "text", eSTRING);
    lPage->AddEnumValue("text");
    ExpectNoGrowth([&](int pRound) {
        const std::string lTextOfRound = TextOfRound(pRound);
        const KString lValue(lTextOfRound.c_str());
        lText.SetLabel(lTextOfRound.c_str());
        lPage->SetLabel("");
        lText.Set(&lValue, eSTRING, false);
        lText.SetMin(&lValue, eSTRING);
        lPage->SetEnumValue(0, lTextOfRound.c_str());
        lPage->AddEnumValue("one");
        lPage->InsertEnumValue(0, lTextOfRound.c_str());
        lPage->RemoveEnumValue(2);
        lPage->RemoveEnumValue(0);
        EXPECT_EQ(lPage->GetEnumCount(), 1);
    });
}

TEST_F(PropertyLifetimes, PropertiesPagesAndConnectionsThatComeAndGoLeaveNothing) {
    OwnedRoot lType(H::Create("type", eBLOB));
    AddChild(AddChild(*lType, "part", eSTRING), "deep", eSTRING);
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    TypeFilter lFilter(eLyrConnectionData);
    ExpectNoGrowth([&](int pRound) {
        OwnedRoot lInstance(H::Create(*lPage));
        H lAdded = lInstance->Add(TextOfRound(pRound).c_str(), *lType);
        H lPart = lAdded.GetChild();
        H lDeep = lPart.GetChild();
        lPage->ConnectSrc(lDeep, eLyrConnectionData);
        lPage->ConnectSrc(lPart, eLyrConnectionData);
        EXPECT_EQ(lPage->GetSrcCount(&lFilter), 2);
        H lOther = H::Create(*lInstance);
        lOther.ConnectSrc(lDeep, eLyrConnectionData);
        SetText(On(lOther, lDeep), TextOfRound(pRound).c_str());
        lInstance->BeginCreateOrFindProperty();
        EXPECT_TRUE(lDeep.Destroy() && lPart.Destroy() && lAdded.Destroy());
        lInstance->EndCreateOrFindProperty();
        EXPECT_TRUE(lOther.Destroy());
        EXPECT_EQ(lPage->GetSrcCount(&lFilter), 0);
    });
}

TEST_F(PropertyLifetimes, PushedItemsReplaceThoseBefore) {
    OwnedRoot lPage(H::Create("root", eSTRING));
    OwnedRoot lInstance(H::Create(*lPage));
    lInstance->ConnectSrc(*lPage, eLyrConnectionDefault);
    ExpectNoGrowth([&](int pRound) {
        SetText(*lInstance, TextOfRound(pRound).c_str());
        lInstance->ModifyFlags(F::eUSER, pRound % 2 == 0);
        EXPECT_TRUE(lInstance->PushPropertiesToParentInstance());
        EXPECT_EQ(TextOf(*lPage), TextOfRound(pRound));
    });
}

}  // namespace
}  // namespace lyrsdk
