#pragma once

// What a page holds for one property: an entry, which points at up to three shared items and embeds a fourth.
//
//   KLyrPropertyEntry
//     mInfo      -> KLyrPropertyInfo      description: name, type, label, user tag and data, bounds, enumeration
//     mValue     -> KLyrPropertyValue     a value and its type code
//     mConnect   -> KLyrPropertyConnect   the connection point
//     mParentId     id of the parent property
//     mFlags        KLyrPropertyFlags     low half: flags, high half: which of them are set here
//
// An item pointer that is null means that the item is taken from the page that this one is an instance of. Items are
// made by Create and copied by Clone, both with a count of 0; who stores an item counts it with IncRef and gives it
// back with DecRef, which frees it with the last reference. Counts are not atomic: a page family belongs to one thread.
// Create and Clone give null when there is no memory.

#include <type_traits>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/components/kbaselib/klib/kassert.h"
#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"
#include "lyrfilesdk/components/kbaselib/klib/kscopedptr.h"
#include "lyrfilesdk/components/kbaselib/klib/kstringlist.h"
#include "lyrfilesdk/klyrplugins/klyrsymbol.h"
#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"
#include "lyrfilesdk/lyrcore/klyrpropertydef.h"

// Items and pages are made and destroyed by their own functions only.
#define LYRSDK_MADE_BY_FACTORY                    \
    template <typename lyrT, typename... lyrArgs> \
    friend lyrT* LyrSdkNew(lyrArgs&&... pArgs);   \
    template <typename lyrT>                      \
    friend void LyrSdkDelete(lyrT* pObject);

namespace lyrsdk {

namespace detail {

// Frees an item that nobody has counted yet; null is ignored.
template <typename T>
void Discard(T* pItem) {
    if (pItem) {
        pItem->IncRef();
        pItem->DecRef();
    }
}

// An item's place in a list of items that their owner does not own. pMember of Insert and TakeOut is the member, or
// gives it.
template <typename T>
struct Link {
    T** mBack = nullptr;  // what points at the item; null outside a list
    T* mNext = nullptr;
};

template <auto pMember, typename T>
Link<T>& LinkOf(T* pItem) noexcept {
    if constexpr (std::is_member_object_pointer_v<decltype(pMember)>)
        return pItem->*pMember;
    else
        return (pItem->*pMember)();
}

template <auto pMember, typename T>
void Insert(T* pItem, T*& pFirst) noexcept {
    Link<T>& lLink = LinkOf<pMember>(pItem);
    lLink.mBack = &pFirst;
    lLink.mNext = pFirst;
    if (pFirst)
        LinkOf<pMember>(pFirst).mBack = &lLink.mNext;
    pFirst = pItem;
}

// Does nothing for an item outside a list.
template <auto pMember, typename T>
void TakeOut(T* pItem) noexcept {
    Link<T>& lLink = LinkOf<pMember>(pItem);
    if (lLink.mBack)
        *lLink.mBack = lLink.mNext;
    if (lLink.mNext)
        LinkOf<pMember>(lLink.mNext).mBack = lLink.mBack;
    lLink = Link<T>();
}

}  // namespace detail

// The flags of one property on one page. Bits 0 to 15 are the flags, bit 16 + k says that flag bit k is set here and
// not inherited. A plain value of four bytes.
class LYRSDK_API KLyrPropertyFlags {
public:
    // The flags.
    using eLyrPropertyFlags = LyrPropertyFlags::eLyrPropertyFlags;

    KLyrPropertyFlags() = default;  // nothing on, nothing set here
    // The flags pFlags, on and set here.
    explicit KLyrPropertyFlags(eLyrPropertyFlags pFlags) {
        ModifyFlags(pFlags, true);
        // LCOV_EXCL_BR_LINE: there are 16
        LYRSDK_CHECK(LyrPropertyFlags::GetFlagCount() <= 16, "lyrfilesdk/lyrcore/klyrpropertypage", 99,
                     "Only support 16 property flags");
    }

