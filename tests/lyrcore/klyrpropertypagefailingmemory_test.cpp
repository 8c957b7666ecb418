#include <gtest/gtest.h>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/failing_memory.h"
#include "tests/support/page_family.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

using Flag = LyrPropertyFlags;

// Longer than any text that needs no memory of its own.
constexpr const char* kLongText =
    "a text that is long enough to need a block of memory of its own, whatever the string";

// A family of three pages with a property of each kind; made anew for every refusal.
struct Family {
    OwnedPage mType = MakeRoot("type", eDOUBLE1);
    OwnedPage mRoot = MakeRoot("root", eDOUBLE1);
    const int mText = mRoot->Add(0, "text", eSTRING);
    const int mEnum = mRoot->Add(0, "enum", eENUM);
    OwnedPage mMiddle = MakeInstance(mRoot);
    OwnedPage mLeaf = MakeInstance(mMiddle);

    Family() {
        mType->Add(mType->Add(0, "x", eSTRING), "y", eDOUBLE2);
        mType->Add(0, "z", eINTEGER1);
        SetText(mRoot, mText, kLongText);
        mRoot->ModifyFlags(mText, Flag::eUSER, true, false);
    }

    // All that the pages see and hold.
    std::string All() const {
        std::string lText;
        for (const OwnedPage* lPage : {&mType, &mRoot, &mMiddle, &mLeaf})
            lText += Seen(*lPage) + Held(*lPage);
        return lText;
    }
};

// Refuses each request of pOperate in turn. When that fails nothing has changed, and it succeeds when it is tried again
// with memory; when it succeeds all the same, it must have done its work, which pExpectDone checks.
template <typename Operate, typename ExpectDone>
void ExpectAllOrNothing(Operate pOperate, ExpectDone pExpectDone) {
    WithEveryAllocationFailing([&](FailurePoint pPoint) {
        Family lFamily;
        const std::string lBefore = lFamily.All();
        bool lDone = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lDone = pOperate(lFamily);
            lFailed = lFail.Failed();
        }
        EXPECT_TRUE(lDone || lFailed > 0) << "failed with all the memory it asked for";
        if (!lDone) {
            EXPECT_EQ(lFamily.All(), lBefore);
            EXPECT_TRUE(pOperate(lFamily)) << "with memory again";
        }
        pExpectDone(lFamily);
        return lFailed;
    });
}

class KLyrPropertyPageFailingMemoryTest : public PageTest {};

// --- making and adding -----------------------------------------------------------------------------------------------

template <typename Make>
void ExpectPageOrNull(Make pMake, const char* pSeen) {
    WithEveryAllocationFailing([&](FailurePoint pPoint) {
        const Family lFamily;
        const std::string lBefore = lFamily.All();
        std::size_t lFailed = 0;
        OwnedPage lPage;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lPage.reset(pMake(lFamily));
            lFailed = lFail.Failed();
        }
        EXPECT_TRUE(lPage || lFailed > 0);
        EXPECT_EQ(lFamily.All(), lBefore);
        EXPECT_EQ(lFamily.mLeaf->GetInstances().GetCount(), lPage && lPage->GetInstanceOf() ? 1 : 0);
        if (!lPage)
            lPage.reset(pMake(lFamily));
        EXPECT_EQ(Tree(*lPage, 0), pSeen);
        return lFailed;
    });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, MakingAPageGivesItWholeOrNull) {
    ExpectPageOrNull([](const Family&) { return KLyrPropertyPage::Create(kLongText, eSTRING); }, "");
    ExpectPageOrNull([](const Family&) { return KLyrPropertyPage::Create(nullptr); }, "");
    ExpectPageOrNull([](const Family& pFamily) { return KLyrPropertyPage::Create("typed", pFamily.mType.get()); },
                     "x=(y=0,0) z=0");
    const std::string lTree = std::string("text=") + kLongText + " enum=0";
    ExpectPageOrNull([](const Family& pFamily) { return KLyrPropertyPage::Create(pFamily.mLeaf.get()); },
                     lTree.c_str());
}

