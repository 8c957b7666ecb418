#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "lyrfilesdk/lyrkit/lyrkit.h"
#include "tests/reliability/failing_memory_pages.h"

namespace lyrsdk {
namespace {

using S = PageStage;

std::string ResultOf(ELyrSetResult pResult) {
    const char* const kAnswers[] = {"refused", "written", "collapsed", "already so"};
    return kAnswers[pResult];
}

const std::string sgLonger = std::string(detail::TextArgument::kRoom, ' ') + kLongText;

const Operation<S> kTypedOperations[] = {
    {"SetsAText", [](S& p) { return ResultOf(lyrSet(p.Top(S::eText), sgLonger)); }, "refused"},
    {"SetsAShortText", [](S& p) { return ResultOf(lyrSet(p.Here(S::eText), kLongText)); }, "refused"},
    {"PinsAShortText", [](S& p) { return ResultOf(lyrSet(p.Below(S::eText), kLongText, eLyrSetPin)); }, "refused"},
    {"SetsABlob", [](S& p) { return ResultOf(lyrSet(p.Below(S::eBlobId), p.mLong)); }, "refused"},
    {"ComparesABlob", [](S& p) { return ResultOf(lyrSet(p.Below(S::eBlobId), p.mBytes)); }, "refused"},
    {"PinsANumber", [](S& p) { return ResultOf(lyrSet(p.Below(S::eNumber), 2.5, eLyrSetPin)); }, "refused"},
    {"GetsAText", [](S& p) { return Answer(lyrGet<KString>(p.Below(S::eText)).has_value()); }, "false"},
    {"GetsABlob", [](S& p) { return Answer(lyrGet<lyrBlob>(p.Below(S::eText)).has_value()); }, "false"},
    {"VisitsAText", [](S& p) { return Answer(lyrVisit(p.Below(S::eText), [](const auto&) {})); }, "false"},
};

std::string Added(const KLyrPropertyHandle& pAdded) {
    return pAdded.Valid() ? "added" : "default";
}

const Operation<S> kAddingOperations[] = {
    {"AddsANumber", [](S& p) { return Added(lyrAdd(p.Here(), kLongText, 1.5)); }, "default", Refused::eLeavesOutIds},
    {"AddsAText", [](S& p) { return Added(lyrAdd(p.Here(), "name", sgLonger)); }, "default", Refused::eLeavesOutIds},
    {"AddsByCode", [](S& p) { return Added(lyrAdd(p.Here(), "name", eDATETIME)); }, "default", Refused::eLeavesOutIds},
    {"Builds",
     [](S& p) {
         return Added(lyrBuild(p.Here(), "name", 5)
                          .Limits(0, 10)
                          .SoftLimits("1", "9")
                          .Label(kLongText)
                          .UserTag(1)
                          .UserData(&sgUserData)
                          .Flags(LyrPropertyFlags::eUSER));
     },
     "default", Refused::eLeavesOutIds},
    {"BuildsAnEnumeration",
     [](S& p) {
         return Added(lyrBuild(p.Here(), "name", eENUM).EnumTexts({kLongText, "b"}));
     },
     "default", Refused::eLeavesOutIds},
    {"BuildsAText", [](S& p) { return Added(lyrBuild(p.Here(), "name", eSTRING).Default(sgLonger).Min("min")); },
     "default", Refused::eLeavesOutIds},
    {"BuildsTyped", [](S& p) { return Added(lyrBuild(p.Here(), "name", p.Type()).Label(kLongText)); }, "default",
     Refused::eLeavesOutIds},
};

const Operation<S> kEnumOperations[] = {
    {"InsertsAnEnumText", [](S& p) { return Answer(lyrInsertEnumText(p.Below(S::eChoice), 0, kLongText)); }, "-1"},
    {"PinsAnEnumText", [](S& p) { return ResultOf(lyrSetEnumText(p.Below(S::eChoice), "zero", eLyrSetPin)); },
     "refused"},
};

const std::string sgPath = std::string(300, 'p') + "/part";

const Operation<S> kLookingOperations[] = {
    {"BindsAPath", [](S& p) { return Answer(KLyrBoundProperty(p.Here(), sgPath.c_str()).IsBound()); }, "false",
     Refused::eChangesNothing,
     [](S& p) { lyrAdd(lyrAdd(p.Top(), sgPath.substr(0, 300).c_str(), eDOUBLE1), "part", 1); }},
    {"WalksSourcesThroughAFilter", [](S& p) { return Answer(!lyrSources(p.Here(S::eNumber), &p.mFilter).IsEmpty()); },
     "false"},
    {"WalksDestinationsThroughAFilter",
     [](S& p) {
         int lCount = 0;
         for ([[maybe_unused]] const KLyrPropertyHandle& lPeer : lyrDestinations(p.Peer(), &p.mFilter))
             ++lCount;
         return Answer(lCount);
     },
     "0"},
};

std::string Made(S& p, KLyrOwnedPage pMade) {
    p.mMade.reset(pMade.Release().GetPage());
    return p.mMade ? "made" : "nothing";
}

const Operation<S> kPageOperations[] = {
    {"MakesAnOwnedPage", [](S& p) { return Made(p, KLyrOwnedPage::Create()); }, "nothing"},
    {"MakesAnOwnedInstance", [](S& p) { return Made(p, KLyrOwnedPage::Create(p.Here())); }, "nothing"},
    {"MakesAnOwnedPageOfAType", [](S& p) { return Made(p, KLyrOwnedPage::Create(kLongText, eSTRING)); }, "nothing"},
    {"MakesAnOwnedPageTypedByAPage", [](S& p) { return Made(p, KLyrOwnedPage::Create("made", p.Type())); }, "nothing"},
    {"OpensALookupBracket", [](S& p) { return Answer(KLyrLookupBracket(p.Here()).Holds()); }, "false"},
};

class FailingMemoryKit : public testing::TestWithParam<Operation<S>> {};
TEST_P(FailingMemoryKit, DoesAllOrKeepsWhatWasStored) {
    ExpectDoneOrRefused(GetParam());
}
INSTANTIATE_TEST_SUITE_P(Looking, FailingMemoryKit, testing::ValuesIn(kLookingOperations), NameOfOperation());
INSTANTIATE_TEST_SUITE_P(Pages, FailingMemoryKit, testing::ValuesIn(kPageOperations), NameOfOperation());
INSTANTIATE_TEST_SUITE_P(Enum, FailingMemoryKit, testing::ValuesIn(kEnumOperations), NameOfOperation());
INSTANTIATE_TEST_SUITE_P(Adding, FailingMemoryKit, testing::ValuesIn(kAddingOperations), NameOfOperation());
INSTANTIATE_TEST_SUITE_P(Typed, FailingMemoryKit, testing::ValuesIn(kTypedOperations), NameOfOperation());

// A page that its instances find no memory for lives on behind them, as it does after the handle's Destroy.
TEST(FailingMemoryOwnedPages, GoAndLoseNothingThatInstancesShow) {
    using Owner = KLyrOwnedPage;
    void (*const kWays[])(Owner&) = {[](Owner& pOwner) { pOwner.Reset(); }, [](Owner& pOwner) { pOwner = Owner(); },
                                     [](Owner& pOwner) { const Owner lGone(std::move(pOwner)); }};
    for (const auto lWay : kWays)
        WithEveryAllocationFailing([lWay](FailurePoint pPoint) {
            S lStage;
            Owner lTop(KLyrPropertyHandle(lStage.mTop.release(), 0));
            KString lSeen;
            EXPECT_TRUE(lStage.Below(S::eText).Get(&lSeen, eSTRING));
            std::size_t lFailed = 0;
            {
                const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
                lWay(lTop);
                lFailed = lFail.Failed();
            }
            EXPECT_FALSE(lTop);
            EXPECT_TRUE(lStage.Below(S::eText).Get(&lStage.mRead, eSTRING));
            EXPECT_TRUE(lStage.mRead == lSeen);
            return lFailed;
        });
}

}  // namespace
}  // namespace lyrsdk
