#include <gtest/gtest.h>

#include <climits>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/huge_text.h"
#include "tests/support/page_family.h"

namespace lyrsdk {
namespace {

// A page with the tree a(b(c) B2) A d, and an instance of it.
class KLyrPropertyPageLookupTest : public PageTest {
protected:
    int Add(const OwnedPage& pPage, int pParentId, const char* pName) { return pPage->Add(pParentId, pName, eDOUBLE1); }
    int Find(int pId, const char* pName, const char* pSeparators = nullptr, bool pCaseSensitive = true) {
        return mPage->Find(pId, pName, nullptr, pCaseSensitive, pSeparators);
    }
    int Fast(const OwnedPage& pPage, int pId, const char* pName, bool pCaseSensitive = true) {
        return pPage->FastFind(pId, pName, nullptr, pCaseSensitive);
    }

    OwnedPage mPage = MakeRoot();
    const int mA = Add(mPage, 0, "a");
    const int mB = Add(mPage, mA, "b");
    const int mC = Add(mPage, mB, "c");
    const int mB2 = Add(mPage, mA, "B2");
    const int mUpperA = Add(mPage, 0, "A");
    const int mD = Add(mPage, 0, "d");
    OwnedPage mInstance = MakeInstance(mPage);
};

#ifdef LYRSDK_TEST_HUGE_TEXT
TEST(HugeText, IsNoSegmentOfAPath) {
    const HugeText lHuge("|a");
    const OwnedPage lPage = MakeRoot();
    ASSERT_GT(lPage->Add(0, "a", eDOUBLE1), 0);
    EXPECT_EQ(lPage->Find(0, lHuge.Text(), nullptr, true, "|"), -1);
    EXPECT_EQ(lPage->Find(0, lHuge.Text(), nullptr, false, "|"), -1);
}
#endif

// --- direct children -------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageLookupTest, FindsDirectChildrenOnly) {
    EXPECT_EQ(Fast(mPage, 0, "a"), mA);
    EXPECT_EQ(Fast(mPage, mA, "b"), mB);
    EXPECT_EQ(Fast(mPage, mA, "B2"), mB2);
    EXPECT_EQ(Fast(mPage, 0, "b"), -1);
    EXPECT_EQ(Fast(mPage, 0, "root"), -1);
    EXPECT_EQ(Fast(mPage, 0, ""), -1);
    EXPECT_EQ(Fast(mPage, 0, nullptr), -1);
    for (int lId : {-1, -2, 77, INT_MAX, INT_MIN, mC})
        EXPECT_EQ(Fast(mPage, lId, "a"), -1);
}

TEST_F(KLyrPropertyPageLookupTest, CaseMattersOnlyWhenAsked) {
    EXPECT_EQ(Fast(mPage, 0, "A"), mUpperA);
    EXPECT_EQ(Fast(mPage, 0, "A", false), mA) << "the first in id order";
    EXPECT_EQ(Fast(mPage, mA, "b2"), -1);
    EXPECT_EQ(Fast(mPage, mA, "b2", false), mB2);
    EXPECT_EQ(Fast(mPage, mA, "B2 ", false), -1);
    EXPECT_EQ(Fast(mPage, mA, "B", false), mB);
}

TEST_F(KLyrPropertyPageLookupTest, TakesNamesOfAnyBytesAndLengths) {
    const std::string lLong(5000, 'n');
    const int lLongId = Add(mPage, 0, lLong.c_str());
    const int lBytes = Add(mPage, 0, "\xff\x01 \x80|");
    const int lEmpty = Add(mPage, 0, "");
    for (bool lCase : {false, true}) {
        EXPECT_EQ(Fast(mPage, 0, lLong.c_str(), lCase), lLongId);
        EXPECT_EQ(Fast(mPage, 0, std::string(4999, 'n').c_str(), lCase), -1);
        EXPECT_EQ(Fast(mPage, 0, "\xff\x01 \x80|", lCase), lBytes);
        EXPECT_EQ(Fast(mPage, 0, "", lCase), lEmpty);
        EXPECT_EQ(Fast(mPage, 0, nullptr, lCase), lEmpty);
    }
}

TEST_F(KLyrPropertyPageLookupTest, FirstOfEqualSiblingsIsFound) {
    const int lFirst = Add(mInstance, 0, "twice");
    const int lSecond = Add(mPage, 0, "twice");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(Fast(mInstance, 0, "twice"), lFirst);
        EXPECT_EQ(Fast(mPage, 0, "twice"), lSecond);
        mInstance->BeginCreateOrFindProperty();
        mPage->BeginCreateOrFindProperty();
    }
}

