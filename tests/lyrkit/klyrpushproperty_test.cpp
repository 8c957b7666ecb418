#include <gtest/gtest.h>

#include "lyrfilesdk/lyrkit/klyrpushpreview.h"
#include "tests/support/failing_memory.h"
#include "tests/support/page_dump.h"
#include "tests/support/page_family.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

using Result = KLyrPushResult;

KLyrPropertyHandle At(const OwnedPage& pPage, int pId) {
    return KLyrPropertyHandle(pPage.get(), pId);
}

//   top:    0 "root"   1 "power" (double)
//   page:   an instance of top; 2 "lamp"   3 "bulb" (double, below lamp)
//   other:  an instance of top
struct Pages {
    static constexpr int kPower = 1;
    static constexpr int kLamp = 2;
    static constexpr int kBulb = 3;

    Pages() {
        mTop->Add(0, "power", eDOUBLE1);
        mPage->Add(0, "lamp", eSTRING);
        mPage->Add(kLamp, "bulb", eDOUBLE1);
        SetNumber(mPage, kBulb, 7);
        SetNumber(mPage, kPower, 2);
        mPage->ModifyFlags(kPower, LyrPropertyFlags::eHIDDEN, true, false);
    }
    std::string Text() const { return PageDump({mTop.get(), mPage.get(), mOther.get()}).Text(); }

    OwnedPage mTop = MakeRoot();
    OwnedPage mPage = MakeInstance(mTop);
    OwnedPage mOther = MakeInstance(mTop);
};

class PushPropertyTest : public PageTest {
protected:
    Pages mPages;
};

TEST_F(PushPropertyTest, OnePropertyMovesAndTheOthersStay) {
    const std::string lSeen = Seen(mPages.mPage);
    ASSERT_EQ(lyrPushProperty(At(mPages.mPage, Pages::kPower)), Result::ePushed);
    EXPECT_EQ(Seen(mPages.mPage), lSeen);
    EXPECT_EQ(NumberOf(mPages.mOther, Pages::kPower), 2);
    EXPECT_EQ(mPages.mTop->GetFlags(Pages::kPower), LyrPropertyFlags::eHIDDEN);
    EXPECT_FALSE(OwnEntry(mPages.mPage, Pages::kPower));
    EXPECT_TRUE(OwnEntry(mPages.mPage, Pages::kBulb));
    EXPECT_FALSE(mPages.mOther->GetPropertyEntry(Pages::kLamp));
    EXPECT_EQ(lyrPushProperty(At(mPages.mPage, Pages::kPower)), Result::eNothing);
}

TEST_F(PushPropertyTest, APropertyThatThePageAddedMovesWithItsIdAndTheRestOfThePageIsUntouched) {
    const std::string lSeen = Seen(mPages.mPage);
    ASSERT_EQ(lyrPushProperty(At(mPages.mPage, Pages::kLamp)), Result::ePushed);
    EXPECT_EQ(Seen(mPages.mPage), lSeen);
    EXPECT_STREQ(mPages.mOther->GetName(Pages::kLamp), "lamp");
    EXPECT_EQ(mPages.mTop->Find(0, "lamp", nullptr, true, nullptr), Pages::kLamp);
    EXPECT_FALSE(OwnEntry(mPages.mPage, Pages::kLamp));
    EXPECT_EQ(Held(mPages.mPage) + "2<0 iv- 7fff0000\n", "1<0 -v- 400040\n3<2 iv- 7fff0000\n2<0 iv- 7fff0000\n");
    EXPECT_EQ(NumberOf(mPages.mOther, Pages::kPower), 0) << "not pushed";
}

TEST_F(PushPropertyTest, AChildMovesOnlyAfterItsParent) {
    const std::string lText = mPages.Text();
    EXPECT_EQ(lyrPushProperty(At(mPages.mPage, Pages::kBulb)), Result::eNoPlace);
    EXPECT_EQ(mPages.Text(), lText);
    EXPECT_EQ(lyrPushProperty(At(mPages.mPage, Pages::kLamp)), Result::ePushed);
    EXPECT_EQ(lyrPushProperty(At(mPages.mPage, Pages::kBulb)), Result::ePushed);
    EXPECT_EQ(Tree(mPages.mOther, 0), "power=0 lamp=(bulb=7)");
}

