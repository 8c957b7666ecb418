#include <gtest/gtest.h>

#include <deque>
#include <string>

#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"
#include "lyrfilesdk/lyrcore/klyrpropertyitems.h"
#include "tests/reliability/hostile.h"
#include "tests/support/connection_filters.h"
#include "tests/support/counted.h"

namespace lyrsdk {
namespace {

constexpr auto kData = eLyrConnectionData;

kLyrConnectionType ToType(int pType) {
    return static_cast<kLyrConnectionType>(pType);
}

// The destination has two sources; the second source has none.
struct Points {
    TypeFilter mFilter{kData};
    TypeFilter mNothing{0};
    KLyrConnectionPoint mDst{nullptr};
    KLyrConnectionPoint mFirst{this};
    KLyrConnectionPoint mSecond{nullptr};
    KLyrConnectionPoint mStranger{nullptr};

    Points() {
        mDst.ConnectSrc(&mFirst, kData);
        mDst.ConnectSrc(&mSecond, eLyrConnectionSystem);
    }
    std::string State() {
        std::string lState;
        for (KLyrConnectionPoint* lPoint : {&mDst, &mFirst, &mSecond, &mStranger}) {
            for (int i = 0; i < lPoint->GetSrcCount(); ++i)
                lState += Name(lPoint->GetSrc(i)) + std::to_string(lPoint->GetSrcType(i));
            lState += '>';
            for (int i = 0; i < lPoint->GetDstCount(); ++i)
                lState += Name(lPoint->GetDst(i)) + std::to_string(lPoint->GetDstType(i));
            lState += ' ' + std::to_string(lPoint->GetSrcCount(&mFilter)) + ';';
        }
        return lState;
    }
    std::string Name(const KLyrConnectionPoint* pPoint) const {
        return pPoint == &mDst ? "d" : pPoint == &mFirst ? "f" : pPoint == &mSecond ? "s" : "?";
    }
};

TEST(HostileConnections, Points) {
    MakeHostileCalls<Points>({
        {"KLyrConnectionPoint::KLyrConnectionPoint", kNothing,
         [](Points& p) { EXPECT_EQ(KLyrConnectionPoint(&p.mFirst).GetSrcCount(), 0); }},
        {"KLyrConnectionPoint::GetData", kNothing,
         [](Points& p) {
             EXPECT_EQ(p.mDst.GetData(), nullptr);
             EXPECT_EQ(p.mFirst.GetData(), &p);
         }},
        {"KLyrConnectionPoint::ConnectSrc", kNothing,
         [](Points& p) {
             KLyrConnectionPoint* lSub = p.mFirst.SubConnectGetOrCreate(&p.mFilter);
             for (int lType : kHostileInts) {
                 EXPECT_FALSE(p.mDst.ConnectSrc(nullptr, ToType(lType)));
                 EXPECT_FALSE(p.mDst.ConnectSrc(&p.mDst, ToType(lType)));
                 EXPECT_FALSE(p.mDst.ConnectSrc(&p.mFirst, ToType(lType))) << "a second one";
                 EXPECT_FALSE(p.mDst.ConnectSrc(lSub, ToType(lType)));
                 EXPECT_FALSE(lSub->ConnectSrc(&p.mStranger, ToType(lType)));
                 EXPECT_FALSE(lSub->ConnectSrc(lSub, ToType(lType)));
             }
         }},
        {"KLyrConnectionPoint::ConnectSrc", kSome,
         [](Points& p) {
             for (int lType : kHostileInts) {
                 EXPECT_TRUE(p.mFirst.ConnectSrc(&p.mStranger, ToType(lType)));
                 EXPECT_EQ(p.mFirst.GetSrcType(0), lType);
                 EXPECT_EQ(p.mStranger.GetDstType(0), lType);
                 EXPECT_TRUE(p.mFirst.DisconnectSrc(&p.mStranger));
             }
             EXPECT_TRUE(p.mFirst.ConnectSrc(&p.mDst, kData)) << "a circle";
         }},
        {"KLyrConnectionPoint::DisconnectSrc", kNothing,
         [](Points& p) {
             KLyrConnectionPoint* lSub = p.mDst.SubConnectGetOrCreate(&p.mFilter);
             for (KLyrConnectionPoint* lNone :
                  {static_cast<KLyrConnectionPoint*>(nullptr), &p.mDst, &p.mStranger, lSub})
                 EXPECT_FALSE(p.mDst.DisconnectSrc(lNone));
             EXPECT_FALSE(lSub->DisconnectSrc(&p.mFirst));
             EXPECT_FALSE(p.mFirst.DisconnectSrc(&p.mDst)) << "the other way round";
         }},
        {"KLyrConnectionPoint::IsConnectedSrc", kNothing,
         [](Points& p) {
             KLyrConnectionPoint* lSub = p.mDst.SubConnectGetOrCreate(&p.mFilter);
             for (KLyrConnectionPoint* lNone :
                  {static_cast<KLyrConnectionPoint*>(nullptr), &p.mDst, &p.mStranger, lSub})
                 EXPECT_FALSE(p.mDst.IsConnectedSrc(lNone));
         }},
        {"KLyrConnectionPoint::WipeConnectionList", kNothing,
         [](Points& p) {
             p.mStranger.WipeConnectionList();
             p.mDst.SubConnectGetOrCreate(&p.mFilter)->WipeConnectionList();
         }},
        {"KLyrConnectionPoint::WipeConnectionList", kSome,
         [](Points& p) {
             p.mDst.WipeConnectionList();
             p.mDst.WipeConnectionList();
         }},
        {"KLyrConnectionPoint::GetSrcCount", kNothing,
         [](Points& p) {
             EXPECT_EQ(p.mDst.GetSrcCount(nullptr), 2);
             EXPECT_EQ(p.mDst.GetSrcCount(&p.mNothing), 0);
             const FailAllocations lFail(0, true);
             p.mDst.SubConnectRemoveAll();
             EXPECT_EQ(p.mDst.GetSrcCount(&p.mFilter), 0);
         }},
        {"KLyrConnectionPoint::GetDstCount", kNothing,
         [](Points& p) {
             EXPECT_EQ(p.mFirst.GetDstCount(nullptr), 1);
             EXPECT_EQ(p.mFirst.GetDstCount(&p.mNothing), 0);
         }},
        {"KLyrConnectionPoint::GetSrc", kNothing,
         [](Points& p) {
             for (int lIndex : kHostileInts) {
                 EXPECT_EQ(p.mDst.GetSrc(lIndex) != nullptr, lIndex == 0 || lIndex == 1);
                 EXPECT_EQ(p.mDst.GetSrc(lIndex, nullptr) != nullptr, lIndex == 0 || lIndex == 1);
                 EXPECT_EQ(p.mDst.GetSrc(lIndex, &p.mFilter) != nullptr, lIndex == 0);
                 EXPECT_EQ(p.mStranger.GetSrc(lIndex, &p.mFilter), nullptr);
             }
         }},
        {"KLyrConnectionPoint::GetDst", kNothing,
         [](Points& p) {
             for (int lIndex : kHostileInts) {
                 EXPECT_EQ(p.mFirst.GetDst(lIndex) != nullptr, lIndex == 0);
                 EXPECT_EQ(p.mFirst.GetDst(lIndex, &p.mNothing), nullptr);
                 EXPECT_EQ(p.mDst.GetDst(lIndex), nullptr);
             }
         }},
        {"KLyrConnectionPoint::GetSrcType", kNothing,
         [](Points& p) {
             for (int lIndex : {INT_MIN, -1, 2, INT_MAX})
                 EXPECT_EQ(p.mDst.GetSrcType(lIndex), eLyrConnectionNone);
         }},
        {"KLyrConnectionPoint::GetDstType", kNothing,
         [](Points& p) {
             for (int lIndex : {INT_MIN, -1, 1, INT_MAX})
                 EXPECT_EQ(p.mFirst.GetDstType(lIndex), eLyrConnectionNone);
         }},
        {"KLyrConnectionPoint::SubConnectGetOrCreate", kNothing,
         [](Points& p) {
             EXPECT_EQ(p.mDst.SubConnectGetOrCreate(nullptr), &p.mDst);
             KLyrConnectionPoint* lSub = p.mDst.SubConnectGetOrCreate(&p.mFilter);
             EXPECT_EQ(lSub->SubConnectGetOrCreate(&p.mNothing), lSub);
             EXPECT_EQ(lSub->SubConnectGetOrCreate(nullptr), lSub);
         }},
        {"KLyrConnectionPoint::SubConnectRemoveAll", kNothing,
         [](Points& p) {
             p.mDst.SubConnectRemoveAll();
             p.mDst.SubConnectRemoveAll();
             p.mDst.SubConnectGetOrCreate(&p.mFilter)->SubConnectRemoveAll();
         }},
        {"KLyrConnectionPoint::KConnectionList::KConnectionList", kNothing,
         [](Points&) { EXPECT_EQ(KLyrConnectionPoint::KConnectionList().GetSrcCount(), 0); }},
        {"KLyrConnectionPoint::KConnectionList::GetSrcCount", kNothing,
         [](Points&) { EXPECT_EQ(KLyrConnectionPoint::KConnectionList().GetSrcCount(), 0); }},
        {"KLyrConnectionPoint::KConnectionList::GetDstCount", kNothing,
         [](Points&) { EXPECT_EQ(KLyrConnectionPoint::KConnectionList().GetDstCount(), 0); }},
        {"KLyrConnectionPoint::KConnectionList::GetSrc", kNothing,
         [](Points&) {
             for (int lIndex : kHostileInts)
                 EXPECT_EQ(KLyrConnectionPoint::KConnectionList().GetSrc(lIndex), nullptr);
         }},
        {"KLyrConnectionPoint::KConnectionList::GetDst", kNothing,
         [](Points&) {
             for (int lIndex : kHostileInts)
                 EXPECT_EQ(KLyrConnectionPoint::KConnectionList().GetDst(lIndex), nullptr);
         }},
        {"KLyrConnectionPoint::KConnectionList::GetSrcType", kNothing,
         [](Points&) {
             for (int lIndex : kHostileInts)
                 EXPECT_EQ(KLyrConnectionPoint::KConnectionList().GetSrcType(lIndex), eLyrConnectionNone);
         }},
        {"KLyrConnectionPoint::KConnectionList::GetDstType", kNothing,
         [](Points&) {
             for (int lIndex : kHostileInts)
                 EXPECT_EQ(KLyrConnectionPoint::KConnectionList().GetDstType(lIndex), eLyrConnectionNone);
         }},
        {"KLyrConnectionPointFilter::KLyrConnectionPointFilter", kNothing,
         [](Points& p) {
             const TypeFilter lCopy(p.mFilter);
             EXPECT_TRUE(lCopy.Selects(nullptr, kData)) << "of the same bits, without sub-points";
         }},
        {"KLyrConnectionPointFilter::operator=", kNothing,
         [](Points& p) {
             TypeFilter& lSelf = p.mFilter;
             p.mFilter = lSelf;
             TypeFilter lOther(0);
             EXPECT_EQ(p.mDst.GetSrcCount(&lOther), 0);
             lOther = p.mFilter;
         }},
        {"KLyrConnectionPointFilter::Selects", kNothing,
         [](Points&) {
             // Types reach a filter as they were given.
             KLyrConnectionPoint lDst(nullptr);
             for (int lType : kHostileInts) {
                 KLyrConnectionPoint lSrc(nullptr);
                 PeerFilter lFilter(&lSrc);
                 EXPECT_TRUE(lDst.ConnectSrc(&lSrc, ToType(lType)));
                 EXPECT_EQ(lDst.GetSrcCount(&lFilter), 1);
                 ASSERT_EQ(lFilter.Questions().size(), 1u);
                 EXPECT_EQ(lFilter.Questions()[0].mType, lType);
             }
         }},
    });
}

// Lists that are long enough for an index answer the same.
TEST(HostileConnections, LongListsTakeAnyIndexToo) {
    const LeakCheck lLeakCheck;
    KLyrConnectionPoint lPoint(nullptr);
    KLyrConnectionPoint lStranger(nullptr);
    std::deque<KLyrConnectionPoint> lPeers;
    for (int i = 0; i < 500; ++i) {
        KLyrConnectionPoint& lPeer = lPeers.emplace_back(nullptr);
        EXPECT_TRUE(i % 2 == 0 ? lPoint.ConnectSrc(&lPeer, ToType(i)) : lPeer.ConnectSrc(&lPoint, ToType(i)));
    }
    for (int lIndex : {INT_MIN, -1, 250, 251, 499, 500, INT_MAX}) {
        EXPECT_EQ(lPoint.GetSrc(lIndex), nullptr) << lIndex;
        EXPECT_EQ(lPoint.GetDst(lIndex), nullptr) << lIndex;
        EXPECT_EQ(lPoint.GetSrcType(lIndex), eLyrConnectionNone) << lIndex;
        EXPECT_EQ(lPoint.GetDstType(lIndex), eLyrConnectionNone) << lIndex;
    }
    for (KLyrConnectionPoint* lNone : {static_cast<KLyrConnectionPoint*>(nullptr), &lPoint, &lStranger, &lPeers[1]}) {
        EXPECT_FALSE(lPoint.IsConnectedSrc(lNone));
        EXPECT_FALSE(lPoint.DisconnectSrc(lNone));
    }
    EXPECT_FALSE(lPoint.ConnectSrc(&lPeers[0], ToType(-1)));
    EXPECT_EQ(lPoint.GetSrcCount() + lPoint.GetDstCount(), 500);
}

// --- connection items ------------------------------------------------------------------------------------------------

// The destination has one source; neither belongs to a page.
struct ConnectItems {
    TypeFilter mFilter{0};
    Counted<KLyrPropertyConnect> mDst{KLyrPropertyConnect::Create(nullptr, INT_MIN)};
    Counted<KLyrPropertyConnect> mSrc{KLyrPropertyConnect::Create(nullptr, INT_MAX)};
    Counted<KLyrPropertyConnect> mStranger{KLyrPropertyConnect::Create(nullptr, 0)};