TEST_F(KLyrPropertyPageLookupTest, SeesTheChainAndPassesOverChildrenWithoutADescription) {
    const int lOwn = Add(mInstance, mA, "own");
    SetNumber(mInstance, mB, 3);
    mPage->Add(0, nullptr, nullptr, nullptr, true);
    const int lLast = Add(mPage, 0, "last");
    EXPECT_EQ(Fast(mInstance, mA, "own"), lOwn);
    EXPECT_EQ(Fast(mInstance, mA, "b"), mB);
    EXPECT_EQ(Fast(mPage, mA, "own"), -1);
    EXPECT_EQ(Fast(mPage, 0, "last"), lLast);
    EXPECT_EQ(Fast(mPage, 0, "LAST", false), lLast);
    EXPECT_EQ(mPage->FastFind(0, "", nullptr, false), -1);
}

TEST_F(KLyrPropertyPageLookupTest, TypeFilterIsIdentityOfTheTypePage) {
    const OwnedPage lType = MakeRoot("t", eDOUBLE1);
    const OwnedPage lOther = MakeRoot("t", eDOUBLE1);
    const OwnedPage lTypesInstance = MakeInstance(lType);
    const int lPlain = Add(mPage, 0, "x");
    const int lTyped = mPage->Add(0, "x", lType.get());
    const int lOtherTyped = mPage->Add(0, "X", lOther.get());
    for (const OwnedPage* lPage : {&mPage, &mInstance}) {
        EXPECT_EQ((*lPage)->FastFind(0, "x", nullptr, true), lPlain);
        EXPECT_EQ((*lPage)->FastFind(0, "x", lType.get(), true), lTyped);
        EXPECT_EQ((*lPage)->FastFind(0, "x", lOther.get(), true), -1);
        EXPECT_EQ((*lPage)->FastFind(0, "x", lOther.get(), false), lOtherTyped);
        EXPECT_EQ((*lPage)->FastFind(0, "x", lTypesInstance.get(), true), -1);
        EXPECT_EQ((*lPage)->Find(0, "x", lType.get(), true, "|"), lTyped);
    }
}

TEST_F(KLyrPropertyPageLookupTest, AsksForNoMemoryAndInternsNothing) {
    Add(mPage, 0, "somewhere else");
    const OwnedPage lOther = MakeRoot("interned elsewhere");
    const std::size_t lAllocations = MemoryProbe::Allocations();
    for (bool lCase : {false, true}) {
        EXPECT_EQ(Find(0, "a|b|c", "|", lCase), mC);
        EXPECT_EQ(Find(0, "never heard of", "|", lCase), -1);
        EXPECT_EQ(Find(0, "interned elsewhere", nullptr, lCase), -1);
        EXPECT_EQ(Find(0, (std::string(255, 'x') + "|a").c_str(), "|", lCase), -1);
    }
    EXPECT_EQ(MemoryProbe::Allocations(), lAllocations);
}

