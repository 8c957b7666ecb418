#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "lyrfilesdk/lyrkit/lyrkit.h"
#include "tests/reliability/failing_memory_pages.h"

namespace lyrsdk {
namespace {

using S = PageStage;

std::string ResultOf(KLyrPushResult pResult) {
    return pResult == KLyrPushResult::eNoMemory ? "no memory" : std::to_string(static_cast<int>(pResult));
}

// An own text and an own blob that equal what is inherited.
void MakeRedundant(S& p) {
    p.mPage->SetValueInherit(S::eText, eLyrOverride);
    p.mPage->SetValueInherit(S::eBlobId, eLyrOverride);
}

void MakeBelowHold(S& p) {
    const double lNumber = 7;
    p.mBelow->Set(S::eText, &p.mLong, eSTRING, false);
    p.mBelow->Set(S::eNumber, &lNumber, eDOUBLE1, false);
}

constexpr int kAdded = 9;

void MakeAdded(S& p) {
    MakeBelowHold(p);
    p.mBelow->Add(0, "added", eSTRING);
    p.mBelow->Add(0, "also added", eDOUBLE1);
    p.mBelow->ConnectSrc(kAdded, p.mPeer.get(), 0, eLyrConnectionData);
}

// A push of a page reports that it found no memory for an entry.
std::string PushedAdded(S& p) {
    const std::string lAnswer = ResultOf(lyrPushProperty(p.Below(kAdded)));
    for (const std::string& lMessage : p.mReports.Take())
        EXPECT_EQ(lMessage, "lParentEntry");
    return lAnswer;
}

// A description with a text as its limit that equals the inherited one.
void MakeAlikeDescription(S& p) {
    const KString lLimit("limit");
    p.mPage->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, S::eLimit, eLyrOverride);
    p.mPage->SetMinMax(S::eLimit, KLyrPropertyInfo::eValueMin, &lLimit, eSTRING);
}

std::string Foretold(const KLyrPropertyHandle& pProperty) {
    std::string lAnswer = "same";
    lyrVisitPushEffects(pProperty, [&](const KLyrPushEffect& pEffect) {
        if (pEffect.IsChange())
            lAnswer = "change";
    });
    return lAnswer;
}

// What is written when it is whole, else "refused", whether that was said or shows in the text.
template <typename Write>
std::string Written(Write pWrite) {
    std::ostringstream lStream;
    const bool lDone = pWrite(lStream);
    return lDone && lStream.str().find('?') == std::string::npos ? lStream.str() : "refused";
}

const Operation<S> kOperations[] = {
    {"FindsRedundantTexts", [](S& p) { return Answer(lyrRedundancyOf(p.Here(S::eText)).mValue); }, "false",
     Refused::eChangesNothing, MakeRedundant},
    {"FindsRedundantBlobs", [](S& p) { return Answer(lyrRedundancyOf(p.Here(S::eBlobId)).mValue); }, "false",
     Refused::eChangesNothing, MakeRedundant},
    {"DropsARedundantText", [](S& p) { return Answer(lyrDropRedundant(p.Here(S::eText))); }, "0",
     Refused::eChangesNothing, MakeRedundant},
    {"ForetellsAPush", [](S& p) { return Foretold(p.Here(S::eText)); }, "change", Refused::eChangesNothing,
     MakeRedundant},
    {"ForetellsAPushOfADescription", [](S& p) { return Foretold(p.Here(S::eLimit)); }, "change",
     Refused::eChangesNothing, MakeAlikeDescription},
    {"PushesOneText", [](S& p) { return ResultOf(lyrPushProperty(p.Below(S::eText))); }, "no memory",
     Refused::eChangesNothing, MakeBelowHold},
    {"PushesAnAddedProperty", PushedAdded, "no memory", Refused::eChangesNothing, MakeAdded},
};

class FailingMemoryKitWhy : public testing::TestWithParam<Operation<S>> {};
TEST_P(FailingMemoryKitWhy, DoesAllOrKeepsWhatWasStored) {
    ExpectDoneOrRefused(GetParam());
}
INSTANTIATE_TEST_SUITE_P(Inheritance, FailingMemoryKitWhy, testing::ValuesIn(kOperations), NameOfOperation());

// A second try, once there is memory, is a question like the first.
const Operation<S> kDumps[] = {
    {"DumpsAProperty",
     [](S& p) { return Written([&](std::ostream& pStream) { return lyrDump(pStream, p.Here(S::eText)); }); },
     "refused"},
    {"DumpsLimits",
     [](S& p) { return Written([&](std::ostream& pStream) { return lyrDump(pStream, p.Below(S::eLimit)); }); },
     "refused"},
    {"DumpsAMatrix",
     [](S& p) { return Written([&](std::ostream& pStream) { return lyrDump(pStream, p.Top(kAdded)); }); }, "refused",
     Refused::eChangesNothing, [](S& p) { p.mTop->Add(0, "matrix", eDOUBLE44); }},
    {"DumpsAFamily",
     [](S& p) { return Written([&](std::ostream& pStream) { return lyrDumpFamily(pStream, p.Below()); }); }, "refused"},
    {"DrawsAPage",
     [](S& p) { return Written([&](std::ostream& pStream) { return lyrDumpConnectionsAsDot(pStream, p.Here()); }); },
     "refused"},
    {"DrawsAFamily",
     [](S& p) {
         return Written([&](std::ostream& pStream) {
             const KLyrPropertyHandle lPages[] = {p.Below(), p.Peer(), p.Type()};
             return lyrDumpFamilyConnectionsAsDot(pStream, lPages, 3);
         });
     },
     "refused"},
};
INSTANTIATE_TEST_SUITE_P(Dumps, FailingMemoryKitWhy, testing::ValuesIn(kDumps), NameOfOperation());

}  // namespace
}  // namespace lyrsdk
