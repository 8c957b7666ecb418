#pragma once

// Catches the library's reports for a test.
//
// While a recorder is alive it receives every report; the test takes what it expects, and whatever nobody took by the
// end of the recorder's life fails the test. While none is alive, every report fails the running test. Recorders nest:
// the youngest receives. Check sites are never silenced, so a test does not depend on which test ran before it.

#include <mutex>
#include <string>
#include <vector>

namespace lyrsdk {

class ReportRecorder {
public:
    struct Report {
        std::string file;
        std::string function;
        unsigned long line;
        std::string message;
    };

    ReportRecorder();
    ~ReportRecorder();
    ReportRecorder(const ReportRecorder&) = delete;
    ReportRecorder& operator=(const ReportRecorder&) = delete;

    // What has come so far and has not been taken, oldest first.
    const std::vector<Report>& Reports() const;
    std::vector<std::string> Messages() const;

    // The same, and forgets it.
    std::vector<Report> TakeReports();
    std::vector<std::string> Take();

    // Forgets what has come so far.
    void Clear();

    // Makes every report that no recorder catches a failure of the running test. The test main calls it once.
    static void FailTestsOnReports();

private:
    static void Receive(const char* pFile, const char* pFunction, unsigned long pLine, const char* pMessage,
                        bool* pHideForever);

    ReportRecorder* mOuter;
    mutable std::mutex mMutex;
    std::vector<Report> mReports;
};

}  // namespace lyrsdk
