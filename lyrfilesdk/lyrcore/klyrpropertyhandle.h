#pragma once

// The handle: the public interface to properties.
//
// A handle names one property as (page, id). It is a plain value of two words: it owns nothing, keeps nothing alive,
// and copying or dropping it touches no page. A handle is valid when it has a page and an id; the default one has
// neither. Every operation looks at the page first and gives a fixed result without one: false, null, -1, 0, "",
// eUNIDENTIFIED or the default handle, and eLyrInherit for flags but eLyrOverride for values. An id that does not exist
// gives the same failure results from the page. A lookup or a step in the tree that finds nothing gives a handle that
// keeps the page and has the id -1.
//
// Values go in and out as memory with a type code and are converted between all codes; a refused conversion is false.
// What a value pointer points at must be of the type that goes with the code.
//
// Not to be used: a handle whose page was destroyed. Cost and inheritance: see klyrpropertypage.h.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"
#include "lyrfilesdk/lyrcore/klyrpropertydef.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

namespace lyrsdk {

class LYRSDK_API KLyrPropertyHandle {
public:
    // The flags of properties.
    using eLyrPropertyFlags = LyrPropertyFlags::eLyrPropertyFlags;
    // The bounds of properties.
    using eValueIndex = KLyrPropertyInfo::eValueIndex;

    // clang-format off
    // --- the value (page, id) --------------------------------------------------------------------------------------

    KLyrPropertyHandle() = default;  // no page, id -1
    // The property pId of a page; neither is looked at.
    KLyrPropertyHandle(KLyrPropertyPage* pPage, int pId) : mPage(pPage), mId(pId) {}

    // Equal when page and id are.
    bool operator==(const KLyrPropertyHandle& pOther) const { return mPage == pOther.mPage && mId == pOther.mId; }
    bool operator!=(const KLyrPropertyHandle& pOther) const { return !(*this == pOther); }
    // The same as ==.
    bool Is(const KLyrPropertyHandle& pOther) const { return *this == pOther; }
    // Whether there is a page and an id. The property need not exist.
    bool Valid() const { return mPage && mId != -1; }
    // The page, or null.
    KLyrPropertyPage* GetPage() const { return mPage; }
    // The id, or -1.
    int GetId() const { return mId; }

    // --- pages -----------------------------------------------------------------------------------------------------
    // Each makes a page and gives its root property; the default handle when there is no memory. The page lives until
    // Destroy on its root.

    // A page whose root property is "" of type eUNIDENTIFIED.
    static KLyrPropertyHandle Create() { return Root(KLyrPropertyPage::Create(nullptr)); }
    // An instance of that handle's page: it shows what that page holds until it is given something of its own.
    static KLyrPropertyHandle Create(const KLyrPropertyHandle& pInstanceOf) { return Root(KLyrPropertyPage::Create(pInstanceOf.mPage)); }
    // A page whose root property has this name and type.
    static KLyrPropertyHandle Create(const char* pName, ELyrType pType) { return Root(KLyrPropertyPage::Create(pName, pType)); }
    // Typed by the page of pTypeInfo, whose properties are copied as children, without flags, labels or tags.
    static KLyrPropertyHandle Create(const char* pName, KLyrPropertyHandle pTypeInfo) { return Root(KLyrPropertyPage::Create(pName, pTypeInfo.mPage)); }

    // Of a root property: destroys the page. Of any other: removes its entry from the nearest page up the chain that
    // holds one, so that it is gone for all that see it there; its children keep their parent id. Resets this handle.
    bool Destroy();

    // A pointer for the application, one a page; not looked at.
    void SetPageDataPtr(void* pData) { if (mPage) mPage->SetDataPtr(pData); }
    void* GetPageDataPtr() const { return mPage ? mPage->GetDataPtr() : nullptr; }

    // --- children --------------------------------------------------------------------------------------------------

    // A new child of this property. The default handle when there is no memory.
    KLyrPropertyHandle Add(const char* pName, ELyrType pType) { return mPage ? Added(mPage->Add(mId, pName, pType)) : KLyrPropertyHandle(); }
    // The same, typed by a page, whose properties are copied as children of the new one, without flags, labels or tags.
    KLyrPropertyHandle Add(const char* pName, const KLyrPropertyHandle& pTypeInfo) { return mPage ? Added(mPage->Add(mId, pName, pTypeInfo.mPage)) : KLyrPropertyHandle(); }
    // Not supported: false.
    bool SetParent(const KLyrPropertyHandle& pOther) { return mPage && mPage->Reparent(mId, pOther.mId); }

    // --- value and type --------------------------------------------------------------------------------------------

