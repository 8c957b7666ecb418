#pragma once

// A unit of length: centimetres per unit, and a multiplier of that.
//
// Two doubles, 16 bytes, trivially copyable. The length of the unit is the product of the two, in centimetres. The
// named units are constants that exist before any constructor runs. A unit may hold any two doubles; one of length
// zero, or not finite, converts with the factor that the division gives (infinite, zero or NaN).

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/components/kbaselib/klib/kstring.h"

namespace lyrsdk {

class LYRSDK_API KLyrSystemUnit {
public:
    // A unit of pScaleFactor * pMultiplier centimetres.
    constexpr explicit KLyrSystemUnit(double pScaleFactor, double pMultiplier = 1.0)
        : mScaleFactor(pScaleFactor), mMultiplier(pMultiplier) {}

    // Centimetres per unit, without the multiplier.
    constexpr double GetScaleFactor() const { return mScaleFactor; }
    // The multiplier.
    constexpr double GetMultiplier() const { return mMultiplier; }

    // How many pTarget one of this unit is: the lengths divided, each length being scale factor times multiplier.
    double GetConversionFactorTo(const KLyrSystemUnit& pTarget) const;

    // The unit's name: "mm" "dm" "cm" "m" "km" "Inch" "Foot" "Yard" "Mile", or with false in full, "millimeter"
    // "decimeter" "centimeter" "meter" "kilometer" "inch" "foot" "yard" "mile". The scale factor alone decides which
    // unit it is; a multiplier other than 1 stands in front, as in "x 10 Inch". A unit with another scale factor is
    // named by its length, as in "x 2.5 cm" or "x 2.5 centimeter". Empty when there is no memory.
    KString GetScaleFactorAsString(bool pAbbreviated = true) const;
    // Writes the same text into pBuffer, zero byte behind it, and returns its length.
    int FormatScaleFactor(char (&pBuffer)[64], bool pAbbreviated = true) const;

    // Equal when both numbers are: one foot and twelve times an inch are different units of the same length.
    friend constexpr bool operator==(const KLyrSystemUnit& pLeft, const KLyrSystemUnit& pRight) {
        return pLeft.mScaleFactor == pRight.mScaleFactor && pLeft.mMultiplier == pRight.mMultiplier;
    }
    friend constexpr bool operator!=(const KLyrSystemUnit& pLeft, const KLyrSystemUnit& pRight) {
        return !(pLeft == pRight);
    }

    static const KLyrSystemUnit mm;    // millimetre
    static const KLyrSystemUnit dm;    // decimetre
    static const KLyrSystemUnit cm;    // centimetre
    static const KLyrSystemUnit m;     // metre
    static const KLyrSystemUnit km;    // kilometre
    static const KLyrSystemUnit Inch;  // 2.54 cm
    static const KLyrSystemUnit Foot;  // 12 inches
    static const KLyrSystemUnit Yard;  // 3 feet
    static const KLyrSystemUnit Mile;  // 1760 yards

private:
    double mScaleFactor;
    double mMultiplier;
};

static_assert(sizeof(KLyrSystemUnit) == 16, "a unit is two doubles");

inline constexpr KLyrSystemUnit KLyrSystemUnit::mm{0.1};
inline constexpr KLyrSystemUnit KLyrSystemUnit::dm{10.0};
inline constexpr KLyrSystemUnit KLyrSystemUnit::cm{1.0};
inline constexpr KLyrSystemUnit KLyrSystemUnit::m{100.0};
inline constexpr KLyrSystemUnit KLyrSystemUnit::km{100000.0};
inline constexpr KLyrSystemUnit KLyrSystemUnit::Inch{2.54};
inline constexpr KLyrSystemUnit KLyrSystemUnit::Foot{30.48};
inline constexpr KLyrSystemUnit KLyrSystemUnit::Yard{91.44};
inline constexpr KLyrSystemUnit KLyrSystemUnit::Mile{160934.4};

}  // namespace lyrsdk
