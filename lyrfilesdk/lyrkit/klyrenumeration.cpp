#include "lyrfilesdk/lyrkit/klyrenumeration.h"

#include "lyrfilesdk/lyrcore/klyrpropertyitems.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "lyrfilesdk/lyrkit/klyrpropertyranges.h"

namespace lyrsdk {
namespace {

// The index that the page itself stores for the property, when it sees the given description.
KLyrPropertyValue* OwnIndex(const KLyrPropertyHandle& pHandle, const KLyrPropertyInfo* pInfo, int& pIndex) {
    const KLyrPropertyPage* lPage = pHandle.GetPage();
    KLyrPropertyPage* lHolder = nullptr;
    KLyrPropertyValue* lItem = lPage->GetPropertyItem<KLyrPropertyValue>(nullptr, pHandle.GetId(), &lHolder);
    const bool lIsOwn = lItem && lHolder == lPage && lItem->GetType() == eENUM;
    const bool lIsMeant = lIsOwn && lPage->GetPropertyItem<KLyrPropertyInfo>(nullptr, pHandle.GetId()) == pInfo;
    return lIsMeant && lItem->Get(&pIndex, eENUM) ? lItem : nullptr;
}

int RemapOwn(const KLyrPropertyHandle& pHandle, const KLyrPropertyInfo* pInfo, detail::IndexMap pMap, void* pContext) {
    int lIndex = 0;
    KLyrPropertyValue* lItem = OwnIndex(pHandle, pInfo, lIndex);
    const int lMapped = lItem ? pMap(lIndex, pContext) : lIndex;
    return lMapped != lIndex && lItem->Set(&lMapped, eENUM) ? 1 : 0;
}

}  // namespace

int lyrFindEnumIndex(const KLyrPropertyHandle& pHandle, std::string_view pText) {
    for (int i = 0; i < pHandle.GetEnumCount(); ++i)
        if (pText == pHandle.GetEnumValue(i))
            return i;
    return -1;
}

const char* lyrGetEnumText(const KLyrPropertyHandle& pHandle) {
    int lIndex = -1;
    const bool lIsThere = pHandle.GetType() == eENUM && pHandle.Get(&lIndex, eENUM);
    return lIsThere && lIndex >= 0 && lIndex < pHandle.GetEnumCount() ? pHandle.GetEnumValue(lIndex) : nullptr;
}

ELyrSetResult lyrSetEnumText(const KLyrPropertyHandle& pHandle, std::string_view pText, ELyrSetMode pMode) {
    const int lIndex = lyrFindEnumIndex(pHandle, pText);
    return lIndex >= 0 ? lyrSet(pHandle, &lIndex, eENUM, pMode) : eLyrSetRefused;
}

// The property comes from the page farthest up that describes it; nobody above or beside can store a value of it.
int detail::RemapEnum(const KLyrPropertyHandle& pHandle, IndexMap pMap, void* pContext) {
    if (pHandle.GetType() != eENUM)
        return -1;
    const KLyrPropertyPage* lPage = pHandle.GetPage();
    const int lId = pHandle.GetId();
    const KLyrPropertyInfo* lInfo = lPage->GetPropertyItem<KLyrPropertyInfo>(nullptr, lId);
    const KLyrPropertyHandle lTop(lPage->GetFirstPropertyItem<KLyrPropertyInfo>(lId, nullptr), lId);
    int lPages = RemapOwn(lTop, lInfo, pMap, pContext);
    for (const KLyrPropertyHandle& lInstance : lyrAllInstances(lTop))
        lPages += RemapOwn(lInstance, lInfo, pMap, pContext);
    return lPages;
}

int lyrInsertEnumText(const KLyrPropertyHandle& pHandle, int pIndex, const char* pText) {
    const int lCount = pHandle.GetEnumCount();
    const std::string_view lText = pText ? std::string_view(pText) : std::string_view();
    if (pHandle.GetType() != eENUM || pIndex < 0 || pIndex > lCount || lyrFindEnumIndex(pHandle, lText) >= 0)
        return -1;
    KLyrPropertyHandle lHandle = pHandle;
    lHandle.InsertEnumValue(pIndex, pText);
    if (lHandle.GetEnumCount() == lCount)
        return -1;
    return lyrRemapEnum(pHandle,
                        [pIndex, lCount](int pOld) { return pOld >= pIndex && pOld < lCount ? pOld + 1 : pOld; });
}

int lyrRemoveEnumText(const KLyrPropertyHandle& pHandle, int pIndex, int pReplacement) {
    const int lCount = pHandle.GetEnumCount();
    if (pHandle.GetType() != eENUM || pIndex < 0 || pIndex >= lCount)
        return -1;
    KLyrPropertyHandle lHandle = pHandle;
    lHandle.RemoveEnumValue(pIndex);
    return lyrRemapEnum(pHandle, [=](int pOld) {
        const bool lMoves = pOld > pIndex && pOld < lCount;
        return pOld == pIndex ? pReplacement : lMoves ? pOld - 1 : pOld;
    });
}

}  // namespace lyrsdk
