#pragma once

// The conversions once more, worked out from arithmetic on long double and from the C library. Shares nothing with the
// library but the value types.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "tests/klyrplugins/value_samples.h"

namespace lyrsdk {
namespace reference {

static_assert(std::numeric_limits<long double>::digits >= 64, "long double holds every integer and every double");

// pValue modulo 2^Bits as a T.
template <typename T>
T LowBits(long double pValue) {
    const int lBits = static_cast<int>(sizeof(T) * 8);
    const long double lModulus = std::ldexp(1.0L, lBits);
    long double lRest = std::fmod(pValue, lModulus);
    if (lRest < 0)
        lRest += lModulus;
    if (std::is_signed_v<T> && lRest >= lModulus / 2)
        lRest -= lModulus;
    return static_cast<T>(lRest);
}

// Cuts off the fraction; what does not fit so many bits is their least value.
inline long double IntegerPart(long double pValue, int pBits) {
    const long double lHalf = std::ldexp(1.0L, pBits - 1);
    const long double lWhole = std::trunc(pValue);
    return lWhole >= -lHalf && lWhole < lHalf ? lWhole : -lHalf;
}

template <typename T>
T IntegerFromFloating(long double pValue) {
    constexpr int lThrough = std::is_same_v<T, signed char> || std::is_same_v<T, unsigned char> ? 16
                             : std::is_same_v<T, short>                                         ? 16
                             : std::is_same_v<T, unsigned short> || std::is_same_v<T, int>      ? 32
                                                                                                : 64;
    const long double lTop = std::ldexp(1.0L, 63);
    if (std::is_same_v<T, unsigned long long> && pValue >= lTop) {
        const long double lLow = std::fmod(IntegerPart(pValue - lTop, 64) + 2 * lTop, 2 * lTop);
        return static_cast<T>(lLow < lTop ? lLow + lTop : lLow);
    }
    return LowBits<T>(IntegerPart(pValue, lThrough));
}

inline unsigned short HalfBits(float pValue) {
    const int lSign = std::signbit(pValue) ? 0x8000 : 0;
    const float lMagnitude = std::fabs(pValue);
    if (std::isnan(pValue))
        return static_cast<unsigned short>(lSign + 0x7FFF);
    if (lMagnitude >= 65536.0f)
        return static_cast<unsigned short>(lSign + 0x7C00);
    const bool lDenormal = lMagnitude < std::numeric_limits<float>::min();
    const int lExponent = lDenormal ? -127 : std::ilogb(lMagnitude);
    // The 23 fraction bits behind the leading 1, which a denormal does not have.
    const double lFraction = lDenormal ? std::ldexp(static_cast<double>(lMagnitude), 149)
                                       : (std::ldexp(static_cast<double>(lMagnitude), -lExponent) - 1) * 8388608.0;
    if (lExponent >= -14)
        return static_cast<unsigned short>(lSign + (lExponent + 15) * 1024 + std::floor(lFraction / 8192.0));
    const int lShift = (-15 - lExponent + 14) % 32;
    const unsigned int lShifted = static_cast<unsigned int>(std::floor(std::ldexp(lFraction, -lShift)));
    return static_cast<unsigned short>((lShifted & 0xFFFFu) | static_cast<unsigned int>(lSign));
}

inline double HalfValue(unsigned short pBits) {
    const double lSign = pBits & 0x8000 ? -1.0 : 1.0;
    const int lExponent = pBits / 1024 % 32;
    const int lFraction = pBits % 1024;
    if (lExponent == 31)
        return lFraction ? std::numeric_limits<double>::quiet_NaN() : lSign * std::numeric_limits<double>::infinity();
    return lSign * (lExponent ? std::ldexp(1024 + lFraction, lExponent - 25) : std::ldexp(lFraction, -24));
}

inline std::string Print(double pValue) {
    if (std::isnan(pValue))
        return "nan";
    char lText[64];
    for (int lDigits = 15;; ++lDigits) {
        std::snprintf(lText, sizeof(lText), "%.*g", lDigits, pValue);
        if (lDigits == 17 || std::strtod(lText, nullptr) == pValue)
            return lText;
    }
}

inline std::string Print(float pValue) {
    if (std::isnan(pValue))
        return "nan";
    char lText[64];
    for (int lDigits = 6;; ++lDigits) {
        std::snprintf(lText, sizeof(lText), "%.*g", lDigits, static_cast<double>(pValue));
        if (lDigits == 9 || std::strtof(lText, nullptr) == pValue)
            return lText;
    }
}

// A number's value; every integer, float and double is exact. Half floats and strings do not come here.
inline long double Exact(char pValue) {
    return static_cast<signed char>(pValue);
}
template <typename T>
long double Exact(T pValue) {
    return static_cast<long double>(pValue);
}

template <typename T>
using Number = std::conditional_t<std::is_same_v<T, char>, signed char, T>;

// Rules C and F.
template <typename Dst, typename Src>
Dst Cast(const Src& pSrc) {
    if constexpr (std::is_same_v<Src, lyrHalfFloat>)
        return static_cast<Dst>(pSrc.value());
    else if constexpr (std::is_same_v<Dst, bool>)
        return !(Exact(pSrc) == 0.0L);
    else if constexpr (std::is_floating_point_v<Dst>)
        return std::is_floating_point_v<Src> ? static_cast<Dst>(pSrc) : static_cast<Dst>(Exact(pSrc));
    else if constexpr (std::is_floating_point_v<Src>)
        return static_cast<Dst>(IntegerFromFloating<Number<Dst>>(Exact(pSrc)));
    else
        return static_cast<Dst>(LowBits<Number<Dst>>(Exact(pSrc)));
}

inline std::string Trim(const std::string& pText) {
    const char* lBlanks = " \t\n\v\f\r";
    const std::size_t lFirst = pText.find_first_not_of(lBlanks);
    return lFirst == std::string::npos ? "" : pText.substr(lFirst, pText.find_last_not_of(lBlanks) + 1 - lFirst);
}

// Rule P.
template <typename T>
bool Parse(const KString& pSrc, T& pDst) {
    const std::string lText = Trim(ImageOf(pSrc));
    const std::size_t lSign = !lText.empty() && (lText[0] == '-' || lText[0] == '+') ? 1 : 0;
    if constexpr (std::is_same_v<T, double>) {
        const std::string lNumber = lText.substr(lSign && lText[0] == '+');
        char* lEnd = nullptr;
        const double lValue = std::strtod(lNumber.c_str(), &lEnd);
        if (lNumber.empty() || *lEnd)
            return false;
        pDst = lValue;
        return true;
    } else {
        if (std::is_same_v<T, bool> && (lText == "true" || lText == "FALSE")) {
            pDst = static_cast<T>(lText == "true");
            return true;
        }
        if (lText.size() == lSign || lText.find_first_not_of("0123456789", lSign) != std::string::npos)
            return false;
        const long double lValue = std::strtold(lText.c_str(), nullptr);
        using Range = std::conditional_t<std::is_same_v<T, bool>, unsigned long long, Number<T>>;
        const int lBits = static_cast<int>(sizeof(Range) * 8);
        const long double lLimit = std::ldexp(1.0L, std::is_unsigned_v<Range> ? lBits : lBits - 1);
        if (lValue < -std::ldexp(1.0L, lBits - 1) || lValue >= lLimit)
            return false;
        pDst = std::is_same_v<T, bool> ? static_cast<T>(lValue != 0) : static_cast<T>(LowBits<Range>(lValue));
        return true;
    }
}

// Rule S.
template <typename Src>
std::string Text(const Src& pSrc) {
    if constexpr (std::is_same_v<Src, bool>) {
        return pSrc ? "true" : "false";
    } else if constexpr (std::is_integral_v<Src>) {
        return std::to_string(LowBits<int>(Exact(pSrc)));
    } else if constexpr (std::is_floating_point_v<Src>) {
        return Print(pSrc);
    } else if constexpr (std::is_same_v<Src, lyrHalfFloat>) {
        return Print(pSrc.value());
    } else if constexpr (std::is_same_v<Src, lyrDouble44>) {
        return Text(pSrc[0]);
    } else if constexpr (std::is_same_v<Src, KTime>) {
        char lText[128];
        pSrc.GetTimeString(lText, 5, 0, 2, 0.0);
        return lText;
    } else if constexpr (std::is_same_v<Src, lyrBlob>) {
        return "<blob>";
    } else if constexpr (std::is_same_v<Src, lyrDistance>) {
        return Print(pSrc.value()) + " " + ImageOf(pSrc.unitName());
    } else if constexpr (std::is_same_v<Src, lyrDateTime>) {
        return ImageOf(pSrc.toString());
    } else {
        std::string lText;
        for (double lElement : pSrc.mData)
            lText += (lText.empty() ? "" : ",") + Print(lElement);
        return lText;
    }
}

// The image that pDst has after a conversion by the given rule; false when it has to be refused.
template <typename Dst, typename Src>
bool Convert(char pRule, const Dst& pDst, const Src& pSrc, std::string& pImage) {
    constexpr bool lToNumber = std::is_arithmetic_v<Dst>;
    constexpr bool lFromNumber = std::is_arithmetic_v<Src> || std::is_same_v<Src, lyrHalfFloat>;
    pImage = ImageOf(pDst);
    if constexpr (std::is_same_v<Dst, Src>)
        pImage = ImageOf(pSrc);
    if (pRule == '=')
        return true;
    if constexpr (lToNumber && lFromNumber) {
        if (pRule == 'C' || pRule == 'F')
            return pImage = ImageOf(Cast<Dst>(pSrc)), true;
    }
    if constexpr (std::is_same_v<Dst, lyrHalfFloat> && std::is_arithmetic_v<Src>) {
        if (pRule == 'H')
            return pImage = ImageOf(HalfBits(Cast<float>(pSrc))), true;
    }
    if constexpr (std::is_same_v<Src, lyrDistance>) {
        const double lFactor = pSrc.unit().GetConversionFactorTo(KLyrSystemUnit::Inch);
        const float lInches = static_cast<float>(static_cast<long double>(pSrc.value()) * lFactor);
        if constexpr (std::is_same_v<Dst, lyrHalfFloat>)
            pImage = ImageOf(HalfBits(lInches));
        else if constexpr (std::is_floating_point_v<Dst>)
            pImage = ImageOf(static_cast<Dst>(lInches));
        if (pRule == 'D')
            return true;
    }
    if constexpr (lFromNumber && (std::is_same_v<Dst, lyrDouble2> || std::is_same_v<Dst, lyrDouble3>)) {
        const std::string lElement = ImageOf(Cast<double>(pSrc));
        pImage = lElement + lElement + (std::is_same_v<Dst, lyrDouble3> ? lElement : "");
        return pRule == 'V';
    }
    if constexpr (std::is_same_v<Dst, double> && std::is_same_v<Src, KTime>)
        pImage = ImageOf(static_cast<double>(pSrc.Get()) / 705600000.0);
    else if constexpr (std::is_same_v<Dst, double> && !lFromNumber && std::is_trivially_copyable_v<Src>)
        pImage = BytesOf(pSrc).substr(0, 8);
    if (pRule == 'T' || pRule == 'E')
        return true;
    if constexpr (lToNumber && std::is_same_v<Src, KString>) {
        Dst lDst = pDst;
        const bool lRead = pRule == 'P' && Parse(pSrc, lDst);
        pImage = ImageOf(lDst);
        return lRead;
    }
    if constexpr (std::is_same_v<Dst, KString> && !std::is_same_v<Src, KString>)
        return pImage = Text(pSrc), pRule == 'S';
    if constexpr (std::is_same_v<Dst, lyrBlob> && !std::is_same_v<Src, lyrBlob>)
        return pRule == 'B' ? (pImage = ImageOf(pSrc), true) : (pImage = ImageOf(pDst), false);
    if (pRule == '3')
        return pImage = BytesOf(pSrc).substr(0, 24), true;
    if (pRule == '4')
        return pImage = BytesOf(pSrc) + BytesOf(pDst).substr(24), true;
    if constexpr (std::is_same_v<Dst, lyrDateTime> && std::is_same_v<Src, KString>) {
        lyrDateTime lDst = pDst;
        const bool lRead = lDst.fromString(pSrc.Buffer());
        pImage = ImageOf(lDst);
        return pRule == 'Y' && lRead;
    }
    pImage = ImageOf(pDst);
    return false;
}

}  // namespace reference
}  // namespace lyrsdk
