#include "lyrfilesdk/components/kbaselib/klib/kassert.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

void ReportHere() {
    LYRSDK_REPORT("some/file", 12, "something is wrong");
}

void CheckHere(bool pCondition) {
    LYRSDK_CHECK(pCondition, "some/file", 34, "pCondition");
}

bool* sgLastSite = nullptr;
int sgCalls = 0;

void Silence(const char*, const char*, unsigned long, const char*, bool* pHideForever) {
    ++sgCalls;
    sgLastSite = pHideForever;
    *pHideForever = true;
}

// Installs a handler for the length of a test.
class Handler {
public:
    explicit Handler(KAssertFailedHandler pHandler) : mBefore(KSetAssertFailedHandler(pHandler)) {
        sgCalls = 0;
        sgLastSite = nullptr;
    }
    ~Handler() { KSetAssertFailedHandler(mBefore); }

private:
    KAssertFailedHandler mBefore;
};

TEST(KAssert, HandsOverTheTextsOfTheSite) {
    ReportRecorder lRecorder;
    ReportHere();
    const std::vector<ReportRecorder::Report> lReports = lRecorder.TakeReports();
    ASSERT_EQ(lReports.size(), 1u);
    EXPECT_EQ(lReports[0].file, "some/file");
    EXPECT_EQ(lReports[0].function, "");
    EXPECT_EQ(lReports[0].line, 12u);
    EXPECT_EQ(lReports[0].message, "something is wrong");
}

TEST(KAssert, TakesNullsAsEmpty) {
    ReportRecorder lReports;
    KAssertFailed(nullptr, nullptr, 7, nullptr, nullptr);
    const std::vector<ReportRecorder::Report> lTaken = lReports.TakeReports();
    ASSERT_EQ(lTaken.size(), 1u);
    EXPECT_EQ(lTaken[0].file + lTaken[0].function + lTaken[0].message, "");
    EXPECT_EQ(lTaken[0].line, 7u);
}

TEST(KAssert, SpeaksOnEveryFailureUntilSilenced) {
    ReportRecorder lRecorder;
    for (int lTime = 0; lTime < 3; ++lTime)
        ReportHere();
    EXPECT_EQ(lRecorder.Take(), std::vector<std::string>(3, "something is wrong"));
}

TEST(KAssert, ReportsOnlyConditionsThatDoNotHold) {
    ReportRecorder lRecorder;
    CheckHere(true);
    EXPECT_TRUE(lRecorder.Take().empty());
    CheckHere(false);
    EXPECT_EQ(lRecorder.Take(), std::vector<std::string>{"pCondition"});
}

TEST(KAssert, SilencesOneSiteAndNoOther) {
    const Handler lHandler(&Silence);
    const auto lReport = [] { LYRSDK_REPORT("some/file", 1, "silenced"); };
    const auto lOther = [] { LYRSDK_REPORT("some/file", 1, "silenced"); };
    lReport();
    bool* lSite = sgLastSite;
    lReport();
    EXPECT_EQ(sgCalls, 1);
    lOther();
    EXPECT_EQ(sgCalls, 2);
    EXPECT_NE(sgLastSite, lSite);
}

TEST(KAssert, SpeaksAgainWhenTheSiteIsOpened) {
    const Handler lHandler(&Silence);
    const auto lReport = [] { LYRSDK_REPORT("some/file", 1, "opened"); };
    lReport();
    ASSERT_NE(sgLastSite, nullptr);
    *sgLastSite = false;
    lReport();
    EXPECT_EQ(sgCalls, 2);
}

TEST(KAssert, ReturnsTheHandlerBefore) {
    const Handler lHandler(&Silence);
    EXPECT_EQ(KSetAssertFailedHandler(nullptr), &Silence);
    const KAssertFailedHandler lDefault = KSetAssertFailedHandler(&Silence);
    EXPECT_NE(lDefault, nullptr);
    EXPECT_NE(lDefault, &Silence);
}

TEST(KAssert, PrintsASiteOnceByDefault) {
    const Handler lHandler(nullptr);
    testing::internal::CaptureStderr();
    for (int lTime = 0; lTime < 2; ++lTime)
        LYRSDK_REPORT("some/file", 56, "said once");
    bool lHide = false;
    KAssertFailed("other/file", "function", 7, "with a function", &lHide);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "some/file:56: said once\nother/file:7: function: with a function\n");
    EXPECT_TRUE(lHide);
}

}  // namespace
}  // namespace lyrsdk
