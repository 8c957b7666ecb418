#include "tests/model/property_value.h"

#include <cctype>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace lyrmodel {
namespace {

constexpr long long kTimeUnit = 705600000;

// clang-format off
// Rows: destination. Columns: source.
//   = same  C cast  V spread over a vector  E first element  3, 4 between vectors  P parse  S show  B bytes  T seconds
//   0 refused  X refused with a report
constexpr int kColumns[] = {kByte, kShort, kBool, kInt, kFloat, kDouble, kVector2, kVector3, kVector4, kString, kTime, kBlob};
constexpr const char* kRules[] = {
    //        uc s b i f d 2 3 4 st t bl
    /* uc */ "=" "0" "C" "C" "C" "C" "0" "0" "0" "P" "0" "0",
    /* s  */ "C" "=" "C" "C" "C" "C" "0" "0" "0" "P" "0" "0",
    /* b  */ "C" "C" "=" "C" "C" "C" "0" "0" "0" "P" "0" "0",
    /* i  */ "C" "C" "C" "=" "C" "C" "0" "0" "0" "P" "0" "0",
    /* f  */ "C" "C" "C" "C" "=" "C" "0" "0" "0" "0" "0" "0",
    /* d  */ "C" "C" "C" "C" "C" "=" "E" "E" "E" "P" "T" "X",
    /* V2 */ "V" "V" "V" "V" "V" "V" "=" "X" "X" "X" "X" "X",
    /* V3 */ "V" "V" "V" "V" "V" "V" "0" "=" "3" "0" "0" "0",
    /* V4 */ "0" "0" "0" "0" "0" "0" "0" "4" "=" "0" "0" "0",
    /* st */ "S" "S" "S" "S" "S" "S" "S" "S" "S" "=" "S" "S",
    /* t  */ "X" "X" "X" "X" "X" "X" "X" "X" "X" "X" "=" "X",
    /* bl */ "B" "B" "B" "B" "B" "B" "B" "B" "B" "B" "B" "=",
};
// clang-format on

int ColumnOf(int pCode) {
    const int lCode = pCode == kEnum ? static_cast<int>(kInt) : pCode;
    for (int i = 0; i < static_cast<int>(std::size(kColumns)); ++i)
        if (kColumns[i] == lCode)
            return i;
    return -1;
}

bool IsFloating(int pCode) {
    return pCode == kFloat || pCode == kDouble;
}

int ElementCount(int pCode) {
    return pCode == kVector2 ? 2 : pCode == kVector3 ? 3 : pCode == kVector4 ? 4 : 1;
}

// The integer part if it lies in the range, else the range's least value.
long long Truncated(double pNumber, long long pLeast, long long pGreatest) {
    const double lWhole = std::trunc(pNumber);
    const bool lFits = lWhole >= static_cast<double>(pLeast) && lWhole <= static_cast<double>(pGreatest);
    return lFits ? static_cast<long long>(lWhole) : pLeast;
}

void Cast(Value& pTo, const Value& pFrom) {
    if (IsFloating(pTo.mCode)) {
        const double lNumber = IsFloating(pFrom.mCode) ? pFrom.mNumbers[0] : static_cast<double>(pFrom.mInteger);
        pTo.mNumbers[0] = pTo.mCode == kFloat ? static_cast<double>(static_cast<float>(lNumber)) : lNumber;
        return;
    }
    if (pTo.mCode == kBool) {
        pTo.mInteger = IsFloating(pFrom.mCode) ? pFrom.mNumbers[0] != 0 : pFrom.mInteger != 0;
        return;
    }
    const bool lNarrow = pTo.mCode == kByte || pTo.mCode == kShort;
    long long lInteger = pFrom.mInteger;
    if (IsFloating(pFrom.mCode))
        lInteger =
            lNarrow ? Truncated(pFrom.mNumbers[0], SHRT_MIN, SHRT_MAX) : Truncated(pFrom.mNumbers[0], INT_MIN, INT_MAX);
    if (pTo.mCode == kByte)
        lInteger &= 0xFF;
    else if (pTo.mCode == kShort)
        lInteger = ((lInteger & 0xFFFF) ^ 0x8000) - 0x8000;
    pTo.mInteger = lInteger;
}

std::string ShowFloating(double pNumber, bool pSingle) {
    if (std::isnan(pNumber))
        return "nan";
    char lBuffer[64];
    const int lMost = pSingle ? 9 : 17;
    for (int lDigits = pSingle ? 6 : 15; lDigits <= lMost; ++lDigits) {
        std::snprintf(lBuffer, sizeof(lBuffer), "%.*g", lDigits, pNumber);
        const bool lSame = pSingle ? std::strtof(lBuffer, nullptr) == static_cast<float>(pNumber)
                                   : std::strtod(lBuffer, nullptr) == pNumber;
        if (lSame)
            break;
    }
    return lBuffer;
}

std::string ShowTime(long long pCount) {
    const long long lCount = pCount < 0 ? -pCount : pCount;
    const long long lSeconds = lCount / kTimeUnit;
    // The nearest nanosecond: 10^9 / 705,600,000 is 625 / 441, and 441 is odd, so that there are no halves.
    const long long lNanos = ((lCount % kTimeUnit) * 625 + 220) / 441;
    char lBuffer[64];
    std::snprintf(lBuffer, sizeof(lBuffer), "%s%02lld:%02lld:%02lld", pCount < 0 ? "-" : "", lSeconds / 3600,
                  lSeconds / 60 % 60, lSeconds % 60);
    std::string lText = lBuffer;
    if (lNanos) {
        std::snprintf(lBuffer, sizeof(lBuffer), ".%09lld", lNanos);
        lText += lBuffer;
        lText.erase(lText.find_last_not_of('0') + 1);
    }
    return lText;
}

std::string Show(const Value& pFrom) {
    switch (pFrom.mCode) {
        case kBool:
            return pFrom.mInteger ? "true" : "false";
        case kTime:
            return ShowTime(pFrom.mInteger);
        case kBlob:
            return "<blob>";
        case kFloat:
            return ShowFloating(pFrom.mNumbers[0], true);
        case kDouble:
        case kVector2:
        case kVector3:
        case kVector4: {
            std::string lText;
            for (int i = 0; i < ElementCount(pFrom.mCode); ++i)
                lText += (i ? "," : "") + ShowFloating(pFrom.mNumbers[static_cast<std::size_t>(i)], false);
            return lText;
        }
        default:
            return std::to_string(pFrom.mInteger);
    }
}

bool ParseInteger(const std::string& pText, long long pLeast, unsigned long long pGreatest, long long& pInteger) {
    const bool lSigned = !pText.empty() && (pText[0] == '-' || pText[0] == '+');
    const std::string lDigits = pText.substr(lSigned ? 1 : 0);
    if (lDigits.empty() || lDigits.find_first_not_of("0123456789") != std::string::npos)
        return false;
    errno = 0;
    const unsigned long long lSize = std::strtoull(lDigits.c_str(), nullptr, 10);
    if (errno == ERANGE)
        return false;
    const bool lNegative = pText[0] == '-';
    const unsigned long long lLimit = lNegative ? 0ull - static_cast<unsigned long long>(pLeast) : pGreatest;
    if (lSize > lLimit)
        return false;
    pInteger = static_cast<long long>(lNegative ? 0ull - lSize : lSize);
    return true;
}

// An optional sign, digits with an optional point, an optional exponent; or inf, infinity, nan.
bool IsFloatingText(const std::string& pText) {
    std::string lRest;
    for (char lChar : pText)
        lRest += static_cast<char>(std::tolower(static_cast<unsigned char>(lChar)));
    if (!lRest.empty() && (lRest[0] == '-' || lRest[0] == '+'))
        lRest.erase(0, 1);
    if (lRest == "inf" || lRest == "infinity" || lRest == "nan")
        return true;
    const std::size_t lExponent = lRest.find('e');
    std::string lMantissa = lRest.substr(0, lExponent);
    const std::size_t lPoint = lMantissa.find('.');
    if (lPoint != std::string::npos)
        lMantissa.erase(lPoint, 1);
    long long lUnused = 0;
    const bool lDigits = !lMantissa.empty() && lMantissa.find_first_not_of("0123456789") == std::string::npos;
    return lDigits && (lExponent == std::string::npos ||
                       ParseInteger(lRest.substr(lExponent + 1), -LLONG_MAX, LLONG_MAX, lUnused));
}

bool ParseDouble(const std::string& pText, double& pNumber) {
    if (!IsFloatingText(pText))
        return false;
    errno = 0;
    const double lNumber = std::strtod(pText.c_str(), nullptr);
    if (errno == ERANGE && (lNumber == 0 || std::isinf(lNumber)))
        return false;
    pNumber = lNumber;
    return true;
}

bool Parse(Value& pTo, const std::string& pBytes) {
    const char* lBlanks = " \t\n\v\f\r";
    const std::size_t lFirst = pBytes.find_first_not_of(lBlanks);
    if (lFirst == std::string::npos)
        return false;
    const std::string lText = pBytes.substr(lFirst, pBytes.find_last_not_of(lBlanks) + 1 - lFirst);
    long long lInteger = 0;
    switch (pTo.mCode) {
        case kDouble:
            return ParseDouble(lText, pTo.mNumbers[0]);
        case kBool: {
            std::string lLower;
            for (char lChar : lText)
                lLower += static_cast<char>(std::tolower(static_cast<unsigned char>(lChar)));
            if (lLower != "true" && lLower != "false") {
                if (!ParseInteger(lText, LLONG_MIN, ULLONG_MAX, lInteger))
                    return false;
                lLower = lInteger ? "true" : "false";
            }
            pTo.mInteger = lLower == "true";
            return true;
        }
        case kByte:
            if (!ParseInteger(lText, SCHAR_MIN, UCHAR_MAX, lInteger))
                return false;
            pTo.mInteger = lInteger & 0xFF;
            return true;
        case kShort:
            return ParseInteger(lText, SHRT_MIN, SHRT_MAX, pTo.mInteger);
        default:
            return ParseInteger(lText, INT_MIN, INT_MAX, pTo.mInteger);
    }
}

template <typename T>
std::string BytesOf(const T* pFirst, int pCount = 1) {
    return std::string(reinterpret_cast<const char*>(pFirst), sizeof(T) * static_cast<std::size_t>(pCount));
}

// The value's memory.
std::string Bytes(const Value& pFrom) {
    switch (pFrom.mCode) {
        case kByte:
        case kBool:
            return std::string(1, static_cast<char>(pFrom.mInteger));
        case kShort: {
            const short lShort = static_cast<short>(pFrom.mInteger);
            return BytesOf(&lShort);
        }
        case kInt:
        case kEnum: {
            const int lInt = static_cast<int>(pFrom.mInteger);
            return BytesOf(&lInt);
        }
        case kTime:
            return BytesOf(&pFrom.mInteger);
        case kFloat: {
            const float lFloat = static_cast<float>(pFrom.mNumbers[0]);
            return BytesOf(&lFloat);
        }
        case kString:
            return pFrom.mBytes;
        default:
            return BytesOf(pFrom.mNumbers.data(), ElementCount(pFrom.mCode));
    }
}

void Spread(Value& pTo, const Value& pFrom) {
    Value lScalar(kDouble);
    Cast(lScalar, pFrom);
    for (int i = 0; i < ElementCount(pTo.mCode); ++i)
        pTo.mNumbers[static_cast<std::size_t>(i)] = lScalar.mNumbers[0];
}

bool ConvertBy(char pRule, Value& pTo, const Value& pFrom, Reports& pReports) {
    switch (pRule) {
        case 'X':
            pReports.push_back("Incompatible type assigment");
            return false;
        case '0':
            return false;
        case 'P':
            return Parse(pTo, pFrom.mBytes);
        case 'C':
            Cast(pTo, pFrom);
            return true;
        case 'V':
            Spread(pTo, pFrom);
            return true;
        case 'E':
            pTo.mNumbers[0] = pFrom.mNumbers[0];
            return true;
        case 'T':
            pTo.mNumbers[0] = static_cast<double>(pFrom.mInteger) / static_cast<double>(kTimeUnit);
            return true;
        case '3':
        case '4':
            for (std::size_t i = 0; i < 3; ++i)
                pTo.mNumbers[i] = pFrom.mNumbers[i];
            return true;
        case 'S':
            pTo.mBytes = Show(pFrom);
            return true;
        case 'B':
            pTo.mBytes = Bytes(pFrom);
            return true;
        default: {
            const int lCode = pTo.mCode;
            pTo = pFrom;
            pTo.mCode = lCode;
            return true;
        }
    }
}

}  // namespace

