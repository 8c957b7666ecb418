#pragma once

// The words that pages, items and handles share: property ids, inheritance states and property flags.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"

namespace lyrsdk {

class KLyrPropertyPage;

// A page in its role as the description of a compound type.
using KLyrTypeInfo = KLyrPropertyPage;

// Names a property within its page family. 0 is the family's root property, -1 is no property.
using kLyrPropertyId = int;

// Where a page takes an item from. Any other value is refused by every operation.
enum KLyrInheritType : int {
    eLyrOverride = 0,  // the page holds its own item
    eLyrInherit = 1,   // the page sees the item of the page it is an instance of
    eLyrDeleted = 2,   // accepted by the state changes, where it acts as eLyrInherit
};

// The flags of a property: one bit each.
class LyrPropertyFlags {
public:
    // Words for an application to agree on: the library keeps flags and acts on none of them.
    enum eLyrPropertyFlags : unsigned {
        eNO_FLAG = 0,          // none
        eANIMATABLE = 1,       // may be animated
        eUSER = 2,             // was added by a user
        eTEMPORARY = 4,        // is for the time being
        ePUBLISHED = 8,        // is offered to other parts of the application
        ePSTATIC = 16,         // counts as static
        eNOT_SAVABLE = 32,     // is left out when a scene is saved
        eHIDDEN = 64,          // is not shown
        eUI_DISABLED = 128,    // is shown, and not edited
        eUI_GROUP = 256,       // is the head of a group
        eUI_BOOLGROUP = 512,   // is the head of a group, and its switch
        eUI_EXPANDED = 1024,   // is a group that is shown open
        eUI_NOCAPTION = 2048,  // is shown without a caption
        eUI_PANEL = 4096,      // has a panel of its own
        eUI_LEFTLABEL = 8192,  // has its label to the left
        eUI_HIDDEN = 16384,    // is not shown in panels
    };

    // How many bits a flags item has room for, the undefined top bit included.
    static constexpr int GetFlagCount() { return 16; }

    // Every defined flag: bits 0 to 14.
    static constexpr eLyrPropertyFlags AllFlags() {
        unsigned lFlags = 0;
        for (int i = 0; i < GetFlagCount() - 1; ++i)
            lFlags = lFlags * 2 + 1;
        return static_cast<eLyrPropertyFlags>(lFlags);
    }
};

static_assert(LyrPropertyFlags::AllFlags() == 0x7FFF, "fifteen flags are defined");

// Combinations of flags are flags.
constexpr LyrPropertyFlags::eLyrPropertyFlags operator|(LyrPropertyFlags::eLyrPropertyFlags pLeft,
                                                        LyrPropertyFlags::eLyrPropertyFlags pRight) {
    return static_cast<LyrPropertyFlags::eLyrPropertyFlags>(static_cast<unsigned>(pLeft) |
                                                            static_cast<unsigned>(pRight));
}
constexpr LyrPropertyFlags::eLyrPropertyFlags operator&(LyrPropertyFlags::eLyrPropertyFlags pLeft,
                                                        LyrPropertyFlags::eLyrPropertyFlags pRight) {
    return static_cast<LyrPropertyFlags::eLyrPropertyFlags>(static_cast<unsigned>(pLeft) &
                                                            static_cast<unsigned>(pRight));
}
// All other flags.
constexpr LyrPropertyFlags::eLyrPropertyFlags operator~(LyrPropertyFlags::eLyrPropertyFlags pFlags) {
    return static_cast<LyrPropertyFlags::eLyrPropertyFlags>(~static_cast<unsigned>(pFlags));
}

}  // namespace lyrsdk
