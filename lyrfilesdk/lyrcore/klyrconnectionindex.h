#pragma once

// The index beside a long connection list; internal to the library.
//
// With an index the list's arrays hold free slots (null points), so that a connection can go without moving the others:
//
//   slots   [ s0 -- s2 s3 .. free | d0 d1 -- d3 .. ]
//             0          mSrcUsed   mSrcSlots         count of the arrays
//
// A hash table leads from (peer, side) to the slot, a binary indexed tree from a position to the slot. While no slot is
// free a position is the slot, and the tree is not built: that is done when the first slot becomes free, once a layout.
// When more than two slots in three are free, or a region is full, the slots are laid out anew, at amortised constant
// cost.

#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"

namespace lyrsdk {

class KLyrConnectionIndex {
public:
    using KConnectionList = KLyrConnectionPoint::KConnectionList;

    // An index over pList, which has no free slots; null when there is no memory.
    static KLyrConnectionIndex* Create(KConnectionList& pList);
    static void Destroy(KLyrConnectionIndex* pIndex);

    int FindSlot(const KConnectionList& pList, const KLyrConnectionPoint* pPeer, bool pSrc) const;
    int SlotAt(const KConnectionList& pList, int pPosition) const;

    // False when there is no memory; the list is then as it was, but perhaps laid out anew.
    bool Add(KConnectionList& pList, KLyrConnectionPoint* pPeer, kLyrConnectionType pType, bool pSrc);
    // Frees the slot of a connection; false when there is none.
    bool Free(KConnectionList& pList, const KLyrConnectionPoint* pPeer, bool pSrc);
    // Lays the list out without free slots when too many are free. False when the index could not follow, for want of
    // memory: the list is then without free slots and the index must go.
    bool Tidy(KConnectionList& pList);

    // Moves what is connected to the front, sources before destinations, and cuts off the rest.
    static void Compact(KConnectionList& pList);

private:
    template <typename T, typename... Args>
    friend T* LyrSdkNew(Args&&... pArgs);
    template <typename T>
    friend void LyrSdkDelete(T* pObject);

    KLyrConnectionIndex() = default;
    ~KLyrConnectionIndex();

    bool Layout(KConnectionList& pList, int pSpareSrcSlots);
    unsigned Home(const KLyrConnectionPoint* pPeer, bool pSrc) const;
    unsigned FindCell(const KConnectionList& pList, const KLyrConnectionPoint* pPeer, bool pSrc) const;
    void AddToTable(const KLyrConnectionPoint* pPeer, int pSlot);
    void RemoveCell(const KConnectionList& pList, unsigned pCell);
    void BuildTree(const KConnectionList& pList);
    void CountSlot(int pSlot, int pChange);

    int mSrcSlots = 0;        // size of the source region
    int mSrcUsed = 0;         // its slots from here on were never used since the last layout
    int mCapacity = 0;        // slots that table and tree have room for
    unsigned mTableMask = 0;  // size of the table less one
    int* mTable = nullptr;    // slots, -1 for none; linear probing
    int* mTree = nullptr;     // connections below each slot, as a binary indexed tree
    bool mCounts = false;     // whether the tree is built
};

}  // namespace lyrsdk