    // The flags that a page starts from when it begins to hold its own: none, whatever this item holds.
    KLyrPropertyFlags Clone(KLyrPropertyPage*) const { return KLyrPropertyFlags(); }

    // Marks flags as set here; their bits stay. Always true.
    bool SetMask(unsigned pFlags) {
        mFlagData |= pFlags << 16;
        return true;
    }
    // Takes such marks away; the bits stay. Always true.
    bool UnsetMask(unsigned pFlags) {
        mFlagData &= ~(pFlags << 16);
        return true;
    }
    // The flags that are marked as set here.
    unsigned GetMask() const { return mFlagData >> 16; }
    // The flags that are on, marked or not.
    eLyrPropertyFlags GetFlags() const { return static_cast<eLyrPropertyFlags>(mFlagData & 0xFFFFu); }

    // What is seen when pParentFlags is inherited where nothing is set here.
    eLyrPropertyFlags GetMergedFlags(unsigned pParentFlags) const {
        return static_cast<eLyrPropertyFlags>((pParentFlags & ~GetMask()) | GetFlags());
    }
    // Override when any of pFlags is set here.
    KLyrInheritType GetFlagsInheritType(unsigned pFlags) const {
        return (GetMask() & pFlags) != 0 ? eLyrOverride : eLyrInherit;
    }

    // Turns pFlags on or off here. Off is a local setting too. Bits above the flags go into the mask half as they are.
    bool ModifyFlags(unsigned pFlags, bool pValue) {
        SetMask(pFlags & 0xFFFFu);
        if (pValue)
            mFlagData |= pFlags;
        else
            mFlagData &= ~pFlags;
        return true;
    }
    // Takes the bits pMask from pFlags and marks them as set here. Bits of pFlags outside pMask are turned on unmarked.
    bool SetFlags(unsigned pMask, unsigned pFlags) {
        mFlagData = (mFlagData & 0xFFFF0000u) | (((GetFlags() & ~pMask) | pFlags) & 0xFFFFu);
        return SetMask(pMask);
    }
    // Whether the bits pFlags are the same in both.
    bool Equal(const KLyrPropertyFlags& pOther, unsigned pFlags) const {
        return (GetFlags() & pFlags) == (pOther.GetFlags() & pFlags);
    }

private:
    friend struct KLyrLayout;

    unsigned mFlagData = 0;
};

// A value and its type code. One heap block, the value behind the item:
//
//     [ mRef | mType | mValue | value ]
//
// Reading and writing a value in its own type costs one choice by type and moves its bytes; only texts and blobs take
// memory then.
class LYRSDK_API KLyrPropertyValue {
public:
    // A value of type pType: a copy of *pValue, which must be of that type, or the type's default when pValue is null.
    // A reference keeps its default. A type without storage makes an item without storage.
    static KLyrPropertyValue* Create(const void* pValue, ELyrType pType);
    // A new item of the same type with a copy of the value.
    KLyrPropertyValue* Clone(KLyrPropertyPage* pPage) const;

    // Counts a reference, or gives one back; the last one frees the item.
    void IncRef() { ++mRef; }
    void DecRef() {
        if (--mRef == 0)
            LyrSdkDelete(this);
    }

    // The type that the value is stored as.
    ELyrType GetType() const { return mType; }
    // The value converted into *pValue or from it. False, and nothing is written, when the conversion is refused, the
    // pointer is null or the item has no storage.
    bool Get(void* pValue, ELyrType pValueType) const { return mValue && lyrCopy(pValue, pValueType, mValue, mType); }
    bool Set(const void* pValue, ELyrType pValueType) { return mValue && lyrCopy(mValue, mType, pValue, pValueType); }

private:
    LYRSDK_MADE_BY_FACTORY
    friend struct KLyrLayout;
    friend class KLyrPropertyPage;

    KLyrPropertyValue(ELyrType pType, void* pMemory);
    ~KLyrPropertyValue() { lyrDestruct(mType, mValue); }
    KLyrPropertyValue(const KLyrPropertyValue&) = delete;
    KLyrPropertyValue& operator=(const KLyrPropertyValue&) = delete;

