#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/reliability/failing_memory_pages.h"

namespace lyrsdk {
namespace {

using S = PageStage;
using Info = KLyrPropertyInfo;
using Flag = LyrPropertyFlags;

void OpenABracket(S& pStage) {
    pStage.mPage->BeginCreateOrFindProperty();
}
// The next entry needs a new block of the page's records.
void FillTheEntries(S& pStage) {
    for (int i = 0; i < 22; ++i)
        pStage.mTop->Add(S::eInner, "filler", eBOOL1);
}

constexpr auto kNothing = Refused::eChangesNothing;

// --- pages and properties --------------------------------------------------------------------------------------------

const Operation<S> kMakingOperations[] = {
    {"CreatesAPage", [](S& p) { return p.Make(KLyrPropertyPage::Create(kLongText, eBLOB)); }, "null"},
    {"CreatesAPageWithoutName", [](S& p) { return p.Make(KLyrPropertyPage::Create("", eUNIDENTIFIED)); }, "null"},
    {"CreatesATypedPage", [](S& p) { return p.Make(KLyrPropertyPage::Create(kLongText, p.mType.get())); }, "null"},
    {"CreatesAnInstance", [](S& p) { return p.Make(KLyrPropertyPage::Create(p.mPage.get())); }, "null"},
    {"CreatesAnInstanceOfNothing", [](S& p) { return p.Make(KLyrPropertyPage::Create(nullptr)); }, "null"},
    {"AddsAProperty", [](S& p) { return S::Added(p.mPage->Add(S::eText, kLongText, eSTRING)); }, "-1"},
    {"AddsAPropertyToAFullBlock", [](S& p) { return S::Added(p.mTop->Add(0, "number", eDOUBLE44)); }, "-1", kNothing,
     FillTheEntries},
    {"AddsAPropertyInABracket", [](S& p) { return S::Added(p.mPage->Add(0, kLongText, eDISTANCE)); }, "-1", kNothing,
     OpenABracket},
    {"AddsATypedProperty", [](S& p) { return S::Added(p.mPage->Add(S::eText, kLongText, p.mType.get())); }, "-1",
     Refused::eLeavesOutIds},
    {"AddsATypedPropertyInABracket", [](S& p) { return S::Added(p.mPage->Add(0, kLongText, p.mType.get())); }, "-1",
     Refused::eLeavesOutIds, OpenABracket},
    {"AddsAPropertyTypedByNothing",
     [](S& p) { return S::Added(p.mPage->Add(0, kLongText, static_cast<KLyrPropertyPage*>(nullptr))); }, "-1"},
};

// --- items of the caller's -------------------------------------------------------------------------------------------

// The items are made with memory and stay the caller's when the addition fails.
std::string AddItems(S& pStage, bool pRecursive) {
    static const auto sMake = [](S& p) {
        struct Items {
            Counted<Info> mInfo;
            Counted<KLyrPropertyValue> mValue;
            Counted<KLyrPropertyConnect> mConnect;
        };
        return Items{Counted<Info>(Info::Create("given", p.mType.get())),
                     Counted<KLyrPropertyValue>(KLyrPropertyValue::Create(&p.mLong, eSTRING)),
                     Counted<KLyrPropertyConnect>(KLyrPropertyConnect::Create(p.mPage.get(), 99))};
    };
    const auto lItems = sMake(pStage);
    if (!lItems.mInfo || !lItems.mValue || !lItems.mConnect)
        return "-1";
    return S::Added(pStage.mPage->Add(0, lItems.mInfo.Get(), lItems.mValue.Get(), lItems.mConnect.Get(), pRecursive));
}

const Operation<S> kItemOperations[] = {
    {"AddsGivenItems", [](S& p) { return AddItems(p, false); }, "-1"},
    {"AddsGivenItemsWithChildren", [](S& p) { return AddItems(p, true); }, "-1", Refused::eLeavesOutIds},
    {"AddsNoItems", [](S& p) { return S::Added(p.mPage->Add(S::eText, nullptr, nullptr, nullptr, true)); }, "-1"},
    {"AddsNoItemsInABracket", [](S& p) { return S::Added(p.mPage->Add(0, nullptr, nullptr, nullptr, false)); }, "-1",
     kNothing, OpenABracket},
    {"OverridesAnEntry", [](S& p) { return Answer(p.mPage->ChangePropertyEntryState(S::eText, eLyrOverride)); },
     "null"},
    {"OverridesADescription",
     [](S& p) { return Answer(p.mBelow->ChangePropertyItemState<Info>(nullptr, S::eText, eLyrOverride)); }, "null"},
    {"OverridesATypedDescription",
     [](S& p) { return Answer(p.mBelow->ChangePropertyItemState<Info>(nullptr, S::eInner, eLyrOverride)); }, "null"},
    {"OverridesAText",
     [](S& p) { return Answer(p.mBelow->ChangePropertyItemState<KLyrPropertyValue>(nullptr, S::eText, eLyrOverride)); },
     "null"},
    {"OverridesABlobWhereFlagsAreHeld",
     [](S& p) {
         return Answer(p.mPage->ChangePropertyItemState<KLyrPropertyValue>(nullptr, S::eBlobId, eLyrOverride));
     },
     "null", kNothing, [](S& p) { p.mPage->ModifyFlags(S::eBlobId, Flag::eUSER, true, false); }},
    {"OverridesFlags",
     [](S& p) { return Answer(p.mBelow->ChangePropertyItemState<KLyrPropertyFlags>(nullptr, S::eText, eLyrOverride)); },
     "null"},
};

// --- values, flags and their states ----------------------------------------------------------------------------------

template <typename T>
std::string Set(KLyrPropertyPage& pPage, int pId, const T& pValue, ELyrType pType, bool pCheck) {
    return Answer(pPage.Set(pId, &pValue, pType, pCheck));
}

constexpr auto kCopies = Refused::eMayLeaveAnOwnCopy;

const Operation<S> kValueOperations[] = {
    {"SetsAnOwnText", [](S& p) { return Set(*p.mTop, S::eText, p.mLong, eSTRING, false); }, "false"},
    {"SetsAnOwnTextWithCheck", [](S& p) { return Set(*p.mTop, S::eText, p.mLong, eSTRING, true); }, "false"},
    {"SetsAnInheritedText", [](S& p) { return Set(*p.mPage, S::eText, p.mLong, eSTRING, false); }, "false", kCopies},
    {"SetsAnInheritedTextWithCheck", [](S& p) { return Set(*p.mBelow, S::eText, p.mLong, eSTRING, true); }, "false",
     kCopies},
    {"SetsAnInheritedNumber", [](S& p) { return Set(*p.mBelow, S::eNumber, 99.5, eDOUBLE1, true); }, "false"},
    {"SetsAnInheritedTextToANumber", [](S& p) { return Set(*p.mPage, S::eText, 1.0 / 3, eDOUBLE1, true); }, "false",
     kCopies},
    {"SetsAnOwnBlob",
     [](S& p) {
         const KLyrSystemUnit lBytes[4] = {KLyrSystemUnit::mm, KLyrSystemUnit::m, KLyrSystemUnit::km,
                                           KLyrSystemUnit::m};
         lyrDouble44 lMatrix;
         static_assert(sizeof(lMatrix) >= sizeof(lBytes));
         std::memcpy(static_cast<void*>(&lMatrix), lBytes, sizeof(lBytes));
         return Set(*p.mTop, S::eBlobId, lMatrix, eDOUBLE44, false);
     },
     "false"},
    {"SetsAnInheritedBlob", [](S& p) { return Set(*p.mPage, S::eBlobId, p.mLong, eSTRING, false); }, "false", kCopies},
    {"GetsANumberAsText", [](S& p) { return Answer(p.mBelow->Get(S::eNumber, &p.mRead, eSTRING)); }, "false"},
    {"GetsAText", [](S& p) { return Answer(p.mBelow->Get(S::eText, &p.mRead, eSTRING)); }, "false"},
    {"GetsADefaultText", [](S& p) { return Answer(p.mBelow->GetDefaultValue(S::eText, &p.mRead, eSTRING)); }, "false"},
    {"GetsABlob",
     [](S& p) {
         lyrBlob lBlob;
         return Answer(p.mBelow->Get(S::eBlobId, &lBlob, eBLOB)) + ImageOf(lBlob);
     },
     "false"},
    {"OverridesAValue", [](S& p) { return Answer(p.mPage->SetValueInherit(S::eText, eLyrOverride)); }, "false"},
    {"OverridesFlagsThatAreInherited",
     [](S& p) { return Answer(p.mPage->SetFlagsInheritType(eLyrOverride, Flag::eUSER, S::eText)); }, "false"},
    {"TurnsInheritedFlagsOn", [](S& p) { return Answer(p.mPage->ModifyFlags(S::eText, Flag::eHIDDEN, true, false)); },
     "false"},
    {"TurnsInheritedFlagsOnWithCheck",
     [](S& p) { return Answer(p.mBelow->ModifyFlags(S::eText, Flag::eHIDDEN, true, true)); }, "false"},
};

// --- descriptions ----------------------------------------------------------------------------------------------------

const Operation<S> kDescriptionOperations[] = {
    {"SetsALabel", [](S& p) { return Answer(p.mPage->SetLabel(S::eNumber, kLongText)); }, "false"},
    {"SetsTheFirstLabel", [](S& p) { return Answer(p.mPage->SetLabel(S::eText, kLongText)); }, "false"},
    {"SetsANumberAsBound",
     [](S& p) {
         const int lMax = 99;
         return Answer(p.mPage->SetMinMax(S::eNumber, Info::eValueMax, &lMax, eINTEGER1));
     },
     "false"},
    {"SetsATextAsBoundAgain",
     [](S& p) { return Answer(p.mPage->SetMinMax(S::eLimit, Info::eValueMin, &p.mLong, eSTRING)); }, "false"},
    {"GetsABoundAsText", [](S& p) { return Answer(p.mPage->GetMinMax(S::eLimit, Info::eValueMin, &p.mRead, eSTRING)); },
     "false"},
    {"AddsAnEnumText", [](S& p) { return Answer(p.mPage->AddEnumValue(S::eChoice, kLongText)); }, "-1"},
    {"AddsTheFirstEnumText", [](S& p) { return Answer(p.mPage->AddEnumValue(S::eOtherChoice, kLongText)); }, "-1"},
    {"InsertsAnEnumText",
     [](S& p) {
         p.mPage->InsertEnumValue(S::eChoice, 1, kLongText);
         return std::string();
     },
     ""},
    {"InsertsTheFirstEnumText",
     [](S& p) {
         p.mPage->InsertEnumValue(S::eOtherChoice, 0, kLongText);
         return std::string();
     },
     ""},
    {"SetsAnEnumText",
     [](S& p) {
         p.mPage->SetEnumValue(S::eChoice, 1, kLongText);
         return std::string();
     },
     ""},
};

// --- lookup and connections ------------------------------------------------------------------------------------------

std::string LongPath() {
    return std::string(1000, 'n') + "|deep";
}

// The one without a name must not be taken for the one whose name found no memory.
void AddLongNames(S& p) {
    p.mPage->Add(p.mPage->Add(0, "", eBOOL1), "deep", eBOOL1);
    p.mPage->Add(p.mPage->Add(0, LongPath().substr(0, 1000).c_str(), eBOOL1), "deep", eBOOL1);
}

// Opening a bracket shows in lookups, which mind the case from then on.
std::string OpenAndLookUp(KLyrPropertyPage& pPage) {
    pPage.BeginCreateOrFindProperty();
    return Answer(pPage.FastFind(0, "TEXT", nullptr, false)) + Answer(pPage.FastFind(0, "text", nullptr, true));
}

// Fills the first room of the lists of the page's number and of the peer.
void ConnectOthers(S& p) {
    for (int lId : {S::eText, S::eChoice, S::eBlobId}) {
        p.mPage->ConnectSrc(S::eNumber, p.mTop.get(), lId, eLyrConnectionUser);
        p.mPeer->ConnectDst(0, p.mTop.get(), lId, eLyrConnectionSystem);
    }
    EXPECT_EQ(p.mPage->GetSrcCount(S::eNumber, &p.mFilter), 4);
}

const Operation<S> kConnectionOperations[] = {
    {"FindsAlongALongName", [](S& p) { return S::Added(p.mPage->Find(0, LongPath().c_str(), nullptr, true, "|")); },
     "-1", kNothing, AddLongNames},
    {"OpensABracket", [](S& p) { return OpenAndLookUp(*p.mPage); }, "22"},
    {"ConnectsInheritedProperties",
     [](S& p) { return Answer(p.mBelow->ConnectSrc(S::eText, p.mPage.get(), S::eChoice, eLyrConnectionUser)); },
     "false"},
    {"ConnectsADestination",
     [](S& p) { return Answer(p.mPage->ConnectDst(S::eText, p.mPeer.get(), 0, eLyrConnectionDefault)); }, "false"},
    {"ConnectsBeyondTheRoomOfTheLists",
     [](S& p) { return Answer(p.mPage->ConnectSrc(S::eNumber, p.mTop.get(), 0, eLyrConnectionUser)); }, "false",
     kNothing, ConnectOthers},
    {"CountsSourcesThroughAFilter", [](S& p) { return Answer(p.mPage->GetSrcCount(S::eNumber, &p.mFilter)); }, "0"},
    {"CountsDestinationsThroughAFilter", [](S& p) { return Answer(p.mPeer->GetDstCount(0, &p.mFilter)); }, "0"},
    {"GivesASourceThroughAFilter",
     [](S& p) { return Answer(p.mPage->GetSrc(S::eNumber, 0, &p.mFilter, nullptr, nullptr)); }, "false"},
    {"GivesADestinationThroughAFilter",
     [](S& p) { return Answer(p.mPeer->GetDst(0, 0, &p.mFilter, nullptr, nullptr)); }, "false"},
};

class FailingMemoryPage : public testing::TestWithParam<Operation<S>> {};

TEST_P(FailingMemoryPage, DoesAllOrKeepsWhatWasStored) {
    ExpectDoneOrRefused(GetParam());
}

TEST_P(FailingMemoryPage, KeepsMemoryBoundedWhenRefusedAgainAndAgain) {
    ExpectBoundedWhenRefused(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Making, FailingMemoryPage, testing::ValuesIn(kMakingOperations), NameOfOperation());
INSTANTIATE_TEST_SUITE_P(Items, FailingMemoryPage, testing::ValuesIn(kItemOperations), NameOfOperation());
INSTANTIATE_TEST_SUITE_P(Values, FailingMemoryPage, testing::ValuesIn(kValueOperations), NameOfOperation());
INSTANTIATE_TEST_SUITE_P(Descriptions, FailingMemoryPage, testing::ValuesIn(kDescriptionOperations), NameOfOperation());
INSTANTIATE_TEST_SUITE_P(Connections, FailingMemoryPage, testing::ValuesIn(kConnectionOperations), NameOfOperation());

// The connection item was made for the property that was to be added, and is connected already.
TEST(FailingMemoryItems, KeepTheirConnectionsWhenTheyCouldNotBeAdded) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        S lStage;
        const Counted<Info> lInfo(Info::Create("given", lStage.mType.get()));
        const int lId = lStage.mPage->GetIdGenerator()->PeekNextId();
        const Counted<KLyrPropertyConnect> lConnect(KLyrPropertyConnect::Create(lStage.mPage.get(), lId));
        KLyrPropertyConnect* lPeer = lStage.mPeer->GetPropertyItem<KLyrPropertyConnect>(nullptr, 0);
        EXPECT_TRUE(lConnect->ConnectSrc(lPeer, eLyrConnectionUser));
        int lAdded = -1;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lAdded = lStage.mPage->Add(0, lInfo.Get(), nullptr, lConnect.Get(), true);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lAdded, lFailed > 0 ? -1 : lId);
        EXPECT_EQ(lConnect->GetPage(), lStage.mPage.get());
        EXPECT_TRUE(lConnect->IsConnectedSrc(lPeer));
        return lFailed;
    });
}

