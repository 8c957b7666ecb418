#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"

namespace lyrsdk {

bool KLyrPropertyHandle::Destroy() {
    if (!mPage)
        return false;
    if (mId == 0) {
        mPage->Destroy();
    } else {
        KLyrPropertyPage* lHolder = nullptr;
        if (!mPage->GetPropertyEntry(mId, &lHolder))
            return false;
        lHolder->RemoveOwnEntry(mId);
    }
    *this = KLyrPropertyHandle();
    return true;
}

bool KLyrPropertyHandle::PushPropertiesToParentInstance() {
    if (!mPage || mId != 0)
        return false;
    mPage->PushPropertiesToParentInstance();
    return true;
}

KLyrPropertyHandle KLyrPropertyHandle::GetSrc(KLyrConnectionPointFilter* pFilter, int pIndex) const {
    KLyrPropertyHandle lSrc;
    if (mPage)
        mPage->GetSrc(mId, pIndex, pFilter, &lSrc.mPage, &lSrc.mId);
    return lSrc;
}

KLyrPropertyHandle KLyrPropertyHandle::GetDst(KLyrConnectionPointFilter* pFilter, int pIndex) const {
    KLyrPropertyHandle lDst;
    if (mPage)
        mPage->GetDst(mId, pIndex, pFilter, &lDst.mPage, &lDst.mId);
    return lDst;
}

void* KLyrPropertyHandle::GetReferenceTo() const {
    const KLyrPropertyPage* lPage = mPage ? mPage->GetInstanceOf() : nullptr;
    return lPage ? lPage->GetDataPtr() : nullptr;
}

void* KLyrPropertyHandle::GetReferencedBy(int pIndex) const {
    const KLyrPropertyPage* lInstance = mPage ? mPage->GetInstances().GetAt(pIndex) : nullptr;
    return lInstance ? lInstance->GetDataPtr() : nullptr;
}

}  // namespace lyrsdk