// --- paths -----------------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageLookupTest, PathsAreCutAtEverySeparatorCharacter) {
    EXPECT_EQ(Find(0, "a|b|c", "|"), mC);
    EXPECT_EQ(Find(0, "a|b/c", "/|"), mC);
    EXPECT_EQ(Find(0, "a|b", "/"), -1) << "a name with a bar in it";
    EXPECT_EQ(Find(mA, "b|c", "|"), mC);
    EXPECT_EQ(Find(0, "a|x|c", "|"), -1);
    EXPECT_EQ(Find(0, "x|b", "|"), -1);
    EXPECT_EQ(Find(0, "a|b|x", "|"), -1);
    EXPECT_EQ(Find(0, "a", "|"), mA);
    EXPECT_EQ(Find(0, "a", ""), mA);
    EXPECT_EQ(Find(0, "a|b", ""), -1);
    EXPECT_EQ(Find(0, "a|b", nullptr), -1);
    EXPECT_EQ(Find(0, nullptr, "|"), -1);
    EXPECT_EQ(Find(-1, "a|b", "|"), -1);
}

TEST_F(KLyrPropertyPageLookupTest, PathsCompareEverySegmentWithTheSameCase) {
    EXPECT_EQ(Find(0, "a|B|C", "|", false), mC);
    EXPECT_EQ(Find(0, "A|b|c", "|", true), -1) << "A has no children";
    EXPECT_EQ(Find(0, "D", "|", false), mD);
}

TEST_F(KLyrPropertyPageLookupTest, SeparatorsAtTheEndsAndInARowEncloseEmptyNames) {
    EXPECT_EQ(Find(0, "a|", "|"), -1);
    EXPECT_EQ(Find(0, "|a", "|"), -1);
    EXPECT_EQ(Find(0, "a||c", "|"), -1);
    EXPECT_EQ(Find(0, "|", "|"), -1);
    EXPECT_EQ(Find(0, "", "|"), -1);
    const int lEmpty = Add(mPage, mA, "");
    const int lBelow = Add(mPage, lEmpty, "c");
    const int lBelowEmpty = Add(mPage, lEmpty, "");
    EXPECT_EQ(Find(0, "a|", "|"), lEmpty);
    EXPECT_EQ(Find(0, "a||c", "|"), lBelow);
    EXPECT_EQ(Find(0, "a||", "|"), lBelowEmpty);
    EXPECT_EQ(Find(mA, "|c", "|"), lBelow);
    EXPECT_EQ(Find(mA, "|", "|"), lBelowEmpty);
    EXPECT_EQ(Find(mA, "", "|"), lEmpty);
}

TEST_F(KLyrPropertyPageLookupTest, OnlyTheLastSegmentIsFilteredByType) {
    const OwnedPage lType = MakeRoot("t", eDOUBLE1);
    const int lTyped = mPage->Add(mB, "typed", lType.get());
    EXPECT_EQ(mPage->Find(0, "a|b|typed", lType.get(), true, "|"), lTyped);
    EXPECT_EQ(mPage->Find(0, "a|b|c", lType.get(), true, "|"), -1);
    Add(mPage, lTyped, "below");
    EXPECT_EQ(mPage->Find(0, "a|b|typed|below", lType.get(), true, "|"), -1);
}

TEST_F(KLyrPropertyPageLookupTest, LongSegmentsAreLookedUpWhole) {
    for (std::size_t lLength : {254u, 255u, 256u, 257u, 4000u}) {
        const std::string lName(lLength, 'y');
        const int lLong = Add(mPage, 0, lName.c_str());
        const int lBelow = Add(mPage, lLong, "below");
        EXPECT_EQ(Find(0, (lName + "|below").c_str(), "|"), lBelow);
        EXPECT_EQ(Find(0, (lName + "y|below").c_str(), "|"), -1);
    }
}

TEST_F(KLyrPropertyPageLookupTest, VeryLongPathIsFollowedOnASmallStack) {
    constexpr int lDepth = 2000;
    int lLast = mD;
    std::string lPath = "d";
    for (int i = 0; i < lDepth; ++i) {
        lLast = Add(mPage, lLast, "x");
        lPath += "|x";
    }
    int lFound = -1;
    RunOnSmallStack([this, &lFound, &lPath] { lFound = Find(0, lPath.c_str(), "|"); });
    EXPECT_EQ(lFound, lLast);
}

