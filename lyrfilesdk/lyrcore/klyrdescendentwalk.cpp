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
    if (pCount > INT_MAX / 2)
        return pOld;  // LCOV_EXCL_LINE: takes more properties than memory holds
    KLyrDescendentWalk* lWalk = LyrSdkNew<KLyrDescendentWalk>();
    int* lIds = lWalk ? static_cast<int*>(LyrSdkMalloc(2 * pCount * sizeof(int))) : nullptr;
    if (!lIds) {
        LyrSdkDelete(lWalk);
        return pOld;
    }
    for (int i = 0; i < 2; ++i) {
        List& lList = lWalk->mLists[i];
        if (pOld) {
            lList = pOld->mLists[i];
            std::copy_n(lList.mIds, lList.mPage ? lList.mCount : 0, lIds);
        }
        lList.mIds = lIds;
        lIds += pCount;
    }
    if (pOld && pOld->mList != pOld->mLists)
        lWalk->mList = lWalk->mLists + 1;
    lWalk->mCapacity = static_cast<int>(pCount);
    Destroy(pOld);
    return lWalk;
}

void KLyrDescendentWalk::Destroy(KLyrDescendentWalk* pWalk) {
    if (pWalk)
        LyrSdkFree(pWalk->mLists[0].mIds);
    LyrSdkDelete(pWalk);
}

bool KLyrDescendentWalk::TurnTo(const KLyrPropertyPage* pPage, int pAncestorId) {
    for (List& lList : mLists) {
        if (lList.mPage == pPage && lList.mAncestorId == pAncestorId) {
            mList = &lList;
            return true;
        }
    }
    return false;
}

void KLyrDescendentWalk::PageGoes(const KLyrPropertyPage* pPage) {
    for (List& lList : mLists)
        if (lList.mPage == pPage)
            lList.mPage = nullptr;
}

// What is below a property that goes is no descendant any more.
void KLyrDescendentWalk::PropertyRemoved(int pId) {
    for (List& lList : mLists)
        if (lList.mPage && lList.mState != eCandidates &&
            std::binary_search(lList.mIds, lList.mIds + lList.mCount, pId))
            lList.mState = lList.mPage->GetChild(pId) == -1 ? eSomeGone : eCandidates;
}

// The list is its own queue: the children of each id in it are put behind. It takes the place of the one for the same
// ancestor, or else of the one that was not used last.
bool KLyrDescendentWalk::Collect(const KLyrPropertyPage* pPage, int pAncestorId, int pEnd) {
    if (!TurnTo(pPage, pAncestorId))
        mList = &OtherList();
    List& lList = *mList;
    mMisses = 0;
    lList.mPage = nullptr;
    lList.mCount = 0;
    int lParent = pAncestorId;
    for (int lTaken = 0;; lParent = lList.mIds[lTaken++]) {
        for (int lId = pPage->GetChild(lParent); lId != -1 && lId < pEnd; lId = pPage->GetSibling(lId)) {
            if (lList.mCount == mCapacity)
                return false;
            lList.mIds[lList.mCount++] = lId;
        }
        if (lTaken == lList.mCount)
            break;
    }
    std::sort(lList.mIds, lList.mIds + lList.mCount);
    lList.mPage = pPage;
    lList.mAncestorId = pAncestorId;
    lList.mState = eWhole;
    lList.mEnd = pEnd;
    lList.mPosition = 0;
    lList.mGoneFrom = 0;
    lList.mGoneTo = 0;
    return true;
}

bool KLyrDescendentWalk::Has(int pId) const {
    return std::binary_search(mList->mIds, mList->mIds + mList->mCount, pId);
}

bool KLyrDescendentWalk::Take(int pId, bool pIsDescendent) {
    List& lList = *mList;
    if (pIsDescendent) {
        if (lList.mCount == mCapacity)
            return false;
        lList.mPosition = lList.mCount;
        lList.mIds[lList.mCount++] = pId;
    }
    lList.mEnd = pId + 1;
    return true;
}

bool KLyrDescendentWalk::IsDueAfterMiss() {
    const List& lList = OtherList();
    if (mMisses - kFewMisses >= (lList.mPage ? lList.mCount : 0))
        return true;
    ++mMisses;
    return false;
}

int KLyrDescendentWalk::NextBehind(int pId) {
    List& lList = *mList;
    if (lList.mPosition < lList.mCount && lList.mIds[lList.mPosition] == pId)
        ++lList.mPosition;
    else
        lList.mPosition = static_cast<int>(std::upper_bound(lList.mIds, lList.mIds + lList.mCount, pId) - lList.mIds);
    if (lList.mPosition >= lList.mGoneFrom && lList.mPosition < lList.mGoneTo)
        lList.mPosition = lList.mGoneTo;
    return lList.mPosition < lList.mCount ? lList.mIds[lList.mPosition] : -1;
}

void KLyrDescendentWalk::LastIsGone() {
    List& lList = *mList;
    if (lList.mPosition != lList.mGoneTo)
        lList.mGoneFrom = lList.mPosition;
    lList.mGoneTo = lList.mPosition + 1;
}

}  // namespace lyrsdk
