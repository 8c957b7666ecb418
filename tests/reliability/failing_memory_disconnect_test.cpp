#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/connection_filters.h"
#include "tests/support/counted.h"
#include "tests/support/memory_probe.h"

// Taking connections away needs no memory, but a long list that has become short makes itself a smaller index. When
// that is refused the list goes on without one, whoever took the connection away.

namespace lyrsdk {
namespace {

constexpr int kPeers = 150;

// A property that has a property of each of many pages as its source, also seen through a filter.
struct Hub {
    OwnedPage mHub{KLyrPropertyPage::Create("hub", eDOUBLE1)};
    std::vector<OwnedPage> mPeers;
    TypeFilter mFilter{eLyrConnectionUser};
    // Entries outside of any page that hold the peers' items.
    std::vector<OwnedEntry> mEntries;
    // The peers that are left, in order of connection.
    std::vector<int> mLeft;

    Hub() {
        mHub->Add(0, "number", eDOUBLE1);
        for (int i = 0; i < kPeers; ++i) {
            mPeers.emplace_back(KLyrPropertyPage::Create("peer", eDOUBLE1));
            mPeers.back()->Add(0, "number", eDOUBLE1);
            mPeers.back()->SetUserTag(0, i);
            EXPECT_TRUE(mHub->ConnectSrc(1, mPeers.back().get(), 1, eLyrConnectionUser));
            mLeft.push_back(i);
        }
        EXPECT_EQ(mHub->GetSrcCount(1, &mFilter), kPeers);
    }
    KLyrPropertyPage* Peer(int pIndex) const { return mPeers[static_cast<std::size_t>(pIndex)].get(); }
    KLyrPropertyConnect* PeerItem(int pIndex) const {
        return Peer(pIndex)->GetPropertyItem<KLyrPropertyConnect>(nullptr, 1);
    }
    KLyrPropertyConnect* Item() const { return mHub->GetPropertyItem<KLyrPropertyConnect>(nullptr, 1); }
    KLyrPropertyHandle Handle() const { return KLyrPropertyHandle(mHub.get(), 1); }
    KLyrPropertyHandle PeerHandle(int pIndex) const { return KLyrPropertyHandle(Peer(pIndex), 1); }

    void HoldItems() {
        for (int i = 0; i < kPeers; ++i)
            mEntries.emplace_back(KLyrPropertyEntry::Create(0, nullptr, nullptr, PeerItem(i)));
    }
    void HoldItemsInPages() {
        for (int i = 0; i < kPeers; ++i)
            EXPECT_EQ(HolderOf(i)->Add(0, nullptr, nullptr, PeerItem(i), false), 2);
    }
    // The page that holds a peer's item then.
    KLyrPropertyPage* HolderOf(int pIndex) const { return Peer((pIndex + 1) % kPeers); }

    void ExpectLeft() {
        for (KLyrConnectionPointFilter* lFilter :
             {static_cast<KLyrConnectionPointFilter*>(nullptr), static_cast<KLyrConnectionPointFilter*>(&mFilter)}) {
            ASSERT_EQ(mHub->GetSrcCount(1, lFilter), static_cast<int>(mLeft.size()));
            for (std::size_t i = 0; i < mLeft.size(); ++i) {
                KLyrPropertyPage* lPage = nullptr;
                ASSERT_TRUE(mHub->GetSrc(1, static_cast<int>(i), lFilter, &lPage, nullptr));
                ASSERT_EQ(lPage->GetUserTag(0), mLeft[i]);
            }
        }
    }
};

struct Way {
    const char* mName;
    // Takes away the connection to one peer.
    void (*mTakeAway)(Hub& pHub, int pPeer);
    // With the peers' items in entries of the application's, too, or in pages that they were not made for.
    bool mEntries = false;
    bool mPages = false;