// A bound whose value could not be converted is there with its default value, whatever the reason.
TEST(FailingMemoryBound, IsNotThereOrEmptyWhenItsFirstTextFoundNoMemory) {
    int lEmpty = 0;
    WithEveryAllocationFailing([&lEmpty](FailurePoint pPoint) {
        S lStage;
        const std::string lBefore = lStage.Shows(Detail::eEverything);
        const auto lSet = [&lStage] {
            return lStage.mPage->SetMinMax(S::eText, Info::eValueSoftMax, &lStage.mLong, eSTRING);
        };
        bool lDone = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lDone = lSet();
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lDone, lFailed == 0);
        if (!lDone && lStage.mPage->HasMinMax(S::eText, Info::eValueSoftMax)) {
            ++lEmpty;
            EXPECT_TRUE(lStage.mPage->GetMinMax(S::eText, Info::eValueSoftMax, &lStage.mRead, eSTRING));
            EXPECT_TRUE(lStage.mRead.IsEmpty());
        } else if (!lDone) {
            EXPECT_EQ(lStage.Shows(Detail::eEverything), lBefore);
        }
        EXPECT_TRUE(lSet());
        EXPECT_TRUE(lStage.mPage->GetMinMax(S::eText, Info::eValueSoftMax, &lStage.mRead, eSTRING));
        EXPECT_TRUE(lStage.mRead == kLongText);
        return lFailed;
    });
    EXPECT_EQ(lEmpty, 2);
}

