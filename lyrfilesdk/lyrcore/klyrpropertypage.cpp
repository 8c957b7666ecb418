#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

#include <algorithm>
#include <climits>

#include "lyrfilesdk/lyrcore/klyrdescendentwalk.h"
#include "lyrfilesdk/lyrcore/klyrpropertyindex.h"

namespace lyrsdk {
namespace {

// Records that a family root makes room for; most root pages stay below it.
constexpr unsigned int kRootReserve = 32;

// Room that a page makes for its first entries at a time: most instances hold no more than these. One less is served.
constexpr unsigned int kFewRecords = 4;

// Records of entries that went which a page always puts up with.
constexpr unsigned int kDeadRecords = 32;

// A page gets its table and index with this many entries, and keeps them until it has too few for a table.
constexpr int kIndexedFrom = 32;

}  // namespace

// --- the id generator ----------------------------------------------------------------------------------------------

int KLyrPropertyIdGenerator::GetNextIdAndInc() {
    const int lId = mNextId;
    if (lId >= 0)
        mNextId = lId == INT_MAX ? -1 : lId + 1;
    return lId;
}

KLyrPropertyIdGenerator::~KLyrPropertyIdGenerator() {
    KLyrDescendentWalk::Destroy(mWalk);
}

bool KLyrPropertyIdGenerator::SkipTo(int pNextId) {
    if (mNextId < 0 || pNextId < mNextId)
        return false;
    mNextId = pNextId;
    return true;
}

// --- making --------------------------------------------------------------------------------------------------------

KLyrPropertyPage::KLyrPropertyPage() : mInstanceIndex(0), mDestroyPending(0) {
    mCreateOrFind.mFirst = 0;
}

KLyrPropertyPage* KLyrPropertyPage::Create(const char* pName, ELyrType pType) {
    KLyrPropertyPage* lPage = CreateFamily();
    return lPage && lPage->Add(-1, pName, pType) == 0 ? lPage : Abandon(lPage);
}

KLyrPropertyPage* KLyrPropertyPage::Create(const char* pName, KLyrPropertyPage* pTypeInfo) {
    KLyrPropertyPage* lPage = CreateFamily();
    return lPage && lPage->Add(-1, pName, pTypeInfo) == 0 ? lPage : Abandon(lPage);
}

KLyrPropertyPage* KLyrPropertyPage::Create(KLyrPropertyPage* pInstanceOf) {
    if (!pInstanceOf)
        return Create("", eUNIDENTIFIED);
    KLyrPropertyPage* lPage = LyrSdkNew<KLyrPropertyPage>();
    return lPage && lPage->JoinFamily(pInstanceOf) ? lPage : Abandon(lPage);
}

// A page without properties, with a generator of its own.
KLyrPropertyPage* KLyrPropertyPage::CreateFamily() {
    KLyrPropertyPage* lPage = LyrSdkNew<KLyrPropertyPage>();
    if (!lPage)
        return nullptr;
    lPage->mIdGenerator = LyrSdkNew<KLyrPropertyIdGenerator>();
    if (!lPage->mIdGenerator)
        return Abandon(lPage);
    lPage->mIdGenerator->IncRef();
    lPage->mIdGenerator->mFirstPage = lPage;
    lPage->mEntries.Reserve(kRootReserve);
    return lPage;
}

// Instances make no room ahead: most hold a few entries or none.
bool KLyrPropertyPage::JoinFamily(KLyrPropertyPage* pInstanceOf) {
    const int lIndex = pInstanceOf->mInstances.Add(this);
    if (lIndex < 0)
        return false;
    SetInstanceIndex(lIndex);
    mInstanceOf = pInstanceOf;
    mIdGenerator = pInstanceOf->mIdGenerator;
    mIdGenerator->IncRef();
    return true;
}

KLyrPropertyPage* KLyrPropertyPage::Abandon(KLyrPropertyPage* pPage) {
    LyrSdkDelete(pPage);
    return nullptr;
}

bool KLyrPropertyPage::Reparent(int, int) {
    return false;
}

// --- destroying ----------------------------------------------------------------------------------------------------

// A loop, because the last instance of a page that only lived on for its instances takes that page along.
void KLyrPropertyPage::Destroy() {
    KLyrPropertyPage* lPage = this;
    while (lPage) {
        if (!lPage->HandDownToInstances()) {
            lPage->mDestroyPending = 1;
            lPage->Retire();
            return;
        }
        KLyrPropertyPage* lParent = lPage->mInstanceOf;
        LyrSdkDelete(lPage);
        lPage = lParent && lParent->mDestroyPending && lParent->mInstances.GetCount() == 0 ? lParent : nullptr;
    }
}

KLyrPropertyPage::~KLyrPropertyPage() {
    Retire();
    KLyrPropertyIndex::Destroy(GetIndex());
    LyrSdkFree(mTable);
    mTable = nullptr;
    for (auto lIt = mEntries.Begin(); lIt != mEntries.End(); ++lIt)
        DestroyEntry(lIt->GetKey(), lIt->GetValue());
    LeaveInstanceOf();
    if (mIdGenerator) {
        if (mIdGenerator->mWalk)
            mIdGenerator->mWalk->PageGoes(this);
        if (mIdGenerator->mFirstPage == this) {
            mIdGenerator->mFirstPage = nullptr;
            mIdGenerator->mFirstEntries.Clear();
        }
        mIdGenerator->mEntryCount -= static_cast<std::size_t>(mEntries.GetSize());
        mIdGenerator->DecRef();
    }
}

// A connection item may be held beyond its property; nobody must come back here through it.
void KLyrPropertyPage::DestroyEntry(int pId, KLyrPropertyEntry* pEntry) {
    KLyrPropertyConnect* lConnect = pEntry->Get(static_cast<const KLyrPropertyConnect*>(nullptr));
    if (lConnect && lConnect->mPage == this && lConnect->mId == pId)
        lConnect->Retire();
    FreeEntry(pEntry);
}

// Gives back what others reach this page through.
void KLyrPropertyPage::Retire() {
    mDataPtr = nullptr;
    EndCreateOrFindProperty();
    ReleaseTypedInfos();
    while (mConnects)
        mConnects->Retire();
}

// Detaches every instance that has got its copies. False when one is left for want of memory.
bool KLyrPropertyPage::HandDownToInstances() {
    bool lAll = true;
    for (int i = 0; i < mInstances.GetCount(); ++i) {
        KLyrPropertyPage* lInstance = mInstances.GetAt(i);
        bool lDone = !GetPropertyEntry(0) || HandDown(0, lInstance);
        for (int lId = 0; lDone && (lId = GetMinimumPropertyIdAndEntry(lId)) != -1;)
            lDone = HandDown(lId, lInstance);
        if (lDone)
            lInstance->mInstanceOf = nullptr;
        lAll = lAll && lDone;
    }
    for (int i = mInstances.GetCount() - 1; !lAll && i >= 0; --i)
        if (!mInstances.GetAt(i)->mInstanceOf)
            mInstances.RemoveAt(i);
    return lAll;
}

// Gives pInstance its own copy of all that it sees for pId. The flags are copied as they are seen there: what the
// instance sets itself stays, and all of them count as its own.
bool KLyrPropertyPage::HandDown(int pId, KLyrPropertyPage* pInstance) const {
    const eLyrPropertyFlags lFlags = pInstance->GetFlags(pId);
    const bool lHadEntry = pInstance->FindOwnEntry(pId) != nullptr;
    KLyrPropertyEntry* lEntry = pInstance->ChangePropertyEntryState(pId, eLyrOverride);
    if (!lEntry)
        return false;
    const bool lInfo = pInstance->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, pId, eLyrOverride) ||
                       !GetPropertyItem<KLyrPropertyInfo>(nullptr, pId);
    const bool lValue = pInstance->ChangePropertyItemState<KLyrPropertyValue>(nullptr, pId, eLyrOverride) ||
                        !GetPropertyItem<KLyrPropertyValue>(nullptr, pId);
    if (!lInfo || !lValue) {
        if (!lHadEntry)
            pInstance->DropIfEmpty(pId);
        return false;
    }
    KLyrPropertyFlags lOwn;
    lOwn.SetFlags(LyrPropertyFlags::AllFlags(), lFlags);
    lOwn.SetMask(lEntry->Get(static_cast<KLyrPropertyFlags*>(nullptr))->GetMask());
    lEntry->Set(lOwn);
    return true;
}

