#pragma once

// The command line.

#include <iosfwd>
#include <string>

namespace lyrsdk::inspect {

struct Options {
    std::string file;
    // --object: a name, or an address such as node:3. Only meant when hasObject is set, because a name may be empty.
    bool hasObject = false;
    std::string object;
    // --find
    bool hasFind = false;
    std::string find;
    char separator = '/';
    bool onlyOverrides = false;
    bool prototypes = false;
    bool stats = false;
    // --dump, --dot: what is written in place of the tree.
    bool dump = false;
    bool dot = false;
    bool tree = true;
};

enum class Parsed {
    eRun,        // pOptions says what to do
    eDone,       // the help or the version was asked for and written
    eWrongUsage  // one line on the error stream says why
};

Parsed ParseOptions(int pCount, const char* const* pArguments, Options& pOptions, std::ostream& pOutput,
                    std::ostream& pErrors);

}  // namespace lyrsdk::inspect
