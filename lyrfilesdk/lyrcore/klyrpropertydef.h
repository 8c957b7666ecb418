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
    enum eLyrPropertyFlags : unsigned {
        eNO_FLAG = 0,
        eANIMATABLE = 1,
        eUSER = 2,
        eTEMPORARY = 4,
        ePUBLISHED = 8,
        ePSTATIC = 16,
        eNOT_SAVABLE = 32,
        eHIDDEN = 64,
        eUI_DISABLED = 128,
        eUI_GROUP = 256,
        eUI_BOOLGROUP = 512,
        eUI_EXPANDED = 1024,
        eUI_NOCAPTION = 2048,
        eUI_PANEL = 4096,
        eUI_LEFTLABEL = 8192,
        eUI_HIDDEN = 16384,
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
constexpr LyrPropertyFlags::eLyrPropertyFlags operator~(LyrPropertyFlags::eLyrPropertyFlags pFlags) {
    return static_cast<LyrPropertyFlags::eLyrPropertyFlags>(~static_cast<unsigned>(pFlags));
}

}  // namespace lyrsdk
