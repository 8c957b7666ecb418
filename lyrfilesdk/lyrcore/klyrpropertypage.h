#pragma once

// The page: the store behind every property handle.
//
// A page holds a tree of properties, each an entry under an integer id. A page that was made as an instance of another
// one holds only what it overrides or adds; whatever it misses is looked up in the page it is an instance of, and so
// on:
//
//   instance ----instance-of----> page ----instance-of----> family root
//   | 3: value |                  | 3: value         |      | 0: info value flags |
//   | 9: info value flags |       | 5: flags         |      | 3: info value flags |
//                                                           | 5: info value flags |
//
// Here the instance sees its own value of property 3, the description of 3 from the family root, and the flags of 5
// from the page between merged with the root's. All pages of a family draw ids from one generator, so an id means the
// same property in every one of them, and an id is never used twice.
//
// Ownership: the application makes pages with Create and destroys them with Destroy, in any order. A page owns its
// entries. Pages keep no reference to each other that outlives a page: a page that is destroyed first gives its
// instances copies of all they inherited from it.
//
// Failures are returned: false, null, -1, "" or eUNIDENTIFIED. Any value of any argument type is allowed, except a
// pointer to a page or item that was destroyed and a value pointer whose memory is not of the stated type.
//
// Cost, for n properties on the chain of d pages: reading or writing a value or flags, a step in the tree and a lookup
// by name are d searches of O(log n) each. On a page of 32 entries or more, an entry whose id lies among others is
// found in one step. A lookup with case, or with a type info, that has m namesakes without case, or of other types, in
// front of what it finds looks at them all. A walk over the k descendants of a property is O(d k log n), wherever their
// ids lie. The last two walks are remembered for the family: three that take turns, and all once a property was added
// under a larger id than its own, may look at every id between two descendants. No lookup, read or walk allocates. The
// memory of entries that went is used again: a page holds room for about twice the entries it had most at a time. A
// page of 32 entries or more has a table and an index beside them, at 105 to 165 bytes an entry (60 to 95 on 32 bit),
// and a family of 128 properties has the room for walks, at 8 to 16.
//
// A page family is used by one thread at a time. While nobody changes it, several threads may read it together, but for
// what writes down where it is: walks over descendants, and connections seen through a filter. Different families may
// be used by different threads. Families that are connected, or of which one types properties of the other, count as
// one: they are linked.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/components/kbaselib/klib/karrayul.h"
#include "lyrfilesdk/components/kbaselib/klib/kcontainerallocators.h"
#include "lyrfilesdk/components/kbaselib/klib/kmap.h"
#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"
#include "lyrfilesdk/components/kbaselib/klib/kpair.h"
#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "lyrfilesdk/lyrcore/klyrpropertydef.h"
#include "lyrfilesdk/lyrcore/klyrpropertyitems.h"

namespace lyrsdk {

class KLyrDescendentWalk;
class KLyrPropertyIndex;

namespace detail {

// The memory of the entries of one page, in chunks of several that are given back together. The memory of an entry that
// went is used again.
class EntryPool {
public:
    EntryPool() = default;  // takes no memory yet
    ~EntryPool() { Clear(); }
    EntryPool(const EntryPool&) = delete;
    EntryPool& operator=(const EntryPool&) = delete;

    // For one entry; null when there is no memory.
    void* Take();
    void GiveBack(void* pMemory);
    // Gives all chunks back; nothing is in use any more.
    void Clear();

private:
    bool MakeRoom();

    void* mChunks = nullptr;  // each begins with a pointer to the one before
    void* mFree = nullptr;    // begins with a pointer to the next free one
    unsigned mCount = 0;      // entries that there is memory for
};

}  // namespace detail

// Counts the ids of one page family. Freed with the last page that refers to it.
class LYRSDK_API KLyrPropertyIdGenerator {
public:
    // The next id, 0 first; -1 when all ids up to 2^31 - 1 have been handed out.
    int GetNextIdAndInc();
    // The id that would come next, or -1.
    int PeekNextId() const { return mNextId; }
    // Leaves out the ids below pNextId. False, and nothing changes, when that would go back.
    bool SkipTo(int pNextId);