// The list of texts is made first, which is all the memory that is needed where there is no such text.
TEST(FailingMemoryEnum, SetsNoTextThatIsNotThere) {
    S lStage;
    const std::string lBefore = lStage.Shows(Detail::eEverything);
    for (const bool lRefuse : {true, false}) {
        const FailAllocations lFail(lRefuse ? 0 : 99, true);
        lStage.mPage->SetEnumValue(S::eOtherChoice, 0, kLongText);
        lStage.Here(S::eOtherChoice).RemoveEnumValue(0);
        EXPECT_EQ(lFail.Failed(), lRefuse ? 2u : 0u);
    }
    EXPECT_EQ(lStage.Shows(Detail::eEverything), lBefore);
}

// A removal makes the list of texts first, which is the only memory it needs, and has nothing to remove then.
TEST(FailingMemoryEnum, RemovesTextsWithoutMemory) {
    S lStage;
    const FailAllocations lFail(0, true);
    lStage.mPage->RemoveEnumValue(S::eOtherChoice, 0);
    EXPECT_EQ(lFail.Failed(), 1u);
    lStage.mPage->RemoveEnumValue(S::eChoice, 0);
    EXPECT_EQ(lFail.Failed(), 1u);
    EXPECT_STREQ(lStage.mPage->GetEnumValue(S::eChoice, 0), "one");
    EXPECT_EQ(lStage.mPage->GetEnumCount(S::eOtherChoice), 0);
}