    int mRef;
    ELyrType mType;
    void* mValue;
};

// The description of a property. Shared by every page that inherits it, so a change is seen by all of them.
class LYRSDK_API KLyrPropertyInfo {
public:
    // The bounds that a description can hold. They are kept and given back, not enforced.
    enum eValueIndex : int {
        eValueMin = 0,      // the minimum
        eValueSoftMin = 1,  // the soft minimum
        eValueMax = 2,      // the maximum
        eValueSoftMax = 3,  // the soft maximum
        eValueCount = 4     // how many there are; not a bound
    };

    // A description of a property of a plain type; null is the empty name.
    static KLyrPropertyInfo* Create(const char* pName, ELyrType pType);
    // Typed by a page, which is not owned; null makes a description of type eUNIDENTIFIED.
    static KLyrPropertyInfo* Create(const char* pName, KLyrTypeInfo* pTypeInfo);
    // A new description of the same name and type. Label, user tag and data, bounds and enumeration stay behind.
    KLyrPropertyInfo* Clone(KLyrPropertyPage* pPage) const;

    // Counts a reference, or gives one back; the last one frees the item.
    void IncRef() { ++mRef; }
    void DecRef() {
        if (--mRef == 0)
            LyrSdkDelete(this);
    }

    // The name.
    KLyrStringSymbol GetName() const { return mName; }
    // The name as a text that lives as long as this item.
    const char* GetNameText() const { return mName; }

    // The type that values of this property are stored as. Of a typed description: the type of the type-info page's
    // root property, followed through the type infos of that; eUNIDENTIFIED when they run in a circle.
    ELyrType GetType() const;
    // Null for a plain type, and once the page was destroyed; the type it gave is then kept.
    KLyrTypeInfo* GetTypeInfo() const { return mTypeInfo; }

    // The label. Setting it is false when there is no memory; null is the empty text.
    bool SetLabel(const char* pLabel) { return mLabel.Assign(pLabel); }
    const char* GetLabel() const { return mLabel; }
    // A number for the application, 0 at first.
    void SetUserTag(int pUserTag) { mUserTag = pUserTag; }
    int GetUserTag() const { return mUserTag; }
    // A pointer for the application, not owned and not looked at.
    void SetUserData(const void* pUserData) { mUserData = const_cast<void*>(pUserData); }
    void* GetUserData() const { return mUserData; }

    // Whether there is such a bound.
    bool HasMinMax(eValueIndex pIndex) const { return IsBound(pIndex) && mMinMaxValue[pIndex]; }
    // Bounds. They are kept in the type that the property has when its first one is set. False for an index that is not
    // a bound, a null pointer, a refused conversion, a type without storage, or for want of memory.
    bool SetMinMax(eValueIndex pIndex, const void* pValue, ELyrType pValueType);
    bool GetMinMax(eValueIndex pIndex, void* pValue, ELyrType pValueType) const;

    // The number of enumeration texts; a text's index is its value. Only a description of type eENUM takes any.
    int GetEnumCount() const { return mEnumList ? mEnumList->GetCount() : 0; }
    // Null for another type or an index past the end; an index below 0 gives the first text.
    const char* GetEnumValue(int pIndex) const;
    // The new index, or -1: another type, a text that is there already, no memory.
    int AddEnumValue(const char* pName);
    // Puts a text in front of the one at pIndex. It may repeat a text. An index past the end appends, one below 0 does
    // nothing.
    void InsertEnumValue(int pIndex, const char* pName);
    // Replaces the text at pIndex, which may repeat another one. Nothing happens where there is none.
    void SetEnumValue(int pIndex, const char* pName);
    // Takes the text at pIndex out; those behind it move down. Nothing happens where there is none.
    void RemoveEnumValue(int pIndex);

private:
    LYRSDK_MADE_BY_FACTORY
    friend struct KLyrLayout;
    friend class KLyrPropertyPage;

