// Instances of a page of 64 properties, and chains of instances of instances.

#include <memory>
#include <utility>
#include <vector>

#include "benchmarks/instances_sides.h"
#include "lyrfilesdk/lyrsdk.h"

namespace lyrsdk::bench {

namespace {

class Prototype {
public:
    Prototype() : mRoot(KLyrPropertyHandle::Create("prototype", eUNIDENTIFIED)) {
        for (int i = 0; i < kPageSize; ++i) {
            mFields[i] = mRoot.Add(FieldName(i).c_str(), eDOUBLE1);
            const double lValue = FieldValue(i);
            mFields[i].Set(&lValue, eDOUBLE1, false);
        }
    }
    ~Prototype() { mRoot.Destroy(); }
    Prototype(const Prototype&) = delete;
    Prototype& operator=(const Prototype&) = delete;

    KLyrPropertyHandle& Root() { return mRoot; }
    int FieldId(int pIndex) const { return mFields[pIndex].GetId(); }

private:
    KLyrPropertyHandle mRoot;
    KLyrPropertyHandle mFields[kPageSize];
};

double ReadField(const KLyrPropertyHandle& pRoot, int pId) {
    double lValue = -1;
    pRoot.GetPage()->Get(pId, &lValue, eDOUBLE1);
    return lValue;
}

class Instances {
public:
    explicit Instances(int pCount) : mInstances(static_cast<std::size_t>(pCount)) {}
    ~Instances() { DestroyAll(); }
    Instances(const Instances&) = delete;
    Instances& operator=(const Instances&) = delete;