    // Counts a page of the family, or gives one back; the last one frees the counter.
    void IncRef() { ++mRef; }
    void DecRef() {
        if (--mRef == 0)
            LyrSdkDelete(this);
    }

private:
    LYRSDK_MADE_BY_FACTORY
    friend struct KLyrLayout;
    friend class KLyrPropertyPage;

    KLyrPropertyIdGenerator() = default;
    ~KLyrPropertyIdGenerator();
    KLyrPropertyIdGenerator(const KLyrPropertyIdGenerator&) = delete;
    KLyrPropertyIdGenerator& operator=(const KLyrPropertyIdGenerator&) = delete;

    unsigned mRef = 0;
    int mNextId = 0;

    // The last walks over descendants in the family; null as long as it is small.
    KLyrDescendentWalk* mWalk = nullptr;
    // Entries of all pages of the family, and with how many of them the walks are to get more room.
    std::size_t mEntryCount = 0;
    std::size_t mEnlargeFrom = 128;
    // A property was added under an id that was not there yet.
    bool mHasOddParents = false;
    // The page that the family began with, while it lives, and the memory of its entries. Instances hold few and take
    // memory for each.
    const KLyrPropertyPage* mFirstPage = nullptr;
    detail::EntryPool mFirstEntries;
};

class LYRSDK_API KLyrPropertyPage {
public:
    // The flags of properties.
    using eLyrPropertyFlags = LyrPropertyFlags::eLyrPropertyFlags;
    // The entries of a page by id.
    using KEntryMap = KMap<int, KLyrPropertyEntry*, KLyrLessCompare<int>, KHungryAllocator>;
    // Ids by parent and name.
    using KNameMap = KMap<KPair<int, const char*>, int, KNameMapCompare, KBaseAllocator>;

    // --- making and destroying -------------------------------------------------------------------------------------

    // A family root page whose root property, id 0, has this name and type. Null when there is no memory, as below.
    static KLyrPropertyPage* Create(const char* pName, ELyrType pType);
    // The same with a root property that is typed by a page and gets copies of that page's properties as its children.
    static KLyrPropertyPage* Create(const char* pName, KLyrPropertyPage* pTypeInfo);
    // An instance of pInstanceOf; of null, a family root page with a root property "" of type eUNIDENTIFIED.
    static KLyrPropertyPage* Create(KLyrPropertyPage* pInstanceOf);

    // Destroys the page. Every instance of it takes copies of what it inherited: names, types, values and flags read
    // the same as before; labels, user tags and data, bounds and enumeration texts go with the descriptions of this
    // page. The instance is a family root of its own from then on. Without memory for the copies the page lives on
    // behind its instances, out of the application's reach, and goes with the last of them. Linear in the properties
    // seen and the instances.
    void Destroy();

    // Whether pPage is this very page.
    bool Is(const KLyrPropertyPage* pPage) const { return pPage == this; }
    // Not supported: false, and nothing changes.
    bool Reparent(int pChildId, int pNewParentId);

    // A pointer for the application, not looked at.
    void SetDataPtr(void* pDataPtr) { mDataPtr = pDataPtr; }
    void* GetDataPtr() const { return mDataPtr; }

    // The page that this one is an instance of; null for a family root.
    KLyrPropertyPage* GetInstanceOf() const { return mInstanceOf; }
    // The pages that are instances of this one. Their order changes when one of them is destroyed. To be read only.
    KArrayTemplate<KLyrPropertyPage*>& GetInstances() { return mInstances; }
    const KArrayTemplate<KLyrPropertyPage*>& GetInstances() const { return mInstances; }
    // The id counter that this page shares with its family.
    KLyrPropertyIdGenerator* GetIdGenerator() const { return mIdGenerator; }

    // --- adding ----------------------------------------------------------------------------------------------------