// Takes this page out of its parent's instances; the last of them moves into its place.
void KLyrPropertyPage::LeaveInstanceOf() {
    if (!mInstanceOf)
        return;
    KArrayTemplate<KLyrPropertyPage*>& lInstances = mInstanceOf->mInstances;
    int lIndex = static_cast<int>(mInstanceIndex);
    if (!lInstances.ValidateIndex(lIndex) || lInstances.GetAt(lIndex) != this)
        lIndex = lInstances.Find(this);
    if (lIndex >= 0) {
        KLyrPropertyPage* lLast = lInstances.GetAt(lInstances.GetCount() - 1);
        lInstances.SetAt(lIndex, lLast);
        lLast->SetInstanceIndex(lIndex);
        lInstances.RemoveAt(lInstances.GetCount() - 1);
    }
    mInstanceOf = nullptr;
}

// Descriptions that this page types keep the type that it gave them.
void KLyrPropertyPage::ReleaseTypedInfos() {
    const ELyrType lType = mTypedInfos ? mTypedInfos->GetType() : eUNIDENTIFIED;
    while (KLyrPropertyInfo* lInfo = mTypedInfos) {
        lInfo->mType = lType;
        lInfo->UnlinkFromTypeInfo();
    }
}

// --- adding --------------------------------------------------------------------------------------------------------

