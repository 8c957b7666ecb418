#pragma once

// The index of a page with many entries; internal to the library.
//
//   children    a map from (parent id, id): the children of one property side by side, in the order of their ids
//   namesakes   a hash table of trees: the entries of one parent whose names are equal but for case, ordered by id
//
//   table [ . | top | . | . | top | .. ]       a slot leads to the top of a tree; most have one entry
//                5             9
//              3   8
//
// It answers for the page's own entries only; the page merges the answers of its chain. Finding the next child is
// O(log n), of an entry that is here itself the first one O(1), finding a name O(1) on average: the hashes are seeded
// in every process, so that a file cannot know names that hash alike where the system places programs at random. Among
// m namesakes it is O(log m), and so is putting one of them in or taking it out, wherever its id lies: the trees are
// kept flat by ranks, random numbers that are made from the ids. Neither search allocates. It costs 80 bytes a property
// (48 on 32 bit), and two to four pointers in the table.
//
// An entry knows its record here, so that the first child and the next sibling are one step away and an entry that is
// given another description moves to the tree of its new name.

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

    // pParent is the page's entry of the parent, or null. False when there is no memory; the index then lacks the entry
    // and must go.
    bool Add(int pId, KLyrPropertyEntry* pEntry, KLyrPropertyEntry* pParent);
    void Remove(KLyrPropertyEntry* pEntry, KLyrPropertyEntry* pParent);
    // For an entry whose children may have been here before it.
    void FindFirstChild(KLyrPropertyEntry* pEntry);

    // Around a change of an entry's description.
    static void TakeOutName(KLyrPropertyEntry* pEntry);
    static void PutInName(KLyrPropertyEntry* pEntry);

    // The smallest id above that of pEntry among its children, or -1.
    static int FirstChild(const KLyrPropertyEntry* pEntry) { return NodeOf(pEntry).mFirstChild; }
    // The smallest id above pAfter of a child of pParentId, or -1.
    int NextChild(int pParentId, int pAfter) const;
    // The same for the parent and the id of an entry that is here.
    static int NextSibling(const KLyrPropertyEntry* pEntry);

    // A name to be found: its text and hash without case.
    struct Name {
        explicit Name(const char* pText);

        const char* mText;
        std::uint32_t mHash;
    };
    // The child of pParentId with the smallest id above pAfter whose name is equal but for the case of ASCII letters,
    // or null, and the one with the next larger id.
    const KLyrPropertyEntry* NextNamesake(int pParentId, const Name& pName, int pAfter) const;
    static const KLyrPropertyEntry* NextNamesake(const KLyrPropertyEntry* pEntry);
    static int IdOf(const KLyrPropertyEntry* pEntry);

private:
    template <typename T, typename... Args>
    friend T* LyrSdkNew(Args&&... pArgs);
    template <typename T>
    friend void LyrSdkDelete(T* pObject);

    struct Node {
        KLyrPropertyEntry* mEntry;
        // Below it in its tree: namesakes with smaller ids and with larger ones. An entry without a
        // description is in no tree; it is then before itself.
        KLyrPropertyEntry* mBefore;
        KLyrPropertyEntry* mBehind;
        KLyrPropertyIndex* mIndex;
        unsigned mHash;
        int mFirstChild;
    };
    // The parent id above the id, both so that an unsigned comparison orders them.
    using Key = std::uint64_t;
    using KChildMap = KMap<Key, Node, KLyrLessCompare<Key>, KHungryAllocator>;
    using Record = KChildMap::RecordType;

    KLyrPropertyIndex() = default;
    ~KLyrPropertyIndex() { LyrSdkFree(mTable); }

    static Key KeyOf(int pParentId, int pId);
    static bool AreOfOneParent(Key pLeft, Key pRight);
    static int IdOf(const Record* pRecord);
    static Record* RecordOf(const KLyrPropertyEntry* pEntry);
    static Node& NodeOf(const KLyrPropertyEntry* pEntry) { return RecordOf(pEntry)->GetValue(); }
    static unsigned Hash(int pParentId, std::uint32_t pHashOfName);
    bool MakeRoom();
    bool ResizeTable(unsigned pSlots);
    unsigned FindSlot(int pParentId, const char* pName, unsigned pHash) const;
    unsigned SlotOf(const KLyrPropertyEntry* pEntry) const;
    static std::uint64_t RankOf(const KLyrPropertyEntry* pEntry);
    static const KLyrPropertyEntry* NextIn(const KLyrPropertyEntry* pTree, int pAfter);
    void PutIn(KLyrPropertyEntry* pEntry);
    void TakeOut(KLyrPropertyEntry* pEntry);
    void FreeSlot(unsigned pSlot);

    KChildMap mChildren;
    KLyrPropertyEntry** mTable = nullptr;
    unsigned mTableMask = 0;  // slots less one
};

}  // namespace lyrsdk
