#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

// Connections between properties. A connection belongs to the two pages it was made on: an instance without a
// connection item of its own has none, whatever the page above it is connected to.

namespace lyrsdk {

KLyrPropertyConnect* KLyrPropertyPage::OwnConnect(int pId) const {
    const KLyrPropertyEntry* lEntry = FindOwnEntry(pId);
    return lEntry ? lEntry->Get(static_cast<const KLyrPropertyConnect*>(nullptr)) : nullptr;
}

// For a property that has no connection item of its own; pOwn is its own entry, or null.
KLyrPropertyConnect* KLyrPropertyPage::MakeOwnConnect(int pId, KLyrPropertyEntry* pOwn) {
    KLyrPropertyEntry* lEntry = pOwn ? pOwn : ChangePropertyEntryState(pId, eLyrOverride);
    KLyrPropertyConnect* lConnect = lEntry ? KLyrPropertyConnect::Create(this, pId) : nullptr;
    if (lConnect)
        lEntry->Set(lConnect);
    return lConnect;
}

// Takes back what making the own connection item of pId made.
void KLyrPropertyPage::UndoOwnConnect(int pId, bool pHadEntry, bool pHadConnect) {
    KLyrPropertyEntry* lEntry = pHadConnect ? nullptr : FindOwnEntry(pId);
    if (lEntry)
        lEntry->Set(static_cast<KLyrPropertyConnect*>(nullptr));
    if (!pHadEntry)
        DropIfEmpty(pId);
}

bool KLyrPropertyPage::ConnectSrc(int pDstId, KLyrPropertyPage* pSrcPage, int pSrcId, kLyrConnectionType pType) {
    if (!pSrcPage || (pSrcPage == this && pSrcId == pDstId))
        return false;
    // Each end is looked up once. Only an end that has no item yet takes the longer way.
    KLyrPropertyEntry* lDstEntry = FindOwnEntry(pDstId);
    KLyrPropertyEntry* lSrcEntry = pSrcPage->FindOwnEntry(pSrcId);
    if ((!lDstEntry && !GetPropertyEntry(pDstId)) || (!lSrcEntry && !pSrcPage->GetPropertyEntry(pSrcId)))
        return false;
    const KLyrPropertyConnect* lTag = nullptr;
    KLyrPropertyConnect* lHadDst = lDstEntry ? lDstEntry->Get(lTag) : nullptr;
    KLyrPropertyConnect* lHadSrc = lSrcEntry ? lSrcEntry->Get(lTag) : nullptr;
    KLyrPropertyConnect* lDst = lHadDst ? lHadDst : MakeOwnConnect(pDstId, lDstEntry);
    KLyrPropertyConnect* lSrc = lHadSrc || !lDst ? lHadSrc : pSrcPage->MakeOwnConnect(pSrcId, lSrcEntry);
    if (lDst && lSrc && lDst->ConnectSrc(lSrc, pType))
        return true;
    UndoOwnConnect(pDstId, lDstEntry != nullptr, lHadDst != nullptr);
    pSrcPage->UndoOwnConnect(pSrcId, lSrcEntry != nullptr, lHadSrc != nullptr);
    return false;
}

bool KLyrPropertyPage::ConnectDst(int pSrcId, KLyrPropertyPage* pDstPage, int pDstId, kLyrConnectionType pType) {
    return pDstPage && pDstPage->ConnectSrc(pDstId, this, pSrcId, pType);
}

bool KLyrPropertyPage::DisconnectSrc(int pDstId, KLyrPropertyPage* pSrcPage, int pSrcId) {
    KLyrPropertyConnect* lDst = OwnConnect(pDstId);
    return lDst && pSrcPage && lDst->DisconnectSrc(pSrcPage->OwnConnect(pSrcId));
}

bool KLyrPropertyPage::DisconnectDst(int pSrcId, KLyrPropertyPage* pDstPage, int pDstId) {
    return pDstPage && pDstPage->DisconnectSrc(pDstId, this, pSrcId);
}

bool KLyrPropertyPage::IsConnectedSrc(int pDstId, KLyrPropertyPage* pSrcPage, int pSrcId) const {
    KLyrPropertyConnect* lDst = OwnConnect(pDstId);
    return lDst && pSrcPage && lDst->IsConnectedSrc(pSrcPage->OwnConnect(pSrcId));
}

bool KLyrPropertyPage::IsConnectedDst(int pSrcId, KLyrPropertyPage* pDstPage, int pDstId) const {
    return pDstPage && pDstPage->IsConnectedSrc(pDstId, const_cast<KLyrPropertyPage*>(this), pSrcId);
}

int KLyrPropertyPage::GetSrcCount(int pId, KLyrConnectionPointFilter* pFilter) const {
    KLyrPropertyConnect* lOwn = OwnConnect(pId);
    return lOwn ? lOwn->GetSrcCount(pFilter) : 0;
}

int KLyrPropertyPage::GetDstCount(int pId, KLyrConnectionPointFilter* pFilter) const {
    KLyrPropertyConnect* lOwn = OwnConnect(pId);
    return lOwn ? lOwn->GetDstCount(pFilter) : 0;
}

namespace {

bool Give(const KLyrPropertyConnect* pItem, KLyrPropertyPage** pPage, int* pId) {
    if (!pItem)
        return false;
    if (pPage)
        *pPage = pItem->GetPage();
    if (pId)
        *pId = pItem->GetPropertyId();
    return true;
}

}  // namespace

bool KLyrPropertyPage::GetSrc(int pId, int pIndex, KLyrConnectionPointFilter* pFilter, KLyrPropertyPage** pSrcPage,
                              int* pSrcId) const {
    KLyrPropertyConnect* lOwn = OwnConnect(pId);
    return lOwn && Give(lOwn->GetSrc(pFilter, pIndex), pSrcPage, pSrcId);
}

bool KLyrPropertyPage::GetDst(int pId, int pIndex, KLyrConnectionPointFilter* pFilter, KLyrPropertyPage** pDstPage,
                              int* pDstId) const {
    KLyrPropertyConnect* lOwn = OwnConnect(pId);
    return lOwn && Give(lOwn->GetDst(pFilter, pIndex), pDstPage, pDstId);
}

void KLyrPropertyPage::WipeAllConnections(int pId) {
    if (KLyrPropertyConnect* lItem = GetPropertyItem<KLyrPropertyConnect>(nullptr, pId))
        lItem->WipeAllConnections();
}

void KLyrPropertyPage::ClearConnectCache(int pId) {
    if (KLyrPropertyConnect* lItem = GetPropertyItem<KLyrPropertyConnect>(nullptr, pId))
        lItem->ClearConnectCache();
}

}  // namespace lyrsdk
