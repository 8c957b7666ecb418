#pragma once

// Values of every type to try conversions with, and what can be seen of a value from outside.

#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "lyrfilesdk/klyrplugins/klyrtypes.h"

namespace lyrsdk {

// Expands pRow(code, type) for each of the 21 stored types.
// clang-format off
#define LYRSDK_TEST_TYPES(pRow)           \
    pRow(eBYTE1, char)                    \
    pRow(eUBYTE1, unsigned char)          \
    pRow(eSHORT1, short)                  \
    pRow(eUSHORT1, unsigned short)        \
    pRow(eUINTEGER1, unsigned int)        \
    pRow(eLONGLONG1, long long)           \
    pRow(eULONGLONG1, unsigned long long) \
    pRow(eHALFFLOAT, lyrHalfFloat)        \
    pRow(eBOOL1, bool)                    \
    pRow(eINTEGER1, int)                  \
    pRow(eFLOAT1, float)                  \
    pRow(eDOUBLE1, double)                \
    pRow(eDOUBLE2, lyrDouble2)            \
    pRow(eDOUBLE3, lyrDouble3)            \
    pRow(eDOUBLE4, lyrDouble4)            \
    pRow(eDOUBLE44, lyrDouble44)          \
    pRow(eSTRING, KString)                \
    pRow(eTIME, KTime)                    \
    pRow(eBLOB, lyrBlob)                  \
    pRow(eDISTANCE, lyrDistance)          \
    pRow(eDATETIME, lyrDateTime)
// clang-format on

template <typename To, typename From>
To FromBits(From pBits) {
    static_assert(sizeof(To) == sizeof(From), "same width");
    To lValue;
    std::memcpy(static_cast<void*>(&lValue), &pBits, sizeof(lValue));
    return lValue;
}

template <typename T>
std::string BytesOf(const T& pValue) {
    return std::string(reinterpret_cast<const char*>(&pValue), sizeof(T));
}

// What can be seen of a value, the same on every target.
template <typename T>
std::string ImageOf(const T& pValue) {
    return BytesOf(pValue);
}
inline std::string ImageOf(const KString& pValue) {
    return std::string(pValue.Buffer(), static_cast<std::size_t>(pValue.GetLen()));
}
inline std::string ImageOf(const lyrBlob& pValue) {
    return std::string(static_cast<const char*>(pValue.GetData()), static_cast<std::size_t>(pValue.GetSize()));
}
inline std::string ImageOf(const lyrDistance& pValue) {
    return BytesOf(pValue.value()) + BytesOf(pValue.unit());
}
inline std::string ImageOf(const lyrDateTime& pValue) {
    char lText[32];
    pValue.format(lText);
    return lText;
}
// The same of the value that a type code stands for; empty for a code without one.
inline std::string ImageOf(ELyrType pType, const void* pValue) {
    switch (pType) {
#define LYRSDK_ROW(pCode, pStored) \
    case pCode:                    \
        return ImageOf(*static_cast<const pStored*>(pValue));
        LYRSDK_TEST_TYPES(LYRSDK_ROW)
        LYRSDK_ROW(eENUM, int)
#undef LYRSDK_ROW
        case eUNIDENTIFIED:
        case eREFERENCE:
        case eMAX_TYPES:
        default:
            return "";
    }
}

inline std::vector<double> DoubleSamples() {
    std::vector<double> lSamples = {
        0.0, -0.0, 1.0, -1.0, 0.5, -0.5, 0.9999999, -0.9999999, 1.5, -1.5, 2.9, -2.9, 300.0, 300.7, -300.7, 1e10, -1e10,
        // Each integer's range, a bit inside and a bit outside.
        127, 127.5, 128, -128, -128.5, -129, 255, 255.9, 256, 32767, 32767.9, 32768, -32768, -32768.9, -32769, 65535,
        65535.9, 65536, 2147483647, 2147483647.9, 2147483648.0, -2147483648.0, -2147483648.9, -2147483649.0,
        4294967295.0, 4294967295.9, 4294967296.0, 9223372036854774784.0, 9223372036854775808.0, -9223372036854775808.0,
        -9223372036854777856.0, 9223372036854777856.0, 18446744073709549568.0, 18446744073709551616.0, 3e19, -3e19,
        1e300, -1e300,
        // What a float or a half cannot hold exactly.
        16777216, 16777217, 16777219, 9007199254740991.0, 9007199254740992.0, 9007199254740994.0, 0.1, 1.0 / 3.0, 65504,
        65519.99, 65520, 1.0004, 1.0009765625, 6.103515625e-05, 3.0517578125e-05, 4.57763671875e-05, 5.96e-08, 1e-12,
        3.4028234663852886e38, 3.4028235677973366e38, 1.401298464324817e-45, 7e-46, 1e-310, 4.9406564584124654e-324};
    using Limits = std::numeric_limits<double>;
    lSamples.insert(lSamples.end(), {Limits::max(), Limits::lowest(), Limits::min(), Limits::infinity(),
                                     -Limits::infinity(), FromBits<double>(0x7FF8000000000000ull),
                                     FromBits<double>(0xFFF8000000000000ull), FromBits<double>(0x7FFC0123456789ABull)});
    return lSamples;
}

template <typename T>
std::vector<T> IntegerSamples() {
    std::vector<T> lSamples;
    for (int lShift = 0; lShift < 64; ++lShift) {
        const unsigned long long lBit = 1ull << lShift;
        for (unsigned long long lBits : {lBit - 1, lBit, lBit + 1, 0 - lBit, 0 - lBit - 1})
            lSamples.push_back(static_cast<T>(lBits));
    }
    for (unsigned long long lBits : {300ull, 0x123456789ABCDEFull, 0xFEDCBA9876543210ull})
        lSamples.push_back(static_cast<T>(lBits));
    return lSamples;
}

template <typename T>
std::vector<T> Samples() {
    return IntegerSamples<T>();
}
template <>
inline std::vector<bool> Samples() {
    return {false, true};
}
template <>
inline std::vector<double> Samples() {
    return DoubleSamples();
}
template <>
inline std::vector<float> Samples() {
    std::vector<float> lSamples;
    for (double lSample : DoubleSamples())
        lSamples.push_back(static_cast<float>(lSample));
    return lSamples;
}
template <>
inline std::vector<lyrHalfFloat> Samples() {
    std::vector<lyrHalfFloat> lSamples;
    for (int lBits : {0, 0x8000, 1, 0x8001, 0x3FF, 0x400, 0x3C00, 0xBC00, 0x3C01, 0x5CB3, 0x7BFF, 0xFBFF, 0x7C00,
                      0xFC00, 0x7C01, 0x7E00, 0x7FFF, 0xFFFF})
        lSamples.push_back(lyrHalfFloat::FromBits(static_cast<unsigned short>(lBits)));
    return lSamples;
}
template <>
inline std::vector<lyrDouble2> Samples() {
    return {{}, {1.5, 2}, {-0.0, 1e300}, {0.1, std::numeric_limits<double>::quiet_NaN()}};
}
template <>
inline std::vector<lyrDouble3> Samples() {
    return {{}, {1, 2, 3}, {-1e-310, std::numeric_limits<double>::infinity(), 5.435359256080003e+22}};
}
template <>
inline std::vector<lyrDouble4> Samples() {
    return {{}, {1, 2, 3, 4}, {-1.7976931348623157e+308, -2.2250738585072014e-308, -1.2345678901234567e-100, 1.0 / 3}};
}
template <>
inline std::vector<lyrDouble44> Samples() {
    lyrDouble44 lCounted;
    for (int i = 0; i < 16; ++i)
        lCounted[i / 4][i % 4] = i + 0.25;
    return {{}, lCounted};
}
template <>
inline std::vector<KString> Samples() {
    return {"",
            "0",
            "-0",
            "1",
            "-1",
            "+7",
            "  42 ",
            "300",
            "-129",
            "65536",
            "4294967295",
            "4294967296",
            "-9223372036854775808",
            "9223372036854775808",
            "18446744073709551615",
            "18446744073709551616",
            "true",
            "FALSE",
            "1.5",
            "-1e3",
            "abc",
            "inf",
            "nan",
            "1 2",
            "2020-02-29T12:34:56.789",
            "1999-12-31 23:59",
            "2021-02-29T00:00:00.000"};
}
template <>
inline std::vector<KTime> Samples() {
    return {0,
            1,
            -1,
            kTimeUnitsPerSecond,
            352800000,
            -kTimeUnitsPerSecond * 3661,
            9007199254740993,
            std::numeric_limits<long long>::max(),
            std::numeric_limits<long long>::min()};
}
template <>
inline std::vector<lyrBlob> Samples() {
    std::vector<lyrBlob> lSamples(3);
    lSamples[1].Assign("a\0b", 3);
    lSamples[2].Assign("0123456789", 10);
    return lSamples;
}
template <>
inline std::vector<lyrDistance> Samples() {
    const float lInfinity = std::numeric_limits<float>::infinity();
    return {{},
            {1.0f, KLyrSystemUnit::cm},
            {2.54f, KLyrSystemUnit::m},
            {-3.25f, KLyrSystemUnit::Mile},
            {0.1f, KLyrSystemUnit(2.5, 3)},
            {lInfinity, KLyrSystemUnit::mm},
            {3e38f, KLyrSystemUnit::km}};
}
template <>
inline std::vector<lyrDateTime> Samples() {
    std::vector<lyrDateTime> lSamples(3);
    lSamples[1].Set(2024, 2, 29, 23, 59, 59, 999);
    lSamples[2].Set(9999, 12, 31);
    return lSamples;
}

}  // namespace lyrsdk