    void Create() {
        for (KLyrPropertyHandle& lInstance : mInstances)
            lInstance = KLyrPropertyHandle::Create(mPrototype.Root());
    }
    void Override() {
        for (std::size_t i = 0; i < mInstances.size(); ++i) {
            const double lValue = OverrideValue(static_cast<int>(i));
            for (int lField : kOverrides)
                KLyrPropertyHandle(mInstances[i].GetPage(), mPrototype.FieldId(lField)).Set(&lValue, eDOUBLE1, false);
        }
    }
    bool Differ() {
        for (std::size_t i = 0; i < mInstances.size(); ++i) {
            if (ReadField(mInstances[i], mPrototype.FieldId(kOverrides[1])) != OverrideValue(static_cast<int>(i)) ||
                ReadField(mInstances[i], mPrototype.FieldId(0)) != FieldValue(0))
                return false;
        }
        return true;
    }
    void DestroyAll() {
        for (KLyrPropertyHandle& lInstance : mInstances)
            lInstance.Destroy();
    }
    void Destroy(const std::vector<int>& pOrder) {
        for (int lIndex : pOrder)
            mInstances[static_cast<std::size_t>(lIndex)].Destroy();
    }
    void DestroyPrototype() { mPrototype.Root().Destroy(); }
    double Count() const { return static_cast<double>(mInstances.size()); }
    Prototype& Proto() { return mPrototype; }
    KLyrPropertyHandle& At(std::size_t pIndex) { return mInstances[pIndex]; }

private:
    Prototype mPrototype;
    std::vector<KLyrPropertyHandle> mInstances;
};

enum class Part { eCreate, eSets, eBoth };

void TimeMaking(benchmark::State& pState, int pCount, Part pPart) {
    Instances lInstances(pCount);
    lInstances.Create();
    lInstances.Override();
    Require(lInstances.Differ(), "ours makes instances");
    lInstances.DestroyAll();
    const auto lPrepare = [&] {
        if (pPart == Part::eSets)
            lInstances.Create();
    };
    const auto lWork = [&] {
        if (pPart != Part::eSets)
            lInstances.Create();
        if (pPart != Part::eCreate)
            lInstances.Override();
    };
    MeasureBetween(pState, lInstances.Count(), lPrepare, lWork, [&] { lInstances.DestroyAll(); });
}

std::vector<int> Order(const std::string& pName, int pCount) {
    if (pName == "random")
        return ShuffledIds(pCount, 10);
    std::vector<int> lOrder;
    for (int i = 0; i < pCount; ++i)
        lOrder.push_back(pName == "backward" ? pCount - 1 - i : i);
    return lOrder;
}

void TimeDestroying(benchmark::State& pState, int pCount, const std::string& pOrder) {
    const std::vector<int> lOrder = Order(pOrder, pCount);
    std::unique_ptr<Instances> lInstances;
    const auto lPrepare = [&] {
        lInstances = std::make_unique<Instances>(pCount);
        lInstances->Create();
        lInstances->Override();
        Require(lInstances->Proto().Root().GetReferencedByCount() == pCount, "ours makes instances");
    };
    const auto lWork = [&] {
        if (pOrder == "prototype first")
            lInstances->DestroyPrototype();
        lInstances->Destroy(lOrder);
    };
    const auto lClear = [&] {
        if (pOrder != "prototype first")
            Require(lInstances->Proto().Root().GetReferencedByCount() == 0, "ours destroys instances");
        lInstances.reset();
    };
    MeasureBetween(pState, pCount, lPrepare, lWork, lClear);
}

// Reads all properties of one page: as its own, or through an instance of it with three overrides.
void TimeReads(benchmark::State& pState, bool pThrough) {
    Instances lInstances(1);
    lInstances.Create();
    lInstances.Override();
    const KLyrPropertyHandle lRoot = pThrough ? lInstances.At(0) : lInstances.Proto().Root();
    std::vector<KLyrPropertyHandle> lFields;
    double lExpected = 0;
    for (int lField : RandomIds(kQuestionCount, kPageSize, 11)) {
        lFields.emplace_back(lRoot.GetPage(), lInstances.Proto().FieldId(lField));
        const bool lOverridden = lField == kOverrides[0] || lField == kOverrides[1] || lField == kOverrides[2];
        lExpected += pThrough && lOverridden ? OverrideValue(0) : FieldValue(lField);
    }
    const auto lSum = [&] {
        double lTotal = 0;
        for (const KLyrPropertyHandle& lField : lFields) {
            double lValue = 0;
            lField.Get(&lValue, eDOUBLE1);
            lTotal += lValue;
        }
        return lTotal;
    };
    Require(lSum() == lExpected, "ours reads through an instance");
    Measure(pState, kQuestionCount, [&] { benchmark::DoNotOptimize(lSum()); });
}

// Whether the bytes are those that the library asks for, or all that its memory takes from malloc.
void CountInstanceBytes(benchmark::State& pState, bool pOverrides, bool pRequested) {
    constexpr int kCount = 10000;
    Instances lInstances(kCount);
    const auto lMake = [&] {
        lInstances.Create();
        if (pOverrides)
            lInstances.Override();
    };
    if (pRequested) {
        const LibraryMemory lMemory;
        lMake();
        ReportAmount(pState, static_cast<double>(lMemory.RequestedBytes()), kCount);
        lInstances.DestroyAll();
        return;
    }
    const std::size_t lBefore = HeapBytes();
    lMake();
    ReportAmount(pState, static_cast<double>(HeapBytes() - lBefore), kCount);
}

void AddInstanceRows() {
    for (int lCount : {1000, 10000}) {
        const std::string lOf = "/" + std::to_string(lCount);
        AddSide("instance create" + lOf, "ours", [lCount](auto& pState) { TimeMaking(pState, lCount, Part::eCreate); });
        AddSide("instance three sets" + lOf, "ours",
                [lCount](auto& pState) { TimeMaking(pState, lCount, Part::eSets); });
        AddSide("instance create and three sets" + lOf, "ours",
                [lCount](auto& pState) { TimeMaking(pState, lCount, Part::eBoth); });
        for (const char* lOrder : {"forward", "backward", "random", "prototype first"}) {
            AddSide(std::string("instance destroy ") + lOrder + lOf, "ours",
                    [lCount, lOrder](auto& pState) { TimeDestroying(pState, lCount, lOrder); });
        }
    }
    AddSide("read own value", "ours", [](auto& pState) { TimeReads(pState, false); });
    AddSide("read through instance", "ours", [](auto& pState) { TimeReads(pState, true); });
    for (bool lOverrides : {true, false}) {
        const std::string lRow = lOverrides ? "instance bytes, three sets" : "instance bytes, no sets";
        AddSide(lRow, "ours", [lOverrides](auto& pState) { CountInstanceBytes(pState, lOverrides, false); });
        AddSide(lRow + ", requested", "ours",
                [lOverrides](auto& pState) { CountInstanceBytes(pState, lOverrides, true); });
    }
}

// A page, an instance of it, an instance of that one, and so on.
class Chain {
public:
    explicit Chain(int pDepth) {
        KLyrPropertyHandle lRoot = mPrototype.Root();
        for (int i = 0; i < pDepth; ++i) {
            lRoot = KLyrPropertyHandle::Create(lRoot);
            mRoots.push_back(lRoot);
        }
    }
    ~Chain() { Destroy(); }
    Chain(const Chain&) = delete;
    Chain& operator=(const Chain&) = delete;

