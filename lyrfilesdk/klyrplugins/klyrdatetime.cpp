#include "lyrfilesdk/klyrplugins/klyrdatetime.h"

namespace lyrsdk {
namespace {

bool IsLeapYear(int pYear) {
    return (pYear % 4 == 0 && pYear % 100 != 0) || pYear % 400 == 0;
}

int DaysInMonth(int pYear, int pMonth) {
    constexpr int lDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return pMonth == 2 && IsLeapYear(pYear) ? 29 : lDays[pMonth - 1];
}

bool InRange(int pValue, int pFirst, int pLast) {
    return pValue >= pFirst && pValue <= pLast;
}

// Reads the text from left to right; a read that fails leaves the position alone.
class Reader {
public:
    explicit Reader(const char* pText) : mText(pText) {}

    bool Digit(int& pValue) {
        if (!InRange(*mText, '0', '9'))
            return false;
        pValue = pValue * 10 + (*mText++ - '0');
        return true;
    }

    // Exactly pDigits digits.
    bool Number(int pDigits, int& pValue) {
        pValue = 0;
        for (int i = 0; i < pDigits; ++i) {
            if (!Digit(pValue))
                return false;
        }
        return true;
    }

    bool Sign(char pSign) {
        if (*mText != pSign)
            return false;
        ++mText;
        return true;
    }

    // One to three digits behind a point, as thousandths.
    bool Thousandths(int& pValue) {
        pValue = 0;
        int lDigits = 0;
        while (lDigits < 3 && Digit(pValue))
            ++lDigits;
        for (int i = lDigits; i < 3; ++i)
            pValue *= 10;
        return lDigits > 0;
    }

    bool AtEnd() const { return *mText == 0; }

private:
    const char* mText;
};

char* WriteDigits(char* pOut, int pDigits, int pValue) {
    for (int i = pDigits - 1; i >= 0; --i) {
        pOut[i] = static_cast<char>('0' + pValue % 10);
        pValue /= 10;
    }
    return pOut + pDigits;
}

char* WriteSign(char* pOut, char pSign) {
    *pOut = pSign;
    return pOut + 1;
}

}  // namespace

bool lyrDateTime::Set(int pYear, int pMonth, int pDay, int pHour, int pMinute, int pSecond, int pMillisecond) {
    if (!InRange(pYear, 0, 9999) || !InRange(pMonth, 1, 12) || !InRange(pDay, 1, DaysInMonth(pYear, pMonth)))
        return false;
    if (!InRange(pHour, 0, 23) || !InRange(pMinute, 0, 59) || !InRange(pSecond, 0, 59) ||
        !InRange(pMillisecond, 0, 999))
        return false;
    mYear = static_cast<short>(pYear);
    mMonth = static_cast<unsigned char>(pMonth);
    mDay = static_cast<unsigned char>(pDay);
    mHour = static_cast<unsigned char>(pHour);
    mMinute = static_cast<unsigned char>(pMinute);
    mSecond = static_cast<unsigned char>(pSecond);
    mMillisecond = static_cast<short>(pMillisecond);
    return true;
}

bool lyrDateTime::fromString(const char* pText) {
    if (!pText)
        return false;
    Reader lReader(pText);
    int lYear, lMonth, lDay, lHour, lMinute, lSecond = 0, lMillisecond = 0;
    if (!lReader.Number(4, lYear) || !lReader.Sign('-') || !lReader.Number(2, lMonth) || !lReader.Sign('-') ||
        !lReader.Number(2, lDay))
        return false;
    if (!lReader.Sign('T') && !lReader.Sign('t') && !lReader.Sign(' '))
        return false;
    if (!lReader.Number(2, lHour) || !lReader.Sign(':') || !lReader.Number(2, lMinute))
        return false;
    if (lReader.Sign(':')) {
        if (!lReader.Number(2, lSecond) || (lReader.Sign('.') && !lReader.Thousandths(lMillisecond)))
            return false;
    }
    return lReader.AtEnd() && Set(lYear, lMonth, lDay, lHour, lMinute, lSecond, lMillisecond);
}

int lyrDateTime::format(char (&pBuffer)[32]) const {
    char* lOut = WriteSign(WriteDigits(pBuffer, 4, mYear), '-');
    lOut = WriteSign(WriteDigits(lOut, 2, mMonth), '-');
    lOut = WriteSign(WriteDigits(lOut, 2, mDay), 'T');
    lOut = WriteSign(WriteDigits(lOut, 2, mHour), ':');
    lOut = WriteSign(WriteDigits(lOut, 2, mMinute), ':');
    lOut = WriteSign(WriteDigits(lOut, 2, mSecond), '.');
    lOut = WriteDigits(lOut, 3, mMillisecond);
    *lOut = 0;
    return static_cast<int>(lOut - pBuffer);
}

KString lyrDateTime::toString() const {
    char lText[32];
    format(lText);
    return KString(lText);
}

}  // namespace lyrsdk
