#pragma once

// A page between the page it is an instance of and an instance of its own, for hostile calls on pages and handles.
//
//   top:   0 "root" (double)
//   page:  1 "child" (double, a label and a maximum)   2 "typed" by type, with 3 "part" (int)
//          4 "enumeration" with "zero text" and "one text"   5 "text" (string)
//   below: its own value of 1
//   peer:  0 "peer", its source is 1 on page

#include <string>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/reliability/hostile.h"
#include "tests/support/connection_filters.h"
#include "tests/support/counted.h"
#include "tests/support/handle_pages.h"

namespace lyrsdk {

struct HostilePages {
    static constexpr int kChild = 1;
    static constexpr int kTyped = 2;
    static constexpr int kPart = 3;
    static constexpr int kEnum = 4;
    static constexpr int kText = 5;
    static constexpr int kIds[] = {0, kChild, kTyped, kPart, kEnum, kText};

    TypeFilter mFilter{0};
    OwnedPage mType{KLyrPropertyPage::Create("type", eINTEGER1)};
    OwnedPage mPeer{KLyrPropertyPage::Create("peer", eDOUBLE1)};
    OwnedPage mTop{KLyrPropertyPage::Create("root", eDOUBLE1)};
    OwnedPage mPage{KLyrPropertyPage::Create(mTop.get())};
    OwnedPage mBelow{KLyrPropertyPage::Create(mPage.get())};

    HostilePages() {
        const double lValue = 2.5;
        mType->Add(0, "part", eINTEGER1);
        mPage->Add(0, "child", eDOUBLE1);
        mPage->Add(0, "typed", mType.get());
        mPage->Add(0, "enumeration", eENUM);
        mPage->Add(0, "text", eSTRING);
        mPage->AddEnumValue(kEnum, "zero text");
        mPage->AddEnumValue(kEnum, "one text");
        mPage->SetLabel(kChild, "a label of its own");
        mPage->SetMinMax(kChild, KLyrPropertyInfo::eValueMax, &lValue, eDOUBLE1);
        mBelow->Set(kChild, &lValue, eDOUBLE1, false);
        mPeer->ConnectSrc(0, mPage.get(), kChild, eLyrConnectionData);
    }

    std::string State() const {
        std::string lState;
        for (const OwnedPage* lPage : {&mType, &mPeer, &mTop, &mPage, &mBelow})
            lState += DescribePage(KLyrPropertyHandle(lPage->get(), 0)) + '\n';
        return lState + std::to_string(mPage->GetInstances().GetCount());
    }
};

inline KLyrPropertyInfo::eValueIndex HostileBound(int pIndex) {
    return static_cast<KLyrPropertyInfo::eValueIndex>(pIndex);
}
inline KLyrInheritType HostileInherit(int pType) {
    return static_cast<KLyrInheritType>(pType);
}
inline LyrPropertyFlags::eLyrPropertyFlags HostileFlagsOf(unsigned pBits) {
    return static_cast<LyrPropertyFlags::eLyrPropertyFlags>(pBits);
}
inline kLyrConnectionType HostileConnection(int pType) {
    return static_cast<kLyrConnectionType>(pType);
}

// Bounds and inheritance states that are none.
inline constexpr int kNoBounds[] = {INT_MIN, -1, 4, 5, INT_MAX};
inline constexpr int kNoStates[] = {INT_MIN, -1, 3, 1000, INT_MAX};

}  // namespace lyrsdk