// --- the create-or-find bracket --------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageLookupTest, OpenBracketAnswersForTheWholeChain) {
    const int lOwn = Add(mInstance, mC, "own");
    mInstance->BeginCreateOrFindProperty();
    EXPECT_EQ(Fast(mInstance, 0, "a"), mA);
    EXPECT_EQ(Fast(mInstance, mB, "c"), mC);
    EXPECT_EQ(Fast(mInstance, mC, "own"), lOwn);
    EXPECT_EQ(Fast(mInstance, 0, "b"), -1);
    EXPECT_EQ(Fast(mInstance, 77, "a"), -1);
    EXPECT_EQ(mInstance->FastFind(0, nullptr, nullptr, true), -1);
    EXPECT_EQ(mInstance->Find(0, "a|b|c", nullptr, false, "|"), mC);
    mInstance->EndCreateOrFindProperty();
    EXPECT_EQ(Fast(mInstance, mB, "c"), mC);
}

TEST_F(KLyrPropertyPageLookupTest, OpenBracketComparesWithCaseAndItsMissIsFinal) {
    EXPECT_EQ(Fast(mPage, 0, "D", false), mD);
    mPage->BeginCreateOrFindProperty();
    EXPECT_EQ(Fast(mPage, 0, "D", false), -1);
    EXPECT_EQ(Fast(mPage, 0, "d", false), mD);
    EXPECT_EQ(Fast(mPage, 0, "A", false), mUpperA) << "by the exact name, not the first of any case";
    EXPECT_EQ(Find(0, "a|B", "|", false), -1);
    mPage->EndCreateOrFindProperty();
    EXPECT_EQ(Fast(mPage, 0, "D", false), mD);
}

TEST_F(KLyrPropertyPageLookupTest, OpenBracketKnowsTheRootUnderNoProperty) {
    EXPECT_EQ(Fast(mPage, -1, "root"), -1);
    mPage->BeginCreateOrFindProperty();
    EXPECT_EQ(Fast(mPage, -1, "root"), 0);
    SetNumber(mInstance, 0, 0);
    mInstance->ChangePropertyEntryState(0, eLyrOverride);
    mInstance->BeginCreateOrFindProperty();
    EXPECT_EQ(Fast(mInstance, -1, "root"), -1) << "the instance's entry of the root describes nothing itself";
}

TEST_F(KLyrPropertyPageLookupTest, PathThatLeadsNowhereDoesNotGoOnAtTheRoot) {
    mPage->BeginCreateOrFindProperty();
    EXPECT_EQ(Find(0, "nobody|root", "|"), -1);
    EXPECT_EQ(Find(-1, "root|a|b", "|"), mB);
}

TEST_F(KLyrPropertyPageLookupTest, OpenBracketLearnsWhatIsAddedToItsPage) {
    const OwnedPage lType = MakeRoot("t", eDOUBLE1);
    Add(lType, Add(lType, 0, "x"), "y");
    mInstance->BeginCreateOrFindProperty();
    const int lNew = Add(mInstance, mA, "new");
    EXPECT_EQ(Fast(mInstance, mA, "new"), lNew);
    const int lSecond = Add(mInstance, mA, "new");
    EXPECT_GT(lSecond, lNew);
    EXPECT_EQ(Fast(mInstance, mA, "new"), lNew);
    const int lTyped = mInstance->Add(0, "typed", lType.get());
    EXPECT_EQ(mInstance->Find(0, "typed|x|y", nullptr, true, "|"), lTyped + 2);
    mInstance->Add(lTyped, nullptr, nullptr, nullptr, true);
    EXPECT_EQ(Fast(mInstance, lTyped, ""), -1) << "without a description there is no name";
    const Counted<KLyrPropertyInfo> lInfo(KLyrPropertyInfo::Create("given", eDOUBLE1));
    const int lGiven = mInstance->Add(mD, lInfo.Get(), nullptr, nullptr, false);
    EXPECT_EQ(Fast(mInstance, mD, "given"), lGiven);
}

