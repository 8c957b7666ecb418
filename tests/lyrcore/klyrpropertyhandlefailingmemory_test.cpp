#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/connection_filters.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

// Every operation that needs memory, with each of its requests refused in turn.

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using F = LyrPropertyFlags;

const char kLongText[] = "a text that is long enough to need a block of its own wherever it goes";

//   top   0 "top"   1 "number" 2 "text" 3 "choice"     page is an instance of it
//   type  0 "type"  1 "inner" typed by inner  2 "group"  3 "leaf" below group
class Family {
public:
    Family() {
        AddChild(*mInner, "deep", eSTRING);
        mType->Add("inner", *mInner);
        AddChild(AddChild(*mType, "group", eUNIDENTIFIED), "leaf", eSTRING);
        mNumber = AddChild(*mTop, "number", eDOUBLE1);
        mText = AddChild(*mTop, "text", eSTRING);
        mChoice = AddChild(*mTop, "choice", eENUM);
        SetDouble(mNumber, 1.5);
        SetText(mText, "inherited text, which is not short either, so that it has a block");
        mChoice.AddEnumValue("zero");
        mChoice.AddEnumValue("one");
        mTop->ModifyFlags(F::eUSER, true);
    }
    ~Family() {
        if (mMade.Valid())
            mMade.Destroy();
    }
    Family(const Family&) = delete;
    Family& operator=(const Family&) = delete;

    // What is seen; an own copy of an inherited value may be left behind.
    std::string Stored() const {
        return DescribePage(*mTop, false) + DescribePage(*mPage, false) + DescribePage(*mType, false) +
               DescribePage(*mInner, false) + DescribePage(*mPeer, false);
    }

protected:
    H Here(const H& pProperty) const { return On(*mPage, pProperty); }

    OwnedRoot mInner{H::Create("inner type", eDOUBLE2)};
    OwnedRoot mType{H::Create("type", eSTRING)};
    OwnedRoot mPeer{H::Create("peer", eDOUBLE1)};
    OwnedRoot mTop{H::Create("top", eDOUBLE1)};
    OwnedRoot mPage{H::Create(*mTop)};
    H mNumber, mText, mChoice;
    H mMade;
};

class FailingMemory : public HandleTest {};

// --- pages and properties --------------------------------------------------------------------------------------------

class CreateUnnamed : public Family {
public:
    bool Operate() { return (mMade = H::Create()).Valid(); }
    void ExpectDone() { EXPECT_STREQ(mMade.GetName(), ""); }
};

class CreateNamed : public Family {
public:
    bool Operate() { return (mMade = H::Create(kLongText, eBLOB)).Valid(); }
    void ExpectDone() { EXPECT_STREQ(mMade.GetName(), kLongText); }
};

class CreateInstance : public Family {
public:
    bool Operate() { return (mMade = H::Create(*mTop)).Valid(); }
    void ExpectDone() {
        EXPECT_EQ(mTop->GetReferencedByCount(), 2);
        EXPECT_EQ(TextOf(On(mMade, mText)), TextOf(mText));
    }
};

class CreateTyped : public Family {
public:
    bool Operate() { return (mMade = H::Create(kLongText, *mType)).Valid(); }
    void ExpectDone() {
        EXPECT_TRUE(mMade.Find("inner|deep", "|", true).Valid());
        EXPECT_TRUE(mMade.Find("group|leaf", "|", true).Valid());
    }
};

TEST_F(FailingMemory, CreatesAPageOrNone) {
    ExpectEveryRefusalSurvived<CreateUnnamed>();
    ExpectEveryRefusalSurvived<CreateNamed>();
    ExpectEveryRefusalSurvived<CreateInstance>();
    ExpectEveryRefusalSurvived<CreateTyped>();
}

