#include "lyrfilesdk/lyrkit/klyrboundproperty.h"

namespace lyrsdk {

KLyrBoundProperty::KLyrBoundProperty(const KLyrPropertyHandle& pProperty) {
    const KLyrPropertyPage* lPage = pProperty.GetPage();
    if (!lPage || !lPage->GetPropertyEntry(pProperty.GetId()))
        return;
    mFamily = lPage->GetIdGenerator();
    mFamily->IncRef();
    mId = pProperty.GetId();
}

KLyrBoundProperty::KLyrBoundProperty(const KLyrBoundProperty& pOther) : mFamily(pOther.mFamily), mId(pOther.mId) {
    if (mFamily)
        mFamily->IncRef();
}

// The new reference is taken before the old one is given back: they may be the same.
KLyrBoundProperty& KLyrBoundProperty::operator=(const KLyrBoundProperty& pOther) {
    if (pOther.mFamily)
        pOther.mFamily->IncRef();
    KLyrPropertyIdGenerator* lFamily = pOther.mFamily;
    const int lId = pOther.mId;
    Release();
    mFamily = lFamily;
    mId = lId;
    return *this;
}

void KLyrBoundProperty::Release() {
    if (mFamily)
        mFamily->DecRef();
    mFamily = nullptr;
    mId = -1;
}

// The counter is kept, so that no other family can come to have one at its address.
ELyrBoundState KLyrBoundProperty::GetState(const KLyrPropertyHandle& pPage) const {
    const KLyrPropertyPage* lPage = pPage.GetPage();
    if (!mFamily)
        return eLyrBoundToNothing;
    if (!lPage || lPage->GetIdGenerator() != mFamily)
        return eLyrBoundElsewhere;
    return lPage->GetPropertyEntry(mId) ? eLyrBoundHere : eLyrBoundGone;
}

}  // namespace lyrsdk
