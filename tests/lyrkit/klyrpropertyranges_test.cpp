#include "lyrfilesdk/lyrkit/klyrpropertyranges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrkit/klyrtypedadd.h"
#include "tests/support/connection_filters.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using Ids = std::vector<int>;
using Pages = std::vector<const KLyrPropertyPage*>;

template <typename Range>
Ids IdsOf(const Range& pRange) {
    Ids lIds;
    for (const H& lHandle : pRange)
        lIds.push_back(lHandle.GetId());
    return lIds;
}

template <typename Range>
Pages PagesOf(const Range& pRange) {
    Pages lPages;
    for (const H& lHandle : pRange)
        lPages.push_back(lHandle.GetPage());
    return lPages;
}

//   0 page     1 a   2 b   3 in a   4 in 3   5 c   6 in a
class Ranges : public HandleTest {
protected:
    Ranges() {
        lyrAdd(*mPage, "a", 1);
        lyrAdd(*mPage, "b", 2);
        lyrAdd(At(1), "a1", 3);
        lyrAdd(At(3), "a11", 4);
        lyrAdd(*mPage, "c", 5);
        lyrAdd(At(1), "a2", 6);
    }

    H At(int pId) const { return H(mPage->GetPage(), pId); }

    OwnedRoot mPage{H::Create("page", eUNIDENTIFIED)};
};

// --- the property tree -----------------------------------------------------------------------------------------------

