#include "tools/lyrinspect/progress.h"

#include <gtest/gtest.h>

#include <sstream>

namespace lyrsdk::inspect {
namespace {

// A bar with a clock that the test moves.
struct Bar {
    explicit Bar(bool pTerminal) : progress(output, pTerminal, [this] { return now; }) {}

    void Steps(int pCount) {
        for (int i = 0; i < pCount; ++i)
            progress.Step();
    }
    std::string Taken() {
        std::string lText = output.str();
        output.str("");
        return lText;
    }

    double now = 100;
    std::ostringstream output;
    Progress progress;
};

TEST(Progress, DrawsNothingWithinTheFirstSecond) {
    Bar lBar(true);
    lBar.now = 101;
    lBar.progress.Begin("building", 1000);
    lBar.Steps(1000);
    lBar.progress.Clear();
    EXPECT_EQ(lBar.Taken(), "");
}

TEST(Progress, DrawsNothingWithoutATerminal) {
    Bar lBar(false);
    lBar.now = 200;
    lBar.progress.Begin("building", 1000);
    lBar.Steps(1000);
    lBar.progress.Clear();
    EXPECT_EQ(lBar.Taken(), "");
}

TEST(Progress, DrawsABarAfterASecondAndWipesIt) {
    Bar lBar(true);
    lBar.progress.Begin("building", 128);
    lBar.now = 101.5;
    lBar.Steps(64);
    EXPECT_EQ(lBar.Taken(), "\r\x1B[Kbuilding [###############...............] 50%");
    lBar.progress.Clear();
    EXPECT_EQ(lBar.Taken(), "\r\x1B[K");
    lBar.progress.Clear();
    EXPECT_EQ(lBar.Taken(), "");
}

TEST(Progress, DrawsAtMostTenTimesASecond) {
    Bar lBar(true);
    lBar.now = 101.5;
    lBar.progress.Begin("building", 1000);
    EXPECT_NE(lBar.Taken(), "");
    lBar.now = 101.55;
    lBar.Steps(640);
    EXPECT_EQ(lBar.Taken(), "");
    lBar.now = 101.65;
    lBar.Steps(64);
    EXPECT_NE(lBar.Taken(), "");
}

TEST(Progress, ShowsAPhaseOfUnknownLengthWithoutABarAndNeverPassesTheEnd) {
    Bar lBar(true);
    lBar.now = 102;
    lBar.progress.Begin("parsing", 0);
    EXPECT_EQ(lBar.Taken(), "\r\x1B[Kparsing");
    lBar.now = 103;
    lBar.progress.Begin("building", 10);
    lBar.now = 104;
    lBar.Steps(64);
    EXPECT_NE(lBar.Taken().find("100%"), std::string::npos);
}

TEST(Progress, WipesTheBarWhenItGoes) {
    std::ostringstream lOutput;
    double lNow = 0;
    {
        Progress lProgress(lOutput, true, [&lNow] { return lNow; });
        lNow = 5;
        lProgress.Begin("parsing", 0);
    }
    EXPECT_EQ(lOutput.str(), "\r\x1B[Kparsing\r\x1B[K");
}

}  // namespace
}  // namespace lyrsdk::inspect
