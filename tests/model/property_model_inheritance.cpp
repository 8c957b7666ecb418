// States of items and entries, flags, and pushing to the parent.

#include "tests/model/property_model.h"

namespace lyrmodel {

void Entry::ModifyFlags(unsigned pFlags, bool pValue) {
    // Bits above the flags fall into the mask half.
    unsigned lData = mMask << 16 | mFlags;
    lData |= pFlags << 16;
    lData = pValue ? lData | pFlags : lData & ~pFlags;
    mFlags = lData & 0xFFFF;
    mMask = lData >> 16;
}

// True when the page then holds an entry, or held one when it was asked to override.
bool Page::ChangeEntryState(int pId, int pState) {
    const Found lFound = GetEntry(pId);
    if (!lFound)
        return false;
    if (pState == kOverride) {
        if (lFound.mPage != this)
            mEntries[pId].mParent = lFound.mEntry->mParent;
        return true;
    }
    if ((pState == kInherit || pState == kDeleted) && lFound.mPage == this)
        mEntries.erase(pId);
    return false;
}

// True when an override leaves the page with its own item.
bool Page::ChangeItemState(Item pItem, int pId, int pState) {
    const Found lFound = GetItem(pItem, pId);
    if (!lFound)
        return false;
    if (pState == kOverride) {
        if (lFound.mPage == this)
            return true;
        ChangeEntryState(pId, kOverride);
        Entry& lOwn = *Own(pId);
        if (pItem == Item::eValue)
            lOwn.mValue = std::make_shared<Value>(*lFound.mEntry->mValue);
        if (pItem == Item::eInfo) {
            const Info& lInfo = *lFound.mEntry->mInfo;
            lOwn.mInfo = std::make_shared<Info>();
            lOwn.mInfo->mName = lInfo.mName;
            lOwn.mInfo->mType = lInfo.mType;
            lOwn.mInfo->mTypeInfo = lInfo.mTypeInfo;
        }
        return true;
    }
    const bool lToInherit = pState == kInherit && mInstanceOf && mInstanceOf->GetItem(pItem, pId);
    if ((!lToInherit && pState != kDeleted) || lFound.mPage != this)
        return false;
    Entry& lOwn = *lFound.mEntry;
    if (pItem == Item::eInfo)
        lOwn.mInfo = nullptr;
    else if (pItem == Item::eValue)
        lOwn.mValue = nullptr;
    else
        lOwn.mFlags = lOwn.mMask = 0;
    if (lOwn.IsEmpty())
        mEntries.erase(pId);
    return false;
}

int Page::GetValueInherit(int pId, bool pCheck) {
    const Found lFound = GetItem(Item::eValue, pId);
    if (!lFound)
        return kInherit;
    if (lFound.mPage == this)
        return kOverride;
    Page* lAbove = lFound.mPage->mInstanceOf;
    return pCheck && lAbove && lAbove->GetItem(Item::eValue, pId) ? kOverride : kInherit;
}

bool Page::SetValueInherit(int pId, int pState) {
    if (pState != kOverride && pState != kInherit)
        return false;
    ChangeItemState(Item::eValue, pId, pState);
    return GetValueInherit(pId, false) == pState;
}

unsigned Page::GetFlags(int pId) {
    const Entry* lOwn = Own(pId);
    const unsigned lInherited = mInstanceOf ? mInstanceOf->GetFlags(pId) : 0;
    return lOwn ? (lInherited & ~lOwn->mMask) | lOwn->mFlags : lInherited;
}

int Page::GetFlagsInheritType(unsigned pFlags, bool pCheck, int pId) {
    const Found lFound = GetEntry(pId);
    const Entry* lOwn = Own(pId);
    if (lOwn && (lOwn->mMask & pFlags))
        return kOverride;
    if (!pCheck)
        return kInherit;
    int lSeen = 0;
    for (Page* lPage = lFound.mPage; lPage; lPage = lPage->mInstanceOf) {
        const Found lAbove = lPage->GetEntry(pId);
        if (!lAbove)
            return kInherit;
        if ((lAbove.mEntry->mMask & pFlags) && ++lSeen == 2)
            return kOverride;
    }
    return kInherit;
}

// Takes the mask bits away. What stays visible is the parent's, if it knows the property.
void Page::HandFlagsBack(int pId, unsigned pFlags) {
    Entry& lOwn = *Own(pId);
    lOwn.mMask &= ~pFlags;
    if (mInstanceOf && mInstanceOf->GetEntry(pId) && mWorld.mFault != Fault::eHandedBackFlagsStay)
        lOwn.mFlags &= ~pFlags;
    if (lOwn.mMask == 0)
        ChangeItemState(Item::eFlags, pId, kInherit);
}

// An entry that was made for flags goes again when it came to hold nothing.
void Page::DropWhatIsEmpty(const Found& pBefore, int pId) {
    if (pBefore.mPage != this && Own(pId)->IsEmpty())
        mEntries.erase(pId);
}

bool Page::SetFlagsInheritType(int pState, unsigned pFlags, int pId) {
    const Found lFound = GetEntry(pId);
    if (!lFound || (pState != kOverride && pState != kInherit))
        return false;
    if (pState == kInherit) {
        if (lFound.mPage == this)
            HandFlagsBack(pId, pFlags);
        return true;
    }
    if (!mInstanceOf || !mInstanceOf->GetEntry(pId))
        return false;
    ChangeItemState(Item::eFlags, pId, kOverride);
    Entry& lOwn = *Own(pId);
    lOwn.mFlags = ((lOwn.mFlags & ~pFlags) | mInstanceOf->GetFlags(pId)) & 0xFFFF;
    lOwn.mMask |= pFlags & 0xFFFF;
    DropWhatIsEmpty(lFound, pId);
    return true;
}

bool Page::ModifyFlags(int pId, unsigned pFlags, bool pValue, bool pCheck) {
    const Found lFound = GetEntry(pId);
    if (!lFound)
        return false;
    if (pCheck && lFound.mPage != this && (lFound.mPage->GetFlags(pId) & pFlags) == (pFlags & 0xFFFF))
        return true;
    ChangeItemState(Item::eFlags, pId, kOverride);
    Entry& lOwn = *Own(pId);
    lOwn.ModifyFlags(pFlags, pValue);
    const bool lOwnBefore = pCheck && lFound.mPage == this;
    if (lOwnBefore && mInstanceOf && mInstanceOf->GetEntry(pId) &&
        (mInstanceOf->GetFlags(pId) & pFlags) == (lOwn.mFlags & pFlags))
        HandFlagsBack(pId, pFlags);
    else
        DropWhatIsEmpty(lFound, pId);
    return true;
}

void Page::Push(const std::set<int>& pKept) {
    if (!mInstanceOf)
        return;
    for (int lId : VisibleIds()) {
        Entry* lOwn = Own(lId);
        if (!lOwn || pKept.count(lId))
            continue;
        if (lOwn->IsPushed())
            PushEntry(lId, *lOwn);
        for (Item lItem : {Item::eInfo, Item::eValue, Item::eFlags})
            ChangeItemState(lItem, lId, kInherit);
    }
}

// What the entry holds goes over what the parent has.
void Page::PushEntry(int pId, const Entry& pOwn) {
    if (!mInstanceOf->ChangeEntryState(pId, kOverride))
        mInstanceOf->mEntries[pId].mParent = pOwn.mParent;
    Entry& lAbove = *mInstanceOf->Own(pId);
    if (pOwn.mInfo)
        lAbove.mInfo = pOwn.mInfo;
    if (pOwn.mValue)
        lAbove.mValue = pOwn.mValue;
    const unsigned lKept = mWorld.mFault == Fault::ePushReplacesFlags ? 0 : ~0u;
    lAbove.mFlags = (lAbove.mFlags & lKept & ~pOwn.mMask) | pOwn.mFlags;
    lAbove.mMask = (lAbove.mMask & lKept) | pOwn.mMask;
}

}  // namespace lyrmodel