    // Adds a property and gives its id; -1, and nothing is added, when there is no memory or no id left. The parent id
    // is stored as given. All flags of a new property are off and set locally.
    int Add(int pParentId, const char* pName, ELyrType pType);
    // A property typed by pTypeInfo, with a deep copy of that page's properties as children, in depth-first order. The
    // copies have names, types and values; no flags, labels, user tags and data, bounds, enumeration texts or
    // connections. Null is eUNIDENTIFIED. A page that would expand within itself, or this very page, is reported as
    // "Recursive type info" and not expanded.
    int Add(int pParentId, const char* pName, KLyrPropertyPage* pTypeInfo);
    // The same with items given by the caller, any of them null; children only when pRecursive. The new entry holds a
    // reference to each item. When this fails the items are still the caller's.
    int Add(int pParentId, KLyrPropertyInfo* pInfo, KLyrPropertyValue* pValue, KLyrPropertyConnect* pConnect,
            bool pRecursive);

    // --- entries and items, through the instance-of chain ----------------------------------------------------------

    // The entry seen for pId, and the page that holds it; null and null when there is none.
    KLyrPropertyEntry* GetPropertyEntry(int pId, KLyrPropertyPage** pFoundIn = nullptr) const;
    // The item of type T seen for pId, and the page that holds it. The first argument only chooses T.
    template <typename T>
    T* GetPropertyItem(const T* pItemTag, int pId, KLyrPropertyPage** pFoundIn = nullptr) const;
    // The page farthest up the chain that holds an item of type T for pId; null when none does.
    template <typename T>
    KLyrPropertyPage* GetFirstPropertyItem(int pId, const T* pItemTag) const;

    // Takes the entry of pId out of this very page and destroys it; false when this page holds none. What it inherits
    // for pId shows again.
    bool RemoveOwnEntry(int pId);

    // --- values ----------------------------------------------------------------------------------------------------

    // The value seen, converted. False for an unknown id, a null pointer or a refused conversion.
    bool Get(int pId, void* pValue, ELyrType pValueType) const;
    // The value of the page farthest up the chain.
    bool GetDefaultValue(int pId, void* pValue, ELyrType pValueType) const;
    // Writes this page's own value, converted. With pCheckValueEquality, a value equal to what is inherited is not
    // written: an own value is then dropped so that the page inherits again (true), an inherited one stays as it is
    // (false). A conversion that is refused leaves an own copy of the value that was seen; a type code that stands for
    // no value changes nothing.
    bool Set(int pId, const void* pValue, ELyrType pValueType, bool pCheckValueEquality);

    // --- description: shared with every page that sees it ----------------------------------------------------------

    // The type, eUNIDENTIFIED without a description.
    ELyrType GetType(int pId) const;
    // The name, "" without a description. It lives as long as the description.
    const char* GetName(int pId) const;
    // The page that types the property, or null.
    KLyrPropertyPage* GetTypeInfo(int pId) const;
    // The label, "" without one. Setting it is false without a description or memory; null is the empty text.
    const char* GetLabel(int pId) const;
    bool SetLabel(int pId, const char* pLabel);
    // A number for the application, 0 at first. Setting it is false without a description.
    int GetUserTag(int pId) const;
    bool SetUserTag(int pId, int pUserTag);
    // A pointer for the application, not owned. Setting it is false without a description.
    void* GetUserData(int pId) const;
    bool SetUserData(int pId, const void* pUserData);
    // A bound, converted; false as KLyrPropertyInfo says, and without a description.
    bool SetMinMax(int pId, KLyrPropertyInfo::eValueIndex pIndex, const void* pValue, ELyrType pValueType);
    bool GetMinMax(int pId, KLyrPropertyInfo::eValueIndex pIndex, void* pValue, ELyrType pValueType) const;
    // Whether there is such a bound.
    bool HasMinMax(int pId, KLyrPropertyInfo::eValueIndex pIndex) const;
    // Appends an enumeration text and gives its index; -1 for one that is there already, another type, or no memory.
    int AddEnumValue(int pId, const char* pName);
    // Puts a text in front of the one at pIndex; past the end appends. Stored indices stay as they are.
    void InsertEnumValue(int pId, int pIndex, const char* pName);
    // The number of enumeration texts; 0 for other types.
    int GetEnumCount(int pId) const;
    // Replaces the text at pIndex, if there is one.
    void SetEnumValue(int pId, int pIndex, const char* pName);
    // Takes the text at pIndex out, if there is one. Stored indices stay as they are.
    void RemoveEnumValue(int pId, int pIndex);
    // The text at pIndex; "" without a description, null from one that has no such text. It lives until it is changed
    // or removed.
    const char* GetEnumValue(int pId, int pIndex) const;