int KLyrPropertyPage::Add(int pParentId, const char* pName, ELyrType pType) {
    KLyrPropertyInfo* lInfo = KLyrPropertyInfo::Create(pName, pType);
    KLyrPropertyValue* lValue = KLyrPropertyValue::Create(nullptr, pType);
    const int lId = lInfo && lValue ? AddEntry(pParentId, lInfo, lValue, nullptr) : -1;
    if (lId < 0) {
        detail::Discard(lInfo);
        detail::Discard(lValue);
    }
    return lId;
}

int KLyrPropertyPage::Add(int pParentId, const char* pName, KLyrPropertyPage* pTypeInfo) {
    const ELyrType lType = pTypeInfo ? pTypeInfo->GetType(0) : eUNIDENTIFIED;
    return AddNew(pParentId, KLyrPropertyInfo::Create(pName, pTypeInfo), KLyrPropertyValue::Create(nullptr, lType));
}

int KLyrPropertyPage::AddNew(int pParentId, KLyrPropertyInfo* pInfo, KLyrPropertyValue* pValue) {
    const int lId = pInfo && pValue ? Add(pParentId, pInfo, pValue, nullptr, true) : -1;
    if (lId < 0) {
        detail::Discard(pInfo);
        detail::Discard(pValue);
    }
    return lId;
}

int KLyrPropertyPage::Add(int pParentId, KLyrPropertyInfo* pInfo, KLyrPropertyValue* pValue,
                          KLyrPropertyConnect* pConnect, bool pRecursive) {
    const int lId = AddEntry(pParentId, pInfo, pValue, pConnect);
    KLyrPropertyPage* lTypeInfo = lId >= 0 && pRecursive && pInfo ? pInfo->GetTypeInfo() : nullptr;
    if (!lTypeInfo || Expand(lId, lTypeInfo))
        return lId;

    // The caller's items must outlive the entry that counted them.
    pInfo->IncRef();
    if (pValue)
        pValue->IncRef();
    if (pConnect)
        pConnect->IncRef();
    UndoAdd(lId);
    --pInfo->mRef;
    if (pValue)
        --pValue->mRef;
    if (pConnect)
        --pConnect->mRef;
    return -1;
}

// The map record is made first and filled last, so that nothing has to be taken back from the items when memory ends.
int KLyrPropertyPage::AddEntry(int pParentId, KLyrPropertyInfo* pInfo, KLyrPropertyValue* pValue,
                               KLyrPropertyConnect* pConnect) {
    const int lId = mIdGenerator->PeekNextId();
    KEntryMap::RecordType* lRecord = lId >= 0 ? InsertRecord(lId, nullptr).mFirst : nullptr;
    if (!lRecord)
        return -1;

    KNameMap& lNames = mCreateOrFind.mSecond;
    const bool lNamed = pInfo && lNames.GetSize() > 0;
    KPair<KNameMap::RecordType*, bool> lName(nullptr, false);
    if (lNamed)
        lName = lNames.Insert(KPair<int, const char*>(pParentId, pInfo->GetNameText()), lId);
    KLyrPropertyEntry* lEntry = !lNamed || lName.mFirst ? NewEntry(pParentId, pInfo, pValue, pConnect) : nullptr;
    if (!lEntry) {
        if (lName.mSecond)
            lNames.Remove(KPair<int, const char*>(pParentId, pInfo->GetNameText()));
        RemoveRecord(lId);
        return -1;
    }

    lEntry->Get(static_cast<KLyrPropertyFlags*>(nullptr))->ModifyFlags(LyrPropertyFlags::AllFlags(), false);
    lRecord->GetValue() = lEntry;
    PutIntoTable(lId, lEntry);
    mIdGenerator->mHasOddParents |= pParentId >= lId;
    return mIdGenerator->GetNextIdAndInc();
}

