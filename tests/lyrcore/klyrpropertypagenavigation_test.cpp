#include <gtest/gtest.h>

#include <climits>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/page_family.h"

namespace lyrsdk {
namespace {

using Ids = std::vector<int>;

class KLyrPropertyPageNavigationTest : public PageTest {
protected:
    int Add(const OwnedPage& pPage, int pParentId) { return pPage->Add(pParentId, "x", eDOUBLE1); }

    OwnedPage mRoot = MakeRoot();
    OwnedPage mMiddle = MakeInstance(mRoot);
    OwnedPage mLeaf = MakeInstance(mMiddle);
};

Ids DescendentsOf(const OwnedPage& pPage, int pId) {
    Ids lIds;
    for (int lId = pPage->GetFirstDescendent(pId); lId != -1; lId = pPage->GetNextDescendent(pId, lId))
        lIds.push_back(lId);
    return lIds;
}

// --- parents ---------------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageNavigationTest, ParentIsThatOfTheEntrySeen) {
    const int lA = Add(mRoot, 0);
    const int lB = Add(mMiddle, lA);
    EXPECT_EQ(mLeaf->GetParent(lB), lA);
    EXPECT_EQ(mLeaf->GetParent(lA), 0);
    EXPECT_EQ(mLeaf->GetParent(0), -1);
    EXPECT_EQ(mRoot->GetParent(lB), -1) << "not seen from above";
    for (int lId : {77, -1, -2, INT_MAX, INT_MIN})
        EXPECT_EQ(mLeaf->GetParent(lId), -1);
}

TEST_F(KLyrPropertyPageNavigationTest, ChildIsWhoeverHasThatParent) {
    const int lA = Add(mRoot, 0);
    const int lB = Add(mMiddle, lA);
    EXPECT_TRUE(mLeaf->IsChildOf(lB, lA));
    EXPECT_FALSE(mLeaf->IsChildOf(lB, 0));
    EXPECT_FALSE(mLeaf->IsChildOf(lA, lA));
    EXPECT_TRUE(mLeaf->IsChildOf(0, -1));
    EXPECT_TRUE(mLeaf->IsChildOf(77, -1)) << "the parent of an unknown id is -1 as well";
    EXPECT_FALSE(mLeaf->IsChildOf(77, 0));
    EXPECT_FALSE(mLeaf->IsChildOf(lA, 77));
    EXPECT_FALSE(mLeaf->IsChildOf(INT_MIN, INT_MAX));
}

TEST_F(KLyrPropertyPageNavigationTest, DescendentHasTheAncestorOnItsParentChain) {
    const int lA = Add(mRoot, 0);
    const int lB = Add(mMiddle, lA);
    const int lC = Add(mLeaf, lB);
    const int lD = Add(mLeaf, 0);
    EXPECT_TRUE(mLeaf->IsDescendentOf(lC, lA));
    EXPECT_TRUE(mLeaf->IsDescendentOf(lC, lB));
    EXPECT_FALSE(mLeaf->IsDescendentOf(lC, lC)) << "nobody descends from oneself";
    EXPECT_FALSE(mLeaf->IsDescendentOf(lA, lC));
    EXPECT_FALSE(mLeaf->IsDescendentOf(lD, lA));
    EXPECT_FALSE(mLeaf->IsDescendentOf(77, lA));
    EXPECT_FALSE(mLeaf->IsDescendentOf(-1, lA));
    EXPECT_FALSE(mLeaf->IsDescendentOf(lC, 77));
    EXPECT_FALSE(mLeaf->IsDescendentOf(lC, INT_MAX));
}

TEST_F(KLyrPropertyPageNavigationTest, RootAndWhatIsBelowItsIdAreEveryonesAncestors) {
    const int lA = Add(mRoot, 0);
    for (int lAncestor : {0, -1, -5, INT_MIN})
        for (int lId : {0, lA, 77, -1, -9, INT_MAX, INT_MIN})
            EXPECT_TRUE(mLeaf->IsDescendentOf(lId, lAncestor)) << lId << " of " << lAncestor;
}

TEST_F(KLyrPropertyPageNavigationTest, ParentOutsideTheTreeIsAnAncestorAndEndsTheChain) {
    const int lStray = Add(mRoot, 77);
    const int lBelow = Add(mRoot, lStray);
    EXPECT_TRUE(mRoot->IsDescendentOf(lBelow, 77)) << "though 77 does not exist";
    EXPECT_FALSE(mRoot->IsDescendentOf(lBelow, 78));
    EXPECT_TRUE(mRoot->IsChildOf(lStray, 77));
}

TEST_F(KLyrPropertyPageNavigationTest, ParentsInACircleEndTheSearch) {
    ASSERT_EQ(Add(mRoot, 3), 1);
    ASSERT_EQ(Add(mRoot, 1), 2);
    ASSERT_EQ(Add(mRoot, 2), 3);
    ASSERT_EQ(Add(mRoot, 4), 4);
    ASSERT_EQ(Add(mRoot, 4), 5);
    for (int lId : {1, 2, 3}) {
        for (int lAncestor : {1, 2, 3})
            EXPECT_TRUE(mLeaf->IsDescendentOf(lId, lAncestor));
        EXPECT_FALSE(mLeaf->IsDescendentOf(lId, 4));
        EXPECT_FALSE(mLeaf->IsDescendentOf(lId, 99));
    }
    EXPECT_TRUE(mLeaf->IsDescendentOf(4, 4)) << "its own parent";
    EXPECT_FALSE(mLeaf->IsDescendentOf(5, 1));
    EXPECT_EQ(DescendentsOf(mLeaf, 0), (Ids{1, 2, 3, 4, 5}));
    EXPECT_EQ(DescendentsOf(mLeaf, 1), (Ids{2, 3}));
    EXPECT_EQ(DescendentsOf(mLeaf, 4), Ids{5});
    EXPECT_EQ(ChildrenOf(mLeaf, 1), Ids{2});
    EXPECT_EQ(mLeaf->GetChild(3), -1) << "a child's id is larger than its parent's";
}

TEST_F(KLyrPropertyPageNavigationTest, LongTailsIntoLongCirclesEndTheSearch) {
    for (int lTail : {0, 1, 2, 63, 64, 65, 150}) {
        for (int lCircle : {1, 2, 3, 127, 128, 129, 400}) {
            const OwnedPage lPage = MakeRoot();
            Add(lPage, lCircle);
            for (int i = 1; i < lCircle + lTail; ++i)
                Add(lPage, i);
            const int lLast = lCircle + lTail;
            EXPECT_FALSE(lPage->IsDescendentOf(lLast, lLast + 1)) << lTail << " into " << lCircle;
            for (int lAncestor = 1; lAncestor < lLast; ++lAncestor)
                ASSERT_TRUE(lPage->IsDescendentOf(lLast, lAncestor)) << lTail << " into " << lCircle;
            EXPECT_EQ(lPage->IsDescendentOf(lLast, lLast), lTail == 0);
        }
    }
}

// --- the next id -----------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageNavigationTest, NextIdIsTheSmallestAboveInTheWholeChain) {
    const int lA = Add(mRoot, 0);
    const int lB = Add(mLeaf, 0);
    const int lC = Add(mMiddle, 0);
    const int lD = Add(mRoot, 0);
    EXPECT_EQ(mLeaf->GetMinimumPropertyIdAndEntry(0), lA);
    EXPECT_EQ(mLeaf->GetMinimumPropertyIdAndEntry(-1), lA) << "-1 stands for 0";
    EXPECT_EQ(mLeaf->GetMinimumPropertyIdAndEntry(lA), lB);
    EXPECT_EQ(mLeaf->GetMinimumPropertyIdAndEntry(lB), lC);
    EXPECT_EQ(mLeaf->GetMinimumPropertyIdAndEntry(lC), lD);
    EXPECT_EQ(mLeaf->GetMinimumPropertyIdAndEntry(lD), -1);
    EXPECT_EQ(mLeaf->GetMinimumPropertyIdAndEntry(INT_MAX), -1);
    EXPECT_EQ(mLeaf->GetMinimumPropertyIdAndEntry(-2), 0);
    EXPECT_EQ(mLeaf->GetMinimumPropertyIdAndEntry(INT_MIN), 0);
    EXPECT_EQ(mRoot->GetMinimumPropertyIdAndEntry(lA), lD);
}

