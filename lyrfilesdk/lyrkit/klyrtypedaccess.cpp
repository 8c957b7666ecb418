#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"

#include <climits>

#include "lyrfilesdk/lyrcore/klyrpropertyitems.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "lyrfilesdk/lyrkit/klyrconversionverdict.h"

namespace lyrsdk {
namespace detail {

void TextArgument::MakeOnHeap(std::string_view pText) {
    ::new (&mText) KString();
    mIsOnHeap = true;
    mHolds =
        pText.size() <= static_cast<std::size_t>(INT_MAX) && mText.Assign(pText.data(), static_cast<int>(pText.size()));
}

}  // namespace detail

namespace {

enum class Compared { eEqual, eDifferent, eUnknown };

// Whether pItem reads, in type pType, as what stands at pValue. Texts and blobs are copied for it, nothing else takes
// memory; without it the answer is not known.
Compared Compare(const KLyrPropertyValue* pItem, const void* pValue, ELyrType pType) {
    const bool lCopies = pType == eSTRING || pType == eBLOB;
    alignas(std::max_align_t) unsigned char lScratch[kLyrMaxValueSize];
    lyrConstruct(pType, lScratch);
    Compared lResult = Compared::eDifferent;
    if (pItem->Get(lScratch, pType))
        lResult = lyrCompare(pValue, lScratch, pType) ? Compared::eEqual : Compared::eDifferent;
    else if (lCopies && lyrHoldsValue(pItem->GetType()) && !lyrConversionIsRefused(pItem->GetType(), pType))
        lResult = Compared::eUnknown;
    if (lCopies)
        lyrDestruct(pType, lScratch);
    return lResult;
}

}  // namespace

ELyrSetResult lyrSet(const KLyrPropertyHandle& pHandle, const void* pValue, ELyrType pValueType, ELyrSetMode pMode) {
    KLyrPropertyPage* lPage = pHandle.GetPage();
    if (!lPage || !pValue || (pMode != eLyrSetCollapse && pMode != eLyrSetPin))
        return eLyrSetRefused;
    const int lId = pHandle.GetId();
    KLyrPropertyPage* lHolder = nullptr;
    KLyrPropertyValue* lItem = lPage->GetPropertyItem<KLyrPropertyValue>(nullptr, lId, &lHolder);
    if (!lItem)
        return eLyrSetRefused;
    if (!lyrHoldsValue(pValueType)) {
        lItem->Set(pValue, pValueType);  // for its report
        return eLyrSetRefused;
    }

    const bool lOwn = lHolder == lPage;
    if (pMode == eLyrSetCollapse) {
        const KLyrPropertyValue* lInherited = lItem;
        if (lOwn) {
            const KLyrPropertyPage* lParent = lPage->GetInstanceOf();
            lInherited = lParent ? lParent->GetPropertyItem<KLyrPropertyValue>(nullptr, lId) : nullptr;
        }
        const Compared lCompared = lInherited ? Compare(lInherited, pValue, pValueType) : Compared::eDifferent;
        if (lCompared == Compared::eUnknown)
            return eLyrSetRefused;
        if (lCompared == Compared::eEqual) {
            if (lOwn)
                lPage->ChangePropertyItemState<KLyrPropertyValue>(nullptr, lId, eLyrInherit);
            return lOwn ? eLyrSetCollapsed : eLyrSetAlreadySo;
        }
    }
    if (!lOwn)
        lItem = lPage->ChangePropertyItemState<KLyrPropertyValue>(nullptr, lId, eLyrOverride);
    if (lItem && lItem->Set(pValue, pValueType))
        return eLyrSetWritten;
    if (lItem && !lOwn)
        lPage->ChangePropertyItemState<KLyrPropertyValue>(nullptr, lId, eLyrInherit);
    return eLyrSetRefused;
}

}  // namespace lyrsdk
