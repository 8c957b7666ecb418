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
void MakeRedundant(S& pStage) {
    pStage.mPage->SetValueInherit(S::eText, eLyrOverride);
    pStage.mPage->SetValueInherit(S::eBlobId, eLyrOverride);
}

void MakeBelowHold(S& pStage) {
    const double lNumber = 7;
    pStage.mBelow->Set(S::eText, &pStage.mLong, eSTRING, false);
    pStage.mBelow->Set(S::eNumber, &lNumber, eDOUBLE1, false);
}

constexpr int kAdded = 9;

void MakeAdded(S& pStage) {
    MakeBelowHold(pStage);
    pStage.mBelow->Add(0, "added", eSTRING);
    pStage.mBelow->Add(0, "also added", eDOUBLE1);
    pStage.mBelow->Add(0, "and this", eDOUBLE1);
    pStage.mBelow->ConnectSrc(kAdded, pStage.mPeer.get(), 0, eLyrConnectionData);
}

// A push of a page reports that it found no memory for an entry.
std::string PushedAdded(S& pStage) {
    std::string lAnswer = ResultOf(lyrPushProperty(pStage.Below(kAdded)));
    for (const std::string& lMessage : pStage.mReports.Take())
        EXPECT_EQ(lMessage, "lParentEntry");
    return lAnswer;
}

// A description with a text as its limit that equals the inherited one.
void MakeAlikeDescription(S& pStage) {
    const KString lLimit("limit");
    pStage.mPage->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, S::eLimit, eLyrOverride);
    pStage.mPage->SetMinMax(S::eLimit, KLyrPropertyInfo::eValueMin, &lLimit, eSTRING);
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
    {"FindsRedundantTexts", [](S& pStage) { return Answer(lyrRedundancyOf(pStage.Here(S::eText)).mValue); }, "false",
     Refused::eChangesNothing, MakeRedundant},
    {"FindsRedundantBlobs", [](S& pStage) { return Answer(lyrRedundancyOf(pStage.Here(S::eBlobId)).mValue); }, "false",
     Refused::eChangesNothing, MakeRedundant},
    {"DropsARedundantText", [](S& pStage) { return Answer(lyrDropRedundant(pStage.Here(S::eText))); }, "0",
     Refused::eChangesNothing, MakeRedundant},
    {"ForetellsAPush", [](S& pStage) { return Foretold(pStage.Here(S::eText)); }, "change", Refused::eChangesNothing,
     MakeRedundant},
    {"ForetellsAPushOfADescription", [](S& pStage) { return Foretold(pStage.Here(S::eLimit)); }, "change",
     Refused::eChangesNothing, MakeAlikeDescription},
    {"PushesOneText", [](S& pStage) { return ResultOf(lyrPushProperty(pStage.Below(S::eText))); }, "no memory",
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
     [](S& pStage) { return Written([&](std::ostream& pStream) { return lyrDump(pStream, pStage.Here(S::eText)); }); },
     "refused"},
    {"DumpsLimits",
     [](S& pStage) {
         return Written([&](std::ostream& pStream) { return lyrDump(pStream, pStage.Below(S::eLimit)); });
     },
     "refused"},
    {"DumpsAMatrix",
     [](S& pStage) { return Written([&](std::ostream& pStream) { return lyrDump(pStream, pStage.Top(kAdded)); }); },
     "refused", Refused::eChangesNothing, [](S& pStage) { pStage.mTop->Add(0, "matrix", eDOUBLE44); }},
    {"DumpsAFamily",
     [](S& pStage) { return Written([&](std::ostream& pStream) { return lyrDumpFamily(pStream, pStage.Below()); }); },
     "refused"},
    {"DrawsAPage",
     [](S& pStage) {
         return Written([&](std::ostream& pStream) { return lyrDumpConnectionsAsDot(pStream, pStage.Here()); });
     },
     "refused"},
    {"DrawsAFamily",
     [](S& pStage) {
         return Written([&](std::ostream& pStream) {
             const KLyrPropertyHandle lPages[] = {pStage.Below(), pStage.Peer(), pStage.Type()};
             return lyrDumpFamilyConnectionsAsDot(pStream, lPages, 3);
         });
     },
     "refused"},
};
INSTANTIATE_TEST_SUITE_P(Dumps, FailingMemoryKitWhy, testing::ValuesIn(kDumps), NameOfOperation());

}  // namespace
}  // namespace lyrsdk
