#include <gtest/gtest.h>

#include <string>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/reliability/failing_memory_pages.h"

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using S = PageStage;
using Flag = LyrPropertyFlags;

constexpr auto kNothing = Refused::eChangesNothing;
constexpr auto kCopies = Refused::eMayLeaveAnOwnCopy;

std::string Made(S& pStage, const H& pRoot) {
    const bool lRoot = pRoot.Valid() ? pRoot.GetId() == 0 : pRoot == H();
    return pStage.Make(pRoot.GetPage()) + (lRoot ? "" : " but no root");
}
std::string Added(const H& pChild) {
    return pChild.Valid() ? "added" : pChild == H() ? "default" : "invalid";
}
std::string Nothing() {
    return "";
}
// A peer by its place.
std::string Peer(const S& pStage, const H& pPeer) {
    return pPeer == pStage.Peer() ? "peer" : pPeer == pStage.Here(S::eNumber) ? "number" : Added(pPeer);
}

const Operation<S> kMakingOperations[] = {
    {"CreatesAPageWithoutName", [](S& p) { return Made(p, H::Create()); }, "null"},
    {"CreatesAPage", [](S& p) { return Made(p, H::Create(kLongText, eDISTANCE)); }, "null"},
    {"CreatesAnInstance", [](S& p) { return Made(p, H::Create(p.Below(S::eText))); }, "null"},
    {"CreatesATypedPage", [](S& p) { return Made(p, H::Create(kLongText, p.Type())); }, "null"},
    {"CreatesAPageTypedByNothing", [](S& p) { return Made(p, H::Create(kLongText, H())); }, "null"},
    {"Adds", [](S& p) { return Added(p.Here(S::eText).Add(kLongText, eDATETIME)); }, "default"},
    {"AddsTyped", [](S& p) { return Added(p.Here(S::eInner).Add(kLongText, p.Type())); }, "default",
     Refused::eLeavesOutIds},
    {"AddsTypedByNothing", [](S& p) { return Added(p.Below().Add(kLongText, H())); }, "default"},
};

const Operation<S> kValueOperations[] = {
    {"SetsAText", [](S& p) { return Answer(p.Top(S::eText).Set(&p.mLong, eSTRING)); }, "false"},
    {"SetsAnInheritedText", [](S& p) { return Answer(p.Below(S::eText).Set(&p.mLong, eSTRING)); }, "false", kCopies},
    {"SetsAnInheritedTextWithoutCheck", [](S& p) { return Answer(p.Below(S::eText).Set(&p.mLong, eSTRING, false)); },
     "false", kCopies},
    {"SetsAnInheritedBlob", [](S& p) { return Answer(p.Here(S::eBlobId).Set(&p.mLong, eSTRING)); }, "false", kCopies},
    {"GetsAText", [](S& p) { return Answer(p.Here(S::eText).Get(&p.mRead, eSTRING)); }, "false"},
    {"GetsADefaultText", [](S& p) { return Answer(p.Here(S::eText).GetDefaultValue(&p.mRead, eSTRING)); }, "false"},
    {"OverridesAValue", [](S& p) { return Answer(p.Below(S::eBlobId).SetValueInheritType(eLyrOverride)); }, "false"},
    {"OverridesFlags", [](S& p) { return Answer(p.Below(S::eText).SetFlagsInheritType(Flag::eUSER, eLyrOverride)); },
     "false"},
    {"TurnsFlagsOn", [](S& p) { return Answer(p.Here(S::eText).ModifyFlags(Flag::eUI_PANEL, true)); }, "false"},
};

template <typename T>
bool IsSet(bool (H::*pSet)(const void*, ELyrType), H pProperty, const T& pValue, ELyrType pType) {
    return (pProperty.*pSet)(&pValue, pType);
}
constexpr double kBound = 8.5;

