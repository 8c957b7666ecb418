#include <gtest/gtest.h>

#include <strings.h>

#include <cctype>
#include <climits>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

// Large pages find children, names and descendants with an index. Every answer is the one that looking at all ids in
// ascending order gives.

namespace lyrsdk {
namespace {

using Page = KLyrPropertyPage;

// --- the answers by looking at every id ----------------------------------------------------------------------------

int NextChildByScan(const Page* pPage, int pParentId, int pAfter) {
    KLyrPropertyEntry* lEntry = nullptr;
    int lId = pAfter;
    do
        lId = pPage->GetMinimumPropertyIdAndEntry(lId, &lEntry);
    while (lId != -1 && lEntry->GetParentId() != pParentId);
    return lId;
}

int ChildByScan(const Page* pPage, int pParentId) {
    return pParentId == -1 ? -1 : NextChildByScan(pPage, pParentId, pParentId);
}

int SiblingByScan(const Page* pPage, int pId) {
    const int lParent = pId == -1 ? -1 : pPage->GetParent(pId);
    return lParent == -1 ? -1 : NextChildByScan(pPage, lParent, pId);
}

int DescendentByScan(const Page* pPage, int pAncestorId, int pAfter) {
    KLyrPropertyEntry* lEntry = nullptr;
    int lId = pAfter;
    do
        lId = lId == -1 ? -1 : pPage->GetMinimumPropertyIdAndEntry(lId, &lEntry);
    while (lId != -1 && (lEntry->GetParentId() == -1 || !pPage->IsDescendentOf(lId, pAncestorId)));
    return lId;
}

int FindByScan(const Page* pPage, int pParentId, const char* pName, const Page* pTypeInfo, bool pCaseSensitive) {
    for (int lId = ChildByScan(pPage, pParentId); lId != -1; lId = SiblingByScan(pPage, lId)) {
        const KLyrPropertyInfo* lInfo = pPage->GetPropertyItem<KLyrPropertyInfo>(nullptr, lId);
        if (!lInfo || (pTypeInfo && lInfo->GetTypeInfo() != pTypeInfo))
            continue;
        const char* lName = lInfo->GetNameText();
        if ((pCaseSensitive ? std::strcmp(lName, pName) : strcasecmp(lName, pName)) == 0)
            return lId;
    }
    return -1;
}

std::vector<int> Descendents(const Page* pPage, int pAncestorId) {
    std::vector<int> lIds;
    for (int lId = pPage->GetFirstDescendent(pAncestorId); lId != -1; lId = pPage->GetNextDescendent(pAncestorId, lId))
        lIds.push_back(lId);
    return lIds;
}

std::vector<int> DescendentsByScan(const Page* pPage, int pAncestorId) {
    std::vector<int> lIds;
    for (int lId = DescendentByScan(pPage, pAncestorId, pAncestorId); lId != -1;
         lId = DescendentByScan(pPage, pAncestorId, lId))
        lIds.push_back(lId);
    return lIds;
}

// --- random families -----------------------------------------------------------------------------------------------

const char* const kNames[] = {"a",
                              "A",
                              "b",
                              "name",
                              "Name",
                              "NAME",
                              "",
                              "[name",
                              "{name",
                              "@name",
                              "`name",
                              "a long name of a property",
                              "\xC3\xA9",
                              "\xC3\x89",
                              "A long NAME of a property",
                              "a long name of a propertx"};
constexpr int kNameCount = static_cast<int>(sizeof(kNames) / sizeof(kNames[0]));

// A family of pages that random work is done on.
class RandomFamily {
public:
    RandomFamily(unsigned pSeed, bool pOddParents) : mRandom(pSeed), mOddParents(pOddParents) {
        mTypes[0] = Page::Create("type", eINTEGER1);
        mTypes[1] = Page::Create("type", eINTEGER1);
        mPages.push_back(Page::Create("root", eINTEGER1));
    }
    ~RandomFamily() {
        for (std::size_t i = mPages.size(); i-- > 0;)
            mPages[i]->Destroy();
        for (Page* lType : mTypes)
            lType->Destroy();
    }
    RandomFamily(const RandomFamily&) = delete;
    RandomFamily& operator=(const RandomFamily&) = delete;