    // --- inheritance -----------------------------------------------------------------------------------------------

    // eLyrOverride: this page's own entry, made empty when an ancestor holds the property; null when nobody does, or
    // without memory. eLyrInherit, eLyrDeleted: this page's own entry is removed; null.
    KLyrPropertyEntry* ChangePropertyEntryState(int pId, KLyrInheritType pInheritType);
    // The same for one item; T is KLyrPropertyInfo, KLyrPropertyValue or KLyrPropertyFlags. An override is a clone of
    // what was seen. eLyrInherit does nothing when the parent has no such item; eLyrDeleted drops the item all the
    // same.
    template <typename T>
    T* ChangePropertyItemState(const T* pItemTag, int pId, KLyrInheritType pInheritType);

    // Override when this page holds the value. With pCheckInstanceOf also when the value seen overrides another one up
    // the chain. eLyrInherit when there is no value at all.
    KLyrInheritType GetValueInherit(int pId, bool pCheckInstanceOf) const;
    // Whether the value is in state pType afterwards; eLyrDeleted is refused.
    bool SetValueInherit(int pId, KLyrInheritType pType);

    // The flags seen: on every page of the chain the local ones over the inherited ones. 0 for an unknown id.
    eLyrPropertyFlags GetFlags(int pId) const;
    // Override when this page sets any of the flags; with pCheckInstanceOf also when two pages up the chain do.
    KLyrInheritType GetFlagsInheritType(eLyrPropertyFlags pFlags, bool pCheckInstanceOf, int pId) const;
    // Override copies what the parent shows; inherit shows the parent's again. eLyrDeleted is refused.
    bool SetFlagsInheritType(KLyrInheritType pType, eLyrPropertyFlags pFlags, int pId);
    // Turns flags on or off on this page. With pCheckFlagEquality, flags that equal the parent's go back to inheriting,
    // and where an ancestor's flags are seen that are all on, nothing changes, whatever pValue asks (true).
    bool ModifyFlags(int pId, eLyrPropertyFlags pFlags, bool pValue, bool pCheckFlagEquality);

    // Moves this page's own descriptions, values and flags into the page it is an instance of. What is seen through
    // this page stays the same. Connections stay here. Nothing without a parent, or with one that was destroyed.
    void PushPropertiesToParentInstance();

    // --- the property tree -----------------------------------------------------------------------------------------

    // The id of the parent as it was given; -1 for the root and for an unknown id.
    int GetParent(int pId) const;
    // Whether pAncestorId is on pId's parent chain; 0 and below count as everyone's ancestor. Ends on circles.
    bool IsDescendentOf(int pId, int pAncestorId) const;
    // Whether pParentId is the parent of pId.
    bool IsChildOf(int pId, int pParentId) const;
    // The smallest id above pId (above 0 for -1) in the chain, or -1, and its entry: of equal ids the farthest page's.
    int GetMinimumPropertyIdAndEntry(int pId, KLyrPropertyEntry** pEntry = nullptr) const;
    // The first child; -1 when there is none. Children, siblings and descendants come in ascending id order.
    int GetChild(int pParentId) const;
    // The next property with the same parent; -1 behind the last.
    int GetSibling(int pId) const;
    // The first property anywhere below.
    int GetFirstDescendent(int pAnscestorId) const;
    // The property anywhere below pAnscestorId that comes behind pId; -1 behind the last.
    int GetNextDescendent(int pAnscestorId, int pId) const;
    // One more than the largest id in the chain (at most 2^31 - 1); 0 when there is none.
    int GetPropertyEntryCount() const;

    // --- lookup by name --------------------------------------------------------------------------------------------

