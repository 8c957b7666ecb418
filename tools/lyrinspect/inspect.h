#pragma once

// The inspector as a function: a command line in, text and an exit status out.

#include <functional>
#include <iosfwd>

namespace lyrsdk::inspect {

struct Surroundings {
    std::ostream& output;
    std::ostream& errors;
    // Whether they lead to a terminal. A progress bar is drawn only on one, and never among the lines of the output.
    bool outputIsTerminal = false;
    bool errorsIsTerminal = false;
    // Seconds from any origin.
    std::function<double()> clock;
};

enum ExitStatus : int {
    eExitDone = 0,
    eExitUnreadable = 1,  // or what was asked for is not in the file; one line on errors says why
    eExitUsage = 2,
};

// Never throws.
int RunInspector(int pCount, const char* const* pArguments, const Surroundings& pSurroundings);

}  // namespace lyrsdk::inspect