bool HoldsValue(int pCode) {
    return ColumnOf(pCode) >= 0;
}

bool SameBits(const Value& pLeft, const Value& pRight) {
    return pLeft.mCode == pRight.mCode && pLeft.mInteger == pRight.mInteger && pLeft.mBytes == pRight.mBytes &&
           std::memcmp(pLeft.mNumbers.data(), pRight.mNumbers.data(), sizeof(pLeft.mNumbers)) == 0;
}

bool CompareEqual(const Value& pLeft, const Value& pRight, Reports& pReports) {
    if (!HoldsValue(pLeft.mCode)) {
        pReports.push_back(pLeft.mCode == kReference ? "Trying to compare value on a void Reference type"
                                                     : "Trying to compare an unknown type");
        return false;
    }
    return pLeft.mInteger == pRight.mInteger && pLeft.mNumbers == pRight.mNumbers && pLeft.mBytes == pRight.mBytes;
}

bool Convert(Value& pTo, const Value& pFrom, Reports& pReports) {
    for (int lCode : {pFrom.mCode, pTo.mCode}) {
        if (HoldsValue(lCode))
            continue;
        pReports.push_back(lCode == kReference ? "Trying to set value on a void Reference type"
                                               : "Trying to assign an unknown type");
        return false;
    }
    return ConvertBy(kRules[ColumnOf(pTo.mCode)][ColumnOf(pFrom.mCode)], pTo, pFrom, pReports);
}

std::string ToText(const Value& pValue) {
    std::string lText = std::to_string(pValue.mCode) + ":";
    if (!HoldsValue(pValue.mCode))
        return lText + "nothing";
    if (pValue.mCode == kString || pValue.mCode == kBlob)
        return lText + "\"" + pValue.mBytes.substr(0, 40) + "\"" +
               (pValue.mBytes.size() > 40 ? "..(" + std::to_string(pValue.mBytes.size()) + ")" : "");
    return lText + Show(pValue);
}

}  // namespace lyrmodel
