#pragma once

// Rows of the table of benchmarks, and their sides.
//
// A row is a piece of work; a side is one way to do it: this library's or a peer's. A side counts the CPU time of its
// thread, so that other programs on the machine add little, and only while the work is done: what it needs is made, and
// what it leaves is cleared away, outside. Before it counts, a side shows that it does the work.
//
// In Google Benchmark's terms a side is a benchmark with manual time, named "row|side", with these counters:
//   items   how many operations one iteration stands for
//   cut     1 when the work was given up before its end; items says how far it got
//   amount  in place of a time, what the row counts: bytes, allocations

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <utility>

namespace lyrsdk::bench {

// Ends the program with a message when a side did not do its work.
void Require(bool pDone, const std::string& pMessage);

// The CPU time that this thread has used.
double CpuSeconds();

using SideFunction = std::function<void(benchmark::State&)>;
// With pPasses just so many passes are made in a repetition, where making a pass ready takes far longer than the pass.
void AddSide(const std::string& pRow, const std::string& pSide, SideFunction pFunction, int pPasses = 0);

// A file-level object of this class adds the sides that the file has.
struct Registration {
    explicit Registration(void (*pAddSides)()) { pAddSides(); }
};

// No pass is timed alone that is shorter than this: reading the clock takes a quarter of a microsecond. One that is
// longer than the other limit counts as it is, and is not tried out before.
constexpr double kShortestPass = 50e-6;
constexpr double kLongPass = 0.1;

// Times work that has several passes in one, each between what makes it ready and what clears it away.
template <typename Prepare, typename Work, typename Clear>
void MeasureBetween(benchmark::State& pState, double pItems, Prepare pPrepare, Work pWork, Clear pClear) {
    for ([[maybe_unused]] auto lPass : pState) {
        pPrepare();
        const double lStart = CpuSeconds();
        pWork();
        pState.SetIterationTime(CpuSeconds() - lStart);
        pClear();
    }
    pState.counters["items"] = pItems;
}

// Times work that can be repeated as it is.
template <typename Work>
void Measure(benchmark::State& pState, double pItems, Work pWork) {
    double lSeconds = 0;
    int lCount = 1;
    for (;; lCount *= 2) {
        const double lStart = CpuSeconds();
        for (int i = 0; i < lCount; ++i)
            pWork();
        lSeconds = CpuSeconds() - lStart;
        if (lSeconds >= kShortestPass)
            break;
    }
    bool lFirst = true;
    for ([[maybe_unused]] auto lPass : pState) {
        if (std::exchange(lFirst, false) && lSeconds >= kLongPass) {
            pState.SetIterationTime(lSeconds);
            continue;
        }
        const double lStart = CpuSeconds();
        for (int i = 0; i < lCount; ++i)
            pWork();
        pState.SetIterationTime(CpuSeconds() - lStart);
    }
    pState.counters["items"] = pItems * lCount;
}

// Reports an amount for each of pItems things.
void ReportAmount(benchmark::State& pState, double pAmount, double pItems);

// Reports work that was given up after pSeconds, pItems far.
void ReportCut(benchmark::State& pState, double pSeconds, double pItems);

}  // namespace lyrsdk::bench