TEST_F(KLyrPropertyPageFailingMemoryTest, AddingGivesMinusOneAndAddsNothing) {
    ExpectAllOrNothing([](Family& pFamily) { return pFamily.mLeaf->Add(0, "a new name", eSTRING) != -1; },
                       [](Family& pFamily) { EXPECT_EQ(Tree(pFamily.mLeaf, 0).substr(0, 4), "text"); });
    ExpectAllOrNothing([](Family& pFamily) { return pFamily.mRoot->Add(0, "a new name", eDOUBLE44) != -1; },
                       [](Family& pFamily) { EXPECT_NE(pFamily.mLeaf->FastFind(0, "a new name", nullptr, true), -1); });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, AddingATypedPropertyAddsItsChildrenOrNothing) {
    ExpectAllOrNothing([](Family& pFamily) { return pFamily.mLeaf->Add(0, "typed", pFamily.mType.get()) != -1; },
                       [](Family& pFamily) {
                           const int lId = pFamily.mLeaf->FastFind(0, "typed", nullptr, true);
                           EXPECT_EQ(Tree(pFamily.mLeaf, lId), "x=(y=0,0) z=0");
                       });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, AddingInAnOpenBracketKeepsItsAnswersRight) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        Family lFamily;
        lFamily.mLeaf->BeginCreateOrFindProperty();
        const std::string lBefore = lFamily.All();
        int lId = -1;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lId = lFamily.mLeaf->Add(0, "typed", lFamily.mType.get());
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lFamily.mLeaf->FastFind(0, "typed", nullptr, true), lId);
        if (lId == -1) {
            EXPECT_EQ(lFamily.All(), lBefore);
            lId = lFamily.mLeaf->Add(0, "typed", lFamily.mType.get());
        }
        EXPECT_EQ(lFamily.mLeaf->FastFind(0, "typed", nullptr, true), lId);
        EXPECT_EQ(lFamily.mLeaf->Find(0, "typed|x|y", nullptr, true, "|"), lId + 2);
        EXPECT_EQ(lFamily.mLeaf->FastFind(0, "text", nullptr, true), lFamily.mText);
        return lFailed;
    });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, OpenBracketDoesNotKnowAPropertyThatCouldNotBeAdded) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        const Family lFamily;
        lFamily.mLeaf->BeginCreateOrFindProperty();
        std::size_t lFailed = 0;
        int lFirst = -1;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lFirst = lFamily.mLeaf->Add(0, "first", eDOUBLE1);
            lFailed = lFail.Failed();
        }
        const int lSecond = lFamily.mLeaf->Add(0, "second", eDOUBLE1);
        EXPECT_EQ(lFamily.mLeaf->FastFind(0, "second", nullptr, true), lSecond);
        EXPECT_EQ(lFamily.mLeaf->FastFind(0, "first", nullptr, true), lFirst);
        lFamily.mLeaf->EndCreateOrFindProperty();
        EXPECT_EQ(lFamily.mLeaf->FastFind(0, "first", nullptr, true), lFirst);
        return lFailed;
    });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, ItemsThatCouldNotBeAddedStayTheCallers) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        const Family lFamily;
        const std::string lBefore = lFamily.All();
        // Not counted by anybody yet.
        KLyrPropertyInfo* lInfo = KLyrPropertyInfo::Create("given", lFamily.mType.get());
        KLyrPropertyValue* lValue = KLyrPropertyValue::Create(nullptr, eDOUBLE1);
        KLyrPropertyConnect* lConnect = KLyrPropertyConnect::Create(lFamily.mRoot.get(), 3);
        int lId = -1;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lId = lFamily.mRoot->Add(0, lInfo, lValue, lConnect, true);
            lFailed = lFail.Failed();
        }
        if (lId == -1) {
            EXPECT_EQ(lFamily.All(), lBefore);
            EXPECT_STREQ(lInfo->GetNameText(), "given");
            EXPECT_EQ(lValue->GetType(), eDOUBLE1);
            EXPECT_EQ(lConnect->GetPropertyId(), 3);
            lId = lFamily.mRoot->Add(0, lInfo, lValue, lConnect, true);
        }
        EXPECT_EQ(Tree(lFamily.mRoot, lId), "x=(y=0,0) z=0");
        return lFailed;
    });
}