    friend void PrintTo(const Way& pWay, std::ostream* pOut) { *pOut << pWay.mName; }
};

const Way kWays[] = {
    {"DisconnectOfThePagesSource", [](Hub& h, int i) { EXPECT_TRUE(h.mHub->DisconnectSrc(1, h.Peer(i), 1)); }},
    {"DisconnectOfThePagesDestination",
     [](Hub& h, int i) { EXPECT_TRUE(h.Peer(i)->DisconnectDst(1, h.mHub.get(), 1)); }},
    {"DisconnectOfTheHandlesSource", [](Hub& h, int i) { EXPECT_TRUE(h.Handle().DisconnectSrc(h.PeerHandle(i))); }},
    {"DisconnectOfTheHandlesDestination",
     [](Hub& h, int i) { EXPECT_TRUE(h.PeerHandle(i).DisconnectDst(h.Handle())); }},
    {"DisconnectOfTheItemsSource", [](Hub& h, int i) { EXPECT_TRUE(h.Item()->DisconnectSrc(h.PeerItem(i))); }},
    {"WipeOfThePeersPage", [](Hub& h, int i) { h.Peer(i)->WipeAllConnections(1); }},
    {"WipeOfThePeersHandle", [](Hub& h, int i) { h.PeerHandle(i).WipeAllConnections(); }},
    {"WipeOfThePeersItem", [](Hub& h, int i) { h.PeerItem(i)->WipeAllConnections(); }},
    {"EndOfThePeersPage", [](Hub& h, int i) { h.mPeers[static_cast<std::size_t>(i)].reset(); }},
    {"EndOfThePeersHandle",
     [](Hub& h, int i) {
         KLyrPropertyHandle lPeer = h.PeerHandle(i);
         EXPECT_TRUE(lPeer.Destroy());
     }},
    {"EndOfThePeersEntry", [](Hub& h, int i) { EXPECT_TRUE(h.Peer(i)->RemoveOwnEntry(1)); }},
    {"InheritanceOfThePeersEntry", [](Hub& h, int i) { h.Peer(i)->ChangePropertyEntryState(1, eLyrInherit); }},
    {"EndOfThePeersItem",
     [](Hub& h, int i) { h.Peer(i)->GetPropertyEntry(1)->Set(static_cast<KLyrPropertyConnect*>(nullptr)); }},
    // The last reference is that of an entry that the application made itself.
    {"EndOfAnotherEntryWithThePeersItem",
     [](Hub& h, int i) {
         OwnedEntry& lEntry = h.mEntries[static_cast<std::size_t>(i)];
         h.Peer(i)->GetPropertyEntry(1)->Set(static_cast<KLyrPropertyConnect*>(nullptr));
         EXPECT_EQ(h.mHub->GetSrcCount(1, nullptr), static_cast<int>(h.mLeft.size()));
         lEntry.reset();
     },
     true},
    {"EndOfAnotherPagesEntryWithThePeersItem",
     [](Hub& h, int i) {
         h.Peer(i)->GetPropertyEntry(1)->Set(static_cast<KLyrPropertyConnect*>(nullptr));
         EXPECT_EQ(h.mHub->GetSrcCount(1, nullptr), static_cast<int>(h.mLeft.size()));
         EXPECT_TRUE(h.HolderOf(i)->RemoveOwnEntry(2));
     },
     false, true},
};

class FailingMemoryTakingAway : public testing::TestWithParam<Way> {};

// Peers go from the middle, which leaves gaps on both sides.
TEST_P(FailingMemoryTakingAway, LeavesTheOthersInOrderWhateverIsRefused) {
    for (const bool lForever : {false, true}) {
        const LeakCheck lLeaks;
        Hub lHub;
        if (GetParam().mEntries)
            lHub.HoldItems();
        if (GetParam().mPages)
            lHub.HoldItemsInPages();
        std::size_t lRefused = 0;
        while (!lHub.mLeft.empty()) {
            const auto lAt = lHub.mLeft.begin() + static_cast<std::ptrdiff_t>(lHub.mLeft.size() / 2);
            {
                const FailAllocations lFail(0, lForever);
                GetParam().mTakeAway(lHub, *lAt);
                lRefused += lFail.Failed();
            }
            lHub.mLeft.erase(lAt);
            lHub.ExpectLeft();
            ASSERT_FALSE(HasFailure());
        }
        EXPECT_GT(lRefused, 0u) << "nothing was refused";
    }
}

INSTANTIATE_TEST_SUITE_P(Connections, FailingMemoryTakingAway, testing::ValuesIn(kWays),
                         [](const testing::TestParamInfo<Way>& pInfo) { return std::string(pInfo.param.mName); });

}  // namespace
}  // namespace lyrsdk
