// An object of 64 properties: making it, reading and writing its doubles.

#include <map>
#include <unordered_map>

#include "benchmarks/objects_sides.h"
#include "benchmarks/variants.h"
#include "lyrfilesdk/lyrsdk.h"

namespace lyrsdk::bench {

namespace {

class OurObject {
public:
    static constexpr char kName[] = "ours";

    explicit OurObject(bool pValues) : mRoot(KLyrPropertyHandle::Create("object", eUNIDENTIFIED)) {
        for (int i = 0; i < kPropertyCount; ++i) {
            KLyrPropertyHandle lProperty = mRoot.Add(PropertyName(i), TypeOf(KindOf(i)));
            if (pValues)
                SetValue(lProperty, i);
        }
    }
    ~OurObject() { mRoot.Destroy(); }
    OurObject(const OurObject&) = delete;
    OurObject& operator=(const OurObject&) = delete;

    double GetByName(const char* pName) const {
        double lValue = -1;
        mRoot.Find(pName, true).Get(&lValue, eDOUBLE1);
        return lValue;
    }
    void Resolve() {
        for (int i = 0; i < kDoubleCount; ++i)
            mDoubles[i] = mRoot.Find(PropertyName(DoubleIndex(i)), true);
    }
    double Get(int pNumber) const {
        double lValue = -1;
        mDoubles[pNumber].Get(&lValue, eDOUBLE1);
        return lValue;
    }
    void Set(int pNumber, double pValue) { mDoubles[pNumber].Set(&pValue, eDOUBLE1, false); }
    void SetChecked(int pNumber, double pValue) { mDoubles[pNumber].Set(&pValue, eDOUBLE1, true); }

private:
    static ELyrType TypeOf(Kind pKind) {
        switch (pKind) {
            case Kind::eDouble:
                return eDOUBLE1;
            case Kind::eInt:
                return eINTEGER1;
            case Kind::eBool:
                return eBOOL1;
            case Kind::eVector:
                return eDOUBLE3;
            case Kind::eText:
                return eSTRING;
            case Kind::eFloat:
                return eFLOAT1;
        }
        return eUNIDENTIFIED;
    }
    static void SetValue(KLyrPropertyHandle& pProperty, int pIndex) {
        const double lDouble = DoubleValue(pIndex);
        const bool lBool = true;
        const float lFloat = 0.5F;
        switch (KindOf(pIndex)) {
            case Kind::eDouble:
                pProperty.Set(&lDouble, eDOUBLE1, false);
                break;
            case Kind::eInt:
                pProperty.Set(&pIndex, eINTEGER1, false);
                break;
            case Kind::eBool:
                pProperty.Set(&lBool, eBOOL1, false);
                break;
            case Kind::eFloat:
                pProperty.Set(&lFloat, eFLOAT1, false);
                break;
            case Kind::eVector: {
                lyrDouble3 lVector;
                for (int i = 0; i < 3; ++i)
                    lVector[i] = i + 1;
                pProperty.Set(&lVector, eDOUBLE3, false);
                break;
            }
            case Kind::eText: {
                const KString lText(kTextValue);
                pProperty.Set(&lText, eSTRING, false);
                break;
            }
        }
    }

    KLyrPropertyHandle mRoot;

protected:
    KLyrPropertyHandle mDoubles[kDoubleCount];
};

// The same by the C++ types.
class OurTypedObject : public OurObject {
public:
    using OurObject::OurObject;

    double Get(int pNumber) const { return lyrGet<double>(mDoubles[pNumber]).value_or(-1); }
    void Set(int pNumber, double pValue) { lyrSet(mDoubles[pNumber], pValue, eLyrSetPin); }
    void SetChecked(int pNumber, double pValue) { lyrSet(mDoubles[pNumber], pValue, eLyrSetCollapse); }
};

// Instead of names it has ids, as the handles of a page have.
class VariantsById {
public:
    static constexpr char kName[] = "std::map of variants";