// --- states ----------------------------------------------------------------------------------------------------------

template <typename T>
bool Override(const OwnedPage& pPage, int pId) {
    return pPage->ChangePropertyItemState<T>(nullptr, pId, eLyrOverride) != nullptr;
}

TEST_F(KLyrPropertyPageFailingMemoryTest, OverridingGivesAnItemOrChangesNothing) {
    ExpectAllOrNothing(
        [](Family& pFamily) { return pFamily.mLeaf->ChangePropertyEntryState(pFamily.mText, eLyrOverride) != nullptr; },
        [](Family& pFamily) { EXPECT_NE(OwnEntry(pFamily.mLeaf, pFamily.mText), nullptr); });
    ExpectAllOrNothing([](Family& pFamily) { return Override<KLyrPropertyInfo>(pFamily.mLeaf, pFamily.mText); },
                       [](Family& pFamily) { EXPECT_EQ(Held(pFamily.mLeaf), "1<0 i-- 0\n"); });
    ExpectAllOrNothing([](Family& pFamily) { return Override<KLyrPropertyValue>(pFamily.mLeaf, pFamily.mText); },
                       [](Family& pFamily) {
                           EXPECT_EQ(Held(pFamily.mLeaf), "1<0 -v- 0\n");
                           EXPECT_EQ(TextOf(pFamily.mLeaf, pFamily.mText), kLongText);
                       });
    ExpectAllOrNothing([](Family& pFamily) { return Override<KLyrPropertyFlags>(pFamily.mLeaf, pFamily.mText); },
                       [](Family& pFamily) { EXPECT_EQ(Held(pFamily.mLeaf), "1<0 --- 0\n"); });
    ExpectAllOrNothing([](Family& pFamily) { return pFamily.mLeaf->SetValueInherit(pFamily.mText, eLyrOverride); },
                       [](Family& pFamily) { EXPECT_EQ(Held(pFamily.mLeaf), "1<0 -v- 0\n"); });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, OverridingATypedDescriptionGivesAnItemOrChangesNothing) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        const OwnedPage lType = MakeRoot("type", eDOUBLE1);
        const OwnedPage lRoot = MakeRoot();
        const int lId = lRoot->Add(0, "typed", lType.get());
        const OwnedPage lInstance = MakeInstance(lRoot);
        bool lDone = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lDone = Override<KLyrPropertyInfo>(lInstance, lId);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lDone, lFailed == 0);
        EXPECT_EQ(lDone, OwnEntry(lInstance, lId) != nullptr);
        EXPECT_EQ(lInstance->GetTypeInfo(lId), lType.get());
        return lFailed;
    });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, FlagsAreChangedOrNot) {
    ExpectAllOrNothing(
        [](Family& pFamily) { return pFamily.mLeaf->ModifyFlags(pFamily.mText, Flag::eHIDDEN, true, false); },
        [](Family& pFamily) { EXPECT_EQ(pFamily.mLeaf->GetFlags(pFamily.mText), Flag::eHIDDEN | Flag::eUSER); });
    ExpectAllOrNothing(
        [](Family& pFamily) { return pFamily.mLeaf->ModifyFlags(pFamily.mText, Flag::eHIDDEN, true, true); },
        [](Family& pFamily) { EXPECT_EQ(pFamily.mLeaf->GetFlags(pFamily.mText), Flag::eHIDDEN | Flag::eUSER); });
    ExpectAllOrNothing(
        [](Family& pFamily) { return pFamily.mLeaf->SetFlagsInheritType(eLyrOverride, Flag::eUSER, pFamily.mText); },
        [](Family& pFamily) { EXPECT_EQ(OwnFlagData(pFamily.mLeaf, pFamily.mText), 0x20002u); });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, ShowingWhatIsInheritedNeedsNoMemory) {
    const Family lFamily;
    SetText(lFamily.mLeaf, lFamily.mText, "own");
    lFamily.mLeaf->ModifyFlags(lFamily.mText, Flag::eUSER, false, false);
    const KString lInherited(kLongText);
    const FailAllocations lFail(0, true);
    EXPECT_TRUE(lFamily.mLeaf->SetFlagsInheritType(eLyrInherit, Flag::eUSER, lFamily.mText));
    EXPECT_TRUE(lFamily.mLeaf->SetValueInherit(lFamily.mText, eLyrInherit));
    EXPECT_EQ(Held(lFamily.mLeaf), "");
    EXPECT_EQ(lFail.Failed(), 0u);
}

