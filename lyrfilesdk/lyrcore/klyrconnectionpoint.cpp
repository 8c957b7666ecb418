#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"

namespace lyrsdk {

// A point's view through one filter: a point whose list holds only what the filter selects. It is linked twice, into
// the sub-points of its owner and into those of its filter, so that whichever goes first takes it along.
class KLyrSubConnectionPoint : public KLyrConnectionPoint {
public:
    static KLyrSubConnectionPoint* Find(KLyrConnectionPoint& pOwner, const KLyrConnectionPointFilter* pFilter) {
        for (KLyrSubConnectionPoint* lSub = pOwner.mSubConnections; lSub; lSub = lSub->mNextOfOwner)
            if (lSub->mFilter == pFilter)
                return lSub;
        return nullptr;
    }

    KLyrSubConnectionPoint(KLyrConnectionPoint& pOwner, KLyrConnectionPointFilter& pFilter)
        : KLyrConnectionPoint(pOwner.GetData(), this),
          mOwner(&pOwner),
          mFilter(&pFilter),
          mLinkOfOwner(&pOwner.mSubConnections),
          mNextOfOwner(pOwner.mSubConnections),
          mLinkOfFilter(&pFilter.mSubConnections),
          mNextOfFilter(pFilter.mSubConnections) {
        *mLinkOfOwner = this;
        *mLinkOfFilter = this;
        if (mNextOfOwner)
            mNextOfOwner->mLinkOfOwner = &mNextOfOwner;
        if (mNextOfFilter)
            mNextOfFilter->mLinkOfFilter = &mNextOfFilter;
    }

    ~KLyrSubConnectionPoint() {
        *mLinkOfOwner = mNextOfOwner;
        *mLinkOfFilter = mNextOfFilter;
        if (mNextOfOwner)
            mNextOfOwner->mLinkOfOwner = mLinkOfOwner;
        if (mNextOfFilter)
            mNextOfFilter->mLinkOfFilter = mLinkOfFilter;
    }

    KLyrSubConnectionPoint* NextOfOwner() const { return mNextOfOwner; }

    // Takes in what the owner has. False when there is no memory.
    bool Build() {
        const KConnectionList& lAll = mOwner->mList;
        bool lDone = true;
        for (int i = 0; lDone && i < lAll.GetSrcCount(); ++i)
            lDone = Offer(lAll.GetSrc(i), lAll.GetSrcType(i), true);
        for (int i = 0; lDone && i < lAll.GetDstCount(); ++i)
            lDone = Offer(lAll.GetDst(i), lAll.GetDstType(i), false);
        return lDone;
    }

