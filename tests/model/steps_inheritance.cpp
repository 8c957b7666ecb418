// The operations on states, flags and connections, on both sides.

#include "lyrfilesdk/klyrplugins/klyrplug.h"
#include "tests/model/driver.h"

namespace lyrmodel {

using namespace lyrsdk;

namespace {

KLyrInheritType State(const Arguments& pA) {
    return static_cast<KLyrInheritType>(pA.mState);
}

LyrPropertyFlags::eLyrPropertyFlags FlagsOf(const Arguments& pA) {
    return static_cast<LyrPropertyFlags::eLyrPropertyFlags>(pA.mFlags);
}

}  // namespace

// --- flags and states

// Through the handle, which always compares with what is inherited, or through the page.
void Driver::ModifyFlags(const Arguments& pA) {
    Page* lPage = pA.mPages[0];
    const bool lValue = pA.mBools[0], lCheck = pA.mBools[1];
    const bool lLibrary = lCheck || !lPage
                              ? HandleAt(pA).ModifyFlags(FlagsOf(pA), lValue)
                              : mPair.Library(pA.mSlots[0])->ModifyFlags(pA.mIds[0], FlagsOf(pA), lValue, false);
    mSame.Same("flags changed", lLibrary, lPage && lPage->ModifyFlags(pA.mIds[0], pA.mFlags, lValue, lCheck));
}

void Driver::SetFlagsInheritType(const Arguments& pA) {
    Page* lPage = pA.mPages[0];
    mSame.Same("flags state set", HandleAt(pA).SetFlagsInheritType(FlagsOf(pA), State(pA)),
               lPage && lPage->SetFlagsInheritType(pA.mState, pA.mFlags, pA.mIds[0]));
}

void Driver::GetFlagsInheritType(const Arguments& pA) {
    Page* lPage = pA.mPages[0];
    mSame.Same("flags state", static_cast<int>(HandleAt(pA).GetFlagsInheritType(FlagsOf(pA), pA.mBools[0])),
               lPage ? lPage->GetFlagsInheritType(pA.mFlags, pA.mBools[0], pA.mIds[0]) : kInherit);
}

void Driver::SetValueInheritType(const Arguments& pA) {
    Page* lPage = pA.mPages[0];
    mSame.Same("value state set", HandleAt(pA).SetValueInheritType(State(pA)),
               lPage && lPage->SetValueInherit(pA.mIds[0], pA.mState));
}

void Driver::Push(const Arguments& pA) {
    const bool lRoot = pA.mPages[0] && pA.mIds[0] == 0;
    mSame.Same("pushed", HandleAt(pA).PushPropertiesToParentInstance(), lRoot);
    if (lRoot)
        pA.mPages[0]->Push();
}

void Driver::PushRoot(const Arguments& pA) {
    Arguments lRoot = pA;
    lRoot.mIds[0] = 0;
    Push(lRoot);
}

void Driver::ChangeEntryState(const Arguments& pA) {
    if (!pA.mPages[0])
        return;
    const auto* lEntry = mPair.Library(pA.mSlots[0])->ChangePropertyEntryState(pA.mIds[0], State(pA));
    mSame.Same("own entry", lEntry != nullptr, pA.mPages[0]->ChangeEntryState(pA.mIds[0], pA.mState));
}

template <typename T>
void Driver::ChangeItem(const Arguments& pA, Item pItem) {
    if (!pA.mPages[0])
        return;
    const T* lItem = mPair.Library(pA.mSlots[0])->ChangePropertyItemState<T>(nullptr, pA.mIds[0], State(pA));
    mSame.Same("own item", lItem != nullptr, pA.mPages[0]->ChangeItemState(pItem, pA.mIds[0], pA.mState));
}

void Driver::ChangeInfoState(const Arguments& pA) {
    ChangeItem<KLyrPropertyInfo>(pA, Item::eInfo);
}

void Driver::ChangeValueState(const Arguments& pA) {
    ChangeItem<KLyrPropertyValue>(pA, Item::eValue);
}

void Driver::ChangeFlagsState(const Arguments& pA) {
    ChangeItem<KLyrPropertyFlags>(pA, Item::eFlags);
}

// --- connections

void Driver::Connect(const Arguments& pA, bool pSrc) {
    const auto lType = static_cast<kLyrConnectionType>(pA.mConnection);
    Page *lPage = pA.mPages[0], *lOther = pA.mPages[1];
    if (pSrc)
        mSame.Same("source connected", HandleAt(pA).ConnectSrc(HandleAt(pA, 1), lType),
                   lPage && lPage->ConnectSrc(pA.mIds[0], lOther, pA.mIds[1], pA.mConnection));
    else
        mSame.Same("destination connected", HandleAt(pA).ConnectDst(HandleAt(pA, 1), lType),
                   lPage && lOther && lOther->ConnectSrc(pA.mIds[1], lPage, pA.mIds[0], pA.mConnection));
}

void Driver::ConnectSrc(const Arguments& pA) {
    Connect(pA, true);
}

void Driver::ConnectDst(const Arguments& pA) {
    Connect(pA, false);
}

// A property to every one of a page, so that lists become long.
void Driver::ConnectAll(const Arguments& pA) {
    if (!pA.mPages[1])
        return;
    Arguments lOne = pA;
    for (int lId : pA.mPages[1]->VisibleIds()) {
        lOne.mIds[1] = lId;
        Connect(lOne, lId % 2 != 0);
    }
}

void Driver::Disconnect(const Arguments& pA, bool pSrc) {
    Page *lPage = pA.mPages[0], *lOther = pA.mPages[1];
    if (pSrc)
        mSame.Same("source disconnected", HandleAt(pA).DisconnectSrc(HandleAt(pA, 1)),
                   lPage && lPage->DisconnectSrc(pA.mIds[0], lOther, pA.mIds[1]));
    else
        mSame.Same("destination disconnected", HandleAt(pA).DisconnectDst(HandleAt(pA, 1)),
                   lPage && lOther && lOther->DisconnectSrc(pA.mIds[1], lPage, pA.mIds[0]));
}

void Driver::DisconnectSrc(const Arguments& pA) {
    Disconnect(pA, true);
}

void Driver::DisconnectDst(const Arguments& pA) {
    Disconnect(pA, false);
}

// A connection that exists, which two properties drawn at random seldom have.
void Driver::DisconnectNth(const Arguments& pA) {
    if (!pA.mPages[0])
        return;
    const std::vector<Link> lLinks = pA.mPages[0]->GetLinks(pA.mIds[0], pA.mBools[0], nullptr);
    if (lLinks.empty())
        return;
    const Link& lLink = lLinks[pA.mBits % lLinks.size()];
    Arguments lExisting = pA;
    lExisting.mPages[1] = lLink.mPeer->mPage;
    lExisting.mSlots[1] = lLink.mPeer->mPage->mSlot;
    lExisting.mIds[1] = lLink.mPeer->mId;
    IsConnected(lExisting);
    Disconnect(lExisting, pA.mBools[0]);
}

void Driver::IsConnected(const Arguments& pA) {
    Page *lPage = pA.mPages[0], *lOther = pA.mPages[1];
    mSame.Same("source connected", HandleAt(pA).IsConnectedSrc(HandleAt(pA, 1)),
               lPage && lPage->IsConnectedSrc(pA.mIds[0], lOther, pA.mIds[1]));
    mSame.Same("destination connected", HandleAt(pA).IsConnectedDst(HandleAt(pA, 1)),
               lPage && lOther && lOther->IsConnectedSrc(pA.mIds[1], lPage, pA.mIds[0]));
}

void Driver::GetEnd(const Arguments& pA, bool pSrc) {
    KLyrConnectionPointFilter* lFilter = mPair.LibraryFilterAt(pA.mFilter);
    const KLyrPropertyHandle lHandle = HandleAt(pA);
    const std::vector<Link> lLinks =
        pA.mPages[0] ? pA.mPages[0]->GetLinks(pA.mIds[0], pSrc, mPair.ModelFilterAt(pA.mFilter)) : std::vector<Link>();
    mSame.Same("connections", pSrc ? lHandle.GetSrcCount(lFilter) : lHandle.GetDstCount(lFilter),
               static_cast<int>(lLinks.size()));
    const bool lInside = pA.mNumber >= 0 && pA.mNumber < static_cast<int>(lLinks.size());
    const auto* lPeer = lInside ? lLinks[static_cast<std::size_t>(pA.mNumber)].mPeer : nullptr;
    mSame.Same("other end", pSrc ? lHandle.GetSrc(lFilter, pA.mNumber) : lHandle.GetDst(lFilter, pA.mNumber),
               lPeer ? lPeer->mPage : nullptr, lPeer ? lPeer->mId : -1);
}

void Driver::GetSrc(const Arguments& pA) {
    GetEnd(pA, true);
}

void Driver::GetDst(const Arguments& pA) {
    GetEnd(pA, false);
}

// The page or the id of an other end alone, neither, or both; what there is not is not written.
void Driver::GetEndInPart(const Arguments& pA) {
    if (!pA.mPages[0])
        return;
    const bool lSrc = pA.mBools[0];
    KLyrConnectionPointFilter* lFilter = mPair.LibraryFilterAt(pA.mFilter);
    const std::vector<Link> lLinks = pA.mPages[0]->GetLinks(pA.mIds[0], lSrc, mPair.ModelFilterAt(pA.mFilter));
    const bool lInside = pA.mNumber >= 0 && pA.mNumber < static_cast<int>(lLinks.size());
    const lyrmodel::Connect* lPeer = lInside ? lLinks[static_cast<std::size_t>(pA.mNumber)].mPeer : nullptr;
    KLyrPropertyPage* const lPage = mPair.Library(pA.mSlots[0]);
    KLyrPropertyPage* lEndPage = lPage;
    int lEndId = -5;
    const bool lAsksPage = pA.mBits & 32, lAsksId = pA.mBits & 64;
    KLyrPropertyPage** lPageOut = lAsksPage ? &lEndPage : nullptr;
    int* lIdOut = lAsksId ? &lEndId : nullptr;
    const bool lFound = lSrc ? lPage->GetSrc(pA.mIds[0], pA.mNumber, lFilter, lPageOut, lIdOut)
                             : lPage->GetDst(pA.mIds[0], pA.mNumber, lFilter, lPageOut, lIdOut);
    mSame.Same("other end there", lFound, lInside);
    mSame.Same("page of the other end", mPair.SlotOf(lEndPage),
               lInside && lAsksPage ? lPeer->mPage->mSlot : pA.mSlots[0]);
    mSame.Same("id of the other end", lEndId, lInside && lAsksId ? lPeer->mId : -5);
}

void Driver::WipeAllConnections(const Arguments& pA) {
    HandleAt(pA).WipeAllConnections();
    mSame.Count("connections wiped",
                pA.mPages[0] && !pA.mPages[0]->GetLinks(pA.mIds[0], pA.mBools[0], nullptr).empty());
    if (pA.mPages[0])
        pA.mPages[0]->Wipe(pA.mIds[0]);
}

// Shows nowhere: what is dropped is built again when asked for.
void Driver::ClearConnectCache(const Arguments& pA) {
    HandleAt(pA).ClearConnectCache();
}

void Driver::RenewFilter(const Arguments& pA) {
    if (pA.mFilter)
        mPair.RenewFilter(pA.mFilter,
                          Filter{pA.mConnection & 31, pA.mBits % 3 == 2 ? -1 : static_cast<int>(pA.mBits % 3)});
}

// Changes only how connections end, not that they do.
void Driver::SetWipeMode(const Arguments& pA) {
    KLyrPlug::SetWipeMode(pA.mBools[0]);
}

}  // namespace lyrmodel