// --- values ----------------------------------------------------------------------------------------------------------

// Setting may leave an own copy of what was seen, which reads the same.
template <typename Prepare>
void ExpectTextSetOrSeenAsBefore(Prepare pPrepare, const char* pNew, bool pCheck) {
    WithEveryAllocationFailing([&](FailurePoint pPoint) {
        const Family lFamily;
        pPrepare(lFamily);
        const KString lNew(pNew);
        const std::string lBefore = Seen(lFamily.mLeaf) + Seen(lFamily.mMiddle) + Held(lFamily.mRoot);
        bool lDone = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lDone = lFamily.mLeaf->Set(lFamily.mText, &lNew, eSTRING, pCheck);
            lFailed = lFail.Failed();
        }
        EXPECT_TRUE(lDone || lFailed > 0);
        if (!lDone) {
            EXPECT_EQ(Seen(lFamily.mLeaf) + Seen(lFamily.mMiddle) + Held(lFamily.mRoot), lBefore);
            EXPECT_TRUE(lFamily.mLeaf->Set(lFamily.mText, &lNew, eSTRING, pCheck));
        }
        EXPECT_EQ(TextOf(lFamily.mLeaf, lFamily.mText), pNew);
        EXPECT_EQ(TextOf(lFamily.mMiddle, lFamily.mText), kLongText);
        return lFailed;
    });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, SettingATextWritesItOrLeavesWhatWasSeen) {
    const std::string lLong(500, 'n');
    const char* lNew = lLong.c_str();
    const auto lInherited = [](const Family&) {};
    const auto lOwn = [](const Family& pFamily) { SetText(pFamily.mLeaf, pFamily.mText, "the old text of the leaf"); };
    for (bool lCheck : {false, true}) {
        ExpectTextSetOrSeenAsBefore(lInherited, lNew, lCheck);
        ExpectTextSetOrSeenAsBefore(lOwn, lNew, lCheck);
    }
    ExpectTextSetOrSeenAsBefore(lInherited, "", false);
}

TEST_F(KLyrPropertyPageFailingMemoryTest, EqualityThatCouldNotBeReadDoesNotLoseTheValue) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        const Family lFamily;
        SetText(lFamily.mLeaf, lFamily.mText, "own");
        const KString lEqual(kLongText);
        bool lDone = false;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lDone = lFamily.mLeaf->Set(lFamily.mText, &lEqual, eSTRING, true);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(TextOf(lFamily.mLeaf, lFamily.mText), lDone ? kLongText : "own");
        EXPECT_EQ(TextOf(lFamily.mRoot, lFamily.mText), kLongText);
        return lFailed;
    });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, ReadingANumberNeedsNoMemoryAndATextFails) {
    const Family lFamily;
    double lNumber = 7;
    KString lText("old");
    const FailAllocations lFail(0, true);
    EXPECT_TRUE(lFamily.mLeaf->Get(0, &lNumber, eDOUBLE1));
    EXPECT_FALSE(lFamily.mLeaf->Get(lFamily.mText, &lText, eSTRING));
    EXPECT_FALSE(lFamily.mLeaf->GetDefaultValue(lFamily.mText, &lText, eSTRING));
    EXPECT_STREQ(lText.Buffer(), "old");
    EXPECT_EQ(lNumber, 0);
}