    // The child of pId with this name, or, with separators, the descendant along a path of names; -1 when there is
    // none. Each separator character ends one name; two in a row enclose an empty one. Only the last name is filtered
    // by pTypeInfo (null: no filter). Without case, names are equal that strcasecmp takes for equal in the current C
    // locale. Allocates nothing unless a name in the middle of a path is long.
    int Find(int pId, const char* pName, KLyrPropertyPage* pTypeInfo, bool pCaseSensitive,
             const char* pChildrenSeparators) const;
    // The child of pId with this name, no path; -1 when there is none.
    int FastFind(int pId, const char* pName, KLyrPropertyPage* pTypeInfo, bool pCaseSensitive) const;

    // Between these two, a map of all names of the chain answers lookups, with case and without looking at the
    // children: what it does not hold is not found. Add keeps it complete for this page. The calls do not nest.
    // Without memory for the map the bracket stays closed.
    void BeginCreateOrFindProperty();
    void EndCreateOrFindProperty();
    // Whether the map is there.
    bool IsCreateOrFindOpen() const { return mCreateOrFind.mFirst != 0; }

    // --- connections -----------------------------------------------------------------------------------------------

    // Connects, with connection items (and entries) made on this page and the other one as needed. False, and nothing
    // is made, for a null page, an unknown id, a property with itself, a second connection of the two, or no memory.
    bool ConnectSrc(int pDstId, KLyrPropertyPage* pSrcPage, int pSrcId, kLyrConnectionType pType);
    bool ConnectDst(int pSrcId, KLyrPropertyPage* pDstPage, int pDstId, kLyrConnectionType pType);
    // Takes a connection away; false when there is none. Only connection items that the pages hold themselves are seen.
    bool DisconnectSrc(int pDstId, KLyrPropertyPage* pSrcPage, int pSrcId);
    bool DisconnectDst(int pSrcId, KLyrPropertyPage* pDstPage, int pDstId);
    // Whether the two are connected in that direction, by items that the pages hold themselves.
    bool IsConnectedSrc(int pDstId, KLyrPropertyPage* pSrcPage, int pSrcId) const;
    bool IsConnectedDst(int pSrcId, KLyrPropertyPage* pDstPage, int pDstId) const;
    // How many sources or destinations a filter selects; all of them with a null filter. 0 where this page holds no
    // connection item itself.
    int GetSrcCount(int pId, KLyrConnectionPointFilter* pFilter) const;
    int GetDstCount(int pId, KLyrConnectionPointFilter* pFilter) const;
    // The other end at pIndex, in order of connection. False, and nothing is written, when there is none. Either
    // out-parameter may be null.
    bool GetSrc(int pId, int pIndex, KLyrConnectionPointFilter* pFilter, KLyrPropertyPage** pSrcPage,
                int* pSrcId) const;
    bool GetDst(int pId, int pIndex, KLyrConnectionPointFilter* pFilter, KLyrPropertyPage** pDstPage,
                int* pDstId) const;
    // Removes every connection of the item seen, inherited or not.
    void WipeAllConnections(int pId);
    // Drops what the item seen, inherited or not, keeps for filters; it is made anew when next asked for.
    void ClearConnectCache(int pId);

private:
    LYRSDK_MADE_BY_FACTORY
    friend class KLyrPropertyConnect;
    friend class KLyrPropertyInfo;
    friend struct KLyrLayout;

    class ExpansionLevel;
    struct NameToFind;
    enum EAscent { eArrived, eMissed, eTooFar };

    // What a page with many entries has beside them, in one block: its index, and the entries by id, so that most are
    // found without a search.
    //
    //   [ mIndex | mFirst | mSlots | mAdded | entry mFirst | null | entry mFirst + 2 | .. ]
    //
    // The slots stand for the ids from mFirst on, null for those without an entry. They are laid where the ids lie
    // close together: there are at most four for each entry among them, and mostly one or two. What lies elsewhere is
    // looked for in the map.
    struct EntryTable {
        // A table of these entries in place of pOld, whose index it takes over. Without memory for it pOld, which may
        // be null.
        static EntryTable* Renew(const KEntryMap& pEntries, EntryTable* pOld);
        // Puts one of now pCount entries into its slot. False when it has none, and so many came that another table is
        // due.
        bool Add(int pId, KLyrPropertyEntry* pEntry, int pCount);

