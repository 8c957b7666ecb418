#include <gtest/gtest.h>

#include <climits>

#include "lyrfilesdk/klyrplugins/klyrplug.h"
#include "lyrfilesdk/lyrcore/klyrpropertyitems.h"
#include "tests/support/connection_filters.h"
#include "tests/support/counted.h"
#include "tests/support/failing_memory.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

using Connect = Counted<KLyrPropertyConnect>;

// Wipe mode while alive.
class WipeMode {
public:
    explicit WipeMode(bool pOn) { KLyrPlug::SetWipeMode(pOn); }
    ~WipeMode() { KLyrPlug::SetWipeMode(false); }
    WipeMode(const WipeMode&) = delete;
    WipeMode& operator=(const WipeMode&) = delete;
};

class KLyrPropertyConnectTest : public testing::Test {
protected:
    LeakCheck mLeaks;
    OwnedPage mPage{KLyrPropertyPage::Create("page", eINTEGER1)};
    Connect mA{KLyrPropertyConnect::Create(mPage.get(), 3)};
    Connect mB{KLyrPropertyConnect::Create(mPage.get(), 4)};
    Connect mC{KLyrPropertyConnect::Create(nullptr, -1)};
};

TEST_F(KLyrPropertyConnectTest, KnowsItsPageAndProperty) {
    EXPECT_EQ(mA->GetPage(), mPage.get());
    EXPECT_EQ(mA->GetPropertyId(), 3);
    EXPECT_EQ(mC->GetPage(), nullptr);
    EXPECT_EQ(mC->GetPropertyId(), -1);
    EXPECT_EQ(mA->GetConnectionPoint().GetData(), mA.Get());
    EXPECT_EQ(mA->GetSrcCount(nullptr), 0);
    EXPECT_EQ(mA->GetDstCount(nullptr), 0);
    for (const int lId : {INT_MIN, INT_MAX})
        EXPECT_EQ(Connect(KLyrPropertyConnect::Create(nullptr, lId))->GetPropertyId(), lId);
}

TEST_F(KLyrPropertyConnectTest, IsTheDestinationOfWhatItConnects) {
    EXPECT_TRUE(mA->ConnectSrc(mB.Get(), eLyrConnectionDefault));
    EXPECT_TRUE(mA->ConnectSrc(mC.Get(), eLyrConnectionSystem));
    EXPECT_TRUE(mA->IsConnectedSrc(mB.Get()));
    EXPECT_FALSE(mB->IsConnectedSrc(mA.Get()));
    EXPECT_EQ(mA->GetSrcCount(nullptr), 2);
    EXPECT_EQ(mA->GetDstCount(nullptr), 0);
    EXPECT_EQ(mA->GetSrc(nullptr, 0), mB.Get());
    EXPECT_EQ(mA->GetSrc(nullptr, 1), mC.Get());
    EXPECT_EQ(mB->GetDst(nullptr, 0), mA.Get());
    EXPECT_EQ(mA->GetConnectionPoint().GetSrcType(1), eLyrConnectionSystem);
    EXPECT_EQ(mC->GetConnectionPoint().GetDstType(0), eLyrConnectionSystem);
}

TEST_F(KLyrPropertyConnectTest, GivesNullForAnIndexOutOfRange) {
    ASSERT_TRUE(mA->ConnectSrc(mB.Get(), eLyrConnectionDefault));
    TypeFilter lNothing(0);
    for (const int lIndex : {-1, 1, INT_MIN, INT_MAX}) {
        EXPECT_EQ(mA->GetSrc(nullptr, lIndex), nullptr) << lIndex;
        EXPECT_EQ(mB->GetDst(nullptr, lIndex), nullptr) << lIndex;
    }
    EXPECT_EQ(mA->GetSrc(&lNothing, 0), nullptr);
    EXPECT_EQ(mB->GetDst(&lNothing, 0), nullptr);
}

TEST_F(KLyrPropertyConnectTest, RefusesNullItselfAndASecondConnection) {
    EXPECT_FALSE(mA->ConnectSrc(nullptr, eLyrConnectionDefault));
    EXPECT_FALSE(mA->DisconnectSrc(nullptr));
    EXPECT_FALSE(mA->IsConnectedSrc(nullptr));
    EXPECT_FALSE(mA->ConnectSrc(mA.Get(), eLyrConnectionDefault));
    EXPECT_FALSE(mA->IsConnectedSrc(mA.Get()));
    EXPECT_FALSE(mA->DisconnectSrc(mA.Get()));
    EXPECT_TRUE(mA->ConnectSrc(mB.Get(), eLyrConnectionDefault));
    EXPECT_FALSE(mA->ConnectSrc(mB.Get(), eLyrConnectionSystem));
    EXPECT_EQ(mA->GetSrcCount(nullptr), 1);
    EXPECT_TRUE(mA->DisconnectSrc(mB.Get()));
    EXPECT_FALSE(mA->DisconnectSrc(mB.Get()));
    EXPECT_EQ(mB->GetDstCount(nullptr), 0);
}