const Operation<S> kDescriptionOperations[] = {
    {"SetsALabel", [](S& p) { return Answer(p.Below(S::eNumber).SetLabel(kLongText)); }, "false"},
    {"SetsTheMinimum", [](S& p) { return Answer(IsSet(&H::SetMin, p.Here(S::eLimit), p.mLong, eSTRING)); }, "false"},
    {"SetsTheSoftMinimum", [](S& p) { return Answer(IsSet(&H::SetSoftMin, p.Here(S::eNumber), kBound, eDOUBLE1)); },
     "false"},
    {"SetsTheMaximum", [](S& p) { return Answer(IsSet(&H::SetMax, p.Here(S::eNumber), kBound, eDOUBLE1)); }, "false"},
    {"SetsTheSoftMaximum", [](S& p) { return Answer(IsSet(&H::SetSoftMax, p.Here(S::eNumber), kBound, eDOUBLE1)); },
     "false"},
    {"GetsTheMinimum", [](S& p) { return Answer(p.Here(S::eLimit).GetMin(&p.mRead, eSTRING)); }, "false"},
    {"GetsTheSoftMinimum", [](S& p) { return Answer(p.Here(S::eLimit).GetSoftMin(&p.mRead, eSTRING)); }, "false",
     kNothing, [](S& p) { IsSet(&H::SetSoftMin, p.Here(S::eLimit), p.mLong, eSTRING); }},
    {"GetsTheMaximum", [](S& p) { return Answer(p.Here(S::eLimit).GetMax(&p.mRead, eSTRING)); }, "false", kNothing,
     [](S& p) { IsSet(&H::SetMax, p.Here(S::eLimit), p.mLong, eSTRING); }},
    {"GetsTheSoftMaximum", [](S& p) { return Answer(p.Here(S::eLimit).GetSoftMax(&p.mRead, eSTRING)); }, "false",
     kNothing, [](S& p) { IsSet(&H::SetSoftMax, p.Here(S::eLimit), p.mLong, eSTRING); }},
    {"AddsAnEnumText", [](S& p) { return Answer(p.Here(S::eChoice).AddEnumValue(kLongText)); }, "-1"},
    {"InsertsAnEnumText",
     [](S& p) {
         p.Here(S::eChoice).InsertEnumValue(0, kLongText);
         return Nothing();
     },
     ""},
    {"SetsAnEnumText",
     [](S& p) {
         p.Here(S::eChoice).SetEnumValue(3, kLongText);
         return Nothing();
     },
     ""},
};

const Operation<S> kConnectionOperations[] = {
    {"ConnectsASource", [](S& p) { return Answer(p.Below(S::eText).ConnectSrc(p.Here(S::eText))); }, "false"},
    {"ConnectsADestination", [](S& p) { return Answer(p.Peer().ConnectDst(p.Below(S::eDeep))); }, "false"},
    {"CountsSources", [](S& p) { return Answer(p.Here(S::eNumber).GetSrcCount(&p.mFilter)); }, "0"},
    {"CountsDestinations", [](S& p) { return Answer(p.Peer().GetDstCount(&p.mFilter)); }, "0"},
    {"GivesASource", [](S& p) { return Peer(p, p.Here(S::eNumber).GetSrc(&p.mFilter, 0)); }, "default"},
    {"GivesADestination", [](S& p) { return Peer(p, p.Peer().GetDst(&p.mFilter, 0)); }, "default"},
    {"FindsAlongALongName",
     [](S& p) {
         const H lFound = p.Here().Find((std::string(1000, 'n') + "|deep").c_str(), "|", true);
         return Answer(lFound.Valid());
     },
     "false", kNothing, [](S& p) { p.Here().Add(std::string(1000, 'n').c_str(), eBOOL1).Add("deep", eBOOL1); }},
    {"FindsAlongALongNameByType",
     [](S& p) {
         const std::string lPath = std::string(1000, 'n') + "|deep";
         return Answer(p.Here().Find(lPath.c_str(), "|", KLyrPropertyHandle(p.mInner.get(), 0), true).Valid());
     },
     "false", kNothing,
     [](S& p) { p.Here().Add(std::string(1000, 'n').c_str(), eBOOL1).Add("deep", H(p.mInner.get(), 0)); }},
    {"OpensABracket",
     [](S& p) {
         p.Here().BeginCreateOrFindProperty();
         return Answer(p.Here().Find("TEXT", false).Valid());
     },
     "true"},
};

class FailingMemoryHandle : public testing::TestWithParam<Operation<S>> {};

