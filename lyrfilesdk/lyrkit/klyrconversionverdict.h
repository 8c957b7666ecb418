#pragma once

// What becomes of a value that is read or written in another type, told beforehand.
//
//     static_assert(lyrConversionVerdict(eINTEGER1, eDOUBLE1) == eLyrConvertsExactly);
//
// Every verdict comes from the one conversion matrix and the ranges of the types; nothing is tried. It is about the
// pair, so it names the worst that can happen to any value: eDOUBLE1 to eINTEGER1 truncates, though 2.0 stays 2.
//
// lyrWhyRefused tells for one property, in a sentence, why a read or write does not do.

#include <limits>
#include <type_traits>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/klyrplugins/klyrconversionmatrix.h"
#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"

namespace lyrsdk {

// What the conversion of a pair of types does to a value, at worst.
enum ELyrConversionVerdict : int {
    // One and the same type code.
    eLyrConvertsSame,
    // Every value arrives as it is: in a wider type, in every element of a vector, as the bytes in a blob. A NaN stays
    // a NaN.
    eLyrConvertsExactly,
    // The value arrives rounded, and infinite when it is too large; times arrive as seconds, distances as inches.
    eLyrMayLosePrecision,
    // Part of the value is cut off: the fraction (and what is then too large counts as the least integer), the last
    // element, or for a bool all but whether it is zero.
    eLyrTruncates,
    // The low bits of an integer arrive.
    eLyrWraps,
    // The text is read; one that does not read in full is refused.
    eLyrParses,
    // The text that shows the value.
    eLyrPrints,
    // The first element arrives.
    eLyrTakesFirstElement,
    // Refused: false, and nothing changes.
    eLyrRefusedSilently,
    // The same, with a report.
    eLyrRefusedWithReport,
};

namespace detail {

// The rule of the matrix for a pair of codes. A code that stands for no value is refused with a report.
constexpr char ConversionRuleOf(ELyrType pFrom, ELyrType pTo) {
    const int lRow = MatrixIndex(pTo);
    const int lColumn = MatrixIndex(pFrom);
    return lRow < 0 || lColumn < 0 ? 'X' : MatrixCell(lRow, lColumn);
}

// The range of a number type, as far as a verdict needs it.
struct NumberRange {
    int mDigits;  // bits of a value without its sign
    bool mIsSigned;
    bool mIsInteger;
};

template <typename T>
constexpr NumberRange RangeOf() {
    if constexpr (std::is_same_v<T, lyrHalfFloat>)
        return NumberRange{11, true, false};
    else if constexpr (std::is_same_v<T, char>)
        return RangeOf<signed char>();
    else if constexpr (std::is_arithmetic_v<T>)
        return NumberRange{std::numeric_limits<T>::digits, std::numeric_limits<T>::is_signed,
                           std::numeric_limits<T>::is_integer};
    else
        return NumberRange{0, false, false};
}

constexpr NumberRange RangeOfCode(ELyrType pType) {
#define LYRSDK_NO_ROW(pNumber, pName, pType, pSize)
#define LYRSDK_ROW(pNumber, pName, pStored, pSize) \
    if (pType == pName)                            \
        return RangeOf<pStored>();
    LYRSDK_TYPE_LIST(LYRSDK_NO_ROW, LYRSDK_NO_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
#undef LYRSDK_NO_ROW
    return RangeOf<void>();
}

// Between numbers and bool, when pTo keeps pTo.mDigits bits of them.
constexpr ELyrConversionVerdict NumberVerdict(NumberRange pFrom, NumberRange pTo) {
    const bool lFits = pFrom.mDigits <= pTo.mDigits;
    if (pTo.mIsInteger && !pFrom.mIsInteger)
        return eLyrTruncates;
    if (!pTo.mIsInteger)
        return lFits ? eLyrConvertsExactly : eLyrMayLosePrecision;
    return lFits && (pTo.mIsSigned || !pFrom.mIsSigned) ? eLyrConvertsExactly : eLyrWraps;
}

}  // namespace detail

// What a value of code pFrom becomes when it is converted to code pTo, by lyrCopy, Get or Set. A code that stands for
// no value (eUNIDENTIFIED, eREFERENCE, an unknown one) is refused with a report on either side; a property of such a
// type has no value to begin with.
constexpr ELyrConversionVerdict lyrConversionVerdict(ELyrType pFrom, ELyrType pTo) {
    switch (detail::ConversionRuleOf(pFrom, pTo)) {
        case '=':
            return pFrom == pTo ? eLyrConvertsSame : eLyrConvertsExactly;
        case 'C':
            if (pTo == eBOOL1)
                return eLyrTruncates;
            return detail::NumberVerdict(detail::RangeOfCode(pFrom), detail::RangeOfCode(pTo));
        case 'H':
        case 'F':
            return detail::NumberVerdict(detail::RangeOfCode(pFrom), detail::RangeOfCode(pTo));
        case 'V':
            return detail::NumberVerdict(detail::RangeOfCode(pFrom), detail::RangeOfCode(eDOUBLE1));
        case 'D':
        case 'T':
            return eLyrMayLosePrecision;
        case 'P':
        case 'Y':
            return eLyrParses;
        case 'S':
            return eLyrPrints;
        case 'E':
            return eLyrTakesFirstElement;
        case '3':
            return eLyrTruncates;
        case 'B':
        case '4':
            return eLyrConvertsExactly;
        case '0':
            return eLyrRefusedSilently;
        default:
            return eLyrRefusedWithReport;
    }
}

// Whether the pair is refused for every value.
constexpr bool lyrConversionIsRefused(ELyrType pFrom, ELyrType pTo) {
    const ELyrConversionVerdict lVerdict = lyrConversionVerdict(pFrom, pTo);
    return lVerdict == eLyrRefusedSilently || lVerdict == eLyrRefusedWithReport;
}

// A verdict in words, such as "may lose precision"; "unknown" for what is none. A literal.
LYRSDK_API const char* lyrVerdictText(ELyrConversionVerdict pVerdict);
// The same by the name that the texts of the kit's other results have.
inline const char* lyrResultText(ELyrConversionVerdict pVerdict) {
    return lyrVerdictText(pVerdict);
}

static_assert(lyrConversionVerdict(eDOUBLE1, eDOUBLE1) == eLyrConvertsSame);
static_assert(lyrConversionVerdict(eENUM, eINTEGER1) == eLyrConvertsExactly);
static_assert(lyrConversionVerdict(eINTEGER1, eDOUBLE1) == eLyrConvertsExactly);
static_assert(lyrConversionVerdict(eLONGLONG1, eDOUBLE1) == eLyrMayLosePrecision);
static_assert(lyrConversionVerdict(eINTEGER1, eBYTE1) == eLyrWraps);
static_assert(lyrConversionVerdict(eUBYTE1, eBYTE1) == eLyrWraps);
static_assert(lyrConversionVerdict(eDOUBLE1, eINTEGER1) == eLyrTruncates);
static_assert(lyrConversionVerdict(eSTRING, eDATETIME) == eLyrParses);
static_assert(lyrConversionVerdict(eSHORT1, eBYTE1) == eLyrRefusedSilently);
static_assert(lyrConversionVerdict(eDOUBLE1, eTIME) == eLyrRefusedWithReport);

// The two ways of a value: out of a property, or into it.
enum ELyrAccess : int {
    eLyrRead = 0,  // a Get
    eLyrWrite = 1  // a Set
};

// A sentence of bounded length in one line. Names and texts that are quoted in it are escaped as in dumps, and cut
// between characters where it would grow too long.
struct KLyrReason {
    // The bytes of a text, zero byte included.
    static constexpr int kSize = 256;

    // Whether nothing stands in the way.
    bool IsEmpty() const { return mText[0] == '\0'; }

    // The text, empty when nothing stands in the way.
    char mText[kSize] = {};
};

// Why a Get of pHandle into a value of code pValueType is refused, or a Set from one; empty when it is not. What is
// wrong with the handle comes first, then with the codes, then with the pair of types, then with a text that does not
// read: the property's for a read, for a write the one at pValue, which is a value of code pValueType or null for any.
// Want of memory cannot be foreseen. A Set with a check for equality is also false when the value is inherited already:
// that is not a refusal, and lyrSet tells the two apart. Makes no report and takes no memory.
LYRSDK_API KLyrReason lyrWhyRefused(const KLyrPropertyHandle& pHandle, ELyrType pValueType, ELyrAccess pAccess,
                                    const void* pValue = nullptr);

}  // namespace lyrsdk
