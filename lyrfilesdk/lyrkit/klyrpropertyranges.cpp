#include "lyrfilesdk/lyrkit/klyrpropertyranges.h"

#include "lyrfilesdk/lyrcore/klyrpropertyitems.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

namespace lyrsdk {
namespace detail {
namespace {

bool IsThere(const KLyrPropertyHandle& pHandle) {
    return pHandle.GetPage() && pHandle.GetPage()->GetPropertyEntry(pHandle.GetId());
}

}  // namespace

// --- the property tree ---------------------------------------------------------------------------------------------

KLyrPropertyHandle ChildWalk::First() {
    return IsThere(mParent) ? mParent.GetChild() : KLyrPropertyHandle();
}

// A child that is gone knows its siblings no more; the next one is then looked for by its id.
KLyrPropertyHandle ChildWalk::Next(const KLyrPropertyHandle& pFrom) {
    const KLyrPropertyHandle lSibling = pFrom.GetSibling();
    if (lSibling.Valid() || IsThere(pFrom))
        return lSibling;
    const KLyrPropertyPage* lPage = pFrom.GetPage();
    int lId = pFrom.GetId();
    do
        lId = lPage->GetMinimumPropertyIdAndEntry(lId);
    while (lId != -1 && !lPage->IsChildOf(lId, mParent.GetId()));
    return KLyrPropertyHandle(pFrom.GetPage(), lId);
}

KLyrPropertyHandle DescendentWalk::First() {
    return IsThere(mAncestor) ? mAncestor.GetFirstDescendent() : KLyrPropertyHandle();
}

KLyrPropertyHandle AncestorWalk::Next(const KLyrPropertyHandle& pFrom) {
    const KLyrPropertyHandle lParent = pFrom.GetParent();
    if (lParent.Valid() && lParent.GetId() == mMark)
        return KLyrPropertyHandle();
    if (--mStepsLeft == 0) {
        mMark = lParent.GetId();
        mStride *= 2;
        mStepsLeft = mStride;
    }
    // A parent id is stored as given and may name nothing.
    return IsThere(lParent) ? lParent : KLyrPropertyHandle();
}

// --- the properties of a page --------------------------------------------------------------------------------------

bool PropertyWalk::IsMeant(int pId) const {
    KLyrPropertyPage* lHolder = nullptr;
    const KLyrPropertyEntry* lEntry = mPage->GetPropertyEntry(pId, &lHolder);
    return lEntry && (!mOwn || (lHolder == mPage && !lEntry->IsEmpty()));
}

KLyrPropertyHandle PropertyWalk::First() {
    if (!mPage)
        return KLyrPropertyHandle();
    const KLyrPropertyHandle lRoot(mPage, 0);
    return IsMeant(0) ? lRoot : Next(lRoot);
}

KLyrPropertyHandle PropertyWalk::Next(const KLyrPropertyHandle& pFrom) {
    int lId = pFrom.GetId();
    do
        lId = mPage->GetMinimumPropertyIdAndEntry(lId);
    while (lId != -1 && mOwn && !IsMeant(lId));
    return KLyrPropertyHandle(mPage, lId);
}

// --- instances -----------------------------------------------------------------------------------------------------

// The property may be gone from its page meanwhile; instances may hold something of it still.
KLyrPropertyHandle InstanceWalk::At(int pIndex) {
    KLyrPropertyPage* lPage = mProperty.GetPage();
    mIndex = pIndex;
    return pIndex < lPage->GetInstances().GetCount()
               ? KLyrPropertyHandle(lPage->GetInstances().GetAt(pIndex), mProperty.GetId())
               : KLyrPropertyHandle();
}

// Where the page that the walk stands at was destroyed, the last one has moved to.
KLyrPropertyHandle InstanceWalk::Next(const KLyrPropertyHandle& pFrom) {
    const KLyrPropertyHandle lHere = At(mIndex);
    return lHere == pFrom ? At(mIndex + 1) : lHere;
}

// The instance of pPage at pIndex, one level below the page; null when there is none.
KLyrPropertyPage* AllInstancesWalk::Enter(KLyrPropertyPage* pPage, int pIndex) {
    if (pIndex >= pPage->GetInstances().GetCount())
        return nullptr;
    if (mLevel < kLyrInstanceLevels)
        mIndices[mLevel] = pIndex;
    ++mLevel;
    return pPage->GetInstances().GetAt(pIndex);
}

KLyrPropertyHandle AllInstancesWalk::First() {
    mLevel = 0;
    KLyrPropertyPage* lFirst = IsThere(mProperty) ? Enter(mProperty.GetPage(), 0) : nullptr;
    return lFirst ? KLyrPropertyHandle(lFirst, mProperty.GetId()) : KLyrPropertyHandle();
}

KLyrPropertyHandle AllInstancesWalk::Next(const KLyrPropertyHandle& pFrom) {
    KLyrPropertyPage* lPage = pFrom.GetPage();
    KLyrPropertyPage* lNext = Enter(lPage, 0);
    while (!lNext && lPage != mProperty.GetPage()) {
        KLyrPropertyPage* lParent = lPage->GetInstanceOf();
        --mLevel;
        const int lIndex = mLevel < kLyrInstanceLevels ? mIndices[mLevel] : lParent->GetInstances().Find(lPage);
        lNext = Enter(lParent, lIndex + 1);
        lPage = lParent;
    }
    return lNext ? KLyrPropertyHandle(lNext, mProperty.GetId()) : KLyrPropertyHandle();
}

// --- connections ---------------------------------------------------------------------------------------------------

// A connection item that belongs to no page is passed over.
KLyrPropertyHandle PeerWalk::At(int pIndex) {
    for (mIndex = pIndex;; ++mIndex) {
        const KLyrPropertyHandle lPeer =
            mSources ? mProperty.GetSrc(mFilter, mIndex) : mProperty.GetDst(mFilter, mIndex);
        if (lPeer.Valid())
            return lPeer;
        if (mIndex >= (mSources ? mProperty.GetSrcCount(mFilter) : mProperty.GetDstCount(mFilter)))
            return KLyrPropertyHandle();
    }
}

// Where the peer that the walk stands at was disconnected, the next one has moved up.
KLyrPropertyHandle PeerWalk::Next(const KLyrPropertyHandle& pFrom) {
    const KLyrPropertyHandle lHere = At(mIndex);
    return lHere == pFrom ? At(mIndex + 1) : lHere;
}

}  // namespace detail
}  // namespace lyrsdk
