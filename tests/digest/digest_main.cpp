// Prints one number for each group of results. What it prints is the same for every compiler, word size and
// optimisation level.

#include <cstdio>

#include "tests/digest/digest.h"

namespace {

bool Print(const char* pName, std::uint64_t pDigest) {
    std::printf("%-20s %016llx\n", pName, static_cast<unsigned long long>(pDigest));
    return pDigest != 0;
}

}  // namespace

int main() {
    Print("conversions", lyrsdk::DigestOfConversions());
    Print("random conversions", lyrsdk::DigestOfRandomConversions());
    Print("number texts", lyrsdk::DigestOfNumberTexts());
    Print("parsing", lyrsdk::DigestOfParsing());
    Print("times and units", lyrsdk::DigestOfTimesAndUnits());
    Print("comparisons", lyrsdk::DigestOfComparisons());
    return Print("pages", lyrsdk::DigestOfPages()) ? 0 : 1;
}