        bool HasSlot(int pId) const { return static_cast<unsigned>(pId) - mFirst < mSlots; }
        KLyrPropertyEntry*& At(int pId) { return Slots()[static_cast<unsigned>(pId) - mFirst]; }
        KLyrPropertyEntry** Slots() { return reinterpret_cast<KLyrPropertyEntry**>(this + 1); }

        KLyrPropertyIndex* mIndex;  // null when there was no memory for it
        unsigned mFirst;
        unsigned mSlots;
        unsigned mAdded;  // entries that came since the table was made, or was to be made anew
    };

    // A page with fewer entries has no table.
    static constexpr int kFewestInTable = 16;

    KLyrPropertyPage();
    ~KLyrPropertyPage();
    KLyrPropertyPage(const KLyrPropertyPage&) = delete;
    KLyrPropertyPage& operator=(const KLyrPropertyPage&) = delete;

    static KLyrPropertyPage* CreateFamily();
    static KLyrPropertyPage* Abandon(KLyrPropertyPage* pPage);
    bool JoinFamily(KLyrPropertyPage* pInstanceOf);
    void LeaveInstanceOf();
    bool HandDownToInstances();
    bool HandDown(int pId, KLyrPropertyPage* pInstance) const;
    void ReleaseTypedInfos();
    KLyrPropertyEntry* NewEntry(int pParentId, KLyrPropertyInfo* pInfo, KLyrPropertyValue* pValue,
                                KLyrPropertyConnect* pConnect);
    void FreeEntry(KLyrPropertyEntry* pEntry);
    void DestroyEntry(int pId, KLyrPropertyEntry* pEntry);
    void Retire();
    int AddNew(int pParentId, KLyrPropertyInfo* pInfo, KLyrPropertyValue* pValue);
    int AddEntry(int pParentId, KLyrPropertyInfo* pInfo, KLyrPropertyValue* pValue, KLyrPropertyConnect* pConnect);
    int AddClone(int pParentId, const KLyrPropertyPage* pFrom, int pFromId);
    bool Expand(int pId, KLyrPropertyPage* pTypeInfo);
    void UndoAdd(int pFirstId);
    KPair<KEntryMap::RecordType*, bool> InsertRecord(int pId, KLyrPropertyEntry* pEntry);
    void RemoveRecord(int pId);
    KLyrPropertyEntry* InsertOwnEntry(int pId, int pParentId);
    KLyrPropertyEntry* FindOwnEntry(int pId) const;
    // Null for an id without a slot, too.
    KLyrPropertyEntry* FindInTable(int pId) const { return mTable && mTable->HasSlot(pId) ? mTable->At(pId) : nullptr; }
    void PutIntoTable(int pId, KLyrPropertyEntry* pEntry);
    void TakeFromTable(int pId, KLyrPropertyEntry* pEntry);
    void RenewIdBits();
    void DropIndex();
    static unsigned BitOf(int pId) { return 1u << (static_cast<unsigned>(pId) & 31u); }
    void SetInstanceIndex(int pIndex) { mInstanceIndex = static_cast<unsigned>(pIndex) & 0x7FFFFFFFu; }
    KLyrPropertyIndex* GetIndex() const { return mTable ? mTable->mIndex : nullptr; }
    int NextOwnChild(int pParentId, int pAfter) const;
    void EnlargeWalk();
    bool Inherits(int pId) const;
    EAscent Ascend(int pId, int pAncestorId) const;
    int NextCollected(int pAncestorId, int pId) const;
    int NextAdded(int pAncestorId, int pId) const;
    KLyrDescendentWalk* WalkFor(int pAncestorId) const;
    bool IsCollected(int pAncestorId) const;
    int EndOfIds() const;
    int NextDescendentByScan(int pAnscestorId, int pId) const;
    void DropIfEmpty(int pId);
    void PushEntry(int pId, KLyrPropertyEntry* pEntry);
    void PutFlagsBack(int pId, KLyrPropertyFlags* pItem, eLyrPropertyFlags pFlags);
    bool FindInCache(int pId, const char* pName, const KLyrPropertyPage* pTypeInfo, int& pFound) const;
    int FindHeld(const NameToFind& pSought, int pAbove) const;
    int FindOwn(const NameToFind& pSought, int pAbove, int pBelow) const;
    KLyrPropertyConnect* OwnConnect(int pId) const;
    KLyrPropertyConnect* MakeOwnConnect(int pId, KLyrPropertyEntry* pOwn);
    void UndoOwnConnect(int pId, bool pHadEntry, bool pHadConnect);

