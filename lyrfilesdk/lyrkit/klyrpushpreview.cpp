#include "lyrfilesdk/lyrkit/klyrpushpreview.h"

#include "lyrfilesdk/lyrkit/klyrkititems.h"

namespace lyrsdk {
namespace {

using Flags = LyrPropertyFlags::eLyrPropertyFlags;

Flags HeldFlags(const KLyrPropertyFlags& pItem) {
    return static_cast<Flags>(pItem.GetMask() | pItem.GetFlags());
}

bool HasPlaceAbove(const KLyrPropertyPage* pPage, int pId) {
    const int lParent = pPage->GetParent(pId);
    return !pPage->GetPropertyEntry(lParent) || detail::HasAbove(pPage, lParent);
}

}  // namespace

KLyrPushItems lyrPushItemsOf(const KLyrPropertyHandle& pProperty) {
    KLyrPushItems lItems;
    lItems.mProperty = pProperty;
    const KLyrPropertyPage* lPage = pProperty.GetPage();
    const int lId = pProperty.GetId();
    if (!lPage || !lPage->GetPropertyEntry(lId))
        return lItems;
    lItems.mResult = lPage->GetInstanceOf() ? KLyrPushResult::eNothing : KLyrPushResult::eNoParent;
    KLyrPropertyEntry* lEntry = detail::OwnEntryOf(lPage, lId);
    if (!lEntry || lItems.mResult == KLyrPushResult::eNoParent)
        return lItems;
    lItems.mDescription = lEntry->Get(static_cast<const KLyrPropertyInfo*>(nullptr)) != nullptr;
    lItems.mValue = lEntry->Get(static_cast<const KLyrPropertyValue*>(nullptr)) != nullptr;
    lItems.mFlags = HeldFlags(*lEntry->Get(static_cast<const KLyrPropertyFlags*>(nullptr)));
    lItems.mIsNewAbove = !detail::HasAbove(lPage, lId);
    if (lItems.mDescription || lItems.mValue || lItems.mFlags != LyrPropertyFlags::eNO_FLAG) {
        const bool lHasPlace = !lItems.mIsNewAbove || HasPlaceAbove(lPage, lId);
        lItems.mResult = lHasPlace ? KLyrPushResult::ePushed : KLyrPushResult::eNoPlace;
    }
    return lItems;
}

// --- who sees it ---------------------------------------------------------------------------------------------------

namespace detail {
namespace {

template <typename T>
KLyrPushReach ReachAbove(const KLyrPropertyPage* pPage, int pId) {
    const T* lMoved = OwnItemOf<T>(pPage, pId);
    if (!lMoved)
        return KLyrPushReach::eNotMoved;
    const T* lSeen = pPage->GetInstanceOf()->GetPropertyItem<T>(nullptr, pId);
    return AreAlike(lSeen, lMoved) ? KLyrPushReach::eSame : KLyrPushReach::eChanged;
}

// The page above takes the flags that are set on the page over its own, and those that are on without a mark as well.
unsigned FlagsAfter(const KLyrPropertyPage* pAbove, int pId, const KLyrPropertyFlags& pMoved) {
    const KLyrPropertyFlags* lOwn = OwnItemOf<KLyrPropertyFlags>(pAbove, pId);
    KLyrPropertyFlags lAfter = lOwn ? *lOwn : KLyrPropertyFlags();
    lAfter.SetFlags(pMoved.GetMask(), pMoved.GetFlags());
    const KLyrPropertyPage* lFarther = pAbove->GetInstanceOf();
    return lAfter.GetMergedFlags(lFarther ? static_cast<unsigned>(lFarther->GetFlags(pId)) : 0u);
}

}  // namespace

PushEffects::PushEffects(const KLyrPropertyHandle& pProperty) : mItems(lyrPushItemsOf(pProperty)) {
    if (mItems.mResult == KLyrPushResult::ePushed || mItems.mResult == KLyrPushResult::eNoPlace)
        Foretell();
}

void PushEffects::Foretell() {
    const KLyrPropertyPage* lPage = mItems.mProperty.GetPage();
    const int lId = mItems.mProperty.GetId();
    mAbove = lPage->GetInstanceOf();
    mPage = mAbove;
    mDescription = ReachAbove<KLyrPropertyInfo>(lPage, lId);
    mValue = ReachAbove<KLyrPropertyValue>(lPage, lId);
    mFlagsBefore = mAbove->GetFlags(lId);
    mFlagsAfter = FlagsAfter(mAbove, lId, *OwnItemOf<KLyrPropertyFlags>(lPage, lId));
}

void PushEffects::Next() {
    PagesBelow lPages(mAbove, mItems.mProperty.GetPage(), mPage, mIndex);
    lPages.Next();
    mPage = lPages.Page();
    mIndex = lPages.Index();
}

// What a page below sees is what the page above sees, unless a page on the way holds an item itself.
KLyrPushReach PushEffects::ReachOf(KLyrPushReach pAbove, const KLyrPropertyPage* pHolder,
                                   KLyrPropertyHandle& pShield) const {
    if (pAbove == KLyrPushReach::eNotMoved || !pHolder)
        return pAbove;
    pShield = KLyrPropertyHandle(const_cast<KLyrPropertyPage*>(pHolder), mItems.mProperty.GetId());
    return KLyrPushReach::eShielded;
}

KLyrPushEffect PushEffects::Effect() const {
    const int lId = mItems.mProperty.GetId();
    KLyrPushEffect lEffect;
    lEffect.mProperty = KLyrPropertyHandle(mPage, lId);
    const KLyrPropertyPage* lInfoShield = nullptr;
    const KLyrPropertyPage* lValueShield = nullptr;
    unsigned lHides = 0;
    int lLevels = 0;
    for (const KLyrPropertyPage* lPage = mPage; lPage != mAbove; lPage = lPage->GetInstanceOf())
        ++lLevels;
    for (HeldEntries lHeld(mPage, lId); lHeld && lHeld.Distance() < lLevels; lHeld.Next()) {
        if (!lInfoShield && lHeld.Item<KLyrPropertyInfo>())
            lInfoShield = lHeld.Page();
        if (!lValueShield && lHeld.Item<KLyrPropertyValue>())
            lValueShield = lHeld.Page();
        lHides |= HeldFlags(*lHeld.Item<KLyrPropertyFlags>());
    }
    lEffect.mDescription = ReachOf(mDescription, lInfoShield, lEffect.mDescriptionShield);
    lEffect.mValue = ReachOf(mValue, lValueShield, lEffect.mValueShield);
    const unsigned lChange = mFlagsBefore ^ mFlagsAfter;
    lEffect.mFlagsChanged = static_cast<Flags>(lChange & ~lHides);
    lEffect.mFlagsShielded = static_cast<Flags>(lChange & lHides);
    return lEffect;
}

}  // namespace detail

// --- the push itself -----------------------------------------------------------------------------------------------

namespace {

// The page above has the property and needs no more than an entry of its own.
KLyrPushResult PushKnown(KLyrPropertyPage* pPage, int pId) {
    KLyrPropertyEntry* lAbove = pPage->GetInstanceOf()->ChangePropertyEntryState(pId, eLyrOverride);
    if (!lAbove)
        return KLyrPushResult::eNoMemory;
    KLyrPropertyEntry* lOwn = detail::OwnEntryOf(pPage, pId);
    const KLyrPropertyFlags lFlags = *lOwn->Get(static_cast<const KLyrPropertyFlags*>(nullptr));
    if (KLyrPropertyInfo* lInfo = lOwn->Get(static_cast<const KLyrPropertyInfo*>(nullptr)))
        lAbove->Set(lInfo);
    if (KLyrPropertyValue* lValue = lOwn->Get(static_cast<const KLyrPropertyValue*>(nullptr)))
        lAbove->Set(lValue);
    lAbove->Get(static_cast<const KLyrPropertyFlags*>(nullptr))->SetFlags(lFlags.GetMask(), lFlags.GetFlags());
    pPage->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, pId, eLyrInherit);
    pPage->ChangePropertyItemState<KLyrPropertyValue>(nullptr, pId, eLyrInherit);
    pPage->ChangePropertyItemState<KLyrPropertyFlags>(nullptr, pId, eLyrInherit);
    return KLyrPushResult::ePushed;
}

// Only a push of the whole page makes an entry under a given id where there was none. All that the page holds besides
// is put aside for that time, into a page that nobody knows of. An entry that was emptied would go: it is given a
// connection item to hold, where it has none.
class Aside {
public:
    Aside(KLyrPropertyPage* pPage, int pExcept) : mPage(pPage), mExcept(pExcept) {}
    ~Aside() {
        if (mStore)
            mStore->Destroy();
    }
    Aside(const Aside&) = delete;
    Aside& operator=(const Aside&) = delete;

