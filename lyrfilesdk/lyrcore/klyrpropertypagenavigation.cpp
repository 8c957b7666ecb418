#include <algorithm>
#include <climits>

#include "lyrfilesdk/lyrcore/klyrdescendentwalk.h"
#include "lyrfilesdk/lyrcore/klyrpropertyindex.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

// The property tree. An entry knows its parent only; each step merges what the pages of the chain find among their own
// entries, a large page with its index, a small one by looking at them all.

namespace lyrsdk {
namespace {

// What is looked through before the family's walk is asked.
constexpr int kFewSteps = 32;

}  // namespace

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
        // Most often it is the very next id.
        if (KLyrPropertyEntry* lNext = lAbove < INT_MAX ? lPage->FindInTable(lAbove + 1) : nullptr) {
            lId = lAbove + 1;
            lEntry = lNext;
            continue;
        }
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

// The smallest id above pAfter of pParentId's children among this page's own entries, or -1.
int KLyrPropertyPage::NextOwnChild(int pParentId, int pAfter) const {
    if (const KLyrPropertyIndex* lIndex = GetIndex())
        return lIndex->NextChild(pParentId, pAfter);
    const KEntryMap::RecordType* lRecord = mEntries.UpperBound(pAfter);
    while (lRecord && lRecord->GetValue()->GetParentId() != pParentId)
        lRecord = lRecord->Successor();
    return lRecord ? lRecord->GetKey() : -1;
}

namespace {

// -1 stands for no id.
int Smaller(int pLeft, int pRight) {
    return pLeft == -1 || (pRight != -1 && pRight < pLeft) ? pRight : pLeft;
}

}  // namespace

// All entries of a family that have one id have one parent, so that it does not matter which of them is seen.
int KLyrPropertyPage::GetChild(int pParentId) const {
    int lId = -1;
    for (const KLyrPropertyPage* lPage = this; lPage && pParentId != -1; lPage = lPage->mInstanceOf) {
        const KLyrPropertyEntry* lParent = lPage->GetIndex() ? lPage->FindOwnEntry(pParentId) : nullptr;
        lId =
            Smaller(lId, lParent ? KLyrPropertyIndex::FirstChild(lParent) : lPage->NextOwnChild(pParentId, pParentId));
    }
    return lId;
}

int KLyrPropertyPage::GetSibling(int pId) const {
    KLyrPropertyPage* lHolder = nullptr;
    const KLyrPropertyEntry* lEntry = GetPropertyEntry(pId, &lHolder);
    const int lParent = lEntry ? lEntry->GetParentId() : -1;
    if (lParent == -1)
        return -1;
    int lId = -1;
    for (const KLyrPropertyPage* lPage = this; lPage; lPage = lPage->mInstanceOf)
        lId = Smaller(lId, lPage == lHolder && lPage->GetIndex() ? KLyrPropertyIndex::NextSibling(lEntry)
                                                                 : lPage->NextOwnChild(lParent, pId));
    return lId;
}

int KLyrPropertyPage::GetFirstDescendent(int pAnscestorId) const {
    return GetNextDescendent(pAnscestorId, pAnscestorId);
}

// Most often one of the next ids is a descendant, close below its ancestor. Once they are collected, the family's walk
// is asked first.
int KLyrPropertyPage::GetNextDescendent(int pAnscestorId, int pId) const {
    if (pId == -1)
        return -1;
    KLyrDescendentWalk* lWalk = WalkFor(pAnscestorId);
    if (!lWalk)
        return NextDescendentByScan(pAnscestorId, pId);
    for (int lId = pId; !IsCollected(pAnscestorId);) {
        lId = GetMinimumPropertyIdAndEntry(lId);
        const EAscent lAscent = lId == -1 ? eArrived : Ascend(lId, pAnscestorId);
        if (lAscent == eArrived)
            return lId;
        const bool lIsDue = lAscent == eTooFar || lWalk->IsDueAfterMiss();
        if (lIsDue && !lWalk->Collect(this, pAnscestorId, EndOfIds()))
            return NextDescendentByScan(pAnscestorId, pId);
    }
    return NextCollected(pAnscestorId, pId);
}

// The next one among the descendants that were collected.
int KLyrPropertyPage::NextCollected(int pAncestorId, int pId) const {
    KLyrDescendentWalk* lWalk = mIdGenerator->mWalk;
    int lId = lWalk->NextBehind(pId);
    while (lId != -1 && !lWalk->IsWhole()) {
        const bool lIsThere = GetPropertyEntry(lId) != nullptr;
        const EAscent lAscent = !lIsThere ? eMissed : lWalk->IsExact() ? eArrived : Ascend(lId, pAncestorId);
        if (lAscent == eArrived)
            return lId;
        if (lAscent == eMissed)
            lWalk->LastIsGone();
        else if (!lWalk->Collect(this, pAncestorId, lWalk->GetEnd()))
            return NextDescendentByScan(pAncestorId, pId);  // LCOV_EXCL_LINE: there was room for more of them
        lId = lWalk->NextBehind(pId);
    }
    return lId != -1 ? lId : NextAdded(pAncestorId, pId);
}

// The same among the properties that were added since. Each of them is looked at once, and its parent tells: that one
// has a smaller id.
int KLyrPropertyPage::NextAdded(int pAncestorId, int pId) const {
    KLyrDescendentWalk* lWalk = mIdGenerator->mWalk;
    if (!lWalk->IsExact() && lWalk->GetEnd() < EndOfIds()) {
        if (!lWalk->Collect(this, pAncestorId, EndOfIds()))
            return NextDescendentByScan(pAncestorId, pId);
        const int lId = lWalk->NextBehind(pId);
        if (lId != -1)
            return lId;
    }
    KLyrPropertyEntry* lEntry = nullptr;
    for (int lId; (lId = GetMinimumPropertyIdAndEntry(lWalk->GetEnd() - 1, &lEntry)) != -1;) {
        const int lParent = lEntry->GetParentId();
        const bool lIsBelow = lParent == pAncestorId || (lWalk->Has(lParent) && GetPropertyEntry(lParent));
        if (lId == INT_MAX || !lWalk->Take(lId, lIsBelow))
            return NextDescendentByScan(pAncestorId, std::max(pId, lWalk->GetEnd() - 1));
        if (lIsBelow && lId > pId)
            return lId;
    }
    return -1;
}

int KLyrPropertyPage::NextDescendentByScan(int pAnscestorId, int pId) const {
    KLyrPropertyEntry* lEntry = nullptr;
    int lId = pId;
    do
        lId = GetMinimumPropertyIdAndEntry(lId, &lEntry);
    while (lId != -1 && (lEntry->GetParentId() == -1 || !IsDescendentOf(lId, pAnscestorId)));
    return lId;
}

// Looks for an ancestor that is not far up, where no parent has a larger id than its children.
KLyrPropertyPage::EAscent KLyrPropertyPage::Ascend(int pId, int pAncestorId) const {
    for (int i = 0; i < kFewSteps; ++i) {
        pId = GetParent(pId);
        if (pId == pAncestorId)
            return eArrived;
        if (pId < pAncestorId)
            return eMissed;
    }
    return eTooFar;
}

// The family's walk; null when all are below pAncestorId, when parents may have larger ids than their children, and for
// want of memory.
KLyrDescendentWalk* KLyrPropertyPage::WalkFor(int pAncestorId) const {
    return pAncestorId > 0 && !mIdGenerator->mHasOddParents ? mIdGenerator->mWalk : nullptr;
}

// Whether the family's walk has the descendants of pAncestorId, with not too many new properties behind them.
bool KLyrPropertyPage::IsCollected(int pAncestorId) const {
    KLyrDescendentWalk* lWalk = mIdGenerator->mWalk;
    return lWalk->TurnTo(this, pAncestorId) && EndOfIds() - lWalk->GetEnd() <= lWalk->GetCount() + kFewSteps;
}

// All ids that were handed out are below it, but for the very last one.
int KLyrPropertyPage::EndOfIds() const {
    return mIdGenerator->mNextId < 0 ? INT_MAX : mIdGenerator->mNextId;
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
