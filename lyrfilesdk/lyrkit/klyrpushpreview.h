#pragma once

// Pushing to the page above: one property, and what a push would do before it is done.
//
//   page above  <--push--  page          an item that moves replaces the one of the page above
//       ^-- other instance               sees the change, unless it holds an item of that kind itself: it is shielded
//             ^-- its instance           the same; also shielded by what is between it and the page above
//
// What moves is what the page holds itself: description, value, flags. Connections stay. Through the page, and every
// page below it, each value, flag and name reads the same before and after. What changes is what the page above shows,
// and with it its other instances and the pages below those.
//
// PushPropertiesToParentInstance pushes all of a page: lyrVisitPush tells what that moves, lyrPushProperty pushes one
// property. For each property, lyrVisitPushEffects tells who sees a change. The answers hold until the next change;
// want of memory cannot be foretold.
//
// The answers take no memory but for looking at texts and blobs; when that fails, a change is foretold. To push a
// property that the page above has takes an entry there. To push one that it does not have takes two items for each
// property that the page holds, for the time being: all else is put aside and the whole page is pushed.
//
// Not to be used: a page whose page above was destroyed without memory and lives on for its instances.

#include "lyrfilesdk/lyrkit/klyroverrides.h"

namespace lyrsdk {

// What a push of one property did, or would do.
enum class KLyrPushResult : int {
    ePushed,    // it moves, or has moved
    eUnknown,   // a handle without a page, or an id that does not exist
    eNoParent,  // the page is no instance of another one
    eNothing,   // the page holds nothing that moves: all is inherited, or it is connections only
    // The page above lacks the property that this one is a child of: it would have no place in the tree there. The
    // parent property has to be pushed first.
    eNoPlace,
    eNoMemory,  // nothing has changed
};

// A result in words, such as "nothing to push"; "unknown" for what is none. A literal.
LYRSDK_API const char* lyrResultText(KLyrPushResult pResult);

// --- what moves ----------------------------------------------------------------------------------------------------

// What of a property moves.
struct KLyrPushItems {
    // The property that this is about.
    KLyrPropertyHandle mProperty;
    // What lyrPushProperty would give; but for ePushed and eNoPlace nothing moves.
    KLyrPushResult mResult = KLyrPushResult::eUnknown;
    // Whether the page holds a description that moves.
    bool mDescription = false;
    // Whether it holds a value that moves.
    bool mValue = false;
    // The flags that are set on the page, and those that are on without a mark.
    LyrPropertyFlags::eLyrPropertyFlags mFlags = LyrPropertyFlags::eNO_FLAG;
    // The page above does not have the property yet.
    bool mIsNewAbove = false;
};

// A dry run for one property. Constant but for searches in the chain.
LYRSDK_API KLyrPushItems lyrPushItemsOf(const KLyrPropertyHandle& pProperty);

// --- who sees it ---------------------------------------------------------------------------------------------------

// How an item that moves is seen by another page.
enum class KLyrPushReach : int {
    eNotMoved,  // nothing of this kind moves
    eSame,      // the page sees the item that moves, which reads as what was seen before
    eShielded,  // an item of its own, or of a page between, hides the one that moves
    eChanged,   // the page will see something else
};

// The reach in words, such as "shielded"; "unknown" for what is none. A literal.
LYRSDK_API const char* lyrResultText(KLyrPushReach pReach);

// What one page sees of the push of one property.
struct KLyrPushEffect {
    // The property on the page that is told about.
    KLyrPropertyHandle mProperty;
    // How the description is seen there.
    KLyrPushReach mDescription = KLyrPushReach::eNotMoved;
    // How the value is.
    KLyrPushReach mValue = KLyrPushReach::eNotMoved;
    // The property on the page whose description is the shield; the default handle without one.
    KLyrPropertyHandle mDescriptionShield;
    // The same for the value.
    KLyrPropertyHandle mValueShield;
    // The flags that will read differently on this page.
    LyrPropertyFlags::eLyrPropertyFlags mFlagsChanged = LyrPropertyFlags::eNO_FLAG;
    // Those that change on the page above but not here.
    LyrPropertyFlags::eLyrPropertyFlags mFlagsShielded = LyrPropertyFlags::eNO_FLAG;