    int Below(int pBound) { return static_cast<int>(mRandom() % static_cast<unsigned>(pBound)); }
    // Mostly ids that are there, some that never were, some that no property can have.
    int AnyId() { return Below(20) == 0 ? Below(12) - 6 : Below(mNextId + 2); }
    Page* AnyPage() { return mPages[static_cast<std::size_t>(Below(static_cast<int>(mPages.size())))]; }
    const char* AnyName() { return kNames[Below(kNameCount)]; }
    const Page* AnyType() { return Below(4) == 0 ? mTypes[Below(2)] : nullptr; }

    void Work() {
        Page* lPage = AnyPage();
        const int lId = AnyId();
        const int lNumber = Below(3);
        switch (Below(16)) {
            case 0:
            case 1:
            case 2:
            case 3:
            case 4:
                Added(lPage->Add(AnyParent(), AnyName(), eINTEGER1));
                break;
            case 5:
                Added(lPage->Add(AnyParent(), AnyName(), mTypes[Below(2)]));
                break;
            case 6:
            case 7:
                lPage->Set(lId, &lNumber, eINTEGER1, Below(2) == 0);
                break;
            case 8:
                lPage->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, lId,
                                                                 Below(2) == 0 ? eLyrOverride : eLyrInherit);
                break;
            case 9:
                Rename(lPage, lId);
                break;
            case 10:
                if (lId != 0)
                    lPage->RemoveOwnEntry(lId);
                break;
            case 11:
                if (Below(3) == 0)
                    lPage->PushPropertiesToParentInstance();
                break;
            case 12:
                if (mPages.size() < 6)
                    AddInstance(lPage);
                break;
            case 13:
                if (mPages.size() > 3 && Below(6) == 0)
                    DestroyOne();
                break;
            default:
                lPage->SetValueInherit(lId, Below(2) == 0 ? eLyrOverride : eLyrInherit);
        }
    }

    void ExpectSameAnswers() {
        const Page* lPage = AnyPage();
        const int lId = AnyId();
        const int lOther = AnyId();
        const char* lName = AnyName();
        const Page* lType = AnyType();
        ASSERT_EQ(ChildByScan(lPage, lId), lPage->GetChild(lId)) << lId;
        ASSERT_EQ(SiblingByScan(lPage, lId), lPage->GetSibling(lId)) << lId;
        ASSERT_EQ(DescendentByScan(lPage, lId, lId), lPage->GetFirstDescendent(lId)) << lId;
        ASSERT_EQ(DescendentByScan(lPage, lId, lOther), lPage->GetNextDescendent(lId, lOther)) << lId << " " << lOther;
        for (const bool lCase : {true, false})
            ASSERT_EQ(FindByScan(lPage, lId, lName, lType, lCase),
                      lPage->FastFind(lId, lName, const_cast<Page*>(lType), lCase))
                << lId << " " << lName << " " << lCase;
    }

    void ExpectSameWalk() {
        const Page* lPage = AnyPage();
        const int lId = AnyId();
        ASSERT_EQ(DescendentsByScan(lPage, lId), Descendents(lPage, lId)) << lId;
    }

    // A walk that goes on while the family changes under it.
    void ExpectSameStep() {
        if (mWalkAt == -1) {
            mWalkPage = AnyPage();
            mWalkAncestor = mWalkAt = 1 + Below(8);
        }
        const int lNext = DescendentByScan(mWalkPage, mWalkAncestor, mWalkAt);
        ASSERT_EQ(lNext, mWalkPage->GetNextDescendent(mWalkAncestor, mWalkAt)) << mWalkAncestor << " " << mWalkAt;
        mWalkAt = lNext;
    }

private:
    int AnyParent() {
        if (mOddParents && Below(10) == 0)
            return Below(mNextId + 20) - 4;
        // Wide, deep, and far apart.
        const int lShape = Below(4);
        return lShape == 0 ? Below(3) * Below(4) : lShape == 1 ? mNextId - 1 : Below(mNextId);
    }

    void Added(int pId) { mNextId = pId == -1 ? mNextId : pId + 1; }

    void AddInstance(Page* pPage) {
        if (Page* lInstance = Page::Create(pPage))
            mPages.push_back(lInstance);
    }

