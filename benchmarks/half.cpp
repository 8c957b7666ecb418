// Halves and floats.

#include "benchmarks/half_sides.h"
#include "lyrfilesdk/lyrsdk.h"

namespace lyrsdk::bench {

namespace {

struct OurHalves {
    static constexpr char kName[] = "ours";

    static std::uint16_t FromFloat(float pValue) { return lyrHalfFloat(pValue).bits(); }
    static float ToFloat(std::uint16_t pBits) { return lyrHalfFloat::FromBits(pBits).value(); }
};

const Registration sgRegistration([] { AddHalfSides<OurHalves>(); });

}  // namespace

}  // namespace lyrsdk::bench
