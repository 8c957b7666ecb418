#include "lyrfilesdk/klyrplugins/klyrdistance.h"

namespace lyrsdk {

float lyrDistance::internalValue() const {
    const double lFactor = mUnit.GetConversionFactorTo(KLyrSystemUnit::Inch);
    return static_cast<float>(static_cast<long double>(mValue) * static_cast<long double>(lFactor));
}

}  // namespace lyrsdk
