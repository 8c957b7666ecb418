#include "lyrfilesdk/lyrkit/klyrboundproperty.h"

#include "lyrfilesdk/lyrkit/klyrsentence.h"

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

KLyrReason lyrWhyRefused(const KLyrBoundProperty& pProperty, const KLyrPropertyHandle& pPage, ELyrType pValueType,
                         ELyrAccess pAccess, const void* pValue) {
    const ELyrBoundState lState = pProperty.GetState(pPage);
    if (lState == eLyrBoundHere)
        return lyrWhyRefused(pProperty.On(pPage), pValueType, pAccess, pValue);
    KLyrReason lReason;
    detail::Sentence lOut(lReason);
    if (lState == eLyrBoundToNothing)
        lOut << "The property is bound to nothing: it was not found when it was bound.";
    else if (!pPage.GetPage())
        lOut << "The handle has no page on which the bound property could be.";
    else if (lState == eLyrBoundElsewhere)
        lOut << "The page is of another family than the bound property.";
    else
        lOut << "The page does not see the bound property of id " << pProperty.GetId()
             << ": it was destroyed, or belongs to another branch of the family.";
    return lReason;
}

}  // namespace lyrsdk
