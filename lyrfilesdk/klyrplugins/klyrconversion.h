#pragma once

// Conversion between values.
//
// lyrCopy(pDst, pSrc) converts between any two types. True when pDst was written. False, and pDst unchanged, when the
// pair is refused, when a text could not be read, or when there is no memory for a string or a blob. Which pairs
// convert, and how, is one table (klyrconversionmatrix.h); types that no type code stores are refused with a report
// like the cells that say so. Source and destination may be the same value.
//
//     integer -> integer     keeps the low bits
//     number -> bool         whether it is not zero
//     floating -> integer    cuts off the fraction through a signed integer (16 bits for 8 and 16 bits, 32 for unsigned
//                            short and int, 64 for the rest) and keeps its low bits; what does not fit, NaN included,
//                            counts as that integer's least value
//     double -> float        rounds to nearest
//     same type              moves bytes, so that every NaN stays what it is
//
// Reports carry the path lyrfilesdk/klyrplugins/klyrtypes. Each pair of types, and each source type's choice by code,
// is a check site of its own.

#include <cstring>
#include <limits>
#include <type_traits>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/components/kbaselib/klib/kassert.h"
#include "lyrfilesdk/klyrplugins/klyrconversionmatrix.h"
#include "lyrfilesdk/klyrplugins/klyrcopystr.h"
#include "lyrfilesdk/klyrplugins/klyrvaluetypes.h"

#define LYRSDK_TYPES_PATH "lyrfilesdk/klyrplugins/klyrtypes"  // the path that reports of conversions carry

