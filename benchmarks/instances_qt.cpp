#include <QObject>
#include <QVariant>
#include <memory>
#include <vector>

#include "benchmarks/instances_sides.h"

namespace lyrsdk::bench {

namespace {

constexpr char kName[] = "Qt copies";

// Dynamic properties are copied to every object: there is nothing to share them.
class Copies {
public:
    explicit Copies(std::size_t pCount) : mCopies(pCount) {
        for (int i = 0; i < kPageSize; ++i)
            mPrototype.setProperty(FieldName(i).c_str(), FieldValue(i));
    }
    void Create() {
        const QList<QByteArray> lNames = mPrototype.dynamicPropertyNames();
        for (std::size_t i = 0; i < mCopies.size(); ++i) {
            mCopies[i] = std::make_unique<QObject>();
            for (const QByteArray& lName : lNames)
                mCopies[i]->setProperty(lName.constData(), mPrototype.property(lName.constData()));
            for (int lField : kOverrides)
                mCopies[i]->setProperty(FieldName(lField).c_str(), OverrideValue(static_cast<int>(i)));
        }
    }
    bool Differ() const {
        for (std::size_t i = 0; i < mCopies.size(); ++i) {
            const double lOverride = mCopies[i]->property(FieldName(kOverrides[1]).c_str()).toDouble();
            if (lOverride != OverrideValue(static_cast<int>(i)) ||
                mCopies[i]->property(FieldName(0).c_str()).toDouble() != FieldValue(0))
                return false;
        }
        return true;
    }
    void Destroy() {
        for (auto& lCopy : mCopies)
            lCopy.reset();
    }
    double Count() const { return static_cast<double>(mCopies.size()); }

private:
    QObject mPrototype;
    std::vector<std::unique_ptr<QObject>> mCopies;
};

void TimeCreate(benchmark::State& pState, std::size_t pCount) {
    Copies lCopies(pCount);
    lCopies.Create();
    Require(lCopies.Differ(), "Qt copies objects");
    lCopies.Destroy();
    MeasureBetween(
        pState, lCopies.Count(), [] {}, [&] { lCopies.Create(); }, [&] { lCopies.Destroy(); });
}

void TimeDestroy(benchmark::State& pState, std::size_t pCount) {
    Copies lCopies(pCount);
    MeasureBetween(
        pState, lCopies.Count(), [&] { lCopies.Create(); }, [&] { lCopies.Destroy(); }, [] {});
}

void CountBytes(benchmark::State& pState) {
    Copies lCopies(1000);
    const std::size_t lBefore = HeapBytes();
    lCopies.Create();
    ReportAmount(pState, static_cast<double>(HeapBytes() - lBefore), lCopies.Count());
}

const Registration sgRegistration([] {
    AddSide("instance create and three sets/1000", kName, [](auto& pState) { TimeCreate(pState, 1000); });
    AddSide("instance destroy forward/1000", kName, [](auto& pState) { TimeDestroy(pState, 1000); });
    AddSide("instance bytes, three sets", kName, &CountBytes);
});

}  // namespace

}  // namespace lyrsdk::bench