// --- descriptions ----------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageFailingMemoryTest, LabelsAndTextsAreSetOrStayAsTheyWere) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        const Family lFamily;
        KLyrPropertyPage& lPage = *lFamily.mLeaf;
        const int lId = lFamily.mEnum;
        const int lNumber = 5;
        lPage.SetLabel(lId, "old label");
        bool lLabel = false;
        bool lBound = false;
        int lText = -1;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lLabel = lPage.SetLabel(lId, kLongText);
            lBound = lPage.SetMinMax(lId, KLyrPropertyInfo::eValueMax, &lNumber, eINTEGER1);
            lText = lPage.AddEnumValue(lId, kLongText);
            lFailed = lFail.Failed();
        }
        EXPECT_STREQ(lPage.GetLabel(lId), lLabel ? kLongText : "old label");
        EXPECT_EQ(lPage.HasMinMax(lId, KLyrPropertyInfo::eValueMax), lBound);
        EXPECT_EQ(lPage.GetEnumCount(lId), lText + 1);
        EXPECT_TRUE(lPage.SetLabel(lId, "new label"));
        EXPECT_TRUE(lPage.SetMinMax(lId, KLyrPropertyInfo::eValueMax, &lNumber, eINTEGER1));
        EXPECT_EQ(lPage.AddEnumValue(lId, "another"), lText + 1);
        return lFailed;
    });
}

// --- lookup ----------------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageFailingMemoryTest, BracketWithoutMemoryStaysClosed) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        const Family lFamily;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lFamily.mLeaf->BeginCreateOrFindProperty();
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lFamily.mLeaf->FastFind(0, "enum", nullptr, true), lFamily.mEnum);
        EXPECT_EQ(lFamily.mLeaf->FastFind(0, "ENUM", nullptr, false), lFailed > 0 ? lFamily.mEnum : -1);
        lFamily.mLeaf->BeginCreateOrFindProperty();
        EXPECT_EQ(lFamily.mLeaf->FastFind(0, "ENUM", nullptr, false), -1) << "open with memory again";
        lFamily.mLeaf->EndCreateOrFindProperty();
        EXPECT_EQ(lFamily.mLeaf->FastFind(0, "ENUM", nullptr, false), lFamily.mEnum);
        return lFailed;
    });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, LongSegmentsOfPathsAreNotFound) {
    const std::string lName(1000, 'n');
    const OwnedPage lPage = MakeRoot();
    const int lBelow = lPage->Add(lPage->Add(0, lName.c_str(), eDOUBLE1), "below", eDOUBLE1);
    lPage->Add(lPage->Add(0, "", eDOUBLE1), "below", eDOUBLE1);
    const std::string lPath = lName + "|below";
    {
        const FailAllocations lFail(0, true);
        EXPECT_EQ(lPage->Find(0, lPath.c_str(), nullptr, true, "|"), -1);
        EXPECT_GT(lFail.Failed(), 0u);
    }
    EXPECT_EQ(lPage->Find(0, lPath.c_str(), nullptr, true, "|"), lBelow);
}

// --- push ------------------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageFailingMemoryTest, PushThatFailsIsReportedAndLosesNothing) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        const Family lFamily;
        SetText(lFamily.mLeaf, lFamily.mText, "pushed");
        lFamily.mLeaf->ModifyFlags(lFamily.mEnum, Flag::eHIDDEN, true, false);
        lFamily.mLeaf->Add(lFamily.mText, "own", eDOUBLE1);
        const std::string lSeen = Seen(lFamily.mLeaf);
        std::size_t lFailed = 0;
        ReportRecorder lReports;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lFamily.mLeaf->PushPropertiesToParentInstance();
            lFailed = lFail.Failed();
        }
        for (const ReportRecorder::Report& lReport : lReports.TakeReports()) {
            EXPECT_GT(lFailed, 0u);
            EXPECT_EQ(lReport.file, "lyrfilesdk/lyrcore/klyrpropertypage");
            EXPECT_EQ(lReport.function, "");
            EXPECT_EQ(lReport.line, 1745u);
            EXPECT_EQ(lReport.message, "lParentEntry");
        }
        EXPECT_EQ(Seen(lFamily.mLeaf), lSeen);
        lFamily.mLeaf->PushPropertiesToParentInstance();
        EXPECT_EQ(Seen(lFamily.mLeaf), lSeen);
        EXPECT_EQ(Held(lFamily.mLeaf), "");
        return lFailed;
    });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, PushWithoutAnyMemoryReportsEveryProperty) {
    const Family lFamily;
    SetText(lFamily.mLeaf, lFamily.mText, "pushed");
    SetNumber(lFamily.mLeaf, 0, 4);
    ReportRecorder lReports;
    {
        const FailAllocations lFail(0, true);
        lFamily.mLeaf->PushPropertiesToParentInstance();
    }
    EXPECT_EQ(lReports.Take(), (std::vector<std::string>{"lParentEntry", "lParentEntry"}));
    EXPECT_EQ(Held(lFamily.mMiddle), "");
}