namespace lyrsdk {
namespace detail {

// The integer part of pValue, or Integer's least value when it does not fit. The comparisons are false for a NaN.
template <typename Integer>
constexpr Integer Truncate(double pValue) {
    constexpr Integer lLeast = std::numeric_limits<Integer>::min();
    // For the narrow types the doubles next to the range truncate into it; for 64 bits there are none.
    constexpr double lLimit = -static_cast<double>(lLeast);
    constexpr bool lFractions = sizeof(Integer) < 8;
    const bool lFits = lFractions ? pValue > -lLimit - 1.0 && pValue < lLimit : pValue >= -lLimit && pValue < lLimit;
    return lFits ? static_cast<Integer>(pValue) : lLeast;
}

constexpr unsigned long long TruncateToUnsigned64(double pValue) {
    constexpr double lTwoTo63 = 9223372036854775808.0;
    if (pValue >= lTwoTo63)
        return static_cast<unsigned long long>(Truncate<long long>(pValue - lTwoTo63)) | 1ull << 63;
    return static_cast<unsigned long long>(Truncate<long long>(pValue));
}

// The signed integer through which a floating number reaches Integer.
template <typename Integer>
using TruncateThrough = std::conditional_t<
    sizeof(Integer) == 1 || std::is_same_v<Integer, short>, short,
    std::conditional_t<std::is_same_v<Integer, unsigned short> || std::is_same_v<Integer, int>, int, long long>>;

// Rule C: between numbers and bool.
template <typename Dst, typename Src>
constexpr Dst CastNumber(Src pSrc) {
    if constexpr (std::is_same_v<Src, char>)
        return CastNumber<Dst>(static_cast<signed char>(pSrc));
    else if constexpr (std::is_same_v<Dst, bool>)
        return pSrc != Src(0);
    else if constexpr (!std::is_floating_point_v<Src> || std::is_floating_point_v<Dst>)
        return static_cast<Dst>(pSrc);
    else if constexpr (std::is_same_v<Dst, unsigned long long>)
        return TruncateToUnsigned64(pSrc);
    else
        return static_cast<Dst>(Truncate<TruncateThrough<Dst>>(pSrc));
}

// Rules C and F: a number from a number or half float.
template <typename Dst, typename Src>
Dst ToNumber(const Src& pSrc) {
    if constexpr (std::is_same_v<Src, lyrHalfFloat>)
        return CastNumber<Dst>(pSrc.value());
    else
        return CastNumber<Dst>(pSrc);
}

// The long way round for a double that stays a double keeps a NaN's payload out of the floating-point registers.
template <typename Src>
void ToDouble(double& pDst, const Src& pSrc) {
    if constexpr (std::is_same_v<Src, double>)
        CopyElement(pDst, pSrc);
    else
        pDst = ToNumber<double>(pSrc);
}

// Rule H.
template <typename Src>
void ToHalf(lyrHalfFloat& pDst, const Src& pSrc) {
    const float lFloat = CastNumber<float>(pSrc);
    pDst = lyrHalfFloat::FromBits(pDst.FtoHF(&lFloat));
}

// Rule S, for what is shown through one of these.
LYRSDK_API bool ShowInteger(KString& pDst, int pSrc);
LYRSDK_API bool ShowFloat(KString& pDst, float pSrc);
LYRSDK_API bool ShowDoubles(KString& pDst, const double* pSrc, int pCount);
LYRSDK_API bool Show(KString& pDst, bool pSrc);
LYRSDK_API bool Show(KString& pDst, const KTime& pSrc);
LYRSDK_API bool Show(KString& pDst, const lyrBlob& pSrc);
LYRSDK_API bool Show(KString& pDst, const lyrDistance& pSrc);
LYRSDK_API bool Show(KString& pDst, const lyrDateTime& pSrc);

template <typename Src>
bool ShowAsString(KString& pDst, const Src& pSrc) {
    if constexpr (std::is_integral_v<Src> && !std::is_same_v<Src, bool>)
        return ShowInteger(pDst, CastNumber<int>(pSrc));
    else if constexpr (std::is_same_v<Src, float>)
        return ShowFloat(pDst, pSrc);
    else if constexpr (std::is_same_v<Src, lyrHalfFloat>)
        return ShowFloat(pDst, pSrc.value());
    else if constexpr (std::is_same_v<Src, double>)
        return ShowDoubles(pDst, &pSrc, 1);
    else if constexpr (std::is_same_v<Src, lyrDouble44>)
        // The first row stands for the matrix.
        return ShowDoubles(pDst, pSrc.mData[0].mData, 4);
    else if constexpr (std::is_same_v<Src, lyrDouble2> || std::is_same_v<Src, lyrDouble3> ||
                       std::is_same_v<Src, lyrDouble4>)
        return ShowDoubles(pDst, pSrc.mData, static_cast<int>(sizeof(pSrc.mData) / sizeof(double)));
    else
        return Show(pDst, pSrc);
}

// Rule B.
template <typename Src>
bool CopyBytes(lyrBlob& pDst, const Src& pSrc) {
    if constexpr (std::is_same_v<Src, KString>) {
        return pDst.Assign(pSrc.Buffer(), pSrc.GetLen());
    } else {
        const int lSize = LyrTypeSizeOf[TypeCodeOf<Src>()];
        const bool lCastable = sizeof(Src) == static_cast<std::size_t>(lSize);
        LYRSDK_CHECK(lCastable, LYRSDK_TYPES_PATH, __LINE__, "lCastable");
        return pDst.Assign(&pSrc, lSize);
    }
}

// Rule =.
template <typename T>
bool CopySame(T& pDst, const T& pSrc) {
    if constexpr (std::is_same_v<T, KString>)
        return pDst.Assign(pSrc.Buffer(), pSrc.GetLen());
    else if constexpr (std::is_same_v<T, lyrBlob>)
        return pDst.Assign(pSrc);
    else
        CopyElement(pDst, pSrc);
    return true;
}

// Rules V, E, 3 and 4: between numbers and vectors.
template <char Rule, typename Dst, typename Src>
void CopyElements(Dst& pDst, const Src& pSrc) {
    if constexpr (Rule == 'V') {
        double lScalar;
        ToDouble(lScalar, pSrc);
        pDst = lScalar;
    } else if constexpr (Rule == 'E') {
        std::memmove(&pDst, &pSrc, sizeof(double));
    } else if constexpr (Rule == '3') {
        std::memmove(pDst.mData, pSrc.mData, sizeof(pDst.mData));
    } else {
        pDst = pSrc;
    }
}

template <char Rule, typename Dst, typename Src>
bool Convert(Dst& pDst, const Src& pSrc) {
    if constexpr (Rule == '=')
        return CopySame(pDst, pSrc);
    else if constexpr (Rule == 'P')
        return lyrCopyStr(pDst, pSrc);
    else if constexpr (Rule == 'Y')
        return std::strlen(pSrc.Buffer()) == static_cast<std::size_t>(pSrc.GetLen()) && pDst.fromString(pSrc.Buffer());
    else if constexpr (Rule == 'S')
        return ShowAsString(pDst, pSrc);
    else if constexpr (Rule == 'B')
        return CopyBytes(pDst, pSrc);
    else if constexpr (Rule == 'C' || Rule == 'F')
        pDst = ToNumber<Dst>(pSrc);
    else if constexpr (Rule == 'H')
        ToHalf(pDst, pSrc);
    else if constexpr (Rule == 'D')
        pDst = pSrc.internalValue();
    else if constexpr (Rule == 'T')
        pDst = pSrc.GetSecondDouble();
    else
        CopyElements<Rule>(pDst, pSrc);
    return true;
}

}  // namespace detail

// Converts pSrc into pDst.
template <typename Dst, typename Src>
LYRSDK_API bool lyrCopy([[maybe_unused]] Dst& pDst, [[maybe_unused]] const Src& pSrc) {
    constexpr char lRule = detail::ConversionRule<Dst, Src>();
    if constexpr (lRule == 'X') {
        LYRSDK_REPORT(LYRSDK_TYPES_PATH, __LINE__, "Incompatible type assigment");
        return false;
    } else if constexpr (lRule == '0') {
        return false;
    } else {
        return detail::Convert<lRule>(pDst, pSrc);
    }
}

// Converts pSrc into the value of code pDstType at pDst. Codes without a value are refused with a report; a null pDst
// is false without one.
template <typename T>
LYRSDK_API bool lyrCopy(void* pDst, ELyrType pDstType, const T& pSrc) {
    if (!pDst)
        return false;
    switch (pDstType) {
#define LYRSDK_NO_ROW(pNumber, pName, pType, pSize)
#define LYRSDK_REFERENCE_ROW(pNumber, pName, pType, pSize)                                          \
    case pName:                                                                                     \
        LYRSDK_REPORT(LYRSDK_TYPES_PATH, __LINE__, "Trying to set value on a void Reference type"); \
        return false;
#define LYRSDK_ROW(pNumber, pName, pType, pSize) \
    case pName:                                  \
        return lyrCopy(*static_cast<pType*>(pDst), pSrc);
        LYRSDK_TYPE_LIST(LYRSDK_NO_ROW, LYRSDK_REFERENCE_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
#undef LYRSDK_REFERENCE_ROW
#undef LYRSDK_NO_ROW
        case eUNIDENTIFIED:
        case eMAX_TYPES:
        default:
            LYRSDK_REPORT(LYRSDK_TYPES_PATH, __LINE__, "Trying to assign an unknown type");
            return false;
    }
}

// The types of the type codes are compiled into the library.
#define LYRSDK_INSTANTIATE_COPY(pPrefix)                                                  \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const char&);               \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const unsigned char&);      \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const short&);              \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const unsigned short&);     \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const unsigned int&);       \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const long long&);          \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const unsigned long long&); \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const lyrHalfFloat&);       \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const bool&);               \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const int&);                \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const float&);              \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const double&);             \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const lyrDouble2&);         \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const lyrDouble3&);         \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const lyrDouble4&);         \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const lyrDouble44&);        \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const KString&);            \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const KTime&);              \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const lyrBlob&);            \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const lyrDistance&);        \
    pPrefix template LYRSDK_API bool lyrCopy(void*, ELyrType, const lyrDateTime&);

LYRSDK_INSTANTIATE_COPY(extern)

}  // namespace lyrsdk