    // Whether anything will read differently on this page.
    bool IsChange() const {
        return mDescription == KLyrPushReach::eChanged || mValue == KLyrPushReach::eChanged ||
               mFlagsChanged != LyrPropertyFlags::eNO_FLAG;
    }
};

// --- the push itself -----------------------------------------------------------------------------------------------

// Moves what the page holds of one property into the page above, as PushPropertiesToParentInstance does for all. The
// page above, its other instances and the pages below those see a change as lyrVisitPushEffects tells; nobody else.
// Linear in the properties of the page when the page above does not have the property, else a few searches.
LYRSDK_API KLyrPushResult lyrPushProperty(const KLyrPropertyHandle& pProperty);

// --- visitors ------------------------------------------------------------------------------------------------------

namespace detail {

// Goes through the pages that a push of one property could be seen from: the page above, then those below it.
class LYRSDK_API PushEffects {
public:
    explicit PushEffects(const KLyrPropertyHandle& pProperty);

    explicit operator bool() const { return mPage != nullptr; }
    KLyrPushEffect Effect() const;
    void Next();

private:
    void Foretell();
    KLyrPushReach ReachOf(KLyrPushReach pAbove, const KLyrPropertyPage* pHolder, KLyrPropertyHandle& pShield) const;

    KLyrPushItems mItems;
    KLyrPropertyPage* mAbove = nullptr;
    KLyrPropertyPage* mPage = nullptr;
    int mIndex = 0;  // of mPage among its instances
    // What the page above will see.
    KLyrPushReach mDescription = KLyrPushReach::eNotMoved;
    KLyrPushReach mValue = KLyrPushReach::eNotMoved;
    unsigned mFlagsBefore = 0;
    unsigned mFlagsAfter = 0;
};

}  // namespace detail

// pVisitor(const KLyrPushItems&) for each property of which PushPropertiesToParentInstance on this handle would move
// something, in the order of ids. A visitor that gives a bool ends the walk with false. The number of calls; 0 for any
// handle but the root of a page that is an instance.
template <typename Visitor>
int lyrVisitPush(const KLyrPropertyHandle& pRoot, Visitor&& pVisitor) {
    int lCount = 0;
    if (pRoot.GetId() != 0)
        return 0;
    for (KLyrPropertyHandle lAt = detail::FirstOfSubtree(pRoot); lAt.Valid(); lAt = detail::NextOfSubtree(pRoot, lAt)) {
        const KLyrPushItems lItems = lyrPushItemsOf(lAt);
        const bool lMoves = lItems.mResult == KLyrPushResult::ePushed || lItems.mResult == KLyrPushResult::eNoPlace;
        if (lMoves && ++lCount && !detail::GoesOn(pVisitor, lItems))
            break;
    }
    return lCount;
}

// pVisitor(const KLyrPushEffect&) for the page above, then for its other instances and the pages below those, each in
// front of its instances: how the push of this property, alone or with its page, is seen there. A visitor that gives a
// bool ends the walk with false. The number of calls; 0 when nothing of the property would move. The visitor must
// change nothing. Each page costs a search in every page between it and the page above.
template <typename Visitor>
int lyrVisitPushEffects(const KLyrPropertyHandle& pProperty, Visitor&& pVisitor) {
    int lCount = 0;
    for (detail::PushEffects lAt(pProperty); lAt; lAt.Next()) {
        ++lCount;
        const KLyrPushEffect lEffect = lAt.Effect();
        if (!detail::GoesOn(pVisitor, lEffect))
            break;
    }
    return lCount;
}

}  // namespace lyrsdk