TEST_F(KLyrPropertyPageNavigationTest, EntryOfTheNextIdIsThatOfTheFarthestPage) {
    const int lA = Add(mRoot, 0);
    const int lB = Add(mMiddle, 0);
    SetNumber(mLeaf, lA, 1);
    SetNumber(mMiddle, lA, 2);
    SetNumber(mLeaf, lB, 3);
    KLyrPropertyEntry* lEntry = nullptr;
    EXPECT_EQ(mLeaf->GetMinimumPropertyIdAndEntry(0, &lEntry), lA);
    EXPECT_EQ(lEntry, OwnEntry(mRoot, lA));
    EXPECT_EQ(mLeaf->GetMinimumPropertyIdAndEntry(lA, &lEntry), lB);
    EXPECT_EQ(lEntry, OwnEntry(mMiddle, lB));
    EXPECT_EQ(mLeaf->GetMinimumPropertyIdAndEntry(lB, &lEntry), -1);
    EXPECT_EQ(lEntry, nullptr);
}

TEST_F(KLyrPropertyPageNavigationTest, CountIsOneMoreThanTheLargestIdInTheChain) {
    EXPECT_EQ(mLeaf->GetPropertyEntryCount(), 1);
    Add(mRoot, 0);
    Add(mRoot, 0);
    ASSERT_TRUE(mRoot->GetIdGenerator()->SkipTo(5));
    Add(mMiddle, 0);
    EXPECT_EQ(mLeaf->GetPropertyEntryCount(), 6) << "gaps count";
    EXPECT_EQ(mRoot->GetPropertyEntryCount(), 3);
    mMiddle->RemoveOwnEntry(5);
    EXPECT_EQ(mLeaf->GetPropertyEntryCount(), 3);
    Add(mLeaf, 0);
    EXPECT_EQ(mLeaf->GetPropertyEntryCount(), 7);
    mLeaf->RemoveOwnEntry(6);
    for (int lId : {0, 1, 2})
        mRoot->RemoveOwnEntry(lId);
    EXPECT_EQ(mLeaf->GetPropertyEntryCount(), 0);
    EXPECT_EQ(mLeaf->GetMinimumPropertyIdAndEntry(-1), -1);
}