// --- destroying ------------------------------------------------------------------------------------------------------

// What the pages below see, with flags set on several levels and a second instance.
struct FamilyToDestroy : Family {
    OwnedPage mSide = MakeInstance(mMiddle);
    OwnedPage mBelow = MakeInstance(mLeaf);

    FamilyToDestroy() {
        mMiddle->ModifyFlags(mText, Flag::eUSER, false, false);
        mMiddle->SetFlagsInheritType(eLyrOverride, Flag::eHIDDEN, mEnum);
        SetText(mMiddle, mText, "the text of the page between, which is long enough for a block");
        mMiddle->Add(mText, "middle's", eDOUBLE3);
        mLeaf->ModifyFlags(mText, Flag::ePUBLISHED, true, false);
        SetNumber(mLeaf, 0, 3);
        mSide->Add(0, "side's", eSTRING);
    }

    std::string SeenBelow() const { return Seen(mLeaf) + Seen(mSide) + Seen(mBelow); }
};

template <typename After>
void ExpectDestroySeenByNobody(After pAfter) {
    WithEveryAllocationFailing([&](FailurePoint pPoint) {
        FamilyToDestroy lFamily;
        const std::string lBefore = lFamily.SeenBelow();
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lFamily.mMiddle.reset();
            EXPECT_EQ(Seen(lFamily.mRoot).empty(), false);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(lFamily.SeenBelow(), lBefore);
        EXPECT_TRUE(SetText(lFamily.mLeaf, lFamily.mText, "new"));
        EXPECT_NE(lFamily.mSide->Add(lFamily.mText, "new", eDOUBLE1), -1);
        EXPECT_EQ(TextOf(lFamily.mBelow, lFamily.mText), "new");
        pAfter(lFamily);
        return lFailed;
    });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, DestroyedPageLivesOnBehindInstancesThatGotNoCopies) {
    ExpectDestroySeenByNobody([](FamilyToDestroy&) {});
    ExpectDestroySeenByNobody([](FamilyToDestroy& pFamily) {
        const std::string lBefore = pFamily.SeenBelow();
        pFamily.mRoot.reset();
        EXPECT_EQ(pFamily.SeenBelow(), lBefore);
    });
    ExpectDestroySeenByNobody([](FamilyToDestroy& pFamily) {
        const std::string lBefore = Seen(pFamily.mSide) + Seen(pFamily.mBelow);
        pFamily.mLeaf.reset();
        EXPECT_EQ(Seen(pFamily.mSide) + Seen(pFamily.mBelow), lBefore);
        pFamily.mSide.reset();
        pFamily.mType.reset();
        EXPECT_EQ(pFamily.mRoot->GetInstances().GetCount() > 0, pFamily.mBelow->GetInstanceOf() != nullptr);
    });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, AnyPageOfARandomFamilyGoesUnseenByTheOthersThoughMemoryEnds) {
    for (unsigned lSeed = 1; lSeed <= 300; ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(60);
        std::vector<OwnedPage>& lPages = lFamily.Pages();
        while (lPages.size() > 1) {
            const std::ptrdiff_t lGone = lFamily.Below(static_cast<int>(lPages.size()));
            std::vector<std::string> lBefore;
            for (const OwnedPage& lPage : lPages)
                lBefore.push_back(Seen(lPage));
            {
                const FailAllocations lFail(static_cast<std::size_t>(lFamily.Below(8)), lFamily.Below(2) == 0);
                lPages[static_cast<std::size_t>(lGone)].reset();
            }
            lPages.erase(lPages.begin() + lGone);
            lBefore.erase(lBefore.begin() + lGone);
            for (std::size_t i = 0; i < lPages.size(); ++i)
                ASSERT_EQ(Seen(lPages[i]), lBefore[i]);
            lFamily.Change(3);
        }
    }
}

