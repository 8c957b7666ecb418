#include <gtest/gtest.h>

#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

int main(int pCount, char** pArguments) {
    lyrsdk::MemoryProbe::Install();
    lyrsdk::ReportRecorder::FailTestsOnReports();
    testing::InitGoogleTest(&pCount, pArguments);
    return RUN_ALL_TESTS();
}
