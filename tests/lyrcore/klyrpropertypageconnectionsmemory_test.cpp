#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/connection_filters.h"
#include "tests/support/counted.h"
#include "tests/support/failing_memory.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

KLyrPropertyPage* EntryHolder(const OwnedPage& pPage, int pId) {
    KLyrPropertyPage* lHolder = nullptr;
    pPage->GetPropertyEntry(pId, &lHolder);
    return lHolder;
}

KLyrPropertyPage* ConnectHolder(const OwnedPage& pPage, int pId) {
    KLyrPropertyPage* lHolder = nullptr;
    pPage->GetPropertyItem<KLyrPropertyConnect>(nullptr, pId, &lHolder);
    return lHolder;
}

// Two instances of a page, to be connected to each other.
struct Family {
    OwnedPage mRoot{KLyrPropertyPage::Create("root", eINTEGER1)};
    OwnedPage mDst{KLyrPropertyPage::Create(mRoot.get())};
    OwnedPage mSrc{KLyrPropertyPage::Create(mRoot.get())};
};

TEST(KLyrPropertyPageConnectionsMemory, AConnectionThatFailsLeavesNoItemsAndNoEntries) {
    WithEveryAllocationFailing([](const FailurePoint& pPoint) {
        const Family lFamily;
        bool lDone = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lDone = lFamily.mDst->ConnectSrc(0, lFamily.mSrc.get(), 0, eLyrConnectionUser);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lDone, lFailed == 0);
        EXPECT_EQ(EntryHolder(lFamily.mDst, 0), lDone ? lFamily.mDst.get() : lFamily.mRoot.get());
        EXPECT_EQ(EntryHolder(lFamily.mSrc, 0), lDone ? lFamily.mSrc.get() : lFamily.mRoot.get());
        EXPECT_EQ(ConnectHolder(lFamily.mDst, 0), lDone ? lFamily.mDst.get() : nullptr);
        EXPECT_EQ(ConnectHolder(lFamily.mSrc, 0), lDone ? lFamily.mSrc.get() : nullptr);
        EXPECT_EQ(lFamily.mDst->ConnectSrc(0, lFamily.mSrc.get(), 0, eLyrConnectionUser), !lDone);
        EXPECT_EQ(lFamily.mDst->GetSrcCount(0, nullptr), 1);
        EXPECT_EQ(lFamily.mSrc->GetDstCount(0, nullptr), 1);
        return lFailed;
    });
}

TEST(KLyrPropertyPageConnectionsMemory, AConnectionThatFailsKeepsThoseThatWereThere) {
    WithEveryAllocationFailing([](const FailurePoint& pPoint) {
        const Family lFamily;
        std::vector<OwnedPage> lOthers;
        for (int i = 0; i < 4; ++i) {
            lOthers.emplace_back(KLyrPropertyPage::Create("other", eINTEGER1));
            EXPECT_TRUE(lFamily.mDst->ConnectSrc(0, lOthers.back().get(), 0, eLyrConnectionUser));
            EXPECT_TRUE(lFamily.mSrc->ConnectDst(0, lOthers.back().get(), 0, eLyrConnectionUser));
        }
        TypeFilter lUser(eLyrConnectionUser);
        EXPECT_EQ(lFamily.mDst->GetSrcCount(0, &lUser), 4);
        bool lDone = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lDone = lFamily.mDst->ConnectSrc(0, lFamily.mSrc.get(), 0, eLyrConnectionUser);
            lFailed = lFail.Failed();
        }
        EXPECT_TRUE(lDone || lFailed > 0);
        EXPECT_EQ(lFamily.mDst->GetSrcCount(0, nullptr), lDone ? 5 : 4);
        EXPECT_EQ(lFamily.mDst->GetSrcCount(0, &lUser), lDone ? 5 : 4);
        EXPECT_EQ(lFamily.mSrc->GetDstCount(0, nullptr), lDone ? 5 : 4);
        for (int i = 0; i < 4; ++i) {
            KLyrPropertyPage* lPage = nullptr;
            EXPECT_TRUE(lFamily.mDst->GetSrc(0, i, &lUser, &lPage, nullptr));
            EXPECT_EQ(lPage, lOthers[static_cast<std::size_t>(i)].get());
        }
        return lFailed;
    });
}

// An entry without items is a state of its own: the caller asked for it and may hold its address.
TEST(KLyrPropertyPageConnectionsMemory, AConnectionThatFailsKeepsAnEmptyEntryThatWasThere) {
    WithEveryAllocationFailing([](const FailurePoint& pPoint) {
        const Family lFamily;
        EXPECT_NE(lFamily.mDst->ChangePropertyEntryState(0, eLyrOverride), nullptr);
        EXPECT_NE(lFamily.mSrc->ChangePropertyEntryState(0, eLyrOverride), nullptr);
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lFamily.mDst->ConnectSrc(0, lFamily.mSrc.get(), 0, eLyrConnectionUser);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(EntryHolder(lFamily.mDst, 0), lFamily.mDst.get());
        EXPECT_EQ(EntryHolder(lFamily.mSrc, 0), lFamily.mSrc.get());
        return lFailed;
    });
}

TEST(KLyrPropertyPageConnectionsMemory, ConnectionsAreReadAndTakenAwayWithoutAnyMemory) {
    const LeakCheck lLeaks;
    const Family lFamily;
    ASSERT_TRUE(lFamily.mDst->ConnectSrc(0, lFamily.mSrc.get(), 0, eLyrConnectionUser));
    ASSERT_TRUE(lFamily.mSrc->ConnectSrc(0, lFamily.mRoot.get(), 0, eLyrConnectionUser));
    const FailAllocations lFail(0, true);
    EXPECT_TRUE(lFamily.mDst->IsConnectedSrc(0, lFamily.mSrc.get(), 0));
    EXPECT_TRUE(lFamily.mSrc->IsConnectedDst(0, lFamily.mDst.get(), 0));
    EXPECT_EQ(lFamily.mDst->GetSrcCount(0, nullptr), 1);
    int lId = -7;
    EXPECT_TRUE(lFamily.mDst->GetSrc(0, 0, nullptr, nullptr, &lId));
    EXPECT_FALSE(lFamily.mDst->ConnectSrc(0, lFamily.mSrc.get(), 0, eLyrConnectionUser));
    EXPECT_TRUE(lFamily.mDst->DisconnectSrc(0, lFamily.mSrc.get(), 0));
    lFamily.mSrc->ClearConnectCache(0);
    lFamily.mSrc->WipeAllConnections(0);
    EXPECT_EQ(lFamily.mRoot->GetDstCount(0, nullptr), 0);
    EXPECT_EQ(lFail.Failed(), 0u);
}

}  // namespace
}  // namespace lyrsdk
