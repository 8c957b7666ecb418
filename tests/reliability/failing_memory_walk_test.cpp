#include <gtest/gtest.h>

#include <algorithm>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/failing_memory.h"

// Walks over descendants for which there was no room.

namespace lyrsdk {
namespace {

// All are in one chain, so that a walk collects them; where the room for more is refused, they do not fit any longer.
TEST(FailingMemoryWalk, ComesToPropertiesThatThereWasNoRoomFor) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        KLyrPropertyPage* lPage = KLyrPropertyPage::Create("root", eUNIDENTIFIED);
        for (int i = 0; i < 255; ++i)
            lPage->Add(i, "link", eINTEGER1);
        int lLast = 1;
        for (int lId = lPage->GetFirstDescendent(1); lId != -1; lId = lPage->GetNextDescendent(1, lId))
            EXPECT_EQ(lId, ++lLast);
        EXPECT_EQ(lLast, 255);
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lLast = std::max(lLast, lPage->Add(lLast, "link", eINTEGER1));
            lFailed = lFail.Failed();
        }
        for (int i = 0; i < 200; ++i) {
            EXPECT_EQ(lPage->GetNextDescendent(1, lLast), -1);
            const int lNew = lPage->Add(lLast, "link", eINTEGER1);
            EXPECT_EQ(lPage->GetNextDescendent(1, lLast), lNew);
            lLast = lNew;
        }
        EXPECT_EQ(lPage->GetNextDescendent(1, 200), 201);
        EXPECT_EQ(lPage->GetNextDescendent(2, 300), 301) << "a walk of its own";
        lPage->Destroy();
        return lFailed;
    });
}

// The same when a property with children went, so that all would have to be collected anew.
TEST(FailingMemoryWalk, ComesToPropertiesThatThereWasNoRoomForThoughOneWent) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        KLyrPropertyPage* lPage = KLyrPropertyPage::Create("root", eUNIDENTIFIED);
        for (int i = 0; i < 3; ++i)
            lPage->Add(i, "link", eINTEGER1);
        for (int lParent = 1; lPage->GetIdGenerator()->PeekNextId() < 256;)
            lParent = lPage->Add(lParent, "link", eINTEGER1);
        int lLast = 1;
        for (int lId = lPage->GetFirstDescendent(1); lId != -1; lId = lPage->GetNextDescendent(1, lId))
            EXPECT_EQ(lId, ++lLast);
        EXPECT_EQ(lLast, 255);
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lLast = std::max(lLast, lPage->Add(lLast, "link", eINTEGER1));
            lFailed = lFail.Failed();
        }
        while (lLast < 456)
            lLast = lPage->Add(lLast, "link", eINTEGER1);
        EXPECT_TRUE(lPage->RemoveOwnEntry(2));
        EXPECT_EQ(lPage->GetNextDescendent(1, 255), 256);
        EXPECT_EQ(lPage->GetFirstDescendent(1), 4) << "3 lost its parent";
        for (int lId = 4; lId < lLast; ++lId)
            EXPECT_EQ(lPage->GetNextDescendent(1, lId), lPage->GetPropertyEntry(lId + 1) ? lId + 1 : lId + 2);
        EXPECT_EQ(lPage->GetNextDescendent(1, lLast), -1);
        lPage->Destroy();
        return lFailed;
    });
}

}  // namespace
}  // namespace lyrsdk
