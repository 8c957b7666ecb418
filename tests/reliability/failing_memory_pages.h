#pragma once

// The pages on which operations are run without memory.
//
//   inner  0 "inner type" double2   1 "deep" text
//   type   0 "type" text            1 "inner" of inner (2 "deep")   3 "group"   4 "leaf" in 3, connected to the peer
//   top    0 "top" double           1 "number"   2 "text"   3 "choice" enum   4 "blob"   5 "inner" of inner (6 "deep")
//                                   7 "other choice" enum without texts   8 "limit" text
//   page   an instance of top with a number and flags of its own, whose number is connected to the peer
//   below  an instance of page
//   peer   0 "peer" double

#include <string>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/reliability/failing_memory_scenarios.h"
#include "tests/support/connection_filters.h"
#include "tests/support/counted.h"
#include "tests/support/page_dump.h"

namespace lyrsdk {

inline constexpr char kLongText[] = "a text that is long enough to need a block of its own wherever it goes";
inline int sgPageData;
inline int sgUserData;

struct PageStage {
    enum Id { eNumber = 1, eText = 2, eChoice = 3, eBlobId = 4, eInner = 5, eDeep = 6, eOtherChoice = 7, eLimit = 8 };
    using Page = KLyrPropertyPage;
    using Flag = LyrPropertyFlags;

    OwnedPage mInner{Page::Create("inner type", eDOUBLE2)};
    OwnedPage mType{Page::Create("type", eSTRING)};
    OwnedPage mTop{Page::Create("top", eDOUBLE1)};
    OwnedPage mPage{Page::Create(mTop.get())};
    OwnedPage mBelow{Page::Create(mPage.get())};
    OwnedPage mPeer{Page::Create("peer", eDOUBLE1)};
    OwnedPage mMade;

    KString mLong{kLongText};
    KString mRead{"o"};
    lyrBlob mBytes;
    TypeFilter mFilter{eLyrConnectionUser};
    ReportRecorder mReports;

    PageStage() {
        mBytes.Assign(kLongText, 40);
        AddProperties();
        Describe();
        const double lNumber = 1.5;
        const double lOwn = 2.5;
        const KString lText("an inherited text, which is not short either, so that it has a block");
        mTop->Set(eNumber, &lNumber, eDOUBLE1, false);
        mTop->Set(eText, &lText, eSTRING, false);
        mTop->Set(eBlobId, &mBytes, eBLOB, false);
        mTop->ModifyFlags(eText, Flag::eUSER, true, false);
        mPage->Set(eNumber, &lOwn, eDOUBLE1, false);
        mPage->ModifyFlags(eNumber, Flag::eHIDDEN, true, false);
        mPage->ConnectSrc(eNumber, mPeer.get(), 0, eLyrConnectionUser);
        mPage->SetDataPtr(&sgPageData);
    }

    void AddProperties() {
        mInner->Add(0, "deep", eSTRING);
        mType->Add(0, "inner", mInner.get());
        mType->Add(mType->Add(0, "group", eUNIDENTIFIED), "leaf", eSTRING);
        mType->ConnectSrc(4, mPeer.get(), 0, eLyrConnectionSystem);
        mTop->Add(0, "number", eDOUBLE1);
        mTop->Add(0, "text", eSTRING);
        mTop->Add(0, "choice", eENUM);
        mTop->Add(0, "blob", eBLOB);
        mTop->Add(0, "inner", mInner.get());
        mTop->Add(0, "other choice", eENUM);
        mTop->Add(0, "limit", eSTRING);
    }

    void Describe() {
        const int lBound = 4;
        const KString lLimit("limit");
        mTop->SetLabel(eNumber, "an old label");
        mTop->SetUserTag(eNumber, 17);
        mTop->SetUserData(eNumber, &sgUserData);
        mTop->SetMinMax(eNumber, KLyrPropertyInfo::eValueMin, &lBound, eINTEGER1);
        mTop->SetMinMax(eLimit, KLyrPropertyInfo::eValueMin, &lLimit, eSTRING);
        for (const char* lChoice : {"zero", "one", "two", "three"})
            mTop->AddEnumValue(eChoice, lChoice);
    }

    PageDump::Pages Pages() const {
        PageDump::Pages lPages;
        for (const OwnedPage* lPage : {&mInner, &mType, &mTop, &mPage, &mBelow, &mPeer, &mMade})
            if (*lPage)
                lPages.push_back(lPage->get());
        return lPages;
    }
    std::string Shows(Detail pDetail) const {
        return PageDump(Pages(), {pDetail != Detail::eSeen, pDetail == Detail::eRanked}).Text() + ImageOf(mRead);
    }
    // Every instance is listed by the page that it is an instance of, once, and nothing else is.
    testing::AssertionResult Holds() const {
        for (const KLyrPropertyPage* lPage : Pages()) {
            const KLyrPropertyPage* lParent = lPage->GetInstanceOf();
            int lListed = 0;
            for (int i = 0; lParent && i < lParent->GetInstances().GetCount(); ++i)
                lListed += lParent->GetInstances().GetAt(i) == lPage;
            if (lListed != (lParent ? 1 : 0))
                return testing::AssertionFailure() << lPage->GetName(0) << " is listed " << lListed << " times";
            for (int i = 0; i < lPage->GetInstances().GetCount(); ++i)
                if (lPage->GetInstances().GetAt(i)->GetInstanceOf() != lPage)
                    return testing::AssertionFailure() << lPage->GetName(0) << " lists a page that is no instance";
        }
        return testing::AssertionSuccess();
    }

    KLyrPropertyHandle Top(int pId = 0) const { return KLyrPropertyHandle(mTop.get(), pId); }
    KLyrPropertyHandle Here(int pId = 0) const { return KLyrPropertyHandle(mPage.get(), pId); }
    KLyrPropertyHandle Below(int pId = 0) const { return KLyrPropertyHandle(mBelow.get(), pId); }
    KLyrPropertyHandle Type() const { return KLyrPropertyHandle(mType.get(), 0); }
    KLyrPropertyHandle Peer() const { return KLyrPropertyHandle(mPeer.get(), 0); }

    std::string Make(KLyrPropertyPage* pPage) {
        mMade.reset(pPage);
        return Answer(pPage);
    }
    // Ids are compared by the dump.
    static std::string Added(int pId) { return pId >= 0 ? "added" : std::to_string(pId); }
};

}  // namespace lyrsdk