class AddPlain : public Family {
public:
    bool Operate() { return (mAdded = mPage->Add(kLongText, eSTRING)).Valid(); }
    void ExpectDone() {
        EXPECT_EQ(mPage->Find(kLongText, true), mAdded);
        EXPECT_EQ(mAdded.GetParent(), *mPage);
    }

protected:
    H mAdded;
};

class AddTyped : public AddPlain {
public:
    bool Operate() { return (mAdded = mPage->Add(kLongText, *mType)).Valid(); }
    void ExpectDone() {
        AddPlain::ExpectDone();
        EXPECT_TRUE(mAdded.Find("inner|deep", "|", true).Valid());
        EXPECT_TRUE(mAdded.Find("group|leaf", "|", true).Valid());
        EXPECT_EQ(mAdded.GetTypeInfo(), *mType);
    }
};

class AddTypedInsideABracket : public AddTyped {
public:
    AddTypedInsideABracket() { mPage->BeginCreateOrFindProperty(); }
    void ExpectDone() {
        AddTyped::ExpectDone();
        EXPECT_TRUE(mPage->Find("text", true).Valid());
        mPage->EndCreateOrFindProperty();
        AddTyped::ExpectDone();
    }
};

TEST_F(FailingMemory, AddsAPropertyWithAllItsChildrenOrNothing) {
    ExpectEveryRefusalSurvived<AddPlain>();
    ExpectEveryRefusalSurvived<AddTyped>();
    ExpectEveryRefusalSurvived<AddTypedInsideABracket>();
}

// --- values and states -----------------------------------------------------------------------------------------------

class SetOwnText : public Family {
public:
    bool Operate() { return mText.Set(&mValue, eSTRING, false); }
    void ExpectDone() { EXPECT_EQ(TextOf(mText), kLongText); }

protected:
    KString mValue{kLongText};
};

class SetInheritedText : public SetOwnText {
public:
    bool Operate() { return Here(mText).Set(&mValue, eSTRING, true); }
    void ExpectDone() {
        EXPECT_EQ(TextOf(Here(mText)), kLongText);
        EXPECT_NE(TextOf(mText), kLongText);
    }
};

class SetInheritedNumber : public Family {
public:
    bool Operate() { return Here(mNumber).Set(&mValue, eDOUBLE1, true); }
    void ExpectDone() { EXPECT_EQ(DoubleOf(Here(mNumber)), mValue); }

private:
    double mValue = 99;
};

class SetTextFromNumber : public Family {
public:
    bool Operate() { return Here(mText).Set(&mValue, eDOUBLE1, true); }
    void ExpectDone() { EXPECT_EQ(TextOf(Here(mText)), "0.3333333333333333"); }

private:
    double mValue = 1.0 / 3;
};

class GetTextOfNumber : public Family {
public:
    bool Operate() { return mNumber.Get(&mValue, eSTRING); }
    void ExpectDone() { EXPECT_STREQ(mValue.Buffer(), "1.5"); }

private:
    KString mValue;
};

TEST_F(FailingMemory, SetsAndGetsAValueOrLeavesItAsItWas) {
    ExpectEveryRefusalSurvived<SetOwnText>();
    ExpectEveryRefusalSurvived<SetInheritedText>();
    ExpectEveryRefusalSurvived<SetInheritedNumber>();
    ExpectEveryRefusalSurvived<SetTextFromNumber>();
    ExpectEveryRefusalSurvived<GetTextOfNumber>();
}

class OverrideValue : public Family {
public:
    bool Operate() { return Here(mText).SetValueInheritType(eLyrOverride); }
    void ExpectDone() {
        EXPECT_EQ(Here(mText).GetValueInheritType(false), eLyrOverride);
        EXPECT_EQ(TextOf(Here(mText)), TextOf(mText));
    }
};

class OverrideFlags : public Family {
public:
    bool Operate() { return mPage->SetFlagsInheritType(F::eUSER, eLyrOverride); }
    void ExpectDone() { EXPECT_EQ(mPage->GetFlagsInheritType(F::eUSER, false), eLyrOverride); }
};

