#include <gtest/gtest.h>

#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/memory_probe.h"

// The entries of the page that a family began with lie in chunks of that page.

namespace lyrsdk {
namespace {

using Page = KLyrPropertyPage;

constexpr int kMany = 300;

void AddTo(Page* pPage, int pCount) {
    for (int i = 0; i < pCount; ++i)
        ASSERT_GT(pPage->Add(0, "value", eINTEGER1), 0);
}

std::vector<const KLyrPropertyEntry*> EntriesOf(const Page* pPage) {
    std::vector<const KLyrPropertyEntry*> lEntries;
    for (int i = 0; i < pPage->GetPropertyEntryCount(); ++i)
        lEntries.push_back(pPage->GetPropertyEntry(i));
    return lEntries;
}

class PropertyEntryPool : public testing::Test {
protected:
    LeakCheck mLeaks;
};

TEST_F(PropertyEntryPool, LeavesEveryEntryWhereItIsWhileOthersComeAndGo) {
    Page* lPage = Page::Create("root", eINTEGER1);
    AddTo(lPage, kMany);
    const std::vector<const KLyrPropertyEntry*> lBefore = EntriesOf(lPage);
    for (int i = 1; i <= kMany; i += 2)
        ASSERT_TRUE(lPage->RemoveOwnEntry(i));
    AddTo(lPage, 3 * kMany);
    for (int i = 0; i <= kMany; i += 2)
        EXPECT_EQ(lPage->GetPropertyEntry(i), lBefore[static_cast<std::size_t>(i)]) << i;
    lPage->Destroy();
}

TEST_F(PropertyEntryPool, UsesTheMemoryOfEntriesThatWentAgain) {
    Page* lPage = Page::Create("root", eINTEGER1);
    AddTo(lPage, kMany);
    std::size_t lBytes = 0;
    for (int lRound = 0; lRound < 20; ++lRound) {
        const int lFirst = lPage->GetPropertyEntryCount() - kMany;
        for (int i = 0; i < kMany; ++i)
            ASSERT_TRUE(lPage->RemoveOwnEntry(lFirst + i));
        AddTo(lPage, kMany);
        // The map of the entries keeps what it needs for twice as many, and the walks grow with the ids.
        if (lRound == 2)
            lBytes = MemoryProbe::LiveBytes();
    }
    EXPECT_LE(MemoryProbe::LiveBytes(), lBytes + kMany * sizeof(KLyrPropertyEntry) / 2);
    lPage->Destroy();
}

TEST_F(PropertyEntryPool, AsksForMemoryOnceForManyEntries) {
    Page* lPage = Page::Create("root", eINTEGER1);
    AddTo(lPage, kMany);
    const std::size_t lBefore = MemoryProbe::Allocations();
    AddTo(lPage, kMany);
    // A description and a value each.
    EXPECT_LT(MemoryProbe::Allocations() - lBefore, 2u * kMany + kMany / 6);
    lPage->Destroy();
}

TEST_F(PropertyEntryPool, GoesWithThePageThatTheFamilyBeganWith) {
    Page* lRoot = Page::Create("root", eINTEGER1);
    AddTo(lRoot, kMany);
    Page* lInstance = Page::Create(lRoot);
    const std::size_t lBefore = MemoryProbe::LiveBlocks();
    ASSERT_NE(lInstance->ChangePropertyEntryState(1, eLyrOverride), nullptr);
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBefore + 3) << "an entry, and two for the room in the map";

    lRoot->Destroy();
    EXPECT_EQ(lInstance->GetPropertyEntryCount(), kMany + 1);
    const int lId = lInstance->Add(0, "another", eDOUBLE1);
    EXPECT_EQ(lId, kMany + 1);
    EXPECT_TRUE(lInstance->RemoveOwnEntry(lId));
    EXPECT_TRUE(lInstance->RemoveOwnEntry(1));
    lInstance->Destroy();
}

TEST_F(PropertyEntryPool, AddsNothingWhenThereIsNoMemoryForAChunk) {
    Page* lPage = Page::Create("root", eINTEGER1);
    // A description and a value are served; the next request comes when a chunk is full.
    bool lRefused = false;
    for (int lNext = 1; !lRefused; ++lNext) {
        ASSERT_LT(lNext, 20);
        FailAllocations lFail(2, false);
        const int lId = lPage->Add(0, "value", eINTEGER1);
        lRefused = lFail.Failed() > 0;
        EXPECT_EQ(lId, lRefused ? -1 : lNext);
        EXPECT_EQ(lPage->GetPropertyEntryCount(), lRefused ? lNext : lNext + 1);
    }
    const int lCount = lPage->GetPropertyEntryCount();
    EXPECT_EQ(lPage->Add(0, "value", eINTEGER1), lCount);
    EXPECT_EQ(lPage->GetPropertyEntryCount(), lCount + 1);
    lPage->Destroy();
}

TEST_F(PropertyEntryPool, LeavesEntriesOfTheCallerAlone) {
    Page* lPage = Page::Create("root", eINTEGER1);
    KLyrPropertyInfo* lInfo = KLyrPropertyInfo::Create("other", eINTEGER1);
    KLyrPropertyEntry* lEntry = KLyrPropertyEntry::Create(7, lInfo, nullptr, nullptr);
    lPage->Destroy();
    EXPECT_EQ(lEntry->GetParentId(), 7);
    EXPECT_EQ(lEntry->Get(lInfo), lInfo);
    lEntry->Destroy();
}

}  // namespace
}  // namespace lyrsdk
