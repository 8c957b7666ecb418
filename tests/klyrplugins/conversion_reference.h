#pragma once

// The conversions once more, worked out from arithmetic on long double and from the C library. Shares nothing with the
// library but the value types.

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <map>
#include <string>
#include <type_traits>

#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "tests/klyrplugins/any_value.h"
#include "tests/klyrplugins/value_samples.h"

namespace lyrsdk {
namespace reference {

static_assert(std::numeric_limits<long double>::digits >= 64, "long double holds every integer and every double");

// What each destination does with the sources, written down by hand, column by column: bytes, unsigned bytes, shorts,
// unsigned shorts, unsigned ints, long longs, unsigned long longs, halves, bools, ints, floats, doubles, 2-, 3-,
// 4-vectors, matrices, strings, times, blobs, distances, date-times.
inline const std::map<ELyrType, std::string>& Rules() {
    static const std::map<ELyrType, std::string> sRules = {
        {eBYTE1, "=C000000CCCC0000P0000"},      {eUBYTE1, "C=000000CCCC0000P0000"},
        {eSHORT1, "CC=00000CCCC0000P0000"},     {eUSHORT1, "CCC=0000CCCC0000P0000"},
        {eUINTEGER1, "CCCC=CC0CCCC0000P0000"},  {eLONGLONG1, "CCCCC=C0CCCC0000P0000"},
        {eULONGLONG1, "CCCCCC=0CCCC0000P0000"}, {eHALFFLOAT, "HHHHHHH=HHHH0000000D0"},
        {eBOOL1, "CCCCCCC0=CCC0000P0000"},      {eINTEGER1, "CCCCCCC0C=CC0000P0000"},
        {eFLOAT1, "CCCCC00FCC=C0000000D0"},     {eDOUBLE1, "CCCCCCCFCCC=EEEEPTXDX"},
        {eDOUBLE2, "VVVVVVVVVVVV=XXXXXXXX"},    {eDOUBLE3, "VVVVVVVVVVVV0=3000000"},
        {eDOUBLE4, "00000000000004=000000"},    {eDOUBLE44, "XXXXXXXXXXXXXXX=XXXXX"},
        {eSTRING, "SSSSSSSSSSSSSSSS=SSSS"},     {eTIME, "XXXXXXXXXXXXXXXXX=XXX"},
        {eBLOB, "BBBBBBBBBBBBBBBBBB=00"},       {eDISTANCE, "0000000000000000000=0"},
        {eDATETIME, "0000000000000000Y000="},
    };
    return sRules;
}

// The rule of one pair of codes that hold values. An enumeration is an int.
inline char RuleOf(ELyrType pDst, ELyrType pSrc) {
    const ELyrType lDst = pDst == eENUM ? eINTEGER1 : pDst;
    const ELyrType lSrc = pSrc == eENUM ? eINTEGER1 : pSrc;
    const auto lColumn = std::distance(Rules().begin(), Rules().find(lSrc));
    return Rules().at(lDst).at(static_cast<std::size_t>(lColumn));
}

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

// What rules C, F, H and V read. A half is the float that it stands for.
struct SourceNumber {
    long double mValue;
    bool mFloating;
};

inline SourceNumber NumberIn(const AnyValue& pSrc) {
    return pSrc.Visit([](const auto& pHeld) -> SourceNumber {
        using Src = std::decay_t<decltype(pHeld)>;
        if constexpr (std::is_same_v<Src, lyrHalfFloat>)
            return {Exact(pHeld.value()), true};
        else if constexpr (std::is_arithmetic_v<Src>)
            return {Exact(pHeld), std::is_floating_point_v<Src>};
        else
            return {std::numeric_limits<long double>::quiet_NaN(), true};
    });
}

// Rules C and F.
template <typename Dst>
Dst Cast(const SourceNumber& pSrc) {
    if constexpr (std::is_same_v<Dst, bool>)
        return !(pSrc.mValue == 0.0L);
    else if constexpr (std::is_floating_point_v<Dst>)
        return static_cast<Dst>(pSrc.mValue);
    else
        return static_cast<Dst>(pSrc.mFloating ? IntegerFromFloating<Number<Dst>>(pSrc.mValue)
                                               : LowBits<Number<Dst>>(pSrc.mValue));
}

inline std::string Trim(const std::string& pText) {
    const char* lBlanks = " \t\n\v\f\r";
    const std::size_t lFirst = pText.find_first_not_of(lBlanks);
    return lFirst == std::string::npos ? "" : pText.substr(lFirst, pText.find_last_not_of(lBlanks) + 1 - lFirst);
}

inline std::string Lower(std::string pText) {
    for (char& lChar : pText)
        lChar = lChar >= 'A' && lChar <= 'Z' ? static_cast<char>(lChar - 'A' + 'a') : lChar;
    return pText;
}

inline bool IsDigits(const std::string& pText) {
    return !pText.empty() && pText.find_first_not_of("0123456789") == std::string::npos;
}

// A decimal number without a sign: digits with at most one point among or around them, and an exponent or none.
inline bool IsDecimal(const std::string& pLower) {
    const std::size_t lE = pLower.find('e');
    std::string lMantissa = pLower.substr(0, lE);
    const std::size_t lPoint = lMantissa.find('.');
    if (lPoint != std::string::npos)
        lMantissa.erase(lPoint, 1);
    if (lE == std::string::npos)
        return IsDigits(lMantissa);
    const std::string lExponent = pLower.substr(lE + 1);
    const bool lSigned = !lExponent.empty() && (lExponent[0] == '-' || lExponent[0] == '+');
    return IsDigits(lMantissa) && IsDigits(lExponent.substr(lSigned ? 1 : 0));
}

// "nan", or "nan(...)" with letters, digits and underscores.
inline bool IsNan(const std::string& pLower) {
    if (pLower.substr(0, 4) != "nan(")
        return pLower == "nan";
    const char* lInside = "abcdefghijklmnopqrstuvwxyz0123456789_";
    return pLower.back() == ')' && pLower.find_first_not_of(lInside, 4) == pLower.size() - 1;
}

// Not what no double holds: the double nearest to it would be 0 or infinite.
inline bool ParseFloating(const std::string& pText, double& pDst) {
    const bool lSigned = !pText.empty() && (pText[0] == '-' || pText[0] == '+');
    const std::string lNumber = Lower(pText.substr(lSigned ? 1 : 0));
    double lValue = std::numeric_limits<double>::quiet_NaN();
    if (lNumber == "inf" || lNumber == "infinity") {
        lValue = std::numeric_limits<double>::infinity();
    } else if (IsDecimal(lNumber)) {
        errno = 0;
        lValue = std::strtod(lNumber.c_str(), nullptr);
        if (errno == ERANGE && (lValue == 0 || std::isinf(lValue)))
            return false;
    } else if (!IsNan(lNumber)) {
        return false;
    }
    pDst = std::copysign(lValue, pText[0] == '-' ? -1.0 : 1.0);
    return true;
}

// Rule P.
template <typename T>
bool Parse(const KString& pSrc, T& pDst) {
    const std::string lText = Trim(ImageOf(pSrc));
    const std::size_t lSign = !lText.empty() && (lText[0] == '-' || lText[0] == '+') ? 1 : 0;
    if constexpr (std::is_same_v<T, double>) {
        return ParseFloating(lText, pDst);
    } else {
        if (std::is_same_v<T, bool> && (Lower(lText) == "true" || Lower(lText) == "false")) {
            pDst = static_cast<T>(Lower(lText) == "true");
            return true;
        }
        if (!IsDigits(lText.substr(lSign)))
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

// [-]HH:MM:SS with the nearest nanosecond behind a point where it is not 0, in units of 1/705,600,000 s.
inline std::string TimeText(long long pCount) {
    const unsigned long long lCount =
        pCount < 0 ? 0 - static_cast<unsigned long long>(pCount) : static_cast<unsigned long long>(pCount);
    const unsigned long long lSeconds = lCount / 705600000;
    // 10^9 / 705,600,000 is 625 / 441, and 441 is odd, so that nothing lies halfway.
    const unsigned long long lNanos = (lCount % 705600000 * 625 + 220) / 441;
    char lText[128];
    std::snprintf(lText, sizeof(lText), "%s%02llu:%02llu:%02llu", pCount < 0 ? "-" : "", lSeconds / 3600,
                  lSeconds / 60 % 60, lSeconds % 60);
    const std::string lWhole = lText;
    std::snprintf(lText, sizeof(lText), ".%09llu", lNanos);
    const std::string lFraction = lText;
    return lNanos ? lWhole + lFraction.substr(0, lFraction.find_last_not_of('0') + 1) : lWhole;
}

// YYYY-MM-DD, then T, t or a blank, then HH:MM, :SS or not, and with it .f, .ff or .fff or not. The date and time as
// they are shown; empty for every other text and for a day that there is not.
inline std::string DateTimeText(const std::string& pText) {
    const std::string lShape = "0000-00-00T00:00:00.000";
    std::string lText = pText;
    if (lText.size() > 10 && (lText[10] == 't' || lText[10] == ' '))
        lText[10] = 'T';
    const std::size_t lSize = lText.size();
    if (lSize != 16 && lSize != 19 && (lSize < 21 || lSize > 23))
        return "";
    lText += lShape.substr(lSize);
    for (std::size_t i = 0; i < lShape.size(); ++i)
        if (lShape[i] == '0' ? lText[i] < '0' || lText[i] > '9' : lText[i] != lShape[i])
            return "";
    const auto lNumber = [&](std::size_t pFrom, std::size_t pCount) { return std::stoi(lText.substr(pFrom, pCount)); };
    const int lYear = lNumber(0, 4), lMonth = lNumber(5, 2), lDay = lNumber(8, 2);
    const bool lLeap = lYear % 4 == 0 && (lYear % 100 != 0 || lYear % 400 == 0);
    const int lDays[] = {0, 31, lLeap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool lExists = lMonth >= 1 && lMonth <= 12 && lDay >= 1 && lDay <= lDays[lMonth] && lNumber(11, 2) < 24 &&
                         lNumber(14, 2) < 60 && lNumber(17, 2) < 60;
    return lExists ? lText : "";
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
        return TimeText(pSrc.Get());
    } else if constexpr (std::is_same_v<Src, lyrBlob>) {
        return "<blob>";
    } else if constexpr (std::is_same_v<Src, lyrDistance>) {
        return Print(pSrc.value()) + " " + ImageOf(pSrc.unitName());
    } else if constexpr (std::is_same_v<Src, lyrDateTime>) {
        return ImageOf(pSrc.toString());
    } else if constexpr (std::is_same_v<Src, KString>) {
        return ImageOf(pSrc);
    } else {
        std::string lText;
        for (double lElement : pSrc.mData)
            lText += (lText.empty() ? "" : ",") + Print(lElement);
        return lText;
    }
}

// The same, into the type of pDst.
inline std::string CastImage(const AnyValue& pDst, const SourceNumber& pSrc) {
    return pDst.Visit([&](const auto& pHeld) -> std::string {
        using Dst = std::decay_t<decltype(pHeld)>;
        if constexpr (std::is_arithmetic_v<Dst>)
            return ImageOf(Cast<Dst>(pSrc));
        else
            return "no number";
    });
}

// Rule D.
inline std::string InchesImage(const AnyValue& pDst, const lyrDistance& pSrc) {
    const double lFactor = pSrc.unit().GetConversionFactorTo(KLyrSystemUnit::Inch);
    const float lInches = static_cast<float>(static_cast<long double>(pSrc.value()) * lFactor);
    if (pDst.Holds<lyrHalfFloat>())
        return ImageOf(HalfBits(lInches));
    return pDst.Holds<double>() ? ImageOf(static_cast<double>(lInches)) : ImageOf(lInches);
}

// The image that pDst has after a conversion by the given rule; false when it has to be refused.
inline bool Convert(char pRule, const AnyValue& pDst, const AnyValue& pSrc, std::string& pImage) {
    const std::string lOld = ImageOf(pDst), lSrc = ImageOf(pSrc);
    switch (pRule) {
        case '=':
        case 'B':
            return pImage = lSrc, true;
        case 'C':
        case 'F':
            return pImage = CastImage(pDst, NumberIn(pSrc)), true;
        case 'H':
            return pImage = ImageOf(HalfBits(Cast<float>(NumberIn(pSrc)))), true;
        case 'D':
            return pImage = InchesImage(pDst, pSrc.Get<lyrDistance>()), true;
        case 'V':
            pImage.clear();
            for (std::size_t i = 0; i < lOld.size(); i += sizeof(double))
                // A long double would make a signalling NaN a quiet one.
                pImage += pSrc.Holds<double>() ? lSrc : ImageOf(Cast<double>(NumberIn(pSrc)));
            return true;
        case 'E':
            return pImage = lSrc.substr(0, 8), true;
        case '3':
            return pImage = lSrc.substr(0, 24), true;
        case '4':
            return pImage = lSrc + lOld.substr(24), true;
        case 'T':
            return pImage = ImageOf(static_cast<double>(pSrc.Get<KTime>().Get()) / 705600000.0), true;
        case 'P': {
            AnyValue lRead = pDst;
            const auto lParse = [&](auto& pInto) {
                if constexpr (std::is_arithmetic_v<std::decay_t<decltype(pInto)>>)
                    return Parse(pSrc.Get<KString>(), pInto);
                else
                    return false;
            };
            const bool lIsRead = lRead.Visit(lParse);
            return pImage = ImageOf(lRead), lIsRead;
        }
        case 'S':
            return pImage = pSrc.Visit([](const auto& pFrom) { return Text(pFrom); }), true;
        case 'Y':
            return pImage = DateTimeText(lSrc), !pImage.empty();
        default:
            return pImage = lOld, false;
    }
}

}  // namespace reference
}  // namespace lyrsdk