    // Gives this page the value, converted; false when it is not. With pCheckValueEquality a value equal to the
    // inherited one is not stored: true when an own value gave way to it, false when it was inherited already.
    bool Set(const void* pValue, ELyrType pValueType, bool pCheckValueEquality = true) { return mPage && mPage->Set(mId, pValue, pValueType, pCheckValueEquality); }
    // The value seen, converted. False, and nothing is written, when there is none or the conversion is refused.
    bool Get(void* pValue, ELyrType pValueType) const { return mPage && mPage->Get(mId, pValue, pValueType); }
    // The value at the top of the instance chain.
    bool GetDefaultValue(void* pValue, ELyrType pValueType) const { return mPage && mPage->GetDefaultValue(mId, pValue, pValueType); }
    // The type of the property.
    ELyrType GetType() const { return mPage ? mPage->GetType(mId) : eUNIDENTIFIED; }
    // The name, never null. It lives as long as the description.
    const char* GetName() const { return mPage ? mPage->GetName(mId) : ""; }
    // The root of the type-info page; (null, 0) when the property has none.
    KLyrPropertyHandle GetTypeInfo() const { return mPage ? KLyrPropertyHandle(mPage->GetTypeInfo(mId), 0) : KLyrPropertyHandle(); }

    // --- lookup by name, below this property -----------------------------------------------------------------------
    // With separators the name is a path; with a type info only a property typed by that page is found. Without case it
    // is strcasecmp that compares, by the current C locale.

    // The child of this name.
    KLyrPropertyHandle Find(const char* pName, bool pCaseSensitive) const { return FindIn(pName, nullptr, nullptr, pCaseSensitive); }
    // The child of this name that is typed by the page of pTypeInfo.
    KLyrPropertyHandle Find(const char* pName, const KLyrPropertyHandle& pTypeInfo, bool pCaseSensitive) const { return FindIn(pName, pTypeInfo.mPage, nullptr, pCaseSensitive); }
    // The property along a path of names; each separator character ends one.
    KLyrPropertyHandle Find(const char* pName, const char* pChildrenSeparators, bool pCaseSensitive) const { return FindIn(pName, nullptr, pChildrenSeparators, pCaseSensitive); }
    // The same, when the last one is typed by the page of pTypeInfo.
    KLyrPropertyHandle Find(const char* pName, const char* pChildrenSeparators, const KLyrPropertyHandle& pTypeInfo, bool pCaseSensitive) const { return FindIn(pName, pTypeInfo.mPage, pChildrenSeparators, pCaseSensitive); }
    // Bracket many lookups and additions on this page: between the two a map of all names answers, with case.
    void BeginCreateOrFindProperty() { if (mPage) mPage->BeginCreateOrFindProperty(); }
    void EndCreateOrFindProperty() { if (mPage) mPage->EndCreateOrFindProperty(); }

    // --- description, shared by all pages that see it --------------------------------------------------------------

    // A bound, converted to the property's type. Bounds are kept and given back, not enforced.
    bool SetMin(const void* pValue, ELyrType pValueType) { return SetBound(KLyrPropertyInfo::eValueMin, pValue, pValueType); }
    bool SetSoftMin(const void* pValue, ELyrType pValueType) { return SetBound(KLyrPropertyInfo::eValueSoftMin, pValue, pValueType); }
    bool SetMax(const void* pValue, ELyrType pValueType) { return SetBound(KLyrPropertyInfo::eValueMax, pValue, pValueType); }
    bool SetSoftMax(const void* pValue, ELyrType pValueType) { return SetBound(KLyrPropertyInfo::eValueSoftMax, pValue, pValueType); }
    // The bound, converted; false when there is none.
    bool GetMin(void* pValue, ELyrType pValueType) const { return GetBound(KLyrPropertyInfo::eValueMin, pValue, pValueType); }
    bool GetSoftMin(void* pValue, ELyrType pValueType) const { return GetBound(KLyrPropertyInfo::eValueSoftMin, pValue, pValueType); }
    bool GetMax(void* pValue, ELyrType pValueType) const { return GetBound(KLyrPropertyInfo::eValueMax, pValue, pValueType); }
    bool GetSoftMax(void* pValue, ELyrType pValueType) const { return GetBound(KLyrPropertyInfo::eValueSoftMax, pValue, pValueType); }
    // Whether there is such a bound.
    bool HasMin() const { return HasBound(KLyrPropertyInfo::eValueMin); }
    bool HasSoftMin() const { return HasBound(KLyrPropertyInfo::eValueSoftMin); }
    bool HasMax() const { return HasBound(KLyrPropertyInfo::eValueMax); }
    bool HasSoftMax() const { return HasBound(KLyrPropertyInfo::eValueSoftMax); }

