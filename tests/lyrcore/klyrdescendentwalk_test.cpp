#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"

// Walks over descendants that are remembered. Every answer is the one that looking at all ids in ascending order gives.

namespace lyrsdk {
namespace {

using Page = KLyrPropertyPage;

std::vector<int> Descendents(const Page* pPage, int pAncestorId) {
    std::vector<int> lIds;
    for (int lId = pPage->GetFirstDescendent(pAncestorId); lId != -1; lId = pPage->GetNextDescendent(pAncestorId, lId))
        lIds.push_back(lId);
    return lIds;
}

std::vector<int> DescendentsByScan(const Page* pPage, int pAncestorId) {
    std::vector<int> lIds;
    for (int lId = pAncestorId; (lId = pPage->GetMinimumPropertyIdAndEntry(lId)) != -1;)
        if (pPage->GetParent(lId) != -1 && pPage->IsDescendentOf(lId, pAncestorId))
            lIds.push_back(lId);
    return lIds;
}

// Two properties below the root, and a hundred below each in turn, so that a walk below one has gaps everywhere.
class InterleavedWalk : public HandleTest {
protected:
    InterleavedWalk()
        : mRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED)),
          mOdd(AddChild(*mRoot, "odd", eINTEGER1)),
          mEven(AddChild(*mRoot, "even", eINTEGER1)) {}

    // The chain hangs below mOdd, one deeper than the other.
    void Add(bool pDeep) {
        KLyrPropertyHandle lParent = mOdd;
        for (int i = 0; i < 100; ++i) {
            const KLyrPropertyHandle lChild = AddChild(lParent, "child", eINTEGER1);
            mIds.push_back(lChild.GetId());
            AddChild(mEven, "child", eINTEGER1);
            lParent = pDeep ? lChild : mOdd;
        }
    }
    int Step(int pId) const { return mRoot->GetPage()->GetNextDescendent(mOdd.GetId(), pId); }
    // One full walk, so that the family has collected what is below mOdd.
    void Walk() { ASSERT_EQ(mIds, Descendents(mRoot->GetPage(), mOdd.GetId())); }

    OwnedRoot mRoot;
    KLyrPropertyHandle mOdd;
    KLyrPropertyHandle mEven;
    std::vector<int> mIds;
};

TEST_F(InterleavedWalk, DoesNotComeToAPropertyThatWentMeanwhile) {
    Add(false);
    Walk();
    EXPECT_EQ(mIds[0], Step(mOdd.GetId()));
    mRoot->GetPage()->RemoveOwnEntry(mIds[1]);
    mRoot->GetPage()->RemoveOwnEntry(mIds[3]);
    EXPECT_EQ(mIds[2], Step(mIds[0]));
    EXPECT_EQ(mIds[4], Step(mIds[2]));
    EXPECT_EQ(mIds[4], Step(mIds[3]));
}

TEST_F(InterleavedWalk, GoesOnFarBelowItsAncestorWhenAPropertyWent) {
    Add(true);
    EXPECT_EQ(mIds[60], Step(mIds[59]));
    const KLyrPropertyHandle lLeaf = AddChild(KLyrPropertyHandle(mRoot->GetPage(), mIds[0]), "leaf", eINTEGER1);
    mRoot->GetPage()->RemoveOwnEntry(lLeaf.GetId());
    EXPECT_EQ(mIds[61], Step(mIds[60]));
    EXPECT_EQ(mIds[62], Step(mIds[61]));
    mRoot->GetPage()->RemoveOwnEntry(mIds[80]);
    EXPECT_EQ(mIds[63], Step(mIds[62]));
    EXPECT_EQ(mIds[79], Step(mIds[78]));
    EXPECT_EQ(-1, Step(mIds[79]));
}

