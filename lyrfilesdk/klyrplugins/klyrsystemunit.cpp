#include "lyrfilesdk/klyrplugins/klyrsystemunit.h"

#include <cstring>

namespace lyrsdk {
namespace {

struct UnitName {
    double mScaleFactor;
    const char* mShort;
    const char* mLong;
};

// clang-format off
constexpr UnitName sgNames[] = {
    {     0.1 , "mm",   "millimeter"},
    {     1.0 , "cm",   "centimeter"},
    {    10.0 , "dm",   "decimeter" },
    {   100.0 , "m",    "meter"     },
    {100000.0 , "km",   "kilometer" },
    {     2.54, "Inch", "inch"      },
    {    30.48, "Foot", "foot"      },
    {    91.44, "Yard", "yard"      },
    {160934.4 , "Mile", "mile"      },
};
// clang-format on

constexpr const UnitName& sgCentimeter = sgNames[1];

const UnitName* FindName(double pScaleFactor) {
    for (const UnitName& lName : sgNames) {
        if (lName.mScaleFactor == pScaleFactor)
            return &lName;
    }
    return nullptr;
}

char* Write(char* pOut, const char* pText) {
    const std::size_t lLength = std::strlen(pText);
    std::memcpy(pOut, pText, lLength + 1);
    return pOut + lLength;
}

}  // namespace

double KLyrSystemUnit::GetConversionFactorTo(const KLyrSystemUnit& pTarget) const {
    return (mScaleFactor * mMultiplier) / (pTarget.mScaleFactor * pTarget.mMultiplier);
}

int KLyrSystemUnit::FormatScaleFactor(char (&pBuffer)[64], bool pAbbreviated) const {
    const UnitName* lName = FindName(mScaleFactor);
    const double lMultiplier = lName ? mMultiplier : mScaleFactor * mMultiplier;
    char* lOut = pBuffer;
    if (!lName || lMultiplier != 1.0) {
        char lNumber[32];
        lyrFormat(lNumber, lMultiplier);
        lOut = Write(Write(Write(lOut, "x "), lNumber), " ");
    }
    const UnitName& lShown = lName ? *lName : sgCentimeter;
    lOut = Write(lOut, pAbbreviated ? lShown.mShort : lShown.mLong);
    return static_cast<int>(lOut - pBuffer);
}

KString KLyrSystemUnit::GetScaleFactorAsString(bool pAbbreviated) const {
    char lText[64];
    FormatScaleFactor(lText, pAbbreviated);
    return KString(lText);
}

}  // namespace lyrsdk
