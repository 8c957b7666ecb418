#include "benchmarks/support/bench.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <utility>

namespace lyrsdk::bench {

void Require(bool pDone, const std::string& pMessage) {
    if (pDone)
        return;
    std::fprintf(stderr, "A side did not do its work: %s\n", pMessage.c_str());
    std::exit(1);
}

double CpuSeconds() {
    timespec lTime{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &lTime);
    return static_cast<double>(lTime.tv_sec) + static_cast<double>(lTime.tv_nsec) * 1e-9;
}

void AddSide(const std::string& pRow, const std::string& pSide, SideFunction pFunction) {
    // Peers are compared with on 64 bits.
    if (sizeof(void*) == 4 && pSide != "ours")
        return;
    benchmark::RegisterBenchmark((pRow + '|' + pSide).c_str(), std::move(pFunction))
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kNanosecond);
}

void ReportAmount(benchmark::State& pState, double pAmount, double pItems) {
    for ([[maybe_unused]] auto lPass : pState)
        pState.SetIterationTime(1);
    pState.counters["items"] = pItems;
    pState.counters["amount"] = pAmount / pItems;
}

void ReportCut(benchmark::State& pState, double pSeconds, double pItems) {
    for ([[maybe_unused]] auto lPass : pState)
        pState.SetIterationTime(pSeconds);
    pState.counters["items"] = pItems;
    pState.counters["cut"] = 1;
}

}  // namespace lyrsdk::bench

BENCHMARK_MAIN();