    explicit VariantsById(bool pValues) {
        for (int i = 0; i < kPropertyCount; ++i)
            mValues.emplace(i, VariantOf(i, pValues));
    }
    void Resolve() {}
    double Get(int pNumber) const { return std::get<double>(mValues.find(DoubleIndex(pNumber))->second); }
    void Set(int pNumber, double pValue) { mValues.find(DoubleIndex(pNumber))->second = pValue; }
    void SetChecked(int pNumber, double pValue) {
        Variant& lStored = mValues.find(DoubleIndex(pNumber))->second;
        if (std::get<double>(lStored) != pValue)
            lStored = pValue;
    }

private:
    std::map<int, Variant> mValues;
};

class OrderedVariants : public VariantsByName<std::map<std::string, Variant>> {
public:
    static constexpr char kName[] = "std::map of variants";
    using VariantsByName::VariantsByName;
};

class HashedVariants : public VariantsByName<std::unordered_map<std::string, Variant>> {
public:
    static constexpr char kName[] = "std::unordered_map of variants";
    using VariantsByName::VariantsByName;
};

void CountRequestedBytes(benchmark::State& pState) {
    constexpr std::size_t kObjects = 256;
    const OurObject lFirst(true);
    LibraryMemory lMemory;
    {
        std::vector<std::unique_ptr<OurObject>> lObjects;
        for (std::size_t i = 0; i < kObjects; ++i)
            lObjects.push_back(std::make_unique<OurObject>(true));
        ReportAmount(pState, static_cast<double>(lMemory.RequestedBytes()), kObjects * kPropertyCount);
    }
}

// All that a page of so many doubles takes, its names included, a property.
void CountBytesOfDoubles(benchmark::State& pState, int pCount, bool pRequested) {
    LibraryMemory lMemory;
    KLyrPropertyHandle lRoot = KLyrPropertyHandle::Create("doubles", eUNIDENTIFIED);
    for (int i = 0; i < pCount; ++i) {
        const double lValue = DoubleValue(i);
        lRoot.Add(("double " + std::to_string(i)).c_str(), eDOUBLE1).Set(&lValue, eDOUBLE1, false);
    }
    Require(lRoot.Find("double 7", true).GetId() == 8, "ours has all");
    ReportAmount(pState, static_cast<double>(pRequested ? lMemory.RequestedBytes() : lMemory.UsableBytes()),
                 static_cast<std::size_t>(pCount));
    lRoot.Destroy();
}

// How often the work asks for memory, of 1000 times.
template <typename Side = OurObject, typename Work>
void CountAllocations(benchmark::State& pState, Work pWork) {
    constexpr int kTimes = 1000;
    Side lObject(true);
    lObject.Resolve();
    LibraryMemory lMemory;
    for (int i = 0; i < kTimes; ++i)
        pWork(lObject, i % kDoubleCount, i + 0.5);
    Require(lObject.Get((kTimes - 1) % kDoubleCount) != -1, "ours is read");
    ReportAmount(pState, static_cast<double>(lMemory.Allocations()), kTimes);
}

const Registration sgRegistration([] {
    AddCreateSides<OurObject>();
    AddNameSides<OurObject>();
    AddHandleSides<OurObject>();
    AddHandleSides<VariantsById>();
    AddCreateSides<OrderedVariants>();
    AddNameSides<OrderedVariants>();
    AddCreateSides<HashedVariants>();
    AddNameSides<HashedVariants>();
    AddSide("property bytes requested/64", "ours", &CountRequestedBytes);
    for (const int lCount : {8, 64, 1000, 100000}) {
        const std::string lSize = "/" + std::to_string(lCount);
        AddSide("double bytes" + lSize, "ours",
                [lCount](benchmark::State& pState) { CountBytesOfDoubles(pState, lCount, false); });
        AddSide("double bytes requested" + lSize, "ours",
                [lCount](benchmark::State& pState) { CountBytesOfDoubles(pState, lCount, true); });
    }
    AddSide("allocations of a get", "ours", [](benchmark::State& pState) {
        CountAllocations(pState, [](OurObject& pObject, int pNumber, double) { pObject.Get(pNumber); });
    });
    AddSide("allocations of a set", "ours", [](benchmark::State& pState) {
        CountAllocations(pState, [](OurObject& pObject, int pNumber, double pValue) { pObject.Set(pNumber, pValue); });
    });
    AddSide("allocations of a set checked", "ours", [](benchmark::State& pState) {
        CountAllocations(pState,
                         [](OurObject& pObject, int pNumber, double pValue) { pObject.SetChecked(pNumber, pValue); });
    });
    AddSide("typed get double/64", "ours", &TimeGet<OurTypedObject>);
    AddSide("typed set double/64", "ours", &TimeSet<OurTypedObject, &OurTypedObject::Set>);
    AddSide("typed set double checked/64", "ours", &TimeSet<OurTypedObject, &OurTypedObject::SetChecked>);
    AddSide("allocations of typed gets and sets", "ours", [](benchmark::State& pState) {
        CountAllocations<OurTypedObject>(pState, [](OurTypedObject& pObject, int pNumber, double pValue) {
            pObject.Set(pNumber, pObject.Get(pNumber) + pValue);
            pObject.SetChecked(pNumber, pValue);
        });
    });
});

}  // namespace

}  // namespace lyrsdk::bench
