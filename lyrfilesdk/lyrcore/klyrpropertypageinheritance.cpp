#include "lyrfilesdk/components/kbaselib/klib/kassert.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

// Which page holds an item: override, inherit, push to the parent. "Parent" is the page that this one is an instance
// of.

namespace lyrsdk {
namespace {

// A default value of some type on the stack, for comparisons that must not allocate.
class ScratchValue {
public:
    // cppcheck-suppress uninitMemberVar ; the bytes are the value's, which constructs itself in them
    explicit ScratchValue(ELyrType pType) : mType(pType), mHolds(lyrConstruct(pType, mBytes)) {}
    ~ScratchValue() {
        if (mHolds)
            lyrDestruct(mType, mBytes);
    }
    ScratchValue(const ScratchValue&) = delete;
    ScratchValue& operator=(const ScratchValue&) = delete;

    // Whether pItem reads, in this type, as what stands at pValue.
    bool ReadsAs(const KLyrPropertyValue* pItem, const void* pValue) {
        return mHolds && pItem->Get(mBytes, mType) && lyrCompare(pValue, mBytes, mType);
    }

private:
    alignas(std::max_align_t) unsigned char mBytes[kLyrMaxValueSize];
    ELyrType mType;
    bool mHolds;
};

}  // namespace

// --- entries and items ---------------------------------------------------------------------------------------------

KLyrPropertyEntry* KLyrPropertyPage::ChangePropertyEntryState(int pId, KLyrInheritType pInheritType) {
    if (pInheritType == eLyrOverride) {
        KLyrPropertyPage* lHolder = nullptr;
        KLyrPropertyEntry* lEntry = GetPropertyEntry(pId, &lHolder);
        return !lEntry || lHolder == this ? lEntry : InsertOwnEntry(pId, lEntry->GetParentId());
    }
    if (pInheritType == eLyrInherit || pInheritType == eLyrDeleted)
        RemoveOwnEntry(pId);
    return nullptr;
}

namespace {

// Gives pEntry a copy of pItem for pPage. Null when there is no memory.
template <typename T>
T* SetClone(KLyrPropertyEntry* pEntry, const T* pItem, KLyrPropertyPage* pPage) {
    T* lClone = pItem->Clone(pPage);
    if (lClone)
        pEntry->Set(lClone);
    return lClone;
}

KLyrPropertyFlags* SetClone(KLyrPropertyEntry* pEntry, const KLyrPropertyFlags* pItem, KLyrPropertyPage* pPage) {
    pEntry->Set(pItem->Clone(pPage));
    return pEntry->Get(static_cast<const KLyrPropertyFlags*>(nullptr));
}

}  // namespace

template <typename T>
T* KLyrPropertyPage::ChangePropertyItemState(const T* pItemTag, int pId, KLyrInheritType pInheritType) {
    KLyrPropertyPage* lHolder = nullptr;
    T* lItem = GetPropertyItem<T>(pItemTag, pId, &lHolder);
    if (pInheritType == eLyrOverride) {
        if (!lItem || lHolder == this)
            return lItem;
        const bool lHadEntry = FindOwnEntry(pId) != nullptr;
        KLyrPropertyEntry* lEntry = ChangePropertyEntryState(pId, eLyrOverride);
        T* lOwn = lEntry ? SetClone(lEntry, lItem, this) : nullptr;
        if (!lOwn && !lHadEntry)
            DropIfEmpty(pId);
        return lOwn;
    }

    const bool lDrops = pInheritType == eLyrDeleted ||
                        (pInheritType == eLyrInherit && mInstanceOf && mInstanceOf->GetPropertyItem<T>(pItemTag, pId));
    if (lDrops && lItem && lHolder == this) {
        KLyrPropertyEntry* lEntry = FindOwnEntry(pId);
        lEntry->Set(static_cast<T*>(nullptr));
        if (lEntry->IsEmpty())
            ChangePropertyEntryState(pId, eLyrInherit);
    }
    return nullptr;
}

template LYRSDK_API KLyrPropertyInfo* KLyrPropertyPage::ChangePropertyItemState(const KLyrPropertyInfo*, int,
                                                                                KLyrInheritType);
template LYRSDK_API KLyrPropertyValue* KLyrPropertyPage::ChangePropertyItemState(const KLyrPropertyValue*, int,
                                                                                 KLyrInheritType);
template LYRSDK_API KLyrPropertyFlags* KLyrPropertyPage::ChangePropertyItemState(const KLyrPropertyFlags*, int,
                                                                                 KLyrInheritType);

// An entry of an instance that came to hold nothing goes; the parent's shows again.
void KLyrPropertyPage::DropIfEmpty(int pId) {
    const KLyrPropertyEntry* lEntry = FindOwnEntry(pId);
    if (lEntry && lEntry->IsEmpty() && Inherits(pId))
        RemoveOwnEntry(pId);
}

// --- values --------------------------------------------------------------------------------------------------------

bool KLyrPropertyPage::Set(int pId, const void* pValue, ELyrType pValueType, bool pCheckValueEquality) {
    KLyrPropertyPage* lHolder = nullptr;
    KLyrPropertyValue* lItem = GetPropertyItem<KLyrPropertyValue>(nullptr, pId, &lHolder);
    if (!lItem || !pValue)
        return false;
    // A code that stands for no value is reported by the item and must not leave an own copy behind.
    if (!lyrHoldsValue(pValueType))
        return lItem->Set(pValue, pValueType);

    if (pCheckValueEquality) {
        const bool lOwn = lHolder == this;
        const KLyrPropertyValue* lInherited = lItem;
        if (lOwn)
            lInherited = mInstanceOf ? mInstanceOf->GetPropertyItem<KLyrPropertyValue>(nullptr, pId) : nullptr;
        if (lInherited && ScratchValue(pValueType).ReadsAs(lInherited, pValue)) {
            if (lOwn)
                ChangePropertyItemState<KLyrPropertyValue>(nullptr, pId, eLyrInherit);
            return lOwn;
        }
    }
    if (lHolder != this)
        lItem = ChangePropertyItemState<KLyrPropertyValue>(nullptr, pId, eLyrOverride);
    return lItem && lItem->Set(pValue, pValueType);
}

KLyrInheritType KLyrPropertyPage::GetValueInherit(int pId, bool pCheckInstanceOf) const {
    KLyrPropertyPage* lHolder = nullptr;
    GetPropertyItem<KLyrPropertyValue>(nullptr, pId, &lHolder);
    if (lHolder == this)
        return eLyrOverride;
    if (!pCheckInstanceOf || !lHolder || !lHolder->mInstanceOf)
        return eLyrInherit;
    return lHolder->mInstanceOf->GetPropertyItem<KLyrPropertyValue>(nullptr, pId) ? eLyrOverride : eLyrInherit;
}

bool KLyrPropertyPage::SetValueInherit(int pId, KLyrInheritType pType) {
    if (pType != eLyrOverride && pType != eLyrInherit)
        return false;
    ChangePropertyItemState<KLyrPropertyValue>(nullptr, pId, pType);
    return GetValueInherit(pId, false) == pType;
}

// --- flags ---------------------------------------------------------------------------------------------------------

// From this page upward, so that a long chain needs no stack: what a page below sets hides what comes from above.
KLyrPropertyPage::eLyrPropertyFlags KLyrPropertyPage::GetFlags(int pId) const {
    unsigned lFlags = 0;
    unsigned lHidden = 0;
    for (const KLyrPropertyPage* lPage = this; lPage; lPage = lPage->mInstanceOf) {
        if (KLyrPropertyEntry* lEntry = lPage->FindOwnEntry(pId)) {
            const KLyrPropertyFlags* lItem = lEntry->Get(static_cast<const KLyrPropertyFlags*>(nullptr));
            lFlags |= lItem->GetFlags() & ~lHidden;
            lHidden |= lItem->GetMask();
        }
    }
    return static_cast<eLyrPropertyFlags>(lFlags);
}

// With the check, every page from the one found upward is asked for the flags item that it sees. Pages without an entry
// see the next one above, which is therefore looked up once for all of them.
KLyrInheritType KLyrPropertyPage::GetFlagsInheritType(eLyrPropertyFlags pFlags, bool pCheckInstanceOf, int pId) const {
    KLyrPropertyPage* lHolder = nullptr;
    const KLyrPropertyFlags* lItem = GetPropertyItem<KLyrPropertyFlags>(nullptr, pId, &lHolder);
    if (!pCheckInstanceOf)
        return lItem && lHolder == this ? lItem->GetFlagsInheritType(pFlags) : eLyrInherit;

    bool lSeen = false;
    for (const KLyrPropertyPage* lPage = lHolder; lPage; lPage = lPage->mInstanceOf) {
        if (!lItem)
            lItem = lPage->GetPropertyItem<KLyrPropertyFlags>(nullptr, pId, &lHolder);
        if (!lItem)
            return eLyrInherit;
        if (lItem->GetFlagsInheritType(pFlags) == eLyrOverride) {
            if (lPage == this || lSeen)
                return eLyrOverride;
            lSeen = true;
        }
        if (lPage == lHolder)
            lItem = nullptr;
    }
    return eLyrInherit;
}

// Takes the mark "set here" from flags, and with it what was set, so that the parent's bits show.
void KLyrPropertyPage::PutFlagsBack(int pId, KLyrPropertyFlags* pItem, eLyrPropertyFlags pFlags) {
    if (Inherits(pId))
        pItem->SetFlags(pFlags, 0);
    pItem->UnsetMask(pFlags);
    if (pItem->GetMask() == 0)
        ChangePropertyItemState<KLyrPropertyFlags>(nullptr, pId, eLyrInherit);
}

bool KLyrPropertyPage::SetFlagsInheritType(KLyrInheritType pType, eLyrPropertyFlags pFlags, int pId) {
    if (pType == eLyrOverride) {
        if (!Inherits(pId))
            return false;
        const bool lHadEntry = FindOwnEntry(pId) != nullptr;
        KLyrPropertyFlags* lOwn = ChangePropertyItemState<KLyrPropertyFlags>(nullptr, pId, eLyrOverride);
        if (!lOwn)
            return false;
        lOwn->SetFlags(pFlags, mInstanceOf->GetFlags(pId));
        if (!lHadEntry)
            DropIfEmpty(pId);
        return true;
    }
    if (pType != eLyrInherit)
        return false;
    KLyrPropertyPage* lHolder = nullptr;
    KLyrPropertyFlags* lItem = GetPropertyItem<KLyrPropertyFlags>(nullptr, pId, &lHolder);
    if (lItem && lHolder == this)
        PutFlagsBack(pId, lItem, pFlags);
    return lItem != nullptr;
}

bool KLyrPropertyPage::ModifyFlags(int pId, eLyrPropertyFlags pFlags, bool pValue, bool pCheckFlagEquality) {
    KLyrPropertyPage* lHolder = nullptr;
    KLyrPropertyFlags* lItem = GetPropertyItem<KLyrPropertyFlags>(nullptr, pId, &lHolder);
    if (pCheckFlagEquality && lItem && lHolder == this) {
        lItem->ModifyFlags(pFlags, pValue);
        const bool lInherits = Inherits(pId);
        if (lInherits && ((mInstanceOf->GetFlags(pId) ^ lItem->GetFlags()) & pFlags) == 0) {
            PutFlagsBack(pId, lItem, pFlags);
            return true;
        }
    } else if (pCheckFlagEquality && lItem && (lHolder->GetFlags(pId) & pFlags) == (pFlags & 0xFFFFu)) {
        return true;
    }
    KLyrPropertyFlags* lOwn = ChangePropertyItemState<KLyrPropertyFlags>(nullptr, pId, eLyrOverride);
    if (!lOwn)
        return false;
    lOwn->ModifyFlags(pFlags, pValue);
    if (lHolder != this)
        DropIfEmpty(pId);
    return true;
}

// --- push ----------------------------------------------------------------------------------------------------------

// A parent that was destroyed and only lives on for its instances takes nothing: they are to read the same.
void KLyrPropertyPage::PushPropertiesToParentInstance() {
    if (!mInstanceOf || mInstanceOf->mDestroyPending)
        return;
    for (const KEntryMap::RecordType* lRecord = mEntries.UpperBound(-1); lRecord;) {
        const int lId = lRecord->GetKey();
        PushEntry(lId, lRecord->GetValue());
        lRecord = mEntries.UpperBound(lId);
    }
}

// Moves what pEntry holds itself. What it does not hold stays in the parent as it was; flags that are set here are laid
// over the parent's own.
void KLyrPropertyPage::PushEntry(int pId, KLyrPropertyEntry* pEntry) {
    KLyrPropertyInfo* lInfo = pEntry->Get(static_cast<const KLyrPropertyInfo*>(nullptr));
    KLyrPropertyValue* lValue = pEntry->Get(static_cast<const KLyrPropertyValue*>(nullptr));
    const KLyrPropertyFlags lFlags = *pEntry->Get(static_cast<const KLyrPropertyFlags*>(nullptr));
    if (!lInfo && !lValue && lFlags.GetMask() == 0 && lFlags.GetFlags() == 0) {
        DropIfEmpty(pId);
        return;
    }

    KLyrPropertyEntry* lParentEntry = mInstanceOf->ChangePropertyEntryState(pId, eLyrOverride);
    if (!lParentEntry)
        lParentEntry = mInstanceOf->InsertOwnEntry(pId, pEntry->GetParentId());
    LYRSDK_CHECK(lParentEntry, "lyrfilesdk/lyrcore/klyrpropertypage", 1745, "lParentEntry");
    if (!lParentEntry)
        return;

    if (lInfo)
        lParentEntry->Set(lInfo);
    if (lValue)
        lParentEntry->Set(lValue);
    lParentEntry->Get(static_cast<const KLyrPropertyFlags*>(nullptr))->SetFlags(lFlags.GetMask(), lFlags.GetFlags());

    ChangePropertyItemState<KLyrPropertyInfo>(nullptr, pId, eLyrInherit);
    ChangePropertyItemState<KLyrPropertyValue>(nullptr, pId, eLyrInherit);
    ChangePropertyItemState<KLyrPropertyFlags>(nullptr, pId, eLyrInherit);
}

}  // namespace lyrsdk
