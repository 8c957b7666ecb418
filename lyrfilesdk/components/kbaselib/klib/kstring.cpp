#include "lyrfilesdk/components/kbaselib/klib/kstring.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <system_error>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

namespace lyrsdk {
namespace {

static_assert(FLT_EVAL_METHOD == 0, "numbers are read with plain double arithmetic; 32-bit x86 needs -mfpmath=sse");

using detail::TextHeader;

TextHeader* HeaderOf(char* pText) {
    return reinterpret_cast<TextHeader*>(pText) - 1;
}

// Keeps a whole block below the largest object that 32-bit addresses can span.
constexpr int sgMaxLength = INT_MAX - static_cast<int>(sizeof(TextHeader)) - 1;

// A block with room for pRoom bytes and the zero byte behind them, or null.
char* NewText(int pRoom) {
    if (pRoom > sgMaxLength)
        return nullptr;
    void* lMemory = LyrSdkMalloc(sizeof(TextHeader) + static_cast<std::size_t>(pRoom) + 1);
    return lMemory ? reinterpret_cast<char*>(::new (lMemory) TextHeader{0, pRoom} + 1) : nullptr;
}

void FreeText(char* pText) {
    if (pText)
        LyrSdkFree(HeaderOf(pText));
}

void SetLength(char* pText, int pLength) {
    HeaderOf(pText)->mLength = pLength;
    pText[pLength] = '\0';
}

// pText when it has room for pRoom bytes, or a new block, or null.
char* WithRoom(char* pText, int pRoom) {
    return pText && HeaderOf(pText)->mRoom >= pRoom ? pText : NewText(pRoom);
}

// Puts another block, or the same one, in the place of pText.
void Replace(char*& pText, char* pNew) {
    if (pText == pNew)
        return;
    FreeText(pText);
    pText = pNew;
}

// A number of n bits has the digits of 2^(n-1), or one more. 1233/4096 is the logarithm of 2.
int CountDigits(unsigned int pValue) {
    static constexpr unsigned int sPowers[] = {0,      10,      100,      1000,      10000,
                                               100000, 1000000, 10000000, 100000000, 1000000000};
    const int lBits = 32 - __builtin_clz(pValue | 1);
    const int lPower = lBits * 1233 / 4096;
    return lPower + (pValue >= sPowers[lPower] ? 1 : 0);
}

// Writes the digits that end in front of pEnd, in pairs. Four of them take one division that the next have to wait for.
void WriteDigits(char* pEnd, unsigned int pValue) {
    static constexpr char sPairs[] =
        "0001020304050607080910111213141516171819202122232425262728293031323334353637383940414243444546474849"
        "5051525354555657585960616263646566676869707172737475767778798081828384858687888990919293949596979899";
    const auto lWritePair = [&pEnd](unsigned int pPair) { std::memcpy(pEnd -= 2, sPairs + std::size_t(2) * pPair, 2); };
    for (; pValue >= 10000; pValue /= 10000) {
        lWritePair(pValue % 100);
        lWritePair(pValue % 10000 / 100);
    }
    if (pValue >= 100)
        lWritePair(pValue % 100);
    const unsigned int lFirst = pValue >= 100 ? pValue / 100 : pValue;
    if (lFirst >= 10)
        lWritePair(lFirst);
    else
        pEnd[-1] = static_cast<char>('0' + lFirst);
}

// The length of a C text; -1 when an int cannot hold it.
int LengthOf(const char* pText) {
    const std::size_t lLength = pText ? std::strlen(pText) : 0;
    return lLength <= static_cast<std::size_t>(INT_MAX) ? static_cast<int>(lLength) : -1;
}

}  // namespace

KString::KString(const KString& pOther) {
    Assign(pOther.Text(), pOther.GetLen());
}

KString::KString(const char* pText) {
    Assign(pText, LengthOf(pText));
}

KString::KString(int pValue) {
    Assign(pValue);
}

KString::KString(float pValue) {
    Assign(pValue);
}

KString::KString(double pValue) {
    Assign(pValue);
}

KString& KString::operator=(const KString& pOther) {
    Assign(pOther.Text(), pOther.GetLen());
    return *this;
}

KString& KString::operator=(KString&& pOther) noexcept {
    if (this != &pOther) {
        FreeText(mText);
        mText = pOther.mText;
        pOther.mText = nullptr;
    }
    return *this;
}

KString& KString::operator=(const char* pText) {
    Assign(pText, LengthOf(pText));
    return *this;
}

bool KString::Assign(const char* pText, int pLength) {
    if (pLength < 0)
        return false;
    if (!pText || pLength == 0) {
        Clear();
        return true;
    }
    char* lText = WithRoom(mText, pLength);
    if (!lText)
        return false;
    // The source may lie in the old block, which is therefore freed last.
    std::memmove(lText, pText, static_cast<std::size_t>(pLength));
    SetLength(lText, pLength);
    Replace(mText, lText);
    return true;
}

bool KString::Assign(int pValue) {
    const unsigned int lBits = static_cast<unsigned int>(pValue);
    const unsigned int lMagnitude = pValue < 0 ? 0 - lBits : lBits;
    const int lLength = CountDigits(lMagnitude) + (pValue < 0 ? 1 : 0);
    char* lText = WithRoom(mText, lLength);
    if (!lText)
        return false;
    // In its place: bytes that were just written one by one are slow to copy as words.
    lText[0] = '-';
    WriteDigits(lText + lLength, lMagnitude);
    SetLength(lText, lLength);
    Replace(mText, lText);
    return true;
}

bool KString::Assign(float pValue) {
    char lBuffer[32];
    return Assign(lBuffer, lyrFormat(lBuffer, pValue));
}

bool KString::Assign(double pValue) {
    char lBuffer[32];
    return Assign(lBuffer, lyrFormat(lBuffer, pValue));
}

bool KString::Append(const char* pText) {
    return Append(pText, LengthOf(pText));
}

bool KString::Append(const KString& pOther) {
    return Append(pOther.Text(), pOther.GetLen());
}

bool KString::Append(const char* pText, int pLength) {
    const int lOldLength = GetLen();
    if (pLength < 0 || pLength > INT_MAX - lOldLength)
        return false;
    if (!pText || pLength == 0)
        return true;
    const int lLength = lOldLength + pLength;
    char* lText = mText;
    if (!lText || HeaderOf(lText)->mRoom < lLength) {
        // LCOV_EXCL_BR_LINE: the other way takes a text of a gibibyte
        const int lDouble = lOldLength <= sgMaxLength / 2 ? lOldLength * 2 : sgMaxLength;
        lText = NewText(lLength > lDouble ? lLength : lDouble);
        if (!lText)
            return false;
        std::memcpy(lText, Text(), static_cast<std::size_t>(lOldLength));
    }
    std::memmove(lText + lOldLength, pText, static_cast<std::size_t>(pLength));
    SetLength(lText, lLength);
    Replace(mText, lText);
    return true;
}

void KString::Clear() {
    FreeText(mText);
    mText = nullptr;
}

KString operator+(const KString& pLeft, const char* pRight) {
    KString lSum(pLeft);
    if (lSum.GetLen() != pLeft.GetLen() || !lSum.Append(pRight))
        lSum.Clear();
    return lSum;
}

KString operator+(const KString& pLeft, const KString& pRight) {
    KString lSum(pLeft);
    if (lSum.GetLen() != pLeft.GetLen() || !lSum.Append(pRight))
        lSum.Clear();
    return lSum;
}

bool operator==(const KString& pLeft, const KString& pRight) {
    return pLeft.GetLen() == pRight.GetLen() &&
           std::memcmp(pLeft.Buffer(), pRight.Buffer(), static_cast<std::size_t>(pLeft.GetLen())) == 0;
}

bool operator==(const KString& pLeft, const char* pRight) {
    const std::size_t lLength = pRight ? std::strlen(pRight) : 0;
    return static_cast<std::size_t>(pLeft.GetLen()) == lLength &&
           (lLength == 0 || std::memcmp(pLeft.Buffer(), pRight, lLength) == 0);
}

int lyrCompareText(const KString& pLeft, const KString& pRight) {
    const int lLeft = pLeft.GetLen();
    const int lRight = pRight.GetLen();
    const std::size_t lCommon = static_cast<unsigned int>(lLeft < lRight ? lLeft : lRight) & INT_MAX;
    const int lOrder = std::memcmp(pLeft.Buffer(), pRight.Buffer(), lCommon);
    if (lOrder != 0)
        return lOrder;
    return lLeft < lRight ? -1 : lLeft > lRight;
}

namespace {

int Terminate(char (&pBuffer)[32], const std::to_chars_result& pResult) {
    *pResult.ptr = '\0';
    return static_cast<int>(pResult.ptr - pBuffer);
}

template <typename T>
bool SameBits(T pLeft, T pRight) {
    return std::memcmp(&pLeft, &pRight, sizeof(T)) == 0;
}

bool ReadBack(const char* pText, int pLength, double& pValue) {
    return lyrParseDouble(pText, pLength, pValue);
}

bool ReadBack(const char* pText, int pLength, float& pValue) {
    const std::from_chars_result lResult = std::from_chars(pText, pText + pLength, pValue);
    return lResult.ec == std::errc() && lResult.ptr == pText + pLength;
}

// A text of the form [-]d[.ddd]e+dd taken apart: what it means is mCount digits with the point behind the first of
// them, times ten to mExponent.
struct Scientific {
    char* mFirst;
    int mCount;
    int mExponent;
};

Scientific TakeApart(char* pText, const char* pEnd) {
    char* const lFirst = pText + (*pText == '-');
    const char* lSign = pEnd - 3;
    int lExponent = (pEnd[-2] - '0') * 10 + (pEnd[-1] - '0');
    if (lSign[-1] != 'e') {
        lExponent += (*lSign - '0') * 100;
        --lSign;
    }
    const int lMantissa = static_cast<int>(lSign - 1 - lFirst);
    return {lFirst, lMantissa > 1 ? lMantissa - 1 : 1, *lSign == '-' ? -lExponent : lExponent};
}

// Writes the number without an exponent, in its place, and returns the end of the text. The last digit is not a zero
// behind the point.
char* WithoutExponent(const Scientific& pNumber) {
    char* const lText = pNumber.mFirst;
    const int lCount = pNumber.mCount;
    const int lPlaces = pNumber.mExponent;
    const auto lMove = [lText](int pTo, int pDigits) {
        std::memmove(lText + pTo, lText + 2, static_cast<std::size_t>(pDigits));
    };
    const auto lFillZeros = [lText](int pFrom, int pTo) {
        for (int i = pFrom; i < pTo; ++i)
            lText[i] = '0';
    };
    if (lPlaces < 0) {
        lMove(2 - lPlaces, lCount - 1);
        lText[1 - lPlaces] = lText[0];
        lFillZeros(0, 1 - lPlaces);
        lText[1] = '.';
        return lText + 1 - lPlaces + lCount;
    }
    if (lPlaces < lCount - 1) {
        // The digits behind the point stand where they belong.
        lMove(1, lPlaces);
        lText[1 + lPlaces] = '.';
        return lText + 1 + lCount;
    }
    lMove(1, lCount - 1);
    lFillZeros(lCount, lPlaces + 1);
    return lText + 1 + lPlaces;
}

template <typename T>
bool IsPowerOfTwo(T pValue) {
    int lExponent;
    return std::frexp(std::fabs(pValue), &lExponent) == T(0.5);
}

// The first of the numbers of digits whose text reads back, found by trying them.
//
// The buffer is larger than the longest text, 24 bytes, so that writing cannot fail.
template <typename T>
int FormatByTrial(char (&pBuffer)[32], T pValue, int pFewestDigits, int pMostDigits) {
    for (int lDigits = pFewestDigits;; ++lDigits) {
        const int lLength = Terminate(pBuffer, std::to_chars(pBuffer, pBuffer + sizeof(pBuffer) - 1, pValue,
                                                             std::chars_format::general, lDigits));
        T lBack{};
        if (lDigits >= pMostDigits || !std::isfinite(pValue) ||
            (ReadBack(pBuffer, lLength, lBack) && SameBits(lBack, pValue)))
            return lLength;
    }
}

// The shortest text that reads back has the digits sought, zeros at the end apart. Every text of pFewestDigits digits
// comes back from the nearest real, so that a shorter one is what rounding to pFewestDigits gives as well. A longer one
// is the nearest of its length that reads back, which is the nearest of all because a real lies in the middle of what
// reads as it.
//
// Subnormal numbers have fewer digits than the first needs, and a power of two does not lie in the middle.
template <typename T>
int FormatReal(char (&pBuffer)[32], T pValue, int pFewestDigits, int pMostDigits) {
    // The sign of a NaN depends on how a compiler folded the arithmetic before it, and is therefore not shown.
    if (std::isnan(pValue))
        pValue = std::numeric_limits<T>::quiet_NaN();
    if (!std::isnormal(pValue) && pValue != 0)
        return FormatByTrial(pBuffer, pValue, pFewestDigits, pMostDigits);
    std::to_chars_result lResult =
        std::to_chars(pBuffer, pBuffer + sizeof(pBuffer) - 1, pValue, std::chars_format::scientific);
    const Scientific lNumber = TakeApart(pBuffer, lResult.ptr);
    if (lNumber.mCount > pFewestDigits && lNumber.mCount < pMostDigits && IsPowerOfTwo(pValue))
        return FormatByTrial(pBuffer, pValue, lNumber.mCount, pMostDigits);
    if (lNumber.mExponent >= -4 &&
        lNumber.mExponent < (lNumber.mCount > pFewestDigits ? lNumber.mCount : pFewestDigits))
        lResult.ptr = WithoutExponent(lNumber);
    return Terminate(pBuffer, lResult);
}

}  // namespace

int lyrFormat(char (&pBuffer)[32], int pValue) {
    return Terminate(pBuffer, std::to_chars(pBuffer, pBuffer + sizeof(pBuffer) - 1, pValue));
}

int lyrFormat(char (&pBuffer)[32], float pValue) {
    return FormatReal(pBuffer, pValue, 6, 9);
}

int lyrFormat(char (&pBuffer)[32], double pValue) {
    return FormatReal(pBuffer, pValue, 15, 17);
}

namespace {

// A decimal number taken apart: (-1)^mNegative * mDigits * 10^mExponent.
struct Decimal {
    std::uint64_t mDigits = 0;
    std::int64_t mExponent = 0;
    bool mNegative = false;
};

bool IsDigit(char pCharacter) {
    return pCharacter >= '0' && pCharacter <= '9';
}

// Reads "e", an optional sign and digits that reach pEnd.
bool ReadExponent(const char* pText, const char* pEnd, std::int64_t& pExponent) {
    ++pText;
    const bool lNegative = pText != pEnd && *pText == '-';
    if (pText != pEnd && (*pText == '-' || *pText == '+'))
        ++pText;
    if (pText == pEnd)
        return false;
    std::int64_t lExponent = 0;
    for (; pText != pEnd; ++pText) {
        if (!IsDigit(*pText))
            return false;
        // More than any number of digits in front of it could make up for.
        if (lExponent < std::int64_t{1} << 40)
            lExponent = lExponent * 10 + (*pText - '0');
    }
    pExponent += lNegative ? -lExponent : lExponent;
    return true;
}

// Appends the digits at pText to pDigits and returns the first byte that is none.
const char* ReadDigits(const char* pText, const char* pEnd, std::uint64_t& pDigits) {
    std::uint64_t lDigits = pDigits;
    for (; pText != pEnd; ++pText) {
        const unsigned int lDigit = static_cast<unsigned char>(*pText) - static_cast<unsigned int>('0');
        if (lDigit > 9)
            break;
        lDigits = lDigits * 10 + lDigit;
    }
    pDigits = lDigits;
    return pText;
}

// The number of digits from pText to pEnd, between which nothing but digits and points stand, without leading zeros.
std::ptrdiff_t SignificantDigits(const char* pText, const char* pEnd) {
    while (pText != pEnd && (*pText == '0' || *pText == '.'))
        ++pText;
    return pEnd - pText - std::count(pText, pEnd, '.');
}

// Takes a text that is not empty apart when its digits, as a whole number, are exact as a double. False for anything
// else.
bool ReadShort(const char* pText, const char* pEnd, Decimal& pDecimal) {
    if (*pText == '-') {
        pDecimal.mNegative = true;
        ++pText;
    }
    const char* const lFirst = pText;
    pText = ReadDigits(pText, pEnd, pDecimal.mDigits);
    std::ptrdiff_t lCount = pText - lFirst;
    if (pText != pEnd && *pText == '.') {
        const char* const lFraction = pText + 1;
        pText = ReadDigits(lFraction, pEnd, pDecimal.mDigits);
        pDecimal.mExponent = lFraction - pText;
        lCount += pText - lFraction;
    }
    if (lCount == 0 || pDecimal.mDigits > (std::uint64_t{1} << 53))
        return false;
    // More than 19 digits may have run over, unless there are zeros in front of them.
    if (lCount > 19 && SignificantDigits(lFirst, pText) > 19)
        return false;
    if (pText == pEnd)
        return true;
    return (*pText == 'e' || *pText == 'E') && ReadExponent(pText, pEnd, pDecimal.mExponent);
}

// The digits are exact, and so is the power when it is small, so that one multiplication or division rounds once. False
// for a larger power.
//
// std::from_chars takes the same short cut, but a runtime built for x87 arithmetic rounds the product to 64 bits first
// and to 53 bits behind that, which misses the nearest double for texts such as 5.435359256080003e+22.
bool RoundOnce(const Decimal& pDecimal, double& pValue) {
    static constexpr double sPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                         1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    if (pDecimal.mExponent < -22 || pDecimal.mExponent > 22)
        return false;
    // Through the signed type, for which processors have an instruction.
    double lValue = static_cast<double>(static_cast<std::int64_t>(pDecimal.mDigits));
    if (pDecimal.mExponent < 0)
        lValue /= sPowers[-pDecimal.mExponent];
    else
        lValue *= sPowers[pDecimal.mExponent];
    pValue = pDecimal.mNegative ? -lValue : lValue;
    return true;
}

// True when the digits in front of the exponent are not all zero. The text is known to be a number.
bool HasNonZeroDigit(const char* pText, const char* pEnd) {
    // LCOV_EXCL_START: only runtimes ask that do not call such numbers out of range
    for (; pText != pEnd && *pText != 'e' && *pText != 'E'; ++pText)
        if (*pText >= '1' && *pText <= '9')
            return true;
    return false;
    // LCOV_EXCL_STOP
}

}  // namespace

bool lyrParseDouble(const char* pText, int pLength, double& pValue) {
    if (!pText || pLength <= 0)
        return false;
    const char* const lEnd = pText + pLength;
    Decimal lDecimal;
    double lValue = 0.0;
    if (ReadShort(pText, lEnd, lDecimal) && RoundOnce(lDecimal, lValue)) {
        pValue = lValue;
        return true;
    }
    const std::from_chars_result lResult = std::from_chars(pText, lEnd, lValue);
    if (lResult.ec != std::errc() || lResult.ptr != lEnd)
        return false;
    // Runtimes differ in whether they call these two out of range.
    const bool lNumber = IsDigit(lEnd[-1]) || lEnd[-1] == '.';
    // LCOV_EXCL_START: this runtime does
    if (lNumber && (std::isinf(lValue) || (lValue == 0.0 && HasNonZeroDigit(pText, lEnd))))
        return false;
    // LCOV_EXCL_STOP
    pValue = lValue;
    return true;
}

}  // namespace lyrsdk