    // False, and nothing has changed, when there is no memory.
    bool Put() {
        mStore = KLyrPropertyPage::Create("", eUNIDENTIFIED);
        bool lDone = mStore != nullptr;
        for (int lId = NextHeld(-1); lDone && lId != -1; lId = NextHeld(lId))
            lDone = Store(detail::OwnEntryOf(mPage, lId), lId);
        if (!lDone) {
            ReturnAll();
            return false;
        }
        for (int lId = NextHeld(-1); lId != -1; lId = NextHeld(lId)) {
            KLyrPropertyEntry* lEntry = detail::OwnEntryOf(mPage, lId);
            lEntry->Set(static_cast<KLyrPropertyInfo*>(nullptr));
            lEntry->Set(static_cast<KLyrPropertyValue*>(nullptr));
            lEntry->Set(KLyrPropertyFlags());
        }
        return true;
    }

    // Puts everything back in its place. What was stored has the ids from 1 in the order of the entries.
    void ReturnAll() {
        const int lEnd = mStore ? mStore->GetPropertyEntryCount() : 1;
        int lId = NextHeld(-1);
        for (int lStored = 1; lStored < lEnd; ++lStored, lId = NextHeld(lId)) {
            KLyrPropertyEntry* lFrom = mStore->GetPropertyEntry(lStored);
            KLyrPropertyEntry* lTo = detail::OwnEntryOf(mPage, lId);
            lTo->Set(lFrom->Get(static_cast<const KLyrPropertyInfo*>(nullptr)));
            lTo->Set(lFrom->Get(static_cast<const KLyrPropertyValue*>(nullptr)));
            lTo->Set(*lFrom->Get(static_cast<const KLyrPropertyFlags*>(nullptr)));
            if (lFrom->Get(static_cast<const KLyrPropertyConnect*>(nullptr)))
                lTo->Set(static_cast<KLyrPropertyConnect*>(nullptr));
        }
    }

private:
    // The next id that the page holds an entry of, but for the one that is to be pushed.
    int NextHeld(int pId) const {
        int lId = pId;
        do
            lId = lId == -1 && mPage->GetPropertyEntry(0) ? 0 : mPage->GetMinimumPropertyIdAndEntry(lId);
        while (lId != -1 && (lId == mExcept || !detail::OwnEntryOf(mPage, lId)));
        return lId;
    }