TEST_F(PushPropertyTest, ConnectionsStayOnThePage) {
    ASSERT_TRUE(mPages.mPage->ConnectSrc(Pages::kLamp, mPages.mPage.get(), Pages::kBulb, eLyrConnectionData));
    ASSERT_EQ(lyrPushProperty(At(mPages.mPage, Pages::kLamp)), Result::ePushed);
    EXPECT_TRUE(mPages.mPage->IsConnectedSrc(Pages::kLamp, mPages.mPage.get(), Pages::kBulb));
    EXPECT_EQ(lyrPushProperty(At(mPages.mPage, Pages::kLamp)), Result::eNothing);
    ASSERT_EQ(lyrPushProperty(At(mPages.mPage, Pages::kBulb)), Result::ePushed);
    EXPECT_TRUE(mPages.mPage->IsConnectedSrc(Pages::kLamp, mPages.mPage.get(), Pages::kBulb));
    EXPECT_EQ(mPages.mTop->GetSrcCount(Pages::kLamp, nullptr), 0);
}

TEST_F(PushPropertyTest, ALargePageKeepsAllThatItHeldWhenOneOfItIsPushed) {
    for (int i = 0; i < 100; ++i) {
        mPages.mTop->Add(0, ("a" + std::to_string(i)).c_str(), eDOUBLE1);
        mPages.mPage->Add(0, ("b" + std::to_string(i)).c_str(), eINTEGER1);
    }
    for (int lId = 4; lId < 204; ++lId)
        SetNumber(mPages.mPage, lId, lId);
    const std::string lSeen = Seen(mPages.mPage);
    const int lB50 = mPages.mPage->Find(0, "b50", nullptr, true, nullptr);
    ASSERT_EQ(lyrPushProperty(At(mPages.mPage, lB50)), Result::ePushed);
    EXPECT_EQ(Seen(mPages.mPage), lSeen);
    for (int i = 0; i < 100; ++i)
        EXPECT_NE(mPages.mPage->Find(0, ("b" + std::to_string(i)).c_str(), nullptr, true, nullptr), -1);
    EXPECT_EQ(mPages.mOther->Find(0, "b50", nullptr, true, nullptr), lB50);
    EXPECT_EQ(mPages.mOther->Find(0, "b51", nullptr, true, nullptr), -1);
}

// --- want of memory --------------------------------------------------------------------------------------------------

// Whether it fails at once or late, all is pushed or nothing is changed.
void ExpectAllOrNothing(int pId) {
    WithEveryAllocationFailing([pId](const FailurePoint& pPoint) {
        ReportRecorder lReports;
        const Pages lPages;
        const std::string lText = lPages.Text();
        Result lResult;
        std::size_t lFailed;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lResult = lyrPushProperty(At(lPages.mPage, pId));
            lFailed = lFail.Failed();
        }
        if (lResult == Result::eNoMemory) {
            EXPECT_EQ(lPages.Text(), lText);
            EXPECT_EQ(lyrPushProperty(At(lPages.mPage, pId)), Result::ePushed);
        } else {
            EXPECT_EQ(lResult, Result::ePushed);
        }
        for (const std::string& lMessage : lReports.Take())
            EXPECT_EQ(lMessage, "lParentEntry");
        return testing::Test::HasFailure() ? 0 : lFailed;
    });
}

TEST(PushProperty, WithoutMemoryAPropertyThatThePageAddedStaysWhereItIs) {
    ExpectAllOrNothing(Pages::kLamp);
}