// --- children, siblings, descendants ---------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageNavigationTest, ChildrenComeInIdOrderWhateverPageHoldsThem) {
    const int lA = Add(mLeaf, 0);
    const int lAA = Add(mRoot, lA);
    const int lB = Add(mRoot, 0);
    const int lAB = Add(mLeaf, lA);
    const int lC = Add(mMiddle, 0);
    EXPECT_EQ(ChildrenOf(mLeaf, 0), (Ids{lA, lB, lC}));
    EXPECT_EQ(ChildrenOf(mLeaf, lA), (Ids{lAA, lAB}));
    EXPECT_EQ(ChildrenOf(mRoot, 0), Ids{lB});
    EXPECT_EQ(ChildrenOf(mRoot, lA), Ids{lAA}) << "the parent itself is not seen from the root";
    EXPECT_EQ(mLeaf->GetSibling(lAB), -1);
    EXPECT_EQ(mLeaf->GetSibling(lB), lC) << "only those behind";
    EXPECT_EQ(ChildrenOf(mLeaf, lB), Ids());
}

TEST_F(KLyrPropertyPageNavigationTest, NoPropertyHasNoChildrenSiblingsOrDescendents) {
    Add(mRoot, 0);
    EXPECT_EQ(mLeaf->GetChild(-1), -1);
    EXPECT_EQ(mLeaf->GetSibling(-1), -1);
    EXPECT_EQ(mLeaf->GetSibling(0), -1);
    EXPECT_EQ(mLeaf->GetFirstDescendent(-1), -1);
    for (int lAncestor : {0, 1, -1, 77, INT_MAX, INT_MIN})
        EXPECT_EQ(mLeaf->GetNextDescendent(lAncestor, -1), -1);
    for (int lId : {77, -2, INT_MAX, INT_MIN}) {
        EXPECT_EQ(mLeaf->GetChild(lId), -1);
        EXPECT_EQ(mLeaf->GetSibling(lId), -1);
    }
    EXPECT_EQ(mLeaf->GetFirstDescendent(77), -1);
    EXPECT_EQ(mLeaf->GetFirstDescendent(INT_MAX), -1);
}