    KEntryMap mEntries;
    KLyrPropertyPage* mInstanceOf = nullptr;
    KArrayTemplate<KLyrPropertyPage*> mInstances;
    void* mDataPtr = nullptr;
    KPair<unsigned int, KNameMap> mCreateOrFind;
    KLyrPropertyIdGenerator* mIdGenerator = nullptr;

    // The descriptions that this page types, linked.
    KLyrPropertyInfo* mTypedInfos = nullptr;
    // The connection items that were made for this page, linked.
    KLyrPropertyConnect* mConnects = nullptr;
    // Made for a page with many entries, and for the time being only.
    EntryTable* mTable = nullptr;
    // Where this page was put into its instance-of page's instances; a guess that is checked.
    unsigned mInstanceIndex : 31;
    // Destroyed by the application, but kept for the instances.
    unsigned mDestroyPending : 1;
    // A bit for every 32nd id: off when no entry has one of those, so that most of what an instance inherits is not
    // looked for among the few that it has.
    unsigned mIdBits = 0;
    // While this page is being copied into another one: which copying that is.
    const ExpansionLevel* mExpansion = nullptr;
};

template <typename T>
T* KLyrPropertyPage::GetPropertyItem(const T* pItemTag, int pId, KLyrPropertyPage** pFoundIn) const {
    for (const KLyrPropertyPage* lPage = this; lPage; lPage = lPage->mInstanceOf) {
        const KLyrPropertyEntry* lHeld = lPage->FindOwnEntry(pId);
        T* lItem = lHeld ? const_cast<KLyrPropertyEntry*>(lHeld)->Get(pItemTag) : nullptr;
        if (lItem) {
            if (pFoundIn)
                *pFoundIn = const_cast<KLyrPropertyPage*>(lPage);
            return lItem;
        }
    }
    if (pFoundIn)
        *pFoundIn = nullptr;
    return nullptr;
}

template <typename T>
KLyrPropertyPage* KLyrPropertyPage::GetFirstPropertyItem(int pId, const T* pItemTag) const {
    KLyrPropertyPage* lFirst = nullptr;
    const KLyrPropertyPage* lPage = this;
    while (lPage) {
        KLyrPropertyPage* lHolder = nullptr;
        lPage->GetPropertyItem<T>(pItemTag, pId, &lHolder);
        if (lHolder)
            lFirst = lHolder;
        lPage = lHolder ? lHolder->mInstanceOf : nullptr;
    }
    return lFirst;
}

extern template LYRSDK_API KLyrPropertyInfo* KLyrPropertyPage::ChangePropertyItemState(const KLyrPropertyInfo*, int,
                                                                                       KLyrInheritType);
extern template LYRSDK_API KLyrPropertyValue* KLyrPropertyPage::ChangePropertyItemState(const KLyrPropertyValue*, int,
                                                                                        KLyrInheritType);
extern template LYRSDK_API KLyrPropertyFlags* KLyrPropertyPage::ChangePropertyItemState(const KLyrPropertyFlags*, int,
                                                                                        KLyrInheritType);

// Most pages of a long chain have no entries. Their number stands beside the map; the rest is farther off.
inline KLyrPropertyEntry* KLyrPropertyPage::FindOwnEntry(int pId) const {
    const int lCount = mEntries.GetSize();
    if (lCount >= kFewestInTable) {
        if (mTable && mTable->HasSlot(pId))
            return mTable->At(pId);
    } else if (lCount == 0 || (mIdBits & BitOf(pId)) == 0) {
        return nullptr;
    }
    const auto* lRecord = mEntries.Find(pId);
    return lRecord ? lRecord->GetValue() : nullptr;
}

}  // namespace lyrsdk
