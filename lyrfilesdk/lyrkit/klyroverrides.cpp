#include "lyrfilesdk/lyrkit/klyroverrides.h"

#include "lyrfilesdk/lyrkit/klyrkititems.h"

namespace lyrsdk {
namespace detail {

KLyrPropertyHandle FirstOfSubtree(const KLyrPropertyHandle& pFrom) {
    const KLyrPropertyPage* lPage = pFrom.GetPage();
    if (lPage && lPage->GetPropertyEntry(pFrom.GetId()))
        return pFrom;
    // A page whose root property was taken away has properties all the same.
    return lPage && pFrom.GetId() == 0 ? NextOfSubtree(pFrom, pFrom) : KLyrPropertyHandle();
}

KLyrPropertyHandle NextOfSubtree(const KLyrPropertyHandle& pFrom, const KLyrPropertyHandle& pLast) {
    const int lId = NextBelow(pFrom.GetPage(), pFrom.GetId(), pLast.GetId());
    return lId != -1 ? KLyrPropertyHandle(pFrom.GetPage(), lId) : KLyrPropertyHandle();
}

}  // namespace detail

namespace {

using Flags = LyrPropertyFlags::eLyrPropertyFlags;

constexpr Flags kAllBits = static_cast<Flags>((1u << LyrPropertyFlags::GetFlagCount()) - 1);

// The entry that the property's page holds of it, when a page above has the property too: only then something can go
// back.
KLyrPropertyEntry* RevertibleEntry(const KLyrPropertyHandle& pProperty) {
    const KLyrPropertyPage* lPage = pProperty.GetPage();
    if (!lPage || !detail::HasAbove(lPage, pProperty.GetId()))
        return nullptr;
    return detail::OwnEntryOf(lPage, pProperty.GetId());
}

template <typename T>
T* ItemOf(KLyrPropertyEntry* pEntry) {
    return pEntry->Get(static_cast<const T*>(nullptr));
}

// The last mark that goes takes all flags along, unmarked ones too.
Flags RedundantFlags(const KLyrPropertyFlags& pItem, unsigned pAbove) {
    const unsigned lMask = pItem.GetMask();
    const unsigned lRedundant = lMask & ~(pItem.GetFlags() ^ pAbove);
    const unsigned lUnmarked = pItem.GetFlags() & ~lMask;
    const bool lTakesAlong = lRedundant == lMask && (lUnmarked & ~pAbove) != 0;
    return static_cast<Flags>(lTakesAlong ? 0 : lRedundant);
}

// An entry that holds nothing else, and marks no flag, goes with its value.
bool HoldsOnlyValue(KLyrPropertyEntry* pEntry) {
    return !ItemOf<KLyrPropertyInfo>(pEntry) && !ItemOf<KLyrPropertyConnect>(pEntry) &&
           ItemOf<KLyrPropertyFlags>(pEntry)->GetMask() == 0;
}

// Whether the value can go back and nothing reads differently, the flags in the entry included.
bool IsRedundantValue(KLyrPropertyEntry* pEntry, const KLyrPropertyPage* pAbove, int pId) {
    const KLyrPropertyValue* lValue = ItemOf<KLyrPropertyValue>(pEntry);
    if (!lValue)
        return false;
    const unsigned lFlags = ItemOf<KLyrPropertyFlags>(pEntry)->GetFlags();
    if (HoldsOnlyValue(pEntry) && (lFlags & ~pAbove->GetFlags(pId)) != 0)
        return false;
    return detail::AreAlike(lValue, pAbove->GetPropertyItem<KLyrPropertyValue>(nullptr, pId));
}

bool DropRedundant(const KLyrRedundancy& pFound) {
    KLyrPropertyHandle lProperty = pFound.mProperty;
    if (pFound.mValue)
        lProperty.SetValueInheritType(eLyrInherit);
    if (pFound.mFlags != LyrPropertyFlags::eNO_FLAG)
        lProperty.SetFlagsInheritType(pFound.mFlags, eLyrInherit);
    return pFound.IsAny();
}

bool RevertValue(KLyrPropertyHandle pProperty) {
    KLyrPropertyEntry* lEntry = RevertibleEntry(pProperty);
    return lEntry && ItemOf<KLyrPropertyValue>(lEntry) && pProperty.SetValueInheritType(eLyrInherit);
}

bool RevertFlags(KLyrPropertyHandle pProperty) {
    KLyrPropertyEntry* lEntry = RevertibleEntry(pProperty);
    const KLyrPropertyFlags* lItem = lEntry ? ItemOf<KLyrPropertyFlags>(lEntry) : nullptr;
    return lItem && (lItem->GetMask() | lItem->GetFlags()) != 0 && pProperty.SetFlagsInheritType(kAllBits, eLyrInherit);
}

template <typename Change>
int CountChanged(const KLyrPropertyHandle& pFrom, Change pChange) {
    int lCount = 0;
    for (KLyrPropertyHandle lAt = detail::FirstOfSubtree(pFrom); lAt.Valid(); lAt = detail::NextOfSubtree(pFrom, lAt))
        lCount += pChange(lAt) ? 1 : 0;
    return lCount;
}

}  // namespace

KLyrOverride lyrOverrideOf(const KLyrPropertyHandle& pProperty) {
    KLyrOverride lFound;
    lFound.mProperty = pProperty;
    KLyrPropertyPage* lPage = pProperty.GetPage();
    KLyrPropertyEntry* lEntry = lPage ? detail::OwnEntryOf(lPage, pProperty.GetId()) : nullptr;
    if (!lEntry)
        return lFound;
    lFound.mIsHeld = true;
    lFound.mIsAdded = !detail::HasAbove(lPage, pProperty.GetId());
    lFound.mDescription = ItemOf<KLyrPropertyInfo>(lEntry) != nullptr;
    lFound.mValue = ItemOf<KLyrPropertyValue>(lEntry) != nullptr;
    lFound.mConnections = ItemOf<KLyrPropertyConnect>(lEntry) != nullptr;
    lFound.mFlags = static_cast<Flags>(ItemOf<KLyrPropertyFlags>(lEntry)->GetMask());
    return lFound;
}

KLyrRedundancy lyrRedundancyOf(const KLyrPropertyHandle& pProperty) {
    KLyrRedundancy lFound;
    lFound.mProperty = pProperty;
    KLyrPropertyEntry* lEntry = RevertibleEntry(pProperty);
    if (!lEntry)
        return lFound;
    const KLyrPropertyPage* lAbove = pProperty.GetPage()->GetInstanceOf();
    lFound.mValue = IsRedundantValue(lEntry, lAbove, pProperty.GetId());
    lFound.mFlags = RedundantFlags(*ItemOf<KLyrPropertyFlags>(lEntry), lAbove->GetFlags(pProperty.GetId()));
    return lFound;
}

int lyrDropRedundant(const KLyrPropertyHandle& pFrom) {
    return CountChanged(pFrom, [](const KLyrPropertyHandle& pAt) { return DropRedundant(lyrRedundancyOf(pAt)); });
}

bool lyrRevert(const KLyrPropertyHandle& pProperty, KLyrRevert pWhat) {
    bool lChanged = false;
    if (pWhat == KLyrRevert::eValue || pWhat == KLyrRevert::eBoth)
        lChanged = RevertValue(pProperty);
    if (pWhat == KLyrRevert::eFlags || pWhat == KLyrRevert::eBoth)
        lChanged = RevertFlags(pProperty) || lChanged;
    return lChanged;
}

int lyrRevertSubtree(const KLyrPropertyHandle& pFrom, KLyrRevert pWhat) {
    return CountChanged(pFrom, [pWhat](const KLyrPropertyHandle& pAt) { return lyrRevert(pAt, pWhat); });
}

int lyrRevertAll(const KLyrPropertyHandle& pPage, KLyrRevert pWhat) {
    return lyrRevertSubtree(KLyrPropertyHandle(pPage.GetPage(), 0), pWhat);
}

}  // namespace lyrsdk