TEST_F(KLyrPropertyConnectTest, ShowsThroughAFilterWhatTheFilterSelects) {
    ASSERT_TRUE(mA->ConnectSrc(mB.Get(), eLyrConnectionUser));
    ASSERT_TRUE(mA->ConnectSrc(mC.Get(), eLyrConnectionData));
    ASSERT_TRUE(mB->ConnectSrc(mA.Get(), eLyrConnectionData));
    TypeFilter lData(eLyrConnectionData);
    EXPECT_EQ(mA->GetSrcCount(&lData), 1);
    EXPECT_EQ(mA->GetSrc(&lData, 0), mC.Get());
    EXPECT_EQ(mA->GetDstCount(&lData), 1);
    EXPECT_EQ(mA->GetDst(&lData, 0), mB.Get());
    EXPECT_EQ(lData.TakeAsked(), 3);
    mA->ClearConnectCache();
    EXPECT_EQ(mA->GetSrcCount(&lData), 1);
    EXPECT_EQ(lData.TakeAsked(), 3);
}

TEST_F(KLyrPropertyConnectTest, WipesBothSides) {
    ASSERT_TRUE(mA->ConnectSrc(mB.Get(), eLyrConnectionUser));
    ASSERT_TRUE(mC->ConnectSrc(mA.Get(), eLyrConnectionUser));
    ASSERT_TRUE(mC->ConnectSrc(mB.Get(), eLyrConnectionUser));
    mA->WipeAllConnections();
    EXPECT_EQ(mA->GetSrcCount(nullptr) + mA->GetDstCount(nullptr), 0);
    EXPECT_EQ(mB->GetDstCount(nullptr), 1);
    EXPECT_EQ(mC->GetSrcCount(nullptr), 1);
    EXPECT_EQ(mC->GetSrc(nullptr, 0), mB.Get());
}

TEST_F(KLyrPropertyConnectTest, TheCloneBelongsToAnotherPageAndHasNoConnections) {
    ASSERT_TRUE(mA->ConnectSrc(mB.Get(), eLyrConnectionUser));
    ASSERT_TRUE(mC->ConnectSrc(mA.Get(), eLyrConnectionUser));
    const OwnedPage lOther(KLyrPropertyPage::Create("other", eINTEGER1));
    const Connect lClone(mA->Clone(lOther.get()));
    ASSERT_TRUE(lClone);
    EXPECT_EQ(lClone->GetPage(), lOther.get());
    EXPECT_EQ(lClone->GetPropertyId(), 3);
    EXPECT_EQ(lClone->GetSrcCount(nullptr) + lClone->GetDstCount(nullptr), 0);
    EXPECT_EQ(lClone->GetConnectionPoint().GetData(), lClone.Get());
    EXPECT_EQ(mA->GetSrcCount(nullptr), 1);
    EXPECT_EQ(Connect(mA->Clone(nullptr))->GetPage(), nullptr);
}

TEST_F(KLyrPropertyConnectTest, LeavesNoPeerPointingAtItInEitherWipeMode) {
    for (const bool lOn : {false, true}) {
        const WipeMode lMode(lOn);
        EXPECT_EQ(KLyrPlug::GetWipeMode(), lOn);
        Connect lGone(KLyrPropertyConnect::Create(nullptr, 9));
        TypeFilter lUser(eLyrConnectionUser);
        ASSERT_TRUE(lGone->ConnectSrc(mA.Get(), eLyrConnectionUser));
        ASSERT_TRUE(mB->ConnectSrc(lGone.Get(), eLyrConnectionUser));
        EXPECT_EQ(mA->GetDstCount(&lUser), 1);
        EXPECT_EQ(lGone->GetDstCount(&lUser), 1);
        lGone.Reset();
        EXPECT_EQ(mA->GetDstCount(nullptr), 0);
        EXPECT_EQ(mA->GetDstCount(&lUser), 0);
        EXPECT_EQ(mB->GetSrcCount(nullptr), 0);
        EXPECT_EQ(mB->GetSrc(nullptr, 0), nullptr);
    }
}

TEST_F(KLyrPropertyConnectTest, StaysConnectedWhileAReferenceIsLeft) {
    Connect lSecond(mA.Get());
    ASSERT_TRUE(mA->ConnectSrc(mB.Get(), eLyrConnectionUser));
    mA.Reset();
    EXPECT_EQ(mB->GetDst(nullptr, 0), lSecond.Get());
    lSecond.Reset();
    EXPECT_EQ(mB->GetDstCount(nullptr), 0);
}

TEST_F(KLyrPropertyConnectTest, IsNotMadeOrClonedWithoutMemory) {
    for (const bool lClone : {false, true}) {
        WithEveryAllocationFailing([&](const FailurePoint& pPoint) {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            const Connect lMade(lClone ? mA->Clone(nullptr) : KLyrPropertyConnect::Create(nullptr, 0));
            EXPECT_EQ(!lMade, lFail.Failed() > 0);
            return lFail.Failed();
        });
    }
}

}  // namespace
}  // namespace lyrsdk
