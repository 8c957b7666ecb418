#pragma once

// A bracket around many lookups and additions on one page, for the time of a scope.
//
//     {
//         const KLyrLookupBracket lBracket(lLamp);
//         ...  // Find with case is one map search here, and knows what Add adds
//     }
//
// BeginCreateOrFindProperty and EndCreateOrFindProperty do not nest: the first end closes the bracket whoever opened
// it. This one ends only what it opened. Inside another bracket of the page it does nothing, and the other one stays
// open.
//
// Pitfalls: it must go before the page does. What is added to a page above meanwhile is not found on this one.
//
// Cost: opening is one look at every property that the page sees, and takes memory for the map; without memory the
// bracket stays closed, and lookups look at the children as always. A few lookups are not worth one.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

namespace lyrsdk {

class LYRSDK_API KLyrLookupBracket {
public:
    // Opens the bracket of the handle's page, whatever its id, unless it is open. Without a page nothing happens.
    explicit KLyrLookupBracket(const KLyrPropertyHandle& pHandle) {
        KLyrPropertyPage* lPage = pHandle.GetPage();
        if (!lPage || lPage->IsCreateOrFindOpen())
            return;
        lPage->BeginCreateOrFindProperty();
        if (lPage->IsCreateOrFindOpen())
            mPage = lPage;
    }
    KLyrLookupBracket(const KLyrLookupBracket&) = delete;
    KLyrLookupBracket& operator=(const KLyrLookupBracket&) = delete;
    ~KLyrLookupBracket() { End(); }

    // Whether it opened the bracket and has not ended it. False inside another one, without memory and without a page.
    bool Holds() const { return mPage != nullptr; }
    // Ends the bracket before the scope does, if it opened it.
    void End() {
        if (mPage)
            mPage->EndCreateOrFindProperty();
        mPage = nullptr;
    }

private:
    KLyrPropertyPage* mPage = nullptr;
};

}  // namespace lyrsdk