// Nothing else has ids from pFirstId on. The names that the Add put into the bracket's map go too. The connection item
// of pFirstId is the caller's and keeps its page and its connections.
void KLyrPropertyPage::UndoAdd(int pFirstId) {
    KNameMap& lNames = mCreateOrFind.mSecond;
    while (const KEntryMap::RecordType* lRecord = mEntries.UpperBound(pFirstId - 1)) {
        const int lId = lRecord->GetKey();
        KLyrPropertyEntry* lEntry = lRecord->GetValue();
        const KLyrPropertyInfo* lInfo = lEntry->Get(static_cast<const KLyrPropertyInfo*>(nullptr));
        const KPair<int, const char*> lKey(lEntry->GetParentId(), lInfo ? lInfo->GetNameText() : "");
        const KNameMap::RecordType* lName = lInfo && lNames.GetSize() > 0 ? lNames.Find(lKey) : nullptr;
        if (lName && lName->GetValue() == lId)
            lNames.Remove(lKey);
        if (lId == pFirstId)
            lEntry->Set(static_cast<KLyrPropertyConnect*>(nullptr));
        RemoveOwnEntry(lId);
    }
}

// --- entries -------------------------------------------------------------------------------------------------------

KLyrPropertyEntry* KLyrPropertyPage::GetPropertyEntry(int pId, KLyrPropertyPage** pFoundIn) const {
    for (const KLyrPropertyPage* lPage = this; lPage; lPage = lPage->mInstanceOf) {
        if (KLyrPropertyEntry* lEntry = lPage->FindOwnEntry(pId)) {
            if (pFoundIn)
                *pFoundIn = const_cast<KLyrPropertyPage*>(lPage);
            return lEntry;
        }
    }
    if (pFoundIn)
        *pFoundIn = nullptr;
    return nullptr;
}

KLyrPropertyEntry* KLyrPropertyPage::NewEntry(int pParentId, KLyrPropertyInfo* pInfo, KLyrPropertyValue* pValue,
                                              KLyrPropertyConnect* pConnect) {
    if (mIdGenerator->mFirstPage != this)
        return KLyrPropertyEntry::Create(pParentId, pInfo, pValue, pConnect);
    void* lMemory = mIdGenerator->mFirstEntries.Take();
    return lMemory ? ::new (lMemory) KLyrPropertyEntry(pParentId, pInfo, pValue, pConnect) : nullptr;
}

void KLyrPropertyPage::FreeEntry(KLyrPropertyEntry* pEntry) {
    if (mIdGenerator->mFirstPage != this) {
        pEntry->Destroy();
        return;
    }
    pEntry->~KLyrPropertyEntry();
    mIdGenerator->mFirstEntries.GiveBack(pEntry);
}

// As the map's Insert, but all records may move. The map's allocator takes nothing back, so that entries which come and
// go would make it grow without end. When it would have to grow and most of its records are dead, the living ones move
// to a new one that as many again fit into; that many insertions pay for the move. Else it grows by half, in one block.
KPair<KLyrPropertyPage::KEntryMap::RecordType*, bool> KLyrPropertyPage::InsertRecord(int pId,
                                                                                     KLyrPropertyEntry* pEntry) {
    if (!mEntries.HasRoom()) {
        const unsigned int lLive = static_cast<unsigned int>(mEntries.GetSize());
        const bool lMostlyDead = mEntries.GetReservedCount() > std::size_t(2) * lLive + kDeadRecords;
        const bool lMoved = lMostlyDead && mEntries.Compact(lLive + kDeadRecords);
        if (!lMoved && !mEntries.Reserve(std::max(kFewRecords, lLive / 2)))
            return KPair<KEntryMap::RecordType*, bool>(nullptr, false);
    }
    mIdBits |= BitOf(pId);
    ++mIdGenerator->mEntryCount;
    return mEntries.Insert(pId, pEntry);
}

void KLyrPropertyPage::RemoveRecord(int pId) {
    mEntries.Remove(pId);
    --mIdGenerator->mEntryCount;
}

KLyrPropertyEntry* KLyrPropertyPage::InsertOwnEntry(int pId, int pParentId) {
    KLyrPropertyEntry* lEntry = NewEntry(pParentId, nullptr, nullptr, nullptr);
    if (lEntry && !InsertRecord(pId, lEntry).mSecond) {
        FreeEntry(lEntry);
        lEntry = nullptr;
    }
    if (lEntry) {
        PutIntoTable(pId, lEntry);
        if (GetIndex())
            GetIndex()->FindFirstChild(lEntry);
        if (mIdGenerator->mWalk && !Inherits(pId))
            mIdGenerator->mWalk->Forget();
    }
    return lEntry;
}

