#include <rttr/registration.h>
#include <rttr/type.h>

#include <array>
#include <string>
#include <vector>

#include "benchmarks/objects_sides.h"

namespace lyrsdk::bench {

namespace {

#define GROUPS(pDo) pDo(0) pDo(1) pDo(2) pDo(3) pDo(4) pDo(5) pDo(6) pDo(7)

struct Record {
#define MEMBERS(pGroup)                             \
    double opacity##pGroup = 0;                     \
    int layer##pGroup = 0;                          \
    double intensity##pGroup = 0;                   \
    bool visible##pGroup = false;                   \
    std::array<double, 3> translation##pGroup = {}; \
    std::string label##pGroup;                      \
    float scale##pGroup = 0;                        \
    int id##pGroup = 0;
    GROUPS(MEMBERS)
#undef MEMBERS
};

void Register() {
    rttr::registration::class_<Record> lClass("Record");
#define PROPERTIES(pGroup)                                                       \
    lClass.property(PropertyName(pGroup * 8), &Record::opacity##pGroup);         \
    lClass.property(PropertyName(pGroup * 8 + 1), &Record::layer##pGroup);       \
    lClass.property(PropertyName(pGroup * 8 + 2), &Record::intensity##pGroup);   \
    lClass.property(PropertyName(pGroup * 8 + 3), &Record::visible##pGroup);     \
    lClass.property(PropertyName(pGroup * 8 + 4), &Record::translation##pGroup); \
    lClass.property(PropertyName(pGroup * 8 + 5), &Record::label##pGroup);       \
    lClass.property(PropertyName(pGroup * 8 + 6), &Record::scale##pGroup);       \
    lClass.property(PropertyName(pGroup * 8 + 7), &Record::id##pGroup);
    GROUPS(PROPERTIES)
#undef PROPERTIES
}

// The members of a struct, by name and as property objects. The struct has its properties from the compiler, so that
// there is nothing to create.
class Reflected {
public:
    static constexpr char kName[] = "RTTR";

    explicit Reflected(bool) {
        static const bool sRegistered = (Register(), true);
        (void)sRegistered;
        for (int i = 0; i < kDoubleCount; ++i) {
            const char* lName = PropertyName(DoubleIndex(i));
            rttr::type::get<Record>().set_property_value(lName, mRecord, DoubleValue(DoubleIndex(i)));
        }
    }
    double GetByName(const char* pName) const {
        return rttr::type::get<Record>().get_property_value(pName, mRecord).get_value<double>();
    }
    void Resolve() {
        for (int i = 0; i < kDoubleCount; ++i)
            mDoubles.push_back(rttr::type::get<Record>().get_property(PropertyName(DoubleIndex(i))));
    }
    double Get(int pNumber) const {
        return mDoubles[static_cast<std::size_t>(pNumber)].get_value(mRecord).get_value<double>();
    }
    void Set(int pNumber, double pValue) { mDoubles[static_cast<std::size_t>(pNumber)].set_value(mRecord, pValue); }
    void SetChecked(int pNumber, double pValue) {
        if (Get(pNumber) != pValue)
            Set(pNumber, pValue);
    }

private:
    Record mRecord;
    std::vector<rttr::property> mDoubles;
};

const Registration sgRegistration([] {
    AddNameSides<Reflected>();
    AddHandleSides<Reflected>();
});

}  // namespace

}  // namespace lyrsdk::bench
