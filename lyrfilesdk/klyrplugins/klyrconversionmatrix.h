#pragma once

// Which conversion leads from each type to each other type.

#include <type_traits>

#include "lyrfilesdk/klyrplugins/klyrvaluetypes.h"

namespace lyrsdk {
namespace detail {

// clang-format off
//
//   =  the same type: the value is copied          D  the distance in inches
//   C  as a cast converts                          P  the string is read as a number or bool
//   H  to half float, through float                S  the string that shows the value
//   F  from half float, through float              B  the blob of the value's bytes
//   V  every element becomes the number            3  elements 0 to 2 of the 4-vector
//   E  the first element                           4  elements 0 to 2 are set, element 3 stays
//   T  the seconds                                 Y  the string is read as a date and time
//   0  refused
//   X  refused with a report
//
// Many pairs are deliberately one-sided: narrow integers take float, double, int and bool but no wider integer; float
// takes no 64-bit integer and no string where double does; no integer takes a half float; 4-vectors take no number.
constexpr const char* kConversionMatrix[] = {
// from:  c uc s us ui ll ull hf b i f d V2 V3 V4 M44 str tm blob dist dt
/* to  */
/* c    */ "= C  0 0  0  0  0   0  C C C C 0  0  0  0   P   0  0    0    0",
/* uc   */ "C =  0 0  0  0  0   0  C C C C 0  0  0  0   P   0  0    0    0",
/* s    */ "C C  = 0  0  0  0   0  C C C C 0  0  0  0   P   0  0    0    0",
/* us   */ "C C  C =  0  0  0   0  C C C C 0  0  0  0   P   0  0    0    0",
/* ui   */ "C C  C C  =  C  C   0  C C C C 0  0  0  0   P   0  0    0    0",
/* ll   */ "C C  C C  C  =  C   0  C C C C 0  0  0  0   P   0  0    0    0",
/* ull  */ "C C  C C  C  C  =   0  C C C C 0  0  0  0   P   0  0    0    0",
/* hf   */ "H H  H H  H  H  H   =  H H H H 0  0  0  0   0   0  0    D    0",
/* b    */ "C C  C C  C  C  C   0  = C C C 0  0  0  0   P   0  0    0    0",
/* i    */ "C C  C C  C  C  C   0  C = C C 0  0  0  0   P   0  0    0    0",
/* f    */ "C C  C C  C  0  0   F  C C = C 0  0  0  0   0   0  0    D    0",
/* d    */ "C C  C C  C  C  C   F  C C C = E  E  E  E   P   T  X    D    X",
/* V2   */ "V V  V V  V  V  V   V  V V V V =  X  X  X   X   X  X    X    X",
/* V3   */ "V V  V V  V  V  V   V  V V V V 0  =  3  0   0   0  0    0    0",
/* V4   */ "0 0  0 0  0  0  0   0  0 0 0 0 0  4  =  0   0   0  0    0    0",
/* M44  */ "X X  X X  X  X  X   X  X X X X X  X  X  =   X   X  X    X    X",
/* str  */ "S S  S S  S  S  S   S  S S S S S  S  S  S   =   S  S    S    S",
/* tm   */ "X X  X X  X  X  X   X  X X X X X  X  X  X   X   =  X    X    X",
/* blob */ "B B  B B  B  B  B   B  B B B B B  B  B  B   B   B  =    0    0",
/* dist */ "0 0  0 0  0  0  0   0  0 0 0 0 0  0  0  0   0   0  0    =    0",
/* dt   */ "0 0  0 0  0  0  0   0  0 0 0 0 0  0  0  0   Y   0  0    0    =",
};
// clang-format on

constexpr int kMatrixSize = static_cast<int>(sizeof(kConversionMatrix) / sizeof(kConversionMatrix[0]));

// The row and column of each type code's stored type, -1 for the two codes without one. eENUM is int in both roles.
constexpr int MatrixIndex(ELyrType pType) {
    if (pType == eENUM)
        return MatrixIndex(eINTEGER1);
    if (pType <= eUNIDENTIFIED || pType >= eMAX_TYPES || pType == eREFERENCE)
        return -1;
    return pType - 1 - (pType > eENUM) - (pType > eREFERENCE);
}

// The type code of a stored type, eUNIDENTIFIED for a type that no code stores.
template <typename T>
constexpr ELyrType TypeCodeOf() {
#define LYRSDK_NO_ROW(pNumber, pName, pType, pSize)
#define LYRSDK_ROW(pNumber, pName, pType, pSize) \
    if (std::is_same_v<T, pType>)                \
        return pName;
    LYRSDK_TYPE_LIST(LYRSDK_NO_ROW, LYRSDK_NO_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
#undef LYRSDK_NO_ROW
    return eUNIDENTIFIED;
}

// The letter in the given row and column; blanks do not count. '\0' behind the last letter.
constexpr char MatrixCell(int pRow, int pColumn) {
    const char* lCell = kConversionMatrix[pRow];
    for (;; ++lCell) {
        if (*lCell != ' ' && pColumn-- == 0)
            return *lCell;
        if (*lCell == 0)  // LCOV_EXCL_BR_LINE: only the check of the table looks behind the end of a row
            return 0;     // LCOV_EXCL_LINE: as above
    }
}

// Square, with the letter for the same type on the diagonal and nowhere else.
constexpr bool MatrixIsWellFormed() {
    for (int lRow = 0; lRow < kMatrixSize; ++lRow) {
        for (int lColumn = 0; lColumn < kMatrixSize; ++lColumn) {
            const char lRule = MatrixCell(lRow, lColumn);
            if (lRule == 0 || (lRule == '=') != (lRow == lColumn))
                return false;
        }
        if (MatrixCell(lRow, kMatrixSize) != 0)
            return false;
    }
    return true;
}

static_assert(kMatrixSize == MatrixIndex(eDATETIME) + 1, "one row for each stored type");
static_assert(MatrixIsWellFormed(), "one column for each stored type");

// The rule for a pair of types. A type that no code stores is refused with a report.
template <typename Dst, typename Src>
constexpr char ConversionRule() {
    constexpr int lRow = MatrixIndex(TypeCodeOf<Dst>());
    constexpr int lColumn = MatrixIndex(TypeCodeOf<Src>());
    if constexpr (lRow < 0 || lColumn < 0)
        return 'X';
    else
        return MatrixCell(lRow, lColumn);
}

}  // namespace detail
}  // namespace lyrsdk