class ModifyInheritedFlags : public Family {
public:
    bool Operate() { return mPage->ModifyFlags(F::eHIDDEN, true); }
    void ExpectDone() { EXPECT_EQ(mPage->GetFlags(), F::eUSER | F::eHIDDEN); }
};

TEST_F(FailingMemory, OverridesOrGoesOnInheriting) {
    ExpectEveryRefusalSurvived<OverrideValue>();
    ExpectEveryRefusalSurvived<OverrideFlags>();
    ExpectEveryRefusalSurvived<ModifyInheritedFlags>();
}

// Speaks of every property that the parent had no memory for; those stay here and go with the next push.
class Push : public Family {
public:
    Push() {
        SetDouble(Here(mNumber), 7);
        SetText(Here(mText), kLongText);
        SetText(AddChild(*mPage, "own", eSTRING), "own text");
        mPage->ModifyFlags(F::eHIDDEN, true);
        // A family in between, so that the parent holds nothing yet.
        mBelow.ModifyFlags(F::ePUBLISHED, true);
        SetDouble(On(mBelow, mNumber), 8);
        AddChild(mBelow, "below", eSTRING);
    }
    ~Push() { mBelow.Destroy(); }

    bool Operate() {
        EXPECT_TRUE(mBelow.PushPropertiesToParentInstance());
        for (const std::string& lMessage : mReports.Take())
            EXPECT_EQ(lMessage, "lParentEntry");
        return !OwnsAnything();
    }
    std::string Stored() const { return DescribePage(mBelow, false) + DescribePage(*mTop, false); }
    void ExpectDone() {
        EXPECT_FALSE(OwnsAnything());
        EXPECT_EQ(DoubleOf(Here(mNumber)), 8);
        EXPECT_TRUE(mPage->Find("below", true).Valid());
        EXPECT_EQ(mPage->GetFlags(), F::eUSER | F::eHIDDEN | F::ePUBLISHED);
    }

private:
    bool OwnsAnything() const {
        for (int lId = 0; lId < mBelow.GetPage()->GetPropertyEntryCount(); ++lId) {
            KLyrPropertyPage* lHolder = nullptr;
            mBelow.GetPage()->GetPropertyEntry(lId, &lHolder);
            if (lHolder == mBelow.GetPage())
                return true;
        }
        return false;
    }

    ReportRecorder mReports;
    H mBelow = H::Create(*mPage);
};

TEST_F(FailingMemory, PushesEachPropertyOrKeepsIt) {
    ExpectEveryRefusalSurvived<Push>();
}

// --- description -----------------------------------------------------------------------------------------------------

class SetLongLabel : public Family {
public:
    SetLongLabel() { mNumber.SetLabel("an old label"); }
    bool Operate() { return Here(mNumber).SetLabel(kLongText); }
    void ExpectDone() { EXPECT_STREQ(mNumber.GetLabel(), kLongText); }
};

class SetFirstBound : public Family {
public:
    bool Operate() { return mText.SetSoftMax(&mValue, eSTRING); }
    // A bound without a value yet is there, but empty.
    std::string Stored() const { return DescribePage(*mPage, false).substr(0, 20); }
    void ExpectDone() {
        KString lRead;
        EXPECT_TRUE(mText.GetSoftMax(&lRead, eSTRING));
        EXPECT_STREQ(lRead.Buffer(), kLongText);
    }

protected:
    KString mValue{kLongText};
};

class SetBoundAgain : public SetFirstBound {
public:
    SetBoundAgain() {
        const KString lOld("an old bound");
        mText.SetSoftMax(&lOld, eSTRING);
    }
    std::string Stored() const { return Family::Stored(); }
};

class AddFirstEnumValue : public Family {
public:
    AddFirstEnumValue() { mOther = AddChild(*mTop, "other", eENUM); }
    bool Operate() { return mOther.AddEnumValue(kLongText) == 0; }
    void ExpectDone() { EXPECT_STREQ(mOther.GetEnumValue(0), kLongText); }

protected:
    H mOther;
};

