#pragma once

// Rows of the table of benchmarks, and their sides.
//
// A row is a piece of work; a side is one way to do it: this library's or a peer's. A side counts the CPU time of its
// thread, so that other programs on the machine add little, and only while the work is done: what it needs is made, and
// what it leaves is cleared away, outside. Before it counts, a side shows that it does the work.
//
// In Google Benchmark's terms a side is a benchmark with manual time, named "row|side", with these counters:
//   items   how many operations the one iteration of a repetition stands for
//   cut     1 when the work was given up before its end; items says how far it got
//   amount  in place of a time, what the row counts: bytes, allocations

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

namespace lyrsdk::bench {

// Ends the program with a message when a side did not do its work.
void Require(bool pDone, const std::string& pMessage);

// The CPU time that this thread has used.
double CpuSeconds();

using SideFunction = std::function<void(benchmark::State&)>;
void AddSide(const std::string& pRow, const std::string& pSide, SideFunction pFunction);

// A file-level object of this class adds the sides that the file has.
struct Registration {
    explicit Registration(void (*pAddSides)()) { pAddSides(); }
};

// A repetition makes passes over the work until it has timed so much, or has spent so much with all that goes around
// the passes. Reading the clock takes a quarter of a microsecond; short passes are timed several at a time.
constexpr double kTimed = 0.02;
constexpr double kSpent = 0.1;
constexpr double kShortestPass = 50e-6;

// Times work that has several passes in one, each between what makes it ready and what clears it away.
template <typename Prepare, typename Work, typename Clear>
void MeasureBetween(benchmark::State& pState, double pItems, Prepare pPrepare, Work pWork, Clear pClear) {
    for ([[maybe_unused]] auto lRepetition : pState) {
        const double lBegin = CpuSeconds();
        double lTimed = 0;
        double lPasses = 0;
        do {
            pPrepare();
            const double lStart = CpuSeconds();
            pWork();
            lTimed += CpuSeconds() - lStart;
            ++lPasses;
            pClear();
        } while (lTimed < kTimed && CpuSeconds() - lBegin < kSpent);
        pState.SetIterationTime(lTimed);
        pState.counters["items"] = pItems * lPasses;
    }
}

// Times work that can be repeated as it is.
template <typename Work>
void Measure(benchmark::State& pState, double pItems, Work pWork) {
    int lCount = 1;
    const auto lMany = [&] {
        const double lStart = CpuSeconds();
        for (int i = 0; i < lCount; ++i)
            pWork();
        return CpuSeconds() - lStart;
    };
    double lTimed = lMany();
    // What was timed last counts only if it took long enough.
    while (lTimed < kShortestPass) {
        lCount *= 2;
        lTimed = lMany();
    }
    for ([[maybe_unused]] auto lRepetition : pState) {
        double lPasses = lCount;
        for (; lTimed < kTimed; lPasses += lCount)
            lTimed += lMany();
        pState.SetIterationTime(lTimed);
        pState.counters["items"] = pItems * lPasses;
    }
}

// Reports an amount for each of pItems things.
void ReportAmount(benchmark::State& pState, double pAmount, double pItems);

// Reports work that was given up after pSeconds, pItems far.
void ReportCut(benchmark::State& pState, double pSeconds, double pItems);

}  // namespace lyrsdk::bench