TEST_F(KLyrPropertyPageFailingMemoryTest, DestroyedTypePageIsNoLongerNamedThoughItLivesOn) {
    OwnedPage lType = MakeRoot("t", eDOUBLE3);
    const OwnedPage lTypesInstance = MakeInstance(lType);
    const OwnedPage lPage = MakeTyped("p", lType);
    {
        const FailAllocations lFail(0, true);
        lType.reset();
        ASSERT_GT(lFail.Failed(), 0u);
    }
    EXPECT_EQ(lPage->GetTypeInfo(0), nullptr) << "the application destroyed that page";
    EXPECT_EQ(lPage->GetType(0), eDOUBLE3);
}

TEST_F(KLyrPropertyPageFailingMemoryTest, EmptyEntryThatWasThereStays) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        Family lFamily;
        const KLyrPropertyEntry* lEntry = lFamily.mLeaf->ChangePropertyEntryState(lFamily.mText, eLyrOverride);
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            Override<KLyrPropertyInfo>(lFamily.mLeaf, lFamily.mText);
            Override<KLyrPropertyValue>(lFamily.mLeaf, lFamily.mText);
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(OwnEntry(lFamily.mLeaf, lFamily.mText), lEntry);
        return lFailed;
    });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, HandDownThatFailsLeavesNoEmptyEntryAndTakesNoneAway) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        Family lFamily;
        const KLyrPropertyEntry* lEntry = lFamily.mLeaf->ChangePropertyEntryState(lFamily.mText, eLyrOverride);
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lFamily.mMiddle.reset();
            lFailed = lFail.Failed();
        }
        EXPECT_EQ(OwnEntry(lFamily.mLeaf, lFamily.mText), lEntry);
        for (int lId : {0, lFamily.mEnum}) {
            EXPECT_FALSE(OwnEntry(lFamily.mLeaf, lId) && OwnEntry(lFamily.mLeaf, lId)->IsEmpty()) << lId;
        }
        return lFailed;
    });
}

TEST_F(KLyrPropertyPageFailingMemoryTest, WholeFamilyIsDestroyedWithoutMemory) {
    FamilyToDestroy lFamily;
    const std::string lSide = Seen(lFamily.mSide);
    const std::string lBelow = Seen(lFamily.mBelow);
    {
        const FailAllocations lFail(0, true);
        lFamily.mRoot.reset();
        lFamily.mMiddle.reset();
        lFamily.mLeaf.reset();
        EXPECT_GT(lFail.Failed(), 0u);
    }
    EXPECT_EQ(Seen(lFamily.mSide), lSide);
    EXPECT_EQ(Seen(lFamily.mBelow), lBelow);
    const FailAllocations lFail(0, true);
    lFamily.mSide.reset();
    lFamily.mBelow.reset();
}

TEST_F(KLyrPropertyPageFailingMemoryTest, LongChainIsDestroyedFromTheTopWithoutMemoryOnASmallStack) {
    std::vector<OwnedPage> lChain;
    lChain.push_back(MakeRoot("root", eDOUBLE1));
    for (int i = 0; i < 5000; ++i)
        lChain.push_back(MakeInstance(lChain.back()));
    RunOnSmallStack([&lChain] {
        const FailAllocations lFail(0, true);
        for (OwnedPage& lPage : lChain)
            lPage.reset();
    });
}

}  // namespace
}  // namespace lyrsdk