TEST_F(InterleavedWalk, LeavesOutPropertiesWithoutChildrenThatWentFarBelowItsAncestor) {
    Add(true);
    const KLyrPropertyHandle lStem(mRoot->GetPage(), mIds[50]);
    std::vector<int> lLeaves;
    for (int i = 0; i < 20; ++i) {
        lLeaves.push_back(AddChild(lStem, "leaf", eINTEGER1).GetId());
        AddChild(mEven, "child", eINTEGER1);
    }
    OwnedRoot lInstance(KLyrPropertyHandle::Create(*mRoot));
    const KLyrPropertyHandle lKept(lInstance->GetPage(), lLeaves[6]);
    ASSERT_TRUE(lInstance->GetPage()->ChangePropertyEntryState(lKept.GetId(), eLyrOverride));
    const KLyrPropertyHandle lOdd = On(*lInstance, mOdd);
    EXPECT_EQ(lLeaves[0], Step(mIds[99]));
    EXPECT_EQ(lLeaves[0], lOdd.GetNextDescendent(KLyrPropertyHandle(lInstance->GetPage(), mIds[99])).GetId());
    for (int i : {1, 2, 6})
        mRoot->GetPage()->RemoveOwnEntry(lLeaves[static_cast<std::size_t>(i)]);
    EXPECT_EQ(lLeaves[3], lOdd.GetNextDescendent(KLyrPropertyHandle(lInstance->GetPage(), lLeaves[0])).GetId());
    EXPECT_EQ(lKept, lOdd.GetNextDescendent(KLyrPropertyHandle(lInstance->GetPage(), lLeaves[5])));
    EXPECT_EQ(lLeaves[3], Step(lLeaves[0]));
    EXPECT_EQ(lLeaves[7], Step(lLeaves[5]));
    EXPECT_EQ(mIds[51], Step(mIds[50]));
    mRoot->GetPage()->RemoveOwnEntry(mIds[50]);
    EXPECT_EQ(-1, Step(mIds[49]));
}

// Two pages and two ancestors, so that no two of the walks are one.
TEST_F(InterleavedWalk, GoesOnInTurnWithOthers) {
    Add(false);
    OwnedRoot lInstance(KLyrPropertyHandle::Create(*mRoot));
    mIds.push_back(AddChild(On(*lInstance, mOdd), "own", eINTEGER1).GetId());
    const Page* lPages[] = {mRoot->GetPage(), lInstance->GetPage()};
    for (std::size_t lWalks : {2u, 4u}) {
        int lAt[] = {mIds[0], mIds[0], mEven.GetId(), mEven.GetId()};
        for (std::size_t i = 0; i < 100; ++i) {
            for (std::size_t j = 0; j < lWalks; ++j)
                lAt[j] = lPages[j % 2]->GetNextDescendent(j < 2 ? mOdd.GetId() : mEven.GetId(), lAt[j]);
            ASSERT_EQ(i < 99 ? mIds[i + 1] : -1, lAt[0]);
            ASSERT_EQ(mIds[i + 1], lAt[1]);
            ASSERT_EQ(lWalks == 2 ? mEven.GetId() : mIds[i] + 1, lAt[2]);
            ASSERT_EQ(lAt[2], lAt[3]);
        }
    }
}

TEST_F(InterleavedWalk, GoesOnWhenAnInstanceOfThePageIsDestroyed) {
    Add(false);
    std::vector<int> lSeen;
    for (int lId = Step(mOdd.GetId()); lId != -1; lId = Step(lId)) {
        lSeen.push_back(lId);
        KLyrPropertyHandle lInstance = KLyrPropertyHandle::Create(*mRoot);
        AddChild(On(lInstance, mOdd), "own", eINTEGER1);
        lInstance.Destroy();
    }
    EXPECT_EQ(mIds, lSeen);
}

TEST_F(InterleavedWalk, GoesOnInAnInstanceWhenThePageIsDestroyed) {
    Add(false);
    OwnedRoot lInstance(KLyrPropertyHandle::Create(*mRoot));
    const int lOdd = mOdd.GetId();
    EXPECT_EQ(mIds[1], lInstance->GetPage()->GetNextDescendent(lOdd, mIds[0]));
    mRoot->Destroy();
    EXPECT_EQ(mIds[2], lInstance->GetPage()->GetNextDescendent(lOdd, mIds[1]));
    EXPECT_EQ(mIds, Descendents(lInstance->GetPage(), lOdd));
}