    // Appends a text of an enumeration; a text's index is its value. Gives the index, -1 for a text that is there
    // already and for a property that is no enumeration.
    int AddEnumValue(const char* pStringValue) { return mPage ? mPage->AddEnumValue(mId, pStringValue) : -1; }
    // Puts a text in front of the one at pIndex; past the end appends. Stored indices stay as they are.
    void InsertEnumValue(int pIndex, const char* pStringValue) { if (mPage) mPage->InsertEnumValue(mId, pIndex, pStringValue); }
    // The number of texts.
    int GetEnumCount() const { return mPage ? mPage->GetEnumCount(mId) : 0; }
    // Replaces the text at pIndex, if there is one.
    void SetEnumValue(int pIndex, const char* pStringValue) { if (mPage) mPage->SetEnumValue(mId, pIndex, pStringValue); }
    // Takes the text at pIndex out, if there is one. Stored indices stay as they are.
    void RemoveEnumValue(int pIndex) { if (mPage) mPage->RemoveEnumValue(mId, pIndex); }
    // The text at pIndex; null for an index past the end.
    const char* GetEnumValue(int pIndex) const { return mPage ? mPage->GetEnumValue(mId, pIndex) : ""; }

    // A text for people; "" at first.
    bool SetLabel(const char* pLabel) { return mPage && mPage->SetLabel(mId, pLabel); }
    const char* GetLabel() const { return mPage ? mPage->GetLabel(mId) : ""; }
    // A number for the application; 0 at first.
    bool SetUserTag(int pUserTag) { return mPage && mPage->SetUserTag(mId, pUserTag); }
    int GetUserTag() const { return mPage ? mPage->GetUserTag(mId) : 0; }
    // A pointer for the application. Not owned, not looked at.
    bool SetUserData(const void* pUserData) { return mPage && mPage->SetUserData(mId, pUserData); }
    void* GetUserData() const { return mPage ? mPage->GetUserData(mId) : nullptr; }

    // --- flags and inheritance -------------------------------------------------------------------------------------

    // The flags seen: this page's own over the inherited ones.
    eLyrPropertyFlags GetFlags() const { return mPage ? mPage->GetFlags(mId) : LyrPropertyFlags::eNO_FLAG; }
    // Turns flags on or off on this page, as the page does with the check: those that equal the inherited ones are
    // inherited again.
    bool ModifyFlags(eLyrPropertyFlags pFlags, bool pValue) { return mPage && mPage->ModifyFlags(mId, pFlags, pValue, true); }
    // Override: held by this page; with pCheckReferences also when pages above override one another.
    KLyrInheritType GetFlagsInheritType(eLyrPropertyFlags pFlags, bool pCheckReferences) const { return mPage ? mPage->GetFlagsInheritType(pFlags, pCheckReferences, mId) : eLyrInherit; }
    // Override copies what is inherited; inherit shows it again. Whether that is done.
    bool SetFlagsInheritType(eLyrPropertyFlags pFlags, KLyrInheritType pType) { return mPage && mPage->SetFlagsInheritType(pType, pFlags, mId); }
    // The same for the value.
    KLyrInheritType GetValueInheritType(bool pCheckReferences) const { return mPage ? mPage->GetValueInherit(mId, pCheckReferences) : eLyrOverride; }
    // Whether the value is in that state afterwards: override copies what is inherited, inherit shows it again.
    bool SetValueInheritType(KLyrInheritType pType) { return mPage && mPage->SetValueInherit(mId, pType); }
    // Of a root property: moves all that this page holds itself into the page it is an instance of; true. Else false.
    bool PushPropertiesToParentInstance();

    // --- the property tree -----------------------------------------------------------------------------------------

    // The property that this one is a child of.
    KLyrPropertyHandle GetParent() const { return mPage ? At(mPage->GetParent(mId)) : KLyrPropertyHandle(); }
    // The first child; its siblings follow in ascending order of ids.
    KLyrPropertyHandle GetChild() const { return mPage ? At(mPage->GetChild(mId)) : KLyrPropertyHandle(); }
    // The next property with the same parent.
    KLyrPropertyHandle GetSibling() const { return mPage ? At(mPage->GetSibling(mId)) : KLyrPropertyHandle(); }
    // The first property anywhere below.
    KLyrPropertyHandle GetFirstDescendent() const { return mPage ? At(mPage->GetFirstDescendent(mId)) : KLyrPropertyHandle(); }
    // The descendant of this property behind pHandle, of which only the id counts.
    KLyrPropertyHandle GetNextDescendent(const KLyrPropertyHandle& pHandle) const { return mPage ? At(mPage->GetNextDescendent(mId, pHandle.mId)) : KLyrPropertyHandle(); }
    // Whether pParent is the parent. False across pages, an instance and its page included.
    bool IsChildOf(const KLyrPropertyHandle& pParent) const { return mPage && pParent.mPage == mPage && mPage->IsChildOf(mId, pParent.mId); }
    // Whether pAncestor is the parent, or its parent, and so on. False across pages.
    bool IsDescendentOf(const KLyrPropertyHandle& pAncestor) const { return mPage && pAncestor.mPage == mPage && mPage->IsDescendentOf(mId, pAncestor.mId); }