TEST_F(KLyrPropertyPageLookupTest, OpenBracketDoesNotLearnWhatIsAddedToOtherPages) {
    mInstance->BeginCreateOrFindProperty();
    const int lAbove = Add(mPage, 0, "above");
    EXPECT_EQ(Fast(mInstance, 0, "above"), -1);
    EXPECT_EQ(Fast(mPage, 0, "above"), lAbove) << "its own bracket is closed";
    mInstance->BeginCreateOrFindProperty();
    EXPECT_EQ(Fast(mInstance, 0, "above"), -1) << "a second begin does not look again";
    mInstance->EndCreateOrFindProperty();
    EXPECT_EQ(Fast(mInstance, 0, "above"), lAbove);
    mInstance->BeginCreateOrFindProperty();
    EXPECT_EQ(Fast(mInstance, 0, "above"), lAbove);
}

TEST_F(KLyrPropertyPageLookupTest, BracketsDoNotNest) {
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    mPage->EndCreateOrFindProperty();
    mPage->BeginCreateOrFindProperty();
    mPage->BeginCreateOrFindProperty();
    EXPECT_GT(MemoryProbe::LiveBlocks(), lBlocks);
    mPage->EndCreateOrFindProperty();
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks) << "the map is gone";
    EXPECT_EQ(Fast(mPage, 0, "D", false), mD);
    mPage->EndCreateOrFindProperty();
    mPage->EndCreateOrFindProperty();
    mPage->BeginCreateOrFindProperty();
    EXPECT_EQ(Fast(mPage, 0, "D", false), -1) << "ends without a begin count for nothing";
}

TEST_F(KLyrPropertyPageLookupTest, HitOfAnotherTypeLeavesItToTheChildren) {
    const OwnedPage lType = MakeRoot("t", eDOUBLE1);
    const int lTyped = mPage->Add(0, "d", lType.get());
    const int lOther = mPage->Add(0, "A", lType.get());
    mPage->BeginCreateOrFindProperty();
    EXPECT_EQ(mPage->FastFind(0, "d", nullptr, true), mD);
    EXPECT_EQ(mPage->FastFind(0, "d", lType.get(), true), lTyped);
    EXPECT_EQ(mPage->FastFind(0, "a", lType.get(), false), lOther) << "and their case is compared as asked";
    EXPECT_EQ(mPage->FastFind(0, "a", lType.get(), true), -1);
    EXPECT_EQ(mPage->FastFind(0, "D", lType.get(), false), -1) << "a miss stays final";
    const OwnedPage lNobody = MakeRoot();
    EXPECT_EQ(mPage->FastFind(0, "d", lNobody.get(), true), -1);
}

TEST_F(KLyrPropertyPageLookupTest, HitOfTheTypeAskedForIsFoundByItsExactName) {
    const OwnedPage lType = MakeRoot("t", eDOUBLE1);
    const int lUpper = mPage->Add(0, "Typed", lType.get());
    const int lLower = mPage->Add(0, "typed", lType.get());
    EXPECT_EQ(mPage->FastFind(0, "typed", lType.get(), false), lUpper);
    mPage->BeginCreateOrFindProperty();
    for (KLyrPropertyPage* lAsked : {lType.get(), static_cast<KLyrPropertyPage*>(nullptr)}) {
        EXPECT_EQ(mPage->FastFind(0, "typed", lAsked, false), lLower);
        EXPECT_EQ(mPage->FastFind(0, "Typed", lAsked, false), lUpper);
    }
}