TEST_F(KLyrPropertyPageNavigationTest, SecondRootsAreNobodysSiblingsOrDescendents) {
    const int lSecond = Add(mRoot, -1);
    const int lBelow = Add(mRoot, lSecond);
    const int lThird = Add(mRoot, -1);
    EXPECT_EQ(mRoot->GetSibling(lSecond), -1);
    EXPECT_EQ(mRoot->GetSibling(0), -1);
    EXPECT_EQ(DescendentsOf(mRoot, 0), Ids{lBelow}) << "whatever has a parent descends from the root";
    EXPECT_EQ(DescendentsOf(mRoot, lSecond), Ids{lBelow});
    EXPECT_EQ(DescendentsOf(mRoot, lThird), Ids());
}

TEST_F(KLyrPropertyPageNavigationTest, DescendentsComeOnceEachInIdOrder) {
    const int lA = Add(mRoot, 0);
    const int lB = Add(mMiddle, 0);
    const int lBA = Add(mMiddle, lB);
    const int lAA = Add(mLeaf, lA);
    const int lBAA = Add(mRoot, lBA);
    const int lAAA = Add(mLeaf, lAA);
    SetNumber(mLeaf, lA, 1);
    EXPECT_EQ(DescendentsOf(mLeaf, 0), (Ids{lA, lB, lBA, lAA, lBAA, lAAA}));
    EXPECT_EQ(DescendentsOf(mLeaf, lA), (Ids{lAA, lAAA}));
    EXPECT_EQ(DescendentsOf(mLeaf, lB), (Ids{lBA, lBAA}));
    EXPECT_EQ(DescendentsOf(mLeaf, lAAA), Ids());
    EXPECT_EQ(DescendentsOf(mRoot, 0), (Ids{lA, lBAA}));
    EXPECT_EQ(mLeaf->GetNextDescendent(lB, 0), lBA) << "the walk may start anywhere";
    EXPECT_EQ(mLeaf->GetNextDescendent(lB, -2), lBA);
    EXPECT_EQ(mLeaf->GetNextDescendent(-1, lBA), lAA);
    EXPECT_EQ(mLeaf->GetNextDescendent(lB, lBAA), -1);
    EXPECT_EQ(mLeaf->GetNextDescendent(lB, 77), -1);
}

TEST_F(KLyrPropertyPageNavigationTest, InstanceWithoutEntriesNavigatesLikeThePageAbove) {
    const int lA = Add(mRoot, 0);
    Add(mRoot, lA);
    Add(mRoot, 0);
    EXPECT_EQ(Held(mLeaf), "");
    for (int lId = -2; lId < 6; ++lId) {
        EXPECT_EQ(mLeaf->GetParent(lId), mRoot->GetParent(lId));
        EXPECT_EQ(mLeaf->GetMinimumPropertyIdAndEntry(lId), mRoot->GetMinimumPropertyIdAndEntry(lId));
        EXPECT_EQ(ChildrenOf(mLeaf, lId), ChildrenOf(mRoot, lId));
        EXPECT_EQ(DescendentsOf(mLeaf, lId), DescendentsOf(mRoot, lId));
    }
    EXPECT_EQ(mLeaf->GetPropertyEntryCount(), mRoot->GetPropertyEntryCount());
}

// --- beside plain scans ----------------------------------------------------------------------------------------------

constexpr int kEnd = 40;  // above every id of a random family

int PlainNext(const KLyrPropertyPage& pPage, int pId, KLyrPropertyEntry** pEntry) {
    const int lAbove = pId == -1 ? 0 : pId;
    int lOwn = lAbove < 0 ? 0 : lAbove + 1;
    while (lOwn < kEnd && !OwnEntry(pPage, lOwn))
        ++lOwn;
    *pEntry = lOwn < kEnd ? OwnEntry(pPage, lOwn) : nullptr;
    lOwn = lOwn < kEnd ? lOwn : -1;
    KLyrPropertyEntry* lInheritedEntry = nullptr;
    const int lInherited = pPage.GetInstanceOf() ? PlainNext(*pPage.GetInstanceOf(), lAbove, &lInheritedEntry) : -1;
    if (lInherited == -1 || (lOwn != -1 && lOwn < lInherited))
        return lOwn;
    *pEntry = lInheritedEntry;
    return lInherited;
}

bool PlainDescends(const KLyrPropertyPage& pPage, int pId, int pAncestorId) {
    if (pAncestorId <= 0)
        return true;
    int lParent = pPage.GetParent(pId);
    for (int i = 0; i < kEnd && lParent != -1; ++i, lParent = pPage.GetParent(lParent))
        if (lParent == pAncestorId)
            return true;
    return false;
}