    KLyrPropertyInfo(const char* pName, ELyrType pType);
    KLyrPropertyInfo(const char* pName, KLyrTypeInfo* pTypeInfo);
    KLyrPropertyInfo(const KLyrStringSymbol& pName, ELyrType pType);
    KLyrPropertyInfo(const KLyrStringSymbol& pName, KLyrTypeInfo* pTypeInfo);
    ~KLyrPropertyInfo();
    KLyrPropertyInfo(const KLyrPropertyInfo&) = delete;
    KLyrPropertyInfo& operator=(const KLyrPropertyInfo&) = delete;

    template <typename Name>
    static KLyrPropertyInfo* New(const Name& pName, KLyrTypeInfo* pTypeInfo);
    static KLyrPropertyInfo* Named(KLyrPropertyInfo* pInfo, const char* pName);
    static bool IsBound(int pIndex) { return pIndex >= 0 && pIndex < eValueCount; }
    const void* AnyBound() const;
    void DestroyBounds();
    KStringList* EnumListForWriting();
    // The descriptions that one page types are linked, so that none keeps a pointer to a page that is gone. The link
    // lies behind a description that was made with a page; others have none.
    using Link = detail::Link<KLyrPropertyInfo>;
    Link& OfTypeInfo() { return *reinterpret_cast<Link*>(this + 1); }
    void LinkToTypeInfo();
    void UnlinkFromTypeInfo();

    int mRef = 0;
    KLyrStringSymbol mName;
    KLyrStringSymbol mLabel;
    ELyrType mType = eUNIDENTIFIED;
    KLyrTypeInfo* mTypeInfo = nullptr;
    int mUserTag = 0;
    void* mMinMaxValue[eValueCount] = {};  // each behind its type
    void* mUserData = nullptr;
    [[maybe_unused]] void* mFilter = nullptr;  // reserved for the application's kit
    KLyrSdkScopedPtr<KStringList> mEnumList;
};

// The connection point of a property, with the way back to the property: the point's GetData is this item.
class LYRSDK_API KLyrPropertyConnect {
public:
    // An item without connections, for one property of a page.
    static KLyrPropertyConnect* Create(KLyrPropertyPage* pPage, int pId);
    // A connection item for pPage with the same id, and with no connections.
    KLyrPropertyConnect* Clone(KLyrPropertyPage* pPage) const { return Create(pPage, mId); }

    // Counts a reference, or gives one back; the last one frees the item.
    void IncRef() { ++mRef; }
    void DecRef() {
        if (--mRef == 0)
            LyrSdkDelete(this);
    }

    // The page that this item was made for, whoever holds the item; null once that page or its property is gone.
    KLyrPropertyPage* GetPage() const { return mPage; }
    // The property that this item was made for.
    int GetPropertyId() const { return mId; }

    // Makes pSrc a source of this item. False for a null source; else what the connection points say.
    bool ConnectSrc(KLyrPropertyConnect* pSrc, kLyrConnectionType pType);
    // Takes that connection away; false when there is none.
    bool DisconnectSrc(KLyrPropertyConnect* pSrc);
    // Whether pSrc is a source of this item.
    bool IsConnectedSrc(KLyrPropertyConnect* pSrc);
    // How many sources or destinations a filter selects; all of them with a null filter.
    int GetSrcCount(KLyrConnectionPointFilter* pFilter) { return mConnectionPoint.GetSrcCount(pFilter); }
    int GetDstCount(KLyrConnectionPointFilter* pFilter) { return mConnectionPoint.GetDstCount(pFilter); }
    // The item at the other side, of those that the filter selects; null when the index is out of range.
    KLyrPropertyConnect* GetSrc(KLyrConnectionPointFilter* pFilter, int pIndex);
    KLyrPropertyConnect* GetDst(KLyrConnectionPointFilter* pFilter, int pIndex);
    // Drops what is kept for filters; it is made anew when next asked for.
    void ClearConnectCache() { mConnectionPoint.SubConnectRemoveAll(); }
    // Removes every connection of this item.
    void WipeAllConnections() { mConnectionPoint.WipeConnectionList(); }

