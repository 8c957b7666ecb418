#include <Imath/half.h>

#include "benchmarks/half_sides.h"

namespace lyrsdk::bench {

namespace {

struct ImathHalves {
    static constexpr char kName[] = "Imath";

    static std::uint16_t FromFloat(float pValue) { return imath_float_to_half(pValue); }
    static float ToFloat(std::uint16_t pBits) { return imath_half_to_float(pBits); }
};

const Registration sgRegistration([] { AddHalfSides<ImathHalves>(); });

}  // namespace

}  // namespace lyrsdk::bench