// Whether the property is there without this page.
bool KLyrPropertyPage::Inherits(int pId) const {
    return mInstanceOf && mInstanceOf->GetPropertyEntry(pId);
}

bool KLyrPropertyPage::RemoveOwnEntry(int pId) {
    KLyrPropertyEntry* lEntry = FindOwnEntry(pId);
    if (!lEntry)
        return false;
    // The walk looks at the children, and so at the index, which has every entry of the map as long as it is asked.
    if (mIdGenerator->mWalk && !Inherits(pId))
        mIdGenerator->mWalk->PropertyRemoved(pId);
    TakeFromTable(pId, lEntry);
    RemoveRecord(pId);
    if (mEntries.GetSize() < kFewestInTable)
        RenewIdBits();
    DestroyEntry(pId, lEntry);
    return true;
}

void KLyrPropertyPage::RenewIdBits() {
    mIdBits = 0;
    for (auto lIt = mEntries.Begin(); lIt != mEntries.End(); ++lIt)
        mIdBits |= BitOf(lIt->GetKey());
}

// --- the table and the index ---------------------------------------------------------------------------------------

// Without memory for them the page does without: its answers are the same, but looked for entry by entry. They are
// tried again when there are twice as many.
void KLyrPropertyPage::PutIntoTable(int pId, KLyrPropertyEntry* pEntry) {
    const int lCount = mEntries.GetSize();
    const bool lDoubled = lCount >= kIndexedFrom && (lCount & (lCount - 1)) == 0;
    if (mIdGenerator->mEntryCount >= mIdGenerator->mEnlargeFrom)
        EnlargeWalk();
    if (mTable ? !mTable->Add(pId, pEntry, lCount) : lDoubled)
        mTable = EntryTable::Renew(mEntries, mTable);
    if (KLyrPropertyIndex* lIndex = GetIndex()) {
        if (!lIndex->Add(pId, pEntry, FindOwnEntry(pEntry->GetParentId())))
            DropIndex();
    } else if (mTable && lDoubled) {
        mTable->mIndex = KLyrPropertyIndex::Create(mEntries);
    }
}

// Room for all properties that any page of the family may see, until there are twice as many: each has an id that was
// handed out, and an entry.
void KLyrPropertyPage::EnlargeWalk() {
    const std::size_t lMost = std::min(static_cast<std::size_t>(EndOfIds()), mIdGenerator->mEntryCount);
    if (lMost < mIdGenerator->mEnlargeFrom)
        return;
    mIdGenerator->mEnlargeFrom = 2 * lMost;
    mIdGenerator->mWalk = KLyrDescendentWalk::Enlarge(mIdGenerator->mWalk, 2 * lMost);
}

void KLyrPropertyPage::TakeFromTable(int pId, KLyrPropertyEntry* pEntry) {
    if (!mTable)
        return;
    if (mTable->HasSlot(pId))
        mTable->At(pId) = nullptr;
    if (mTable->mIndex)
        mTable->mIndex->Remove(pEntry, FindOwnEntry(pEntry->GetParentId()));
    if (mEntries.GetSize() > kFewestInTable)
        return;
    if (mTable->mIndex)
        DropIndex();
    LyrSdkFree(mTable);
    mTable = nullptr;
}

void KLyrPropertyPage::DropIndex() {
    // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): there is an index, so there is the table that has it
    mTable->mIndex->Forget();
    KLyrPropertyIndex::Destroy(mTable->mIndex);
    mTable->mIndex = nullptr;
}

// --- values --------------------------------------------------------------------------------------------------------

bool KLyrPropertyPage::Get(int pId, void* pValue, ELyrType pValueType) const {
    const KLyrPropertyValue* lItem = GetPropertyItem<KLyrPropertyValue>(nullptr, pId);
    return lItem && lItem->Get(pValue, pValueType);
}

bool KLyrPropertyPage::GetDefaultValue(int pId, void* pValue, ELyrType pValueType) const {
    const KLyrPropertyPage* lFirst = GetFirstPropertyItem<KLyrPropertyValue>(pId, nullptr);
    return lFirst && lFirst->Get(pId, pValue, pValueType);
}

}  // namespace lyrsdk