// What could not be read counts as unequal. Setting an inherited text to itself then makes an own copy, which reads the
// same; with memory again it is found equal and given up.
TEST(FailingMemorySet, CountsAnInheritedTextThatCouldNotBeReadAsUnequal) {
    int lCopied = 0;
    WithEveryAllocationFailing([&lCopied](FailurePoint pPoint) {
        S lStage;
        KString lEqual;
        EXPECT_TRUE(lStage.mPage->Get(S::eText, &lEqual, eSTRING));
        const std::string lBefore = lStage.Shows(Detail::eEverything);
        const std::string lSeen = lStage.Shows(Detail::eSeen);
        bool lAnswer = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lAnswer = lStage.mPage->Set(S::eText, &lEqual, eSTRING, true);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lStage.Shows(Detail::eSeen), lSeen);
        const bool lOwn = lStage.mPage->GetValueInherit(S::eText, false) == eLyrOverride;
        lCopied += lOwn ? 1 : 0;
        EXPECT_TRUE(lFailed > 0 || !lOwn);
        EXPECT_TRUE(!lAnswer || lOwn) << "true only for an own value that was written";
        EXPECT_EQ(lStage.mPage->Set(S::eText, &lEqual, eSTRING, true), lOwn);
        EXPECT_EQ(lStage.Shows(Detail::eEverything), lBefore);
        return lFailed;
    });
    EXPECT_GT(lCopied, 0);
}