    // False when the filter selects the connection and there is no memory for it. A sub-point that came to be while the
    // filters were asked has it already.
    bool Offer(KLyrConnectionPoint* pPeer, kLyrConnectionType pType, bool pSrc) {
        return !mFilter->Selects(pPeer, pType) || mList.Has(pPeer, pSrc) || mList.Add(pPeer, pType, pSrc);
    }
    void Withdraw(const KLyrConnectionPoint* pPeer, bool pSrc) { mList.Remove(pPeer, pSrc); }
    void Empty() { mList.Clear(); }

private:
    KLyrConnectionPoint* mOwner;
    KLyrConnectionPointFilter* mFilter;
    KLyrSubConnectionPoint** mLinkOfOwner;  // what points at this one there
    KLyrSubConnectionPoint* mNextOfOwner;
    KLyrSubConnectionPoint** mLinkOfFilter;
    KLyrSubConnectionPoint* mNextOfFilter;
};

KLyrConnectionPointFilter::~KLyrConnectionPointFilter() {
    while (mSubConnections)
        LyrSdkDelete(mSubConnections);
}

KLyrConnectionPoint::KLyrConnectionPoint(void* pData) : mData(pData) {}

KLyrConnectionPoint::~KLyrConnectionPoint() {
    // The peers of a sub-point belong to its owner and do not know of it.
    WipeConnectionList();
    SubConnectRemoveAll();
}

bool KLyrConnectionPoint::ConnectSrc(KLyrConnectionPoint* pSrc, kLyrConnectionType pType) {
    if (!pSrc || pSrc == this || IsSubPoint() || pSrc->IsSubPoint() || IsConnectedSrc(pSrc))
        return false;
    if (mList.Add(pSrc, pType, true) && pSrc->mList.Add(this, pType, false) && Follow(pSrc, pType, true) &&
        pSrc->Follow(this, pType, false))
        return true;
    mList.Remove(pSrc, true);
    Unlink(pSrc);
    return false;
}

// Takes a connection that is no longer in the list here out of wherever else it has got to; not all places need to have
// it.
void KLyrConnectionPoint::Unlink(KLyrConnectionPoint* pSrc) {
    pSrc->mList.Remove(this, false);
    Forget(pSrc, true);
    pSrc->Forget(this, false);
}

bool KLyrConnectionPoint::DisconnectSrc(KLyrConnectionPoint* pSrc) {
    if (!pSrc || IsSubPoint() || !mList.Remove(pSrc, true))
        return false;
    Unlink(pSrc);
    return true;
}

// Either end knows the answer; the one with the shorter list is asked.
bool KLyrConnectionPoint::IsConnectedSrc(const KLyrConnectionPoint* pSrc) const {
    if (!pSrc)
        return false;
    if (!IsSubPoint() && !pSrc->IsSubPoint() && pSrc->mList.GetCount() < mList.GetCount())
        return pSrc->mList.Has(this, false);
    return mList.Has(pSrc, true);
}

void KLyrConnectionPoint::WipeConnectionList() {
    if (IsSubPoint())
        return;
    for (int i = 0; i < mList.GetSrcCount(); ++i) {
        KLyrConnectionPoint* lSrc = mList.GetSrc(i);
        lSrc->mList.Remove(this, false);
        lSrc->Forget(this, false);
    }
    for (int i = 0; i < mList.GetDstCount(); ++i) {
        KLyrConnectionPoint* lDst = mList.GetDst(i);
        lDst->mList.Remove(this, true);
        lDst->Forget(this, true);
    }
    mList.Clear();
    for (KLyrSubConnectionPoint* lSub = mSubConnections; lSub; lSub = lSub->NextOfOwner())
        lSub->Empty();
}

bool KLyrConnectionPoint::OfferToSubPoints(KLyrConnectionPoint* pPeer, kLyrConnectionType pType, bool pSrc) {
    for (KLyrSubConnectionPoint* lSub = mSubConnections; lSub; lSub = lSub->NextOfOwner())
        if (!lSub->Offer(pPeer, pType, pSrc))
            return false;
    return true;
}

void KLyrConnectionPoint::WithdrawFromSubPoints(const KLyrConnectionPoint* pPeer, bool pSrc) {
    for (KLyrSubConnectionPoint* lSub = mSubConnections; lSub; lSub = lSub->NextOfOwner())
        lSub->Withdraw(pPeer, pSrc);
}

KLyrConnectionPoint* KLyrConnectionPoint::SubConnectGetOrCreate(KLyrConnectionPointFilter* pFilter) {
    if (!pFilter || IsSubPoint())
        return this;
    KLyrSubConnectionPoint* lSub = KLyrSubConnectionPoint::Find(*this, pFilter);
    if (lSub)
        return lSub;
    lSub = LyrSdkNew<KLyrSubConnectionPoint>(*this, *pFilter);
    if (lSub && !lSub->Build()) {
        LyrSdkDelete(lSub);
        lSub = nullptr;
    }
    return lSub;
}

void KLyrConnectionPoint::SubConnectRemoveAll() {
    while (mSubConnections && !IsSubPoint())
        LyrSdkDelete(mSubConnections);
}

int KLyrConnectionPoint::GetSrcCount(KLyrConnectionPointFilter* pFilter) {
    const KLyrConnectionPoint* lPoint = SubConnectGetOrCreate(pFilter);
    return lPoint ? lPoint->GetSrcCount() : 0;
}

int KLyrConnectionPoint::GetDstCount(KLyrConnectionPointFilter* pFilter) {
    const KLyrConnectionPoint* lPoint = SubConnectGetOrCreate(pFilter);
    return lPoint ? lPoint->GetDstCount() : 0;
}

KLyrConnectionPoint* KLyrConnectionPoint::GetSrc(int pIndex, KLyrConnectionPointFilter* pFilter) {
    const KLyrConnectionPoint* lPoint = SubConnectGetOrCreate(pFilter);
    return lPoint ? lPoint->GetSrc(pIndex) : nullptr;
}

KLyrConnectionPoint* KLyrConnectionPoint::GetDst(int pIndex, KLyrConnectionPointFilter* pFilter) {
    const KLyrConnectionPoint* lPoint = SubConnectGetOrCreate(pFilter);
    return lPoint ? lPoint->GetDst(pIndex) : nullptr;
}

}  // namespace lyrsdk
