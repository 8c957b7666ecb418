#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "lyrfilesdk/components/kbaselib/klib/kassert.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/connection_filters.h"
#include "tests/support/handle_pages.h"
#include "tests/support/on_all_threads.h"
#include "tests/support/report_recorder.h"

// Threads that work on page families of their own at the same time. Between them they share the names' texts, the
// brackets over them, the check sites of reports and the memory hook.

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using F = LyrPropertyFlags;

constexpr int kRounds = 40;

class PropertyThreads : public HandleTest {};

// --- everything at once ----------------------------------------------------------------------------------------------

std::string Name(const char* pStem, int pNumber) {
    return pStem + std::to_string(pNumber);
}

void CreateOrFind(KLyrPropertyHandle& pPage, const H& pType, int pRound) {
    pPage.BeginCreateOrFindProperty();
    for (int i = 0; i < 20; ++i) {
        const std::string lName = Name("shared ", (pRound + i * 7) % 12);
        if (!pPage.Find(lName.c_str(), true).Valid())
            i % 3 == 0 ? pPage.Add(lName.c_str(), pType) : pPage.Add(lName.c_str(), eSTRING);
    }
    pPage.EndCreateOrFindProperty();
}

void SetEverything(const H& pPage, int pRound) {
    int lStep = pRound;
    for (H lIt = pPage.GetFirstDescendent(); lIt.Valid(); lIt = pPage.GetNextDescendent(lIt), ++lStep) {
        const double lValue = lStep * 0.37;
        lIt.Set(&lValue, eDOUBLE1, lStep % 2 == 0);
        lIt.SetLabel(Name("label ", lStep % 5).c_str());
        lIt.SetUserTag(lStep);
        lIt.SetMax(&lValue, eDOUBLE1);
        lIt.ModifyFlags(static_cast<F::eLyrPropertyFlags>(1u << (lStep % 15)), lStep % 4 != 0);
        if (lStep % 6 == 0)
            lIt.SetValueInheritType(eLyrInherit);
    }
}

void ConnectEverything(const H& pPage, const H& pOther) {
    H lPrevious = pOther;
    for (H lIt = pPage.GetFirstDescendent(); lIt.Valid(); lIt = pPage.GetNextDescendent(lIt)) {
        lIt.ConnectSrc(lPrevious, lIt.GetId() % 2 ? eLyrConnectionData : eLyrConnectionDefault);
        H(pOther).ConnectSrc(lIt, eLyrConnectionData);
        lPrevious = lIt;
    }
}

// One round of work on a family of its own; what is seen of it at several points.
std::string WorkOnAFamily(int pRound) {
    TypeFilter lFilter(eLyrConnectionData);
    OwnedRoot lInner(H::Create("inner type", eSTRING));
    AddChild(*lInner, "deep", eDISTANCE);
    OwnedRoot lType(H::Create("type", eDOUBLE3));
    lType->Add("inner", *lInner);
    OwnedRoot lTop(H::Create("root", *lType));
    OwnedRoot lMiddle(H::Create(*lTop));
    OwnedRoot lBottom(H::Create(*lMiddle));
    CreateOrFind(*lTop, *lType, pRound);
    CreateOrFind(*lBottom, *lInner, pRound + 5);
    SetEverything(*lTop, pRound);
    SetEverything(*lBottom, pRound + 1);
    ConnectEverything(*lBottom, *lTop);
    std::string lSeen = DescribePage(*lTop) + DescribePage(*lBottom) + std::to_string(lTop->GetSrcCount(&lFilter));
    lBottom->PushPropertiesToParentInstance();
    lSeen += DescribePage(*lMiddle);
    lMiddle->Find("inner", true).Destroy();
    lTop->Destroy();
    lSeen += DescribePage(*lMiddle) + DescribePage(*lBottom);
    lType->Destroy();
    lMiddle->Destroy();
    return lSeen + DescribePage(*lBottom);
}