template <typename Accepts>
int PlainFirst(const KLyrPropertyPage& pPage, int pFrom, Accepts pAccepts) {
    KLyrPropertyEntry* lEntry = nullptr;
    int lId = PlainNext(pPage, pFrom, &lEntry);
    while (lId != -1 && !pAccepts(lId, lEntry->GetParentId()))
        lId = PlainNext(pPage, lId, &lEntry);
    return lId;
}

void ExpectPlainAnswers(const KLyrPropertyPage& pPage, int pId) {
    KLyrPropertyEntry* lEntry = nullptr;
    KLyrPropertyEntry* lPlainEntry = nullptr;
    ASSERT_EQ(pPage.GetMinimumPropertyIdAndEntry(pId, &lEntry), PlainNext(pPage, pId, &lPlainEntry));
    ASSERT_EQ(lEntry, lPlainEntry);
    const int lParent = pPage.GetParent(pId);
    const auto lIsChild = [pId](int, int pParent) { return pParent == pId; };
    const auto lIsSibling = [lParent](int, int pParent) { return pParent == lParent; };
    ASSERT_EQ(pPage.GetChild(pId), pId == -1 ? -1 : PlainFirst(pPage, pId, lIsChild));
    ASSERT_EQ(pPage.GetSibling(pId), pId == -1 || lParent == -1 ? -1 : PlainFirst(pPage, pId, lIsSibling));
    for (int lAncestor = -2; lAncestor < 20; ++lAncestor) {
        const auto lDescends = [&pPage, lAncestor](int pCandidate, int pParent) {
            return pParent != -1 && PlainDescends(pPage, pCandidate, lAncestor);
        };
        ASSERT_EQ(pPage.IsDescendentOf(pId, lAncestor), PlainDescends(pPage, pId, lAncestor)) << lAncestor;
        ASSERT_EQ(pPage.IsChildOf(pId, lAncestor), lParent == lAncestor);
        ASSERT_EQ(pPage.GetNextDescendent(lAncestor, pId), pId == -1 ? -1 : PlainFirst(pPage, pId, lDescends));
        if (lAncestor == pId) {
            ASSERT_EQ(pPage.GetFirstDescendent(pId), pId == -1 ? -1 : PlainFirst(pPage, pId, lDescends));
        }
    }
}

TEST_F(KLyrPropertyPageNavigationTest, RandomFamiliesAnswerAsPlainScansDo) {
    for (unsigned lSeed = 1; lSeed <= 25; ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(120);
        for (const OwnedPage& lPage : lFamily.Pages()) {
            int lLargest = -1;
            for (int lId = -3; lId < 30; ++lId) {
                SCOPED_TRACE(lId);
                ExpectPlainAnswers(*lPage, lId);
                if (HasFatalFailure())
                    return;
                lLargest = lPage->GetPropertyEntry(lId) ? lId : lLargest;
            }
            ASSERT_EQ(lPage->GetPropertyEntryCount(), lLargest + 1);
        }
    }
}

// --- size ------------------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageNavigationTest, DeepTreeIsWalkedOnASmallStackWithoutMemory) {
    static constexpr int sDepth = 100000;
    for (int i = 0; i < sDepth; ++i)
        mRoot->Add(i, "x", eUNIDENTIFIED);
    const std::size_t lAllocations = MemoryProbe::Allocations();
    RunOnSmallStack([this] {
        EXPECT_TRUE(mLeaf->IsDescendentOf(sDepth, 1));
        EXPECT_FALSE(mLeaf->IsDescendentOf(sDepth, sDepth));
        EXPECT_EQ(mLeaf->GetChild(sDepth - 1), sDepth);
        EXPECT_EQ(mLeaf->GetSibling(1), -1);
        EXPECT_EQ(mLeaf->GetFirstDescendent(sDepth - 2), sDepth - 1);
        EXPECT_EQ(mLeaf->GetNextDescendent(1, sDepth - 1), sDepth);
        EXPECT_EQ(mLeaf->GetNextDescendent(1, sDepth), -1);
        EXPECT_EQ(mLeaf->GetPropertyEntryCount(), sDepth + 1);
    });
    EXPECT_EQ(MemoryProbe::Allocations(), lAllocations);
}

}  // namespace
}  // namespace lyrsdk
