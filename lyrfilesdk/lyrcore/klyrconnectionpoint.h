#pragma once

// Connection points: the graph between properties.
//
// A connection runs from a source point to a destination point. Both ends know it: the destination lists the source
// among its sources, the source lists the destination among its destinations, each in the order of connection. There is
// at most one connection per (source, destination), and none from a point to itself. A point that is destroyed takes
// its connections with it, so no peer is left pointing at it.
//
//   KLyrConnectionPoint
//     mData              the owner's data, never looked at
//     mList              KConnectionList: a single connection in place, or
//                                         points  [ s0 s1 .. | d0 d1 .. ]   sources, then destinations
//                                         types   [ t  t  .. | t  t  .. ]   parallel to the points
//     mSubConnections    one sub-point per filter: the connections that the filter selects, in the same order
//
// Cost: the first connection of a point takes no memory. A list of up to kPlainLimit connections is just the two
// arrays. A longer one gets an index beside them, and then connecting, disconnecting, testing and reading by position
// cost O(log n) at most. Counts are constant.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/components/kbaselib/klib/karrayul.h"
#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

namespace lyrsdk {

// What a connection is for. A connection carries one value, which is stored as given; the library acts on none.
enum kLyrConnectionType : int {
    eLyrConnectionNone = 0,  // no bits; also the type of no connection

    eLyrConnectionSystem = 1,                                                // made by the application itself
    eLyrConnectionUser = 2,                                                  // made by its user
    eLyrConnectionSystemOrUser = eLyrConnectionSystem | eLyrConnectionUser,  // mask of the origin bits

    eLyrConnectionReference = 4,  // one end refers to the other
    eLyrConnectionContains = 8,   // one end contains the other
    eLyrConnectionData = 16,      // data goes from the source to the destination
    eLyrConnectionLinkType = eLyrConnectionReference | eLyrConnectionContains | eLyrConnectionData,  // mask

    eLyrConnectionDefault = eLyrConnectionUser | eLyrConnectionReference,  // what the handle takes when none is named
    eLyrConnectionUnidirectional = 128,                                    // meant to be followed one way only
};

class KLyrConnectionIndex;
class KLyrConnectionPoint;
class KLyrSubConnectionPoint;

// Chooses among the connections of a point. Selects is asked once for every connection, when the sub-point of this
// filter is built and when a connection is made later. It may look at points, through other filters too; it must not
// connect or disconnect, drop sub-points or destroy points and filters. A filter is used by one thread at a time, like
// the pages whose points it filters. A filter that is destroyed takes its sub-points along.
class LYRSDK_API KLyrConnectionPointFilter {
public:
    KLyrConnectionPointFilter() = default;  // no sub-points
    // A copy is a filter of its own, without sub-points.
    KLyrConnectionPointFilter(const KLyrConnectionPointFilter&) {}
    // cppcheck-suppress operatorEqVarError ; what is assigned to keeps its own sub-points
    // What is assigned to keeps its own sub-points.
    KLyrConnectionPointFilter& operator=(const KLyrConnectionPointFilter&) { return *this; }
    virtual ~KLyrConnectionPointFilter();

    // Whether the connection to pPeer of type pType is seen through this filter. Of a property's point, GetData is its
    // KLyrPropertyConnect, which leads to the page and the id.
    virtual bool Selects(const KLyrConnectionPoint* pPeer, kLyrConnectionType pType) const = 0;

private:
    friend class KLyrSubConnectionPoint;

    KLyrSubConnectionPoint* mSubConnections = nullptr;
};

class LYRSDK_API KLyrConnectionPoint {
public:
    // The connections of one point. Read only from outside.
    class LYRSDK_API KConnectionList {
    public:
        KConnectionList() = default;  // no connections
        ~KConnectionList();
        KConnectionList(const KConnectionList&) = delete;
        KConnectionList& operator=(const KConnectionList&) = delete;

        // How many sources and destinations there are.
        int GetSrcCount() const { return mSrcCount; }
        int GetDstCount() const { return mDstCount; }

        // The source or destination at position pIndex, in order of connection; null when there is none.
        KLyrConnectionPoint* GetSrc(int pIndex) const;
        KLyrConnectionPoint* GetDst(int pIndex) const;

        // The type of that connection; eLyrConnectionNone when there is none.
        kLyrConnectionType GetSrcType(int pIndex) const;
        kLyrConnectionType GetDstType(int pIndex) const;

    private:
        friend class KLyrConnectionIndex;
        friend class KLyrConnectionPoint;
        friend class KLyrSubConnectionPoint;
        friend struct KLyrLayout;

        static constexpr int kPlainLimit = 32;

        int GetCount() const { return mSrcCount + mDstCount; }
        int SlotAt(int pPosition) const;
        KLyrConnectionPoint* PeerAt(int pPosition) const;
        kLyrConnectionType TypeAt(int pPosition) const;
        int FindSlot(const KLyrConnectionPoint* pPeer, bool pSrc) const;
        bool Has(const KLyrConnectionPoint* pPeer, bool pSrc) const { return FindSlot(pPeer, pSrc) >= 0; }
        bool Add(KLyrConnectionPoint* pPeer, kLyrConnectionType pType, bool pSrc);
        bool Remove(const KLyrConnectionPoint* pPeer, bool pSrc);
        void Clear();
        bool InsertSlot(int pSlot, KLyrConnectionPoint* pPeer, kLyrConnectionType pType);
        void DropIndex();

