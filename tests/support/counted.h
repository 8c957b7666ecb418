#pragma once

// Owners for tests: of one reference to an item, and of a page.

#include <memory>
#include <utility>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

namespace lyrsdk {

// Takes one reference to an item when it is made, and gives it back in the end.
template <typename T>
class Counted {
public:
    explicit Counted(T* pItem = nullptr) : mItem(pItem) {
        if (mItem)
            mItem->IncRef();
    }
    Counted(Counted&& pOther) noexcept : mItem(std::exchange(pOther.mItem, nullptr)) {}
    ~Counted() { Reset(); }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    void Reset(T* pItem = nullptr) {
        if (pItem)
            pItem->IncRef();
        if (T* lItem = std::exchange(mItem, pItem))
            lItem->DecRef();
    }

    T* Get() const { return mItem; }
    T* operator->() const { return mItem; }
    explicit operator bool() const { return mItem != nullptr; }

private:
    T* mItem;
};

struct DestroyPage {
    void operator()(KLyrPropertyPage* pPage) const { pPage->Destroy(); }
};
using OwnedPage = std::unique_ptr<KLyrPropertyPage, DestroyPage>;

struct DestroyEntry {
    void operator()(KLyrPropertyEntry* pEntry) const { pEntry->Destroy(); }
};
using OwnedEntry = std::unique_ptr<KLyrPropertyEntry, DestroyEntry>;

}  // namespace lyrsdk
