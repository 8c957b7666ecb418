#include "tests/support/report_recorder.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "lyrfilesdk/components/kbaselib/klib/kassert.h"

namespace lyrsdk {
namespace {

void Report() {
    LYRSDK_REPORT("some/file", 12, "unexpected");
}

TEST(ReportRecorder, FailsTheTestWhenAReportIsNotTaken) {
    EXPECT_NONFATAL_FAILURE(
        {
            const ReportRecorder lRecorder;
            Report();
        },
        "did not take: some/file:12: unexpected");
}

TEST(ReportRecorder, FailsTheTestWhenNoneIsAlive) {
    EXPECT_NONFATAL_FAILURE(Report(), "no recorder catches: some/file:12: unexpected");
}

TEST(ReportRecorder, ForgetsWhatIsTakenOrCleared) {
    ReportRecorder lRecorder;
    Report();
    EXPECT_EQ(lRecorder.Messages().size(), 1u);
    EXPECT_EQ(lRecorder.Take().size(), 1u);
    Report();
    lRecorder.Clear();
    EXPECT_TRUE(lRecorder.Reports().empty());
}

TEST(ReportRecorder, GivesReportsToTheYoungest) {
    ReportRecorder lOuter;
    {
        ReportRecorder lInner;
        Report();
        EXPECT_EQ(lInner.Take().size(), 1u);
    }
    EXPECT_TRUE(lOuter.Messages().empty());
    Report();
    EXPECT_EQ(lOuter.Take().size(), 1u);
}

}  // namespace
}  // namespace lyrsdk
