#pragma once

// What is timed on an object of 64 named properties of mixed types. A side is a class of which an object is made with
// the default values of its types or with the values below:
//
//   kName                        the side's name
//   Side(bool pValues)           makes the object and its properties
//   double GetByName(name)       looks a double up and reads it
//   void Resolve()               gets hold of the doubles, and then, for the n-th of them:
//   double Get(n); void Set(n, value); void SetChecked(n, value)

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/support/bench.h"
#include "benchmarks/support/heap.h"
#include "benchmarks/support/random.h"

namespace lyrsdk::bench {

constexpr int kPropertyCount = 64;

enum class Kind { eDouble, eInt, eBool, eVector, eText, eFloat };

constexpr Kind KindOf(int pIndex) {
    constexpr Kind kKinds[8] = {Kind::eDouble, Kind::eInt,  Kind::eDouble, Kind::eBool,
                                Kind::eVector, Kind::eText, Kind::eFloat,  Kind::eInt};
    return kKinds[pIndex % 8];
}

inline const char* PropertyName(int pIndex) {
    static const std::vector<std::string> sNames = [] {
        const char* const kWords[8] = {"Opacity",     "Layer", "Intensity", "Visible",
                                       "Translation", "Label", "Scale",     "Id"};
        std::vector<std::string> lNames;
        for (int i = 0; i < kPropertyCount; ++i)
            lNames.push_back(kWords[i % 8] + std::to_string(i / 8));
        return lNames;
    }();
    return sNames[static_cast<std::size_t>(pIndex)].c_str();
}

// The values that an object is made with.
constexpr double DoubleValue(int pIndex) {
    return pIndex * 1.5 + 0.25;
}
constexpr char kTextValue[] = "a label of an object";

// Where the doubles are among the properties.
constexpr int kDoubleCount = kPropertyCount / 4;
constexpr int DoubleIndex(int pNumber) {
    return pNumber / 2 * 8 + pNumber % 2 * 2;
}

// An order in which to ask for the doubles, the same for every side: each of them many times.
inline const std::vector<int>& DoubleOrder() {
    static const std::vector<int> sOrder = RandomIds(kQuestionCount, kDoubleCount, 4);
    return sOrder;
}

inline double SumOfDoubles() {
    double lSum = 0;
    for (int lNumber : DoubleOrder())
        lSum += DoubleValue(DoubleIndex(lNumber));
    return lSum;
}

template <typename Side>
double SumByName(Side& pSide) {
    double lSum = 0;
    for (int lNumber : DoubleOrder())
        lSum += pSide.GetByName(PropertyName(DoubleIndex(lNumber)));
    return lSum;
}

template <typename Side>
double SumByHandle(Side& pSide) {
    double lSum = 0;
    for (int lNumber : DoubleOrder())
        lSum += pSide.Get(lNumber);
    return lSum;
}

template <typename Side>
void TimeCreate(benchmark::State& pState, bool pValues) {
    constexpr std::size_t kObjects = 64;
    std::vector<std::unique_ptr<Side>> lObjects(kObjects);
    const auto lCreate = [&] {
        for (auto& lObject : lObjects)
            lObject = std::make_unique<Side>(pValues);
    };
    lCreate();
    for (auto& lObject : lObjects)
        Require(SumByName(*lObject) == (pValues ? SumOfDoubles() : 0), std::string(Side::kName) + " creates objects");
    lObjects = std::vector<std::unique_ptr<Side>>(kObjects);
    MeasureBetween(
        pState, kObjects * kPropertyCount, [] {}, lCreate,
        [&] { lObjects = std::vector<std::unique_ptr<Side>>(kObjects); });
}

template <typename Side>
void TimeDestroy(benchmark::State& pState) {
    constexpr std::size_t kObjects = 64;
    std::vector<std::unique_ptr<Side>> lObjects(kObjects);
    const auto lCreate = [&] {
        for (auto& lObject : lObjects)
            lObject = std::make_unique<Side>(true);
    };
    const auto lDestroy = [&] {
        for (auto& lObject : lObjects)
            lObject.reset();
    };
    MeasureBetween(pState, kObjects * kPropertyCount, lCreate, lDestroy, [] {});
}

template <typename Side>
void CountObjectBytes(benchmark::State& pState) {
    constexpr std::size_t kObjects = 256;
    std::vector<std::unique_ptr<Side>> lObjects(kObjects);
    // What a class needs once.
    const Side lFirst(true);
    const std::size_t lBefore = HeapBytes();
    for (auto& lObject : lObjects)
        lObject = std::make_unique<Side>(true);
    const std::size_t lAfter = HeapBytes();
    Require(lAfter > lBefore, std::string(Side::kName) + " takes memory");
    ReportAmount(pState, static_cast<double>(lAfter - lBefore), kObjects * kPropertyCount);
}

template <typename Side>
void TimeFindAndGet(benchmark::State& pState) {
    Side lObject(true);
    Require(SumByName(lObject) == SumOfDoubles(), std::string(Side::kName) + " finds");
    Measure(pState, kQuestionCount, [&] { benchmark::DoNotOptimize(SumByName(lObject)); });
}

template <typename Side>
void TimeGet(benchmark::State& pState) {
    Side lObject(true);
    lObject.Resolve();
    Require(SumByHandle(lObject) == SumOfDoubles(), std::string(Side::kName) + " gets");
    Measure(pState, kQuestionCount, [&] { benchmark::DoNotOptimize(SumByHandle(lObject)); });
}

// Every value differs from the one before.
template <typename Side, void (Side::*SetOne)(int, double)>
void TimeSet(benchmark::State& pState) {
    Side lObject(true);
    lObject.Resolve();
    double lValue = 0.5;
    const auto lSet = [&] {
        for (int lNumber : DoubleOrder())
            (lObject.*SetOne)(lNumber, lValue += 1);
    };
    lSet();
    Measure(pState, kQuestionCount, lSet);
    std::vector<double> lLast(kDoubleCount);
    double lBefore = lValue - kQuestionCount;
    for (int lNumber : DoubleOrder())
        lLast[static_cast<std::size_t>(lNumber)] = lBefore += 1;
    for (int i = 0; i < kDoubleCount; ++i)
        Require(lObject.Get(i) == lLast[static_cast<std::size_t>(i)], std::string(Side::kName) + " sets");
}

template <typename Side>
void AddObjectSides() {
    AddSide("create object with values/64", Side::kName,
            [](benchmark::State& pState) { TimeCreate<Side>(pState, true); });
    AddSide("destroy object/64", Side::kName, &TimeDestroy<Side>);
    AddSide("property bytes/64", Side::kName, &CountObjectBytes<Side>);
}

// Of those whose properties are made with each object, and not once with the class.
template <typename Side>
void AddCreateSides() {
    AddSide("create object/64", Side::kName, [](benchmark::State& pState) { TimeCreate<Side>(pState, false); });
    AddObjectSides<Side>();
}

template <typename Side>
void AddNameSides() {
    AddSide("find and get/64", Side::kName, &TimeFindAndGet<Side>);
}

template <typename Side>
void AddHandleSides() {
    AddSide("get double/64", Side::kName, &TimeGet<Side>);
    AddSide("set double/64", Side::kName, &TimeSet<Side, &Side::Set>);
    AddSide("set double checked/64", Side::kName, &TimeSet<Side, &Side::SetChecked>);
}

}  // namespace lyrsdk::bench