    // From the last one up, so that no page has anything to hand down.
    void Destroy() {
        while (!mRoots.empty()) {
            mRoots.back().Destroy();
            mRoots.pop_back();
        }
    }
    // The property, seen through the whole chain.
    KLyrPropertyHandle Field(int pIndex) const {
        return KLyrPropertyHandle(mRoots.back().GetPage(), mPrototype.FieldId(pIndex));
    }
    const KLyrPropertyHandle& Last() const { return mRoots.back(); }

private:
    Prototype mPrototype;
    std::vector<KLyrPropertyHandle> mRoots;
};

template <typename Question>
void TimeChain(benchmark::State& pState, int pDepth, Question pQuestion) {
    const Chain lChain(pDepth);
    Require(pQuestion(lChain, 7), "ours sees through a chain");
    Measure(pState, 1, [&] { benchmark::DoNotOptimize(pQuestion(lChain, 7)); });
}

void TimeChainDestroy(benchmark::State& pState, int pDepth) {
    std::vector<std::unique_ptr<Chain>> lChains(static_cast<std::size_t>(1 + 1000 / pDepth));
    const auto lPrepare = [&] {
        for (auto& lChain : lChains) {
            lChain = std::make_unique<Chain>(pDepth);
            Require(lChain->Field(7).GetType() == eDOUBLE1, "ours makes chains");
        }
    };
    const auto lWork = [&] {
        for (auto& lChain : lChains)
            lChain->Destroy();
    };
    MeasureBetween(pState, static_cast<double>(lChains.size()), lPrepare, lWork, [] {});
}

void AddChainRows() {
    for (int lDepth : {1, 10, 100, 1000}) {
        const std::string lOf = "/" + std::to_string(lDepth);
        AddSide("chain get" + lOf, "ours", [lDepth](auto& pState) {
            TimeChain(pState, lDepth, [](const Chain& pChain, int pField) {
                double lValue = 0;
                return pChain.Field(pField).Get(&lValue, eDOUBLE1) && lValue == FieldValue(pField);
            });
        });
        AddSide("chain default value" + lOf, "ours", [lDepth](auto& pState) {
            TimeChain(pState, lDepth, [](const Chain& pChain, int pField) {
                double lValue = 0;
                return pChain.Field(pField).GetDefaultValue(&lValue, eDOUBLE1) && lValue == FieldValue(pField);
            });
        });
        AddSide("chain flags" + lOf, "ours", [lDepth](auto& pState) {
            TimeChain(pState, lDepth, [](const Chain& pChain, int pField) {
                return pChain.Field(pField).GetFlags() == LyrPropertyFlags::eNO_FLAG;
            });
        });
        AddSide("chain sibling" + lOf, "ours", [lDepth](auto& pState) {
            TimeChain(pState, lDepth, [](const Chain& pChain, int pField) {
                return pChain.Field(pField).GetSibling() == pChain.Field(pField + 1);
            });
        });
        AddSide("chain child" + lOf, "ours", [lDepth](auto& pState) {
            TimeChain(pState, lDepth,
                      [](const Chain& pChain, int) { return pChain.Last().GetChild() == pChain.Field(0); });
        });
        AddSide("chain destroy" + lOf, "ours", [lDepth](auto& pState) { TimeChainDestroy(pState, lDepth); });
    }
}

const Registration sgRegistration([] {
    AddInstanceRows();
    AddChainRows();
});

}  // namespace

}  // namespace lyrsdk::bench
