#include "lyrfilesdk/klyrplugins/klyrcopystr.h"

#include <limits>
#include <type_traits>

namespace lyrsdk {
namespace {

// A stretch of a text.
struct Span {
    const char* mBegin;
    const char* mEnd;

    bool IsEmpty() const { return mBegin == mEnd; }
    int Length() const { return static_cast<int>(mEnd - mBegin); }

    bool Skip(char pChar) {
        if (IsEmpty() || *mBegin != pChar)
            return false;
        ++mBegin;
        return true;
    }
};

bool IsBlank(char pChar) {
    return pChar == ' ' || (pChar >= '\t' && pChar <= '\r');
}

Span WithoutBlanks(const KString& pText) {
    Span lSpan{pText.Buffer(), pText.Buffer() + pText.GetLen()};
    while (!lSpan.IsEmpty() && IsBlank(*lSpan.mBegin))
        ++lSpan.mBegin;
    while (!lSpan.IsEmpty() && IsBlank(lSpan.mEnd[-1]))
        --lSpan.mEnd;
    return lSpan;
}

// pLower is in lower case.
bool EqualInAnyCase(Span pSpan, const char* pLower) {
    for (; !pSpan.IsEmpty() && *pLower; ++pSpan.mBegin, ++pLower) {
        const char lChar = *pSpan.mBegin;
        if ((lChar >= 'A' && lChar <= 'Z' ? lChar - 'A' + 'a' : lChar) != *pLower)
            return false;
    }
    return pSpan.IsEmpty() && !*pLower;
}

struct Integer {
    bool mNegative;
    unsigned long long mMagnitude;
};

bool ReadInteger(Span pSpan, Integer& pInteger) {
    Integer lInteger{pSpan.Skip('-'), 0};
    if (!lInteger.mNegative)
        pSpan.Skip('+');
    if (pSpan.IsEmpty())
        return false;
    constexpr unsigned long long lMax = std::numeric_limits<unsigned long long>::max();
    for (; !pSpan.IsEmpty(); ++pSpan.mBegin) {
        const char lChar = *pSpan.mBegin;
        if (lChar < '0' || lChar > '9')
            return false;
        const unsigned long long lDigit = static_cast<unsigned long long>(lChar - '0');
        if (lInteger.mMagnitude > (lMax - lDigit) / 10)
            return false;
        lInteger.mMagnitude = lInteger.mMagnitude * 10 + lDigit;
    }
    pInteger = lInteger;
    return true;
}

// Integers of type T, with the negative numbers of the signed type of its width.
template <typename T>
bool ReadInteger(const KString& pText, T& pValue) {
    Integer lInteger;
    if (!ReadInteger(WithoutBlanks(pText), lInteger))
        return false;
    using Wide = unsigned long long;
    constexpr Wide lMax = static_cast<Wide>(std::numeric_limits<T>::max());
    constexpr Wide lMin = static_cast<Wide>(std::numeric_limits<std::make_signed_t<T>>::max()) + 1;
    if (lInteger.mMagnitude > (lInteger.mNegative ? lMin : lMax))
        return false;
    pValue = static_cast<T>(lInteger.mNegative ? 0 - lInteger.mMagnitude : lInteger.mMagnitude);
    return true;
}

}  // namespace

bool lyrCopyStr(bool& pValue, const KString& pText) {
    const Span lSpan = WithoutBlanks(pText);
    Integer lInteger;
    if (EqualInAnyCase(lSpan, "true")) {
        pValue = true;
    } else if (EqualInAnyCase(lSpan, "false")) {
        pValue = false;
    } else if (ReadInteger(lSpan, lInteger) && !(lInteger.mNegative && lInteger.mMagnitude > 1ull << 63)) {
        pValue = lInteger.mMagnitude != 0;
    } else {
        return false;
    }
    return true;
}

bool lyrCopyStr(char& pValue, const KString& pText) {
    // char itself may be unsigned.
    signed char lValue;
    if (!ReadInteger(pText, lValue))
        return false;
    pValue = static_cast<char>(lValue);
    return true;
}

bool lyrCopyStr(unsigned char& pValue, const KString& pText) {
    return ReadInteger(pText, pValue);
}

bool lyrCopyStr(short& pValue, const KString& pText) {
    return ReadInteger(pText, pValue);
}

bool lyrCopyStr(unsigned short& pValue, const KString& pText) {
    return ReadInteger(pText, pValue);
}

bool lyrCopyStr(int& pValue, const KString& pText) {
    return ReadInteger(pText, pValue);
}

bool lyrCopyStr(unsigned int& pValue, const KString& pText) {
    return ReadInteger(pText, pValue);
}

bool lyrCopyStr(long long& pValue, const KString& pText) {
    return ReadInteger(pText, pValue);
}

bool lyrCopyStr(unsigned long long& pValue, const KString& pText) {
    return ReadInteger(pText, pValue);
}

bool lyrCopyStr(double& pValue, const KString& pText) {
    Span lSpan = WithoutBlanks(pText);
    // A plus may stand in front, but not in front of a minus.
    if (lSpan.Skip('+') && !lSpan.IsEmpty() && *lSpan.mBegin == '-')
        return false;
    return lyrParseDouble(lSpan.mBegin, lSpan.Length(), pValue);
}

}  // namespace lyrsdk
