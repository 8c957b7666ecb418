#include <gtest/gtest.h>

#include <climits>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"

// Large pages find most of their entries by id without a search. What is found is what was put there, wherever the ids
// lie.

namespace lyrsdk {
namespace {

using Page = KLyrPropertyPage;
using Entries = std::map<int, const KLyrPropertyEntry*>;

// A root page and an instance of it, and beside each what it must hold.
class TwoPages {
public:
    TwoPages() : mRoot(Page::Create("root", eINTEGER1)), mInstance(Page::Create(mRoot)) {
        mOfRoot[0] = mRoot->GetPropertyEntry(0);
    }
    ~TwoPages() {
        mInstance->Destroy();
        mRoot->Destroy();
    }
    TwoPages(const TwoPages&) = delete;
    TwoPages& operator=(const TwoPages&) = delete;

    Page* Root() { return mRoot; }
    Page* Instance() { return mInstance; }

    // The ids up to pNext are left out. Gives the new id, or -1.
    int Add(bool pToInstance, int pNext) {
        KLyrPropertyIdGenerator* lIds = mRoot->GetIdGenerator();
        if (pNext > lIds->PeekNextId())
            lIds->SkipTo(pNext);
        const int lId = (pToInstance ? mInstance : mRoot)->Add(0, "child", eINTEGER1);
        if (lId == -1)
            return -1;
        // New ids are the largest, so that looking for the next one does not take the entry from where it is tested.
        KLyrPropertyEntry* lEntry = nullptr;
        EXPECT_EQ(lId, mInstance->GetMinimumPropertyIdAndEntry(lId - 1, &lEntry));
        (pToInstance ? mOfInstance : mOfRoot)[lId] = lEntry;
        return lId;
    }
    int Add(bool pToInstance) { return Add(pToInstance, 0); }

    void Override(int pId) {
        if (const KLyrPropertyEntry* lEntry = mInstance->ChangePropertyEntryState(pId, eLyrOverride))
            mOfInstance[pId] = lEntry;
    }
    void Remove(bool pFromInstance, int pId) {
        Entries& lEntries = pFromInstance ? mOfInstance : mOfRoot;
        ASSERT_EQ(lEntries.erase(pId) != 0, (pFromInstance ? mInstance : mRoot)->RemoveOwnEntry(pId)) << pId;
    }

    void ExpectFound(int pId) const {
        const auto lOwn = mOfInstance.find(pId);
        const auto lOfRoot = mOfRoot.find(pId);
        const KLyrPropertyEntry* lAbove = lOfRoot != mOfRoot.end() ? lOfRoot->second : nullptr;
        const bool lIsOwn = lOwn != mOfInstance.end();
        Page* lHolder = mInstance;
        ASSERT_EQ(lAbove, mRoot->GetPropertyEntry(pId, &lHolder)) << pId;
        ASSERT_EQ(lAbove ? mRoot : nullptr, lHolder) << pId;
        ASSERT_EQ(lIsOwn ? lOwn->second : lAbove, mInstance->GetPropertyEntry(pId, &lHolder)) << pId;
        ASSERT_EQ(lIsOwn ? mInstance : lAbove ? mRoot : nullptr, lHolder) << pId;
    }
    // Every id that is there, its neighbours, and ids that cannot be.
    void ExpectAllFound() const {
        for (const Entries* lEntries : {&mOfRoot, &mOfInstance})
            for (const auto& [lId, lEntry] : *lEntries)
                for (int lNear = lId - 2; lNear < INT_MAX && lNear - 2 <= lId; ++lNear)
                    ASSERT_NO_FATAL_FAILURE(ExpectFound(lNear));
        for (int lId : {INT_MIN, INT_MIN + 1, -1, INT_MAX - 1, INT_MAX})
            ASSERT_NO_FATAL_FAILURE(ExpectFound(lId));
    }