// Entries come and go; what an operation that fails leaves to the page's stock of records shows nowhere.
TEST(FailingMemoryPage, OverridesAndInheritsAgainAndAgainWhateverIsRefused) {
    const LeakCheck lLeaks;
    S lStage;
    const std::string lBefore = lStage.Shows(Detail::eEverything);
    const std::string lSeen = lStage.Shows(Detail::eSeen);
    int lFailures = 0;
    for (int i = 0; i < 600; ++i) {
        bool lDone = false;
        {
            const FailAllocations lFail(static_cast<std::size_t>(i % 7), i % 2 == 0);
            lDone = lStage.mPage->SetValueInherit(i % 2 == 0 ? S::eText : S::eDeep, eLyrOverride);
        }
        lFailures += lDone ? 0 : 1;
        if (i % 20 == 0) {
            ASSERT_EQ(lStage.Shows(lDone ? Detail::eSeen : Detail::eEverything), lDone ? lSeen : lBefore);
        }
        EXPECT_TRUE(lStage.mPage->SetValueInherit(S::eText, eLyrInherit));
        EXPECT_TRUE(lStage.mPage->SetValueInherit(S::eDeep, eLyrInherit));
    }
    EXPECT_EQ(lStage.Shows(Detail::eEverything), lBefore);
    EXPECT_GT(lFailures, 100);
    EXPECT_LT(lFailures, 500);
}

