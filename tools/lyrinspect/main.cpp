#include <unistd.h>

#include <chrono>
#include <iostream>

#include "tools/lyrinspect/inspect.h"
#include "tools/lyrinspect/memorymeter.h"

int main(int pCount, char** pArguments) {
    lyrsdk::inspect::InstallMemoryMeter();
    std::ios::sync_with_stdio(false);
    const auto lClock = [] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    };
    return lyrsdk::inspect::RunInspector(
        pCount, pArguments, {std::cout, std::cerr, isatty(STDOUT_FILENO) == 1, isatty(STDERR_FILENO) == 1, lClock});
}