    Entries mOfRoot;
    Entries mOfInstance;

private:
    Page* mRoot;
    Page* mInstance;
};

class PropertyEntryTable : public HandleTest {};

TEST_F(PropertyEntryTable, FindsTheEntriesOfAPageThatGrowsWithoutGaps) {
    TwoPages lPages;
    for (int i = 1; i < 1500; ++i) {
        ASSERT_EQ(i, lPages.Add(false));
        ASSERT_NO_FATAL_FAILURE(lPages.ExpectFound(i));
        ASSERT_NO_FATAL_FAILURE(lPages.ExpectFound(i + 1));
        ASSERT_NO_FATAL_FAILURE(lPages.ExpectFound(i * 31 % 1600));
    }
    lPages.ExpectAllFound();
}

TEST_F(PropertyEntryTable, FindsTheEntriesWhateverTheGapsAre) {
    for (int lGap : {2, 3, 4, 5, 7, 1000, 1000000}) {
        TwoPages lPages;
        for (int i = 1; i < 300; ++i) {
            ASSERT_NE(-1, lPages.Add(false, i * lGap));
            if (i % 10 == 0) {
                ASSERT_NO_FATAL_FAILURE(lPages.ExpectAllFound()) << "gap " << lGap;
            }
        }
        lPages.ExpectAllFound();
    }
}

// A few that lie elsewhere come first, last and between.
TEST_F(PropertyEntryTable, FindsEntriesFarFromTheOthers) {
    TwoPages lPages;
    for (int i = 0; i < 5; ++i)
        lPages.Add(false, i * 300);
    for (int lId : {300, 1200})
        lPages.Override(lId);
    for (int lRun = 1; lRun <= 4; ++lRun) {
        for (int i = 0; i < 60; ++i)
            ASSERT_NE(-1, lPages.Add(true, lRun * 100000));
        ASSERT_NE(-1, lPages.Add(true, lRun * 100000 + 50000));
        lPages.Override(300 * lRun - 300);
        ASSERT_NO_FATAL_FAILURE(lPages.ExpectAllFound());
    }
    while (!lPages.mOfInstance.empty()) {
        lPages.Remove(
            true,
            std::next(lPages.mOfInstance.begin(), static_cast<std::ptrdiff_t>(lPages.mOfInstance.size() / 2))->first);
        if (lPages.mOfInstance.size() % 8 == 0) {
            ASSERT_NO_FATAL_FAILURE(lPages.ExpectAllFound());
        }
    }
    lPages.ExpectAllFound();
}

TEST_F(PropertyEntryTable, FindsTheEntriesBelowTheLargestIdOfAll) {
    TwoPages lPages;
    for (int i = 0; i < 70; ++i)
        ASSERT_NE(-1, lPages.Add(i % 2 == 0, INT_MAX - 69));
    EXPECT_EQ(1u, lPages.mOfRoot.count(INT_MAX));
    EXPECT_EQ(-1, lPages.Add(false));
    lPages.ExpectAllFound();
    for (int i = 0; i < 60; ++i)
        lPages.Override(INT_MAX - 60 + i);
    lPages.ExpectAllFound();
}

// Overrides come in any order, go, and come again.
TEST_F(PropertyEntryTable, FindsOverridesThatComeAndGoInAnyOrder) {
    std::mt19937 lRandom(5);
    TwoPages lPages;
    for (int i = 1; i < 200; ++i)
        lPages.Add(false);
    for (int i = 0; i < 6000; ++i) {
        const int lId = static_cast<int>(lRandom() % 205);
        // More come than go for a while, then the other way round.
        const bool lComes = lRandom() % 8 < (i / 500 % 2 == 0 ? 6u : 2u);
        if (lComes) {
            lPages.Override(lId);
        } else {
            ASSERT_NO_FATAL_FAILURE(lPages.Remove(true, lId));
        }
        ASSERT_NO_FATAL_FAILURE(lPages.ExpectFound(lId));
        if (i % 50 == 0) {
            ASSERT_NO_FATAL_FAILURE(lPages.ExpectAllFound());
        }
    }
}

// Few are there at a time, but their ids become larger and larger.
TEST_F(PropertyEntryTable, FindsEntriesThatMoveUp) {
    TwoPages lPages;
    for (int i = 0; i < 3000; ++i) {
        lPages.Add(true);
        if (i >= 100)
            lPages.Remove(true, lPages.mOfInstance.begin()->first);
        if (i % 40 == 0) {
            ASSERT_NO_FATAL_FAILURE(lPages.ExpectAllFound());
        }
    }
}

TEST_F(PropertyEntryTable, FindsWhatAScanFindsAfterRandomWork) {
    for (unsigned lSeed = 1; lSeed <= 12; ++lSeed) {
        std::mt19937 lRandom(lSeed);
        TwoPages lPages;
        for (int i = 0; i < 800; ++i) {
            const bool lOnInstance = lRandom() % 2 == 0;
            const int lNext = lPages.Root()->GetIdGenerator()->PeekNextId();
            const int lGap = lRandom() % 8 != 0   ? 0
                             : lRandom() % 4 != 0 ? 5
                                                  : static_cast<int>(lRandom() % (std::size_t(50) * lSeed));
            const int lId = static_cast<int>(lRandom() % static_cast<unsigned>(lNext));
            switch (lRandom() % 6) {
                case 0:
                case 1:
                case 2:
                    lPages.Add(lOnInstance, lNext + lGap);
                    break;
                case 3:
                    lPages.Override(lId);
                    break;
                case 4:
                    if (i < 600 && i % 4 != 0)
                        break;
                    [[fallthrough]];
                default: {
                    Entries& lEntries = lOnInstance ? lPages.mOfInstance : lPages.mOfRoot;
                    const auto lVictim = lEntries.lower_bound(lId);
                    if (lVictim != lEntries.end() && lVictim->first != 0) {
                        ASSERT_NO_FATAL_FAILURE(lPages.Remove(lOnInstance, lVictim->first));
                    }
                }
            }
            if (i % 20 == 0) {
                ASSERT_NO_FATAL_FAILURE(lPages.ExpectAllFound()) << "seed " << lSeed;
            }
        }
        lPages.ExpectAllFound();
    }
}

// Each request for memory is refused in turn, and then this one and all behind it, while the page grows past the places
// where it asks for tables.
TEST_F(PropertyEntryTable, FindsEveryEntryWhenThereIsNoMemoryForATable) {
    for (const bool lForever : {false, true}) {
        for (std::size_t lFirst = 0; lFirst < 12; ++lFirst) {
            TwoPages lPages;
            for (int i = 1; i < 260; ++i) {
                int lId;
                {
                    const FailAllocations lFail(lFirst, lForever);
                    lId = lPages.Add(i % 3 == 0);
                }
                if (lId == -1)
                    lId = lPages.Add(i % 3 == 0);
                ASSERT_EQ(i, lId);
                ASSERT_NO_FATAL_FAILURE(lPages.ExpectFound(i));
            }
            ASSERT_NO_FATAL_FAILURE(lPages.ExpectAllFound());
            for (int i = 0; i < 200; ++i)
                lPages.Override(i);
            while (lPages.mOfRoot.size() > 10)
                ASSERT_NO_FATAL_FAILURE(lPages.Remove(false, lPages.mOfRoot.rbegin()->first));
            ASSERT_NO_FATAL_FAILURE(lPages.ExpectAllFound());
        }
    }
}

// What a parent lost comes back to it from an instance, to the same ids.
TEST_F(PropertyEntryTable, FindsWhatWasPushedToTheParent) {
    TwoPages lPages;
    for (int i = 1; i < 120; ++i) {
        lPages.Add(false);
        lPages.Override(i);
        int lValue = i;
        lPages.Instance()->Set(i, &lValue, eINTEGER1, false);
    }
    for (int i = 1; i < 120; ++i)
        if (i % 3 == 0)
            lPages.Remove(false, i);
    lPages.Instance()->PushPropertiesToParentInstance();
    for (int i = 1; i < 120; ++i) {
        Page* lHolder = nullptr;
        ASSERT_NE(nullptr, lPages.Instance()->GetPropertyEntry(i, &lHolder));
        EXPECT_EQ(lPages.Root(), lHolder);
        int lValue = 0;
        EXPECT_TRUE(lPages.Root()->Get(i, &lValue, eINTEGER1));
        EXPECT_EQ(i, lValue);
    }
}

// An instance takes over the entries of a page that goes, below, between and above those that it has.
TEST_F(PropertyEntryTable, FindsWhatADestroyedPageLeft) {
    OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eINTEGER1));
    for (int i = 1; i < 100; ++i)
        SetInt(AddChild(*lRoot, "child", eINTEGER1), i);
    OwnedRoot lInstance(KLyrPropertyHandle::Create(*lRoot));
    for (int i = 30; i < 70; ++i)
        SetInt(KLyrPropertyHandle(lInstance->GetPage(), i), -i);
    lRoot->Destroy();
    *lRoot = KLyrPropertyHandle();
    for (int i = 1; i < 100; ++i) {
        Page* lHolder = nullptr;
        lInstance->GetPage()->GetPropertyEntry(i, &lHolder);
        EXPECT_EQ(lInstance->GetPage(), lHolder);
        EXPECT_EQ(i >= 30 && i < 70 ? -i : i, IntOf(KLyrPropertyHandle(lInstance->GetPage(), i)));
    }
}