// Each property is moved or stays, and the property that stays is reported; the next push moves the rest.
TEST(FailingMemoryPush, MovesEachPropertyOrKeepsItAndIsSeenByNobody) {
    const auto lPush = [](const S& pStage) { pStage.mBelow->PushPropertiesToParentInstance(); };
    const auto lPrepare = [](S& pStage) {
        const int lNumber = 77;
        pStage.mBelow->Set(S::eText, &pStage.mLong, eSTRING, false);
        pStage.mBelow->Set(S::eChoice, &lNumber, eINTEGER1, false);
        pStage.mBelow->ModifyFlags(S::eBlobId, Flag::eUSER, true, false);
        pStage.mBelow->Add(S::eText, "own", pStage.mInner.get());
    };
    const auto lSeenBelow = [](const S& pStage) { return PageDump({pStage.mBelow.get()}, {false, false}).Text(); };
    S lReference;
    lPrepare(lReference);
    lPush(lReference);
    const std::string lDone = lReference.Shows(Detail::eEverything);
    int lReported = 0;
    WithEveryAllocationFailing([&](FailurePoint pPoint) {
        S lStage;
        lPrepare(lStage);
        const std::string lSeen = lSeenBelow(lStage);
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lPush(lStage);
            lFailed = lFail.Failed();
        }
        for (const std::string& lMessage : lStage.mReports.Take()) {
            EXPECT_EQ(lMessage, "lParentEntry");
            EXPECT_GT(lFailed, 0u);
            ++lReported;
        }
        EXPECT_EQ(lSeenBelow(lStage), lSeen);
        EXPECT_TRUE(lStage.Holds());
        lPush(lStage);
        EXPECT_EQ(lStage.Shows(Detail::eEverything), lDone);
        return lFailed;
    });
    EXPECT_GT(lReported, 0);
}