    // The point itself, for its types.
    const KLyrConnectionPoint& GetConnectionPoint() const { return mConnectionPoint; }

private:
    LYRSDK_MADE_BY_FACTORY
    friend struct KLyrLayout;
    friend class KLyrPropertyPage;

    KLyrPropertyConnect(KLyrPropertyPage* pPage, int pId);
    ~KLyrPropertyConnect();
    KLyrPropertyConnect(const KLyrPropertyConnect&) = delete;
    KLyrPropertyConnect& operator=(const KLyrPropertyConnect&) = delete;

    void Retire();

    int mRef;
    KLyrConnectionPoint mConnectionPoint;
    KLyrPropertyPage* mPage;
    kLyrPropertyId mId;

    // The items that were made for one page are linked, so that none keeps a pointer to a page that is gone.
    detail::Link<KLyrPropertyConnect> mOfPage;
};

// One property on one page.
class LYRSDK_API KLyrPropertyEntry {
public:
    // An entry that holds one reference to each item given. Any item may be null.
    static KLyrPropertyEntry* Create(int pParentId, KLyrPropertyInfo* pInfo, KLyrPropertyValue* pValue,
                                     KLyrPropertyConnect* pConnect);
    // Destroys the entry, which gives back its references.
    void Destroy() { LyrSdkDelete(this); }

    // The parent property.
    kLyrPropertyId GetParentId() const { return mParentId; }

    // The item or null, the flags never null. The argument only chooses the kind and is not looked at.
    KLyrPropertyInfo* Get(const KLyrPropertyInfo*) const { return mInfo; }
    KLyrPropertyValue* Get(const KLyrPropertyValue*) const { return mValue; }
    KLyrPropertyConnect* Get(const KLyrPropertyConnect*) const { return mConnect; }
    KLyrPropertyFlags* Get(const KLyrPropertyFlags*) { return &mFlags; }

    // Puts an item in place of the one there. Setting the item that is there already is harmless.
    void Set(KLyrPropertyInfo* pInfo);
    void Set(KLyrPropertyValue* pValue) { Replace(mValue, pValue); }
    void Set(KLyrPropertyConnect* pConnect) { Replace(mConnect, pConnect); }
    void Set(KLyrPropertyFlags pFlags) { mFlags = pFlags; }
    // Null resets the flags.
    void Set(const KLyrPropertyFlags* pFlags) { mFlags = pFlags ? *pFlags : KLyrPropertyFlags(); }

    // Nothing is held here: no item, and no flag is set here.
    bool IsEmpty() const { return !mInfo && !mValue && !mConnect && mFlags.GetMask() == 0; }

private:
    LYRSDK_MADE_BY_FACTORY
    friend struct KLyrLayout;
    friend class KLyrPropertyIndex;
    friend class KLyrPropertyPage;

    KLyrPropertyEntry(int pParentId, KLyrPropertyInfo* pInfo, KLyrPropertyValue* pValue, KLyrPropertyConnect* pConnect);
    ~KLyrPropertyEntry();
    KLyrPropertyEntry(const KLyrPropertyEntry&) = delete;
    KLyrPropertyEntry& operator=(const KLyrPropertyEntry&) = delete;

    // The new reference is taken before the old one is dropped: they may be the same item.
    template <typename T>
    static void Replace(T*& pStored, T* pItem) {
        T* lOld = pStored;
        if (pItem)
            pItem->IncRef();
        pStored = pItem;
        if (lOld)
            lOld->DecRef();
    }

    KLyrPropertyInfo* mInfo;
    KLyrPropertyValue* mValue;
    KLyrPropertyConnect* mConnect;
    kLyrPropertyId mParentId;
    KLyrPropertyFlags mFlags;

    void* mIndexed = nullptr;  // this entry's record in the index of its page, if there is one
};

}  // namespace lyrsdk