class AddEnumValueBeyondTheRoom : public Family {
public:
    AddEnumValueBeyondTheRoom() {
        mChoice.AddEnumValue("two");
        mChoice.AddEnumValue("three");
    }
    bool Operate() { return mChoice.AddEnumValue(kLongText) == 4; }
    void ExpectDone() {
        EXPECT_STREQ(mChoice.GetEnumValue(4), kLongText);
        EXPECT_STREQ(mChoice.GetEnumValue(0), "zero");
        EXPECT_EQ(mChoice.GetEnumCount(), 5);
    }
};

class InsertEnumValueInFront : public Family {
public:
    bool Operate() {
        mChoice.InsertEnumValue(0, kLongText);
        return mChoice.GetEnumCount() == 3;
    }
    void ExpectDone() {
        EXPECT_STREQ(mChoice.GetEnumValue(0), kLongText);
        EXPECT_STREQ(mChoice.GetEnumValue(1), "zero");
    }
};

class SetEnumValueToALongOne : public Family {
public:
    bool Operate() {
        mChoice.SetEnumValue(1, kLongText);
        return std::string(mChoice.GetEnumValue(1)) == kLongText;
    }
    void ExpectDone() { EXPECT_EQ(mChoice.GetEnumCount(), 2); }
};

TEST_F(FailingMemory, DescribesOrLeavesTheDescriptionAsItWas) {
    ExpectEveryRefusalSurvived<SetLongLabel>();
    ExpectEveryRefusalSurvived<SetFirstBound>();
    ExpectEveryRefusalSurvived<SetBoundAgain>();
    ExpectEveryRefusalSurvived<AddFirstEnumValue>();
    ExpectEveryRefusalSurvived<AddEnumValueBeyondTheRoom>();
    ExpectEveryRefusalSurvived<InsertEnumValueInFront>();
    ExpectEveryRefusalSurvived<SetEnumValueToALongOne>();
}

TEST_F(FailingMemory, RemovesEnumValuesWithoutMemory) {
    OwnedRoot lPage(H::Create("root", eENUM));
    {
        const FailAllocations lFail(0, true);
        lPage->RemoveEnumValue(0);
    }
    lPage->AddEnumValue("zero");
    lPage->AddEnumValue("one");
    const FailAllocations lFail(0, true);
    lPage->RemoveEnumValue(0);
    EXPECT_EQ(lPage->GetEnumCount(), 1);
    EXPECT_STREQ(lPage->GetEnumValue(0), "one");
}

// --- lookup ----------------------------------------------------------------------------------------------------------

class FindAlongALongPath : public Family {
public:
    FindAlongALongPath() {
        H lMiddle = mPage->Add(mName.c_str(), H());
        mDeep = lMiddle.Add("deep", H());
    }
    bool Operate() { return (mFound = mPage->Find((mName + "|deep").c_str(), "|", true)).Valid(); }
    void ExpectDone() { EXPECT_EQ(mFound, mDeep); }

private:
    const std::string mName = std::string(1000, 'n');
    H mDeep, mFound;
};

// Looking up needs no memory; the bracket is open or not, and the answers are the same.
class OpenABracket : public Family {
public:
    bool Operate() {
        mPage->BeginCreateOrFindProperty();
        return !mPage->Find("TEXT", false).Valid();
    }
    std::string Stored() const {
        EXPECT_TRUE(mPage->Find("text", true).Valid());
        EXPECT_TRUE(mPage->Find("choice", true).Valid());
        EXPECT_TRUE(mPage->Find("TEXT", false).Valid()) << "not open";
        return Family::Stored();
    }
    void ExpectDone() {
        EXPECT_EQ(mPage->Find("text", true), Here(mText));
        EXPECT_EQ(mPage->Find("choice", true), Here(mChoice));
        mPage->EndCreateOrFindProperty();
        EXPECT_TRUE(mPage->Find("TEXT", false).Valid());
    }
};

