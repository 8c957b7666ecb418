#pragma once

// The index of a page with many entries; internal to the library.
//
//   children    a map from (parent id, id): the children of one property side by side, in the order of their ids
//   namesakes   a hash table of rings: the entries of one parent whose names are equal but for case, ids ascending
//
//   table [ . | last | . | . | last | .. ]       a slot leads to the last entry of a ring, whose next one is the first
//                 |             |
//                 3 -> 5 -> 3   9 -> 9
//
// It answers for the page's own entries only; the page merges the answers of its chain. Finding the next child is
// O(log n), finding a name O(1) on average, and one step for every namesake in front of it that is not meant. Neither
// allocates. A namesake whose id lies between those of m others costs up to m / 2 steps to put in. The hash starts from
// an address, which a file cannot know where the system places programs at random. It costs 80 bytes a property (44 on
// 32 bit), and two to four pointers in the table.
//
// An entry knows its record here, so that the next sibling is one step away and an entry that is given another
// description moves to the ring of its new name.

#include <cstdint>

#include "lyrfilesdk/components/kbaselib/klib/kcontainerallocators.h"
#include "lyrfilesdk/components/kbaselib/klib/kmap.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

namespace lyrsdk {

class KLyrPropertyIndex {
public:
    // An index of these entries; null when there is no memory.
    static KLyrPropertyIndex* Create(const KLyrPropertyPage::KEntryMap& pEntries);
    // Entries that live on must have been taken out or be forgotten with Forget.
    static void Destroy(KLyrPropertyIndex* pIndex);
    // Lets go of all entries.
    void Forget();

    // False when there is no memory; the index then lacks the entry and must go.
    bool Add(int pId, KLyrPropertyEntry* pEntry);
    void Remove(KLyrPropertyEntry* pEntry);

    // Around a change of an entry's description.
    static void TakeOutName(KLyrPropertyEntry* pEntry);
    static void PutInName(KLyrPropertyEntry* pEntry);

    // The smallest id above pAfter of a child of pParentId, or -1.
    int NextChild(int pParentId, int pAfter) const;
    // The same for the parent and the id of an entry that is here.
    static int NextSibling(const KLyrPropertyEntry* pEntry);

    // A name to be found: its text and hash without case.
    struct Name {
        explicit Name(const char* pText);

        const char* mText;
        std::uint64_t mHash;
    };
    // The child of pParentId with the smallest id whose name is equal but for the case of ASCII letters, or null, and
    // the one with the next larger id.
    const KLyrPropertyEntry* FirstNamesake(int pParentId, const Name& pName) const;
    static const KLyrPropertyEntry* NextNamesake(const KLyrPropertyEntry* pEntry);
    static int IdOf(const KLyrPropertyEntry* pEntry);

private:
    template <typename T, typename... Args>
    friend T* LyrSdkNew(Args&&... pArgs);
    template <typename T>
    friend void LyrSdkDelete(T* pObject);

    struct Node {
        KLyrPropertyEntry* mEntry;
        // The neighbours in the ring; null for an entry without a description.
        KLyrPropertyEntry* mNext;
        KLyrPropertyEntry* mPrevious;
        KLyrPropertyIndex* mIndex;
        unsigned mHash;
    };
    // The parent id above the id, both so that an unsigned comparison orders them.
    using Key = std::uint64_t;
    using KChildMap = KMap<Key, Node, KLyrLessCompare<Key>, KHungryAllocator>;
    using Record = KChildMap::RecordType;

    KLyrPropertyIndex() = default;
    ~KLyrPropertyIndex() { LyrSdkFree(mTable); }

    static Key KeyOf(int pParentId, int pId);
    static int IdOf(const Record* pRecord);
    static Record* RecordOf(const KLyrPropertyEntry* pEntry);
    static Node& NodeOf(const KLyrPropertyEntry* pEntry) { return RecordOf(pEntry)->GetValue(); }
    static unsigned Hash(int pParentId, const Name& pName);
    bool MakeRoom();
    bool ResizeTable(unsigned pSlots);
    unsigned FindSlot(int pParentId, const char* pName, unsigned pHash) const;
    unsigned SlotOf(const KLyrPropertyEntry* pLast) const;
    void PutIn(KLyrPropertyEntry* pEntry);
    static KLyrPropertyEntry* Predecessor(KLyrPropertyEntry* pLast, int pId);
    void TakeOut(KLyrPropertyEntry* pEntry);
    void FreeSlot(unsigned pSlot);

    KChildMap mChildren;
    KLyrPropertyEntry** mTable = nullptr;
    unsigned mTableMask = 0;  // slots less one
};

}  // namespace lyrsdk