TEST_F(InterleavedWalk, ComesToAPropertyThatWasPushedMeanwhile) {
    Add(false);
    Walk();
    OwnedRoot lInstance(KLyrPropertyHandle::Create(*mRoot));
    const KLyrPropertyHandle lPushed = AddChild(On(*lInstance, mOdd), "pushed", eINTEGER1);
    AddChild(mEven, "child", eINTEGER1);
    const KLyrPropertyHandle lLast = AddChild(mOdd, "last", eINTEGER1);
    EXPECT_EQ(lLast.GetId(), Step(mIds[99]));
    EXPECT_EQ(mIds[1], Step(mIds[0]));
    lInstance->PushPropertiesToParentInstance();
    EXPECT_EQ(mIds[2], Step(mIds[1]));
    EXPECT_EQ(lPushed.GetId(), Step(mIds[99]));
    EXPECT_EQ(lLast.GetId(), Step(lPushed.GetId()));
}

TEST_F(InterleavedWalk, ComesToPropertiesThatWereAddedMeanwhile) {
    Add(false);
    Walk();
    EXPECT_EQ(mIds[1], Step(mIds[0]));
    for (int i = 0; i < 500; ++i) {
        const int lBefore = mIds.back();
        AddChild(mEven, "child", eINTEGER1);
        mIds.push_back(AddChild(mOdd, "late", eINTEGER1).GetId());
        ASSERT_EQ(mIds.back(), Step(lBefore));
        ASSERT_EQ(-1, Step(mIds.back()));
    }
    EXPECT_EQ(mIds, Descendents(mRoot->GetPage(), mOdd.GetId()));
}

// No page has all of them.
TEST_F(InterleavedWalk, ComesToAllThatManyPagesHaveAddedTogether) {
    OwnedRoot lMiddle(KLyrPropertyHandle::Create(*mRoot));
    OwnedRoot lInstance(KLyrPropertyHandle::Create(*lMiddle));
    for (int i = 0; i < 62; ++i) {
        for (const KLyrPropertyHandle& lPage : {*mRoot, *lMiddle, *lInstance}) {
            if (i >= 31 && lPage != *mRoot)
                continue;
            for (int j = 0; j < 3; ++j)
                mIds.push_back(AddChild(On(lPage, mOdd), "child", eINTEGER1).GetId());
            AddChild(On(lPage, mEven), "child", eINTEGER1);
        }
    }
    EXPECT_EQ(mIds, Descendents(lInstance->GetPage(), mOdd.GetId()));
    EXPECT_EQ(DescendentsByScan(lMiddle->GetPage(), mOdd.GetId()), Descendents(lMiddle->GetPage(), mOdd.GetId()));
}

// A child of one that went is no descendant, whoever it hangs below.
TEST_F(InterleavedWalk, LeavesOutWhatIsAddedBelowAPropertyThatWent) {
    for (const bool lHadChild : {false, true}) {
        Add(false);
        Walk();
        const KLyrPropertyHandle lGone(mRoot->GetPage(), mIds[mIds.size() - 2]);
        if (lHadChild)
            AddChild(lGone, "child", eINTEGER1);
        mRoot->GetPage()->RemoveOwnEntry(lGone.GetId());
        mIds.erase(mIds.end() - 2);
        for (int lParent : {lGone.GetId(), mIds.back(), mEven.GetId(), mIds[7]})
            if (const int lId = mRoot->GetPage()->Add(lParent, "late", eINTEGER1);
                mIds.back() == lParent || mIds[7] == lParent)
                mIds.push_back(lId);
        Walk();
        EXPECT_EQ(mIds, DescendentsByScan(mRoot->GetPage(), mOdd.GetId()));
    }
}

TEST_F(InterleavedWalk, ComesToWhatIsAddedFarBelowWhatItFoundLast) {
    Add(true);
    Walk();
    for (int i = 0; i < 100; ++i) {
        const int lLast = mIds.back();
        mIds.push_back(mRoot->GetPage()->Add(lLast, "next", eINTEGER1));
        mRoot->GetPage()->Add(mEven.GetId(), "child", eINTEGER1);
        ASSERT_EQ(mIds.back(), Step(lLast));
        ASSERT_EQ(-1, Step(mIds.back()));
    }
    Walk();
}