TEST_F(FailingMemory, FindsOrMisses) {
    ExpectEveryRefusalSurvived<FindAlongALongPath>();
    ExpectEveryRefusalSurvived<OpenABracket>();
}

TEST_F(FailingMemory, LooksUpAndWalksWithoutMemory) {
    OwnedRoot lTop(H::Create("top", eDOUBLE1));
    const H lA = AddChild(*lTop, "a", eDOUBLE1);
    const H lB = AddChild(lA, "b", eDOUBLE1);
    OwnedRoot lPage(H::Create(*lTop));
    const FailAllocations lFail(0, true);
    EXPECT_EQ(lPage->Find("a|b", "|", true), On(*lPage, lB));
    EXPECT_EQ(lPage->Find("A|B", "|", false), On(*lPage, lB));
    EXPECT_FALSE(lPage->Find("never interned", true).Valid());
    EXPECT_EQ(lPage->GetFirstDescendent(), On(*lPage, lA));
    EXPECT_EQ(lPage->GetNextDescendent(lA), On(*lPage, lB));
    EXPECT_EQ(DoubleOf(On(*lPage, lB)), 0);
    EXPECT_EQ(lPage->GetSrcCount(nullptr), 0);
    EXPECT_EQ(lFail.Failed(), 0u) << "nothing of this asks for memory";
}

// --- connections -----------------------------------------------------------------------------------------------------

class ConnectTwoInstances : public Family {
public:
    bool Operate() { return Here(mNumber).ConnectSrc(On(*mOther, mText), eLyrConnectionUser); }
    std::string Stored() const { return DescribePage(*mPage) + DescribePage(*mOther); }
    void ExpectDone() {
        EXPECT_EQ(Here(mNumber).GetSrc(nullptr, 0), On(*mOther, mText));
        EXPECT_EQ(On(*mOther, mText).GetDst(nullptr, 0), Here(mNumber));
    }

private:
    OwnedRoot mOther{H::Create(*mTop)};
};

// Crosses the sizes at which a list of connections grows and gets an index.
template <int pCount>
class ConnectOneMore : public Family {
public:
    ConnectOneMore() {
        for (int i = 0; i <= pCount; ++i)
            mSources.push_back(AddChild(*mTop, "source", eDOUBLE1));
        for (int i = 0; i < pCount; ++i)
            mNumber.ConnectSrc(mSources[static_cast<std::size_t>(i)], eLyrConnectionUser);
    }
    bool Operate() { return mNumber.ConnectSrc(mSources.back(), eLyrConnectionUser); }
    void ExpectDone() {
        EXPECT_EQ(mNumber.GetSrcCount(nullptr), pCount + 1);
        for (int i = 0; i <= pCount; ++i)
            EXPECT_EQ(mNumber.GetSrc(nullptr, i), mSources[static_cast<std::size_t>(i)]);
    }

private:
    std::vector<H> mSources;
};

class CountThroughAFilter : public Family {
public:
    CountThroughAFilter() {
        mNumber.ConnectSrc(*mPeer, eLyrConnectionUser);
        mNumber.ConnectSrc(mText, eLyrConnectionSystem);
        mNumber.ConnectDst(mChoice, eLyrConnectionUser);
    }
    bool Operate() { return mNumber.GetSrcCount(&mFilter) == 1; }
    void ExpectDone() {
        EXPECT_EQ(mNumber.GetSrc(&mFilter, 0), *mPeer);
        EXPECT_EQ(mNumber.GetDst(&mFilter, 0), mChoice);
        EXPECT_EQ(mNumber.GetSrcCount(&mFilter), 1);
    }

protected:
    TypeFilter mFilter{eLyrConnectionUser};
};