        KArrayTemplate<KLyrConnectionPoint*> mConnectionConnect;
        KArrayTemplate<kLyrConnectionType> mConnectionType;
        int mSrcCount = 0;
        int mDstCount = 0;

        // Only beside a long list. While it exists the arrays may hold free slots (null points) in both regions.
        KLyrConnectionIndex* mIndex = nullptr;

        // The first connection that an empty list takes, which most points have no other beside. Null when there is
        // none or when the arrays hold all there are, which they go on doing until the list is empty.
        KLyrConnectionPoint* mOnly = nullptr;
        kLyrConnectionType mOnlyType = eLyrConnectionNone;
    };

    // A point without connections. pData comes back from GetData and is not owned.
    explicit KLyrConnectionPoint(void* pData);
    ~KLyrConnectionPoint();
    KLyrConnectionPoint(const KLyrConnectionPoint&) = delete;
    KLyrConnectionPoint& operator=(const KLyrConnectionPoint&) = delete;

    // What the point was made with.
    void* GetData() const { return mData; }

    // Adds pSrc to this point's sources and this point to pSrc's destinations. False, and nothing changes, when pSrc is
    // null, this very point or already a source, when either is a filter's sub-point, or when there is no memory.
    bool ConnectSrc(KLyrConnectionPoint* pSrc, kLyrConnectionType pType);
    // Takes that connection away; false when there is none.
    bool DisconnectSrc(KLyrConnectionPoint* pSrc);
    // Whether pSrc is one of this point's sources.
    bool IsConnectedSrc(const KLyrConnectionPoint* pSrc) const;

    // Removes every connection of this point, on both sides.
    void WipeConnectionList();

    // How many sources and destinations there are.
    int GetSrcCount() const { return mList.GetSrcCount(); }
    int GetDstCount() const { return mList.GetDstCount(); }
    // The source or destination at position pIndex, in order of connection; null when there is none.
    KLyrConnectionPoint* GetSrc(int pIndex) const { return mList.GetSrc(pIndex); }
    KLyrConnectionPoint* GetDst(int pIndex) const { return mList.GetDst(pIndex); }
    // The type of that connection; eLyrConnectionNone when there is none.
    kLyrConnectionType GetSrcType(int pIndex) const { return mList.GetSrcType(pIndex); }
    kLyrConnectionType GetDstType(int pIndex) const { return mList.GetDstType(pIndex); }

    // The same on the connections that pFilter selects; a null filter selects all. The first question to a point
    // through a filter costs a walk over the point's connections, every later one what the unfiltered one costs.
    // 0 or null when there is no memory for the sub-point.
    int GetSrcCount(KLyrConnectionPointFilter* pFilter);
    int GetDstCount(KLyrConnectionPointFilter* pFilter);
    // The peer at that position among those that pFilter selects; null when there is none.
    KLyrConnectionPoint* GetSrc(int pIndex, KLyrConnectionPointFilter* pFilter);
    KLyrConnectionPoint* GetDst(int pIndex, KLyrConnectionPointFilter* pFilter);

    // The point whose list holds only what pFilter selects; it belongs to this point and follows every connect and
    // disconnect. This very point for a null filter and on a sub-point; null when there is no memory.
    KLyrConnectionPoint* SubConnectGetOrCreate(KLyrConnectionPointFilter* pFilter);
    // Drops all sub-points; each is built anew when next asked for.
    void SubConnectRemoveAll();

private:
    friend class KLyrSubConnectionPoint;
    friend struct KLyrLayout;

    // A sub-point.
    KLyrConnectionPoint(void* pData, KLyrSubConnectionPoint* pThis) : mData(pData), mSubConnections(pThis) {}

    // A sub-point has no sub-points and stands in that place itself, so that the others need no mark.
    bool IsSubPoint() const { return static_cast<const void*>(mSubConnections) == this; }

    void Unlink(KLyrConnectionPoint* pSrc);
    // The sub-points take part in what has come or gone. Most points have none.
    bool Follow(KLyrConnectionPoint* pPeer, kLyrConnectionType pType, bool pSrc) {
        return !mSubConnections || OfferToSubPoints(pPeer, pType, pSrc);
    }
    void Forget(const KLyrConnectionPoint* pPeer, bool pSrc) {
        if (mSubConnections)
            WithdrawFromSubPoints(pPeer, pSrc);
    }
    bool OfferToSubPoints(KLyrConnectionPoint* pPeer, kLyrConnectionType pType, bool pSrc);
    void WithdrawFromSubPoints(const KLyrConnectionPoint* pPeer, bool pSrc);

    void* mData;
    KConnectionList mList;
    KLyrSubConnectionPoint* mSubConnections = nullptr;
};

}  // namespace lyrsdk