    bool Store(KLyrPropertyEntry* pEntry, int pId) {
        KLyrPropertyConnect* lHold = nullptr;
        if (!pEntry->Get(static_cast<const KLyrPropertyConnect*>(nullptr))) {
            lHold = KLyrPropertyConnect::Create(mPage, pId);
            if (!lHold)
                return false;
        }
        const int lStored = mStore->Add(-1, pEntry->Get(static_cast<const KLyrPropertyInfo*>(nullptr)),
                                        pEntry->Get(static_cast<const KLyrPropertyValue*>(nullptr)), lHold, false);
        if (lStored < 0) {
            detail::Discard(lHold);
            return false;
        }
        mStore->GetPropertyEntry(lStored)->Set(*pEntry->Get(static_cast<const KLyrPropertyFlags*>(nullptr)));
        if (lHold)
            pEntry->Set(lHold);
        return true;
    }

    KLyrPropertyPage* mPage;
    int mExcept;
    KLyrPropertyPage* mStore = nullptr;
};

KLyrPushResult PushNew(KLyrPropertyPage* pPage, int pId) {
    Aside lAside(pPage, pId);
    if (!lAside.Put())
        return KLyrPushResult::eNoMemory;
    pPage->PushPropertiesToParentInstance();
    lAside.ReturnAll();
    return detail::HasAbove(pPage, pId) ? KLyrPushResult::ePushed : KLyrPushResult::eNoMemory;
}

}  // namespace

KLyrPushResult lyrPushProperty(const KLyrPropertyHandle& pProperty) {
    const KLyrPushItems lItems = lyrPushItemsOf(pProperty);
    if (lItems.mResult != KLyrPushResult::ePushed)
        return lItems.mResult;
    return lItems.mIsNewAbove ? PushNew(pProperty.GetPage(), pProperty.GetId())
                              : PushKnown(pProperty.GetPage(), pProperty.GetId());
}

}  // namespace lyrsdk