    // By hand, as only the owner of a page can.
    void Rename(Page* pPage, int pId) {
        KLyrPropertyEntry* lEntry = pPage->ChangePropertyEntryState(pId, eLyrOverride);
        if (lEntry && pId != 0)
            lEntry->Set(Below(6) == 0 ? nullptr : KLyrPropertyInfo::Create(AnyName(), eINTEGER1));
    }

    // Some come to stand on their own.
    void DestroyOne() {
        const std::size_t lIndex = static_cast<std::size_t>(Below(static_cast<int>(mPages.size())));
        mWalkAt = mPages[lIndex] == mWalkPage ? -1 : mWalkAt;
        mPages[lIndex]->Destroy();
        mPages.erase(mPages.begin() + static_cast<std::ptrdiff_t>(lIndex));
    }

    std::mt19937 mRandom;
    bool mOddParents;
    Page* mTypes[2];
    std::vector<Page*> mPages;
    int mNextId = 1;
    Page* mWalkPage = nullptr;
    int mWalkAncestor = -1;
    int mWalkAt = -1;
};

class PropertyIndex : public HandleTest {};

TEST_F(PropertyIndex, AnswersAsAScanOfAllIdsDoes) {
    for (unsigned lSeed = 1; lSeed <= 12; ++lSeed) {
        RandomFamily lFamily(lSeed, lSeed % 3 == 0);
        for (int i = 0; i < 1500 && !HasFatalFailure(); ++i) {
            lFamily.Work();
            if (i % 4 == 0)
                lFamily.ExpectSameAnswers();
            if (i % 100 == 0)
                lFamily.ExpectSameWalk();
            lFamily.ExpectSameStep();
        }
        ASSERT_FALSE(HasFatalFailure()) << "seed " << lSeed;
    }
}

// An index that finds no memory is given up; the answers stay.
TEST_F(PropertyIndex, AnswersAsAScanOfAllIdsDoesWhileMemoryComesAndGoes) {
    for (unsigned lSeed = 21; lSeed <= 26; ++lSeed) {
        ReportRecorder lReports;
        RandomFamily lFamily(lSeed, false);
        for (int i = 0; i < 1500 && !HasFatalFailure(); ++i) {
            {
                const FailAllocations lFail(static_cast<std::size_t>(lFamily.Below(8)), lFamily.Below(4) == 0);
                lFamily.Work();
            }
            lFamily.ExpectSameAnswers();
            if (i % 50 == 0)
                lFamily.ExpectSameWalk();
        }
        ASSERT_FALSE(HasFatalFailure()) << "seed " << lSeed;
        for (const std::string& lMessage : lReports.Take())
            EXPECT_EQ("lParentEntry", lMessage);
    }
}

// Each request for memory is refused in turn once there is an index, among them the one for a larger table of names.
TEST_F(PropertyIndex, FindsWhatWasAddedWhileMemoryWasRefused) {
    for (std::size_t lRefused = 0; lRefused < 12; ++lRefused) {
        OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
        Page* lPage = lRoot->GetPage();
        for (int i = 0; i < 100; ++i)
            lPage->Add(0, ("early " + std::to_string(i)).c_str(), eINTEGER1);
        for (int i = 0; i < 300; ++i) {
            const std::string lName = "late " + std::to_string(i);
            int lId = -1;
            {
                const FailAllocations lFail(lRefused, false);
                lId = lPage->Add(0, lName.c_str(), eINTEGER1);
            }
            if (lId == -1)
                lId = lPage->Add(0, lName.c_str(), eINTEGER1);
            ASSERT_EQ(lId, lPage->FastFind(0, lName.c_str(), nullptr, true)) << lRefused;
        }
        for (int lId = 0; lId != -1; lId = lPage->GetMinimumPropertyIdAndEntry(lId))
            ASSERT_EQ(SiblingByScan(lPage, lId), lPage->GetSibling(lId)) << lRefused;
    }
}

// They have the bits of the largest ids but for one.
TEST_F(PropertyIndex, FindsNoChildrenOfNegativeIds) {
    OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    Page* lPage = lRoot->GetPage();
    for (int i = 0; i < 100; ++i)
        lPage->Add(0, "child", eINTEGER1);
    lPage->GetIdGenerator()->SkipTo(INT_MAX - 9);
    const int lParent = lPage->Add(0, "parent", eINTEGER1);
    const int lChild = lPage->Add(lParent, "below", eINTEGER1);
    EXPECT_EQ(lChild, lPage->GetChild(lParent));
    for (int lId : {-1, -2, INT_MIN, INT_MIN + lParent}) {
        EXPECT_EQ(-1, lPage->GetChild(lId)) << lId;
        EXPECT_EQ(-1, lPage->FastFind(lId, "below", nullptr, true)) << lId;
    }
}

TEST_F(PropertyIndex, FindsEveryLetterInBothCases) {
    OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    Page* lPage = lRoot->GetPage();
    for (int i = 0; i < 40; ++i)
        lPage->Add(0, "another", eINTEGER1);
    for (const bool lCapital : {false, true}) {
        const int lParent = lPage->Add(0, "letters", eINTEGER1);
        // And the characters on both sides, which differ like the cases of a letter do.
        for (char lChar = 'A' - 1; lChar <= 'Z' + 1; ++lChar) {
            const bool lIsLetter = lChar >= 'A' && lChar <= 'Z';
            const char lOtherChar = static_cast<char>(lChar + ('a' - 'A'));
            const std::string lName(1, lCapital ? lChar : lOtherChar);
            const std::string lOther(1, lCapital ? lOtherChar : lChar);
            const int lId = lPage->Add(lParent, lName.c_str(), eINTEGER1);
            EXPECT_EQ(lId, lPage->FastFind(lParent, lName.c_str(), nullptr, false)) << lName;
            EXPECT_EQ(lIsLetter ? lId : -1, lPage->FastFind(lParent, lOther.c_str(), nullptr, false)) << lName;
            EXPECT_EQ(-1, lPage->FastFind(lParent, lOther.c_str(), nullptr, true)) << lName;
        }
    }
}

// Sets the program's locale as long as it lives, when there is one of that name.
class WithLocale {
public:
    explicit WithLocale(const char* pName) : mIsSet(std::setlocale(LC_CTYPE, pName) != nullptr) {}
    ~WithLocale() { std::setlocale(LC_CTYPE, "C"); }
    WithLocale(const WithLocale&) = delete;
    WithLocale& operator=(const WithLocale&) = delete;
    bool IsSet() const { return mIsSet; }

private:
    const bool mIsSet;
};

// In this locale only ASCII letters are single bytes.
TEST_F(PropertyIndex, FindsNamesWithoutCaseInALocaleOfManyBytes) {
    const WithLocale lManyBytes("C.UTF-8");
    ASSERT_TRUE(lManyBytes.IsSet());
    OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    for (int i = 0; i < 40; ++i)
        AddChild(*lRoot, kNames[i % kNameCount], eINTEGER1);
    const Page* lPage = lRoot->GetPage();
    for (const char* lName : kNames)
        EXPECT_EQ(FindByScan(lPage, 0, lName, nullptr, false), lPage->FastFind(0, lName, nullptr, false)) << lName;
}

// In the one the last two bytes are a letter's two cases, in the other only ASCII letters have cases.
TEST_F(PropertyIndex, FindsNamesWithoutCaseInLocalesOfSingleBytes) {
#ifndef LYRSDK_TEST_LOCALES
    GTEST_SKIP() << "no localedef to compile the locales with";
#else
    for (const bool lHasLetter : {true, false}) {
        setenv("LOCPATH", LYRSDK_TEST_LOCALES, 1);
        const WithLocale lSingleBytes(lHasLetter ? "zhe" : "boxes");
        unsetenv("LOCPATH");
        ASSERT_TRUE(lSingleBytes.IsSet());
        // Of a constant above ASCII g++ knows better that it has no case.
        const volatile unsigned char lLastByte = 0xFF;
        ASSERT_EQ(lHasLetter ? 0xFE : 0xFF, std::tolower(lLastByte));
        OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
        for (int i = 0; i < 40; ++i)
            AddChild(*lRoot, kNames[i % kNameCount], eINTEGER1);
        const KLyrPropertyHandle lSmall = AddChild(*lRoot, "a\xFE", eINTEGER1);
        const KLyrPropertyHandle lCapital = AddChild(*lRoot, "a\xFF", eINTEGER1);
        const Page* lPage = lRoot->GetPage();
        // The address sanitizer's own function has only ASCII letters.
        const bool lAreEqual = strcasecmp("a\xFE", "a\xFF") == 0;
        EXPECT_EQ((lAreEqual ? lSmall : lCapital).GetId(), lPage->FastFind(0, "A\xFF", nullptr, false));
        EXPECT_EQ(lCapital.GetId(), lPage->FastFind(0, "a\xFF", nullptr, true));
        EXPECT_EQ(-1, lPage->FastFind(0, "A\xFF", nullptr, true));
        for (const char* lName : kNames)
            EXPECT_EQ(FindByScan(lPage, 0, lName, nullptr, false), lPage->FastFind(0, lName, nullptr, false)) << lName;
    }
#endif
}

// A new page may lie where the last walk's page did.
TEST_F(PropertyIndex, WalksOnlyThePageThatIsAsked) {
    OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    const KLyrPropertyHandle lFirst = AddChild(*lRoot, "first", eINTEGER1);
    for (int i = 0; i < 100; ++i)
        AddChild(*lRoot, "other", eINTEGER1);
    const KLyrPropertyHandle lLate = AddChild(lFirst, "late", eINTEGER1);
    for (int i = 0; i < 10; ++i) {
        KLyrPropertyHandle lInstance = KLyrPropertyHandle::Create(*lRoot);
        std::vector<int> lExpected = {lLate.GetId()};
        ASSERT_EQ(lExpected, Descendents(lInstance.GetPage(), lFirst.GetId()));
        for (int j = 0; j < 3; ++j)
            lExpected.push_back(AddChild(On(lInstance, lFirst), "own", eINTEGER1).GetId());
        AddChild(lInstance, "none of them", eINTEGER1);
        lExpected.push_back(AddChild(On(lInstance, lLate), "own", eINTEGER1).GetId());
        ASSERT_EQ(lExpected, Descendents(lInstance.GetPage(), lFirst.GetId()));
        lInstance.Destroy();
    }
}

// The last entry's id is so far from the others that the page's table has no slot for it.
TEST_F(PropertyIndex, LosesAPropertyFarFromTheOthersThatWasWalkedOver) {
    OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    OwnedRoot lInstance(KLyrPropertyHandle::Create(*lRoot));
    const KLyrPropertyHandle lFirst = AddChild(*lInstance, "first", eINTEGER1);
    for (int i = 1; i < 40; ++i)
        AddChild(*lInstance, "near", eINTEGER1);
    for (int i = 0; i < 3000; ++i)
        AddChild(*lRoot, "other", eINTEGER1);
    const KLyrPropertyHandle lFar = AddChild(lFirst, "far", eINTEGER1);
    Page* lPage = lInstance->GetPage();
    ASSERT_EQ(std::vector<int>{lFar.GetId()}, Descendents(lPage, lFirst.GetId()));
    EXPECT_TRUE(lPage->RemoveOwnEntry(lFar.GetId()));
    EXPECT_EQ(std::vector<int>{}, Descendents(lPage, lFirst.GetId()));
    EXPECT_EQ(-1, lPage->GetChild(lFirst.GetId()));
}

// Descriptions of one name come to the instance in any order; the smallest id is found at every time.
TEST_F(PropertyIndex, FindsTheFirstOfManyNamesakesInWhateverOrderTheyCome) {
    OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    for (int i = 0; i < 200; ++i)
        AddChild(*lRoot, "other", eINTEGER1);
    Page* lPage = lRoot->GetPage();
    KLyrPropertyInfo* lInfo = KLyrPropertyInfo::Create("Same", eINTEGER1);
    lInfo->IncRef();
    std::set<int> lSame;
    for (int i = 0; i < 2000; ++i) {
        const int lId = 1 + i * 37 % 200;
        const bool lGoes = i % 3 == 0 && lSame.count(lId) > 0;
        if (lGoes) {
            lSame.erase(lId);
            lPage->GetPropertyEntry(lId)->Set(static_cast<KLyrPropertyInfo*>(nullptr));
        } else {
            lSame.insert(lId);
            lPage->GetPropertyEntry(lId)->Set(lInfo);
        }
        ASSERT_EQ(lSame.empty() ? -1 : *lSame.begin(), lPage->FastFind(0, "same", nullptr, false));
        ASSERT_EQ(FindByScan(lPage, 0, "Same", nullptr, true), lPage->FastFind(0, "Same", nullptr, true));
        ASSERT_EQ(-1, lPage->FastFind(0, "same", nullptr, true));
    }
    lInfo->DecRef();
}

// Entries that come and go make the index move its records.
TEST_F(PropertyIndex, KnowsItsEntriesAfterTheyMoved) {
    OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    for (int i = 0; i < 40; ++i)
        AddChild(*lRoot, kNames[i % kNameCount], eINTEGER1);
    const Page* lPage = lRoot->GetPage();
    for (int i = 0; i < 2000; ++i) {
        const int lFirst = lPage->GetChild(0);
        lRoot->GetPage()->RemoveOwnEntry(i % 3 == 0 ? lFirst : lPage->GetSibling(lFirst));
        AddChild(*lRoot, kNames[i % kNameCount], eINTEGER1);
        const char* lName = kNames[i % 7];
        ASSERT_EQ(FindByScan(lPage, 0, lName, nullptr, true), lPage->FastFind(0, lName, nullptr, true));
        ASSERT_EQ(FindByScan(lPage, 0, lName, nullptr, false), lPage->FastFind(0, lName, nullptr, false));
        ASSERT_EQ(SiblingByScan(lPage, lFirst + 5), lPage->GetSibling(lFirst + 5));
    }
}

// Children come and go in any order, on a page that holds their parent and on one that took it over later.
TEST_F(PropertyIndex, KnowsTheFirstChildWhoeverCameFirst) {
    OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    std::vector<int> lIds;
    for (int i = 0; i < 100; ++i)
        lIds.push_back(AddChild(*lRoot, "child", eINTEGER1).GetId());
    for (int i = 0; i < 300; ++i)
        lIds.push_back(lRoot->GetPage()->Add(lIds[static_cast<std::size_t>(i) % 100], "grandchild", eINTEGER1));
    OwnedRoot lInstance(KLyrPropertyHandle::Create(*lRoot));
    std::mt19937 lRandom(3);
    for (int i = 0; i < 4000; ++i) {
        Page* lPage = lRandom() % 4 == 0 ? lRoot->GetPage() : lInstance->GetPage();
        const int lId = lIds[lRandom() % lIds.size()];
        if (lRandom() % 2 == 0)
            lInstance->GetPage()->ChangePropertyEntryState(lId, eLyrOverride);
        else
            lPage->RemoveOwnEntry(lId);
        const int lParent = lIds[lRandom() % 100];
        for (const Page* lEither : {lRoot->GetPage(), lInstance->GetPage()})
            for (const int lOf : {0, lId, lParent})
                ASSERT_EQ(ChildByScan(lEither, lOf), lEither->GetChild(lOf)) << i << " " << lOf;
    }
}

// So many different names that some of them want the same place in the table, and go again in another order.
TEST_F(PropertyIndex, FindsEveryOneOfManyNamesWhileTheyGo) {
    OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    std::vector<KLyrPropertyHandle> lChildren;
    for (int i = 0; i < 3000; ++i)
        lChildren.push_back(AddChild(*lRoot, ("Name" + std::to_string(i)).c_str(), eINTEGER1));
    std::mt19937 lRandom(7);
    while (lChildren.size() > 20) {
        const std::size_t lGoes = lRandom() % lChildren.size();
        const std::string lName = lChildren[lGoes].GetName();
        lChildren[lGoes].Destroy();
        lChildren[lGoes] = lChildren.back();
        lChildren.pop_back();
        ASSERT_FALSE(lRoot->Find(lName.c_str(), true).Valid());
        if (lChildren.size() % 50 != 0)
            continue;
        for (const KLyrPropertyHandle& lChild : lChildren) {
            ASSERT_EQ(lChild, lRoot->Find(lChild.GetName(), true));
            std::string lSmall = lChild.GetName();
            lSmall[0] = 'n';
            ASSERT_EQ(lChild, lRoot->Find(lSmall.c_str(), false));
        }
    }
}

}  // namespace
}  // namespace lyrsdk
