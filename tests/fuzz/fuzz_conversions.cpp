// Values of any bytes, converted and compared under any codes, against the second conversion table.
//
// An input is a sequence of conversions, each the destination's code, the source's code, the destination's old value
// and the source.

#include <climits>
#include <cstring>
#include <type_traits>

#include "tests/fuzz/fuzz_support.h"
#include "tests/klyrplugins/any_value.h"
#include "tests/klyrplugins/conversion_reference.h"
#include "tests/klyrplugins/value_samples.h"

namespace {

using lyrfuzz::Fail;
using lyrfuzz::Input;
using lyrfuzz::Reports;
using namespace lyrsdk;

constexpr int kMostConversions = 64;

// 24 and above are codes that nobody knows.
ELyrType CodeOf(std::uint8_t pByte) {
    constexpr int kUnknown[] = {24, 25, -1, -18, INT_MAX, INT_MIN, 0x10012, 255};
    const int lByte = pByte % 32;
    return static_cast<ELyrType>(lByte < eMAX_TYPES ? lByte : kUnknown[lByte - eMAX_TYPES]);
}

template <typename T>
T Take(Input& pInput) {
    static_assert(std::is_arithmetic_v<T>, "others have their own");
    return pInput.Number<T>();
}
template <>
bool Take(Input& pInput) {
    return pInput.Byte() % 2 != 0;
}
template <>
lyrHalfFloat Take(Input& pInput) {
    return lyrHalfFloat::FromBits(pInput.Number<unsigned short>());
}
template <typename Vector>
Vector TakeElements(Input& pInput) {
    Vector lVector;
    for (double& lElement : lVector.mData)
        lElement = pInput.Number<double>();
    return lVector;
}
template <>
lyrDouble2 Take(Input& pInput) {
    return TakeElements<lyrDouble2>(pInput);
}
template <>
lyrDouble3 Take(Input& pInput) {
    return TakeElements<lyrDouble3>(pInput);
}
template <>
lyrDouble4 Take(Input& pInput) {
    return TakeElements<lyrDouble4>(pInput);
}
template <>
lyrDouble44 Take(Input& pInput) {
    lyrDouble44 lMatrix;
    for (lyrDouble4& lRow : lMatrix.mData)
        lRow = TakeElements<lyrDouble4>(pInput);
    return lMatrix;
}
template <>
KString Take(Input& pInput) {
    const std::string lText = pInput.Text(pInput.Byte());
    KString lString;
    lString.Assign(lText.data(), static_cast<int>(lText.size()));
    return lString;
}
template <>
KTime Take(Input& pInput) {
    return KTime(pInput.Number<long long>());
}
template <>
lyrBlob Take(Input& pInput) {
    const std::string lBytes = pInput.Text(pInput.Byte());
    lyrBlob lBlob;
    lBlob.Assign(lBytes.data(), static_cast<int>(lBytes.size()));
    return lBlob;
}
template <>
lyrDistance Take(Input& pInput) {
    const KLyrSystemUnit lUnits[] = {KLyrSystemUnit::mm,   KLyrSystemUnit::dm,   KLyrSystemUnit::cm,
                                     KLyrSystemUnit::m,    KLyrSystemUnit::km,   KLyrSystemUnit::Inch,
                                     KLyrSystemUnit::Foot, KLyrSystemUnit::Yard, KLyrSystemUnit::Mile};
    const float lNumber = pInput.Number<float>();
    const std::uint8_t lUnit = pInput.Byte();
    if (lUnit < 9)
        return lyrDistance(lNumber, lUnits[lUnit]);
    const double lCentimetres = pInput.Number<double>();
    return lyrDistance(lNumber, KLyrSystemUnit(lCentimetres, pInput.Number<double>()));
}
template <>
lyrDateTime Take(Input& pInput) {
    lyrDateTime lDateTime;
    const int lYear = pInput.Number<unsigned short>() % 10000;
    const int lMonth = pInput.Byte() % 12 + 1, lDay = pInput.Byte() % 28 + 1;
    const int lHour = pInput.Byte() % 24, lMinute = pInput.Byte() % 60, lSecond = pInput.Byte() % 60;
    const int lMillisecond = pInput.Number<unsigned short>() % 1000;
    lyrfuzz::Require(lDateTime.Set(lYear, lMonth, lDay, lHour, lMinute, lSecond, lMillisecond), "a date is refused");
    return lDateTime;
}

// A value of the type that a code stands for.
AnyValue TakeValue(ELyrType pType, Input& pInput) {
    switch (pType) {
#define LYRSDK_ROW(pCode, pStored) \
    case pCode:                    \
        return Take<pStored>(pInput);
        LYRSDK_TEST_TYPES(LYRSDK_ROW)
#undef LYRSDK_ROW
        default:
            // An enumeration is an int.
            return Take<int>(pInput);
    }
}

void ExpectReports(Reports& pReports, const char* pMessage, const std::string& pWhere) {
    const std::vector<std::string> lReports = pReports.Take();
    const std::vector<std::string> lExpected(pMessage ? 1 : 0, pMessage ? pMessage : "");
    if (lReports != lExpected)
        Fail(pWhere + ": reports " + (lReports.empty() ? "nothing" : lReports.front()));
}

std::string Hex(const std::string& pBytes) {
    std::string lHex;
    for (char lByte : pBytes) {
        char lText[4];
        std::snprintf(lText, sizeof(lText), "%02x", static_cast<unsigned>(static_cast<unsigned char>(lByte)));
        lHex += lText;
    }
    return lHex;
}

// What the conversion of one pair gives.
struct Expected {
    bool mResult;
    std::string mImage;
    const char* mReport;
};

void Check(const Expected& pExpected, bool pResult, const AnyValue& pDst, Reports& pReports,
           const std::string& pWhere) {
    if (pResult != pExpected.mResult)
        Fail(pWhere + ": gives " + std::to_string(pResult));
    if (ImageOf(pDst) != pExpected.mImage)
        Fail(pWhere + ": is " + Hex(ImageOf(pDst)) + ", not " + Hex(pExpected.mImage));
    ExpectReports(pReports, pExpected.mReport, pWhere);
}

void CheckPair(ELyrType pDstType, ELyrType pSrcType, Input& pInput, Reports& pReports) {
    const char lRule = reference::RuleOf(pDstType, pSrcType);
    const AnyValue lOld = TakeValue(pDstType, pInput);
    AnyValue lSrc = TakeValue(pSrcType, pInput);
    const std::string lSrcImage = ImageOf(lSrc);
    const std::string lPair = "to " + std::to_string(pDstType) + " from " + std::to_string(pSrcType);

    Expected lExpected{false, "", lRule == 'X' ? "Incompatible type assigment" : nullptr};
    lExpected.mResult = reference::Convert(lRule, lOld, lSrc, lExpected.mImage);
    if (!lExpected.mResult)
        lExpected.mImage = ImageOf(lOld);

    AnyValue lDst = lOld;
    bool lResult = CopyByTypes(lDst, lSrc);
    Check(lExpected, lResult, lDst, pReports, lPair + ", by type");
    lDst = lOld;
    lResult = CopyIntoCode(lDst, pDstType, lSrc);
    Check(lExpected, lResult, lDst, pReports, lPair + ", by the destination's code");
    lDst = lOld;
    lResult = CopyByCodes(lDst, pDstType, lSrc, pSrcType);
    Check(lExpected, lResult, lDst, pReports, lPair + ", by codes");
    if (ImageOf(lSrc) != lSrcImage)
        Fail(lPair + ": the source changed");
}

template <typename T>
bool Equal(const T& pLeft, const T& pRight) {
    if constexpr (std::is_floating_point_v<T>)
        return pLeft == pRight;
    else if constexpr (std::is_same_v<T, lyrDistance>)
        return Equal(pLeft.value(), pRight.value()) && pLeft.unit() == pRight.unit();
    else
        return ImageOf(pLeft) == ImageOf(pRight);
}
template <typename Vector>
bool EqualElements(const Vector& pLeft, const Vector& pRight) {
    bool lEqual = true;
    for (std::size_t i = 0; i < sizeof(pLeft.mData) / sizeof(pLeft.mData[0]); ++i)
        lEqual = lEqual && Equal(pLeft.mData[i], pRight.mData[i]);
    return lEqual;
}
template <>
bool Equal(const lyrDouble2& pLeft, const lyrDouble2& pRight) {
    return EqualElements(pLeft, pRight);
}
template <>
bool Equal(const lyrDouble3& pLeft, const lyrDouble3& pRight) {
    return EqualElements(pLeft, pRight);
}
template <>
bool Equal(const lyrDouble4& pLeft, const lyrDouble4& pRight) {
    return EqualElements(pLeft, pRight);
}
template <>
bool Equal(const lyrDouble44& pLeft, const lyrDouble44& pRight) {
    return EqualElements(pLeft, pRight);
}

// Two values of one type: compared, and one copied onto itself.
template <typename T>
void CheckSame(ELyrType pType, Input& pInput, Reports& pReports) {
    T lLeft = Take<T>(pInput);
    const T lRight = Take<T>(pInput);
    const std::string lWhere = "two values of " + std::to_string(pType);
    if (lyrCompare(&lLeft, &lRight, pType) != Equal(lLeft, lRight))
        Fail(lWhere + ": compared wrong");
    if (lyrCompare(&lLeft, &lLeft, pType) != Equal(lLeft, lLeft))
        Fail(lWhere + ": compared wrong with itself");
    const std::string lImage = ImageOf(lLeft);
    if (!lyrCopy(&lLeft, pType, &lLeft, pType) || ImageOf(lLeft) != lImage)
        Fail(lWhere + ": changed by a copy onto itself");
    ExpectReports(pReports, nullptr, lWhere);
}

// A code without a value on either side.
void CheckWithoutValue(ELyrType pDstType, ELyrType pSrcType, Reports& pReports) {
    alignas(16) unsigned char lDst[256] = {}, lSrc[256] = {};
    const unsigned char lZeros[256] = {};
    const ELyrType lRefused = lyrHoldsValue(pSrcType) ? pDstType : pSrcType;
    const char* lReport =
        lRefused == eREFERENCE ? "Trying to set value on a void Reference type" : "Trying to assign an unknown type";
    const bool lHolds = lyrHoldsValue(pSrcType);
    // A value that exists has to be one.
    if (lHolds)
        lyrfuzz::Require(lyrConstruct(pSrcType, lSrc), "a value is not made");
    lyrfuzz::Require(!lyrCopy(lDst, pDstType, lSrc, pSrcType), "a code without a value is converted");
    ExpectReports(pReports, lReport, "codes " + std::to_string(pDstType) + " and " + std::to_string(pSrcType));
    lyrfuzz::Require(std::memcmp(lDst, lZeros, sizeof(lDst)) == 0, "a refused conversion writes");
    if (lHolds)
        lyrDestruct(pSrcType, lSrc);
    for (ELyrType lType : {pDstType, pSrcType}) {
        if (lyrHoldsValue(lType))
            continue;
        lyrfuzz::Require(!lyrCompare(lDst, lDst, lType), "a code without a value is compared");
        ExpectReports(pReports,
                      lType == eREFERENCE ? "Trying to compare value on a void Reference type"
                                          : "Trying to compare an unknown type",
                      "compared");
    }
}

void CheckCodes(ELyrType pDstType, ELyrType pSrcType, Input& pInput, Reports& pReports) {
    if (!lyrHoldsValue(pDstType) || !lyrHoldsValue(pSrcType))
        return CheckWithoutValue(pDstType, pSrcType, pReports);
    switch (pDstType == pSrcType ? pDstType : eENUM) {
#define LYRSDK_ROW(pCode, pType)                      \
    case pCode:                                       \
        CheckSame<pType>(pDstType, pInput, pReports); \
        break;
        LYRSDK_TEST_TYPES(LYRSDK_ROW)
#undef LYRSDK_ROW
        default:
            break;
    }
    CheckPair(pDstType, pSrcType, pInput, pReports);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t pSize) {
    const lyrfuzz::LeakCheck lLeaks;
    Reports lReports;
    Input lInput(pData, pSize);
    for (int i = 0; i < kMostConversions && !lInput.AtEnd(); ++i) {
        const ELyrType lDstType = CodeOf(lInput.Byte());
        const ELyrType lSrcType = CodeOf(lInput.Byte());
        CheckCodes(lDstType, lSrcType, lInput, lReports);
    }
    return 0;
}
