#include "lyrfilesdk/lyrcore/klyrdescendentwalk.h"

#include <algorithm>
#include <climits>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

namespace lyrsdk {
namespace {

// Collecting is worth its cost after so many ids at the earliest.
constexpr int kFewMisses = 32;

}  // namespace

KLyrDescendentWalk* KLyrDescendentWalk::Enlarge(KLyrDescendentWalk* pOld, std::size_t pCount) {
    if (pCount > INT_MAX || (pOld && static_cast<int>(pCount) <= pOld->mCapacity))
        return pOld;
    KLyrDescendentWalk* lWalk = LyrSdkNew<KLyrDescendentWalk>();
    int* lIds = lWalk ? static_cast<int*>(LyrSdkMalloc(pCount * sizeof(int))) : nullptr;
    if (!lIds) {
        LyrSdkDelete(lWalk);
        return pOld;
    }
    lWalk->mIds = lIds;
    lWalk->mCapacity = static_cast<int>(pCount);
    Destroy(pOld);
    return lWalk;
}

void KLyrDescendentWalk::Destroy(KLyrDescendentWalk* pWalk) {
    if (pWalk)
        LyrSdkFree(pWalk->mIds);
    LyrSdkDelete(pWalk);
}

// The list is its own queue: the children of each id in it are put behind.
bool KLyrDescendentWalk::Collect(const KLyrPropertyPage* pPage, int pAncestorId, int pEnd) {
    Forget();
    mMisses = 0;
    mCount = 0;
    int lParent = pAncestorId;
    for (int lTaken = 0;; lParent = mIds[lTaken++]) {
        for (int lId = pPage->GetChild(lParent); lId != -1 && lId < pEnd; lId = pPage->GetSibling(lId)) {
            if (mCount == mCapacity)
                return false;
            mIds[mCount++] = lId;
        }
        if (lTaken == mCount)
            break;
    }
    std::sort(mIds, mIds + mCount);
    mPage = pPage;
    mAncestorId = pAncestorId;
    mExact = true;
    mEnd = pEnd;
    mPosition = 0;
    mGoneFrom = 0;
    mGoneTo = 0;
    return true;
}

bool KLyrDescendentWalk::IsDueAfterMiss() {
    if (mMisses - kFewMisses >= mCount)
        return true;
    ++mMisses;
    return false;
}

int KLyrDescendentWalk::NextBehind(int pId) {
    if (mPosition < mCount && mIds[mPosition] == pId)
        ++mPosition;
    else
        mPosition = static_cast<int>(std::upper_bound(mIds, mIds + mCount, pId) - mIds);
    if (mPosition >= mGoneFrom && mPosition < mGoneTo)
        mPosition = mGoneTo;
    return mPosition < mCount ? mIds[mPosition] : -1;
}

void KLyrDescendentWalk::LastIsGone() {
    if (mPosition != mGoneTo)
        mGoneFrom = mPosition;
    mGoneTo = mPosition + 1;
}

}  // namespace lyrsdk
