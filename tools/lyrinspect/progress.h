#pragma once

// A progress bar for work that takes more than a second.

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>

namespace lyrsdk::inspect {

// Draws nothing until kDelay seconds have passed, and then at most kRate times a second; what was drawn is wiped when
// the bar goes. Without a terminal it draws nothing at all.
class Progress {
public:
    using Clock = std::function<double()>;

    static constexpr double kDelay = 1.0;
    static constexpr double kRate = 10.0;

    // pClock gives seconds from any origin. pOutput must outlive the bar.
    Progress(std::ostream& pOutput, bool pTerminal, Clock pClock);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Begins a phase of pTotal steps; 0 is a phase of unknown length.
    void Begin(const char* pPhase, std::size_t pTotal);

    // A step of the phase is done. Looks at the clock now and then, so that it may be called for every object.
    void Step();

    // Wipes the bar, so that other lines can be written.
    void Clear();

private:
    void Draw();

    std::ostream& mOutput;
    bool mTerminal;
    Clock mClock;
    double mStart;
    double mLast;
    std::string mPhase;
    std::size_t mTotal = 0;
    std::size_t mDone = 0;
    bool mDrawn = false;
};

}  // namespace lyrsdk::inspect
