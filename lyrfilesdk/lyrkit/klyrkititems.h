#pragma once

// What the kit's answers about inheritance rest on: which pages hold something for a property, which pages there are,
// and whether two items can be told apart. Internal to the kit.

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

namespace lyrsdk {
namespace detail {

// The pages that hold an entry of one property, from a page up its chain. Each step is a search in every page passed.
class HeldEntries {
public:
    HeldEntries(KLyrPropertyPage* pPage, int pId) : mId(pId) { Reach(pPage); }

    explicit operator bool() const { return mEntry != nullptr; }
    void Next() {
        ++mDistance;
        Reach(mPage->GetInstanceOf());
    }

    KLyrPropertyPage* Page() const { return mPage; }
    KLyrPropertyEntry* Entry() const { return mEntry; }
    // How many pages up the chain: 0 for the page asked.
    int Distance() const { return mDistance; }
    template <typename T>
    T* Item() const {
        return mEntry->Get(static_cast<const T*>(nullptr));
    }

private:
    void Reach(KLyrPropertyPage* pPage) {
        mPage = nullptr;
        mEntry = pPage ? pPage->GetPropertyEntry(mId, &mPage) : nullptr;
        for (; mEntry && pPage != mPage; pPage = pPage->GetInstanceOf())
            ++mDistance;
    }

    int mId;
    int mDistance = 0;
    KLyrPropertyPage* mPage = nullptr;
    KLyrPropertyEntry* mEntry = nullptr;
};

// The entry that the page holds itself, or null.
inline KLyrPropertyEntry* OwnEntryOf(const KLyrPropertyPage* pPage, int pId) {
    KLyrPropertyPage* lHolder = nullptr;
    KLyrPropertyEntry* lEntry = pPage->GetPropertyEntry(pId, &lHolder);
    return lHolder == pPage ? lEntry : nullptr;
}

template <typename T>
T* OwnItemOf(const KLyrPropertyPage* pPage, int pId) {
    KLyrPropertyEntry* lEntry = OwnEntryOf(pPage, pId);
    return lEntry ? lEntry->Get(static_cast<const T*>(nullptr)) : nullptr;
}

// Whether a page above this one has the property.
inline bool HasAbove(const KLyrPropertyPage* pPage, int pId) {
    return pPage->GetInstanceOf() && pPage->GetInstanceOf()->GetPropertyEntry(pId);
}

// A page and all pages below it, each in front of its instances; a page that is left out takes those below it along.
// Takes no memory. Going back up to a page costs a search among the instances of the page above that.
class PagesBelow {
public:
    explicit PagesBelow(KLyrPropertyPage* pTop, const KLyrPropertyPage* pLeftOut = nullptr)
        : mTop(pTop), mLeftOut(pLeftOut), mPage(pTop != pLeftOut ? pTop : nullptr) {}

    // The walk goes on from a page that it had come to.
    PagesBelow(KLyrPropertyPage* pTop, const KLyrPropertyPage* pLeftOut, KLyrPropertyPage* pPage, int pIndex)
        : mTop(pTop), mLeftOut(pLeftOut), mPage(pPage), mIndex(pIndex) {}

    explicit operator bool() const { return mPage != nullptr; }
    KLyrPropertyPage* Page() const { return mPage; }
    // The place of the page among the instances of the page above it; 0 at the top.
    int Index() const { return mIndex; }
    void Next();

private:
    bool EnterFrom(KLyrPropertyPage* pAbove, int pIndex);

    KLyrPropertyPage* mTop;
    const KLyrPropertyPage* mLeftOut;
    KLyrPropertyPage* mPage;
    int mIndex = 0;
};

// The property of pFrom's subtree behind pId, which is in it; -1 behind the last. Everything is below the root, what
// has lost its place in the tree too.
int NextBelow(const KLyrPropertyPage* pPage, int pFrom, int pId);

// Whether nothing could tell the values apart: of one type, and equal bit for bit. Without memory to look at them,
// false. References and values without storage of one type are alike.
bool AreAlike(const KLyrPropertyValue* pLeft, const KLyrPropertyValue* pRight);

// The same for descriptions: names, types, labels, tags, data, bounds and enumeration texts.
bool AreAlike(const KLyrPropertyInfo* pLeft, const KLyrPropertyInfo* pRight);

}  // namespace detail
}  // namespace lyrsdk