TEST(PushProperty, WithoutMemoryAnOverrideStaysWhereItIs) {
    WithEveryAllocationFailing([](const FailurePoint& pPoint) {
        const OwnedPage lTop = MakeRoot("root", eDOUBLE1);
        const OwnedPage lMiddle = MakeInstance(lTop);
        const OwnedPage lPage = MakeInstance(lMiddle);
        SetNumber(lPage, 0, 2);
        const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
        const Result lResult = lyrPushProperty(At(lPage, 0));
        EXPECT_EQ(lResult, lFail.Failed() ? Result::eNoMemory : Result::ePushed);
        EXPECT_EQ(lMiddle->GetValueInherit(0, false), lFail.Failed() ? eLyrInherit : eLyrOverride);
        EXPECT_EQ(NumberOf(lPage, 0), 2);
        return lFail.Failed();
    });
}

// --- beside a push of the whole page ---------------------------------------------------------------------------------

// Of a family, one page and one property: all that the page holds besides is taken off, so that the property is all
// that a push of the page can move.
void LeaveOnly(const OwnedPage& pPage, int pId) {
    for (int lId = 0; lId < RandomFamily::kMaxProperties; ++lId)
        if (lId != pId)
            pPage->RemoveOwnEntry(lId);
}

std::string DumpOf(const RandomFamily& pFamily) {
    PageDump::Pages lPages;
    for (const OwnedPage& lPage : pFamily.Pages())
        lPages.push_back(lPage.get());
    std::string lText = PageDump(lPages).Text();
    // Pages are told by their place, but data pointers are not.
    for (const OwnedPage& lPage : pFamily.Pages())
        lText += Held(lPage);
    return lText;
}

TEST(PushProperty, OfAPageWithJustThatPropertyItDoesWhatAPushOfThePageDoes) {
    const LeakCheck lLeaks;
    int lPushed = 0;
    int lNew = 0;
    for (unsigned lSeed = 0; lSeed < 800 && !testing::Test::HasFailure(); ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lOne(lSeed);
        RandomFamily lWhole(lSeed);
        lOne.Change(150);
        lWhole.Change(150);
        const auto lPlace = static_cast<std::size_t>(lOne.Below(static_cast<int>(lOne.Pages().size())));
        const int lId = lOne.Below(RandomFamily::kMaxProperties);
        LeaveOnly(lOne.Pages()[lPlace], lId);
        LeaveOnly(lWhole.Pages()[lPlace], lId);
        const KLyrPushItems lItems = lyrPushItemsOf(At(lOne.Pages()[lPlace], lId));
        if (lyrPushProperty(At(lOne.Pages()[lPlace], lId)) != Result::ePushed)
            continue;
        lWhole.Pages()[lPlace]->PushPropertiesToParentInstance();
        EXPECT_EQ(DumpOf(lOne), DumpOf(lWhole));
        ++lPushed;
        lNew += lItems.mIsNewAbove ? 1 : 0;
    }
    EXPECT_GT(lPushed, 100);
    EXPECT_GT(lNew, 10);
}

TEST(PushProperty, OneAfterTheOtherDoesWhatAPushOfThePageDoes) {
    const LeakCheck lLeaks;
    int lSame = 0;
    for (unsigned lSeed = 0; lSeed < 200 && !testing::Test::HasFailure(); ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lOne(lSeed);
        RandomFamily lWhole(lSeed);
        lOne.Change(150);
        lWhole.Change(150);
        const auto lPlace = static_cast<std::size_t>(lOne.Below(static_cast<int>(lOne.Pages().size())));
        bool lAll = true;
        for (int lId = 0; lId < RandomFamily::kMaxProperties; ++lId)
            lAll = lyrPushProperty(At(lOne.Pages()[lPlace], lId)) != Result::eNoPlace && lAll;
        if (!lAll)
            continue;
        lWhole.Pages()[lPlace]->PushPropertiesToParentInstance();
        for (std::size_t i = 0; i < lOne.Pages().size(); ++i)
            EXPECT_EQ(Seen(lOne.Pages()[i]), Seen(lWhole.Pages()[i]));
        ++lSame;
    }
    EXPECT_GT(lSame, 50);
}

}  // namespace
}  // namespace lyrsdk