    // --- connections -----------------------------------------------------------------------------------------------

    // Connects pSrc as a source of this property, or pDst as a destination. False for a second connection of the two, a
    // property with itself, one that does not exist, or no memory.
    bool ConnectSrc(const KLyrPropertyHandle& pSrc, kLyrConnectionType pType = eLyrConnectionDefault) { return mPage && mPage->ConnectSrc(mId, pSrc.mPage, pSrc.mId, pType); }
    bool ConnectDst(const KLyrPropertyHandle& pDst, kLyrConnectionType pType = eLyrConnectionDefault) { return mPage && mPage->ConnectDst(mId, pDst.mPage, pDst.mId, pType); }
    // Takes that connection away; false when there is none.
    bool DisconnectSrc(const KLyrPropertyHandle& pSrc) { return mPage && mPage->DisconnectSrc(mId, pSrc.mPage, pSrc.mId); }
    bool DisconnectDst(const KLyrPropertyHandle& pDst) { return mPage && mPage->DisconnectDst(mId, pDst.mPage, pDst.mId); }
    // Whether there is that connection.
    bool IsConnectedSrc(const KLyrPropertyHandle& pSrc) const { return mPage && mPage->IsConnectedSrc(mId, pSrc.mPage, pSrc.mId); }
    bool IsConnectedDst(const KLyrPropertyHandle& pDst) const { return mPage && mPage->IsConnectedDst(mId, pDst.mPage, pDst.mId); }
    // How many sources or destinations a filter selects; all of them with a null filter.
    int GetSrcCount(KLyrConnectionPointFilter* pFilter) const { return mPage ? mPage->GetSrcCount(mId, pFilter) : 0; }
    int GetDstCount(KLyrConnectionPointFilter* pFilter) const { return mPage ? mPage->GetDstCount(mId, pFilter) : 0; }
    // The other end at that position, in order of connection; the default handle when there is none.
    KLyrPropertyHandle GetSrc(KLyrConnectionPointFilter* pFilter, int pIndex) const;
    KLyrPropertyHandle GetDst(KLyrConnectionPointFilter* pFilter, int pIndex) const;
    // Removes every connection of the connection item seen, inherited or not.
    void WipeAllConnections() { if (mPage) mPage->WipeAllConnections(mId); }
    // Drops what is kept for filters; it is made anew when next asked for.
    void ClearConnectCache() { if (mPage) mPage->ClearConnectCache(mId); }

    // --- references: the instance relation, seen through the pages' data pointers ----------------------------------

    // Whether the page that this one is an instance of has a data pointer.
    bool IsAReferenceTo() const { return GetReferenceTo() != nullptr; }
    // That pointer, or null.
    void* GetReferenceTo() const;
    // The number of instances of this page.
    int GetReferencedByCount() const { return mPage ? mPage->GetInstances().GetCount() : 0; }
    // The data pointer of an instance. An index out of range gives the first one's, or null without instances.
    void* GetReferencedBy(int pIndex) const;
    // Whether this page has instances.
    bool IsReferencedBy() const { return GetReferencedByCount() > 0; }
    // clang-format on

private:
    friend struct KLyrLayout;

    static KLyrPropertyHandle Root(KLyrPropertyPage* pPage) {
        return pPage ? KLyrPropertyHandle(pPage, 0) : KLyrPropertyHandle();
    }
    KLyrPropertyHandle At(int pId) const { return KLyrPropertyHandle(mPage, pId); }
    KLyrPropertyHandle Added(int pId) const { return pId >= 0 ? At(pId) : KLyrPropertyHandle(); }
    KLyrPropertyHandle FindIn(const char* pName, KLyrPropertyPage* pTypeInfo, const char* pSeparators,
                              bool pCaseSensitive) const {
        return mPage ? At(mPage->Find(mId, pName, pTypeInfo, pCaseSensitive, pSeparators)) : KLyrPropertyHandle();
    }
    bool SetBound(eValueIndex pIndex, const void* pValue, ELyrType pValueType) {
        return mPage && mPage->SetMinMax(mId, pIndex, pValue, pValueType);
    }
    bool GetBound(eValueIndex pIndex, void* pValue, ELyrType pValueType) const {
        return mPage && mPage->GetMinMax(mId, pIndex, pValue, pValueType);
    }
    bool HasBound(eValueIndex pIndex) const { return mPage && mPage->HasMinMax(mId, pIndex); }

    KLyrPropertyPage* mPage = nullptr;
    kLyrPropertyId mId = -1;
};

}  // namespace lyrsdk