TEST_F(InterleavedWalk, ComesToTheVeryLastIdBehindWhatWasCollected) {
    Add(false);
    mRoot->GetPage()->GetIdGenerator()->SkipTo(INT_MAX - 1);
    mIds.push_back(mRoot->GetPage()->Add(mIds[0], "last but one", eINTEGER1));
    Walk();
    mRoot->GetPage()->RemoveOwnEntry(mIds[1]);
    mIds.erase(mIds.begin() + 1);
    mIds.push_back(mRoot->GetPage()->Add(mIds.back(), "last", eINTEGER1));
    ASSERT_EQ(INT_MAX, mIds.back());
    Walk();
    Walk();
    EXPECT_EQ(-1, Step(INT_MAX));
}

TEST_F(InterleavedWalk, ComesToTheFirstThatIsLeftWhileTheFirstAlwaysGoes) {
    Add(false);
    Walk();
    for (std::size_t i = 0; i < mIds.size(); ++i) {
        ASSERT_EQ(mIds[i], mRoot->GetPage()->GetFirstDescendent(mOdd.GetId()));
        mRoot->GetPage()->RemoveOwnEntry(mIds[i]);
    }
    EXPECT_EQ(-1, mRoot->GetPage()->GetFirstDescendent(mOdd.GetId()));
}

TEST_F(InterleavedWalk, LeavesOutSeveralRunsThatWent) {
    Add(false);
    Walk();
    for (int lRun : {60, 20, 40, 62, 18, 0, 90}) {
        for (int i = lRun; i < lRun + 7; ++i)
            mRoot->GetPage()->RemoveOwnEntry(mIds[static_cast<std::size_t>(i)]);
        const std::vector<int> lLeft = DescendentsByScan(mRoot->GetPage(), mOdd.GetId());
        ASSERT_EQ(lLeft, Descendents(mRoot->GetPage(), mOdd.GetId()));
        ASSERT_EQ(lLeft, Descendents(mRoot->GetPage(), mOdd.GetId()));
    }
}

TEST_F(InterleavedWalk, TakesTurnsWithOthers) {
    Add(false);
    Add(true);
    OwnedRoot lInstance(KLyrPropertyHandle::Create(*mRoot));
    const std::vector<int> lOthers = Descendents(mRoot->GetPage(), mEven.GetId());
    ASSERT_EQ(mIds.size(), lOthers.size());
    int lOwn = mOdd.GetId();
    int lInherited = lOwn;
    int lOther = mEven.GetId();
    for (std::size_t i = 0; i < mIds.size(); ++i) {
        ASSERT_EQ(mIds[i], lOwn = Step(lOwn));
        ASSERT_EQ(mIds[i], lInherited = lInstance->GetPage()->GetNextDescendent(mOdd.GetId(), lInherited));
        ASSERT_EQ(lOthers[i], lOther = mRoot->GetPage()->GetNextDescendent(mEven.GetId(), lOther));
    }
    EXPECT_EQ(-1, Step(lOwn));
    EXPECT_EQ(-1, lInstance->GetPage()->GetNextDescendent(mOdd.GetId(), lInherited));
    EXPECT_EQ(-1, mRoot->GetPage()->GetNextDescendent(mEven.GetId(), lOther));
}

// One that went had a child, which is there but no descendant any more; another one had none.
TEST_F(InterleavedWalk, LeavesOutAChildOfOneThatWentAlsoWhenAnotherOneGoes) {
    for (const bool lWasWalked : {true, false}) {
        OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
        Page* lPage = lRoot->GetPage();
        const int lTop = lPage->Add(0, "top", eINTEGER1);
        for (int i = 0, lOther = lPage->Add(0, "other", eINTEGER1); i < 100; ++i) {
            lPage->Add(lOther, "child", eINTEGER1);
            lPage->Add(lTop, "child", eINTEGER1);
        }
        const int lParent = lPage->Add(lTop, "parent", eINTEGER1);
        const int lWithout = lPage->Add(lWasWalked ? lTop : 0, "without", eINTEGER1);
        lPage->Add(lParent, "orphan", eINTEGER1);
        Descendents(lPage, lTop);
        lPage->RemoveOwnEntry(lParent);
        lPage->RemoveOwnEntry(lWithout);
        EXPECT_EQ(DescendentsByScan(lPage, lTop), Descendents(lPage, lTop)) << lWasWalked;
    }
}