// --- what it costs -------------------------------------------------------------------------------------------------

// The memory of a page with pCount properties, pGap apart.
std::size_t BytesOf(int pCount, int pGap) {
    TwoPages lPages;
    const std::size_t lBefore = MemoryProbe::LiveBytes();
    for (int i = 1; i <= pCount; ++i)
        lPages.Add(false, i * pGap);
    return MemoryProbe::LiveBytes() - lBefore;
}

TEST_F(PropertyEntryTable, CostsAtMostFourPointersAnEntryWhateverTheGapsAre) {
    for (int lCount : {40, 100, 1000}) {
        // There is no room for a table with two slots in the ids that lie farthest apart.
        const std::size_t lLeast = BytesOf(lCount, 1000000);
        for (int lGap : {1, 2, 3, 4, 5, 6, 10, 100, 10000})
            EXPECT_LE(BytesOf(lCount, lGap), lLeast + static_cast<std::size_t>(lCount) * 4 * sizeof(void*))
                << lCount << " " << lGap;
    }
}

TEST_F(PropertyEntryTable, GoesWithTheEntries) {
    TwoPages lPages;
    for (int i = 1; i < 2000; ++i)
        lPages.Add(false);
    const std::size_t lPeak = MemoryProbe::LiveBytes();
    for (int i = 1990; i > 0; --i)
        lPages.Remove(false, i);
    // The map's own memory stays. The table's went, and the index's.
    EXPECT_LT(MemoryProbe::LiveBytes(), lPeak - std::size_t(1990) * 12 * sizeof(void*));
    lPages.ExpectAllFound();
}

}  // namespace
}  // namespace lyrsdk
