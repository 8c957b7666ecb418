#include "tools/lyrinspect/progress.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace lyrsdk::inspect {

namespace {

constexpr std::size_t kWidth = 30;
// Reading the clock costs about as much as a small object does.
constexpr std::size_t kStepsPerLook = 64;

}  // namespace

Progress::Progress(std::ostream& pOutput, bool pTerminal, Clock pClock)
    : mOutput(pOutput), mTerminal(pTerminal), mClock(std::move(pClock)), mStart(mClock()), mLast(mStart) {}

Progress::~Progress() {
    Clear();
}

void Progress::Begin(const char* pPhase, std::size_t pTotal) {
    mPhase = pPhase;
    mTotal = pTotal;
    mDone = 0;
    if (mTerminal)
        Draw();
}

void Progress::Step() {
    ++mDone;
    if (mTerminal && mDone % kStepsPerLook == 0)
        Draw();
}

void Progress::Clear() {
    if (mDrawn)
        mOutput << "\r\x1B[K" << std::flush;
    mDrawn = false;
}

void Progress::Draw() {
    const double lNow = mClock();
    if (lNow - mStart <= kDelay || (mDrawn && lNow - mLast < 1 / kRate))
        return;
    mLast = lNow;
    mDrawn = true;
    mOutput << "\r\x1B[K" << mPhase;
    if (mTotal > 0) {
        const std::size_t lDone = std::min(mDone, mTotal);
        const std::size_t lFilled = kWidth * lDone / mTotal;
        mOutput << " [" << std::string(lFilled, '#') << std::string(kWidth - lFilled, '.') << "] "
                << 100 * lDone / mTotal << '%';
    }
    mOutput << std::flush;
}

}  // namespace lyrsdk::inspect
