#pragma once

// The type codes of values: one list, from which the enumeration, the size table, and every choice by code come.

namespace lyrsdk {

// clang-format off
//
// Expands one macro a row: pNone for the code without a value, pReference for the code whose placeholder can be neither
// set nor compared, pValue for all others.
//
//         number  name           stored type         size   The size in bytes as LyrTypeSizeOf tells it, which is the
//                                                           size of the stored type on 32-bit targets.
#define LYRSDK_TYPE_LIST(pNone, pReference, pValue)          \
    pNone(      0, eUNIDENTIFIED, void,                  0)  \
    pValue(     1, eBYTE1,        char,                  1)  \
    pValue(     2, eUBYTE1,       unsigned char,         1)  \
    pValue(     3, eSHORT1,       short,                 2)  \
    pValue(     4, eUSHORT1,      unsigned short,        2)  \
    pValue(     5, eUINTEGER1,    unsigned int,          4)  \
    pValue(     6, eLONGLONG1,    long long,             8)  \
    pValue(     7, eULONGLONG1,   unsigned long long,    8)  \
    pValue(     8, eHALFFLOAT,    lyrHalfFloat,          2)  \
    pValue(     9, eBOOL1,        bool,                  1)  \
    pValue(    10, eINTEGER1,     int,                   4)  \
    pValue(    11, eFLOAT1,       float,                 4)  \
    pValue(    12, eDOUBLE1,      double,                8)  \
    pValue(    13, eDOUBLE2,      lyrDouble2,           16)  \
    pValue(    14, eDOUBLE3,      lyrDouble3,           24)  \
    pValue(    15, eDOUBLE4,      lyrDouble4,           32)  \
    pValue(    16, eDOUBLE44,     lyrDouble44,         128)  \
    pValue(    17, eENUM,         int,                   4)  \
    pValue(    18, eSTRING,       KString,               4)  \
    pValue(    19, eTIME,         KTime,                 8)  \
    pReference(20, eREFERENCE,    lyrVoidReference,      1)  \
    pValue(    21, eBLOB,         lyrBlob,              12)  \
    pValue(    22, eDISTANCE,     lyrDistance,          20)  \
    pValue(    23, eDATETIME,     lyrDateTime,          10)
// clang-format on

// The type code of a value. Every int is a value of this type; what the list does not name is an unknown code, which
// every function treats like one: without storage, and refused.
enum ELyrType : int {
#define LYRSDK_ROW(pNumber, pName, pType, pSize) pName = pNumber,
    LYRSDK_TYPE_LIST(LYRSDK_ROW, LYRSDK_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
    // How many codes there are; not a type.
    eMAX_TYPES
};

// The size of each code's value in bytes, the same numbers on every target. The bytes that a value really takes are
// what lyrStorageSize gives.
inline constexpr int LyrTypeSizeOf[eMAX_TYPES] = {
#define LYRSDK_ROW(pNumber, pName, pType, pSize) pSize,
    LYRSDK_TYPE_LIST(LYRSDK_ROW, LYRSDK_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
};

namespace detail {

inline constexpr int kTypeNumbers[] = {
#define LYRSDK_ROW(pNumber, pName, pType, pSize) pNumber,
    LYRSDK_TYPE_LIST(LYRSDK_ROW, LYRSDK_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
};

constexpr bool TypeNumbersAscendByOne() {
    int lExpected = 0;
    for (int lNumber : kTypeNumbers) {
        if (lNumber != lExpected++)
            return false;
    }
    return true;
}

}  // namespace detail

static_assert(eMAX_TYPES == 24, "there are 24 type codes");
static_assert(eUNIDENTIFIED == 0 && eDATETIME == 23, "the first and the last type code");
static_assert(detail::TypeNumbersAscendByOne(), "the size table is indexed by type code");

}  // namespace lyrsdk
