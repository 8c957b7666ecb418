#include "tests/support/report_recorder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <utility>

#include "lyrfilesdk/components/kbaselib/klib/kassert.h"

namespace lyrsdk {
namespace {

std::atomic<ReportRecorder*> sgYoungest{nullptr};

std::string Text(const ReportRecorder::Report& pReport) {
    return pReport.file + ":" + std::to_string(pReport.line) + ": " + pReport.message;
}

}  // namespace

ReportRecorder::ReportRecorder() : mOuter(sgYoungest.exchange(this)) {}

ReportRecorder::~ReportRecorder() {
    sgYoungest = mOuter;
    for (const Report& lReport : mReports)
        ADD_FAILURE() << "a report that the test did not take: " << Text(lReport);
}

const std::vector<ReportRecorder::Report>& ReportRecorder::Reports() const {
    return mReports;
}

std::vector<std::string> ReportRecorder::Messages() const {
    const std::lock_guard<std::mutex> lLock(mMutex);
    std::vector<std::string> lMessages;
    for (const Report& lReport : mReports)
        lMessages.push_back(lReport.message);
    return lMessages;
}

std::vector<ReportRecorder::Report> ReportRecorder::TakeReports() {
    const std::lock_guard<std::mutex> lLock(mMutex);
    return std::exchange(mReports, {});
}

std::vector<std::string> ReportRecorder::Take() {
    std::vector<std::string> lMessages = Messages();
    Clear();
    return lMessages;
}

void ReportRecorder::Clear() {
    const std::lock_guard<std::mutex> lLock(mMutex);
    mReports.clear();
}

void ReportRecorder::FailTestsOnReports() {
    KSetAssertFailedHandler(&Receive);
}

void ReportRecorder::Receive(const char* pFile, const char* pFunction, unsigned long pLine, const char* pMessage,
                             bool* pHideForever) {
    Report lReport{pFile, pFunction, pLine, pMessage};
    if (!pHideForever || *pHideForever)
        ADD_FAILURE() << "a report without an open check site: " << Text(lReport);
    if (ReportRecorder* lRecorder = sgYoungest) {
        const std::lock_guard<std::mutex> lLock(lRecorder->mMutex);
        lRecorder->mReports.push_back(std::move(lReport));
    } else {
        ADD_FAILURE() << "a report that no recorder catches: " << Text(lReport);
    }
}

}  // namespace lyrsdk