TEST_F(KLyrPropertyPageLookupTest, HitOfAPropertyThatIsGoneLeavesItToTheChildren) {
    const int lFirst = Add(mPage, 0, "twice");
    const int lSecond = Add(mPage, 0, "twice");
    mPage->BeginCreateOrFindProperty();
    mPage->RemoveOwnEntry(lFirst);
    EXPECT_EQ(Fast(mPage, 0, "twice"), lSecond);
    mPage->RemoveOwnEntry(lSecond);
    EXPECT_EQ(Fast(mPage, 0, "twice"), -1);
    const int lThird = Add(mPage, 0, "twice");
    EXPECT_EQ(Fast(mPage, 0, "twice"), lThird);
    EXPECT_EQ(Fast(mPage, 0, "a"), mA) << "the map can still be searched";
}

TEST_F(KLyrPropertyPageLookupTest, NamesInTheMapOutliveTheirProperties) {
    const int lId = Add(mPage, mD, "only here");
    mInstance->BeginCreateOrFindProperty();
    mPage->RemoveOwnEntry(lId);
    for (const char* lName : {"only", "only here", "only here too", "zzz"})
        EXPECT_EQ(Fast(mInstance, mD, lName), -1);
    const int lAgain = Add(mInstance, mD, "only here");
    EXPECT_EQ(Fast(mInstance, mD, "only here"), lAgain);
}

TEST_F(KLyrPropertyPageLookupTest, BracketOverNoNamesLeavesEverythingToTheChildren) {
    const OwnedPage lPage = MakeRoot();
    lPage->RemoveOwnEntry(0);
    lPage->BeginCreateOrFindProperty();
    const int lId = Add(lPage, 0, "name");
    EXPECT_EQ(Fast(lPage, 0, "NAME", false), lId);
    EXPECT_EQ(Fast(lPage, 0, "name"), lId);
    lPage->EndCreateOrFindProperty();
    EXPECT_EQ(Fast(lPage, 0, "NAME", false), lId);
}

// The first property whose entry describes itself, has this parent and this name. A parent may have a larger id than
// its child here, which the scan of the children does not find.
int FirstNamed(const OwnedPage& pPage, int pParentId, const std::string& pName) {
    KLyrPropertyEntry* lEntry = pPage->GetPropertyEntry(0);
    int lId = lEntry ? 0 : pPage->GetMinimumPropertyIdAndEntry(0, &lEntry);
    for (; lId != -1; lId = pPage->GetMinimumPropertyIdAndEntry(lId, &lEntry)) {
        const KLyrPropertyInfo* lInfo = lEntry->Get(static_cast<const KLyrPropertyInfo*>(nullptr));
        if (lInfo && lEntry->GetParentId() == pParentId && lInfo->GetNameText() == pName)
            return lId;
    }
    return -1;
}

void ExpectNamedAnswers(const OwnedPage& pPage, bool pOpen) {
    for (int lParent = -2; lParent < 25; ++lParent) {
        for (const char* lName : {"a", "b", "c", "root", "x"}) {
            SCOPED_TRACE(testing::Message() << lName << " under " << lParent << (pOpen ? ", bracket open" : ""));
            const int lFirst = FirstNamed(pPage, lParent, lName);
            const int lFound = pPage->FastFind(lParent, lName, nullptr, true);
            if (pOpen || (lFirst != -1 && lFirst > lParent && lParent != -1)) {
                ASSERT_EQ(lFound, lFirst);
            } else if (lParent != -1) {
                ASSERT_TRUE(lFound == -1 || lFound > lParent);
            } else {
                ASSERT_EQ(lFound, -1);
            }
        }
    }
}

TEST_F(KLyrPropertyPageLookupTest, RandomFamiliesAnswerAsAPlainWalkDoes) {
    for (unsigned lSeed = 1; lSeed <= 60; ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(100);
        for (const OwnedPage& lPage : lFamily.Pages()) {
            ExpectNamedAnswers(lPage, false);
            if (lPage->GetPropertyEntryCount() == 0)
                continue;
            lPage->BeginCreateOrFindProperty();
            ExpectNamedAnswers(lPage, true);
            lPage->EndCreateOrFindProperty();
            if (HasFatalFailure())
                return;
        }
    }
}

}  // namespace
}  // namespace lyrsdk