// The filter's list may lose track for want of memory; it is complete again when it is next asked.
class ConnectUnderAFilter : public CountThroughAFilter {
public:
    ConnectUnderAFilter() {
        EXPECT_EQ(mNumber.GetSrcCount(&mFilter), 1);
        for (int i = 0; i < 3; ++i)
            mNumber.ConnectSrc(AddChild(*mTop, "source", eDOUBLE1), eLyrConnectionUser);
        mLast = AddChild(*mTop, "last", eDOUBLE1);
    }
    bool Operate() { return mNumber.ConnectSrc(mLast, eLyrConnectionUser); }
    void ExpectDone() {
        EXPECT_EQ(mNumber.GetSrcCount(&mFilter), 5);
        EXPECT_EQ(mNumber.GetSrc(&mFilter, 4), mLast);
        EXPECT_EQ(mNumber.GetDst(&mFilter, 0), mChoice);
    }

private:
    H mLast;
};

TEST_F(FailingMemory, ConnectsBothEndsOrNone) {
    ExpectEveryRefusalSurvived<ConnectTwoInstances>();
    ExpectEveryRefusalSurvived<ConnectOneMore<4>>();
    ExpectEveryRefusalSurvived<ConnectOneMore<32>>();
    ExpectEveryRefusalSurvived<CountThroughAFilter>();
    ExpectEveryRefusalSurvived<ConnectUnderAFilter>();
}

// --- destroying ------------------------------------------------------------------------------------------------------

// A page goes whatever happens. Its instances read the same, with copies of their own or with what it left behind.
class DestroyAParent : public Family {
public:
    DestroyAParent() {
        SetDouble(Here(mNumber), 7);
        mChoice.RemoveEnumValue(1);
        mChoice.RemoveEnumValue(0);
        SetText(On(*mSecond, mText), "its own");
        mSecond->ModifyFlags(F::ePSTATIC, true);
        mSeen = DescribePage(*mPage, false);
        mSeenSecond = DescribePage(*mSecond, false);
    }
    bool Operate() { return mTop->Destroy(); }
    void ExpectDone() {
        EXPECT_EQ(*mTop, H());
        EXPECT_EQ(DescribePage(*mPage, false), mSeen);
        EXPECT_EQ(DescribePage(*mSecond, false), mSeenSecond);
        EXPECT_TRUE(SetText(Here(mText), kLongText));
        EXPECT_EQ(TextOf(Here(mText)), kLongText);
        EXPECT_EQ(TextOf(On(*mSecond, mText)), "its own");
        EXPECT_TRUE(mPage->Add("more", *mType).Valid());
        EXPECT_FALSE(mSecond->Find("more", true).Valid());
    }

private:
    OwnedRoot mSecond{H::Create(*mTop)};
    std::string mSeen, mSeenSecond;
};

TEST_F(FailingMemory, DestroysAPageWithoutLossToItsInstances) {
    ExpectEveryRefusalSurvived<DestroyAParent>();
}

// The same from the middle of a chain, with a second attempt to destroy on the way up.
class DestroyAChain : public Family {
public:
    DestroyAChain() {
        SetDouble(Here(mNumber), 7);
        mChoice.RemoveEnumValue(1);
        mChoice.RemoveEnumValue(0);
        SetText(On(*mBottom, mText), "its own");
        mSeen = DescribePage(*mBottom, false);
    }
    bool Operate() { return mPage->Destroy() && mTop->Destroy(); }
    void ExpectDone() {
        EXPECT_EQ(DescribePage(*mBottom, false), mSeen);
        EXPECT_TRUE(SetDouble(On(*mBottom, mNumber), 9));
        EXPECT_EQ(DoubleOf(On(*mBottom, mNumber)), 9);
    }

private:
    OwnedRoot mBottom{H::Create(*mPage)};
    std::string mSeen;
};

TEST_F(FailingMemory, DestroysAChainFromTheMiddleWithoutLossToTheBottom) {
    ExpectEveryRefusalSurvived<DestroyAChain>();
}

}  // namespace
}  // namespace lyrsdk
