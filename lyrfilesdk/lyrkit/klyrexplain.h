#pragma once

// Why a property reads as it does: which page holds its description, its value, each of its flags and its connections.
//
//   page asked ----instance-of----> page ----instance-of----> family root
//   | 3: -    -     HIDDEN |        | 3: - value - |          | 3: info value flags |
//
//   lyrExplain of 3 on the page asked:
//     mDescription   inherited, distance 2
//     mValue         inherited, distance 1
//     mFlags[6]      own, on (HIDDEN); back to inherit it would be off
//     mFlags[0]      inherited, distance 2
//
// The answer is a plain struct that is exact when it is made and does not follow later changes; its handles are good as
// long as their pages live. It takes no memory.
//
// Failure: for a handle without a page, and for an id that does not exist, everything is from nowhere.
// Cost: one search in each page of the chain.

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"

namespace lyrsdk {

// Which page an item comes from.
enum class KLyrOrigin : int {
    eNowhere,    // no page of the chain holds it
    eOwn,        // the page asked holds it itself
    eInherited,  // a page up the chain does
};

// An origin in words: "nowhere", "own" or "inherited"; "unknown" for what is none. A literal.
LYRSDK_API const char* lyrResultText(KLyrOrigin pOrigin);

// Where one item comes from.
struct KLyrItemOrigin {
    // Which page that is.
    KLyrOrigin mOrigin = KLyrOrigin::eNowhere;
    // How many pages up the chain the holder is: 0 for an own item, -1 for nowhere.
    int mDistance = -1;
    // The property on the page that holds the item; the default handle for nowhere.
    KLyrPropertyHandle mHolder;
    // The property on the page whose item shows once this page inherits: that of an inherited item is mHolder. The
    // default handle when no page above holds one; an own item can then not be handed back.
    KLyrPropertyHandle mIfInherited;
};

// Where one flag comes from. The holder is the nearest page that sets the flag or merely has it on.
struct KLyrFlagOrigin {
    // Which page that is.
    KLyrOrigin mOrigin = KLyrOrigin::eNowhere;
    // How many pages up the chain the holder is: 0 for an own flag, -1 for nowhere.
    int mDistance = -1;
    // The property on the page of the holder; the default handle for nowhere.
    KLyrPropertyHandle mHolder;
    // As GetFlags shows it.
    bool mIsOn = false;
    // Marked as set by the holder. A flag that is on without a mark is a copy that came along with marked ones, and
    // stays until the last of those is handed back.
    bool mIsSet = false;
    // What shows once this page inherits all flags.
    bool mIsOnIfInherited = false;
};

struct KLyrExplanation {
    // How many flags there are.
    static constexpr int kFlagCount = LyrPropertyFlags::GetFlagCount();

    // The property that was asked for.
    KLyrPropertyHandle mProperty;
    // The property on the farthest page that has it: where it was added.
    KLyrPropertyHandle mAddedBy;

    // Where the description comes from.
    KLyrItemOrigin mDescription;
    // Where the value comes from.
    KLyrItemOrigin mValue;
    // By bit: mFlags[k] is the flag 1 << k.
    KLyrFlagOrigin mFlags[kFlagCount];
    // The flags as GetFlags shows them.
    LyrPropertyFlags::eLyrPropertyFlags mFlagsSeen = LyrPropertyFlags::eNO_FLAG;
    // Those that the page asked marks as set.
    LyrPropertyFlags::eLyrPropertyFlags mFlagsSet = LyrPropertyFlags::eNO_FLAG;
    // Those that show once it inherits all of them.
    LyrPropertyFlags::eLyrPropertyFlags mFlagsIfInherited = LyrPropertyFlags::eNO_FLAG;

    // Connections are seen and cut only where they were made: the counts are 0 unless the item is own. An inherited
    // item is what WipeAllConnections on this page would wipe.
    KLyrItemOrigin mConnections;
    // How many sources and destinations the own item has.
    int mSrcCount = 0;
    int mDstCount = 0;
};

// Explains a property as its page sees it.
LYRSDK_API KLyrExplanation lyrExplain(const KLyrPropertyHandle& pProperty);

}  // namespace lyrsdk
