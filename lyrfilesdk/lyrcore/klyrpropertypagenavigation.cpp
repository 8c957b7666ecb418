#include <climits>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

// The property tree. It is not stored: each step merges the entries of the chain in id order and looks at parent ids.

namespace lyrsdk {

int KLyrPropertyPage::GetParent(int pId) const {
    const KLyrPropertyEntry* lEntry = GetPropertyEntry(pId);
    return lEntry ? lEntry->GetParentId() : -1;
}

bool KLyrPropertyPage::IsChildOf(int pId, int pParentId) const {
    return GetParent(pId) == pParentId;
}

// Parent ids are stored as given and may run in a circle. A mark is left behind at growing distances; coming back to it
// means that the ancestor is not on the way.
bool KLyrPropertyPage::IsDescendentOf(int pId, int pAncestorId) const {
    if (pAncestorId <= 0)
        return true;
    int lMark = -1;
    unsigned lStepsLeft = 1;
    unsigned lStride = 1;
    for (int lParent = GetParent(pId); lParent != -1; lParent = GetParent(lParent)) {
        if (lParent == pAncestorId)
            return true;
        if (lParent == lMark)
            return false;
        if (--lStepsLeft == 0) {
            lMark = lParent;
            lStride *= 2;
            lStepsLeft = lStride;
        }
    }
    return false;
}

int KLyrPropertyPage::GetMinimumPropertyIdAndEntry(int pId, KLyrPropertyEntry** pEntry) const {
    const int lAbove = pId == -1 ? 0 : pId;
    int lId = -1;
    KLyrPropertyEntry* lEntry = nullptr;
    for (const KLyrPropertyPage* lPage = this; lPage; lPage = lPage->mInstanceOf) {
        const KEntryMap::RecordType* lRecord = lPage->mEntries.UpperBound(lAbove);
        if (lRecord && (lId == -1 || lRecord->GetKey() <= lId)) {
            lId = lRecord->GetKey();
            lEntry = lRecord->GetValue();
        }
    }
    if (pEntry)
        *pEntry = lEntry;
    return lId;
}

int KLyrPropertyPage::GetChild(int pParentId) const {
    if (pParentId == -1)
        return -1;
    KLyrPropertyEntry* lEntry = nullptr;
    int lId = pParentId;
    do
        lId = GetMinimumPropertyIdAndEntry(lId, &lEntry);
    while (lId != -1 && lEntry->GetParentId() != pParentId);
    return lId;
}

int KLyrPropertyPage::GetSibling(int pId) const {
    const int lParent = pId == -1 ? -1 : GetParent(pId);
    if (lParent == -1)
        return -1;
    KLyrPropertyEntry* lEntry = nullptr;
    int lId = pId;
    do
        lId = GetMinimumPropertyIdAndEntry(lId, &lEntry);
    while (lId != -1 && lEntry->GetParentId() != lParent);
    return lId;
}

int KLyrPropertyPage::GetFirstDescendent(int pAnscestorId) const {
    return GetNextDescendent(pAnscestorId, pAnscestorId);
}

int KLyrPropertyPage::GetNextDescendent(int pAnscestorId, int pId) const {
    if (pId == -1)
        return -1;
    KLyrPropertyEntry* lEntry = nullptr;
    int lId = pId;
    do
        lId = GetMinimumPropertyIdAndEntry(lId, &lEntry);
    while (lId != -1 && (lEntry->GetParentId() == -1 || !IsDescendentOf(lId, pAnscestorId)));
    return lId;
}

int KLyrPropertyPage::GetPropertyEntryCount() const {
    int lCount = 0;
    for (const KLyrPropertyPage* lPage = this; lPage; lPage = lPage->mInstanceOf) {
        const KEntryMap::RecordType* lRecord = lPage->mEntries.Maximum();
        if (lRecord && lRecord->GetKey() >= lCount)
            lCount = lRecord->GetKey() == INT_MAX ? INT_MAX : lRecord->GetKey() + 1;
    }
    return lCount;
}

}  // namespace lyrsdk
