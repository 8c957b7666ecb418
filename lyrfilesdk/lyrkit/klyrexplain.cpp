#include "lyrfilesdk/lyrkit/klyrexplain.h"

#include "lyrfilesdk/lyrkit/klyrkititems.h"

namespace lyrsdk {
namespace {

using detail::HeldEntries;

KLyrOrigin OriginAt(int pDistance) {
    return pDistance == 0 ? KLyrOrigin::eOwn : KLyrOrigin::eInherited;
}

// The nearest item is the one that is seen; that of a page above, the one behind it.
void Note(KLyrItemOrigin& pOrigin, const HeldEntries& pHeld, const KLyrPropertyHandle& pHolder) {
    if (pOrigin.mOrigin == KLyrOrigin::eNowhere) {
        pOrigin.mOrigin = OriginAt(pHeld.Distance());
        pOrigin.mDistance = pHeld.Distance();
        pOrigin.mHolder = pHolder;
    }
    if (pHeld.Distance() > 0 && !pOrigin.mIfInherited.Valid())
        pOrigin.mIfInherited = pHolder;
}

void NoteFlags(KLyrExplanation& pAnswer, const HeldEntries& pHeld, const KLyrPropertyHandle& pHolder) {
    const KLyrPropertyFlags& lItem = *pHeld.Item<KLyrPropertyFlags>();
    const unsigned lOn = lItem.GetFlags();
    const unsigned lSet = lItem.GetMask();
    for (int i = 0; i < KLyrExplanation::kFlagCount; ++i) {
        KLyrFlagOrigin& lFlag = pAnswer.mFlags[i];
        if (lFlag.mOrigin != KLyrOrigin::eNowhere || ((lOn | lSet) >> i & 1u) == 0)
            continue;
        lFlag.mOrigin = OriginAt(pHeld.Distance());
        lFlag.mDistance = pHeld.Distance();
        lFlag.mHolder = pHolder;
        lFlag.mIsOn = (lOn >> i & 1u) != 0;
        lFlag.mIsSet = (lSet >> i & 1u) != 0;
    }
    if (pHeld.Distance() == 0)
        pAnswer.mFlagsSet = static_cast<LyrPropertyFlags::eLyrPropertyFlags>(lSet);
}

// A page above which nobody has the property keeps what it has.
void NoteFlagsSeen(KLyrExplanation& pAnswer) {
    const KLyrPropertyHandle& lProperty = pAnswer.mProperty;
    KLyrPropertyPage* lAbove = lProperty.GetPage()->GetInstanceOf();
    const bool lInherits = lAbove && lAbove->GetPropertyEntry(lProperty.GetId());
    pAnswer.mFlagsSeen = lProperty.GetFlags();
    pAnswer.mFlagsIfInherited = lInherits ? lAbove->GetFlags(lProperty.GetId()) : pAnswer.mFlagsSeen;
    for (int i = 0; i < KLyrExplanation::kFlagCount; ++i)
        pAnswer.mFlags[i].mIsOnIfInherited = (pAnswer.mFlagsIfInherited >> i & 1u) != 0;
}

}  // namespace

KLyrExplanation lyrExplain(const KLyrPropertyHandle& pProperty) {
    KLyrExplanation lAnswer;
    lAnswer.mProperty = pProperty;
    for (HeldEntries lHeld(pProperty.GetPage(), pProperty.GetId()); lHeld; lHeld.Next()) {
        const KLyrPropertyHandle lHolder(lHeld.Page(), pProperty.GetId());
        lAnswer.mAddedBy = lHolder;
        if (lHeld.Item<KLyrPropertyInfo>())
            Note(lAnswer.mDescription, lHeld, lHolder);
        if (lHeld.Item<KLyrPropertyValue>())
            Note(lAnswer.mValue, lHeld, lHolder);
        if (lHeld.Item<KLyrPropertyConnect>())
            Note(lAnswer.mConnections, lHeld, lHolder);
        NoteFlags(lAnswer, lHeld, lHolder);
    }
    if (lAnswer.mAddedBy.GetPage())
        NoteFlagsSeen(lAnswer);
    lAnswer.mSrcCount = pProperty.GetSrcCount(nullptr);
    lAnswer.mDstCount = pProperty.GetDstCount(nullptr);
    return lAnswer;
}

}  // namespace lyrsdk