// What is far below is collected anew, up to where the list went, and only then what was added behind it.
TEST_F(InterleavedWalk, ComesOnceToWhatWasAddedBehindWhatIsLookedThroughAgain) {
    Add(true);
    const KLyrPropertyHandle lSide = AddChild(mOdd, "side", eINTEGER1);
    AddChild(lSide, "orphan", eINTEGER1);
    Descendents(mRoot->GetPage(), mOdd.GetId());
    mRoot->GetPage()->RemoveOwnEntry(lSide.GetId());
    mIds.push_back(AddChild(mOdd, "late", eINTEGER1).GetId());
    EXPECT_EQ(mIds[50], Step(mIds[49]));
    ASSERT_EQ(mIds[100], Step(mIds[99]));
    ASSERT_EQ(-1, Step(mIds[100]));
    Walk();
}

// Of the ids that were collected at first, the last stay behind those that are collected later.
TEST_F(InterleavedWalk, GoesOnFromAnywhereWhenItCameToTheEndOfFewerThanBefore) {
    Add(false);
    Walk();
    mRoot->GetPage()->Add(mIds[0], "child", eINTEGER1);
    for (std::size_t i = 0; i < 3; ++i)
        mRoot->GetPage()->RemoveOwnEntry(mIds[i]);
    mIds.erase(mIds.begin(), mIds.begin() + 3);
    mIds.push_back(AddChild(mOdd, "late", eINTEGER1).GetId());
    Walk();
    for (std::size_t i = 0; i + 1 < mIds.size(); ++i) {
        ASSERT_EQ(-1, Step(mIds.back()));
        ASSERT_EQ(mIds[i + 1], Step(mIds[i]));
    }
}

// Each request for memory is refused in turn while properties are added, among them the one for room for more ids. What
// was collected before is looked through again when a property with a child went.
void WalkWithoutRoom(int pCount, std::size_t pRefused, bool pOneGoes) {
    OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    Page* lPage = lRoot->GetPage();
    const int lTop = lPage->Add(0, "top", eINTEGER1);
    for (int i = 0, lOther = lPage->Add(0, "other", eINTEGER1); i < 40; ++i)
        lPage->Add(lOther, "child", eINTEGER1);
    const int lFirst = lPage->Add(lTop, "first", eINTEGER1);
    for (int i = 0; i < pCount; ++i)
        lPage->Add(lTop, "child", eINTEGER1);
    const int lLast = lPage->Add(lTop, "last", eINTEGER1);
    const int lBelow = lPage->Add(lLast, "below", eINTEGER1);
    Descendents(lPage, lTop);
    if (pOneGoes)
        lPage->RemoveOwnEntry(lLast);
    // Far below, but with a smaller id than those that follow.
    const int lDeep = lPage->Add(lFirst, "deep", eINTEGER1);
    for (int i = 0; i < pCount; ++i) {
        const FailAllocations lFail(pRefused, false);
        lPage->Add(lTop, "late", eINTEGER1);
    }
    EXPECT_EQ(lDeep, lPage->GetNextDescendent(lTop, lBelow));
    EXPECT_EQ(DescendentsByScan(lPage, lTop), Descendents(lPage, lTop));
}

TEST_F(InterleavedWalk, GoesOnWithoutRoomForAllThatWasAdded) {
    for (const int lCount : {100, 130, 160, 200}) {
        for (std::size_t lRefused = 0; lRefused < 12; ++lRefused) {
            for (const bool lOneGoes : {false, true}) {
                WalkWithoutRoom(lCount, lRefused, lOneGoes);
                ASSERT_FALSE(HasFailure()) << lCount << ", " << lRefused << ", " << lOneGoes;
            }
        }
    }
}

}  // namespace
}  // namespace lyrsdk