// --- destroying ------------------------------------------------------------------------------------------------------

// Names, types, values and flags, which outlive the pages they came from.
std::string ReadOn(const KLyrPropertyPage& pPage) {
    std::string lText;
    for (int lId = 0; lId != -1; lId = pPage.GetMinimumPropertyIdAndEntry(lId)) {
        KString lValue;
        pPage.Get(lId, &lValue, eSTRING);
        lText += std::to_string(lId) + " in " + std::to_string(pPage.GetParent(lId)) + " " + pPage.GetName(lId) + ":" +
                 std::to_string(pPage.GetType(lId)) + "=" + lValue.Buffer() + "/" +
                 std::to_string(static_cast<unsigned>(pPage.GetFlags(lId))) + "\n";
    }
    return lText;
}

// An entry that was made for a copy which then found no memory.
bool HoldsAnEmptyEntry(const KLyrPropertyPage& pPage) {
    for (int lId = 0; lId != -1; lId = pPage.GetMinimumPropertyIdAndEntry(lId)) {
        KLyrPropertyPage* lHolder = nullptr;
        const KLyrPropertyEntry* lEntry = pPage.GetPropertyEntry(lId, &lHolder);
        if (lHolder == &pPage && lEntry->IsEmpty())
            return true;
    }
    return false;
}

// A page that has no memory for its instances' copies lives on behind them; nobody sees a difference.
TEST(FailingMemoryDestroy, LosesNothingThatOtherPagesShow) {
    using Member = OwnedPage S::*;
    for (const Member lGone : {&S::mTop, &S::mPage, &S::mBelow, &S::mType, &S::mInner, &S::mPeer}) {
        const auto lReadRest = [lGone](const S& pStage) {
            std::string lText;
            for (const Member lPage : {&S::mTop, &S::mPage, &S::mBelow, &S::mType, &S::mInner, &S::mPeer})
                lText += lPage == lGone ? "" : ReadOn(*(pStage.*lPage)) + "--\n";
            return lText;
        };
        std::size_t lAsked = 1;
        for (std::size_t i = 0; lAsked > 0; ++i) {
            const LeakCheck lLeaks;
            S lStage;
            const std::string lBefore = lReadRest(lStage);
            {
                const FailAllocations lFail(i / 2, i % 2 == 1);
                (lStage.*lGone).reset();
                lAsked = lFail.Failed();
            }
            EXPECT_EQ(lReadRest(lStage), lBefore);
            if (lGone != &S::mPage) {
                EXPECT_EQ(lStage.mPage->GetSrcCount(S::eNumber, nullptr), lGone == &S::mPeer ? 0 : 1);
            }
            for (const KLyrPropertyPage* lPage : lStage.Pages())
                EXPECT_FALSE(HoldsAnEmptyEntry(*lPage)) << lPage->GetName(0);
            if (lGone != &S::mBelow) {
                EXPECT_TRUE(lStage.mBelow->Set(S::eText, &lStage.mLong, eSTRING, false));
                EXPECT_GE(lStage.mBelow->Add(S::eText, "more", lStage.mType.get()), 0);
            }
            ASSERT_FALSE(testing::Test::HasFailure()) << "request " << i / 2;
        }
    }
}

