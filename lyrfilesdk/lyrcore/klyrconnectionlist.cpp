#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "lyrfilesdk/klyrplugins/klyrtexthash.h"
#include "lyrfilesdk/lyrcore/klyrconnectionindex.h"
#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"

namespace lyrsdk {

// --- the list ------------------------------------------------------------------------------------------------------

KLyrConnectionPoint::KConnectionList::~KConnectionList() {
    KLyrConnectionIndex::Destroy(mIndex);
}

KLyrConnectionPoint* KLyrConnectionPoint::KConnectionList::GetSrc(int pIndex) const {
    return pIndex < 0 || pIndex >= mSrcCount ? nullptr : PeerAt(pIndex);
}

KLyrConnectionPoint* KLyrConnectionPoint::KConnectionList::GetDst(int pIndex) const {
    return pIndex < 0 || pIndex >= mDstCount ? nullptr : PeerAt(mSrcCount + pIndex);
}

kLyrConnectionType KLyrConnectionPoint::KConnectionList::GetSrcType(int pIndex) const {
    return pIndex < 0 || pIndex >= mSrcCount ? eLyrConnectionNone : TypeAt(pIndex);
}

kLyrConnectionType KLyrConnectionPoint::KConnectionList::GetDstType(int pIndex) const {
    return pIndex < 0 || pIndex >= mDstCount ? eLyrConnectionNone : TypeAt(mSrcCount + pIndex);
}

KLyrConnectionPoint* KLyrConnectionPoint::KConnectionList::PeerAt(int pPosition) const {
    return mOnly ? mOnly : mConnectionConnect.GetAt(SlotAt(pPosition));
}

kLyrConnectionType KLyrConnectionPoint::KConnectionList::TypeAt(int pPosition) const {
    return mOnly ? mOnlyType : mConnectionType.GetAt(SlotAt(pPosition));
}

int KLyrConnectionPoint::KConnectionList::SlotAt(int pPosition) const {
    return mIndex ? mIndex->SlotAt(*this, pPosition) : pPosition;
}

int KLyrConnectionPoint::KConnectionList::FindSlot(const KLyrConnectionPoint* pPeer, bool pSrc) const {
    if (mOnly)
        return mOnly == pPeer && (mSrcCount > 0) == pSrc ? 0 : -1;
    if (mIndex)
        return mIndex->FindSlot(*this, pPeer, pSrc);
    const KLyrConnectionPoint* const* lPoints = mConnectionConnect.GetArray();
    const int lEnd = pSrc ? mSrcCount : GetCount();
    for (int i = pSrc ? 0 : mSrcCount; i < lEnd; ++i)
        if (lPoints[i] == pPeer)
            return i;
    return -1;
}

bool KLyrConnectionPoint::KConnectionList::InsertSlot(int pSlot, KLyrConnectionPoint* pPeer, kLyrConnectionType pType) {
    if (mConnectionConnect.InsertAt(pSlot, pPeer) < 0)
        return false;
    if (mConnectionType.InsertAt(pSlot, pType) < 0) {
        mConnectionConnect.RemoveAt(pSlot);
        return false;
    }
    return true;
}

// Without an index a long list is only slower, so a failure to get one is no failure of the connection.
bool KLyrConnectionPoint::KConnectionList::Add(KLyrConnectionPoint* pPeer, kLyrConnectionType pType, bool pSrc) {
    if (GetCount() == INT_MAX)
        return false;  // LCOV_EXCL_LINE: takes more connections than memory holds
    if (GetCount() == 0) {
        mOnly = pPeer;
        mOnlyType = pType;
        ++(pSrc ? mSrcCount : mDstCount);
        return true;
    }
    if (mOnly && !InsertSlot(0, mOnly, mOnlyType))
        return false;
    mOnly = nullptr;
    if (!mIndex && GetCount() >= kPlainLimit)
        mIndex = KLyrConnectionIndex::Create(*this);
    if (mIndex && !mIndex->Add(*this, pPeer, pType, pSrc))
        DropIndex();
    if (!mIndex && !InsertSlot(pSrc ? mSrcCount : GetCount(), pPeer, pType))
        return false;
    ++(pSrc ? mSrcCount : mDstCount);
    return true;
}

bool KLyrConnectionPoint::KConnectionList::Remove(const KLyrConnectionPoint* pPeer, bool pSrc) {
    if (!mIndex) {
        const int lSlot = FindSlot(pPeer, pSrc);
        if (lSlot < 0)
            return false;
        if (mOnly) {
            mOnly = nullptr;
        } else {
            mConnectionConnect.RemoveAt(lSlot);
            mConnectionType.RemoveAt(lSlot);
        }
        --(pSrc ? mSrcCount : mDstCount);
        return true;
    }
    if (!mIndex->Free(*this, pPeer, pSrc))
        return false;
    --(pSrc ? mSrcCount : mDstCount);
    if (GetCount() <= kPlainLimit / 2 || !mIndex->Tidy(*this))
        DropIndex();
    return true;
}

void KLyrConnectionPoint::KConnectionList::Clear() {
    KLyrConnectionIndex::Destroy(mIndex);
    mIndex = nullptr;
    mConnectionConnect.Clear();
    mConnectionType.Clear();
    mSrcCount = 0;
    mDstCount = 0;
    mOnly = nullptr;
}

void KLyrConnectionPoint::KConnectionList::DropIndex() {
    KLyrConnectionIndex::Compact(*this);
    KLyrConnectionIndex::Destroy(mIndex);
    mIndex = nullptr;
}

// --- its index -----------------------------------------------------------------------------------------------------

KLyrConnectionIndex* KLyrConnectionIndex::Create(KConnectionList& pList) {
    KLyrConnectionIndex* lIndex = LyrSdkNew<KLyrConnectionIndex>();
    if (lIndex && !lIndex->Layout(pList, 0)) {
        LyrSdkDelete(lIndex);
        lIndex = nullptr;
    }
    return lIndex;
}

void KLyrConnectionIndex::Destroy(KLyrConnectionIndex* pIndex) {
    LyrSdkDelete(pIndex);
}

KLyrConnectionIndex::~KLyrConnectionIndex() {
    LyrSdkFree(mTable);
    LyrSdkFree(mTree);
}

// The low bits of an address are zero, so the side fits there. Points often stand at equal distances, which one
// multiplication alone may send to neighbouring places, in long runs.
unsigned KLyrConnectionIndex::Home(const KLyrConnectionPoint* pPeer, bool pSrc) const {
    const std::uint64_t lKey = reinterpret_cast<std::uintptr_t>(pPeer) + (pSrc ? 1u : 0u);
    const detail::HashSeed& lSeed = detail::SeedOfHashes();
    return static_cast<unsigned>(detail::MultiplyAndFold(lKey ^ lSeed.mLeft, lSeed.mRight)) & mTableMask;
}

// Where pPeer is in the table, or where its run ends.
unsigned KLyrConnectionIndex::FindCell(const KConnectionList& pList, const KLyrConnectionPoint* pPeer,
                                       bool pSrc) const {
    const KLyrConnectionPoint* const* lPoints = pList.mConnectionConnect.GetArray();
    unsigned i = Home(pPeer, pSrc);
    while (mTable[i] >= 0 && (lPoints[mTable[i]] != pPeer || (mTable[i] < mSrcSlots) != pSrc))
        i = (i + 1) & mTableMask;
    return i;
}

int KLyrConnectionIndex::FindSlot(const KConnectionList& pList, const KLyrConnectionPoint* pPeer, bool pSrc) const {
    return mTable[FindCell(pList, pPeer, pSrc)];
}

void KLyrConnectionIndex::AddToTable(const KLyrConnectionPoint* pPeer, int pSlot) {
    unsigned i = Home(pPeer, pSlot < mSrcSlots);
    while (mTable[i] >= 0)
        i = (i + 1) & mTableMask;
    mTable[i] = pSlot;
}

// Pulls later entries of the run back into the hole, so that the table needs no marks for what was removed.
void KLyrConnectionIndex::RemoveCell(const KConnectionList& pList, unsigned pCell) {
    const KLyrConnectionPoint* const* lPoints = pList.mConnectionConnect.GetArray();
    unsigned lHole = pCell;
    for (unsigned i = (lHole + 1) & mTableMask; mTable[i] >= 0; i = (i + 1) & mTableMask) {
        const unsigned lHome = Home(lPoints[mTable[i]], mTable[i] < mSrcSlots);
        if (((i - lHome) & mTableMask) >= ((i - lHole) & mTableMask)) {
            mTable[lHole] = mTable[i];
            lHole = i;
        }
    }
    mTable[lHole] = -1;
}

// Each node is the sum of its own slot and of the nodes that lead to it.
void KLyrConnectionIndex::BuildTree(const KConnectionList& pList) {
    const KLyrConnectionPoint* const* lPoints = pList.mConnectionConnect.GetArray();
    const int lSlots = pList.mConnectionConnect.GetCount();
    std::memset(mTree, 0, sizeof(int) * (static_cast<std::size_t>(mCapacity) + 1));
    for (int i = 1; i <= mCapacity; ++i) {
        mTree[i] += i <= lSlots && lPoints[i - 1] ? 1 : 0;
        if (i + (i & -i) <= mCapacity)
            mTree[i + (i & -i)] += mTree[i];
    }
    mCounts = true;
}

void KLyrConnectionIndex::CountSlot(int pSlot, int pChange) {
    for (int i = pSlot + 1; i <= mCapacity; i += i & -i)
        mTree[i] += pChange;
}

int KLyrConnectionIndex::SlotAt(const KConnectionList& pList, int pPosition) const {
    if (pList.GetCount() == pList.mConnectionConnect.GetCount())
        return pPosition;
    int lStep = 1;
    while (lStep <= mCapacity / 2)
        lStep *= 2;
    int lSlot = 0;
    for (int lRest = pPosition; lStep > 0; lStep /= 2) {
        if (lSlot + lStep <= mCapacity && mTree[lSlot + lStep] <= lRest) {
            lSlot += lStep;
            lRest -= mTree[lSlot];
        }
    }
    return lSlot;
}

void KLyrConnectionIndex::Compact(KConnectionList& pList) {
    const int lSlots = pList.mConnectionConnect.GetCount();
    if (pList.GetCount() == lSlots)
        return;
    KLyrConnectionPoint** lPoints = pList.mConnectionConnect.GetArray();
    kLyrConnectionType* lTypes = pList.mConnectionType.GetArray();
    int lTo = 0;
    for (int lFrom = 0; lFrom < lSlots; ++lFrom) {
        if (lPoints[lFrom]) {
            lPoints[lTo] = lPoints[lFrom];
            lTypes[lTo] = lTypes[lFrom];
            ++lTo;
        }
    }
    while (pList.mConnectionConnect.GetCount() > lTo) {
        pList.mConnectionConnect.RemoveAt(pList.mConnectionConnect.GetCount() - 1);
        pList.mConnectionType.RemoveAt(pList.mConnectionType.GetCount() - 1);
    }
}

// Gives the list pSpareSrcSlots free slots behind its sources and builds table and tree for it, with room to grow.
bool KLyrConnectionIndex::Layout(KConnectionList& pList, int pSpareSrcSlots) {
    Compact(pList);
    const int lCount = pList.mConnectionConnect.GetCount();
    if (lCount > INT_MAX / 8 - pSpareSrcSlots)
        return false;  // LCOV_EXCL_LINE: takes more connections than memory holds
    const int lCapacity = (lCount + pSpareSrcSlots) * 2;
    unsigned lTableSize = 4;
    while (lTableSize < static_cast<unsigned>(lCapacity) * 2u)
        lTableSize *= 2;

    int* lTable = static_cast<int*>(LyrSdkMalloc(sizeof(int) * lTableSize));
    int* lTree = static_cast<int*>(LyrSdkMalloc(sizeof(int) * (static_cast<std::size_t>(lCapacity) + 1)));
    int lSpare = 0;
    while (lTable && lTree && lSpare < pSpareSrcSlots && pList.InsertSlot(lCount + lSpare, nullptr, eLyrConnectionNone))
        ++lSpare;
    if (!lTable || !lTree || lSpare < pSpareSrcSlots) {
        LyrSdkFree(lTable);
        LyrSdkFree(lTree);
        Compact(pList);
        return false;
    }
    LyrSdkFree(mTable);
    LyrSdkFree(mTree);
    mTable = lTable;
    mTree = lTree;
    mTableMask = lTableSize - 1;
    mCapacity = lCapacity;

    const int lSrcCount = pList.mSrcCount;
    for (int i = lCount - 1; lSpare > 0 && i >= lSrcCount; --i) {
        pList.mConnectionConnect.SetAt(i + lSpare, pList.mConnectionConnect.GetAt(i));
        pList.mConnectionType.SetAt(i + lSpare, pList.mConnectionType.GetAt(i));
    }
    for (int i = lSrcCount; i < lSrcCount + lSpare; ++i)
        pList.mConnectionConnect.SetAt(i, nullptr);
    mSrcUsed = lSrcCount;
    mSrcSlots = lSrcCount + lSpare;

    std::memset(mTable, -1, sizeof(int) * lTableSize);
    const KLyrConnectionPoint* const* lPoints = pList.mConnectionConnect.GetArray();
    for (int i = 0; i < lCount + lSpare; ++i)
        if (lPoints[i])
            AddToTable(lPoints[i], i);
    mCounts = false;
    if (lSpare > 0)
        BuildTree(pList);
    return true;
}

bool KLyrConnectionIndex::Add(KConnectionList& pList, KLyrConnectionPoint* pPeer, kLyrConnectionType pType, bool pSrc) {
    const bool lOnlySources = mSrcSlots == pList.mConnectionConnect.GetCount();
    const bool lAppends = !pSrc || (lOnlySources && mSrcUsed == mSrcSlots);
    if (lAppends && pList.mConnectionConnect.GetCount() == mCapacity && !Layout(pList, 0))
        return false;
    if (!lAppends && mSrcUsed == mSrcSlots && !Layout(pList, pList.GetCount() / 2))
        return false;

    int lSlot = mSrcUsed;
    if (lAppends) {
        lSlot = pList.mConnectionConnect.GetCount();
        if (!pList.InsertSlot(lSlot, pPeer, pType))
            return false;
    } else {
        pList.mConnectionConnect.SetAt(lSlot, pPeer);
        pList.mConnectionType.SetAt(lSlot, pType);
    }
    if (pSrc) {
        ++mSrcUsed;
        if (lAppends)
            ++mSrcSlots;
    }
    AddToTable(pPeer, lSlot);
    if (mCounts)
        CountSlot(lSlot, 1);
    return true;
}

bool KLyrConnectionIndex::Free(KConnectionList& pList, const KLyrConnectionPoint* pPeer, bool pSrc) {
    const unsigned lCell = FindCell(pList, pPeer, pSrc);
    const int lSlot = mTable[lCell];
    if (lSlot < 0)
        return false;
    if (!mCounts)
        BuildTree(pList);
    RemoveCell(pList, lCell);
    CountSlot(lSlot, -1);
    pList.mConnectionConnect.SetAt(lSlot, nullptr);
    return true;
}

bool KLyrConnectionIndex::Tidy(KConnectionList& pList) {
    return pList.mConnectionConnect.GetCount() / 3 <= pList.GetCount() || Layout(pList, 0);
}

}  // namespace lyrsdk