TEST_F(PropertyThreads, WorkOnFamiliesOfTheirOwnAsIfAlone) {
    std::vector<std::string> lExpected;
    for (int lRound = 0; lRound < kRounds; ++lRound)
        lExpected.push_back(WorkOnAFamily(lRound));
    ASSERT_NE(lExpected[0], lExpected[1]);
    OnAllThreads([&](int) {
        for (int lRound = 0; lRound < kRounds; ++lRound)
            EXPECT_EQ(WorkOnAFamily(lRound), lExpected[static_cast<std::size_t>(lRound)]) << lRound;
    });
}

TEST_F(PropertyThreads, WorkOnFamiliesOfTheirOwnOutOfStep) {
    std::vector<std::string> lExpected;
    for (int lRound = 0; lRound < kRounds; ++lRound)
        lExpected.push_back(WorkOnAFamily(lRound));
    OnAllThreads([&](int pThread) {
        for (int i = 0; i < kRounds; ++i) {
            const int lRound = (i + pThread * 11) % kRounds;
            EXPECT_EQ(WorkOnAFamily(lRound), lExpected[static_cast<std::size_t>(lRound)]) << lRound;
        }
    });
}

// --- names -----------------------------------------------------------------------------------------------------------

TEST_F(PropertyThreads, MakeAndDropTheSameNamesInsideAndOutsideOfBrackets) {
    OnAllThreads([](int pThread) {
        for (int lRound = 0; lRound < 20 * kRounds; ++lRound) {
            OwnedRoot lPage(H::Create("the only page of this name", eUNIDENTIFIED));
            if ((lRound + pThread) % 2 == 0)
                lPage->BeginCreateOrFindProperty();
            H lFirst = lPage->Add("a name", H());
            H lSecond = lPage->Add("another name", H());
            EXPECT_EQ(lPage->Find("a name", true), lFirst);
            EXPECT_FALSE(lPage->Find("a name of nobody", true).Valid());
            lFirst.Destroy();
            EXPECT_FALSE(lPage->Find("a name", true).Valid());
            EXPECT_EQ(lPage->Find("another name", true), lSecond);
            lPage->EndCreateOrFindProperty();
            EXPECT_EQ(lPage->Find("another name", true), lSecond);
        }
    });
}

// A bracket that one thread holds open keeps texts for all; closing it must not take those that are in use.
TEST_F(PropertyThreads, KeepTheirNamesWhenABracketElsewhereCloses) {
    OwnedRoot lBracketed(H::Create("bracketed", eUNIDENTIFIED));
    lBracketed->Add("kept open", H());
    OnAllThreads([&](int pThread) {
        for (int lRound = 0; lRound < 20 * kRounds; ++lRound) {
            if (pThread == 0) {
                lBracketed->BeginCreateOrFindProperty();
                lBracketed->EndCreateOrFindProperty();
                continue;
            }
            OwnedRoot lPage(H::Create("root", eUNIDENTIFIED));
            lPage->Add("twice", H()).Destroy();
            const H lAgain = lPage->Add("twice", H());
            EXPECT_STREQ(lAgain.GetName(), "twice");
            EXPECT_EQ(lPage->Find("twice", true), lAgain);
        }
    });
}

// --- reports ---------------------------------------------------------------------------------------------------------

void MisuseInManyWays() {
    OwnedRoot lPage(H::Create("root", eTIME));
    lPage->Add("self", *lPage);
    double lValue = 0;
    lPage->Set(&lValue, eREFERENCE, false);
    lPage->Set(&lValue, eMAX_TYPES, false);
    lPage->Set(&lValue, eDOUBLE1, false);
}

TEST_F(PropertyThreads, ReportFromTheSameSitesWithoutLosingOne) {
    ReportRecorder lReports;
    OnAllThreads([](int) {
        for (int lRound = 0; lRound < kRounds; ++lRound)
            MisuseInManyWays();
    });
    int lCounts[5] = {};
    const char* const lTexts[] = {"Recursive type info", "Trying to set value on a void Reference type",
                                  "Trying to assign an unknown type", "Incompatible type assigment"};
    for (const std::string& lMessage : lReports.Take()) {
        int lText = 0;
        while (lText < 4 && lMessage != lTexts[lText])
            ++lText;
        ++lCounts[lText];
    }
    for (int lText = 0; lText < 4; ++lText)
        EXPECT_EQ(lCounts[lText], kThreads * kRounds) << lTexts[lText];
    EXPECT_EQ(lCounts[4], 0) << "reports of another text";
}

