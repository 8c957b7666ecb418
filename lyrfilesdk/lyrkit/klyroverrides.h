#pragma once

// What a page holds itself: its overrides, those among them that change nothing, and the way back to inheriting.
//
// All functions take a handle, and those on many properties work on the property of the handle and all below it on its
// page; on the root of a page that is everything the page holds. They walk in the order of ids, take no memory but for
// looking at texts and blobs, and may be followed by any change.
//
// Only values and flags are handed back and called redundant: descriptions are shared rather than overridden, and
// connections belong to the page that they were made on.
//
// Failure: for a handle without a page, and for an id that does not exist, nothing is found and nothing changes: false,
// 0, or an empty answer. So it is on a page that is an instance of no other one, or where no page above has the
// property: what it holds cannot go back.
// Cost: a look at every property of the subtree, on the chain of the page; of one property, one search in each page.

#include <type_traits>
#include <utility>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"

namespace lyrsdk {

// --- what is held --------------------------------------------------------------------------------------------------

// What the page of a property holds of it itself.
struct KLyrOverride {
    // The property that this is about.
    KLyrPropertyHandle mProperty;
    // An own entry. It may be without any items: connecting leaves such entries behind.
    bool mIsHeld = false;
    // No page above has the property: this page added it.
    bool mIsAdded = false;
    bool mDescription = false;  // an own description
    bool mValue = false;        // an own value
    bool mConnections = false;  // an own connection item
    // The flags that are marked as set here.
    LyrPropertyFlags::eLyrPropertyFlags mFlags = LyrPropertyFlags::eNO_FLAG;
};

// What the page of pProperty holds of it.
LYRSDK_API KLyrOverride lyrOverrideOf(const KLyrPropertyHandle& pProperty);

// --- what changes nothing ------------------------------------------------------------------------------------------

// What could go back to inheriting and nothing would read differently: an own value that equals the inherited one bit
// for bit (0 and -0 differ, a NaN equals the same NaN), flags set to what the page above shows. Of flags that hold
// others in place, which came along unmarked and show something else, none.
struct KLyrRedundancy {
    // The property that this is about.
    KLyrPropertyHandle mProperty;
    // Whether the value is redundant.
    bool mValue = false;
    // The flags that are.
    LyrPropertyFlags::eLyrPropertyFlags mFlags = LyrPropertyFlags::eNO_FLAG;

    // Whether anything is.
    bool IsAny() const { return mValue || mFlags != LyrPropertyFlags::eNO_FLAG; }
};

// What is redundant of one property. Without memory to look at a text or blob, its value counts as no redundancy.
LYRSDK_API KLyrRedundancy lyrRedundancyOf(const KLyrPropertyHandle& pProperty);

// Hands back all that is redundant. What shows later when a page above changes is that page's then. The number of
// properties that something was handed back of.
LYRSDK_API int lyrDropRedundant(const KLyrPropertyHandle& pFrom);

// --- going back ----------------------------------------------------------------------------------------------------

// What is handed back.
enum class KLyrRevert : int {
    eValue,  // the value
    eFlags,  // the flags
    eBoth    // value and flags
};

// Hands the value of one property back, or its flags, unmarked ones too, or both: what the page above shows, shows.
// Whether something was handed back; any other value of pWhat does nothing.
LYRSDK_API bool lyrRevert(const KLyrPropertyHandle& pProperty, KLyrRevert pWhat = KLyrRevert::eBoth);
// The same for the property and all below it; the number of properties that something was handed back of.
LYRSDK_API int lyrRevertSubtree(const KLyrPropertyHandle& pFrom, KLyrRevert pWhat = KLyrRevert::eBoth);
// The same for all that the page of the handle holds, whatever property the handle names.
LYRSDK_API int lyrRevertAll(const KLyrPropertyHandle& pPage, KLyrRevert pWhat = KLyrRevert::eBoth);

// --- visitors ------------------------------------------------------------------------------------------------------

namespace detail {

// The first property of a subtree, and the one behind; the default handle behind the last.
LYRSDK_API KLyrPropertyHandle FirstOfSubtree(const KLyrPropertyHandle& pFrom);
LYRSDK_API KLyrPropertyHandle NextOfSubtree(const KLyrPropertyHandle& pFrom, const KLyrPropertyHandle& pLast);

// A visitor that gives a bool ends the walk with false.
template <typename Visitor, typename Found>
bool GoesOn(Visitor& pVisitor, const Found& pFound) {
    if constexpr (std::is_convertible_v<std::invoke_result_t<Visitor&, const Found&>, bool>) {
        return pVisitor(pFound);
    } else {
        pVisitor(pFound);
        return true;
    }
}

}  // namespace detail

// pVisitor(const KLyrOverride&) for each property that the page holds an entry of, in the order of ids. The visitor may
// change and destroy what it is shown, but not the page; a visitor that gives a bool ends the walk with false. The
// number of calls.
template <typename Visitor>
int lyrVisitOverrides(const KLyrPropertyHandle& pFrom, Visitor&& pVisitor) {
    int lCount = 0;
    for (KLyrPropertyHandle lAt = detail::FirstOfSubtree(pFrom); lAt.Valid(); lAt = detail::NextOfSubtree(pFrom, lAt)) {
        const KLyrOverride lFound = lyrOverrideOf(lAt);
        if (lFound.mIsHeld && ++lCount && !detail::GoesOn(pVisitor, lFound))
            break;
    }
    return lCount;
}

// The same with pVisitor(const KLyrRedundancy&) for each property of which something is redundant.
template <typename Visitor>
int lyrVisitRedundant(const KLyrPropertyHandle& pFrom, Visitor&& pVisitor) {
    int lCount = 0;
    for (KLyrPropertyHandle lAt = detail::FirstOfSubtree(pFrom); lAt.Valid(); lAt = detail::NextOfSubtree(pFrom, lAt)) {
        const KLyrRedundancy lFound = lyrRedundancyOf(lAt);
        if (lFound.IsAny() && ++lCount && !detail::GoesOn(pVisitor, lFound))
            break;
    }
    return lCount;
}

}  // namespace lyrsdk