TEST(FailingMemoryPage, ReadsWalksAndTakesAwayWithoutMemory) {
    S lStage;
    const FailAllocations lFail(0, true);
    double lNumber = 0;
    EXPECT_TRUE(lStage.mBelow->Get(S::eNumber, &lNumber, eDOUBLE1));
    EXPECT_TRUE(lStage.mBelow->GetDefaultValue(S::eNumber, &lNumber, eDOUBLE1));
    EXPECT_TRUE(lStage.mBelow->GetMinMax(S::eNumber, Info::eValueMin, &lNumber, eDOUBLE1));
    EXPECT_EQ(lStage.mBelow->Find(0, "inner|deep", nullptr, true, "|"), S::eDeep);
    EXPECT_EQ(lStage.mBelow->Find(0, "INNER|DEEP", nullptr, false, "|"), S::eDeep);
    EXPECT_EQ(lStage.mBelow->GetNextDescendent(0, S::eInner), S::eDeep);
    EXPECT_TRUE(lStage.mBelow->IsDescendentOf(S::eDeep, S::eInner));
    EXPECT_TRUE(lStage.mBelow->SetUserTag(S::eText, 4));
    EXPECT_TRUE(lStage.mPage->Set(S::eNumber, &lNumber, eDOUBLE1, false)) << "an own number is written in place";
    EXPECT_TRUE(lStage.mPage->SetValueInherit(S::eNumber, eLyrInherit));
    EXPECT_TRUE(lStage.mPage->SetFlagsInheritType(eLyrInherit, Flag::eHIDDEN, S::eNumber));
    EXPECT_TRUE(lStage.mPage->IsConnectedSrc(S::eNumber, lStage.mPeer.get(), 0));
    EXPECT_TRUE(lStage.mPage->DisconnectSrc(S::eNumber, lStage.mPeer.get(), 0));
    lStage.mType->WipeAllConnections(4);
    EXPECT_EQ(lStage.mPeer->GetDstCount(0, nullptr), 0);
    EXPECT_TRUE(lStage.mTop->RemoveOwnEntry(S::eText));
    lStage.mType.reset();
    EXPECT_EQ(lFail.Failed(), 0u);
}

// An index, and the room for walks, are got or grow when there is memory for them. Without, the property is there all
// the same and every entry is looked at, until there is memory again.
void ExpectFoundWithAnyMemory(int pProperties, int pReplaced) {
    WithEveryAllocationFailing([pProperties, pReplaced](FailurePoint pPoint) {
        KLyrPropertyPage* lPage = KLyrPropertyPage::Create("root", eUNIDENTIFIED);
        const auto lAdd = [lPage](int pNumber) {
            return lPage->Add(pNumber % 2, ("p" + std::to_string(pNumber)).c_str(), eINTEGER1);
        };
        int lNumber = 0;
        while (lNumber < pProperties)
            lAdd(lNumber++);
        for (int i = 0; i < pReplaced; ++i) {
            lAdd(2 * lNumber++);
            lPage->RemoveOwnEntry(lPage->GetChild(0));
        }
        int lAdded = -1;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lAdded = lPage->Add(1, "Sought", eINTEGER1);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lPage->FastFind(1, "Sought", nullptr, true), lAdded);
        EXPECT_EQ(lPage->FastFind(1, "sought", nullptr, false), lAdded);
        const int lBehind = lAdd(1);
        for (int i = 0; i < 70; ++i)
            lPage->Add(0, ("q" + std::to_string(i)).c_str(), eINTEGER1);
        const int lNext = lAdded == -1 ? lBehind : lAdded;
        EXPECT_EQ(lPage->GetNextDescendent(1, lNext - 1), lNext);
        EXPECT_EQ(lPage->FastFind(1, "SOUGHT", nullptr, false), lAdded);
        EXPECT_EQ(lPage->FastFind(0, "Q69", nullptr, false), lBehind + 70);
        lPage->Destroy();
        return lFailed;
    });
}

TEST(FailingMemoryIndex, IsNotNeededToFindWhatWasAdded) {
    for (const int lProperties : {30, 31, 62, 63, 126, 127, 128})
        ExpectFoundWithAnyMemory(lProperties, 0);
}

TEST(FailingMemoryIndex, IsNotNeededToFindWhatWasAddedWhenItsRecordsWouldMove) {
    for (int lReplaced = 70; lReplaced <= 110; ++lReplaced)
        ExpectFoundWithAnyMemory(40, lReplaced);
}

}  // namespace
}  // namespace lyrsdk