TEST_F(Ranges, WalkTheTree) {
    EXPECT_EQ(IdsOf(lyrChildren(*mPage)), (Ids{1, 2, 5}));
    EXPECT_EQ(IdsOf(lyrChildren(At(1))), (Ids{3, 6}));
    EXPECT_EQ(IdsOf(lyrChildren(At(2))), Ids{});
    EXPECT_EQ(IdsOf(lyrDescendents(*mPage)), (Ids{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(IdsOf(lyrDescendents(At(1))), (Ids{3, 4, 6}));
    EXPECT_EQ(IdsOf(lyrAncestors(At(4))), (Ids{3, 1, 0}));
    EXPECT_EQ(IdsOf(lyrAncestors(*mPage)), Ids{});
    EXPECT_EQ(IdsOf(lyrProperties(At(4))), (Ids{0, 1, 2, 3, 4, 5, 6}));
}

TEST_F(Ranges, WalkWhatAnInstanceSees) {
    OwnedRoot lInstance(H::Create(*mPage));
    lyrAdd(On(*lInstance, At(1)), "own", 7);
    EXPECT_EQ(IdsOf(lyrChildren(On(*lInstance, At(1)))), (Ids{3, 6, 7}));
    EXPECT_EQ(IdsOf(lyrDescendents(*lInstance)), (Ids{1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(lyrChildren(*lInstance).begin()->GetPage(), lInstance->GetPage());
    EXPECT_EQ(IdsOf(lyrProperties(*mPage)).size(), 7u);
}

TEST_F(Ranges, AreForAlgorithmsToo) {
    const auto lChildren = lyrChildren(*mPage);
    EXPECT_EQ(std::distance(lChildren.begin(), lChildren.end()), 3);
    const auto lFound =
        std::find_if(lChildren.begin(), lChildren.end(), [](const H& pHandle) { return lyrGet<int>(pHandle) == 2; });
    EXPECT_EQ(*lFound, At(2));
    EXPECT_FALSE(lChildren.IsEmpty());
    EXPECT_TRUE(lyrChildren(At(6)).IsEmpty());
}

TEST_F(Ranges, GoOnWhenThePlaceIsRemoved) {
    Ids lMet;
    for (H lChild : lyrChildren(*mPage)) {
        lMet.push_back(lChild.GetId());
        lChild.Destroy();
    }
    EXPECT_EQ(lMet, (Ids{1, 2, 5}));
    EXPECT_TRUE(lyrChildren(*mPage).IsEmpty());
    EXPECT_EQ(IdsOf(lyrProperties(*mPage)), (Ids{0, 3, 4, 6})) << "what was below them stays";
    for (H lProperty : lyrProperties(*mPage))
        if (lProperty.GetId() != 0)
            lProperty.Destroy();
    EXPECT_EQ(IdsOf(lyrProperties(*mPage)), Ids{0});
}

TEST_F(Ranges, GoOnWhenOthersAreRemovedOrAdded) {
    Ids lMet;
    for (const H& lChild : lyrChildren(*mPage)) {
        lMet.push_back(lChild.GetId());
        if (lChild.GetId() == 1) {
            At(1).Destroy();
            At(2).Destroy();
            lyrAdd(*mPage, "d", 7);
        }
    }
    EXPECT_EQ(lMet, (Ids{1, 5, 7}));
    lMet.clear();
    for (const H& lBelow : lyrDescendents(*mPage)) {
        lMet.push_back(lBelow.GetId());
        if (lBelow.GetId() == 5)
            At(5).Destroy();
    }
    EXPECT_EQ(lMet, (Ids{3, 4, 5, 6, 7})) << "everything counts as below the root";
}

TEST_F(Ranges, EndOnParentsThatRunInACircle) {
    KLyrPropertyPage* lPage = mPage->GetPage();
    const int lFirst = lPage->Add(8, "first", eINTEGER1);
    const int lSecond = lPage->Add(lFirst, "second", eINTEGER1);
    ASSERT_EQ(lSecond, 8);
    const Ids lMet = IdsOf(lyrAncestors(At(lFirst)));
    EXPECT_GE(lMet.size(), 2u);
    EXPECT_LE(lMet.size(), 6u);
    EXPECT_EQ(std::set<int>(lMet.begin(), lMet.end()), (std::set<int>{lFirst, lSecond}));
    EXPECT_EQ(IdsOf(lyrAncestors(At(lPage->Add(1000, "lost", eINTEGER1)))), Ids{}) << "the parent is not there";
    int lDeep = 1;
    for (int i = 0; i < 1000; ++i)
        lDeep = lPage->Add(lDeep, "deep", eINTEGER1);
    EXPECT_EQ(IdsOf(lyrAncestors(At(lDeep))).size(), 1001u);
}

// Circles of every length behind ways of every length.
TEST(RangesOfCircles, EndSoonAndLeaveNoneOut) {
    const LeakCheck lLeaks;
    for (int lAhead = 0; lAhead < 25; ++lAhead) {
        for (int lLength = 1; lLength < 25; ++lLength) {
            const OwnedRoot lRoot(H::Create("root", eUNIDENTIFIED));
            KLyrPropertyPage* lPage = lRoot->GetPage();
            for (int i = 1; i <= lLength; ++i)
                lPage->Add(i == 1 ? lLength : i - 1, "in a circle", eINTEGER1);
            int lFrom = lLength;
            for (int i = 0; i < lAhead; ++i)
                lFrom = lPage->Add(lFrom, "ahead", eINTEGER1);
            const Ids lMet = IdsOf(lyrAncestors(H(lPage, lFrom)));
            EXPECT_LE(lMet.size(), static_cast<std::size_t>(3 * (lAhead + lLength)));
            const std::set<int> lDifferent(lMet.begin(), lMet.end());
            EXPECT_EQ(lDifferent.size(), static_cast<std::size_t>(lLength + (lAhead > 0 ? lAhead - 1 : 0)));
        }
    }
}

// --- own properties --------------------------------------------------------------------------------------------------

TEST_F(Ranges, TellWhatAPageHoldsItself) {
    OwnedRoot lInstance(H::Create(*mPage));
    EXPECT_TRUE(lyrOwnProperties(*lInstance).IsEmpty());
    ASSERT_TRUE(lInstance->GetPage()->ChangePropertyEntryState(3, eLyrOverride));
    EXPECT_TRUE(lyrOwnProperties(*lInstance).IsEmpty()) << "an entry that holds nothing";
    SetInt(On(*lInstance, At(2)), 20);
    On(*lInstance, At(4)).ModifyFlags(LyrPropertyFlags::eHIDDEN, true);
    On(*lInstance, At(5)).ConnectSrc(At(1));
    On(*lInstance, *mPage).ModifyFlags(LyrPropertyFlags::eUSER, true);
    EXPECT_EQ(IdsOf(lyrOwnProperties(At(2))).size(), 7u) << "all of a page that is no instance";
    EXPECT_EQ(IdsOf(lyrOwnProperties(*lInstance)), (Ids{0, 2, 4, 5}));
    for (const H& lOwn : lyrOwnProperties(*lInstance))
        lInstance->GetPage()->RemoveOwnEntry(lOwn.GetId());
    EXPECT_TRUE(lyrOwnProperties(*lInstance).IsEmpty());
    EXPECT_EQ(IdsOf(lyrProperties(*lInstance)).size(), 7u);
}

// --- instances -------------------------------------------------------------------------------------------------------

TEST_F(Ranges, WalkInstancesOfOneLevelAndOfAll) {
    OwnedRoot lA(H::Create(*mPage));
    OwnedRoot lB(H::Create(*mPage));
    OwnedRoot lAA(H::Create(*lA));
    OwnedRoot lAB(H::Create(*lA));
    OwnedRoot lAAA(H::Create(*lAA));
    const auto lPage = [](const OwnedRoot& pRoot) { return pRoot->GetPage(); };
    EXPECT_EQ(PagesOf(lyrInstances(At(2))), (Pages{lPage(lA), lPage(lB)}));
    EXPECT_EQ(PagesOf(lyrAllInstances(At(2))), (Pages{lPage(lA), lPage(lAA), lPage(lAAA), lPage(lAB), lPage(lB)}));
    EXPECT_EQ(PagesOf(lyrAllInstances(On(*lAA, At(2)))), Pages{lPage(lAAA)}) << "and not the siblings";
    EXPECT_EQ(IdsOf(lyrAllInstances(At(2))), (Ids{2, 2, 2, 2, 2}));
    EXPECT_TRUE(lyrInstances(*lB).IsEmpty());
}

TEST_F(Ranges, WalkMoreLevelsThanTheyRemember) {
    std::vector<H> lPages = {*mPage};
    std::vector<H> lSiblings;
    for (int i = 0; i < 3 * kLyrInstanceLevels; ++i) {
        lPages.push_back(H::Create(lPages.back()));
        lSiblings.push_back(H::Create(lPages[static_cast<std::size_t>(i)]));
    }
    Pages lExpected;
    for (std::size_t i = 1; i < lPages.size(); ++i)
        lExpected.push_back(lPages[i].GetPage());
    for (std::size_t i = lSiblings.size(); i-- > 0;)
        lExpected.push_back(lSiblings[i].GetPage());
    EXPECT_EQ(PagesOf(lyrAllInstances(*mPage)), lExpected);
    for (std::size_t i = lPages.size(); i-- > 1;)
        lPages[i].Destroy();
    for (H& lSibling : lSiblings)
        lSibling.Destroy();
}

TEST_F(Ranges, MeetEveryInstanceOnceWhenEachIsDestroyed) {
    for (int i = 0; i < 7; ++i)
        H::Create(*mPage);
    int lMet = 0;
    for (H lInstance : lyrInstances(*mPage)) {
        ++lMet;
        if (lMet % 3 != 0)
            lInstance.Destroy();
    }
    EXPECT_EQ(lMet, 7);
    EXPECT_EQ(PagesOf(lyrInstances(*mPage)).size(), 2u);
    for (H lInstance : lyrInstances(*mPage))
        lInstance.Destroy();
    EXPECT_TRUE(lyrInstances(*mPage).IsEmpty());
}

TEST_F(Ranges, GoOnOverInstancesWhenThePropertyIsGoneFromThePage) {
    std::vector<H> lInstances;
    for (int i = 0; i < 3; ++i) {
        lInstances.push_back(H::Create(*mPage));
        lyrSet(On(lInstances.back(), At(2)), 20 + i);
    }
    std::vector<int> lValues;
    for (const H& lInstance : lyrInstances(At(2))) {
        if (lValues.empty())
            At(2).Destroy();
        lValues.push_back(lyrGet<int>(lInstance).value_or(-1));
    }
    EXPECT_EQ(lValues, (std::vector<int>{20, 21, 22}));
    EXPECT_TRUE(lyrInstances(At(2)).IsEmpty());
    for (H& lInstance : lInstances)
        lInstance.Destroy();
}

// --- connections -----------------------------------------------------------------------------------------------------

TEST_F(Ranges, WalkConnectionsInTheirOrder) {
    H lHub = At(1);
    for (int lId : {5, 2, 6, 4})
        lHub.ConnectSrc(At(lId), lId == 6 ? eLyrConnectionUser : eLyrConnectionData);
    lHub.ConnectDst(At(3));
    EXPECT_EQ(IdsOf(lyrSources(lHub)), (Ids{5, 2, 6, 4}));
    EXPECT_EQ(IdsOf(lyrDestinations(lHub)), Ids{3});
    EXPECT_EQ(IdsOf(lyrDestinations(At(2))), Ids{1});
    TypeFilter lFilter(eLyrConnectionUser);
    EXPECT_EQ(IdsOf(lyrSources(lHub, &lFilter)), Ids{6});
    Ids lMet;
    for (const H& lSource : lyrSources(lHub)) {
        lMet.push_back(lSource.GetId());
        if (lSource.GetId() != 6)
            lHub.DisconnectSrc(lSource);
    }
    EXPECT_EQ(lMet, (Ids{5, 2, 6, 4}));
    EXPECT_EQ(IdsOf(lyrSources(lHub)), Ids{6});
    for (const H& lDestination : lyrDestinations(lHub))
        lHub.DisconnectDst(lDestination);
    EXPECT_TRUE(lyrDestinations(lHub).IsEmpty());
}

// --- memory ----------------------------------------------------------------------------------------------------------

TEST_F(Ranges, PassOverPeersThatBelongToNoPage) {
    KLyrPropertyConnect* lNowhere = KLyrPropertyConnect::Create(nullptr, 7);
    ASSERT_NE(lNowhere, nullptr);
    lNowhere->IncRef();
    ASSERT_TRUE(At(1).ConnectSrc(At(2)));
    ASSERT_TRUE(
        At(1).GetPage()->GetPropertyItem<KLyrPropertyConnect>(nullptr, 1)->ConnectSrc(lNowhere, eLyrConnectionData));
    ASSERT_TRUE(At(1).ConnectSrc(At(5)));
    EXPECT_EQ(IdsOf(lyrSources(At(1))), (Ids{2, 5}));
    lNowhere->DecRef();
    EXPECT_EQ(IdsOf(lyrSources(At(1))), (Ids{2, 5}));
}

TEST_F(Ranges, TakeNoMemory) {
    OwnedRoot lInstance(H::Create(*mPage));
    At(1).ConnectSrc(At(2));
    const std::size_t lBefore = MemoryProbe::Allocations();
    int lMet = 0;
    for ([[maybe_unused]] const H& lHandle : lyrChildren(*mPage))
        ++lMet;
    for ([[maybe_unused]] const H& lHandle : lyrDescendents(*lInstance))
        ++lMet;
    for ([[maybe_unused]] const H& lHandle : lyrAncestors(At(4)))
        ++lMet;
    for ([[maybe_unused]] const H& lHandle : lyrOwnProperties(*mPage))
        ++lMet;
    for ([[maybe_unused]] const H& lHandle : lyrAllInstances(*mPage))
        ++lMet;
    for ([[maybe_unused]] const H& lHandle : lyrSources(At(1)))
        ++lMet;
    EXPECT_EQ(lMet, 3 + 6 + 3 + 7 + 1 + 1);
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
}

}  // namespace
}  // namespace lyrsdk