TEST_P(FailingMemoryHandle, DoesAllOrKeepsWhatWasStored) {
    ExpectDoneOrRefused(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Making, FailingMemoryHandle, testing::ValuesIn(kMakingOperations), NameOfOperation());
INSTANTIATE_TEST_SUITE_P(Values, FailingMemoryHandle, testing::ValuesIn(kValueOperations), NameOfOperation());
INSTANTIATE_TEST_SUITE_P(Descriptions, FailingMemoryHandle, testing::ValuesIn(kDescriptionOperations),
                         NameOfOperation());
INSTANTIATE_TEST_SUITE_P(Connections, FailingMemoryHandle, testing::ValuesIn(kConnectionOperations), NameOfOperation());

// True says that the page has a parent, not that all was moved: what is left is reported and goes next time.
TEST(FailingMemoryHandlePush, AnswersTrueAndReportsWhatWasNotMoved) {
    S lStage;
    lStage.Below(S::eText).Set(&lStage.mLong, eSTRING);
    {
        const FailAllocations lFail(0, true);
        EXPECT_TRUE(lStage.Below().PushPropertiesToParentInstance());
    }
    EXPECT_EQ(lStage.mReports.Take(), std::vector<std::string>{"lParentEntry"});
    EXPECT_EQ(lStage.Below(S::eText).GetValueInheritType(false), eLyrOverride);
    EXPECT_TRUE(lStage.Below().PushPropertiesToParentInstance());
    EXPECT_EQ(lStage.Below(S::eText).GetValueInheritType(false), eLyrInherit);
    EXPECT_EQ(lStage.Here(S::eText).GetValueInheritType(false), eLyrOverride);
}

// The page is gone for the application at once; it may live on behind its instances.
TEST(FailingMemoryHandleDestroy, AnswersTrueAndLosesNothing) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        S lStage;
        H lTop(lStage.mTop.release(), 0);
        KString lSeen;
        EXPECT_TRUE(lStage.Below(S::eText).Get(&lSeen, eSTRING));
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            EXPECT_TRUE(lTop.Destroy());
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lTop, H());
        EXPECT_TRUE(lStage.Below(S::eText).Get(&lStage.mRead, eSTRING));
        EXPECT_TRUE(lStage.mRead == lSeen);
        EXPECT_EQ(lStage.Here().Find("inner|deep", "|", true), lStage.Here(S::eDeep));
        return lFailed;
    });
}

TEST(FailingMemoryHandleReading, NeedsNoMemory) {
    S lStage;
    const FailAllocations lFail(0, true);
    double lNumber = 0;
    EXPECT_TRUE(lStage.Below(S::eNumber).Get(&lNumber, eDOUBLE1));
    EXPECT_EQ(lNumber, 2.5);
    EXPECT_EQ(lStage.Below().Find("inner", true), lStage.Below(S::eInner));
    EXPECT_EQ(lStage.Below().Find("inner", KLyrPropertyHandle(lStage.mInner.get(), 0), true), lStage.Below(S::eInner));
    EXPECT_STREQ(lStage.Below(S::eNumber).GetLabel(), "an old label");
    EXPECT_EQ(lStage.Below(S::eInner).GetTypeInfo().GetPage(), lStage.mInner.get());
    EXPECT_EQ(lStage.Below().GetNextDescendent(lStage.Below(S::eInner)), lStage.Below(S::eDeep));
    EXPECT_EQ(lStage.Here(S::eNumber).GetSrc(nullptr, 0), lStage.Peer());
    EXPECT_EQ(lStage.Below().GetReferenceTo(), &sgPageData);
    EXPECT_EQ(lStage.Top().GetReferencedBy(0), &sgPageData);
    EXPECT_TRUE(lStage.Here(S::eNumber).DisconnectSrc(lStage.Peer()));
    EXPECT_TRUE(lStage.Here(S::eNumber).SetValueInheritType(eLyrInherit));
    H lText = lStage.Top(S::eText);
    EXPECT_TRUE(lText.Destroy());
    EXPECT_EQ(lFail.Failed(), 0u);
}

}  // namespace
}  // namespace lyrsdk
