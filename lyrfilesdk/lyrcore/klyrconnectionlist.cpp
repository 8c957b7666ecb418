#include <climits>
#include <cstdint>

#include "lyrfilesdk/lyrcore/klyrconnectionindex.h"
#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"

namespace lyrsdk {

// --- the list ------------------------------------------------------------------------------------------------------

KLyrConnectionPoint::KConnectionList::~KConnectionList() {
    KLyrConnectionIndex::Destroy(mIndex);
}

KLyrConnectionPoint* KLyrConnectionPoint::KConnectionList::GetSrc(int pIndex) const {
    return pIndex < 0 || pIndex >= mSrcCount ? nullptr : mConnectionConnect.GetAt(SlotAt(pIndex));
}

KLyrConnectionPoint* KLyrConnectionPoint::KConnectionList::GetDst(int pIndex) const {
    return pIndex < 0 || pIndex >= mDstCount ? nullptr : mConnectionConnect.GetAt(SlotAt(mSrcCount + pIndex));
}

kLyrConnectionType KLyrConnectionPoint::KConnectionList::GetSrcType(int pIndex) const {
    return pIndex < 0 || pIndex >= mSrcCount ? eLyrConnectionNone : mConnectionType.GetAt(SlotAt(pIndex));
}

kLyrConnectionType KLyrConnectionPoint::KConnectionList::GetDstType(int pIndex) const {
    return pIndex < 0 || pIndex >= mDstCount ? eLyrConnectionNone : mConnectionType.GetAt(SlotAt(mSrcCount + pIndex));
}

int KLyrConnectionPoint::KConnectionList::SlotAt(int pPosition) const {
    return mIndex ? mIndex->SlotAt(*this, pPosition) : pPosition;
}

int KLyrConnectionPoint::KConnectionList::FindSlot(const KLyrConnectionPoint* pPeer, bool pSrc) const {
    if (mIndex)
        return mIndex->FindSlot(*this, pPeer, pSrc);
    const int lEnd = pSrc ? mSrcCount : GetCount();
    for (int i = pSrc ? 0 : mSrcCount; i < lEnd; ++i)
        if (mConnectionConnect.GetAt(i) == pPeer)
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
    const int lSlot = FindSlot(pPeer, pSrc);
    if (lSlot < 0)
        return false;
    --(pSrc ? mSrcCount : mDstCount);
    if (!mIndex) {
        mConnectionConnect.RemoveAt(lSlot);
        mConnectionType.RemoveAt(lSlot);
        return true;
    }
    mIndex->FreeSlot(*this, lSlot);
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

// The low bits of an address are zero, so the side fits there.
unsigned KLyrConnectionIndex::Home(const KLyrConnectionPoint* pPeer, bool pSrc) const {
    const std::uint64_t lKey = reinterpret_cast<std::uintptr_t>(pPeer) + (pSrc ? 1u : 0u);
    return static_cast<unsigned>((lKey * 0x9E3779B97F4A7C15ull) >> 32) & mTableMask;
}

unsigned KLyrConnectionIndex::HomeOfSlot(const KConnectionList& pList, int pSlot) const {
    return Home(pList.mConnectionConnect.GetAt(pSlot), pSlot < mSrcSlots);
}

int KLyrConnectionIndex::FindSlot(const KConnectionList& pList, const KLyrConnectionPoint* pPeer, bool pSrc) const {
    for (unsigned i = Home(pPeer, pSrc); mTable[i] >= 0; i = (i + 1) & mTableMask)
        if (pList.mConnectionConnect.GetAt(mTable[i]) == pPeer && (mTable[i] < mSrcSlots) == pSrc)
            return mTable[i];
    return -1;
}

void KLyrConnectionIndex::AddToTable(const KConnectionList& pList, int pSlot) {
    unsigned i = HomeOfSlot(pList, pSlot);
    while (mTable[i] >= 0)
        i = (i + 1) & mTableMask;
    mTable[i] = pSlot;
}

// Pulls later entries of the run back into the hole, so that the table needs no marks for what was removed.
void KLyrConnectionIndex::RemoveFromTable(const KConnectionList& pList, int pSlot) {
    unsigned lHole = HomeOfSlot(pList, pSlot);
    while (mTable[lHole] != pSlot)
        lHole = (lHole + 1) & mTableMask;
    for (unsigned i = (lHole + 1) & mTableMask; mTable[i] >= 0; i = (i + 1) & mTableMask) {
        const unsigned lHome = HomeOfSlot(pList, mTable[i]);
        if (((i - lHome) & mTableMask) >= ((i - lHole) & mTableMask)) {
            mTable[lHole] = mTable[i];
            lHole = i;
        }
    }
    mTable[lHole] = -1;
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
    int lTo = 0;
    for (int lFrom = 0; lFrom < pList.mConnectionConnect.GetCount(); ++lFrom) {
        if (KLyrConnectionPoint* lPeer = pList.mConnectionConnect.GetAt(lFrom)) {
            pList.mConnectionConnect.SetAt(lTo, lPeer);
            pList.mConnectionType.SetAt(lTo, pList.mConnectionType.GetAt(lFrom));
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

    for (unsigned i = 0; i < lTableSize; ++i)
        mTable[i] = -1;
    for (int i = 0; i <= mCapacity; ++i)
        mTree[i] = 0;
    for (int i = 0; i < pList.mConnectionConnect.GetCount(); ++i) {
        if (pList.mConnectionConnect.GetAt(i)) {
            AddToTable(pList, i);
            CountSlot(i, 1);
        }
    }
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
    AddToTable(pList, lSlot);
    CountSlot(lSlot, 1);
    return true;
}

void KLyrConnectionIndex::FreeSlot(KConnectionList& pList, int pSlot) {
    RemoveFromTable(pList, pSlot);
    CountSlot(pSlot, -1);
    pList.mConnectionConnect.SetAt(pSlot, nullptr);
}

bool KLyrConnectionIndex::Tidy(KConnectionList& pList) {
    return pList.mConnectionConnect.GetCount() / 3 <= pList.GetCount() || Layout(pList, 0);
}

}  // namespace lyrsdk