    ConnectItems() { mDst->ConnectSrc(mSrc.Get(), kData); }
    std::string State() {
        return std::to_string(mDst->GetSrcCount(nullptr)) + ' ' + std::to_string(mSrc->GetDstCount(nullptr)) + ' ' +
               std::to_string(mDst->GetConnectionPoint().GetSrcType(0)) + ' ' +
               std::to_string(mStranger->GetSrcCount(nullptr) + mStranger->GetDstCount(nullptr));
    }
};

TEST(HostileConnections, Items) {
    MakeHostileCalls<ConnectItems>({
        {"KLyrPropertyConnect::Create", kNothing,
         [](ConnectItems&) {
             for (int lId : kHostileInts) {
                 const Counted<KLyrPropertyConnect> lItem(KLyrPropertyConnect::Create(nullptr, lId));
                 EXPECT_EQ(lItem->GetPropertyId(), lId);
             }
             const FailAllocations lFail(0, true);
             EXPECT_EQ(KLyrPropertyConnect::Create(nullptr, 0), nullptr);
         }},
        {"KLyrPropertyConnect::Clone", kNothing,
         [](ConnectItems& p) {
             const Counted<KLyrPropertyConnect> lClone(p.mDst->Clone(nullptr));
             EXPECT_EQ(lClone->GetSrcCount(nullptr), 0);
             EXPECT_EQ(lClone->GetPropertyId(), INT_MIN);
         }},
        {"KLyrPropertyConnect::IncRef", kNothing, [](ConnectItems& p) { p.mDst->IncRef(), p.mDst->DecRef(); }},
        {"KLyrPropertyConnect::DecRef", kNothing,
         [](ConnectItems& p) {
             KLyrPropertyConnect* lItem = KLyrPropertyConnect::Create(nullptr, 0);
             lItem->IncRef();
             EXPECT_TRUE(p.mSrc->ConnectSrc(lItem, kData));
             lItem->DecRef();
         }},
        {"KLyrPropertyConnect::GetPage", kNothing, [](ConnectItems& p) { EXPECT_EQ(p.mDst->GetPage(), nullptr); }},
        {"KLyrPropertyConnect::GetPropertyId", kNothing,
         [](ConnectItems& p) { EXPECT_EQ(p.mDst->GetPropertyId(), INT_MIN); }},
        {"KLyrPropertyConnect::ConnectSrc", kNothing,
         [](ConnectItems& p) {
             for (int lType : kHostileInts) {
                 EXPECT_FALSE(p.mDst->ConnectSrc(nullptr, ToType(lType)));
                 EXPECT_FALSE(p.mDst->ConnectSrc(p.mDst.Get(), ToType(lType)));
                 EXPECT_FALSE(p.mDst->ConnectSrc(p.mSrc.Get(), ToType(lType)));
             }
         }},
        {"KLyrPropertyConnect::DisconnectSrc", kNothing,
         [](ConnectItems& p) {
             EXPECT_FALSE(p.mDst->DisconnectSrc(nullptr));
             EXPECT_FALSE(p.mDst->DisconnectSrc(p.mDst.Get()));
             EXPECT_FALSE(p.mDst->DisconnectSrc(p.mStranger.Get()));
         }},
        {"KLyrPropertyConnect::IsConnectedSrc", kNothing,
         [](ConnectItems& p) {
             EXPECT_FALSE(p.mDst->IsConnectedSrc(nullptr));
             EXPECT_FALSE(p.mDst->IsConnectedSrc(p.mDst.Get()));
         }},
        {"KLyrPropertyConnect::GetSrcCount", kNothing,
         [](ConnectItems& p) { EXPECT_EQ(p.mDst->GetSrcCount(&p.mFilter), 0); }},
        {"KLyrPropertyConnect::GetDstCount", kNothing,
         [](ConnectItems& p) { EXPECT_EQ(p.mSrc->GetDstCount(&p.mFilter), 0); }},
        {"KLyrPropertyConnect::GetSrc", kNothing,
         [](ConnectItems& p) {
             for (int lIndex : kHostileInts) {
                 EXPECT_EQ(p.mDst->GetSrc(nullptr, lIndex), lIndex == 0 ? p.mSrc.Get() : nullptr);
                 EXPECT_EQ(p.mDst->GetSrc(&p.mFilter, lIndex), nullptr);
             }
         }},
        {"KLyrPropertyConnect::GetDst", kNothing,
         [](ConnectItems& p) {
             for (int lIndex : kHostileInts) {
                 EXPECT_EQ(p.mSrc->GetDst(nullptr, lIndex), lIndex == 0 ? p.mDst.Get() : nullptr);
                 EXPECT_EQ(p.mSrc->GetDst(&p.mFilter, lIndex), nullptr);
             }
         }},
        {"KLyrPropertyConnect::ClearConnectCache", kNothing,
         [](ConnectItems& p) {
             p.mDst->ClearConnectCache();
             p.mDst->GetSrcCount(&p.mFilter);
             p.mDst->ClearConnectCache();
         }},
        {"KLyrPropertyConnect::WipeAllConnections", kNothing,
         [](ConnectItems& p) { p.mStranger->WipeAllConnections(); }},
        {"KLyrPropertyConnect::WipeAllConnections", kSome,
         [](ConnectItems& p) {
             p.mSrc->WipeAllConnections();
             p.mSrc->WipeAllConnections();
         }},
        {"KLyrPropertyConnect::GetConnectionPoint", kNothing,
         [](ConnectItems& p) { EXPECT_EQ(p.mDst->GetConnectionPoint().GetData(), p.mDst.Get()); }},
    });
}

}  // namespace
}  // namespace lyrsdk