// A handler that silences a site, as the default one does. It remembers the sites, to open them again.
std::atomic<int> sgSpoken{0};
std::atomic<bool*> sgSites[64];

void SpeakOnce(const char*, const char*, unsigned long, const char*, bool* pHideForever) {
    __atomic_store_n(pHideForever, true, __ATOMIC_RELAXED);
    const int lIndex = sgSpoken++;
    if (lIndex < 64)
        sgSites[lIndex] = pHideForever;
}

TEST_F(PropertyThreads, SilenceASiteForAllOfThem) {
    sgSpoken = 0;
    const KAssertFailedHandler lBefore = KSetAssertFailedHandler(&SpeakOnce);
    OnAllThreads([](int) {
        for (int lRound = 0; lRound < kRounds; ++lRound)
            MisuseInManyWays();
    });
    EXPECT_GE(sgSpoken, 4) << "every site speaks";
    EXPECT_LE(sgSpoken, 4 * kThreads) << "at most once a thread";
    for (int i = 0; i < sgSpoken && i < 64; ++i)
        *sgSites[i].load() = false;
    KSetAssertFailedHandler(lBefore);
}

// --- reading together ------------------------------------------------------------------------------------------------

// All that is seen below a property by steps in the tree, and each name found again.
void ReadBelow(const H& pRoot, const H& pParent, std::string& pSeen) {
    for (H lIt = pParent.GetChild(); lIt.Valid(); lIt = lIt.GetSibling()) {
        pSeen += Describe(lIt, true);
        pSeen += std::to_string(pParent.Find(lIt.GetName(), lIt.GetId() % 2 == 0).GetId());
        pSeen += std::to_string(lIt.GetParent().GetId()) + std::to_string(lIt.IsDescendentOf(pRoot));
        pSeen += std::to_string(lIt.GetValueInheritType(true)) + std::to_string(lIt.GetSrcCount(nullptr));
        ReadBelow(pRoot, lIt, pSeen);
    }
}

TEST_F(PropertyThreads, ReadOneFamilyThatNobodyChanges) {
    OwnedRoot lTop(H::Create("prototype", eUNIDENTIFIED));
    for (int i = 0; i < 40; ++i) {
        H lGroup = AddChild(*lTop, Name("group ", i).c_str(), eSTRING);
        for (int j = 0; j < 4; ++j)
            AddChild(lGroup, Name("part ", j).c_str(), j % 2 ? eDOUBLE3 : eDISTANCE);
    }
    OwnedRoot lMiddle(H::Create(*lTop));
    OwnedRoot lBottom(H::Create(*lMiddle));
    SetEverything(*lTop, 0);
    SetEverything(*lBottom, 1);
    ConnectEverything(*lBottom, *lTop);
    std::string lExpected;
    ReadBelow(*lBottom, *lBottom, lExpected);
    OnAllThreads([&](int) {
        std::string lSeen;
        ReadBelow(*lBottom, *lBottom, lSeen);
        EXPECT_EQ(lSeen, lExpected);
    });
}

// --- handing over ----------------------------------------------------------------------------------------------------

TEST_F(PropertyThreads, HandAFamilyOver) {
    H lRoot;
    std::thread([&] {
        lRoot = H::Create("root", eSTRING);
        SetText(lRoot, "made elsewhere");
        lRoot.BeginCreateOrFindProperty();
        lRoot.Add("child", H());
    }).join();
    EXPECT_EQ(TextOf(lRoot), "made elsewhere");
    EXPECT_TRUE(lRoot.Find("child", true).Valid());
    std::thread([&] { EXPECT_TRUE(lRoot.Destroy()); }).join();
    EXPECT_FALSE(lRoot.Valid());
}

}  // namespace
}  // namespace lyrsdk
